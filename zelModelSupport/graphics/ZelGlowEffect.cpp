#include "zelModelSupport/graphics/ZelGlowEffect.h"

#include "zelModelSupport/graphics/ZelDrawing.h"

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

// The opacity of a blurred stroke at a distance from its middle, laid on in some coats.
double profile(double distance, double halfWidth, double deviation, int coats)
{
    const double unit = deviation * std::numbers::sqrt2;
    const double once =
        (std::erf((halfWidth - distance) / unit) + std::erf((halfWidth + distance) / unit)) / 2.0;
    return 1.0 - std::pow(1.0 - once, coats);
}

} // namespace

ZelGlowEffect::ZelGlowEffect(const QGraphicsItem *item, int coats) : m_item(item), m_coats(coats)
{
    setBlurRadius(zel::drawing::HaloBlurRadius);
}

void ZelGlowEffect::draw(QPainter *painter)
{
    const auto *const ellipse = qgraphicsitem_cast<const QGraphicsEllipseItem *>(m_item);
    const auto *const rect = qgraphicsitem_cast<const QGraphicsRectItem *>(m_item);
    const auto *const line = qgraphicsitem_cast<const QGraphicsLineItem *>(m_item);
    const double deviation = blurRadius() / 2.0;
    if (!(ellipse || rect || line) || !(deviation > 0.0)) {
        QGraphicsBlurEffect::draw(painter);
        return;
    }
    QPen pen = ellipse ? ellipse->pen() : rect ? rect->pen() : line->pen();
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    QColor color = pen.color();
    const double halfWidth = pen.widthF() / 2.0;
    const double reach = halfWidth + Reach * deviation;
    const double opacity = color.alphaF() * painter->opacity();

    painter->save();
    painter->setOpacity(1.0);
    painter->setBrush(Qt::NoBrush);
    // From the widest stroke to the narrowest: each adds what is missing at its distance.
    double covered = 0.0;
    for (int i = 0; i < Strokes; ++i) {
        const double outer = reach * (Strokes - i) / Strokes;
        const double middle = outer - reach / Strokes / 2.0;
        const double wanted = opacity * profile(middle, halfWidth, deviation, m_coats);
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
