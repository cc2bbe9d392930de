#pragma once

#include <QList>
#include <QString>

class LiveObjects;
class Sdc;
class SdcMol;
class ZelEllipseItem;
class ZelScene;

/// What must hold of a scene and its molecules whatever the user has done. Each function answers
/// the first thing that is wrong; empty when all is well.
namespace SceneChecks {

/// Items and components belong together, positions are dense, labels and lines up to date, and
/// nothing is left beside them; null objects when some rightly belong to neither.
QString consistent(ZelScene *scene, const QList<SdcMol *> &molecules, const LiveObjects *objects);

/// Nothing that has moved lies on a stranger.
QString apart(ZelScene *scene, const QList<ZelEllipseItem *> &moved);

/// At rest nothing glows but what is selected.
QString glowing(ZelScene *scene, Sdc *selected);

/// A molecule as stored is drawn as the molecule that was stored.
QString sameDrawing(SdcMol *stored, SdcMol *drawn);

} // namespace SceneChecks
