// Loading stored species from a model file, against the calls that make the same parts in memory.

#include "bench_SpeciesModel.h"
#include "support/ZelBenchmark.h"

#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <memory>
#include <vector>

namespace {

const BenchSpecies::Model &model()
{
    static const BenchSpecies::Model *const instance = new BenchSpecies::Model;
    return *instance;
}

/// Times what makes all species; what is made is destroyed outside the time.
template <typename Make>
void measure(benchmark::State &state, bool drawn, Make &&make)
{
    const int count = model().count();
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::unique_ptr<ZelScene>> scenes(static_cast<std::size_t>(count));
        for (auto &scene : scenes)
            scene = drawn ? std::make_unique<ZelScene>(nullptr) : nullptr;
        std::vector<std::unique_ptr<SdcCpx>> species;
        species.reserve(scenes.size());
        state.ResumeTiming();
        for (int i = 0; i < count; ++i)
            species.push_back(make(i, scenes[static_cast<std::size_t>(i)].get()));
        state.PauseTiming();
        species.clear();
        scenes.clear();
        state.ResumeTiming();
    }
    state.counters["us/species"] = benchmark::Counter(static_cast<double>(count) * 1e-6,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void load(benchmark::State &state, bool drawn)
{
    measure(state, drawn, [](int i, ZelScene *scene) { return model().load(i, scene); });
}

void make(benchmark::State &state, bool drawn)
{
    measure(state, drawn,
        [](int i, ZelScene *scene) { return BenchSpecies::make(model().parts(i), scene); });
}

void apply(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
}

BENCHMARK_CAPTURE(load, species, false)->Apply(apply);
BENCHMARK_CAPTURE(make, species, false)->Apply(apply);
BENCHMARK_CAPTURE(load, drawnSpecies, true)->Apply(apply);
BENCHMARK_CAPTURE(make, drawnSpecies, true)->Apply(apply);

const bool registered[] = {
    ZelBenchmark::ratio("1,000 species: loading / making the same parts",
        "load/species/repeats:5/real_time", "make/species/repeats:5/real_time", 2.0),
    ZelBenchmark::ratio("1,000 species, each on a scene: loading / making",
        "load/drawnSpecies/repeats:5/real_time", "make/drawnSpecies/repeats:5/real_time", 2.0),
};

} // namespace
