// Which items of a scene are in the way of an item.

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/scene/ZelSceneProbe.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QPainterPath>

#include <cmath>

namespace {

// The least distance of rims within one molecule.
constexpr double Clearance = 1.0;
// How far around a dragged item the scene is known before its index is asked again.
constexpr double Foresight = 100.0;

QRectF sceneRectOf(const QGraphicsEllipseItem *item)
{
    return item->mapRectToScene(item->rect());
}

QRectF grown(const QRectF &rect, double by)
{
    return rect.adjusted(-by, -by, by, by);
}

bool isCircle(const QRectF &rect)
{
    return std::abs(rect.width() - rect.height()) < 1e-9;
}

// Most ellipses are circles, for which the paths' answer comes at a fraction of their cost.
bool ellipsesOverlap(const QRectF &a, const QRectF &b)
{
    if (!a.intersects(b))
        return false;
    if (isCircle(a) && isCircle(b)) {
        const QPointF way = a.center() - b.center();
        return std::hypot(way.x(), way.y()) < (a.width() + b.width()) / 2.0;
    }
    QPainterPath pathA;
    pathA.addEllipse(a);
    QPainterPath pathB;
    pathB.addEllipse(b);
    return pathA.intersects(pathB);
}

QList<ZelEllipseItem *> siteItemsOf(ZelEllipseItemMcp *mcpItem)
{
    QList<ZelEllipseItem *> list;
    if (SdcMcp *mcp = mcpItem->getSdcMcp()) {
        for (SdcBst *bst : mcp->getListSdcBst()) {
            if (ZelEllipseItem *item = bst->getZelEllipseItemBst())
                list.append(item);
        }
        return list;
    }
    const QList<QGraphicsItem *> children = mcpItem->childItems();
    for (QGraphicsItem *child : children) {
        if (ZelEllipseItem *item = ZelGItem::toZelEllipseItemBst(child))
            list.append(item);
    }
    return list;
}

} // namespace

bool ZelScene::collidingWithOtherSdcItems(
    ZelEllipseItem *item, const QList<QGraphicsItem *> &exclude)
{
    if (!item)
        return false;
    ZelEllipseItem *const hit = firstColliding(item, QPointF(), moleculeOf(item), exclude);
    if (hit)
        m_lastColliding = hit;
    return hit;
}

bool ZelScene::collidingWithOtherSdcItems(
    ZelEllipseItem *item, const QList<ZelEllipseItem *> &exclude)
{
    return collidingWithOtherSdcItems(
        item, QList<QGraphicsItem *>(exclude.cbegin(), exclude.cend()));
}

bool ZelScene::isOccupied(const QRectF &siteRect, ZelEllipseItemMcp *component, SdcMol *mol)
{
    return firstInTheWay({siteRect, nullptr, component, nullptr, mol, true}, {});
}

// The index of a scene is dear while items move, for each question files them anew. A drag asks it
// rarely: what does not move with the drag stays where it was seen.
void ZelScene::lookAround(const QRectF &rect)
{
    if (m_movingByDrag && m_seenRegion.contains(rect))
        return;
    m_seenRegion = m_movingByDrag ? grown(rect, Foresight) : QRectF();
    m_surroundings.clear();
    const QList<QGraphicsItem *> near =
        items(m_movingByDrag ? m_seenRegion : rect, Qt::IntersectsItemBoundingRect);
    for (QGraphicsItem *item : near) {
        ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(item);
        if (ellipse && (ellipse->asEllipseItemBst() || ellipse->asEllipseItemMcp()))
            m_surroundings.append(ellipse);
    }
}

void ZelScene::forgetSurroundings()
{
    m_surroundings.clear();
    m_seenRegion = QRectF();
}

