#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"

#include <functional>

using Change = std::function<void(SceneStage<ZelSceneMol> &)>;
Q_DECLARE_METATYPE(Change)

namespace {

// A chain a - b - c with features, sites and names.
void build(SceneStage<ZelSceneMol> &stage)
{
    QList<SdcMcp *> list;
    for (int i = 0; i < 3; ++i) {
        SdcMcp *const mcp =
            stage.addComponent({80.0 * i - 80.0, 7.0 * i}, QSizeF(60.0 + 5 * i, 60.0));
        mcp->setProperty(SdcProperty::PsiimId, QStringLiteral("mcp%1").arg(i));
        mcp->setProperty(SdcProperty::ShortName, QStringLiteral("c%1").arg(i));
        mcp->setSdcMcpTagSet(new SdcMcpTagSet(nullptr, mcp));
        mcp->addTag("P", "red");
        mcp->addTag("Q", "blue");
        stage.addSite(mcp, 90.0);
        stage.addSite(mcp, 250.0)->setProperty(SdcProperty::ShortName, "s");
        if (i > 0)
            stage.join(list.last(), mcp);
        list.append(mcp);
    }
}

SdcMcp *component(SceneStage<ZelSceneMol> &stage, int index)
{
    return stage.mol().getSdcMcpAtIndex(index);
}

// Things that can be done to a molecule, for rows and for the random history.
QList<QPair<const char *, Change>> changes()
{
    using Stage = SceneStage<ZelSceneMol>;
    return {
        {"whole molecule dragged",
            [](Stage &s) {
                s.scene().moveListSdcMcps(s.mol().getListSdcMcp(), {3.5, -1.25});
            }},
        {"site moved",
            [](Stage &s) {
                SdcMcp *const mcp = component(s, 0);
                s.scene().moveAroundAttachedItemByDegree(
                    mcp->getListSdcBst().first()->getZelEllipseItemBst(),
                    mcp->getZelEllipseItemMcp(), 10.0);
            }},
        {"turned by a quarter",
            [](Stage &s) { zgs::rotate(s.mol().getListSdcMcp(), 90.0, false); }},
        {"mirrored", [](Stage &s) { zgs::flipY(s.mol().getListSdcMcp(), false); }},
        {"feature states",
            [](Stage &s) {
                const auto list = component(s, 0)->getListSticky();
                list.first()->setStateType(ComponentStateOff, false);
                list.last()->setStateType(ComponentStateDontCare, true);
                component(s, 0)->updateStatePropertyFromSticky();
            }},
        {"feature inactive",
            [](Stage &s) { component(s, 0)->getListSticky().first()->setActive(false); }},
        {"feature colour",
            [](Stage &s) { component(s, 0)->getListSticky().last()->setColor(Qt::green, true); }},
        {"feature removed",
            [](Stage &s) {
                component(s, 0)->getZelEllipseItemMcp()->removeStateSticky(
                    component(s, 0)->getListSticky().first());
            }},
        {"feature added", [](Stage &s) { component(s, 0)->addTag("R", "cyan"); }},
        {"binding status",
            [](Stage &s) {
                component(s, 0)->getListSdcBst().last()->setBindingStatus(BindingStatusUnbound);
            }},
        {"negation",
            [](Stage &s) {
                component(s, 0)->setProperty(SdcProperty::Negation, "1");
                component(s, 0)->updateMcpNot();
            }},
        {"colour",
            [](Stage &s) {
                s.mol().setMolColor("#336699");
                s.mol().setProperty(SdcProperty::Color, "#336699");
            }},
        {"renamed",
            [](Stage &s) {
                component(s, 0)->setProperty(SdcProperty::ShortName, "other");
                component(s, 0)->getListSdcMcpTags().first()->setProperty(
                    SdcProperty::ShortName, "renamed");
            }},
        {"limited site",
            [](Stage &s) {
                component(s, 0)->getListSdcBst().first()->getZelEllipseItemBst()->setAsLimited(
                    true);
            }},
        {"first component removed", [](Stage &s) { s.scene().removeSdcMcp(component(s, 0)); }},
        {"first site removed",
            [](Stage &s) { s.scene().removeSdcBst(component(s, 0)->getListSdcBst().first()); }},
        {"site added", [](Stage &s) { s.scene().addSdcBst(component(s, 0)); }},
        {"component added",
            [](Stage &s) {
                QGraphicsEllipseItem reference(0.0, 0.0, 40.0, 30.0);
                SdcMcp *const mcp = s.scene().addSdcMcp(&reference, component(s, 0));
                if (mcp)
                    mcp->addTag("new", QString());
            }},
        {"backbone removed",
            [](Stage &s) { qDeleteAll(component(s, 0)->getZelEllipseItemMcp()->getListMcpMcp()); }},
        {"everything removed", [](Stage &s) { s.scene().removeAllItems(); }},
    };
}

} // namespace

