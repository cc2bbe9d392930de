#pragma once

#include "zelLayout/Relax.h"

#include <vector>

namespace zel::layout {

/// The molecules of one connected part as a graph: who is bonded to whom, seen from each body in
/// the order of its sites around it.
class BondGraph
{
public:
    struct Edge
    {
        std::size_t to = 0;
        double angle = 0.0; ///< at which the own site lies, in the body's own plane
        double length = 0.0; ///< from centre to centre along the bond
    };

    BondGraph(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds);

    const std::vector<std::vector<Edge>> &edges() const { return m_edges; }
    /// Wanted distances: as long as the shortest way through bonds.
    Distances distances() const;
    /// Whether some two bodies stay connected without a bond between them.
    bool hasRing() const { return !m_ring.empty(); }
    /// The bodies spread out as a tree about its middle, branches in the order of the sites, so
    /// that nothing crosses that need not; then evened out so that distances come near the wanted.
    std::vector<QPointF> spreadAsTree(const Distances &distances) const;
    /// The same about a long ring, what is not part of any ring outside it.
    std::vector<QPointF> spreadAroundRing(const Distances &distances) const;

private:
    /// The part of the drawing's plane that belongs to a branch.
    struct Sector
    {
        double from = 0.0;
        double to = 0.0;
        double radius = -1.0; // of its first body; negative before it is placed
    };

    void spreadBranches(const std::vector<std::size_t> &roots, std::vector<Sector> *sectors,
        std::vector<QPointF> *places) const;
    std::size_t middle() const;
    void findRing();

    std::vector<std::vector<Edge>> m_edges;
    std::vector<char> m_inCore; // bodies that rings hold together
    std::vector<std::size_t> m_ring; // a long one, in its order; empty when there is none
};

} // namespace zel::layout
