#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>

#include <array>

/// Geometry of the drawing as pure functions of rectangles and points; an ellipse is given by its
/// rectangle.
namespace zel::geometry {

/// Distance from the ellipse's centre to its rim in the direction of a vector; 0 when the ellipse
/// is empty or the vector is null.
ZELMODELSUPPORT_EXPORT double rimRadius(const QRectF &ellipse, const QPointF &direction);

/// The line from centre to centre, shortened at each end by whole units until that end lies
/// outside its ellipse. Stops before the length would reach 0.
ZELMODELSUPPORT_EXPORT QLineF bondLine(const QRectF &from, const QRectF &to);

/// The line of centres between the two rims; a line without length half way when they overlap.
ZELMODELSUPPORT_EXPORT QLineF rimToRimLine(const QRectF &from, const QRectF &to);

/// The counter-clockwise angle in radians, in a scene whose y axis points down, at which the
/// first point lies as seen from the second; SamePlaceAngle when they are equal.
ZELMODELSUPPORT_EXPORT double angleBetween(const QPointF &point, const QPointF &from);
inline constexpr double SamePlaceAngle = 1000.0;

/// Side and gap of the squares of a row.
struct RowMeasure
{
    double side = 0.0;
    double gap = 0.0;
};

/// The gap that squares of a side have, given the gap of large squares.
ZELMODELSUPPORT_EXPORT double rowGap(double side, double largeGap);

/// The largest side, in steps down from the ellipse's lesser extent, at which a horizontal row of
/// count squares lies well inside the ellipse, off its rim and no higher than a share of it; the
/// least side when none does.
ZELMODELSUPPORT_EXPORT RowMeasure fitRow(const QRectF &ellipse, int count, double largeGap);

/// The squares of the row through the centre of a rectangle, in the order of the stickies.
/// Direction codes 2 and 4 are vertical, 3 and 4 run backwards.
ZELMODELSUPPORT_EXPORT QList<QRectF> rowRects(
    const QRectF &rect, int count, const RowMeasure &measure, int directionCode);

/// The part of a feature's square that is painted white: the lower right triangle of the square
/// inset by its rim.
ZELMODELSUPPORT_EXPORT QPolygonF halfFillPolygon(const QRectF &square);

/// The two strokes of a negation over a quadrilateral given corner by corner in turn: its
/// diagonals, each lengthened at both ends.
ZELMODELSUPPORT_EXPORT std::array<QLineF, 2> negationStrokes(
    const QPolygonF &corners, double overhang);

/// A circle's square of a diameter about a centre; a negative diameter counts as 0.
ZELMODELSUPPORT_EXPORT QRectF centredSquare(const QPointF &centre, double diameter);

/// The least distance of a point from a line between its ends.
ZELMODELSUPPORT_EXPORT double distanceToLine(const QPointF &point, const QLineF &line);

/// The place of a rectangle's size nearest to the wanted one, in steps on rings about it, that
/// keeps a gap to all that are taken; right of them when there is none near.
ZELMODELSUPPORT_EXPORT QRectF freePlace(
    const QRectF &wanted, const QList<QRectF> &taken, double gap, double step);

} // namespace zel::geometry
