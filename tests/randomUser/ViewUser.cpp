#include "ViewUser.h"

#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelGraphicsViewSideWindow.h"
#include "zelModelSupport/graphics/ZelGraphicsViewTrn.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QApplication>
#include <QHelpEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t MostWindows = 4;
constexpr std::size_t MostScenes = 3;

/// Whose items can be moved by the mouse.
bool isEdited(ZelScene *scene)
{
    return !qobject_cast<ZelSceneSideWindow *>(scene);
}

/// Where everything lies, as one value.
QList<QPointF> placesOf(ZelScene *scene)
{
    QList<QPointF> places;
    const QList<QGraphicsItem *> items = scene->items(Qt::AscendingOrder);
    for (QGraphicsItem *item : items)
        places.append(item->scenePos());
    return places;
}

/// Each end lies at the rim of some site that is drawn.
bool endsAtSites(ZelLineItemBstBst *line)
{
    const QList<QGraphicsItem *> items = line->scene()->items();
    const auto isAtSite = [&items](const QPointF &end) {
        return std::any_of(items.cbegin(), items.cend(), [&end](QGraphicsItem *item) {
            ZelEllipseItemBst *const site = ZelGItem::toZelEllipseItemBst(item);
            return site && site->sceneBoundingRect().adjusted(-2, -2, 2, 2).contains(end);
        });
    };
    return isAtSite(line->mapToScene(line->line().p1()))
        && isAtSite(line->mapToScene(line->line().p2()));
}

} // namespace

ViewUser::ViewUser(quint32 seed)
    : RandomSession(seed, {"name = ", "found at void ZelScene::changeMolColor("})
{
    fail(m_model.fault());
    openView()->setScene(openScene());
    ZelTest::takeDebugLines();
}

ViewUser::~ViewUser()
{
    ViewUser::close();
}

QList<QGraphicsView *> ViewUser::views() const
{
    QList<QGraphicsView *> list;
    for (const auto &view : m_windows)
        list.append(view.get());
    return list;
}

void ViewUser::close()
{
    if (m_dice.chance(50))
        m_windows.clear();
    while (!m_scenes.empty())
        closeScene(m_scenes.size() - 1);
    m_windows.clear();
}

void ViewUser::step()
{
    m_tolerant = false;
    doOneOf({
        {25, [this] { turnWheel(); }},
        {13, [this] { adjust(); }},
        {14, [this] { gesture(); }},
        {5, [this] { hover(); }},
        {4,
            [this] {
                if (ZelGraphicsView *view = anyView())
                    askForMenu(view, anyPoint(view));
            }},
        {14, [this] { show(); }},
        {5, [this] { pair(); }},
        {6, [this] { openOrClose(); }},
        {7, [this] { mishap(); }},
    });
}

void ViewUser::turnWheel()
{
    const int delta =
        m_dice.anyOf(QList<int>{120, 120, -120, -120, 15, -15, 240, -360, 0, 100000, -100000});
    log(QStringLiteral("turn the wheel by %1").arg(delta));
    if (ZelGraphicsView *view = anyView())
        wheel(view, anyPoint(view), m_dice.chance(5) ? QPoint(delta, 0) : QPoint(0, delta));
}

void ViewUser::adjust()
{
    ZelGraphicsView *const view = anyView();
    if (!view)
        return;
    auto *const zoomed = qobject_cast<ZelGraphicsViewZoom *>(view);
    log("adjust a view");
    std::vector<Act> acts{
        {4, [view] { view->setSceneFitToView(); }},
        {4, [&] { view->setGrid(m_dice.below(40) - 5, m_dice.below(40) - 5); }},
        {2, [view] { view->setVisible(!view->isVisible()); }},
        {1, [&] { view->resize(m_dice.below(3), m_dice.below(3)); }},
        {8, [&] { view->resize(40 + m_dice.below(600), 40 + m_dice.below(400)); }},
    };
    if (zoomed) {
        acts.push_back({4, [zoomed] { zoomed->resetZoom(); }});
        acts.push_back({4, [zoomed] { zoomed->scaleDefaultFactor(); }});
        for (const double odd :
            {0.0, 1e-300, 1e300, std::nan(""), std::numeric_limits<double>::infinity()})
            acts.push_back({1, [zoomed, odd] { zoomed->scaleView(odd); }});
    }
    doOneOf(acts);
}

