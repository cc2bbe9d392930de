#include "CommandStage.h"

#include "support/ZelTest.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QDir>
#include <QDomDocument>

#include <algorithm>

/// Texts that a model may hold and that would break a terminal, a page, a script or a folder.
class tst_CommandHostileTexts : public ZelTest
{
    Q_OBJECT
private slots:
    void everyCommandKeepsItsForm_data();
    void everyCommandKeepsItsForm();
    void idsStayInTheFolder();

private:
    static bool isHarmless(const QString &output);
};

bool tst_CommandHostileTexts::isHarmless(const QString &output)
{
    return std::none_of(output.begin(), output.end(), [](QChar c) {
        return (c.unicode() < 0x20 && c != u'\n') || (c.unicode() >= 0x7f && c.unicode() < 0xa0)
            || (c.unicode() >= 0x202a && c.unicode() <= 0x202e);
    });
}

void tst_CommandHostileTexts::everyCommandKeepsItsForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << QString("a\"b'c`d\\");
    QTest::newRow("markup") << QString("<script>alert(1)</script>&amp;]]>");
    QTest::newRow("line ends") << QString("a\nb\r\nc\td") + QChar(0x2028) + "e";
    QTest::newRow("escape sequences") << QString("\x1b[2J\x1b]0;title\x07\x9b") + QChar(0x85);
    QTest::newRow("right to left") << QString::fromUtf8("\u202eexe.txt \u05e9\u05dc\u05d5\u05dd");
    QTest::newRow("placeholders") << QString("%1 %2 %n %s ${HOME} $(id)");
    QTest::newRow("10,000 characters") << QString(10000, u'x');
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\U0001F9EC").repeated(100);
}

void tst_CommandHostileTexts::everyCommandKeepsItsForm()
{
    QFETCH(const QString, text);
    CommandStage stage;
    QVERIFY(stage.makeModelCalled("m.zel", text));
    QVERIFY(stage.importModel("plain.zel", CommandStage::source()));
    const QList<QStringList> calls{{"list", "m.zel", "all"}, {"list", "--json", "m.zel", "all"},
        {"list", "--json", "--text", "m.zel", "species"}, {"show", "m.zel", "mol1"},
        {"show", "--json", "m.zel", "mol1"}, {"show", "m.zel", "cpa1"}, {"show", "m.zel", "deg1"},
        {"list", "--name", text, "m.zel"}, {"show", "m.zel", text}, {"check", "m.zel"},
        {"check", "--json", "m.zel"}, {"diff", "m.zel", "plain.zel"},
        {"diff", "--json", "m.zel", "plain.zel"}, {"find", "m.zel", text + "()"},
        {"export", "m.zel", "x.bngl"}, {"export", "--json", "m.zel", "x.bngl"}, {"list", text},
        {"frobnicate", text}, {text}};
    for (const QStringList &call : calls) {
        const CommandResult result = stage.run(call);
        QVERIFY2(result.code >= 0, qPrintable(call.join(u' ')));
        QVERIFY2(isHarmless(result.out), qPrintable(call.join(u' ')));
        QVERIFY2(isHarmless(result.err), qPrintable(call.join(u' ')));
        if (call.contains("--json"))
            QVERIFY2(!result.list().isEmpty() || !result.object().isEmpty()
                    || result.out.startsWith('['),
                qPrintable(call.join(u' ')));
    }
    // A script gets the text itself; a line of a list stays a line.
    QCOMPARE(
        stage.run({"show", "--json", "m.zel", "mol1"}).object().value("name").toString(), text);
    QCOMPARE(stage.run({"list", "m.zel", "molecules"}).lines().size(), 1);
    QCOMPARE(stage.run({"list", "--json", "--name", text, "m.zel", "molecules"}).list().size(), 1);

    QCOMPARE(stage.run({"render", "-o", "a.svg", "m.zel", "cpa1"}).code, 0);
    QDomDocument document;
    QString error;
    QVERIFY2(document.setContent(stage.content("a.svg"), &error), qPrintable(error));
    QCOMPARE(document.elementsByTagName("script").size(), 0);
    QCOMPARE(stage.run({"render", "--contact-map", "-o", "map.svg", "m.zel"}).code, 0);
    QVERIFY2(document.setContent(stage.content("map.svg"), &error), qPrintable(error));
    QCOMPARE(document.elementsByTagName("script").size(), 0);
    QVERIFY(isHarmless(QString::fromUtf8(stage.content("map.svg"))));
    QVERIFY(stage.content("map.svg").size() < 10000);
}

void tst_CommandHostileTexts::idsStayInTheFolder()
{
    const QStringList ids{"../outside", "/tmp/outside", "a/b", ".", "con fig", QString(3000, u'y')};
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", "begin molecule types\n A(b)\nend molecule types\n"));
    ZelDbSqlite file;
    ZelDbSqliteModel db(&file);
    QVERIFY(file.open(stage.path("m.zel")));
    for (const QString &id : ids) {
        QVERIFY(db.molInsert({{ZelDbColumn::PsiimId, id}, {ZelDbColumn::ShortName, id}}));
        QVERIFY(db.mcpInsert({{ZelDbColumn::PsiimId, "mcp " + id}, {ZelDbColumn::ShortName, "c"},
            {ZelDbColumn::OwnerPsiimId, id}}));
    }
    file.close();
    const QStringList before = stage.files();
    const CommandResult result =
        stage.run({"render", "--all", "--kind", "molecules", "-o", "pictures", "m.zel"});
    QVERIFY2(result.code == 0 || result.code == 3, qPrintable(result.err));
    QCOMPARE(stage.files(), before);
    const QDir folder(stage.path("pictures"));
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
        folder.entryList({"*.svg"}, QDir::Files | QDir::Hidden).size());
    QCOMPARE(folder.entryList({"*.svg"}, QDir::Files | QDir::Hidden).size(), ids.size() + 1);
}

ZEL_TEST(tst_CommandHostileTexts)
#include "tst_CommandHostileTexts.moc"
