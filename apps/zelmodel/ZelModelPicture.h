#pragma once

#include "apps/zelmodel/ZelModelDrawing.h"
#include "apps/zelmodel/ZelModelLookup.h"

#include <QRect>
#include <QSize>

#include <functional>
#include <memory>
#include <vector>

class QPainter;
class ZelScene;

/// The picture of one record: a species, or the species of a reaction with signs between them.
class ZelModelPicture : public ZelModelDrawing
{
public:
    /// A species of a reaction gets this size; an interaction is three times as wide.
    ZelModelPicture(ZelDbSqliteModel *db, const ZelModelFound &found, const QSize &size);
    /// At that zoom and as large as the drawing then is, within the limits; not for reactions.
    ZelModelPicture(
        ZelDbSqliteModel *db, const ZelModelFound &found, double zoom, const QSize &limits);
    ~ZelModelPicture() override;

    /// Whether the record could be read; one without any parts is null all the same.
    bool isLoaded() const { return !m_parts.empty(); }
    QSize size() const override { return m_size; }
    void paint(QPainter *painter) const override;

private:
    using Paint = std::function<void(QPainter *, const QRect &)>;

    struct Part
    {
        int width;
        Paint paint;
    };

    void add(int width, Paint paint);
    void addScene(std::unique_ptr<ZelScene> scene, int width);
    void addZoomed(std::unique_ptr<ZelScene> scene);
    void load(const ZelModelFound &found);
    void addAlias(const QString &psiimId);
    void addSign(int sign);
    void addEmptySet(int width);
    void addProductionSymbol();
    void addReaction(const ZelModelFound &found);

    ZelDbSqliteModel *m_db;
    QSize m_cell;
    double m_zoom = 0.0; ///< 0: as large as the cell
    QSize m_size;
    std::vector<Part> m_parts;
};
