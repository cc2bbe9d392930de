#include "zelLayout/Arrangement.h"

#include "zelLayout/Facing.h"
#include "zelLayout/Finish.h"
#include "zelLayout/Geometry.h"
#include "zelLayout/Measure.h"
#include "zelLayout/Relax.h"
#include "zelLayout/Start.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace zel::layout {

namespace {

constexpr double Pi = std::numbers::pi;
constexpr double Degrees = 180.0 / Pi;
constexpr double FacingWeight = 600.0;
constexpr double SpreadWeight = 1500.0;
constexpr double LastSpreadWeight = 20.0;

/// One way to draw a connected part.
struct Solution
{
    std::vector<Placement> placements;
    double cost = 0.0;
};

/// The drawing of one connected part with two bodies or more.
class Arrangement
{
public:
    Arrangement(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds)
        : m_bodies(bodies), m_bonds(bonds), m_graph(bodies, bonds),
          m_distances(m_graph.distances()), m_relaxation(bodies, bonds)
    {
    }

    std::vector<Placement> solve()
    {
        const bool hasRing = m_graph.hasRing();
        std::vector<Pose> spread;
        Solution best = relaxed(
            hasRing ? m_graph.spreadAroundRing(m_distances) : m_graph.spreadAsTree(m_distances),
            &spread);
        const auto take = [&best](Solution other) {
            if (other.cost < best.cost - 1.0)
                best = std::move(other);
        };
        std::vector<Pose> tree;
        if (hasRing && best.cost > GoodCost && !m_relaxation.isExhausted())
            take(relaxed(m_graph.spreadAsTree(m_distances), &tree));
        // A bend costs less than a strip that fits no page; two alone read best in a row.
        for (const double angle : {Pi / 2.0, Pi, 1.4 * Pi}) {
            if (best.cost > GoodCost && m_bodies.size() > 2 && m_bodies.size() <= MostForBends
                && !m_relaxation.isExhausted())
                take(bent(spread, angle));
        }
        for (const std::vector<Pose> *poses : {&spread, &tree}) {
            for (const double gap : {WantedGap, BondLength}) {
                if (best.cost >= HitCost && !poses->empty() && m_bodies.size() <= MostForTurns)
                    take(turned(*poses, gap));
            }
        }
        return best.placements;
    }

private:
    static constexpr std::size_t MostForBends = 100;
    static constexpr std::size_t MostForTurns = 10;

    /// For bonds that cannot all face each other: with room around each body, each is turned and
    /// mirrored to what costs least.
    Solution turned(std::vector<Pose> poses, double gap)
    {
        Solution solution;
        level(&poses);
        solution.placements = placementsOf(poses);
        spaceOut(m_bodies, gap, &solution.placements);
        solution.cost = costOf(m_bodies, m_bonds, solution.placements);
        const double step = m_bodies.size() > 5 ? 30.0 : 15.0;
        for (int sweep = 0; sweep < 2; ++sweep) {
            const double before = solution.cost;
            for (std::size_t i = 0; i < m_bodies.size(); ++i) {
                const double own = m_bodies[i].quarterTurnsOnly ? 90.0 : step;
                const Placement old = solution.placements[i];
                Placement best = old;
                for (const bool mirrored : {false, true}) {
                    for (double turn = 0.0; turn < 360.0; turn += own) {
                        Placement &placement = solution.placements[i];
                        placement.angle = std::fmod(old.angle + turn, 360.0);
                        placement.mirrored = mirrored;
                        const double cost = costOf(m_bodies, m_bonds, solution.placements);
                        if (cost < solution.cost - 0.01) {
                            solution.cost = cost;
                            best = placement;
                        }
                    }
                }
                solution.placements[i] = best;
            }
            if (solution.cost > before - 1.0)
                break;
        }
        for (std::size_t i = 0; i < poses.size(); ++i) {
            const Placement &placement = solution.placements[i];
            poses[i] = {placement.centre, placement.angle / Degrees, placement.mirrored};
        }
        return finish(std::move(poses), m_distances);
    }

    Solution relaxed(const std::vector<QPointF> &places, std::vector<Pose> *poses)
    {
        poses->assign(m_bodies.size(), {});
        for (std::size_t i = 0; i < places.size(); ++i)
            (*poses)[i].centre = places[i];
        faceBonds(m_bodies, m_bonds, poses);
        m_relaxation.run(poses, m_distances, {FacingWeight, SpreadWeight, WantedGap, true}, 120);
        return finish(*poses, m_distances);
    }

    Solution bent(std::vector<Pose> poses, double angle)
    {
        bend(&poses, angle);
        // Distances as the arc shortens them keep it from straightening again.
        double longest = 0.0;
        for (std::size_t i = 0; i < m_bodies.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j)
                longest = std::max(longest, m_distances.at(i, j));
        }
        const double diameter = 2.0 * longest / angle;
        Distances distances(m_bodies.size());
        for (std::size_t i = 0; i < m_bodies.size(); ++i) {
            for (std::size_t j = 0; j < m_bodies.size(); ++j)
                distances.at(i, j) = diameter * std::sin(m_distances.at(i, j) / diameter);
        }
        m_relaxation.run(&poses, distances, {FacingWeight, SpreadWeight, WantedGap, true}, 120);
        return finish(std::move(poses), distances);
    }

    Solution finish(std::vector<Pose> poses, const Distances &distances)
    {
        level(&poses);
        m_relaxation.run(&poses, distances, {FacingWeight, LastSpreadWeight, WantedGap, false}, 60);
        Solution solution;
        solution.placements = placementsOf(poses);
        keepApart(m_bodies, &solution.placements);
        layFlat(m_bodies, &solution.placements);
        solution.cost = costOf(m_bodies, m_bonds, solution.placements);
        return solution;
    }

    static std::vector<Placement> placementsOf(const std::vector<Pose> &poses)
    {
        std::vector<Placement> placements;
        for (const Pose &pose : poses) {
            double angle = std::fmod(std::round(pose.angle * Degrees), 360.0);
            if (angle < 0.0)
                angle += 360.0;
            placements.push_back({pose.centre, angle, pose.mirrored});
        }
        return placements;
    }

    /// Lays the drawing's axis level, then turns each body to whole degrees: what is even about the
    /// axis stays so. What has no axis is turned so that the first body is upright.
    void level(std::vector<Pose> *poses) const
    {
        std::vector<QPointF> points;
        for (const Drawing::Part &part : Drawing(m_bodies, {}, placementsOf(*poses)).parts) {
            for (const Disc &disc : part.components)
                points.push_back(disc.centre);
        }
        const Axis axis = axisOf(points);
        const double off = axis.isClear ? axis.angle : poses->front().angle;
        const QPointF back(std::cos(off), -std::sin(off));
        for (std::size_t i = 0; i < poses->size(); ++i) {
            Pose &pose = (*poses)[i];
            pose.centre = turnedBy(pose.centre, back);
            const double step = m_bodies[i].quarterTurnsOnly ? Pi / 2.0 : 1.0 / Degrees;
            pose.angle = std::round((pose.angle - off) / step) * step;
        }
    }

    const std::vector<Body> &m_bodies;
    const std::vector<BodyBond> &m_bonds;
    BondGraph m_graph;
    Distances m_distances;
    Relaxation m_relaxation;
};

} // namespace

std::vector<Placement> arrangeConnected(
    const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds)
{
    return Arrangement(bodies, bonds).solve();
}

} // namespace zel::layout
