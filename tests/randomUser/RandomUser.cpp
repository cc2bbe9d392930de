#include "RandomUser.h"

#include "PopupUser.h"
#include "SceneChecks.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>

#include <algorithm>

namespace {

constexpr qsizetype LogLength = 20;
constexpr qsizetype GreatestMolecule = 9;
constexpr qsizetype MostMolecules = 5;
constexpr qsizetype MostSites = 6;
constexpr qsizetype MostFeatures = 7;
constexpr int PaintedPercent = 6; // painting is dear
constexpr QPointF Reach(270.0, 180.0); // everything stays about the middle, so that it meets

/// Lines that belong to what the user does.
bool isExpected(const QString &line)
{
    return line.startsWith(QLatin1String("Warning at SdcMcp * ZelScene::addSdcMcp("))
        || line.contains(QLatin1String("found at void ZelScene::changeMolColor("))
        || line.startsWith(QLatin1String("name = "))
        || line.startsWith(QLatin1String("This plugin does not support "));
}

QList<ZelEllipseItem *> ellipsesOf(const QList<SdcMcp *> &mcps)
{
    QList<ZelEllipseItem *> list;
    for (SdcMcp *mcp : mcps) {
        list.append(mcp->getZelEllipseItemMcp());
        for (SdcBst *bst : mcp->getListSdcBst())
            list.append(bst->getZelEllipseItemBst());
    }
    list.removeAll(nullptr);
    return list;
}

QList<ZelEllipseItem *> ellipsesOf(ZelEllipseItem *item)
{
    ZelEllipseItemMcp *const mcpItem = item->asEllipseItemMcp();
    if (mcpItem && mcpItem->getSdcMcp())
        return ellipsesOf(QList<SdcMcp *>{mcpItem->getSdcMcp()});
    return {item};
}

QString nameOf(Sdc *sdc)
{
    return sdc ? sdc->text() : QStringLiteral("nothing");
}

} // namespace

RandomUser::RandomUser(SceneHost::Kind kind, quint32 seed)
    : m_seed(seed), m_dice(seed), m_host(std::make_unique<SceneHost>(kind)),
      m_popups(std::make_unique<PopupUser>(
          &m_dice, [this](const QString &action) { log(action); }, [this] { mishap(); }))
{
    ZelScene *const scene = m_host->scene();
    connect(scene, &ZelScene::zelGItemPressed, this, &RandomUser::itemPressed);
    connect(scene, &ZelScene::zelGItemClicked, this, &RandomUser::itemClicked);
    connect(scene, &ZelScene::zelGItemDoubleClicked, this, &RandomUser::itemClicked);
    connect(scene, &ZelScene::signal_ZelGItemMoved, this, &RandomUser::itemMoved);
    connect(scene, &ZelScene::zelEllipseItemCollided, this, &RandomUser::itemsCollided);
    const auto rarely = [this] {
        if (m_dice.chance(2) && !m_host->isRestoring())
            mishap();
    };
    connect(scene, &ZelScene::signal_changed, this, rarely);
    connect(scene, &ZelScene::signal_moved, this, rarely);
}

RandomUser::~RandomUser() = default;

bool RandomUser::play(int steps)
{
    for (int i = 0; i < steps && m_failure.isEmpty(); ++i) {
        ++m_step;
        const bool painted = m_dice.chance(PaintedPercent);
        m_host->view()->setUpdatesEnabled(painted);
        step();
        m_host->tidy();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        check();
    }
    return m_failure.isEmpty();
}

bool RandomUser::finish()
{
    m_popups->giveUp();
    m_host->close(m_dice.below(3));
    m_host.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QStringList left = m_objects.leftovers();
    if (!left.isEmpty())
        fail(QLatin1String("left over at the end: ") + left.join(QLatin1String(", ")));
    return m_failure.isEmpty();
}

void RandomUser::step()
{
    if (m_host->molecules().isEmpty() || m_host->components().isEmpty()) {
        build();
        return;
    }
    // Mishaps take more away than the rest of the host's acts would build.
    const qsizetype mcps = m_host->components().size();
    const bool sparse = mcps < 5 * m_host->molecules().size() || m_host->sites().size() < 2 * mcps;
    if (sparse && m_dice.chance(30))
        build();
    else if (m_dice.chance(60))
        gesture();
    else
        hostAction();
}

