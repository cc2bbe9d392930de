#include "EditingUser.h"

#include "PopupUser.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr qsizetype LogLength = 20;
constexpr qsizetype MostStates = 12;
constexpr qsizetype MostMolecules = 7;
constexpr int PaintedPercent = 6; // painting is dear
constexpr QPointF Reach(270.0, 180.0); // everything stays about the middle, so that it meets

bool isExpected(const QString &line)
{
    return line.startsWith(QLatin1String("name = "))
        // A species is the same without a part that was removed before it was saved, but that
        // part then has no place in the layout.
        || line.startsWith(QLatin1String("Error found at void SdcMol::loadDom("))
        || line.startsWith(QLatin1String("This plugin does not support "))
        || line.startsWith(QLatin1String("Warning at bool SdcCpx::saveToDb()"))
        || line.contains(QLatin1String("978 Error found"));
}

std::unique_ptr<ZelSceneEditing> createScene(EditingUser::Kind kind)
{
    switch (kind) {
    case EditingUser::Complex:
        return std::make_unique<ZelSceneCpx>();
    case EditingUser::TemporaryComplex:
        return std::make_unique<ZelSceneCpxTemp>();
    case EditingUser::MoleculeInteraction:
        return std::make_unique<ZelSceneMli>();
    default:
        return std::make_unique<ZelSceneCxi>();
    }
}

/// A bond line that changes when it is laid anew had not followed its sites.
bool isStale(ZelLineItemBstBst *line)
{
    const QLineF before = line->line();
    line->updateLine();
    return QLineF(before.p1(), line->line().p1()).length() > 0.01
        || QLineF(before.p2(), line->line().p2()).length() > 0.01;
}

} // namespace

EditingUser::EditingUser(Kind kind, quint32 seed)
    : m_kind(kind), m_seed(seed), m_dice(seed), m_scene(createScene(kind)),
      m_popups(std::make_unique<PopupUser>(
          &m_dice, [this](const QString &action) { log(action); }, [this] { mishap(); }))
{
    if (!m_model.fault().isEmpty())
        fail(m_model.fault());
    m_records =
        m_model.records({QStringLiteral("mol"), QStringLiteral("cpx"), QStringLiteral("cpa")});
    m_records.append({QStringLiteral("mol;mol99"), QStringLiteral("cpa;"), QStringLiteral("x;y")});
    m_scene->setZelDbSqliteModel(m_model.db());
    m_view = std::make_unique<ZelGraphicsViewZoom>();
    m_view->setScene(m_scene.get());
    m_view->resize(620, 420);
    m_view->setSceneRect(-300.0, -200.0, 600.0, 400.0);
    m_view->show();
    connect(m_scene.get(), &ZelScene::signal_changeBegin, this, &EditingUser::changeBegins);
    connect(m_scene.get(), &ZelScene::signal_changeEnd, this, &EditingUser::changeEnds);
    const auto rarely = [this] {
        if (m_dice.chance(2) && !m_restoring && !m_changing)
            mishap();
    };
    connect(m_scene.get(), &ZelScene::signal_changed, this, rarely);
    connect(m_scene.get(), &ZelScene::zelGItemPressed, this, rarely);
    connect(m_scene.get(), &ZelScene::zelGItemClicked, this, rarely);
    connect(m_scene.get(), &ZelSceneEditing::signal_bondRefused, this, rarely);
    connect(m_scene.get(), &ZelSceneEditing::signal_recordRefused, this, rarely);
    m_known = ZelSceneState::take(m_scene.get());
}

EditingUser::~EditingUser() = default;

bool EditingUser::play(int steps)
{
    for (int i = 0; i < steps && m_failure.isEmpty(); ++i) {
        ++m_step;
        m_view->setUpdatesEnabled(m_dice.chance(PaintedPercent));
        step();
        if (m_dirty)
            startAfresh();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        check();
    }
    return m_failure.isEmpty();
}

