#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDebug>

#include <algorithm>

namespace {

QString locationOf(Sdc *component)
{
    return component ? component->getProperty(SdcProperty::Location) : QString();
}

// A component of a membrane molecule that lies outside the membrane cannot bind one inside it.
bool isOutOfReach(SdcBst *site, SdcBst *partner)
{
    return locationOf(site->getParentSdcMol()) == QLatin1String(ZelLocation::MembraneAssociated)
        && locationOf(site->getParentMcp()) != QLatin1String(ZelLocation::InsideMembrane)
        && locationOf(partner->getParentMcp()) == QLatin1String(ZelLocation::InsideMembrane);
}

} // namespace

SdcBstBst::SdcBstBst(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent)
{
}

SdcBstBst::~SdcBstBst()
{
    while (m_sites[0])
        removeSdcBst(m_sites[0]);
    const QList<QPointer<Sdc>> holders = m_holders;
    for (const QPointer<Sdc> &holder : holders) {
        if (!holder)
            continue;
        if (SdcCpx *cpx = holder->toSdcCpx())
            cpx->forgetBond(this);
        else if (SdcMli *mli = holder->toSdcMli())
            mli->forgetBond(this);
        else if (SdcCxi *cxi = holder->toSdcCxi())
            cxi->forgetBond(this);
    }
}

void SdcBstBst::addSdcBst(SdcBst *sdcBst)
{
    if (!sdcBst)
        return;
    if (isComplete()) {
        qDebug() << "Warning at void SdcBstBst::addSdcBst(SdcBst * sdcBst) "
                 << "Already 2 SdcBst in this relation";
        return;
    }
    m_sites[m_sites[0] ? 1 : 0] = sdcBst;
    if (!sdcBst->m_bonds.contains(this))
        sdcBst->m_bonds.append(this);
    follow(sdcBst);
    if (noteSitesChanged())
        sdcBst->updateDisplayBstBindingStatus();
}

void SdcBstBst::removeSdcBst(SdcBst *sdcBst)
{
    if (!hasSdcBst(sdcBst))
        return;
    if (forgetSdcBst(sdcBst))
        sdcBst->updateDisplayBstBindingStatus();
}

bool SdcBstBst::forgetSdcBst(SdcBst *sdcBst)
{
    if (m_line)
        m_line->keepEnds();
    std::fill(std::remove(m_sites.begin(), m_sites.end(), sdcBst), m_sites.end(), nullptr);
    unfollow(sdcBst);
    sdcBst->m_bonds.removeAll(this);
    return noteSitesChanged();
}

// What a complex looks like from its molecules hangs on the sites that its bonds join.
bool SdcBstBst::noteSitesChanged()
{
    bool isListed = false;
    for (const QPointer<Sdc> &holder : std::as_const(m_holders)) {
        if (SdcCpx *cpx = holder ? holder->toSdcCpx() : nullptr) {
            cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
            isListed = true;
        }
    }
    return isListed;
}

SdcBst *SdcBstBst::getPartnerSdcBst(SdcBst *sdcBst) const
{
    if (!sdcBst || !isComplete())
        return nullptr;
    if (m_sites[0] == sdcBst)
        return m_sites[1];
    return m_sites[1] == sdcBst ? m_sites[0] : nullptr;
}

bool SdcBstBst::hasSdcBst(SdcBst *sdcBst) const
{
    return sdcBst && (m_sites[0] == sdcBst || m_sites[1] == sdcBst);
}

bool SdcBstBst::isSameSdcBstBst(SdcBst *a, SdcBst *b) const
{
    if (!a || !b)
        return false;
    return (m_sites[0] == a && m_sites[1] == b) || (m_sites[0] == b && m_sites[1] == a);
}

bool SdcBstBst::isSameSdcBstBst(SdcBstBst *other) const
{
    return other && isSameSdcBstBst(other->getSdcBst1(), other->getSdcBst2());
}

void SdcBstBst::setZelLineItemBstBst(ZelLineItemBstBst *item)
{
    m_line = item;
}

ZelLineItemBstBst *SdcBstBst::getZelLineItemBstBst() const
{
    return m_line;
}

bool SdcBstBst::isMliDefined() const
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    return db && isComplete()
        && db->mliIsDefined(m_sites[0]->getPsiimId(), m_sites[1]->getPsiimId());
}

QString SdcBstBst::getDefaultAssocRateFromMli() const
{
    if (!isMliDefined())
        return {};
    return getZelDbSqliteModel()
        ->mliGetHashInfo(m_sites[0]->getPsiimId(), m_sites[1]->getPsiimId())
        .value(ZelDbColumn::AssociationRate);
}

QString SdcBstBst::getDefaultDissocRateFromMli() const
{
    if (!isMliDefined())
        return {};
    return getZelDbSqliteModel()
        ->mliGetHashInfo(m_sites[0]->getPsiimId(), m_sites[1]->getPsiimId())
        .value(ZelDbColumn::DissociationRate);
}

bool SdcBstBst::isInconsistentBinding() const
{
    if (!isComplete())
        return false;
    SdcBst *const a = m_sites[0];
    SdcBst *const b = m_sites[1];
    if (isOutOfReach(a, b) || isOutOfReach(b, a))
        return true;
    const QString sideA = locationOf(a->getParentMcp());
    const QString sideB = locationOf(b->getParentMcp());
    return !sideA.isEmpty() && !sideB.isEmpty() && sideA != sideB;
}

QList<SdcBst *> SdcBstBst::getListSdcBst()
{
    QList<SdcBst *> sites(m_sites.cbegin(), m_sites.cend());
    sites.removeAll(nullptr);
    return sites;
}

SdcBstBst *SdcBstBst::toSdcBstBst()
{
    return this;
}

bool SdcBstBst::isSdcBstBst() const
{
    return true;
}

void SdcBstBst::setHighlight(bool status, bool extendable)
{
    if (m_line)
        m_line->setHighlight(status, extendable);
}

void SdcBstBst::updateBstPos()
{
    if (m_line)
        m_line->endMoved();
}

void SdcBstBst::follow(SdcBst *sdcBst)
{
    if (ZelEllipseItemBst *item = sdcBst->getZelEllipseItemBst())
        connect(item, &ZelEllipseItem::posChanged, this, &SdcBstBst::updateBstPos,
            Qt::UniqueConnection);
}

void SdcBstBst::unfollow(SdcBst *sdcBst)
{
    if (ZelEllipseItemBst *item = sdcBst->getZelEllipseItemBst())
        disconnect(item, &ZelEllipseItem::posChanged, this, &SdcBstBst::updateBstPos);
}

void SdcBstBst::updateLineEnds()
{
    if (m_line)
        m_line->updateEnds();
}

void SdcBstBst::addHolder(Sdc *holder)
{
    if (!m_holders.contains(holder))
        m_holders.append(holder);
}

void SdcBstBst::removeHolder(Sdc *holder)
{
    m_holders.removeAll(holder);
}
