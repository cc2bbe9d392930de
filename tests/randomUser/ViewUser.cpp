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
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStandardItem>

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t MostWindows = 4;
constexpr std::size_t MostScenes = 3;
constexpr double Hair = 1e-9; // that rounding may decide otherwise at a limit

double scaleOf(QGraphicsView *view)
{
    return view->transform().m11();
}

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
    for (const Window &window : m_windows)
        list.append(window.view.get());
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
    m_tolerant = m_model.isDamaged();
    doOneOf({
        {25, [this] { turnWheel(); }},
        {8, [this] { zoom(); }},
        {5, [this] { resize(); }},
        {14, [this] { gesture(); }},
        {5, [this] { hover(); }},
        {4, [this] { contextMenu(); }},
        {14, [this] { show(); }},
        {5, [this] { pair(); }},
        {6, [this] { openOrClose(); }},
        {3, [this] { damage(); }},
        {4, [this] { pictures(); }},
        {7, [this] { mishap(); }},
    });
}

void ViewUser::turnWheel()
{
    ZelGraphicsView *const view = anyView();
    if (!view)
        return;
    const int delta =
        m_dice.anyOf(QList<int>{120, 120, -120, -120, 15, -15, 240, -360, 0, 100000, -100000});
    log(QStringLiteral("turn the wheel by %1").arg(delta));
    const double factor = std::pow(2.0, -delta / 240.0);
    const auto window = std::find_if(m_windows.cbegin(), m_windows.cend(),
        [view](const Window &candidate) { return candidate.view.get() == view; });
    const QPointer<ZelGraphicsViewTrn> twin =
        qobject_cast<ZelGraphicsViewTrn *>(view) && window->twin != view ? window->twin : nullptr;
    const double expected = expectedScale(view, factor);
    const double expectedOfTwin = twin ? expectedScale(twin, factor) : 0.0;
    QList<double> others;
    for (const Window &other : m_windows) {
        if (other.view.get() != view && other.view.get() != twin)
            others.append(scaleOf(other.view.get()));
    }
    const bool sideways = m_dice.chance(5);
    wheel(view, anyPoint(view), sideways ? QPoint(delta, 0) : QPoint(0, delta));
    const auto isOff = [](QGraphicsView *turned, double scale) {
        return std::abs(scaleOf(turned) - scale) > Hair * scale;
    };
    if (!sideways && (isOff(view, expected) || (twin && isOff(twin, expectedOfTwin))))
        fail("the wheel has zoomed otherwise than it should");
    for (const Window &other : m_windows) {
        if (other.view.get() != view && other.view.get() != twin
            && scaleOf(other.view.get()) != others.takeFirst())
            fail("the wheel has zoomed a stranger");
    }
}

double ViewUser::expectedScale(QGraphicsView *view, double factor) const
{
    const auto *const zoomed = qobject_cast<ZelGraphicsViewZoom *>(view);
    const double wanted = scaleOf(view) * factor;
    const bool allowed = zoomed && wanted >= zoomed->getMinScale() * (1.0 - Hair)
        && wanted <= zoomed->getMaxScale() * (1.0 + Hair);
    return allowed ? wanted : scaleOf(view);
}

void ViewUser::zoom()
{
    ZelGraphicsView *const view = anyView();
    auto *const zoomed = qobject_cast<ZelGraphicsViewZoom *>(view);
    const int thrown = m_dice.below(zoomed ? 5 : 2);
    log(QStringLiteral("zoom by the way %1").arg(thrown));
    if (!view)
        return;
    if (thrown == 0) {
        view->setSceneFitToView();
    } else if (thrown == 1) {
        view->setGrid(m_dice.below(40) - 5, m_dice.below(40) - 5);
    } else if (thrown == 2) {
        zoomed->resetZoom();
        if (scaleOf(view) != zoomed->getDefaultScaleFactor())
            fail("the zoom was not reset");
    } else if (thrown == 3) {
        zoomed->scaleDefaultFactor();
    } else {
        const double odd = m_dice.anyOf(QList<double>{
            0.0, 1e-300, 1e300, std::nan(""), std::numeric_limits<double>::infinity()});
        const double before = scaleOf(view);
        zoomed->scaleView(odd);
        if (scaleOf(view) != before)
            fail("a factor beyond all limits was taken");
    }
}

