#include "zelModelSupport/graphics/ZelScene.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItem.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QAction>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>

#include <utility>

namespace {

// The topmost item at a position that a cast accepts.
template <typename Cast>
auto firstItemAt(const QGraphicsScene *scene, const QPointF &p, Cast cast)
    -> decltype(cast(nullptr))
{
    const QList<QGraphicsItem *> items = scene->items(p);
    for (QGraphicsItem *item : items) {
        if (auto *found = cast(item))
            return found;
    }
    return nullptr;
}

} // namespace

ZelScene::ZelScene(QObject *parent)
    : QGraphicsScene(parent), m_showRelatedMliAction(new QAction(
                                  QStringLiteral("Molecule: Show Predefined Interactions"), this))
{
    setSceneRect(-1000.0, -1000.0, 2000.0, 2000.0);
    connect(m_showRelatedMliAction, &QAction::triggered, this, &ZelScene::slot_showRelatedMli);
}

ZelScene::~ZelScene()
{
    if (m_dragging)
        setMoveScene(false); // the release will find no scene
}

void ZelScene::setSdc(Sdc *sdc)
{
    m_sdc = sdc;
}

void ZelScene::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    setContextMenuEnabled(!readOnly);
    if (readOnly && m_dragging) {
        resetPressState();
        setMoveScene(false);
    }
}

void ZelScene::setLimitedEdit(bool limitedEdit)
{
    m_limitedEdit = limitedEdit;
}

bool ZelScene::isLimitedEdit() const
{
    return m_limitedEdit;
}

void ZelScene::setZelSceneMode(int mode)
{
    m_zelSceneMode = mode;
}

bool ZelScene::loadSdc(const QString &)
{
    return false;
}

void ZelScene::itemPressed(ZelGItem *) { }

bool ZelScene::itemDragged(ZelGItem *, const QPointF &)
{
    return false;
}

void ZelScene::itemReleased(ZelGItem *, const QPointF &) { }

void ZelScene::itemsCollided(ZelEllipseItem *, ZelEllipseItem *) { }

bool ZelScene::isBondAllowed(SdcBst *, SdcBst *)
{
    return false;
}

SdcBstBst *ZelScene::addBond(SdcBst *, SdcBst *)
{
    return nullptr;
}

void ZelScene::pressCancelled() { }

bool ZelScene::isContextMenuEnabled() const
{
    return m_contextMenuEnabled;
}

bool ZelScene::freezeMouseActions() const
{
    return m_readOnly;
}

bool ZelScene::toMove() const
{
    return false;
}

bool ZelScene::toChangeLayout() const
{
    return false;
}

bool ZelScene::allowToChangeRelativePos() const
{
    return false;
}

bool ZelScene::toMoveGroup() const
{
    return false;
}

bool ZelScene::toMoveScene() const
{
    return !m_pressedItem;
}

bool ZelScene::isEnforcedNoMove() const
{
    return m_enforcedNoMove;
}

ZelEllipseItemMcp *ZelScene::getDragCenterZelEllipseMcp(ZelEllipseItem *item)
{
    ZelEllipseItemMcp *const centre = getCenterZelEllipseMcp(item);
    if (!centre || centre != item)
        return centre;
    const QList<ZelEllipseItemMcp *> neighbours = centre->getListNeighborZelEllipseItemMcp();
    return neighbours.size() == 1 ? neighbours.first() : nullptr;
}

QList<SdcMcp *> ZelScene::getListSdcMcpToMove(Sdc *sdc)
{
    return sdc ? sdc->getListSdcMcp() : QList<SdcMcp *>();
}

Sdc *ZelScene::getSdc() const
{
    return m_sdc;
}

ZelDbSqliteModel *ZelScene::getZelDbSqliteModel() const
{
    return m_zelDbSqliteModel;
}

void ZelScene::setZelDbSqliteModel(ZelDbSqliteModel *model)
{
    m_zelDbSqliteModel = model;
}

ZelGItem *ZelScene::getZelGItemFromScenePos(const QPointF &p) const
{
    return firstItemAt(this, p, [](QGraphicsItem *item) -> ZelGItem * {
        if (ZelEllipseItem *ellipse = ZelGItem::toZelEllipseItem(item))
            return ellipse;
        if (ZelLineItem *line = ZelGItem::toZelLineItem(item))
            return line;
        return ZelGItem::toZelRectItem(item);
    });
}

ZelEllipseItem *ZelScene::getZelEllipseItemFromScenePos(const QPointF &p) const
{
    return firstItemAt(this, p, &ZelGItem::toZelEllipseItem);
}

ZelLineItem *ZelScene::getZelLineItemFromScenePos(const QPointF &p) const
{
    return firstItemAt(this, p, &ZelGItem::toZelLineItem);
}

ZelRectItem *ZelScene::getZelRectItemFromScenePos(const QPointF &p) const
{
    return firstItemAt(this, p, &ZelGItem::toZelRectItem);
}

