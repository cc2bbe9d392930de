#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/export/ZelBnglWriter.h"

#include <QDir>

#include <algorithm>

namespace {

constexpr int Rounds = 20; // each shuffled anew

/// What is known of a model. Types are declared ones.
struct Known
{
    const char *name;
    int types;
    int rules;
    int reversible;
    int species; ///< in the list of the network
    int reactions;
    int leftOut; ///< of these; the others are all distinct
    QList<int> kinds; ///< associations, dissociations, transformations, productions, degradations
    QList<int> untranslated; ///< lines
};

const QList<Known> Models{
    {"simple_system", 2, 4, 0, 4, 4, 0, {1, 1, 1, 0, 0}, {74}},
    {"heise", 2, 4, 0, 5, 8, 0, {0, 0, 0, 2, 1}, {28}},
    {"Repressilator", 10, 21, 6, 16, 30, 0, {6, 6, 0, 9, 0}, {58, 59, 66, 67, 74, 75}},
    {"tlbr", 2, 3, 3, 19, 29, 0, {3, 3, 0, 0, 0}, {}},
    {"blbr", 0, 3, 3, 20, 92, 0, {2, 2, 0, 0, 0}, {23}},
    {"toy-jim", 0, 8, 4, 25, 101, 0, {4, 4, 2, 0, 0}, {77, 81}},
    {"Motivating_example_cBNGL", 11, 30, 13, 78, 354, 6, {9, 9, 4, 4, 0},
        {109, 112, 113, 116, 126, 135, 150, 151, 154, 155, 158, 159, 169}},
};

} // namespace

Q_DECLARE_METATYPE(Known)

/// Models that others wrote; the environment variable ZEL_CORPUS names their folder.
class tst_ZelBnglCorpus : public ZelTest
{
    Q_OBJECT

    static void addModels()
    {
        QTest::addColumn<Known>("known");
        if (qEnvironmentVariableIsEmpty("ZEL_CORPUS"))
            QSKIP("Set ZEL_CORPUS to the folder of the models to run this test.");
        for (const Known &known : Models)
            QTest::newRow(known.name) << known;
    }

    static ZelBnglModel read(const Known &known, const char *suffix)
    {
        const QDir corpus(qEnvironmentVariable("ZEL_CORPUS"));
        return ZelBnglParser::parseFile(corpus.filePath(
            QStringLiteral("models/%1%2").arg(QLatin1String(known.name), QLatin1String(suffix))));
    }

private slots:
    void readsEveryModel_data() { addModels(); }

    void readsEveryModel()
    {
        QFETCH(const Known, known);
        const ZelBnglModel source = read(known, ".bngl");
        QCOMPARE(source.errorTexts(), QStringList());
        QCOMPARE(int(source.moleculeTypes.size()), known.types);
        QCOMPARE(int(source.rules.size()), known.rules);
        QCOMPARE(int(std::count_if(source.rules.begin(), source.rules.end(),
                     [](const ZelBnglRule &rule) { return rule.isReversible; })),
            known.reversible);

        const ZelBnglModel network = read(known, ".net");
        QCOMPARE(network.errorTexts(), QStringList());
        QCOMPARE(int(network.species.size()), known.species);
        QCOMPARE(int(network.species.back().index), known.species);
        QCOMPARE(int(network.reactions.size()), known.reactions);

        for (const ZelBnglModel &read : {source, network}) {
            const QByteArray written = ZelBnglWriter::write(read);
            const ZelBnglModel again = ZelBnglParser::parse(written, read.fileName());
            QCOMPARE(again.errorTexts(), QStringList());
            QCOMPARE(ZelBnglWriter::write(again), written);
        }
    }

    void tellsSpeciesApart_data() { addModels(); }

    void tellsSpeciesApart()
    {
        QFETCH(const Known, known);
        QRandomGenerator random(7);
        ZelBnglModel network = read(known, ".net");
        network.rules.clear();
        ImportStage original;
        QVERIFY2(original.import(network), qPrintable(original.report().error));
        const int distinct = known.species - known.leftOut;
        QCOMPARE(int(original.identities().size()), distinct);
        for (int round = 0; round < Rounds; ++round) {
            ImportStage stage;
            QVERIFY2(stage.import(shuffled(network, random)), qPrintable(stage.report().error));
            QCOMPARE(stage.report().species, distinct);
            QCOMPARE(int(stage.report().losses.size()), known.leftOut);
            QCOMPARE(stage.identities(), original.identities());
        }
    }

    void tellsPatternsApart_data() { addModels(); }

    void tellsPatternsApart()
    {
        QFETCH(const Known, known);
        QRandomGenerator random(7);
        const ZelBnglModel source = read(known, ".bngl");
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

    void translatesRules_data() { addModels(); }

    void translatesRules()
    {
        QFETCH(const Known, known);
        ZelBnglModel source = read(known, ".bngl");
        source.actions.clear();
        ImportStage stage;
        QVERIFY2(stage.import(source), qPrintable(stage.report().error));
        const ZelImportReport &report = stage.report();
        QCOMPARE((QList<int>{report.associations, report.dissociations, report.transformations,
                     report.productions, report.degradations}),
            known.kinds);
        QList<int> lines;
        for (const ZelImportReport::Loss &loss : report.losses) {
            QVERIFY(loss.isKept);
            lines.append(loss.line);
        }
        QCOMPARE(lines, known.untranslated);
        QCOMPARE(stage.db.utrGetListPsiimId().size(), lines.size());
        QCOMPARE(stage.file.checkIntegrity(), QStringList());
    }
};

ZEL_TEST(tst_ZelBnglCorpus)
#include "tst_ZelBnglCorpus.moc"
