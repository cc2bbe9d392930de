#include "zelModelSupport/graphics/ZelTextItemLabelCpx.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

ZelTextItemLabelCpx::ZelTextItemLabelCpx(QGraphicsItem *parentItem) : ZelTextItemLabel(parentItem)
{
}

ZelTextItemLabelCpx::~ZelTextItemLabelCpx() = default;

SdcCpx *ZelTextItemLabelCpx::getSdcCpx() const
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcCpx() : nullptr;
}

void ZelTextItemLabelCpx::setSdcCpx(SdcCpx *sdcCpx)
{
    setSdc(sdcCpx);
}
