#include "zelLayout/Separate.h"

#include "zelLayout/Finish.h"
#include "zelLayout/Geometry.h"
#include "zelLayout/Measure.h"

#include <algorithm>
#include <cmath>

namespace zel::layout {

namespace {

constexpr double Gathered = 2.6; // times the area that the bodies need
constexpr double GatheredAspect = 1.4;
constexpr int MostRounds = 300;
constexpr double GreatestWork = 1.0e8; // pairs of circles and of bodies looked at
constexpr double Overshoot = 0.5; // so that a pair is done with

struct Shape
{
    std::vector<Disc> discs; // about the body's centre, as it is placed
    double reach = 0.0;
};

std::vector<Shape> shapesOf(
    const std::vector<Body> &bodies, const std::vector<Placement> &placements)
{
    std::vector<Shape> shapes(bodies.size());
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        for (const Disc &disc : bodies[i].components)
            shapes[i].discs.push_back({placements[i].turned(disc.centre), disc.radius});
        for (const SitePlace &site : bodies[i].sites)
            shapes[i].discs.push_back({placements[i].turned(site.disc.centre), site.disc.radius});
        shapes[i].reach = reachOf(bodies[i]);
    }
    return shapes;
}

/// How the second has to move away from the first; null when they are apart.
QPointF push(const Shape &a, const Shape &b, const QPointF &way, double *work)
{
    double most = 0.0;
    QPointF direction;
    for (const Disc &disc : a.discs) {
        const QPointF toB = way - disc.centre;
        *work += 1.0;
        if (lengthOf(toB) >= b.reach + disc.radius + LeastGap)
            continue;
        *work += static_cast<double>(b.discs.size());
        for (const Disc &other : b.discs) {
            const QPointF between = toB + other.centre;
            const double lack = disc.radius + other.radius + LeastGap - lengthOf(between);
            if (lack > most) {
                most = lack;
                direction = between;
            }
        }
    }
    if (!(most > 0.0))
        return {};
    // What lies deep in the other is not to be pushed through it.
    const auto unit = [](const QPointF &vector) {
        const double length = lengthOf(vector);
        return length > 1.0e-9 ? vector / length : QPointF();
    };
    const QPointF mean = unit(direction) + unit(way);
    return (lengthOf(mean) > 0.1 ? unit(mean) : QPointF(0.6, 0.8)) * (most + Overshoot);
}

} // namespace

void gather(const std::vector<Body> &bodies, std::vector<Placement> *placements)
{
    double needed = 0.0;
    QPointF most; // from the origin
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const double reach = reachOf(bodies[i]) + LeastGap;
        const QPointF &at = (*placements)[i].centre;
        needed += 4.0 * reach * reach;
        most = {std::max(most.x(), std::abs(at.x()) + reach),
            std::max(most.y(), std::abs(at.y()) + reach)};
    }
    const double wantedWidth = std::sqrt(Gathered * needed * GatheredAspect);
    const double x = std::min(1.0, wantedWidth / (2.0 * most.x()));
    const double y = std::min(1.0, wantedWidth / GatheredAspect / (2.0 * most.y()));
    for (Placement &placement : *placements)
        placement.centre = {placement.centre.x() * x, placement.centre.y() * y};
}

void separate(const std::vector<Body> &bodies, std::vector<Placement> *placements)
{
    const std::vector<Shape> shapes = shapesOf(bodies, *placements);
    double work = 0.0;
    bool isMoved = true;
    for (int round = 0; round < MostRounds && isMoved && work < GreatestWork; ++round) {
        isMoved = false;
        work += static_cast<double>(bodies.size() * bodies.size()) / 2.0;
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                const QPointF way = (*placements)[i].centre - (*placements)[j].centre;
                const double least = shapes[i].reach + shapes[j].reach + LeastGap;
                if (QPointF::dotProduct(way, way) >= least * least)
                    continue;
                const QPointF move = push(shapes[j], shapes[i], way, &work);
                if (move.isNull())
                    continue;
                (*placements)[i].centre += move / 2.0;
                (*placements)[j].centre -= move / 2.0;
                isMoved = true;
            }
        }
    }
    keepApart(bodies, placements);
}

} // namespace zel::layout
