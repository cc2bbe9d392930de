#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QHash>
#include <QLineF>
#include <QPair>
#include <QPointF>
#include <QRectF>

#include <cmath>
#include <vector>

/// Contact maps as pure geometry, in scene units.
namespace zel::contacts {

struct Circle
{
    QPointF centre;
    double radius = 0.0;
};

/// A row of circles that a wide rectangle is seen as.
ZELMODELSUPPORT_EXPORT std::vector<Circle> circlesOver(const QRectF &rect);

/// A site as a line's end: its own circle and that of its component, by their indices.
struct End
{
    int site = 0;
    int component = 0;
};

/// The circles between which lines are laid, and the lines that have been laid.
class Field
{
public:
    explicit Field(std::vector<Circle> circles);

    const Circle &circle(int index) const { return m_circles[static_cast<std::size_t>(index)]; }
    int count() const { return static_cast<int>(m_circles.size()); }

    /// Chooses the line that the questions below are about: it may touch what it leaves.
    void setEnds(const End &from, const End &to);
    /// How near that line may come to the circle.
    double clearance(int circle) const;
    bool isFree(const QPointF &point) const;
    /// The first circle that a straight line comes too close to; -1 for none.
    int firstHit(const QPointF &from, const QPointF &to) const;
    /// What is wrong with a line through these points, its length included; stops where it is more
    /// than most. The points are few units apart.
    double costOf(const std::vector<QPointF> &points, double most) const;

    /// Makes a line known to those that come after it.
    void addLine(const std::vector<QPointF> &points);

private:
    using Cell = QPair<int, int>;

    int firstHitAt(const QPointF &point, int known) const;
    double crossingCost(const QLineF &piece) const;

    std::vector<Circle> m_circles;
    QHash<Cell, std::vector<int>> m_grid;
    QHash<Cell, std::vector<QLineF>> m_lines;
    End m_from;
    End m_to;
};

inline constexpr double HitCost = 140.0; ///< of a circle that a line runs through, in lengths

inline double lengthOf(const QPointF &vector)
{
    return std::sqrt(vector.x() * vector.x() + vector.y() * vector.y());
}

/// Of length 1; to the right for a vector without length.
inline QPointF unit(const QPointF &vector)
{
    const double length = lengthOf(vector);
    return length > 0.0 ? vector / length : QPointF(1.0, 0.0);
}

} // namespace zel::contacts
