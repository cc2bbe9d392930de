#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QRect>
#include <QString>
#include <QTemporaryDir>

/// A stored model with one record of each kind that is shown.
///
/// Molecules L (yellow, one component, site) and R (blue, components "out" and "in" with feature P,
/// a site each). Complexes L, R and L.R, aliases "L", "R", "LR" and "Rp", the last with P off.
struct ReactionStage
{
    ReactionStage();

    /// Changes the closed file without the library, references unchecked, and opens it again.
    bool execute(const QStringList &statements);

    /// How many pixels of a part of a picture are not transparent.
    static int ink(const QPixmap &picture, const QRect &part);
    static int ink(const QPixmap &picture) { return ink(picture, picture.rect()); }
    /// Whether some pixel has the colour.
    static bool hasColor(const QPixmap &picture, const QRect &part, const QColor &color);

    static constexpr QRgb Yellow = 0xffffee00;
    static constexpr QRgb Blue = 0xff0088ff;
    static constexpr QRgb FeatureColor = 0xff336699;

    QTemporaryDir dir;
    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};
    QString molL;
    QString molR;
    QString cpxLR;
    QString cpaL;
    QString cpaR;
    QString cpaLR;
    QString cpaRp;

private:
    QString storeMolecule(const QString &name, QRgb color, int components);
    /// The alias of the molecules in a row, the first ones bonded.
    QString storeAlias(const QStringList &mols, bool featureOff, const QString &name);
};
