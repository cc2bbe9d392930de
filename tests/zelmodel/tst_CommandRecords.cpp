#include "CommandStage.h"

#include "support/ZelTest.h"

/// Which records list, show, find and check answer for.
class tst_CommandRecords : public ZelTest
{
    Q_OBJECT
private slots:
    void counts();
    void filters_data();
    void filters();
    void writtenOut();
    void show_data();
    void show();
    void namesOfSeveralRecords();
    void find_data();
    void find();
    void everySpeciesIsFoundByItsText();
    void check_data();
    void check();

private:
    static QByteArray chains();
};

void tst_CommandRecords::counts()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const QJsonObject counts = stage.run({"list", "--json", "m.zel"}).object();
    QCOMPARE(counts.value("molecules").toInt(), 2);
    QCOMPARE(counts.value("features").toInt(), 2);
    QCOMPARE(counts.value("species").toInt(), 3);
    QCOMPARE(counts.value("associations").toInt(), 1);
    QCOMPARE(counts.value("parameters").toInt(), 2);
    QVERIFY(stage.run({"list", "m.zel"}).lines().contains("parameters        2"));
}

void tst_CommandRecords::filters_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("texts");

    // Species: A(b,s~U), B(a), A(b!1,s~P).B(a!1)
    const QString free = "A(b,s~U)";
    const QString alone = "B(a)";
    const QString pair = "A(b!1,s~P).B(a!1)";
    QTest::newRow("molecule") << QStringList{"-m", "B"} << "species" << QStringList{alone, pair};
    QTest::newRow("state") << QStringList{"--state", "P"} << "species" << QStringList{pair};
    QTest::newRow("state of a component")
        << QStringList{"--state", "s~U"} << "species" << QStringList{free};
    QTest::newRow("bound component")
        << QStringList{"--site", "b"} << "species" << QStringList{pair};
    QTest::newRow("bound site by its own name")
        << QStringList{"--site", "a_site_1"} << "species" << QStringList{pair};
    QTest::newRow("molecule and state")
        << QStringList{"-m", "A", "--state", "U"} << "species" << QStringList{free};
    QTest::newRow("part of a name")
        << QStringList{"--name", "a.b"} << "species" << QStringList{pair};
    QTest::newRow("whole name") << QStringList{"--name", "?"} << "species"
                                << QStringList{free, alone};
    QTest::newRow("dot is no wildcard")
        << QStringList{"--name", "A.*"} << "species" << QStringList{pair};
    QTest::newRow("patterns") << QStringList{"--state", "P"} << "patterns" << QStringList{"A(s~P)"};
}

void tst_CommandRecords::filters()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, kind);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result =
        stage.run(QStringList{"list", "--json", "--text"} + options + QStringList{"m.zel", kind});
    QCOMPARE(result.code, 0);
    QStringList texts;
    for (const QJsonValue &entry : result.list())
        texts.append(entry.toObject().value("text").toString());
    QTEST(texts, "texts");
}

void tst_CommandRecords::writtenOut()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const QStringList reactions = stage.run({"list", "m.zel", "reactions"}).lines();
    QCOMPARE(reactions.size(), 6); // three kinds, one each
    QCOMPARE(reactions.at(0), "associations:");
    QVERIFY2(reactions.at(1).contains("bind"), qPrintable(reactions.at(1)));
    QVERIFY2(reactions.at(1).contains(" -> A.B"), qPrintable(reactions.at(1)));
    QVERIFY2(reactions.at(1).endsWith("(rate: kf)"), qPrintable(reactions.at(1)));
    // A reaction is about the molecules of its species.
    const CommandResult onlyMark =
        stage.run({"list", "--json", "--state", "P", "m.zel", "transformations"});
    QCOMPARE(onlyMark.list().size(), 1);
    QCOMPARE(stage.run({"list", "--json", "-m", "B", "m.zel", "transformations"}).list().size(), 0);
    QCOMPARE(stage.run({"list", "-m", "C", "m.zel"}).code, 1);
    QCOMPARE(stage.run({"list", "--site", "q", "m.zel"}).code, 1);
}

