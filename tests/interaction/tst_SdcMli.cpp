#include "InteractionStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSignalSpy>

#include <algorithm>
#include <array>
#include <memory>

class tst_SdcMli : public ZelTest
{
    Q_OBJECT

    /// Two molecules without a drawing or database, with two and three sites.
    static std::unique_ptr<SdcMli> bareMli()
    {
        auto mli = std::make_unique<SdcMli>(nullptr);
        mli->addSdcChild(ZelTree::bareMolecule(nullptr, QStringLiteral("M"),
                             {{QStringLiteral("a"), {}, 1}, {QStringLiteral("b"), {}, 1}}),
            true);
        mli->addSdcChild(ZelTree::bareMolecule(nullptr, QStringLiteral("N"),
                             {{QStringLiteral("c"), {}, 2}, {QStringLiteral("d"), {}, 1}}),
            true);
        return mli;
    }

    static SdcBst *site(SdcMli *mli, int mol, int index)
    {
        return InteractionStage::site(mli, mol, index);
    }

private slots:
    void carriesOneBondAtMost_data()
    {
        QTest::addColumn<int>("site1");
        QTest::addColumn<int>("site2");
        QTest::newRow("other sites") << 1 << 1;
        QTest::newRow("the same sites") << 0 << 0;
        QTest::newRow("one site") << 0 << -1;
        QTest::newRow("no bond at all") << -1 << -1;
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

        SdcBstBstMli second(nullptr);
        if (site1 >= 0)
            second.addSdcBst(site(mli.get(), 0, site1));
        if (site2 >= 0)
            second.addSdcBst(site(mli.get(), 1, site2));
        QVERIFY(!mli->addSdcBstBstMli(site1 < 0 ? nullptr : &second));
        QCOMPARE(added.size(), 1);
        QCOMPARE(mli->getListSdcBstBstMli(), QList<SdcBstBstMli *>({&first}));
        mli->removeSdcBstBstMli(&first);
        QVERIFY(mli->addSdcBstBstMli(&second));
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
        QVERIFY(mli->getListZelLineItemBstBstMliFromListSdcBst({a}).isEmpty());
        QCOMPARE(mli->getZelLineItemBstBstMliIndex(nullptr), -1);
        for (const int index : {-1, 1})
            QVERIFY(!mli->getZelLineItemBstBstMliFromIndex(index)
                && !mli->getSdcBstBstFromIndex(index));
    }

    void aMalformedBondEndsTheSearch_data()
    {
        QTest::addColumn<bool>("isNull");
        QTest::newRow("a bond with one site") << false;
        QTest::newRow("null") << true;
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
        QCOMPARE(takeDebugLines(),
            QStringList({QStringLiteral("Error found at SdcBstBstMli * SdcMli::getSdcBstBstMli("
                                        "SdcBst * sdcBst1, SdcBst * sdcBst2)"),
                QStringLiteral("Error found at int SdcMli::getBstBstIndex(SdcBst * sdcBst1, "
                               "SdcBst * sdcBst2) const")}));
        QVERIFY(!mli->hasBstBstConnection(a, b));
        mli->setHighlight(true);
        mli->updateBstBstPos();
        mli->reset();
        QVERIFY(mli->getListSdcBstBstMli().isEmpty());
    }

