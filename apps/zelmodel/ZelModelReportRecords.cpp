#include "apps/zelmodel/ZelModelReportRecords.h"

#include "apps/zelmodel/ZelModelDetails.h"
#include "apps/zelmodel/ZelModelPicture.h"
#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelReportPage.h"
#include "apps/zelmodel/ZelModelReportReaction.h"
#include "apps/zelmodel/ZelModelReportSearch.h"
#include "apps/zelmodel/ZelModelReportSheet.h"
#include "apps/zelmodel/ZelModelReportWords.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <algorithm>

using zel::species::MoleculeTypes;
using zel::species::Species;

namespace {

namespace C = ZelDbColumn;

constexpr double Zoom = 1.5; // of all drawings alike, so that like parts are of like size
constexpr QSize MostSize(480, 360);
constexpr QSize MostInteractionSize(640, 300);
constexpr qsizetype LongestPartName = 40;

} // namespace

ZelModelReportRecords::ZelModelReportRecords(ZelDbSqliteModel *db, const ZelModelDetails &details,
    ZelModelReportPlaces *places, ZelModelReportFolder *folder, ZelModelReportSearch *search)
    : m_db(db), m_details(details), m_places(*places), m_folder(*folder), m_search(*search),
      m_reader(details.catalog(), *db)
{
    db->visitRecords(ZelDb::Cpx, {C::Notes}, [this](const ZelDbRecord &record) {
        if (const QString notes = record.value(C::Notes); !notes.isEmpty())
            m_complexNotes.insert(record.value(C::PsiimId), notes);
        return true;
    });
}

bool ZelModelReportRecords::write(
    ZelModelReportPage *page, int headingLevel, int place, const ZelDbRecord &record)
{
    const ZelModelKind &kind = *m_places.at(place).kind;
    const QString id = record.value(C::PsiimId);
    if (!kind.isReaction() && !draw(place, record))
        return false;
    ZelModelReportSheet sheet(page, m_places, place, headingLevel, record);
    switch (kind.type) {
    case ZelDb::Mol:
        writeMolecule(&sheet, page, place, record);
        break;
    case ZelDb::Mli:
        writeInteraction(&sheet, page, place, record);
        break;
    case ZelDb::Cpa:
    case ZelDb::Cpx:
        writeSpecies(&sheet, place, record);
        break;
    default:
        m_search.add(place,
            ZelModelReportReaction(m_db, m_details.catalog(), m_places)
                .write(&sheet, page, place, record));
        break;
    }
    sheet.proseFact(QStringLiteral("Notes"), record.value(C::Notes));
    sheet.proseFact(
        QStringLiteral("References"), m_db->refGetReferences(QLatin1String(kind.word), id));
    return true;
}

bool ZelModelReportRecords::draw(int place, const ZelDbRecord &record)
{
    const ZelModelReportPlace &own = m_places.at(place);
    const ZelModelPicture picture(m_db, {own.kind, record}, Zoom,
        own.kind->type == ZelDb::Mli ? MostInteractionSize : MostSize);
    m_places.setPicture(place, picture.size());
    if (!picture.isLoaded())
        addFaulty(record.value(C::PsiimId));
    return picture.isNull()
        || m_folder.write(
            ZelModelReportPlaces::pictureName(own), picture.toSvg(1.0, Qt::white, own.title));
}

void ZelModelReportRecords::addFaulty(const QString &id)
{
    if (m_faulty.isEmpty() || m_faulty.last() != id)
        m_faulty.append(id);
}

void ZelModelReportRecords::writeMolecule(
    ZelModelReportSheet *sheet, ZelModelReportPage *page, int place, const ZelDbRecord &record)
{
    const ZelModelKind &kind = *m_places.at(place).kind;
    const MoleculeTypes::Mol *const mol = m_details.catalog().mol(record.value(C::PsiimId));
    sheet->picture(mol ? ZelModelReportWords::of(*mol) : QString());
    sheet->fact(QStringLiteral("Location"), record.value(C::Location));
    if (mol && !mol->mcps.empty()) {
        writeComponents(sheet, page, *mol);
        writePartNotes(sheet, *mol);
    }
    sheet->users(m_places.at(place).users);
    m_search.add(place, m_details.summary(kind, record));
}

void ZelModelReportRecords::writeComponents(
    ZelModelReportSheet *sheet, ZelModelReportPage *page, const MoleculeTypes::Mol &mol)
{
    sheet->openFact(QStringLiteral("Components"));
    page->open("table");
    page->headRow({"Component", "States", "Site", "May bind"});
    page->open("tbody");
    for (const MoleculeTypes::Mcp &mcp : mol.mcps) {
        const qsizetype rows = std::max<qsizetype>(1, mcp.sites.size());
        for (qsizetype i = 0; i < rows; ++i) {
            page->open("tr");
            if (i == 0) {
                const QString span = QString::number(rows);
                page->open("th", {{"scope", QStringLiteral("rowgroup")}, {"rowspan", span}});
                page->name(mcp.shortName);
                page->close();
                page->open("td", {{"rowspan", span}});
                for (const MoleculeTypes::Part &state : mcp.states) {
                    page->open("span", "state");
                    page->name(state.name);
                    page->close();
                    page->text(QStringLiteral(" "));
                }
                page->close();
            }
            page->open("td");
            if (!mcp.sites.isEmpty())
                page->text(QString::number(mcp.firstSite + i + 1));
            page->close();
            page->open("td");
            if (!mcp.sites.isEmpty())
                writePartners(sheet, page, mcp.sites.at(i).id);
            page->close();
            page->close();
        }
    }
    page->close();
    page->close();
    sheet->closeFact();
}

