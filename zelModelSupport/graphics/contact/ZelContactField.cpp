#include "zelModelSupport/graphics/contact/ZelContactField.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zel::contacts {

namespace {

constexpr double CellSize = 48.0;
constexpr double Clearance = 3.0; // of a line from what it passes
constexpr double OwnClearance = 0.5; // from the component whose site it leaves
constexpr double CrossingCost = 22.0;
constexpr double SharpTurn = 0.75; // cosine, from one piece to the next
constexpr double SharpTurnCost = 40.0;
constexpr double CompanyCost = 1.5; // of a piece along another line
constexpr double CompanyGap = 2.5;
constexpr int MostCells = 4000; // that one line is looked at in
constexpr std::size_t MostLinesInCell = 60; // more cross whatever one does

int cellAt(double coordinate)
{
    return static_cast<int>(std::floor(coordinate / CellSize));
}

double distance(const QPointF &point, const QLineF &line)
{
    const QPointF way = line.p2() - line.p1();
    const double square = QPointF::dotProduct(way, way);
    const QPointF from = point - line.p1();
    const double at =
        square > 0.0 ? std::clamp(QPointF::dotProduct(from, way) / square, 0.0, 1.0) : 0.0;
    return lengthOf(from - way * at);
}

} // namespace

std::vector<Circle> circlesOver(const QRectF &rect)
{
    const double radius = rect.height() / 2.0;
    const int count = std::max(1, static_cast<int>(std::ceil(rect.width() / rect.height())));
    const double step = count > 1 ? (rect.width() - 2.0 * radius) / (count - 1) : 0.0;
    std::vector<Circle> circles;
    for (int i = 0; i < count; ++i) {
        const double x = rect.center().x() + step * (i - (count - 1) / 2.0);
        circles.push_back({{x, rect.center().y()}, radius});
    }
    return circles;
}

Field::Field(std::vector<Circle> circles) : m_circles(std::move(circles))
{
    for (int i = 0; i < count(); ++i) {
        const QPointF &centre = circle(i).centre;
        const double reach = circle(i).radius + Clearance;
        for (int x = cellAt(centre.x() - reach); x <= cellAt(centre.x() + reach); ++x) {
            for (int y = cellAt(centre.y() - reach); y <= cellAt(centre.y() + reach); ++y)
                m_grid[{x, y}].push_back(i);
        }
    }
}

void Field::setEnds(const End &from, const End &to)
{
    m_from = from;
    m_to = to;
}

double Field::clearance(int index) const
{
    if (index == m_from.site || index == m_to.site)
        return -OwnClearance;
    return index == m_from.component || index == m_to.component ? OwnClearance : Clearance;
}

int Field::firstHitAt(const QPointF &point, int known) const
{
    const auto found = m_grid.constFind({cellAt(point.x()), cellAt(point.y())});
    if (found == m_grid.cend())
        return -1;
    int hit = -1;
    for (const int i : *found) {
        if (lengthOf(point - circle(i).centre) >= circle(i).radius + clearance(i))
            continue;
        if (i == known)
            return i;
        if (hit < 0)
            hit = i;
    }
    return hit;
}

bool Field::isFree(const QPointF &point) const
{
    return firstHitAt(point, -1) < 0;
}

int Field::firstHit(const QPointF &from, const QPointF &to) const
{
    const QPointF way = to - from;
    const double length = lengthOf(way);
    if (!(length > 0.0))
        return -1;
    const QPointF along = way / length;
    int first = -1;
    double firstAt = std::numeric_limits<double>::max();
    const auto look = [&](int i) {
        if (i == m_from.site || i == m_to.site)
            return;
        const QPointF toCentre = circle(i).centre - from;
        const double at = std::clamp(QPointF::dotProduct(toCentre, along), 0.0, length);
        if (at < firstAt && lengthOf(toCentre - along * at) < circle(i).radius + clearance(i)) {
            first = i;
            firstAt = at;
        }
    };
    int cells = 0;
    const int right = cellAt(std::max(from.x(), to.x()));
    for (int x = cellAt(std::min(from.x(), to.x())); x <= right; ++x) {
        // The part of the line in this column.
        double low = std::min(from.y(), to.y());
        double high = std::max(from.y(), to.y());
        if (std::abs(way.x()) > 1.0e-6) {
            const double y1 = from.y() + way.y() * (x * CellSize - from.x()) / way.x();
            const double y2 = from.y() + way.y() * ((x + 1) * CellSize - from.x()) / way.x();
            low = std::max(low, std::min(y1, y2));
            high = std::min(high, std::max(y1, y2));
        }
        for (int y = cellAt(low); y <= cellAt(high) && cells < MostCells; ++y, ++cells) {
            const auto found = m_grid.constFind({x, y});
            if (found != m_grid.cend())
                std::for_each(found->cbegin(), found->cend(), look);
        }
    }
    return first;
}

double Field::costOf(const std::vector<QPointF> &points, double most) const
{
    double cost = 0.0;
    int hit = -1;
    for (std::size_t i = 1; i < points.size() && cost < most; ++i) {
        const QPointF way = points[i] - points[i - 1];
        const bool isEnd = i + 1 == points.size();
        cost += lengthOf(way);
        if (!isEnd && QPointF::dotProduct(unit(way), unit(points[i + 1] - points[i])) < SharpTurn)
            cost += SharpTurnCost;
        const int next = isEnd ? -1 : firstHitAt(points[i], hit);
        if (next >= 0 && next != hit)
            cost += HitCost;
        hit = next;
        cost += crossingCost({points[i - 1], points[i]});
    }
    return cost;
}

double Field::crossingCost(const QLineF &piece) const
{
    const QPointF middle = piece.center();
    const auto found = m_lines.constFind({cellAt(middle.x()), cellAt(middle.y())});
    if (found == m_lines.cend() || found->size() > MostLinesInCell)
        return 0.0;
    double cost = 0.0;
    for (const QLineF &other : *found) {
        if (piece.intersects(other, nullptr) == QLineF::BoundedIntersection)
            cost += CrossingCost;
        else if (distance(middle, other) < CompanyGap)
            cost += CompanyCost;
    }
    return cost;
}

void Field::addLine(const std::vector<QPointF> &points)
{
    for (std::size_t i = 1; i < points.size(); ++i) {
        const QLineF piece(points[i - 1], points[i]);
        const int x = cellAt(piece.center().x());
        const int y = cellAt(piece.center().y());
        // Pieces are short: whatever crosses one has its middle in this cell or the next.
        for (const Cell &cell :
            {Cell(x, y), Cell(x - 1, y), Cell(x + 1, y), Cell(x, y - 1), Cell(x, y + 1),
                Cell(x - 1, y - 1), Cell(x + 1, y - 1), Cell(x - 1, y + 1), Cell(x + 1, y + 1)}) {
            std::vector<QLineF> &list = m_lines[cell];
            if (list.size() <= MostLinesInCell)
                list.push_back(piece);
        }
    }
}

} // namespace zel::contacts
