#include "ReportFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QUrl>
#include <QXmlStreamReader>

ReportFolder::ReportFolder(const QString &path)
{
    const QDir folder(path);
    QDirIterator files(
        path, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            m_files.insert(folder.relativeFilePath(file.fileName()), file.readAll());
    }
    for (const QString &page : pages())
        readPage(page, m_files.value(page));
    checkLinks();
}

QStringList ReportFolder::pages() const
{
    QStringList names = m_files.keys().filter(QStringLiteral(".html"));
    names.sort();
    return names;
}

void ReportFolder::readPage(const QString &page, const QByteArray &content)
{
    QXmlStreamReader reader(content);
    QString text;
    m_level = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement)
            readElement(page, &reader);
        else if (reader.isCharacters())
            text += reader.text();
    }
    if (reader.hasError())
        m_faults.append(page + QLatin1String(": ") + reader.errorString());
    m_texts.insert(page, text);
}

void ReportFolder::readElement(const QString &page, QXmlStreamReader *reader)
{
    const QString tag = reader->name().toString();
    const QXmlStreamAttributes attributes = reader->attributes();
    const auto value = [&attributes](const char *name) {
        return attributes.value(QLatin1String(name)).toString();
    };
    const auto fault = [&](const QString &what) {
        m_faults.append(QLatin1String("%1, line %2: %3")
                            .arg(page, QString::number(reader->lineNumber()), what));
    };
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.name().startsWith(u"on") || attribute.name() == u"style")
            fault(QLatin1String("attribute ") + attribute.name().toString());
    }
    if (const QString id = value("id"); !id.isEmpty()) {
        if (m_anchors[page].contains(id))
            fault(QLatin1String("second element ") + id);
        m_anchors[page].insert(id);
    }
    if (tag == u"img") {
        readLink(page, value("src"));
        if (value("alt").isEmpty() || value("width").toInt() < 1 || value("height").toInt() < 1)
            fault(QStringLiteral("picture without words or size"));
    } else if (tag == u"script") {
        readLink(page, value("src"));
    } else if (tag == u"a" || tag == u"link") {
        readLink(page, value("href"));
    } else if (tag == u"th" && value("scope").isEmpty()) {
        fault(QStringLiteral("table heading without scope"));
    } else if (tag == u"html" && value("lang").isEmpty()) {
        fault(QStringLiteral("no language"));
    } else if (tag.size() == 2 && tag.at(0) == u'h' && tag.at(1).isDigit()) {
        const int level = tag.at(1).digitValue();
        if (level > m_level + 1 || (level == 1 && m_level > 0))
            fault(QStringLiteral("heading out of order"));
        m_level = level;
    }
}

void ReportFolder::readLink(const QString &page, const QString &target)
{
    m_links.append({page, target});
}

void ReportFolder::checkLinks()
{
    for (const auto &[page, target] : std::as_const(m_links)) {
        const QUrl url(target, QUrl::StrictMode);
        const QString file = url.path().isEmpty() ? page : url.path();
        const QString anchor = url.fragment();
        if (!url.isValid() || !url.isRelative() || !url.host().isEmpty() || !m_files.contains(file)
            || (!anchor.isEmpty() && !m_anchors.value(file).contains(anchor)))
            m_faults.append(page + QLatin1String(": link to ") + target);
    }
}
