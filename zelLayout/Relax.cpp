#include "zelLayout/Relax.h"

#include "zelLayout/Descent.h"
#include "zelLayout/Geometry.h"

#include <algorithm>
#include <cmath>

namespace zel::layout {

namespace {

constexpr double RepulsionWeight = 4.0;
constexpr double GreatestWork = 6.0e7; // pairs looked at, over all runs
constexpr double GreatestStepWork = 1.0e8; // pairs there are, to begin at all

} // namespace

Relaxation::Relaxation(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds)
    : m_bodies(bodies), m_bonds(bonds), m_shapes(bodies.size()),
      m_bonded(bodies.size() * bodies.size(), 0), m_mirrored(bodies.size(), 0)
{
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        Shape &shape = m_shapes[i];
        shape.first = m_points.size();
        shape.count = bodies[i].components.size() + bodies[i].sites.size();
        m_points.resize(shape.first + shape.count);
        takeShape(i, false);
        shape.reach = reachOf(bodies[i]);
        shape.lever = std::max(shape.reach, 1.0);
    }
    m_arms.resize(m_points.size());
    const auto points = static_cast<double>(m_points.size());
    if (points * points / 2.0 > GreatestStepWork)
        m_work = GreatestWork;
    for (const BodyBond &bond : bonds) {
        const auto a = static_cast<std::size_t>(bond.bodyA);
        const auto b = static_cast<std::size_t>(bond.bodyB);
        m_bonded[a * bodies.size() + b] = 1;
        m_bonded[b * bodies.size() + a] = 1;
    }
}

void Relaxation::takeShape(std::size_t body, bool mirrored)
{
    m_mirrored[body] = mirrored ? 1 : 0;
    std::size_t at = m_shapes[body].first;
    const auto take = [&](const Disc &disc) {
        m_points[at++] = {
            {mirrored ? -disc.centre.x() : disc.centre.x(), disc.centre.y()}, disc.radius};
    };
    for (const Disc &disc : m_bodies[body].components)
        take(disc);
    for (const SitePlace &site : m_bodies[body].sites)
        take(site.disc);
}

void Relaxation::run(
    std::vector<Pose> *poses, const Distances &distances, const Weights &weights, int greatestSteps)
{
    if (isExhausted())
        return;
    m_distances = &distances;
    m_weights = weights;
    std::vector<double> x;
    x.reserve(3 * poses->size());
    for (std::size_t i = 0; i < poses->size(); ++i) {
        const Pose &pose = (*poses)[i];
        takeShape(i, pose.mirrored);
        x.insert(x.end(), {pose.centre.x(), pose.centre.y(), pose.angle * m_shapes[i].lever});
    }
    Descent descent(&x, [this](const std::vector<double> &at, std::vector<double> *gradient) {
        return energy(at, gradient);
    });
    for (int i = 0; i < greatestSteps && !isExhausted(); ++i) {
        if (!descent.step())
            break;
    }
    for (std::size_t i = 0; i < poses->size(); ++i) {
        (*poses)[i].centre = {x[3 * i], x[3 * i + 1]};
        if (weights.turning)
            (*poses)[i].angle = x[3 * i + 2] / m_shapes[i].lever;
    }
}

bool Relaxation::isExhausted() const
{
    return m_work >= GreatestWork;
}

double Relaxation::energy(const std::vector<double> &x, std::vector<double> *gradient)
{
    std::fill(gradient->begin(), gradient->end(), 0.0);
    for (std::size_t i = 0; i < m_shapes.size(); ++i) {
        Shape &shape = m_shapes[i];
        const double angle = x[3 * i + 2] / shape.lever;
        shape.turn = {std::cos(angle), std::sin(angle)};
        for (std::size_t k = shape.first; k < shape.first + shape.count; ++k)
            m_arms[k] = turnedBy(m_points[k].centre, shape.turn);
    }
    const double sum = pairEnergy(x, gradient) + bondEnergy(x, gradient);
    if (!m_weights.turning) {
        for (std::size_t i = 0; i < m_shapes.size(); ++i)
            (*gradient)[3 * i + 2] = 0.0;
    }
    return sum;
}

void Relaxation::push(
    std::vector<double> *gradient, std::size_t body, const QPointF &arm, const QPointF &force) const
{
    (*gradient)[3 * body] += force.x();
    (*gradient)[3 * body + 1] += force.y();
    (*gradient)[3 * body + 2] += crossOf(arm, force) / m_shapes[body].lever;
}

