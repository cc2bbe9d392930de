#pragma once

#include "zelLayout/ZelLayoutExport.h"

#include <QPointF>

#include <vector>

/// Automatic drawing as pure geometry, in scene units.
namespace zel::layout {

inline constexpr double BondLength = 28.0; ///< between the centres of bonded sites, as wanted
inline constexpr double WantedGap = 8.0; ///< between the rims of different molecules
inline constexpr double LeastGap = 4.0; ///< that is kept whatever the bonds

struct Disc
{
    QPointF centre;
    double radius = 0.0;
};

/// A binding site: its circle, and the unit vector from its component's centre to it.
struct SitePlace
{
    Disc disc;
    QPointF outward;
};

/// A molecule as a rigid body about its origin: circles around its components, and its sites.
struct Body
{
    std::vector<Disc> components;
    std::vector<SitePlace> sites;
    bool quarterTurnsOnly = false; ///< some ellipse is no circle
};

/// A bond, by the indices of its bodies and of their sites.
struct BodyBond
{
    int bodyA = 0;
    int siteA = 0;
    int bodyB = 0;
    int siteB = 0;
    double length = BondLength; ///< between the centres of the sites, as wanted
};

/// Where a body goes: mirrored first (x becomes -x), then turned clockwise on screen, then moved.
struct Placement
{
    QPointF centre;
    double angle = 0.0; ///< whole degrees from 0 to 359; quarter turns where the body asks so
    bool mirrored = false;

    /// The vector without the move.
    ZELLAYOUT_EXPORT QPointF turned(const QPointF &vector) const;
    QPointF map(const QPointF &point) const { return centre + turned(point); }
};

/// Places the bodies about the origin so that no two come closer than LeastGap, bonded sites face
/// each other, few bonds cross, and the whole is no long strip. Bonds with a bad index or within
/// one body count for nothing. The same input gives the same result, and the work is bounded:
/// bodies beyond what can be laid out well are put in rows.
ZELLAYOUT_EXPORT std::vector<Placement> arrangeBodies(
    const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds);

} // namespace zel::layout
