// Pictures of associations against a graph drawing program.

#include "bench_ReactionModel.h"
#include "support/ZelBenchmark.h"

#include "apps/zelmodel/ZelModelPng.h"
#include "zelModelSupport/support/zgs.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr QSize ComplexSize(100, 60);

/// All pictures as files, with a cache that is empty at first or none at all.
void draw(benchmark::State &state, bool cached)
{
    ReactionModel &model = ReactionModel::instance();
    for (auto _ : state) {
        // A write, so that nothing that was read in the last round is good any more.
        model.db()->caiInsert({{ZelDbColumn::PsiimId, model.associations().first()}});
        QHash<QString, QPixmap> cache;
        for (const QString &id : model.associations()) {
            const QPixmap picture = zgs::getPixMapForAssociation(
                id, ComplexSize, model.db(), cached ? &cache : nullptr);
            if (ZelModelPng::bytesOf(picture.toImage()).isEmpty())
                state.SkipWithError("no picture");
        }
    }
}

void associations(benchmark::State &state)
{
    draw(state, true);
}

void associationsUncached(benchmark::State &state)
{
    draw(state, false);
}

void associationsKept(benchmark::State &state)
{
    ReactionModel &model = ReactionModel::instance();
    QHash<QString, QPixmap> cache;
    for (const QString &id : model.associations())
        zgs::getPixMapForAssociation(id, ComplexSize, model.db(), &cache);
    for (auto _ : state) {
        for (const QString &id : model.associations()) {
            if (zgs::getPixMapForAssociation(id, ComplexSize, model.db(), &cache).isNull())
                state.SkipWithError("no picture");
        }
    }
}

/// The three complexes of each association, all from one process.
void graphProgram(benchmark::State &state)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("neato"));
    if (program.isEmpty()) {
        std::printf("neato is not installed (package graphviz): pictures are not compared\n");
        state.SkipWithError("neato is not installed");
        return;
    }
    const QTemporaryDir dir;
    QFile graphs(dir.filePath(QStringLiteral("graphs.gv")));
    const QByteArray text = ReactionModel::instance().graphs(ComplexSize);
    if (!graphs.open(QIODevice::WriteOnly) || graphs.write(text) != text.size()) {
        state.SkipWithError("the graphs could not be written");
        return;
    }
    graphs.close();
    for (auto _ : state) {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(program, {QStringLiteral("-n2"), QStringLiteral("-Tpng"), graphs.fileName()});
        if (!process.waitForFinished(-1) || process.exitCode() != 0)
            state.SkipWithError("neato failed");
    }
}

BENCHMARK(associations)->Unit(benchmark::kMillisecond)->Repetitions(3)->UseRealTime();
BENCHMARK(associationsUncached)->Unit(benchmark::kMillisecond)->Repetitions(3)->UseRealTime();
BENCHMARK(associationsKept)->Unit(benchmark::kMillisecond)->Repetitions(3)->UseRealTime();
BENCHMARK(graphProgram)->Unit(benchmark::kMillisecond)->Repetitions(3)->UseRealTime();

const bool registered[] = {
    ZelBenchmark::ratio("1000 pictures of associations / graph drawing program",
        "associations/repeats:3/real_time", "graphProgram/repeats:3/real_time", 1.0 / 8.0),
    ZelBenchmark::ratio("the same, each species anew / graph drawing program",
        "associationsUncached/repeats:3/real_time", "graphProgram/repeats:3/real_time", 1.0 / 4.0),
    ZelBenchmark::ratio("the same again / the first time", "associationsKept/repeats:3/real_time",
        "associations/repeats:3/real_time", 0.1),
};

} // namespace