void ZelModelReportRecords::writePartners(
    ZelModelReportSheet *sheet, ZelModelReportPage *page, const QString &site)
{
    bool isFirst = true;
    for (const ZelModelReportPartner &partner : m_places.partners(site)) {
        if (!isFirst)
            page->text(QStringLiteral(", "));
        isFirst = false;
        sheet->mention(partner.interaction, m_details.catalog().siteTitle(partner.site));
    }
}

/// What was noted of the molecule's parts, which have no entries of their own.
void ZelModelReportRecords::writePartNotes(
    ZelModelReportSheet *sheet, const MoleculeTypes::Mol &mol)
{
    const auto write = [&](const char *word, const QString &name, const ZelDbRecord &record) {
        QString text = record.value(C::Notes);
        const QString references =
            m_db->refGetReferences(QLatin1String(word), record.value(C::PsiimId));
        if (!text.isEmpty() && !references.isEmpty())
            text += u'\n';
        sheet->proseFact(QLatin1String("On ") + ZelModelText::shortened(name, LongestPartName),
            text + references);
    };
    for (const MoleculeTypes::Mcp &mcp : mol.mcps) {
        const ZelDbRecord record = m_db->mcpGetHashInfo(mcp.id);
        sheet->fact(
            QLatin1String("Location of ") + ZelModelText::shortened(mcp.shortName, LongestPartName),
            record.value(C::Location));
        write("mcp", mcp.shortName, record);
        for (const MoleculeTypes::Part &state : mcp.states)
            write("mcpState", state.name, m_db->mcpStateGetHashInfo(state.id));
        for (const MoleculeTypes::Part &site : mcp.sites)
            write("bst", site.name, m_db->bstGetHashInfo(site.id));
    }
}

void ZelModelReportRecords::writeInteraction(
    ZelModelReportSheet *sheet, ZelModelReportPage *page, int place, const ZelDbRecord &record)
{
    const QString pairs = m_details.sitePairs(record.value(C::PsiimId));
    sheet->picture(QLatin1String("Drawing of two molecules whose sites may bind: ") + pairs);
    const QList<QStringList> bonds = m_db->mliGetArrayBstBst(record.value(C::PsiimId));
    for (const QStringList &bond : bonds) {
        sheet->openFact(QStringLiteral("Bond"));
        for (const int column : {3, 5}) {
            if (column == 5)
                page->text(QStringLiteral(" \u2013 "));
            const QString site = bond.value(column);
            sheet->mention(m_places.moleculeOf(m_details.catalog(), site),
                m_details.catalog().siteTitle(site));
        }
        sheet->closeFact();
    }
    sheet->valueFact(QStringLiteral("Association rate"), record.value(C::AssociationRate));
    sheet->valueFact(QStringLiteral("Dissociation rate"), record.value(C::DissociationRate));
    sheet->users(m_places.at(place).users);
    m_search.add(place, pairs);
}

void ZelModelReportRecords::writeSpecies(
    ZelModelReportSheet *sheet, int place, const ZelDbRecord &record)
{
    const QString id = record.value(C::PsiimId);
    const ZelModelReportPlace &own = m_places.at(place);
    const bool isAlias = own.kind->type == ZelDb::Cpa;
    const QString complex = isAlias ? record.value(C::CpaCpx) : id;
    const Species species =
        isAlias ? m_reader.readAlias(m_db->cpaGetHashInfo(id)) : m_reader.readComplex(id);
    const ZelModelReportWords words(species);
    const QString text = species.text();
    sheet->picture(words.drawing());
    sheet->codeFact(QStringLiteral("Written out"), text);
    if (species.mols.size() > 1)
        sheet->fact(QStringLiteral("Molecules"), words.molecules());
    sheet->fact(QStringLiteral("States"), words.states());
    sheet->fact(QStringLiteral("Bonds"), words.bonds());
    sheet->fact(QStringLiteral("Bound to something"), words.boundSites());
    sheet->fact(QStringLiteral("Free sites"), words.freeSites());
    sheet->fact(QStringLiteral("Location"), words.compartments());
    for (const int user : own.users) {
        if (m_places.at(user).kind->type == ZelDb::Seed)
            sheet->valueFact(QStringLiteral("Initial amount"), m_places.at(user).detail);
    }
    sheet->links(QStringLiteral("Taken by"), own.takers);
    sheet->links(QStringLiteral("Given by"), own.givers);
    if (!m_reader.problems().isEmpty()) {
        sheet->fact(QStringLiteral("Problem"), m_reader.problems());
        addFaulty(id);
    }
    if (isAlias)
        sheet->proseFact(QStringLiteral("Notes on the complex"), m_complexNotes.value(complex));
    m_places.setDetail(place, text);
    m_search.add(place, text);
}
