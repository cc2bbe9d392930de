#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDebug>
#include <QGraphicsScene>
#include <QLineF>

SdcBst::SdcBst(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Bst, QStringLiteral("Binding site"))
{
}

SdcBst::~SdcBst()
{
    const QList<SdcBstBst *> bonds = m_bonds;
    for (SdcBstBst *bond : bonds)
        bond->forgetSdcBst(this);
}

SdcMcp *SdcBst::getParentMcp()
{
    if (m_parentMcp)
        return m_parentMcp;
    Sdc *const parentSdc = getParentSdc();
    return parentSdc ? parentSdc->toSdcMcp() : nullptr;
}

void SdcBst::setParentMcp(SdcMcp *mcp)
{
    m_parentMcp = mcp;
}

void SdcBst::setZelEllipseItemBst(ZelEllipseItemBst *item)
{
    if (item == m_zelEllipseItemBst)
        return;
    for (SdcBstBst *bond : std::as_const(m_bonds))
        bond->unfollow(this);
    m_zelEllipseItemBst = item;
    for (SdcBstBst *bond : std::as_const(m_bonds)) {
        bond->follow(this);
        bond->updateLineEnds();
    }
}

ZelEllipseItemBst *SdcBst::getZelEllipseItemBst() const
{
    return m_zelEllipseItemBst;
}

BindingStatusType SdcBst::getBindingStatus()
{
    // Whether a scene shows binding statuses does not change what they are.
    return isInCpxBinding() ? BindingStatusBound : m_bindingStatus;
}

void SdcBst::setBindingStatus(BindingStatusType status)
{
    m_bindingStatus = status;
    updateDisplayBstBindingStatus();
}

void SdcBst::updateDisplayBstBindingStatus()
{
    if (!m_zelEllipseItemBst)
        return;
    m_zelEllipseItemBst->updateBindStatusDisplay(isBstBindingStatusDisplayEnabled());
    m_zelEllipseItemBst->slot_updateToolTips();
}

bool SdcBst::isBound()
{
    return getBindingStatus() == BindingStatusBound;
}

bool SdcBst::isUnbound()
{
    return getBindingStatus() == BindingStatusUnbound;
}

bool SdcBst::isDontCareBindingStatus()
{
    return !isBound() && !isUnbound();
}

QString SdcBst::getBindingStatusName()
{
    return bindingStatusName(getBindingStatus());
}

QString SdcBst::bindingStatusName(int status)
{
    switch (status) {
    case BindingStatusBound:
        return QStringLiteral("Bound");
    case BindingStatusUnbound:
        return QStringLiteral("Unbound");
    default:
        return QStringLiteral("Don't Care");
    }
}

bool SdcBst::isInCpxBinding()
{
    SdcCpx *const cpx = m_bonds.isEmpty() ? nullptr : getParentSdcCpx();
    return cpx && std::any_of(m_bonds.cbegin(), m_bonds.cend(), [cpx](const SdcBstBst *bond) {
        return cpx->lists(bond);
    });
}

bool SdcBst::closeToBst(SdcBst *other)
{
    ZelEllipseItemBst *const item = m_zelEllipseItemBst;
    ZelEllipseItemBst *const otherItem = other ? other->getZelEllipseItemBst() : nullptr;
    if (!item || !otherItem || !item->scene() || item->scene() != otherItem->scene())
        return false;
    const QRectF rect = item->mapRectToScene(item->rect());
    const QRectF otherRect = otherItem->mapRectToScene(otherItem->rect());
    const double diameter = std::max(rect.width(), rect.height());
    const double otherDiameter = std::max(otherRect.width(), otherRect.height());
    const double rimDistance =
        QLineF(rect.center(), otherRect.center()).length() - (diameter + otherDiameter) / 2.0;
    return rimDistance <= std::max(diameter, otherDiameter);
}

int SdcBst::getDisplayIndex()
{
    SdcMol *const mol = getParentSdcMol();
    if (!mol) {
        qDebug() << "Error found at void SdcBst::updatePosIndex() 1";
        return 0;
    }
    SdcMcp *const mcp = getParentMcp();
    if (!mcp) {
        qDebug() << "Error found at void SdcBst::updatePosIndex() 2";
        return 0;
    }
    return mol->countSitesBefore(mcp->getPosIndex()) + getPosIndex() + 1;
}

void SdcBst::updateBstLabel()
{
    if (m_zelEllipseItemBst)
        m_zelEllipseItemBst->setLabel(QString::number(getDisplayIndex()));
}

QString SdcBst::getBstLabelText()
{
    return m_zelEllipseItemBst ? m_zelEllipseItemBst->getLabel() : QString();
}

QString SdcBst::bstGetDefaultName(bool ignoreExistingName)
{
    const QString existing = getProperty(SdcProperty::ShortName);
    if (!ignoreExistingName && !existing.trimmed().isEmpty())
        return existing;
    SdcMcp *const mcp = getParentMcp();
    SdcMol *const mol = getParentSdcMol();
    const QString number = QString::number(mol && mcp ? getDisplayIndex() : getPosIndex() + 1);
    const QString base = (mcp ? mcp->getProperty(SdcProperty::ShortName) : QString())
        + QLatin1String("_site_") + number;
    QString name = base;
    for (int i = 1; mol && !mol->isUniqueBstName(name, this); ++i)
        name = base + u'_' + QString::number(i);
    return name;
}

void SdcBst::updatePosIndex()
{
    if (!getParentSdc())
        return;
    Sdc::updatePosIndex();
    updateBstLabel();
}

SdcMol *SdcBst::getParentSdcMol()
{
    SdcMcp *const mcp = getParentMcp();
    return mcp ? mcp->getParentSdcMol() : nullptr;
}

QRectF SdcBst::getSdcSceneRectF()
{
    return m_zelEllipseItemBst ? m_zelEllipseItemBst->mapRectToScene(m_zelEllipseItemBst->rect())
                               : QRectF();
}

SdcBst *SdcBst::toSdcBst()
{
    return this;
}

bool SdcBst::isSdcBst() const
{
    return true;
}

bool SdcBst::isBstBindingStatusDisplayEnabled()
{
    SdcCpx *const cpx = getParentSdcCpx();
    return cpx && cpx->isBstBindingStatusDisplayEnabled();
}

ZelEllipseItem *SdcBst::getZelEllipseItem()
{
    return m_zelEllipseItemBst;
}

void SdcBst::setHighlight(bool status, bool extendable)
{
    Sdc::setHighlight(status, extendable);
    if (m_zelEllipseItemBst)
        m_zelEllipseItemBst->setHighlight(status);
}
