#include "CommandStage.h"
#include "ReportFolder.h"

#include "support/ZelTest.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <csignal>

/// The folder that report writes, as files.
class tst_CommandReport : public ZelTest
{
    Q_OBJECT
private slots:
    void saysWhatTheModelHolds();
    void examples_data();
    void examples();
    void longChaptersComeInParts();
    void hostileTexts_data();
    void hostileTexts();
    void hostileIds();
    void sameBytes();
    void replacesReportsOnly_data();
    void replacesReportsOnly();
    void nothingToDraw();
    void fullDisk_data();
    void fullDisk();
    void interrupted_data();
    void interrupted();

private:
    /// Species of one molecule with ten states, of which there are as many as wanted.
    static QByteArray manySpecies(int count);
    static QStringList folders(const CommandStage &stage);
};

QByteArray tst_CommandReport::manySpecies(int count)
{
    QByteArray source("begin molecule types\n C(a,b,x~0~1~2~3~4~5~6~7~8~9,y~0~1~2~3~4~5~6~7~8~9,"
                      "z~0~1~2~3~4~5~6~7~8~9,w~0~1~2~3~4~5~6~7~8~9)\nend molecule types\n"
                      "begin seed species\n");
    for (int i = 0; i < count; ++i) {
        const QByteArray digits = QByteArray::number(i).rightJustified(4, '0');
        source += QByteArray(" C(a,b,x~") + digits[0] + ",y~" + digits[1] + ",z~" + digits[2]
            + ",w~" + digits[3] + ") 1\n";
    }
    return source + "end seed species\n";
}

