#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QList>
#include <QRectF>

class QDomElement;
class QSize;
class QString;
class SdcMcp;

/// Geometry of sets of components, and readers of the layout XML.
namespace zgs {

/// Turns the components with their sites and features by an angle in degrees, clockwise on
/// screen, about the centre of their joint rectangle. With checkCollision a turn that would
/// collide is undone and the user told. False when nothing is turned in the end.
ZELMODELSUPPORT_EXPORT bool rotate(
    const QList<SdcMcp *> &listSdcMcp, double angle, bool checkCollision);

/// Mirrors the components about the vertical line through the centre of their joint rectangle;
/// otherwise as rotate().
ZELMODELSUPPORT_EXPORT bool flipY(const QList<SdcMcp *> &listSdcMcp, bool checkCollision);

/// Whether a component or one of its sites collides with something outside the set. Components
/// that are in no scene count as colliding.
ZELMODELSUPPORT_EXPORT bool collidingWithOtherEllipse(const QList<SdcMcp *> &listSdcMcp);

/// The rectangle in a "boundingRect" element, in scene units.
ZELMODELSUPPORT_EXPORT QRectF getBoundingRectFromElt(const QDomElement &domEltBoundingRect);

/// The only child element of that tag and position index; null when there is none or several.
ZELMODELSUPPORT_EXPORT QDomElement getEltChildSdcAtPosIndex(
    const QDomElement &domElt, const QString &childTag, const QString &posIndex);

/// Width in pixels of the operator sign between two pictures of this size.
ZELMODELSUPPORT_EXPORT int getOperatorWidth(const QSize &size);

} // namespace zgs
