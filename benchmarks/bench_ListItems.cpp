// Lists of records against selecting the same rows and making bare list entries.

#include "support/ZelBenchmark.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/support/zgs.h"

#include <QStandardItem>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sqlite3.h>
#include <vector>

namespace C = ZelDbColumn;

namespace {

constexpr int RecordsOfKind = 2500;

[[noreturn]] void giveUp(const QString &why)
{
    std::fprintf(stderr, "bench_ListItems: %s\n", qPrintable(why));
    std::exit(2);
}

struct Listed
{
    int kind;
    QString psiimId;
};

struct Statement
{
    QByteArray text;
    QByteArray value;
};

std::unique_ptr<QStandardItem> itemOf(ZelDbSqliteModel *db, const Listed &listed)
{
    return std::unique_ptr<QStandardItem>(zgs::createItem(
        db, QSize(100, 60), {}, listed.psiimId, listed.kind, true, {}, true, {}, nullptr, {}));
}

/// A model in memory with records of the kinds, and the statements that listing them asks.
class Model
{
public:
    static Model &instance()
    {
        static Model *const model = new Model;
        return *model;
    }

    std::vector<Listed> list;
    std::vector<Statement> statements;
    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};

private:
    Model()
    {
        const QString layout = QString(600, u'x');
        if (!file.create(QStringLiteral(":memory:")))
            giveUp(file.errorText());
        ZelDbTransaction transaction(&file);
        for (int i = 0; i < RecordsOfKind; ++i) {
            const auto id = [i](const char *tag) {
                return QLatin1String(tag) + QString::number(i);
            };
            const QString name = QStringLiteral("name%1").arg(i);
            db.molInsert({{C::PsiimId, id("mol")}, {C::ShortName, name},
                {C::Location, QLatin1String(i % 2 ? "Membrane Associated" : "Freely Diffusing")},
                {C::GraphicsInfo, layout}});
            db.mliInsert(
                {{C::PsiimId, id("mli")}, {C::ShortName, name}, {C::GraphicsInfo, layout}});
            db.cpxInsert(id("cpx"), name, name, {}, {}, id("finger"), layout, id("mol"), {});
            db.cpaInsert(id("cpa"), id("cpx"), {}, id("state"), name);
            db.degInsert({{C::PsiimId, id("deg")}, {C::DegradationCpa, id("cpa")},
                {C::DegradationRate, QStringLiteral("0.5")}});
            list.push_back({zgs::ListedMol, id("mol")});
            list.push_back({zgs::ListedMli, id("mli")});
            list.push_back({zgs::ListedCpx, id("cpx")});
            list.push_back({zgs::ListedCpa, id("cpa")});
        }
        if (!transaction.commit())
            giveUp(db.errorText());
        file.setStatementObserver([this](const QString &text, const QVariantList &values) {
            statements.push_back({text.toUtf8(), values.value(0).toString().toUtf8()});
        });
        for (const Listed &listed : list)
            itemOf(&db, listed);
        file.setStatementObserver({});
    }
};

/// The same model through SQLite's C interface.
class Bare
{
public:
    Bare()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("copy.zel"));
        if (!Model::instance().file.backupTo(path))
            giveUp(QStringLiteral("no backup"));
        sqlite3 *file = nullptr;
        sqlite3_open(path.toUtf8().constData(), &file);
        sqlite3_open(":memory:", &m_db);
        sqlite3_backup *backup = sqlite3_backup_init(m_db, "main", file, "main");
        sqlite3_backup_step(backup, -1);
        sqlite3_backup_finish(backup);
        sqlite3_close(file);
    }

    void select(const Statement &statement)
    {
        sqlite3_stmt *&prepared = m_prepared[statement.text];
        if (!prepared
            && sqlite3_prepare_v2(m_db, statement.text.constData(), -1, &prepared, nullptr)
                != SQLITE_OK)
            giveUp(QString::fromUtf8(sqlite3_errmsg(m_db)));
        sqlite3_bind_text(prepared, 1, statement.value.constData(),
            static_cast<int>(statement.value.size()), SQLITE_TRANSIENT);
        while (sqlite3_step(prepared) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(prepared); ++i)
                benchmark::DoNotOptimize(sqlite3_column_text16(prepared, i)); // as texts need it
        }
        sqlite3_reset(prepared);
    }

private:
    sqlite3 *m_db = nullptr;
    QHash<QByteArray, sqlite3_stmt *> m_prepared;
};

void listing(benchmark::State &state)
{
    Model &model = Model::instance();
    for (auto _ : state) {
        std::vector<std::unique_ptr<QStandardItem>> items;
        for (const Listed &listed : model.list)
            items.push_back(itemOf(&model.db, listed));
        if (items.back()->text().isEmpty())
            state.SkipWithError("no text");
    }
}

void listingBare(benchmark::State &state)
{
    static Bare *const bare = new Bare;
    const QString text = QStringLiteral("Complex: name1  - - ( degradation rate: 0.5/s )");
    for (auto _ : state) {
        for (const Statement &statement : Model::instance().statements)
            bare->select(statement);
        std::vector<std::unique_ptr<QStandardItem>> items;
        for (std::size_t i = 0; i < Model::instance().list.size(); ++i)
            items.push_back(std::make_unique<QStandardItem>(text));
    }
}

BENCHMARK(listing)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(listingBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();

const bool registered = ZelBenchmark::ratio("listing 10000 records / bare rows and entries",
    "listing/repeats:5/real_time", "listingBare/repeats:5/real_time", 3.0);

} // namespace
