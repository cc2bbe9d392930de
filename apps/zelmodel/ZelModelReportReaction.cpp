#include "apps/zelmodel/ZelModelReportReaction.h"

#include "apps/zelmodel/ZelModelLookup.h"
#include "apps/zelmodel/ZelModelReportPage.h"
#include "apps/zelmodel/ZelModelReportSheet.h"
#include "zelDb/ZelDb.h"
#include "zelShare/ZelShare.h"

namespace {

namespace C = ZelDbColumn;

QString emptySet()
{
    return QStringLiteral("\u2205");
}

} // namespace

QString ZelModelReportReaction::write(ZelModelReportSheet *sheet, ZelModelReportPage *page,
    int place, const ZelDbRecord &record) const
{
    const ZelModelKind &kind = *m_places.at(place).kind;
    const QStringList reactants = ZelModelKinds::reactants(kind, record);
    const QStringList products = ZelModelKinds::products(kind, record);
    const QString named = equation(reactants, products, false);
    const QString writtenOut = equation(reactants, products, true);
    writePictures(sheet, page, reactants, products);
    sheet->fact(QStringLiteral("Reaction"), named);
    if (writtenOut != named)
        sheet->codeFact(QStringLiteral("Written out"), writtenOut);
    for (const ZelModelColumn &column : kind.columns) {
        switch (column.column) {
        case C::AssociationRate:
        case C::DissociationRate:
        case C::Rate:
        case C::DegradationRate:
        case C::PdnM:
        case C::PdnN:
        case C::PdnK:
        case C::PdnDelay:
            sheet->valueFact(QLatin1String(column.title), record.value(column.column));
            break;
        case C::BindingType:
        case C::Geometry:
        case C::GeometryText:
            sheet->fact(QLatin1String(column.title), record.value(column.column));
            break;
        default: // species and sites, in words of their own
            break;
        }
    }
    writeSites(sheet, record);
    sheet->fact(QStringLiteral("Description"), ZelModelLookup::description(m_db, {&kind, record}));
    return writtenOut;
}

void ZelModelReportReaction::writePictures(ZelModelReportSheet *sheet, ZelModelReportPage *page,
    const QStringList &reactants, const QStringList &products) const
{
    // A sign stays with what follows it where there is no room for all in a row.
    const auto open = [page](const QString &sign) {
        page->open("div", "step");
        if (!sign.isEmpty())
            page->element("span", sign, "sign");
    };
    const auto writeSide = [&](const QStringList &aliases, const QString &firstSign) {
        QString sign = firstSign;
        for (const QString &alias : aliases) {
            open(sign);
            sheet->species(m_places.find(ZelDb::Cpa, alias), alias);
            page->close();
            sign = ZelShare::getUnicodeString(ZelShare::SignPlus);
        }
        if (aliases.isEmpty()) {
            open(sign);
            page->element("span", emptySet(), "sign nothing");
            page->close();
        }
    };
    page->open("div", "reaction");
    writeSide(reactants, QString());
    writeSide(products, ZelShare::getUnicodeString(ZelShare::SignArrow));
    page->close();
    page->lineEnd();
}

void ZelModelReportReaction::writeSites(ZelModelReportSheet *sheet, const ZelDbRecord &record) const
{
    const QString site1 = record.value(C::Bst1);
    const QString site2 = record.value(C::Bst2);
    if (site1.isEmpty() || site2.isEmpty())
        return;
    sheet->openFact(QStringLiteral("Bond made"));
    sheet->mention(m_places.interactionOf(site1, site2),
        m_catalog.siteTitle(site1) + QStringLiteral(" \u2013 ") + m_catalog.siteTitle(site2));
    sheet->closeFact();
}

QString ZelModelReportReaction::equation(
    const QStringList &reactants, const QStringList &products, bool isWrittenOut) const
{
    return side(reactants, isWrittenOut) + u' ' + ZelShare::getUnicodeString(ZelShare::SignArrow)
        + u' ' + side(products, isWrittenOut);
}

QString ZelModelReportReaction::side(const QStringList &aliases, bool isWrittenOut) const
{
    QStringList names;
    for (const QString &alias : aliases) {
        const int place = m_places.find(ZelDb::Cpa, alias);
        const bool isKnown = place != ZelModelReportPlaces::None;
        const QString text = isKnown && isWrittenOut ? m_places.at(place).detail : QString();
        names.append(!text.isEmpty() ? text : isKnown ? m_places.at(place).title : alias);
    }
    return names.isEmpty() ? emptySet() : names.join(QLatin1String(" + "));
}
