#include "zelModelSupport/graphics/ZelSceneCxi.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/scene/ZelSceneCxiResult.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <utility>

namespace {

constexpr int CpxCount = 2;

} // namespace

ZelSceneCxi::ZelSceneCxi(QObject *parent) : ZelSceneEditing(parent)
{
    setZelSceneType(ZelSceneType::Cxi);
    setAllowToDisplayBindingStatus(true);
    // Not signal_changed(), which also says that a drag begins and is said again after a change.
    connect(this, &ZelScene::signal_changeEnd, this, &ZelSceneCxi::updateResult);
    connect(this, &ZelSceneEditing::signal_selectionChanged, this, [this](Sdc *sdc) {
        if (SdcBstBstCxi *bond = sdc ? sdc->toSdcBstBstCxi() : nullptr)
            setCurrentBond(bond);
    });
}

ZelSceneCxi::~ZelSceneCxi() = default;

SdcCxi *ZelSceneCxi::getSdcCxi() const
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcCxi() : nullptr;
}

void ZelSceneCxi::setSdc(Sdc *sdc)
{
    if (m_ownCxi && sdc != m_ownCxi) {
        removeContents();
        delete m_ownCxi.data();
    }
    ZelSceneEditing::setSdc(sdc);
    if (SdcCxi *cxi = getSdcCxi()) {
        for (Sdc *child : cxi->getListSdcChildren())
            showStates(child ? child->toSdcCpx() : nullptr);
    }
    updateResult();
}

bool ZelSceneCxi::load(const QString &caiPsiimId)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || db->caiGetHashInfo(caiPsiimId).isEmpty())
        return false;
    const Change change(this);
    removeContents();
    removeAllItems();
    getMolParent();
    SdcCxi *const cxi = getSdcCxi();
    if (!cxi)
        return false;
    const QList<SdcBstBstCxi *> bonds = cxi->getListSdcBstBstCxi();
    for (SdcBstBstCxi *bond : bonds) // without sites
        removeSdcBstBst(bond);
    clearToLoad(cxi);
    m_loading = true;
    const bool loaded = cxi->loadFromDb(caiPsiimId, this);
    m_loading = false;
    for (Sdc *child : cxi->getListSdcChildren())
        showStates(child ? child->toSdcCpx() : nullptr);
    contentsChanged();
    return loaded;
}

bool ZelSceneCxi::loadSdc(const QString &psiimId)
{
    return load(psiimId);
}

SdcCpx *ZelSceneCxi::addCpaFromDb(const QString &cpaPsiimId, const QPointF &scenePos)
{
    const QString reason = getRecordRefusal(QStringLiteral("cpa"), cpaPsiimId);
    if (!reason.isEmpty()) {
        refuseRecord(reason);
        return nullptr;
    }
    const QPointer<ZelSceneCxi> self = this;
    QPointer<SdcCpx> cpx;
    {
        const Change change(this);
        cpx = new SdcCpx(getZelDbSqliteModel());
        cpx->loadCpaFromDb(cpaPsiimId, this);
        placeAt(cpx->getListSdcMcp(), scenePos);
        if (Sdc *parentSdc = cpx ? getMolParent() : nullptr)
            parentSdc->addSdcChild(cpx, true);
        showStates(cpx);
    }
    if (self)
        contentsChanged();
    return cpx;
}

bool ZelSceneCxi::addRecordFromDb(
    const QString &tag, const QString &psiimId, const QPointF &scenePos)
{
    if (tag == QLatin1String("cpa"))
        return addCpaFromDb(psiimId, scenePos);
    refuseRecord(getRecordRefusal(tag, psiimId));
    return false;
}

QString ZelSceneCxi::getRecordRefusal(const QString &tag, const QString &psiimId)
{
    if (isReadOnly())
        return tr("This drawing cannot be changed.");
    if (tag != QLatin1String("cpa"))
        return tr("Only complexes can be added to a complex interaction.");
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db)
        return tr("There is no model to take a complex from. Open a model first.");
    if (db->cpaGetCpxPsiimId(psiimId).isEmpty())
        return tr("The model has no complex \"%1\".").arg(psiimId);
    SdcCxi *const cxi = getSdcCxi();
    const QList<SdcCpx *> present = cxi ? cxi->getListSdcCpx() : QList<SdcCpx *>();
    if (present.size() >= CpxCount)
        return tr("An interaction joins two complexes. Delete one of them first.");
    if (!present.isEmpty() && !cxi->getListSdcBstBstCxi().isEmpty())
        return tr("The bond closes a ring within one complex. Delete it first to add another "
                  "complex.");
    return {};
}

QString ZelSceneCxi::getBondRefusal(SdcBst *first, SdcBst *second)
{
    const QString reason = ZelSceneEditing::getBondRefusal(first, second);
    if (!reason.isEmpty())
        return reason;
    SdcCxi *const cxi = getSdcCxi();
    const bool sameComplex = first->getParentSdcCpx() == second->getParentSdcCpx();
    if (sameComplex && cxi->getListSdcCpx().size() > 1)
        return tr("Both binding sites belong to the same complex. Draw the bond to a site of the "
                  "other complex.");
    for (SdcBstBstCxi *bond : cxi->getListSdcBstBstCxi()) {
        if (bond && bond->isSameSdcBstBst(first, second))
            return tr("These two binding sites are joined already.");
    }
    return {};
}

