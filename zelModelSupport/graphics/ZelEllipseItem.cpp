#include "zelModelSupport/graphics/ZelEllipseItem.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/graphics/paint/ZelItemPainting.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QBrush>
#include <QGraphicsScene>
#include <QPainterPath>
#include <QPen>

#include <algorithm>

namespace {

QPainterPath scenePath(const QGraphicsItem *item)
{
    QPainterPath path;
    path.addEllipse(item->sceneBoundingRect());
    return path;
}

bool inOneScene(const QGraphicsItem *item, const QGraphicsItem *other)
{
    return other && item->scene() && item->scene() == other->scene();
}

// The items of the components, each followed by those of its sites when these count.
QList<ZelEllipseItem *> itemsOf(const QList<SdcMcp *> &list, bool withSites)
{
    QList<ZelEllipseItem *> items;
    for (SdcMcp *mcp : list) {
        if (!mcp)
            continue;
        if (ZelEllipseItem *item = mcp->getZelEllipseItemMcp())
            items.append(item);
        if (!withSites)
            continue;
        for (SdcBst *bst : mcp->getListSdcBst()) {
            if (ZelEllipseItem *item = bst->getZelEllipseItemBst())
                items.append(item);
        }
    }
    return items;
}

QList<ZelEllipseItem *> itemsOf(Sdc *sdc)
{
    if (!sdc)
        return {};
    QList<ZelEllipseItem *> items = itemsOf(sdc->getListSdcMcp(), false);
    for (SdcBst *bst : sdc->getListSdcBst()) {
        if (ZelEllipseItem *item = bst ? bst->getZelEllipseItemBst() : nullptr)
            items.append(item);
    }
    return items;
}

} // namespace

ZelEllipseItem::ZelEllipseItem(QGraphicsItem *parentItem) : ZelEllipseItem(QRectF(), parentItem) { }

ZelEllipseItem::ZelEllipseItem(const QRectF &rect, QGraphicsItem *parentItem)
    : QGraphicsEllipseItem(rect, parentItem)
{
    setBrush(QBrush(Qt::white, Qt::SolidPattern));
}

ZelEllipseItem::~ZelEllipseItem()
{
    releaseSdc();
}

int ZelEllipseItem::type() const
{
    return ZelEllipseItemType;
}

void ZelEllipseItem::setHighlight(bool on)
{
    setHighlightItem(on);
    m_highlighted = on;
}

bool ZelEllipseItem::isHighlighted()
{
    return m_highlighted;
}

void ZelEllipseItem::notifyPosChanged()
{
    emit posChanged();
}

bool ZelEllipseItem::intersectsWithListScp(const QList<SdcMcp *> &list, bool withSites)
{
    const QList<ZelEllipseItem *> items = itemsOf(list, withSites);
    return std::any_of(items.cbegin(), items.cend(),
        [this](ZelEllipseItem *item) { return intersectsWithZelEllipseItem(item); });
}

bool ZelEllipseItem::intersectsWithSdc(Sdc *sdc)
{
    const QList<ZelEllipseItem *> items = itemsOf(sdc);
    return std::any_of(items.cbegin(), items.cend(),
        [this](ZelEllipseItem *item) { return intersectsWithZelEllipseItem(item); });
}

bool ZelEllipseItem::containsListScp(const QList<SdcMcp *> &list, bool withSites)
{
    const QList<ZelEllipseItem *> items = itemsOf(list, withSites);
    return std::any_of(items.cbegin(), items.cend(),
        [this](ZelEllipseItem *item) { return containsZelEllipseItem(item); });
}

bool ZelEllipseItem::containsSdc(Sdc *sdc)
{
    const QList<ZelEllipseItem *> items = itemsOf(sdc);
    return std::any_of(items.cbegin(), items.cend(),
        [this](ZelEllipseItem *item) { return containsZelEllipseItem(item); });
}

bool ZelEllipseItem::intersectsWithZelEllipseItem(ZelEllipseItem *other)
{
    // Most pairs are far apart: the rectangles say so at a fraction of the paths' cost. Pairs that
    // touch are left to the paths.
    return inOneScene(this, other)
        && sceneBoundingRect().adjusted(-1, -1, 1, 1).intersects(other->sceneBoundingRect())
        && scenePath(this).intersects(scenePath(other));
}

bool ZelEllipseItem::containsZelEllipseItem(ZelEllipseItem *other)
{
    return inOneScene(this, other) && sceneBoundingRect().contains(other->sceneBoundingRect())
        && scenePath(this).contains(scenePath(other));
}

QList<ZelEllipseItem *> ZelEllipseItem::getInteractedListZelEllipseItem(Sdc *sdc)
{
    QList<ZelEllipseItem *> items = itemsOf(sdc);
    items.removeIf([this](ZelEllipseItem *item) {
        return item == this || !intersectsWithZelEllipseItem(item);
    });
    return items;
}

void ZelEllipseItem::hightlightInteractionWithSdc(Sdc *sdc)
{
    const QList<ZelEllipseItem *> items = getInteractedListZelEllipseItem(sdc);
    if (items.isEmpty())
        return;
    setHighlight(true);
    for (ZelEllipseItem *item : items)
        item->setHighlight(true);
}

double ZelEllipseItem::getAtan2(ZelEllipseItem *other) const
{
    if (!other)
        return zel::geometry::SamePlaceAngle;
    return zel::geometry::angleBetween(
        sceneBoundingRect().center(), other->sceneBoundingRect().center());
}

ZelEllipseItem *ZelEllipseItem::asEllipseItem()
{
    return this;
}

bool ZelEllipseItem::isEllipseItem()
{
    return true;
}

QRectF ZelEllipseItem::boundingRect() const
{
    return rect();
}

QPainterPath ZelEllipseItem::shape() const
{
    QPainterPath path;
    path.addEllipse(rect());
    return path;
}

void ZelEllipseItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    zel::painting::paintEllipse(painter, rect(), pen(), brush());
}
