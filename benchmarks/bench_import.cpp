// Importing lists of species with their drawing, against building and saving the same complexes by
// direct calls.

#include "support/ZelBenchmark.h"

#include "exchange/ClosedFamily.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/import/ZelBnglImport.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QTemporaryDir>

#include <malloc.h>

#include <algorithm>
#include <memory>

namespace {

ClosedFamily family(const benchmark::State &state)
{
    return {static_cast<int>(state.range(0)), false};
}

/// A new model file for each round.
struct Model
{
    Model() { file.create(dir.filePath(QStringLiteral("m.zel"))); }

    QTemporaryDir dir;
    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};
};

ZelBnglModel read(const ClosedFamily &family)
{
    return ZelBnglParser::parse(family.source(), QStringLiteral("family.bngl"));
}

void importFamily(benchmark::State &state)
{
    const ClosedFamily family = ::family(state);
    const QByteArray source = family.source();
    for (auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<Model>();
        state.ResumeTiming();
        ZelBnglImport importer(&model->db);
        if (!importer.importModel(ZelBnglParser::parse(source, QStringLiteral("family.bngl")))
            || importer.report().species != family.speciesCount())
            state.SkipWithError("not imported");
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
}

/// The molecules' ids, S first.
struct Molecules
{
    explicit Molecules(const ZelDbSqliteModel &db)
    {
        for (const QString &id : db.molGetListPsiimId()) {
            const QString name = db.molGetHashInfo(id).value(ZelDbColumn::ShortName);
            (name == QLatin1String("S") ? s : name == QLatin1String("K") ? k : f) = id;
        }
    }

    QString s;
    QString k;
    QString f;
};

SdcMol *addMolecule(SdcCpx *cpx, const QString &id)
{
    auto *const mol = new SdcMol(cpx->getZelDbSqliteModel());
    cpx->addSdcChild(mol, true);
    mol->loadFromDb(id);
    return mol;
}

SdcBst *siteOf(SdcMol *mol, int component)
{
    return mol->getSdcMcpAtIndex(component)->getListSdcBst().first();
}

bool save(SdcCpx *cpx)
{
    return (cpx->adoptStoredSpecies() || cpx->saveToDbCpx()) && cpx->saveToDbCpa();
}

bool saveAlone(ZelDbSqliteModel &db, const QString &molecule)
{
    SdcCpx cpx(&db);
    siteOf(addMolecule(&cpx, molecule), 0)->setBindingStatus(BindingStatusUnbound);
    return save(&cpx);
}

bool saveSpecies(
    ZelDbSqliteModel &db, const Molecules &molecules, const std::vector<ClosedFamily::Site> &sites)
{
    SdcCpx cpx(&db);
    SdcMol *const s = addMolecule(&cpx, molecules.s);
    for (int i = 0; i < static_cast<int>(sites.size()); ++i) {
        const ClosedFamily::Site &site = sites[static_cast<size_t>(i)];
        SdcMcp *const mcp = s->getSdcMcpAtIndex(i);
        const QList<ZelRectItemMcpSticky *> stickies = mcp->getListSticky();
        for (int state = 0; state < 2; ++state)
            stickies.at(state)->setStateType(
                (state == 1) == site.isP ? ComponentStateOn : ComponentStateOff, false);
        mcp->updateStatePropertyFromSticky();
        siteOf(s, i)->setBindingStatus(site.isBound ? BindingStatusBound : BindingStatusUnbound);
        if (!site.isBound)
            continue;
        SdcMol *const enzyme = addMolecule(&cpx, site.isP ? molecules.f : molecules.k);
        siteOf(enzyme, 0)->setBindingStatus(BindingStatusBound);
        auto *const bond = new SdcBstBstCpx(&db, &cpx);
        bond->addSdcBst(siteOf(s, i));
        bond->addSdcBst(siteOf(enzyme, 0));
        cpx.addSdcBstBstCpx(bond);
    }
    return save(&cpx);
}

void saveFamily(benchmark::State &state)
{
    const ClosedFamily family = ::family(state);
    ZelBnglModel types = read(family);
    types.species.clear();
    const auto list = family.listed();
    for (auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<Model>();
        bool good = ZelBnglImport(&model->db).importModel(types);
        const Molecules molecules(model->db);
        state.ResumeTiming();
        ZelDbTransaction transaction(&model->file);
        good = good && saveAlone(model->db, molecules.k) && saveAlone(model->db, molecules.f);
        for (const std::vector<ClosedFamily::Site> &sites : list)
            good = good && saveSpecies(model->db, molecules, sites);
        good = transaction.commit() && good;
        state.PauseTiming();
        if (!good || model->db.cpaGetListPsiimId().size() != family.speciesCount())
            state.SkipWithError("not saved");
        model.reset();
        state.ResumeTiming();
    }
}

/// The most bytes that are in use at once, over those before.
void importMemory(benchmark::State &state)
{
    const ClosedFamily family = ::family(state);
    const QByteArray source = family.source();
    for (auto _ : state) {
        Model model;
        const size_t before = mallinfo2().uordblks;
        size_t most = before;
        ZelBnglImport importer(&model.db);
        importer.setProgress([&most](int done, int) {
            if (done % 16 == 0)
                most = std::max(most, mallinfo2().uordblks);
            return true;
        });
        if (!importer.importModel(ZelBnglParser::parse(source, QStringLiteral("family.bngl"))))
            state.SkipWithError("not imported");
        most = std::max(most, mallinfo2().uordblks);
        state.counters["bytes"] = static_cast<double>(most - before);
    }
} // namespace

void apply(benchmark::internal::Benchmark *benchmark)
{
    benchmark->DenseRange(4, 6)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(5)
        ->UseRealTime();
}

BENCHMARK(importFamily)->Name("import")->Apply(apply);
BENCHMARK(saveFamily)->Name("save")->Apply(apply);
BENCHMARK(importMemory)->Name("importMemory")->DenseRange(4, 6)->Iterations(1);

const bool registered[] = {
    ZelBenchmark::ratio("258 species: import / direct calls",
        "import/4/iterations:1/repeats:5/real_time", "save/4/iterations:1/repeats:5/real_time",
        3.0),
    ZelBenchmark::ratio("1,026 species: import / direct calls",
        "import/5/iterations:1/repeats:5/real_time", "save/5/iterations:1/repeats:5/real_time",
        3.0),
    ZelBenchmark::ratio("4,098 species: import / direct calls",
        "import/6/iterations:1/repeats:5/real_time", "save/6/iterations:1/repeats:5/real_time",
        3.0),
    ZelBenchmark::ratio("import, cost per species, 1,026 / 258",
        "import/5/iterations:1/repeats:5/real_time", "import/4/iterations:1/repeats:5/real_time",
        1.3, 1026, 258),
    ZelBenchmark::ratio("import, cost per species, 4,098 / 258",
        "import/6/iterations:1/repeats:5/real_time", "import/4/iterations:1/repeats:5/real_time",
        1.3, 4098, 258),
    ZelBenchmark::ratio("import, memory per species, 4,098 / 258",
        "importMemory/6/iterations:1#bytes", "importMemory/4/iterations:1#bytes", 1.1, 4098, 258),
};

} // namespace
