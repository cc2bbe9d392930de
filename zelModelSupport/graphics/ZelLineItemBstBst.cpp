#include "zelModelSupport/graphics/ZelLineItemBstBst.h"

#include "zelModelSupport/graphics/ZelDrawing.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelItemGeometry.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

#include <QDebug>
#include <QGraphicsScene>

namespace {

ZelEllipseItemBst *itemOf(SdcBst *bst)
{
    return bst ? bst->getZelEllipseItemBst() : nullptr;
}

} // namespace

ZelLineItemBstBst::ZelLineItemBstBst(QGraphicsItem *parentItem) : ZelLineItem(parentItem) { }

ZelLineItemBstBst::~ZelLineItemBstBst()
{
    releaseSdc();
}

QList<ZelEllipseItemBst *> ZelLineItemBstBst::getListZelEllipseItemBst()
{
    QList<ZelEllipseItemBst *> items;
    for (ZelEllipseItemBst *item : {getZelEllipseItemBst1(), getZelEllipseItemBst2()}) {
        if (item)
            items.append(item);
    }
    return items;
}

void ZelLineItemBstBst::updateLine()
{
    ZelEllipseItemBst *const first = getZelEllipseItemBst1();
    ZelEllipseItemBst *const second = getZelEllipseItemBst2();
    if (!first || !second || !scene() || first->scene() != scene() || second->scene() != scene())
        return;
    setSceneLine(zel::geometry::bondLine(first->sceneBoundingRect(), second->sceneBoundingRect()));
    setZValue(zel::drawing::z::Bond);
}

ZelEllipseItemBst *ZelLineItemBstBst::getZelEllipseItemBst1()
{
    SdcBstBst *const bond = getSdcBstBst();
    return bond ? itemOf(bond->getSdcBst1()) : nullptr;
}

ZelEllipseItemBst *ZelLineItemBstBst::getZelEllipseItemBst2()
{
    SdcBstBst *const bond = getSdcBstBst();
    return bond ? itemOf(bond->getSdcBst2()) : nullptr;
}

void ZelLineItemBstBst::addZelEllipseItemBst(ZelEllipseItemBst *s)
{
    SdcBst *const bst = s ? s->getSdcBst() : nullptr;
    if (!bst) {
        qDebug() << "Error found at void "
                    "ZelLineItemBstBst::addZelEllipseItemBst(ZelEllipseItemBst * s)";
        return;
    }
    if (SdcBstBst *bond = getSdcBstBst())
        bond->addSdcBst(bst);
}

void ZelLineItemBstBst::setHighlight(bool status, bool extendable)
{
    setLineHighlighted(status);
    if (!extendable)
        return;
    for (ZelEllipseItemBst *item : getListZelEllipseItemBst())
        item->setHighlight(status);
}

SdcBstBst *ZelLineItemBstBst::getSdcBstBst()
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcBstBst() : nullptr;
}

ZelLineItemBstBst *ZelLineItemBstBst::asLineItemBstBst()
{
    return this;
}

bool ZelLineItemBstBst::isLineItemBstBst()
{
    return true;
}
