#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <QSignalSpy>

// What a scene makes and destroys, and what dies while it is in use.
class tst_SceneBuilding : public ZelTest
{
    Q_OBJECT
private slots:
    void itemsLieWhereTheyAreAsked();
    void siteItemBelongsToItsComponent();
    void backboneIsDrawnOncePerPair();
    void firstComponentIsCentred();
    void laterComponentTakesThePlaceOfItsReference();
    void attachedComponentIsJoinedToItsNeighbour();
    void attachedComponentWithoutPlaceIsNotMade();
    void newSitesTakeFreePlaces();
    void defaultPlaces();
    void bondToleratesMissingSites();
    void removedComponentTakesSitesBondsAndLinesAlong();
    void removedSiteTakesItsBondAlong();
    void removedItemEndsTheDrag_data();
    void removedItemEndsTheDrag();
    void removalByAReceiver_data();
    void removalByAReceiver();
    void everythingIsRemoved();
    void changesNest();
    void sceneDiesFirst();
};

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

void tst_SceneBuilding::itemsLieWhereTheyAreAsked()
{
    const QRectF rect(12.5, -7.25, 33.0, 21.0);
    const std::unique_ptr<ZelEllipseItemMcp> item(ZelScene::createMcp(rect));
    QVERIFY(!item->scene());
    QCOMPARE(item->mapRectToScene(item->rect()), rect);
    QCOMPARE(item->rect().center(), QPointF());
    const QRectF siteRect(12.0, 3.0, 9.0, 9.0);
    ZelEllipseItemBst *const site = ZelScene::createBst(siteRect, item.get());
    QCOMPARE(site->mapRectToScene(site->rect()), siteRect);
    QCOMPARE(site->rect().center(), QPointF());
}

void tst_SceneBuilding::siteItemBelongsToItsComponent()
{
    ZelScene scene;
    ZelEllipseItemMcp *const item = scene.addMcp(QRectF(0.0, 0.0, 60.0, 60.0));
    ZelEllipseItemBst *const site = scene.addBst(QRectF(54.0, 24.0, 12.0, 12.0), item);
    QCOMPARE(site->parentItem(), item);
    QCOMPARE(site->scene(), &scene);
    ZelEllipseItemBst *const loose = scene.addBst(QRectF(200.0, 0.0, 12.0, 12.0), nullptr);
    QCOMPARE(loose->scene(), &scene);
    QVERIFY(!scene.getCenterZelEllipseMcp(loose));
}

void tst_SceneBuilding::backboneIsDrawnOncePerPair()
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

void tst_SceneBuilding::firstComponentIsCentred()
{
    ZelScene scene;
    SdcMol mol(nullptr);
    scene.setSdc(&mol);
    SdcMcp *const mcp =
        scene.addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 30.0), {400.0, 300.0}), nullptr);
    QCOMPARE(takeDebugLines(), QStringList{placingWarning});
    QVERIFY(mcp);
    QCOMPARE(mcp->getParentSdcMol(), &mol);
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    QCOMPARE(item->mapRectToScene(item->rect()), QRectF(-25.0, -15.0, 50.0, 30.0));
    QCOMPARE(item->brush().color(), QColor(Qt::yellow));
}

void tst_SceneBuilding::laterComponentTakesThePlaceOfItsReference()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    const QRectF rect(0.0, 0.0, 50.0, 50.0);
    ZelEllipseItemMcp *item = stage.scene().addMcp(makeReference(rect, {100.0, 100.0}), nullptr);
    QCOMPARE(item->pos(), QPointF(125.0, 125.0));
    // Where something is already, it goes beside everything.
    item = stage.scene().addMcp(makeReference(rect, {-20.0, -20.0}), nullptr);
    QVERIFY(!stage.scene().collidingWithOtherSdcItems(item, QList<ZelEllipseItem *>()));
    QCOMPARE(item->pos().x(), 150.0 + 10.0 + 25.0);
    QCOMPARE(takeDebugLines(), (QStringList{placingWarning, placingWarning}));
    QVERIFY(!stage.scene().addMcp(nullptr, nullptr));
    QCOMPARE(takeDebugLines().size(), 1);
}

