#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"

#include <QTransform>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double WheelDeltaPerDoubling = 240.0; // two notches

double fittingScale(const QSize &shown, const QRectF &rect, double most)
{
    if (rect.width() > 0.0)
        most = std::min(most, shown.width() / rect.width());
    return rect.height() > 0.0 ? std::min(most, shown.height() / rect.height()) : most;
}

} // namespace

ZelGraphicsViewZoom::ZelGraphicsViewZoom(QWidget *parent) : ZelGraphicsView(parent)
{
    ZelGraphicsViewZoom::scaleDefaultFactor();
}

ZelGraphicsViewZoom::~ZelGraphicsViewZoom() = default;

void ZelGraphicsViewZoom::scaleView(double factor)
{
    const double width =
        transform().scale(factor, factor).mapRect(QRectF(0.0, 0.0, 1.0, 1.0)).width();
    // Written so that a factor that is no number is refused as well.
    if (width >= std::min(getMinScale(), m_leastShownScale) && width <= getMaxScale())
        scale(factor, factor);
}

void ZelGraphicsViewZoom::scaleDefaultFactor()
{
    scaleView(getDefaultScaleFactor());
}

double ZelGraphicsViewZoom::getDefaultScaleFactor() const
{
    return 2.0;
}

double ZelGraphicsViewZoom::getMinScale() const
{
    return 0.5;
}

double ZelGraphicsViewZoom::getMaxScale() const
{
    return 20.0;
}

void ZelGraphicsViewZoom::resetZoom()
{
    const double factor = getDefaultScaleFactor();
    m_leastShownScale = std::numeric_limits<double>::infinity();
    setTransform(QTransform::fromScale(factor, factor));
    centerOn(0.0, 0.0);
}

void ZelGraphicsViewZoom::showAll(const QRectF &sceneRect)
{
    // The first scale may bring scroll bars, which leave less room.
    for (int pass = 0; pass < 2; ++pass) {
        const double scale = fittingScale(viewport()->size(), sceneRect, getDefaultScaleFactor());
        if (!(scale > 0.0))
            return;
        m_leastShownScale = scale;
        setTransform(QTransform::fromScale(scale, scale));
    }
    centerOn(sceneRect.center());
}

void ZelGraphicsViewZoom::wheelEvent(QWheelEvent *e)
{
    scaleView(std::pow(2.0, -e->angleDelta().y() / WheelDeltaPerDoubling));
    e->accept(); // or the wheel would scroll a surrounding view, too
}
