// The menus and the drops of an editing scene, and what choices in the menus do.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/scene/ZelSceneBondDrawing.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/graphics/scene/ZelSceneStateData.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QAction>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneDragDropEvent>
#include <QMenu>
#include <QMimeData>

namespace {

/// A record that is dragged over a scene; empty when the data is something else.
struct DraggedRecord
{
    explicit DraggedRecord(const QMimeData *data)
    {
        const QString type = ZelSceneEditing::getPsiimIdMimeType();
        if (!data || !data->hasFormat(type))
            return;
        const QString text = QString::fromUtf8(data->data(type));
        const qsizetype end = text.indexOf(u';');
        if (end <= 0)
            return;
        tag = text.left(end);
        psiimId = text.mid(end + 1);
    }

    QString tag;
    QString psiimId;
};

QList<QAction *> pointersOf(const std::vector<std::unique_ptr<QAction>> &actions)
{
    QList<QAction *> list;
    for (const auto &action : actions)
        list.append(action.get());
    return list;
}

void forgetSymmetry(Sdc *sdc)
{
    if (SdcCpx *cpx = sdc->getParentSdcCpx())
        cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
}

// Of features that exclude each other one at most is On.
void turnRivalsOff(ZelRectItemMcpSticky *sticky, const QList<QStringList> &exclusionGroups)
{
    SdcMcp *const mcp = sticky->getSdcMcp();
    const auto idOf = [](ZelRectItemMcpSticky *item) {
        SdcMcpTag *const tag = item ? item->getSdcMcpTag() : nullptr;
        return tag ? tag->getPsiimId() : QString();
    };
    const QString own = idOf(sticky);
    const QList<ZelRectItemMcpSticky *> stickies =
        mcp ? mcp->getListSticky() : QList<ZelRectItemMcpSticky *>();
    for (const QStringList &group : exclusionGroups) {
        if (own.isEmpty() || !group.contains(own))
            continue;
        for (ZelRectItemMcpSticky *other : stickies) {
            if (other && other != sticky && group.contains(idOf(other))
                && other->getStateType() == ComponentStateOn)
                other->setStateType(ComponentStateOff, false);
        }
    }
}

QList<QStringList> exclusionGroupsOf(SdcMcp *mcp)
{
    ZelDbSqliteModel *const db = mcp->getZelDbSqliteModel();
    return db && !mcp->getPsiimId().isEmpty() ? db->mcpGetExclusionGroups(mcp->getPsiimId())
                                              : QList<QStringList>();
}

} // namespace

QString ZelSceneEditing::getPsiimIdMimeType()
{
    return QStringLiteral("application/x-zel-psiimid");
}

QMimeData *ZelSceneEditing::createPsiimIdMimeData(const QString &tagAndPsiimId)
{
    auto *const data = new QMimeData;
    data->setData(getPsiimIdMimeType(), tagAndPsiimId.toUtf8());
    return data;
}

void ZelSceneEditing::dragEnterEvent(QGraphicsSceneDragDropEvent *event)
{
    const DraggedRecord record(event->mimeData());
    if (record.tag.isEmpty()) {
        event->ignore();
        return;
    }
    const QString reason = getRecordRefusal(record.tag, record.psiimId);
    showAtMouse(reason, event->scenePos());
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(reason.isEmpty());
}

void ZelSceneEditing::dragMoveEvent(QGraphicsSceneDragDropEvent *event)
{
    const DraggedRecord record(event->mimeData());
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(
        !record.tag.isEmpty() && getRecordRefusal(record.tag, record.psiimId).isEmpty());
}

void ZelSceneEditing::dropEvent(QGraphicsSceneDragDropEvent *event)
{
    resetPressState(); // the release of a press before went elsewhere
    const DraggedRecord record(event->mimeData());
    event->setDropAction(Qt::CopyAction); // the record stays where it was dragged from
    const auto units = [this] {
        QList<QPointer<Sdc>> list;
        for (SdcMol *mol : zel::state::moleculesOf(this)) {
            Sdc *const unit = getUnit(mol);
            if (!list.contains(unit))
                list.append(unit);
        }
        return list;
    };
    const QList<QPointer<Sdc>> before = units();
    const QPointer<ZelSceneEditing> self = this;
    event->setAccepted(
        !record.tag.isEmpty() && addRecordFromDb(record.tag, record.psiimId, event->scenePos()));
    if (!self || !event->isAccepted())
        return;
    QList<QPointer<Sdc>> added = units();
    added.removeIf([&before](Sdc *unit) { return before.contains(unit); });
    // Of several molecules none is what the user meant.
    setSelectedSdc(added.size() == 1 ? added.first() : nullptr);
}

