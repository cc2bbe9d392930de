#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_ZelDbFile : public ZelTest
{
    Q_OBJECT
private slots:
    void createNeverOverwrites()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        f.db.close();
        const QByteArray before = readFile(f.path);
        QVERIFY(!f.db.create(f.path));
        QCOMPARE(f.db.error(), ZelDbSqlite::AlreadyExists);
        QVERIFY(f.db.errorText().contains(f.path));
        QVERIFY(!f.db.isOpen());
        QCOMPARE(readFile(f.path), before);
    }

    void failedCreateLeavesNothing()
    {
        QTemporaryDir dir;
        ZelDbSqlite db;
        QVERIFY(!db.create(dir.filePath("no/such/folder/a.zel")));
        QCOMPARE(db.error(), ZelDbSqlite::MissingFile);
        // A name too long for the file system is noticed only while the file is made.
        const QString tooLong = dir.filePath(QString(250, u'x') + QLatin1String(".zel"));
        QVERIFY(!db.create(tooLong));
        QVERIFY(!db.isOpen());
        QVERIFY(!db.errorText().isEmpty());
        QVERIFY(QDir(dir.path()).isEmpty());
    }

    void unusableFilesAreRefusedEachWithItsReason_data()
    {
        QTest::addColumn<QByteArray>("content"); // null: none; "sql:" statements for a new model
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("says");
        const auto row = [](const char *name, const QByteArray &content, ZelDbSqlite::Error error,
                             const char *says) {
            QTest::newRow(name) << content << int(error) << QString::fromLatin1(says);
        };
        row("missing", {}, ZelDbSqlite::MissingFile, "There is no model file");
        row("empty", "", ZelDbSqlite::ForeignFile, "it is empty");
        row("text", QByteArray(5000, 'x'), ZelDbSqlite::ForeignFile, "is not a model file");
        row("short text", "hello", ZelDbSqlite::ForeignFile, "is not a model file");
        row("other application", "sql:PRAGMA application_id = 17", ZelDbSqlite::ForeignFile,
            "another program");
        row("newer schema", "sql:PRAGMA user_version = 99", ZelDbSqlite::NewerSchema,
            "newer version");
        row("unknown older schema", "sql:PRAGMA user_version = 0", ZelDbSqlite::MigrationFailed,
            "cannot bring up to date");
        row("table lost", "sql:DROP TABLE cad", ZelDbSqlite::Corrupt, "tables");
        row("column lost", "sql:ALTER TABLE utr DROP COLUMN reason", ZelDbSqlite::Corrupt,
            "tables");
        row("garbage inside", "bytes", ZelDbSqlite::Corrupt, "damaged");
    }

    void unusableFilesAreRefusedEachWithItsReason()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, error);
        QFETCH(QString, says);
        DbFixture f;
        f.db.close();
        if (content.startsWith("sql:")) {
            QVERIFY(f.execute({QString::fromLatin1(content.mid(4))}));
        } else if (content == "bytes") {
            QByteArray bytes = readFile(f.path);
            bytes.replace(100, 900, QByteArray(900, '\xff'));
            QVERIFY(writeFile(f.path, bytes));
        } else {
            QVERIFY(QFile::remove(f.path));
            if (!content.isNull())
                QVERIFY(writeFile(f.path, content));
        }
        const QByteArray before = readFile(f.path);
        QVERIFY(!f.db.open(f.path));
        QCOMPARE(int(f.db.error()), error);
        QVERIFY2(f.db.errorText().contains(says), qPrintable(f.db.errorText()));
        QVERIFY(f.db.errorText().contains(f.path));
        QVERIFY(!f.db.isOpen());
        QCOMPARE(readFile(f.path), before);
        QCOMPARE(QFile::exists(f.path), !content.isNull());
    }

    void cutOffFilesAreDamaged_data()
    {
        rows<int>({"size"},
            {{"within the header", {40}}, {"within the first page", {2000}},
                {"after the first page", {4096}}, {"last page gone", {-1}}});
    }

    void cutOffFilesAreDamaged()
    {
        QFETCH(int, size);
        DbFixture f;
        QVERIFY(f.addComplex());
        f.db.close();
        const QByteArray whole = readFile(f.path);
        QVERIFY(writeFile(f.path, size < 0 ? whole.chopped(4096) : whole.left(size)));
        QVERIFY(!f.db.open(f.path));
        QCOMPARE(f.db.error(), ZelDbSqlite::Corrupt);
        QVERIFY(f.db.errorText().contains(QLatin1String("restore it from a backup")));
    }

    void foreignTriggersAreRefused()
    {
        DbFixture f;
        QVERIFY(f.execute({"CREATE TABLE note (text)"}));
        QVERIFY2(f.db.open(f.path), qPrintable(f.db.errorText()));
        QVERIFY(f.execute({"CREATE TRIGGER evil AFTER INSERT ON mol BEGIN DELETE FROM mol; END"}));
        QVERIFY(!f.db.open(f.path));
        QCOMPARE(f.db.error(), ZelDbSqlite::Corrupt);
    }

    void readOnlyConnectionsReadButDoNotWrite()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        f.db.close();
        const QByteArray before = readFile(f.path);
        QVERIFY2(f.db.openReadOnly(f.path), qPrintable(f.db.errorText()));
        QVERIFY(f.db.isReadOnly());
        QCOMPARE(f.model.molGetListPsiimId().size(), 2);
        QVERIFY(!f.model.molInsert({{C::PsiimId, "mol9"}}));
        QCOMPARE(f.db.error(), ZelDbSqlite::ReadOnly);
        QVERIFY(f.model.errorText().contains(QLatin1String("read-only")));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Mol, &f.model), QString());
        QVERIFY2(f.db.backupTo(f.file("copy.zel")), qPrintable(f.db.errorText()));
        f.db.close();
        QCOMPARE(readFile(f.path), before);
        QVERIFY(f.execute({"PRAGMA user_version = 0"}));
        QVERIFY(!f.db.openReadOnly(f.path));
        QCOMPARE(f.db.error(), ZelDbSqlite::OlderSchema);
    }

    void fullDiskLosesNothing()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QStringList before = DbFixture::dump(f.path);
        QVERIFY(f.db.setSizeLimit(1));
        {
            ZelDbTransaction transaction(&f.db);
            QVERIFY(f.model.molInsert({{C::PsiimId, "mol1"}, {C::ShortName, "changed"}}));
            QVERIFY(!f.model.molInsert(
                {{C::PsiimId, "mol9"}, {C::GraphicsInfo, QString(3000000, u'x')}}));
            QCOMPARE(f.db.error(), ZelDbSqlite::DiskFull);
            // SQLite may have ended the transaction: nothing may slip into the file from here on.
            QVERIFY(!f.model.molInsert({{C::PsiimId, "mol10"}}));
            QVERIFY(!transaction.commit());
        }
        QCOMPARE(f.db.error(), ZelDbSqlite::DiskFull);
        QVERIFY(f.db.errorText().contains(QLatin1String("no room")));
        QCOMPARE(DbFixture::dump(f.path), before);
        QVERIFY(f.db.setSizeLimit(0));
        QVERIFY(f.model.molInsert({{C::PsiimId, "mol10"}}));
    }

    void backupHoldsTheModel()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QString copy = f.file("it's a copy.zel");
        {
            ZelDbTransaction transaction(&f.db);
            QVERIFY(!f.db.backupTo(copy));
            transaction.rollback();
        }
        QVERIFY2(f.db.backupTo(copy), qPrintable(f.db.errorText()));
        QVERIFY(!f.db.backupTo(copy));
        QCOMPARE(f.db.error(), ZelDbSqlite::AlreadyExists);
        QVERIFY(!f.db.backupTo(f.file("none/copy.zel")));
        QCOMPARE(DbFixture::dump(copy), DbFixture::dump(f.path));
        ZelDbSqlite other;
        QVERIFY2(other.open(copy), qPrintable(other.errorText()));
    }

    void olderSchemaIsMigratedAfterABackup()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        f.db.close();
        const QStringList before = DbFixture::dump(f.path);
        const ZelDbMigrations migrations{4,
            {{3, {"UPDATE mol SET notes = notes || ' then 4'"}},
                {2, {"UPDATE mol SET notes = 'step 3'", "CREATE TABLE extra (a)"}}}};
        QVERIFY2(f.db.open(f.path, migrations), qPrintable(f.db.errorText()));
        QCOMPARE(f.db.schemaVersion(), 4);
        QCOMPARE(f.model.molGetHashInfo("mol1").value(C::Notes), "step 3 then 4");
        const QString backup = f.path + QLatin1String(".v2.bak");
        QCOMPARE(DbFixture::dump(backup), before);
        QVERIFY(f.db.open(f.path, migrations)); // no second time, no second backup
        f.db.close();
        QCOMPARE(QDir(f.dir.path()).entryList(QDir::Files).size(), 2);
        QVERIFY(!f.db.open(f.path)); // newer than what this library writes
        QCOMPARE(f.db.error(), ZelDbSqlite::NewerSchema);
    }

    void versionOneToldCopiesByTheirNames()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        const QHash<QString, QStringList> names{{"mcp1", {"b", "b", "b"}},
            {"mcp2", {"b_2", "b", "b"}}, {"mcp3", {"b", "b", ""}}, {"mcp4", {"b_x", "b", ""}},
            {"mcp5", {"b2", "b", ""}}, {"mcp6", {"a%_12", "a%", ""}}, {"mcp7", {"", "", ""}}};
        for (auto it = names.cbegin(); it != names.cend(); ++it) {
            QVERIFY(f.model.mcpInsert({{C::PsiimId, it.key()}, {C::ShortName, it->at(0)},
                {C::Name, it->at(1)}, {C::OwnerPsiimId, it.key() == "mcp3" ? "mol2" : "mol1"}}));
        }
        f.db.close();
        const QStringList now = DbFixture::dump(f.path);
        QVERIFY(f.execute({"ALTER TABLE mcp DROP COLUMN copyGroup", "PRAGMA user_version = 1"}));
        QVERIFY2(f.db.open(f.path), qPrintable(f.db.errorText()));
        for (auto it = names.cbegin(); it != names.cend(); ++it)
            QCOMPARE(f.model.mcpGetHashInfo(it.key()).value(C::CopyGroup), it->at(2));
        QVERIFY(f.model.mcpSetCopyGroup("mcp1", {}) && f.model.mcpSetCopyGroup("mcp2", {}));
        f.db.close();
        QCOMPARE(DbFixture::dump(f.path), now);
    }

    void failedMigrationLeavesTheFileAsItWas_data()
    {
        rows<QString>({"last"},
            {{"statement fails", {"UPDATE nowhere SET a = 1"}},
                {"dangling reference", {"UPDATE mcp SET mol = 'nobody' WHERE psiimId = 'mcp1'"}}});
    }

    void failedMigrationLeavesTheFileAsItWas()
    {
        QFETCH(QString, last);
        DbFixture f;
        QVERIFY(f.addComplex());
        f.db.close();
        const QStringList before = DbFixture::dump(f.path);
        QVERIFY(!f.db.open(f.path, {3, {{2, {"UPDATE mol SET notes = 'half'", last}}}}));
        QCOMPARE(f.db.error(), ZelDbSqlite::MigrationFailed);
        const QString backup = f.path + QLatin1String(".v2.bak");
        QVERIFY2(f.db.errorText().contains(backup), qPrintable(f.db.errorText()));
        QCOMPARE(DbFixture::dump(f.path), before);
        QCOMPARE(DbFixture::dump(backup), before);
        QVERIFY(f.db.open(f.path));
    }

    void modelsOutliveTheirConnection()
    {
        auto *db = new ZelDbSqlite;
        QVERIFY(db->create(":memory:"));
        ZelDbSqliteModel model(db);
        ZelDbTransaction transaction(db);
        QVERIFY(model.molInsert({{C::PsiimId, "mol1"}}));
        db->close();
        QVERIFY(!transaction.commit());
        QVERIFY(!model.molInsert({{C::PsiimId, "mol1"}}));
        QVERIFY(model.errorText().contains(QLatin1String("No model file is open")));
        delete db;
        QVERIFY(!transaction.commit());
        QVERIFY(model.molGetHashInfo("mol1").isEmpty());
        QVERIFY(!model.molRemove("mol1"));
        QVERIFY(model.errorText().contains(QLatin1String("No model file is open")));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Mol, &model), QString());
    }

    void integrityCheckNamesContradictions_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *name, const char *statement, const char *problem) {
            QTest::newRow(name) << QString::fromLatin1(statement) << QString::fromLatin1(problem);
        };
        row("dangling reference", "UPDATE trn SET fromCpa = 'gone'",
            "table cpa that does not exist");
        row("bond at another molecule's site", "UPDATE cpxBstBst SET bst1 = 'bst3'",
            "Complex cpx1 has a bond at site bst3 of its molecule 0, which has no such site.");
        row("two bonds on one site",
            "INSERT INTO cpxBstBst (cpx, molPos1, bst1, molPos2, bst2)"
            " VALUES ('cpx1', 1, 'bst3', 0, 'bst2')",
            "Complex cpx1 has more than one bond at site bst3 of its molecule 1.");
        row("hole in the molecules", "DELETE FROM cpxMol WHERE position = 0", "positions");
        row("backbone beyond the chain", "INSERT INTO mcpMcp VALUES ('mol2', 0, 1)",
            "Molecule mol2");
        row("complex stored twice",
            "INSERT INTO cpx (psiimId, fingerPrint) VALUES ('twin', 'finger')",
            "Complexes cpx1 and twin are the same.");
    }

    void integrityCheckNamesContradictions()
    {
        QFETCH(QString, statement);
        QFETCH(QString, problem);
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        QCOMPARE(f.db.checkIntegrity(), QStringList());
        QVERIFY(f.execute({statement}));
        QVERIFY(f.db.open(f.path));
        const QStringList problems = f.db.checkIntegrity();
        QVERIFY2(problems.join(u'\n').contains(problem), qPrintable(problems.join(u'\n')));
    }
};

ZEL_TEST(tst_ZelDbFile)
#include "tst_ZelDbFile.moc"
