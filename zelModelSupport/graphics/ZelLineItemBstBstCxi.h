#pragma once

#include "zelModelSupport/graphics/ZelLineItemBstBst.h"

class SdcBstBstCxi;
class ZelDbSqliteModel;

/// The line that draws a bond of a complex interaction.
class ZELMODELSUPPORT_EXPORT ZelLineItemBstBstCxi : public ZelLineItemBstBst
{
    Q_OBJECT
public:
    /// With createSdc the line makes a bond of its own, which belongs to the database model until
    /// a scene takes it over; without a model it stays without bond.
    explicit ZelLineItemBstBstCxi(
        bool createSdc = false, ZelDbSqliteModel *zelDbSqliteModel = nullptr);
    ~ZelLineItemBstBstCxi() override;

    SdcBstBstCxi *getSdcBstBstCxi();

    ZelLineItemBstBstCxi *asLineItemBstBstCxi() override;
    bool isLineItemBstBstCxi() override;
};
