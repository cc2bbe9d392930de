#pragma once

#include "zelShare/ZelShareExport.h"

#include <QPointF>
#include <QRectF>
#include <QString>

class QFont;
class QGraphicsEllipseItem;

/// Geometry of ellipses that are attached to one another, and the fitting of texts. Lengths are
/// scene units; an ellipse is given by its rectangle.
namespace ZelShareGui {

/// The least distance that must stay between the rims of neighbouring components.
inline constexpr double LeastRimGap = 1.0;
/// The distance between the rims at which a neighbour is placed at most.
inline constexpr double GreatestRimGap = 20.0;

/// Where the centre of a new site goes: on the component's rim at an angle in degrees,
/// counter-clockwise from the right, in scene coordinates. A null component counts as an empty
/// ellipse at the origin.
ZELSHARE_EXPORT QPointF getAttachScenePoint(const QGraphicsEllipseItem *component,
    const QGraphicsEllipseItem *attached, double angle = 90.0);

/// The least allowed distance between the centres of a component and an item attached to it: a
/// site (an item that is the component's child) lies half inside the rim, another component
/// leaves more than LeastRimGap between the rims.
///
/// The distance holds along a direction from the component's centre; a null direction is that in
/// which the attached item lies now. Null items give 0.
ZELSHARE_EXPORT double getMinimumAttachedItemCenterDistance(const QGraphicsEllipseItem *component,
    const QGraphicsEllipseItem *attached, const QPointF &direction = {});

/// The greatest allowed distance, as above: a site just touches the rim, another component stays
/// within GreatestRimGap.
ZELSHARE_EXPORT double getMaximumAttachedItemCenterDistance(const QGraphicsEllipseItem *component,
    const QGraphicsEllipseItem *attached, const QPointF &direction = {});

/// The point of an ellipse's rim at an angle in degrees, counter-clockwise on screen from the
/// right.
ZELSHARE_EXPORT QPointF rimPoint(const QRectF &ellipse, double angle);

/// Distance from centre to rim in the direction of a vector; 0 for an empty ellipse. A null vector
/// points to the right.
ZELSHARE_EXPORT double rimDistance(const QRectF &ellipse, const QPointF &direction);

/// The distance of the centres along a direction at which the least distance between the rims of
/// two ellipses equals gap.
ZELSHARE_EXPORT double centerDistanceForGap(
    const QRectF &first, const QRectF &second, const QPointF &direction, double gap);

/// The largest whole point size of the font at which one line of the text is no wider than width
/// and no higher than height; 1 when not even that fits.
ZELSHARE_EXPORT int getMaxiumFontSize(
    const QString &text, double width, double height, const QFont &font);

} // namespace ZelShareGui
