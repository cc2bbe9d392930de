// The program zelmodel as a whole, from its start to its end: lists against sqlite3, which answers
// the same from the same file, and the report against its pictures alone.

#include "support/ZelBenchmark.h"

#include "exchange/ClosedFamily.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/import/ZelBnglImport.h"

#include <QProcess>
#include <QTemporaryDir>

namespace {

enum Size { Small, Large };

/// Species of one complex that differ in the states of a molecule.
QByteArray species(int count)
{
    QByteArray source("begin molecule types\n A(b");
    for (const char *site : {"w", "x", "y", "z"})
        source += QByteArray(",") + site + "~0~1~2~3~4~5~6~7~8~9";
    source += ")\n B(a)\nend molecule types\nbegin seed species\n";
    for (int i = 0; i < count; ++i) {
        const QByteArray digits = QByteArray::number(10000 + i);
        source += QByteArray(" A(b!1,w~") + digits[1] + ",x~" + digits[2] + ",y~" + digits[3]
            + ",z~" + digits[4] + ").B(a!1) 1\n";
    }
    return source + "end seed species\n";
}

/// Files that are made once for all measurements.
class Models
{
public:
    Models()
    {
        import(path(Small), species(10));
        import(path(Large), species(10000));
        import(family(), ClosedFamily(5, false).source());
    }

    static Models &instance()
    {
        static Models models;
        return models;
    }

    QString path(Size size) const { return file(size == Small ? "small.zel" : "large.zel"); }
    /// Of 1,026 species, each another complex.
    QString family() const { return file("family.zel"); }
    QString file(const char *name) const { return m_dir.filePath(QLatin1String(name)); }

private:
    static void import(const QString &path, const QByteArray &source)
    {
        ZelDbSqlite file;
        if (!file.create(path))
            ZelBenchmark::giveUp(file.errorText());
        ZelDbSqliteModel db(&file);
        ZelBnglImport importer(&db);
        if (!importer.importModel(ZelBnglParser::parse(source, QStringLiteral("source.bngl"))))
            ZelBenchmark::giveUp(importer.report().error);
    }

    QTemporaryDir m_dir;
};

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        ZelBenchmark::giveUp(
            program + QLatin1String(": ") + QString::fromLocal8Bit(process.readAllStandardError()));
    }
}

void runZelmodel(const QStringList &arguments)
{
    run(QStringLiteral(ZELMODEL_BINARY), arguments);
}

void askSqlite(const QString &path, const QString &query)
{
    run(QStringLiteral("sqlite3"), {QStringLiteral("-readonly"), path, query});
}

void listCounts(benchmark::State &state)
{
    const QString path = Models::instance().path(Small);
    for (auto _ : state)
        runZelmodel({QStringLiteral("list"), path});
}

void queryCounts(benchmark::State &state)
{
    const QString path = Models::instance().path(Small);
    QStringList counts;
    for (const char *table : {"mol", "mcp", "mcpState", "bst", "mli", "cpx", "cai", "cad", "trn",
             "pdn", "deg", "par", "obs", "sed", "cmp", "utr"})
        counts.append(QLatin1String("SELECT count(*) FROM ") + QLatin1String(table));
    counts.append(QStringLiteral("SELECT wellDefined, count(*) FROM cpa GROUP BY wellDefined"));
    for (auto _ : state)
        askSqlite(path, counts.join(u';'));
}

void listSpecies(benchmark::State &state)
{
    const QString path = Models::instance().path(Large);
    for (auto _ : state)
        runZelmodel({QStringLiteral("list"), path, QStringLiteral("species")});
}

void querySpecies(benchmark::State &state)
{
    const QString path = Models::instance().path(Large);
    for (auto _ : state) {
        askSqlite(path,
            QStringLiteral("SELECT psiimId, shortName, 'of ' || cpx FROM cpa WHERE wellDefined "
                           "ORDER BY rowNumber"));
    }
}

void writeReport(benchmark::State &state)
{
    const Models &models = Models::instance();
    for (auto _ : state) {
        runZelmodel({QStringLiteral("report"), QStringLiteral("-q"), QStringLiteral("-o"),
            models.file("report"), models.family()});
    }
}

/// The kinds of which the report on that model has pictures.
void renderPictures(benchmark::State &state)
{
    const Models &models = Models::instance();
    for (auto _ : state) {
        for (const char *kind : {"molecules", "species"}) {
            runZelmodel({QStringLiteral("render"), QStringLiteral("--all"),
                QStringLiteral("--kind"), QLatin1String(kind), QStringLiteral("-o"),
                models.file("pictures"), models.family()});
        }
    }
}

void apply(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(9)->UseRealTime();
}

BENCHMARK(listCounts)->Name("listCounts")->Apply(apply);
BENCHMARK(queryCounts)->Name("queryCounts")->Apply(apply);
BENCHMARK(listSpecies)->Name("listSpecies")->Apply(apply);
BENCHMARK(querySpecies)->Name("querySpecies")->Apply(apply);
BENCHMARK(writeReport)->Name("report")->Apply(apply);
BENCHMARK(renderPictures)->Name("pictures")->Apply(apply);

const bool registered[] = {
    ZelBenchmark::ratio("list of a small model / sqlite3", "listCounts/repeats:9/real_time",
        "queryCounts/repeats:9/real_time", 10.0),
    ZelBenchmark::ratio("list of 10,000 species / sqlite3", "listSpecies/repeats:9/real_time",
        "querySpecies/repeats:9/real_time", 4.0),
    ZelBenchmark::ratio("report on 1,026 species / its pictures alone",
        "report/repeats:9/real_time", "pictures/repeats:9/real_time", 1.3),
};

} // namespace
