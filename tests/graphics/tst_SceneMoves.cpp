#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelShare/ZelShareGui.h"

#include <QSignalSpy>

#include <cmath>

// Attached moves, group moves, automatic placing and the collisions that refuse them.
class tst_SceneMoves : public ZelTest
{
    Q_OBJECT
private slots:
    void draggedSiteStaysOnItsRim_data();
    void draggedSiteStaysOnItsRim();
    void siteGrabbedOffCentreDoesNotJump();
    void draggedSiteIsRefusedByOthers();
    void refusedDragIsOverAndAnnouncesNothing();
    void siteOnForeignSiteIsReportedAtRelease();
    void endComponentKeepsItsNeighbourDistance();
    void componentMoveTakesSitesAndLinesAlong();
    void attachedMoveByDegree_data();
    void attachedMoveByDegree();
    void groupMovesTogetherOrNotAtAll();
    void highlightedSitesMoveWithTheDraggedOne();
    void movedMoleculeMarksTouchingSites();
    void enforcedNoMove();
    void automaticPlaceTakesFirstFreeAngle();
    void automaticPlaceFailsWhenSurrounded();
    void placeBetweenItemsEvadesWhatIsThere();
    void collisions_data();
    void collisions();
    void siteOfComponentCountsAsComponent();
    void excludedAndOwnItemsDoNotCollide();
    void unusableArguments();
};

void tst_SceneMoves::draggedSiteStaysOnItsRim_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QPointF>("to");
    QTest::newRow("round, far out") << QSizeF(60.0, 60.0) << QPointF(0.0, -200.0);
    QTest::newRow("round, towards the centre") << QSizeF(60.0, 60.0) << QPointF(-4.0, -3.0);
    QTest::newRow("wide, across") << QSizeF(90.0, 50.0) << QPointF(0.0, 120.0);
    QTest::newRow("wide, slanted") << QSizeF(90.0, 50.0) << QPointF(-80.0, -60.0);
}

void tst_SceneMoves::draggedSiteStaysOnItsRim()
{
    QFETCH(QSizeF, size);
    QFETCH(QPointF, to);
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0}, size);
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    ZelEllipseItemMcp *const centre = mcp->getZelEllipseItemMcp();
    QSignalSpy moved(&stage.scene(), &ZelScene::signal_ZelGItemMoved);
    stage.drag(centreOf(site), to);
    QVERIFY(moved.size() > 0);
    QCOMPARE(moved.at(0).at(0).value<ZelGItem *>(), site);
    const double least = ZelShareGui::getMinimumAttachedItemCenterDistance(centre, site);
    const double greatest = ZelShareGui::getMaximumAttachedItemCenterDistance(centre, site);
    QVERIFY2(distance(centre, site) >= least - 1e-6, qPrintable(QString::number(least)));
    QVERIFY2(distance(centre, site) <= greatest + 1e-6, qPrintable(QString::number(greatest)));
    const double wanted = std::atan2(to.y(), to.x());
    QVERIFY(std::abs(std::atan2(centreOf(site).y(), centreOf(site).x()) - wanted) < 1e-6);
}

void tst_SceneMoves::siteGrabbedOffCentreDoesNotJump()
{
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    const QPointF before = centreOf(site);
    stage.press(before + QPointF(0.0, 4.0));
    stage.move(before + QPointF(0.0, 4.0));
    QVERIFY(QLineF(before, centreOf(site)).length() < 1e-9);
    stage.release(before);
}

void tst_SceneMoves::draggedSiteIsRefusedByOthers()
{
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const other = stage.addSite(mcp, 90.0)->getZelEllipseItemBst();
    stage.press(centreOf(site));
    stage.move({30.0, -30.0});
    const QPointF accepted = centreOf(site);
    stage.move({6.0, -40.0}); // into the other site
    QCOMPARE(centreOf(site), accepted);
    stage.move({40.0, 0.0}); // the refusal has ended the drag
    QCOMPARE(centreOf(site), accepted);
    stage.release({40.0, 0.0});
    QVERIFY(distance(site, other) > 12.0);
    // Clear of the other site but within one unit of it is refused as well.
    const double touching = 2.0 * std::asin(12.5 / 60.0);
    const QPointF near(30.0 * std::sin(touching), -30.0 * std::cos(touching));
    QVERIFY(!stage.scene().moveAroundAttachedItemByPos(site, mcp->getZelEllipseItemMcp(), near));
}

