#include "ReactionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"

#include <QApplication>
#include <QGraphicsView>
#include <QLineF>
#include <QMouseEvent>

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

QList<int> stickyStates(const QGraphicsScene &scene)
{
    QList<int> states;
    for (QGraphicsItem *item : scene.items()) {
        if (ZelRectItemMcpSticky *sticky = ZelGItem::toZelRectItemMcpSticky(item))
            states.append(sticky->getStateType());
    }
    return states;
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

    void showsTheStatesOfAnAlias()
    {
        ReactionStage stage;
        ZelSceneSideWindow scene;
        QVERIFY(scene.loadCpa(stage.cpaR, &stage.db));
        QCOMPARE(stickyStates(scene), QList<int>{ComponentStateOn});
        QVERIFY(scene.loadCpa(stage.cpaRp, &stage.db));
        QCOMPARE(stickyStates(scene), QList<int>{ComponentStateOff});
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
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("message");
        QTest::newRow("none") << QString() << QStringLiteral("has no place in the layout");
        QTest::newRow("no XML") << QStringLiteral("<schema><mol") << QStringLiteral("not readable");
        QTest::newRow("another element")
            << QStringLiteral("<schema><cel/></schema>") << QStringLiteral("has no place");
        QTest::newRow("no rectangle")
            << QStringLiteral("<schema><mol/></schema>") << QStringLiteral("has no place");
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
            QStringList{QStringLiteral(
                "Error found at bool ZelSceneSideWindow::loadCpa(const QString & psiimId, "
                "ZelDbSqliteModel * db) \"none9\" no such alias")});
        QVERIFY(!scene.loadMol(stage.molL, nullptr));
        QVERIFY(!scene.loadCpx(stage.cpxLR, nullptr));
        QVERIFY(!scene.loadCpa(stage.cpaL, nullptr));
        QCOMPARE(takeDebugLines().filter(QStringLiteral("no database")).size(), 3);
    }

    void showsWhatIsLeftOfADamagedComplex()
    {
        ReactionStage stage;
        QVERIFY(stage.execute(
            {QStringLiteral("DELETE FROM mol WHERE psiimId = '%1'").arg(stage.molL)}));
        ZelSceneSideWindow scene;
        QVERIFY(scene.loadCpx(stage.cpxLR, &stage.db));
        QCOMPARE(counts(scene), (QList<int>{2, 2, 0}));
        QVERIFY(!takeDebugLines().filter(QStringLiteral("no such molecule")).isEmpty());
    }

    /// The components are gone, their drawings are still pressed and dragged by users.
    void survivesTheMouseAndAnotherLoad()
    {
        ReactionStage stage;
        ZelSceneSideWindow scene;
        QGraphicsView view(&scene);
        view.resize(400, 400);
        view.show();
        QVERIFY(scene.loadCpx(stage.cpxLR, &stage.db));
        QPoint at;
        for (QGraphicsItem *item : scene.items()) {
            if (ZelGItem::toZelEllipseItemMcp(item))
                at = view.mapFromScene(item->scenePos());
        }
        const QPointF global = view.viewport()->mapToGlobal(QPointF(at));
        QMouseEvent press(
            QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &press);
        QMouseEvent move(QEvent::MouseMove, at + QPointF(9, 9), global + QPointF(9, 9),
            Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &move);
        QVERIFY(scene.loadMol(stage.molL, &stage.db));
        QApplication::sendEvent(view.viewport(), &move);
        QMouseEvent release(
            QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &release);
        QCOMPARE(counts(scene), (QList<int>{1, 1, 0}));
        QVERIFY2(isCentred(scene), "the drag of the drawing before does not move this one");
    }
};

ZEL_TEST(tst_SideWindow)
#include "tst_SideWindow.moc"
