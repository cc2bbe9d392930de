#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelRectItem.h"

#include <QSignalSpy>

// Presses, clicks, double clicks and the panning of the view.
class tst_ScenePress : public ZelTest
{
    Q_OBJECT
private slots:
    void pressAndReleaseReportTheItem();
    void emptySpaceReportsNoItemOnce();
    void stickyIsReportedInsteadOfItsComponent_data();
    void stickyIsReportedInsteadOfItsComponent();
    void stickyIsNoItemToTheGeneralSearch();
    void searchesTellKindsApart();
    void dragIsNoClick();
    void otherButtonsNeitherClickNorPan();
    void doubleClickReportsItemOnly();
    void dragAnnouncesOneChange();
    void dragOfEmptySpaceMovesNothing();
    void readOnlySceneIsDeaf();
    void readOnlyDuringDragGivesThePressUp();
    void emptySpacePansTheOnlyView();
    void twoViewsKeepTheirDragModes();
    void lostReleaseIsMadeUpForByTheNextPress();
};

void tst_ScenePress::pressAndReleaseReportTheItem()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    SdcBst *const bst = stage.addSite(mcp, 0.0);
    QSignalSpy pressed(&stage.scene(), &ZelScene::zelGItemPressed);
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    QSignalSpy nothing(&stage.scene(), &ZelScene::noGItemClicked);

    stage.press(centreOf(bst->getZelEllipseItemBst()));
    QCOMPARE(pressed.size(), 1);
    QCOMPARE(pressed.at(0).at(0).value<ZelGItem *>(), bst->getZelEllipseItemBst());
    QCOMPARE(clicked.size(), 0);
    stage.release(centreOf(bst->getZelEllipseItemBst()));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).value<ZelGItem *>(), bst->getZelEllipseItemBst());

    stage.click({-10.0, 10.0});
    QCOMPARE(clicked.size(), 2);
    QCOMPARE(clicked.at(1).at(0).value<ZelGItem *>(), mcp->getZelEllipseItemMcp());
    QCOMPARE(nothing.size(), 0);
}

void tst_ScenePress::emptySpaceReportsNoItemOnce()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    QSignalSpy pressed(&stage.scene(), &ZelScene::zelGItemPressed);
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    QSignalSpy nothing(&stage.scene(), &ZelScene::noGItemClicked);
    stage.click({200.0, 100.0});
    QCOMPARE(nothing.size(), 1);
    QCOMPARE(pressed.size() + clicked.size(), 0);
    stage.release({200.0, 100.0}); // a release that follows no press
    QCOMPARE(nothing.size(), 1);
}

void tst_ScenePress::stickyIsReportedInsteadOfItsComponent_data()
{
    QTest::addColumn<bool>("showsStatus");
    QTest::newRow("where binding statuses are shown") << true;
    QTest::newRow("not elsewhere") << false;
}

void tst_ScenePress::stickyIsReportedInsteadOfItsComponent()
{
    QFETCH(bool, showsStatus);
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->addTag(QStringLiteral("P"), QString());
    ZelRectItemMcpSticky *const sticky = mcp->getListSticky().first();
    stage.scene().setAllowToDisplayBindingStatus(showsStatus);
    QSignalSpy pressed(&stage.scene(), &ZelScene::zelGItemPressed);
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    stage.click(sticky->sceneBoundingRect().center());
    QCOMPARE(pressed.at(0).at(0).value<ZelGItem *>(), mcp->getZelEllipseItemMcp());
    ZelGItem *const expected =
        showsStatus ? static_cast<ZelGItem *>(sticky) : mcp->getZelEllipseItemMcp();
    QCOMPARE(clicked.at(0).at(0).value<ZelGItem *>(), expected);
}

void tst_ScenePress::stickyIsNoItemToTheGeneralSearch()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->addTag(QStringLiteral("P"), QString());
    ZelRectItemMcpSticky *const sticky = mcp->getListSticky().first();
    const QPointF p = sticky->sceneBoundingRect().center();
    QCOMPARE(stage.scene().getZelRectItemMcpStickyFromScenePos(p), sticky);
    QCOMPARE(stage.scene().getZelGItemFromScenePos(p), mcp->getZelEllipseItemMcp());
    QVERIFY(!stage.scene().getZelRectItemFromScenePos(p));
}

