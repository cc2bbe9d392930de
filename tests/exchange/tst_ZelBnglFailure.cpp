#include "ClosedFamily.h"
#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

namespace {

constexpr int KilledExitCode = 42;

QByteArray blockOf(const QByteArray &name, const QByteArray &entries)
{
    return "begin " + name + '\n' + entries + "\nend " + name + '\n';
}

/// Something of every kind, and, at the beginning, more than the page cache holds back until the
/// commit.
QByteArray largeSource()
{
    QByteArray parameters;
    for (int i = 0; i < 5; ++i)
        parameters += 'p' + QByteArray::number(i) + ' ' + QByteArray("1+").repeated(450000) + "1\n";
    return blockOf("parameters", parameters) + blockOf("compartments", "c 3 1")
        + ClosedFamily{2, false}.source() + blockOf("reaction rules", "K(b) -> 0 1\n0 -> F(b) 1")
        + blockOf("observables", "Molecules k K()") + blockOf("functions", "f() = 2")
        + "simulate({t=>1})\n";
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Arguments: database, model, number of statements after which the process dies.
int importAndDie(const QStringList &arguments)
{
    ZelDbSqlite file;
    if (!file.open(arguments.value(0)))
        return 3;
    int left = arguments.value(2).toInt();
    file.setStatementObserver([&left](const QString &, const QVariantList &) {
        if (--left == 0)
            _exit(KilledExitCode);
    });
    ZelDbSqliteModel db(&file);
    return ZelBnglImport(&db).importFile(arguments.value(1)) ? 0 : 4;
}

ZEL_TEST_CHILD("import", importAndDie)

} // namespace

/// Imports that fail leave the database as it was, and say why and what to do.
class tst_ZelBnglFailure : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        ZelDbSqlite file;
        QVERIFY(file.create(pathOf("before.zel")));
        ZelDbSqliteModel db(&file);
        QVERIFY(ZelBnglImport(&db).importModel(
            ZelBnglParser::parse(blockOf("seed species", "A(b!1).B(a!1) 1"), "before.bngl")));
        file.close();
        m_before = bytesOf(pathOf("before.zel"));
        QVERIFY(write(pathOf("large.bngl"), largeSource()));
    }

    void bearsAFullDisk()
    {
        const auto kibibytes = [](const QByteArray &bytes) {
            return static_cast<int>(bytes.size() / 1024);
        };
        const QString path = pathOf("full.zel");
        int whole = 0;
        // As large as before, in the middle of the parameters, and one page less than needed.
        for (const int limit : {0, kibibytes(m_before), 2000, -40, -4}) {
            QVERIFY(write(path, m_before));
            ZelDbSqlite file;
            QVERIFY(file.open(path));
            ZelDbSqliteModel db(&file);
            ZelBnglImport importer(&db);
            QVERIFY(file.setSizeLimit(limit >= 0 ? limit : whole + limit));
            QCOMPARE(importer.importFile(pathOf("large.bngl")), limit == 0);
            if (limit == 0) {
                whole = kibibytes(bytesOf(path));
                continue;
            }
            QCOMPARE(importer.report().error,
                QStringLiteral(
                    "There is no room left to write the model file '%1'; free some space "
                    "and save again.")
                    .arg(path));
            QVERIFY(!file.isInTransaction());
            QCOMPARE(bytesOf(path), m_before);
            QVERIFY(file.setSizeLimit(0));
            QVERIFY2(
                importer.importFile(pathOf("large.bngl")), qPrintable(importer.report().error));
            QCOMPARE(importer.report().species, 18);
        }
        QVERIFY(whole > 4000);
    }

    void bearsBeingKilled()
    {
        const QString path = pathOf("killed.zel");
        int interrupted = 0;
        int code = KilledExitCode;
        for (int n = 1; code == KilledExitCode; n = n * 2 + 3) {
            QVERIFY(write(path, m_before));
            code = QProcess::execute(QCoreApplication::applicationFilePath(),
                {"--child", "import", path, pathOf("large.bngl"), QString::number(n)});
            interrupted += QFile::exists(path + QLatin1String("-journal")) ? 1 : 0;
            ZelDbSqlite file;
            QVERIFY2(file.open(path), qPrintable(file.errorText()));
            QCOMPARE(file.checkIntegrity(), QStringList());
            const bool isWhole = ZelDbSqliteModel(&file).molGetListPsiimId().size() > 2;
            QCOMPARE(isWhole, code == 0);
            file.close();
            if (!isWhole)
                QCOMPARE(bytesOf(path), m_before);
        }
        QCOMPARE(code, 0);
        // Otherwise the interruptions would not have hit a file in the middle of a change.
        QVERIFY(interrupted > 5);
    }

    void bearsBeingBrokenOffAnywhere()
    {
        const QByteArray source = blockOf("parameters", "k 1") + blockOf("compartments", "c 3 1")
            + ClosedFamily{1, false}.source() + blockOf("reaction rules", "K(b) -> 0 1")
            + blockOf("observables", "Molecules k K()");
        const ZelBnglModel model = ZelBnglParser::parse(source, "m.bngl");
        const QString path = pathOf("broken.zel");
        QVERIFY(write(path, m_before));
        ZelDbSqlite file;
        QVERIFY(file.open(path));
        ZelDbSqliteModel db(&file);
        ZelBnglImport importer(&db);
        int last = 0;
        int steps = 0;
        bool isInOrder = true;
        importer.setProgress([&](int done, int total) {
            isInOrder = isInOrder && done == steps && done < total;
            ++steps;
            return done < last;
        });
        for (;; ++last, steps = 0) {
            if (importer.importModel(model))
                break;
            QCOMPARE(importer.report().error, "The import was broken off.");
            QCOMPARE(bytesOf(path), m_before);
        }
        QVERIFY(isInOrder);
        // A parameter, a compartment, three types, six species, a rule, an observable.
        QCOMPARE(last, 13);
        QCOMPARE(importer.report().species, 6);
    }

    void refusesWhatIsNoModel_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error"); // behind the path
        const auto add = [](const char *row, const QByteArray &bytes, const char *error) {
            QTest::newRow(row) << bytes << QString::fromLatin1(error);
        };
        add("empty", {},
            ":1:1: The file holds no block. A model needs at least one, such as \"begin molecule "
            "types\" up to \"end molecule types\".");
        QByteArray binary;
        for (int i = 0; i < 100000; ++i)
            binary += static_cast<char>(i * 7919 >> 3);
        add("binary", "\x7f" + binary, ":1:1: The character U+007F stands outside of all blocks");
        add("UTF-16",
            QByteArray("\xff\xfe"
                       "b\0e\0",
                6),
            ":1:1: The file is written in UTF-16. Save it as UTF-8 and try again.");
        add("one long line", "begin parameters\nk " + QByteArray("1+").repeated(1 << 20) + "1",
            ":2:1: This entry has more than 1048576 characters. Split it.");
        add("one long word", QByteArray(4 << 20, 'A'), ":1:1: \"AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA");
        add("cut off", "begin seed species\nA(b!1).B(", ":2:10: ");
    }

    void refusesWhatIsNoModel()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, error);
        const QString path = pathOf("m.bngl");
        QVERIFY(write(path, bytes));
        ImportStage stage;
        QVERIFY(!stage.importer.importFile(path));
        QVERIFY2(stage.report().error.startsWith(path + error), qPrintable(stage.report().error));
        QVERIFY(stage.report().error.size() < 4000);
    }

    void refusesWhatCannotBeDrawn_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("error");
        const QByteArray sites = QByteArray("b,").repeated(200) + 'b';
        const QByteArray states = [] {
            QByteArray text;
            for (int i = 0; i < 50; ++i)
                text += '~' + QByteArray::number(i);
            return text;
        }();
        QTest::newRow("components of a type")
            << blockOf("molecule types", "K()\nA(" + sites + ')')
            << QStringLiteral("m.bngl:3:1: The molecule \"A\" has more than 200 components, which "
                              "cannot be drawn. Split it into several molecules.");
        QTest::newRow("components of an undeclared molecule")
            << blockOf("seed species", "A(" + sites + ") 1")
            << QStringLiteral("m.bngl:2:1: The molecule \"A\" has more than 200 components, which "
                              "cannot be drawn. Split it into several molecules.");
        QTest::newRow("states of components that are alike")
            << blockOf("molecule types", "A(" + ('b' + states + ',').repeated(20) + "c)")
            << QStringLiteral("m.bngl:2:1: The molecule \"A\" has more than 1000 components and "
                              "states, which cannot be drawn. Split it into several molecules.");
    }

    void refusesWhatCannotBeDrawn()
    {
        QFETCH(const QByteArray, source);
        QFETCH(const QString, error);
        ImportStage stage;
        QVERIFY(!stage.import(source));
        QCOMPARE(stage.report().error, error);
    }

    void keepsSpeciesThatCannotBeDrawn_data()
    {
        QTest::addColumn<QByteArray>("species");
        QTest::addColumn<QString>("reason");
        const auto chain = [](int count) {
            QByteArray text("A(b!1)");
            for (int i = 1; i < count; ++i) {
                text += ".A(b!" + QByteArray::number(i) + ",b!" + QByteArray::number(i + 1) + ')';
            }
            return text + ".A(b!" + QByteArray::number(count) + ')';
        };
        QTest::newRow("molecules")
            << chain(1000) << QStringLiteral("it has more than 1000 molecules");
        QTest::newRow("components") << chain(900) + ".B(" + QByteArray("x,").repeated(99)
                + "x)" << QStringLiteral("it has more than 10000 components and states in all");
        QTest::newRow("attributes") << QByteArray("A(b,b){x=1}")
                                    << QStringLiteral("the model holds no attributes in braces");
    }

    void keepsSpeciesThatCannotBeDrawn()
    {
        QFETCH(const QByteArray, species);
        QFETCH(const QString, reason);
        ImportStage stage;
        const QByteArray types =
            "A(b,b,c,d,e,f,g,h,i,j,k)\nB(" + QByteArray("x,").repeated(110) + "x)";
        QVERIFY2(
            stage.import(blockOf("molecule types", types) + blockOf("species", species + " 7")),
            qPrintable(stage.report().error));
        QCOMPARE(stage.report().species, 0);
        QCOMPARE(stage.report().losses.size(), 1);
        QCOMPARE(stage.report().losses.first().reason, reason);
        QVERIFY(stage.report().losses.first().isKept);
    }

private:
    QString pathOf(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_dir;
    QByteArray m_before; ///< of a database with another model, "before.zel"
};

ZEL_TEST(tst_ZelBnglFailure)
#include "tst_ZelBnglFailure.moc"