QString ZelSceneCxi::getSiteRefusal(SdcBst *site)
{
    SdcCpx *const cpx = site ? site->getParentSdcCpx() : nullptr;
    SdcCxi *const cxi = getSdcCxi();
    if (site && site->getParentSdcMol() && (!cpx || !cxi || cpx->getParentSdc() != cxi))
        return tr("Binding site \"%1\" does not belong to a complex of this interaction.")
            .arg(getSiteName(site));
    return ZelSceneEditing::getSiteRefusal(site);
}

SdcBstBst *ZelSceneCxi::addBond(SdcBst *first, SdcBst *second)
{
    SdcCxi *const cxi = getSdcCxi();
    if (!cxi || !isBondAllowed(first, second))
        return nullptr;
    // The first site is one of the first complex, however the bond was drawn.
    if (first->getParentSdcCpx()->getPosIndex() > second->getParentSdcCpx()->getPosIndex())
        std::swap(first, second);
    const Change change(this);
    SdcBstBst *const bond = makeBond(first, second);
    m_currentBond->updatePropertiesFromDb(); // which the making has set
    return bond;
}

SdcBstBst *ZelSceneCxi::makeBond(SdcBst *first, SdcBst *second)
{
    SdcBstBst *const bond = ZelSceneEditing::makeBond(first, second);
    if (bond && bond->isSdcBstBstCxi()) {
        connect(bond, &Sdc::propertyChanged, this, &ZelSceneCxi::updateResultTitle);
        // It may die outside of all changes, and not alone.
        connect(
            bond, &QObject::destroyed, this,
            [this] {
                if (m_result && !m_currentBond)
                    updateResult();
            },
            Qt::QueuedConnection);
        m_currentBond = bond->toSdcBstBstCxi();
    }
    return bond;
}

Sdc *ZelSceneCxi::getUnit(Sdc *sdc)
{
    return sdc ? sdc->getParentSdcCpx() : nullptr;
}

SdcBstBstCxi *ZelSceneCxi::getCurrentBond() const
{
    return m_currentBond;
}

void ZelSceneCxi::setCurrentBond(SdcBstBstCxi *bond)
{
    if (bond == m_currentBond)
        return;
    m_currentBond = bond;
    updateResult();
}

SdcCpx *ZelSceneCxi::getResultSdcCpx() const
{
    return m_result ? m_result->getSdcCpx() : nullptr;
}

QString ZelSceneCxi::getResultTitle() const
{
    return m_result ? m_result->getTitle() : QString();
}

QRectF ZelSceneCxi::getResultRect() const
{
    return m_result ? m_result->sceneBoundingRect() : QRectF();
}

Sdc *ZelSceneCxi::getMolParent()
{
    if (!getSdc()) {
        m_ownCxi = new SdcCxi(getZelDbSqliteModel(), this);
        setSdc(m_ownCxi);
    }
    return getSdc();
}

QString ZelSceneCxi::getUnitWord() const
{
    return tr("Complex");
}

void ZelSceneCxi::restored()
{
    updateResult();
    ZelSceneEditing::restored();
}

void ZelSceneCxi::updateResult()
{
    if (m_loading || std::exchange(m_updatingResult, true))
        return;
    SdcCxi *const cxi = getSdcCxi();
    const auto isComplete = [](SdcBstBstCxi *bond) {
        return bond && bond->getSdcBst1() && bond->getSdcBst2();
    };
    QList<SdcBstBstCxi *> bonds = cxi ? cxi->getListSdcBstBstCxi() : QList<SdcBstBstCxi *>();
    bonds.removeIf([&](SdcBstBstCxi *bond) { return !isComplete(bond); });
    if (!bonds.contains(m_currentBond))
        m_currentBond = bonds.isEmpty() ? nullptr : bonds.last();
    if (!m_currentBond) {
        delete m_result.data();
    } else {
        const ZelSceneState state = ZelSceneState::take(this).withBond(
            this, m_currentBond->getSdcBst1(), m_currentBond->getSdcBst2());
        if (!m_result) {
            m_result = new ZelSceneCxiResult(getZelDbSqliteModel());
            addItem(m_result);
        }
        m_result->show(state);
        for (SdcBstBstCxi *bond : std::as_const(bonds)) {
            if (bond == m_currentBond)
                bond->setSdcCpxResult(m_result->getSdcCpx());
            else if (bond->getSdcCpxResult() == m_result->getSdcCpx())
                bond->setSdcCpxResult(nullptr); // which shows another one now
        }
        updateResultTitle();
        placeResult();
    }
    m_updatingResult = false;
}

void ZelSceneCxi::updateResultTitle()
{
    if (m_result && m_currentBond)
        m_result->setTitle(resultTitle(m_currentBond));
}

void ZelSceneCxi::placeResult()
{
    const QRectF all = getSceneRectForAllItems();
    const QRectF own = m_result->boundingRect();
    m_result->setPos(all.right() + zel::drawing::ResultGap - own.left(), all.center().y());
    followContents();
}

QString ZelSceneCxi::resultTitle(SdcBstBstCxi *bond) const
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString alias = bond->getProperty(SdcProperty::ResultCpaPsiimId);
    const QString name = db && !alias.isEmpty()
        ? db->cpaGetHashInfo(alias).value(ZelDbColumn::CpaShortName)
        : QString();
    return name.isEmpty() ? tr("Result") : tr("Result: %1").arg(name);
}
