// Building the item tree of a model, against a bare item model of the same rows.

#include "support/ZelBenchmark.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QStandardItemModel>

namespace {

constexpr int Components = 5;

void buildComponents(benchmark::State &state)
{
    for (auto _ : state) {
        QStandardItemModel model;
        auto *root = new SdcCpx(nullptr);
        model.appendRow(root);
        for (int64_t i = 0; i < state.range(0); ++i) {
            auto *mol = new SdcMol(nullptr);
            mol->setProperty(SdcProperty::ShortName, QStringLiteral("mol"));
            root->addSdcChild(mol, true);
            for (int j = 0; j < Components; ++j) {
                auto *mcp = new SdcMcp(nullptr);
                mcp->setProperty(SdcProperty::ShortName, QStringLiteral("mcp"));
                mol->addSdcMcp(mcp);
            }
        }
        benchmark::DoNotOptimize(root->rowCount());
        state.PauseTiming();
        model.clear();
        state.ResumeTiming();
    }
}

void buildBareRows(benchmark::State &state)
{
    for (auto _ : state) {
        QStandardItemModel model;
        auto *root = new QStandardItem(QStringLiteral("Complex Species: ShortName not defined"));
        model.appendRow(root);
        for (int64_t i = 0; i < state.range(0); ++i) {
            auto *mol = new QStandardItem(QStringLiteral("Molecule %1: mol").arg(i));
            mol->setEditable(false);
            root->appendRow(mol);
            for (int j = 0; j < Components; ++j) {
                auto *mcp = new QStandardItem(QStringLiteral("Molecule component %1: mcp").arg(j));
                mcp->setEditable(false);
                mol->appendRow(mcp);
            }
        }
        benchmark::DoNotOptimize(root->rowCount());
        state.PauseTiming();
        model.clear();
        state.ResumeTiming();
    }
}

BENCHMARK(buildComponents)
    ->Name("tree")
    ->Arg(200)
    ->Arg(10000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(false)
    ->UseRealTime();
BENCHMARK(buildBareRows)
    ->Name("bareTree")
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->UseRealTime();

const bool registered[] = {
    ZelBenchmark::ratio("10,000 molecules of 5 components / bare item model",
        "tree/10000/repeats:5/real_time", "bareTree/10000/repeats:5/real_time", 4.0),
    ZelBenchmark::ratio("cost per component, 100,000 / 1,000", "tree/20000/repeats:5/real_time",
        "tree/200/repeats:5/real_time", 1.3, 20000, 200),
};

} // namespace
