#include "SceneUser.h"

#include "SceneParts.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QApplication>
#include <QGraphicsView>
#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr QPointF Reach(270.0, 180.0); // everything stays about the middle, so that it meets

} // namespace

void SceneUser::followScene()
{
    const auto rarely = [this] {
        if (!isBusy())
            mishap(2);
    };
    connect(
        scene(), &ZelScene::zelGItemPressed, this, [this](ZelGItem *item) { m_pressed = item; });
    connect(scene(), &ZelScene::zelGItemPressed, this, rarely);
    connect(scene(), &ZelScene::zelGItemClicked, this, [this] { ++m_clicks; });
    connect(scene(), &ZelScene::zelGItemClicked, this, rarely);
    connect(scene(), &ZelScene::signal_changed, this, rarely);
    connect(scene(), &ZelScene::signal_moved, this, rarely);
}

void SceneUser::drag()
{
    // From site to site now and then, since that may make a bond.
    SdcBst *const first = anySite();
    SdcBst *const second = anySite();
    const bool fromSiteToSite = first && second && m_dice.chance(35);
    const QPointF from = fromSiteToSite ? anyPointOf(first->getZelEllipseItemBst()) : anyPoint();
    QPointF aim = m_dice.chance(60) ? anyPoint() : from + anyPoint() * 0.15;
    if (fromSiteToSite)
        aim = anyPointOf(second->getZelEllipseItemBst());
    const QPointF to(
        std::clamp(aim.x(), -Reach.x(), Reach.x()), std::clamp(aim.y(), -Reach.y(), Reach.y()));
    m_modifiers = m_dice.anyOf(QList<Qt::KeyboardModifiers>{
        Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::AltModifier});
    mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
    log(QStringLiteral("drag %1 by %2, %3 with modifiers %4")
            .arg(nameOf(m_pressed ? m_pressed->getSdc() : nullptr))
            .arg(to.x() - from.x(), 0, 'f', 0)
            .arg(to.y() - from.y(), 0, 'f', 0)
            .arg(m_modifiers.toInt()));
    const int moves = 1 + m_dice.below(5);
    for (int i = 1; i <= moves; ++i) {
        mishap(3);
        mouse(QEvent::MouseMove, from + (to - from) * i / moves);
        if (m_dice.chance(3))
            pressKey();
        if (m_dice.chance(2))
            turnWheel();
    }
    if (!m_calm && m_dice.chance(3))
        contextMenu();
    mishap(3);
    if (m_dice.chance(92))
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton);
    else
        log("without a release");
    m_modifiers = Qt::NoModifier;
}

void SceneUser::click()
{
    const QPointF at = anyPoint();
    const Qt::MouseButton button = m_dice.anyOf(QList<Qt::MouseButton>{
        Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton});
    log(QStringLiteral("click with button %1").arg(button));
    mouse(QEvent::MouseButtonPress, at, button);
    mishap(5);
    mouse(QEvent::MouseButtonRelease, at, button);
    if (m_dice.chance(25)) {
        mouse(QEvent::MouseButtonDblClick, at, button);
        mouse(QEvent::MouseButtonRelease, at, button);
    }
    if (m_dice.chance(15))
        pressKey();
}

void SceneUser::contextMenu()
{
    const QPointF at = anyPoint();
    const QPointer<ZelGItem> item = // at the pixel that is hit
        scene()->getZelEllipseItemFromScenePos(view()->mapToScene(view()->mapFromScene(at)));
    const qsizetype bonds = SceneParts::bonds(scene()).size();
    const int mishapsBefore = mishapCount();
    mouse(QEvent::MouseButtonPress, at, Qt::RightButton);
    askForMenu(view(), at);
    // A site whose bond has been deleted by the menu stood for it.
    if (item && !m_calm && mishapCount() == mishapsBefore
        && SceneParts::bonds(scene()).size() == bonds)
        itemActedOn(item, "right click");
    mouse(QEvent::MouseButtonRelease, at, Qt::RightButton);
}

void SceneUser::hover()
{
    log(QStringLiteral("hover"));
    for (int i = 0; i < 3; ++i) {
        mouse(QEvent::MouseMove, anyPoint());
        mishap(8);
    }
}

