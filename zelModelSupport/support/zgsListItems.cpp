// The list entries of records.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/support/zgs.h"
#include "zelShare/ZelShare.h"

#include <QDebug>
#include <QIcon>
#include <QStandardItem>

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

using RecordReader = ZelDbRecord (ZelDbSqliteModel::*)(const QString &) const;
using PictureFunction = QPixmap (*)(
    const QString &, const QSize &, ZelDbSqliteModel *, QHash<QString, QPixmap> *);

QString scientific(const ZelDbRecord &record, int column)
{
    return ZelShare::getScientificFormat(record.value(column), 2, 10, false);
}

QString bindingSuffix(const ZelDbRecord &record)
{
    const QString type = record.value(ZelDbColumn::BindingType);
    if (type.contains(QLatin1String("trans")))
        return QStringLiteral(", trans-binding");
    return type == QLatin1String("cis") ? QStringLiteral(", cis-binding") : QString();
}

QString productionDetails(const ZelDbRecord &record)
{
    QString text = QLatin1String("m=") + record.value(ZelDbColumn::PdnM) + QLatin1String(", n=")
        + record.value(ZelDbColumn::PdnN) + QLatin1String(", k=") + record.value(ZelDbColumn::PdnK);
    const QString delay = record.value(ZelDbColumn::PdnDelay);
    if (!delay.isEmpty() && delay != QLatin1String("0"))
        text += QLatin1String(",  delay=") + delay + u's';
    return text;
}

QString transformationDetails(const ZelDbRecord &record)
{
    return QLatin1String("rate: ") + scientific(record, ZelDbColumn::Rate) + u' '
        + ZelShare::getUnit(ZelShare::UnitRateFirstOrder);
}

QString associationDetails(const ZelDbRecord &record)
{
    const QString geometry = record.value(ZelDbColumn::Geometry);
    QString place;
    if (geometry == QLatin1String("2D"))
        place = ZelShare::getUnit(ZelShare::UnitRate2D) + QLatin1String(", 2D");
    else if (geometry == QLatin1String("3D"))
        place = ZelShare::getUnit(ZelShare::UnitRate3D) + QLatin1String(", 3D");
    else
        place = ZelShare::getUnit(ZelShare::UnitRateFirstOrder) + QLatin1String(", Intra Complex");
    return QLatin1String("rate: ") + scientific(record, ZelDbColumn::AssociationRate) + u' ' + place
        + bindingSuffix(record);
}

QString dissociationDetails(const ZelDbRecord &record)
{
    QString text = QLatin1String("rate: ") + scientific(record, ZelDbColumn::DissociationRate)
        + u' ' + ZelShare::getUnit(ZelShare::UnitRateFirstOrder);
    const QString geometry = record.value(ZelDbColumn::GeometryText);
    if (geometry.contains(QLatin1String("Intra Complex")))
        text += QLatin1String(", ") + geometry;
    return text + bindingSuffix(record);
}

QString degradationRate(const QString &rate)
{
    return rate.isEmpty() ? QString()
                          : QLatin1String("degradation rate: ") + rate + QLatin1String("/s");
}

/// What is listed in one manner for each kind of record.
struct Kind
{
    int kind;
    const char *prefix;
    const char *tag;
    RecordReader read;
    int nameColumn = ZelDbColumn::ShortName;
    QString (*details)(const ZelDbRecord &) = nullptr;
    PictureFunction picture = nullptr;
};

// Overloaded: the one that takes the interaction's own id.
constexpr RecordReader readMli = &ZelDbSqliteModel::mliGetHashInfo;

constexpr Kind kinds[] = {
    {zgs::ListedMol, "Molecule: ", "mol", &ZelDbSqliteModel::molGetHashInfo},
    {zgs::ListedMli, "Molecule Interaction: ", "mli", readMli},
    {zgs::ListedCpx, "Complex Species: ", "cpx", &ZelDbSqliteModel::cpxGetHashInfo},
    {zgs::ListedCpa, "Complex: ", "cpa", &ZelDbSqliteModel::cpaGetHashInfo,
        ZelDbColumn::CpaShortName},
    {zgs::ListedPdn, "Production: ", "pdn", &ZelDbSqliteModel::pdnGetHashInfo,
        ZelDbColumn::ShortName, productionDetails, zgs::getPixMapForProduction},
    {zgs::ListedTrn, "Transformation: ", "trn", &ZelDbSqliteModel::trnGetHashInfo,
        ZelDbColumn::ShortName, transformationDetails, zgs::getPixMapForTransformation},
    {zgs::ListedCai, "Association: ", "cai", &ZelDbSqliteModel::caiGetHashInfo,
        ZelDbColumn::ShortName, associationDetails, zgs::getPixMapForAssociation},
    {zgs::ListedCad, "Dissociation: ", "cad", &ZelDbSqliteModel::cadGetHashInfo,
        ZelDbColumn::ShortName, dissociationDetails, zgs::getPixMapForDissociation},
};

constexpr Kind degradationKind{-1, "Degradation: ", "deg", &ZelDbSqliteModel::degGetHashInfo,
    ZelDbColumn::ShortName, nullptr, zgs::getPixMapForDegradation};

