#pragma once

#include "zelModelSupport/graphics/ZelEllipseItem.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"

#include <array>

class QGraphicsLineItem;

/// Draws a molecule component: an ellipse with a row of feature stickies, the strokes of its
/// negation, and the lines to its neighbours.
///
/// The stickies and the strokes are child items; the lines are children of one of their two ends
/// and die with either.
class ZELMODELSUPPORT_EXPORT ZelEllipseItemMcp : public ZelEllipseItem
{
    Q_OBJECT
public:
    explicit ZelEllipseItemMcp(QGraphicsItem *parentItem = nullptr);
    explicit ZelEllipseItemMcp(const QRectF &rect, QGraphicsItem *parentItem = nullptr);
    ~ZelEllipseItemMcp() override;

    SdcMcp *getSdcMcp();
    QList<ZelLineItemMcpMcp *> getListMcpMcp() const { return m_lines; }
    /// The component items at the other ends of the lines, each once.
    QList<ZelEllipseItemMcp *> getListNeighborZelEllipseItemMcp() const;
    QList<ZelRectItemMcpSticky *> getListSticky() const { return m_stickies; }
    /// The same without a copy: valid until the stickies change.
    const QList<ZelRectItemMcpSticky *> &stickies() const { return m_stickies; }
    /// The first sticky of that name; null when there is none.
    ZelRectItemMcpSticky *getSticky(const QString &name) const;
    /// Null when the index is out of range.
    ZelRectItemMcpSticky *getSticky(int index) const;
    // The layout of the stickies is kept by the component; without one, by the item.
    int getTagDirectionCode();
    double getTagSize();
    double getTagGap();

    void setSdcMcp(SdcMcp *sdcMcp);
    void setTagSize(double size);
    void setTagGap(double gap);
    /// Turns or flips the side of the stickies, see SdcMcp::changeTagDirectionCode().
    void changeTagDirectionCode(int directionChangeType);

    /// Makes this item an end of the line. A line that already has two other ends is refused.
    void addMcpMcp(ZelLineItemMcpMcp *line);
    void removeMcpMcp(ZelLineItemMcpMcp *line);
    /// Re-lays the lines to the neighbours after a move.
    void updateMcpMcpPos();

    /// Takes the sticky over as a child. With layout the row is fitted and laid out again,
    /// otherwise the sticky keeps its place in the scene.
    void addStateSticky(ZelRectItemMcpSticky *sticky, bool layout);
    /// Destroys the sticky and takes its feature off the component.
    void removeStateSticky(ZelRectItemMcpSticky *sticky);
    /// Puts the stickies in another order, which shows at the next layout; refused unless the list
    /// holds exactly the stickies that are there.
    void setStickyOrder(const QList<ZelRectItemMcpSticky *> &order);
    /// Lays the row of stickies out. With fit, the side is computed anew from the ellipse and
    /// stored, unless the direction code is above 1.
    void updateLayoutOfListStateSticky(bool fit);

    void setNotIndicatorVisible(bool visible);
    bool isNotIndicatorVisible() const;
    void updateNotIndicator();

    /// Takes the rectangle and the brush of another ellipse.
    void getConfigFromRefItem(QGraphicsEllipseItem *ref);

    /// Emits posChanged(), then notifies the items of the component's sites.
    void notifyPosChanged() override;
    ZelEllipseItemMcp *asEllipseItemMcp() override;
    bool isEllipseItemMcp() override;

signals:
    /// The item has come to another scene or to none.
    void sceneChanged();

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    friend class ZelLineItemMcpMcp;
    friend class ZelRectItemMcpSticky;
    void forgetLine(ZelLineItemMcpMcp *line);
    void forgetSticky(ZelRectItemMcpSticky *sticky);

    QList<ZelLineItemMcpMcp *> m_lines;
    QList<ZelRectItemMcpSticky *> m_stickies;
    std::array<QGraphicsLineItem *, 2> m_notIndicator{}; // made when first shown
    double m_tagSize = zel::drawing::StickySize;
    double m_tagGap = zel::drawing::StickyGap;
};
