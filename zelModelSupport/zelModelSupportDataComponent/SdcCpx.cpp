#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxConnectivity.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxRanking.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCode.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCodeWriter.h"

#include <QDebug>

#include <algorithm>

SdcCpx::SdcCpx(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Cpx, QStringLiteral("Complex Species"))
{
}

SdcCpx::~SdcCpx()
{
    for (SdcBstBstCpx *bond : std::as_const(m_bonds))
        bond->removeHolder(this);
}

bool SdcCpx::addSdcBstBstCpx(SdcBstBstCpx *bond)
{
    if (!bond || m_bonds.contains(bond))
        return false;
    m_bonds.append(bond);
    bond->addHolder(this);
    bond->setParentSdc(this); // changes of the bond climb to its complex
    m_specisStaticSymmetryState = SymmetryUnknown;
    for (SdcBst *site : bond->getListSdcBst())
        site->updateDisplayBstBindingStatus();
    return true;
}

void SdcCpx::removeSdcBstBstCpx(SdcBstBstCpx *bond)
{
    m_specisStaticSymmetryState = SymmetryUnknown;
    if (m_bonds.removeAll(bond) == 0)
        return;
    bond->removeHolder(this);
    if (bond->getParentSdc() == this)
        bond->setParentSdc(nullptr);
    for (SdcBst *site : bond->getListSdcBst())
        site->updateDisplayBstBindingStatus();
}

bool SdcCpx::hasSdcBstBstCpx(SdcBstBstCpx *bond) const
{
    return m_bonds.contains(bond);
}

SdcBstBstCpx *SdcCpx::getSdcBstBstCpxFromIndex(int index) const
{
    return m_bonds.value(index);
}

int SdcCpx::getSdcBstBstCpxIndex(SdcBstBstCpx *bond) const
{
    return static_cast<int>(m_bonds.indexOf(bond));
}

SdcBstBstCpx *SdcCpx::getSdcBstBstCpx(SdcBst *a, SdcBst *b) const
{
    for (SdcBstBstCpx *bond : m_bonds) {
        if (bond->isSameSdcBstBst(a, b))
            return bond;
    }
    return nullptr;
}

bool SdcCpx::isSdcBstInvolvedInBstBst(SdcBst *bst) const
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(),
        [bst](const SdcBstBstCpx *bond) { return bond->hasSdcBst(bst); });
}

SdcBst *SdcCpx::getPartnerSdcBstFromBstBstCpx(SdcBst *bst) const
{
    for (const SdcBstBstCpx *bond : m_bonds) {
        if (bond->hasSdcBst(bst))
            return bond->getPartnerSdcBst(bst);
    }
    return nullptr;
}

QList<SdcBstBstCpx *> SdcCpx::getListSdcBstBstCpxFromListSdcBst(const QList<SdcBst *> &sites) const
{
    QList<SdcBstBstCpx *> list;
    for (SdcBstBstCpx *bond : m_bonds) {
        if (std::any_of(sites.cbegin(), sites.cend(),
                [bond](SdcBst *site) { return bond->hasSdcBst(site); }))
            list.append(bond);
    }
    return list;
}

SdcBst *SdcCpx::getSdcBstFromMolPosBstId(const QString &molPos, const QString &bstId)
{
    Sdc *const child = getChildSdcAtIndex(molPos.toInt());
    if (!child || bstId.isEmpty())
        return nullptr;
    const QList<SdcBst *> sites = child->getListSdcBst();
    const auto at = std::find_if(sites.cbegin(), sites.cend(),
        [&bstId](const SdcBst *site) { return site->getPsiimId() == bstId; });
    return at == sites.cend() ? nullptr : *at;
}

