#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QDomDocument>
#include <QImage>

/// render --contact-map.
class tst_CommandContactMap : public ZelTest
{
    Q_OBJECT
private slots:
    void formats_data();
    void formats();
    void refusals_data();
    void refusals();
    void missingSites();
};

namespace {

/// The texts of the picture, as they stand in its elements.
QStringList texts(const QDomDocument &document)
{
    QStringList list;
    const QDomNodeList nodes = document.elementsByTagName("text");
    for (int i = 0; i < nodes.size(); ++i)
        list.append(nodes.at(i).toElement().text());
    return list;
}

} // namespace

void tst_CommandContactMap::formats_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("beginning");
    QTest::newRow("PNG") << "m.png" << QByteArray("\x89PNG\r\n");
    QTest::newRow("SVG") << "m.svg" << QByteArray("<?xml");
    QTest::newRow("PDF") << "m.pdf" << QByteArray("%PDF-");
}

void tst_CommandContactMap::formats()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, beginning);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const CommandResult result = stage.run({"render", "--contact-map", "-o", file, "m.zel"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const QByteArray picture = stage.content(file);
    QVERIFY(picture.startsWith(beginning));
    QCOMPARE(stage.run({"render", "--contact-map", "-o", "2" + file, "m.zel"}).code, 0);
    QCOMPARE(stage.content("2" + file), picture);
    if (file.endsWith("png")) {
        QCOMPARE(
            stage.run({"render", "--contact-map", "--scale", "2", "-o", "2.png", "m.zel"}).code, 0);
        QCOMPARE(QImage::fromData(stage.content("2.png")).width(),
            2 * QImage::fromData(picture).width());
    }
    if (file.endsWith("svg")) {
        QDomDocument document;
        QVERIFY(document.setContent(picture));
        const QStringList names = texts(document);
        for (const char *name : {"A", "B", "a", "b", "s"})
            QCOMPARE(names.count(QLatin1String(name)), 1);
        QCOMPARE(document.elementsByTagName("title").size(), 1);
        QVERIFY(document.elementsByTagName("title").at(0).toElement().text().contains("m.zel"));
    }
}

void tst_CommandContactMap::refusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::newRow("with a record")
        << QStringList{"--contact-map", "-o", "x.svg", "m.zel", "mol1"} << 2;
    QTest::newRow("with all") << QStringList{"--contact-map", "--all", "-o", "x.svg", "m.zel"} << 2;
    QTest::newRow("with a size") << QStringList{"--contact-map", "--size", "9x9", "-o", "x.svg",
        "m.zel"} << 2;
    QTest::newRow("no molecules") << QStringList{"--contact-map", "-o", "x.svg", "empty.zel"} << 1;
    QTest::newRow("no such folder")
        << QStringList{"--contact-map", "-o", "no/such/x.svg", "m.zel"} << 1;
}

void tst_CommandContactMap::refusals()
{
    QFETCH(const QStringList, arguments);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"create", "empty.zel"}).code, 0);
    const QStringList files = stage.files();
    const CommandResult result = stage.run(QStringList{"render"} + arguments);
    QTEST(result.code, "code");
    QVERIFY(!result.err.isEmpty());
    QCOMPARE(stage.files(), files);
}

void tst_CommandContactMap::missingSites()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const auto lines = [&stage] { return stage.content("x.svg").count("stroke=\"#0000ff\""); };
    QCOMPARE(stage.run({"render", "--contact-map", "-o", "x.svg", "m.zel"}).code, 0);
    QCOMPARE(lines(), 1);
    QVERIFY(stage.execute("m.zel", {"UPDATE mliBstBst SET bst2 = 'bst99'"}));
    const CommandResult result = stage.run({"render", "--contact-map", "-o", "x.svg", "m.zel"});
    QCOMPARE(result.code, 3);
    QVERIFY2(result.err.startsWith("zelmodel: 1 "), qPrintable(result.err));
    QCOMPARE(lines(), 0);
    QDomDocument document;
    QVERIFY(document.setContent(stage.content("x.svg")));
    QVERIFY(texts(document).contains("A"));
}

ZEL_TEST(tst_CommandContactMap)
#include "tst_CommandContactMap.moc"
