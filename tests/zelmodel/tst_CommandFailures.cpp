#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <csignal>

/// Disks that are full, places that cannot be written, outputs that are lost and users who change
/// their minds: one sentence, the exit code, everything as before.
class tst_CommandFailures : public ZelTest
{
    Q_OBJECT
private slots:
    void fullDisk_data();
    void fullDisk();
    void unwritablePlace_data();
    void unwritablePlace();
    void lostOutput_data();
    void lostOutput();
    void brokenPipe();
    void targetOfAnotherKind_data();
    void targetOfAnotherKind();
    void saveThatWasCutShort();
    void interruptedList();
    void interruptedPictures();

private:
    static int interrupt(QProcess *process);
};

void tst_CommandFailures::fullDisk_data()
{
    QTest::addColumn<QString>("blocks");
    QTest::addColumn<QString>("arguments");
    for (const char *blocks : {"0", "8"}) {
        for (const char *arguments : {"create new.zel", "import new.zel other.bngl",
                 "import m.zel other.bngl", "render -o new.png --scale 3 m.zel cai1",
                 "render -o new.svg m.zel cai1", "render -o old.pdf m.zel cai1",
                 "render --all -o new m.zel", "render --all --format png -o folder m.zel"})
            QTest::addRow("%s: %s", blocks, arguments) << blocks << arguments;
    }
    QTest::newRow("0: export") << "0"
                               << "export m.zel new.bngl";
    QTest::newRow("0: export to an old file") << "0"
                                              << "export m.zel old.pdf";
}

void tst_CommandFailures::fullDisk()
{
    QFETCH(const QString, blocks);
    QFETCH(const QString, arguments);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    stage.write("other.bngl", "begin molecule types\n C(a)\nend molecule types\n");
    stage.write("old.pdf", "old");
    QVERIFY(QDir().mkdir(stage.path("folder")));
    const QStringList files = stage.files();
    const QByteArray model = stage.content("m.zel");

    const CommandResult result =
        stage.shell("ulimit -f " + blocks + "; exec \"$zelmodel\" " + arguments);
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.startsWith("zelmodel: "), qPrintable(result.err));
    QCOMPARE(result.err.count(u'\n'), 1);
    QVERIFY2(!result.err.contains(".new-"), qPrintable(result.err));
    QCOMPARE(stage.files(), files);
    QCOMPARE(stage.content("m.zel"), model);
    QCOMPARE(stage.content("old.pdf"), QByteArray("old"));
    // Of all pictures, those that had room are there, and whole.
    if (blocks == "0")
        QVERIFY(!QDir(stage.path("new")).exists());
    QVERIFY(QDir(stage.path("folder")).exists());
    for (const char *folder : {"new", "folder"}) {
        const QDir pictures(stage.path(folder));
        for (const QString &name : pictures.entryList(QDir::Files | QDir::Hidden)) {
            QVERIFY2(name.endsWith(".svg") || name.endsWith(".png"), qPrintable(name));
            QVERIFY2(QFileInfo(pictures.filePath(name)).size() > 0, qPrintable(name));
        }
    }
}

void tst_CommandFailures::unwritablePlace_data()
{
    QTest::addColumn<QString>("arguments");
    // Not even root makes files there.
    for (const char *arguments :
        {"create /proc/new.zel", "import /proc/new.zel source.bngl", "export m.zel /proc/new.bngl",
            "render -o /proc/new.svg m.zel mol1", "render --all -o /proc/new m.zel"})
        QTest::newRow(arguments) << arguments;
}

void tst_CommandFailures::unwritablePlace()
{
    QFETCH(const QString, arguments);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result = stage.run(arguments.split(u' '));
    QCOMPARE(result.code, 1);
    QCOMPARE(result.err.count(u'\n'), 1);
    QVERIFY2(result.err.contains("'/proc/new"), qPrintable(result.err));
    QVERIFY2(!result.err.contains(".new-"), qPrintable(result.err));
    QCOMPARE(result.out, QString());
}

void tst_CommandFailures::lostOutput_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("done");
    for (const char *arguments : {"--help", "list --help", "list m.zel", "list --json m.zel all",
             "show m.zel mol1", "find m.zel 'A()'", "check m.zel", "diff m.zel m.zel"})
        QTest::newRow(arguments) << arguments << "";
    QTest::newRow("export") << "export m.zel out.bngl"
                            << "'out.bngl' is written all the same";
    QTest::newRow("import") << "import --json new.zel source.bngl"
                            << "'source.bngl' is imported all the same";
}

void tst_CommandFailures::lostOutput()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, done);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result = stage.shell("\"$zelmodel\" " + arguments + " > /dev/full");
    QCOMPARE(result.code, 1);
    QCOMPARE(result.err.count(u'\n'), 1);
    QVERIFY2(result.err.contains("output cannot be written"), qPrintable(result.err));
    QVERIFY2(result.err.contains(done), qPrintable(result.err));
    QCOMPARE(result.err.contains("all the same"), !done.isEmpty());
}

void tst_CommandFailures::brokenPipe()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result = stage.shell("\"$zelmodel\" list m.zel all | head -n 1");
    QCOMPARE(result.out, "molecules:\n");
    QCOMPARE(result.err, QString());
}

