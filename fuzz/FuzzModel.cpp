#include "FuzzModel.h"

#include <QApplication>
#include <QStandardPaths>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

bool refused = false;

// Lines are made but not shown: a fuzzer causes millions.
void watch(QtMsgType, const QMessageLogContext &, const QString &line)
{
    if (line.contains(QLatin1String("cannot be read"))
        || line.contains(QLatin1String("not readable")))
        refused = true;
}

struct Part
{
    const char *mol;
    const char *mcp;
    QStringList features;
    QStringList sites;
};

bool fill(ZelDbSqliteModel &db)
{
    using namespace ZelDbColumn;
    const QString none;
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    bool good = true;
    for (const char *mol : {"mol1", "mol2"})
        good = good && db.molInsert({{PsiimId, s(mol)}, {ShortName, s(mol)}});
    const Part parts[] = {{"mol1", "mcp1", {s("P"), s("Q"), s("R")}, {s("bst1"), s("bst2")}},
        {"mol1", "mcp2", {}, {s("bst3")}}, {"mol1", "mcp3", {s("X")}, {}},
        {"mol2", "mcp4", {s("P")}, {s("bst4"), s("bst5")}}};
    int mcpPos = 0;
    for (const Part &part : parts) {
        good = good
            && db.mcpInsert({{PsiimId, s(part.mcp)}, {OwnerPsiimId, s(part.mol)},
                {PosIndex, QString::number(mcpPos++ % 3)}, {ShortName, s(part.mcp)}});
        for (int i = 0; i < part.features.size(); ++i)
            good = good && db.mcpInsertState(s(part.mcp), part.features.at(i), s("#336699"), i);
        for (int i = 0; i < part.sites.size(); ++i)
            good = good
                && db.bstInsert({{PsiimId, part.sites.at(i)}, {OwnerPsiimId, s(part.mcp)},
                    {PosIndex, QString::number(i)}, {ShortName, part.sites.at(i)}});
    }
    good = good && db.molInsertMcpMcp(s("mol1"), 0, 1) && db.molInsertMcpMcp(s("mol1"), 1, 2);
    good = good && db.cpxInsert(s("cpx1"), s("C"), none, none, none, s("f"), none, s("m"), s("0"));
    int molPos = 0;
    for (const char *mol : {"mol1", "mol2", "mol1"})
        good = good && db.cpxInsertMol(s("cpx1"), s(mol), QString::number(molPos++));
    return good && db.cpxInsertBstBst(s("cpx1"), s("0"), s("bst1"), s("1"), s("bst4"), none)
        && db.cpxInsertBstBst(s("cpx1"), s("1"), s("bst5"), s("2"), s("bst1"), none)
        && db.cpaInsert(s("cpa1"), s("cpx1"), none, s("<cpx/>"), s("a"));
}

} // namespace

FuzzModel &FuzzModel::instance()
{
    static auto *const model = new FuzzModel; // outlives whatever the process does at its end
    return *model;
}

FuzzModel::FuzzModel()
{
    require(file.create(QStringLiteral(":memory:")) && fill(db), "a model", db.errorText());
}

FuzzInput::FuzzInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return;
    mode = data[0] - '0';
    text = QString::fromUtf8(
        reinterpret_cast<const char *>(data) + 1, static_cast<qsizetype>(size) - 1);
}

bool takeRefusal()
{
    return std::exchange(refused, false);
}

void require(bool good, const char *what, const QString &actual, const QString &expected)
{
    if (good)
        return;
    std::fprintf(stderr, "expected %s\n  actual   %s\n  expected %s\n", what, qPrintable(actual),
        qPrintable(expected));
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    static int count = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    static const auto *const app = new QApplication(count, arguments);
    Q_UNUSED(app);
    qInstallMessageHandler(watch);
    return 0;
}
