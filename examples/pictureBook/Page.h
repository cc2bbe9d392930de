#pragma once

#include <QList>
#include <QSize>
#include <QString>

#include <functional>

class QPainter;
class Stage;

/// A drawing with the text below it.
struct Figure
{
    QString caption;
    std::function<void(Stage &)> draw;
};

/// One page: figures of one drawing rule in a grid, all at one scale.
struct Page
{
    QString name; ///< of its files
    QString title;
    QString text;
    int columns = 3;
    double zoom = 2.0; ///< pixels per scene unit, less when a figure is too wide for its cell
    QList<Figure> figures;
};

/// Writes <name>.png, <name>@2x.png and <name>.svg into the folder. The text of the failure, or
/// an empty one.
QString writePage(const Page &page, const QString &folder, const QString &footer);