/// Whatever lies beside the model.
QStringList tst_CommandReport::folders(const CommandStage &stage)
{
    return QDir(stage.path(QString()))
        .entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void tst_CommandReport::saysWhatTheModelHolds()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    ZelDbSqlite file;
    ZelDbSqliteModel db(&file);
    QVERIFY(file.open(stage.path("m.zel")));
    QVERIFY(db.refInsert("cpa", "cpa3", "after Someone 1999"));
    QVERIFY(db.mcpInsert({{ZelDbColumn::PsiimId, "mcp1"}, {ZelDbColumn::Notes, "on the part"}}));
    file.close();
    const CommandResult result = stage.run({"report", "-o", "r", "m.zel"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out.trimmed(), stage.path("r/index.html"));
    QCOMPARE(stage.run({"report", "-q", "-o", "r", "m.zel"}).out, QString());
    const ReportFolder report(stage.path("r"));
    QCOMPARE(report.faults(), QStringList());
    const auto unsaid = [&report](const char *page, QStringList texts) {
        const QString all = report.text(page).simplified();
        texts.removeIf([&all](const QString &text) { return all.contains(text); });
        return texts;
    };
    QCOMPARE(unsaid("index.html", {"m.zel", "3 Species", "A.b", "kf1", "MoleculesA(b!1).B(a!1)"}),
        QStringList());
    QCOMPARE(unsaid("molecules.html", {"sU P", "on the part"}), QStringList());
    QCOMPARE(unsaid("interactions.html", {"A.b \u2013 B.a", "kf = 1", "kr = 2"}), QStringList());
    QCOMPARE(unsaid("species.html",
                 {"A(b!1,s~P).B(a!1)", "A s: P", "A b \u2013 B a", "after Someone 1999",
                     "Initial amount1"}),
        QStringList());
    QCOMPARE(unsaid("reactions.html",
                 {"A(b) + B(a) \u2192 A(b!1).B(a!1)", "kf = 1", "A.b \u2013 B.a", "rate: kf"}),
        QStringList());
    // There and back: a species names its reactions, a reaction its species.
    QVERIFY(report.files().value("species.html").contains("href=\"reactions.html#cai1\""));
    QVERIFY(report.files().value("reactions.html").contains("href=\"species.html#cpa2\""));
    QVERIFY(report.files().value("search-index.js").contains("A(b!1,s~P).B(a!1)"));
    QVERIFY(!report.text("index.html").contains("Not translated"));
}

void tst_CommandReport::examples_data()
{
    QTest::addColumn<QString>("model");
    QStringList folders{QStringLiteral(ZEL_SOURCE_DIR "/examples/models")};
    if (const QString corpus = qEnvironmentVariable("ZEL_CORPUS"); !corpus.isEmpty())
        folders.append(corpus + "/models");
    for (const QString &folder : std::as_const(folders)) {
        for (const QFileInfo &info : QDir(folder).entryInfoList({"*.bngl"}))
            QTest::newRow(qPrintable(info.fileName())) << info.filePath();
    }
}

void tst_CommandReport::examples()
{
    QFETCH(const QString, model);
    CommandStage stage;
    QVERIFY(QList<int>({0, 3}).contains(stage.run({"import", "-q", "m.zel", model}).code));
    const CommandResult result = stage.run({"report", "-o", "r", "m.zel"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const ReportFolder report(stage.path("r"));
    QCOMPARE(report.faults(), QStringList());
    // Every record has its anchor somewhere.
    QSet<QString> anchors;
    for (const QString &page : report.pages())
        anchors.unite(report.anchors(page));
    for (const char *kind : {"molecules", "interactions", "species", "patterns", "reactions",
             "parameters", "observables", "seeds", "compartments", "untranslated"}) {
        for (const QJsonValue record : stage.run({"list", "--json", "m.zel", kind}).list()) {
            const QString id = record.toObject().value("id").toString();
            QVERIFY2(anchors.contains(id), qPrintable(id));
        }
    }
}

void tst_CommandReport::longChaptersComeInParts()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", manySpecies(401)));
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    const ReportFolder report(stage.path("r"));
    QCOMPARE(report.faults(), QStringList());
    QCOMPARE(report.pages(),
        QStringList({"index.html", "molecules.html", "seeds-2.html", "seeds-3.html", "seeds.html",
            "species-2.html", "species-3.html", "species.html"}));
    const auto hasRecord = [&report](const char *page, const char *id) {
        return report.anchors(page).contains(id);
    };
    QVERIFY(hasRecord("species.html", "cpa200"));
    QVERIFY(!hasRecord("species.html", "cpa201"));
    QVERIFY(hasRecord("species-2.html", "cpa201"));
    QVERIFY(hasRecord("species-3.html", "cpa401"));
    const QByteArray middle = report.files().value("species-2.html");
    QVERIFY(middle.contains("<a href=\"species.html\" rel=\"prev\">"));
    QVERIFY(middle.contains("<a href=\"species-3.html\" rel=\"next\">"));
    // A molecule does not name them all.
    QVERIFY(report.text("molecules.html").contains("and 341 more"));
}

void tst_CommandReport::hostileTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << QString("</script><script>alert(1)</script>&amp;<!-- ]]> -->");
    QTest::newRow("attributes") << QString("\" onload=\"x\" ' onerror='x' style=\"x\"");
    QTest::newRow("address") << QString("javascript:alert(1)");
    QTest::newRow("characters that XML does not have")
        << QString("a\x01\x0b\x1b\r\n\t") + QChar(0xfffe) + QChar(0x2028) + QChar(0x85);
    QTest::newRow("half a character") << QString("a") + QChar(0xd83e) + "b" + QChar(0xddec);
    QTest::newRow("right to left") << QString::fromUtf8("\u202eexe.txt \u05e9\u05dc\u05d5\u05dd");
    QTest::newRow("placeholders") << QString("%1 %2 %n %s ${HOME}");
    QTest::newRow("10,000 characters") << QString(10000, u'x');
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\U0001F9EC").repeated(1000);
}

void tst_CommandReport::hostileTexts()
{
    QFETCH(const QString, text);
    CommandStage stage;
    QVERIFY(stage.makeModelCalled("m.zel", text));
    const CommandResult result = stage.run({"report", "-o", "r", "m.zel"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    const ReportFolder report(stage.path("r"));
    QCOMPARE(report.faults(), QStringList());
    QVERIFY(report.files().value("pictures/cpa1.svg").contains("<svg"));
    if (text.size() > 1000) // cut in the heading, but whole beneath it
        QVERIFY(report.text("molecules.html").contains(text));
    if (isRow("right to left"))
        QVERIFY(!report.files().value("molecules.html").contains("\u202e"));
}

void tst_CommandReport::hostileIds()
{
    const QStringList ids{"../outside", "/tmp/outside", "a/b", "A/B", ".", "..", "con fig", "a#b?c",
        "%2e%2e", "cpa1", "mol-x", "x", "mol1\" onload=\"x", QString(3000, u'y')};
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", "begin molecule types\n A(b)\nend molecule types\n"));
    ZelDbSqlite file;
    ZelDbSqliteModel db(&file);
    QVERIFY(file.open(stage.path("m.zel")));
    for (const QString &id : ids) {
        QVERIFY(db.molInsert({{ZelDbColumn::PsiimId, id}, {ZelDbColumn::ShortName, "of " + id}}));
        QVERIFY(db.mcpInsert({{ZelDbColumn::PsiimId, "mcp " + id}, {ZelDbColumn::ShortName, "c"},
            {ZelDbColumn::OwnerPsiimId, id}}));
    }
    file.close();
    const QStringList before = stage.files();
    const CommandResult result = stage.run({"report", "-o", "r", "m.zel"});
    QVERIFY2(result.code == 0, qPrintable(result.err));
    QCOMPARE(stage.files(), before);
    QCOMPARE(folders(stage), QStringList{"r"});
    const ReportFolder report(stage.path("r"));
    QCOMPARE(report.faults(), QStringList());
    // Pictures of their own even where case does not tell files apart.
    QSet<QString> pictures;
    for (const QString &name : report.files().keys()) {
        if (name.startsWith("pictures/"))
            pictures.insert(name.toLower());
    }
    QCOMPARE(pictures.size(), ids.size() + 2); // A(b), and the contact map
}

void tst_CommandReport::sameBytes()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"report", "-o", "r1", "m.zel"}).code, 0);
    QCOMPARE(stage.run({"report", "-o", "r2", "m.zel"}).code, 0);
    QCOMPARE(stage.run({"report", "-o", "r2", "m.zel"}).code, 0);
    QCOMPARE(ReportFolder(stage.path("r1")).files(), ReportFolder(stage.path("r2")).files());
    QCOMPARE(folders(stage), QStringList({"r1", "r2"}));
    // As open to others as any folder.
    QVERIFY(QDir().mkdir(stage.path("plain")));
    QCOMPARE(QFile::permissions(stage.path("r1")), QFile::permissions(stage.path("plain")));
}

