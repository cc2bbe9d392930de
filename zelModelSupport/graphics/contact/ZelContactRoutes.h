#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"
#include "zelModelSupport/graphics/contact/ZelContactField.h"

#include <QHash>
#include <QPainterPath>

#include <vector>

namespace zel::contacts {

/// Lays lines between sites: straight where nothing is in the way, else curved past it, so that
/// few cross. What there is no short way around is crossed.
///
/// The same calls in the same order give the same lines.
class ZELMODELSUPPORT_EXPORT Routes
{
public:
    /// With many lines to lay less is tried for each.
    Routes(std::vector<Circle> circles, std::size_t lines);

    /// From rim to rim of two sites; a loop for one site with itself.
    QPainterPath route(const End &from, const End &to);
    /// The same, but behind the sites' components and through what these enclose: for a molecule
    /// with more such lines than can be led around it.
    QPainterPath chord(const End &from, const End &to) const;

private:
    struct Way
    {
        std::vector<QPointF> corners; ///< between the ends
        std::vector<int> around; ///< the circle of each corner
        double cost = 0.0;
    };
    struct Best
    {
        QPainterPath path;
        std::vector<QPointF> points;
        double cost = 0.0;
    };

    QPointF outwardOf(const End &end) const;
    QPointF loopDirection(const End &end) const;
    QPainterPath loop(const End &end);
    void take(const QPainterPath &path, double penalty, Best *best) const;
    void tryCurves(const End &from, const End &to, Best *best) const;
    void tryCorners(const End &from, const End &to, Best *best);
    Way wayBetween(const QPointF &from, const QPointF &to, int depth, double mostCost) const;
    QPointF cornerBeside(int circle, const QPointF &side) const;

    Field m_field;
    bool m_isCrowded;
    std::vector<int> m_uses; // corners beside each circle
    QHash<int, std::vector<QPointF>> m_directions; // in which lines leave a site
};

/// A path of lines and cubics in short pieces of about equal length.
std::vector<QPointF> piecesOf(const QPainterPath &path);

inline constexpr double LoopReach = 18.0; ///< of a loop, beyond its site's rim at most

} // namespace zel::contacts
