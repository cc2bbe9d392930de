#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <QSignalSpy>

#include <memory>

namespace {

const QString placingWarning = QStringLiteral(
    "Warning at SdcMcp * ZelScene::addSdcMcp(QGraphicsEllipseItem * referenceItem, SdcMcp * "
    "sdcMcpToAttach)");

QGraphicsEllipseItem *makeReference(const QRectF &rect, const QPointF &pos = {})
{
    static QGraphicsEllipseItem reference;
    reference.setRect(rect);
    reference.setPos(pos);
    reference.setBrush(Qt::yellow);
    return &reference;
}

} // namespace

// What a scene makes and destroys, and what dies while it is in use.
class tst_SceneBuilding : public ZelTest
{
    Q_OBJECT
private slots:
    void backboneIsDrawnOncePerPair()
    {
        ZelScene scene;
        ZelEllipseItemMcp *const a = scene.addMcp(QRectF(0.0, 0.0, 60.0, 60.0));
        ZelEllipseItemMcp *const b = scene.addMcp(QRectF(80.0, 0.0, 60.0, 60.0));
        ZelLineItemMcpMcp *const line = scene.drawBackBones(a, b);
        QVERIFY(line && line->scene() == &scene);
        QCOMPARE(scene.drawBackBones(b, a), line);
        QCOMPARE(a->getListMcpMcp().size(), 1);
        QVERIFY(!scene.drawBackBones(a, a));
        QVERIFY(!scene.drawBackBones(a, nullptr));
        QCOMPARE(line->mapToScene(line->line().p1()).y(), 30.0);
    }