void tst_CommandRecords::show_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QStringList>("expected");
    const QByteArray plain = CommandStage::source() + "simulate({method=>\"ode\"})\n";
    const QByteArray rooms = "begin parameters\n a 1\n b 2*a\nend parameters\n"
                             "begin compartments\n out 3 a\n in 2 1 out\nend compartments\n"
                             "begin molecule types\n C(s)\nend molecule types\n"
                             "begin seed species\n C(s)@in 1\nend seed species\n";
    QTest::newRow("molecule") << plain << "A"
                              << QStringList{"Molecule: A\n", "Component:       s; states U, P",
                                     "Used by:         complex"};
    QTest::newRow("species by id")
        << plain << "cpa3"
        << QStringList{"Complex: A.B   [ Well Defined ]", "Written out:     A(b!1,s~P).B(a!1)",
               "Bond:            A (1).b - B (2).a", "Used by:         seed sed3"};
    QTest::newRow("association") << plain << "cai1"
                                 << QStringList{"Association: bind  - - ( rate: kf ", " -> A.B",
                                        "Notes: bind: A(b) + B(a) <-> "};
    QTest::newRow("site") << plain << "bst1"
                          << QStringList{"Used by:         complex cpx3 'A.B'",
                                 "Used by:         association cai1 'bind'"};
    QTest::newRow("parameter") << plain << "kr"
                               << QStringList{"Value:           2",
                                      "Used by:         dissociation cad1 'bind'",
                                      "Used by:         interaction mli1"};
    QTest::newRow("feature") << plain << "P"
                             << QStringList{"Component:       mcp2 'A.s'",
                                    "Used by:         species cpa3 'A.B'",
                                    "Used by:         pattern cpa7"};
    QTest::newRow("seed") << plain << "sed2" << QStringList{"seed: B: 5", "Species: cpa2 'B'"};
    QTest::newRow("untranslated item")
        << plain << "utr1" << QStringList{"untranslated item: line 21: simulate"};
    QTest::newRow("compartment") << rooms << "cmp1"
                                 << QStringList{"Used by: compartment cmp2 'in'"};
    QTest::newRow("compartment with a species")
        << rooms << "cmp2" << QStringList{"Surrounded by: cmp1", "Used by: species cpa1 'C'"};
    QTest::newRow("parameter of a parameter")
        << rooms << "a"
        << QStringList{"Used by: parameter par2 'b'", "Used by: compartment cmp1 'out'"};
}

void tst_CommandRecords::show()
{
    QFETCH(const QByteArray, source);
    QFETCH(const QString, record);
    QFETCH(const QStringList, expected);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", source));
    const CommandResult result = stage.run({"show", "m.zel", record});
    QCOMPARE(result.code, 0);
    for (const QString &text : expected) {
        const QString squeezed = text.simplified();
        QVERIFY2(result.out.simplified().contains(squeezed), qPrintable(result.out));
    }
    const QJsonObject object = stage.run({"show", "--json", "m.zel", record}).object();
    QVERIFY(!object.value("id").toString().isEmpty());
    QVERIFY(object.value("usedBy").isArray());
}

void tst_CommandRecords::namesOfSeveralRecords()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult molecule = stage.run({"show", "m.zel", "A"});
    QVERIFY2(molecule.err.contains("also the name of cpx1 (complex), cpa1 (species)"),
        qPrintable(molecule.err));
    QVERIFY(stage.execute("m.zel", {"UPDATE mol SET shortName = 'A'"}));
    const CommandResult result = stage.run({"show", "m.zel", "A"});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains("mol1 (molecule), mol2 (molecule)"), qPrintable(result.err));
    QCOMPARE(stage.run({"show", "m.zel", "nothing"}).code, 1);
}

/// Chains and rings of molecules with equal sites, in several states.
QByteArray tst_CommandRecords::chains()
{
    return "begin molecule types\n M(a,a,a,s~U~P)\n N(x,y)\nend molecule types\n"
           "begin seed species\n"
           " M(a!1,a,a,s~U).M(a!1,a,a,s~P) 1\n"
           " M(a!1,a!2,a,s~U).M(a!2,a!3,a,s~U).M(a!3,a!1,a,s~P) 1\n"
           " M(a!1,a!2,a!3,s~P).N(x!1,y).N(x!2,y).N(x!3,y) 1\n"
           " N(x,y!1).M(a!1,a!2,a!3,s~P).N(x!2,y).N(x!3,y) 1\n"
           "end seed species\n"
           "begin reaction rules\n r: M(s~P) -> M(s~U) 1\nend reaction rules\n";
}

