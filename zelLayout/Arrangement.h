#pragma once

#include "zelLayout/Complex.h"

#include <vector>

namespace zel::layout {

/// arrangeBodies() for bodies that bonds hold together, all of them usable; anywhere, not about
/// the origin.
std::vector<Placement> arrangeConnected(
    const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds);

} // namespace zel::layout