void tst_SceneMoves::refusedDragIsOverAndAnnouncesNothing()
{
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    stage.addSite(mcp, 90.0);
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QSignalSpy clicked(&stage.scene(), &ZelScene::zelGItemClicked);
    QSignalSpy nothing(&stage.scene(), &ZelScene::noGItemClicked);
    stage.drag(centreOf(site), {0.0, -40.0}, 1);
    QCOMPARE(begun.size(), 0);
    QCOMPARE(clicked.size() + nothing.size(), 0);
    QCOMPARE(centreOf(site), QPointF(30.0, 0.0));
}

void tst_SceneMoves::siteOnForeignSiteIsReportedAtRelease()
{
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    SdcMol foreign(nullptr);
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    SdcMcp *const stranger = stage.addComponent({80.0, 0.0}, {60.0, 60.0}, &foreign);
    ZelEllipseItemBst *const site = stage.addSite(mcp, 90.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const target = stage.addSite(stranger, 180.0, 30.0)->getZelEllipseItemBst();
    target->setHighlight(true); // a highlight of the host's comes back
    QSignalSpy spy(&stage.scene(), &ZelScene::zelEllipseItemCollided);
    stage.press(centreOf(site));
    stage.move({40.0, -3.0});
    QVERIFY(site->isHighlighted());
    QCOMPARE(spy.size(), 0);
    stage.release({40.0, -3.0});
    QVERIFY(!site->isHighlighted());
    QVERIFY(target->isHighlighted());
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<ZelEllipseItem *>(), site);
    QCOMPARE(spy.at(0).at(1).value<ZelEllipseItem *>(), target);
    stage.click({0.0, 0.0});
    QCOMPARE(spy.size(), 1);
}

void tst_SceneMoves::endComponentKeepsItsNeighbourDistance()
{
    SceneStage<OpenScene> stage;
    stage.scene().changesRelativePos = true;
    SdcMcp *const inner = stage.addComponent({0.0, 0.0});
    SdcMcp *const end = stage.addComponent({70.0, 0.0});
    SdcMcp *const third = stage.addComponent({-70.0, 0.0});
    stage.join(inner, end);
    stage.join(inner, third);
    ZelEllipseItemMcp *const item = end->getZelEllipseItemMcp();
    stage.drag({70.0, 0.0}, {10.0, 160.0}, 8);
    QVERIFY(centreOf(item).y() > 60.0);
    QVERIFY(distance(item, inner->getZelEllipseItemMcp()) > 61.0);
    QVERIFY(
        distance(item, inner->getZelEllipseItemMcp()) <= 60.0 + ZelShareGui::GreatestRimGap + 0.2);
    stage.drag({0.0, 0.0}, {0.0, -100.0}); // two neighbours: attached to none of them
    QCOMPARE(centreOf(inner->getZelEllipseItemMcp()), QPointF(0.0, 0.0));
}

void tst_SceneMoves::componentMoveTakesSitesAndLinesAlong()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const inner = stage.addComponent({0.0, 0.0});
    SdcMcp *const end = stage.addComponent({70.0, 0.0});
    SdcBst *const bst = stage.addSite(end, 0.0);
    stage.join(inner, end);
    QSignalSpy siteMoved(bst->getZelEllipseItemBst(), &ZelEllipseItem::posChanged);
    QVERIFY(stage.scene().moveAroundAttachedItemByPos(
        end->getZelEllipseItemMcp(), inner->getZelEllipseItemMcp(), {0.0, -70.0}));
    QCOMPARE(siteMoved.size(), 1);
    QCOMPARE(centreOf(bst->getZelEllipseItemBst()),
        centreOf(end->getZelEllipseItemMcp()) + QPointF(30.0, 0.0));
    ZelLineItemMcpMcp *const line = inner->getZelEllipseItemMcp()->getListMcpMcp().first();
    const QLineF drawn(line->mapToScene(line->line().p1()), line->mapToScene(line->line().p2()));
    QVERIFY(std::abs(drawn.x1()) < 1e-6 && std::abs(drawn.x2()) < 1e-6);
    QVERIFY(std::min(drawn.y1(), drawn.y2()) < -35.0);
}