bool EditingUser::finish()
{
    m_popups->giveUp();
    m_scene->disconnect(this);
    const int order = m_dice.below(3);
    if (order == 0)
        delete m_sdc.data();
    if (order == 1)
        m_view.reset();
    m_scene.reset();
    m_view.reset();
    delete m_sdc.data();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QStringList left = m_objects.leftovers();
    if (!left.isEmpty())
        fail(QLatin1String("left over at the end: ") + left.join(QLatin1String(", ")));
    return m_failure.isEmpty();
}

void EditingUser::step()
{
    if (components().size() < 3 && m_dice.chance(60)) {
        drop();
        return;
    }
    const int thrown = m_dice.below(100);
    if (thrown < 40)
        drag();
    else if (thrown < 50)
        click();
    else if (thrown < 65)
        contextMenu();
    else if (thrown < 70)
        wheel();
    else if (thrown < 75)
        key();
    else if (thrown < 82)
        drop();
    else if (thrown < 92)
        undo();
    else if (thrown < 97)
        hostAction();
    else
        mishap();
}

void EditingUser::drag()
{
    // From site to site more often than not.
    SdcBst *const first = m_dice.anyOf(sites());
    SdcBst *const second = m_dice.anyOf(sites());
    const bool drawsBond = first && second && m_dice.chance(50);
    const QPointF from = drawsBond ? anyPointOf(first->getZelEllipseItemBst()) : anyPoint();
    const QPointF aim = drawsBond ? anyPointOf(second->getZelEllipseItemBst()) : anyPoint();
    const QPointF to(
        std::clamp(aim.x(), -Reach.x(), Reach.x()), std::clamp(aim.y(), -Reach.y(), Reach.y()));
    m_modifiers = m_dice.anyOf(QList<Qt::KeyboardModifiers>{
        Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::AltModifier});
    log(QStringLiteral("drag by %1, %2 with modifiers %3")
            .arg(to.x() - from.x(), 0, 'f', 0)
            .arg(to.y() - from.y(), 0, 'f', 0)
            .arg(m_modifiers.toInt()));
    mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
    const int moves = 1 + m_dice.below(5);
    for (int i = 1; i <= moves; ++i) {
        mouse(QEvent::MouseMove, from + (to - from) * i / moves, Qt::NoButton);
        if (m_dice.chance(3))
            mishap();
        if (m_dice.chance(3))
            key();
        if (m_dice.chance(2))
            wheel();
    }
    if (!m_calm && m_dice.chance(2))
        contextMenu();
    if (m_dice.chance(92))
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton);
    else
        log(QStringLiteral("without a release"));
    m_modifiers = Qt::NoModifier;
}

void EditingUser::click()
{
    const QPointF at = anyPoint();
    log(QStringLiteral("click"));
    mouse(QEvent::MouseButtonPress, at, Qt::LeftButton);
    if (m_dice.chance(4))
        mishap();
    mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton);
    if (m_dice.chance(10))
        mouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton);
    if (m_dice.chance(20))
        key();
}

