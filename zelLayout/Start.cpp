#include "zelLayout/Start.h"

#include "zelLayout/Geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace zel::layout {

namespace {

constexpr double Pi = std::numbers::pi;
constexpr int EveningSweeps = 40;
constexpr int CoreSweeps = 60;

const SitePlace &siteOf(const std::vector<Body> &bodies, int body, int site)
{
    return bodies[static_cast<std::size_t>(body)].sites[static_cast<std::size_t>(site)];
}

/// Breadth first from the roots: entry i is the body from which i was reached, itself for a root.
std::vector<std::size_t> walk(const std::vector<std::vector<BondGraph::Edge>> &edges,
    const std::vector<std::size_t> &roots, std::vector<std::size_t> *order)
{
    std::vector<std::size_t> parents(edges.size(), edges.size());
    for (const std::size_t root : roots)
        parents[root] = root;
    *order = roots;
    for (std::size_t next = 0; next < order->size(); ++next) {
        const std::size_t body = (*order)[next];
        for (const BondGraph::Edge &edge : edges[body]) {
            if (parents[edge.to] != edges.size())
                continue;
            parents[edge.to] = body;
            order->push_back(edge.to);
        }
    }
    return parents;
}

const BondGraph::Edge *edgeTo(const std::vector<BondGraph::Edge> &edges, std::size_t to)
{
    const auto found = std::find_if(
        edges.cbegin(), edges.cend(), [to](const BondGraph::Edge &edge) { return edge.to == to; });
    return found == edges.cend() ? nullptr : &*found;
}

/// Moves each body to where its wanted distances to all others agree best, over and over.
void evenOut(std::vector<QPointF> *places, const Distances &distances)
{
    const std::size_t count = places->size();
    for (int sweep = 0; sweep < EveningSweeps; ++sweep) {
        double greatest = 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            QPointF sum;
            double weights = 0.0;
            for (std::size_t j = 0; j < count; ++j) {
                const double wanted = distances.at(i, j);
                if (i == j || !(wanted > 0.0))
                    continue;
                const double weight = 1.0 / (wanted * wanted);
                const QPointF way = (*places)[i] - (*places)[j];
                const double length = lengthOf(way);
                QPointF place = (*places)[j];
                if (length > 0.0)
                    place += way * (wanted / length);
                sum += place * weight;
                weights += weight;
            }
            if (!(weights > 0.0))
                continue;
            const QPointF place = sum / weights;
            greatest = std::max(greatest, lengthOf(place - (*places)[i]));
            (*places)[i] = place;
        }
        if (greatest < 0.5)
            return;
    }
}

} // namespace

BondGraph::BondGraph(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds)
    : m_edges(bodies.size())
{
    for (const BodyBond &bond : bonds) {
        const SitePlace &a = siteOf(bodies, bond.bodyA, bond.siteA);
        const SitePlace &b = siteOf(bodies, bond.bodyB, bond.siteB);
        const double length = lengthOf(a.disc.centre) + bond.length + lengthOf(b.disc.centre);
        const auto angleOf = [](const SitePlace &site) {
            const QPointF far = site.disc.centre + site.outward;
            return std::atan2(far.y(), far.x());
        };
        const auto bodyA = static_cast<std::size_t>(bond.bodyA);
        const auto bodyB = static_cast<std::size_t>(bond.bodyB);
        m_edges[bodyA].push_back({bodyB, angleOf(a), length});
        m_edges[bodyB].push_back({bodyA, angleOf(b), length});
    }
    for (std::vector<Edge> &list : m_edges) {
        std::stable_sort(list.begin(), list.end(),
            [](const Edge &a, const Edge &b) { return a.angle < b.angle; });
    }
    findRing();
}

Distances BondGraph::distances() const
{
    Distances distances(m_edges.size());
    std::vector<std::size_t> order;
    std::vector<double> lengths(m_edges.size());
    for (std::size_t from = 0; from < m_edges.size(); ++from) {
        const std::vector<std::size_t> parents = walk(m_edges, {from}, &order);
        lengths[from] = 0.0;
        for (std::size_t k = 1; k < order.size(); ++k) {
            const std::size_t body = order[k];
            const std::size_t parent = parents[body];
            lengths[body] = lengths[parent] + edgeTo(m_edges[parent], body)->length;
            if (body > from) {
                distances.at(from, body) = lengths[body];
                distances.at(body, from) = lengths[body];
            }
        }
    }
    return distances;
}

// The body from which the furthest one is nearest, counted in bonds.
std::size_t BondGraph::middle() const
{
    std::size_t best = 0;
    std::size_t bestDepth = m_edges.size() + 1;
    std::vector<std::size_t> order;
    std::vector<std::size_t> depths(m_edges.size());
    for (std::size_t from = 0; from < m_edges.size(); ++from) {
        const std::vector<std::size_t> parents = walk(m_edges, {from}, &order);
        depths[from] = 0;
        for (std::size_t k = 1; k < order.size(); ++k)
            depths[order[k]] = depths[parents[order[k]]] + 1;
        if (const std::size_t depth = depths[order.back()]; depth < bestDepth) {
            bestDepth = depth;
            best = from;
        }
    }
    return best;
}

