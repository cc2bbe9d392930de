#include "zelModelSupport/graphics/ZelLineItem.h"

#include "zelModelSupport/graphics/ZelHighlightItem.h"

#include <QLineF>
#include <QPen>

#include <algorithm>
#include <numbers>

ZelLineItem::ZelLineItem(QGraphicsItem *parentItem) : QGraphicsLineItem(parentItem) { }

ZelLineItem::~ZelLineItem()
{
    releaseSdc();
}

int ZelLineItem::type() const
{
    return ZelLineItemType;
}

QRectF ZelLineItem::boundingRect() const
{
    // Square caps reach out by the half width along both axes of a slanted line.
    const double reach = std::max(pen().widthF(), 1.0) / std::numbers::sqrt2 + 0.5;
    return QRectF(line().p1(), line().p2()).normalized().adjusted(-reach, -reach, reach, reach);
}

ZelLineItem *ZelLineItem::asLineItem()
{
    return this;
}

bool ZelLineItem::isLineItem()
{
    return true;
}

void ZelLineItem::setLineHighlighted(bool on)
{
    setHighlightItem(on);
    m_highlighted = on;
}

void ZelLineItem::setSceneLine(const QLineF &sceneLine)
{
    const QLineF own(mapFromScene(sceneLine.p1()), mapFromScene(sceneLine.p2()));
    if (own == line())
        return;
    setLine(own);
    if (ZelHighlightItem *halo = getHighlightItem(); halo && halo->isVisible())
        halo->updateGeometry();
}