void tst_SceneBuilding::attachedComponentIsJoinedToItsNeighbour()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const first = stage.addComponent({0.0, 0.0});
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QSignalSpy ended(&stage.scene(), &ZelScene::signal_changeEnd);
    for (int i = 0; i < 3; ++i) {
        SdcMcp *const mcp =
            stage.scene().addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 30.0)), first);
        QVERIFY(mcp);
        QCOMPARE(mcp->getPosIndex(), i + 1);
        QCOMPARE(mcp->getListNeighborSdcMcps(), QList<SdcMcp *>{first});
        QVERIFY(!stage.scene().collidingWithOtherSdcItems(
            mcp->getZelEllipseItemMcp(), QList<ZelEllipseItem *>()));
    }
    QCOMPARE(begun.size(), 3);
    QCOMPARE(ended.size(), 3);
}

void tst_SceneBuilding::attachedComponentWithoutPlaceIsNotMade()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const first = stage.addComponent({0.0, 0.0});
    for (int i = 0; i < 8; ++i)
        stage.addComponent(QLineF::fromPolar(75.0, 45.0 * i).p2(), {50.0, 50.0});
    const qsizetype before = stage.scene().items().size();
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QVERIFY(!stage.scene().addSdcMcp(makeReference(QRectF(0.0, 0.0, 50.0, 50.0)), first));
    QCOMPARE(stage.scene().items().size(), before);
    QCOMPARE(stage.mol().getListSdcMcp().size(), 9);
    QCOMPARE(begun.size(), 0);
}

void tst_SceneBuilding::newSitesTakeFreePlaces()
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

void tst_SceneBuilding::defaultPlaces()
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

void tst_SceneBuilding::bondToleratesMissingSites()
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

void tst_SceneBuilding::removedComponentTakesSitesBondsAndLinesAlong()
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

void tst_SceneBuilding::removedSiteTakesItsBondAlong()
{
    SceneStage<OpenScene> stage;
    SdcCpx cpx(nullptr);
    auto *molA = new SdcMol(nullptr);
    auto *molB = new SdcMol(nullptr);
    cpx.addSdcChild(molA, true);
    cpx.addSdcChild(molB, true);
    SdcMcp *const a = stage.addComponent({0.0, 0.0}, {60.0, 60.0}, molA);
    SdcMcp *const b = stage.addComponent({150.0, 0.0}, {60.0, 60.0}, molB);
    SdcBst *const first = stage.addSite(a, 0.0);
    SdcBst *const partner = stage.addSite(b, 180.0);
    SdcBst *const later = stage.addSite(a, 90.0);
    cpx.addSdcBstBstCpx(stage.scene().addSdcBstBstCpx(first, partner));
    QVERIFY(partner->isBound());
    stage.scene().removeSdcBst(first);
    QVERIFY(cpx.getListSdcBstBstCpx().isEmpty());
    QVERIFY(!partner->isBound());
    QCOMPARE(later->getBstLabelText(), QStringLiteral("1"));
    QCOMPARE(a->getListSdcBst(), QList<SdcBst *>{later});
}

void tst_SceneBuilding::removedItemEndsTheDrag_data()
{
    QTest::addColumn<bool>("bySdc");
    QTest::addColumn<bool>("site");
    QTest::newRow("component, by the scene") << true << false;
    QTest::newRow("site, by the scene") << true << true;
    QTest::newRow("component item, plainly deleted") << false << false;
    QTest::newRow("site item, plainly deleted") << false << true;
}

void tst_SceneBuilding::removedItemEndsTheDrag()
{
    QFETCH(bool, bySdc);
    QFETCH(bool, site);
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = site;
    stage.scene().moves = !site;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    SdcBst *const bst = stage.addSite(mcp, 0.0);
    QSignalSpy ended(&stage.scene(), &ZelScene::signal_changeEnd);
    const QPointF from = site ? QPointF(30.0, 0.0) : QPointF(0.0, 0.0);
    stage.press(from);
    stage.move(from + QPointF(0.0, 5.0));
    if (bySdc && site)
        stage.scene().removeSdcBst(bst);
    else if (bySdc)
        stage.scene().removeSdcMcp(mcp);
    else if (site)
        delete bst->getZelEllipseItemBst();
    else
        delete mcp->getZelEllipseItemMcp();
    stage.move(from + QPointF(0.0, 15.0));
    stage.move(from + QPointF(0.0, 25.0));
    stage.release(from + QPointF(0.0, 25.0));
    QVERIFY(ended.size() >= 1);
    stage.click(from);
}

