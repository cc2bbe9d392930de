// How a scene moves items about the components to which they are attached, and whole components.

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/scene/ZelSceneProbe.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelShare/ZelShareGui.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double LocStep = 5.0;
constexpr int LocTries = 200;
constexpr int AngleTries = 3600;

QPointF centreOf(const QGraphicsEllipseItem *item)
{
    return item->mapToScene(item->rect().center());
}

QPointF directionAt(double angle)
{
    const double radians = angle * std::numbers::pi / 180.0;
    return {std::cos(radians), -std::sin(radians)};
}

double lengthOf(const QPointF &vector)
{
    return std::hypot(vector.x(), vector.y());
}

bool isUsable(const QPointF &p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

// Towards p, as far as the bounds allow. Without a direction of its own the item keeps the one in
// which it lies.
QPointF attachedCentre(ZelEllipseItem *item, ZelEllipseItemMcp *centre, const QPointF &p)
{
    const QPointF c = centreOf(centre);
    QPointF way = p - c;
    double length = lengthOf(way);
    if (!(length > 0.0)) {
        way = centreOf(item) - c;
        length = lengthOf(way);
        if (!(length > 0.0)) {
            way = directionAt(0.0);
            length = 1.0;
        }
    }
    const double least = ZelShareGui::getMinimumAttachedItemCenterDistance(centre, item, way);
    const double greatest = ZelShareGui::getMaximumAttachedItemCenterDistance(centre, item, way);
    const double wanted = std::clamp(lengthOf(p - c), least, std::max(least, greatest));
    return c + way / length * wanted;
}

QPointF centreAtAngle(ZelEllipseItem *item, ZelEllipseItemMcp *centre, double angle)
{
    const QPointF way = directionAt(angle);
    const double least = ZelShareGui::getMinimumAttachedItemCenterDistance(centre, item, way);
    const double greatest = ZelShareGui::getMaximumAttachedItemCenterDistance(centre, item, way);
    return centreOf(centre) + way * ((least + greatest) / 2.0);
}

void setSceneCentre(ZelEllipseItem *item, const QPointF &p)
{
    const QPointF inParent = item->parentItem() ? item->parentItem()->mapFromScene(p) : p;
    item->setPos(inParent - item->rect().center());
}

} // namespace

void ZelScene::moveItemToAngle(ZelEllipseItem *item, ZelEllipseItemMcp *centre, double angle)
{
    if (!item || !centre || item == centre || !std::isfinite(angle))
        return;
    const Change change(this);
    setSceneCentre(item, centreAtAngle(item, centre, angle));
    attachmentMoved(item);
}

bool ZelScene::moveAroundAttachedItemByDegree(
    ZelEllipseItem *item, ZelEllipseItemMcp *centre, double degree)
{
    if (!item || !centre || item == centre)
        return false;
    const QPointF c = centreOf(centre);
    const QPointF way = centreOf(item) - c;
    const QPointF turn = directionAt(degree);
    const QPointF turned(
        way.x() * turn.x() - way.y() * turn.y(), way.x() * turn.y() + way.y() * turn.x());
    return moveAroundAttachedItemByPos(item, centre, c + turned);
}

bool ZelScene::moveAroundAttachedItemByPos(
    ZelEllipseItem *item, ZelEllipseItemMcp *centre, const QPointF &p)
{
    if (!item || !centre || item == centre || !isUsable(p))
        return false;
    return moveAll({{item, attachedCentre(item, centre, p)}});
}

bool ZelScene::moveGroupAroundItemByPos(
    const QList<ZelEllipseItem *> &group, ZelEllipseItemMcp *centre, const QPointF &p)
{
    ZelEllipseItem *const dragged = group.isEmpty() ? nullptr : group.first();
    if (!dragged || !centre || group.contains(centre) || !isUsable(p))
        return false;
    const QPointF place = attachedCentre(dragged, centre, p);
    const QPointF moved = place - centreOf(dragged);
    QList<Placement> placements{{dragged, place}};
    for (qsizetype i = 1; i < group.size(); ++i) {
        ZelEllipseItem *const item = group.at(i);
        if (item && group.indexOf(item) == i)
            placements.append({item, attachedCentre(item, centre, centreOf(item) + moved)});
    }
    return moveAll(placements);
}