void SdcCpx::updateBstBstCpx(ZelScene *scene, bool force)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (getPsiimId().isEmpty() || !db)
        return;
    const auto isAccepted = [force](SdcBst *a, SdcBst *b) {
        return a && b && (force || a->closeToBst(b));
    };
    const QList<QStringList> records = db->cpxGetArrayBstBst(getPsiimId());
    for (const QStringList &record : records) {
        const QString molPos1 = record.value(0);
        const QString bstId1 = record.value(1);
        const QString molPos2 = record.value(2);
        const QString bstId2 = record.value(3);
        SdcBst *first = getSdcBstFromMolPosBstId(molPos1, bstId1);
        SdcBst *second = getSdcBstFromMolPosBstId(molPos2, bstId2);
        if (!isAccepted(first, second)) {
            SdcBst *const swappedFirst = getSdcBstFromMolPosBstId(molPos2, bstId1);
            SdcBst *const swappedSecond = getSdcBstFromMolPosBstId(molPos1, bstId2);
            if (isAccepted(swappedFirst, swappedSecond)) {
                first = swappedFirst;
                second = swappedSecond;
                switchChildrenBetween2Indices(molPos1.toInt(), molPos2.toInt());
            } else {
                qDebug() << "Error found at void SdcCpx::updateBstBstCpx(ZelScene * scene) ";
            }
        }
        SdcBstBstCpx *bond = nullptr;
        if (scene) {
            bond = scene->addSdcBstBstCpx(first, second);
        } else {
            bond = new SdcBstBstCpx(db, this);
            bond->addSdcBst(first);
            bond->addSdcBst(second);
        }
        addSdcBstBstCpx(bond);
    }
}

bool SdcCpx::areAllConnected()
{
    return SdcCpxConnectivity::isConnectedWithin(getChildMolList(), toListSdcBstBst(m_bonds));
}

bool SdcCpx::areListMolConnected(const QList<SdcMol *> &listMol, const QList<SdcBstBst *> &listSbb)
{
    if (listMol.isEmpty())
        return false;
    QList<SdcMol *> remaining = listMol;
    getConnectedListMol(listMol.first(), remaining, listSbb);
    return remaining.isEmpty();
}

QList<SdcMol *> SdcCpx::getConnectedListMol(
    SdcMol *mol, QList<SdcMol *> &remaining, const QList<SdcBstBst *> &listSbb)
{
    const QList<SdcMol *> reached = SdcCpxConnectivity::reachable(mol, listSbb);
    const QSet<SdcMol *> isReached(reached.cbegin(), reached.cend());
    remaining.removeIf([&isReached](SdcMol *entry) { return isReached.contains(entry); });
    return reached;
}

bool SdcCpx::isBstBstPartOfRing(SdcBstBstCpx *sbbc)
{
    if (!sbbc || !hasSdcBstBstCpx(sbbc))
        return false;
    const auto [first, second] = SdcCpxConnectivity::endsOf(sbbc);
    if (first && first == second) {
        qDebug() << "Error found at bool SdcCpx::isBstBstPartOfRing(SdcBstBstCpx * sbbc)";
        return false;
    }
    return SdcCpxConnectivity::isPartOfRing(sbbc, toListSdcBstBst(m_bonds));
}

bool SdcCpx::hasRingStructure()
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(),
        [this](SdcBstBstCpx *bond) { return isBstBstPartOfRing(bond); });
}

bool SdcCpx::isAbsoluteRingCpx()
{
    return !m_bonds.isEmpty() && getListNoRingBstBstCpx().isEmpty();
}

QList<SdcBstBstCpx *> SdcCpx::getListNoRingBstBstCpx()
{
    QList<SdcBstBstCpx *> list;
    for (SdcBstBstCpx *bond : std::as_const(m_bonds)) {
        if (!isBstBstPartOfRing(bond))
            list.append(bond);
    }
    return list;
}

bool SdcCpx::canBeSplit()
{
    const QList<SdcBstBstCpx *> list = getListNoRingBstBstCpx();
    return std::any_of(list.cbegin(), list.cend(), [](const SdcBstBstCpx *bond) {
        const auto [first, second] = SdcCpxConnectivity::endsOf(bond);
        return first && second && first != second;
    });
}

