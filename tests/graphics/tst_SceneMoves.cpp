#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelShare/ZelShareGui.h"

#include <cmath>

// Attached moves, group moves, automatic placing and the collisions that refuse them.
class tst_SceneMoves : public ZelTest
{
    Q_OBJECT

    static bool isNear(const QPointF &a, const QPointF &b) { return QLineF(a, b).length() < 1e-6; }

    /// Sites a, b and c at angles of a large component, of which a and b are moved.
    struct GroupStage : SceneStage<OpenScene>
    {
        SdcMcp *mcp = addComponent({0.0, 0.0}, {120.0, 120.0});
        ZelEllipseItemMcp *centre = mcp->getZelEllipseItemMcp();
        ZelEllipseItemBst *a;
        ZelEllipseItemBst *b;
        ZelEllipseItemBst *c;
        GroupStage(double angleB, double angleC)
            : a(addSite(mcp, 0.0)->getZelEllipseItemBst()),
              b(addSite(mcp, angleB)->getZelEllipseItemBst()),
              c(addSite(mcp, angleC)->getZelEllipseItemBst())
        {
        }
    };

private slots:
    void draggedSiteStaysOnItsRim_data()
    {
        rows<QSizeF, QPointF>({"size", "to"},
            {{"round, far out", {QSizeF(60.0, 60.0), QPointF(0.0, -200.0)}},
                {"round, towards the centre", {QSizeF(60.0, 60.0), QPointF(-4.0, -3.0)}},
                {"wide, slanted", {QSizeF(90.0, 50.0), QPointF(-80.0, -60.0)}}});
    }

    void draggedSiteStaysOnItsRim()
    {
        QFETCH(QSizeF, size);
        QFETCH(QPointF, to);
        SceneStage<OpenScene> stage;
        stage.scene().changesLayout = true;
        SdcMcp *const mcp = stage.addComponent({0.0, 0.0}, size);
        ZelEllipseItemBst *const site = stage.addSite(mcp, 0.0)->getZelEllipseItemBst();
        ZelEllipseItemMcp *const centre = mcp->getZelEllipseItemMcp();
        stage.drag(centreOf(site), to);
        QVERIFY(stage.log().contains("moved s"));
        const double least = ZelShareGui::getMinimumAttachedItemCenterDistance(centre, site);
        const double greatest = ZelShareGui::getMaximumAttachedItemCenterDistance(centre, site);
        QVERIFY(distance(centre, site) >= least - 1e-6);
        QVERIFY(distance(centre, site) <= greatest + 1e-6);
        const double wanted = std::atan2(to.y(), to.x());
        QVERIFY(std::abs(std::atan2(centreOf(site).y(), centreOf(site).x()) - wanted) < 1e-6);
    }

    void siteGrabbedOffCentreDoesNotJump()
    {
        RimStage stage;
        stage.scene().changesLayout = true;
        const QPointF before = centreOf(stage.site);
        stage.press(before + QPointF(0.0, 4.0));
        stage.move(before + QPointF(0.0, 4.0));
        QVERIFY(isNear(before, centreOf(stage.site)));
        stage.release(before);
    }

    void draggedSiteIsRefusedByOthers()
    {
        RimStage stage;
        stage.scene().changesLayout = true;
        ZelEllipseItemBst *const other = stage.addSite(stage.mcp, 90.0)->getZelEllipseItemBst();
        // Refused at once, it is no change that could be undone, and no click.
        stage.drag(centreOf(stage.site), {0.0, -40.0}, 1);
        QCOMPARE(stage.log(), "pressed s, changed");
        QCOMPARE(centreOf(stage.site), QPointF(30.0, 0.0));
        stage.press(centreOf(stage.site));
        stage.move({30.0, -30.0});
        const QPointF accepted = centreOf(stage.site);
        stage.move({6.0, -40.0}); // into the other site
        QCOMPARE(centreOf(stage.site), accepted);
        stage.move({40.0, 0.0}); // the refusal has ended the drag
        QCOMPARE(centreOf(stage.site), accepted);
        stage.release({40.0, 0.0});
        QVERIFY(distance(stage.site, other) > 12.0);
        // Clear of the other site but within one unit of it is refused as well.
        const double touching = 2.0 * std::asin(12.5 / 60.0);
        const QPointF near(30.0 * std::sin(touching), -30.0 * std::cos(touching));
        QVERIFY(!stage.scene().moveAroundAttachedItemByPos(stage.site, stage.centre, near));
    }

