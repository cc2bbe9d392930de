#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelRectItem.h"

#include <QMenu>

// Presses, clicks, double clicks and the panning of the view.
class tst_ScenePress : public ZelTest
{
    Q_OBJECT
private slots:
    void reportsWhatLiesUnderTheMouse()
    {
        RimStage stage;
        stage.press({30.0, 0.0});
        QCOMPARE(stage.log(), "pressed s");
        stage.release({30.0, 0.0});
        QCOMPARE(stage.log(), "clicked s");
        stage.click({-10.0, 10.0});
        QCOMPARE(stage.log(), "pressed a, clicked a");
        stage.click({200.0, 100.0});
        QCOMPARE(stage.log(), "nothing");
        stage.release({200.0, 100.0}); // follows no press
        for (const QPointF &p : {QPointF(0.0, 0.0), QPointF(200.0, 0.0)}) {
            stage.press(p, Qt::RightButton);
            QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
            stage.release(p, Qt::RightButton);
        }
        QCOMPARE(stage.log(), "");
        stage.doubleClick({200.0, 0.0});
        QVERIFY(!stage.log().contains("double"));
        stage.doubleClick({0.0, 0.0});
        QVERIFY(stage.log().contains("double a"));
    }

    void stickyIsReportedWhereStatusesAreShown_data()
    {
        rows<bool, QString>({"showsStatus", "clicked"},
            {{"shown", {true, "clicked P"}}, {"not shown", {false, "clicked a"}}});
    }

    void stickyIsReportedWhereStatusesAreShown()
    {
        QFETCH(bool, showsStatus);
        QFETCH(QString, clicked);
        RimStage stage;
        stage.mcp->addTag(QStringLiteral("P"), QString());
        stage.scene().setAllowToDisplayBindingStatus(showsStatus);
        stage.click(stage.mcp->getListSticky().first()->sceneBoundingRect().center());
        QCOMPARE(stage.log(), "pressed a, " + clicked);
    }

