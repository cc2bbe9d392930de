// The context menus of a scene and the choice of a molecule's colour. Menus and dialogs run event
// loops of their own, in which anything may be destroyed.

#include "zelDb/ZelDb.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QAction>
#include <QActionGroup>
#include <QColorDialog>
#include <QDebug>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsView>
#include <QMenu>

#include <memory>

namespace {

QAction *addHeading(QMenu *menu, const QString &text)
{
    QAction *const heading = menu->addAction(text);
    heading->setEnabled(false);
    menu->addSeparator();
    return heading;
}

QAction *addChoice(QMenu *menu, QActionGroup *group, const QString &text, int value, bool checked)
{
    QAction *const action = menu->addAction(text);
    action->setCheckable(true);
    action->setData(value);
    group->addAction(action);
    action->setChecked(checked);
    return action;
}

} // namespace

void ZelScene::changeMolColor(const QPointF &p)
{
    ZelEllipseItem *const item = getZelEllipseItemFromScenePos(p);
    ZelEllipseItemMcp *const mcpItem = getCenterZelEllipseMcp(item);
    if (!mcpItem) {
        qDebug() << "Error found at void ZelScene::changeMolColor(const QPointF & p)";
        return;
    }
    const QPointer<SdcMol> mol = moleculeOf(mcpItem);
    if (!mol) {
        qDebug() << "Mol not found at void ZelScene::changeMolColor(const QPointF & p)";
        return;
    }
    std::unique_ptr<QWidget> freshParent;
    QWidget *parentWidget = nullptr;
    if (const QList<QGraphicsView *> list = views(); !list.isEmpty()) {
        parentWidget = list.first();
    } else {
        freshParent = std::make_unique<QWidget>();
        parentWidget = freshParent.get();
    }
    const QPointer<ZelScene> self = this;
    // Not on the stack: the view may die meanwhile and take the dialog along.
    const QPointer<QColorDialog> dialog = new QColorDialog(mol->getMolColor(), parentWidget);
    dialog->setWindowTitle(QStringLiteral("Select Color"));
    const int answer = dialog->exec();
    const QColor color = dialog && answer == QDialog::Accepted ? dialog->selectedColor() : QColor();
    delete dialog.data();
    if (!self || !mol || !color.isValid())
        return;
    const Change change(this);
    mol->setMolColor(color.name());
}

void ZelScene::slotChangeMolColor()
{
    if (const auto *action = qobject_cast<QAction *>(sender()))
        changeMolColor(action->data().toPointF());
}

void ZelScene::slot_showRelatedMli()
{
    const QString molPsiimId = m_showRelatedMliAction->data().toString();
    if (!molPsiimId.isEmpty())
        emit signal_showRelatedMli(molPsiimId);
}

void ZelScene::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    if (!isContextMenuEnabled() || freezeMouseActions())
        return;
    const QPointF p = event->scenePos();
    if (ZelRectItemMcpSticky *sticky = getZelRectItemMcpStickyFromScenePos(p)) {
        execStickyMenu(sticky, event->screenPos());
        return;
    }
    ZelEllipseItem *const item = getZelEllipseItemFromScenePos(p);
    if (!item)
        return;
    if (ZelEllipseItemMcp *mcpItem = item->asEllipseItemMcp())
        execMcpMenu(mcpItem, event->screenPos());
    else if (ZelEllipseItemBst *bstItem = item->asEllipseItemBst())
        execBstMenu(bstItem, event->screenPos());
}

void ZelScene::execStickyMenu(ZelRectItemMcpSticky *sticky, const QPoint &screenPos)
{
    const QPointer<ZelScene> self = this;
    const QPointer<ZelRectItemMcpSticky> target = sticky;
    QMenu menu;
    addHeading(&menu, QStringLiteral("Feature \"%1\" State").arg(sticky->getName()));
    QActionGroup group(&menu);
    const int present = sticky->getStateType();
    addChoice(&menu, &group, QStringLiteral("On"), ComponentStateOn, present == ComponentStateOn);
    addChoice(
        &menu, &group, QStringLiteral("Off"), ComponentStateOff, present == ComponentStateOff);
    addChoice(&menu, &group, QStringLiteral("Don't Care"), ComponentStateDontCare,
        present == ComponentStateDontCare);
    const QAction *const chosen = menu.exec(screenPos);
    if (!chosen || !self || !target)
        return;
    const int state = chosen->data().toInt();
    const Change change(state != target->getStateType() ? this : nullptr);
    emit signal_setStickyState(target, state);
}

void ZelScene::execMcpMenu(ZelEllipseItemMcp *item, const QPoint &screenPos)
{
    const QPointer<SdcMcp> mcp = item->getSdcMcp();
    if (!mcp)
        return;
    const QPointer<ZelScene> self = this;
    SdcMol *const mol = mcp->getParentSdcMol();
    m_showRelatedMliAction->setData(mol ? mol->getPsiimId() : QString());
    QMenu menu;
    menu.addAction(m_showRelatedMliAction);
    menu.addSeparator();
    QAction *const negation =
        menu.addAction(QStringLiteral("Molecule Component: Not -- Negation of Tag States"));
    negation->setCheckable(true);
    negation->setChecked(mcp->getProperty(SdcProperty::Negation) == u'1');
    addFurtherActions(&menu);
    menu.exec(screenPos);
    if (!self || !mcp)
        return;
    const bool present = mcp->getProperty(SdcProperty::Negation) == u'1';
    const Change change(negation->isChecked() != present ? this : nullptr);
    emit signal_setNegation(mcp, negation->isChecked());
}

void ZelScene::execBstMenu(ZelEllipseItemBst *item, const QPoint &screenPos)
{
    const QPointer<SdcBst> bst = item->getSdcBst();
    if (!bst || !m_allowToDisplayBindingStatus)
        return;
    const QPointer<ZelScene> self = this;
    QMenu menu;
    addHeading(&menu,
        QStringLiteral("Binding Site \"%1\" Binding Status:")
            .arg(bst->getProperty(SdcProperty::ShortName)));
    QActionGroup group(&menu);
    const int present = bst->getBindingStatus();
    const bool enabled = m_allowToChangeBindingStatus && bst->isAllowChangeBindingStatus();
    const QList<int> statuses = ZelDb::getListBindingStatusType();
    for (const int status : statuses)
        addChoice(&menu, &group, SdcBst::bindingStatusName(status), status, status == present)
            ->setEnabled(enabled);
    group.setEnabled(enabled);
    addFurtherActions(&menu);
    menu.exec(screenPos);
    const QAction *const checked = group.checkedAction();
    if (!self || !bst || !checked)
        return;
    auto status = static_cast<BindingStatusType>(checked->data().toInt());
    if (status == present) // what was left as it is may have changed by deleting the site's bond
        status = bst->getBindingStatus();
    const Change change(status != bst->getBindingStatus() ? this : nullptr);
    emit signal_setBstBindingStatus(bst, status);
}

void ZelScene::setFurtherMenuActions(const QList<QAction *> &actions)
{
    m_furtherMenuActions = QList<QPointer<QAction>>(actions.cbegin(), actions.cend());
}

void ZelScene::addFurtherActions(QMenu *menu) const
{
    if (m_furtherMenuActions.isEmpty())
        return;
    menu->addSeparator();
    for (const QPointer<QAction> &action : m_furtherMenuActions) {
        if (action)
            menu->addAction(action);
    }
}
