// Reading rules, against a JSON parser on a text of the same size.

#include "support/ZelBenchmark.h"

#include "zelExchange/bngl/ZelBnglParser.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonParseError>

namespace {

/// Rules of several molecules, no two alike, of this many megabytes.
QByteArray rules(int64_t megabytes)
{
    const qsizetype size = static_cast<qsizetype>(megabytes) << 20;
    QByteArray text("begin reaction rules\n");
    text.reserve(size + 1024);
    for (int i = 0; text.size() < size; ++i) {
        const QByteArray n = QByteArray::number(i % 5000);
        text += "  bind" + QByteArray::number(i) + ": Receptor" + n
            + "(ligand,tail~U) + Ligand(site" + n + "!?,arm!1).Adaptor(arm!1,tail~P) <-> Receptor"
            + n + "(ligand!2,tail~U).Ligand(site" + n + "!?,arm!1).Adaptor(arm!1,tail~P!2) kf" + n
            + "/(NA*vol), 2*kr" + n + " # reversible\n";
    }
    return text + "end reaction rules\n";
}

/// The same as an array of objects, in about the same number of bytes.
QByteArray json(int64_t megabytes)
{
    const qsizetype size = static_cast<qsizetype>(megabytes) << 20;
    QByteArray text("[\n");
    text.reserve(size + 1024);
    for (int i = 0; text.size() < size; ++i) {
        const QByteArray n = QByteArray::number(i % 5000);
        if (i > 0)
            text += ",\n";
        text += "{\"name\":\"bind" + QByteArray::number(i) + "\",\"in\":[[{\"mol\":\"Receptor" + n
            + "\",\"sites\":[[\"ligand\"],[\"tail\",\"U\"]]}],[{\"mol\":\"Ligand\",\"sites\":[["
              "\"site"
            + n + "\",\"?\"],[\"arm\",1]]}]],\"rates\":[\"kf" + n + "/(NA*vol)\",\"2*kr" + n
            + "\"]}";
    }
    return text + "\n]\n";
}

void parseRules(benchmark::State &state)
{
    const QByteArray text = rules(state.range(0));
    for (auto _ : state) {
        const ZelBnglModel model = ZelBnglParser::parse(text, QStringLiteral("rules.bngl"));
        if (!model.isValid())
            state.SkipWithError("not read");
        benchmark::DoNotOptimize(model.rules.size());
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

void parseJson(benchmark::State &state)
{
    const QByteArray text = json(state.range(0));
    for (auto _ : state) {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(text, &error);
        if (document.isNull())
            state.SkipWithError("not read");
        benchmark::DoNotOptimize(document.isArray());
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

void inMilliseconds(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1)
        ->Arg(10)
        ->Arg(50)
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(5)
        ->UseRealTime();
}

BENCHMARK(parseRules)->Name("rules")->Apply(inMilliseconds);
BENCHMARK(parseJson)->Name("json")->Apply(inMilliseconds);

const bool registered[] = {
    ZelBenchmark::ratio(
        "1 MB of rules / JSON", "rules/1/repeats:5/real_time", "json/1/repeats:5/real_time", 3.0),
    ZelBenchmark::ratio("10 MB of rules / JSON", "rules/10/repeats:5/real_time",
        "json/10/repeats:5/real_time", 3.0),
    ZelBenchmark::ratio("50 MB of rules / JSON", "rules/50/repeats:5/real_time",
        "json/50/repeats:5/real_time", 3.0),
    ZelBenchmark::ratio("cost per MB, 50 MB / 10 MB", "rules/50/repeats:5/real_time",
        "rules/10/repeats:5/real_time", 1.2, 50, 10),
    ZelBenchmark::ratio("cost per MB, 50 MB / 1 MB", "rules/50/repeats:5/real_time",
        "rules/1/repeats:5/real_time", 1.2, 50, 1),
};

} // namespace
