#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

/// An ellipse whose place is tried before anything moves there.
struct ZelScene::Probe
{
    QRectF rect; // in scene coordinates
    const QGraphicsItem *self; // the item to which it belongs; null while there is none
    const QGraphicsItem *parent; // never in its way
    const QGraphicsItem *carrier; // whose children move along with it
    SdcMol *mol; // in which it keeps a clearance to its like
    bool isSite;
};

/// Where an item's centre goes, in scene coordinates.
struct ZelScene::Placement
{
    ZelEllipseItem *item;
    QPointF centre;
};
