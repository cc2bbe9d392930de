#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"

#include <QSignalSpy>

// The scene of one molecule: what a drag moves there, limited edit, its menu.
class tst_SceneMol : public ZelTest
{
    Q_OBJECT
private slots:
    void dragOfComponent_data();
    void dragOfComponent();
    void emptySpaceMovesNothing();
    void componentWithoutDataStaysPut();
    void siteIsDraggedAlongItsRim();
    void limitedEdit_data();
    void limitedEdit();
    void stickyIsClicked();
    void doubleClickIsNotReported();
    void menuHoldsTheColourOnly();
    void menuNeedsAnItem();
};

void tst_SceneMol::dragOfComponent_data()
{
    QTest::addColumn<int>("components");
    QTest::addColumn<int>("dragged");
    QTest::addColumn<bool>("whole");
    QTest::newRow("alone") << 1 << 0 << true;
    QTest::newRow("end of two") << 2 << 1 << false;
    QTest::newRow("middle of three") << 3 << 1 << true;
    QTest::newRow("first of three") << 3 << 0 << false;
}

void tst_SceneMol::dragOfComponent()
{
    QFETCH(int, components);
    QFETCH(int, dragged);
    QFETCH(bool, whole);
    SceneStage<ZelSceneMol> stage;
    QList<QPointF> before;
    QList<ZelEllipseItemMcp *> items;
    for (int i = 0; i < components; ++i) {
        SdcMcp *const mcp = stage.addComponent({70.0 * i - 70.0, 0.0});
        stage.addSite(mcp, 90.0);
        items.append(mcp->getZelEllipseItemMcp());
        before.append(items.last()->pos());
        if (i > 0)
            stage.join(stage.mol().getSdcMcpAtIndex(i - 1), mcp);
    }
    const QPointF delta(12.0, 24.0);
    stage.drag(before.at(dragged), before.at(dragged) + delta);
    for (int i = 0; i < components; ++i) {
        if (whole)
            QCOMPARE(items.at(i)->pos(), before.at(i) + delta);
        else if (i == dragged)
            QVERIFY(items.at(i)->pos() != before.at(i));
        else
            QCOMPARE(items.at(i)->pos(), before.at(i));
    }
}

void tst_SceneMol::emptySpaceMovesNothing()
{
    SceneStage<ZelSceneMol> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    stage.drag({0.0, 0.0}, {10.0, 0.0}); // leaves the flag of a whole move behind
    stage.drag({150.0, 50.0}, {100.0, 0.0});
    QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(10.0, 0.0));
}

void tst_SceneMol::componentWithoutDataStaysPut()
{
    SceneStage<ZelSceneMol> stage;
    ZelEllipseItemMcp *const ghost = stage.scene().addMcp(QRectF(-30.0, -30.0, 60.0, 60.0));
    stage.drag({0.0, 0.0}, {40.0, 0.0});
    QCOMPARE(ghost->pos(), QPointF(0.0, 0.0));
    QVERIFY(!stage.scene().toMove());
}

void tst_SceneMol::siteIsDraggedAlongItsRim()
{
    SceneStage<ZelSceneMol> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    stage.drag(centreOf(site), {0.0, 33.0});
    QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(0.0, 0.0));
    QVERIFY(centreOf(site).y() > 29.9);
}

void tst_SceneMol::limitedEdit_data()
{
    QTest::addColumn<bool>("hasLimitedSite");
    QTest::addColumn<bool>("dragsIt");
    QTest::addColumn<bool>("moves");
    QTest::newRow("no site may move") << false << true << false;
    QTest::newRow("the one that may") << true << true << true;
    QTest::newRow("another") << true << false << false;
}

void tst_SceneMol::limitedEdit()
{
    QFETCH(bool, hasLimitedSite);
    QFETCH(bool, dragsIt);
    QFETCH(bool, moves);
    SceneStage<ZelSceneMol> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemBst *const limited = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const other = stage.addSite(mcp, 180.0)->getZelEllipseItemBst();
    stage.scene().setLimitedEdit(true);
    stage.scene().setZelEllipseItemBstLimited(hasLimitedSite ? limited : nullptr);
    ZelEllipseItemBst *const dragged = dragsIt ? limited : other;
    const QPointF before = dragged->pos();
    stage.drag(centreOf(dragged), {0.0, 35.0});
    QCOMPARE(dragged->pos() != before, moves);
    if (!hasLimitedSite)
        return;
    // A site that bumped into the limited one may follow it.
    QVERIFY(stage.scene().collidingWithOtherSdcItems(other, QList<ZelEllipseItem *>())
        || !stage.scene().allowToChangeRelativePos());
    other->setPos(limited->pos());
    QVERIFY(stage.scene().collidingWithOtherSdcItems(other, QList<ZelEllipseItem *>()));
    QVERIFY(stage.scene().allowToChangeRelativePos());
    delete limited;
    QVERIFY(!stage.scene().allowToChangeRelativePos());
}

void tst_SceneMol::stickyIsClicked()
{
    SceneStage<ZelSceneMol> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->addTag(QStringLiteral("P"), QString());
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    stage.click(mcp->getListSticky().first()->sceneBoundingRect().center());
    QCOMPARE(clicked.at(0).at(0).value<ZelGItem *>(), mcp->getListSticky().first());
}

void tst_SceneMol::doubleClickIsNotReported()
{
    SceneStage<ZelSceneMol> stage;
    stage.addComponent({0.0, 0.0});
    QSignalSpy spy(&stage.scene(), &ZelScene::zelGItemDoubleClicked);
    stage.doubleClick({0.0, 0.0});
    QCOMPARE(spy.size(), 0);
}

void tst_SceneMol::menuHoldsTheColourOnly()
{
    SceneStage<ZelSceneMol> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    SdcBst *const bst = stage.addSite(mcp, 0.0);
    for (const QPointF &p : {QPointF(0.0, 10.0), centreOf(bst->getZelEllipseItemBst())}) {
        QStringList texts;
        QVERIFY(stage.menuAt(p, [&](QMenu *menu) {
            const QList<QAction *> actions = menu->actions();
            for (QAction *action : actions)
                texts << action->text();
        }));
        QCOMPARE(texts, QStringList{QStringLiteral("Change Molecule Color")});
    }
}

void tst_SceneMol::menuNeedsAnItem()
{
    SceneStage<ZelSceneMol> stage;
    stage.addComponent({0.0, 0.0});
    const auto ignore = [](QMenu *) {};
    QVERIFY(!stage.menuAt({150.0, 50.0}, ignore));
    stage.scene().setReadOnly(true);
    QVERIFY(!stage.menuAt({0.0, 0.0}, ignore));
    stage.scene().setReadOnly(false);
    QVERIFY(stage.menuAt({0.0, 0.0}, ignore));
}

ZEL_TEST(tst_SceneMol)
#include "tst_SceneMol.moc"
