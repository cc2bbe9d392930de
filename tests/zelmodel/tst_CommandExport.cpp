#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QDir>

/// Models that go out and come in again.
class tst_CommandExport : public ZelTest
{
    Q_OBJECT
private slots:
    void comesBackTheSame();
    void untranslatedItemsComeBack();
    void unwritable_data();
    void unwritable();
};

void tst_CommandExport::comesBackTheSame()
{
    CommandStage stage;
    QVERIFY(stage.importModel("a.zel", CommandStage::source()));
    const CommandResult result = stage.run({"export", "--json", "a.zel", "out.bngl"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QCOMPARE(result.object().value("moleculeTypes").toInt(), 2);
    QCOMPARE(stage.run({"import", "-q", "b.zel", "out.bngl"}).code, 0);
    QCOMPARE(stage.run({"diff", "a.zel", "b.zel"}).out, "The models say the same.\n");
    // Over the old file, to the byte.
    const QByteArray written = stage.content("out.bngl");
    QCOMPARE(stage.run({"export", "-q", "b.zel", "out.bngl"}).out, QString());
    QCOMPARE(stage.content("out.bngl"), written);
}

void tst_CommandExport::untranslatedItemsComeBack()
{
    CommandStage stage;
    QVERIFY(stage.importModel("a.zel", CommandStage::source() + "simulate({method=>\"ode\"})\n"));
    stage.run({"export", "a.zel", "out.bngl"});
    QCOMPARE(stage.run({"import", "-q", "b.zel", "out.bngl"}).code, 3);
    QCOMPARE(stage.run({"diff", "a.zel", "b.zel"}).out, "The models say the same.\n");
}

void tst_CommandExport::unwritable_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("no such folder") << "no/such/out.bngl";
    QTest::newRow("a folder") << "folder";
    QTest::newRow("the model itself") << "a.zel";
}

void tst_CommandExport::unwritable()
{
    QFETCH(const QString, target);
    CommandStage stage;
    QVERIFY(stage.importModel("a.zel", CommandStage::source()));
    QVERIFY(QDir().mkdir(stage.path("folder")));
    const QStringList files = stage.files();
    const QByteArray before = stage.content("a.zel");
    const CommandResult result = stage.run({"export", "a.zel", target});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains(u'\'' + target), qPrintable(result.err));
    QCOMPARE(result.err.count(u'\n'), 1);
    QCOMPARE(stage.files(), files);
    QCOMPARE(stage.content("a.zel"), before);
}

ZEL_TEST(tst_CommandExport)
#include "tst_CommandExport.moc"