void tst_SceneBuilding::removalByAReceiver_data()
{
    QTest::addColumn<QString>("at");
    for (const char *at : {"press", "move", "click", "double click", "position"})
        QTest::newRow(at) << QString::fromLatin1(at);
}

void tst_SceneBuilding::removalByAReceiver()
{
    QFETCH(QString, at);
    SceneStage<OpenScene> stage;
    stage.scene().changesLayout = true;
    const QPointer<SdcMcp> mcp = stage.addComponent({0.0, 0.0});
    SdcBst *const bst = stage.addSite(mcp, 0.0);
    ZelScene &scene = stage.scene();
    const auto remove = [&] { scene.removeSdcMcp(mcp); };
    if (at == QLatin1String("press"))
        connect(&scene, &ZelScene::zelGItemPressed, this, remove);
    else if (at == QLatin1String("move"))
        connect(&scene, &ZelScene::signal_ZelGItemMoved, this, remove);
    else if (at == QLatin1String("click"))
        connect(&scene, &ZelScene::zelGItemClicked, this, remove);
    else if (at == QLatin1String("double click"))
        connect(&scene, &ZelScene::zelGItemDoubleClicked, this, remove);
    else
        connect(&scene, &ZelScene::signal_changed, this, remove);
    QSignalSpy nothing(&scene, &ZelScene::noGItemClicked);
    Q_UNUSED(bst)
    stage.drag({30.0, 0.0}, {20.0, 25.0});
    if (mcp)
        stage.click({0.0, 0.0});
    if (mcp)
        stage.doubleClick({0.0, 0.0});
    QVERIFY(!mcp);
    QVERIFY(stage.scene().items().isEmpty());
}

void tst_SceneBuilding::everythingIsRemoved()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const a = stage.addComponent({0.0, 0.0});
    SdcMcp *const b = stage.addComponent({150.0, 0.0});
    a->addTag(QStringLiteral("P"), QString());
    const QPointer<SdcBstBstCpx> bond =
        stage.scene().addSdcBstBstCpx(stage.addSite(a, 0.0), stage.addSite(b, 180.0));
    const QPointer<SdcBstBstCpx> empty = stage.scene().addSdcBstBstCpx(nullptr, nullptr);
    stage.scene().addMcp(QRectF(100.0, 100.0, 20.0, 20.0));
    stage.press({0.0, 0.0});
    stage.scene().removeAllItems();
    stage.release({0.0, 0.0});
    QVERIFY(!bond && !empty);
    QVERIFY(stage.scene().items().isEmpty());
    QVERIFY(stage.mol().getListSdcMcp().isEmpty());
    QCOMPARE(stage.scene().getSdc(), &stage.mol());
}

void tst_SceneBuilding::changesNest()
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

void tst_SceneBuilding::sceneDiesFirst()
{
    SdcMol mol(nullptr);
    SdcMol mol2(nullptr);
    auto scene = std::make_unique<ZelScene>();
    const auto add = [&](SdcMol *to, double x) {
        auto *mcp = new SdcMcp(nullptr);
        scene->addMcp(QRectF(x, 0.0, 60.0, 60.0))->setSdcMcp(mcp);
        to->addSdcMcp(mcp);
        return scene->addSdcBst(mcp);
    };
    SdcBst *const a = add(&mol, 0.0);
    SdcBst *const b = add(&mol2, 100.0);
    scene->addSdcBstBstCpx(a, b);
    scene.reset();
    QVERIFY(!a->getZelEllipseItemBst() && !a->getParentMcp()->getZelEllipseItemMcp());
    QVERIFY(a->getListSdcBstBst().isEmpty());
}

ZEL_TEST(tst_SceneBuilding)
#include "tst_SceneBuilding.moc"
