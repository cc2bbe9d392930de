// Building a drawing of 200 molecules from the database and painting it, against bare items of the
// same kinds and numbers.

#include "support/ZelBenchmark.h"

#include "bench_SceneModel.h"

#include <QImage>
#include <QPainter>

#include <chrono>
#include <optional>

namespace {

using namespace BenchScene;

void paint(benchmark::State &state, QGraphicsScene *scene)
{
    QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    const QRectF source = Model::sceneRect(Molecules);
    for (auto _ : state) {
        QPainter painter(&image);
        scene->render(&painter, image.rect(), source);
    }
    state.counters["items"] = static_cast<double>(scene->items().size());
}

template <typename Build>
void build(benchmark::State &state, Build make)
{
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        auto scene = make();
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(time.count());
    }
}

const std::vector<BareItem> &bareItems()
{
    static const std::vector<BareItem> items = [] {
        const Drawing drawing(Molecules);
        return describe(&drawing);
    }();
    return items;
}

std::unique_ptr<QGraphicsScene> makeBareScene()
{
    auto scene = std::make_unique<QGraphicsScene>();
    scene->setSceneRect(Model::sceneRect(Molecules));
    addBareItems(scene.get(), bareItems());
    return scene;
}

void buildDrawing(benchmark::State &state)
{
    Model::instance();
    build(state, [] { return std::make_unique<Drawing>(Molecules); });
}

void buildBare(benchmark::State &state)
{
    bareItems();
    build(state, makeBareScene);
}

void paintDrawing(benchmark::State &state)
{
    Drawing drawing(Molecules);
    paint(state, &drawing);
}

void paintBare(benchmark::State &state)
{
    paint(state, makeBareScene().get());
}

BENCHMARK(buildDrawing)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseManualTime();
BENCHMARK(buildBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseManualTime();
BENCHMARK(paintDrawing)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(paintBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();

const bool registered[] = {
    ZelBenchmark::ratio("200 molecules from the database / bare items",
        "buildDrawing/repeats:5/manual_time", "buildBare/repeats:5/manual_time", 5.0),
    ZelBenchmark::ratio("painting 200 molecules / bare items", "paintDrawing/repeats:5/real_time",
        "paintBare/repeats:5/real_time", 3.0),
};

} // namespace
