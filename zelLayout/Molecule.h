#pragma once

#include "zelLayout/ZelLayoutExport.h"

#include <QPointF>

#include <vector>

/// Automatic drawing as pure geometry, in scene units.
namespace zel::layout {

inline constexpr double SiteRadius = 6.0;
inline constexpr double SiteGap = 3.0; ///< least distance between the rims of a molecule's sites
inline constexpr double BackboneLength = 10.0; ///< rim to rim, at least

/// What a component's circle has to hold.
struct ComponentNeeds
{
    int features = 0;
    int sites = 0;
};

/// A circle, and the centres of the site circles on its rim.
struct ComponentPlace
{
    QPointF centre;
    double radius = 0.0;
    std::vector<QPointF> sites;
};

/// Places a molecule's components: one alone, two side by side, more around a ring, always in
/// chain order and clockwise from the top, about the origin. A component's sites lie evenly
/// on the part of its rim that faces away from its neighbours.
ZELLAYOUT_EXPORT std::vector<ComponentPlace> placeComponents(
    const std::vector<ComponentNeeds> &components);

} // namespace zel::layout
