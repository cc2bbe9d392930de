// Aliases: a stored complex in given states, and which stored complexes are alike.

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxLoader.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCode.h"

#include <QDebug>
#include <QSet>

#include <memory>

namespace {

/// The complex as its records have it, without a drawing; null when there is none.
std::unique_ptr<SdcCpx> undrawn(const QString &cpxPsiimId, SdcMolType::Reader *types)
{
    ZelDbSqliteModel *const db = types->db();
    if (db->cpxGetHashInfo(cpxPsiimId).isEmpty())
        return nullptr;
    auto cpx = std::make_unique<SdcCpx>(db);
    cpx->setProperty(SdcProperty::PsiimId, cpxPsiimId);
    const QStringList molIds = db->cpxGetListMolPsiimId(cpxPsiimId);
    for (const QString &molId : molIds) {
        auto *const mol = new SdcMol(db);
        mol->setProperty(SdcProperty::PsiimId, molId);
        cpx->addSdcChild(mol, true);
        const std::shared_ptr<const SdcMolType> type = types->read(molId);
        for (const SdcMolType::Mcp &mcpType : type ? type->mcps : QList<SdcMolType::Mcp>()) {
            auto *const mcp = new SdcMcp(db);
            mcp->setProperty(SdcProperty::PsiimId, mcpType.psiimId);
            mol->addSdcMcp(mcp);
            for (const QString &bstId : mcpType.bstPsiimIds) {
                auto *const bst = new SdcBst(db);
                bst->setProperty(SdcProperty::PsiimId, bstId);
                mcp->addSdcBst(bst);
            }
        }
    }
    cpx->updateBstBstCpx(nullptr, true);
    return cpx;
}

/// The fingerprints of what is left when one ring bond is opened.
QSet<QString> openedFingerPrints(SdcCpx *cpx)
{
    QSet<QString> fingerPrints;
    const QList<SdcBstBstCpx *> bonds = cpx->getListSdcBstBstCpx();
    for (SdcBstBstCpx *bond : bonds) {
        if (!cpx->isBstBstPartOfRing(bond))
            continue;
        cpx->removeSdcBstBstCpx(bond);
        fingerPrints.insert(cpx->getCpxFingerPrint());
        cpx->addSdcBstBstCpx(bond);
    }
    return fingerPrints;
}

} // namespace

bool SdcCpx::retrieveAliasBasedOnState(bool clearIfMissing)
{
    // States may have changed since the order was computed, and the code is written over it.
    reRankMols(true, true);
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString cpaId = db
        ? db->cpaGetPsiimId(getPsiimId(), getProperty(SdcProperty::CpaKey2), getAliasMcpStateCode())
        : QString();
    if (!cpaId.isEmpty()) {
        setProperty(SdcProperty::CpaPsiimId, cpaId);
        setProperty(
            SdcProperty::CpaShortName, db->cpaGetHashInfo(cpaId).value(ZelDbColumn::CpaShortName));
        return true;
    }
    if (clearIfMissing) {
        setProperty(SdcProperty::CpaPsiimId, QString());
        setProperty(SdcProperty::CpaShortName, QString());
    }
    return false;
}

bool SdcCpx::updateDbToAlias(bool clearIfMissing)
{
    return retrieveAliasBasedOnState(clearIfMissing);
}