void RandomUser::gesture()
{
    if (m_host->kind() != SceneHost::OneMolecule)
        m_host->setDragMode(static_cast<SceneHost::DragMode>(m_dice.below(5)));
    const int thrown = m_dice.below(100);
    if (thrown < 45)
        drag();
    else if (thrown < 60)
        click();
    else if (thrown < 65)
        doubleClick();
    else if (thrown < 88)
        contextMenu();
    else if (thrown < 93)
        hover();
    else
        frozenGesture();
}

void RandomUser::hostAction()
{
    const int thrown = m_dice.below(100);
    if (thrown < 30)
        build();
    else if (thrown < 50)
        turn();
    else if (thrown < 58)
        place();
    else if (thrown < 68)
        reshape();
    else if (thrown < 76)
        store();
    else if (thrown < 82)
        look();
    else if (thrown < 90)
        mishap();
    else if (thrown < 93)
        m_host->bookmark();
    else if (thrown < 95) {
        log(QStringLiteral("go back to a bookmark"));
        m_host->restoreBookmark(m_dice.below(8));
    } else {
        log(QStringLiteral("undo and redo"));
        for (int i = m_dice.below(4); i >= 0; --i)
            m_host->undo();
        for (int i = m_dice.below(4); i > 0; --i)
            m_host->redo();
    }
}

void RandomUser::build()
{
    const QList<SdcMol *> molecules = m_host->molecules();
    const qsizetype most = m_host->kind() == SceneHost::OneMolecule ? 1 : MostMolecules;
    if (molecules.isEmpty() || (molecules.size() < most && m_dice.chance(15))) {
        log(QStringLiteral("add a molecule"));
        m_host->addMolecule();
    }
    SdcMol *const mol = m_dice.anyOf(m_host->molecules());
    SdcMcp *const mcp = m_dice.anyOf(mol->getListSdcMcp());
    const int thrown = m_dice.below(5);
    if (!mcp || (thrown == 0 && mol->getListSdcMcp().size() < GreatestMolecule)) {
        const double width = m_dice.between(6.0, 70.0);
        const double height = m_dice.chance(50) ? width : m_dice.between(6.0, 70.0);
        QGraphicsEllipseItem ref(QRectF(-width / 2.0, -height / 2.0, width, height));
        ref.setPos(anyPoint());
        SdcMcp *const attachTo = m_dice.chance(85) ? mcp : nullptr;
        log(QLatin1String("add a component to ") + nameOf(attachTo));
        m_host->addComponent(mol, &ref, attachTo);
    } else if (thrown <= 2 && mcp->getListSdcBst().size() < MostSites) {
        log(QLatin1String("add a site to ") + nameOf(mcp));
        if (SdcBst *bst = m_host->scene()->addSdcBst(mcp)) {
            m_host->setFault(SceneChecks::apart(m_host->scene(), {bst->getZelEllipseItemBst()}));
        }
    } else if (thrown == 3 && mcp->getListSticky().size() < MostFeatures) {
        log(QLatin1String("add a feature to ") + nameOf(mcp));
        m_host->addFeature(mcp, QColor::fromHsv(m_dice.below(360), 200, 200).name());
    } else {
        log(QStringLiteral("add a bond"));
        SdcBst *const first = m_dice.anyOf(m_host->sites());
        m_host->addBond(first, m_dice.anyOf(m_host->sites()));
    }
}

void RandomUser::turn()
{
    ZelScene *const scene = m_host->scene();
    const QList<SdcMcp *> mcps = anySelection();
    const bool careful = m_dice.chance(80);
    bool turned = false;
    if (m_dice.chance(30)) {
        log(QStringLiteral("flip %1 components").arg(mcps.size()));
        turned = zgs::flipY(mcps, careful);
    } else {
        const double angle =
            m_dice.anyOf(QList<double>{90.0, -90.0, 180.0, 45.0, m_dice.between(-360.0, 360.0)});
        log(QStringLiteral("turn %1 components by %2").arg(mcps.size()).arg(angle));
        turned = zgs::rotate(mcps, angle, careful);
    }
    // A refusal shows a message, during which anything may have gone.
    if (turned && careful)
        m_host->setFault(SceneChecks::apart(scene, ellipsesOf(mcps)));
}

