#include "zelModelSupport/zelModelSupportDataComponent/SdcTrn.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcReactionStorage.h"

#include <array>

using namespace SdcReactionStorage;

namespace {

constexpr char SaveFunction[] = "bool SdcTrn::saveToDb()";
constexpr char LoadFunction[] = "bool SdcTrn::loadFromDb(const QString & psiimId, "
                                "ZelScene * scene)";

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
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbRecord record = db ? db->trnGetHashInfo(psiimId) : ZelDbRecord();
    if (record.isEmpty()) {
        report(LoadFunction,
            db ? QStringLiteral("no transformation ") + psiimId : QStringLiteral("no database"));
        return false;
    }
    std::array<SdcCpx *, 2> sides{};
    Sdc *before = nullptr;
    for (const std::size_t i : {0, 1}) {
        const QString alias =
            record.value(i == 0 ? ZelDbColumn::TrnFromCpa : ZelDbColumn::TrnToCpa);
        auto *const cpx = new SdcCpx(db, this);
        if (loadAlias(cpx, alias, {}, scene, placeBeside(before))) {
            sides[i] = cpx;
            before = cpx;
        } else {
            delete cpx;
            report(LoadFunction, QStringLiteral("no complex in the stored states ") + alias);
        }
    }
    setSides(sides[0], sides[1]);
    setProperty(SdcProperty::PsiimId, psiimId);
    setProperty(SdcProperty::ShortName, record.value(ZelDbColumn::ShortName));
    setProperty(SdcProperty::Name, record.value(ZelDbColumn::Name));
    setProperty(SdcProperty::Notes, record.value(ZelDbColumn::Notes));
    setProperty(SdcProperty::Rate, record.value(ZelDbColumn::Rate));
    setProperty(SdcProperty::References, db->refGetReferences(QStringLiteral("trn"), psiimId));
    return sides[0] && sides[1];
}

bool SdcTrn::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString from = aliasOf(getSdcCpxFrom());
    const QString to = aliasOf(getSdcCpxTo());
    QString obstacle;
    if (!db || !db->database())
        obstacle = QStringLiteral("no database");
    else if (from.isEmpty() || to.isEmpty())
        obstacle = QStringLiteral("it needs two complexes that are stored in their present states");
    else if (getProperty(SdcProperty::Rate).isEmpty())
        obstacle = QStringLiteral("give a rate");
    if (!obstacle.isEmpty()) {
        report(SaveFunction, obstacle);
        return false;
    }
    Assignments assignments;
    return writeInTransaction(db, SaveFunction, &assignments, [&] {
        if (!assignId(&assignments, this, ZelDb::Trn, db))
            return false;
        assignShortName(&assignments, this, "trn",
            getSdcCpxFrom()->getProperty(SdcProperty::CpaShortName) + QLatin1String("_to_")
                + getSdcCpxTo()->getProperty(SdcProperty::CpaShortName),
            db);
        return db->trnInsert({{ZelDbColumn::PsiimId, getPsiimId()},
                   {ZelDbColumn::ShortName, getProperty(SdcProperty::ShortName)},
                   {ZelDbColumn::Name, getProperty(SdcProperty::Name)},
                   {ZelDbColumn::Notes, getProperty(SdcProperty::Notes)},
                   {ZelDbColumn::TrnFromCpa, from}, {ZelDbColumn::TrnToCpa, to},
                   {ZelDbColumn::Rate, getProperty(SdcProperty::Rate)}})
            && writeReferences(this, "trn", db);
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
    const QList<Sdc *> olds = children();
    clearChildrenList();
    for (Sdc *old : olds) {
        if (old != from && old != to)
            releaseChild(old);
    }
    addSdcChild(from, false);
    addSdcChild(to, false);
}
