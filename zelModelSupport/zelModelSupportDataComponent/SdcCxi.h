#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// A complex interaction: two complexes and the bonds between their sites.
///
/// Bonds are not owned; a bond that dies leaves the list.
class ZELMODELSUPPORT_EXPORT SdcCxi : public Sdc
{
    Q_OBJECT
public:
    explicit SdcCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcCxi() override;

    QList<SdcBstBstCxi *> getListSdcBstBstCxi() const { return m_bonds; }

    SdcCxi *toSdcCxi() override;
    bool isSdcCxi() const override;

private:
    friend class SdcBstBst;
    void forgetBond(SdcBstBst *bond);

    QList<SdcBstBstCxi *> m_bonds;
};