void RandomUser::place()
{
    ZelScene *const scene = m_host->scene();
    SdcBst *const bst = m_dice.anyOf(m_host->sites());
    SdcMcp *const mcp = m_dice.anyOf(m_host->components());
    ZelEllipseItem *item = mcp->getZelEllipseItemMcp();
    ZelEllipseItemMcp *centre = m_dice.anyOf(mcp->getListNeighborSdcMcps())
        ? m_dice.anyOf(mcp->getListNeighborSdcMcps())->getZelEllipseItemMcp()
        : nullptr;
    if (bst && m_dice.chance(60)) {
        item = bst->getZelEllipseItemBst();
        centre = bst->getParentMcp()->getZelEllipseItemMcp();
    }
    log(QLatin1String("place anew ") + nameOf(item->getSdc()));
    bool placed = false;
    switch (m_dice.below(3)) {
    case 0:
        placed = scene->moveAroundAttachedItemByDegree(item, centre, m_dice.between(-180.0, 180.0));
        break;
    case 1:
        placed = scene->moveAroundAttachedItemByPos(item, centre, anyPoint());
        break;
    default:
        placed = scene->automaticFindAndMoveToPos(item, centre, m_dice.between(0.0, 360.0), 5.0);
        break;
    }
    if (placed && item->scene() == scene)
        m_host->setFault(SceneChecks::apart(scene, ellipsesOf(item)));
}

void RandomUser::reshape()
{
    ZelScene *const scene = m_host->scene();
    switch (m_dice.below(4)) {
    case 0: {
        SdcMcp *const mcp = m_dice.anyOf(m_host->components());
        log(QLatin1String("rename ") + nameOf(mcp));
        m_host->rename(mcp, QStringLiteral("n%1").arg(m_dice.below(1000)));
        break;
    }
    case 1:
        if (SdcMol *mol = m_dice.anyOf(m_host->molecules())) {
            log(QLatin1String("set all features of ") + nameOf(mol));
            const ZelScene::Change change(scene);
            mol->setAllMcpFeatureValue(
                m_dice.anyOf(QList<ComponentStateType>{ComponentStateOff, ComponentStateOn}));
        }
        break;
    case 2:
        if (SdcBst *bst = m_dice.anyOf(m_host->sites())) {
            log(QLatin1String("set the status of ") + nameOf(bst));
            const ZelScene::Change change(scene);
            bst->setBindingStatus(m_dice.anyOf(QList<BindingStatusType>{
                BindingStatusUnspecified, BindingStatusBound, BindingStatusUnbound}));
        }
        break;
    default:
        log(QStringLiteral("change the colour of a molecule"));
        scene->changeMolColor(anyPoint());
        break;
    }
}

void RandomUser::store()
{
    const QStringList stored = m_host->db()->molGetListPsiimId();
    const bool full =
        m_host->kind() != SceneHost::OneMolecule && m_host->molecules().size() >= MostMolecules;
    if (m_dice.chance(50) || stored.isEmpty() || full) {
        SdcMol *const mol = m_dice.anyOf(m_host->molecules());
        log(QLatin1String("save ") + nameOf(mol));
        m_host->save(mol);
    } else {
        const QString psiimId = m_dice.anyOf(stored);
        log(QLatin1String("load ") + psiimId);
        m_host->load(psiimId, anyPoint() * 0.3);
    }
}

void RandomUser::look()
{
    QGraphicsView *const view = m_host->view();
    SdcMol *const mol = m_dice.anyOf(m_host->molecules());
    switch (m_dice.below(5)) {
    case 0:
        log(QStringLiteral("zoom"));
        view->resetTransform();
        view->scale(m_dice.between(0.5, 3.0), m_dice.between(0.5, 3.0));
        view->centerOn(anyPoint());
        break;
    case 1:
        log(QStringLiteral("open or close a second view"));
        m_host->toggleSecondView();
        break;
    case 2:
        log(QStringLiteral("show or hide an index code"));
        mol->showIndexCode(m_dice.chance(50), QString::number(m_dice.below(12)), 7);
        break;
    case 3:
        log(QStringLiteral("limit the edits"));
        m_host->scene()->setLimitedEdit(m_dice.chance(50));
        if (auto *scene = qobject_cast<ZelSceneMol *>(m_host->scene())) {
            SdcBst *const bst = m_dice.anyOf(m_host->sites());
            scene->setZelEllipseItemBstLimited(bst ? bst->getZelEllipseItemBst() : nullptr);
        }
        break;
    default:
        log(QStringLiteral("highlight"));
        if (Sdc *sdc = m_dice.chance(50) ? anyVictim() : mol)
            sdc->setHighlight(m_dice.chance(60), m_dice.chance(50));
        break;
    }
}

