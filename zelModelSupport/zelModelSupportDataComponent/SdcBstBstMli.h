#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

class ZelLineItemBstBstMli;

/// The bond of a molecule interaction.
class ZELMODELSUPPORT_EXPORT SdcBstBstMli : public SdcBstBst
{
    Q_OBJECT
public:
    explicit SdcBstBstMli(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    /// The bond's line as a line of its own kind; null when it has none or one of another kind.
    ZelLineItemBstBstMli *getZelLineItemBstBstMli() const;

    SdcBstBstMli *toSdcBstBstMli() override;
    bool isSdcBstBstMli() const override;
};