void tst_CommandFailures::targetOfAnotherKind_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("reason");
    QTest::newRow("export to a link to the model")
        << "ln -s m.zel l; \"$zelmodel\" export m.zel l" << 1 << "the model itself";
    QTest::newRow("export to another name of the model")
        << "ln m.zel l; \"$zelmodel\" export m.zel l; c=$?; test l -ef m.zel && exit $c" << 1
        << "the model itself";
    QTest::newRow("picture to another name of the model")
        << "ln m.zel l; \"$zelmodel\" render --format svg -o l m.zel mol1" << 1
        << "the model itself";
    QTest::newRow("export over another model")
        << "\"$zelmodel\" create n.zel; \"$zelmodel\" export m.zel n.zel; c=$?;"
           " \"$zelmodel\" check n.zel >/dev/null && exit $c"
        << 1 << "choose another file";
    QTest::newRow("export into a pipe")
        << "mkfifo p; grep -c '^begin' p > got & \"$zelmodel\" export -q m.zel p; wait;"
           " test -p p && grep -q '[1-9]' got"
        << 0 << "";
    QTest::newRow("picture into a pipe")
        << "mkfifo p; grep -c '<svg' p > got & \"$zelmodel\" render --format svg -o p m.zel mol1;"
           " wait; test -p p && grep -q 1 got"
        << 0 << "";
    QTest::newRow("model that is a pipe") << "mkfifo p; \"$zelmodel\" list p" << 1 << "'p'";
    QTest::newRow("import of a pipe")
        << "mkfifo p; \"$zelmodel\" import n.zel p; c=$?; test -e n.zel || exit $c" << 1 << "'p'";
    QTest::newRow("import of a model") << "\"$zelmodel\" import n.zel m.zel; c=$?; test -e n.zel "
                                          "|| exit $c"
                                       << 1 << "model comes first";
}

void tst_CommandFailures::targetOfAnotherKind()
{
    QFETCH(const QString, script);
    QFETCH(const QString, reason);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const QByteArray model = stage.content("m.zel");
    const CommandResult result = stage.shell(script);
    QTEST(result.code, "code");
    QCOMPARE(result.err.count(u'\n'), reason.isEmpty() ? 0 : 1);
    QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    QCOMPARE(stage.content("m.zel"), model);
}

void tst_CommandFailures::saveThatWasCutShort()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const QString counts = stage.run({"list", "m.zel"}).out;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "writer");
        db.setDatabaseName(stage.path("m.zel"));
        QVERIFY(db.open());
        // So much that it does not fit into memory: the file is half written.
        for (const char *statement : {"PRAGMA cache_size = 1", "BEGIN", "DELETE FROM sed",
                 "UPDATE mol SET notes = hex(zeroblob(500000))"})
            QVERIFY(QSqlQuery(db).exec(statement));
        for (const char *suffix : {"", "-journal"})
            QVERIFY(QFile::copy(stage.path("m.zel") + suffix, stage.path("cut.zel") + suffix));
        db.close();
    }
    QSqlDatabase::removeDatabase("writer");
    QVERIFY(stage.content("cut.zel") != stage.content("m.zel"));
    const CommandResult result = stage.run({"list", "cut.zel"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, counts);
    QCOMPARE(stage.run({"diff", "m.zel", "cut.zel"}).code, 0);
    QVERIFY(!QFile::exists(stage.path("cut.zel-journal")));
}

int tst_CommandFailures::interrupt(QProcess *process)
{
    if (::kill(static_cast<pid_t>(process->processId()), SIGINT) != 0
        || !process->waitForFinished(60000) || process->exitStatus() != QProcess::NormalExit)
        return -1;
    return process->exitCode();
}

void tst_CommandFailures::interruptedList()
{
    QByteArray source("begin parameters\n");
    for (int i = 0; i < 10000; ++i)
        source += " p" + QByteArray::number(i) + " 1\n";
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", source + "end parameters\n"));
    // It waits for its output to be read, which is more than a pipe takes.
    QProcess process;
    process.setWorkingDirectory(stage.path(QString()));
    process.start(ZELMODEL_BINARY, {"list", "--json", "m.zel", "all"});
    QVERIFY(process.waitForReadyRead());
    QCOMPARE(interrupt(&process), 1);
    QCOMPARE(QString::fromUtf8(process.readAllStandardError()),
        "zelmodel: Interrupted; nothing has changed.\n");
}

void tst_CommandFailures::interruptedPictures()
{
    QByteArray source("begin molecule types\n");
    for (int i = 0; i < 500; ++i)
        source += " M" + QByteArray::number(i) + "(a,b,c)\n";
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", source + "end molecule types\n"));
    QCOMPARE(stage.shell("mkdir p; mkfifo p/mol1.svg").code, 0);
    QProcess process;
    process.setWorkingDirectory(stage.path(QString()));
    process.start(ZELMODEL_BINARY, {"render", "--all", "-o", "p", "m.zel"});
    // Opens once the first of the pictures is written.
    QFile first(stage.path("p/mol1.svg"));
    QVERIFY(first.open(QIODevice::ReadOnly));
    QCOMPARE(interrupt(&process), 1);
    const QString message = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(message.startsWith("zelmodel: Interrupted after "), qPrintable(message));
    for (const QString &name : QDir(stage.path("p")).entryList(QDir::Files | QDir::Hidden))
        QVERIFY2(name.endsWith(".svg"), qPrintable(name));
}

ZEL_TEST(tst_CommandFailures)
#include "tst_CommandFailures.moc"
