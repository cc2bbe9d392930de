#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"

#include "zelModelSupport/graphics/paint/ZelDrawing.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zel::geometry {

namespace {

double lengthOf(const QPointF &vector)
{
    return std::hypot(vector.x(), vector.y());
}

bool touches(const QPointF &from, const QPointF &to, const QRectF &ellipse)
{
    QPainterPath line(from);
    line.lineTo(to);
    QPainterPath rim;
    rim.addEllipse(ellipse);
    return line.intersects(rim);
}

enum class LineEnd { Start, End };

// How many whole steps take a line's near end from an ellipse's centre to where the line no longer
// touches the ellipse, while the line keeps a length above 0.
double trimSteps(
    LineEnd end, const QRectF &ellipse, const QPointF &step, const QPointF &farEnd, double length)
{
    // Closer to a whole number than the drawn curve is to the true rim, the curve decides.
    constexpr double curveTolerance = 0.05;
    const double possible = std::max(std::ceil(length) - 1.0, 0.0);
    const double rim = rimRadius(ellipse, step);
    // While the far end lies inside the ellipse, no shortening gets the line out of it.
    const QPointF farWay = farEnd - ellipse.center();
    if (lengthOf(farWay) <= rimRadius(ellipse, farWay))
        return possible;
    double wanted = std::ceil(rim);
    if (const double whole = std::round(rim); std::abs(rim - whole) < curveTolerance) {
        // In the line's own direction: on the rim itself the answer depends on it.
        const QPointF nearEnd = ellipse.center() + step * whole;
        const bool still = end == LineEnd::Start ? touches(nearEnd, farEnd, ellipse)
                                                 : touches(farEnd, nearEnd, ellipse);
        wanted = still ? whole + 1.0 : whole;
    }
    return std::min(wanted, possible);
}

bool rowFits(const QRectF &ellipse, int count, const RowMeasure &measure)
{
    const double length = count * measure.side + (count - 1) * measure.gap;
    const double least = std::min(ellipse.width(), ellipse.height());
    return std::hypot(length / ellipse.width(), measure.side / ellipse.height())
        <= drawing::StickyRowShare
        && measure.side <= drawing::StickySideShare * least;
}

} // namespace

double rimRadius(const QRectF &ellipse, const QPointF &direction)
{
    const double length = lengthOf(direction);
    const double a = ellipse.width() / 2.0;
    const double b = ellipse.height() / 2.0;
    if (!(length > 0.0) || !(a > 0.0) || !(b > 0.0))
        return 0.0;
    return length / std::hypot(direction.x() / a, direction.y() / b);
}

QLineF bondLine(const QRectF &from, const QRectF &to)
{
    const QPointF start = from.center();
    const QPointF end = to.center();
    const double length = lengthOf(end - start);
    if (!(length > 0.0))
        return {start, end};
    const QPointF step = (end - start) / length * drawing::BondTrimStep;
    const double startSteps = trimSteps(LineEnd::Start, from, step, end, length);
    const QPointF newStart = start + step * startSteps;
    const double endSteps = trimSteps(LineEnd::End, to, -step, newStart, length - startSteps);
    return {newStart, end - step * endSteps};
}

QLineF rimToRimLine(const QRectF &from, const QRectF &to)
{
    const QPointF way = to.center() - from.center();
    const double length = lengthOf(way);
    const double first = rimRadius(from, way);
    const double second = rimRadius(to, way);
    if (!(length > first + second)) {
        const QPointF middle = from.center() + way / 2.0;
        return {middle, middle};
    }
    const QPointF unit = way / length;
    return {from.center() + unit * first, to.center() - unit * second};
}

double angleBetween(const QPointF &point, const QPointF &from)
{
    const double dx = point.x() - from.x();
    const double dy = point.y() - from.y();
    if (dx == 0.0 && dy == 0.0)
        return SamePlaceAngle;
    return std::atan2(-dy, dx);
}

double rowGap(double side, double largeGap)
{
    if (side <= drawing::StickyNoGapLimit)
        return 0.0;
    return side <= drawing::StickyGapLimit ? drawing::StickyGapSmall : largeGap;
}

