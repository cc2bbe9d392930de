#include "CommandStage.h"

#include "support/ZelTest.h"

/// Which components are copies of each other is said by their records, and all commands agree on
/// it.
class tst_CommandCopies : public ZelTest
{
    Q_OBJECT
private slots:
    void commandsAgree_data();
    void commandsAgree();
};

void tst_CommandCopies::commandsAgree_data()
{
    rows<QString, bool>({"statement", "copies"},
        {{"as the file has them", {"UPDATE mcp SET notes = ''", true}},
            {"other short names", {"UPDATE mcp SET shortName = 'c' WHERE psiimId = 'mcp1'", true}},
            {"named alike only", {"UPDATE mcp SET copyGroup = ''", false}},
            {"no longer alike",
                {"INSERT INTO mcpState (psiimId, mcp, name) VALUES ('mcpState9', 'mcp2', 'x')",
                    false}}});
}

void tst_CommandCopies::commandsAgree()
{
    QFETCH(const QString, statement);
    QFETCH(const bool, copies);
    CommandStage stage;
    const QByteArray source =
        "begin molecule types\n H(b,b,s~0~1)\n L(x)\nend molecule types\nbegin seed species\n"
        " H(b!1,b,s~0).L(x!1) 1\nend seed species\n";
    QVERIFY(stage.importModel("one.zel", source) && stage.importModel("twin.zel", source));
    QVERIFY(stage.execute("one.zel", {statement}));
    // The same complex and species once more, over the other of the two components.
    QVERIFY(stage.execute("twin.zel",
        {statement,
            "INSERT INTO cpx (psiimId, shortName, molCode)"
            " SELECT 'cpx9', 'twin', molCode FROM cpx WHERE psiimId = 'cpx1'",
            "INSERT INTO cpxMol SELECT 'cpx9', position, mol FROM cpxMol WHERE cpx = 'cpx1'",
            "INSERT INTO cpxBstBst (cpx, molPos1, bst1, molPos2, bst2)"
            " SELECT 'cpx9', molPos1, 'bst1', molPos2, bst2 FROM cpxBstBst WHERE cpx = 'cpx1'",
            "INSERT INTO cpa (psiimId, cpx, shortName, wellDefined, stateCode)"
            " SELECT 'cpa9', 'cpx9', 'twin', 1, replace(replace(stateCode,"
            " 'bst1\" pos=\"1\" bindingStatus=\"Unb', 'bst1\" pos=\"1\" bindingStatus=\"B'),"
            " 'bst2\" pos=\"1\" bindingStatus=\"B', 'bst2\" pos=\"1\" bindingStatus=\"Unb')"
            " FROM cpa WHERE psiimId = 'cpa1'"}));
    const QString own = "b_2"; // by which the second is called when it is no copy
    const auto output = [&stage](const QStringList &arguments) { return stage.run(arguments).out; };

    QCOMPARE(output({"list", "--text", "twin.zel", "species"}).contains(own), !copies);
    const CommandResult found = stage.run({"find", "--json", "twin.zel", "H(b!1).L(x!1)"});
    const int expected = copies ? 2 : 1;
    QCOMPARE(found.object().value("complexes").toArray().size(), expected);
    QCOMPARE(output({"check", "twin.zel"}).contains("cpx1, cpx9 are the same"), copies);
    QCOMPARE(output({"diff", "one.zel", "twin.zel"}) == "The models say the same.\n", copies);
    stage.run({"export", "twin.zel", "out.bngl"});
    QCOMPARE(stage.content("out.bngl").contains(own.toLatin1()), !copies);
    QVERIFY(stage.run({"render", "--contact-map", "-o", "map.svg", "twin.zel"}).code == 0);
    QCOMPARE(stage.content("map.svg").contains('>' + own.toLatin1() + '<'), !copies);
}

ZEL_TEST(tst_CommandCopies)
#include "tst_CommandCopies.moc"