// What is left when ends are taken off over and over, and in it the longest ring that one walk in
// depth closes.
void BondGraph::findRing()
{
    const std::size_t count = m_edges.size();
    std::vector<std::size_t> partners(count, 0);
    std::vector<std::size_t> last(count, count);
    for (std::size_t i = 0; i < count; ++i) {
        // Several bonds between the same two bodies are no ring.
        for (const Edge &edge : m_edges[i]) {
            if (std::exchange(last[edge.to], i) != i)
                ++partners[i];
        }
    }
    m_inCore.assign(count, 1);
    std::vector<std::size_t> bare;
    for (std::size_t i = 0; i < count; ++i) {
        if (partners[i] < 2)
            bare.push_back(i);
    }
    std::fill(last.begin(), last.end(), count);
    for (std::size_t next = 0; next < bare.size(); ++next) {
        const std::size_t body = bare[next];
        m_inCore[body] = 0;
        for (const Edge &edge : m_edges[body]) {
            if (std::exchange(last[edge.to], body) != body && m_inCore[edge.to]
                && partners[edge.to]-- == 2)
                bare.push_back(edge.to);
        }
    }
    const auto start = std::find(m_inCore.cbegin(), m_inCore.cend(), 1);
    if (start == m_inCore.cend())
        return;
    std::vector<std::size_t> path{static_cast<std::size_t>(start - m_inCore.cbegin())};
    std::vector<std::size_t> depths(count, count); // on the path; beyond it once left behind
    std::vector<std::size_t> nextEdges(count, 0);
    depths[path.front()] = 0;
    std::vector<char> seen(count, 0);
    seen[path.front()] = 1;
    while (!path.empty()) {
        const std::size_t body = path.back();
        if (nextEdges[body] == m_edges[body].size()) {
            depths[body] = count;
            path.pop_back();
            continue;
        }
        const std::size_t to = m_edges[body][nextEdges[body]++].to;
        if (!m_inCore[to])
            continue;
        if (!seen[to]) {
            seen[to] = 1;
            depths[to] = path.size();
            path.push_back(to);
        } else if (depths[to] < count
            && path.size() - depths[to] > std::max<std::size_t>(2, m_ring.size())) {
            m_ring.assign(path.cbegin() + static_cast<std::ptrdiff_t>(depths[to]), path.cend());
        }
    }
}

std::vector<QPointF> BondGraph::spreadAsTree(const Distances &distances) const
{
    std::vector<QPointF> places(m_edges.size());
    const std::size_t root = middle();
    std::vector<Sector> sectors(m_edges.size());
    sectors[root] = {0.0, 2.0 * Pi, 0.0};
    spreadBranches({root}, &sectors, &places);
    evenOut(&places, distances);
    return places;
}

std::vector<QPointF> BondGraph::spreadAroundRing(const Distances &distances) const
{
    std::vector<QPointF> places(m_edges.size());
    double length = 0.0;
    for (std::size_t k = 0; k < m_ring.size(); ++k)
        length += edgeTo(m_edges[m_ring[k]], m_ring[(k + 1) % m_ring.size()])->length;
    const double radius = length / (2.0 * Pi);
    const double step = 2.0 * Pi / static_cast<double>(m_ring.size());
    std::vector<char> onRing(m_edges.size(), 0);
    for (std::size_t k = 0; k < m_ring.size(); ++k) {
        const double angle = step * static_cast<double>(k);
        places[m_ring[k]] = {radius * std::cos(angle), radius * std::sin(angle)};
        onRing[m_ring[k]] = 1;
    }
    // What else is held by rings goes to the middle of its partners.
    std::vector<std::size_t> core;
    for (std::size_t i = 0; i < m_edges.size(); ++i) {
        if (m_inCore[i])
            core.push_back(i);
    }
    for (int sweep = 0; sweep < CoreSweeps && core.size() > m_ring.size(); ++sweep) {
        for (const std::size_t i : core) {
            if (onRing[i])
                continue;
            QPointF sum;
            double count = 0.0;
            for (const Edge &edge : m_edges[i]) {
                if (m_inCore[edge.to]) {
                    sum += places[edge.to];
                    count += 1.0;
                }
            }
            places[i] = sum / count;
        }
    }
    std::vector<Sector> sectors(m_edges.size());
    for (const std::size_t i : core) {
        const double angle = std::atan2(places[i].y(), places[i].x());
        sectors[i] = {angle - step / 2.0, angle + step / 2.0, lengthOf(places[i])};
    }
    spreadBranches(core, &sectors, &places);
    evenOut(&places, distances);
    return places;
}

void BondGraph::spreadBranches(const std::vector<std::size_t> &roots, std::vector<Sector> *sectors,
    std::vector<QPointF> *places) const
{
    std::vector<std::size_t> order;
    const std::vector<std::size_t> parents = walk(m_edges, roots, &order);
    // A branch gets a share of its parent's sector by the number of its ends.
    std::vector<double> ends(m_edges.size(), 0.0);
    for (std::size_t k = order.size(); k-- > 0;) {
        const std::size_t body = order[k];
        ends[body] = std::max(ends[body], 1.0);
        if (parents[body] != body)
            ends[parents[body]] += ends[body];
    }
    for (const std::size_t body : order) {
        const std::vector<Edge> &edges = m_edges[body];
        // In turn around the body, from the bond to its parent on.
        std::size_t first = 0;
        if (parents[body] != body) {
            while (edges[first].to != parents[body])
                ++first;
        }
        double from = (*sectors)[body].from;
        const double width = (*sectors)[body].to - from;
        for (std::size_t k = 0; k < edges.size(); ++k) {
            const Edge &edge = edges[(first + k) % edges.size()];
            Sector &sector = (*sectors)[edge.to];
            if (parents[edge.to] != body || sector.radius >= 0.0)
                continue;
            sector.from = from;
            from += width * ends[edge.to] / ends[body];
            sector.to = from;
            sector.radius = (*sectors)[body].radius + edge.length;
            const double angle = (sector.from + sector.to) / 2.0;
            (*places)[edge.to] = {sector.radius * std::cos(angle), sector.radius * std::sin(angle)};
        }
    }
}

} // namespace zel::layout
