#pragma once

#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"

/// The view of the small scene that shows one stored object.
class ZELMODELSUPPORT_EXPORT ZelGraphicsViewSideWindow : public ZelGraphicsViewZoom
{
    Q_OBJECT
public:
    explicit ZelGraphicsViewSideWindow(QWidget *parent = nullptr);
    ~ZelGraphicsViewSideWindow() override;

    /// Does nothing: a preview has no enlargement to start from.
    void scaleDefaultFactor() override;
    double getDefaultScaleFactor() const override;
};
