#pragma once

#include <QRectF>

class QGraphicsBlurEffect;
class QGraphicsItem;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

/// The blurred outlines of ellipse, rectangle and line items, as halos and rings have them.
///
/// The toolkit blurs a pixmap in the item's own units, which shows steps as soon as it is enlarged
/// and ends up as a small bitmap in vector graphics. Here the outline is stroked over and over with
/// the blur's profile instead, which is sharp at every scale and on every device.
namespace zel::glow {

/// How far the blur reaches beyond the stroke, in scene units.
double reach();

/// Gives an item the blur that it paints: a blur effect, disabled.
QGraphicsBlurEffect *setBlur(QGraphicsItem *item);

/// Paints the outline of an item in its own coordinates; more coats glow stronger.
void paint(QPainter *painter, const QGraphicsItem *item, int coats);

/// A toolkit item that paints its blurred outline; wants setBlur().
template <typename Item>
class Outline : public Item
{
public:
    template <typename Geometry>
    Outline(const Geometry &geometry, QGraphicsItem *parentItem, int coats)
        : Item(geometry, parentItem), m_coats(coats)
    {
    }

    QRectF boundingRect() const override
    {
        const double by = reach();
        return Item::boundingRect().adjusted(-by, -by, by, by);
    }

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        glow::paint(painter, this, m_coats);
    }

private:
    int m_coats;
};

} // namespace zel::glow
