#include "CommandStage.h"

#include "support/ZelTest.h"

/// What diff takes for the same and what for different.
class tst_CommandDifferences : public ZelTest
{
    Q_OBJECT
private slots:
    void same_data();
    void same();
    void different_data();
    void different();
};

void tst_CommandDifferences::same_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    const QByteArray source = CommandStage::source();
    QTest::newRow("itself") << source << source;
    QByteArray shuffled = source;
    shuffled.replace(" A(b,s~U~P)\n B(a)\n", " B(a)\n A(s~P~U,b)\n");
    shuffled.replace(" A(b,s~U) 10\n B(a) 5\n A(b!1,s~P).B(a!1) 1\n",
        " B(a!7).A(s~P,b!7) 1\n B(a) 5\n A(s~U,b) 10\n");
    shuffled.replace("bind: A(b) + B(a) <->", "bind: B(a) + A(b) <->");
    QVERIFY(shuffled.size() == source.size());
    QTest::newRow("written in another order") << source << shuffled;
    const QByteArray copies =
        "begin molecule types\n H(r,r,r,s~0~1)\n L(x)\nend molecule types\nbegin seed species\n"
        " H(r!1,r,r!2,s~1).H(r!1,r!3,r,s~0).L(x!2).L(x!3) 1\nend seed species\n";
    QByteArray exchanged = copies;
    exchanged.replace(" H(r,r,r,s~0~1)\n L(x)\n", " L(x)\n H(s~0~1,r,r,r)\n");
    exchanged.replace(" H(r!1,r,r!2,s~1).H(r!1,r!3,r,s~0).L(x!2).L(x!3)",
        " L(x!2).H(r,s~0,r!2,r!1).L(x!3).H(r!3,r!1,r,s~1)");
    QTest::newRow("other copies of a component") << copies << exchanged;
}

void tst_CommandDifferences::same()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    CommandStage stage;
    QVERIFY(stage.importModel("a.zel", before));
    QVERIFY(stage.importModel("b.zel", after));
    const CommandResult result = stage.run({"diff", "a.zel", "b.zel"});
    QCOMPARE(result.out, "The models say the same.\n");
    QCOMPARE(result.code, 0);
    QVERIFY(stage.run({"diff", "--json", "a.zel", "b.zel"}).object().isEmpty());
}

void tst_CommandDifferences::different_data()
{
    QTest::addColumn<QByteArray>("what");
    QTest::addColumn<QByteArray>("by");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("parameter") << QByteArray(" kf 1\n") << QByteArray(" kf 3\n")
                               << QStringList{"parameters:", "  ~ kf: 1 -> 3"};
    QTest::newRow("amount") << QByteArray(" B(a) 5\n") << QByteArray(" B(a) 6\n")
                            << QStringList{"seeds:", "  ~ B: 5 -> 6"};
    QTest::newRow("rate") << QByteArray("kf, kr\n") << QByteArray("kf, kf\n")
                          << QStringList{"dissociations:",
                                 "  ~ bind: A.B_2 -> A_2 + B: rate kr -> rate kf"};
    QTest::newRow("species gone") << QByteArray(" A(b!1,s~P).B(a!1) 1\n") << QByteArray()
                                  << QStringList{
                                         "species:", "  - A(b!1,s~P).B(a!1)", "seeds:", "  - A.B"};
    QTest::newRow("other state of a species")
        << QByteArray("A(b!1,s~P).B(a!1) 1") << QByteArray("A(b!1,s~U).B(a!1) 1")
        << QStringList{"species:", "  - A(b!1,s~P).B(a!1)", "  + A(b!1,s~U).B(a!1)",
               "seeds:", "  - A.B", "  + A.B"};
    QTest::newRow("observable")
        << QByteArray("Molecules Pairs") << QByteArray("Species Pairs")
        << QStringList{
               "observables:", "  ~ Pairs: Molecules A(b!1).B(a!1) -> Species A(b!1).B(a!1)"};
    QTest::newRow("renamed molecule") << QByteArray("B(") << QByteArray("Bee(")
                                      << QStringList{"molecules:", "  ~ renamed: B -> Bee"};
    QTest::newRow("further state")
        << QByteArray("s~U~P") << QByteArray("s~U~P~Q")
        << QStringList{"molecules:", "  ~ A: (b,s~P~U[no site]) -> (b,s~P~Q~U[no site])"};
}

void tst_CommandDifferences::different()
{
    QFETCH(const QByteArray, what);
    QFETCH(const QByteArray, by);
    QFETCH(const QStringList, lines);
    CommandStage stage;
    QByteArray changed = CommandStage::source();
    QVERIFY(changed.contains(what));
    changed.replace(what, by);
    QVERIFY(stage.importModel("a.zel", CommandStage::source()));
    QVERIFY(stage.importModel("b.zel", changed));
    const CommandResult result = stage.run({"diff", "a.zel", "b.zel"});
    QCOMPARE(result.code, 3);
    for (const QString &line : lines)
        QVERIFY2(result.lines().contains(line), qPrintable(result.out));
    // The other way round plus and minus change places, and as many lines remain.
    const CommandResult back = stage.run({"diff", "b.zel", "a.zel"});
    QCOMPARE(back.code, 3);
    QCOMPARE(back.lines().size(), result.lines().size());
    QCOMPARE(back.out.count("  + "), result.out.count("  - "));
}

ZEL_TEST(tst_CommandDifferences)
#include "tst_CommandDifferences.moc"
