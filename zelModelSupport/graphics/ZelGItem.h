#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QGraphicsItem>
#include <QObject>
#include <QPointer>

#include <memory>

class Sdc;
class ZelEllipseItem;
class ZelEllipseItemBst;
class ZelEllipseItemMcp;
class ZelHighlightItem;
class ZelLineItem;
class ZelLineItemBstBst;
class ZelLineItemBstBstCpx;
class ZelLineItemBstBstCxi;
class ZelLineItemBstBstMli;
class ZelLineItemMcpMcp;
class ZelRectItem;
class ZelRectItemMcpSticky;

/// The values of QGraphicsItem::type() of the items that stand for data components.
enum ZelItemType : int {
    ZelEllipseItemType = QGraphicsItem::UserType + 1,
    ZelLineItemType = QGraphicsItem::UserType + 4,
    ZelRectItemType = QGraphicsItem::UserType + 10,
    ZelRectItemMcpStickyType = QGraphicsItem::UserType + 11
};

/// What every graphics item of a data component has beside its shape: the component, the tooltip
/// that follows it, and the halo that highlights the item.
///
/// The component is not owned. Item and component may die in either order: the item takes itself
/// off its component, and forgets a component that is gone.
class ZELMODELSUPPORT_EXPORT ZelGItem : public QObject
{
    Q_OBJECT
public:
    ZelGItem();
    ~ZelGItem() override;

    /// Shows a component; registers this item with a molecule component or a binding site. Bonds
    /// register their line themselves.
    virtual void setSdc(Sdc *sdc);
    /// Null when there is none or it has been destroyed.
    virtual Sdc *getSdc();
    /// Shows or hides the halo, which is made on first use.
    virtual void setHighlightItem(bool on);
    /// Null before the first setHighlightItem().
    virtual ZelHighlightItem *getHighlightItem();

    // The item as one kind, or null, and whether it is of that kind. The pairs named Host are for
    // item kinds that an application adds.
    virtual ZelGItem *asHostItem();
    virtual bool isHostItem();
    virtual ZelEllipseItem *asEllipseItem();
    virtual bool isEllipseItem();
    virtual ZelEllipseItemMcp *asEllipseItemMcp();
    virtual bool isEllipseItemMcp();
    virtual ZelEllipseItemBst *asEllipseItemBst();
    virtual bool isEllipseItemBst();
    virtual ZelLineItem *asLineItem();
    virtual bool isLineItem();
    virtual ZelLineItemBstBst *asLineItemBstBst();
    virtual bool isLineItemBstBst();
    virtual ZelLineItemBstBstMli *asLineItemBstBstMli();
    virtual bool isLineItemBstBstMli();
    virtual ZelLineItemMcpMcp *asLineItemMcpMcp();
    virtual bool isLineItemMcpMcp();
    virtual ZelLineItemBstBstCpx *asLineItemBstBstCpx();
    virtual bool isLineItemBstBstCpx();
    virtual ZelLineItemBstBstCxi *asLineItemBstBstCxi();
    virtual bool isLineItemBstBstCxi();
    virtual ZelGItem *asHostLineItem();
    virtual bool isHostLineItem();
    virtual ZelRectItem *asRectItem();
    virtual bool isRectItem();
    virtual ZelGItem *asHostRectItem();
    virtual bool isHostRectItem();
    virtual ZelRectItemMcpSticky *asRectItemMcpSticky();
    virtual bool isRectItemMcpSticky();
    virtual ZelGItem *asHostLabelItem();
    virtual bool isHostLabelItem();

    // Casts of any graphics item, also null; null when it is not of the kind. A sticky is no rect
    // item to them.
    static ZelEllipseItem *toZelEllipseItem(QGraphicsItem *item);
    static ZelEllipseItemBst *toZelEllipseItemBst(QGraphicsItem *item);
    static ZelEllipseItemMcp *toZelEllipseItemMcp(QGraphicsItem *item);
    static ZelLineItem *toZelLineItem(QGraphicsItem *item);
    static ZelLineItemBstBstMli *toZelLineItemBstBstMli(QGraphicsItem *item);
    static ZelRectItem *toZelRectItem(QGraphicsItem *item);
    static ZelRectItemMcpSticky *toZelRectItemMcpSticky(QGraphicsItem *item);

public slots:
    /// Brings the tooltip of an ellipse item up to date with its component.
    void slot_updateToolTips();

protected:
    /// Stores the component and follows its changes, without registering; false when it is the
    /// one already shown.
    bool takeSdc(Sdc *sdc);
    /// Takes this item off its component. Called by the most derived destructors, while the item
    /// is still whole.
    void releaseSdc();

private:
    QPointer<Sdc> m_sdc;
    std::unique_ptr<ZelHighlightItem> m_highlightItem;
};