void ViewUser::resize()
{
    ZelGraphicsView *const view = anyView();
    const QSize size = m_dice.chance(15) ? QSize(m_dice.below(3), m_dice.below(3))
                                         : QSize(40 + m_dice.below(600), 40 + m_dice.below(400));
    log(QStringLiteral("resize to %1 x %2").arg(size.width()).arg(size.height()));
    if (!view)
        return;
    view->resize(size);
    if (m_dice.chance(20))
        view->setVisible(!view->isVisible());
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
    const auto perhaps = [&](int percent, auto act) {
        if (!m_dice.chance(percent))
            return;
        calm = false;
        act();
    };
    mouse(view, QEvent::MouseButtonPress, from, button);
    for (int i = 1; i <= 3 && view; ++i) {
        perhaps(3, [this] { mishap(); });
        perhaps(3, [this] { show(); });
        perhaps(3, [this] { openOrClose(); });
        perhaps(3, [this] { turnWheel(); });
        perhaps(2, [&] {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            if (view)
                QApplication::sendEvent(view, &key);
        });
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

void ViewUser::contextMenu()
{
    if (ZelGraphicsView *view = anyView())
        askForMenu(view, anyPoint(view));
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
        if (!m_model.isDamaged() && loaded != known)
            fail("a load answers otherwise than it should");
        if (loaded && !m_model.isDamaged()
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
    if (m_windows.empty())
        return;
    Window &window = m_windows.at(static_cast<std::size_t>(m_dice.below(int(m_windows.size()))));
    auto *const view = qobject_cast<ZelGraphicsViewTrn *>(window.view.get());
    if (!view)
        return;
    log("give it a twin");
    auto *const twin = qobject_cast<ZelGraphicsViewTrn *>(anyView());
    window.twin = twin;
    view->setTwinView(twin);
    if (!twin || m_dice.chance(50))
        return;
    for (Window &other : m_windows) {
        if (other.view.get() == twin)
            other.twin = view;
    }
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
    Window window;
    switch (m_dice.below(5)) {
    case 0:
        window.view = std::make_unique<ZelGraphicsView>();
        break;
    case 1:
        window.view = std::make_unique<ZelGraphicsViewZoom>();
        break;
    case 2:
        window.view = std::make_unique<ZelGraphicsViewSideWindow>();
        break;
    default:
        window.view = std::make_unique<ZelGraphicsViewTrn>();
        break;
    }
    window.view->resize(400, 300);
    window.view->setMouseTracking(m_dice.chance(50));
    window.view->show();
    m_windows.push_back(std::move(window));
    return m_windows.back().view.get();
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

void ViewUser::damage()
{
    const bool mends = m_model.isDamaged();
    log(mends ? "mend the model" : "damage the model");
    m_tolerant = true;
    if (mends)
        m_model.mend();
    else
        m_model.damage(&m_dice);
    m_pictures.clear();
}

void ViewUser::pictures()
{
    const QSize size = m_dice.anyOf(QList<QSize>{
        {60, 36}, {100, 60}, {1, 1}, {60, 60}, {3, 200}, {0, 0}, {-4, 9}, {70000, 70000}});
    log(QStringLiteral("ask for pictures at %1 x %2").arg(size.width()).arg(size.height()));
    auto *const cache = m_dice.chance(70) ? &m_pictures : nullptr;
    pictureOfRecord(size);
    pictureOfReaction(size, cache);
    m_tolerant = true; // the id and the kind need not agree
    const std::unique_ptr<QStandardItem> entry(
        zgs::createItem(m_model.db(), size, {}, anyId(m_dice.anyOf(m_model.tags())),
            m_dice.below(20), true, {}, m_dice.chance(50), {}, cache, {}));
    if (!entry || entry->isEditable())
        fail("no entry, or one that can be edited");
}

void ViewUser::pictureOfRecord(const QSize &size)
{
    const auto [kind, tag] = m_dice.anyOf(QList<QPair<int, QString>>{{zgs::PictureMol, "mol"},
        {zgs::PictureMli, "mli"}, {zgs::PictureCpx, "cpx"}, {zgs::PictureCpa, "cpa"}});
    const QString id = anyId(tag);
    checkPicture(zgs::getPixMapFromSdcPsiimId(id, kind, size, m_model.db()), tag, id, size);
}

void ViewUser::pictureOfReaction(const QSize &size, QHash<QString, QPixmap> *cache)
{
    using Draw =
        QPixmap (*)(const QString &, const QSize &, ZelDbSqliteModel *, QHash<QString, QPixmap> *);
    const auto [draw, tag] =
        m_dice.anyOf(QList<QPair<Draw, QString>>{{zgs::getPixMapForAssociation, "cai"},
            {zgs::getPixMapForDissociation, "cad"}, {zgs::getPixMapForTransformation, "trn"},
            {zgs::getPixMapForProduction, "pdn"}, {zgs::getPixMapForDegradation, "deg"}});
    const QString id = anyId(tag);
    checkPicture(draw(id, size, m_model.db(), cache), tag, id, size);
}

void ViewUser::checkPicture(
    const QPixmap &picture, const QString &tag, const QString &id, const QSize &size)
{
    const bool usable = size.width() > 0 && size.width() < 4000;
    m_tolerant = m_tolerant || !usable;
    const bool due = usable && m_model.ids(tag).contains(id);
    if (!m_model.isDamaged() && picture.isNull() == due)
        fail(QLatin1String("no picture of a record, or one of none: ") + id);
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
    for (const Window &window : m_windows) {
        const QTransform t = window.view->transform();
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
    return m_windows.empty() ? nullptr : m_windows.at(static_cast<std::size_t>(index)).view.get();
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
