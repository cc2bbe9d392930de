#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

class ZelLineItemBstBstCxi;

/// A bond between two complexes that associate, with the complexes it joins and yields.
class ZELMODELSUPPORT_EXPORT SdcBstBstCxi : public SdcBstBst
{
    Q_OBJECT
public:
    explicit SdcBstBstCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    /// The bond's line as a line of its own kind; null when it has none or one of another kind.
    ZelLineItemBstBstCxi *getZelLineItemBstBstCxi() const;

    /// The complexes are not owned; one that dies is forgotten.
    SdcCpx *getSdcCpx1() const;
    void setSdcCpx1(SdcCpx *cpx);
    SdcCpx *getSdcCpx2() const;
    void setSdcCpx2(SdcCpx *cpx);
    SdcCpx *getSdcCpxResult() const;
    void setSdcCpxResult(SdcCpx *cpx);

    SdcBstBstCxi *toSdcBstBstCxi() override;
    bool isSdcBstBstCxi() const override;

private:
    QPointer<SdcCpx> m_sdcCpxResult;
    QPointer<SdcCpx> m_sdcCpx1;
    QPointer<SdcCpx> m_sdcCpx2;
};
