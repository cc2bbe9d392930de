#pragma once

#include "apps/zelmodel/ZelModelLookup.h"

#include <QByteArray>
#include <QColor>
#include <QRect>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QPainter;
class ZelScene;

/// The picture of one record as vectors: a species, or the species of a reaction with signs between
/// them. The same record gives the same bytes in every run.
class ZelModelPicture
{
public:
    /// A species of a reaction gets this size; an interaction is three times as wide.
    ZelModelPicture(ZelDbSqliteModel *db, const ZelModelFound &found, const QSize &size);
    ~ZelModelPicture();

    /// Whether there is nothing to show.
    bool isNull() const { return m_size.isEmpty(); }
    /// In units of the picture, before it is scaled.
    QSize size() const { return m_size; }
    void paint(QPainter *painter) const;

    /// As a file's content; an invalid background is transparent, in a PDF white.
    QByteArray toPng(double scale, const QColor &background) const;
    QByteArray toSvg(double scale, const QColor &background, const QString &title) const;
    QByteArray toPdf(double scale, const QColor &background, const QString &title) const;

private:
    using Paint = std::function<void(QPainter *, const QRect &)>;

    struct Part
    {
        int width;
        Paint paint;
    };

    void add(int width, Paint paint);
    void addScene(std::unique_ptr<ZelScene> scene, int width);
    void addAlias(const QString &psiimId);
    void addSign(int sign);
    void addEmptySet(int width);
    void addProductionSymbol();
    void addReaction(const ZelModelFound &found);
    void paintOn(QPainter *painter, const QColor &background) const;

    ZelDbSqliteModel *m_db;
    QSize m_cell;
    QSize m_size;
    std::vector<Part> m_parts;
};
