#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"

SdcMli::SdcMli(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Mli, QStringLiteral("Molecule Interaction"))
{
}

SdcMli::~SdcMli()
{
    for (SdcBstBstMli *bond : std::as_const(m_bonds))
        bond->removeHolder(this);
}

SdcMli *SdcMli::toSdcMli()
{
    return this;
}

bool SdcMli::isSdcMli() const
{
    return true;
}

void SdcMli::forgetBond(SdcBstBst *bond)
{
    m_bonds.removeIf([bond](SdcBstBstMli *entry) { return entry == bond; });
}