void ZelScene::moveListSdcMcps(const QList<SdcMcp *> &list, const QPointF &delta)
{
    QSet<ZelEllipseItemMcp *> moved;
    QList<QPointer<ZelEllipseItemMcp>> mcpItems; // receivers may destroy what has moved
    for (SdcMcp *mcp : list) {
        ZelEllipseItemMcp *const item = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        if (!item || moved.contains(item))
            continue;
        moved.insert(item);
        mcpItems.append(item);
    }
    if (mcpItems.isEmpty() || delta.isNull() || !isUsable(delta))
        return;
    if (m_movingByDrag)
        beginDragChange();
    const Change change(this);
    for (const QPointer<ZelEllipseItemMcp> &item : std::as_const(mcpItems))
        item->moveBy(delta.x(), delta.y());
    for (const QPointer<ZelEllipseItemMcp> &item : std::as_const(mcpItems)) {
        if (!item)
            continue;
        // Lines between two moved components move along with one of them.
        const QList<ZelLineItemMcpMcp *> lines = item->getListMcpMcp();
        for (ZelLineItemMcpMcp *line : lines) {
            if (!moved.contains(line->getPartner(item)))
                line->updateLine();
        }
        item->notifyPosChanged();
    }
    emit signal_moved();
}

bool ZelScene::automaticFindAndMoveToPos(
    ZelEllipseItem *item, ZelEllipseItemMcp *centre, double startAngle, double step)
{
    const std::optional<QPointF> place = findFreePlaceAround(item, centre, startAngle, step);
    if (!place)
        return false;
    const Change change(this);
    setSceneCentre(item, *place);
    attachmentMoved(item);
    return true;
}

std::optional<QPointF> ZelScene::findLocBetweenItems(
    ZelEllipseItem *item, ZelEllipseItem *first, ZelEllipseItem *second)
{
    if (!item || !first || !second)
        return std::nullopt;
    const QPointF from = centreOf(first);
    const QPointF to = centreOf(second);
    const QPointF middle = (from + to) / 2.0;
    const double length = lengthOf(to - from);
    const QPointF along = length > 0.0 ? (to - from) / length : QPointF(1.0, 0.0);
    const QPointF across(-along.y(), along.x());
    SdcMol *const mol = moleculeOf(item) ? moleculeOf(item) : moleculeOf(first);
    for (int i = 0; i < LocTries; ++i) {
        const double distance = LocStep * ((i + 1) / 2) * (i % 2 == 0 ? 1.0 : -1.0);
        const QPointF place = middle + across * distance;
        if (!firstColliding(item, place - centreOf(item), mol, {}))
            return place;
    }
    return std::nullopt;
}

std::optional<QPointF> ZelScene::findFreePlaceAround(
    ZelEllipseItem *item, ZelEllipseItemMcp *centre, double startAngle, double step)
{
    if (!item || !centre || item == centre || !std::isfinite(startAngle) || !(step > 0.0))
        return std::nullopt;
    // An item that is still without component is to become part of the centre's molecule.
    SdcMol *const mol = moleculeOf(item) ? moleculeOf(item) : moleculeOf(centre);
    const double tries = std::min(std::ceil(360.0 / step), double(AngleTries));
    for (int i = 0; i < tries; ++i) {
        const QPointF place = centreAtAngle(item, centre, startAngle + i * step);
        if (!firstColliding(item, place - centreOf(item), mol, {}))
            return place;
    }
    return std::nullopt;
}

bool ZelScene::moveAll(const QList<Placement> &placements)
{
    if (ZelEllipseItem *hit = firstRefusing(placements)) {
        m_lastColliding = hit;
        return false;
    }
    if (m_movingByDrag)
        beginDragChange();
    const Change change(this);
    QList<QPointer<ZelEllipseItem>> moved; // receivers may destroy what has moved
    for (const Placement &placement : placements) {
        setSceneCentre(placement.item, placement.centre);
        moved.append(placement.item);
    }
    for (const QPointer<ZelEllipseItem> &item : std::as_const(moved)) {
        if (item)
            attachmentMoved(item);
    }
    return true;
}

void ZelScene::attachmentMoved(ZelEllipseItem *item)
{
    if (ZelEllipseItemMcp *mcpItem = item->asEllipseItemMcp())
        mcpItem->updateMcpMcpPos();
    item->notifyPosChanged();
}
