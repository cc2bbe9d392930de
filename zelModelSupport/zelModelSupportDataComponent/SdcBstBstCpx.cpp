#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCpx.h"

SdcBstBstCpx::SdcBstBstCpx(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : SdcBstBst(zelDbSqliteModel, parent)
{
}

ZelLineItemBstBstCpx *SdcBstBstCpx::getZelLineItemBstBstCpx() const
{
    ZelLineItemBstBst *const line = getZelLineItemBstBst();
    return line ? line->asLineItemBstBstCpx() : nullptr;
}

SdcBstBstCpx *SdcBstBstCpx::toSdcBstBstCpx()
{
    return this;
}

bool SdcBstBstCpx::isSdcBstBstCpx() const
{
    return true;
}
