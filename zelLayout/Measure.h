#pragma once

#include "zelLayout/Complex.h"

#include <QLineF>
#include <QRectF>

/// How good a drawing is.
namespace zel::layout {

/// Whether a bond joins sites that there are, of two bodies.
ZELLAYOUT_EXPORT bool isUsable(const std::vector<Body> &bodies, const BodyBond &bond);

/// Bodies as they are placed, one placement each: what the measures below look at. Bonds that are
/// not usable are left out.
struct Drawing
{
    ZELLAYOUT_EXPORT Drawing(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds,
        const std::vector<Placement> &placements);

    struct Part
    {
        Disc bounds;
        std::vector<Disc> components;
        std::vector<SitePlace> sites;
    };
    struct Line
    {
        QLineF line; ///< between the centres of the sites
        BodyBond bond;
    };
    std::vector<Part> parts;
    std::vector<Line> lines;
};

/// The least distance between the rims of two different bodies; negative when they overlap.
ZELLAYOUT_EXPORT double leastGap(const Drawing &drawing);
/// Whether the least distance is at least gap; stops at the first that is less.
ZELLAYOUT_EXPORT bool keepsGap(const Drawing &drawing, double gap);
/// Pairs of bonds whose lines cross.
ZELLAYOUT_EXPORT int countCrossings(const Drawing &drawing);
/// How often a bond's line runs through a component, or through a site that it does not join.
ZELLAYOUT_EXPORT int countHits(const Drawing &drawing);
ZELLAYOUT_EXPORT QRectF boundsOf(const Drawing &drawing);

/// The bodies that bonds hold together, in the order of the first of each part.
std::vector<std::vector<std::size_t>> connectedParts(
    std::size_t count, const std::vector<BodyBond> &bonds);

} // namespace zel::layout