void EditingUser::contextMenu()
{
    const QPointF at = anyPoint();
    log(QStringLiteral("ask for a menu"));
    QWidget *const viewport = m_view->viewport();
    const QPoint pos = m_view->mapFromScene(at);
    QContextMenuEvent event(
        QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos), Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

void EditingUser::wheel()
{
    log(QStringLiteral("turn the wheel"));
    const QPointF pos = m_view->mapFromScene(anyPoint());
    QWheelEvent event(pos, m_view->viewport()->mapToGlobal(pos), {},
        {0, m_dice.chance(50) ? 120 : -120}, m_buttons, m_modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_view->viewport(), &event);
}

void EditingUser::key()
{
    const Qt::Key pressed = m_dice.anyOf(QList<Qt::Key>{
        Qt::Key_Escape, Qt::Key_Escape, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_A});
    log(QStringLiteral("press key %1").arg(pressed, 0, 16));
    QKeyEvent event(QEvent::KeyPress, pressed, m_modifiers);
    QApplication::sendEvent(m_view.get(), &event);
}

void EditingUser::drop()
{
    QString record = m_dice.anyOf(m_records);
    if (molecules().size() >= MostMolecules)
        record = QStringLiteral("mol;mol99");
    log(QLatin1String("drop ") + record);
    const QPointF at = anyPoint();
    const std::unique_ptr<QMimeData> data(ZelSceneEditing::createPsiimIdMimeData(record));
    const QPoint pos = m_view->mapFromScene(at);
    QDragEnterEvent enter(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &enter);
    if (m_dice.chance(3))
        mishap();
    QDragMoveEvent over(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &over);
    if (over.isAccepted() && m_dice.chance(95)) {
        QDropEvent event(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_view->viewport(), &event);
    } else {
        QDragLeaveEvent leave;
        QApplication::sendEvent(m_view->viewport(), &leave);
    }
    if (!over.isAccepted())
        m_scene->addRecordFromDb(record.section(u';', 0, 0), record.section(u';', 1), at);
}

void EditingUser::load()
{
    const QString id = m_dice.anyOf(m_records).section(u';', 1);
    log(QLatin1String("load ") + id);
    m_scene->loadSdc(id);
}

void EditingUser::hostAction()
{
    switch (m_dice.below(5)) {
    case 0:
        load();
        break;
    case 1: {
        log(QStringLiteral("while it is read-only:"));
        m_calm = true;
        m_scene->setReadOnly(true);
        const ZelSceneState before = ZelSceneState::take(m_scene.get());
        drag();
        if (ZelSceneState::take(m_scene.get()) != before)
            fail(QStringLiteral("a read-only scene was changed"));
        m_scene->setReadOnly(false);
        m_calm = false;
        break;
    }
    case 2:
        log(QStringLiteral("turn"));
        if (SdcMol *mol = m_dice.anyOf(molecules()))
            m_scene->rotateUnit(m_scene->getUnit(mol), 90.0, m_dice.chance(50));
        break;
    case 3:
        if (m_kind == Complex || m_kind == TemporaryComplex) {
            log(QStringLiteral("save"));
            SdcCpx *const cpx = static_cast<ZelSceneCpx *>(m_scene.get())->getSdcCpx();
            if (cpx && !cpx->isEmpty()) {
                cpx->adoptStoredSpecies();
                if (cpx->saveToDbCpx())
                    cpx->saveToDbCpa();
            }
            m_known = ZelSceneState::take(m_scene.get()); // new ids and another order
        }
        break;
    default:
        showSdc();
        break;
    }
}

// A data component of the host's takes the place of what was shown, or nothing does.
void EditingUser::showSdc()
{
    const bool none = m_dice.chance(30);
    log(none ? QStringLiteral("show nothing") : QStringLiteral("show another component"));
    m_scene->removeContents();
    Sdc *shown = nullptr;
    if (!none && m_kind == MoleculeInteraction)
        shown = new SdcMli(m_model.db());
    else if (!none && m_kind == ComplexInteraction)
        shown = new SdcCxi(m_model.db());
    else if (!none)
        shown = new SdcCpx(m_model.db());
    const QPointer<Sdc> old = m_sdc;
    m_sdc = shown;
    m_scene->setSdc(shown);
    delete old.data();
    m_states.clear();
    m_known = ZelSceneState::take(m_scene.get());
}

void EditingUser::undo()
{
    if (m_states.isEmpty())
        return;
    log(QStringLiteral("go back to a state"));
    restore(m_dice.anyOf(m_states));
}

void EditingUser::mishap()
{
    if (m_calm || m_inMishap)
        return;
    m_inMishap = true;
    const int thrown = m_dice.below(100);
    if (thrown < 45)
        remove();
    else if (thrown < 70)
        destroy();
    else if (thrown < 85)
        undo();
    else if (thrown < 90)
        load();
    else if (thrown < 95) {
        log(QStringLiteral("remove everything"));
        m_scene->removeContents();
    } else {
        log(QStringLiteral("remove all items"));
        m_scene->removeAllItems();
        m_dirty = true; // molecules without components
    }
    m_inMishap = false;
}

void EditingUser::remove()
{
    const int thrown = m_dice.below(4);
    log(QStringLiteral("remove by the way %1").arg(thrown));
    if (thrown == 0)
        m_scene->removeSdcMcp(m_dice.anyOf(components()));
    else if (thrown == 1)
        m_scene->removeSdcBst(m_dice.anyOf(sites()));
    else if (thrown == 2)
        m_scene->removeBond(m_dice.anyOf(bonds()));
    else
        m_scene->removeUnit(m_scene->getUnit(m_dice.anyOf(molecules())));
}

void EditingUser::destroy()
{
    m_dirty = true;
    QObject *victim = nullptr;
    const int thrown = m_dice.below(8);
    SdcMcp *const mcp = m_dice.anyOf(components());
    SdcBst *const bst = m_dice.anyOf(sites());
    SdcBstBst *const bond = m_dice.anyOf(bonds());
    SdcMol *const mol = m_dice.anyOf(molecules());
    switch (thrown) {
    case 0:
        victim = mcp;
        break;
    case 1:
        victim = mcp ? mcp->getZelEllipseItemMcp() : nullptr;
        break;
    case 2:
        victim = bst;
        break;
    case 3:
        victim = bst ? bst->getZelEllipseItemBst() : nullptr;
        break;
    case 4:
        victim = bond;
        break;
    case 5:
        victim = bond ? bond->getZelLineItemBstBst() : nullptr;
        break;
    case 6:
        victim = mol ? m_scene->getUnit(mol) : nullptr;
        break;
    default:
        victim = m_sdc;
        break;
    }
    log(QStringLiteral("destroy %1").arg(thrown));
    delete victim;
}

void EditingUser::startAfresh()
{
    m_scene->removeContents();
    m_scene->removeAllItems();
    m_dirty = false;
    m_states.clear();
    m_known = ZelSceneState::take(m_scene.get());
    if (!m_scene->items().isEmpty())
        fail(QStringLiteral("items are left in an empty scene"));
}

void EditingUser::changeBegins()
{
    if (m_changing)
        fail(QStringLiteral("a change begins within another"));
    m_changing = true;
    if (!m_dirty && ZelSceneState::take(m_scene.get()) != m_known)
        fail(QStringLiteral("something had changed before it was announced"));
}

void EditingUser::changeEnds()
{
    m_changing = false;
    m_known = ZelSceneState::take(m_scene.get());
    m_states.append(m_known);
    if (m_states.size() > MostStates)
        m_states.removeFirst();
}

void EditingUser::restore(const ZelSceneState &state)
{
    if (m_dirty || m_changing)
        return;
    m_restoring = true;
    const bool done = state.restore(m_scene.get());
    m_restoring = false;
    m_known = ZelSceneState::take(m_scene.get());
    if (!done && m_scene->getSdc())
        fail(QStringLiteral("a state is not restored"));
    if (done && m_known != state)
        fail(QStringLiteral("a restored state differs from the one that was taken"));
}

void EditingUser::check()
{
    const QStringList lines = ZelTest::takeDebugLines();
    for (const QString &line : lines) {
        if (!isExpected(line))
            fail(QLatin1String("unexpected line: ") + line);
    }
    if (!m_changing && ZelSceneState::take(m_scene.get()) != m_known)
        fail(QStringLiteral("something has changed without being announced"));
    const QList<SdcMol *> mols = molecules();
    const QList<QGraphicsItem *> items = m_scene->items();
    for (QGraphicsItem *graphicsItem : items) {
        if (ZelEllipseItem *item = ZelGItem::toZelEllipseItem(graphicsItem)) {
            Sdc *const sdc = item->getSdc();
            if (!sdc || sdc->getZelEllipseItem() != item || !mols.contains(sdc->getParentSdcMol()))
                fail(QStringLiteral("an item of nothing that the scene shows"));
        } else if (ZelLineItem *line = ZelGItem::toZelLineItem(graphicsItem)) {
            ZelLineItemBstBst *const bondLine = line->asLineItemBstBst();
            if (bondLine && (!bondLine->getSdcBstBst() || isStale(bondLine)))
                fail(QStringLiteral("a bond line without bond, or that has not followed"));
        }
    }
    for (SdcBstBst *bond : bonds()) {
        if (bond->getListSdcBst().size() != 2 || !bond->getZelLineItemBstBst())
            fail(QStringLiteral("a bond that lacks a site or its line"));
    }
    if (m_scene->isDrawingBond() && !m_buttons.testFlag(Qt::LeftButton))
        fail(QStringLiteral("a bond is being drawn without a button"));
}

void EditingUser::fail(const QString &what)
{
    if (m_failure.isEmpty())
        m_failure = QStringLiteral("seed %1, step %2: %3\nthe last actions:\n%4")
                        .arg(m_seed)
                        .arg(m_step)
                        .arg(what, m_log.join(u'\n'));
}

void EditingUser::log(const QString &action)
{
    m_log.append(QStringLiteral("%1: %2").arg(m_step).arg(action));
    if (m_log.size() > LogLength)
        m_log.removeFirst();
}

void EditingUser::mouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button)
{
    QWidget *const viewport = m_view->viewport();
    const QPoint pos = m_view->mapFromScene(scenePos);
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick)
        m_buttons |= button;
    else if (type == QEvent::MouseButtonRelease)
        m_buttons &= ~Qt::MouseButtons(button);
    QMouseEvent event(
        type, pos, viewport->mapToGlobal(QPointF(pos)), button, m_buttons, m_modifiers);
    QApplication::sendEvent(viewport, &event);
}

