#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

namespace {

bool insertMol(DbFixture &f, const char *id)
{
    return f.model.molInsert({{C::PsiimId, QString::fromLatin1(id)}});
}

} // namespace

class tst_ZelDbTransaction : public ZelTest
{
    Q_OBJECT
private slots:
    void failureInsideIsRememberedWhateverTheCallersAnswer_data()
    {
        rows<int>({"kind"},
            {{"broken reference", {0}}, {"unusable input", {1}}, {"refused removal", {2}},
                {"no such record", {3}}, {"inside an operation of several statements", {4}}});
    }

    void failureInsideIsRememberedWhateverTheCallersAnswer()
    {
        QFETCH(int, kind);
        DbFixture f;
        QVERIFY(f.addComplex());
        const QStringList before = DbFixture::dump(f.path);
        ZelDbTransaction transaction(&f.db);
        QVERIFY(insertMol(f, "mol8"));
        const QString id = QStringLiteral("mol1");
        switch (kind) {
        case 0:
            QVERIFY(!f.model.cpxInsertMol("cpx1", "none", "2"));
            QVERIFY(f.model.errorText().contains(
                QLatin1String("molecule 'none', which does not exist")));
            break;
        case 1:
            QVERIFY(!f.model.molInsertMcpMcp(id, 1, 1));
            break;
        case 2:
            QVERIFY(!f.model.molRemove(id));
            break;
        case 3:
            QVERIFY(!f.model.cpaUpdateMcpStateCode("cpa9", {}));
            break;
        case 4:
            QVERIFY(!f.model.cpxInsert({}, {}, {}, {}, {}, {}, {}, {}, {}));
            break;
        }
        const QString reason = f.db.errorText();
        QVERIFY(insertMol(f, "mol9"));
        QVERIFY(!transaction.commit());
        QCOMPARE(f.db.errorText(), reason);
        QCOMPARE(transaction.failures(), QStringList{reason});
        QCOMPARE(DbFixture::dump(f.path), before);
    }

    void nestedTransactionsEndOneByOne()
    {
        DbFixture f;
        ZelDbTransaction outer(&f.db);
        QVERIFY(insertMol(f, "mol1"));
        {
            ZelDbTransaction inner(&f.db);
            QVERIFY(insertMol(f, "mol2"));
            ZelDbTransaction innermost(&f.db);
            QVERIFY(insertMol(f, "mol3"));
            QVERIFY(innermost.commit());
            QVERIFY(inner.commit());
        }
        ZelDbSqlite other;
        QVERIFY(other.open(f.path));
        QCOMPARE(ZelDbSqliteModel(&other).molGetListPsiimId(), QStringList());
        other.close();
        QVERIFY(outer.commit());
        QCOMPARE(f.model.molGetListPsiimId().size(), 3);
    }

    void abandonedPartFailsTheWhole()
    {
        DbFixture f;
        ZelDbTransaction outer(&f.db);
        QVERIFY(insertMol(f, "mol1"));
        {
            ZelDbTransaction inner(&f.db);
            QVERIFY(!insertMol(f, ""));
            QVERIFY(!inner.commit());
        }
        {
            ZelDbTransaction inner(&f.db);
            QVERIFY(!insertMol(f, ""));
        }
        QCOMPARE(outer.failures().size(), 2);
        QVERIFY(!outer.commit());
        QCOMPARE(f.model.molGetListPsiimId(), QStringList());
    }

    void deliberateRollbackOfAPartKeepsTheRest()
    {
        DbFixture f;
        ZelDbTransaction outer(&f.db);
        QVERIFY(insertMol(f, "mol1"));
        {
            ZelDbTransaction inner(&f.db);
            QVERIFY(insertMol(f, "mol2"));
            QVERIFY(!insertMol(f, ""));
            inner.rollback();
            QCOMPARE(inner.failures().size(), 1);
        }
        QVERIFY(insertMol(f, "mol3"));
        QVERIFY2(outer.commit(), qPrintable(f.db.errorText()));
        QCOMPARE(f.model.molGetListPsiimId(), (QStringList{"mol1", "mol3"}));
    }

    void unfinishedPartFailsTheWhole()
    {
        DbFixture f;
        ZelDbTransaction outer(&f.db);
        ZelDbTransaction inner(&f.db);
        QVERIFY(insertMol(f, "mol1"));
        QVERIFY(!outer.commit());
        QVERIFY(!inner.commit());
        QVERIFY(!f.db.isInTransaction());
        QCOMPARE(f.model.molGetListPsiimId(), QStringList());
    }