void ViewUser::gesture()
{
    QPointer<ZelGraphicsView> view = anyView();
    const QPointer<ZelScene> scene = view ? qobject_cast<ZelScene *>(view->scene()) : nullptr;
    if (!scene)
        return;
    const QPointF from = anyPoint(view);
    const QPointF to = m_dice.chance(30) ? from : anyPoint(view);
    const Qt::MouseButton button = m_dice.chance(85) ? Qt::LeftButton : Qt::RightButton;
    log(QStringLiteral("drag by %1, %2").arg(to.x() - from.x()).arg(to.y() - from.y()));
    const QList<QPointF> before = placesOf(scene);
    bool calm = true;
    mouse(view, QEvent::MouseButtonPress, from, button);
    for (int i = 1; i <= 3 && view; ++i) {
        if (m_dice.chance(12)) {
            calm = false;
            doOneOf({{1, [this] { mishap(); }}, {1, [this] { show(); }},
                {1, [this] { openOrClose(); }}, {1, [this] { turnWheel(); }},
                {1, [&view] { QTest::keyClick(view.data(), Qt::Key_Escape); }}});
        }
        if (view)
            mouse(view, QEvent::MouseMove, from + (to - from) * i / 3);
    }
    if (!view) {
        m_buttons = Qt::NoButton;
        return;
    }
    mouse(view, QEvent::MouseButtonRelease, to, button);
    if (m_dice.chance(10))
        mouse(view, QEvent::MouseButtonDblClick, to, button);
    m_buttons = Qt::NoButton;
    if (button == Qt::LeftButton && view && view->scene()
        && view->dragMode() != QGraphicsView::NoDrag)
        fail("a view is still dragged");
    if (calm && scene && !isEdited(scene) && placesOf(scene) != before)
        fail("a preview was changed by the mouse");
}

void ViewUser::hover()
{
    ZelGraphicsView *const view = anyView();
    log("hover");
    if (!view)
        return;
    for (int i = 0; i < 3; ++i)
        mouse(view, QEvent::MouseMove, anyPoint(view));
    const QPoint at = view->mapFromScene(anyPoint(view));
    QHelpEvent help(QEvent::ToolTip, at, view->viewport()->mapToGlobal(at));
    QApplication::sendEvent(view->viewport(), &help);
    if (m_dice.chance(30)) {
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(view->viewport(), &leave);
    }
}

void ViewUser::show()
{
    if (m_dice.chance(25)) {
        log("show another scene");
        if (ZelGraphicsView *view = anyView())
            view->setScene(m_dice.chance(80) ? anyScene() : nullptr);
        return;
    }
    if (!m_scenes.empty())
        load(m_scenes.at(static_cast<std::size_t>(m_dice.below(int(m_scenes.size())))));
}

