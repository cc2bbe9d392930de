// How sets of components are turned and mirrored in place.

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/support/ZelDialogs.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QDebug>
#include <QPointer>
#include <QTransform>

#include <cmath>

namespace {

enum TagDirectionChange : int { NextSide = 0, PreviousSide = 1, MirroredSide = 2 };

/// A change of the plane about the centre of a set, and what it does to the sides on which the
/// features stand.
struct Turn
{
    QTransform about; // the origin
    bool swapsExtent = false; // a quarter turn: width and height change places
    int tagDirectionChange = -1;
};

/// What a turn of a component changes and a refusal brings back.
struct Place
{
    ZelEllipseItem *item;
    QRectF rect;
    QPointF pos;
};

Turn rotation(double angle)
{
    Turn turn;
    // Whole quarters exactly, without the sine of a right angle.
    const double quarters = angle / 90.0;
    if (quarters == std::floor(quarters)) {
        const int count = static_cast<int>(std::fmod(quarters, 4.0));
        for (int i = 0; i < (count + 4) % 4; ++i)
            turn.about *= QTransform(0.0, 1.0, -1.0, 0.0, 0.0, 0.0);
        turn.swapsExtent = count % 2 != 0;
    } else {
        turn.about.rotate(angle);
    }
    if (angle == 90.0)
        turn.tagDirectionChange = NextSide;
    else if (angle == -90.0)
        turn.tagDirectionChange = PreviousSide;
    return turn;
}

Turn mirror()
{
    Turn turn;
    turn.about = QTransform::fromScale(-1.0, 1.0);
    turn.tagDirectionChange = MirroredSide;
    return turn;
}

QList<ZelEllipseItem *> itemsOf(SdcMcp *mcp)
{
    QList<ZelEllipseItem *> items;
    if (ZelEllipseItem *item = mcp ? mcp->getZelEllipseItemMcp() : nullptr)
        items.append(item);
    if (!mcp)
        return items;
    for (SdcBst *bst : mcp->getListSdcBst()) {
        if (ZelEllipseItem *item = bst->getZelEllipseItemBst())
            items.append(item);
    }
    return items;
}

// The component items first: sites that are their children keep their own place in the scene when
// they are placed after them.
QList<ZelEllipseItem *> itemsOf(const QList<SdcMcp *> &list)
{
    QList<ZelEllipseItem *> items;
    for (SdcMcp *mcp : list)
        items += itemsOf(mcp);
    std::stable_partition(
        items.begin(), items.end(), [](ZelEllipseItem *item) { return item->isEllipseItemMcp(); });
    return items;
}

QRectF jointRect(const QList<SdcMcp *> &list)
{
    QRectF rect;
    for (SdcMcp *mcp : list) {
        for (ZelEllipseItem *item : itemsOf(mcp))
            rect |= item->sceneBoundingRect();
    }
    return rect;
}

QGraphicsScene *sceneOf(const QList<SdcMcp *> &list)
{
    SdcMcp *const first = list.isEmpty() ? nullptr : list.first();
    ZelEllipseItemMcp *const item = first ? first->getZelEllipseItemMcp() : nullptr;
    return item ? item->scene() : nullptr;
}

QList<Place> placesOf(const QList<SdcMcp *> &list)
{
    QList<Place> places;
    for (ZelEllipseItem *item : itemsOf(list))
        places.append({item, item->rect(), item->pos()});
    return places;
}

void putBack(const QList<Place> &places)
{
    for (const Place &place : places) {
        if (place.item->rect() != place.rect)
            place.item->setRect(place.rect);
        place.item->setPos(place.pos);
    }
}

// The ellipses alone: each goes where the turn takes its centre, upright.
void turnEllipses(const QList<SdcMcp *> &list, const Turn &turn)
{
    const QPointF pivot = jointRect(list).center();
    const QList<ZelEllipseItem *> items = itemsOf(list);
    QList<QPointF> centres;
    for (ZelEllipseItem *item : items)
        centres.append(pivot + turn.about.map(item->mapToScene(item->rect().center()) - pivot));
    for (qsizetype i = 0; i < items.size(); ++i) {
        ZelEllipseItem *const item = items.at(i);
        if (turn.swapsExtent && item->rect().width() != item->rect().height()) {
            QRectF rect(QPointF(), item->rect().size().transposed());
            rect.moveCenter(item->rect().center());
            item->setRect(rect);
        }
        const QPointF inParent =
            item->parentItem() ? item->parentItem()->mapFromScene(centres.at(i)) : centres.at(i);
        item->setPos(inParent - item->rect().center());
    }
}

void refresh(const QList<SdcMcp *> &list)
{
    for (SdcMcp *mcp : list) {
        ZelEllipseItemMcp *const item = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        if (!item)
            continue;
        for (SdcBst *bst : mcp->getListSdcBst())
            bst->updateBstLabel();
        item->updateMcpMcpPos();
    }
}

void notify(const QList<SdcMcp *> &list)
{
    for (SdcMcp *mcp : list) {
        ZelEllipseItemMcp *const item = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        if (!item)
            continue;
        item->updateNotIndicator();
        item->notifyPosChanged();
    }
}

void turnAll(const QList<SdcMcp *> &list, const Turn &turn)
{
    turnEllipses(list, turn);
    refresh(list);
    for (SdcMcp *mcp : list) {
        ZelEllipseItemMcp *const item = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        if (turn.tagDirectionChange >= 0 && mcp)
            mcp->changeTagDirectionCode(turn.tagDirectionChange);
        if (item)
            item->updateLayoutOfListStateSticky(true);
    }
    notify(list);
}

// Tries the ellipses only, so that a turn that is refused leaves no trace but the side code, which
// goes there and back.
bool collidesWhenTurned(const QList<SdcMcp *> &list, const Turn &turn)
{
    const QList<Place> before = placesOf(list);
    turnEllipses(list, turn);
    const bool collides = zgs::collidingWithOtherEllipse(list);
    putBack(before);
    return collides;
}

bool turnUnlessColliding(const QList<SdcMcp *> &list, const Turn &turn, int undoingChange,
    bool checkCollision, const QString &refusal)
{
    QGraphicsScene *const scene = sceneOf(list);
    if (!scene)
        return false;
    if (checkCollision && collidesWhenTurned(list, turn)) {
        for (SdcMcp *mcp : list) {
            if (!mcp || turn.tagDirectionChange < 0)
                continue;
            mcp->changeTagDirectionCode(turn.tagDirectionChange);
            mcp->changeTagDirectionCode(undoingChange);
        }
        const QPointer<QObject> asked = scene;
        ZelDialogs::current()->tellRefusal(refusal);
        if (auto *zelScene = qobject_cast<ZelScene *>(asked.data()))
            emit zelScene->signal_refused(refusal);
        return false;
    }
    const ZelScene::Change change(qobject_cast<ZelScene *>(scene));
    turnAll(list, turn);
    return true;
}

} // namespace