RowMeasure fitRow(const QRectF &ellipse, int count, double largeGap)
{
    using namespace drawing;
    const double greatest = std::min(ellipse.width(), ellipse.height());
    const RowMeasure least{StickySizeMin, rowGap(StickySizeMin, largeGap)};
    if (count < 1 || !(greatest > StickySizeMin) || !std::isfinite(greatest))
        return least;
    const auto measure = [&](double step) {
        const double side = greatest - StickySizeStep * step;
        return RowMeasure{side, rowGap(side, largeGap)};
    };
    // Between two limits of the gap a shorter side always makes a shorter row: search each part
    // by halving, since an ellipse from a file may be of any size.
    double first = 0.0;
    for (const double limit : {StickyGapLimit, StickyNoGapLimit, StickySizeMin}) {
        double last = std::max(std::ceil((greatest - limit) / StickySizeStep) - 1.0, first - 1.0);
        double low = first;
        first = last + 1.0;
        while (low <= last) {
            const double middle = std::floor((low + last) / 2.0);
            if (rowFits(ellipse, count, measure(middle)))
                last = middle - 1.0;
            else
                low = middle + 1.0;
        }
        if (low < first)
            return measure(low);
    }
    return least;
}

QList<QRectF> rowRects(const QRectF &rect, int count, const RowMeasure &measure, int directionCode)
{
    const bool vertical = directionCode == 2 || directionCode == 4;
    const bool reversed = directionCode == 3 || directionCode == 4;
    const double length = count * measure.side + (count - 1) * measure.gap;
    QList<QRectF> rects;
    rects.reserve(std::max(count, 0));
    for (int i = 0; i < count; ++i) {
        const int slot = reversed ? count - 1 - i : i;
        const double along = slot * (measure.side + measure.gap) - length / 2.0;
        const double across = -measure.side / 2.0;
        const QPointF offset = vertical ? QPointF(across, along) : QPointF(along, across);
        rects.append(QRectF(rect.center() + offset, QSizeF(measure.side, measure.side)));
    }
    return rects;
}

QPolygonF halfFillPolygon(const QRectF &square)
{
    const double inset = std::max(1.0, square.width() / 10.0);
    const QRectF inner = square.adjusted(inset, inset, -inset, -inset);
    if (!inner.isValid())
        return {};
    return QPolygonF({inner.topRight(), inner.bottomRight(), inner.bottomLeft()});
}

std::array<QLineF, 2> negationStrokes(const QPolygonF &corners, double overhang)
{
    if (corners.size() < 4)
        return {};
    const auto stroke = [overhang](const QPointF &from, const QPointF &to) {
        const double length = lengthOf(to - from);
        if (!(length > 0.0))
            return QLineF(from, to);
        const QPointF more = (to - from) / length * overhang;
        return QLineF(from - more, to + more);
    };
    return {stroke(corners.at(0), corners.at(2)), stroke(corners.at(1), corners.at(3))};
}

QRectF centredSquare(const QPointF &centre, double diameter)
{
    const double size = std::max(diameter, 0.0);
    return {centre.x() - size / 2.0, centre.y() - size / 2.0, size, size};
}

double distanceToLine(const QPointF &point, const QLineF &line)
{
    const QPointF way = line.p2() - line.p1();
    const QPointF toPoint = point - line.p1();
    const double square = QPointF::dotProduct(way, way);
    const double share =
        square > 0.0 ? std::clamp(QPointF::dotProduct(toPoint, way) / square, 0.0, 1.0) : 0.0;
    const QPointF rest = toPoint - way * share;
    return std::hypot(rest.x(), rest.y());
}

QRectF freePlace(const QRectF &wanted, const QList<QRectF> &taken, double gap, double step)
{
    constexpr int Rings = 60;
    constexpr int PlacesPerRing = 8; // of the first ring; farther ones have as many more
    const auto isFree = [&](const QRectF &rect) {
        const QRectF around = rect.adjusted(-gap, -gap, gap, gap);
        return std::none_of(taken.cbegin(), taken.cend(),
            [&around](const QRectF &other) { return around.intersects(other); });
    };
    if (isFree(wanted))
        return wanted;
    for (int ring = 1; ring <= Rings; ++ring) {
        const int places = PlacesPerRing * ring;
        for (int i = 0; i < places; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / places;
            const QPointF by(std::cos(angle) * step * ring, -std::sin(angle) * step * ring);
            if (isFree(wanted.translated(by)))
                return wanted.translated(by);
        }
    }
    QRectF all;
    for (const QRectF &rect : taken)
        all |= rect;
    QRectF beside = wanted;
    beside.moveLeft(all.right() + gap);
    return beside;
}

} // namespace zel::geometry