ZelEllipseItem *ZelScene::firstInTheWay(const Probe &probe, const QList<QGraphicsItem *> &exclude)
{
    const QRectF around = grown(probe.rect, Clearance);
    lookAround(around);
    for (const QPointer<ZelEllipseItem> &other : std::as_const(m_surroundings)) {
        const QGraphicsItem *const candidate = other;
        if (!candidate || candidate == probe.self || candidate == probe.parent)
            continue;
        const QRectF rect = sceneRectOf(other);
        if (!around.intersects(rect) || !other->isVisible() || other->scene() != this)
            continue;
        const QGraphicsItem *const parent = candidate->parentItem();
        // What moves along with the item keeps its distance anyway.
        if (parent && (parent == probe.self || parent == probe.carrier))
            continue;
        const bool isSite = other->asEllipseItemBst();
        const bool hit = ellipsesOverlap(probe.rect, rect)
            || (isSite == probe.isSite && probe.mol && moleculeOf(other) == probe.mol
                && ellipsesOverlap(around, rect));
        if (hit && !exclude.contains(other.data()))
            return other;
    }
    return nullptr;
}

ZelEllipseItem *ZelScene::firstColliding(
    ZelEllipseItem *item, const QPointF &moved, SdcMol *mol, const QList<QGraphicsItem *> &exclude)
{
    ZelEllipseItemMcp *const mcpItem = item->asEllipseItemMcp();
    const QRectF rect = sceneRectOf(item).translated(moved);
    if (ZelEllipseItem *hit =
            firstInTheWay({rect, item, item->parentItem(), nullptr, mol, !mcpItem}, exclude))
        return hit;
    if (!mcpItem)
        return nullptr;
    for (ZelEllipseItem *site : siteItemsOf(mcpItem)) {
        const QRectF siteRect = sceneRectOf(site).translated(moved);
        if (ZelEllipseItem *hit =
                firstInTheWay({siteRect, site, mcpItem, mcpItem, mol, true}, exclude))
            return hit;
    }
    return nullptr;
}

SdcMol *ZelScene::moleculeOf(ZelEllipseItem *item) const
{
    ZelEllipseItemMcp *const mcpItem = getCenterZelEllipseMcp(item);
    SdcMcp *const mcp = mcpItem ? mcpItem->getSdcMcp() : nullptr;
    return mcp ? mcp->getParentSdcMol() : nullptr;
}

void ZelScene::updateCollisionCandidates(const QList<SdcMcp *> &moved)
{
    QList<ZelEllipseItem *> sites;
    QList<QRectF> rects;
    QRectF reach;
    for (SdcMcp *mcp : moved) {
        ZelEllipseItemMcp *const mcpItem = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        if (!mcpItem)
            continue;
        for (ZelEllipseItem *site : siteItemsOf(mcpItem)) {
            sites.append(site);
            rects.append(sceneRectOf(site));
            reach |= rects.last();
        }
    }
    qsizetype hit = sites.size(); // the first moved site that lies on another's
    ZelEllipseItem *touched = nullptr;
    if (!sites.isEmpty())
        lookAround(reach);
    for (const QPointer<ZelEllipseItem> &other : std::as_const(m_surroundings)) {
        if (sites.isEmpty() || !other || !other->asEllipseItemBst() || sites.contains(other))
            continue;
        const QRectF rect = sceneRectOf(other);
        if (!reach.intersects(rect) || !other->isVisible() || other->scene() != this)
            continue;
        for (qsizetype i = 0; i < hit; ++i) {
            if (ellipsesOverlap(rects.at(i), rect)) {
                hit = i;
                touched = other;
            }
        }
    }
    setCollisionCandidates(touched ? sites.at(hit) : nullptr, touched);
}

// Members of a group do not collide where they were, but may where they go.
ZelEllipseItem *ZelScene::firstRefusing(const QList<Placement> &placements)
{
    QList<QGraphicsItem *> group;
    for (const Placement &placement : placements)
        group.append(placement.item);
    QList<QRectF> rects;
    for (const Placement &placement : placements) {
        const QRectF rect = sceneRectOf(placement.item);
        const QPointF moved = placement.centre - rect.center();
        if (ZelEllipseItem *hit =
                firstColliding(placement.item, moved, moleculeOf(placement.item), group))
            return hit;
        const QRectF around = grown(rect.translated(moved), Clearance);
        for (const QRectF &other : std::as_const(rects)) {
            if (ellipsesOverlap(around, other))
                return placement.item;
        }
        rects.append(rect.translated(moved));
    }
    return nullptr;
}