/// An entry while it is put together.
struct Entry
{
    std::unique_ptr<QStandardItem> item = std::make_unique<QStandardItem>();
    QString text;
    QString details;
};

void describeMolecule(const ZelDbRecord &record, Entry *entry)
{
    if (record.value(ZelDbColumn::Location) == QLatin1String(ZelLocation::MembraneAssociated))
        entry->text += QLatin1String("  ------  (Membrane Associated)");
}

// Whether an alias is shown and well defined stands in its record: no further questions, which a
// long list would feel.
void describeAlias(const ZelDbRecord &record, bool checkShow, Entry *entry)
{
    if (checkShow && record.value(ZelDbColumn::CpaShown) != QLatin1String("1")) {
        entry->text.prepend(QLatin1String("* "));
        entry->item->setToolTip(QStringLiteral("Complex is set not to show"));
        entry->item->setEnabled(false);
        entry->item->setSelectable(false);
    }
    if (record.value(ZelDbColumn::CpaWellDefined) == QLatin1String("1"))
        entry->text += QLatin1String("   [ Well Defined ]");
}

QStandardItem *finish(Entry *entry, const Kind *kind, const QString &psiimId, const QString &note)
{
    if (!entry->details.isEmpty())
        entry->text += QLatin1String("  - - ( ") + entry->details + QLatin1String(" )");
    if (!note.isEmpty())
        entry->text += QLatin1String("  - - ") + note;
    entry->item->setText(entry->text);
    entry->item->setEditable(false);
    if (kind)
        entry->item->setData(QString(QLatin1String(kind->tag) + u';' + psiimId), Qt::UserRole);
    return entry->item.release();
}

void addPicture(Entry *entry, const Kind &kind, const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *db, QHash<QString, QPixmap> *psiim2Pixmap)
{
    const QPixmap picture = kind.picture(psiimId, complexSize, db, psiim2Pixmap);
    if (picture.isNull())
        return;
    QIcon icon;
    icon.addPixmap(picture, QIcon::Normal, QIcon::Off);
    entry->item->setIcon(icon);
}

} // namespace

QStandardItem *zgs::createItem(ZelDbSqliteModel *zelDbSqliteModel, const QSize &complexSize,
    const QString &, const QString &psiimId, int kind, bool withPrefix, const QString &note,
    bool checkShow, const QStringList &, QHash<QString, QPixmap> *psiim2Pixmap, const QStringList &)
{
    const auto report = [&] {
        qDebug() << "Error found at QStandardItem * zgs::createItem()" << kind << psiimId;
    };
    const Kind *const listed = std::find_if(std::begin(kinds), std::end(kinds),
        [kind](const Kind &entry) { return entry.kind == kind; });
    Entry entry;
    if (listed == std::end(kinds)) {
        report();
        return finish(&entry, nullptr, psiimId, note);
    }
    if (withPrefix)
        entry.text = QLatin1String(listed->prefix);
    // Without an id it is a heading over records of the kind.
    const ZelDbRecord record = zelDbSqliteModel && !psiimId.isEmpty()
        ? (zelDbSqliteModel->*listed->read)(psiimId)
        : ZelDbRecord();
    if (!record.isEmpty()) {
        entry.text += record.value(listed->nameColumn);
        if (kind == ListedMol)
            describeMolecule(record, &entry);
        if (listed->details)
            entry.details = listed->details(record);
    } else if (!psiimId.isEmpty() && !listed->picture) {
        report();
    }
    if (kind == ListedCpa) {
        describeAlias(record, checkShow, &entry);
        if (note.isEmpty() && !record.isEmpty())
            entry.details = degradationRate(zelDbSqliteModel->degGetDegradationRate(psiimId));
    }
    if (listed->picture)
        addPicture(&entry, *listed, psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    return finish(&entry, listed, psiimId, note);
}

QStandardItem *zgs::createDegradationItem(ZelDbSqliteModel *zelDbSqliteModel,
    const QSize &complexSize, const QString &psiimId, bool withPrefix, const QString &note,
    QHash<QString, QPixmap> *psiim2Pixmap)
{
    Entry entry;
    if (withPrefix)
        entry.text = QLatin1String(degradationKind.prefix);
    const ZelDbRecord record =
        zelDbSqliteModel ? zelDbSqliteModel->degGetHashInfo(psiimId) : ZelDbRecord();
    if (!record.isEmpty()) {
        entry.text += record.value(ZelDbColumn::ShortName);
        const QString rate = degradationRate(record.value(ZelDbColumn::DegradationRate));
        const QString complexName =
            zelDbSqliteModel->cpaGetHashInfo(record.value(ZelDbColumn::DegradationCpa))
                .value(ZelDbColumn::CpaShortName);
        entry.details = rate;
        if (!complexName.isEmpty())
            entry.details +=
                QLatin1String(rate.isEmpty() ? "complex: " : ", complex: ") + complexName;
    }
    addPicture(&entry, degradationKind, psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    return finish(&entry, &degradationKind, psiimId, note);
}
