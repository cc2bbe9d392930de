#pragma once

#include "zelLayout/Complex.h"

#include <QHash>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

class SdcBst;
class SdcMcp;
class SdcMol;
class ZelEllipseItem;

/// Molecules with their items, as the automatic drawing sees and moves them.
namespace zel::layout {

/// A molecule with its items, seen as a rigid body about the centre of its drawing.
struct DrawnBody
{
    QList<SdcMcp *> mcps;
    QPointF origin;
    Body body;
    QHash<SdcBst *, int> siteIndices;
};

DrawnBody drawnBodyOf(SdcMol *mol);
/// Puts the molecule's items where the placement says.
void moveDrawn(const DrawnBody &drawn, const Placement &placement);

QRectF rectAbout(const QPointF &centre, const QSizeF &size);
QRectF sceneRectOf(const ZelEllipseItem *item);
/// Gives the item a rectangle in the scene, with its origin on the centre.
void placeItem(ZelEllipseItem *item, const QRectF &sceneRect);
/// Brings up to date what follows the component's place and size.
void refreshDrawn(SdcMcp *mcp);

} // namespace zel::layout
