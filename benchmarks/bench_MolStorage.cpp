// Saving and loading a molecule, against the same statements through bare prepared statements.

#include "support/ZelBenchmark.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QHash>
#include <QTemporaryDir>
#include <QVariant>

#include <cstdlib>
#include <memory>
#include <sqlite3.h>
#include <utility>
#include <vector>

namespace {

constexpr int Components = 100;
constexpr int Sites = 5;

struct Statement
{
    QByteArray text;
    QVariantList values;
};

[[noreturn]] void giveUp(const QString &why)
{
    std::fprintf(stderr, "bench_MolStorage: %s\n", qPrintable(why));
    std::exit(2);
}

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

    bool load()
    {
        SdcMol loaded(&db);
        return loaded.loadFromDb(mol->getPsiimId());
    }

    bool backupTo(const QString &path) { return m_file.backupTo(path); }

    ZelDbSqlite m_file;
    ZelDbSqliteModel db{&m_file};
    ZelScene scene{nullptr};
    std::unique_ptr<SdcMol> mol = std::make_unique<SdcMol>(&db);
    std::vector<Statement> saving;
    std::vector<Statement> loading;

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
    std::vector<Statement> record(F &&run)
    {
        std::vector<Statement> list;
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

/// The same model through SQLite's C interface: each distinct statement prepared once.
class Bare
{
public:
    Bare()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("copy.zel"));
        if (!fixture().backupTo(path))
            giveUp(QStringLiteral("no backup"));
        sqlite3 *file = nullptr;
        sqlite3_open(path.toUtf8().constData(), &file);
        sqlite3_open(":memory:", &m_db);
        sqlite3_backup *backup = sqlite3_backup_init(m_db, "main", file, "main");
        sqlite3_backup_step(backup, -1);
        sqlite3_backup_finish(backup);
        sqlite3_close(file);
        sqlite3_exec(m_db, "PRAGMA foreign_keys=ON", nullptr, nullptr, nullptr);
    }

    void run(const std::vector<Statement> &statements)
    {
        for (const Statement &statement : statements) {
            sqlite3_stmt *&prepared = m_prepared[statement.text];
            if (!prepared
                && sqlite3_prepare_v2(m_db, statement.text.constData(), -1, &prepared, nullptr)
                    != SQLITE_OK)
                giveUp(QString::fromUtf8(sqlite3_errmsg(m_db)));
            int index = 0;
            for (const QVariant &value : statement.values)
                bind(prepared, ++index, value);
            int code = SQLITE_ROW;
            while ((code = sqlite3_step(prepared)) == SQLITE_ROW) {
                for (int i = 0; i < sqlite3_column_count(prepared); ++i)
                    benchmark::DoNotOptimize(sqlite3_column_text(prepared, i));
            }
            if (code != SQLITE_DONE)
                giveUp(QString::fromUtf8(sqlite3_errmsg(m_db)));
            sqlite3_reset(prepared);
        }
    }

private:
    static void bind(sqlite3_stmt *prepared, int index, const QVariant &value)
    {
        if (value.isNull()) {
            sqlite3_bind_null(prepared, index);
        } else if (value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong) {
            sqlite3_bind_int64(prepared, index, value.toLongLong());
        } else {
            const QByteArray text = value.toString().toUtf8();
            sqlite3_bind_text(
                prepared, index, text.constData(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        }
    }

    sqlite3 *m_db = nullptr;
    QHash<QByteArray, sqlite3_stmt *> m_prepared;
};

Bare &bare()
{
    static Bare *const instance = new Bare;
    return *instance;
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
        if (!fixture().load())
            state.SkipWithError("load failed");
    }
    state.counters["statements"] = static_cast<double>(fixture().loading.size());
}

void saveBare(benchmark::State &state)
{
    Bare &db = bare();
    for (auto _ : state)
        db.run(fixture().saving);
}

void loadBare(benchmark::State &state)
{
    Bare &db = bare();
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
