#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"

SdcBstBstMli::SdcBstBstMli(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : SdcBstBst(zelDbSqliteModel, parent)
{
}

ZelLineItemBstBstMli *SdcBstBstMli::getZelLineItemBstBstMli() const
{
    ZelLineItemBstBst *const line = getZelLineItemBstBst();
    return line ? line->asLineItemBstBstMli() : nullptr;
}

SdcBstBstMli *SdcBstBstMli::toSdcBstBstMli()
{
    return this;
}

bool SdcBstBstMli::isSdcBstBstMli() const
{
    return true;
}
