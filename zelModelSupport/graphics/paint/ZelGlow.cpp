#include "zelModelSupport/graphics/paint/ZelGlow.h"

#include "zelModelSupport/graphics/paint/ZelDrawing.h"

#include <QGraphicsBlurEffect>
#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QPainter>
#include <QPen>

#include <cmath>
#include <numbers>

namespace {

constexpr int Strokes = 12;
constexpr double Reach = 2.5; // of the blur beyond the stroke, in standard deviations
constexpr double Deviation = zel::drawing::HaloBlurRadius / 2.0;

// The opacity of a blurred stroke at a distance from its middle, laid on in some coats.
double profile(double distance, double halfWidth, double deviation, int coats)
{
    const double unit = deviation * std::numbers::sqrt2;
    const double once =
        (std::erf((halfWidth - distance) / unit) + std::erf((halfWidth + distance) / unit)) / 2.0;
    return 1.0 - std::pow(1.0 - once, coats);
}

} // namespace

double zel::glow::reach()
{
    return Reach * Deviation;
}

// An enabled effect has the extent that the scene's views give it. Zooming, opening or closing a
// view changes that extent behind the back of the scene's index, which then keeps items that are
// destroyed.
QGraphicsBlurEffect *zel::glow::setBlur(QGraphicsItem *item)
{
    auto *const blur = new QGraphicsBlurEffect;
    blur->setBlurRadius(zel::drawing::HaloBlurRadius);
    blur->setEnabled(false);
    item->setGraphicsEffect(blur);
    return blur;
}

void zel::glow::paint(QPainter *painter, const QGraphicsItem *item, int coats)
{
    const auto *const ellipse = qgraphicsitem_cast<const QGraphicsEllipseItem *>(item);
    const auto *const rect = qgraphicsitem_cast<const QGraphicsRectItem *>(item);
    const auto *const line = qgraphicsitem_cast<const QGraphicsLineItem *>(item);
    if (!ellipse && !rect && !line)
        return;
    QPen pen = ellipse ? ellipse->pen() : rect ? rect->pen() : line->pen();
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    QColor color = pen.color();
    const double halfWidth = pen.widthF() / 2.0;
    const double reach = halfWidth + Reach * Deviation;
    const double opacity = color.alphaF() * painter->opacity();

    painter->save();
    painter->setOpacity(1.0);
    painter->setBrush(Qt::NoBrush);
    // From the widest stroke to the narrowest: each adds what is missing at its distance.
    double covered = 0.0;
    for (int i = 0; i < Strokes; ++i) {
        const double outer = reach * (Strokes - i) / Strokes;
        const double middle = outer - reach / Strokes / 2.0;
        const double wanted = opacity * profile(middle, halfWidth, Deviation, coats);
        if (wanted <= covered)
            continue;
        color.setAlphaF(static_cast<float>((wanted - covered) / (1.0 - covered)));
        covered = wanted;
        pen.setColor(color);
        pen.setWidthF(2.0 * outer);
        painter->setPen(pen);
        if (ellipse)
            painter->drawEllipse(ellipse->rect());
        else if (rect)
            painter->drawRect(rect->rect());
        else
            painter->drawLine(line->line());
    }
    painter->restore();
}
