#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/ZelBnglParser.h"
#include "zelExchange/ZelBnglWriter.h"

#include <QDir>

#include <algorithm>

/// Models that others wrote; the environment variable ZEL_CORPUS names their folder.
class tst_ZelBnglCorpus : public ZelTest
{
    Q_OBJECT

private slots:
    void readsEveryModel_data();
    void readsEveryModel();
    void tellsSpeciesApart_data();
    void tellsSpeciesApart();
    void tellsPatternsApart_data();
    void tellsPatternsApart();
    void translatesRules_data();
    void translatesRules();
};

namespace {

constexpr int Rounds = 20; // each shuffled anew

QString corpus()
{
    return qEnvironmentVariable("ZEL_CORPUS");
}

QString pathOf(const QString &model, const char *suffix)
{
    return QDir(corpus()).filePath(QStringLiteral("models/") + model + QLatin1String(suffix));
}

} // namespace

#define NEEDS_CORPUS                                                                               \
    if (corpus().isEmpty())                                                                        \
    QSKIP("Set ZEL_CORPUS to the folder of the models to run this test.")

void tst_ZelBnglCorpus::readsEveryModel_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("types");
    QTest::addColumn<int>("rules");
    QTest::addColumn<int>("reversible");
    QTest::addColumn<int>("species");
    QTest::addColumn<int>("reactions");
    const auto add = [](const char *model, int types, int rules, int reversible, int species,
                         int reactions) {
        QTest::newRow(model) << QString::fromLatin1(model) << types << rules << reversible
                             << species << reactions;
    };
    // Types are declared ones.
    add("simple_system", 2, 4, 0, 4, 4);
    add("heise", 2, 4, 0, 5, 8);
    add("Repressilator", 10, 21, 6, 16, 30);
    add("tlbr", 2, 3, 3, 19, 29);
    add("blbr", 0, 3, 3, 20, 92);
    add("toy-jim", 0, 8, 4, 25, 101);
    add("Motivating_example_cBNGL", 11, 30, 13, 78, 354);
}

void tst_ZelBnglCorpus::readsEveryModel()
{
    NEEDS_CORPUS;
    QFETCH(const QString, model);
    QFETCH(const int, types);
    QFETCH(const int, rules);
    QFETCH(const int, reversible);
    QFETCH(const int, species);
    QFETCH(const int, reactions);

    const ZelBnglModel source = ZelBnglParser::parseFile(pathOf(model, ".bngl"));
    QCOMPARE(source.errorTexts(), QStringList());
    QCOMPARE(int(source.moleculeTypes.size()), types);
    QCOMPARE(int(source.rules.size()), rules);
    QCOMPARE(int(std::count_if(source.rules.begin(), source.rules.end(),
                 [](const ZelBnglRule &rule) { return rule.isReversible; })),
        reversible);

    const ZelBnglModel network = ZelBnglParser::parseFile(pathOf(model, ".net"));
    QCOMPARE(network.errorTexts(), QStringList());
    QCOMPARE(int(network.species.size()), species);
    QCOMPARE(int(network.species.back().index), species);
    QCOMPARE(int(network.reactions.size()), reactions);

    for (const ZelBnglModel &read : {source, network}) {
        const QByteArray written = ZelBnglWriter::write(read);
        const ZelBnglModel again = ZelBnglParser::parse(written, read.fileName());
        QCOMPARE(again.errorTexts(), QStringList());
        QCOMPARE(ZelBnglWriter::write(again), written);
    }
}

void tst_ZelBnglCorpus::tellsSpeciesApart_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("species");
    QTest::addColumn<int>("leftOut");
    QTest::newRow("simple_system") << QStringLiteral("simple_system") << 4 << 0;
    QTest::newRow("heise") << QStringLiteral("heise") << 5 << 0;
    QTest::newRow("Repressilator") << QStringLiteral("Repressilator") << 16 << 0;
    QTest::newRow("tlbr") << QStringLiteral("tlbr") << 19 << 0;
    QTest::newRow("blbr") << QStringLiteral("blbr") << 20 << 0;
    QTest::newRow("toy-jim") << QStringLiteral("toy-jim") << 25 << 0;
    QTest::newRow("Motivating_example_cBNGL")
        << QStringLiteral("Motivating_example_cBNGL") << 72 << 6;
}

