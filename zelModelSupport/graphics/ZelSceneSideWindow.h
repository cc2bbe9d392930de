#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

/// The small scene that shows one stored object.
class ZELMODELSUPPORT_EXPORT ZelSceneSideWindow : public ZelScene
{
    Q_OBJECT
public:
    explicit ZelSceneSideWindow(QObject *parent = nullptr);
    ~ZelSceneSideWindow() override;
};
