#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"

#include <utility>

ZelLineItemMcpMcp::ZelLineItemMcpMcp()
{
    setPen(zel::drawing::backbonePen());
    setZValue(zel::drawing::z::Backbone);
    setFlag(ItemStacksBehindParent);
}

ZelLineItemMcpMcp::ZelLineItemMcpMcp(ZelEllipseItemMcp *first, ZelEllipseItemMcp *second)
    : ZelLineItemMcpMcp()
{
    addZelEllipseItemMcp(first);
    addZelEllipseItemMcp(second);
    updateLine();
}

ZelLineItemMcpMcp::~ZelLineItemMcpMcp()
{
    releaseSdc();
    for (ZelEllipseItemMcp *end :
        {std::exchange(m_first, nullptr), std::exchange(m_second, nullptr)}) {
        if (end)
            end->forgetLine(this);
    }
}

ZelEllipseItemMcp *ZelLineItemMcpMcp::getPartner(const ZelEllipseItemMcp *item) const
{
    if (item && item == m_first)
        return m_second;
    return item && item == m_second ? m_first : nullptr;
}

bool ZelLineItemMcpMcp::addZelEllipseItemMcp(ZelEllipseItemMcp *item)
{
    if (!item || !addEnd(item))
        return false;
    item->addMcpMcp(this);
    return true;
}

void ZelLineItemMcpMcp::updateLine()
{
    if (!m_first || !m_second)
        return;
    setSceneLine(
        zel::geometry::rimToRimLine(m_first->sceneBoundingRect(), m_second->sceneBoundingRect()));
}

ZelLineItemMcpMcp *ZelLineItemMcpMcp::asLineItemMcpMcp()
{
    return this;
}

bool ZelLineItemMcpMcp::isLineItemMcpMcp()
{
    return true;
}

bool ZelLineItemMcpMcp::addEnd(ZelEllipseItemMcp *item)
{
    if (item == m_first || item == m_second)
        return true;
    if (m_first && m_second)
        return false;
    (m_first ? m_second : m_first) = item;
    if (!parentItem())
        setParentItem(item);
    return true;
}

void ZelLineItemMcpMcp::forgetEnd(const ZelEllipseItemMcp *item)
{
    if (m_first == item)
        m_first = nullptr;
    if (m_second == item)
        m_second = nullptr;
}
