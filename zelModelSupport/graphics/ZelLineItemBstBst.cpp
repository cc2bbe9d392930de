#include "zelModelSupport/graphics/ZelLineItemBstBst.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
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
    endGlow();
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
    endGlow();
    for (ZelEllipseItemBst *item : getListZelEllipseItemBst()) {
        item->setHighlight(status);
        if (status)
            m_glowing.append(item);
    }
    if (SdcBstBst *bond = status ? getSdcBstBst() : nullptr)
        connect(
            bond, &QObject::destroyed, this, &ZelLineItemBstBst::bondDied, Qt::UniqueConnection);
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
        connect(item, &ZelEllipseItem::posChanged, this, &ZelLineItemBstBst::endMoved,
            Qt::UniqueConnection);
}

void ZelLineItemBstBst::endMoved()
{
    const auto [first, second] = ends();
    if (!m_hidden && first && second && m_ends[0] == first && m_ends[1] == second
        && m_laidLine == line() && m_endRects[0] == first->sceneBoundingRect()
        && m_endRects[1] == second->sceneBoundingRect())
        return;
    if (isWhole())
        updateLine();
    else
        updateEnds();
}

void ZelLineItemBstBst::updateEnds()
{
    if (!m_laid)
        return;
    const auto [first, second] = ends();
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

std::array<ZelEllipseItemBst *, 2> ZelLineItemBstBst::ends()
{
    if (isWhole())
        return {getZelEllipseItemBst1(), getZelEllipseItemBst2()};
    return {m_ends[0].data(), m_ends[1].data()};
}

// Sites that glow for themselves go on glowing.
void ZelLineItemBstBst::endGlow()
{
    const QList<QPointer<ZelEllipseItemBst>> items = std::exchange(m_glowing, {});
    for (const QPointer<ZelEllipseItemBst> &item : items) {
        if (item)
            item->setHighlight(item->getSdcBst() && item->getSdcBst()->isHighlighted());
    }
}

void ZelLineItemBstBst::bondDied()
{
    setHighlight(false, true);
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
    m_endRects = {first->sceneBoundingRect(), second->sceneBoundingRect()};
    setSceneLine(zel::geometry::bondLine(m_endRects[0], m_endRects[1]));
    m_laidLine = line();
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
