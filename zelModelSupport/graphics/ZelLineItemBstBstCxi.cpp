#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"

#include <QDebug>

ZelLineItemBstBstCxi::ZelLineItemBstBstCxi(bool createSdc, ZelDbSqliteModel *zelDbSqliteModel)
{
    if (!createSdc)
        return;
    if (!zelDbSqliteModel) {
        qDebug() << "Error in ZelLineItemBstBstCxi::ZelLineItemBstBstCxi(bool "
                    "createSdc, ZelDbSqliteModel * zelDbSqliteModel)";
        return;
    }
    auto *const bond = new SdcBstBstCxi(zelDbSqliteModel, zelDbSqliteModel);
    setSdc(bond);
    bond->setZelLineItemBstBst(this);
}

ZelLineItemBstBstCxi::~ZelLineItemBstBstCxi()
{
    releaseSdc();
}

SdcBstBstCxi *ZelLineItemBstBstCxi::getSdcBstBstCxi()
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcBstBstCxi() : nullptr;
}

ZelLineItemBstBstCxi *ZelLineItemBstBstCxi::asLineItemBstBstCxi()
{
    return this;
}

bool ZelLineItemBstBstCxi::isLineItemBstBstCxi()
{
    return true;
}