    void refusedBeginLetsNothingThrough()
    {
        DbFixture f;
        ZelDbSqlite other;
        QVERIFY(other.open(f.path));
        ZelDbSqliteModel otherModel(&other);
        {
            ZelDbTransaction holder(&f.db);
            ZelDbTransaction refused(&other);
            QVERIFY(!refused.isActive());
            QCOMPARE(other.error(), ZelDbSqlite::Locked);
            holder.rollback();
            // The lock is gone, yet a write now would be half of a save.
            QVERIFY(!otherModel.molInsert({{C::PsiimId, "mol1"}}));
            QVERIFY(!refused.commit());
            QCOMPARE(other.error(), ZelDbSqlite::Locked);
        }
        QVERIFY(otherModel.molInsert({{C::PsiimId, "mol2"}}));
        QCOMPARE(f.model.molGetListPsiimId(), QStringList{"mol2"});
    }

    void endedTransactionsStayEnded()
    {
        DbFixture f;
        ZelDbTransaction none(nullptr);
        QVERIFY(!none.isActive() && !none.commit());
        ZelDbTransaction first(&f.db);
        QVERIFY(first.commit());
        {
            ZelDbTransaction second(&f.db);
            QVERIFY(insertMol(f, "mol1"));
            first.rollback(); // must not touch the second one
            QVERIFY(!first.commit());
            QVERIFY(second.commit());
        }
        QCOMPARE(f.model.molGetListPsiimId().size(), 1);
        ZelDbTransaction stale(&f.db);
        f.db.close();
        QVERIFY(f.db.open(f.path));
        ZelDbTransaction fresh(&f.db);
        QVERIFY(!stale.isActive() && !stale.commit());
        QVERIFY(fresh.commit());
    }

    void readingKeepsOthersFromWritingUntilItEnds()
    {
        DbFixture f;
        ZelDbSqlite otherFile;
        QVERIFY(otherFile.open(f.path));
        ZelDbSqliteModel other(&otherFile);
        {
            const ZelDbReading outer(&f.db);
            {
                const ZelDbReading inner(&f.db);
                ZelDbTransaction saved(&f.db);
                QVERIFY2(insertMol(f, "mol1") && saved.commit(), "its own connection may write");
                ZelDbTransaction takenBack(&f.db);
                QVERIFY(insertMol(f, "mol2"));
            }
            QVERIFY(!other.molInsert({{C::PsiimId, "mol3"}}));
            QCOMPARE(otherFile.error(), ZelDbSqlite::Locked);
        }
        QVERIFY(other.molInsert({{C::PsiimId, "mol3"}}));
        QCOMPARE(f.model.molGetListPsiimId(), (QStringList{"mol1", "mol3"}));

        const ZelDbReading closed(&f.db);
        f.db.close();
        QVERIFY(f.db.open(f.path));
        QVERIFY2(other.molRemove("mol3"), "a file that was closed meanwhile is free");
    }

    void moleculesStampTellsChanges()
    {
        DbFixture f;
        QList<QByteArray> seen;
        const auto isNew = [&f, &seen] {
            const QByteArray stamp = f.db.moleculesStamp();
            const bool known = stamp.isEmpty() || seen.contains(stamp);
            seen.append(stamp);
            return !known;
        };
        QVERIFY(isNew());
        QCOMPARE(f.model.molGetListPsiimId(), QStringList());
        QVERIFY2(!isNew(), "read");
        {
            ZelDbTransaction transaction(&f.db);
            QVERIFY(insertMol(f, "mol1"));
            QVERIFY2(isNew(), "written");
        }
        QVERIFY2(isNew(), "taken back");
        QVERIFY(!insertMol(f, ""));
        QVERIFY2(isNew(), "failed: the reads about it may have failed, too");
        QVERIFY(f.model.cpxInsert("cpx1", "c", {}, {}, {}, "f", {}, {}, {}));
        QVERIFY2(!isNew(), "written to other records");
        QVERIFY(f.model.refInsert("cpx", "cpx1", "r"));
        QVERIFY2(isNew(), "references, whatever of");

        ZelDbSqlite other;
        QVERIFY(other.open(f.path));
        QVERIFY(ZelDbSqliteModel(&other).molInsert({{C::PsiimId, "mol1"}}));
        QVERIFY2(isNew(), "written by another connection");
        QVERIFY2(!seen.contains(other.moleculesStamp()), "of another connection");

        f.db.close();
        QCOMPARE(f.db.moleculesStamp(), QByteArray());
        QVERIFY(f.db.open(f.path));
        QVERIFY2(isNew(), "opened again");
    }
};

ZEL_TEST(tst_ZelDbTransaction)
#include "tst_ZelDbTransaction.moc"
