#include "CommandStage.h"

#include "support/ZelTest.h"
#include "zelDb/ZelDbSqlite.h"

#include <QDir>

/// Files that are wrong in the ways in which files are: one sentence, the exit code, nothing
/// changed.
class tst_CommandFiles : public ZelTest
{
    Q_OBJECT
private slots:
    void wrongModelFile_data();
    void wrongModelFile();
    void lockedModel();
    void createNeverOverwrites();
    void emptyModel_data();
    void emptyModel();

private:
    static bool makeWrongFile(const CommandStage &stage, const QString &fault);
};

bool tst_CommandFiles::makeWrongFile(const CommandStage &stage, const QString &fault)
{
    if (fault == "folder")
        return QDir().mkdir(stage.path("m.zel"));
    if (fault == "empty") {
        stage.write("m.zel", {});
    } else if (fault == "text") {
        stage.write("m.zel", "begin parameters\nend parameters\n");
    } else if (fault == "other database") {
        return stage.execute("m.zel", {"CREATE TABLE t (a)"});
    } else if (fault == "cut short" || fault == "newer") {
        if (!stage.importModel("m.zel", CommandStage::source()))
            return false;
        if (fault == "newer")
            return stage.execute("m.zel", {"PRAGMA user_version = 1000"});
        stage.write("m.zel", stage.content("m.zel").left(5000));
    }
    return true;
}

void tst_CommandFiles::wrongModelFile_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("arguments");
    const QList<QStringList> commands{{"list", "m.zel"}, {"show", "m.zel", "A"},
        {"find", "m.zel", "A()"}, {"render", "-o", "x.svg", "m.zel", "A"}, {"check", "m.zel"},
        {"diff", "m.zel", "good.zel"}, {"diff", "good.zel", "m.zel"}, {"export", "m.zel", "x.bngl"},
        {"import", "m.zel", "good.bngl"}};
    const QStringList faults{
        "missing", "folder", "empty", "text", "other database", "cut short", "newer"};
    for (const QString &fault : faults) {
        for (const QStringList &arguments : commands) {
            if (fault == "missing" && arguments.first() == "import")
                continue; // makes the model
            QTest::newRow(qPrintable(fault + ": " + arguments.join(u' '))) << fault << arguments;
        }
    }
}

void tst_CommandFiles::wrongModelFile()
{
    QFETCH(const QString, fault);
    QFETCH(const QStringList, arguments);
    CommandStage stage;
    QVERIFY(stage.importModel("good.zel", CommandStage::source()));
    stage.write("good.bngl", CommandStage::source());
    QVERIFY(makeWrongFile(stage, fault));
    const QStringList files = stage.files();
    const QByteArray before = stage.content("m.zel");

    const CommandResult result = stage.run(arguments);
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains("m.zel'"), qPrintable(result.err));
    QCOMPARE(result.err.count(u'\n'), 1);
    QCOMPARE(result.out, QString());
    QCOMPARE(stage.files(), files);
    QCOMPARE(stage.content("m.zel"), before);
}

void tst_CommandFiles::lockedModel()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    stage.write("other.bngl", "begin molecule types\n C(a)\nend molecule types\n");
    ZelDbSqlite file;
    QVERIFY(file.open(stage.path("m.zel")));
    ZelDbTransaction transaction(&file);
    QVERIFY(transaction.isActive());
    // Who reads is not disturbed, who wants to write is told.
    QCOMPARE(stage.run({"list", "m.zel"}).code, 0);
    const CommandResult result = stage.run({"import", "m.zel", "other.bngl"});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains("in use"), qPrintable(result.err));
}

void tst_CommandFiles::createNeverOverwrites()
{
    CommandStage stage;
    QCOMPARE(stage.run({"create", "m.zel"}).code, 0);
    const QByteArray made = stage.content("m.zel");
    QVERIFY(!made.isEmpty());
    QCOMPARE(stage.run({"create", "m.zel"}).code, 1);
    QCOMPARE(stage.content("m.zel"), made);
    QCOMPARE(stage.run({"create", "no/such/folder/m.zel"}).code, 1);
    QCOMPARE(stage.files(), QStringList{"m.zel"});
}

void tst_CommandFiles::emptyModel_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::newRow("list") << QStringList{"list", "m.zel", "all"} << 0;
    QTest::newRow("list as JSON") << QStringList{"list", "--json", "m.zel", "species"} << 0;
    QTest::newRow("filter by name") << QStringList{"list", "--name", "x", "m.zel"} << 0;
    QTest::newRow("unknown molecule") << QStringList{"list", "-m", "x", "m.zel"} << 1;
    QTest::newRow("show") << QStringList{"show", "m.zel", "x"} << 1;
    QTest::newRow("find") << QStringList{"find", "m.zel", "A()"} << 1;
    QTest::newRow("render one") << QStringList{"render", "-o", "x.svg", "m.zel", "x"} << 1;
    QTest::newRow("render all") << QStringList{"render", "--all", "-o", "x", "m.zel"} << 0;
    QTest::newRow("check") << QStringList{"check", "m.zel"} << 0;
    QTest::newRow("export") << QStringList{"export", "m.zel", "x.bngl"} << 0;
    QTest::newRow("diff with itself") << QStringList{"diff", "m.zel", "m.zel"} << 0;
}

void tst_CommandFiles::emptyModel()
{
    QFETCH(const QStringList, arguments);
    CommandStage stage;
    QCOMPARE(stage.run({"create", "m.zel"}).code, 0);
    const QByteArray before = stage.content("m.zel");
    const CommandResult result = stage.run(arguments);
    QTEST(result.code, "code");
    QCOMPARE(result.err.isEmpty(), result.code == 0);
    QCOMPARE(stage.content("m.zel"), before);
    if (arguments.contains("--json"))
        QCOMPARE(result.out, "[]\n");
}

ZEL_TEST(tst_CommandFiles)
#include "tst_CommandFiles.moc"
