#pragma once

#include "zelModelSupport/graphics/ZelSceneCpx.h"

/// A complex scene for a passing choice, such as the sites of a new bond.
class ZELMODELSUPPORT_EXPORT ZelSceneCpxTemp : public ZelSceneCpx
{
    Q_OBJECT
public:
    explicit ZelSceneCpxTemp(QObject *parent = nullptr);
    ~ZelSceneCpxTemp() override;
};