void tst_CommandRecords::find_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("found"); // relation and text
    QTest::addColumn<bool>("isNew");

    const QByteArray plain = CommandStage::source();
    QTest::newRow("species") << plain << "B(a!3).A(s~P,b!3)"
                             << QStringList{"is A(b!1,s~P).B(a!1)", "is a case of A(b!1).B(a!1)"}
                             << false;
    QTest::newRow("pattern") << plain << "A(b!1).B(a!1)"
                             << QStringList{"matches A(b!1,s~P).B(a!1)", "is A(b!1).B(a!1)"}
                             << false;
    QTest::newRow("other state") << plain << "A(b!1,s~U).B(a!1)"
                                 << QStringList{"is a case of A(b!1).B(a!1)"} << true;
    QTest::newRow("wildcards") << plain << "A(b!?,s~?)"
                               << QStringList{"matches A(b,s~U)", "matches A(b)", "matches A(s~U)",
                                      "matches A(s~P)"}
                               << true;
    QTest::newRow("ring from another start, sites exchanged")
        << chains() << "M(s~P,a!7,a,a!9).M(a!5,a!9,s~U,a).M(a,a!7,a!5,s~U)" << QStringList{"is"}
        << false;
    QTest::newRow("ring in other states")
        << chains() << "M(s~P,a!7,a,a!9).M(a!5,a!9,s~P,a).M(a,a!7,a!5,s~U)" << QStringList{}
        << true;
    QTest::newRow("arms in another order")
        << chains() << "N(x!2,y).N(y!1,x).M(a!3,a!1,s~P,a!2).N(x!3,y)" << QStringList{"is"}
        << false;
    QTest::newRow("arm too few") << chains() << "N(x!2,y).M(a!3,a,s~P,a!2).N(x!3,y)"
                                 << QStringList{} << true;
}

void tst_CommandRecords::find()
{
    QFETCH(const QByteArray, source);
    QFETCH(const QString, pattern);
    QFETCH(const QStringList, found);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", source));
    const CommandResult result = stage.run({"find", "--json", "m.zel", pattern});
    QCOMPARE(result.code, 0);
    QStringList matches;
    for (const QJsonValue &value : result.object().value("matches").toArray()) {
        const QJsonObject match = value.toObject();
        matches.append(match.value("relation").toString() + u' ' + match.value("text").toString());
    }
    QCOMPARE(matches.size(), found.size());
    for (qsizetype i = 0; i < found.size(); ++i)
        QVERIFY2(matches.at(i).startsWith(found.at(i)), qPrintable(matches.at(i)));
    QTEST(result.object().value("new").toBool(), "isNew");
    const CommandResult text = stage.run({"find", "m.zel", pattern});
    QCOMPARE(text.out.contains("New:"), result.object().value("new").toBool());
}

void tst_CommandRecords::everySpeciesIsFoundByItsText()
{
    const QByteArray sources[] = {CommandStage::source(), chains()};
    for (const QByteArray &source : sources) {
        CommandStage stage;
        QVERIFY(stage.importModel("m.zel", source));
        const QJsonArray species =
            stage.run({"list", "--json", "--text", "m.zel", "species"}).list();
        QVERIFY(species.size() >= 3);
        for (const QJsonValue &value : species) {
            const QString text = value.toObject().value("text").toString();
            QStringList same;
            const QJsonArray matches =
                stage.run({"find", "--json", "m.zel", text}).object().value("matches").toArray();
            for (const QJsonValue &match : matches) {
                if (match.toObject().value("relation").toString() == "is")
                    same.append(match.toObject().value("id").toString());
            }
            QCOMPARE(same, QStringList{value.toObject().value("id").toString()});
        }
    }
}