    void searchesTellKindsApart()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const a = stage.addComponent({-60.0, 0.0});
        SdcMcp *const b = stage.addComponent({60.0, 0.0});
        SdcBst *const bst = stage.addSite(a, 90.0);
        b->addTag(QStringLiteral("P"), QString());
        stage.join(a, b);
        auto *const rect = new ZelRectItem(QRectF(-70.0, -10.0, 20.0, 20.0));
        rect->setZValue(10.0);
        stage.scene().addItem(rect);
        ZelScene &scene = stage.scene();
        QCOMPARE(scene.getZelGItemFromScenePos({-60.0, 0.0}), rect);
        QCOMPARE(scene.getZelEllipseItemFromScenePos({-60.0, 0.0}), a->getZelEllipseItemMcp());
        QVERIFY(scene.getZelLineItemFromScenePos({0.0, 0.0}));
        QVERIFY(!scene.getZelEllipseItemFromScenePos({0.0, 0.0}));
        ZelRectItemMcpSticky *const sticky = b->getListSticky().first();
        const QPointF p = sticky->sceneBoundingRect().center();
        QCOMPARE(scene.getZelRectItemMcpStickyFromScenePos(p), sticky);
        QCOMPARE(scene.getZelGItemFromScenePos(p), b->getZelEllipseItemMcp());
        QVERIFY(!scene.getZelRectItemFromScenePos(p));
        QCOMPARE(
            scene.getCenterZelEllipseMcp(bst->getZelEllipseItemBst()), a->getZelEllipseItemMcp());
        QCOMPARE(
            scene.getCenterZelEllipseMcp(b->getZelEllipseItemMcp()), b->getZelEllipseItemMcp());
        QVERIFY(!scene.getCenterZelEllipseMcp(nullptr));
    }

    void dragAnnouncesOneChangeAndNoClick()
    {
        RimStage stage;
        stage.scene().moves = true;
        QPointF atBegin(1.0, 1.0);
        connect(&stage.scene(), &ZelScene::signal_changeBegin, this,
            [&] { atBegin = stage.centre->pos(); });
        stage.drag({0.0, 0.0}, {30.0, 12.0}, 3);
        QCOMPARE(stage.log(), "pressed a, changed, begin, moved, moved, moved, end");
        QCOMPARE(atBegin, QPointF(0.0, 0.0));
        QCOMPARE(stage.centre->pos(), QPointF(30.0, 12.0));
        stage.drag({30.0, 12.0}, {40.0, 12.0}, 1);
        QCOMPARE(stage.log(), "pressed a, changed, begin, moved, end");
        stage.scene().setEnforcedNoMove(true); // where nothing can be dragged, a click stays one
        stage.drag({40.0, 12.0}, {43.0, 12.0});
        QCOMPARE(stage.log(), "pressed a, clicked a");
        QCOMPARE(stage.centre->pos(), QPointF(40.0, 12.0));
    }

    void dragOfEmptySpaceMovesNothing()
    {
        SceneStage<OpenScene> stage;
        stage.drag({0.0, 0.0}, {50.0, 0.0});
        stage.addComponent({0.0, 0.0});
        stage.drag({200.0, 0.0}, {250.0, 0.0}); // the view scrolls and keeps the moves to itself
        QVERIFY(!stage.log().contains("changed"));
        QGraphicsView second(&stage.scene()); // with two views none scrolls
        stage.drag({200.0, 0.0}, {250.0, 0.0});
        const QString log = stage.log();
        QVERIFY2(log.contains("changed") && !log.contains("begin"), qPrintable(log));
    }

    void readOnlySceneIsDeaf()
    {
        RimStage stage;
        stage.scene().moves = true;
        stage.scene().setReadOnly(true);
        stage.doubleClick({0.0, 0.0});
        stage.click({200.0, 0.0});
        stage.drag({0.0, 0.0}, {30.0, 0.0});
        QCOMPARE(stage.log(), "");
        QCOMPARE(stage.centre->pos(), QPointF(0.0, 0.0));
        QVERIFY(!stage.menuAt({0.0, 0.0}, [](QMenu *) {}));
        stage.scene().setReadOnly(false);
        QVERIFY(stage.scene().isContextMenuEnabled());
        // During a drag it gives the press up.
        stage.press({0.0, 0.0});
        stage.move({10.0, 0.0});
        stage.log();
        stage.scene().setReadOnly(true);
        QCOMPARE(stage.log(), "end");
        stage.move({50.0, 0.0});
        QCOMPARE(stage.centre->pos(), QPointF(10.0, 0.0));
    }

    void emptySpacePansTheOnlyView()
    {
        SceneStage<OpenScene> stage;
        stage.addComponent({0.0, 0.0});
        stage.press({0.0, 0.0});
        QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
        stage.release({0.0, 0.0});
        stage.press({150.0, 0.0});
        QCOMPARE(stage.view().dragMode(), QGraphicsView::ScrollHandDrag);
        SceneStage<OpenScene> other; // has a view of its own
        other.click({150.0, 0.0});
        QCOMPARE(stage.view().dragMode(), QGraphicsView::ScrollHandDrag);
        stage.release({150.0, 0.0});
        QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
        QGraphicsView second(&stage.scene()); // two views keep their modes
        second.setDragMode(QGraphicsView::RubberBandDrag);
        stage.press({150.0, 0.0});
        QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
        stage.release({150.0, 0.0});
        QCOMPARE(second.dragMode(), QGraphicsView::RubberBandDrag);
    }

    void lostReleaseIsMadeUpForByTheNextPress()
    {
        RimStage stage;
        stage.scene().moves = true;
        stage.press({0.0, 0.0});
        stage.move({10.0, 0.0});
        stage.move({90.0, 0.0}, Qt::NoButton); // the button came up elsewhere
        QCOMPARE(centreOf(stage.centre), QPointF(10.0, 0.0));
        stage.press({10.0, 0.0});
        QCOMPARE(stage.log(), "pressed a, changed, begin, moved, end, pressed a");
        stage.release({10.0, 0.0});
    }
};

ZEL_TEST(tst_ScenePress)
#include "tst_ScenePress.moc"
