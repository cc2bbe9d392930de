#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"

#include <QMenu>

// The scene of one molecule: what a drag moves there, limited edit, its menu.
class tst_SceneMol : public ZelTest
{
    Q_OBJECT
private slots:
    void dragOfComponent_data()
    {
        rows<int, int, bool>({"components", "dragged", "whole"},
            {{"alone", {1, 0, true}}, {"end of two", {2, 1, false}},
                {"middle of three", {3, 1, true}}, {"first of three", {3, 0, false}}});
    }

    void dragOfComponent()
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
            QCOMPARE(items.at(i)->pos() != before.at(i), whole || i == dragged);
            if (whole)
                QCOMPARE(items.at(i)->pos(), before.at(i) + delta);
        }
    }

    void nothingThatIsNotMeantMoves()
    {
        SceneStage<ZelSceneMol> stage;
        SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
        stage.drag({0.0, 0.0}, {10.0, 0.0}); // leaves the flag of a whole move behind
        stage.drag({150.0, 50.0}, {100.0, 0.0});
        QCOMPARE(mcp->getZelEllipseItemMcp()->pos(), QPointF(10.0, 0.0));
        ZelEllipseItemMcp *const ghost = stage.scene().addMcp(QRectF(170.0, -30.0, 60.0, 60.0));
        stage.drag({200.0, 0.0}, {240.0, 0.0});
        QCOMPARE(ghost->pos(), QPointF(200.0, 0.0));
        QVERIFY(!stage.scene().toMove());
    }

    void limitedEdit_data()
    {
        rows<bool, bool, bool>({"hasLimitedSite", "dragsIt", "moves"},
            {{"no site may move", {false, true, false}}, {"the one that may", {true, true, true}},
                {"another", {true, false, false}}});
    }

    void limitedEdit()
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
        other->setPos(limited->pos());
        QVERIFY(stage.scene().collidingWithOtherSdcItems(other, QList<ZelEllipseItem *>()));
        QVERIFY(stage.scene().allowToChangeRelativePos());
        delete limited;
        QVERIFY(!stage.scene().allowToChangeRelativePos());
    }

    void menuHoldsTheColourOnly()
    {
        SceneStage<ZelSceneMol> stage;
        SdcBst *const bst = stage.addSite(stage.addComponent({0.0, 0.0}), 0.0);
        QStringList texts;
        const auto read = [&](QMenu *menu) {
            for (QAction *action : menu->actions())
                texts << action->text();
        };
        QVERIFY(stage.menuAt({0.0, 10.0}, read));
        QVERIFY(stage.menuAt(centreOf(bst->getZelEllipseItemBst()), read));
        QCOMPARE(texts, QStringList(2, QStringLiteral("Change Molecule Color")));
        QVERIFY(!stage.menuAt({150.0, 50.0}, read));
        stage.scene().setReadOnly(true);
        QVERIFY(!stage.menuAt({0.0, 0.0}, read));
        stage.scene().setReadOnly(false);
        stage.log();
        stage.doubleClick({0.0, 0.0});
        QVERIFY(!stage.log().contains("double"));
    }
};

ZEL_TEST(tst_SceneMol)
#include "tst_SceneMol.moc"
