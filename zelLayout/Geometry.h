#pragma once

#include "zelLayout/Complex.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace zel::layout {

inline double lengthOf(const QPointF &vector)
{
    return std::sqrt(vector.x() * vector.x() + vector.y() * vector.y());
}

inline double crossOf(const QPointF &a, const QPointF &b)
{
    return a.x() * b.y() - a.y() * b.x();
}

/// A vector turned by an angle given by its cosine and sine.
inline QPointF turnedBy(const QPointF &vector, const QPointF &turn)
{
    return {vector.x() * turn.x() - vector.y() * turn.y(),
        vector.x() * turn.y() + vector.y() * turn.x()};
}

/// From a body's origin to its furthest rim.
inline double reachOf(const Body &body)
{
    double reach = 0.0;
    for (const Disc &disc : body.components)
        reach = std::max(reach, lengthOf(disc.centre) + disc.radius);
    for (const SitePlace &site : body.sites)
        reach = std::max(reach, lengthOf(site.disc.centre) + site.disc.radius);
    return reach;
}

} // namespace zel::layout
