#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

class QXmlStreamReader;

/// Reads all of a report's pages and finds what is wrong with them.
class ReportFolder
{
public:
    explicit ReportFolder(const QString &path);

    /// All files with their content, by their path in the folder.
    const QHash<QString, QByteArray> &files() const { return m_files; }
    QStringList pages() const;
    /// The texts of a page, without markup.
    QString text(const QString &page) const { return m_texts.value(page); }
    /// The anchors of a page.
    QSet<QString> anchors(const QString &page) const { return m_anchors.value(page); }
    /// Markup that is not well-formed or could run, links that lead nowhere or elsewhere, pictures
    /// without words, headings and tables that do not say what they belong to.
    QStringList faults() const { return m_faults; }

private:
    void readPage(const QString &page, const QByteArray &content);
    void readElement(const QString &page, QXmlStreamReader *reader);
    void readLink(const QString &page, const QString &target);
    void checkLinks();

    QHash<QString, QByteArray> m_files;
    QHash<QString, QString> m_texts;
    QHash<QString, QSet<QString>> m_anchors;
    QList<QPair<QString, QString>> m_links; ///< page and target
    QStringList m_faults;
    int m_level = 0; ///< of the last heading
};
