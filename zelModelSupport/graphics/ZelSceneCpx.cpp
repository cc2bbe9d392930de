#include "zelModelSupport/graphics/ZelSceneCpx.h"

ZelSceneCpx::ZelSceneCpx(QObject *parent) : ZelScene(parent)
{
    setZelSceneType(ZelSceneType::Cpx);
}

ZelSceneCpx::~ZelSceneCpx() = default;
