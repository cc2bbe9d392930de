// One mouse-move event of a drag, against moving bare items in an otherwise equal scene. Nothing is
// painted.
//
// Bare items leave the scene's index to be mended later, so the comparison includes the turn of the
// event loop that follows. In that turn the toolkit visits every top-level item of any scene; the
// growth with the scene's size is therefore that of the event alone.

#include "support/ZelBenchmark.h"

#include "bench_SceneModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QCoreApplication>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QMouseEvent>

#include <chrono>

namespace {

using namespace BenchScene;

enum Measure { Event, Turn };

/// Moves given items along with the mouse, and does nothing else.
class BareScene : public QGraphicsScene
{
public:
    QList<QGraphicsItem *> dragged;

protected:
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override
    {
        const QPointF delta = event->scenePos() - event->lastScenePos();
        for (QGraphicsItem *item : std::as_const(dragged))
            item->moveBy(delta.x(), delta.y());
    }
};

/// A view on the dragged molecule, and the mouse over it.
class Mouse
{
public:
    Mouse(QGraphicsScene *scene, const QPointF &centre) : m_view(scene)
    {
        m_view.resize(400, 300);
        m_view.centerOn(centre);
        m_view.show();
        QCoreApplication::processEvents();
        m_view.setUpdatesEnabled(false);
    }

    void send(QEvent::Type type, const QPointF &scenePos)
    {
        const QPointF pos = m_view.mapFromScene(scenePos);
        const bool move = type == QEvent::MouseMove;
        QMouseEvent event(type, pos, m_view.viewport()->mapToGlobal(pos),
            move ? Qt::NoButton : Qt::LeftButton,
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_view.viewport(), &event);
    }

    /// Drags there and back for as long as the benchmark runs.
    void drag(benchmark::State &state, const QPointF &from, const QPointF &to, Measure measure)
    {
        using Clock = std::chrono::steady_clock;
        send(QEvent::MouseButtonPress, from);
        bool there = false;
        for (auto _ : state) {
            there = !there;
            const Clock::time_point begin = Clock::now();
            send(QEvent::MouseMove, there ? to : from);
            const Clock::time_point handled = Clock::now();
            QCoreApplication::processEvents();
            const Clock::time_point end = measure == Turn ? Clock::now() : handled;
            state.SetIterationTime(std::chrono::duration<double>(end - begin).count());
        }
        send(QEvent::MouseButtonRelease, from);
    }

private:
    QGraphicsView m_view;
};

constexpr QPointF Beside(4.0, 3.0);

SdcMcp *draggedMcp(const Drawing &drawing)
{
    return drawing.longMolecule()->getSdcMcpAtIndex(5);
}

void dragMolecule(benchmark::State &state, Measure measure)
{
    Drawing drawing(static_cast<int>(state.range(0)));
    const QPointF from = draggedMcp(drawing)->getSdcSceneRectF().center() + QPointF(-25.0, 0.0);
    Mouse mouse(&drawing, from);
    const QPointF before = draggedMcp(drawing)->getZelEllipseItemMcp()->pos();
    mouse.drag(state, from, from + Beside, measure);
    if (state.iterations() % 2 == 1 && draggedMcp(drawing)->getZelEllipseItemMcp()->pos() == before)
        state.SkipWithError("nothing was dragged");
}

void dragSite(benchmark::State &state, Measure measure)
{
    Drawing drawing(static_cast<int>(state.range(0)));
    drawing.attached = true;
    SdcBst *const bst = draggedMcp(drawing)->getListSdcBst().first();
    const QPointF from = bst->getSdcSceneRectF().center();
    Mouse mouse(&drawing, from);
    const QPointF before = bst->getZelEllipseItemBst()->pos();
    mouse.drag(state, from, from + Beside, measure);
    if (state.iterations() % 2 == 1 && bst->getZelEllipseItemBst()->pos() == before)
        state.SkipWithError("nothing was dragged");
}

void dragBare(benchmark::State &state, bool site)
{
    BareScene scene;
    scene.setSceneRect(Model::sceneRect(static_cast<int>(state.range(0))));
    QPointF from;
    {
        const Drawing drawing(static_cast<int>(state.range(0)));
        QHash<const QGraphicsItem *, int> places;
        const std::vector<QGraphicsItem *> items =
            addBareItems(&scene, describe(&drawing, &places));
        const auto drag = [&](const QGraphicsItem *item) {
            scene.dragged.append(items.at(static_cast<std::size_t>(places.value(item, -1))));
        };
        if (site) {
            drag(draggedMcp(drawing)->getListSdcBst().first()->getZelEllipseItemBst());
        } else {
            for (SdcMcp *mcp : drawing.longMolecule()->getListSdcMcp())
                drag(mcp->getZelEllipseItemMcp());
        }
        from = draggedMcp(drawing)->getSdcSceneRectF().center();
    }
    Mouse(&scene, from).drag(state, from, from + Beside, Turn);
}

constexpr int Many = 2000;

template <typename Function, typename... Arguments>
void add(const char *name, QList<int> molecules, Function drag, Arguments... arguments)
{
    auto *const one = benchmark::RegisterBenchmark(
        name, [=](benchmark::State &state) { drag(state, arguments...); });
    for (const int count : molecules)
        one->Arg(count);
    one->Unit(benchmark::kMicrosecond)->Repetitions(5)->UseManualTime();
}

const bool registered[] = {
    (add("dragSite", {Molecules, Many}, dragSite, Turn), true),
    (add("dragBareSite", {Molecules, Many}, dragBare, true), true),
    (add("dragMolecule", {Molecules, Many}, dragMolecule, Turn), true),
    (add("dragBareMolecule", {Molecules, Many}, dragBare, false), true),
    (add("dragSiteEvent", {Molecules, Many}, dragSite, Event), true),
    (add("dragMoleculeEvent", {Molecules, Many}, dragMolecule, Event), true),
    ZelBenchmark::ratio("a move of a site / of a bare item, 200 molecules",
        "dragSite/200/repeats:5/manual_time", "dragBareSite/200/repeats:5/manual_time", 3.0),
    ZelBenchmark::ratio("a move of a site / of a bare item, 2,000 molecules",
        "dragSite/2000/repeats:5/manual_time", "dragBareSite/2000/repeats:5/manual_time", 3.0),
    ZelBenchmark::ratio("a move of 12 components / of bare items, 200 molecules",
        "dragMolecule/200/repeats:5/manual_time", "dragBareMolecule/200/repeats:5/manual_time",
        3.0),
    ZelBenchmark::ratio("a move of 12 components / of bare items, 2,000 molecules",
        "dragMolecule/2000/repeats:5/manual_time", "dragBareMolecule/2000/repeats:5/manual_time",
        3.0),
    ZelBenchmark::ratio("a move event of a site, 2,000 / 200 molecules",
        "dragSiteEvent/2000/repeats:5/manual_time", "dragSiteEvent/200/repeats:5/manual_time", 2.0),
    ZelBenchmark::ratio("a move event of 12 components, 2,000 / 200 molecules",
        "dragMoleculeEvent/2000/repeats:5/manual_time",
        "dragMoleculeEvent/200/repeats:5/manual_time", 2.0),
};

} // namespace
