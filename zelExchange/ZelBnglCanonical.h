#pragma once

#include <array>
#include <vector>

/// Orders the vertices of coloured graphs in the same way however they were numbered.
namespace ZelBnglCanonical {

/// What tells vertices apart; lesser colours come first.
using Color = std::array<int, 8>;
/// The neighbours of each vertex.
using Edges = std::vector<std::vector<int>>;

/// The vertices in canonical order, among those of like colours; vertices come in as `first` says,
/// which decides what no colour and no edge does.
std::vector<int> order(
    const Edges &edges, const std::vector<Color> &colors, const std::vector<int> &first);

} // namespace ZelBnglCanonical
