#include "zelModelSupport/zelModelSupportDataComponent/SdcTrn.h"

#include "zelDb/ZelDbSqliteModel.h"

SdcTrn::SdcTrn(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent) : Sdc(zelDbSqliteModel, parent)
{
    addSdcChild(nullptr, false);
    addSdcChild(nullptr, false);
}

SdcTrn *SdcTrn::toSdcTrn()
{
    return this;
}

bool SdcTrn::isSdcTrn() const
{
    return true;
}
