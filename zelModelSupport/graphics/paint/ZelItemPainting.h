#pragma once

#include <QFont>
#include <QRectF>

class QBrush;
class QColor;
class QLineF;
class QPainter;
class QPen;
class QString;

/// How components, sites, features and lines are painted, in the coordinates of their item: by the
/// items, and by pictures that are drawn without any.
namespace zel::painting {

/// An ellipse with its rim inside the rectangle, whatever the pen.
void paintEllipse(QPainter *painter, const QRectF &rect, const QPen &pen, const QBrush &brush);

/// The font at whose size a label fits into a site.
QFont siteLabelFont(const QString &label, const QRectF &site);
/// A site's label; nothing where it would be too small to be read.
void paintSiteLabel(
    QPainter *painter, const QString &label, const QRectF &site, const QColor &color);

/// Gives rim and filling of a feature's square the look of a state; an unknown one changes none.
void setStickyState(int stateType, QPen *rim, QBrush *filling);
double stickyOpacity(int stateType);
void paintSticky(QPainter *painter, const QRectF &square, const QPen &rim, const QBrush &filling);

/// What a line covers at most.
QRectF lineBounds(const QLineF &line, const QPen &pen);

} // namespace zel::painting
