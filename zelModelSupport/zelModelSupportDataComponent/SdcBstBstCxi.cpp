#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

SdcBstBstCxi::SdcBstBstCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : SdcBstBst(zelDbSqliteModel, parent)
{
    setSdcName(QStringLiteral("CXI Binding Site Interaction"));
}

ZelLineItemBstBstCxi *SdcBstBstCxi::getZelLineItemBstBstCxi() const
{
    ZelLineItemBstBst *const line = getZelLineItemBstBst();
    return line ? line->asLineItemBstBstCxi() : nullptr;
}

SdcCpx *SdcBstBstCxi::getSdcCpx1() const
{
    return m_sdcCpx1;
}

void SdcBstBstCxi::setSdcCpx1(SdcCpx *cpx)
{
    m_sdcCpx1 = cpx;
}

SdcCpx *SdcBstBstCxi::getSdcCpx2() const
{
    return m_sdcCpx2;
}

void SdcBstBstCxi::setSdcCpx2(SdcCpx *cpx)
{
    m_sdcCpx2 = cpx;
}

SdcCpx *SdcBstBstCxi::getSdcCpxResult() const
{
    return m_sdcCpxResult;
}

void SdcBstBstCxi::setSdcCpxResult(SdcCpx *cpx)
{
    m_sdcCpxResult = cpx;
}

SdcBstBstCxi *SdcBstBstCxi::toSdcBstBstCxi()
{
    return this;
}

bool SdcBstBstCxi::isSdcBstBstCxi() const
{
    return true;
}
