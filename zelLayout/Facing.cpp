#include "zelLayout/Facing.h"

#include "zelLayout/Geometry.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace zel::layout {

namespace {

constexpr double Pi = std::numbers::pi;

/// One end of a bond, seen from its body.
struct End
{
    int site = 0;
    int partner = 0;
    int partnerSite = 0;
    double length = 0.0;
};

using Complex = std::complex<double>;

Complex complexOf(const QPointF &point)
{
    return {point.x(), point.y()};
}

/// Half way along a bond that leaves the body straight.
Complex tipOf(const std::vector<Body> &bodies, int body, int site, double length, bool mirrored)
{
    const SitePlace &place =
        bodies[static_cast<std::size_t>(body)].sites[static_cast<std::size_t>(site)];
    const Complex tip = complexOf(place.disc.centre + place.outward * (length / 2.0));
    return mirrored ? -std::conj(tip) : tip;
}

/// For a body whose bonds pull it both ways, as two bonds to one partner may: across the way to its
/// first partner, on the side and in the sense that brings the bonds' ends nearest to each other.
void faceAcross(const std::vector<Body> &bodies, int body, const std::vector<End> &ends,
    std::vector<Pose> *poses)
{
    const auto poseOf = [poses](int index) -> Pose & {
        return (*poses)[static_cast<std::size_t>(index)];
    };
    Pose &own = poseOf(body);
    const Complex centre = complexOf(own.centre);
    const Complex way = complexOf(poseOf(ends.front().partner).centre) - centre;
    double least = -1.0;
    Pose best = own;
    for (const bool mirrored : {false, true}) {
        const double first =
            std::arg(way * std::conj(tipOf(bodies, body, ends.front().site, 0.0, mirrored)));
        for (const double angle : {first + Pi / 2.0, first - Pi / 2.0}) {
            double sum = mirrored ? 1.0 : 0.0;
            for (const End &end : ends) {
                const Pose &partner = poseOf(end.partner);
                const Complex from =
                    tipOf(bodies, body, end.site, end.length, mirrored) * std::polar(1.0, angle);
                const Complex to =
                    tipOf(bodies, end.partner, end.partnerSite, end.length, partner.mirrored)
                    * std::polar(1.0, partner.angle);
                sum += std::norm(complexOf(partner.centre) + to - centre - from);
            }
            if (least >= 0.0 && sum >= least - 1.0e-6)
                continue;
            least = sum;
            best.angle = angle;
            best.mirrored = mirrored;
        }
    }
    own = best;
}

} // namespace

void faceBonds(
    const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds, std::vector<Pose> *poses)
{
    constexpr double LeastPull = 0.2; // of what bonds could pull that all want the same
    std::vector<std::vector<End>> ends(bodies.size());
    for (const BodyBond &bond : bonds) {
        ends[static_cast<std::size_t>(bond.bodyA)].push_back(
            {bond.siteA, bond.bodyB, bond.siteB, bond.length});
        ends[static_cast<std::size_t>(bond.bodyB)].push_back(
            {bond.siteB, bond.bodyA, bond.siteA, bond.length});
    }
    std::vector<int> undecided;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const int body = static_cast<int>(i);
        Pose &pose = (*poses)[i];
        // The sums of the turns that the bonds want, plain and mirrored.
        Complex plain;
        Complex mirrored;
        double most = 0.0;
        for (const End &end : ends[i]) {
            const QPointF way =
                (*poses)[static_cast<std::size_t>(end.partner)].centre - pose.centre;
            const double length = lengthOf(way);
            if (!(length > 0.0))
                continue;
            const Complex wanted = complexOf(way) / length;
            plain += wanted * std::conj(tipOf(bodies, body, end.site, end.length, false));
            mirrored += wanted * std::conj(tipOf(bodies, body, end.site, end.length, true));
            most += std::abs(tipOf(bodies, body, end.site, end.length, false));
        }
        // Mirrored only for a gain that shows: the plain drawing is the one that users know.
        pose.mirrored = std::abs(mirrored) > std::abs(plain) + 0.1;
        const Complex turn = pose.mirrored ? mirrored : plain;
        if (std::abs(turn) > LeastPull * most)
            pose.angle = std::arg(turn);
        else if (!ends[i].empty())
            undecided.push_back(body);
    }
    for (const int body : undecided)
        faceAcross(bodies, body, ends[static_cast<std::size_t>(body)], poses);
    // A drawing that is quite even may stand on a ridge from which no way leads down.
    for (std::size_t i = 0; i < poses->size(); ++i) {
        Pose &pose = (*poses)[i];
        const double phase = static_cast<double>(i + 1);
        pose.angle += 0.02 * std::sin(2.3 * phase);
        pose.centre += QPointF(0.5 * std::sin(3.7 * phase), 0.5 * std::cos(5.1 * phase));
    }
}

Axis axisOf(const std::vector<QPointF> &points)
{
    constexpr double LeastShare = 0.1; // of the spread, by which both ways differ
    Axis axis;
    for (const QPointF &point : points)
        axis.middle += point / static_cast<double>(points.size());
    Complex sum;
    double spread = 0.0;
    for (const QPointF &point : points) {
        const Complex way = complexOf(point - axis.middle);
        sum += way * way; // opposite ways are one
        spread += std::norm(way);
    }
    axis.isClear = std::abs(sum) > LeastShare * spread;
    axis.angle = std::arg(sum) / 2.0;
    return axis;
}

void bend(std::vector<Pose> *poses, double angle)
{
    std::vector<QPointF> centres;
    for (const Pose &pose : *poses)
        centres.push_back(pose.centre);
    const Axis axis = axisOf(centres);
    const QPointF along(std::cos(axis.angle), std::sin(axis.angle));
    const QPointF across(-along.y(), along.x());
    double least = 0.0;
    double greatest = 0.0;
    for (const QPointF &centre : centres) {
        const double x = QPointF::dotProduct(centre - axis.middle, along);
        least = std::min(least, x);
        greatest = std::max(greatest, x);
    }
    if (!(greatest - least > 0.0))
        return;
    const double radius = (greatest - least) / angle;
    for (Pose &pose : *poses) {
        const QPointF way = pose.centre - axis.middle;
        const double turn = QPointF::dotProduct(way, along) / radius;
        const double height = radius - QPointF::dotProduct(way, across);
        pose.centre = axis.middle + along * (height * std::sin(turn))
            + across * (radius - height * std::cos(turn));
        pose.angle += turn;
    }
}

} // namespace zel::layout
