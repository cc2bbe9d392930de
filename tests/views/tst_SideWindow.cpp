#include "ReactionStage.h"

#include "support/ZelHands.h"
#include "support/ZelTest.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"

#include <QLineF>

namespace {

bool isCentred(const ZelSceneSideWindow &scene)
{
    return QLineF(scene.getSceneRectForAllItems().center(), QPointF()).length() < 7.0;
}

/// Numbers of components, sites and bonds that are drawn.
QList<int> counts(const QGraphicsScene &scene)
{
    QList<int> list{0, 0, 0};
    for (QGraphicsItem *item : scene.items()) {
        list[0] += ZelGItem::toZelEllipseItemMcp(item) ? 1 : 0;
        list[1] += ZelGItem::toZelEllipseItemBst(item) ? 1 : 0;
        list[2] += dynamic_cast<ZelLineItemBstBst *>(item) && item->isVisible() ? 1 : 0;
    }
    return list;
}

} // namespace

class tst_SideWindow : public ZelTest
{
    Q_OBJECT
private slots:
    void showsStoredObjectsCentred()
    {
        ReactionStage stage;
        ZelSceneSideWindow scene;
        QCOMPARE(scene.sceneRect(), QRectF(-100.0, -100.0, 200.0, 200.0));
        QVERIFY(scene.loadMol(stage.molR, &stage.db));
        QCOMPARE(counts(scene), (QList<int>{2, 2, 0}));
        QVERIFY(isCentred(scene));

        // Each load takes the place of the one before.
        QVERIFY(scene.loadCpx(stage.cpxLR, &stage.db));
        QCOMPARE(counts(scene), (QList<int>{3, 3, 1}));
        QVERIFY(isCentred(scene));
        QVERIFY(scene.loadCpa(stage.cpaLR, &stage.db));
        QCOMPARE(counts(scene), (QList<int>{3, 3, 1}));
        QVERIFY(isCentred(scene));
        QCOMPARE(scene.sceneRect(), QRectF(-100.0, -100.0, 200.0, 200.0));
    }

    void showsBindingStatusesWhereAllowed()
    {
        ReactionStage stage;
        ZelSceneSideWindow scene;
        QVERIFY(scene.loadCpa(stage.cpaLR, &stage.db));
        const qsizetype plain = scene.items().size();
        scene.setAllowToDisplayBindingStatus(true);
        QVERIFY(scene.loadCpa(stage.cpaLR, &stage.db));
        QVERIFY2(scene.items().size() > plain, "marks on the sites");
    }

    void drawsWithoutAUsableLayout_data()
    {
        rows<QString, QString>({"layout", "message"},
            {{"none", {QString(), "has no place in the layout"}},
                {"no XML", {"<schema><mol", "not readable"}},
                {"another element", {"<schema><cel/></schema>", "has no place"}},
                {"no rectangle", {"<schema><mol/></schema>", "has no place"}}});
    }
    void drawsWithoutAUsableLayout()
    {
        QFETCH(QString, layout);
        QFETCH(QString, message);
        ReactionStage stage;
        QVERIFY(stage.execute({QStringLiteral("UPDATE mol SET graphicsInfo = '%1'").arg(layout)}));
        ZelSceneSideWindow scene;
        QVERIFY(scene.loadMol(stage.molR, &stage.db));
        QCOMPARE(counts(scene), (QList<int>{2, 2, 0}));
        QVERIFY(isCentred(scene));
        QVERIFY(!takeDebugLines().filter(message).isEmpty());
    }

    void reportsWhatIsMissing()
    {
        ReactionStage stage;
        ZelSceneSideWindow scene;
        QVERIFY(scene.loadMol(stage.molL, &stage.db));
        const QString unknown = QStringLiteral("none9");
        QVERIFY(!scene.loadMol(unknown, &stage.db));
        QVERIFY(!takeDebugLines().filter(unknown).isEmpty());
        QVERIFY2(scene.items().isEmpty(), "nothing of the load before is left");
        QVERIFY(!scene.loadCpx(unknown, &stage.db));
        QVERIFY(!takeDebugLines().filter(unknown).isEmpty());
        QVERIFY(!scene.loadCpa(unknown, &stage.db));
        QCOMPARE(takeDebugLines(),
            QStringList{"Error found at bool ZelSceneSideWindow::loadCpa(const QString & psiimId, "
                        "ZelDbSqliteModel * db) \"none9\" no such alias"});
        QVERIFY(!scene.loadMol(stage.molL, nullptr));
        QVERIFY(!scene.loadCpx(stage.cpxLR, nullptr));
        QVERIFY(!scene.loadCpa(stage.cpaL, nullptr));
        QCOMPARE(takeDebugLines().filter("no database").size(), 3);
    }

    void showsWhatIsLeftOfADamagedComplex()
    {
        ReactionStage stage;
        QVERIFY(stage.execute(
            {QStringLiteral("DELETE FROM mol WHERE psiimId = '%1'").arg(stage.molL)}));
        ZelSceneSideWindow scene;
        QVERIFY(scene.loadCpx(stage.cpxLR, &stage.db));
        QCOMPARE(counts(scene), (QList<int>{2, 2, 0}));
        QVERIFY(!takeDebugLines().filter("no such molecule").isEmpty());
    }

    /// The components are gone, their drawings are still pressed and dragged by users.
    void survivesTheMouseAndAnotherLoad()
    {
        ReactionStage stage;
        ZelSceneSideWindow scene;
        ZelHands user(&scene);
        QVERIFY(scene.loadCpx(stage.cpxLR, &stage.db));
        QPointF at;
        for (QGraphicsItem *item : scene.items()) {
            if (ZelGItem::toZelEllipseItemMcp(item))
                at = item->scenePos();
        }
        user.press(at);
        user.move(at + QPointF(9, 9));
        QVERIFY(scene.loadMol(stage.molL, &stage.db));
        user.move(at + QPointF(9, 9));
        user.release(at);
        QCOMPARE(counts(scene), (QList<int>{1, 1, 0}));
        QVERIFY2(isCentred(scene), "the drag of the drawing before does not move this one");
    }
};

ZEL_TEST(tst_SideWindow)
#include "tst_SideWindow.moc"
