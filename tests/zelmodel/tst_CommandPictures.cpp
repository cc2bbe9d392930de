#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QDir>
#include <QDomDocument>
#include <QImage>

/// The pictures that render writes.
class tst_CommandPictures : public ZelTest
{
    Q_OBJECT
private slots:
    void formats_data();
    void formats();
    void sizes_data();
    void sizes();
    void background();
    void all();
    void nothingToDraw();
    void unwritable_data();
    void unwritable();
};

void tst_CommandPictures::formats_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QByteArray>("beginning");
    for (const char *record : {"mol1", "cpx3", "cpa3", "cai1", "cad1", "trn1"}) {
        QTest::addRow("PNG of %s", record) << "x.png" << record << QByteArray("\x89PNG\r\n");
        QTest::addRow("SVG of %s", record) << "x.SVG" << record << QByteArray("<?xml");
        QTest::addRow("PDF of %s", record) << "x.pdf" << record << QByteArray("%PDF-");
    }
}

void tst_CommandPictures::formats()
{
    QFETCH(const QString, file);
    QFETCH(const QString, record);
    QFETCH(const QByteArray, beginning);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result = stage.run({"render", "-o", file, "m.zel", record});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const QByteArray picture = stage.content(file);
    QVERIFY(picture.startsWith(beginning));
    // The same in another process, to the byte, and over the old file.
    stage.write(file, "old");
    QCOMPARE(stage.run({"render", "-o", file, "m.zel", record}).code, 0);
    QCOMPARE(stage.content(file), picture);
    if (file.endsWith("png"))
        QVERIFY(!QImage::fromData(picture).isNull());
    QDomDocument document;
    if (file.endsWith("SVG"))
        QVERIFY(document.setContent(picture));
}

void tst_CommandPictures::sizes_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    QTest::newRow("default") << "mol1" << QStringList{} << QSize(400, 300);
    QTest::newRow("given") << "mol1" << QStringList{"--size", "90x40"} << QSize(90, 40);
    QTest::newRow("scaled") << "mol1" << QStringList{"--size", "90x40", "--scale", "1.5"}
                            << QSize(135, 60);
    QTest::newRow("association") << "cai1" << QStringList{"--size", "100x60"} << QSize(400, 60);
    QTest::newRow("transformation") << "trn1" << QStringList{"--size", "100x60"} << QSize(250, 60);
}

void tst_CommandPictures::sizes()
{
    QFETCH(const QString, record);
    QFETCH(const QStringList, options);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(
        stage.run(QStringList{"render", "-o", "x.png"} + options + QStringList{"m.zel", record})
            .code,
        0);
    QTEST(QImage::fromData(stage.content("x.png")).size(), "size");
    QCOMPARE(
        stage.run(QStringList{"render", "-o", "x.svg"} + options + QStringList{"m.zel", record})
            .code,
        0);
    QDomDocument document;
    QVERIFY(document.setContent(stage.content("x.svg")));
    const QStringList box = document.documentElement().attribute("viewBox").split(u' ');
    QFETCH(const QSize, size);
    QCOMPARE(
        box.value(2).toDouble() / box.value(3).toDouble(), double(size.width()) / size.height());
}

void tst_CommandPictures::background()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const auto corner = [&stage](const QStringList &options) {
        stage.run(QStringList{"render", "-o", "x.png"} + options + QStringList{"m.zel", "mol1"});
        return QImage::fromData(stage.content("x.png")).pixelColor(0, 0);
    };
    QCOMPARE(corner({}).alpha(), 0);
    QCOMPARE(corner({"--background", "transparent"}).alpha(), 0);
    QCOMPARE(corner({"--background", "#ffeecc"}), QColor("#ffeecc"));
}

void tst_CommandPictures::all()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result =
        stage.run({"render", "--all", "--format", "png", "--size", "60x40", "-o", "p", "m.zel"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    const QJsonObject counts = stage.run({"list", "--json", "m.zel"}).object();
    int records = 0;
    for (const char *kind : {"molecules", "interactions", "complexes", "species", "patterns",
             "associations", "dissociations", "transformations"})
        records += counts.value(QLatin1String(kind)).toInt();
    const QDir folder(stage.path("p"));
    QCOMPARE(folder.entryList({"*.png"}).size(), records);
    QCOMPARE(stage.run({"render", "--all", "--kind", "species", "-o", "s", "m.zel"}).code, 0);
    QCOMPARE(QDir(stage.path("s")).entryList({"*.svg"}),
        QStringList({"cpa1.svg", "cpa2.svg", "cpa3.svg"}));
    QCOMPARE(stage.run({"render", "--all", "--kind", "parameters", "-o", "s", "m.zel"}).code, 2);
}

void tst_CommandPictures::nothingToDraw()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QVERIFY(
        stage.execute("m.zel", {"INSERT INTO trn (psiimId, shortName) VALUES ('trn9', 'empty')"}));
    const CommandResult all =
        stage.run({"render", "--all", "--kind", "transformations", "-o", "p", "m.zel"});
    QCOMPARE(all.code, 0);
    QVERIFY(QFile::exists(stage.path("p/trn9.svg"))); // nothing to nothing, which is what it says
    QCOMPARE(stage.run({"render", "-o", "x.svg", "m.zel", "kf"}).code, 1);
}

void tst_CommandPictures::unwritable_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("no such folder") << QStringList{"-o", "no/such/x.svg"};
    QTest::newRow("the model itself") << QStringList{"-o", "./m.zel", "--format", "svg"};
    QTest::newRow("a folder") << QStringList{"-o", "folder", "--format", "svg"};
    QTest::newRow("folder that is a file") << QStringList{"--all", "-o", "source.bngl"};
}

void tst_CommandPictures::unwritable()
{
    QFETCH(const QStringList, options);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QVERIFY(QDir().mkdir(stage.path("folder")));
    const QStringList files = stage.files();
    QStringList arguments = QStringList{"render"} + options + QStringList{"m.zel"};
    if (!options.contains("--all"))
        arguments.append("mol1");
    const CommandResult result = stage.run(arguments);
    QCOMPARE(result.code, 1);
    QCOMPARE(result.err.count(u'\n'), 1);
    QCOMPARE(stage.files(), files);
    QCOMPARE(stage.run({"check", "m.zel"}).code, 0);
}

ZEL_TEST(tst_CommandPictures)
#include "tst_CommandPictures.moc"