void ZelSceneEditing::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    if (!isContextMenuEnabled() || freezeMouseActions())
        return;
    m_lastScenePos = event->scenePos();
    const QPointer<ZelSceneEditing> self = this;
    resetPressState(); // the release of a press before went elsewhere
    const QPointer<ZelEllipseItem> item = getZelEllipseItemFromScenePos(event->scenePos());
    setSelectedSdc(getSdcToSelect(item, event->scenePos()));
    if (!self)
        return;
    SdcBstBst *const bond = m_selected ? m_selected->toSdcBstBst() : nullptr;
    const Actions actions = bond ? createBondActions(bond) : createUnitActions(m_selected);
    if (item && isEditingStates()) {
        setFurtherMenuActions(pointersOf(actions));
        ZelScene::contextMenuEvent(event);
        if (self)
            setFurtherMenuActions({});
        return;
    }
    if (actions.empty())
        return;
    QMenu menu;
    if (SdcMol *mol = item && item->isEllipseItemMcp() && item->getSdc()
            ? item->getSdc()->getParentSdcMol()
            : nullptr) {
        getShowRelatedMliAction()->setData(mol->getPsiimId());
        menu.addAction(getShowRelatedMliAction());
        menu.addSeparator();
    }
    menu.addActions(pointersOf(actions));
    menu.exec(event->screenPos());
}

template <typename Act>
void ZelSceneEditing::addAction(Actions *actions, const QString &text, Act act)
{
    actions->push_back(std::make_unique<QAction>(text));
    connect(actions->back().get(), &QAction::triggered, this, act);
}

ZelSceneEditing::Actions ZelSceneEditing::createBondActions(SdcBstBst *bond)
{
    Actions actions;
    if (bond) {
        const QPointer<SdcBstBst> target = bond;
        addAction(&actions, tr("Delete Bond"), [this, target] { removeBond(target); });
    }
    return actions;
}

ZelSceneEditing::Actions ZelSceneEditing::createUnitActions(Sdc *unit)
{
    Actions actions;
    if (!unit)
        return actions;
    const QPointer<Sdc> target = unit;
    const auto addTurns = [this, &actions, target](const QString &what, bool connected) {
        addAction(&actions, tr("Rotate %1 Clockwise").arg(what),
            [this, target, connected] { rotateUnit(target, 90.0, connected); });
        addAction(&actions, tr("Rotate %1 Counterclockwise").arg(what),
            [this, target, connected] { rotateUnit(target, -90.0, connected); });
        addAction(&actions, tr("Flip %1").arg(what),
            [this, target, connected] { flipUnit(target, connected); });
    };
    addTurns(getUnitWord(), false);
    if (getListConnectedUnits(unit).size() > 1)
        addTurns(tr("Connected Group"), true);
    addAction(&actions, tr("Delete %1").arg(getUnitWord()), [this, target] { removeUnit(target); });
    return actions;
}

void ZelSceneEditing::applyStickyState(ZelRectItemMcpSticky *sticky, int state)
{
    if (!m_appliesMenus || !sticky || sticky->getStateType() == state)
        return;
    const Change change(this);
    sticky->setStateType(state, false);
    SdcMcp *const mcp = sticky->getSdcMcp();
    if (!mcp)
        return;
    if (state == ComponentStateOn)
        turnRivalsOff(sticky, exclusionGroupsOf(mcp));
    forgetSymmetry(mcp);
    mcp->updateStatePropertyFromSticky();
    emit signal_changed();
}

void ZelSceneEditing::applyNegation(SdcMcp *mcp, bool negated)
{
    if (!m_appliesMenus || !mcp || negated == (mcp->getProperty(SdcProperty::Negation) == u'1'))
        return;
    const Change change(this);
    const QPointer<SdcMcp> target = mcp;
    forgetSymmetry(mcp);
    mcp->setProperty(SdcProperty::Negation, negated ? QStringLiteral("1") : QString());
    if (target)
        target->updateMcpNot();
    emit signal_changed();
}

void ZelSceneEditing::applyBindingStatus(SdcBst *bst, BindingStatusType status)
{
    // The menu also reports its closing: a bonded site must not store that it is bound.
    if (!m_appliesMenus || !bst || bst->getBindingStatus() == status)
        return;
    const Change change(this);
    forgetSymmetry(bst);
    bst->setBindingStatus(status);
    emit signal_changed();
}

void ZelSceneEditing::settleStates(Sdc *sdc)
{
    const QList<SdcMcp *> components = sdc ? sdc->getListSdcMcp() : QList<SdcMcp *>();
    for (SdcMcp *mcp : components) {
        const QList<ZelRectItemMcpSticky *> stickies = mcp->getListSticky();
        for (ZelRectItemMcpSticky *sticky : stickies) {
            if (sticky)
                sticky->setStateType(sticky->getStateType(), false);
        }
        const QList<QStringList> groups = exclusionGroupsOf(mcp);
        if (groups.isEmpty())
            continue;
        for (ZelRectItemMcpSticky *sticky : stickies) {
            if (sticky && sticky->getStateType() == ComponentStateOn)
                turnRivalsOff(sticky, groups);
        }
        mcp->updateStatePropertyFromSticky();
    }
}