ZelRectItemMcpSticky *ZelScene::getZelRectItemMcpStickyFromScenePos(const QPointF &p) const
{
    return firstItemAt(this, p, &ZelGItem::toZelRectItemMcpSticky);
}

ZelEllipseItemMcp *ZelScene::getCenterZelEllipseMcp(ZelEllipseItem *item) const
{
    if (!item)
        return nullptr;
    if (ZelEllipseItemMcp *mcpItem = item->asEllipseItemMcp())
        return mcpItem;
    if (ZelEllipseItemMcp *mcpItem = ZelGItem::toZelEllipseItemMcp(item->parentItem()))
        return mcpItem;
    ZelEllipseItemBst *const bstItem = item->asEllipseItemBst();
    SdcBst *const bst = bstItem ? bstItem->getSdcBst() : nullptr;
    SdcMcp *const mcp = bst ? bst->getParentMcp() : nullptr;
    return mcp ? mcp->getZelEllipseItemMcp() : nullptr;
}

void ZelScene::setMoveScene(bool on)
{
    // Meanwhile the view may have got another scene, or the scene another view.
    if (m_scrolledView)
        m_scrolledView->setDragMode(QGraphicsView::NoDrag);
    m_scrolledView.clear();
    const QList<QGraphicsView *> list = views();
    if (list.size() != 1)
        return;
    list.first()->setDragMode(on ? QGraphicsView::ScrollHandDrag : QGraphicsView::NoDrag);
    if (on)
        m_scrolledView = list.first();
}

void ZelScene::beginChange()
{
    if (!m_movingByDrag)
        forgetSurroundings();
    if (m_changeDepth++ == 0)
        emit signal_changeBegin();
}

void ZelScene::endChange()
{
    if (m_changeDepth > 0 && --m_changeDepth == 0)
        emit signal_changeEnd();
}

void ZelScene::slot_setSceneMode(int mode)
{
    setZelSceneMode(mode);
}

void ZelScene::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    // Other buttons neither click nor drag: a right press belongs to the menu that follows it.
    if (!freezeMouseActions() && event->button() == Qt::LeftButton)
        recordPress(event->scenePos());
    QGraphicsScene::mousePressEvent(event);
}

void ZelScene::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (!freezeMouseActions() && m_dragging && event->buttons().testFlag(Qt::LeftButton)
        && !isEnforcedNoMove())
        dragTo(event);
    QGraphicsScene::mouseMoveEvent(event);
}

void ZelScene::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    if (freezeMouseActions()) {
        setMoveScene(false);
    } else if (event->button() == Qt::LeftButton) {
        if (m_dragging)
            itemReleased(m_pressedItem, event->scenePos());
        if (m_pressed)
            reportClick();
        const QPointer<ZelEllipseItem> first = m_collided1;
        const QPointer<ZelEllipseItem> second = m_collided2;
        m_dragging = false;
        setCollisionCandidates(nullptr, nullptr);
        if (first && second) {
            emit zelEllipseItemCollided(first, second);
            if (first && second)
                itemsCollided(first, second);
        }
        setMoveScene(false);
        resetPressState();
    }
    QGraphicsScene::mouseReleaseEvent(event);
}

void ZelScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    if (!freezeMouseActions() && event->button() == Qt::LeftButton) {
        if (ZelGItem *item = getZelGItemFromScenePos(event->scenePos()))
            emit zelGItemDoubleClicked(item);
    }
    QGraphicsScene::mouseDoubleClickEvent(event);
}

ZelGItem *ZelScene::getPressedItem() const
{
    return m_pressedItem;
}

ZelEllipseItem *ZelScene::getLastCollidingItem() const
{
    return m_lastColliding;
}

void ZelScene::resetPressState()
{
    const bool cancelled = std::exchange(m_dragging, false);
    if (cancelled)
        pressCancelled();
    m_pressed = false;
    m_moved = false;
    m_pressedItem.clear();
    m_pressedSticky.clear();
    m_pressedCenter.clear();
    m_sdcToMove.clear();
    m_pressPos = {};
    m_tempStartPos = {};
    forgetSurroundings();
    setCollisionCandidates(nullptr, nullptr);
    endDragChange();
}

ZelGItem *ZelScene::getZelGItemToPress(const QPointF &scenePos) const
{
    return getZelGItemFromScenePos(scenePos);
}

void ZelScene::recordPress(const QPointF &scenePos)
{
    resetPressState(); // the release of the press before may have gone to another window
    m_pressed = true;
    m_dragging = true;
    ZelGItem *const item = getZelGItemToPress(scenePos);
    m_pressedItem = item;
    m_pressedSticky = getZelRectItemMcpStickyFromScenePos(scenePos);
    if (ZelEllipseItem *ellipse = item ? item->asEllipseItem() : nullptr) {
        m_pressedCenter = getCenterZelEllipseMcp(ellipse);
        m_pressPos = scenePos - ellipse->sceneBoundingRect().topLeft();
    }
    if (item)
        emit zelGItemPressed(item);
    itemPressed(m_pressedItem);
    // An item that a receiver has destroyed leaves nothing to drag, but was no empty space.
    if (!item && toMoveScene())
        setMoveScene(true);
}

