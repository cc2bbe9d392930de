#pragma once

#include "zelRules/ZelRulesExport.h"

#include <array>
#include <vector>

namespace zel::rules {

/// What tells vertices apart; lesser colours come first.
using Color = std::array<int, 8>;
/// The neighbours of each vertex.
using Edges = std::vector<std::vector<int>>;

/// The vertices of a coloured graph in an order that does not depend on how they were numbered,
/// among those of like colours; vertices come in as `first` says, which decides what no colour and
/// no edge does.
ZELRULES_EXPORT std::vector<int> canonicalOrder(
    const Edges &edges, const std::vector<Color> &colors, const std::vector<int> &first);

} // namespace zel::rules
