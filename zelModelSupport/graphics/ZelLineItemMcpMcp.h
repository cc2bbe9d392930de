#pragma once

#include "zelModelSupport/graphics/ZelLineItem.h"

/// The dotted backbone line between two neighbouring molecule components.
///
/// It is a child of the first component item attached, is listed in both, and dies with either.
class ZELMODELSUPPORT_EXPORT ZelLineItemMcpMcp : public ZelLineItem
{
    Q_OBJECT
public:
    ZelLineItemMcpMcp();
    /// Joins two component items and lays the line between their rims.
    ZelLineItemMcpMcp(ZelEllipseItemMcp *first, ZelEllipseItemMcp *second);
    ~ZelLineItemMcpMcp() override;

    ZelEllipseItemMcp *getZelEllipseItemMcp1() const { return m_first; }
    ZelEllipseItemMcp *getZelEllipseItemMcp2() const { return m_second; }
    /// The other end; null when the item is no end of this line or the only one.
    ZelEllipseItemMcp *getPartner(const ZelEllipseItemMcp *item) const;

    /// Attaches an end. False, and nothing done, when the line already has two other ends.
    bool addZelEllipseItemMcp(ZelEllipseItemMcp *item);
    /// Lays the line from rim to rim; nothing before both ends are attached.
    void updateLine();

    ZelLineItemMcpMcp *asLineItemMcpMcp() override;
    bool isLineItemMcpMcp() override;

private:
    friend class ZelEllipseItemMcp;
    bool addEnd(ZelEllipseItemMcp *item);
    void forgetEnd(const ZelEllipseItemMcp *item);

    ZelEllipseItemMcp *m_first = nullptr;
    ZelEllipseItemMcp *m_second = nullptr;
};
