#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

SdcBstSet::SdcBstSet(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::BstSet, QStringLiteral("Binding Site(s)"))
{
}

void SdcBstSet::setParentSdcMcp(SdcMcp *mcp)
{
    m_parentMcp = mcp;
}

SdcMcp *SdcBstSet::getParentSdcMcp() const
{
    return m_parentMcp;
}

void SdcBstSet::addSdcBst(SdcBst *sdcBst)
{
    if (sdcBst && !m_sites.contains(sdcBst))
        m_sites.append(sdcBst);
}

void SdcBstSet::removeSdcBst(SdcBst *sdcBst)
{
    m_sites.removeAll(sdcBst);
}

QList<SdcBst *> SdcBstSet::getListSdcBst()
{
    QList<SdcBst *> list;
    for (const QPointer<SdcBst> &sdcBst : std::as_const(m_sites)) {
        if (sdcBst)
            list.append(sdcBst);
    }
    return list;
}

bool SdcBstSet::isSetEmpty() const
{
    return std::all_of(
        m_sites.cbegin(), m_sites.cend(), [](const auto &sdcBst) { return !sdcBst; });
}

void SdcBstSet::clearSet()
{
    m_sites.clear();
}

SdcBstSet *SdcBstSet::toSdcBstSet()
{
    return this;
}

bool SdcBstSet::isSdcBstSet() const
{
    return true;
}