void RandomUser::drag()
{
    const QPointF from = anyPoint();
    const QPointF aim = m_dice.chance(50) ? anyPoint() : from + anyPoint() * 0.15;
    const QPointF to(
        std::clamp(aim.x(), -Reach.x(), Reach.x()), std::clamp(aim.y(), -Reach.y(), Reach.y()));
    mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
    log(QStringLiteral("drag %1 by %2, %3")
            .arg(m_pressed ? nameOf(m_pressed->getSdc()) : QStringLiteral("empty space"))
            .arg(to.x() - from.x(), 0, 'f', 0)
            .arg(to.y() - from.y(), 0, 'f', 0));
    const int moves = 1 + m_dice.below(5);
    for (int i = 1; i <= moves; ++i) {
        if (m_dice.chance(3))
            mishap();
        mouse(QEvent::MouseMove, from + (to - from) * i / moves, Qt::NoButton);
    }
    if (!m_calm && m_dice.chance(3))
        contextMenu();
    if (m_dice.chance(3))
        mishap();
    if (m_dice.chance(92))
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton);
    else
        log(QStringLiteral("without a release"));
}

void RandomUser::click()
{
    const QPointF at = anyPoint();
    const Qt::MouseButton button = m_dice.anyOf(QList<Qt::MouseButton>{
        Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton});
    log(QStringLiteral("click with button %1").arg(button));
    mouse(QEvent::MouseButtonPress, at, button);
    if (m_dice.chance(5))
        mishap();
    mouse(QEvent::MouseButtonRelease, at, button);
}

void RandomUser::doubleClick()
{
    const QPointF at = anyPoint();
    log(QStringLiteral("double-click"));
    mouse(QEvent::MouseButtonPress, at, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton);
    if (m_dice.chance(5))
        mishap();
    mouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton);
}

void RandomUser::contextMenu()
{
    const QPointF at = anyPoint();
    log(QStringLiteral("ask for a menu"));
    mouse(QEvent::MouseButtonPress, at, Qt::RightButton);
    QWidget *const viewport = m_host->view()->viewport();
    const QPoint pos = m_host->view()->mapFromScene(at);
    QContextMenuEvent event(
        QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos), Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
    mouse(QEvent::MouseButtonRelease, at, Qt::RightButton);
}

void RandomUser::hover()
{
    log(QStringLiteral("hover"));
    for (int i = 0; i < 3; ++i) {
        mouse(QEvent::MouseMove, anyPoint(), Qt::NoButton);
        if (m_dice.chance(8))
            mishap();
    }
}

void RandomUser::frozenGesture()
{
    ZelScene *const scene = m_host->scene();
    const bool readOnly = m_dice.chance(50);
    log(readOnly ? QStringLiteral("while it is read-only:")
                 : QStringLiteral("while nothing may move:"));
    m_calm = true;
    if (readOnly)
        scene->setReadOnly(true);
    else
        scene->setEnforcedNoMove(true);
    const ZelSceneState before = ZelSceneState::take(scene);
    m_clicks = 0;
    if (readOnly && m_dice.chance(30))
        contextMenu();
    else
        drag();
    if (ZelSceneState::take(scene) != before || (readOnly && m_clicks > 0))
        m_host->setFault(QStringLiteral("a frozen scene was changed or clicked"));
    if (readOnly)
        scene->setReadOnly(false);
    else
        scene->setEnforcedNoMove(false);
    m_calm = false;
}

