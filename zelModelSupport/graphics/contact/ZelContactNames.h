#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"
#include "zelModelSupport/graphics/contact/ZelContactField.h"

#include <QFont>
#include <QLineF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <optional>
#include <vector>

/// Names on a contact map: how they are written, and where there is room for them.
namespace zel::contacts {

/// A text from a model on one line: without what would end it, turn it around or break a file,
/// and cut where it is longer than a map can show.
ZELMODELSUPPORT_EXPORT QString shownName(const QString &name, qsizetype most);

/// The font that names are measured and written with, enlarged by a scale.
QFont nameFont(bool bold);
/// What a name covers when its letters are so high as pixels say.
QSizeF nameSize(const QString &name, double pixels, bool bold);

/// What a name has to keep clear of.
struct Surroundings
{
    std::vector<Circle> circles;
    std::vector<QRectF> rects;
    std::vector<QLineF> lines; ///< crossed where there is no other place
};

/// Where a name fits into a component between its sites and features; nothing when it does not
/// even at the least legible size.
struct InnerName
{
    QRectF rect;
    double pixels = 0.0;
};
std::optional<InnerName> fitInside(
    const QString &name, const QRectF &ellipse, const Surroundings &surroundings);

/// Where a name goes beside what it names: clear of all circles and rectangles, near, and so that
/// the whole stays small.
ZELMODELSUPPORT_EXPORT QRectF placeBeside(
    const QSizeF &size, const QRectF &named, const QRectF &whole, const Surroundings &surroundings);

/// A place for a name at a site, free of everything; nothing when there is none.
std::optional<QRectF> placeAtSite(
    const QSizeF &size, const Circle &site, const Surroundings &surroundings);

} // namespace zel::contacts
