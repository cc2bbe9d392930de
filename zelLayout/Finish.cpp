#include "zelLayout/Finish.h"

#include "zelLayout/Geometry.h"
#include "zelLayout/Measure.h"

#include <QRectF>
#include <QSizeF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace zel::layout {

namespace {

constexpr double Margin = 40.0; // around a drawing when its shape is judged
constexpr double WantedAspect = 2.0;
constexpr std::size_t MostTurns = 20; // of bodies, so that they stand upright
constexpr double GreatestCheck = 2.0e6; // pairs of bonds and bodies that are looked at

constexpr double CrossingCost = 100.0;
constexpr double AspectCost = 80.0;
constexpr double BendCost = 8.0;
constexpr double LengthCost = 10.0;

double aspectOf(const QRectF &bounds)
{
    const double longer = std::max(bounds.width(), bounds.height()) + Margin;
    return longer / (std::min(bounds.width(), bounds.height()) + Margin);
}

/// What an angle has beyond the nearest whole number of steps.
double offStep(double angle, double step)
{
    return angle - std::round(angle / step) * step;
}

QSizeF sizeWhenTurned(const std::vector<Disc> &discs, const Placement &whole)
{
    const QPointF right = whole.turned({1.0, 0.0});
    const QPointF down = whole.turned({0.0, 1.0});
    double left = std::numeric_limits<double>::max();
    double top = left;
    double rightmost = -left;
    double lowest = -top;
    for (const Disc &disc : discs) {
        const QPointF at = right * disc.centre.x() + down * disc.centre.y();
        left = std::min(left, at.x() - disc.radius);
        top = std::min(top, at.y() - disc.radius);
        rightmost = std::max(rightmost, at.x() + disc.radius);
        lowest = std::max(lowest, at.y() + disc.radius);
    }
    return discs.empty() ? QSizeF() : QSizeF(rightmost - left, lowest - top);
}

void turnAll(std::vector<Placement> *placements, double turn)
{
    const Placement whole{{}, turn, false};
    for (Placement &placement : *placements) {
        placement.centre = whole.turned(placement.centre);
        placement.angle = std::fmod(placement.angle + turn, 360.0);
    }
}

} // namespace

void spaceOut(const std::vector<Body> &bodies, double gap, std::vector<Placement> *placements)
{
    double factor = 1.0;
    for (std::size_t i = 0; i < placements->size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const QPointF way = (*placements)[i].centre - (*placements)[j].centre;
            const double distance = lengthOf(way);
            const double wanted = reachOf(bodies[i]) + reachOf(bodies[j]) + gap;
            if (distance > 1.0)
                factor = std::max(factor, wanted / distance);
        }
    }
    for (Placement &placement : *placements)
        placement.centre *= std::min(factor, 4.0);
}

void keepApart(const std::vector<Body> &bodies, std::vector<Placement> *placements)
{
    double factor = 1.05;
    for (int tries = 0; tries < 200; ++tries) {
        if (keepsGap(Drawing(bodies, {}, *placements), LeastGap))
            return;
        if (tries == 40)
            factor = 1.3;
        for (std::size_t i = 0; i < placements->size(); ++i) {
            Placement &placement = (*placements)[i];
            // Bodies on one spot would stay there.
            const double nudge = 0.1 * static_cast<double>(i);
            placement.centre = placement.centre * factor + QPointF(nudge, nudge * nudge * 0.01);
        }
    }
}

void layFlat(const std::vector<Body> &bodies, std::vector<Placement> *placements)
{
    const bool quarterTurnsOnly = std::any_of(
        bodies.cbegin(), bodies.cend(), [](const Body &body) { return body.quarterTurnsOnly; });
    // As it is and turned by quarters, or so that some body stands upright.
    std::set<double> turns{0.0, 90.0, 180.0, 270.0};
    const std::size_t most = quarterTurnsOnly ? 0 : std::min(placements->size(), MostTurns);
    for (std::size_t i = 0; i < most; ++i) {
        for (const double upright : {0.0, 90.0, 180.0, 270.0})
            turns.insert(std::fmod(360.0 + upright - (*placements)[i].angle, 360.0));
    }
    std::vector<Disc> discs;
    for (const Drawing::Part &part : Drawing(bodies, {}, *placements).parts) {
        discs.insert(discs.end(), part.components.cbegin(), part.components.cend());
        for (const SitePlace &site : part.sites)
            discs.push_back(site.disc);
    }
    double least = 0.0;
    double best = 0.0;
    for (const double turn : turns) {
        const QSizeF size = sizeWhenTurned(discs, {{}, turn, false});
        double cost = (size.width() + Margin) * (size.height() + Margin);
        if (size.height() > size.width() + 1.0)
            cost *= 1.1;
        if (offStep(turn, 90.0) != 0.0)
            cost *= 1.1; // it has been laid level before
        double crooked = 0.0;
        for (const Placement &placement : *placements) {
            const double angle = std::fmod(placement.angle + turn, 360.0);
            crooked += angle == 0.0 ? 0.0 : offStep(angle, 90.0) == 0.0 ? 0.5 : 1.0;
        }
        cost *= 1.0 + 0.05 * crooked / static_cast<double>(placements->size());
        if (turn == 0.0 || cost < least * (1.0 - 1.0e-6)) {
            least = cost;
            best = turn;
        }
    }
    turnAll(placements, best);
}

double costOf(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds,
    const std::vector<Placement> &placements)
{
    const Drawing drawing(bodies, bonds, placements);
    double cost = AspectCost * std::max(0.0, aspectOf(boundsOf(drawing)) / WantedAspect - 1.0);
    const auto lines = static_cast<double>(drawing.lines.size());
    if (lines * lines < GreatestCheck)
        cost += CrossingCost * countCrossings(drawing);
    if (lines * static_cast<double>(bodies.size()) < GreatestCheck)
        cost += HitCost * countHits(drawing);
    for (const Drawing::Line &entry : drawing.lines) {
        const double length = entry.line.length();
        if (!(length > 0.0))
            continue;
        const QPointF way = (entry.line.p2() - entry.line.p1()) / length;
        const auto outward = [&drawing](int body, int site) {
            return drawing.parts[static_cast<std::size_t>(body)]
                .sites[static_cast<std::size_t>(site)]
                .outward;
        };
        const BodyBond &bond = entry.bond;
        cost += BendCost * (1.0 - QPointF::dotProduct(outward(bond.bodyA, bond.siteA), way));
        cost += BendCost * (1.0 + QPointF::dotProduct(outward(bond.bodyB, bond.siteB), way));
        cost += LengthCost * std::max(0.0, length / entry.bond.length - 1.2);
    }
    return cost;
}

} // namespace zel::layout