void tst_SceneMoves::attachedMoveByDegree_data()
{
    QTest::addColumn<double>("degree");
    QTest::addColumn<QPointF>("expected");
    QTest::newRow("quarter, counter-clockwise") << 90.0 << QPointF(0.0, -30.0);
    QTest::newRow("quarter, clockwise") << -90.0 << QPointF(0.0, 30.0);
    QTest::newRow("half") << 180.0 << QPointF(-30.0, 0.0);
    QTest::newRow("full turn") << 360.0 << QPointF(30.0, 0.0);
}

void tst_SceneMoves::attachedMoveByDegree()
{
    QFETCH(double, degree);
    QFETCH(QPointF, expected);
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    QVERIFY(
        stage.scene().moveAroundAttachedItemByDegree(site, mcp->getZelEllipseItemMcp(), degree));
    QVERIFY(QLineF(centreOf(site), expected).length() < 1e-6);
}

void tst_SceneMoves::groupMovesTogetherOrNotAtAll()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0}, {120.0, 120.0});
    ZelEllipseItemMcp *const centre = mcp->getZelEllipseItemMcp();
    ZelEllipseItemBst *const a = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const b = stage.addSite(mcp, 20.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const c = stage.addSite(mcp, 60.0)->getZelEllipseItemBst();
    const QPointF aBefore = a->pos();
    const QPointF bBefore = b->pos();
    // The site b would be pushed into c.
    QVERIFY(!stage.scene().moveGroupAroundItemByPos({a, b}, centre, {46.0, -38.0}));
    QCOMPARE(a->pos(), aBefore);
    QCOMPARE(b->pos(), bBefore);
    QVERIFY(stage.scene().moveGroupAroundItemByPos({a, b}, centre, {58.0, 20.0}));
    QVERIFY(a->pos().y() > aBefore.y() + 10.0);
    QVERIFY(b->pos().y() > bBefore.y() + 10.0);
    for (ZelEllipseItemBst *site : {a, b}) {
        QVERIFY(distance(centre, site) >= 60.0 - 1e-6);
        QVERIFY(distance(centre, site) <= 66.0 + 1e-6);
    }
    QVERIFY(distance(b, c) > 13.0);
}

void tst_SceneMoves::highlightedSitesMoveWithTheDraggedOne()
{
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    stage.scene().movesGroup = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0}, {120.0, 120.0});
    ZelEllipseItemBst *const a = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const b = stage.addSite(mcp, 180.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const c = stage.addSite(mcp, 90.0)->getZelEllipseItemBst();
    b->setHighlight(true);
    const QPointF cBefore = c->pos();
    stage.drag(centreOf(a), centreOf(a) + QPointF(-4.0, 20.0));
    QVERIFY(a->pos().y() > 15.0);
    QVERIFY(b->pos().y() > 15.0);
    QCOMPARE(c->pos(), cBefore);
}

void tst_SceneMoves::movedMoleculeMarksTouchingSites()
{
    SceneStage<OpenScene> stage;
    stage.scene().moves = true;
    SdcMol foreign(nullptr);
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    SdcMcp *const stranger = stage.addComponent({150.0, 0.0}, {60.0, 60.0}, &foreign);
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    ZelEllipseItemBst *const target = stage.addSite(stranger, 180.0)->getZelEllipseItemBst();
    QSignalSpy spy(&stage.scene(), &ZelScene::zelEllipseItemCollided);
    stage.press({0.0, 0.0});
    stage.move({84.0, 0.0});
    QVERIFY(site->isHighlighted() && target->isHighlighted());
    stage.move({50.0, 0.0}); // apart again
    QVERIFY(!site->isHighlighted() && !target->isHighlighted());
    stage.move({85.0, 0.0});
    stage.release({85.0, 0.0});
    QVERIFY(!site->isHighlighted() && !target->isHighlighted());
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(1).value<ZelEllipseItem *>(), target);
    // On a long way, too, where the end was out of sight at the beginning.
    stage.drag({85.0, 0.0}, {-300.0, 0.0}, 2);
    stage.drag({-300.0, 0.0}, {84.0, 0.0}, 30);
    QCOMPARE(spy.size(), 2);
}

