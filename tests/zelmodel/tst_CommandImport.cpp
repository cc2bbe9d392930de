#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <csignal>

/// Bringing files in: what the report says, and that everything else leaves the model as it was.
class tst_CommandImport : public ZelTest
{
    Q_OBJECT
private slots:
    void allIn();
    void keptUntranslated();
    void refusedSource_data();
    void refusedSource();
    void interrupted_data();
    void interrupted();
};

void tst_CommandImport::allIn()
{
    CommandStage stage;
    stage.write("m.bngl", CommandStage::source());
    const CommandResult result = stage.run({"import", "--json", "m.zel", "m.bngl"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    const QJsonObject report = result.object();
    QCOMPARE(report.value("moleculeTypes").toInt(), 2);
    QCOMPARE(report.value("species").toInt(), 3);
    QCOMPARE(report.value("associations").toInt(), 1);
    // The same file again, with nothing to say.
    const CommandResult quiet = stage.run({"import", "-q", "other.zel", "m.bngl"});
    QCOMPARE(quiet.code, 0);
    QCOMPARE(quiet.out, QString());
    QCOMPARE(stage.content("other.zel"), stage.content("m.zel"));
}

void tst_CommandImport::keptUntranslated()
{
    CommandStage stage;
    stage.write("m.bngl", CommandStage::source() + "simulate({method=>\"ode\"})\n");
    const CommandResult result = stage.run({"import", "m.zel", "m.bngl"});
    QCOMPARE(result.code, 3);
    QVERIFY2(result.out.contains("m.bngl:21: kept untranslated"), qPrintable(result.out));
    const CommandResult kept = stage.run({"list", "m.zel", "untranslated"});
    QVERIFY2(kept.out.contains("simulate({method=>\"ode\"})"), qPrintable(kept.out));
}

void tst_CommandImport::refusedSource_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("reason");
    QTest::newRow("error") << QByteArray("begin molecule types\n A(b\nend molecule types\n")
                           << "m.bngl:2:";
    QTest::newRow("escape sequence in a name")
        << QByteArray("begin molecule types\n A\x1b[31m(b)\nend molecule types\n") << "m.bngl:2:";
    QTest::newRow("binary") << QByteArray("\x7f"
                                          "ELF\0\1\2\3",
        8) << "m.bngl:1:";
    QTest::newRow("molecule that is there") << CommandStage::source() << "\"A\" already";
    QTest::newRow("no file") << QByteArray() << "m.bngl";
}

void tst_CommandImport::refusedSource()
{
    QFETCH(const QByteArray, source);
    QFETCH(const QString, reason);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    if (!source.isEmpty())
        stage.write("m.bngl", source);
    const QStringList files = stage.files();
    const QByteArray before = stage.content("m.zel");

    const CommandResult result = stage.run({"import", "m.zel", "m.bngl"});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    QVERIFY2(result.err.contains("'m.zel' is as it was before"), qPrintable(result.err));
    QVERIFY(!result.err.contains(QChar(0x1b)));
    QCOMPARE(stage.content("m.zel"), before);
    if (!reason.contains("already")) {
        QCOMPARE(stage.run({"import", "new.zel", "m.bngl"}).code, 1);
        QCOMPARE(stage.files(), files);
    }
}

void tst_CommandImport::interrupted_data()
{
    QTest::addColumn<bool>("isNew");
    QTest::newRow("new model") << true;
    QTest::newRow("model with content") << false;
}

void tst_CommandImport::interrupted()
{
    QFETCH(const bool, isNew);
    CommandStage stage;
    if (!isNew)
        QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const QByteArray before = stage.content("m.zel");
    // More species than any machine draws before the signal arrives.
    QByteArray source("begin molecule types\n C(a,b,c,x~0~1~2~3~4~5~6~7~8~9)\n D(a,b,c)\n");
    source += "end molecule types\nbegin seed species\n";
    for (int i = 0; i < 4000; ++i) {
        QByteArray chain;
        for (int k = 0; k < 12; ++k) {
            chain += (k ? "." : "") + QByteArray("C(a!") + QByteArray::number(100 + k) + ",b!"
                + QByteArray::number(101 + k) + ",x~" + QByteArray::number((i >> k) % 10) + ")";
        }
        source += " D(a!100)." + chain + ".D(b!112) 1\n";
    }
    source += "end seed species\n";
    stage.write("m.bngl", source);

    QProcess process;
    process.setWorkingDirectory(stage.path(QString()));
    process.start(QStringLiteral(ZELMODEL_BINARY), {"import", "m.zel", "m.bngl"});
    // The import has begun when it has a journal.
    QTRY_VERIFY_WITH_TIMEOUT(
        QFile::exists(stage.path("m.zel-journal")) || (isNew && QFile::exists(stage.path("m.zel"))),
        60000);
    QCOMPARE(process.state(), QProcess::Running);
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    const QString message = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(message.contains(isNew ? "Interrupted; 'm.zel' was not made."
                                    : "Interrupted; 'm.zel' is as it was"),
        qPrintable(message));
    if (isNew)
        QCOMPARE(stage.files(), QStringList{"m.bngl"});
    else
        QCOMPARE(stage.content("m.zel"), before);
    QVERIFY(!QFile::exists(stage.path("m.zel-journal")));
}

ZEL_TEST(tst_CommandImport)
#include "tst_CommandImport.moc"
