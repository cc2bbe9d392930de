#include "zelModelSupport/zelModelSupportDataComponent/SdcCad.h"

#include "zelDb/ZelDbSqliteModel.h"

SdcCad::SdcCad(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent) : Sdc(zelDbSqliteModel, parent)
{
}
