#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

/// An association or dissociation: a source complex, two others, and the bond made or broken.
///
/// None of them is owned; one that dies is forgotten.
class ZELMODELSUPPORT_EXPORT SdcCad : public Sdc
{
    Q_OBJECT
public:
    explicit SdcCad(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
};