void tst_ScenePress::searchesTellKindsApart()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const a = stage.addComponent({-60.0, 0.0});
    SdcMcp *const b = stage.addComponent({60.0, 0.0});
    SdcBst *const bst = stage.addSite(a, 90.0);
    stage.join(a, b);
    auto *const rect = new ZelRectItem(QRectF(-70.0, -10.0, 20.0, 20.0));
    rect->setZValue(10.0);
    stage.scene().addItem(rect);
    ZelScene &scene = stage.scene();
    QCOMPARE(scene.getZelGItemFromScenePos({-60.0, 0.0}), rect);
    QCOMPARE(scene.getZelEllipseItemFromScenePos({-60.0, 0.0}), a->getZelEllipseItemMcp());
    QVERIFY(scene.getZelLineItemFromScenePos({0.0, 0.0}));
    QVERIFY(!scene.getZelEllipseItemFromScenePos({0.0, 0.0}));
    QCOMPARE(scene.getCenterZelEllipseMcp(bst->getZelEllipseItemBst()), a->getZelEllipseItemMcp());
    QCOMPARE(scene.getCenterZelEllipseMcp(b->getZelEllipseItemMcp()), b->getZelEllipseItemMcp());
    QVERIFY(!scene.getCenterZelEllipseMcp(nullptr));
}

void tst_ScenePress::dragIsNoClick()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    stage.drag({0.0, 0.0}, {30.0, 0.0});
    QCOMPARE(clicked.size(), 0);
    stage.scene().setEnforcedNoMove(true); // where nothing can be dragged, a click stays one
    stage.drag({0.0, 0.0}, {3.0, 0.0});
    QCOMPARE(clicked.size(), 1);
}

void tst_ScenePress::otherButtonsNeitherClickNorPan()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    QSignalSpy pressed(&stage.scene(), &ZelScene::zelGItemPressed);
    QSignalSpy nothing(&stage.scene(), &ZelScene::noGItemClicked);
    stage.press({0.0, 0.0}, Qt::RightButton);
    stage.release({0.0, 0.0}, Qt::RightButton);
    stage.press({200.0, 0.0}, Qt::RightButton);
    QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
    stage.release({200.0, 0.0}, Qt::RightButton);
    QCOMPARE(pressed.size() + nothing.size(), 0);
}

void tst_ScenePress::doubleClickReportsItemOnly()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    QSignalSpy spy(&stage.scene(), &ZelScene::zelGItemDoubleClicked);
    stage.doubleClick({200.0, 0.0});
    QCOMPARE(spy.size(), 0);
    stage.doubleClick({0.0, 0.0});
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<ZelGItem *>(), mcp->getZelEllipseItemMcp());
}

void tst_ScenePress::dragAnnouncesOneChange()
{
    SceneStage<OpenScene> stage;
    stage.scene().moves = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    QSignalSpy changed(&stage.scene(), &ZelScene::signal_changed);
    QSignalSpy moved(&stage.scene(), &ZelScene::signal_moved);
    QStringList order;
    QPointF atBegin;
    connect(&stage.scene(), &ZelScene::signal_changeBegin, this, [&] {
        order << QStringLiteral("begin");
        atBegin = mcp->getZelEllipseItemMcp()->pos();
    });
    connect(
        &stage.scene(), &ZelScene::signal_changeEnd, this, [&] { order << QStringLiteral("end"); });
    stage.press({0.0, 0.0});
    stage.move({10.0, 0.0});
    stage.move({20.0, 5.0});
    stage.move({30.0, 10.0});
    QCOMPARE(order, QStringList{QStringLiteral("begin")});
    stage.release({30.0, 10.0});
    QCOMPARE(changed.size(), 1);
    QCOMPARE(moved.size(), 3);
    QCOMPARE(order, (QStringList{QStringLiteral("begin"), QStringLiteral("end")}));
    QCOMPARE(atBegin, QPointF(0.0, 0.0));
    QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(30.0, 10.0));
    stage.drag({30.0, 10.0}, {40.0, 10.0});
    QCOMPARE(changed.size(), 2);
    QCOMPARE(order.size(), 4);
}