bool SdcCpx::isMcpChildrenInvolvedInBstBstCpx(SdcMcp *mcp) const
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(),
        [mcp](const SdcBstBstCpx *bond) { return SdcCpxConnectivity::touches(bond, mcp); });
}

bool SdcCpx::AreAllOutwardBstsFree()
{
    return getNumOfFreeBst() == getListSdcBst().size();
}

bool SdcCpx::isMolWithOneLinkedCpxBstBst(SdcMol *mol) const
{
    return std::count_if(m_bonds.cbegin(), m_bonds.cend(), [mol](const SdcBstBstCpx *bond) {
        return SdcCpxConnectivity::touches(bond, mol);
    }) == 1;
}

bool SdcCpx::isMcpWithOneDirectLinkedCpxBstBst(SdcMcp *mcp) const
{
    return std::count_if(m_bonds.cbegin(), m_bonds.cend(), [mcp](const SdcBstBstCpx *bond) {
        return SdcCpxConnectivity::touches(bond, mcp);
    }) == 1;
}

bool SdcCpx::isMcpLinkedToCpxBstBst(SdcMcp *a, SdcMcp *b) const
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(), [a, b](const SdcBstBstCpx *bond) {
        SdcBst *const first = bond->getSdcBst1();
        SdcBst *const second = bond->getSdcBst2();
        if (!a || !b || !first || !second)
            return false;
        return (first->getParentMcp() == a && second->getParentMcp() == b)
            || (first->getParentMcp() == b && second->getParentMcp() == a);
    });
}

QList<SdcMol *> SdcCpx::getListLinkedSdcMolToSdcMol(SdcMol *mol) const
{
    QList<SdcMol *> list;
    for (const SdcBstBstCpx *bond : m_bonds) {
        const auto [first, second] = SdcCpxConnectivity::endsOf(bond);
        if (first != mol && second != mol)
            continue;
        SdcMol *const other = first == mol ? second : first;
        if (other && other != mol && !list.contains(other))
            list.append(other);
    }
    return list;
}

QList<SdcMol *> SdcCpx::getChildMolList()
{
    QList<SdcMol *> list;
    list.reserve(sdcChildren().size());
    for (Sdc *child : sdcChildren()) {
        if (SdcMol *mol = child ? child->toSdcMol() : nullptr)
            list.append(mol);
    }
    return list;
}

int SdcCpx::getNumOfFreeBst()
{
    const QList<SdcBst *> sites = getListSdcBst();
    return static_cast<int>(std::count_if(sites.cbegin(), sites.cend(),
        [this](SdcBst *site) { return !isSdcBstInvolvedInBstBst(site); }));
}

bool SdcCpx::hasInconsistentBinding() const
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(),
        [](const SdcBstBstCpx *bond) { return bond->isInconsistentBinding(); });
}

bool SdcCpx::containsMemAssociatedMol()
{
    const QList<SdcMol *> mols = getListSdcMol();
    return std::any_of(mols.cbegin(), mols.cend(), [](const SdcMol *mol) {
        return mol->getProperty(SdcProperty::Location)
            == QLatin1String(ZelLocation::MembraneAssociated);
    });
}

QString SdcCpx::getMcpStateCodeSignature(const QList<SdcMol *> &listSdcMol, bool withMolPsiimId)
{
    return SdcCpxStateCodeWriter(listSdcMol, SdcCpxStateCodeWriter::StatesAndBindings)
        .text(withMolPsiimId, SdcCpxStateCodeWriter::Bare);
}

QString SdcCpx::getAliasMcpStateCode()
{
    if (m_specisStaticSymmetryState == SymmetryUnknown)
        reRankMols(true, true);
    return SdcCpxStateCodeWriter(getChildMolList(), SdcCpxStateCodeWriter::StatesAndBindings)
        .text(false, SdcCpxStateCodeWriter::WithElement);
}

