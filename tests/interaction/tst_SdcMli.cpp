#include "InteractionStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSignalSpy>

#include <memory>

class tst_SdcMli : public ZelTest
{
    Q_OBJECT

    /// Two molecules without a drawing or database, with two and three sites.
    static std::unique_ptr<SdcMli> bareMli()
    {
        auto mli = std::make_unique<SdcMli>(nullptr);
        mli->addSdcChild(ZelTree::bareMolecule(nullptr, "M", {{"a", {}, 1}, {"b", {}, 1}}), true);
        mli->addSdcChild(ZelTree::bareMolecule(nullptr, "N", {{"c", {}, 2}, {"d", {}, 1}}), true);
        return mli;
    }

    static SdcBst *site(SdcMli *mli, int mol, int index)
    {
        return InteractionStage::site(mli, mol, index);
    }

private slots:
    void carriesOneBondAtMost_data()
    {
        rows<int, int>({"site1", "site2"},
            {{"other sites", {1, 1}}, {"the same sites", {0, 0}}, {"one site", {0, -1}},
                {"no bond at all", {-1, -1}}});
    }

    void carriesOneBondAtMost()
    {
        QFETCH(int, site1);
        QFETCH(int, site2);
        const std::unique_ptr<SdcMli> mli = bareMli();
        SdcBstBstMli first(nullptr);
        first.addSdcBst(site(mli.get(), 1, 0));
        first.addSdcBst(site(mli.get(), 0, 0));
        QSignalSpy added(mli.get(), &SdcMli::sdcBstBstMliAdded);
        QVERIFY(mli->addSdcBstBstMli(&first));
        QCOMPARE(added.size(), 1);
        QCOMPARE(added.first().first().value<SdcBstBstMli *>(), &first);

        auto owned = std::make_unique<SdcBstBstMli>(nullptr);
        SdcBstBstMli &second = *owned;
        if (site1 >= 0)
            second.addSdcBst(site(mli.get(), 0, site1));
        if (site2 >= 0)
            second.addSdcBst(site(mli.get(), 1, site2));
        QVERIFY(!mli->addSdcBstBstMli(site1 < 0 ? nullptr : &second));
        QCOMPARE(added.size(), 1);
        QCOMPARE(mli->getListSdcBstBstMli(), QList<SdcBstBstMli *>({&first}));
        mli->removeSdcBstBstMli(&first);
        QVERIFY(mli->addSdcBstBstMli(&second));
        owned.reset(); // a dead bond leaves the list
        QVERIFY(mli->getListSdcBstBstMli().isEmpty());
    }

    void findsTheBondOfTwoSitesInEitherOrder()
    {
        const std::unique_ptr<SdcMli> mli = bareMli();
        SdcBst *const a = site(mli.get(), 0, 0);
        SdcBst *const b = site(mli.get(), 1, 2);
        SdcBst *const other = site(mli.get(), 1, 0);
        SdcBstBstMli bond(nullptr);
        bond.addSdcBst(a);
        bond.addSdcBst(b);
        mli->addSdcBstBstMli(&bond);
        QCOMPARE(mli->getSdcBstBstMli(b, a), &bond);
        QCOMPARE(mli->getBstBstIndex(a, b), 0);
        QVERIFY(mli->hasBstBstConnection(b, a));
        QVERIFY(!mli->hasBstBstConnection(a, other) && !mli->hasBstBstConnection(a, nullptr));
        QCOMPARE(mli->getBstBstIndex(a, other), -1);
        QCOMPARE(mli->getListSdcBstBstMliFromListSdcBstBst({other, a, b, nullptr}),
            QList<SdcBstBstMli *>({&bond}));
        QVERIFY(mli->getListSdcBstBstMliFromListSdcBstBst({other}).isEmpty());
        // A bond without a line has null for one.
        QCOMPARE(mli->getListZelLineItemBstBstMliFromListSdcBst({a}),
            QList<ZelLineItemBstBstMli *>{nullptr});
        QCOMPARE(mli->getZelLineItemBstBstMliIndex(nullptr), 0);
        for (const int index : {-1, 1})
            QVERIFY(!mli->getZelLineItemBstBstMliFromIndex(index)
                && !mli->getSdcBstBstFromIndex(index));
    }

    void aMalformedBondEndsTheSearch_data()
    {
        rows<bool>({"isNull"}, {{"a bond with one site", {false}}, {"null", {true}}});
    }

    void aMalformedBondEndsTheSearch()
    {
        QFETCH(bool, isNull);
        const std::unique_ptr<SdcMli> mli = bareMli();
        SdcBst *const a = site(mli.get(), 0, 0);
        SdcBst *const b = site(mli.get(), 1, 0);
        SdcBstBstMli bond(nullptr);
        bond.addSdcBst(a);
        QVERIFY(mli->addSdcBstBstMli(isNull ? nullptr : &bond));
        QCOMPARE(mli->getSdcBstBstMli(a, b), nullptr);
        QCOMPARE(mli->getBstBstIndex(a, b), -1);
        QCOMPARE(takeDebugText(),
            "Error found at SdcBstBstMli * SdcMli::getSdcBstBstMli(SdcBst * sdcBst1, SdcBst * "
            "sdcBst2)\n"
            "Error found at int SdcMli::getBstBstIndex(SdcBst * sdcBst1, SdcBst * sdcBst2) const");
        QVERIFY(!mli->hasBstBstConnection(a, b));
        mli->setHighlight(true);
        mli->updateBstBstPos();
        mli->reset();
        QVERIFY(mli->getListSdcBstBstMli().isEmpty());
    }

