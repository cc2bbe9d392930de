#pragma once

#include "zelModelSupport/graphics/ZelGraphicsView.h"

#include <limits>

/// A view that the wheel zooms, within fixed limits.
class ZELMODELSUPPORT_EXPORT ZelGraphicsViewZoom : public ZelGraphicsView
{
    Q_OBJECT
public:
    /// Starts at the default factor.
    explicit ZelGraphicsViewZoom(QWidget *parent = nullptr);
    ~ZelGraphicsViewZoom() override;

    /// Multiplies the scale by a factor; a result outside the limits is refused, not clamped.
    virtual void scaleView(double factor);
    virtual void scaleDefaultFactor();
    virtual double getDefaultScaleFactor() const;
    virtual double getMinScale() const;
    virtual double getMaxScale() const;

    /// The default factor as the scale, with the scene's origin in the centre.
    void resetZoom();
    /// Shows all of a rectangle of the scene, in the centre as far as the scene's rectangle allows,
    /// at the default factor or the largest smaller scale at which it fits. That may be less than
    /// the smallest allowed scale, which then is the smallest until resetZoom().
    void showAll(const QRectF &sceneRect);

protected:
    void wheelEvent(QWheelEvent *e) override;

private:
    double m_leastShownScale = std::numeric_limits<double>::infinity();
};
