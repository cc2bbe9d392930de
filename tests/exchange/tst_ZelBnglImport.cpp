#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QByteArray typesAndSpecies(const QByteArray &types, const QByteArray &species)
{
    return "begin molecule types\n" + types + "\nend molecule types\nbegin seed species\n" + species
        + "\nend seed species\n";
}

/// A rule over A(a,s~U~P), B(b,b), C().
QByteArray ruleModel(const QByteArray &rule)
{
    return "begin molecule types\nA(a,s~U~P)\nB(b,b)\nC()\nend molecule types\nbegin functions\n"
           "f() = 2\nend functions\nbegin reaction rules\n"
        + rule + "\nend reaction rules\n";
}

} // namespace

class tst_ZelBnglImport : public ZelTest
{
    Q_OBJECT

private slots:
    void storesMoleculeTypes()
    {
        ImportStage stage;
        QVERIFY(stage.import(
            typesAndSpecies("A(b,b,b_2,c~U~P,d)", "A(b!1,b,b_2,c~U,d).A(b!1,b,b_2,c~P,d) 1")));
        const QString mol = stage.db.molGetListPsiimId().value(0);
        QStringList texts;
        for (const QString &mcp : stage.db.molGetListMcpPsiimId(mol)) {
            const ZelDbRecord record = stage.db.mcpGetHashInfo(mcp);
            texts.append(record.value(ZelDbColumn::ShortName) + u' '
                + record.value(ZelDbColumn::Name) + u' '
                + QString::number(stage.db.bstGetListPsiimIdBasedOnMcp(mcp).size()) + u' '
                + stage.db.mcpGetOrderedStateNames(mcp).join(u',') + u' '
                + QString::number(stage.db.mcpGetExclusionGroups(mcp).size()));
        }
        // What has states and is never bound has no site.
        QCOMPARE(texts,
            (QStringList{"b b 1  0", "b_3 b 1  0", "b_2 b_2 1  0", "c c 0 U,P 1", "d d 1  0"}));
    }

    void takesEqualSitesForOne_data()
    {
        QTest::addColumn<QByteArray>("species");
        QTest::addColumn<int>("distinct");
        QTest::newRow("state on either copy")
            << QByteArray("A(s~U,s~P,b,b) 1\nA(s~P,s~U,b,b) 1") << 1;
        QTest::newRow("bond on either copy") << QByteArray(
            "A(b!1,b,s~U,s~U).A(b,b!1,s~U,s~U) 1\nA(b,b!1,s~U,s~U).A(b,b!1,s~U,s~U) 1")
                                             << 1;
        QTest::newRow("chain and ring") << QByteArray(
            "A(b!1,b!2,s~U,s~U).A(b!1,b!2,s~U,s~U) 1\nA(b!1,b,s~U,s~U).A(b!1,b,s~U,s~U) 1")
                                        << 2;
        QTest::newRow("state at the end or in the middle")
            << QByteArray("A(b!1,b,s~P,s~U).A(b!1,b!2,s~U,s~U).A(b!2,b,s~U,s~U) 1\n"
                          "A(b!1,b,s~U,s~U).A(b!1,b!2,s~U,s~P).A(b!2,b,s~U,s~U) 1\n"
                          "A(b!1,b!2,s~U,s~U).A(b!1,b,s~U,s~U).A(b!2,b,s~U,s~P) 1")
            << 2;
        QTest::newRow("compartments") << QByteArray(
            "A(b!1,b,s~U,s~U)@x.A(b!1,b,s~U,s~U)@y 1\nA(b,b!1,s~U,s~U)@y.A(b!1,b,s~U,s~U)@x 1\n"
            "@x::A(b!1,b,s~U,s~U).A(b!1,b,s~U,s~U) 1")
                                      << 2;
    }

