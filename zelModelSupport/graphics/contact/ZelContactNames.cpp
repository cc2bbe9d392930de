#include "zelModelSupport/graphics/contact/ZelContactNames.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace zel::contacts {

namespace {

constexpr int MeasuredPixels = 20; // of the font; names are scaled from it
constexpr double GreatestInside = 9.0;
constexpr double LeastInside = 6.0;
constexpr double PixelStep = 0.5;
constexpr double RimGap = 1.5;
constexpr double Gap = 3.0; // of a name from anything else
constexpr double SiteNameGap = 1.5;
constexpr double LineCost = 60.0;
constexpr double AskewCost = 0.6;
constexpr double BelowCost = 3.0;
constexpr int Directions = 32;

QRectF centredAt(const QPointF &centre, const QSizeF &size)
{
    return {centre - QPointF(size.width() / 2.0, size.height() / 2.0), size};
}

bool touches(const QRectF &rect, const Circle &circle, double gap)
{
    const double dx =
        std::max({rect.left() - circle.centre.x(), 0.0, circle.centre.x() - rect.right()});
    const double dy =
        std::max({rect.top() - circle.centre.y(), 0.0, circle.centre.y() - rect.bottom()});
    return std::hypot(dx, dy) < circle.radius + gap;
}

bool crosses(const QRectF &rect, const QLineF &line)
{
    // The line's part between the rectangle's sides, clipped side by side.
    double from = 0.0;
    double to = 1.0;
    const auto clip = [&](double start, double way, double low, double high) {
        if (std::abs(way) < 1.0e-9)
            return start >= low && start <= high;
        const double a = (low - start) / way;
        const double b = (high - start) / way;
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
        return from <= to;
    };
    return clip(line.x1(), line.dx(), rect.left(), rect.right())
        && clip(line.y1(), line.dy(), rect.top(), rect.bottom());
}

bool isClear(const QRectF &rect, const Surroundings &surroundings, double gap)
{
    const QRectF grown = rect.adjusted(-gap, -gap, gap, gap);
    return std::none_of(surroundings.circles.cbegin(), surroundings.circles.cend(),
               [&](const Circle &circle) { return touches(rect, circle, gap); })
        && std::none_of(surroundings.rects.cbegin(), surroundings.rects.cend(),
            [&](const QRectF &other) { return grown.intersects(other); });
}

long long crossings(const QRectF &rect, const Surroundings &surroundings)
{
    const QRectF grown = rect.adjusted(-1.0, -1.0, 1.0, 1.0);
    return std::count_if(surroundings.lines.cbegin(), surroundings.lines.cend(),
        [&](const QLineF &line) { return crosses(grown, line); });
}

bool isInside(const QRectF &rect, const QRectF &ellipse)
{
    const double a = ellipse.width() / 2.0 - RimGap;
    const double b = ellipse.height() / 2.0 - RimGap;
    if (a <= 0.0 || b <= 0.0)
        return false;
    const QPointF middle = ellipse.center();
    for (const QPointF &corner :
        {rect.topLeft(), rect.topRight(), rect.bottomLeft(), rect.bottomRight()}) {
        const QPointF way = corner - middle;
        if (std::hypot(way.x() / a, way.y() / b) > 1.0)
            return false;
    }
    return true;
}

/// Controls, line ends and what turns the writing direction, and what no XML may hold.
bool isShown(QChar c)
{
    const char16_t code = c.unicode();
    return code >= 0x20 && (code < 0x7f || code > 0x9f) && code != 0x061c
        && (code < 0x200b || code > 0x200f) && (code < 0x2028 || code > 0x202e)
        && (code < 0x2060 || code > 0x206f) && code != 0xfeff && code < 0xfff9;
}

} // namespace

