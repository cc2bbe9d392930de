#include "zelLayout/Molecule.h"

#include "zelLayout/Geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zel::layout {

namespace {

constexpr double Pi = std::numbers::pi;
constexpr double LeastRadius = 20.0;
constexpr double GreatestContentRadius = 50.0; // beyond, features are drawn smaller
constexpr double RadiusPerFeature = 6.0;
constexpr double FeatureMargin = 6.0;
constexpr double NeighbourAngle = Pi / 3.0; // of the rim beside a backbone stays free of sites

double contentRadius(const ComponentNeeds &needs)
{
    // A site takes some of the room in which a row of features would lie.
    const double margin = needs.sites > 0 ? FeatureMargin + SiteRadius : FeatureMargin;
    const double features = needs.features > 0 ? margin + RadiusPerFeature * needs.features : 0.0;
    return std::clamp(features, LeastRadius, GreatestContentRadius);
}

/// The angle at the centre between neighbouring sites that just keep their distance.
double leastSiteAngle(double radius)
{
    return 2.0 * std::asin(std::min(1.0, (2.0 * SiteRadius + SiteGap) / (2.0 * radius)));
}

/// The radius from which on the sites fit on an arc; 2 pi is the whole rim.
double radiusForSites(int sites, double arc)
{
    const bool whole = arc >= 2.0 * Pi;
    const int gaps = whole ? sites : sites - 1;
    if (sites < 2)
        return 0.0;
    return (2.0 * SiteRadius + SiteGap) / (2.0 * std::sin(std::min(arc / gaps, Pi) / 2.0));
}

/// The arc on which a component's sites may lie, half to each side of the direction outward.
double freeArc(std::size_t components)
{
    if (components == 1)
        return 2.0 * Pi;
    if (components == 2)
        return 2.0 * (Pi - NeighbourAngle);
    const double toNeighbour = Pi / 2.0 + Pi / static_cast<double>(components);
    return 2.0 * (toNeighbour - NeighbourAngle);
}

QPointF polar(double radius, double angle)
{
    return {radius * std::cos(angle), radius * std::sin(angle)};
}

std::vector<QPointF> placeSites(
    const QPointF &centre, double radius, int count, double outward, double arc)
{
    std::vector<QPointF> sites;
    const bool whole = arc >= 2.0 * Pi;
    double step = 2.0 * Pi / std::max(count, 1);
    double first = outward;
    if (!whole) {
        // As far apart as around the whole rim, but not behind the neighbours' backs.
        step = count > 1 ? std::min(step, arc / (count - 1)) : 0.0;
        step = std::max(step, leastSiteAngle(radius));
        first = outward - step * (count - 1) / 2.0;
    } else if (count == 2) {
        first = Pi; // left and right rather than right and left
    }
    for (int i = 0; i < count; ++i)
        sites.push_back(centre + polar(radius, first + step * i));
    return sites;
}

/// The radius of the ring around which circles of these radii lie, neighbours a backbone apart.
double ringRadius(const std::vector<double> &chords)
{
    double low = *std::max_element(chords.cbegin(), chords.cend()) / 2.0;
    double high = low;
    for (const double chord : chords)
        high += chord;
    const auto turn = [&chords](double radius) {
        double sum = 0.0;
        for (const double chord : chords)
            sum += 2.0 * std::asin(std::min(1.0, chord / (2.0 * radius)));
        return sum;
    };
    for (int i = 0; i < 60 && turn(low) > 2.0 * Pi; ++i) {
        const double middle = (low + high) / 2.0;
        (turn(middle) > 2.0 * Pi ? low : high) = middle;
    }
    return high;
}

bool overlap(const std::vector<ComponentPlace> &places)
{
    for (std::size_t i = 0; i < places.size(); ++i) {
        for (std::size_t j = i + 2; j < places.size(); ++j) {
            const QPointF way = places[j].centre - places[i].centre;
            if (lengthOf(way) < places[i].radius + places[j].radius + BackboneLength / 2.0)
                return true;
        }
    }
    return false;
}

/// Circles that differ little become equally large, which makes a regular figure of them.
void evenOut(std::vector<ComponentPlace> *places)
{
    constexpr double LittleMore = 1.5; // than the smallest
    const auto [least, greatest] = std::minmax_element(places->cbegin(), places->cend(),
        [](const ComponentPlace &a, const ComponentPlace &b) { return a.radius < b.radius; });
    const double radius = greatest->radius;
    if (radius > LittleMore * least->radius)
        return;
    for (ComponentPlace &place : *places)
        place.radius = radius;
}

void placeRing(std::vector<ComponentPlace> *places)
{
    const std::size_t count = places->size();
    std::vector<double> chords(count);
    for (std::size_t i = 0; i < count; ++i)
        chords[i] = (*places)[i].radius + (*places)[(i + 1) % count].radius + BackboneLength;
    double radius = ringRadius(chords);
    // A wide component between two narrow ones may reach further than to its neighbours.
    for (int tries = 0; tries < 64; ++tries, radius *= 1.1) {
        std::vector<double> turns;
        double sum = 0.0;
        for (const double chord : chords) {
            turns.push_back(2.0 * std::asin(std::min(1.0, chord / (2.0 * radius))));
            sum += turns.back();
        }
        const double spare = std::max(0.0, 2.0 * Pi - sum) / static_cast<double>(count);
        // Three stand on a base with the first on top, four in a square, and so on.
        double angle = count % 2 == 1 ? -Pi / 2.0 : -Pi / 2.0 - (turns.front() + spare) / 2.0;
        for (std::size_t i = 0; i < count; ++i) {
            (*places)[i].centre = polar(radius, angle);
            angle += turns[i] + spare;
        }
        if (!overlap(*places))
            return;
    }
}

} // namespace

std::vector<ComponentPlace> placeComponents(const std::vector<ComponentNeeds> &components)
{
    std::vector<ComponentPlace> places(components.size());
    if (components.empty())
        return places;
    const double arc = freeArc(components.size());
    for (std::size_t i = 0; i < components.size(); ++i) {
        places[i].radius = std::ceil(
            std::max(contentRadius(components[i]), radiusForSites(components[i].sites, arc)));
    }
    evenOut(&places);
    if (components.size() == 2) {
        const double half = (places[0].radius + places[1].radius + BackboneLength) / 2.0;
        places[0].centre = {-half, 0.0};
        places[1].centre = {half, 0.0};
    } else if (components.size() > 2) {
        placeRing(&places);
    }
    for (std::size_t i = 0; i < components.size(); ++i) {
        const QPointF &centre = places[i].centre;
        const double outward = centre.isNull() ? 0.0 : std::atan2(centre.y(), centre.x());
        places[i].sites = placeSites(centre, places[i].radius, components[i].sites, outward, arc);
    }
    return places;
}

} // namespace zel::layout