bool zgs::rotate(const QList<SdcMcp *> &listSdcMcp, double angle, bool checkCollision)
{
    if (!std::isfinite(angle))
        return false;
    return turnUnlessColliding(listSdcMcp, rotation(angle), rotation(-angle).tagDirectionChange,
        checkCollision,
        QStringLiteral("Collision has been detected. Can't rotate. Try to move the item(s) away "
                       "from the other(s) and rotate again."));
}

bool zgs::flipY(const QList<SdcMcp *> &listSdcMcp, bool checkCollision)
{
    return turnUnlessColliding(listSdcMcp, mirror(), MirroredSide, checkCollision,
        QStringLiteral("Collision has been detected. Can't flip. Try to move the item(s) away "
                       "from the other(s) and flip again."));
}

bool zgs::collidingWithOtherEllipse(const QList<SdcMcp *> &listSdcMcp)
{
    if (listSdcMcp.isEmpty())
        return false;
    auto *const scene = qobject_cast<ZelScene *>(sceneOf(listSdcMcp));
    if (!scene) {
        qDebug() << "Error found at bool zgs::collidingWithOtherEllipse(const QList<SdcMcp *> & "
                    "listSdcMcp) ";
        return true;
    }
    QList<QGraphicsItem *> ignored;
    for (SdcMcp *mcp : listSdcMcp) {
        for (ZelEllipseItem *item : itemsOf(mcp))
            ignored.append(item);
    }
    for (SdcMcp *mcp : listSdcMcp) {
        ZelEllipseItemMcp *const item = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        if (item && scene->collidingWithOtherSdcItems(item, ignored))
            return true;
    }
    return false;
}
