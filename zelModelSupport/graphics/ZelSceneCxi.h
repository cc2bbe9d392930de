#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

/// The scene in which one complex interaction is drawn.
class ZELMODELSUPPORT_EXPORT ZelSceneCxi : public ZelScene
{
    Q_OBJECT
public:
    explicit ZelSceneCxi(QObject *parent = nullptr);
    ~ZelSceneCxi() override;
};
