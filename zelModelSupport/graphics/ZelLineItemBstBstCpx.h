#pragma once

#include "zelModelSupport/graphics/ZelLineItemBstBst.h"

class SdcBstBstCpx;
class ZelDbSqliteModel;

/// The line that draws a bond of a complex.
class ZELMODELSUPPORT_EXPORT ZelLineItemBstBstCpx : public ZelLineItemBstBst
{
    Q_OBJECT
public:
    /// With createSdc the line makes a bond of its own, which belongs to the database model until
    /// a scene takes it over; without a model it stays without bond.
    explicit ZelLineItemBstBstCpx(
        bool createSdc = false, ZelDbSqliteModel *zelDbSqliteModel = nullptr);
    ~ZelLineItemBstBstCpx() override;

    SdcBstBstCpx *getSdcBstBstCpx();

    /// Also draws the highlighted bond bolder.
    void setHighlight(bool status, bool extendable) override;

    ZelLineItemBstBstCpx *asLineItemBstBstCpx() override;
    bool isLineItemBstBstCpx() override;
};
