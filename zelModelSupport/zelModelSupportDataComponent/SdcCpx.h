#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// A complex species: molecules joined by bonds between their binding sites.
///
/// The molecules are its children, in an order that stored bonds refer to. Bonds are not owned; a
/// bond that dies leaves the list.
class ZELMODELSUPPORT_EXPORT SdcCpx : public Sdc
{
    Q_OBJECT
public:
    explicit SdcCpx(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcCpx() override;

    /// False when the bond is null or in the list already; the complex becomes its parent.
    bool addSdcBstBstCpx(SdcBstBstCpx *bond);
    void removeSdcBstBstCpx(SdcBstBstCpx *bond);
    bool hasSdcBstBstCpx(SdcBstBstCpx *bond) const;
    QList<SdcBstBstCpx *> getListSdcBstBstCpx() const { return m_bonds; }

    bool isEmpty() override;
    SdcCpx *toSdcCpx() override;
    bool isSdcCpx() const override;
    void setBstBindingStatusEnabled(bool enabled) override;
    bool isBstBindingStatusDisplayEnabled() override;

private:
    friend class SdcBstBst;
    void forgetBond(SdcBstBst *bond);

    QList<SdcBstBstCpx *> m_bonds;
    bool m_bstBindingStatusEnabled = false;
};
