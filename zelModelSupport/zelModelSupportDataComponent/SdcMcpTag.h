#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class ZelRectItemMcpSticky;

/// A feature of a molecule component, tied to the sticky that draws it and owns it.
///
/// It is no child in its component's list: changes are passed on to the component explicitly.
class ZELMODELSUPPORT_EXPORT SdcMcpTag : public Sdc
{
    Q_OBJECT
public:
    explicit SdcMcpTag(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcMcpTag() override;

    void setZelRectItemMcpSticky(ZelRectItemMcpSticky *sticky);
    ZelRectItemMcpSticky *getZelRectItemMcpSticky() const;
    void setParentSdcMcp(SdcMcp *mcp);
    SdcMcp *getParentSdcMcp() const;
    void removeSelfFromParentMcp();

    /// Also renames the sticky when the short name is set.
    void setProperty(int key, const QString &value) override;
    SdcMol *getParentSdcMol() override;
    SdcMcpTag *toSdcMcpTag() override;
    bool isSdcMcpTag() const override;
    void setChanged() override;
    using Sdc::setHighlight;
    /// Highlights the sticky; the tag's own flag stays as it is.
    void setHighlight(bool status, bool extendable) override;

private:
    QPointer<ZelRectItemMcpSticky> m_sticky;
    QPointer<SdcMcp> m_parentMcp;
};
