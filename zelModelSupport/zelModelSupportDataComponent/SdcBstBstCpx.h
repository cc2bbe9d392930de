#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

class ZelLineItemBstBstCpx;

/// A bond inside a complex.
class ZELMODELSUPPORT_EXPORT SdcBstBstCpx : public SdcBstBst
{
    Q_OBJECT
public:
    explicit SdcBstBstCpx(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    /// The bond's line as a line of its own kind; null when it has none or one of another kind.
    ZelLineItemBstBstCpx *getZelLineItemBstBstCpx() const;

    SdcBstBstCpx *toSdcBstBstCpx() override;
    bool isSdcBstBstCpx() const override;
};
