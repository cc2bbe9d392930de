#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"

#include <QTransform>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr double WheelDeltaPerDoubling = 240.0; // two notches

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
    if (width >= getMinScale() && width <= getMaxScale())
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
    setTransform(QTransform::fromScale(factor, factor));
    centerOn(0.0, 0.0);
}

void ZelGraphicsViewZoom::wheelEvent(QWheelEvent *e)
{
    scaleView(std::pow(2.0, -e->angleDelta().y() / WheelDeltaPerDoubling));
    e->accept(); // or the wheel would scroll a surrounding view, too
}