void tst_CommandReport::replacesReportsOnly_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("code");
    rows<QString, QString, int>({"script", "target", "code"},
        {{"new", {"", "t", 0}}, {"empty folder", {"mkdir t", "t", 0}},
            {"with a slash", {"mkdir t", "t/", 0}}, {"report", {"cp -r old t", "t", 0}},
            {"file of the user's", {"cp -r old t; touch t/notes.txt", "t", 1}},
            {"hidden file", {"cp -r old t; touch t/.notes", "t", 1}},
            {"among the pictures", {"cp -r old t; touch t/pictures/mine.png", "t", 1}},
            {"folder of the user's", {"cp -r old t; mkdir t/mine.html", "t", 1}},
            {"link among the pages", {"cp -r old t; ln -s ../m.zel t/x.html", "t", 1}},
            {"link as pictures",
                {"cp -r old t; rm -r t/pictures; ln -s ../old/pictures t/pictures", "t", 1}},
            {"link to a report", {"ln -s old t", "t", 1}}, {"dead link", {"ln -s no t", "t", 1}},
            {"other pages", {"mkdir t; echo '<html/>' >t/index.html", "t", 1}},
            {"other folder", {"mkdir t; touch t/a", "t", 1}}, {"file", {"touch t", "t", 1}},
            {"the model", {"", "m.zel", 1}}, {"folder of the model", {"", ".", 1}},
            {"no such folder", {"", "no/t", 1}}, {"under a file", {"", "m.zel/t", 1}}});
}

