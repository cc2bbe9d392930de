#include "zelModelSupport/graphics/contact/ZelContactRoutes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace zel::contacts {

namespace {

constexpr double CornerGap = 6.0; // of a corner from what it passes, for its rounding
constexpr double LineGap = 3.0; // between lines that go around one circle
constexpr int MostLines = 12; // that keep that gap
constexpr double Stub = 8.0; // straight out of a site
constexpr double Rounding = 40.0;
constexpr double CornerCost = 6.0;
constexpr int Depth = 4;
constexpr double Piece = 5.0; // of a curve, when it is looked at
constexpr double MostPieces = 150.0;
constexpr double TurnCost = 6.0; // for each radian by which a line leaves a site askew
constexpr double GoodCost = 1.0; // beyond the straight length: nothing can be better
constexpr double ChordReach = 0.25; // of the distance, that a chord is led straight inwards
constexpr std::size_t Crowd = 100; // lines
constexpr double LoopSpread = 0.6; // radians on either side, at which a loop leaves its site

QPointF turned(const QPointF &vector, double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {vector.x() * c - vector.y() * s, vector.x() * s + vector.y() * c};
}

/// Corners as a line with round ones.
QPainterPath rounded(const std::vector<QPointF> &points)
{
    QPainterPath path(points.front());
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const QPointF back = points[i - 1] - points[i];
        const QPointF on = points[i + 1] - points[i];
        const double cut = std::min({Rounding, lengthOf(back) / 2.0, lengthOf(on) / 2.0});
        path.lineTo(points[i] + unit(back) * cut);
        path.quadTo(points[i], points[i] + unit(on) * cut);
    }
    path.lineTo(points.back());
    return path;
}

QPointF bezier(const std::array<QPointF, 4> &p, double t)
{
    const double u = 1.0 - t;
    return u * u * u * p[0] + 3.0 * u * u * t * p[1] + 3.0 * u * t * t * p[2] + t * t * t * p[3];
}

} // namespace

std::vector<QPointF> piecesOf(const QPainterPath &path)
{
    std::vector<QPointF> points{path.elementAt(0)};
    for (int i = 1; i < path.elementCount(); ++i) {
        const QPointF from = points.back();
        std::array<QPointF, 4> control{from, from, path.elementAt(i), path.elementAt(i)};
        const bool isCurve = path.elementAt(i).isCurveTo();
        if (isCurve) {
            control = {from, path.elementAt(i), path.elementAt(i + 1), path.elementAt(i + 2)};
            i += 2;
        }
        const double length = lengthOf(control[1] - from) + lengthOf(control[2] - control[1])
            + lengthOf(control[3] - control[2]);
        const double count = std::clamp(std::ceil(length / Piece), 1.0, MostPieces);
        for (int k = 1; k <= static_cast<int>(count); ++k) {
            const double t = k / count;
            points.push_back(isCurve ? bezier(control, t) : from + (control[3] - from) * t);
        }
    }
    return points;
}

Routes::Routes(std::vector<Circle> circles, std::size_t lines)
    : m_field(std::move(circles)), m_isCrowded(lines > Crowd),
      m_uses(static_cast<std::size_t>(m_field.count()), 0)
{
}

QPointF Routes::outwardOf(const End &end) const
{
    return unit(m_field.circle(end.site).centre - m_field.circle(end.component).centre);
}

QPainterPath Routes::route(const End &from, const End &to)
{
    m_field.setEnds(from, to);
    if (from.site == to.site)
        return loop(from);
    const Circle &first = m_field.circle(from.site);
    const Circle &last = m_field.circle(to.site);
    const QPointF along = unit(last.centre - first.centre);
    QPainterPath straight(first.centre + along * first.radius);
    straight.lineTo(last.centre - along * last.radius);
    Best best;
    best.cost = std::numeric_limits<double>::max();
    take(straight, 0.0, &best);
    const double length = lengthOf(last.centre - first.centre) - first.radius - last.radius;
    if (best.cost > length + GoodCost)
        tryCurves(from, to, &best);
    if (best.cost > length + HitCost)
        tryCorners(from, to, &best);
    m_field.addLine(best.points);
    m_directions[from.site].push_back(unit(best.points.front() - first.centre));
    m_directions[to.site].push_back(unit(best.points.back() - last.centre));
    return best.path;
}

QPainterPath Routes::chord(const End &from, const End &to) const
{
    const Circle &first = m_field.circle(from.site);
    const Circle &last = m_field.circle(to.site);
    const double distance = lengthOf(last.centre - first.centre);
    const auto inwards = [&](const End &end) {
        const double across = 2.0 * m_field.circle(end.component).radius;
        return -outwardOf(end) * (across + ChordReach * distance);
    };
    QPainterPath path(first.centre - outwardOf(from) * first.radius);
    path.cubicTo(first.centre + inwards(from), last.centre + inwards(to),
        last.centre - outwardOf(to) * last.radius);
    return path;
}

void Routes::take(const QPainterPath &path, double penalty, Best *best) const
{
    std::vector<QPointF> points = piecesOf(path);
    const double cost = penalty + m_field.costOf(points, best->cost - penalty);
    if (cost < best->cost) {
        best->cost = cost;
        best->path = path;
        best->points = std::move(points);
    }
}