    void findsASiteByMoleculeAndId_data()
    {
        QTest::addColumn<QString>("molPos");
        QTest::addColumn<QString>("bstId");
        QTest::addColumn<int>("mol");
        QTest::addColumn<int>("expected");
        const QString x = QStringLiteral("x");
        QTest::newRow("the last of the first component") << "1" << x << 1 << 1;
        QTest::newRow("in the second component only") << "1"
                                                      << "y" << 1 << 2;
        QTest::newRow("no number means the first") << "one" << x << 0 << 0;
        QTest::newRow("no id") << "1"
                               << "" << 0 << -1;
        QTest::newRow("no such site") << "0"
                                      << "y" << 0 << -1;
        QTest::newRow("before the first") << "-1" << x << 0 << -1;
        QTest::newRow("behind the last") << "3" << x << 0 << -1;
        QTest::newRow("null child") << "2" << x << 0 << -1;
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
                bst->setProperty(SdcProperty::PsiimId, QStringLiteral("x"));
        }
        site(mli.get(), 1, 2)->setProperty(SdcProperty::PsiimId, QStringLiteral("y"));
        SdcBst *const wanted = expected < 0 ? nullptr : site(mli.get(), mol, expected);
        QCOMPARE(mli->getSdcBstFromMolPosBstId(molPos, bstId), wanted);
    }

    void takesItsPropertiesFromTheDatabase_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("expected");
        QTest::addColumn<QString>("properties"); // 1, 15, 16, 2, 3, 11
        const QString before = QStringLiteral("old,1,2,old,old,old");
        const QString stored = QStringLiteral("mli1,0.5,0.25,bind,A binds B,notes");
        QTest::newRow("defined") << "" << true << stored;
        QTest::newRow("defined the other way round") << "swap" << true << stored;
        QTest::newRow("not defined") << "other site" << false << ",1,2,old,old,old";
        QTest::newRow("no bond") << "no bond" << false << before;
        QTest::newRow("null bond") << "null" << false << ",,,,,";
        QTest::newRow("one site") << "one site" << false << ",,,,,";
        QTest::newRow("a site without id") << "no id" << false << ",,,,,";
        QTest::newRow("no database") << "no database" << false << before;
    }

    void takesItsPropertiesFromTheDatabase()
    {
        QFETCH(QString, change);
        QFETCH(bool, expected);
        QFETCH(QString, properties);
        InteractionStage stage;
        const std::unique_ptr<SdcMli> mli(stage.mli(QStringLiteral("AB")));
        SdcBst *const a = stage.site(mli.get(), 0, 0);
        SdcBst *const b = stage.site(mli.get(), 1, 1);
        QVERIFY(stage.db.mliInsert({{ZelDbColumn::PsiimId, QStringLiteral("mli1")},
            {ZelDbColumn::ShortName, QStringLiteral("bind")},
            {ZelDbColumn::Name, QStringLiteral("A binds B")},
            {ZelDbColumn::Notes, QStringLiteral("notes")},
            {ZelDbColumn::AssociationRate, QStringLiteral("0.5")},
            {ZelDbColumn::DissociationRate, QStringLiteral("0.25")},
            {ZelDbColumn::Bst1, a->getPsiimId()}, {ZelDbColumn::Bst2, b->getPsiimId()}}));
        const QList<int> keys{1, 15, 16, 2, 3, 11};
        for (const int key : keys)
            mli->setProperty(key, QStringLiteral("old"));
        mli->setProperty(15, QStringLiteral("1"));
        mli->setProperty(16, QStringLiteral("2"));
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
        QCOMPARE(mli->canSave(),
            mli->getListSdcBstBstMli().size() == 1 && !mli->getProperty(15).isEmpty());
    }

    void theLineFollowsItsMolecules()
    {
        InteractionStage stage;
        ZelSceneMli scene;
        scene.setZelDbSqliteModel(&stage.db);
        const std::unique_ptr<SdcMli> mli(stage.mli(QStringLiteral("AB"), &scene));
        scene.setSdc(mli.get());
        QVERIFY(scene.addBond(stage.site(mli.get(), 0, 0), stage.site(mli.get(), 1, 0)));
        ZelLineItemBstBstMli *const line = mli->getZelLineItemBstBstMliFromIndex(0);
        QVERIFY(line);
        QCOMPARE(mli->getZelLineItemBstBstMliIndex(line), 0);
        const QPointF before = line->mapToScene(line->line().p1());
        scene.moveListSdcMcps(mli->getListSdcMcp(), QPointF(30.0, 40.0));
        QCOMPARE(line->mapToScene(line->line().p1()), before + QPointF(30.0, 40.0));
        mli->setHighlight(true, false);
        QVERIFY(line->isHighlighted());
    }

    void partsDieInAnyOrder_data()
    {
        QTest::addColumn<QList<int>>("order");
        QList<int> order{0, 1, 2, 3};
        do {
            QTest::addRow("%d%d%d%d", order.at(0), order.at(1), order.at(2), order.at(3)) << order;
        } while (std::next_permutation(order.begin(), order.end()));
    }

    void partsDieInAnyOrder()
    {
        QFETCH(QList<int>, order);
        std::unique_ptr<SdcMli> mli = bareMli();
        QPointer<Sdc> mol = mli->getChildSdcAtIndex(0);
        QPointer<SdcBst> bst = site(mli.get(), 1, 0);
        auto bond = std::make_unique<SdcBstBstMli>(nullptr);
        bond->addSdcBst(site(mli.get(), 0, 0));
        bond->addSdcBst(bst);
        mli->addSdcBstBstMli(bond.get());
        for (const int victim : order) {
            switch (victim) {
            case 0:
                mli.reset();
                break;
            case 1:
                delete mol;
                break;
            case 2:
                delete bst;
                break;
            default:
                bond.reset();
            }
            QCOMPARE(bond ? bond->getListSdcBst().size() : 0,
                bond ? int(!mol.isNull()) + int(!bst.isNull()) : 0);
            if (mli) {
                QCOMPARE(mli->getListSdcBstBstMli().size(), bond ? 1 : 0);
                QCOMPARE(mli->getListSdcChildren().size(), mol ? 2 : 1);
                mli->setHighlight(true);
                mli->setSdcName(mli->getSdcName());
            }
        }
    }
};

ZEL_TEST(tst_SdcMli)
#include "tst_SdcMli.moc"