void ViewUser::load(Shown &shown)
{
    const QString tag = m_dice.anyOf(QStringList{"mol", "cpx", "cpa"});
    const QString id = anyId(tag);
    log(QLatin1String("load ") + id);
    if (auto *preview = qobject_cast<ZelSceneSideWindow *>(shown.scene.get())) {
        preview->setAllowToDisplayBindingStatus(m_dice.chance(50));
        bool loaded = false;
        if (tag == QLatin1String("mol"))
            loaded = preview->loadMol(id, m_model.db());
        else if (tag == QLatin1String("cpx"))
            loaded = preview->loadCpx(id, m_model.db());
        else
            loaded = preview->loadCpa(id, m_model.db());
        const bool known = m_model.ids(tag).contains(id);
        if (loaded != known)
            fail("a load answers otherwise than it should");
        if (loaded
            && QLineF(preview->getSceneRectForAllItems().center(), QPointF()).length() > 12.0)
            fail("a preview is not centred");
    } else if (qobject_cast<ZelSceneMol *>(shown.scene.get())) {
        if (SdcMol *mol = shown.sdc ? shown.sdc->toSdcMol() : nullptr)
            mol->loadFromDb(anyId("mol"), shown.scene.get());
    } else {
        shown.scene->loadSdc(anyId(m_dice.anyOf(QStringList{"cpx", "cpa", "cai"})));
    }
}

void ViewUser::pair()
{
    auto *const view = qobject_cast<ZelGraphicsViewTrn *>(anyView());
    auto *const twin = qobject_cast<ZelGraphicsViewTrn *>(anyView());
    if (!view)
        return;
    log("give it a twin");
    view->setTwinView(twin);
    if (twin && m_dice.chance(50))
        twin->setTwinView(view);
}

void ViewUser::openOrClose()
{
    const bool ofViews = m_dice.chance(50);
    log(ofViews ? "open or close a view" : "open or close a scene");
    if (ofViews && !m_windows.empty() && (m_windows.size() >= MostWindows || m_dice.chance(40)))
        m_windows.erase(m_windows.begin() + m_dice.below(int(m_windows.size())));
    else if (ofViews)
        openView()->setScene(anyScene());
    else if (!m_scenes.empty() && (m_scenes.size() >= MostScenes || m_dice.chance(40)))
        closeScene(static_cast<std::size_t>(m_dice.below(int(m_scenes.size()))));
    else if (ZelScene *scene = openScene(); ZelGraphicsView *view = anyView())
        view->setScene(scene);
}

ZelGraphicsView *ViewUser::openView()
{
    std::unique_ptr<ZelGraphicsView> view;
    switch (m_dice.below(5)) {
    case 0:
        view = std::make_unique<ZelGraphicsView>();
        break;
    case 1:
        view = std::make_unique<ZelGraphicsViewZoom>();
        break;
    case 2:
        view = std::make_unique<ZelGraphicsViewSideWindow>();
        break;
    default:
        view = std::make_unique<ZelGraphicsViewTrn>();
        break;
    }
    view->resize(400, 300);
    view->setMouseTracking(m_dice.chance(50));
    view->show();
    m_windows.push_back(std::move(view));
    return m_windows.back().get();
}

ZelScene *ViewUser::openScene()
{
    Shown shown;
    switch (m_dice.below(6)) {
    case 0:
        shown.scene = std::make_unique<ZelSceneCpx>();
        break;
    case 1:
        shown.scene = std::make_unique<ZelSceneCxi>();
        break;
    case 2: {
        shown.scene = std::make_unique<ZelSceneMol>();
        auto *const mol = new SdcMol(m_model.db());
        shown.sdc = mol;
        shown.scene->setSdc(mol);
        break;
    }
    default:
        shown.scene = std::make_unique<ZelSceneSideWindow>();
        break;
    }
    shown.scene->setZelDbSqliteModel(m_model.db());
    load(shown);
    m_scenes.push_back(std::move(shown));
    return m_scenes.back().scene.get();
}

void ViewUser::closeScene(std::size_t index)
{
    Shown shown = std::move(m_scenes.at(index));
    m_scenes.erase(m_scenes.begin() + static_cast<std::ptrdiff_t>(index));
    if (m_dice.chance(50))
        delete shown.sdc.data();
    shown.scene.reset();
    delete shown.sdc.data();
}

std::vector<RandomSession::Act> ViewUser::mishaps()
{
    return {
        {60, [this] { destroy(); }},
        {20, [this] { show(); }},
        {20,
            [this] {
                if (ZelScene *scene = anyScene())
                    scene->removeAllItems();
            }},
    };
}

