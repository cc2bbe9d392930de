#pragma once

#include "apps/zelmodel/ZelModelDrawing.h"

#include <QRectF>

#include <memory>

class ZelDbSqliteModel;
class ZelSceneContactMap;

/// The picture of a whole model: every molecule once, and which sites may bind which.
class ZelModelContactMap : public ZelModelDrawing
{
public:
    /// Null when there are no molecules.
    explicit ZelModelContactMap(ZelDbSqliteModel *db);
    ~ZelModelContactMap() override;

    using ZelModelDrawing::toSvg;
    /// On white, for a page.
    QByteArray toSvg(const QString &title) const;

    /// How many molecules and bonds of interactions could not be drawn.
    int missingCount() const;

    QSize size() const override;
    void paint(QPainter *painter) const override;

private:
    std::unique_ptr<ZelSceneContactMap> m_scene;
    QRectF m_source;
};
