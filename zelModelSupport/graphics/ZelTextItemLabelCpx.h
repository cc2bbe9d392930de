#pragma once

#include "zelModelSupport/graphics/ZelTextItemLabel.h"

class SdcCpx;

/// The short name of a complex, centred on the complex's drawing.
class ZELMODELSUPPORT_EXPORT ZelTextItemLabelCpx : public ZelTextItemLabel
{
    Q_OBJECT
public:
    explicit ZelTextItemLabelCpx(QGraphicsItem *parentItem = nullptr);
    ~ZelTextItemLabelCpx() override;

    SdcCpx *getSdcCpx() const;
    void setSdcCpx(SdcCpx *sdcCpx);
};
