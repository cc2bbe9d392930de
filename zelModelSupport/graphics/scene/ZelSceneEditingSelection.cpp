// What is selected in an editing scene: that on which the user acted last.

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

Sdc *ZelSceneEditing::getSelectedSdc() const
{
    return m_selected;
}

void ZelSceneEditing::setSelectedSdc(Sdc *sdc)
{
    if (sdc == m_selected)
        return;
    if (m_selected) {
        disconnect(m_selected, &QObject::destroyed, this, &ZelSceneEditing::selectedDied);
        m_selected->setHighlight(false, true);
    }
    m_selected = sdc;
    if (sdc) {
        connect(sdc, &QObject::destroyed, this, &ZelSceneEditing::selectedDied);
        sdc->setHighlight(true, true);
    }
    emit signal_selectionChanged(sdc);
}

void ZelSceneEditing::selectedDied()
{
    emit signal_selectionChanged(nullptr);
}

// A line is thin: it is enough to come near it.
SdcBstBst *ZelSceneEditing::getBondNear(const QPointF &scenePos) const
{
    const double reach = zel::drawing::BondClickReach;
    const QRectF around(scenePos - QPointF(reach, reach), QSizeF(2.0 * reach, 2.0 * reach));
    const QList<QGraphicsItem *> near = items(around, Qt::IntersectsItemBoundingRect);
    SdcBstBst *nearest = nullptr;
    double least = reach;
    for (QGraphicsItem *item : near) {
        ZelLineItem *const line = ZelGItem::toZelLineItem(item);
        ZelLineItemBstBst *const bondLine = line ? line->asLineItemBstBst() : nullptr;
        if (!bondLine || !bondLine->getSdcBstBst())
            continue;
        const QLineF drawn(bondLine->mapToScene(bondLine->line().p1()),
            bondLine->mapToScene(bondLine->line().p2()));
        const double distance = zel::geometry::distanceToLine(scenePos, drawn);
        if (distance <= least) {
            least = distance;
            nearest = bondLine->getSdcBstBst();
        }
    }
    return nearest;
}

// One answer for presses and menus, so that they act on the same. A bonded site stands for its
// bond: alone it cannot be removed.
Sdc *ZelSceneEditing::getSdcToSelect(ZelGItem *item, const QPointF &scenePos)
{
    if (ZelLineItemBstBst *line = item ? item->asLineItemBstBst() : nullptr)
        return line->getSdcBstBst();
    if (!item || !item->isEllipseItem())
        return getBondNear(scenePos);
    ZelEllipseItemBst *const bstItem = item->asEllipseItemBst();
    if (SdcBst *site = bstItem ? bstItem->getSdcBst() : nullptr) {
        const QList<SdcBstBst *> bonds = site->getListSdcBstBst();
        for (SdcBstBst *bond : bonds) {
            if (bond == m_selected)
                return bond;
        }
        if (!bonds.isEmpty())
            return bonds.last();
    }
    return getUnit(item->getSdc());
}

void ZelSceneEditing::spaceClicked()
{
    setSelectedSdc(getBondNear(m_pressScenePos));
}

void ZelSceneEditing::drawBondByHand(SdcBst *first, SdcBst *second)
{
    const QPointer<ZelSceneEditing> self = this;
    const QPointer<SdcBstBst> bond = drawBond(first, second);
    if (self && bond)
        setSelectedSdc(bond);
}
