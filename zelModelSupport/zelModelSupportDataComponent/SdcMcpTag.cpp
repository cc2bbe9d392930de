#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

SdcMcpTag::SdcMcpTag(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::McpTag, QStringLiteral("Feature"))
{
}

SdcMcpTag::~SdcMcpTag()
{
    if (!m_parentMcp)
        return;
    m_parentMcp->removeSdcTag(this);
    if (SdcMcpTagSet *set = m_parentMcp->getSdcMcpTagSet())
        set->removeSdcMcpTag(this);
}

void SdcMcpTag::setZelRectItemMcpSticky(ZelRectItemMcpSticky *sticky)
{
    m_sticky = sticky;
}

ZelRectItemMcpSticky *SdcMcpTag::getZelRectItemMcpSticky() const
{
    return m_sticky;
}

void SdcMcpTag::setParentSdcMcp(SdcMcp *mcp)
{
    m_parentMcp = mcp;
}

SdcMcp *SdcMcpTag::getParentSdcMcp() const
{
    return m_parentMcp;
}

void SdcMcpTag::removeSelfFromParentMcp()
{
    if (m_parentMcp)
        m_parentMcp->removeSdcTag(this);
}

void SdcMcpTag::setProperty(int key, const QString &value)
{
    Sdc::setProperty(key, value);
    if (key == SdcProperty::ShortName && m_sticky)
        m_sticky->setName(value);
}

SdcMol *SdcMcpTag::getParentSdcMol()
{
    return m_parentMcp ? m_parentMcp->getParentSdcMol() : nullptr;
}

SdcMcpTag *SdcMcpTag::toSdcMcpTag()
{
    return this;
}

bool SdcMcpTag::isSdcMcpTag() const
{
    return true;
}

void SdcMcpTag::setChanged()
{
    Sdc::setChanged();
    if (m_parentMcp)
        m_parentMcp->setChanged();
}

void SdcMcpTag::setHighlight(bool status, bool)
{
    if (m_sticky)
        m_sticky->setHighlightItem(status);
}
