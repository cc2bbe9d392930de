#include "zelModelSupport/graphics/ZelSceneMli.h"

ZelSceneMli::ZelSceneMli(QObject *parent) : ZelScene(parent)
{
    setZelSceneType(ZelSceneType::Mli);
}

ZelSceneMli::~ZelSceneMli() = default;
