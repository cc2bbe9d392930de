#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// Groups the features of one component; owns none of them and shows no item text.
class ZELMODELSUPPORT_EXPORT SdcMcpTagSet : public Sdc
{
    Q_OBJECT
public:
    explicit SdcMcpTagSet(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    void setParentSdcMcp(SdcMcp *mcp);
    SdcMcp *getParentSdcMcp() const;
    void addSdcMcpTag(SdcMcpTag *tag);
    void removeSdcMcpTag(SdcMcpTag *tag);
    QList<SdcMcpTag *> getListSdcMcpTags() const;
    bool isSetEmpty() const;
    void clearSet();

    SdcMcpTagSet *toSdcMcpTagSet() override;
    bool isSdcMcpTagSet() const override;

private:
    QPointer<SdcMcp> m_parentMcp;
    QList<QPointer<SdcMcpTag>> m_tags; // the set may outlive a tag that has no component
};
