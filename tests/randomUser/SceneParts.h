#pragma once

#include "zelModelSupport/graphics/ZelEllipseItem.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QList>

/// What molecules and scenes hold.
namespace SceneParts {

inline QList<SdcMcp *> components(const QList<SdcMol *> &molecules)
{
    QList<SdcMcp *> list;
    for (SdcMol *mol : molecules)
        list += mol->getListSdcMcp();
    return list;
}

inline QList<SdcBst *> sites(const QList<SdcMol *> &molecules)
{
    QList<SdcBst *> list;
    for (SdcMol *mol : molecules)
        list += mol->getListSdcBst();
    return list;
}

/// Those of the scene's data component, else those that it shows.
inline QList<SdcMol *> molecules(const ZelScene *scene)
{
    if (Sdc *sdc = scene->getSdc())
        return sdc->getListSdcMol();
    QList<SdcMol *> list;
    const QList<QGraphicsItem *> items = scene->items();
    for (QGraphicsItem *item : items) {
        ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(item);
        SdcMol *const mol =
            ellipse && ellipse->getSdc() ? ellipse->getSdc()->getParentSdcMol() : nullptr;
        if (mol && !list.contains(mol))
            list.append(mol);
    }
    return list;
}

inline QList<SdcBstBst *> bonds(const ZelScene *scene)
{
    return scene->findChildren<SdcBstBst *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace SceneParts
