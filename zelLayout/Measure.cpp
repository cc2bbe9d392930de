#include "zelLayout/Measure.h"

#include "zelLayout/Geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace zel::layout {

namespace {

double gapBetween(const Disc &a, const Disc &b)
{
    return lengthOf(a.centre - b.centre) - a.radius - b.radius;
}

double gapBetween(const Disc &disc, const Drawing::Part &part)
{
    double gap = std::numeric_limits<double>::infinity();
    for (const Disc &other : part.components)
        gap = std::min(gap, gapBetween(disc, other));
    for (const SitePlace &other : part.sites)
        gap = std::min(gap, gapBetween(disc, other.disc));
    return gap;
}

/// The least distance between two bodies that is below least, else that; with enough, the first
/// that is below enough.
double gapBelow(const Drawing &drawing, double least, double enough)
{
    for (std::size_t i = 0; i < drawing.parts.size(); ++i) {
        const Drawing::Part &part = drawing.parts[i];
        for (std::size_t j = 0; j < i && least >= enough; ++j) {
            const Drawing::Part &other = drawing.parts[j];
            if (gapBetween(part.bounds, other.bounds) >= least)
                continue;
            const auto look = [&](const Disc &disc) {
                if (least >= enough && gapBetween(disc, other.bounds) < least)
                    least = std::min(least, gapBetween(disc, other));
            };
            for (const Disc &disc : part.components)
                look(disc);
            for (const SitePlace &site : part.sites)
                look(site.disc);
        }
    }
    return least;
}

bool properlyCross(const QLineF &a, const QLineF &b)
{
    const QPointF wayA = a.p2() - a.p1();
    const QPointF wayB = b.p2() - b.p1();
    return crossOf(wayA, b.p1() - a.p1()) * crossOf(wayA, b.p2() - a.p1()) < 0.0
        && crossOf(wayB, a.p1() - b.p1()) * crossOf(wayB, a.p2() - b.p1()) < 0.0;
}

double distance(const QPointF &point, const QLineF &line)
{
    const QPointF way = line.p2() - line.p1();
    const double square = QPointF::dotProduct(way, way);
    double along = 0.0;
    if (square > 0.0)
        along = std::clamp(QPointF::dotProduct(point - line.p1(), way) / square, 0.0, 1.0);
    return lengthOf(point - line.p1() - way * along);
}

} // namespace

bool isUsable(const std::vector<Body> &bodies, const BodyBond &bond)
{
    const auto has = [&bodies](int body, int site) {
        return body >= 0 && static_cast<std::size_t>(body) < bodies.size() && site >= 0
            && static_cast<std::size_t>(site) < bodies[static_cast<std::size_t>(body)].sites.size();
    };
    return bond.bodyA != bond.bodyB && has(bond.bodyA, bond.siteA) && has(bond.bodyB, bond.siteB);
}

QPointF Placement::turned(const QPointF &vector) const
{
    const double radians = angle * (std::numbers::pi / 180.0);
    return turnedBy(
        {mirrored ? -vector.x() : vector.x(), vector.y()}, {std::cos(radians), std::sin(radians)});
}

Drawing::Drawing(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds,
    const std::vector<Placement> &placements)
{
    parts.resize(bodies.size());
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const Placement &placement = placements[i];
        for (const Disc &disc : bodies[i].components)
            parts[i].components.push_back({placement.map(disc.centre), disc.radius});
        for (const SitePlace &site : bodies[i].sites) {
            parts[i].sites.push_back({{placement.map(site.disc.centre), site.disc.radius},
                placement.turned(site.outward)});
        }
        parts[i].bounds = {placement.centre, reachOf(bodies[i])};
    }
    for (const BodyBond &bond : bonds) {
        if (!isUsable(bodies, bond))
            continue;
        const auto siteOf = [this](int body, int site) {
            return parts[static_cast<std::size_t>(body)]
                .sites[static_cast<std::size_t>(site)]
                .disc.centre;
        };
        lines.push_back(
            {QLineF(siteOf(bond.bodyA, bond.siteA), siteOf(bond.bodyB, bond.siteB)), bond});
    }
}

