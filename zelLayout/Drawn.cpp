#include "zelLayout/Drawn.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QPair>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zel::layout {

namespace {

enum TagDirectionChange : int { NextSide = 0, PreviousSide = 1, MirroredSide = 2 };

QList<SdcMcp *> drawnComponents(SdcMol *mol)
{
    QList<SdcMcp *> list;
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        if (mcp && mcp->getZelEllipseItemMcp())
            list.append(mcp);
    }
    return list;
}

bool isCircle(const QRectF &rect)
{
    return std::abs(rect.width() - rect.height()) < 0.01;
}

} // namespace

QRectF rectAbout(const QPointF &centre, const QSizeF &size)
{
    return {centre - QPointF(size.width() / 2.0, size.height() / 2.0), size};
}

QRectF sceneRectOf(const ZelEllipseItem *item)
{
    return item->mapRectToScene(item->rect());
}

void placeItem(ZelEllipseItem *item, const QRectF &sceneRect)
{
    const QRectF rect = rectAbout({}, sceneRect.size());
    if (item->rect() != rect)
        item->setRect(rect);
    const QPointF centre = sceneRect.center();
    item->setPos(item->parentItem() ? item->parentItem()->mapFromScene(centre) : centre);
}

void refreshDrawn(SdcMcp *mcp)
{
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    for (SdcBst *bst : mcp->getListSdcBst())
        bst->updateBstLabel();
    item->updateMcpMcpPos();
    item->updateLayoutOfListStateSticky(true);
    item->updateNotIndicator();
    item->notifyPosChanged();
}

DrawnBody drawnBodyOf(SdcMol *mol)
{
    DrawnBody drawn;
    drawn.mcps = drawnComponents(mol);
    QRectF bounds;
    for (SdcMcp *mcp : std::as_const(drawn.mcps))
        bounds |= sceneRectOf(mcp->getZelEllipseItemMcp());
    drawn.origin = bounds.center();
    const auto discOf = [&drawn](const QRectF &rect) {
        return Disc{rect.center() - drawn.origin, std::max(rect.width(), rect.height()) / 2.0};
    };
    Body &body = drawn.body;
    for (SdcMcp *mcp : std::as_const(drawn.mcps)) {
        const QRectF rect = sceneRectOf(mcp->getZelEllipseItemMcp());
        body.components.push_back(discOf(rect));
        body.quarterTurnsOnly = body.quarterTurnsOnly || !isCircle(rect);
        for (SdcBst *bst : mcp->getListSdcBst()) {
            ZelEllipseItemBst *const item = bst->getZelEllipseItemBst();
            if (!item)
                continue;
            const QRectF siteRect = sceneRectOf(item);
            body.quarterTurnsOnly = body.quarterTurnsOnly || !isCircle(siteRect);
            const QPointF way = siteRect.center() - rect.center();
            const double length = std::hypot(way.x(), way.y());
            drawn.siteIndices.insert(bst, static_cast<int>(body.sites.size()));
            body.sites.push_back(
                {discOf(siteRect), length > 0.0 ? way / length : QPointF(1.0, 0.0)});
        }
    }
    return drawn;
}

void moveDrawn(const DrawnBody &drawn, const Placement &placement)
{
    const bool swapsExtent = std::fmod(placement.angle, 180.0) == 90.0;
    const auto moved = [&](const QRectF &rect) {
        return rectAbout(placement.map(rect.center() - drawn.origin),
            swapsExtent ? rect.size().transposed() : rect.size());
    };
    // Where everything was, before the first item moves and takes its children along.
    QList<QPair<ZelEllipseItem *, QRectF>> places;
    for (SdcMcp *mcp : drawn.mcps)
        places.append({mcp->getZelEllipseItemMcp(), sceneRectOf(mcp->getZelEllipseItemMcp())});
    for (SdcMcp *mcp : drawn.mcps) {
        for (SdcBst *bst : mcp->getListSdcBst()) {
            if (ZelEllipseItemBst *item = bst->getZelEllipseItemBst())
                places.append({item, sceneRectOf(item)});
        }
    }
    for (const auto &[item, rect] : std::as_const(places))
        placeItem(item, moved(rect));
    for (SdcMcp *mcp : drawn.mcps) {
        if (placement.mirrored)
            mcp->changeTagDirectionCode(MirroredSide);
        if (placement.angle == 90.0)
            mcp->changeTagDirectionCode(NextSide);
        else if (placement.angle == 270.0)
            mcp->changeTagDirectionCode(PreviousSide);
    }
    for (SdcMcp *mcp : drawn.mcps)
        refreshDrawn(mcp);
}

} // namespace zel::layout