void tst_ScenePress::dragOfEmptySpaceMovesNothing()
{
    SceneStage<OpenScene> stage;
    QSignalSpy changed(&stage.scene(), &ZelScene::signal_changed);
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    stage.drag({0.0, 0.0}, {50.0, 0.0});
    QCOMPARE(changed.size(), 0);
    stage.addComponent({0.0, 0.0});
    stage.drag({200.0, 0.0}, {250.0, 0.0}); // the view scrolls and keeps the moves to itself
    QCOMPARE(changed.size(), 0);
    QGraphicsView second(&stage.scene()); // with two views none scrolls
    stage.drag({200.0, 0.0}, {250.0, 0.0});
    QCOMPARE(changed.size(), 1);
    QCOMPARE(begun.size(), 0);
}

void tst_ScenePress::readOnlySceneIsDeaf()
{
    SceneStage<OpenScene> stage;
    stage.scene().moves = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    stage.scene().setReadOnly(true);
    QSignalSpy pressed(&stage.scene(), &ZelScene::zelGItemPressed);
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    QSignalSpy nothing(&stage.scene(), &ZelScene::noGItemClicked);
    QSignalSpy twice(&stage.scene(), &ZelScene::zelGItemDoubleClicked);
    stage.doubleClick({0.0, 0.0});
    stage.click({200.0, 0.0});
    stage.drag({0.0, 0.0}, {30.0, 0.0});
    QCOMPARE(pressed.size() + clicked.size() + nothing.size() + twice.size(), 0);
    QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(0.0, 0.0));
    QVERIFY(!stage.menuAt({0.0, 0.0}, [](QMenu *) {}));
    stage.scene().setReadOnly(false);
    QVERIFY(stage.scene().isContextMenuEnabled());
    stage.click({0.0, 0.0});
    QCOMPARE(clicked.size(), 1);
}

void tst_ScenePress::readOnlyDuringDragGivesThePressUp()
{
    SceneStage<OpenScene> stage;
    stage.scene().moves = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    QSignalSpy ended(&stage.scene(), &ZelScene::signal_changeEnd);
    stage.press({0.0, 0.0});
    stage.move({10.0, 0.0});
    stage.scene().setReadOnly(true);
    QCOMPARE(ended.size(), 1);
    stage.move({50.0, 0.0});
    QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(10.0, 0.0));
}

void tst_ScenePress::emptySpacePansTheOnlyView()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    stage.press({0.0, 0.0});
    QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
    stage.release({0.0, 0.0});
    stage.press({150.0, 0.0});
    QCOMPARE(stage.view().dragMode(), QGraphicsView::ScrollHandDrag);
    stage.release({150.0, 0.0});
    QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
}

void tst_ScenePress::twoViewsKeepTheirDragModes()
{
    SceneStage<OpenScene> stage;
    QGraphicsView second(&stage.scene());
    second.setDragMode(QGraphicsView::RubberBandDrag);
    stage.press({150.0, 0.0});
    QCOMPARE(stage.view().dragMode(), QGraphicsView::NoDrag);
    stage.release({150.0, 0.0});
    QCOMPARE(second.dragMode(), QGraphicsView::RubberBandDrag);
}

void tst_ScenePress::lostReleaseIsMadeUpForByTheNextPress()
{
    SceneStage<OpenScene> stage;
    stage.scene().moves = true;
    stage.addComponent({0.0, 0.0});
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QSignalSpy ended(&stage.scene(), &ZelScene::signal_changeEnd);
    stage.press({0.0, 0.0});
    stage.move({10.0, 0.0});
    stage.move({90.0, 0.0}, Qt::NoButton); // the button came up elsewhere
    QCOMPARE(centreOf(stage.mol().getSdcMcpAtIndex(0)->getZelEllipseItemMcp()), QPointF(10.0, 0.0));
    stage.press({10.0, 0.0});
    QCOMPARE(begun.size(), 1);
    QCOMPARE(ended.size(), 1);
    stage.release({10.0, 0.0});
}

ZEL_TEST(tst_ScenePress)
#include "tst_ScenePress.moc"