double Relaxation::pairEnergy(const std::vector<double> &x, std::vector<double> *gradient)
{
    double sum = 0.0;
    const std::size_t count = m_shapes.size();
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = i + 1; j < count; ++j) {
            const QPointF way(x[3 * j] - x[3 * i], x[3 * j + 1] - x[3 * i + 1]);
            const double distance = lengthOf(way);
            if (distance < m_shapes[i].reach + m_shapes[j].reach + m_weights.gap)
                sum += discEnergy(i, j, way, gradient);
            const double wanted = m_distances->at(i, j);
            if (m_weights.spread > 0.0 && wanted > 0.0 && distance > 0.0
                && !m_bonded[i * count + j]) {
                const double excess = (distance - wanted) / wanted;
                sum += m_weights.spread * excess * excess;
                const QPointF force = way * (2.0 * m_weights.spread * excess / (wanted * distance));
                (*gradient)[3 * i] -= force.x();
                (*gradient)[3 * i + 1] -= force.y();
                (*gradient)[3 * j] += force.x();
                (*gradient)[3 * j + 1] += force.y();
            }
        }
    }
    m_work += static_cast<double>(count * count) / 2.0;
    return sum;
}

double Relaxation::discEnergy(
    std::size_t i, std::size_t j, const QPointF &way, std::vector<double> *gradient)
{
    const Shape &a = m_shapes[i];
    const Shape &b = m_shapes[j];
    const double gap = m_weights.gap;
    m_near.clear();
    for (std::size_t k = b.first; k < b.first + b.count; ++k) {
        const QPointF fromA = way + m_arms[k];
        if (lengthOf(fromA) < a.reach + m_points[k].radius + gap)
            m_near.push_back(k);
    }
    double sum = 0.0;
    for (std::size_t k = a.first; k < a.first + a.count; ++k) {
        const QPointF toB = way - m_arms[k];
        if (lengthOf(toB) >= b.reach + m_points[k].radius + gap)
            continue;
        m_work += static_cast<double>(m_near.size());
        for (const std::size_t other : m_near) {
            const double least = m_points[k].radius + m_points[other].radius + gap;
            const QPointF between = toB + m_arms[other];
            const double square = QPointF::dotProduct(between, between);
            if (square >= least * least)
                continue;
            const double distance = std::sqrt(square);
            const double lack = least - distance;
            sum += RepulsionWeight * lack * lack;
            if (!(distance > 0.0))
                continue;
            const QPointF force = between * (2.0 * RepulsionWeight * lack / distance);
            push(gradient, i, m_arms[k], force);
            push(gradient, j, m_arms[other], -force);
        }
    }
    return sum;
}

double Relaxation::bondEnergy(const std::vector<double> &x, std::vector<double> *gradient)
{
    double sum = 0.0;
    for (const BodyBond &bond : m_bonds) {
        struct Tip
        {
            std::size_t body;
            QPointF outward;
            QPointF arm; // to half way along a bond of the wanted length
        };
        const auto tipOf = [this, &bond](int bodyIndex, int siteIndex) {
            const auto body = static_cast<std::size_t>(bodyIndex);
            const auto site = static_cast<std::size_t>(siteIndex);
            const QPointF &arm =
                m_arms[m_shapes[body].first + m_bodies[body].components.size() + site];
            QPointF local = m_bodies[body].sites[site].outward;
            if (m_mirrored[body])
                local.setX(-local.x());
            const QPointF outward = turnedBy(local, m_shapes[body].turn);
            return Tip{body, outward, arm + outward * (bond.length / 2.0)};
        };
        const Tip a = tipOf(bond.bodyA, bond.siteA);
        const Tip b = tipOf(bond.bodyB, bond.siteB);
        const QPointF lack = QPointF(x[3 * b.body], x[3 * b.body + 1]) + b.arm
            - QPointF(x[3 * a.body], x[3 * a.body + 1]) - a.arm;
        sum += QPointF::dotProduct(lack, lack);
        push(gradient, a.body, a.arm, lack * -2.0);
        push(gradient, b.body, b.arm, lack * 2.0);
        // 0 when the sites look at each other.
        sum += m_weights.facing * (1.0 + QPointF::dotProduct(a.outward, b.outward));
        const double torque = m_weights.facing * crossOf(a.outward, b.outward);
        (*gradient)[3 * a.body + 2] += torque / m_shapes[a.body].lever;
        (*gradient)[3 * b.body + 2] -= torque / m_shapes[b.body].lever;
    }
    return sum;
}

} // namespace zel::layout
