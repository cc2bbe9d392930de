// What the user has clicked in an editing scene.

#include "zelModelSupport/graphics/ZelDrawing.h"
#include "zelModelSupport/graphics/ZelItemGeometry.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneEditing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

Sdc *ZelSceneEditing::getSelectedSdc() const
{
    return m_selected;
}

void ZelSceneEditing::setSelectedSdc(Sdc *sdc)
{
    if (sdc == m_selected)
        return;
    if (m_selected)
        m_selected->setHighlight(false, true);
    m_selected = sdc;
    if (sdc)
        sdc->setHighlight(true, true);
    emit signal_selectionChanged(sdc);
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

void ZelSceneEditing::itemClicked(ZelGItem *item)
{
    if (ZelLineItemBstBst *line = item ? item->asLineItemBstBst() : nullptr) {
        setSelectedSdc(line->getSdcBstBst());
        return;
    }
    ZelRectItemMcpSticky *const sticky = item ? item->asRectItemMcpSticky() : nullptr;
    if (sticky)
        setSelectedSdc(getUnit(sticky->getSdcMcp()));
    else
        setSelectedSdc(getUnit(item ? item->getSdc() : nullptr));
}

void ZelSceneEditing::spaceClicked()
{
    setSelectedSdc(getBondNear(m_pressScenePos));
}
