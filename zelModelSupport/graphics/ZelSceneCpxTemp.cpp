#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"

ZelSceneCpxTemp::ZelSceneCpxTemp(QObject *parent) : ZelSceneCpx(parent) { }

ZelSceneCpxTemp::~ZelSceneCpxTemp() = default;
