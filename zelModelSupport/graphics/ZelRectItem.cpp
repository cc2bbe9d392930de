#include "zelModelSupport/graphics/ZelRectItem.h"

ZelRectItem::ZelRectItem(QGraphicsItem *parentItem) : QGraphicsRectItem(parentItem) { }

ZelRectItem::ZelRectItem(const QRectF &rect, QGraphicsItem *parentItem)
    : QGraphicsRectItem(rect, parentItem)
{
}

ZelRectItem::~ZelRectItem()
{
    releaseSdc();
}

int ZelRectItem::type() const
{
    return ZelRectItemType;
}

ZelRectItem *ZelRectItem::asRectItem()
{
    return this;
}

bool ZelRectItem::isRectItem()
{
    return true;
}
