#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// A molecule interaction: two molecules joined by one bond that declares that their sites may
/// bind.
///
/// Bonds are not owned; a bond that dies leaves the list.
class ZELMODELSUPPORT_EXPORT SdcMli : public Sdc
{
    Q_OBJECT
public:
    explicit SdcMli(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcMli() override;

    QList<SdcBstBstMli *> getListSdcBstBstMli() const { return m_bonds; }

    SdcMli *toSdcMli() override;
    bool isSdcMli() const override;

private:
    friend class SdcBstBst;
    void forgetBond(SdcBstBst *bond);

    QList<SdcBstBstMli *> m_bonds;
};
