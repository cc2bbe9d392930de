#include "zelModelSupport/graphics/ZelLineItemBstBst.h"

#include "zelModelSupport/graphics/ZelDrawing.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelItemGeometry.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

#include <QDebug>
#include <QGraphicsScene>

#include <utility>

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
    if (isWhole())
        lay(getZelEllipseItemBst1(), getZelEllipseItemBst2());
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

void ZelLineItemBstBst::keepEnds()
{
    if (std::exchange(m_keepsEnds, true))
        return;
    for (const QPointer<ZelEllipseItemBst> &end : m_ends) {
        if (!end)
            continue;
        connect(
            end, &QObject::destroyed, this, &ZelLineItemBstBst::updateEnds, Qt::UniqueConnection);
        follow(end);
        // Which tells the items of its own sites only that it has moved.
        follow(toZelEllipseItemMcp(end->parentItem()));
    }
}

void ZelLineItemBstBst::follow(ZelEllipseItem *item)
{
    if (item)
        connect(item, &ZelEllipseItem::posChanged, this, &ZelLineItemBstBst::updateEnds,
            Qt::UniqueConnection);
}

void ZelLineItemBstBst::updateEnds()
{
    if (!m_laid)
        return;
    ZelEllipseItemBst *const first = isWhole() ? getZelEllipseItemBst1() : m_ends[0].data();
    ZelEllipseItemBst *const second = isWhole() ? getZelEllipseItemBst2() : m_ends[1].data();
    if (first && second) {
        lay(first, second);
    } else if (!m_hidden) {
        m_hidden = true;
        hide();
    }
}

bool ZelLineItemBstBst::isWhole()
{
    SdcBstBst *const bond = getSdcBstBst();
    return bond && bond->getSdcBst1() && bond->getSdcBst2();
}

void ZelLineItemBstBst::lay(ZelEllipseItemBst *first, ZelEllipseItemBst *second)
{
    if (!first || !second || !scene() || first->scene() != scene() || second->scene() != scene())
        return;
    if (m_ends[0] != first || m_ends[1] != second) {
        m_ends = {first, second};
        m_keepsEnds = false;
    }
    m_laid = true;
    setSceneLine(zel::geometry::bondLine(first->sceneBoundingRect(), second->sceneBoundingRect()));
    setZValue(zel::drawing::z::Bond);
    if (std::exchange(m_hidden, false))
        show();
}

ZelLineItemBstBst *ZelLineItemBstBst::asLineItemBstBst()
{
    return this;
}

bool ZelLineItemBstBst::isLineItemBstBst()
{
    return true;
}
