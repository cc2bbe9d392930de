#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

#include <QBrush>
#include <QDebug>
#include <QGraphicsLineItem>
#include <QGraphicsScene>

#include <algorithm>
#include <utility>

using namespace zel::drawing;

ZelEllipseItemMcp::ZelEllipseItemMcp(QGraphicsItem *parentItem) : ZelEllipseItem(parentItem) { }

ZelEllipseItemMcp::ZelEllipseItemMcp(const QRectF &rect, QGraphicsItem *parentItem)
    : ZelEllipseItem(rect, parentItem)
{
}

ZelEllipseItemMcp::~ZelEllipseItemMcp()
{
    releaseSdc();
    qDeleteAll(std::exchange(m_lines, {}));
    for (ZelRectItemMcpSticky *sticky : std::exchange(m_stickies, {}))
        sticky->m_holder = nullptr;
}

SdcMcp *ZelEllipseItemMcp::getSdcMcp()
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcMcp() : nullptr;
}

QList<ZelEllipseItemMcp *> ZelEllipseItemMcp::getListNeighborZelEllipseItemMcp() const
{
    QList<ZelEllipseItemMcp *> neighbours;
    for (const ZelLineItemMcpMcp *line : m_lines) {
        ZelEllipseItemMcp *const partner = line->getPartner(this);
        if (partner && !neighbours.contains(partner))
            neighbours.append(partner);
    }
    return neighbours;
}

ZelRectItemMcpSticky *ZelEllipseItemMcp::getSticky(const QString &name) const
{
    const auto found = std::find_if(m_stickies.cbegin(), m_stickies.cend(),
        [&name](const ZelRectItemMcpSticky *sticky) { return sticky->getName() == name; });
    return found == m_stickies.cend() ? nullptr : *found;
}

ZelRectItemMcpSticky *ZelEllipseItemMcp::getSticky(int index) const
{
    return m_stickies.value(index);
}

int ZelEllipseItemMcp::getTagDirectionCode()
{
    SdcMcp *const mcp = getSdcMcp();
    return mcp ? mcp->getTagDirectionCode() : 0;
}

double ZelEllipseItemMcp::getTagSize()
{
    SdcMcp *const mcp = getSdcMcp();
    return mcp ? mcp->getTagSize() : m_tagSize;
}

double ZelEllipseItemMcp::getTagGap()
{
    SdcMcp *const mcp = getSdcMcp();
    return mcp ? mcp->getTagGap() : m_tagGap;
}

void ZelEllipseItemMcp::setSdcMcp(SdcMcp *sdcMcp)
{
    setSdc(sdcMcp);
    for (ZelRectItemMcpSticky *sticky : std::as_const(m_stickies))
        sticky->setSdcMcp(sdcMcp);
}

void ZelEllipseItemMcp::setTagSize(double size)
{
    m_tagSize = size;
    if (SdcMcp *mcp = getSdcMcp())
        mcp->setTagSize(size);
}

void ZelEllipseItemMcp::setTagGap(double gap)
{
    m_tagGap = gap;
    if (SdcMcp *mcp = getSdcMcp())
        mcp->setTagGap(gap);
}

void ZelEllipseItemMcp::changeTagDirectionCode(int directionChangeType)
{
    if (SdcMcp *mcp = getSdcMcp())
        mcp->changeTagDirectionCode(directionChangeType);
}

void ZelEllipseItemMcp::addMcpMcp(ZelLineItemMcpMcp *line)
{
    if (!line || m_lines.contains(line))
        return;
    if (!line->addEnd(this)) {
        qDebug() << "Error found at void ZelEllipseItemMcp::addMcpMcp(ZelLineItemMcpMcp * line): "
                    "the line already joins two other components";
        return;
    }
    m_lines.append(line);
}

void ZelEllipseItemMcp::removeMcpMcp(ZelLineItemMcpMcp *line)
{
    if (m_lines.removeAll(line) > 0)
        line->forgetEnd(this);
}

void ZelEllipseItemMcp::updateMcpMcpPos()
{
    for (ZelLineItemMcpMcp *line : std::as_const(m_lines))
        line->updateLine();
}

void ZelEllipseItemMcp::addStateSticky(ZelRectItemMcpSticky *sticky, bool layout)
{
    if (!sticky || m_stickies.contains(sticky))
        return;
    if (sticky->m_holder)
        sticky->m_holder->forgetSticky(sticky);
    m_stickies.append(sticky);
    sticky->m_holder = this;
    const QPointF place = mapFromScene(sticky->scenePos());
    sticky->setParentItem(this);
    sticky->setPos(place);
    sticky->setSdcMcp(getSdcMcp());
    sticky->setZValue(zValue() + z::Sticky);
    if (layout)
        updateLayoutOfListStateSticky(true);
}