void ZelScene::reportClick()
{
    if (!m_pressedItem) {
        emit noGItemClicked();
        return;
    }
    const bool stickiesCount = m_allowToDisplayBindingStatus || m_furtherDisplayFlag != 0;
    if (stickiesCount && m_pressedSticky)
        emit zelGItemClicked(m_pressedSticky);
    else
        emit zelGItemClicked(m_pressedItem);
}

void ZelScene::dragTo(const QGraphicsSceneMouseEvent *event)
{
    m_pressed = false;
    if (!m_moved && (m_pressedItem || !items().isEmpty())) {
        m_moved = true;
        emit signal_changed();
    }
    if (m_pressedItem && itemDragged(m_pressedItem, event->scenePos()))
        return;
    m_movingByDrag = true;
    const bool mayRePlace = toChangeLayout() || (!toMove() && allowToChangeRelativePos());
    ZelEllipseItem *const item = m_pressedItem ? m_pressedItem->asEllipseItem() : nullptr;
    ZelEllipseItemMcp *const centre =
        mayRePlace && m_pressedCenter ? getDragCenterZelEllipseMcp(item) : nullptr;
    if (item && centre)
        dragAttached(item, centre, event->scenePos());
    else if (toMove())
        dragComponents(event->scenePos() - event->lastScenePos());
    m_movingByDrag = false;
}

void ZelScene::dragAttached(
    ZelEllipseItem *item, ZelEllipseItemMcp *centre, const QPointF &scenePos)
{
    m_tempStartPos = processTempMouseStartPosFromCenter(scenePos);
    const QPointer<ZelEllipseItem> guard = item;
    bool moved = false;
    if (toMoveGroup()) {
        QList<ZelEllipseItem *> group{item};
        const QList<QGraphicsItem *> children = centre->childItems();
        for (QGraphicsItem *child : children) {
            ZelEllipseItem *const site = ZelGItem::toZelEllipseItemBst(child);
            if (site && site != item && site->isHighlighted())
                group.append(site);
        }
        moved = moveGroupAroundItemByPos(group, centre, m_tempStartPos);
    } else {
        moved = moveAroundAttachedItemByPos(item, centre, m_tempStartPos);
    }
    if (moved) {
        m_movingByDrag = false; // what receivers change is no part of the drag
        if (guard)
            emit signal_ZelGItemMoved(item);
        emit signal_moved();
        return;
    }
    // A site dropped on a site of another molecule is a proposal to the host.
    ZelEllipseItem *const inTheWay = m_lastColliding;
    if (item->asEllipseItemBst() && inTheWay && inTheWay->asEllipseItemBst()
        && getCenterZelEllipseMcp(inTheWay) != centre && moleculeOf(inTheWay) != moleculeOf(item))
        setCollisionCandidates(item, inTheWay);
    m_pressedItem.clear();
    m_pressedCenter.clear();
}

void ZelScene::dragComponents(const QPointF &delta)
{
    Sdc *sdc = m_sdcToMove;
    if (!sdc && m_pressedCenter)
        sdc = m_pressedCenter->getSdc();
    const QList<SdcMcp *> list = getListSdcMcpToMove(sdc);
    if (list.isEmpty() || delta.isNull())
        return;
    QList<QPointer<SdcMcp>> moved(list.cbegin(), list.cend()); // receivers may destroy some
    moveListSdcMcps(list, delta);
    moved.removeAll(nullptr);
    updateCollisionCandidates(QList<SdcMcp *>(moved.cbegin(), moved.cend()));
}

QPointF ZelScene::processTempMouseStartPosFromCenter(const QPointF &scenePos) const
{
    ZelEllipseItem *const item = m_pressedItem->asEllipseItem();
    const QRectF rect = item->sceneBoundingRect();
    return scenePos - m_pressPos + (rect.center() - rect.topLeft());
}

void ZelScene::setCollisionCandidates(ZelEllipseItem *first, ZelEllipseItem *second)
{
    if (first == m_collided1 && second == m_collided2)
        return;
    if (m_collided1)
        m_collided1->setHighlight(m_collided1WasHighlighted);
    if (m_collided2)
        m_collided2->setHighlight(m_collided2WasHighlighted);
    m_collided1 = first;
    m_collided2 = second;
    m_collided1WasHighlighted = first && first->isHighlighted();
    m_collided2WasHighlighted = second && second->isHighlighted();
    if (first)
        first->setHighlight(true);
    if (second)
        second->setHighlight(true);
}

void ZelScene::beginDragChange()
{
    if (!std::exchange(m_dragChangeOpen, true))
        beginChange();
}

void ZelScene::endDragChange()
{
    if (std::exchange(m_dragChangeOpen, false))
        endChange();
}
