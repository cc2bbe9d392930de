#pragma once

#include "zelModelSupport/graphics/ZelSceneCpx.h"

/// A complex scene for a passing choice, such as the sites of a new bond: what it shows dies with
/// it.
class ZELMODELSUPPORT_EXPORT ZelSceneCpxTemp : public ZelSceneCpx
{
    Q_OBJECT
public:
    explicit ZelSceneCpxTemp(QObject *parent = nullptr);
    ~ZelSceneCpxTemp() override;

    /// Takes the complex over, unless it is a row of an item model.
    void setSdc(Sdc *sdc) override;
};
