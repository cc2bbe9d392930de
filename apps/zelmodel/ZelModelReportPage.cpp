#include "apps/zelmodel/ZelModelReportPage.h"

#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelText.h"

namespace {

constexpr qsizetype LongestUnfolded = 400;

} // namespace

ZelModelReportPage::ZelModelReportPage(ZelModelReportFolder *folder, const QString &name)
    : m_folder(folder), m_name(name), m_file(folder->path(name))
{
    if (m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        m_xml.setDevice(&m_file);
    m_xml.writeDTD(QStringLiteral("<!DOCTYPE html>"));
    lineEnd();
}

void ZelModelReportPage::open(const char *tag, const char *classes)
{
    m_xml.writeStartElement(QLatin1String(tag));
    if (classes)
        m_xml.writeAttribute(QStringLiteral("class"), QLatin1String(classes));
}

void ZelModelReportPage::open(const char *tag, Attributes attributes)
{
    m_xml.writeStartElement(QLatin1String(tag));
    for (const auto &[name, value] : attributes)
        m_xml.writeAttribute(QLatin1String(name), ZelModelText::shown(value));
}

void ZelModelReportPage::close()
{
    // Without this an empty element would end at once, which HTML does not know.
    m_xml.writeCharacters(QString());
    m_xml.writeEndElement();
}

void ZelModelReportPage::leaf(const char *tag, Attributes attributes)
{
    open(tag, attributes);
    m_xml.writeEndElement();
}

void ZelModelReportPage::element(const char *tag, const QString &content, const char *classes)
{
    open(tag, classes);
    text(content);
    close();
}

void ZelModelReportPage::text(const QString &text)
{
    m_xml.writeCharacters(ZelModelText::shown(text));
}

void ZelModelReportPage::name(const QString &text, qsizetype most)
{
    element("bdi", ZelModelText::shortened(text, most));
}

void ZelModelReportPage::link(const QString &href, const QString &title)
{
    open("a", {{"href", href}});
    name(title);
    close();
}

void ZelModelReportPage::prose(const QString &text)
{
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    open("p", {{"class", QStringLiteral("prose")}, {"dir", QStringLiteral("auto")}});
    m_xml.writeCharacters(ZelModelText::shownLines(lines));
    close();
}

void ZelModelReportPage::longText(const char *tag, const QString &text)
{
    if (text.size() <= LongestUnfolded) {
        element(tag, text);
        return;
    }
    open("details");
    open("summary");
    element(tag, ZelModelText::shortened(text, LongestUnfolded));
    close();
    element(tag, text);
    close();
}

void ZelModelReportPage::heading(int level, const QString &text)
{
    const char tag[] = {'h', static_cast<char>('0' + level), '\0'};
    open(tag);
    name(text);
    close();
    lineEnd();
}

void ZelModelReportPage::headRow(std::initializer_list<const char *> titles)
{
    open("thead");
    open("tr");
    for (const char *title : titles) {
        open("th", {{"scope", QStringLiteral("col")}});
        text(QLatin1String(title));
        close();
    }
    close();
    close();
}

void ZelModelReportPage::lineEnd()
{
    m_xml.writeCharacters(QStringLiteral("\n"));
}

bool ZelModelReportPage::finish()
{
    m_xml.writeEndDocument();
    if (m_file.isOpen() && !m_xml.hasError() && m_file.flush())
        return true;
    return m_folder->failToWrite(m_name);
}