    void firstComponentIsCentred()
    {
        ZelScene scene;
        SdcMol mol(nullptr);
        scene.setSdc(&mol);
        SdcMcp *const mcp =
            scene.addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 30.0), {400.0, 300.0}), nullptr);
        QVERIFY2(takeDebugLines().isEmpty(), "what begins a molecule has nothing to join");
        QVERIFY(mcp);
        QCOMPARE(mcp->getParentSdcMol(), &mol);
        ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
        QCOMPARE(item->mapRectToScene(item->rect()), QRectF(-25.0, -15.0, 50.0, 30.0));
        QCOMPARE(item->brush().color(), QColor(Qt::yellow));
        QVERIFY(scene.addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 30.0)), nullptr));
        QCOMPARE(takeDebugLines(), QStringList{placingWarning});
    }

    void laterComponentTakesThePlaceOfItsReference()
    {
        SceneStage<OpenScene> stage;
        stage.addComponent({0.0, 0.0});
        const QRectF rect(0.0, 0.0, 50.0, 50.0);
        ZelEllipseItemMcp *item =
            stage.scene().addMcp(makeReference(rect, {100.0, 100.0}), nullptr);
        QCOMPARE(item->pos(), QPointF(125.0, 125.0));
        // Where something is already, it goes beside everything.
        item = stage.scene().addMcp(makeReference(rect, {-20.0, -20.0}), nullptr);
        QVERIFY(!stage.scene().collidingWithOtherSdcItems(item, QList<ZelEllipseItem *>()));
        QCOMPARE(item->pos().x(), 150.0 + 10.0 + 25.0);
        QCOMPARE(takeDebugLines(), (QStringList{placingWarning, placingWarning}));
        QVERIFY(!stage.scene().addMcp(nullptr, nullptr));
        QCOMPARE(takeDebugLines().size(), 1);
    }

    void attachedComponentIsJoinedToItsNeighbour()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const first = stage.addComponent({0.0, 0.0});
        for (int i = 0; i < 3; ++i) {
            SdcMcp *const mcp =
                stage.scene().addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 30.0)), first);
            QVERIFY(mcp);
            QCOMPARE(mcp->getPosIndex(), i + 1);
            QCOMPARE(mcp->getListNeighborSdcMcps(), QList<SdcMcp *>{first});
            QVERIFY(!stage.scene().collidingWithOtherSdcItems(
                mcp->getZelEllipseItemMcp(), QList<ZelEllipseItem *>()));
        }
        QCOMPARE(stage.log(), "begin, end, begin, end, begin, end");
    }

    void attachedComponentWithoutPlaceIsNotMade()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const first = stage.addComponent({0.0, 0.0});
        for (int i = 0; i < 8; ++i)
            stage.addComponent(QLineF::fromPolar(75.0, 45.0 * i).p2(), {50.0, 50.0});
        const qsizetype before = stage.scene().items().size();
        QVERIFY(!stage.scene().addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 50.0)), first));
        QCOMPARE(stage.scene().items().size(), before);
        QCOMPARE(stage.mol().getListSdcMcp().size(), 9);
        QCOMPARE(stage.log(), "");
    }

    void newSitesTakeFreePlaces()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
        int made = 0;
        while (SdcBst *bst = stage.scene().addSdcBst(mcp)) {
            QVERIFY(!stage.scene().collidingWithOtherSdcItems(
                bst->getZelEllipseItemBst(), QList<ZelEllipseItem *>()));
            QCOMPARE(bst->getBstLabelText(), QString::number(++made));
            QVERIFY(made < 20);
        }
        QVERIFY2(made >= 10, qPrintable(QString::number(made)));
        QVERIFY(!stage.scene().addSdcBst(nullptr));
    }

    void defaultPlaces()
    {
        ZelScene scene;
        scene.setSceneRect(0.0, 0.0, 200.0, 100.0);
        QVERIFY(scene.getSceneRectForAllItems().isNull());
        QCOMPARE(scene.getCenterPos(), QPointF(100.0, 50.0));
        QCOMPARE(scene.getNewMcpDefaultScenePos(10.0), QPointF(100.0, 50.0));
        ZelEllipseItemMcp *const item = scene.addMcp(QRectF(0.0, 0.0, 60.0, 60.0));
        scene.addBst(QRectF(56.0, 24.0, 12.0, 12.0), item);
        QCOMPARE(scene.getSceneRectForAllItems(), QRectF(0.0, 0.0, 68.0, 60.0));
        QCOMPARE(scene.getCenterPos(), QPointF(34.0, 30.0));
        QCOMPARE(scene.getNewMcpDefaultScenePos(10.0), QPointF(78.0, 30.0));
    }

    void bondToleratesMissingSites()
    {
        SceneStage<OpenScene> stage;
        SdcBst *const a = stage.addSite(stage.addComponent({0.0, 0.0}), 0.0);
        SdcBst *const b = stage.addSite(stage.addComponent({150.0, 0.0}), 180.0);
        SdcBst undrawn(nullptr);
        for (const auto &[first, second] : QList<QPair<SdcBst *, SdcBst *>>{
                 {nullptr, nullptr}, {a, nullptr}, {nullptr, a}, {a, &undrawn}}) {
            const std::unique_ptr<SdcBstBstCpx> bond(stage.scene().addSdcBstBstCpx(first, second));
            QVERIFY(bond);
            QVERIFY(!bond->getZelLineItemBstBst());
        }
        SdcBstBstCpx *const bond = stage.scene().addSdcBstBstCpx(a, b);
        QCOMPARE(bond->QObject::parent(), &stage.scene());
        ZelLineItemBstBst *const line = bond->getZelLineItemBstBst();
        QVERIFY(line && line->scene() == &stage.scene());
        const double before = line->line().length();
        QVERIFY(before > 60.0);
        stage.scene().moveListSdcMcps({b->getParentMcp()}, {-30.0, 0.0}); // the bond follows
        QVERIFY(line->line().length() < before - 25.0);
    }

    void oneCallEach()
    {
        ZelScene scene;
        SdcCpx cpx(nullptr);
        auto *const mol = new SdcMol(nullptr);
        cpx.addSdcChild(mol, true);
        mol->setProperty(SdcProperty::Color, "#336699");
        QSignalSpy begun(&scene, &ZelScene::signal_changeBegin);
        QSignalSpy added(&cpx, &Sdc::childSdcAdded);
        const QRectF rect(10.0, 20.0, 60.0, 40.0);
        SdcMcp *const mcp = scene.addSdcMcp(mol, rect);
        QCOMPARE(mol->getListSdcMcp(), QList<SdcMcp *>{mcp});
        QCOMPARE(mcp->getZelEllipseItemMcp()->scene(), &scene);
        QCOMPARE(mcp->getSdcSceneRectF(), rect);
        SdcBst *const bst = scene.addSdcBst(mcp, QRectF(64.0, 34.0, 12.0, 12.0));
        QCOMPARE(mcp->getListSdcBst(), QList<SdcBst *>{bst});
        QCOMPARE(bst->getSdcSceneRectF(), QRectF(64.0, 34.0, 12.0, 12.0));
        QCOMPARE(bst->getZelEllipseItemBst()->brush(), QBrush(QColor("#336699")));
        QCOMPARE(begun.size(), 2);
        QCOMPARE(added.size(), 2);
        SdcBst *const partner =
            scene.addSdcBst(scene.addSdcMcp(mol, rect.translated(100.0, 0.0)), rect);
        SdcBstBstCpx *const bond = scene.addSdcBstBstCpx(&cpx, bst, partner);
        QCOMPARE(cpx.getListSdcBstBstCpx(), QList<SdcBstBstCpx *>{bond});
        QVERIFY(bond->getZelLineItemBstBst());
        QCOMPARE(begun.size(), 4); // a bond that is made by code is no change
        SdcMcp undrawn(nullptr);
        QVERIFY(!scene.addSdcMcp(nullptr, rect) && !scene.addSdcBst(nullptr, rect)
            && !scene.addSdcBst(&undrawn, rect) && !scene.addSdcBstBstCpx(nullptr, bst, partner)
            && !scene.addSdcBstBstCpx(&cpx, bst, nullptr) && !scene.makeBond(bst, nullptr));
        QCOMPARE(begun.size(), 4);
    }

    void removedComponentTakesSitesBondsAndLinesAlong()
    {
        SceneStage<OpenScene> stage;
        SdcMcp *const a = stage.addComponent({0.0, 0.0});
        SdcMcp *const b = stage.addComponent({150.0, 0.0});
        stage.join(a, b);
        SdcBst *const site = stage.addSite(a, 0.0);
        SdcBst *const partner = stage.addSite(b, 180.0);
        const QPointer<SdcBstBstCpx> bond = stage.scene().addSdcBstBstCpx(site, partner);
        const QPointer<SdcMcp> component = a;
        const QPointer<ZelEllipseItemMcp> item = a->getZelEllipseItemMcp();
        const QPointer<ZelEllipseItemBst> siteItem = site->getZelEllipseItemBst();
        QSignalSpy removed(&stage.mol(), &Sdc::sdcMcpRemoved);
        stage.scene().removeSdcMcp(a);
        QVERIFY(!component && !item && !siteItem && !bond);
        QCOMPARE(removed.size(), 1);
        QVERIFY(partner->getListSdcBstBst().isEmpty());
        QVERIFY(b->getListNeighborSdcMcps().isEmpty());
        QCOMPARE(b->getPosIndex(), 0);
        QCOMPARE(partner->getBstLabelText(), QStringLiteral("1"));
        for (QGraphicsItem *rest : stage.scene().items())
            QVERIFY(!ZelGItem::toZelLineItem(rest));
        stage.scene().removeSdcMcp(nullptr);
    }

    void changesNest()
    {
        ZelScene scene;
        QSignalSpy begun(&scene, &ZelScene::signal_changeBegin);
        QSignalSpy ended(&scene, &ZelScene::signal_changeEnd);
        {
            const ZelScene::Change outer(&scene);
            const ZelScene::Change inner(&scene);
            scene.removeAllItems();
            QCOMPARE(begun.size(), 1);
        }
        QCOMPARE(begun.size(), 1);
        QCOMPARE(ended.size(), 1);
        scene.endChange(); // one too many
        QCOMPARE(ended.size(), 1);
    }
};

ZEL_TEST(tst_SceneBuilding)
#include "tst_SceneBuilding.moc"
