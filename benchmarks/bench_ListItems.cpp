// Lists of records against selecting the same rows and making bare list entries.

#include "support/BareDatabase.h"
#include "support/ZelBenchmark.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/support/zgs.h"

#include <QStandardItem>

#include <memory>
#include <vector>

namespace C = ZelDbColumn;

using ZelBenchmark::giveUp;

namespace {

constexpr int RecordsOfKind = 2500;

struct Listed
{
    int kind;
    QString psiimId;
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
    std::vector<BareStatement> statements;
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
            statements.push_back({text.toUtf8(), values});
        });
        for (const Listed &listed : list)
            itemOf(&db, listed);
        file.setStatementObserver({});
    }
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
    static BareDatabase bare(&Model::instance().file, BareDatabase::Texts::Utf16);
    const QString text = QStringLiteral("Complex: name1  - - ( degradation rate: 0.5/s )");
    for (auto _ : state) {
        bare.run(Model::instance().statements);
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
