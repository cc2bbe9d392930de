#include "zelDb/DbFixture.h"

#include "support/ZelTest.h"

using Remove = bool (ZelDbSqliteModel::*)(const QString &);
Q_DECLARE_METATYPE(Remove)

class tst_ZelDbRemove : public ZelTest
{
    Q_OBJECT
private slots:
    void usedRecordsAreKeptAndTheirUsersNamed_data()
    {
        QTest::addColumn<Remove>("remove");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("says");
        const auto row = [](Remove remove, const char *id, const char *says) {
            QTest::newRow(id) << remove << QString::fromLatin1(id) << QString::fromLatin1(says);
        };
        using M = ZelDbSqliteModel;
        row(&M::molRemove, "mol1",
            "Molecule 'A' (mol1) is used by complex 'A.B' (cpx1) and 2 more; remove those first.");
        row(&M::molRemove, "mol2",
            "Molecule 'B' (mol2) is used by complex 'A.B' (cpx1) and 1 more; remove those first.");
        row(&M::mcpRemove, "mcp3",
            "Molecule component 'mcp3 name' (mcp3) is used by complex 'A.B'");
        row(&M::bstRemove, "bst3", "Binding site 'bst3 name' (bst3) is used by complex 'A.B'");
        row(&M::mcpStateRemove, "mcpState2",
            "Feature state 'Q' (mcpState2) is used by complex alias");
        row(&M::cpxRemove, "cpx1",
            "Complex 'A.B' (cpx1) is used by complex alias 'alias1' (cpa1) and 2 more; remove "
            "those "
            "first.");
        row(&M::cpaRemove, "cpa3",
            "Complex alias 'alias3' (cpa3) is used by association 'bind' (cai1) and 2 more; remove "
            "those first.");
        row(&M::cmpRemove, "cell",
            "Compartment cell is used by compartment 'core' (nucleus); remove that first.");
    }

    void usedRecordsAreKeptAndTheirUsersNamed()
    {
        QFETCH(Remove, remove);
        QFETCH(QString, id);
        QFETCH(QString, says);
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        QVERIFY(f.model.cmpInsert({{C::PsiimId, "cell"}}));
        QVERIFY(f.model.cmpInsert(
            {{C::PsiimId, "nucleus"}, {C::ShortName, "core"}, {C::CompartmentParent, "cell"}}));
        const QStringList before = DbFixture::dump(f.path);
        QVERIFY(!(f.model.*remove)(id));
        QCOMPARE(f.db.error(), ZelDbSqlite::InUse);
        QVERIFY2(f.model.errorText().startsWith(says), qPrintable(f.model.errorText()));
        QCOMPARE(DbFixture::dump(f.path), before);
    }

    void everythingGoesInTheRightOrder()
    {
        DbFixture f;
        QVERIFY(f.addComplex());
        QVERIFY(f.addReactions());
        using M = ZelDbSqliteModel;
        const std::pair<Remove, const char *> steps[] = {{&M::caiRemove, "cai1"},
            {&M::cadRemove, "cad1"}, {&M::trnRemove, "trn1"}, {&M::pdnRemove, "pdn1"},
            {&M::degRemove, "deg1"}, {&M::sedRemove, "sed1"}, {&M::cpaRemove, "cpa1"},
            {&M::cpaRemove, "cpa2"}, {&M::cpaRemove, "cpa3"}, {&M::cpxRemove, "cpx1"},
            {&M::mliRemove, "mli1"}, {&M::mcpStateRemove, "mcpState1"}, {&M::bstRemove, "bst1"},
            {&M::mcpRemove, "mcp1"}, {&M::molRemove, "mol1"}, {&M::molRemove, "mol2"}};
        for (const auto &[remove, id] : steps)
            QVERIFY2((f.model.*remove)(QString::fromLatin1(id)), qPrintable(f.model.errorText()));
        QStringList left = DbFixture::dump(f.path);
        left.removeIf(
            [](const QString &line) { return line.startsWith(QLatin1String("idCounter|")); });
        QCOMPARE(left, QStringList());
    }

    void unknownRecordsAreNotRemoved()
    {
        DbFixture f;
        QVERIFY(!f.model.cpaRemove("cpa1"));
        QVERIFY(f.model.errorText().contains(QLatin1String("There is no complex alias 'cpa1'")));
        QVERIFY(!f.model.molRemove(QString()));
    }
};

ZEL_TEST(tst_ZelDbRemove)
#include "tst_ZelDbRemove.moc"