QPointF EditingUser::anyPoint()
{
    const int thrown = m_dice.below(100);
    if (thrown < 35) {
        if (SdcMcp *mcp = m_dice.anyOf(components()))
            return anyPointOf(mcp->getZelEllipseItemMcp());
    } else if (thrown < 60) {
        if (SdcBst *bst = m_dice.anyOf(sites()))
            return anyPointOf(bst->getZelEllipseItemBst());
    } else if (thrown < 70) {
        SdcMcp *const mcp = m_dice.anyOf(components());
        if (ZelRectItemMcpSticky *sticky = mcp ? m_dice.anyOf(mcp->getListSticky()) : nullptr)
            return anyPointOf(sticky);
    } else if (thrown < 80) {
        if (SdcBstBst *bond = m_dice.anyOf(bonds()))
            return anyPointOf(bond->getZelLineItemBstBst());
    }
    return {m_dice.between(-Reach.x(), Reach.x()), m_dice.between(-Reach.y(), Reach.y())};
}

QPointF EditingUser::anyPointOf(QGraphicsItem *item)
{
    const QPointF share(m_dice.between(0.2, 0.8), m_dice.between(0.2, 0.8));
    if (!item)
        return {};
    const QRectF rect = item->sceneBoundingRect();
    return rect.topLeft() + QPointF(rect.width() * share.x(), rect.height() * share.y());
}

QList<SdcMol *> EditingUser::molecules()
{
    Sdc *const sdc = m_scene->getSdc();
    return sdc ? sdc->getListSdcMol() : QList<SdcMol *>();
}

QList<SdcMcp *> EditingUser::components()
{
    Sdc *const sdc = m_scene->getSdc();
    return sdc ? sdc->getListSdcMcp() : QList<SdcMcp *>();
}

QList<SdcBst *> EditingUser::sites()
{
    Sdc *const sdc = m_scene->getSdc();
    return sdc ? sdc->getListSdcBst() : QList<SdcBst *>();
}

QList<SdcBstBst *> EditingUser::bonds()
{
    return m_scene->findChildren<SdcBstBst *>(QString(), Qt::FindDirectChildrenOnly);
}