void tst_CommandReport::replacesReportsOnly()
{
    QFETCH(const QString, script);
    QFETCH(const QString, target);
    QFETCH(const int, code);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    QCOMPARE(stage.run({"report", "-q", "-o", "old", "m.zel"}).code, 0);
    QCOMPARE(stage.shell(script + "\nexit 0").code, 0);
    const QString listing = "find . -printf '%p %l %y %T@ %s\\n' | sort";
    const QString before = stage.shell(listing).out;
    const CommandResult result = stage.run({"report", "-q", "-o", target, "m.zel"});
    QCOMPARE(result.code, code);
    if (code == 0) {
        QCOMPARE(result.err, QString());
        QCOMPARE(ReportFolder(stage.path("t")).files(), ReportFolder(stage.path("old")).files());
        QCOMPARE(folders(stage), QStringList({"old", "t"}));
    } else {
        QCOMPARE(result.err.count(u'\n'), 1);
        QCOMPARE(stage.shell(listing).out, before);
    }
}

void tst_CommandReport::nothingToDraw()
{
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel",
        "begin molecule types\n A(b)\n Trash()\nend molecule types\n"
        "begin seed species\n A(b) 1\n Trash() 0\nend seed species\n"
        "begin reaction rules\n A(b) -> Trash() 1\nend reaction rules\n"));
    // What has no parts is named, which is no fault.
    QCOMPARE(stage.run({"report", "-o", "r", "m.zel"}).code, 0);
    QCOMPARE(ReportFolder(stage.path("r")).faults(), QStringList());
    QVERIFY(stage.execute("m.zel",
        {"INSERT INTO cpx (psiimId, shortName) VALUES ('cpx9', 'nothing')",
            "INSERT INTO cpa (psiimId, cpx, shortName) VALUES ('cpa9', 'cpx9', 'lost')"}));
    const CommandResult result = stage.run({"report", "-o", "r", "m.zel"});
    QCOMPARE(result.code, 3);
    QVERIFY2(result.err.contains("cpa9"), qPrintable(result.err));
    QCOMPARE(ReportFolder(stage.path("r")).faults(), QStringList());
}

void tst_CommandReport::fullDisk_data()
{
    QTest::addColumn<QString>("blocks");
    QTest::newRow("nothing at all") << "0";
    QTest::newRow("not all of a page") << "8";
}

void tst_CommandReport::fullDisk()
{
    QFETCH(const QString, blocks);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", manySpecies(100)));
    QCOMPARE(stage.run({"report", "-o", "old", "m.zel"}).code, 0);
    const QHash<QString, QByteArray> before = ReportFolder(stage.path("old")).files();
    for (const char *target : {"old", "new"}) {
        const CommandResult result = stage.shell(QLatin1String("ulimit -f %1; exec \"$zelmodel\" "
                                                               "report -o %2 m.zel")
                                                     .arg(blocks, QLatin1String(target)));
        QCOMPARE(result.code, 1);
        QCOMPARE(result.err.count(u'\n'), 1);
        QCOMPARE(folders(stage), QStringList{"old"});
        QCOMPARE(ReportFolder(stage.path("old")).files(), before);
    }
}

void tst_CommandReport::interrupted_data()
{
    QTest::addColumn<bool>("replaces");
    QTest::newRow("new report") << false;
    QTest::newRow("over an older one") << true;
}

void tst_CommandReport::interrupted()
{
    QFETCH(const bool, replaces);
    CommandStage stage;
    // More species than any machine draws before the signal arrives.
    QVERIFY(stage.importModel("m.zel", manySpecies(4000)));
    QVERIFY(stage.importModel("small.zel", CommandStage::source()));
    if (replaces)
        QCOMPARE(stage.run({"report", "-o", "r", "small.zel"}).code, 0);
    const QStringList foldersBefore = folders(stage);
    const QHash<QString, QByteArray> before = ReportFolder(stage.path("r")).files();
    QProcess process;
    process.setWorkingDirectory(stage.path(QString()));
    process.start(QStringLiteral(ZELMODEL_BINARY), {"report", "-o", "r", "m.zel"});
    QTRY_VERIFY_WITH_TIMEOUT(folders(stage) != foldersBefore, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(
        QFile::exists(stage.path(folders(stage).filter("part-").value(0) + "/species.html")),
        60000);
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    const QString message = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(message.contains(replaces ? "Interrupted; the report in 'r' is as it was before."
                                       : "Interrupted; 'r' was not written."),
        qPrintable(message));
    QCOMPARE(folders(stage), foldersBefore);
    QCOMPARE(ReportFolder(stage.path("r")).files(), before);
}

ZEL_TEST(tst_CommandReport)
#include "tst_CommandReport.moc"