double leastGap(const Drawing &drawing)
{
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    return gapBelow(drawing, Infinity, -Infinity);
}

bool keepsGap(const Drawing &drawing, double gap)
{
    return gapBelow(drawing, gap, gap) >= gap;
}

int countCrossings(const Drawing &drawing)
{
    int count = 0;
    for (std::size_t i = 0; i < drawing.lines.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            count += properlyCross(drawing.lines[i].line, drawing.lines[j].line) ? 1 : 0;
    }
    return count;
}

int countHits(const Drawing &drawing)
{
    constexpr double Tolerance = 1.0; // a line that touches a rim is no eyesore
    int count = 0;
    for (const Drawing::Line &entry : drawing.lines) {
        const auto isHit = [&entry](const Disc &disc) {
            return distance(disc.centre, entry.line) < disc.radius - Tolerance;
        };
        for (std::size_t i = 0; i < drawing.parts.size(); ++i) {
            const Drawing::Part &part = drawing.parts[i];
            if (!isHit(part.bounds))
                continue;
            const int body = static_cast<int>(i);
            const BodyBond &bond = entry.bond;
            const bool isA = bond.bodyA == body;
            const bool isB = bond.bodyB == body;
            // A line's own component counts only where the line turns back into it.
            QLineF beyond = entry.line;
            const double length = beyond.length();
            if ((isA || isB) && length > 0.0) {
                const SitePlace &own =
                    part.sites[static_cast<std::size_t>(isA ? bond.siteA : bond.siteB)];
                const QPointF away =
                    beyond.pointAt(isA ? own.disc.radius / length : 1.0 - own.disc.radius / length);
                isA ? beyond.setP1(away) : beyond.setP2(away);
            }
            for (const Disc &disc : part.components)
                count += distance(disc.centre, beyond) < disc.radius - Tolerance ? 1 : 0;
            for (std::size_t k = 0; k < part.sites.size(); ++k) {
                const int site = static_cast<int>(k);
                if ((isA && site == bond.siteA) || (isB && site == bond.siteB))
                    continue;
                count += isHit(part.sites[k].disc) ? 1 : 0;
            }
        }
    }
    return count;
}

QRectF boundsOf(const Drawing &drawing)
{
    QRectF bounds;
    const auto include = [&bounds](const Disc &disc) {
        const QPointF corner(disc.radius, disc.radius);
        bounds |= QRectF(disc.centre - corner, disc.centre + corner);
    };
    for (const Drawing::Part &part : drawing.parts) {
        for (const Disc &disc : part.components)
            include(disc);
        for (const SitePlace &site : part.sites)
            include(site.disc);
    }
    return bounds;
}

std::vector<std::vector<std::size_t>> connectedParts(
    std::size_t count, const std::vector<BodyBond> &bonds)
{
    std::vector<std::size_t> leaders(count);
    for (std::size_t i = 0; i < count; ++i)
        leaders[i] = i;
    const auto leaderOf = [&leaders](int body) {
        auto i = static_cast<std::size_t>(body);
        while (leaders[i] != i) {
            leaders[i] = leaders[leaders[i]];
            i = leaders[i];
        }
        return i;
    };
    for (const BodyBond &bond : bonds) {
        const std::size_t a = leaderOf(bond.bodyA);
        const std::size_t b = leaderOf(bond.bodyB);
        leaders[std::max(a, b)] = std::min(a, b);
    }
    std::vector<std::vector<std::size_t>> parts;
    std::vector<std::size_t> numbers(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t leader = leaderOf(static_cast<int>(i));
        if (leader == i) {
            numbers[i] = parts.size();
            parts.emplace_back();
        }
        parts[numbers[leader]].push_back(i);
    }
    return parts;
}

} // namespace zel::layout
