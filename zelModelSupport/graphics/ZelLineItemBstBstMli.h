#pragma once

#include "zelModelSupport/graphics/ZelLineItemBstBst.h"

class SdcBstBstMli;
class ZelDbSqliteModel;

/// The line that draws a bond of a molecule interaction.
class ZELMODELSUPPORT_EXPORT ZelLineItemBstBstMli : public ZelLineItemBstBst
{
    Q_OBJECT
public:
    /// With createSdc the line makes a bond of its own, which belongs to the database model until
    /// a scene takes it over; without a model it stays without bond.
    explicit ZelLineItemBstBstMli(
        bool createSdc = false, ZelDbSqliteModel *zelDbSqliteModel = nullptr);
    ~ZelLineItemBstBstMli() override;

    SdcBstBstMli *getSdcBstBstMli();

    ZelLineItemBstBstMli *asLineItemBstBstMli() override;
    bool isLineItemBstBstMli() override;
};
