#pragma once

#include <QGraphicsBlurEffect>

class QGraphicsItem;

/// The blurred outline of an ellipse, rectangle or line item, as halos and rings have it.
///
/// The toolkit blurs a pixmap in the item's own units, which shows steps as soon as it is enlarged
/// and ends up as a small bitmap in vector graphics. Here the outline is stroked over and over with
/// the blur's profile instead, which is sharp at every scale and on every device.
class ZelGlowEffect : public QGraphicsBlurEffect
{
    Q_OBJECT
public:
    /// For the item that becomes its owner with setGraphicsEffect(); more coats glow stronger.
    explicit ZelGlowEffect(const QGraphicsItem *item, int coats = 1);

protected:
    void draw(QPainter *painter) override;

private:
    const QGraphicsItem *m_item = nullptr;
    int m_coats = 1;
};
