#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"

SdcCxi::SdcCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Cxi, QStringLiteral("Complex Interaction"))
{
}

SdcCxi::~SdcCxi()
{
    for (SdcBstBstCxi *bond : std::as_const(m_bonds))
        bond->removeHolder(this);
}

SdcCxi *SdcCxi::toSdcCxi()
{
    return this;
}

bool SdcCxi::isSdcCxi() const
{
    return true;
}

void SdcCxi::forgetBond(SdcBstBst *bond)
{
    m_bonds.removeIf([bond](SdcBstBstCxi *entry) { return entry == bond; });
}