// In the middle of a menu the scene itself may go.
void ViewUser::interrupt()
{
    if (m_scenes.empty() || !m_dice.chance(25)) {
        mishap();
        return;
    }
    log("close a scene by the way");
    closeScene(static_cast<std::size_t>(m_dice.below(int(m_scenes.size()))));
}

// Something that is drawn, or what draws it, behind the scene's back.
void ViewUser::destroy()
{
    ZelScene *const scene = anyScene();
    QList<QGraphicsItem *> items = scene ? scene->items() : QList<QGraphicsItem *>();
    items.removeIf([](QGraphicsItem *item) {
        return !ZelGItem::toZelEllipseItem(item) && !ZelGItem::toZelLineItem(item)
            && !ZelGItem::toZelRectItemMcpSticky(item);
    });
    QGraphicsItem *const victim = m_dice.anyOf(items);
    if (!victim)
        return;
    ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(victim);
    Sdc *const sdc = ellipse ? ellipse->getSdc() : nullptr;
    if (sdc && m_dice.chance(50)) {
        log("destroy a component");
        delete sdc;
    } else {
        log("destroy an item");
        delete victim;
    }
}

void ViewUser::check()
{
    for (const auto &view : m_windows) {
        const QTransform t = view->transform();
        if (!(t.m11() > 0.0) || !std::isfinite(t.m11()) || t.m11() != t.m22() || t.m12() != 0.0
            || t.m21() != 0.0)
            fail("a view is turned, mirrored or without size");
    }
    for (const Shown &shown : m_scenes)
        checkScene(shown.scene.get());
    for (ZelGItem *item : m_objects.all<ZelGItem>()) {
        QGraphicsItem *drawn = item->asEllipseItem();
        if (!drawn)
            drawn = item->asLineItem();
        if (drawn && !drawn->scene())
            fail("an item in no scene");
    }
}

void ViewUser::checkScene(ZelScene *scene)
{
    const bool preview = !isEdited(scene);
    const QList<QGraphicsItem *> items = scene->items();
    for (QGraphicsItem *item : items) {
        ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(item);
        if (preview && ellipse && ellipse->getSdc())
            fail("a preview has kept a component");
        ZelLineItem *const line = ZelGItem::toZelLineItem(item);
        ZelLineItemBstBst *const bondLine = line ? line->asLineItemBstBst() : nullptr;
        if (bondLine && bondLine->isVisible() && !endsAtSites(bondLine))
            fail("the line of a bond ends nowhere");
    }
    if (preview && scene->sceneRect() != QRectF(-100.0, -100.0, 200.0, 200.0))
        fail("the rectangle of a preview has changed");
}

QPointF ViewUser::anyPoint(QGraphicsView *view)
{
    const QList<QGraphicsItem *> items =
        view->scene() ? view->scene()->items() : QList<QGraphicsItem *>();
    QGraphicsItem *const item = m_dice.anyOf(items);
    if (item && m_dice.chance(70))
        return item->sceneBoundingRect().center();
    return {m_dice.between(-150.0, 150.0), m_dice.between(-120.0, 120.0)};
}

ZelGraphicsView *ViewUser::anyView()
{
    const int index = m_dice.below(static_cast<int>(m_windows.size()));
    return m_windows.empty() ? nullptr : m_windows.at(static_cast<std::size_t>(index)).get();
}

ZelScene *ViewUser::anyScene()
{
    const int index = m_dice.below(static_cast<int>(m_scenes.size()));
    return m_scenes.empty() ? nullptr : m_scenes.at(static_cast<std::size_t>(index)).scene.get();
}

QString ViewUser::anyId(const QString &tag)
{
    if (m_dice.chance(85))
        return m_dice.anyOf(m_model.ids(tag));
    m_tolerant = true;
    return m_dice.anyOf(QStringList{QString(), "none99", tag});
}
