#pragma once

#include <QFile>
#include <QString>
#include <QXmlStreamWriter>

#include <initializer_list>
#include <utility>

class ZelModelReportFolder;

/// Writes one page as it comes, as HTML that is well-formed XML, too: whatever a text holds, it
/// stays a text.
class ZelModelReportPage
{
public:
    static constexpr qsizetype LongestName = 80;

    using Attributes = std::initializer_list<std::pair<const char *, QString>>;

    ZelModelReportPage(ZelModelReportFolder *folder, const QString &name);

    void open(const char *tag, const char *classes = nullptr);
    void open(const char *tag, Attributes attributes);
    void close();
    /// An element without content.
    void leaf(const char *tag, Attributes attributes);
    void element(const char *tag, const QString &text, const char *classes = nullptr);
    /// As it is, but that it neither steers nor ends a line.
    void text(const QString &text);
    /// In its own direction of writing; cut where it is very long.
    void name(const QString &text, qsizetype most = LongestName);
    void link(const QString &href, const QString &name);
    /// Many lines as the author wrote them.
    void prose(const QString &text);
    /// All of a text that may be long: what is too much can be unfolded.
    void longText(const char *tag, const QString &text);
    void heading(int level, const QString &text);
    /// The titles of a table's columns.
    void headRow(std::initializer_list<const char *> titles);
    void lineEnd();

    /// False, which the folder then explains, when not all could be written.
    bool finish();

private:
    ZelModelReportFolder *m_folder;
    QString m_name;
    QFile m_file;
    QXmlStreamWriter m_xml;
};
