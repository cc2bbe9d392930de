#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>

/// How the program is called: wrong calls, help, and what is made from the table of commands.
class tst_CommandUsage : public ZelTest
{
    Q_OBJECT
private slots:
    void wrongUsage_data();
    void wrongUsage();
    void helpKnowsItsOptions_data();
    void helpKnowsItsOptions();
    void manualPagesAndCompletion();
    void shellsCompleteFromTheFiles_data();
    void shellsCompleteFromTheFiles();

private:
    static QStringList commands(const CommandStage &stage);
};

void tst_CommandUsage::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no command") << QStringList{} << "A command is missing";
    QTest::newRow("unknown command") << QStringList{"frobnicate"} << "no command 'frobnicate'";
    QTest::newRow("unknown option") << QStringList{"list", "--wat", "m.zel"} << "wat";
    QTest::newRow("option without value") << QStringList{"list", "m.zel", "--name"} << "--name";
    QTest::newRow("no model") << QStringList{"list"} << "Something is missing";
    QTest::newRow("too much") << QStringList{"create", "a.zel", "b.zel"} << "'b.zel' is too much";
    QTest::newRow("empty argument") << QStringList{"export", "m.zel", ""} << "argument is empty";
    QTest::newRow("unknown kind") << QStringList{"list", "m.zel", "ducks"} << "'ducks'";
    QTest::newRow("in memory") << QStringList{"create", ":memory:"} << "gone at once";
    QTest::newRow("no picture file") << QStringList{"render", "m.zel", "A"} << "--output";
    QTest::newRow("one and all") << QStringList{"render", "--all", "-o", "x", "m.zel", "A"}
                                 << "Name one record";
    QTest::newRow("kind of one") << QStringList{"render", "--kind", "species", "-o", "x.svg",
        "m.zel", "A"} << "for --all";
    QTest::newRow("unknown format") << QStringList{"render", "-o", "x.gif", "m.zel", "A"} << "gif";
    QTest::newRow("no size") << QStringList{"render", "-o", "x.png", "--size", "big", "m.zel", "A"}
                             << "400x300";
    QTest::newRow("size of nothing")
        << QStringList{"render", "-o", "x.png", "--size", "0x10", "m.zel", "A"} << "'0x10'";
    QTest::newRow("scale is no number")
        << QStringList{"render", "-o", "x.png", "--scale", "nan", "m.zel", "A"} << "'nan'";
    QTest::newRow("more pixels than memory") << QStringList{"render", "-o", "x.png", "--size",
        "4000x4000", "--scale", "20", "m.zel", "A"}
                                             << "too large";
    QTest::newRow("no colour") << QStringList{"render", "-o", "x.png", "--background", "mud",
        "m.zel", "A"} << "'mud'";
    QTest::newRow("unreadable pattern") << QStringList{"find", "m.zel", "A(b"} << "character 4";
    QTest::newRow("two patterns") << QStringList{"find", "m.zel", "A(),B()"} << "One pattern";
    QTest::newRow("pattern of two lines") << QStringList{"find", "m.zel", "A()\nB()"} << "one line";
}

void tst_CommandUsage::wrongUsage()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, reason);
    CommandStage stage;
    QVERIFY(stage.importModel("m.zel", CommandStage::source()));
    const QStringList files = stage.files();

    const CommandResult result = stage.run(arguments);
    QCOMPARE(result.code, 2);
    QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    QVERIFY2(result.err.contains("--help"), qPrintable(result.err));
    QCOMPARE(result.out, QString());
    QCOMPARE(stage.files(), files);
}

QStringList tst_CommandUsage::commands(const CommandStage &stage)
{
    static const QRegularExpression line(
        QStringLiteral("^  ([a-z]+)  +\\S.*$"), QRegularExpression::MultilineOption);
    QStringList names;
    QRegularExpressionMatchIterator matches =
        line.globalMatch(stage.run({QStringLiteral("--help")}).out);
    while (matches.hasNext())
        names.append(matches.next().captured(1));
    return names;
}