    void takesEqualSitesForOne()
    {
        QFETCH(const QByteArray, species);
        QFETCH(const int, distinct);
        ImportStage stage;
        QVERIFY2(stage.import(typesAndSpecies("A(s~U~P,s~U~P,b,b)", species)),
            qPrintable(stage.report().error));
        QCOMPARE(stage.report().species, distinct);
        QCOMPARE(int(stage.identities().size()), distinct);
    }

    void translatesExactRulesOnly_data()
    {
        QTest::addColumn<QByteArray>("rule");
        QTest::addColumn<QString>("kinds"); // a c t p d, or why not
        const auto add = [](const char *row, const char *rule, const char *kinds) {
            QTest::newRow(row) << QByteArray(rule) << QString::fromLatin1(kinds);
        };
        add("association", "A(a,s~U) + B(b) -> A(a!1,s~U).B(b!1) k", "a");
        add("binding and unbinding", "A(a) + B(b) <-> A(a!1).B(b!1) k,l", "ac");
        add("at one of several sites", "B(b!+,b) + A(a) <-> B(b!+,b!2).A(a!2) k,l", "ac");
        add("of two alike", "B(b) + B(b) -> B(b!1).B(b!1) k", "a");
        add("dissociation", "A(a!1).B(b!1) -> A(a) + B(b) 2*k", "c");
        add("transformation", "A(a!1,s~U).B(b!1) <-> A(a!1,s~P).B(b!1) k,l", "tt");
        add("transport", "C()@x -> C()@y k", "t");
        add("production from nothing", "0 -> A(a,s~U) k", "p");
        add("production by a source", "A(a!+) -> A(a!+) + B(b,b) k", "p");
        add("degradation", "A(s~P) -> 0 k", "d");
        add("making and removing", "0 <-> C() k,l", "pd");
        add("two things at once", "A(a!1,s~U).B(b!1) -> A(a,s~P) + B(b) k",
            "it does several things at once");
        add("catalysis", "A(s~U) + C() -> A(s~P) + C() k",
            "it changes one molecule in the presence of another");
        add("ring closure", "A(a).B(b!1,b).B(b!1) -> A(a!2).B(b!1,b!2).B(b!1) k",
            "the molecules of a pattern are joined by an unsaid path");
        add("within a complex", "B(b!1,b).B(b!1,b) -> B(b!1,b!2).B(b!1,b!2) k",
            "it makes a bond within one complex");
        add("unsaid partner", "A(a!+) -> A(a) k",
            "it makes or breaks a bond at the component \"a\" whose other end it does not name");
        add("conversion", "A(a,s~U) -> B(b,b) k",
            "it makes or removes molecules in the presence of others");
        add("removal by another", "A() + C() -> C() k",
            "it makes or removes molecules in the presence of others");
        add("nothing", "A(s~U) -> A(s~U) k", "it changes nothing");
        add("three reactants", "A() + B() + C() -> 0 k", "it has more than two reactants");
        add("state on one side", "A(s) -> A(s~P) k",
            "it states the component \"s\" on one side only");
        add("component on one side", "A(s~U) -> A(a,s~P) k",
            "it mentions other components of the molecule \"A\" on its two sides");
        add("modifier", "A() -> 0 k DeleteMolecules", "it is modified by \"DeleteMolecules\"");
        add("rate law", "A(s~U) -> A(s~P) MM(k,K)", "its rate follows the law \"MM\"");
        add("function", "A(s~U) -> A(s~P) 2*f()", "its rate changes with \"f\"");
        add("local function", "%x:A(s~U) -> %x:A(s~P) k",
            "its rate depends on what a pattern matches");
        add("compartment of a complex", "@x:A(s~U) -> @y:A(s~U) k",
            "it says that a whole complex is in the compartment \"x\"");
        add("two bonds on a site", "A(a!1!2).B(b!1).B(b!2) -> A(a!1).B(b!1) + B(b) k",
            "two bonds meet at the component \"a\" of \"A\", and a binding site holds one");
        add("undeclared component", "A(q) -> 0 k",
            "the molecule type \"A\" has no component \"q\"");
        add("more components than declared", "B(b,b,b) -> 0 k",
            "the molecule type \"B\" has no further component \"b\"");
        add("only one way exact", "A(a) <-> 0 k,MM(k,K)",
            "backwards, its rate follows the law \"MM\"");
    }

