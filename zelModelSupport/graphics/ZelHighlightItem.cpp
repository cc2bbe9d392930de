#include "zelModelSupport/graphics/ZelHighlightItem.h"

#include "zelModelSupport/graphics/ZelEllipseItem.h"
#include "zelModelSupport/graphics/ZelLineItem.h"
#include "zelModelSupport/graphics/ZelRectItem.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelGlow.h"

#include <QApplication>
#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QPalette>

using namespace zel::drawing;

namespace {

QRectF grown(const QRectF &rect, double by)
{
    return rect.adjusted(-by, -by, by, by);
}

} // namespace

ZelHighlightItem::ZelHighlightItem(ZelGItem *owner) : m_owner(owner) { }

// The halo itself is the owner's child item and is already gone when the owner dies.
ZelHighlightItem::~ZelHighlightItem() = default;

bool ZelHighlightItem::isVisible() const
{
    return m_haloItem && m_haloItem->isVisible();
}

void ZelHighlightItem::setVisible(bool on)
{
    // Un-highlighting whole drawings is common and must not fill them with hidden halos.
    if (!m_haloItem && on)
        makeHalo();
    if (!m_haloItem)
        return;
    updateGeometry();
    m_haloItem->setVisible(on);
}

void ZelHighlightItem::updateGeometry()
{
    if (!m_haloItem)
        return;
    if (ZelEllipseItem *ellipse = m_owner->asEllipseItem()) {
        if (auto *halo = qgraphicsitem_cast<QGraphicsEllipseItem *>(m_haloItem))
            halo->setRect(ellipse->rect());
    } else if (ZelLineItem *line = m_owner->asLineItem()) {
        if (auto *halo = qgraphicsitem_cast<QGraphicsLineItem *>(m_haloItem))
            halo->setLine(line->line());
    } else if (ZelRectItem *rect = m_owner->asRectItem()) {
        if (auto *halo = qgraphicsitem_cast<QGraphicsRectItem *>(m_haloItem))
            halo->setRect(rect->rect());
    }
}

void ZelHighlightItem::makeHalo()
{
    m_pen.setColor(QApplication::palette().brush(QPalette::Current, QPalette::Highlight).color());
    m_pen.setWidthF(HaloPenWidth);
    m_rectPen = m_pen;
    m_rectPen.setWidthF(HaloPenWidthRect);

    if (ZelEllipseItem *ellipse = m_owner->asEllipseItem()) {
        auto *halo = new zel::glow::Outline<QGraphicsEllipseItem>(
            grown(ellipse->rect(), HaloGrowEllipse), ellipse, HaloCoats);
        halo->setPen(m_pen);
        halo->setZValue(ellipse->zValue() + z::Halo);
        // Around the owner, not over it: rim, fill and number stay as they are.
        halo->setFlag(QGraphicsItem::ItemStacksBehindParent);
        addHalo(halo);
    } else if (ZelLineItem *line = m_owner->asLineItem()) {
        auto *halo = new zel::glow::Outline<QGraphicsLineItem>(line->line(), line, HaloCoats);
        halo->setPen(m_pen);
        addHalo(halo);
    } else if (ZelRectItem *rect = m_owner->asRectItem()) {
        auto *halo = new zel::glow::Outline<QGraphicsRectItem>(
            grown(rect->rect(), HaloGrowRect), rect, HaloCoatsRect);
        halo->setPen(m_rectPen);
        halo->setZValue(rect->zValue() + z::Halo);
        halo->setFlag(QGraphicsItem::ItemStacksBehindParent);
        addHalo(halo);
    }
}

void ZelHighlightItem::addHalo(QGraphicsItem *haloItem)
{
    m_haloItem = haloItem;
    zel::glow::setBlur(haloItem);
    haloItem->setOpacity(1.0);
    haloItem->setVisible(false);
}
