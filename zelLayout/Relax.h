#pragma once

#include "zelLayout/Complex.h"

#include <cstddef>
#include <vector>

namespace zel::layout {

/// A body's place while it is sought: the angle in radians, clockwise on screen.
struct Pose
{
    QPointF centre;
    double angle = 0.0;
    bool mirrored = false;
};

/// Wanted distances between the centres of all pairs; 0 for a pair without a wish.
class Distances
{
public:
    explicit Distances(std::size_t count) : m_count(count), m_values(count * count, 0.0) { }

    double &at(std::size_t i, std::size_t j) { return m_values[i * m_count + j]; }
    double at(std::size_t i, std::size_t j) const { return m_values[i * m_count + j]; }

private:
    std::size_t m_count;
    std::vector<double> m_values;
};

/// What counts how much while poses are relaxed.
struct Weights
{
    double facing = 0.0; ///< that bonded sites look at each other
    double spread = 0.0; ///< that pairs without a bond keep their wanted distance
    double gap = WantedGap;
    bool turning = true; ///< whether angles may change
};

/// Moves rigid bodies to where bonds are as long as wanted, bonded sites face each other and
/// bodies keep apart. Stops when nothing gets better or the work is done.
class Relaxation
{
public:
    Relaxation(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds);

    void run(std::vector<Pose> *poses, const Distances &distances, const Weights &weights,
        int greatestSteps);
    /// Whether all the work is done that it may do in its life; it then moves nothing any more.
    bool isExhausted() const;

private:
    struct Shape
    {
        std::size_t first = 0; // of its points
        std::size_t count = 0;
        double reach = 0.0; // from its origin to its furthest rim
        double lever = 1.0; // scales its angle to a length
        QPointF turn; // cosine and sine of its angle
    };

    void takeShape(std::size_t body, bool mirrored);
    double energy(const std::vector<double> &x, std::vector<double> *gradient);
    double pairEnergy(const std::vector<double> &x, std::vector<double> *gradient);
    double discEnergy(
        std::size_t i, std::size_t j, const QPointF &way, std::vector<double> *gradient);
    double bondEnergy(const std::vector<double> &x, std::vector<double> *gradient);
    void push(std::vector<double> *gradient, std::size_t body, const QPointF &arm,
        const QPointF &force) const;

    const std::vector<Body> &m_bodies;
    const std::vector<BodyBond> &m_bonds;
    std::vector<Shape> m_shapes;
    std::vector<Disc> m_points; // components, then sites of each body, mirrored as posed
    std::vector<QPointF> m_arms; // the same turned
    std::vector<char> m_bonded; // pairs
    std::vector<char> m_mirrored;
    const Distances *m_distances = nullptr;
    Weights m_weights;
    std::vector<std::size_t> m_near; // points of one body that lie near another
    double m_work = 0.0;
};

} // namespace zel::layout