    void translatesExactRulesOnly()
    {
        QFETCH(const QByteArray, rule);
        QFETCH(const QString, kinds);
        ImportStage stage;
        QVERIFY2(stage.import(ruleModel(rule)), qPrintable(stage.report().error));
        const ZelImportReport &report = stage.report();
        const QString found = QString(report.associations, u'a')
            + QString(report.dissociations, u'c') + QString(report.transformations, u't')
            + QString(report.productions, u'p') + QString(report.degradations, u'd');
        // One loss is the function.
        if (report.losses.size() == 1) {
            QCOMPARE(found, kinds);
            QCOMPARE(stage.db.caiGetListPsiimId().size(), kinds.count(u'a'));
            QCOMPARE(stage.db.cadGetListPsiimId().size(), kinds.count(u'c'));
            return;
        }
        QCOMPARE(found, QString());
        QCOMPARE(report.losses.first().reason, kinds);
        QCOMPARE(report.losses.first().line, 10);
        QVERIFY(report.losses.first().isKept);
        QCOMPARE(stage.identities(), QStringList());
    }

    void placesSitesOfAnAssociation()
    {
        ImportStage stage;
        QVERIFY(stage.import(
            ruleModel("bind: B(b!1,b).A(a!1) + A(a,s~P) -> B(b!1,b!2).A(a!1).A(a!2,s~P) k*2")));
        const ZelDbRecord record = stage.db.caiGetHashInfo(stage.db.caiGetListPsiimId().value(0));
        QCOMPARE(record.value(ZelDbColumn::ShortName), "bind");
        QCOMPARE(record.value(ZelDbColumn::AssociationRate), "k*2");
        const auto molAt = [&](int cpaColumn, int posColumn) {
            const QString cpx = stage.db.cpaGetCpxPsiimId(record.value(cpaColumn));
            const QString mol =
                stage.db.cpxGetListMolPsiimId(cpx).value(record.value(posColumn).toInt());
            return stage.db.molGetHashInfo(mol).value(ZelDbColumn::ShortName);
        };
        QCOMPARE(molAt(ZelDbColumn::CaiCpa1, ZelDbColumn::MolPos1), "B");
        QCOMPARE(molAt(ZelDbColumn::CaiCpa2, ZelDbColumn::MolPos2), "A");
        // The free one of the two sites is the one that binds.
        const QString cpx = stage.db.cpaGetCpxPsiimId(record.value(ZelDbColumn::CaiCpa1));
        for (const QStringList &bond : stage.db.cpxGetArrayBstBst(cpx))
            QVERIFY(!bond.contains(record.value(ZelDbColumn::Bst1)));
    }

    void keepsWhatSurroundsTheModel()
    {
        ImportStage stage;
        QVERIFY(stage.import(QByteArray(
            "begin parameters\nk 2*3\nend parameters\nbegin compartments\nin 3 1 mem\nmem 2 0.5 "
            "out\nout 3 9\n"
            "end compartments\nbegin seed species\n$A()@in k*10\nend seed species\nbegin "
            "observables\n"
            "Species Few A.A==2, A()@in\nend observables\nrun({t=>1})\n")));
        ZelDbSqliteModel &db = stage.db;
        QCOMPARE(
            db.parGetHashInfo(db.parGetListPsiimId().value(0)).value(ZelDbColumn::ParameterValue),
            "2*3");
        const QString parent = db.cmpGetHashInfo(db.cmpGetListPsiimId().value(0))
                                   .value(ZelDbColumn::CompartmentParent);
        QCOMPARE(db.cmpGetHashInfo(parent).value(ZelDbColumn::ShortName), "mem");
        const ZelDbRecord seed = db.sedGetHashInfo(db.sedGetListPsiimId().value(0));
        QCOMPARE(seed.value(ZelDbColumn::SeedAmount), "k*10");
        QCOMPARE(seed.value(ZelDbColumn::Notes), "fixed");
        QCOMPARE(
            db.cpaGetHashInfo(seed.value(ZelDbColumn::SeedCpa)).value(ZelDbColumn::CpaKey2), "in");
        const ZelDbRecord observable = db.obsGetHashInfo(db.obsGetListPsiimId().value(0));
        QCOMPARE(observable.value(ZelDbColumn::ObservablePattern), "A().A()==2, A()@in");
        const ZelDbRecord kept = db.utrGetHashInfo(db.utrGetListPsiimId().value(0));
        QCOMPARE(kept.value(ZelDbColumn::SourceText), "run({t=>1})");
        QCOMPARE(kept.value(ZelDbColumn::SourceLine), "15");
    }

