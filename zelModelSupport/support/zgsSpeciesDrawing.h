#pragma once

#include <QBrush>
#include <QLineF>
#include <QPen>
#include <QRectF>
#include <QString>

#include <optional>
#include <vector>

class QPainter;
class ZelDbSqliteModel;

namespace zgs {

/// What a scene would show of an alias, as shapes without scene, items and components: pictures
/// are made by the thousand.
class SpeciesDrawing
{
public:
    /// Nothing when the records and the layout do not agree in every part: what is shown then, and
    /// what is reported, is the scene's business.
    static std::optional<SpeciesDrawing> ofAlias(const QString &cpaPsiimId, ZelDbSqliteModel *db);

    /// All that a scene's items would cover.
    QRectF bounds() const { return m_bounds; }
    void paint(QPainter *painter) const;

private:
    class Builder;

    /// An ellipse, a site with its label, a feature's square or a line.
    struct Shape
    {
        enum Kind { Component, Site, Sticky, Line };

        Kind kind = Component;
        QPointF pos; // of an item's origin
        QRectF rect; // about the origin
        QLineF line; // likewise
        QPen pen;
        QBrush brush;
        QString label;
        double opacity = 1.0;
    };

    void add(Shape &&shape, const QRectF &ownBounds);

    std::vector<Shape> m_shapes; // from the lowest to the highest
    QRectF m_bounds;
};

} // namespace zgs