    void siteOnForeignSiteIsReportedAtRelease()
    {
        SceneStage<OpenScene> stage;
        stage.scene().changesLayout = true;
        SdcMol foreign(nullptr);
        SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
        SdcMcp *const stranger = stage.addComponent({80.0, 0.0}, {60.0, 60.0}, &foreign);
        ZelEllipseItemBst *const site = stage.addSite(mcp, 90.0)->getZelEllipseItemBst();
        ZelEllipseItemBst *const target =
            stage.addSite(stranger, 180.0, 30.0)->getZelEllipseItemBst();
        target->setHighlight(true); // a highlight of the host's comes back
        stage.press(centreOf(site));
        stage.move({40.0, -3.0});
        QVERIFY(site->isHighlighted());
        QVERIFY(!stage.log().contains("collided"));
        stage.release({40.0, -3.0});
        QVERIFY(!site->isHighlighted() && target->isHighlighted());
        QCOMPARE(stage.log().count("collided s t"), 1);
        stage.click({0.0, 0.0});
        QVERIFY(!stage.log().contains("collided"));
    }

    void endComponentKeepsItsNeighbourDistance()
    {
        SceneStage<OpenScene> stage;
        stage.scene().changesRelativePos = true;
        SdcMcp *const inner = stage.addComponent({0.0, 0.0});
        SdcMcp *const end = stage.addComponent({70.0, 0.0});
        stage.join(inner, end);
        stage.join(inner, stage.addComponent({-70.0, 0.0}));
        ZelEllipseItemMcp *const item = end->getZelEllipseItemMcp();
        ZelEllipseItemMcp *const innerItem = inner->getZelEllipseItemMcp();
        stage.drag({70.0, 0.0}, {10.0, 160.0}, 8);
        QVERIFY(centreOf(item).y() > 60.0);
        QVERIFY(distance(item, innerItem) > 61.0);
        QVERIFY(distance(item, innerItem) <= 60.0 + ZelShareGui::GreatestRimGap + 0.2);
        stage.drag({0.0, 0.0}, {0.0, -100.0}); // two neighbours: attached to none of them
        QCOMPARE(centreOf(innerItem), QPointF(0.0, 0.0));
    }

    void attachedMoveByDegree_data()
    {
        rows<double, QPointF>({"degree", "expected"},
            {{"quarter, counter-clockwise", {90.0, QPointF(0.0, -30.0)}},
                {"quarter, clockwise", {-90.0, QPointF(0.0, 30.0)}},
                {"full turn", {360.0, QPointF(30.0, 0.0)}}});
    }

    void attachedMoveByDegree()
    {
        QFETCH(double, degree);
        QFETCH(QPointF, expected);
        RimStage stage;
        QVERIFY(stage.scene().moveAroundAttachedItemByDegree(stage.site, stage.centre, degree));
        QVERIFY(isNear(centreOf(stage.site), expected));
    }

