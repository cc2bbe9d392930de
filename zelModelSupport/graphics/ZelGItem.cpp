#include "zelModelSupport/graphics/ZelGItem.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelHighlightItem.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelShare/ZelSettings.h"

#include <utility>

namespace {

QString pathTooltip(Sdc *sdc, const QString &shortName)
{
    QString text = shortName;
    if (SdcBst *bst = sdc->toSdcBst()) {
        SdcMcp *const mcp = bst->getParentMcp();
        const QString mcpName = mcp ? mcp->getProperty(SdcProperty::ShortName) : QString();
        text = mcpName + QLatin1String(" / ") + shortName;
        SdcCpx *const cpx = bst->getParentSdcCpx();
        if (cpx && cpx->isBstBindingStatusDisplayEnabled())
            text += QLatin1String(" -- ") + bst->getBindingStatusName();
    }
    SdcMol *const mol = sdc->getParentSdcMol();
    const QString molName = mol ? mol->getProperty(SdcProperty::ShortName) : QString();
    return molName.isEmpty() ? text : molName + QLatin1String(" / ") + text;
}

} // namespace

ZelGItem::ZelGItem() = default;

ZelGItem::~ZelGItem()
{
    releaseSdc();
}

void ZelGItem::setSdc(Sdc *sdc)
{
    if (!takeSdc(sdc) || !sdc)
        return;
    // Items of another shape must not wipe the ellipse that the component has.
    if (SdcMcp *mcp = sdc->toSdcMcp()) {
        if (ZelEllipseItemMcp *item = asEllipseItemMcp())
            mcp->setZelEllipseItemMcp(item);
    } else if (SdcBst *bst = sdc->toSdcBst()) {
        if (ZelEllipseItemBst *item = asEllipseItemBst())
            bst->setZelEllipseItemBst(item);
    }
}

Sdc *ZelGItem::getSdc()
{
    return m_sdc;
}

void ZelGItem::setHighlightItem(bool on)
{
    if (!m_highlightItem)
        m_highlightItem = std::make_unique<ZelHighlightItem>(this);
    m_highlightItem->setVisible(on);
}

ZelHighlightItem *ZelGItem::getHighlightItem()
{
    return m_highlightItem.get();
}

ZelGItem *ZelGItem::asHostItem()
{
    return nullptr;
}

bool ZelGItem::isHostItem()
{
    return false;
}

ZelEllipseItem *ZelGItem::asEllipseItem()
{
    return nullptr;
}

bool ZelGItem::isEllipseItem()
{
    return false;
}

ZelEllipseItemMcp *ZelGItem::asEllipseItemMcp()
{
    return nullptr;
}

bool ZelGItem::isEllipseItemMcp()
{
    return false;
}

ZelEllipseItemBst *ZelGItem::asEllipseItemBst()
{
    return nullptr;
}

bool ZelGItem::isEllipseItemBst()
{
    return false;
}

ZelLineItem *ZelGItem::asLineItem()
{
    return nullptr;
}

bool ZelGItem::isLineItem()
{
    return false;
}

ZelLineItemBstBst *ZelGItem::asLineItemBstBst()
{
    return nullptr;
}

bool ZelGItem::isLineItemBstBst()
{
    return false;
}

ZelLineItemBstBstMli *ZelGItem::asLineItemBstBstMli()
{
    return nullptr;
}

bool ZelGItem::isLineItemBstBstMli()
{
    return false;
}

ZelLineItemMcpMcp *ZelGItem::asLineItemMcpMcp()
{
    return nullptr;
}

bool ZelGItem::isLineItemMcpMcp()
{
    return false;
}

ZelLineItemBstBstCpx *ZelGItem::asLineItemBstBstCpx()
{
    return nullptr;
}

bool ZelGItem::isLineItemBstBstCpx()
{
    return false;
}

ZelLineItemBstBstCxi *ZelGItem::asLineItemBstBstCxi()
{
    return nullptr;
}

bool ZelGItem::isLineItemBstBstCxi()
{
    return false;
}

ZelGItem *ZelGItem::asHostLineItem()
{
    return nullptr;
}

bool ZelGItem::isHostLineItem()
{
    return false;
}

ZelRectItem *ZelGItem::asRectItem()
{
    return nullptr;
}

