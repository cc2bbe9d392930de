#include "zelLayout/Complex.h"

#include "zelLayout/Arrangement.h"
#include "zelLayout/Geometry.h"
#include "zelLayout/Measure.h"

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace zel::layout {

namespace {

constexpr double Pi = std::numbers::pi;
constexpr double PartGap = 40.0; // between unconnected parts, and bodies put in rows
constexpr std::size_t GreatestCount = 1000; // of bodies to lay out well
constexpr double GreatestWalk = 3.0e6; // bodies times bonds, likewise

const Disc &componentOf(const Body &body, int site)
{
    const QPointF &at = body.sites[static_cast<std::size_t>(site)].disc.centre;
    const auto offRim = [&at](const Disc &disc) {
        const QPointF way = at - disc.centre;
        return std::abs(lengthOf(way) - disc.radius);
    };
    return *std::min_element(body.components.cbegin(), body.components.cend(),
        [&offRim](const Disc &a, const Disc &b) { return offRim(a) < offRim(b); });
}

/// Lengthens the bonds of a body that has more partners than there is room for around it.
void lengthenCrowded(const std::vector<Body> &bodies, std::vector<BodyBond> *bonds)
{
    struct End
    {
        BodyBond *bond;
        double ownReach; // from the body's centre to the site
        double partnerRadius;
    };
    std::vector<std::vector<End>> ends(bodies.size());
    for (BodyBond &bond : *bonds) {
        const Body &a = bodies[static_cast<std::size_t>(bond.bodyA)];
        const Body &b = bodies[static_cast<std::size_t>(bond.bodyB)];
        if (a.components.empty() || b.components.empty())
            continue;
        const auto reachOf = [](const Body &body, int site) {
            const QPointF &at = body.sites[static_cast<std::size_t>(site)].disc.centre;
            return lengthOf(at);
        };
        ends[static_cast<std::size_t>(bond.bodyA)].push_back(
            {&bond, reachOf(a, bond.siteA), componentOf(b, bond.siteB).radius});
        ends[static_cast<std::size_t>(bond.bodyB)].push_back(
            {&bond, reachOf(b, bond.siteB), componentOf(a, bond.siteA).radius});
    }
    for (const std::vector<End> &list : ends) {
        if (list.size() < 4)
            continue;
        double around = 0.0;
        for (const End &end : list)
            around += 2.0 * end.partnerRadius + 1.5 * WantedGap;
        for (const End &end : list) {
            const double radius = around / (2.0 * Pi);
            end.bond->length =
                std::max(end.bond->length, radius - end.ownReach - end.partnerRadius);
        }
    }
}

/// Drawings side by side in rows of about equal width; moves their placements.
void packRows(const std::vector<Body> &bodies, std::vector<std::vector<std::size_t>> parts,
    std::vector<Placement> *placements)
{
    std::vector<QRectF> rects;
    double area = 0.0;
    double widest = 0.0;
    for (const std::vector<std::size_t> &part : parts) {
        std::vector<Body> partBodies;
        std::vector<Placement> partPlacements;
        for (const std::size_t i : part) {
            partBodies.push_back(bodies[i]);
            partPlacements.push_back((*placements)[i]);
        }
        rects.push_back(boundsOf(Drawing(partBodies, {}, partPlacements)));
        area += (rects.back().width() + PartGap) * (rects.back().height() + PartGap);
        widest = std::max(widest, rects.back().width());
    }
    const double width = std::max(widest, std::sqrt(area * 1.3));
    double x = 0.0;
    double y = 0.0;
    double height = 0.0;
    for (std::size_t k = 0; k < parts.size(); ++k) {
        const QRectF &rect = rects[k];
        if (x > 0.0 && x + rect.width() > width) {
            x = 0.0;
            y += height + PartGap;
            height = 0.0;
        }
        for (const std::size_t i : parts[k])
            (*placements)[i].centre += QPointF(x, y) - rect.topLeft();
        x += rect.width() + PartGap;
        height = std::max(height, rect.height());
    }
}

void arrangePart(const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds,
    const std::vector<std::size_t> &part, std::vector<Placement> *placements)
{
    std::vector<Body> partBodies;
    std::vector<int> indices(bodies.size(), -1);
    for (const std::size_t i : part) {
        indices[i] = static_cast<int>(partBodies.size());
        partBodies.push_back(bodies[i]);
    }
    std::vector<BodyBond> partBonds;
    for (BodyBond bond : bonds) {
        bond.bodyA = indices[static_cast<std::size_t>(bond.bodyA)];
        bond.bodyB = indices[static_cast<std::size_t>(bond.bodyB)];
        if (bond.bodyA >= 0 && bond.bodyB >= 0)
            partBonds.push_back(bond);
    }
    const std::vector<Placement> solved = arrangeConnected(partBodies, partBonds);
    for (std::size_t k = 0; k < part.size(); ++k)
        (*placements)[part[k]] = solved[k];
}

} // namespace

std::vector<Placement> arrangeBodies(
    const std::vector<Body> &bodies, const std::vector<BodyBond> &allBonds)
{
    std::vector<BodyBond> bonds;
    std::copy_if(allBonds.cbegin(), allBonds.cend(), std::back_inserter(bonds),
        [&bodies](const BodyBond &bond) { return isUsable(bodies, bond); });
    lengthenCrowded(bodies, &bonds);
    std::vector<Placement> placements(bodies.size());
    std::vector<std::vector<std::size_t>> parts = connectedParts(bodies.size(), bonds);
    const double walks =
        static_cast<double>(bodies.size()) * static_cast<double>(bodies.size() + bonds.size());
    if (bodies.size() > GreatestCount || walks > GreatestWalk) {
        parts.clear();
        for (std::size_t i = 0; i < bodies.size(); ++i)
            parts.push_back({i});
    }
    for (const std::vector<std::size_t> &part : parts) {
        if (part.size() > 1)
            arrangePart(bodies, bonds, part, &placements);
    }
    if (parts.size() > 1)
        packRows(bodies, parts, &placements);
    const QPointF middle = boundsOf(Drawing(bodies, {}, placements)).center();
    for (Placement &placement : placements)
        placement.centre -= middle;
    return placements;
}

} // namespace zel::layout