    void groupMovesTogetherOrNotAtAll()
    {
        GroupStage stage(20.0, 60.0);
        const QPointF aBefore = stage.a->pos();
        const QPointF bBefore = stage.b->pos();
        // The site b would be pushed into c.
        QVERIFY(!stage.scene().moveGroupAroundItemByPos(
            {stage.a, stage.b}, stage.centre, {46.0, -38.0}));
        QCOMPARE(stage.a->pos(), aBefore);
        QCOMPARE(stage.b->pos(), bBefore);
        QVERIFY(
            stage.scene().moveGroupAroundItemByPos({stage.a, stage.b}, stage.centre, {58.0, 20.0}));
        QVERIFY(stage.a->pos().y() > aBefore.y() + 10.0);
        QVERIFY(stage.b->pos().y() > bBefore.y() + 10.0);
        for (ZelEllipseItemBst *site : {stage.a, stage.b})
            QVERIFY(std::abs(distance(stage.centre, site) - 63.0) <= 3.0 + 1e-6);
        QVERIFY(distance(stage.b, stage.c) > 13.0);
    }

    void highlightedSitesMoveWithTheDraggedOne()
    {
        GroupStage stage(180.0, 90.0);
        stage.scene().changesLayout = true;
        stage.scene().movesGroup = true;
        stage.b->setHighlight(true);
        const QPointF cBefore = stage.c->pos();
        stage.drag(centreOf(stage.a), centreOf(stage.a) + QPointF(-4.0, 20.0));
        QVERIFY(stage.a->pos().y() > 15.0);
        QVERIFY(stage.b->pos().y() > 15.0);
        QCOMPARE(stage.c->pos(), cBefore);
    }

    void movedMoleculeMarksTouchingSites()
    {
        RimStage stage;
        stage.scene().moves = true;
        SdcMol foreign(nullptr);
        SdcMcp *const stranger = stage.addComponent({150.0, 0.0}, {60.0, 60.0}, &foreign);
        ZelEllipseItemBst *const target = stage.addSite(stranger, 180.0)->getZelEllipseItemBst();
        stage.press({0.0, 0.0});
        stage.move({84.0, 0.0});
        QVERIFY(stage.site->isHighlighted() && target->isHighlighted());
        stage.move({50.0, 0.0}); // apart again
        QVERIFY(!stage.site->isHighlighted() && !target->isHighlighted());
        stage.move({85.0, 0.0});
        stage.release({85.0, 0.0});
        QVERIFY(!stage.site->isHighlighted() && !target->isHighlighted());
        QCOMPARE(stage.log().count("collided s t"), 1);
        // On a long way, too, where the end was out of sight at the beginning.
        stage.drag({85.0, 0.0}, {-300.0, 0.0}, 2);
        stage.drag({-300.0, 0.0}, {84.0, 0.0}, 30);
        QCOMPARE(stage.log().count("collided s t"), 1);
    }

    void automaticPlaceTakesFirstFreeAngle()
    {
        SceneStage<OpenScene> stage;
        ZelEllipseItemMcp *const centre = stage.addComponent({0.0, 0.0})->getZelEllipseItemMcp();
        ZelEllipseItemMcp *const item = stage.addComponent({300.0, 0.0})->getZelEllipseItemMcp();
        QVERIFY(stage.scene().automaticFindAndMoveToPos(item, centre, 135.0, 5.0));
        QVERIFY(std::abs(item->pos().x() - item->pos().y()) < 1e-6 && item->pos().x() < 0.0);
        const double least = ZelShareGui::getMinimumAttachedItemCenterDistance(centre, item);
        const double greatest = ZelShareGui::getMaximumAttachedItemCenterDistance(centre, item);
        QVERIFY(std::abs(distance(item, centre) - (least + greatest) / 2.0) < 1e-6);
        // Something there: the next angles are further left and down.
        ZelEllipseItemMcp *const next = stage.addComponent({300.0, 0.0})->getZelEllipseItemMcp();
        QVERIFY(stage.scene().automaticFindAndMoveToPos(next, centre, 135.0, 5.0));
        QVERIFY(next->pos().y() > item->pos().y() + 30.0);
        QVERIFY(distance(next, item) > 61.0);
    }

    void placeBetweenItemsEvadesWhatIsThere()
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