void tst_ZelBnglCorpus::tellsSpeciesApart()
{
    NEEDS_CORPUS;
    QFETCH(const QString, model);
    QFETCH(const int, species);
    QFETCH(const int, leftOut);
    QRandomGenerator random(7);
    ZelBnglModel network = ZelBnglParser::parseFile(pathOf(model, ".net"));
    network.rules.clear();
    ImportStage original;
    QVERIFY2(original.import(network), qPrintable(original.report().error));
    QCOMPARE(int(original.identities().size()), species);
    for (int round = 0; round < Rounds; ++round) {
        ImportStage stage;
        QVERIFY2(stage.import(shuffled(network, random)), qPrintable(stage.report().error));
        QCOMPARE(stage.report().species, species);
        QCOMPARE(int(stage.report().losses.size()), leftOut);
        QCOMPARE(stage.identities(), original.identities());
    }
}

void tst_ZelBnglCorpus::tellsPatternsApart_data()
{
    QTest::addColumn<QString>("model");
    for (const char *model : {"simple_system", "heise", "Repressilator", "tlbr", "blbr", "toy-jim",
             "Motivating_example_cBNGL"})
        QTest::newRow(model) << QString::fromLatin1(model);
}

void tst_ZelBnglCorpus::tellsPatternsApart()
{
    NEEDS_CORPUS;
    QFETCH(const QString, model);
    QRandomGenerator random(7);
    const ZelBnglModel source = ZelBnglParser::parseFile(pathOf(model, ".bngl"));
    QStringList identities;
    for (int round = 0; round <= Rounds; ++round) {
        ImportStage stage;
        QVERIFY2(stage.import(shuffled(source, random)), qPrintable(stage.report().error));
        if (round == 0)
            identities = stage.identities();
        QCOMPARE(stage.identities(), identities);
    }
    QVERIFY(identities.size() > static_cast<qsizetype>(source.species.size()));
}

void tst_ZelBnglCorpus::translatesRules_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QList<int>>("kinds");
    QTest::addColumn<QList<int>>("linesUntranslated");
    const auto add = [](const char *model, const QList<int> &kinds, const QList<int> &lines) {
        QTest::newRow(model) << QString::fromLatin1(model) << kinds << lines;
    };
    // Associations, dissociations, transformations, productions, degradations.
    add("simple_system", {1, 1, 1, 0, 0}, {74});
    add("heise", {0, 0, 0, 2, 1}, {28});
    add("Repressilator", {6, 6, 0, 9, 0}, {58, 59, 66, 67, 74, 75});
    add("tlbr", {3, 3, 0, 0, 0}, {});
    add("blbr", {2, 2, 0, 0, 0}, {23});
    add("Motivating_example_cBNGL", {9, 9, 4, 4, 0},
        {109, 112, 113, 116, 126, 135, 150, 151, 154, 155, 158, 159, 169});
    add("toy-jim", {4, 4, 2, 0, 0}, {77, 81});
}

void tst_ZelBnglCorpus::translatesRules()
{
    NEEDS_CORPUS;
    QFETCH(const QString, model);
    QFETCH(const QList<int>, kinds);
    QFETCH(const QList<int>, linesUntranslated);
    ZelBnglModel source = ZelBnglParser::parseFile(pathOf(model, ".bngl"));
    source.actions.clear();
    ImportStage stage;
    QVERIFY2(stage.import(source), qPrintable(stage.report().error));
    const ZelImportReport &report = stage.report();
    QCOMPARE((QList<int>{report.associations, report.dissociations, report.transformations,
                 report.productions, report.degradations}),
        kinds);
    QList<int> lines;
    for (const ZelImportReport::Loss &loss : report.losses) {
        QVERIFY(loss.isKept);
        lines.append(loss.line);
    }
    QCOMPARE(lines, linesUntranslated);
    QCOMPARE(stage.db.utrGetListPsiimId().size(), lines.size());
    QCOMPARE(stage.file.checkIntegrity(), QStringList());
}

ZEL_TEST(tst_ZelBnglCorpus)

#include "tst_ZelBnglCorpus.moc"
