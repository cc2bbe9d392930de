#include "zelModelSupport/graphics/ZelLineItemBstBstCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"

#include <QDebug>
#include <QPen>

ZelLineItemBstBstCpx::ZelLineItemBstBstCpx(bool createSdc, ZelDbSqliteModel *zelDbSqliteModel)
{
    setZValue(zel::drawing::z::BondCpx);
    setPen(zel::drawing::bondCpxPen());
    if (!createSdc)
        return;
    if (!zelDbSqliteModel) {
        qDebug() << "Error in ZelLineItemBstBstCpx::ZelLineItemBstBstCpx(bool "
                    "createSdc, ZelDbSqliteModel * zelDbSqliteModel)";
        return;
    }
    auto *const bond = new SdcBstBstCpx(zelDbSqliteModel, zelDbSqliteModel);
    setSdc(bond);
    bond->setZelLineItemBstBst(this);
}

ZelLineItemBstBstCpx::~ZelLineItemBstBstCpx()
{
    releaseSdc();
}

SdcBstBstCpx *ZelLineItemBstBstCpx::getSdcBstBstCpx()
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcBstBstCpx() : nullptr;
}

void ZelLineItemBstBstCpx::setHighlight(bool status, bool extendable)
{
    QPen bolder = pen();
    bolder.setWidthF(status ? zel::drawing::BondCpxHighlightWidth : QPen().widthF());
    setPen(bolder);
    ZelLineItemBstBst::setHighlight(status, extendable);
}

ZelLineItemBstBstCpx *ZelLineItemBstBstCpx::asLineItemBstBstCpx()
{
    return this;
}

bool ZelLineItemBstBstCpx::isLineItemBstBstCpx()
{
    return true;
}
