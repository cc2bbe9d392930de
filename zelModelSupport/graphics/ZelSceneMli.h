#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

/// The scene in which one molecule interaction is drawn.
class ZELMODELSUPPORT_EXPORT ZelSceneMli : public ZelScene
{
    Q_OBJECT
public:
    explicit ZelSceneMli(QObject *parent = nullptr);
    ~ZelSceneMli() override;
};