void SdcCpx::loadAliasMcpStateCode(const QString &stateCode, bool loadBindingStatus)
{
    SdcCpxStateCode::apply(
        this, stateCode, loadBindingStatus, SdcCpxStateCode::MolPositions::AsWritten);
}

QString SdcCpx::getBstBindingCode()
{
    return getBstBindingCodeFromListMol(getListSdcMol());
}

QString SdcCpx::getBstBindingCodeFromListMol(const QList<SdcMol *> &listSdcMol)
{
    return SdcCpxStateCodeWriter(listSdcMol, SdcCpxStateCodeWriter::BindingsOnly)
        .text(true, SdcCpxStateCodeWriter::WithElement);
}

bool SdcCpx::isPattern()
{
    const QList<SdcBst *> sites = getListSdcBst();
    return hasTagDontCareOrNegation()
        || std::any_of(sites.cbegin(), sites.cend(),
            [](SdcBst *site) { return site->isDontCareBindingStatus(); });
}

bool SdcCpx::isInBindingStatus(int status)
{
    const QList<SdcBst *> sites = getListSdcBst();
    return !sites.isEmpty() && std::all_of(sites.cbegin(), sites.cend(), [status](SdcBst *site) {
        return site->getBindingStatus() == status;
    });
}

QRectF SdcCpx::getSdcSceneRectF(bool withBonds)
{
    QRectF rect = getSdcSceneRectF();
    for (const SdcBstBstCpx *bond : std::as_const(m_bonds)) {
        const ZelLineItemBstBst *const line = withBonds ? bond->getZelLineItemBstBst() : nullptr;
        if (line)
            rect |= line->sceneBoundingRect();
    }
    return rect;
}

void SdcCpx::addSdcChild(Sdc *child, bool addToItemModel)
{
    Sdc::addSdcChild(child, addToItemModel);
    m_specisStaticSymmetryState = SymmetryUnknown;
}

void SdcCpx::removeSdcChild(Sdc *child)
{
    Sdc::removeSdcChild(child);
    m_specisStaticSymmetryState = SymmetryUnknown;
}

void SdcCpx::reset()
{
    const QList<SdcBstBstCpx *> bonds = m_bonds;
    for (SdcBstBstCpx *bond : bonds)
        removeSdcBstBstCpx(bond);
    m_listMolPrevIndices.clear();
    Sdc::reset();
    m_specisStaticSymmetryState = SymmetryUnknown;
}

bool SdcCpx::isEmpty()
{
    return Sdc::isEmpty() && m_bonds.isEmpty();
}

void SdcCpx::setAllMcpFeatureValue(ComponentStateType value)
{
    for (SdcMol *mol : getListSdcMol())
        mol->setAllMcpFeatureValue(value);
}

SdcCpx *SdcCpx::toSdcCpx()
{
    return this;
}

bool SdcCpx::isSdcCpx() const
{
    return true;
}

void SdcCpx::setBstBindingStatusEnabled(bool enabled)
{
    m_bstBindingStatusEnabled = enabled;
}

bool SdcCpx::isBstBindingStatusDisplayEnabled()
{
    return m_bstBindingStatusEnabled;
}

void SdcCpx::setHighlight(bool status, bool extendable)
{
    Sdc::setHighlight(status, extendable);
    for (SdcBstBstCpx *bond : std::as_const(m_bonds))
        bond->setHighlight(status, extendable);
}

void SdcCpx::setHighlight(bool status)
{
    setHighlight(status, false);
}

void SdcCpx::forgetBond(SdcBstBst *bond)
{
    m_bonds.removeIf([bond](SdcBstBstCpx *entry) { return entry == bond; });
    m_specisStaticSymmetryState = SymmetryUnknown;
}

bool SdcCpx::lists(const SdcBstBst *bond) const
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(),
        [bond](const SdcBstBstCpx *entry) { return entry == bond; });
}