// The state of a scene as a value: taken, changed, put back, taken again.
class tst_SceneState : public ZelTest
{
    Q_OBJECT
private slots:
    void everyChangeIsUndoneAndRedone_data()
    {
        QTest::addColumn<Change>("change");
        for (const auto &[name, change] : changes())
            QTest::newRow(name) << change;
    }

    void everyChangeIsUndoneAndRedone()
    {
        QFETCH(Change, change);
        SceneStage<ZelSceneMol> stage;
        build(stage);
        const ZelSceneState before = ZelSceneState::take(&stage.scene());
        change(stage);
        const ZelSceneState after = ZelSceneState::take(&stage.scene());
        QVERIFY(before != after);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(before.restore(&stage.scene()));
            QVERIFY(ZelSceneState::take(&stage.scene()) == before);
            QCOMPARE(component(stage, 2)->getMcpStateCode(), "P;Q");
            QVERIFY(after.restore(&stage.scene()));
            QVERIFY(ZelSceneState::take(&stage.scene()) == after);
        }
        const int itemCount = static_cast<int>(stage.scene().items().size());
        QVERIFY(before.restore(&stage.scene()));
        QVERIFY(after.restore(&stage.scene()));
        QCOMPARE(static_cast<int>(stage.scene().items().size()), itemCount);
    }

    void survivorsKeepTheirIdentity()
    {
        SceneStage<ZelSceneMol> stage;
        build(stage);
        const ZelSceneState before = ZelSceneState::take(&stage.scene());
        SdcMcp *const first = component(stage, 0);
        SdcMcp *const last = component(stage, 2);
        stage.scene().removeSdcMcp(component(stage, 1));
        QVERIFY(before.restore(&stage.scene()));
        QCOMPARE(component(stage, 0), first);
        QCOMPARE(component(stage, 2), last);
        QCOMPARE(component(stage, 1)->getPsiimId(), "mcp1");
        QCOMPARE(component(stage, 1)->getNumOfNeigbhors(), 2);
        QCOMPARE(component(stage, 1)->getSdcMcpTagSet()->getListSdcMcpTags().size(), 2);
        QCOMPARE(stage.mol().rowCount(), 3);
        QCOMPARE(stage.mol().child(1), component(stage, 1));
    }

    void bondsComeBack()
    {
        SceneStage<OpenScene> stage;
        SdcCpx cpx(nullptr);
        QList<SdcBst *> sites;
        for (int i = 0; i < 2; ++i) {
            auto *mol = new SdcMol(nullptr);
            cpx.addSdcChild(mol, true);
            SdcMcp *const mcp = stage.addComponent({120.0 * i, 0.0}, {60.0, 60.0}, mol);
            sites.append(stage.addSite(mcp, 180.0 * i));
            stage.addSite(mcp, 90.0)->setBindingStatus(BindingStatusUnbound);
        }
        stage.scene().setSdc(&cpx);
        cpx.addSdcBstBstCpx(stage.scene().addSdcBstBstCpx(sites.at(0), sites.at(1)));
        const ZelSceneState before = ZelSceneState::take(&stage.scene());
        stage.scene().removeSdcBst(sites.at(1));
        const ZelSceneState after = ZelSceneState::take(&stage.scene());
        QVERIFY(before.restore(&stage.scene()));
        QVERIFY(ZelSceneState::take(&stage.scene()) == before);
        QCOMPARE(cpx.getListSdcBstBstCpx().size(), 1);
        QVERIFY(cpx.getListSdcBstBstCpx().first()->getZelLineItemBstBst());
        QVERIFY(sites.at(0)->isBound());
        QVERIFY(after.restore(&stage.scene()));
        QVERIFY(ZelSceneState::take(&stage.scene()) == after);
        QVERIFY(cpx.getListSdcBstBstCpx().isEmpty());
    }

    void stickyWithoutFeature()
    {
        SceneStage<ZelSceneMol> stage;
        build(stage);
        const ZelSceneState before = ZelSceneState::take(&stage.scene());
        delete component(stage, 1)->getListSdcMcpTags().first();
        QVERIFY(before.restore(&stage.scene()));
        QVERIFY(ZelSceneState::take(&stage.scene()) == before);
    }

    void moleculeThatIsGone()
    {
        OpenScene scene;
        QVERIFY(ZelSceneState::take(nullptr).isEmpty());
        QVERIFY(!ZelSceneState().restore(nullptr));
        ZelSceneState state;
        {
            SdcMol mol(nullptr);
            scene.setSdc(&mol);
            state = ZelSceneState::take(&scene);
        }
        QVERIFY(!state.isEmpty());
        QVERIFY(!state.restore(&scene));
    }
};

ZEL_TEST(tst_SceneState)
#include "tst_SceneState.moc"
