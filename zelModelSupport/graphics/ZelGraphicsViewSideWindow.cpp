#include "zelModelSupport/graphics/ZelGraphicsViewSideWindow.h"

ZelGraphicsViewSideWindow::ZelGraphicsViewSideWindow(QWidget *parent) : ZelGraphicsViewZoom(parent)
{
    resetZoom();
}

ZelGraphicsViewSideWindow::~ZelGraphicsViewSideWindow() = default;

void ZelGraphicsViewSideWindow::scaleDefaultFactor() { }

double ZelGraphicsViewSideWindow::getDefaultScaleFactor() const
{
    return 1.0;
}
