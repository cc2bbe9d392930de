#pragma once

#include "zelModelSupport/graphics/ZelGraphicsView.h"

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

protected:
    void wheelEvent(QWheelEvent *e) override;
};
