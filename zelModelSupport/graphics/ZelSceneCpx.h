#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

/// The scene in which one complex is drawn.
class ZELMODELSUPPORT_EXPORT ZelSceneCpx : public ZelScene
{
    Q_OBJECT
public:
    explicit ZelSceneCpx(QObject *parent = nullptr);
    ~ZelSceneCpx() override;
};