    void collisions_data()
    {
        const QSizeF round(60.0, 60.0);
        const QSizeF wide(80.0, 60.0);
        rows<QSizeF, double, bool, bool>({"size", "gap", "sameMolecule", "collides"},
            {{"overlapping", {round, -1.0, false, true}},
                {"half a unit apart, strangers", {round, 0.5, false, false}},
                {"half a unit apart, one molecule", {round, 0.5, true, true}},
                {"1.2 units apart, one molecule", {round, 1.2, true, false}},
                {"wide, overlapping", {wide, -1.0, false, true}},
                {"wide, strangers", {wide, 0.5, false, false}},
                {"wide, one molecule", {wide, 0.5, true, true}},
                {"wide, clear", {wide, 1.5, true, false}}});
    }

    void collisions()
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
        for (SdcMcp *mcp : {a, b})
            QCOMPARE(stage.scene().collidingWithOtherSdcItems(
                         mcp->getZelEllipseItemMcp(), QList<ZelEllipseItem *>()),
                collides);
    }

    void sitesCountAndExcludedItemsDoNot()
    {
        SceneStage<OpenScene> stage;
        SdcMol foreign(nullptr);
        SdcMcp *const a = stage.addComponent({0.0, 0.0});
        ZelEllipseItem *const itemA = a->getZelEllipseItemMcp();
        ZelEllipseItem *const itemB =
            stage.addComponent({64.0, 0.0}, {60.0, 60.0}, &foreign)->getZelEllipseItemMcp();
        const auto collides = [&](ZelEllipseItem *item, const QList<ZelEllipseItem *> &excluded) {
            return stage.scene().collidingWithOtherSdcItems(item, excluded);
        };
        QVERIFY(!collides(itemA, {}));
        SdcBst *const bst = stage.addSite(a, 0.0);
        stage.addSite(a, 20.0); // neighbours on one rim move along
        QVERIFY(collides(itemA, {}) && collides(itemB, {}));
        QVERIFY(!collides(itemA, {itemB}));
        QVERIFY(!stage.scene().collidingWithOtherSdcItems(itemA, QList<QGraphicsItem *>{itemB}));
        QVERIFY(collides(bst->getZelEllipseItemBst(), {}));
    }

    void unusableArguments()
    {
        RimStage stage;
        ZelScene &scene = stage.scene();
        ZelEllipseItemMcp *const item = stage.centre;
        const QPointF before = stage.site->pos();
        QVERIFY(!scene.moveAroundAttachedItemByPos(nullptr, item, {}));
        QVERIFY(!scene.moveAroundAttachedItemByPos(stage.site, nullptr, {}));
        QVERIFY(!scene.moveAroundAttachedItemByPos(item, item, {10.0, 10.0}));
        QVERIFY(!scene.moveAroundAttachedItemByPos(stage.site, item, {qQNaN(), 0.0}));
        QVERIFY(!scene.moveAroundAttachedItemByDegree(stage.site, item, qInf()));
        QVERIFY(!scene.moveGroupAroundItemByPos({}, item, {}));
        QVERIFY(!scene.moveGroupAroundItemByPos({item}, item, {}));
        QVERIFY(!scene.automaticFindAndMoveToPos(stage.site, item, 135.0, 0.0));
        QVERIFY(!scene.automaticFindAndMoveToPos(stage.site, item, qQNaN(), 5.0));
        QVERIFY(!scene.collidingWithOtherSdcItems(nullptr, QList<ZelEllipseItem *>()));
        QVERIFY(!scene.findLocBetweenItems(stage.site, item, nullptr));
        scene.moveListSdcMcps({nullptr, stage.mcp}, {qInf(), 0.0});
        QCOMPARE(item->pos(), QPointF(0.0, 0.0));
        // A pointer on the centre itself keeps the direction.
        QVERIFY(scene.moveAroundAttachedItemByPos(stage.site, item, {0.0, 0.0}));
        QCOMPARE(stage.site->pos(), before);
    }
};

ZEL_TEST(tst_SceneMoves)
#include "tst_SceneMoves.moc"
