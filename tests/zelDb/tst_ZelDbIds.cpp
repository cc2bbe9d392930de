#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

#include <QSet>

class tst_ZelDbIds : public ZelTest
{
    Q_OBJECT
private slots:
    void eachKindCountsByItself_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("first");
        const auto row = [](int type, const char *first) {
            QTest::newRow(first) << type << QString::fromLatin1(first);
        };
        row(0, "bst1");
        row(1, "mcp1");
        row(2, "mol1");
        row(3, "mli1");
        row(4, "cpx1");
        row(5, "cai1");
        row(ZelDb::Cpa, "cpa1");
        row(ZelDb::McpState, "mcpState1");
        row(ZelDb::Untranslated, "utr1");
    }

    void eachKindCountsByItself()
    {
        QFETCH(int, type);
        QFETCH(QString, first);
        DbFixture f;
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Deg, &f.model), QStringLiteral("deg1"));
        QCOMPARE(ZelDb::getNewSdcPsiimId(type, &f.model), first);
        QCOMPARE(ZelDb::getNewSdcPsiimId(type, &f.model), first.chopped(1) + u'2');
        f.db.close();
        QVERIFY(f.db.open(f.path));
        QCOMPARE(ZelDb::getNewSdcPsiimId(type, &f.model), first.chopped(1) + u'3');
    }

    void removedNumbersAreNotUsedAgain()
    {
        DbFixture f;
        const QString id = ZelDb::getNewSdcPsiimId(ZelDb::Mol, &f.model);
        QVERIFY(f.model.molInsert({{C::PsiimId, id}}));
        QVERIFY(f.model.molInsert({{C::PsiimId, QStringLiteral("mol7")}}));
        QVERIFY(f.model.molRemove(id));
        QVERIFY(f.model.molRemove(QStringLiteral("mol7")));
        f.db.close();
        QVERIFY(f.db.open(f.path));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Mol, &f.model), QStringLiteral("mol8"));
    }

    void chosenIdsAreLeftOut()
    {
        DbFixture f;
        QSet<QString> ids;
        for (const char *id :
            {"mol1", "mol3", "mol4", "mol01", "molecule", "mol", "MOL5", "mcp2"}) {
            QVERIFY(f.model.molInsert({{C::PsiimId, QString::fromLatin1(id)}}));
            ids.insert(QString::fromLatin1(id));
        }
        for (int i = 0; i < 5; ++i) {
            const QString id = ZelDb::getNewSdcPsiimId(ZelDb::Mol, &f.model);
            QVERIFY2(!ids.contains(id), qPrintable(id));
            ids.insert(id);
        }
        QVERIFY(ids.contains(QStringLiteral("mol2")));
    }

    void rolledBackNumbersAreNotHandedOutAgain()
    {
        DbFixture f;
        QString lost;
        {
            ZelDbTransaction transaction(&f.db);
            lost = ZelDb::getNewSdcPsiimId(ZelDb::Cpx, &f.model);
        }
        QVERIFY(ZelDb::getNewSdcPsiimId(ZelDb::Cpx, &f.model) != lost);
    }

    void ownedRecordsKeepTheirNumbersUsed()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.model.cpxRemove(QStringLiteral("cpx1")));
        QVERIFY(f.model.mliRemove(QStringLiteral("mli1")));
        QVERIFY(f.model.molRemove(QStringLiteral("mol1")));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Bst, &f.model), QStringLiteral("bst4"));
        QVERIFY(f.model.molRemove(QStringLiteral("mol2")));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Mcp, &f.model), QStringLiteral("mcp4"));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::McpState, &f.model), QStringLiteral("mcpState3"));
    }

    void hugeNumbersDoNoHarm()
    {
        DbFixture f;
        for (const char *id :
            {"mol9223372036854775807", "mol99999999999999999999999", "mol-5", "mol1e9"}) {
            QVERIFY(f.model.molInsert({{C::PsiimId, QString::fromLatin1(id)}}));
            QVERIFY(f.model.molRemove(QString::fromLatin1(id)));
        }
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Mol, &f.model), QStringLiteral("mol1"));
    }

    void unknownKindsGetNone()
    {
        DbFixture f;
        for (const int type : {-1, 7, 19, 1000})
            QCOMPARE(ZelDb::getNewSdcPsiimId(type, &f.model), QString());
        QVERIFY(f.model.errorText().contains(QLatin1String("1000")));
        QCOMPARE(ZelDb::getNewSdcPsiimId(ZelDb::Mol, nullptr), QString());
    }
};

ZEL_TEST(tst_ZelDbIds)
#include "tst_ZelDbIds.moc"
