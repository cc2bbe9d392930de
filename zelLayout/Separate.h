#pragma once

#include "zelLayout/Complex.h"

#include <vector>

namespace zel::layout {

/// Draws bodies that lie scattered together about the origin, and so that they are wider than high.
void gather(const std::vector<Body> &bodies, std::vector<Placement> *placements);
/// Pushes bodies that are closer than LeastGap away from each other, without turning any: the
/// drawing keeps its shape and stays compact.
void separate(const std::vector<Body> &bodies, std::vector<Placement> *placements);

} // namespace zel::layout