    void listsWhatItLeavesOut()
    {
        ImportStage stage;
        QVERIFY(stage.import("begin compartments\nout 3 1\nin 3 1 out\nin 2 5 in\nlost 3 1 far\n"
                             "end compartments\nbegin molecule types\nA(b){x=1}\n"
                             "A(c)\nend molecule types\nbegin seed species\nA(b) 1\nA(b) 2\nB() 1\n"
                             "A(c) 1\nend seed species\n"));
        QCOMPARE(stage.losses(),
            (QStringList{"4: in (a compartment of that name stands before it)",
                "5: far (there is no compartment of that name)",
                "14: B (the molecule is not declared; its components and states are "
                "those that patterns mention)",
                "8: A (the model holds no attributes in braces)",
                "9: A (a molecule type of that name stands before it)",
                "13: A(b) (the species stands in the file already)",
                "15: A(c) 1 (the molecule type \"A\" has no component \"c\")"}));
        QCOMPARE(stage.report().untranslated(), 1);
        // What the repeated one says is not taken for the first one's.
        const ZelDbRecord in = stage.db.cmpGetHashInfo(stage.db.cmpGetListPsiimId().value(1));
        QCOMPARE(stage.db.cmpGetHashInfo(in.value(ZelDbColumn::CompartmentParent))
                     .value(ZelDbColumn::ShortName),
            "out");
    }

    void refusesAModelThatIsThereAlready()
    {
        const QByteArray model = typesAndSpecies("A(a)\nB(b)", "A(a!1).B(b!1) 1\nA(a) 1");
        ImportStage stage;
        QVERIFY(stage.import(model));
        const QStringList before = stage.db.cpaGetListPsiimId();
        QVERIFY(!stage.import(model));
        QVERIFY(stage.report().error.startsWith(
            QLatin1String("The model has a molecule \"A\" already.")));
        QCOMPARE(stage.report().moleculeTypes, 0);
        QCOMPARE(stage.db.cpaGetListPsiimId(), before);
        QVERIFY(!ZelBnglImport(nullptr).importModel(ZelBnglParser::parse(model, "m.bngl")));
    }

    void reportsAsTextAndJson()
    {
        ImportStage stage;
        QVERIFY(stage.import(ruleModel("A(a!+) -> A(a) k")));
        const QString text = stage.report().toText();
        QVERIFY(text.contains(QLatin1String("  Molecule types: 3\n")));
        QVERIFY(text.contains(
            QLatin1String("m.bngl:10: kept untranslated: A(a!+) -> A(a) k (it makes or breaks")));
        const QJsonObject object = QJsonDocument::fromJson(stage.report().toJson()).object();
        QCOMPARE(object.value(QLatin1String("untranslated")).toInt(), 2);
        QCOMPARE(object.value(QLatin1String("losses"))
                     .toArray()
                     .at(0)
                     .toObject()
                     .value(QLatin1String("line"))
                     .toInt(),
            10);
    }
};

ZEL_TEST(tst_ZelBnglImport)
#include "tst_ZelBnglImport.moc"
