#include "CommandStage.h"

#include "support/ZelTest.h"

#include <QFile>
#include <QFileInfo>

/// What README.md tells a newcomer to type works as it stands there.
class tst_FirstSteps : public ZelTest
{
    Q_OBJECT
private slots:
    void everyLineWorks();

private:
    static QStringList linesOfSection(const QString &title);
};

/// The indented lines, which are those to be typed.
QStringList tst_FirstSteps::linesOfSection(const QString &title)
{
    QFile file(QStringLiteral(ZEL_SOURCE_DIR "/README.md"));
    QStringList lines;
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    bool isInside = false;
    const QStringList all = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : all) {
        if (line.startsWith("## "))
            isInside = line == "## " + title;
        else if (isInside && line.startsWith("    "))
            lines.append(line.trimmed());
    }
    return lines;
}

void tst_FirstSteps::everyLineWorks()
{
    const QStringList lines = linesOfSection("First steps");
    QVERIFY(lines.size() > 10);
    CommandStage stage;
    QVERIFY(QFile::link(QStringLiteral(ZEL_SOURCE_DIR "/examples"), stage.path("examples")));
    // One shell for all, as it is for a reader; each line tells how it ended.
    QString script = "PATH=$(dirname \"$zelmodel\"):$PATH\n";
    for (const QString &line : lines)
        script += line + "\necho \"= $?\"\n";
    const CommandResult result = stage.shell(script);
    const QStringList output = result.out.split(u'\n');
    QVERIFY2(output.count("= 0") == lines.size(), qPrintable(result.out + result.err));
    // The last one compares the model with what it has become elsewhere.
    QVERIFY2(output.contains("The models say the same."), qPrintable(result.out));
    for (const char *file : {"acts.svg", "map.pdf", "report/index.html", "cascade.bngl"})
        QVERIFY2(QFileInfo(stage.path(file)).size() > 500, file);
}

ZEL_TEST(tst_FirstSteps)
#include "tst_FirstSteps.moc"
