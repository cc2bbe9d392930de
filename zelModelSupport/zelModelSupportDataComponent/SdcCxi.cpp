#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <algorithm>

SdcCxi::SdcCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Cxi, QStringLiteral("Complex Interaction"))
{
}

SdcCxi::~SdcCxi()
{
    for (SdcBstBstCxi *bond : std::as_const(m_bonds)) {
        if (bond)
            bond->removeHolder(this);
    }
}

void SdcCxi::addSdcBstBstCxi(SdcBstBstCxi *bond)
{
    m_bonds.append(bond);
    if (!bond)
        return;
    bond->addHolder(this);
    bond->setParentSdc(this); // changes of the bond climb to its interaction
}

void SdcCxi::removeSdcBstBstCxi(SdcBstBstCxi *bond)
{
    if (m_bonds.removeAll(bond) == 0 || !bond)
        return;
    bond->removeHolder(this);
    if (bond->getParentSdc() == this)
        bond->setParentSdc(nullptr);
}

SdcBstBst *SdcCxi::getSdcBstBstCxiFromIndex(int index) const
{
    return m_bonds.value(index);
}

int SdcCxi::getSdcBstBstCxiIndex(SdcBstBstCxi *bond) const
{
    return static_cast<int>(m_bonds.indexOf(bond));
}

QList<SdcBstBstCxi *> SdcCxi::getListSdcBstBstCxiFromListSdcBst(const QList<SdcBst *> &sites) const
{
    QList<SdcBstBstCxi *> list;
    for (SdcBstBstCxi *bond : m_bonds) {
        if (bond && !list.contains(bond)
            && std::any_of(sites.cbegin(), sites.cend(),
                [bond](SdcBst *site) { return bond->hasSdcBst(site); }))
            list.append(bond);
    }
    return list;
}

SdcCpx *SdcCxi::getSdcCpxAtPosIndex(int index)
{
    Sdc *const child = getChildSdcAtIndex(index);
    return child ? child->toSdcCpx() : nullptr;
}

SdcBst *SdcCxi::getSdcBstFromBstPsiimIdAndPosIndices(
    const QString &bstPsiimId, const QString &molPosIndex, const QString &cpxPosIndex)
{
    Sdc *const cpx = getChildSdcAtIndex(cpxPosIndex.toInt());
    Sdc *const mol =
        cpx && !bstPsiimId.isEmpty() ? cpx->getChildSdcAtIndex(molPosIndex.toInt()) : nullptr;
    if (!mol)
        return nullptr;
    const QList<SdcBst *> sites = mol->getListSdcBst();
    const auto at = std::find_if(sites.cbegin(), sites.cend(),
        [&bstPsiimId](const SdcBst *site) { return site->getPsiimId() == bstPsiimId; });
    return at == sites.cend() ? nullptr : *at;
}

void SdcCxi::reset()
{
    Sdc::reset();
    QList<QPointer<SdcBstBstCxi>> bonds(m_bonds.cbegin(), m_bonds.cend());
    for (const QPointer<SdcBstBstCxi> &bond : bonds) {
        if (!bond)
            continue;
        bond->reset();
        removeSdcBstBstCxi(bond);
    }
    m_bonds.clear();
}

SdcCxi *SdcCxi::toSdcCxi()
{
    return this;
}

bool SdcCxi::isSdcCxi() const
{
    return true;
}

void SdcCxi::setHighlight(bool status, bool extendable)
{
    Sdc::setHighlight(status, extendable);
    for (SdcBstBstCxi *bond : std::as_const(m_bonds)) {
        if (bond)
            bond->setHighlight(status, extendable);
    }
}

void SdcCxi::forgetBond(SdcBstBst *bond)
{
    m_bonds.removeIf([bond](SdcBstBstCxi *entry) { return entry == bond; });
}
