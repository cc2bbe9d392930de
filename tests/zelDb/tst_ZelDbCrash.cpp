#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int KilledExitCode = 42;

/// A save as a host does it. The long text makes SQLite write to the file before the commit.
bool save(ZelDbSqlite &db)
{
    ZelDbSqliteModel model(&db);
    const auto text = [](const char *s) { return QString::fromLatin1(s); };
    ZelDbTransaction transaction(&db);
    model.molInsert({{C::PsiimId, text("mol1")}, {C::ShortName, text("A2")},
        {C::GraphicsInfo, QString(4000000, u'x')}});
    model.mcpInsert({{C::PsiimId, text("mcp1")}, {C::OwnerPsiimId, text("mol1")},
        {C::Location, text("Inside-membrane")}});
    model.mcpInsertState(text("mcp1"), text("R"), text("#0000ff"), 2);
    model.cpxInsert(
        text("cpx1"), text("A2.B"), {}, {}, {}, text("finger2"), {}, text("mol2"), text("0"));
    model.cpxInsertMol(text("cpx1"), text("mol2"), text("0"));
    model.mliRemove(text("mli1"));
    model.refInsert(text("mol"), text("mol1"), text("a paper"));
    return transaction.commit();
}

/// Arguments: file, number of statements after which the process dies (0 = it lives).
int saveAndDie(const QStringList &arguments)
{
    ZelDbSqlite db;
    if (!db.open(arguments.value(0)))
        return 3;
    int left = arguments.value(1).toInt();
    db.setStatementObserver([&left](const QString &, const QVariantList &) {
        if (--left == 0)
            _exit(KilledExitCode);
    });
    return save(db) ? 0 : 4;
}

/// Arguments: file, "exclusive" to hold it so that it cannot even be read. Until the input ends.
int holdLock(const QStringList &arguments)
{
    ZelDbSqlite db;
    if (!db.open(arguments.value(0)))
        return 3;
    ZelDbSqliteModel model(&db);
    ZelDbTransaction transaction(&db);
    const int length = arguments.value(1) == QLatin1String("exclusive") ? 8000000 : 1;
    model.utrInsert({{C::PsiimId, "utr1"}, {C::SourceText, QString(length, u'x')}});
    model.utrInsert({{C::PsiimId, "utr2"}, {C::SourceText, QString(length, u'x')}});
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    return transaction.commit() ? 0 : 4;
}

ZEL_TEST_CHILD("db-save", saveAndDie)
ZEL_TEST_CHILD("db-hold", holdLock)

QStringList childArguments(const char *name, const QStringList &arguments)
{
    return QStringList{"--child", QString::fromLatin1(name)} + arguments;
}

} // namespace

class tst_ZelDbCrash : public ZelTest
{
    Q_OBJECT
private slots:
    void killedSaveIsWholeOrUndone()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        f.db.close();
        const QStringList before = DbFixture::dump(f.path);
        const QString saved = f.file("saved.zel");
        QVERIFY(QFile::copy(f.path, saved));
        QVERIFY(f.db.open(saved));
        QVERIFY2(save(f.db), qPrintable(f.db.errorText()));
        f.db.close();
        const QStringList after = DbFixture::dump(saved);
        QVERIFY(before != after);

        int interrupted = 0;
        int exitCode = KilledExitCode;
        for (int n = 1; exitCode == KilledExitCode; ++n) {
            const QString victim = f.file(QStringLiteral("victim%1.zel").arg(n));
            QVERIFY(QFile::copy(f.path, victim));
            exitCode = QProcess::execute(QCoreApplication::applicationFilePath(),
                childArguments("db-save", {victim, QString::number(n)}));
            QVERIFY(exitCode == KilledExitCode || exitCode == 0);
            interrupted += QFile::exists(victim + QLatin1String("-journal"));
            QVERIFY2(f.db.open(victim), qPrintable(f.db.errorText()));
            QCOMPARE(f.db.checkIntegrity(), QStringList());
            f.db.close();
            const QStringList found = DbFixture::dump(victim);
            QVERIFY2(found == before || found == after, qPrintable(QString::number(n)));
            if (exitCode == 0)
                QVERIFY2(found == after, "a finished save is stored");
            QVERIFY(QFile::remove(victim));
            QVERIFY(n < 200);
        }
        // Otherwise the interruptions would not have hit a file in the middle of a change.
        QVERIFY(interrupted > 5);
    }

    void fileHeldByAnotherProcessIsLocked_data()
    {
        rows<QString>(
            {"mode"}, {{"save in progress", {"reserved"}}, {"file being written", {"exclusive"}}});
    }

    void fileHeldByAnotherProcessIsLocked()
    {
        QFETCH(QString, mode);
        const bool exclusive = mode == QLatin1String("exclusive");
        DbFixture f;
        QVERIFY(f.addComplex());
        QProcess holder;
        holder.start(
            QCoreApplication::applicationFilePath(), childArguments("db-hold", {f.path, mode}));
        QVERIFY(holder.waitForReadyRead());
        QCOMPARE(holder.readLine().trimmed(), QByteArray("held"));

        QCOMPARE(f.model.molGetListPsiimId().size(), exclusive ? 0 : 2);
        QVERIFY(!f.model.molInsert({{C::PsiimId, "mol9"}}));
        QCOMPARE(f.db.error(), ZelDbSqlite::Locked);
        QVERIFY2(f.db.errorText().contains(QLatin1String("in use by another program")),
            qPrintable(f.db.errorText()));
        ZelDbSqlite other;
        QCOMPARE(other.open(f.path), !exclusive);
        if (exclusive)
            QCOMPARE(other.error(), ZelDbSqlite::Locked);

        holder.closeWriteChannel();
        QVERIFY(holder.waitForFinished());
        QCOMPARE(holder.exitCode(), 0);
        QVERIFY2(f.model.molInsert({{C::PsiimId, "mol9"}}), qPrintable(f.db.errorText()));
        QCOMPARE(f.model.utrGetListPsiimId().size(), 2);
    }
};

ZEL_TEST(tst_ZelDbCrash)
#include "tst_ZelDbCrash.moc"
