// Saving and loading a molecule, against the same statements through bare prepared statements.

#include "support/BareDatabase.h"
#include "support/ZelBenchmark.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QVariant>

#include <memory>
#include <utility>
#include <vector>

using ZelBenchmark::giveUp;

namespace {

constexpr int Components = 100;
constexpr int Sites = 5;

/// A model in memory that holds the molecule, and what saving and loading it asks of the database.
class Fixture
{
public:
    Fixture()
    {
        if (!m_file.create(QStringLiteral(":memory:")))
            giveUp(m_file.errorText());
        for (int i = 0; i < Components; ++i)
            addComponent(i);
        if (!mol->saveToDb())
            giveUp(db.errorText());
        saving = record([this] { return mol->saveToDb(); });
        loading = record([this] { return load(); });
    }

    /// Whatever is written, molecules are read anew.
    void forgetTypes()
    {
        if (!db.refInsert(QStringLiteral("mol"), mol->getPsiimId(), QString()))
            giveUp(db.errorText());
    }

    bool load()
    {
        SdcMol loaded(&db);
        return loaded.loadFromDb(mol->getPsiimId());
    }

    ZelDbSqlite *file() { return &m_file; }

    ZelDbSqlite m_file;
    ZelDbSqliteModel db{&m_file};
    ZelScene scene{nullptr};
    std::unique_ptr<SdcMol> mol = std::make_unique<SdcMol>(&db);
    std::vector<BareStatement> saving;
    std::vector<BareStatement> loading;

private:
    void addComponent(int index)
    {
        const QRectF rect(index * 80.0, 0.0, 60.0, 40.0);
        ZelEllipseItemMcp *const item = scene.addMcp(rect);
        auto *mcp = new SdcMcp(&db);
        mcp->setProperty(SdcProperty::ShortName, QStringLiteral("c%1").arg(index));
        item->setSdcMcp(mcp);
        mol->addSdcMcp(mcp);
        mcp->addTag(QStringLiteral("P"), QStringLiteral("#ff0000"));
        for (int i = 0; i < Sites; ++i) {
            auto *bst = new SdcBst(&db);
            bst->setProperty(SdcProperty::ShortName, QStringLiteral("s%1_%2").arg(index).arg(i));
            scene.addBst(QRectF(rect.x() + i * 12.0, -6.0, 12.0, 12.0), item)->setSdcBst(bst);
            mcp->addSdcBst(bst);
        }
        if (index > 0)
            scene.drawBackBones(mol->getSdcMcpAtIndex(index - 1)->getZelEllipseItemMcp(), item);
    }

    template <typename F>
    std::vector<BareStatement> record(F &&run)
    {
        std::vector<BareStatement> list;
        m_file.setStatementObserver([&](const QString &text, const QVariantList &values) {
            list.push_back({text.toUtf8(), values});
        });
        const bool good = run();
        m_file.setStatementObserver({});
        if (!good || list.empty())
            giveUp(db.errorText());
        return list;
    }
};

Fixture &fixture()
{
    static Fixture *const instance = new Fixture;
    return *instance;
}

BareDatabase &bare()
{
    static BareDatabase instance(fixture().file(), BareDatabase::Texts::Utf8);
    return instance;
}

void save(benchmark::State &state)
{
    for (auto _ : state) {
        if (!fixture().mol->saveToDb())
            state.SkipWithError("save failed");
    }
    state.counters["statements"] = static_cast<double>(fixture().saving.size());
}

void load(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        fixture().forgetTypes();
        state.ResumeTiming();
        if (!fixture().load())
            state.SkipWithError("load failed");
    }
    state.counters["statements"] = static_cast<double>(fixture().loading.size());
}

void saveBare(benchmark::State &state)
{
    BareDatabase &db = bare();
    for (auto _ : state)
        db.run(fixture().saving);
}

void loadBare(benchmark::State &state)
{
    BareDatabase &db = bare();
    for (auto _ : state)
        db.run(fixture().loading);
}

BENCHMARK(save)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(saveBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(load)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(loadBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();

const bool registered[] = {
    ZelBenchmark::ratio("saving 100 components x 5 sites / bare statements",
        "save/repeats:5/real_time", "saveBare/repeats:5/real_time", 3.0),
    ZelBenchmark::ratio("loading 100 components x 5 sites / bare statements",
        "load/repeats:5/real_time", "loadBare/repeats:5/real_time", 6.0),
};

} // namespace
