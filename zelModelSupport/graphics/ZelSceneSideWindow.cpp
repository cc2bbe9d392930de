#include "zelModelSupport/graphics/ZelSceneSideWindow.h"

ZelSceneSideWindow::ZelSceneSideWindow(QObject *parent) : ZelScene(parent)
{
    setSceneRect(-100.0, -100.0, 200.0, 200.0);
}

ZelSceneSideWindow::~ZelSceneSideWindow() = default;
