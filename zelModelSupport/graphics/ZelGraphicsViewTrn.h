#pragma once

#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"

#include <QPointer>

/// One of two views that zoom together, such as those of both sides of a transformation.
class ZELMODELSUPPORT_EXPORT ZelGraphicsViewTrn : public ZelGraphicsViewZoom
{
    Q_OBJECT
public:
    explicit ZelGraphicsViewTrn(QWidget *parent = nullptr);
    ~ZelGraphicsViewTrn() override;

    /// The view that follows each zoom of this one; each checks its own limits. Not owned.
    void setTwinView(ZelGraphicsViewTrn *twinView);

    void scaleView(double factor) override;

private:
    QPointer<ZelGraphicsViewTrn> m_twinView;
};