void RandomUser::mishap()
{
    if (m_calm || m_inMishap)
        return;
    m_inMishap = true;
    const int thrown = m_dice.below(100);
    if (thrown < 38) {
        remove(anyVictim());
    } else if (thrown < 74) {
        destroySomething();
    } else if (thrown < 90) {
        log(QStringLiteral("undo by the way"));
        m_host->undo();
    } else if (thrown < 96) {
        log(QStringLiteral("go back to a bookmark by the way"));
        m_host->restoreBookmark(m_dice.below(8));
    } else if (thrown < 97) {
        log(QStringLiteral("remove all items"));
        m_host->scene()->removeAllItems();
    } else if (thrown < 98) {
        const QStringList stored = m_host->db()->molGetListPsiimId();
        if (!stored.isEmpty() && m_host->molecules().size() < MostMolecules) {
            log(QStringLiteral("load by the way"));
            m_host->load(m_dice.anyOf(stored), anyPoint() * 0.3);
        }
    } else if (SdcMol *mol = m_dice.anyOf(m_host->molecules())) {
        log(QLatin1String("remove ") + nameOf(mol));
        m_host->removeMolecule(mol);
    }
    m_inMishap = false;
}

void RandomUser::remove(Sdc *sdc)
{
    if (!sdc)
        return;
    log(QLatin1String("remove ") + nameOf(sdc));
    ZelScene *const scene = m_host->scene();
    if (SdcMcp *mcp = sdc->toSdcMcp()) {
        scene->removeSdcMcp(mcp);
    } else if (SdcBst *bst = sdc->toSdcBst()) {
        scene->removeSdcBst(bst);
    } else if (SdcBstBst *bond = sdc->toSdcBstBst()) {
        scene->removeSdcBstBst(bond);
    } else if (SdcMcpTag *tag = sdc->toSdcMcpTag()) {
        SdcMcp *const owner = tag->getParentSdcMcp();
        ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
        if (!owner || !owner->getZelEllipseItemMcp() || !sticky)
            return;
        const ZelScene::Change change(scene);
        owner->getZelEllipseItemMcp()->removeStateSticky(sticky);
        owner->updateStatePropertyFromSticky();
    }
}

// Either the component or what draws it; the other one stays behind.
void RandomUser::destroySomething()
{
    Sdc *const sdc = m_dice.chance(2) ? m_dice.anyOf(m_host->molecules()) : anyVictim();
    if (!sdc)
        return;
    QObject *item = nullptr;
    if (SdcMcpTag *tag = sdc->toSdcMcpTag())
        item = tag->getZelRectItemMcpSticky();
    else if (SdcBstBst *bond = sdc->toSdcBstBst())
        item = bond->getZelLineItemBstBst();
    else
        item = sdc->getZelEllipseItem();
    const bool itemFirst = item && m_dice.chance(50);
    log((itemFirst ? QLatin1String("destroy the item of ") : QLatin1String("destroy "))
        + nameOf(sdc));
    m_host->destroy(itemFirst ? item : sdc);
}

void RandomUser::itemPressed(ZelGItem *item)
{
    m_pressed = item;
    if (m_dice.chance(2))
        mishap();
}

void RandomUser::itemClicked(ZelGItem *item)
{
    ++m_clicks;
    if (m_calm)
        return;
    const QPointer<ZelGItem> clicked = item;
    if (m_dice.chance(3))
        mishap();
    if (!clicked)
        return;
    if (ZelRectItemMcpSticky *sticky = clicked->asRectItemMcpSticky())
        m_host->cycleState(sticky);
    else if (ZelEllipseItem *ellipse = clicked->asEllipseItem())
        ellipse->setHighlight(!ellipse->isHighlighted());
    else if (ZelLineItemBstBst *line = clicked->asLineItemBstBst())
        line->setHighlight(!line->isHighlighted(), m_dice.chance(50));
}

void RandomUser::itemMoved(ZelGItem *item)
{
    if (m_calm)
        m_host->setFault(QStringLiteral("something was moved in a frozen scene"));
    if (ZelEllipseItem *ellipse = item->asEllipseItem())
        m_host->setFault(SceneChecks::apart(m_host->scene(), ellipsesOf(ellipse)));
    if (m_dice.chance(2))
        mishap();
}

