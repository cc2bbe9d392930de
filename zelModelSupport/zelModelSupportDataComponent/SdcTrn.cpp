#include "zelModelSupport/zelModelSupportDataComponent/SdcTrn.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

using namespace SdcReactionStorage;

namespace {

constexpr char SaveFunction[] = "bool SdcTrn::saveToDb()";
constexpr char LoadFunction[] = "bool SdcTrn::loadFromDb(const QString & psiimId, "
                                "ZelScene * scene)";

constexpr StoredProperty trnProperties[]{{SdcProperty::ShortName, ZelDbColumn::ShortName},
    {SdcProperty::Name, ZelDbColumn::Name}, {SdcProperty::Notes, ZelDbColumn::Notes},
    {SdcProperty::Rate, ZelDbColumn::Rate}};

SdcCpx *toCpx(Sdc *sdc)
{
    return sdc ? sdc->toSdcCpx() : nullptr;
}

} // namespace

SdcTrn::SdcTrn(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent) : Sdc(zelDbSqliteModel, parent)
{
    addSdcChild(nullptr, false);
    addSdcChild(nullptr, false);
}

SdcCpx *SdcTrn::getSdcCpxFrom()
{
    return toCpx(getChildSdcAtIndex(0));
}

SdcCpx *SdcTrn::getSdcCpxTo()
{
    return toCpx(getChildSdcAtIndex(1));
}

void SdcTrn::setSdcCpxFrom(SdcCpx *cpx)
{
    if (cpx)
        setSides(cpx, getSdcCpxTo());
}

void SdcTrn::setSdcCpxTo(SdcCpx *cpx)
{
    if (cpx)
        setSides(getSdcCpxFrom(), cpx);
}

bool SdcTrn::loadFromDb(const QString &psiimId, ZelScene *scene)
{
    const ZelDbRecord record = findRecord(
        this, LoadFunction, &ZelDbSqliteModel::trnGetHashInfo, "transformation", psiimId);
    if (record.isEmpty())
        return false;
    SdcCpx *const from =
        newAlias(this, LoadFunction, record.value(ZelDbColumn::TrnFromCpa), nullptr, scene);
    SdcCpx *const to =
        newAlias(this, LoadFunction, record.value(ZelDbColumn::TrnToCpa), from, scene);
    setSides(from, to);
    readProperties(this, "trn", psiimId, record, trnProperties);
    return from && to;
}

bool SdcTrn::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString from = aliasOf(getSdcCpxFrom());
    const QString to = aliasOf(getSdcCpxTo());
    if (!db || !db->database())
        return refuse(this, SaveFunction, QLatin1String(NoDatabase));
    if (from.isEmpty() || to.isEmpty())
        return refuse(this, SaveFunction,
            QStringLiteral("it needs two complexes that are stored in their present states"));
    if (getProperty(SdcProperty::Rate).isEmpty())
        return refuse(this, SaveFunction, QStringLiteral("give a rate"));
    Assignments assignments;
    return writeInTransaction(this, SaveFunction, &assignments, [&](QString *) {
        const QString name = getSdcCpxFrom()->getProperty(SdcProperty::CpaShortName)
            + QLatin1String("_to_") + getSdcCpxTo()->getProperty(SdcProperty::CpaShortName);
        if (!assignIdAndShortName(&assignments, this, ZelDb::Trn, "trn", name, db))
            return false;
        ZelDbRecord record = recordOf(this, trnProperties);
        record.insert({{ZelDbColumn::TrnFromCpa, from}, {ZelDbColumn::TrnToCpa, to}});
        return db->trnInsert(record) && writeReferences(this, "trn", db);
    });
}

void SdcTrn::removeSdcChild(Sdc *child)
{
    SdcCpx *const from = getSdcCpxFrom();
    SdcCpx *const to = getSdcCpxTo();
    if (child && (child == from || child == to)) {
        setSides(child == from ? nullptr : from, child == to ? nullptr : to);
        setChanged();
    }
}

SdcTrn *SdcTrn::toSdcTrn()
{
    return this;
}

bool SdcTrn::isSdcTrn() const
{
    return true;
}

void SdcTrn::setSides(SdcCpx *from, SdcCpx *to)
{
    const QList<Sdc *> olds = sdcChildren();
    clearChildrenList();
    for (Sdc *old : olds) {
        if (old != from && old != to)
            releaseChild(old);
    }
    addSdcChild(from, false);
    addSdcChild(to, false);
}