void SceneUser::turnWheel()
{
    log(QStringLiteral("turn the wheel"));
    wheel(view(), anyPoint(), {0, m_dice.chance(50) ? 120 : -120});
}

void SceneUser::pressKey()
{
    const Qt::Key pressed = m_dice.anyOf(QList<Qt::Key>{
        Qt::Key_Escape, Qt::Key_Escape, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_A});
    log(QStringLiteral("press key %1").arg(pressed, 0, 16));
    QKeyEvent event(QEvent::KeyPress, pressed, m_modifiers);
    QApplication::sendEvent(view(), &event);
}

void SceneUser::frozenGesture(void (ZelScene::*freeze)(bool))
{
    log(QStringLiteral("while it is frozen:"));
    const bool isReadOnly = freeze == &ZelScene::setReadOnly;
    m_calm = true;
    (scene()->*freeze)(true);
    const ZelSceneState before = ZelSceneState::take(scene());
    m_clicks = 0;
    if (isReadOnly && m_dice.chance(30))
        contextMenu();
    else
        drag();
    if (ZelSceneState::take(scene()) != before || (isReadOnly && m_clicks > 0))
        fail(QStringLiteral("a frozen scene was changed or clicked"));
    (scene()->*freeze)(false);
    m_calm = false;
}

SdcMcp *SceneUser::anyComponent()
{
    return m_dice.anyOf(SceneParts::components(molecules()));
}

SdcBst *SceneUser::anySite()
{
    return m_dice.anyOf(SceneParts::sites(molecules()));
}

SdcBstBst *SceneUser::anyBond()
{
    return m_dice.anyOf(SceneParts::bonds(scene()));
}

ZelRectItemMcpSticky *SceneUser::anySticky()
{
    QList<ZelRectItemMcpSticky *> list;
    for (SdcMcp *mcp : SceneParts::components(molecules()))
        list += mcp->getListSticky();
    return m_dice.anyOf(list);
}

QPointF SceneUser::anyPoint()
{
    const int thrown = m_dice.below(100);
    QGraphicsItem *item = nullptr;
    if (thrown < 35) {
        if (SdcMcp *mcp = anyComponent())
            item = mcp->getZelEllipseItemMcp();
    } else if (thrown < 60) {
        if (SdcBst *bst = anySite())
            item = bst->getZelEllipseItemBst();
    } else if (thrown < 73) {
        item = anySticky();
    } else if (thrown < 80) {
        if (SdcBstBst *bond = anyBond())
            item = bond->getZelLineItemBstBst();
    }
    if (item)
        return anyPointOf(item);
    return {m_dice.between(-Reach.x(), Reach.x()), m_dice.between(-Reach.y(), Reach.y())};
}

Sdc *SceneUser::anyVictim()
{
    if (m_pressed && m_dice.chance(50)) {
        Sdc *const sdc = m_pressed->getSdc();
        if (sdc && !sdc->isSdcMol())
            return sdc;
    }
    switch (m_dice.below(5)) {
    case 0:
        return anyComponent();
    case 1:
        return anyBond();
    case 2: {
        ZelRectItemMcpSticky *const sticky = anySticky();
        return sticky ? sticky->getSdcMcpTag() : nullptr;
    }
    default:
        return anySite();
    }
}

QObject *SceneUser::itemOf(Sdc *sdc)
{
    if (SdcMcpTag *tag = sdc->toSdcMcpTag())
        return tag->getZelRectItemMcpSticky();
    if (SdcBstBst *bond = sdc->toSdcBstBst())
        return bond->getZelLineItemBstBst();
    return sdc->getZelEllipseItem();
}

QString SceneUser::nameOf(Sdc *sdc)
{
    return sdc ? sdc->text() : QStringLiteral("nothing");
}

void SceneUser::mouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button)
{
    if (type == QEvent::MouseButtonPress && button == Qt::LeftButton)
        m_pressed.clear();
    const int mishapsBefore = mishapCount();
    RandomSession::mouse(view(), type, scenePos, button);
    if (type == QEvent::MouseButtonPress && button == Qt::LeftButton && m_pressed && !m_calm
        && mishapCount() == mishapsBefore)
        itemActedOn(m_pressed, "press");
}
