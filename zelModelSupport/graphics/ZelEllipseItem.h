#pragma once

#include "zelModelSupport/graphics/ZelGItem.h"

#include <QGraphicsEllipseItem>
#include <QList>

class SdcMcp;

/// Base of the ellipses that draw molecule components and binding sites.
///
/// Its bounds are its rectangle and its shape is the ellipse in it, whatever the pen: strokes are
/// drawn inside the rim. The rectangle is centred on the item's origin.
class ZELMODELSUPPORT_EXPORT ZelEllipseItem : public ZelGItem, public QGraphicsEllipseItem
{
    Q_OBJECT
public:
    explicit ZelEllipseItem(QGraphicsItem *parentItem = nullptr);
    explicit ZelEllipseItem(const QRectF &rect, QGraphicsItem *parentItem = nullptr);
    ~ZelEllipseItem() override;

    int type() const override;
    /// Also shows or hides the halo.
    virtual void setHighlight(bool on);
    virtual bool isHighlighted();
    /// Emits posChanged().
    virtual void notifyPosChanged();
    virtual bool intersectsWithListScp(const QList<SdcMcp *> &list, bool withSites);
    virtual bool intersectsWithSdc(Sdc *sdc);
    virtual bool containsListScp(const QList<SdcMcp *> &list, bool withSites);
    virtual bool containsSdc(Sdc *sdc);
    /// False when the items are not both in one scene.
    virtual bool intersectsWithZelEllipseItem(ZelEllipseItem *other);
    virtual bool containsZelEllipseItem(ZelEllipseItem *other);
    /// The items of the components, then of the sites of sdc that this item intersects, without
    /// this item.
    virtual QList<ZelEllipseItem *> getInteractedListZelEllipseItem(Sdc *sdc);
    virtual void hightlightInteractionWithSdc(Sdc *sdc);

    /// The angle in radians, counter-clockwise on screen, at which this item lies as seen from
    /// the other; 1000.0 when both have the same centre or other is null.
    double getAtan2(ZelEllipseItem *other) const;

    ZelEllipseItem *asEllipseItem() override;
    bool isEllipseItem() override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

signals:
    void posChanged();

private:
    bool m_highlighted = false;
};