void tst_SceneMoves::enforcedNoMove()
{
    SceneStage<OpenScene> stage;
    stage.scene().moves = true;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    stage.scene().setEnforcedNoMove(true);
    QSignalSpy changed(&stage.scene(), &ZelScene::signal_changed);
    stage.drag({0.0, 0.0}, {40.0, 0.0});
    QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(0.0, 0.0));
    QCOMPARE(changed.size(), 0);
}

void tst_SceneMoves::automaticPlaceTakesFirstFreeAngle()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const a = stage.addComponent({0.0, 0.0});
    SdcMcp *const b = stage.addComponent({300.0, 0.0});
    ZelEllipseItemMcp *const item = b->getZelEllipseItemMcp();
    ZelEllipseItemMcp *const centre = a->getZelEllipseItemMcp();
    QVERIFY(stage.scene().automaticFindAndMoveToPos(item, centre, 135.0, 5.0));
    QVERIFY(std::abs(item->pos().x() - item->pos().y()) < 1e-6 && item->pos().x() < 0.0);
    const double least = ZelShareGui::getMinimumAttachedItemCenterDistance(centre, item);
    const double greatest = ZelShareGui::getMaximumAttachedItemCenterDistance(centre, item);
    QVERIFY(std::abs(distance(item, centre) - (least + greatest) / 2.0) < 1e-6);
    // Something there: the next angles are further left and down.
    SdcMcp *const c = stage.addComponent({300.0, 0.0});
    QVERIFY(stage.scene().automaticFindAndMoveToPos(c->getZelEllipseItemMcp(), centre, 135.0, 5.0));
    QVERIFY(c->getZelEllipseItemMcp()->pos().y() > item->pos().y() + 30.0);
    QVERIFY(distance(c->getZelEllipseItemMcp(), item) > 61.0);
}

void tst_SceneMoves::automaticPlaceFailsWhenSurrounded()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const a = stage.addComponent({0.0, 0.0});
    for (int i = 0; i < 8; ++i)
        stage.addComponent(QLineF::fromPolar(75.0, 45.0 * i).p2(), {50.0, 50.0});
    SdcMcp *const late = stage.addComponent({300.0, 0.0});
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QVERIFY(!stage.scene().automaticFindAndMoveToPos(
        late->getZelEllipseItemMcp(), a->getZelEllipseItemMcp(), 135.0, 5.0));
    QCOMPARE(late->getZelEllipseItemMcp()->pos(), QPointF(300.0, 0.0));
    QCOMPARE(begun.size(), 0);
}

void tst_SceneMoves::placeBetweenItemsEvadesWhatIsThere()
{
    SceneStage<OpenScene> stage;
    ZelEllipseItemMcp *const a = stage.addComponent({-100.0, 0.0})->getZelEllipseItemMcp();
    ZelEllipseItemMcp *const b = stage.addComponent({100.0, 0.0})->getZelEllipseItemMcp();
    ZelEllipseItemMcp *const c = stage.addComponent({0.0, 250.0})->getZelEllipseItemMcp();
    QCOMPARE(stage.scene().findLocBetweenItems(c, a, b).value(), QPointF(0.0, 0.0));
    stage.addComponent({0.0, 0.0});
    const QPointF beside = stage.scene().findLocBetweenItems(c, a, b).value();
    QVERIFY(std::abs(beside.x()) < 1e-9);
    QVERIFY(std::abs(beside.y()) > 61.0 && std::abs(beside.y()) <= 65.0);
    QCOMPARE(c->pos(), QPointF(0.0, 250.0));
}

void tst_SceneMoves::collisions_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<double>("gap");
    QTest::addColumn<bool>("sameMolecule");
    QTest::addColumn<bool>("collides");
    const QSizeF round(60.0, 60.0);
    const QSizeF wide(80.0, 60.0);
    QTest::newRow("overlapping") << round << -1.0 << false << true;
    QTest::newRow("half a unit apart, strangers") << round << 0.5 << false << false;
    QTest::newRow("half a unit apart, one molecule") << round << 0.5 << true << true;
    QTest::newRow("1.2 units apart, one molecule") << round << 1.2 << true << false;
    QTest::newRow("wide, overlapping") << wide << -1.0 << false << true;
    QTest::newRow("wide, strangers") << wide << 0.5 << false << false;
    QTest::newRow("wide, one molecule") << wide << 0.5 << true << true;
    QTest::newRow("wide, clear") << wide << 1.5 << true << false;
}

