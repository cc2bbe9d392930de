#include "apps/zelmodel/ZelModelReportTable.h"

#include "apps/zelmodel/ZelModelReportPage.h"
#include "apps/zelmodel/ZelModelReportSearch.h"
#include "apps/zelmodel/ZelModelReportSheet.h"
#include "zelDb/ZelDb.h"

namespace {

namespace C = ZelDbColumn;

constexpr std::size_t MostLinks = 12;

} // namespace

ZelModelReportTable::ZelModelReportTable(ZelModelReportPage *page,
    const ZelModelReportPlaces &places, ZelModelReportSearch *search, const ZelModelKind &kind)
    : m_page(page), m_places(places), m_search(*search)
{
    page->open("table", kind.name);
    switch (kind.type) {
    case ZelDb::Parameter:
        page->headRow({"Name", "Value", "Used by"});
        break;
    case ZelDb::Observable:
        page->headRow({"Name", "Counts", "Pattern"});
        break;
    case ZelDb::Seed:
        page->headRow({"Species", "Amount"});
        break;
    case ZelDb::Compartment:
        page->headRow({"Name", "Dimensions", "Size", "Surrounded by"});
        break;
    default:
        page->headRow({"Where", "Text", "Why"});
        break;
    }
    page->open("tbody");
    page->lineEnd();
}

ZelModelReportTable::~ZelModelReportTable()
{
    m_page->close();
    m_page->close();
    m_page->lineEnd();
}

void ZelModelReportTable::write(int place, const ZelDbRecord &record)
{
    const ZelModelReportPlace &own = m_places.at(place);
    QString found;
    m_page->open("tr", {{"id", own.key}});
    switch (own.kind->type) {
    case ZelDb::Parameter:
        nameCell(place, record);
        valueCell(record.value(C::ParameterValue), record.value(C::Unit));
        linkCell(own.users);
        found = record.value(C::ParameterValue);
        break;
    case ZelDb::Observable:
        nameCell(place, record);
        cell(record.value(C::ObservableKind));
        codeCell(record.value(C::ObservablePattern));
        found = record.value(C::ObservablePattern);
        break;
    case ZelDb::Seed: {
        const int species = m_places.find(ZelDb::Cpa, record.value(C::SeedCpa));
        if (species == ZelModelReportPlaces::None)
            cell(record.value(C::SeedCpa));
        else
            linkCell({species});
        valueCell(record.value(C::SeedAmount), record.value(C::Unit));
        found = record.value(C::SeedAmount);
        break;
    }
    case ZelDb::Compartment: {
        const int parent = m_places.find(ZelDb::Compartment, record.value(C::CompartmentParent));
        nameCell(place, record);
        cell(record.value(C::CompartmentDimension));
        valueCell(record.value(C::CompartmentSize), record.value(C::Unit));
        linkCell(parent == ZelModelReportPlaces::None ? std::vector<int>() : std::vector{parent});
        break;
    }
    default: {
        const QString line = record.value(C::SourceLine);
        cell(record.value(C::SourceFile)
            + (line.isEmpty() ? QString() : QLatin1String(", line ") + line));
        codeCell(record.value(C::SourceText));
        cell(record.value(C::Reason));
        found = record.value(C::SourceText);
        break;
    }
    }
    m_page->close();
    m_page->lineEnd();
    m_search.add(place, found);
}

void ZelModelReportTable::nameCell(int place, const ZelDbRecord &record)
{
    m_page->open("th", {{"scope", QStringLiteral("row")}});
    m_page->name(m_places.at(place).title);
    if (const QString notes = record.value(C::Notes); !notes.isEmpty())
        m_page->prose(notes);
    m_page->close();
}

void ZelModelReportTable::cell(const QString &text)
{
    m_page->open("td");
    m_page->longText("bdi", text);
    m_page->close();
}

void ZelModelReportTable::codeCell(const QString &text)
{
    m_page->open("td");
    m_page->longText("code", text);
    m_page->close();
}

void ZelModelReportTable::valueCell(const QString &expression, const QString &unit)
{
    m_page->open("td");
    ZelModelReportSheet::writeValue(m_page, m_places, expression);
    if (!unit.isEmpty())
        m_page->text(u' ' + unit);
    m_page->close();
}

void ZelModelReportTable::linkCell(const std::vector<int> &places)
{
    m_page->open("td");
    ZelModelReportSheet::writeLinks(m_page, m_places, places, MostLinks);
    m_page->close();
}