QString shownName(const QString &name, qsizetype most)
{
    QString shown;
    bool isBlank = true;
    for (qsizetype i = 0; i < name.size() && shown.size() <= most + 1; ++i) {
        const QChar c = name.at(i);
        if (c.isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate()) {
            shown += c;
            shown += name.at(++i);
            isBlank = false;
        } else if (c.isSurrogate() || !isShown(c) || c.isSpace()) {
            if (!isBlank)
                shown += u' ';
            isBlank = true;
        } else {
            shown += c;
            isBlank = false;
        }
    }
    shown = std::move(shown).trimmed();
    if (shown.size() <= most)
        return shown;
    const qsizetype kept = shown.at(most - 2).isHighSurrogate() ? most - 2 : most - 1;
    return shown.left(kept) + QChar(0x2026);
}

QFont nameFont(bool bold)
{
    QFont font;
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(MeasuredPixels);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QSizeF nameSize(const QString &name, double pixels, bool bold)
{
    const QFontMetricsF metrics(nameFont(bold));
    return QSizeF(metrics.horizontalAdvance(name), metrics.height()) * (pixels / MeasuredPixels);
}

std::optional<InnerName> fitInside(
    const QString &name, const QRectF &ellipse, const Surroundings &surroundings)
{
    const QSizeF largest = nameSize(name, GreatestInside, false);
    for (double pixels = GreatestInside; pixels >= LeastInside; pixels -= PixelStep) {
        const QSizeF size = largest * (pixels / GreatestInside);
        if (size.width() > ellipse.width())
            continue;
        for (int step = 0; step <= 20; ++step) {
            for (const int side : {-1, 1}) {
                for (const double x : {0.0, -2.0, 2.0, -4.0, 4.0, -6.0, 6.0}) {
                    const QRectF rect = centredAt(ellipse.center() + QPointF(x, side * step), size);
                    if (isInside(rect, ellipse) && isClear(rect, surroundings, 0.5))
                        return InnerName{rect, pixels};
                }
            }
        }
    }
    return std::nullopt;
}

QRectF placeBeside(
    const QSizeF &size, const QRectF &named, const QRectF &whole, const Surroundings &surroundings)
{
    // Beyond this everything is passed.
    const double furthest =
        std::hypot(whole.width(), whole.height()) + size.width() + size.height();
    QRectF best;
    double leastCost = std::numeric_limits<double>::max();
    for (int i = 0; i < Directions; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / Directions - std::numbers::pi / 2.0;
        const QPointF direction(std::cos(angle), std::sin(angle));
        for (double away = 0.0; away <= furthest + 2.0 * Gap; away += 2.0) {
            const QRectF rect = centredAt(named.center() + direction * away, size);
            const double gapX =
                std::max({0.0, rect.left() - named.right(), named.left() - rect.right()});
            const double gapY =
                std::max({0.0, rect.top() - named.bottom(), named.top() - rect.bottom()});
            const double apart = std::hypot(gapX, gapY);
            if (apart > leastCost)
                break;
            if (!isClear(rect, surroundings, Gap))
                continue;
            const QRectF joint = whole | rect;
            const double crossed = LineCost * static_cast<double>(crossings(rect, surroundings));
            // Above and centred is where names are looked for.
            const double askew = std::abs(rect.center().x() - named.center().x());
            const double cost = joint.width() - whole.width() + joint.height() - whole.height()
                + apart + AskewCost * std::min(askew, named.width() / 2.0)
                + (rect.center().y() > named.center().y() ? BelowCost : 0.0) + crossed;
            if (cost < leastCost) {
                leastCost = cost;
                best = rect;
            }
            if (away > 0.0 && crossed == 0.0)
                break;
        }
    }
    return best;
}

std::optional<QRectF> placeAtSite(
    const QSizeF &size, const Circle &site, const Surroundings &surroundings)
{
    for (int i = 0; i < Directions; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / Directions;
        const QPointF direction(std::cos(angle), std::sin(angle));
        QRectF rect = centredAt(site.centre, size);
        double away = site.radius;
        while (touches(rect, site, SiteNameGap)) {
            away += 1.0;
            rect = centredAt(site.centre + direction * away, size);
        }
        if (isClear(rect, surroundings, SiteNameGap) && crossings(rect, surroundings) == 0)
            return rect;
    }
    return std::nullopt;
}

} // namespace zel::contacts
