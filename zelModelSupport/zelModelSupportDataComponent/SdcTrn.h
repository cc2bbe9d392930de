#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// A transformation of one complex into another, held in two fixed slots that may be null.
///
/// The complexes are neither owned nor rows of this item.
class ZELMODELSUPPORT_EXPORT SdcTrn : public Sdc
{
    Q_OBJECT
public:
    explicit SdcTrn(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    SdcTrn *toSdcTrn() override;
    bool isSdcTrn() const override;
};
