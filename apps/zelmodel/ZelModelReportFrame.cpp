#include "apps/zelmodel/ZelModelReportFrame.h"

#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelReportPage.h"

#include <algorithm>

namespace {

/// Nothing but the report's own files: "file:" for browsers to which a page from a disk is not
/// "self".
constexpr char SecurityPolicy[] =
    "default-src 'none'; img-src 'self' file:; style-src 'self' file:; "
    "script-src 'self' file:; base-uri 'none'; form-action 'none'";
constexpr int FewRecords = 8; // that need no list of what is on the page

/// "Species 201 to 400"
QString partTitle(const ZelModelReportChapter &chapter, int part)
{
    const int first = part * ZelModelReportPlaces::PartLength;
    const int last = std::min(first + ZelModelReportPlaces::PartLength, chapter.count);
    return QLatin1String("%1 %2 to %3")
        .arg(QLatin1String(chapter.title), QString::number(first + 1), QString::number(last));
}

} // namespace

void ZelModelReportFrame::writeHead(ZelModelReportPage *page, const QString &title) const
{
    const auto meta = [page](const char *name, const char *content) {
        page->leaf("meta", {{"name", QLatin1String(name)}, {"content", QLatin1String(content)}});
        page->lineEnd();
    };
    page->open("head");
    page->lineEnd();
    page->leaf("meta", {{"charset", QStringLiteral("utf-8")}});
    page->lineEnd();
    page->leaf("meta",
        {{"http-equiv", QStringLiteral("Content-Security-Policy")},
            {"content", QLatin1String(SecurityPolicy)}});
    page->lineEnd();
    meta("generator", ZelModelReportFolder::Generator);
    meta("viewport", "width=device-width, initial-scale=1");
    meta("color-scheme", "light dark");
    page->element(
        "title", title.isEmpty() ? m_modelName : title + QStringLiteral(" \u00b7 ") + m_modelName);
    page->lineEnd();
    page->leaf(
        "link", {{"rel", QStringLiteral("stylesheet")}, {"href", QStringLiteral("style.css")}});
    page->open(
        "script", {{"src", QStringLiteral("search.js")}, {"defer", QStringLiteral("defer")}});
    page->close();
    page->close();
    page->lineEnd();
}

void ZelModelReportFrame::writeNavigation(
    ZelModelReportPage *page, const ZelModelReportChapter *current) const
{
    page->open("header", "site");
    page->open("nav", {{"aria-label", QStringLiteral("Chapters")}});
    page->open("ul");
    const auto entry = [&](const QString &href, const QString &title, bool isCurrent) {
        page->open("li");
        if (isCurrent)
            page->open("a", {{"href", href}, {"aria-current", QStringLiteral("page")}});
        else
            page->open("a", {{"href", href}});
        page->text(title);
        page->close();
        page->close();
    };
    entry(QLatin1String(ZelModelReportFolder::IndexFile), QStringLiteral("Overview"), !current);
    for (const ZelModelReportChapter &chapter : m_places.chapters()) {
        if (chapter.count > 0 && !chapter.isInline())
            entry(chapter.pageName(0), QLatin1String(chapter.title), &chapter == current);
    }
    page->close();
    page->close();
    page->open("div", {{"id", QStringLiteral("search")}});
    page->close();
    page->close();
    page->lineEnd();
}

void ZelModelReportFrame::begin(
    ZelModelReportPage *page, const QString &title, const ZelModelReportChapter *current) const
{
    page->open("html", {{"lang", QStringLiteral("en")}});
    page->lineEnd();
    writeHead(page, title);
    page->open("body");
    page->lineEnd();
    page->open("a", {{"class", QStringLiteral("skip")}, {"href", QStringLiteral("#content")}});
    page->text(QStringLiteral("Skip to the content"));
    page->close();
    writeNavigation(page, current);
    page->open("main", {{"id", QStringLiteral("content")}, {"tabindex", QStringLiteral("-1")}});
    page->lineEnd();
}

void ZelModelReportFrame::beginIndex(ZelModelReportPage *page) const
{
    begin(page, QString(), nullptr);
    page->heading(1, m_modelName);
}

void ZelModelReportFrame::beginPart(
    ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const
{
    const QString title =
        chapter.partCount() > 1 ? partTitle(chapter, part) : QString(QLatin1String(chapter.title));
    begin(page, title, &chapter);
    page->open("p", "model");
    page->name(m_modelName);
    page->close();
    page->heading(1, title);
    if (*chapter.about) {
        page->element("p", QLatin1String(chapter.about), "about");
        page->lineEnd();
    }
    writeParts(page, chapter, part);
    writeContents(page, chapter, part);
}

void ZelModelReportFrame::endPart(
    ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const
{
    writeParts(page, chapter, part);
    end(page);
}

void ZelModelReportFrame::end(ZelModelReportPage *page) const
{
    page->close();
    page->close();
    page->close();
    page->lineEnd();
}

void ZelModelReportFrame::writeParts(
    ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const
{
    const int count = chapter.partCount();
    if (count < 2)
        return;
    page->open("nav",
        {{"class", QStringLiteral("parts")},
            {"aria-label", QStringLiteral("Parts of this chapter")}});
    const auto link = [&](int to, const QString &title, const char *rel) {
        if (rel)
            page->open("a", {{"href", chapter.pageName(to)}, {"rel", QLatin1String(rel)}});
        else
            page->open("a", {{"href", chapter.pageName(to)}, {"title", partTitle(chapter, to)}});
        page->text(title);
        page->close();
        page->text(QStringLiteral(" "));
    };
    if (part > 0)
        link(part - 1, QStringLiteral("\u2190 Previous"), "prev");
    for (int i = 0; i < count; ++i) {
        if (i == part) {
            page->open("span", {{"aria-current", QStringLiteral("page")}});
            page->text(QString::number(i + 1));
            page->close();
            page->text(QStringLiteral(" "));
        } else {
            link(i, QString::number(i + 1), nullptr);
        }
    }
    if (part + 1 < count)
        link(part + 1, QStringLiteral("Next \u2192"), "next");
    page->close();
    page->lineEnd();
}

void ZelModelReportFrame::writeContents(
    ZelModelReportPage *page, const ZelModelReportChapter &chapter, int part) const
{
    const int first = part * ZelModelReportPlaces::PartLength;
    const int last = std::min(first + ZelModelReportPlaces::PartLength, chapter.count);
    if (chapter.isTable || last - first < FewRecords)
        return;
    page->open("details", "contents");
    page->element("summary", QStringLiteral("On this page"));
    page->open("ul");
    for (int i = chapter.first + first; i < chapter.first + last; ++i) {
        page->open("li");
        page->link(u'#' + m_places.at(i).key, m_places.at(i).title);
        page->close();
    }
    page->close();
    page->close();
    page->lineEnd();
}