    void findsASiteByMoleculeAndId_data()
    {
        const QString x = QStringLiteral("x");
        rows<QString, QString, int, int>({"molPos", "bstId", "mol", "expected"},
            {{"the last of the first component", {"1", x, 1, 1}},
                {"in the second component only", {"1", "y", 1, 2}},
                {"no number means the first", {"one", x, 0, 0}}, {"no id", {"1", "", 0, -1}},
                {"no such site", {"0", "y", 0, -1}}, {"before the first", {"-1", x, 0, -1}},
                {"behind the last", {"3", x, 0, -1}}, {"null child", {"2", x, 0, -1}}});
    }

    void findsASiteByMoleculeAndId()
    {
        QFETCH(QString, molPos);
        QFETCH(QString, bstId);
        QFETCH(int, mol);
        QFETCH(int, expected);
        const std::unique_ptr<SdcMli> mli = bareMli();
        mli->addSdcChild(nullptr, false);
        for (int m = 0; m < 2; ++m) {
            for (SdcBst *bst : mli->getChildSdcAtIndex(m)->getListSdcBst())
                bst->setProperty(SdcProperty::PsiimId, "x");
        }
        site(mli.get(), 1, 2)->setProperty(SdcProperty::PsiimId, "y");
        SdcBst *const wanted = expected < 0 ? nullptr : site(mli.get(), mol, expected);
        QCOMPARE(mli->getSdcBstFromMolPosBstId(molPos, bstId), wanted);
    }

    void takesItsPropertiesFromTheDatabase_data()
    {
        const QString before = QStringLiteral("old,1,2,old,old,old");
        const QString stored = QStringLiteral("mli1,0.5,0.25,bind,A binds B,notes");
        // properties: 1, 15, 16, 2, 3, 11
        rows<QString, bool, QString>({"change", "expected", "properties"},
            {{"defined", {"", true, stored}},
                {"defined the other way round", {"swap", true, stored}},
                {"not defined", {"other site", false, ",1,2,old,old,old"}},
                {"no bond", {"no bond", false, before}}, {"null bond", {"null", false, ",,,,,"}},
                {"one site", {"one site", false, ",,,,,"}},
                {"a site without id", {"no id", false, ",,,,,"}},
                {"no database", {"no database", false, ",1,2,old,old,old"}}});
    }

    void takesItsPropertiesFromTheDatabase()
    {
        QFETCH(QString, change);
        QFETCH(bool, expected);
        QFETCH(QString, properties);
        InteractionStage stage;
        const std::unique_ptr<SdcMli> mli(stage.mli("AB"));
        SdcBst *const a = stage.site(mli.get(), 0, 0);
        SdcBst *const b = stage.site(mli.get(), 1, 1);
        QVERIFY(
            stage.db.mliInsert({{ZelDbColumn::PsiimId, "mli1"}, {ZelDbColumn::ShortName, "bind"},
                {ZelDbColumn::Name, "A binds B"}, {ZelDbColumn::Notes, "notes"},
                {ZelDbColumn::AssociationRate, "0.5"}, {ZelDbColumn::DissociationRate, "0.25"},
                {ZelDbColumn::Bst1, a->getPsiimId()}, {ZelDbColumn::Bst2, b->getPsiimId()}}));
        const QList<int> keys{1, 15, 16, 2, 3, 11};
        for (const int key : keys)
            mli->setProperty(key, "old");
        mli->setProperty(15, "1");
        mli->setProperty(16, "2");
        mli->setProperty(SdcProperty::References, "of another one");
        SdcBstBstMli *const bond = change == QLatin1String("swap")
            ? stage.mliBond(mli.get(), b, a)
            : stage.mliBond(mli.get(),
                change == QLatin1String("other site") ? stage.site(mli.get(), 0, 1) : a, b);
        if (change == QLatin1String("one site"))
            bond->removeSdcBst(b);
        if (change == QLatin1String("no id"))
            b->clearProperty(SdcProperty::PsiimId);
        if (change == QLatin1String("no database"))
            mli->setZelDbSqliteModel(nullptr);
        if (change != QLatin1String("no bond"))
            mli->addSdcBstBstMli(change == QLatin1String("null") ? nullptr : bond);
        QCOMPARE(mli->updateMliPropertyFromDb(), expected);
        QStringList texts;
        for (const int key : keys)
            texts.append(mli->getProperty(key));
        QCOMPARE(texts.join(u','), properties);
        QCOMPARE(mli->getProperty(SdcProperty::References), expected ? "" : "of another one");
        QCOMPARE(mli->canSave(),
            mli->getListSdcBstBstMli().size() == 1 && !mli->getProperty(15).isEmpty());
    }
};

ZEL_TEST(tst_SdcMli)
#include "tst_SdcMli.moc"