bool ZelGItem::isRectItem()
{
    return false;
}

ZelGItem *ZelGItem::asHostRectItem()
{
    return nullptr;
}

bool ZelGItem::isHostRectItem()
{
    return false;
}

ZelRectItemMcpSticky *ZelGItem::asRectItemMcpSticky()
{
    return nullptr;
}

bool ZelGItem::isRectItemMcpSticky()
{
    return false;
}

ZelGItem *ZelGItem::asHostLabelItem()
{
    return nullptr;
}

bool ZelGItem::isHostLabelItem()
{
    return false;
}

ZelEllipseItem *ZelGItem::toZelEllipseItem(QGraphicsItem *item)
{
    return item && item->type() == ZelEllipseItemType ? static_cast<ZelEllipseItem *>(item)
                                                      : nullptr;
}

ZelEllipseItemBst *ZelGItem::toZelEllipseItemBst(QGraphicsItem *item)
{
    ZelEllipseItem *const ellipse = toZelEllipseItem(item);
    return ellipse ? ellipse->asEllipseItemBst() : nullptr;
}

ZelEllipseItemMcp *ZelGItem::toZelEllipseItemMcp(QGraphicsItem *item)
{
    ZelEllipseItem *const ellipse = toZelEllipseItem(item);
    return ellipse ? ellipse->asEllipseItemMcp() : nullptr;
}

ZelLineItem *ZelGItem::toZelLineItem(QGraphicsItem *item)
{
    return item && item->type() == ZelLineItemType ? static_cast<ZelLineItem *>(item) : nullptr;
}

ZelLineItemBstBstMli *ZelGItem::toZelLineItemBstBstMli(QGraphicsItem *item)
{
    ZelLineItem *const line = toZelLineItem(item);
    return line ? line->asLineItemBstBstMli() : nullptr;
}

ZelRectItem *ZelGItem::toZelRectItem(QGraphicsItem *item)
{
    return item && item->type() == ZelRectItemType ? static_cast<ZelRectItem *>(item) : nullptr;
}

ZelRectItemMcpSticky *ZelGItem::toZelRectItemMcpSticky(QGraphicsItem *item)
{
    return item && item->type() == ZelRectItemMcpStickyType
        ? static_cast<ZelRectItemMcpSticky *>(item)
        : nullptr;
}

void ZelGItem::slot_updateToolTips()
{
    Sdc *const sdc = m_sdc;
    if (!sdc || !(sdc->isSdcBst() || sdc->isSdcMcp()))
        return;
    ZelEllipseItem *const item = asEllipseItem();
    if (!item)
        return;
    const QString shortName = sdc->getProperty(SdcProperty::ShortName);
    QString text;
    switch (ZelSettings::getMoleculeTooltipsType()) {
    case ZelSettings::TooltipsName:
        text = shortName;
        break;
    case ZelSettings::TooltipsPath:
        text = pathTooltip(sdc, shortName);
        break;
    default:
        break;
    }
    if (text != item->toolTip())
        item->setToolTip(text);
}

bool ZelGItem::takeSdc(Sdc *sdc)
{
    if (sdc == m_sdc)
        return false;
    if (m_sdc)
        disconnect(m_sdc, &Sdc::signal_changed, this, &ZelGItem::slot_updateToolTips);
    m_sdc = sdc;
    if (sdc)
        connect(sdc, &Sdc::signal_changed, this, &ZelGItem::slot_updateToolTips);
    return true;
}

void ZelGItem::releaseSdc()
{
    Sdc *const sdc = std::exchange(m_sdc, nullptr);
    if (!sdc)
        return;
    // Another item may have been registered since.
    if (SdcMcp *mcp = sdc->toSdcMcp()) {
        if (mcp->getZelEllipseItemMcp() == this)
            mcp->setZelEllipseItemMcp(nullptr);
    } else if (SdcBst *bst = sdc->toSdcBst()) {
        if (bst->getZelEllipseItemBst() == this)
            bst->setZelEllipseItemBst(nullptr);
    } else if (SdcBstBst *bond = sdc->toSdcBstBst()) {
        if (bond->getZelLineItemBstBst() == this)
            bond->setZelLineItemBstBst(nullptr);
    }
}