void ZelEllipseItemMcp::removeStateSticky(ZelRectItemMcpSticky *sticky)
{
    if (!sticky || !m_stickies.contains(sticky))
        return;
    forgetSticky(sticky);
    sticky->hide();
    // The feature dies with its sticky, so it leaves the component first.
    SdcMcpTag *const tag = sticky->getSdcMcpTag();
    if (SdcMcp *mcp = tag ? getSdcMcp() : nullptr)
        mcp->removeSdcTag(tag);
    delete sticky;
    updateLayoutOfListStateSticky(true);
}

void ZelEllipseItemMcp::setStickyOrder(const QList<ZelRectItemMcpSticky *> &order)
{
    if (std::is_permutation(order.cbegin(), order.cend(), m_stickies.cbegin(), m_stickies.cend()))
        m_stickies = order;
}

void ZelEllipseItemMcp::updateLayoutOfListStateSticky(bool fit)
{
    using namespace zel::geometry;
    if (m_stickies.isEmpty())
        return;
    const int count = static_cast<int>(m_stickies.size());
    const int directionCode = getTagDirectionCode();
    RowMeasure measure{getTagSize(), getTagGap()};
    if (directionCode > 1 || (measure.side != 0.0 && !fit)) {
        measure.gap = rowGap(measure.side, measure.gap);
    } else {
        measure = fitRow(rect(), count, measure.gap);
        setTagSize(measure.side);
        setTagGap(measure.gap);
    }
    const QList<QRectF> places = rowRects(rect(), count, measure, directionCode);
    const QRectF square(0.0, 0.0, measure.side, measure.side);
    for (int i = 0; i < count; ++i) {
        ZelRectItemMcpSticky *const sticky = m_stickies.at(i);
        if (sticky->rect() != square)
            sticky->setRect(square);
        sticky->setPos(places.at(i).topLeft());
        sticky->updateHalfNofillItem();
    }
    updateNotIndicator();
}

void ZelEllipseItemMcp::setNotIndicatorVisible(bool visible)
{
    if (!m_notIndicator.front()) {
        if (!visible)
            return;
        for (QGraphicsLineItem *&stroke : m_notIndicator) {
            stroke = new QGraphicsLineItem(this);
            stroke->setPen(notIndicatorPen());
            stroke->setOpacity(NotIndicatorOpacity);
        }
        updateNotIndicator();
    }
    for (QGraphicsLineItem *stroke : m_notIndicator)
        stroke->setVisible(visible);
}

bool ZelEllipseItemMcp::isNotIndicatorVisible() const
{
    return m_notIndicator.front() && m_notIndicator.front()->isVisible();
}

void ZelEllipseItemMcp::updateNotIndicator()
{
    if (!m_notIndicator.front())
        return;
    QRectF bounds = sceneBoundingRect();
    for (const ZelRectItemMcpSticky *sticky : std::as_const(m_stickies))
        bounds |= sticky->sceneBoundingRect();
    const auto strokes = zel::geometry::negationStrokes(mapFromScene(bounds), NotIndicatorOverhang);
    for (size_t i = 0; i < strokes.size(); ++i) {
        m_notIndicator.at(i)->setLine(strokes.at(i));
        m_notIndicator.at(i)->setZValue(zValue() + z::NotIndicator);
    }
}

void ZelEllipseItemMcp::getConfigFromRefItem(QGraphicsEllipseItem *ref)
{
    if (!ref)
        return;
    setRect(ref->rect());
    setBrush(ref->brush());
}

void ZelEllipseItemMcp::notifyPosChanged()
{
    ZelEllipseItem::notifyPosChanged();
    SdcMcp *const mcp = getSdcMcp();
    if (!mcp)
        return;
    for (SdcBst *bst : mcp->getListSdcBst()) {
        if (ZelEllipseItemBst *item = bst->getZelEllipseItemBst())
            item->notifyPosChanged();
    }
}

ZelEllipseItemMcp *ZelEllipseItemMcp::asEllipseItemMcp()
{
    return this;
}

bool ZelEllipseItemMcp::isEllipseItemMcp()
{
    return true;
}

QVariant ZelEllipseItemMcp::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSceneHasChanged)
        emit sceneChanged();
    return ZelEllipseItem::itemChange(change, value);
}

void ZelEllipseItemMcp::forgetLine(ZelLineItemMcpMcp *line)
{
    m_lines.removeAll(line);
}

void ZelEllipseItemMcp::forgetSticky(ZelRectItemMcpSticky *sticky)
{
    m_stickies.removeAll(sticky);
    sticky->m_holder = nullptr;
}
