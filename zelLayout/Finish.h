#pragma once

#include "zelLayout/Complex.h"

#include <vector>

namespace zel::layout {

inline constexpr double HitCost = 60.0; ///< of a bond's line through an ellipse
inline constexpr double GoodCost = 3.0; ///< there is nothing to mend

/// Moves the bodies apart from the origin so that each can be turned freely, a gap between them.
void spaceOut(const std::vector<Body> &bodies, double gap, std::vector<Placement> *placements);
/// Moves the bodies apart from the origin until none is closer to another than LeastGap.
void keepApart(const std::vector<Body> &bodies, std::vector<Placement> *placements);
/// Turns the whole so that it is wide and low, upright where there is a choice.
void layFlat(const std::vector<Body> &bodies, std::vector<Placement> *placements);
/// How far a drawing is from what one would print; 0 is perfect.
double costOf(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds,
    const std::vector<Placement> &placements);

} // namespace zel::layout
