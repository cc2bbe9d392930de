#include "zelShare/ZelShareGui.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGraphicsEllipseItem>
#include <QHash>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Drawn ellipses are made of curves that bulge a little beyond the true rim.
constexpr double RimTolerance = 0.1;

QRectF sceneRect(const QGraphicsEllipseItem *item)
{
    return item ? item->mapRectToScene(item->rect()) : QRectF();
}

QPointF unitVector(const QPointF &vector)
{
    const double length = std::hypot(vector.x(), vector.y());
    return length > 0.0 && std::isfinite(length) ? vector / length : QPointF(1.0, 0.0);
}

enum class Bound { Least, Greatest };

double attachedDistance(const QGraphicsEllipseItem *component, const QGraphicsEllipseItem *attached,
    const QPointF &direction, Bound bound)
{
    if (!component || !attached)
        return 0.0;
    const QRectF rect = sceneRect(component);
    const QRectF attachedRect = sceneRect(attached);
    const QPointF way = direction.isNull() ? attachedRect.center() - rect.center() : direction;
    if (attached->parentItem() == component) {
        return bound == Bound::Least
            ? ZelShareGui::rimDistance(rect, way)
            : ZelShareGui::centerDistanceForGap(rect, attachedRect, way, 0.0);
    }
    const double gap = bound == Bound::Least ? ZelShareGui::LeastRimGap + RimTolerance
                                             : ZelShareGui::GreatestRimGap;
    return ZelShareGui::centerDistanceForGap(rect, attachedRect, way, gap);
}

struct FontSizeKey
{
    QString text;
    QFont font;
    double width;
    double height;

    bool operator==(const FontSizeKey &) const = default;
};

size_t qHash(const FontSizeKey &key, size_t seed)
{
    return qHashMulti(seed, key.text, key.font, key.width, key.height);
}

bool fits(const QString &text, double width, double height, const QFont &font)
{
    const QFontMetricsF metrics(font);
    return metrics.horizontalAdvance(text) <= width && metrics.height() <= height;
}

int largestFittingSize(const QString &text, double width, double height, QFont font)
{
    constexpr int probe = 100;
    constexpr int greatest = 1000;
    font.setPointSize(probe);
    const QFontMetricsF metrics(font);
    double scale = height / metrics.height();
    if (const double advance = metrics.horizontalAdvance(text); advance > 0.0)
        scale = std::min(scale, width / advance);
    if (!(scale > 0.0))
        return 1;
    // Text does not scale exactly with its size: start from the estimate, then look.
    int size = static_cast<int>(std::clamp(probe * scale, 1.0, double(greatest)));
    const auto fitsAt = [&](int pointSize) {
        font.setPointSize(pointSize);
        return fits(text, width, height, font);
    };
    while (size > 1 && !fitsAt(size))
        --size;
    while (size < greatest && fitsAt(size + 1))
        ++size;
    return size;
}

} // namespace

QPointF ZelShareGui::getAttachScenePoint(
    const QGraphicsEllipseItem *component, const QGraphicsEllipseItem *, double angle)
{
    return rimPoint(sceneRect(component), angle);
}

double ZelShareGui::getMinimumAttachedItemCenterDistance(const QGraphicsEllipseItem *component,
    const QGraphicsEllipseItem *attached, const QPointF &direction)
{
    return attachedDistance(component, attached, direction, Bound::Least);
}

double ZelShareGui::getMaximumAttachedItemCenterDistance(const QGraphicsEllipseItem *component,
    const QGraphicsEllipseItem *attached, const QPointF &direction)
{
    return attachedDistance(component, attached, direction, Bound::Greatest);
}

QPointF ZelShareGui::rimPoint(const QRectF &ellipse, double angle)
{
    const double radians = angle * std::numbers::pi / 180.0;
    const QPointF direction(std::cos(radians), -std::sin(radians));
    return ellipse.center() + direction * rimDistance(ellipse, direction);
}

double ZelShareGui::rimDistance(const QRectF &ellipse, const QPointF &direction)
{
    const double a = ellipse.width() / 2.0;
    const double b = ellipse.height() / 2.0;
    if (!(a > 0.0) || !(b > 0.0))
        return 0.0;
    const QPointF unit = unitVector(direction);
    return 1.0 / std::hypot(unit.x() / a, unit.y() / b);
}

double ZelShareGui::centerDistanceForGap(
    const QRectF &first, const QRectF &second, const QPointF &direction, double gap)
{
    const QPointF unit = unitVector(direction);
    const QPointF across(-unit.y(), unit.x());
    const auto extent = [](const QRectF &ellipse, const QPointF &normal) {
        return std::hypot(ellipse.width() / 2.0 * normal.x(), ellipse.height() / 2.0 * normal.y());
    };
    // For a normal whose share along the direction is 1, the rims' supporting lines are gap apart
    // at this distance; the least over all normals is the wanted one. It is convex in the slope.
    const auto distance = [&](double slope) {
        const QPointF normal = unit + across * slope;
        return extent(first, normal) + extent(second, normal)
            + gap * std::hypot(normal.x(), normal.y());
    };
    const auto longer = [](const QRectF &rect) { return std::max(rect.width(), rect.height()); };
    const auto shorter = [](const QRectF &rect) { return std::min(rect.width(), rect.height()); };
    const double flat = std::max(shorter(first) + shorter(second), 1e-6);
    const double reach = std::clamp((longer(first) + longer(second)) / flat, 1.0, 1e6);
    if (reach <= 1.0)
        return distance(0.0); // two circles
    double low = -reach;
    double high = reach;
    // Near the least distance its error is the square of the slope's: this is exact to rounding.
    for (int i = 0; i < 40; ++i) {
        const double left = low + (high - low) / 3.0;
        const double right = high - (high - low) / 3.0;
        if (distance(left) < distance(right))
            high = right;
        else
            low = left;
    }
    return distance((low + high) / 2.0);
}

int ZelShareGui::getMaxiumFontSize(
    const QString &text, double width, double height, const QFont &font)
{
    // Thousands of sites ask for few different labels and sizes. The cache is never destroyed:
    // fonts must not outlive the application object.
    static auto &cache = *new QHash<FontSizeKey, int>;
    constexpr qsizetype cacheLimit = 4096;

    const FontSizeKey key{text, font, width, height};
    if (const auto found = cache.constFind(key); found != cache.cend())
        return *found;
    if (cache.size() >= cacheLimit)
        cache.clear();
    const int size = largestFittingSize(text, width, height, font);
    cache.insert(key, size);
    return size;
}
