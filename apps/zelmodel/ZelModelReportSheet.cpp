#include "apps/zelmodel/ZelModelReportSheet.h"

#include "apps/zelmodel/ZelModelText.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t MostLinks = 60;
constexpr qsizetype LongestWords = 800;
constexpr double SpeciesScale = 0.75; // in reactions, of the size at which they are drawn

QString number(double value)
{
    return QString::number(qRound(value));
}

} // namespace

ZelModelReportSheet::ZelModelReportSheet(ZelModelReportPage *page,
    const ZelModelReportPlaces &places, int place, int headingLevel, const ZelDbRecord &record)
    : m_page(page), m_places(places), m_place(place)
{
    const ZelModelReportPlace &own = places.at(place);
    const QString id = record.value(ZelDbColumn::PsiimId);
    const QString name = own.kind->nameOf(record);
    const QString fullName = record.value(ZelDbColumn::Name);
    if (name.size() > ZelModelReportPage::LongestName)
        m_name = name;
    if (fullName != name)
        m_fullName = fullName;
    page->open("article", {{"class", QStringLiteral("record")}, {"id", own.key}});
    const char heading[] = {'h', static_cast<char>('0' + headingLevel), '\0'};
    page->open(heading);
    page->name(name.isEmpty() ? id : name);
    page->text(QStringLiteral(" "));
    page->open("small");
    page->text(QLatin1String(own.kind->title) + u' ');
    page->name(id);
    page->close();
    page->close();
    page->lineEnd();
    page->open("div", "body");
}

ZelModelReportSheet::~ZelModelReportSheet()
{
    if (!m_name.isEmpty() || !m_fullName.isEmpty())
        openFacts();
    if (m_hasFacts)
        m_page->close();
    m_page->close();
    m_page->close();
    m_page->lineEnd();
}

void ZelModelReportSheet::picture(const QString &words)
{
    const ZelModelReportPlace &own = m_places.at(m_place);
    if (own.picture.isEmpty()) {
        m_page->element("p", QStringLiteral("There is nothing to draw."), "missing");
        return;
    }
    m_page->open("figure", "picture");
    m_page->open("a", {{"href", ZelModelReportPlaces::pictureName(own)}});
    image(own, words, 1.0);
    m_page->close();
    m_page->close();
    m_page->lineEnd();
}

void ZelModelReportSheet::image(
    const ZelModelReportPlace &drawn, const QString &words, double scale)
{
    m_page->leaf("img",
        {{"src", ZelModelReportPlaces::pictureName(drawn)},
            {"alt", ZelModelText::shortened(words, LongestWords)},
            {"width", number(drawn.picture.width() * scale)},
            {"height", number(drawn.picture.height() * scale)}, {"loading", QStringLiteral("lazy")},
            {"decoding", QStringLiteral("async")}});
}

void ZelModelReportSheet::species(int place, const QString &id)
{
    if (place == ZelModelReportPlaces::None || m_places.at(place).picture.isEmpty()) {
        m_page->open("div", "species undrawn");
        mention(place, place == ZelModelReportPlaces::None ? id : m_places.at(place).title);
        m_page->close();
        return;
    }
    const ZelModelReportPlace &there = m_places.at(place);
    m_page->open("div", "species");
    m_page->open("a", {{"href", m_places.href(place)}});
    image(there, there.detail.isEmpty() ? there.title : there.detail, SpeciesScale);
    m_page->open("span", "caption");
    m_page->name(there.title);
    m_page->close();
    m_page->close();
    m_page->close();
}

void ZelModelReportSheet::openFacts()
{
    if (m_hasFacts)
        return;
    m_hasFacts = true;
    m_page->open("dl", "facts");
    if (!m_name.isEmpty())
        textFact("code", QStringLiteral("Whole name"), m_name);
    if (!m_fullName.isEmpty())
        textFact("span", QStringLiteral("Full name"), m_fullName);
}

void ZelModelReportSheet::openFact(const QString &title)
{
    openFacts();
    m_page->open("div");
    m_page->element("dt", title);
    m_page->open("dd");
}

void ZelModelReportSheet::closeFact()
{
    m_page->close();
    m_page->close();
    m_page->lineEnd();
}

void ZelModelReportSheet::textFact(const char *tag, const QString &title, const QString &text)
{
    if (text.isEmpty())
        return;
    openFact(title);
    m_page->longText(tag, text);
    closeFact();
}

void ZelModelReportSheet::fact(const QString &title, const QString &text)
{
    textFact("bdi", title, text);
}

void ZelModelReportSheet::fact(const QString &title, const QStringList &texts)
{
    textFact("bdi", title, texts.join(QLatin1String(", ")));
}

void ZelModelReportSheet::codeFact(const QString &title, const QString &text)
{
    textFact("code", title, text);
}

void ZelModelReportSheet::proseFact(const QString &title, const QString &text)
{
    if (text.isEmpty())
        return;
    openFact(title);
    m_page->prose(text);
    closeFact();
}

void ZelModelReportSheet::valueFact(const QString &title, const QString &expression)
{
    if (expression.isEmpty())
        return;
    openFact(title);
    writeValue(m_page, m_places, expression);
    closeFact();
}

void ZelModelReportSheet::writeValue(
    ZelModelReportPage *page, const ZelModelReportPlaces &places, const QString &expression)
{
    const int parameter = places.parameterNamed(expression);
    if (parameter == ZelModelReportPlaces::None) {
        page->longText("bdi", expression);
        return;
    }
    page->link(places.href(parameter), expression);
    page->text(QStringLiteral(" = "));
    page->name(places.at(parameter).detail);
}

void ZelModelReportSheet::mention(int place, const QString &name)
{
    if (place == ZelModelReportPlaces::None)
        m_page->name(name);
    else
        m_page->link(m_places.href(place), name);
}

void ZelModelReportSheet::links(const QString &title, const std::vector<int> &places)
{
    if (places.empty())
        return;
    openFact(title);
    writeLinks(m_page, m_places, places, MostLinks);
    closeFact();
}

void ZelModelReportSheet::writeLinks(ZelModelReportPage *page, const ZelModelReportPlaces &places,
    const std::vector<int> &list, std::size_t most)
{
    const std::size_t shown = std::min(list.size(), most);
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0)
            page->text(QStringLiteral(", "));
        page->link(places.href(list[i]), places.at(list[i]).title);
    }
    if (shown < list.size())
        page->text(QLatin1String(" and %1 more").arg(QString::number(list.size() - shown)));
}

void ZelModelReportSheet::users(const std::vector<int> &places)
{
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        std::vector<int> ofKind;
        std::copy_if(places.begin(), places.end(), std::back_inserter(ofKind),
            [&](int place) { return m_places.at(place).kind == &kind; });
        links(QLatin1String("In ") + QLatin1String(kind.name), ofKind);
    }
}
