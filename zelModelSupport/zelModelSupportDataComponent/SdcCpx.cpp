#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"

SdcCpx::SdcCpx(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Cpx, QStringLiteral("Complex Species"))
{
}

SdcCpx::~SdcCpx()
{
    for (SdcBstBstCpx *bond : std::as_const(m_bonds))
        bond->removeHolder(this);
}

bool SdcCpx::addSdcBstBstCpx(SdcBstBstCpx *bond)
{
    if (!bond || m_bonds.contains(bond))
        return false;
    m_bonds.append(bond);
    bond->addHolder(this);
    bond->setParentSdc(this); // changes of the bond climb to its complex
    return true;
}

void SdcCpx::removeSdcBstBstCpx(SdcBstBstCpx *bond)
{
    if (m_bonds.removeAll(bond) == 0)
        return;
    bond->removeHolder(this);
    if (bond->getParentSdc() == this)
        bond->setParentSdc(nullptr);
}

bool SdcCpx::hasSdcBstBstCpx(SdcBstBstCpx *bond) const
{
    return m_bonds.contains(bond);
}

bool SdcCpx::isEmpty()
{
    return Sdc::isEmpty() && m_bonds.isEmpty();
}

SdcCpx *SdcCpx::toSdcCpx()
{
    return this;
}

bool SdcCpx::isSdcCpx() const
{
    return true;
}

void SdcCpx::setBstBindingStatusEnabled(bool enabled)
{
    m_bstBindingStatusEnabled = enabled;
}

bool SdcCpx::isBstBindingStatusDisplayEnabled()
{
    return m_bstBindingStatusEnabled;
}

void SdcCpx::forgetBond(SdcBstBst *bond)
{
    m_bonds.removeIf([bond](SdcBstBstCpx *entry) { return entry == bond; });
}
