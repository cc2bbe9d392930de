#include "zelModelSupport/graphics/ZelLineItem.h"

#include "zelModelSupport/graphics/ZelHighlightItem.h"
#include "zelModelSupport/graphics/paint/ZelItemPainting.h"

#include <QLineF>
#include <QPen>

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
    return zel::painting::lineBounds(line(), pen());
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
