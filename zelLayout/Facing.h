#pragma once

#include "zelLayout/Relax.h"

#include <vector>

namespace zel::layout {

/// Turns and mirrors each body so that its bonded sites look towards its partners.
void faceBonds(
    const std::vector<Body> &bodies, const std::vector<BodyBond> &bonds, std::vector<Pose> *poses);

/// The line along which points lie.
struct Axis
{
    QPointF middle;
    double angle = 0.0; ///< radians
    bool isClear = false; ///< they lie further along it than across
};
Axis axisOf(const std::vector<QPointF> &points);

/// Bends the longer axis of a drawing to an arc of that angle (radians).
void bend(std::vector<Pose> *poses, double angle);

} // namespace zel::layout
