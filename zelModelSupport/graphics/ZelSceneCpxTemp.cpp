#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

ZelSceneCpxTemp::ZelSceneCpxTemp(QObject *parent) : ZelSceneCpx(parent) { }

ZelSceneCpxTemp::~ZelSceneCpxTemp() = default;

void ZelSceneCpxTemp::setSdc(Sdc *sdc)
{
    ZelSceneCpx::setSdc(sdc);
    if (sdc && !sdc->model() && !sdc->QStandardItem::parent())
        sdc->QObject::setParent(this);
}
