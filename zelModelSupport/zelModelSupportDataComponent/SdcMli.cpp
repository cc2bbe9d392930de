#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include <QDebug>

#include <algorithm>

namespace {

/// The sites of a bond; none for a null entry of the list.
QList<SdcBst *> sitesOf(SdcBstBstMli *bond)
{
    return bond ? bond->getListSdcBst() : QList<SdcBst *>();
}

} // namespace

SdcMli::SdcMli(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Mli, QStringLiteral("Molecule Interaction"))
{
}

SdcMli::~SdcMli()
{
    for (SdcBstBstMli *bond : std::as_const(m_bonds)) {
        if (bond)
            bond->removeHolder(this);
    }
}

bool SdcMli::addSdcBstBstMli(SdcBstBstMli *bond)
{
    if (hasBstBstConnection(bond) || !m_bonds.isEmpty())
        return false;
    m_bonds.append(bond);
    if (bond) {
        bond->addHolder(this);
        bond->setParentSdc(this); // changes of the bond climb to its interaction
    }
    emit sdcBstBstMliAdded(bond);
    return true;
}

void SdcMli::removeSdcBstBstMli(SdcBstBstMli *bond)
{
    if (m_bonds.removeAll(bond) == 0 || !bond)
        return;
    bond->removeHolder(this);
    if (bond->getParentSdc() == this)
        bond->setParentSdc(nullptr);
}

int SdcMli::getSdcBstBstMliIndex(SdcBstBstMli *bond) const
{
    return static_cast<int>(m_bonds.indexOf(bond));
}

SdcBstBst *SdcMli::getSdcBstBstFromIndex(int index) const
{
    return m_bonds.value(index);
}

ZelLineItemBstBstMli *SdcMli::getZelLineItemBstBstMliFromIndex(int index) const
{
    SdcBstBstMli *const bond = m_bonds.value(index);
    return bond ? bond->getZelLineItemBstBstMli() : nullptr;
}

int SdcMli::getZelLineItemBstBstMliIndex(ZelLineItemBstBstMli *item) const
{
    const auto at = std::find_if(m_bonds.cbegin(), m_bonds.cend(),
        [item](SdcBstBstMli *bond) { return bond && bond->getZelLineItemBstBstMli() == item; });
    return at == m_bonds.cend() ? -1 : static_cast<int>(at - m_bonds.cbegin());
}

bool SdcMli::hasBstBstConnection(SdcBst *a, SdcBst *b) const
{
    return std::any_of(m_bonds.cbegin(), m_bonds.cend(), [a, b](SdcBstBstMli *bond) {
        const QList<SdcBst *> sites = sitesOf(bond);
        return sites.size() == 2 && sites.contains(a) && sites.contains(b);
    });
}

bool SdcMli::hasBstBstConnection(SdcBstBstMli *bond) const
{
    const QList<SdcBst *> sites = sitesOf(bond);
    return sites.size() == 2 && hasBstBstConnection(sites.at(0), sites.at(1));
}

SdcBstBstMli *SdcMli::getSdcBstBstMli(SdcBst *sdcBst1, SdcBst *sdcBst2) const
{
    return m_bonds.value(indexOfBond(sdcBst1, sdcBst2,
        "SdcBstBstMli * SdcMli::getSdcBstBstMli(SdcBst * sdcBst1, SdcBst * sdcBst2)"));
}

ZelLineItemBstBstMli *SdcMli::getZelLineItemBstBstMli(SdcBst *sdcBst1, SdcBst *sdcBst2) const
{
    SdcBstBstMli *const bond = getSdcBstBstMli(sdcBst1, sdcBst2);
    return bond ? bond->getZelLineItemBstBstMli() : nullptr;
}

int SdcMli::getBstBstIndex(SdcBst *sdcBst1, SdcBst *sdcBst2) const
{
    return indexOfBond(
        sdcBst1, sdcBst2, "int SdcMli::getBstBstIndex(SdcBst * sdcBst1, SdcBst * sdcBst2) const");
}

QList<SdcBstBstMli *> SdcMli::getListSdcBstBstMliFromListSdcBstBst(
    const QList<SdcBst *> &sites) const
{
    QList<SdcBstBstMli *> list;
    for (SdcBstBstMli *bond : m_bonds) {
        if (bond && !list.contains(bond)
            && std::any_of(sites.cbegin(), sites.cend(),
                [bond](SdcBst *site) { return bond->hasSdcBst(site); }))
            list.append(bond);
    }
    return list;
}