void RandomUser::itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second)
{
    if (m_calm)
        return;
    SdcBst *const firstSite =
        first->asEllipseItemBst() ? first->asEllipseItemBst()->getSdcBst() : nullptr;
    SdcBst *const secondSite =
        second->asEllipseItemBst() ? second->asEllipseItemBst()->getSdcBst() : nullptr;
    log(QStringLiteral("bond %1 and %2").arg(nameOf(firstSite), nameOf(secondSite)));
    if (m_dice.chance(10))
        remove(m_dice.chance(50) ? firstSite : secondSite);
    else
        m_host->addBond(firstSite, secondSite);
}

void RandomUser::mouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button)
{
    QWidget *const viewport = m_host->view()->viewport();
    const QPoint pos = m_host->view()->mapFromScene(scenePos);
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick) {
        m_buttons |= button;
        if (button == Qt::LeftButton)
            m_pressed.clear();
    } else if (type == QEvent::MouseButtonRelease) {
        m_buttons &= ~Qt::MouseButtons(button);
    }
    QMouseEvent event(
        type, pos, viewport->mapToGlobal(QPointF(pos)), button, m_buttons, Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

QPointF RandomUser::anyPoint()
{
    const int thrown = m_dice.below(100);
    if (thrown < 35) {
        if (SdcMcp *mcp = m_dice.anyOf(m_host->components()))
            return anyPointOf(mcp->getZelEllipseItemMcp());
    } else if (thrown < 60) {
        if (SdcBst *bst = m_dice.anyOf(m_host->sites()))
            return anyPointOf(bst->getZelEllipseItemBst());
    } else if (thrown < 75) {
        return anyPointOf(m_dice.anyOf(m_host->stickies()));
    } else if (thrown < 80) {
        if (SdcBstBst *bond = m_dice.anyOf(m_host->bonds()))
            return anyPointOf(bond->getZelLineItemBstBst());
    }
    return {m_dice.between(-Reach.x(), Reach.x()), m_dice.between(-Reach.y(), Reach.y())};
}

QPointF RandomUser::anyPointOf(QGraphicsItem *item)
{
    const QPointF share(m_dice.between(0.2, 0.8), m_dice.between(0.2, 0.8));
    if (!item)
        return {};
    const QRectF rect = item->sceneBoundingRect();
    return rect.topLeft() + QPointF(rect.width() * share.x(), rect.height() * share.y());
}

QList<SdcMcp *> RandomUser::anySelection()
{
    if (m_dice.chance(40))
        return m_dice.anyOf(m_host->molecules())->getListSdcMcp();
    QList<SdcMcp *> list;
    for (SdcMcp *mcp : m_host->components()) {
        if (m_dice.chance(30))
            list.append(mcp);
    }
    return list;
}

// What is being pressed is the most interesting.
Sdc *RandomUser::anyVictim()
{
    if (m_pressed && m_dice.chance(50)) {
        Sdc *const sdc = m_pressed->getSdc();
        if (sdc && !sdc->isSdcMol())
            return sdc;
    }
    switch (m_dice.below(5)) {
    case 0:
        return m_dice.anyOf(m_host->components());
    case 1:
        return m_dice.anyOf(m_host->bonds());
    case 2: {
        ZelRectItemMcpSticky *const sticky = m_dice.anyOf(m_host->stickies());
        return sticky ? sticky->getSdcMcpTag() : nullptr;
    }
    default:
        return m_dice.anyOf(m_host->sites());
    }
}

void RandomUser::log(const QString &action)
{
    m_log.append(QStringLiteral("%1: %2").arg(m_step).arg(action));
    if (m_log.size() > LogLength)
        m_log.removeFirst();
}

bool RandomUser::check()
{
    const QStringList lines = ZelTest::takeDebugLines();
    for (const QString &line : lines) {
        if (!isExpected(line))
            m_host->setFault(QLatin1String("unexpected line: ") + line);
    }
    m_host->checkAnnounced();
    m_host->setFault(SceneChecks::consistent(m_host->scene(), m_host->molecules(), m_objects));
    if (!m_host->fault().isEmpty())
        fail(m_host->fault());
    return m_failure.isEmpty();
}

void RandomUser::fail(const QString &what)
{
    m_failure = QStringLiteral("seed %1, step %2: %3\nthe last actions:\n%4")
                    .arg(m_seed)
                    .arg(m_step)
                    .arg(what, m_log.join(u'\n'));
}
