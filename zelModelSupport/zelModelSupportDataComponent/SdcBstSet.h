#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// Groups the binding sites of one component; owns none of them and shows no item text.
class ZELMODELSUPPORT_EXPORT SdcBstSet : public Sdc
{
    Q_OBJECT
public:
    explicit SdcBstSet(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    void setParentSdcMcp(SdcMcp *mcp);
    SdcMcp *getParentSdcMcp() const;
    void addSdcBst(SdcBst *sdcBst);
    void removeSdcBst(SdcBst *sdcBst);
    QList<SdcBst *> getListSdcBst() override;
    bool isSetEmpty() const;
    void clearSet();

    SdcBstSet *toSdcBstSet() override;
    bool isSdcBstSet() const override;

private:
    QPointer<SdcMcp> m_parentMcp;
    QList<QPointer<SdcBst>> m_sites; // the set may outlive a site
};
