#include "zelModelSupport/graphics/ZelSceneCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

namespace {

bool isAlias(const QString &tag)
{
    return tag == QLatin1String("cpa");
}

} // namespace

ZelSceneCpx::ZelSceneCpx(QObject *parent) : ZelSceneEditing(parent)
{
    setZelSceneType(ZelSceneType::Cpx);
    setAllowToDisplayBindingStatus(true);
    setAllowToChangeBindingStatus(true);
}

ZelSceneCpx::~ZelSceneCpx() = default;

SdcCpx *ZelSceneCpx::getSdcCpx() const
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcCpx() : nullptr;
}

void ZelSceneCpx::setSdc(Sdc *sdc)
{
    if (m_ownCpx && sdc != m_ownCpx) {
        removeContents();
        delete m_ownCpx.data();
    }
    ZelSceneEditing::setSdc(sdc);
    showStates(getSdcCpx());
}

bool ZelSceneCpx::load(const QString &psiimId)
{
    return loadInto(QStringLiteral("cpx"), psiimId);
}

bool ZelSceneCpx::loadAlias(const QString &cpaPsiimId)
{
    return loadInto(QStringLiteral("cpa"), cpaPsiimId);
}

bool ZelSceneCpx::loadSdc(const QString &psiimId)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const bool alias = db && !db->cpaGetCpxPsiimId(psiimId).isEmpty();
    return alias ? loadAlias(psiimId) : load(psiimId);
}

bool ZelSceneCpx::addCpxFromDb(const QString &psiimId, const QPointF &scenePos)
{
    return addContents(QStringLiteral("cpx"), psiimId, scenePos);
}

bool ZelSceneCpx::addCpaFromDb(const QString &cpaPsiimId, const QPointF &scenePos)
{
    return addContents(QStringLiteral("cpa"), cpaPsiimId, scenePos);
}

QString ZelSceneCpx::getSiteRefusal(SdcBst *site)
{
    SdcCpx *const cpx = site ? site->getParentSdcCpx() : nullptr;
    if (site && site->getParentSdcMol() && (!cpx || cpx != getSdcCpx()))
        return tr("Binding site \"%1\" does not belong to this complex.").arg(getSiteName(site));
    return ZelSceneEditing::getSiteRefusal(site);
}

SdcBstBst *ZelSceneCpx::addBond(SdcBst *first, SdcBst *second)
{
    if (!getSdcCpx() || !isBondAllowed(first, second))
        return nullptr;
    const Change change(this);
    return makeBond(first, second);
}

bool ZelSceneCpx::addRecordFromDb(
    const QString &tag, const QString &psiimId, const QPointF &scenePos)
{
    if (tag == QLatin1String("cpx") || isAlias(tag))
        return addContents(tag, psiimId, scenePos);
    return ZelSceneEditing::addRecordFromDb(tag, psiimId, scenePos);
}

QString ZelSceneCpx::getRecordRefusal(const QString &tag, const QString &psiimId)
{
    if (tag != QLatin1String("cpx") && !isAlias(tag)) {
        return tag == QLatin1String("mol")
            ? ZelSceneEditing::getRecordRefusal(tag, psiimId)
            : tr("Only molecules and complexes can be added to a complex.");
    }
    if (isReadOnly())
        return tr("This drawing cannot be changed.");
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db)
        return tr("There is no model to take a complex from. Open a model first.");
    const QString cpxPsiimId = isAlias(tag) ? db->cpaGetCpxPsiimId(psiimId) : psiimId;
    if (cpxPsiimId.isEmpty() || db->cpxGetHashInfo(cpxPsiimId).isEmpty())
        return tr("The model has no complex \"%1\".").arg(psiimId);
    return {};
}

bool ZelSceneCpx::isEditingStates() const
{
    return true;
}

Sdc *ZelSceneCpx::getMolParent()
{
    if (!getSdcCpx()) {
        m_ownCpx = new SdcCpx(getZelDbSqliteModel(), this);
        setSdc(m_ownCpx);
    }
    return getSdcCpx();
}

bool ZelSceneCpx::loadInto(const QString &tag, const QString &psiimId)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString cpxPsiimId = isAlias(tag) && db ? db->cpaGetCpxPsiimId(psiimId) : psiimId;
    if (!db || cpxPsiimId.isEmpty() || db->cpxGetHashInfo(cpxPsiimId).isEmpty())
        return false;
    const Change change(this);
    removeContents();
    removeAllItems();
    getMolParent();
    SdcCpx *const cpx = getSdcCpx();
    clearToLoad(cpx);
    const bool loaded =
        isAlias(tag) ? cpx->loadCpaFromDb(psiimId, this) : cpx->loadCpxFromDb(psiimId, this);
    if (!isAlias(tag))
        settleStates(getSdcCpx());
    showStates(getSdcCpx());
    contentsChanged();
    return loaded;
}

// The record is built as a complex of its own, whose molecules and bonds then change hands.
bool ZelSceneCpx::addContents(const QString &tag, const QString &psiimId, const QPointF &scenePos)
{
    const QString reason = getRecordRefusal(tag, psiimId);
    if (!reason.isEmpty()) {
        refuseRecord(reason);
        return false;
    }
    const Change change(this);
    getMolParent();
    const QPointer<SdcCpx> cpx = getSdcCpx();
    SdcCpx guest(getZelDbSqliteModel());
    const bool loaded =
        isAlias(tag) ? guest.loadCpaFromDb(psiimId, this) : guest.loadCpxFromDb(psiimId, this);
    if (!isAlias(tag))
        settleStates(&guest);
    placeAt(guest.getListSdcMcp(), scenePos);
    const QList<SdcBstBstCpx *> bonds = guest.getListSdcBstBstCpx();
    for (SdcBstBstCpx *bond : bonds)
        guest.removeSdcBstBstCpx(bond);
    const QList<SdcMol *> molecules = guest.getListSdcMol();
    for (SdcMol *mol : molecules) {
        guest.removeSdcChild(mol);
        if (cpx)
            cpx->addSdcChild(mol, true);
    }
    for (SdcBstBstCpx *bond : bonds) {
        if (cpx)
            cpx->addSdcBstBstCpx(bond);
    }
    showStates(cpx);
    contentsChanged();
    return loaded;
}