QList<ZelLineItemBstBstMli *> SdcMli::getListZelLineItemBstBstMliFromListSdcBst(
    const QList<SdcBst *> &sites) const
{
    QList<ZelLineItemBstBstMli *> list;
    const QList<SdcBstBstMli *> bonds = getListSdcBstBstMliFromListSdcBstBst(sites);
    for (SdcBstBstMli *bond : bonds)
        list.append(bond->getZelLineItemBstBstMli());
    return list;
}

SdcBst *SdcMli::getSdcBstFromMolPosBstId(const QString &molPos, const QString &bstId)
{
    Sdc *const child = bstId.isEmpty() ? nullptr : getChildSdcAtIndex(molPos.toInt());
    SdcMol *const mol = child ? child->toSdcMol() : nullptr;
    if (!mol)
        return nullptr;
    const QList<SdcMcp *> mcps = mol->getListSdcMcp();
    for (SdcMcp *mcp : mcps) {
        const QList<SdcBst *> sites = mcp->getListSdcBst();
        const auto last = std::find_if(sites.crbegin(), sites.crend(),
            [&bstId](const SdcBst *site) { return site->getPsiimId() == bstId; });
        if (last != sites.crend())
            return *last;
    }
    return nullptr;
}

bool SdcMli::canSave() const
{
    return m_bonds.size() == 1 && !getProperty(SdcProperty::AssociationRate).isEmpty()
        && !getProperty(SdcProperty::DissociationRate).isEmpty();
}

bool SdcMli::updateMliPropertyFromDb()
{
    if (m_bonds.size() != 1)
        return false;
    const QList<SdcBst *> sites = sitesOf(m_bonds.first());
    if (sites.size() != 2 || sites.at(0)->getPsiimId().isEmpty()
        || sites.at(1)->getPsiimId().isEmpty()) {
        clearMliProperties();
        return false;
    }
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbRecord record = db
        ? db->mliGetHashInfo(sites.at(0)->getPsiimId(), sites.at(1)->getPsiimId())
        : ZelDbRecord();
    setProperty(SdcProperty::PsiimId, record.value(ZelDbColumn::PsiimId));
    if (getPsiimId().isEmpty())
        return false;
    SdcReactionStorage::readProperties(
        this, "mli", getPsiimId(), record, SdcReactionStorage::mliProperties);
    return true;
}

void SdcMli::clearMliProperties()
{
    setProperty(SdcProperty::PsiimId, QString());
    SdcReactionStorage::readProperties(this, {}, SdcReactionStorage::mliProperties);
}

void SdcMli::addSdcChild(Sdc *child, bool addToItemModel)
{
    Sdc::addSdcChild(child, addToItemModel);
    SdcMol *const mol = child ? child->toSdcMol() : nullptr;
    if (!mol)
        return;
    const auto follow = [this](ZelEllipseItem *item) {
        if (item)
            connect(item, &ZelEllipseItem::posChanged, this, &SdcMli::updateBstBstPos,
                Qt::UniqueConnection);
    };
    const QList<SdcMcp *> mcps = mol->getListSdcMcp();
    for (SdcMcp *mcp : mcps)
        follow(mcp->getZelEllipseItemMcp());
    const QList<SdcBst *> sites = mol->getListSdcBst();
    for (SdcBst *site : sites)
        follow(site->getZelEllipseItemBst());
}

void SdcMli::reset()
{
    const QList<SdcBstBstMli *> bonds = m_bonds;
    for (SdcBstBstMli *bond : bonds)
        removeSdcBstBstMli(bond);
    Sdc::reset();
}

SdcMli *SdcMli::toSdcMli()
{
    return this;
}

bool SdcMli::isSdcMli() const
{
    return true;
}

void SdcMli::setHighlight(bool status, bool extendable)
{
    Sdc::setHighlight(status, extendable);
    for (SdcBstBstMli *bond : std::as_const(m_bonds)) {
        if (bond)
            bond->setHighlight(status, extendable);
    }
}

void SdcMli::updateBstBstPos()
{
    for (SdcBstBstMli *bond : std::as_const(m_bonds)) {
        if (bond)
            bond->updateBstPos();
    }
}

void SdcMli::forgetBond(SdcBstBst *bond)
{
    m_bonds.removeIf([bond](SdcBstBstMli *entry) { return entry == bond; });
}

int SdcMli::indexOfBond(SdcBst *sdcBst1, SdcBst *sdcBst2, const char *function) const
{
    for (qsizetype i = 0; i < m_bonds.size(); ++i) {
        const QList<SdcBst *> sites = sitesOf(m_bonds.at(i));
        if (sites.size() != 2) {
            qDebug().nospace() << "Error found at " << function;
            return -1;
        }
        if ((sites.at(0) == sdcBst1 && sites.at(1) == sdcBst2)
            || (sites.at(0) == sdcBst2 && sites.at(1) == sdcBst1))
            return static_cast<int>(i);
    }
    return -1;
}