void tst_SceneMoves::collisions()
{
    QFETCH(QSizeF, size);
    QFETCH(double, gap);
    QFETCH(bool, sameMolecule);
    QFETCH(bool, collides);
    SceneStage<OpenScene> stage;
    SdcMol foreign(nullptr);
    SdcMcp *const a = stage.addComponent({0.0, 0.0}, size);
    SdcMcp *const b =
        stage.addComponent({size.width() + gap, 0.0}, size, sameMolecule ? nullptr : &foreign);
    const QList<ZelEllipseItem *> none;
    QCOMPARE(stage.scene().collidingWithOtherSdcItems(a->getZelEllipseItemMcp(), none), collides);
    QCOMPARE(stage.scene().collidingWithOtherSdcItems(b->getZelEllipseItemMcp(), none), collides);
}

void tst_SceneMoves::siteOfComponentCountsAsComponent()
{
    SceneStage<OpenScene> stage;
    SdcMol foreign(nullptr);
    SdcMcp *const a = stage.addComponent({0.0, 0.0});
    SdcMcp *const b = stage.addComponent({64.0, 0.0}, {60.0, 60.0}, &foreign);
    const QList<ZelEllipseItem *> none;
    QVERIFY(!stage.scene().collidingWithOtherSdcItems(a->getZelEllipseItemMcp(), none));
    stage.addSite(a, 0.0);
    QVERIFY(stage.scene().collidingWithOtherSdcItems(a->getZelEllipseItemMcp(), none));
    QVERIFY(stage.scene().collidingWithOtherSdcItems(b->getZelEllipseItemMcp(), none));
}

void tst_SceneMoves::excludedAndOwnItemsDoNotCollide()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const a = stage.addComponent({0.0, 0.0});
    SdcMcp *const b = stage.addComponent({40.0, 0.0});
    ZelEllipseItemMcp *const itemA = a->getZelEllipseItemMcp();
    ZelEllipseItemMcp *const itemB = b->getZelEllipseItemMcp();
    SdcBst *const bst = stage.addSite(a, 180.0);
    stage.addSite(a, 190.0); // neighbours on one rim move along
    ZelScene &scene = stage.scene();
    QVERIFY(!scene.collidingWithOtherSdcItems(itemA, QList<ZelEllipseItem *>{itemB}));
    QVERIFY(!scene.collidingWithOtherSdcItems(itemA, QList<QGraphicsItem *>{itemB}));
    QVERIFY(
        scene.collidingWithOtherSdcItems(bst->getZelEllipseItemBst(), QList<ZelEllipseItem *>()));
}

void tst_SceneMoves::unusableArguments()
{
    SceneStage<OpenScene> stage;
    ZelScene &scene = stage.scene();
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
    const QPointF before = site->pos();
    QVERIFY(!scene.moveAroundAttachedItemByPos(nullptr, item, {}));
    QVERIFY(!scene.moveAroundAttachedItemByPos(site, nullptr, {}));
    QVERIFY(!scene.moveAroundAttachedItemByPos(item, item, {10.0, 10.0}));
    QVERIFY(!scene.moveAroundAttachedItemByPos(site, item, {qQNaN(), 0.0}));
    QVERIFY(!scene.moveAroundAttachedItemByDegree(site, item, qInf()));
    QVERIFY(!scene.moveGroupAroundItemByPos({}, item, {}));
    QVERIFY(!scene.moveGroupAroundItemByPos({item}, item, {}));
    QVERIFY(!scene.automaticFindAndMoveToPos(site, item, 135.0, 0.0));
    QVERIFY(!scene.automaticFindAndMoveToPos(site, item, qQNaN(), 5.0));
    QVERIFY(!scene.collidingWithOtherSdcItems(nullptr, QList<ZelEllipseItem *>()));
    QVERIFY(!scene.findLocBetweenItems(site, item, nullptr));
    scene.moveListSdcMcps({nullptr, mcp}, {qInf(), 0.0});
    QCOMPARE(site->pos(), before);
    QCOMPARE(item->pos(), QPointF(0.0, 0.0));
    // A pointer on the centre itself keeps the direction.
    QVERIFY(scene.moveAroundAttachedItemByPos(site, item, {0.0, 0.0}));
    QCOMPARE(site->pos(), before);
}

ZEL_TEST(tst_SceneMoves)
#include "tst_SceneMoves.moc"