void Routes::tryCurves(const End &from, const End &to, Best *best) const
{
    const std::vector<double> turns = m_isCrowded
        ? std::vector<double>{0.0, 0.8, -0.8}
        : std::vector<double>{0.0, 0.4, -0.4, 0.8, -0.8, 1.2, -1.2, 1.6, -1.6};
    const std::vector<double> reaches =
        m_isCrowded ? std::vector<double>{0.5, 1.0} : std::vector<double>{0.3, 0.55, 0.9, 1.4};
    const Circle &first = m_field.circle(from.site);
    const Circle &last = m_field.circle(to.site);
    const double distance = lengthOf(last.centre - first.centre);
    for (const double startTurn : turns) {
        const QPointF start = turned(outwardOf(from), startTurn);
        for (const double endTurn : turns) {
            const QPointF end = turned(outwardOf(to), endTurn);
            const double penalty = TurnCost * (std::abs(startTurn) + std::abs(endTurn)) / 2.0;
            if (penalty + distance - first.radius - last.radius >= best->cost)
                continue;
            for (const double reach : reaches) {
                const double arm = 10.0 + reach * distance;
                QPainterPath path(first.centre + start * first.radius);
                path.cubicTo(first.centre + start * (first.radius + arm),
                    last.centre + end * (last.radius + arm), last.centre + end * last.radius);
                take(path, penalty, best);
            }
        }
    }
}

void Routes::tryCorners(const End &from, const End &to, Best *best)
{
    const Circle &first = m_field.circle(from.site);
    const Circle &last = m_field.circle(to.site);
    const QPointF start = first.centre + outwardOf(from) * (first.radius + Stub);
    const QPointF end = last.centre + outwardOf(to) * (last.radius + Stub);
    const Way way = wayBetween(start, end, Depth, std::numeric_limits<double>::max());
    std::vector<QPointF> points{first.centre};
    // Not straight out where the first corner can be seen at once.
    if (way.corners.empty() || m_field.firstHit(first.centre, way.corners.front()) >= 0)
        points.push_back(start);
    points.insert(points.end(), way.corners.cbegin(), way.corners.cend());
    if (way.corners.empty() || m_field.firstHit(way.corners.back(), last.centre) >= 0)
        points.push_back(end);
    points.push_back(last.centre);
    // From rim to rim.
    points.front() += unit(points[1] - points[0]) * first.radius;
    points.back() += unit(points[points.size() - 2] - points.back()) * last.radius;
    const double before = best->cost;
    take(rounded(points), 0.0, best);
    if (best->cost < before) {
        for (const int circle : way.around)
            ++m_uses[static_cast<std::size_t>(circle)];
    }
}

Routes::Way Routes::wayBetween(
    const QPointF &from, const QPointF &to, int depth, double mostCost) const
{
    Way best;
    const int hit = m_field.firstHit(from, to);
    best.cost = lengthOf(to - from);
    if (hit < 0 || depth == 0 || best.cost >= mostCost) {
        best.cost += hit < 0 ? 0.0 : HitCost;
        return best;
    }
    // Not to know how many are crossed is as bad as two.
    best.cost += 2.0 * HitCost;
    const QPointF along = unit(to - from);
    for (const QPointF &side : {QPointF(along.y(), -along.x()), QPointF(-along.y(), along.x())}) {
        const QPointF corner = cornerBeside(hit, side);
        const double most = std::min(best.cost, mostCost);
        if (lengthOf(corner - from) + lengthOf(to - corner) + CornerCost >= most)
            continue;
        Way before = wayBetween(from, corner, depth - 1, most);
        if (before.cost + lengthOf(to - corner) + CornerCost >= most)
            continue;
        const Way after = wayBetween(corner, to, depth - 1, most - before.cost);
        const double cost = before.cost + after.cost + CornerCost;
        if (cost >= best.cost)
            continue;
        before.corners.push_back(corner);
        before.corners.insert(before.corners.end(), after.corners.cbegin(), after.corners.cend());
        before.around.push_back(hit);
        before.around.insert(before.around.end(), after.around.cbegin(), after.around.cend());
        before.cost = cost;
        best = std::move(before);
    }
    return best;
}

QPointF Routes::cornerBeside(int circle, const QPointF &side) const
{
    const int uses = m_uses[static_cast<std::size_t>(circle)];
    const double gap = m_field.clearance(circle) + CornerGap + LineGap * std::min(uses, MostLines);
    QPointF corner = m_field.circle(circle).centre + side * (m_field.circle(circle).radius + gap);
    for (int tries = 0; tries < 12 && !m_field.isFree(corner); ++tries)
        corner += side * 10.0;
    return corner;
}

QPointF Routes::loopDirection(const End &end) const
{
    const QPointF outward = outwardOf(end);
    const std::vector<QPointF> taken = m_directions.value(end.site);
    QPointF best = outward;
    double leastCost = std::numeric_limits<double>::max();
    for (const double turn : {0.0, 0.4, -0.4, 0.8, -0.8, 1.2, -1.2}) {
        const QPointF direction = turned(outward, turn);
        double cost = std::abs(turn);
        for (const QPointF &other : taken)
            cost += 10.0 * std::max(0.0, QPointF::dotProduct(direction, other) - 0.6);
        if (cost < leastCost) {
            leastCost = cost;
            best = direction;
        }
    }
    return best;
}

QPainterPath Routes::loop(const End &end)
{
    const Circle &site = m_field.circle(end.site);
    const QPointF direction = loopDirection(end);
    // A cubic reaches three quarters of the way to its control points.
    const double reach = (site.radius + LoopReach) / 0.75 - site.radius / 3.0;
    const auto at = [&](double turn, double distance) {
        return site.centre + turned(direction, turn) * distance;
    };
    QPainterPath path(at(-LoopSpread, site.radius));
    path.cubicTo(at(-LoopSpread, reach), at(LoopSpread, reach), at(LoopSpread, site.radius));
    m_field.addLine(piecesOf(path));
    return path;
}

} // namespace zel::contacts
