#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"

#include <QDebug>

ZelLineItemBstBstMli::ZelLineItemBstBstMli(bool createSdc, ZelDbSqliteModel *zelDbSqliteModel)
{
    if (!createSdc)
        return;
    if (!zelDbSqliteModel) {
        qDebug() << "Error in ZelLineItemBstBstMli::ZelLineItemBstBstMli(bool "
                    "createSdc, ZelDbSqliteModel * zelDbSqliteModel)";
        return;
    }
    auto *const bond = new SdcBstBstMli(zelDbSqliteModel, zelDbSqliteModel);
    setSdc(bond);
    bond->setZelLineItemBstBst(this);
}

ZelLineItemBstBstMli::~ZelLineItemBstBstMli()
{
    releaseSdc();
}

SdcBstBstMli *ZelLineItemBstBstMli::getSdcBstBstMli()
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcBstBstMli() : nullptr;
}

ZelLineItemBstBstMli *ZelLineItemBstBstMli::asLineItemBstBstMli()
{
    return this;
}

bool ZelLineItemBstBstMli::isLineItemBstBstMli()
{
    return true;
}