bool SdcCpx::saveToDbCpa()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    setRefusal(QString());
    if (!db || db->cpxGetHashInfo(getPsiimId()).isEmpty()) {
        qDebug() << "Error found at bool SdcCpx::saveToDbCpa(): save the complex first";
        setRefusal(QStringLiteral("save the complex first, then its states"));
        return false;
    }
    if (!areAllConnected()) {
        qDebug() << "Warning at bool SdcCpx::saveToDbCpa(), Complex component are not all "
                    "connected. Can't save.";
        setRefusal(getSaveRefusal());
        return false;
    }
    if (retrieveAliasBasedOnState(false))
        return true;
    // The name of an alias that it was until its states changed is not its own any more.
    const QString attached = getProperty(SdcProperty::CpaPsiimId);
    QString name = getProperty(SdcProperty::CpaShortName);
    if (!attached.isEmpty()
        && db->cpaGetHashInfo(attached).value(ZelDbColumn::CpaShortName) == name)
        name.clear();
    if (name.isEmpty()) {
        name = getProperty(SdcProperty::ShortName);
        if (name.isEmpty())
            name = getDefaultSpeciesName();
    }
    ZelDbTransaction transaction(db->database());
    name = ZelDbSqlite::getFreeShortName(QStringLiteral("cpa"), name, QString(), db);
    const QString id = name.isEmpty() ? QString() : ZelDb::getNewSdcPsiimId(ZelDb::Cpa, db);
    const bool good = !id.isEmpty()
        && db->cpaInsert(
            id, getPsiimId(), getProperty(SdcProperty::CpaKey2), getAliasMcpStateCode(), name)
        && db->cpaSetWellDefined(id, !isPattern());
    if (!good || !transaction.commit()) {
        qDebug() << "Error found at bool SdcCpx::saveToDbCpa():" << db->errorText();
        setRefusal(db->errorText());
        return false;
    }
    setProperty(SdcProperty::CpaPsiimId, id);
    setProperty(SdcProperty::CpaShortName, name);
    return true;
}

bool SdcCpx::loadCpaFromDb(
    const QString &cpaPsiimId, ZelScene *scene, const QPointF &refPos, bool limited)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbRecord record = db ? db->cpaGetHashInfo(cpaPsiimId) : ZelDbRecord();
    if (record.isEmpty()) {
        qDebug() << "Error found at bool SdcCpx::loadCpaFromDb():" << cpaPsiimId
                 << (db ? "no such alias" : "no database");
        return false;
    }
    const ZelDbReading reading(db->database());
    SdcMolType::Reader types(db);
    if (!SdcCpxLoader(this, &types, scene, refPos, limited)
             .loadAsStored(record.value(ZelDbColumn::CpaCpx)))
        return false;
    setProperty(SdcProperty::CpaPsiimId, cpaPsiimId);
    setProperty(SdcProperty::CpaShortName, record.value(ZelDbColumn::CpaShortName));
    setProperty(SdcProperty::CpaKey2, record.value(ZelDbColumn::CpaKey2));
    SdcCpxStateCode::apply(this, record.value(ZelDbColumn::CpaStateCode), true,
        SdcCpxStateCode::MolPositions::FromOne, &types);
    return true;
}

QStringList SdcCpx::getSplitRingCpxPsiimIds(
    const QString &cpxPsiimId, ZelDbSqliteModel *db, bool includeSelf)
{
    SdcMolType::Reader types(db);
    const std::unique_ptr<SdcCpx> self = db ? undrawn(cpxPsiimId, &types) : nullptr;
    if (!self)
        return {};
    QStringList ids;
    if (includeSelf)
        ids.append(cpxPsiimId);
    const QString fingerPrint = self->getCpxFingerPrint();
    const QSet<QString> opened = openedFingerPrints(self.get());
    const qsizetype bondCount = self->getListSdcBstBstCpx().size();
    const QStringList others = db->cpxGetCpxPsiimIdListAtMolCodeFromCpx(cpxPsiimId, false);
    for (const QString &id : others) {
        const std::unique_ptr<SdcCpx> other = undrawn(id, &types);
        if (!other)
            continue;
        const qsizetype otherCount = other->getListSdcBstBstCpx().size();
        if ((otherCount == bondCount - 1 && opened.contains(other->getCpxFingerPrint()))
            || (otherCount == bondCount + 1
                && openedFingerPrints(other.get()).contains(fingerPrint)))
            ids.append(id);
    }
    return ids;
}

QStringList SdcCpx::getEquivalentCpxPsiimIds(
    const QString &cpxPsiimId, ZelDbSqliteModel *db, bool includeSelf)
{
    // What opens a ring of another is closed to one by it: each of the alike complexes that has
    // this one among its relatives is among its own.
    return getSplitRingCpxPsiimIds(cpxPsiimId, db, includeSelf);
}