void tst_CommandUsage::helpKnowsItsOptions_data()
{
    QTest::addColumn<QString>("command");
    const QStringList names = commands(CommandStage());
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void tst_CommandUsage::helpKnowsItsOptions()
{
    QFETCH(const QString, command);
    CommandStage stage;
    const CommandResult help = stage.run({command, "--help"});
    QCOMPARE(help.code, 0);
    QCOMPARE(stage.run({"help", command}).out, help.out);
    const qsizetype at = help.out.indexOf("Examples:\n");
    QVERIFY(at > 0);
    const QString options = help.out.left(at);
    const QStringList examples = help.out.mid(at).split(u'\n');
    int count = 0;
    static const QRegularExpression option(QStringLiteral("(?<= )--?[a-z]+"));
    for (const QString &line : examples) {
        const QString call = line.section(u'|', 0, 0);
        if (!call.startsWith("  zelmodel "))
            continue;
        ++count;
        QVERIFY2(call.startsWith("  zelmodel " + command + u' '), qPrintable(line));
        QRegularExpressionMatchIterator words = option.globalMatch(call);
        while (words.hasNext()) {
            const QString word = words.next().captured();
            QVERIFY2(
                options.contains("  " + word) || options.contains(", " + word), qPrintable(line));
        }
    }
    QVERIFY(count > 0);
    for (const QString &line : help.out.split(u'\n'))
        QVERIFY2(line.size() <= 100, qPrintable(line));
}

void tst_CommandUsage::manualPagesAndCompletion()
{
    CommandStage stage;
    QCOMPARE(stage.run({"--write-manual", "."}).code, 0);
    QStringList expected{"_zelmodel", "zelmodel.1", "zelmodel.bash"};
    const QString overview = QString::fromUtf8(stage.content("zelmodel.1"));
    const QStringList names = commands(stage);
    QVERIFY(names.size() >= 8);
    for (const QString &name : names) {
        expected.append("zelmodel-" + name + ".1");
        const QString page = QString::fromUtf8(stage.content(expected.last()));
        for (const char *section : {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXAMPLES"})
            QVERIFY2(page.contains(".SH " + QString(section) + u'\n'), qPrintable(name));
        QVERIFY2(overview.contains("zelmodel\\-" + name), qPrintable(name));
    }
    expected.sort();
    QCOMPARE(stage.files(), expected);
    QCOMPARE(stage.run({"--write-manual", "no/such/folder"}).code, 1);
}

void tst_CommandUsage::shellsCompleteFromTheFiles_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("completed");
    QTest::newRow("command") << "zelmodel li"
                             << "list";
    QTest::newRow("several commands") << "zelmodel cr"
                                      << "create";
    QTest::newRow("option") << "zelmodel render --back"
                            << "--background";
    QTest::newRow("option of another command") << "zelmodel create --back"
                                               << "";
    QTest::newRow("file") << "zelmodel list zelmodel.ba"
                          << "zelmodel.bash";
}

void tst_CommandUsage::shellsCompleteFromTheFiles()
{
    QFETCH(const QString, words);
    QFETCH(const QString, completed);
    CommandStage stage;
    QCOMPARE(stage.run({"--write-manual", "."}).code, 0);
    QProcess bash;
    bash.setWorkingDirectory(stage.path(QString()));
    bash.start("bash",
        {"-c",
            QString(
                "source ./zelmodel.bash; COMP_WORDS=(%1); COMP_CWORD=$((${#COMP_WORDS[@]} - 1));"
                " _zelmodel; echo \"${COMPREPLY[*]}\"")
                .arg(words)});
    QVERIFY(bash.waitForFinished());
    QCOMPARE(QString::fromUtf8(bash.readAllStandardError()), QString());
    QCOMPARE(QString::fromUtf8(bash.readAllStandardOutput()).trimmed(), completed);
}

ZEL_TEST(tst_CommandUsage)
#include "tst_CommandUsage.moc"
