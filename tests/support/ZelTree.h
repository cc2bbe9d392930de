#pragma once

#include <QString>
#include <QStringList>

class Sdc;
class SdcMol;
class ZelDbSqliteModel;
class ZelScene;

/// Builds small component trees for tests and prints them as canonical text.
namespace ZelTree {

/// The tree with item texts, properties (by key), features with colours and states, rectangles to
/// 1/100 unit, sides of stickies and neighbours: equal texts mean equal components and drawings.
QString text(Sdc *sdc);

/// One component of a molecule to build: its short name, feature names, number of sites.
struct Mcp
{
    QString name;
    QStringList features;
    int sites = 0;
};

/// A molecule with a drawing, components in a row and joined; without a scene the caller deletes
/// the component items.
SdcMol *molecule(
    ZelDbSqliteModel *db, const QString &name, const QList<Mcp> &mcps, ZelScene *scene = nullptr);
/// The same without any drawing.
SdcMol *bareMolecule(ZelDbSqliteModel *db, const QString &name, const QList<Mcp> &mcps);

} // namespace ZelTree
