#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

SdcMcpTagSet::SdcMcpTagSet(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::McpTagSet, QStringLiteral("Feature(s)"))
{
}

void SdcMcpTagSet::setParentSdcMcp(SdcMcp *mcp)
{
    m_parentMcp = mcp;
}

SdcMcp *SdcMcpTagSet::getParentSdcMcp() const
{
    return m_parentMcp;
}

void SdcMcpTagSet::addSdcMcpTag(SdcMcpTag *tag)
{
    if (tag && !m_tags.contains(tag))
        m_tags.append(tag);
}

void SdcMcpTagSet::removeSdcMcpTag(SdcMcpTag *tag)
{
    m_tags.removeAll(tag);
}

QList<SdcMcpTag *> SdcMcpTagSet::getListSdcMcpTags() const
{
    QList<SdcMcpTag *> list;
    for (const QPointer<SdcMcpTag> &tag : m_tags) {
        if (tag)
            list.append(tag);
    }
    return list;
}

bool SdcMcpTagSet::isSetEmpty() const
{
    return getListSdcMcpTags().isEmpty();
}

void SdcMcpTagSet::clearSet()
{
    m_tags.clear();
}

SdcMcpTagSet *SdcMcpTagSet::toSdcMcpTagSet()
{
    return this;
}

bool SdcMcpTagSet::isSdcMcpTagSet() const
{
    return true;
}