void tst_CommandRecords::check_data()
{
    QTest::addColumn<QStringList>("damage");
    QTest::addColumn<QStringList>("findings"); // check and id

    QTest::newRow("nothing") << QStringList{} << QStringList{};
    QTest::newRow("two molecules of a name")
        << QStringList{"UPDATE mol SET shortName = 'A'"} << QStringList{"names mol1"};
    QTest::newRow("two components of a name")
        << QStringList{"UPDATE mcp SET shortName = 'b' WHERE mol = 'mol1'"}
        << QStringList{"names mcp1"};
    QTest::newRow("no name") << QStringList{"UPDATE cpx SET shortName = '' WHERE psiimId = 'cpx3'"}
                             << QStringList{"names cpx3"};
    QTest::newRow("bond that nothing forms")
        << QStringList{"DELETE FROM cai", "DELETE FROM mliBstBst"} << QStringList{"bonds cpx3"};
    QTest::newRow("species that nothing reaches")
        << QStringList{"DELETE FROM trn", "DELETE FROM cad", "UPDATE cai SET cpa1 = 'cpa3'",
               "UPDATE cai SET bst1 = (SELECT bst1 FROM cpxBstBst), molPos1 = 0"}
        << QStringList{"reach cpa1"};
    QTest::newRow("the same complex twice")
        << QStringList{"INSERT INTO cpx (psiimId, shortName) VALUES ('cpx9', 'x')",
               "INSERT INTO cpxMol VALUES ('cpx9', 0, 'mol2')"}
        << QStringList{"duplicates cpx2"};
    QTest::newRow("complex without molecules")
        << QStringList{"INSERT INTO cpx (psiimId, shortName) VALUES ('cpx9', 'x')"}
        << QStringList{"references cpx9"};
    QTest::newRow("state code of another complex") << QStringList{
        "UPDATE cpa SET stateCode = '<cpx><mol pos=\"7\"/></cpx>'"
        " WHERE psiimId = 'cpa2'"} << QStringList{"references cpa2"};
    QTest::newRow("state code with entities") << QStringList{
        "UPDATE cpa SET stateCode = '<!DOCTYPE x [<!ENTITY a \"b\">]><cpx>&a;</cpx>'"
        " WHERE psiimId = 'cpa2'"} << QStringList{"references cpa2"};
    QTest::newRow("site of another molecule")
        << QStringList{"UPDATE cai SET bst1 = bst2"} << QStringList{"references cai1"};
    QTest::newRow("reaction of nothing")
        << QStringList{"UPDATE trn SET fromCpa = NULL"} << QStringList{"references trn1"};
    QTest::newRow("a part that is missing")
        << QStringList{"UPDATE cad SET resultCpa2 = NULL"} << QStringList{"references cad1"};
    QTest::newRow("a ring that opens")
        << QStringList{"UPDATE cad SET resultCpa2 = NULL, geometryText = 'Intra Complex'"}
        << QStringList{};
    QTest::newRow("compartment in itself")
        << QStringList{"INSERT INTO cmp (psiimId, shortName, parent) VALUES ('cmp1', 'x', 'cmp1')"}
        << QStringList{"references cmp1"};
    QTest::newRow("unknown compartment")
        << QStringList{"UPDATE cpa SET key2 = 'moon' WHERE psiimId = 'cpa2'"}
        << QStringList{"references cpa2"};
    QTest::newRow("reference to a record that is not there") << QStringList{
        "PRAGMA foreign_keys = OFF",
        "UPDATE sed SET cpa = 'cpa99' WHERE cpa = 'cpa2'"} << QStringList{"integrity "};
}

void tst_CommandRecords::check()
{
    QFETCH(const QStringList, damage);
    QFETCH(const QStringList, findings);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QVERIFY(stage.execute("m.zel", damage));
    const CommandResult result = stage.run({"check", "--json", "m.zel"});
    QCOMPARE(result.code, findings.isEmpty() ? 0 : 3);
    QStringList found;
    for (const QJsonValue &value : result.list()) {
        const QJsonObject finding = value.toObject();
        found.append(finding.value("check").toString() + u' ' + finding.value("id").toString());
    }
    for (const QString &finding : findings)
        QVERIFY2(found.contains(finding), qPrintable(result.out));
    const CommandResult text = stage.run({"check", "m.zel"});
    QCOMPARE(text.out == "Nothing found.\n", findings.isEmpty());
    if (findings.isEmpty())
        QVERIFY2(found.isEmpty(), qPrintable(result.out));
}

ZEL_TEST(tst_CommandRecords)
#include "tst_CommandRecords.moc"
