#include "zelModelSupport/graphics/ZelGraphicsViewTrn.h"

ZelGraphicsViewTrn::ZelGraphicsViewTrn(QWidget *parent) : ZelGraphicsViewZoom(parent) { }

ZelGraphicsViewTrn::~ZelGraphicsViewTrn() = default;

void ZelGraphicsViewTrn::setTwinView(ZelGraphicsViewTrn *twinView)
{
    m_twinView = twinView;
}

void ZelGraphicsViewTrn::scaleView(double factor)
{
    ZelGraphicsViewZoom::scaleView(factor);
    // Not the twin's own override, which would zoom this view again.
    if (m_twinView && m_twinView != this)
        m_twinView->ZelGraphicsViewZoom::scaleView(factor);
}
