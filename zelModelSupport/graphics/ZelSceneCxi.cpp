#include "zelModelSupport/graphics/ZelSceneCxi.h"

ZelSceneCxi::ZelSceneCxi(QObject *parent) : ZelScene(parent)
{
    setZelSceneType(ZelSceneType::Cxi);
}

ZelSceneCxi::~ZelSceneCxi() = default;
