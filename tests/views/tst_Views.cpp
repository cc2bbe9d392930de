#include "support/ZelTest.h"

#include "zelModelSupport/graphics/ZelGraphicsViewSideWindow.h"
#include "zelModelSupport/graphics/ZelGraphicsViewTrn.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>
#include <memory>

namespace {

void turnWheel(QGraphicsView *view, int delta)
{
    const QPointF at = view->viewport()->rect().center();
    QWheelEvent event(at, view->viewport()->mapToGlobal(at), QPoint(), QPoint(0, delta),
        Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &event);
}

double scaleOf(const QGraphicsView &view)
{
    return view.transform().m11();
}

} // namespace

class tst_Views : public ZelTest
{
    Q_OBJECT
private slots:
    void zoomsByTheWheelWithinItsLimits_data()
    {
        QTest::addColumn<QList<int>>("turns");
        QTest::addColumn<double>("scale");
        QTest::newRow("at first") << QList<int>{} << 2.0;
        QTest::newRow("away from the user: out") << QList<int>{120} << 2.0 * std::pow(2.0, -0.5);
        QTest::newRow("towards the user: in") << QList<int>{-120} << 2.0 * std::pow(2.0, 0.5);
        QTest::newRow("a fine wheel") << QList<int>{-30, -30} << 2.0 * std::pow(2.0, 0.25);
        QTest::newRow("to the smallest") << QList<int>{240, 240} << 0.5;
        QTest::newRow("beyond the smallest is refused, not cut") << QList<int>{240, 360} << 1.0;
        QTest::newRow("beyond the largest") << QList<int>{-720, -120, -120} << 16.0;
        QTest::newRow("back from a refusal") << QList<int>{-720, -120, 240} << 8.0;
    }
    void zoomsByTheWheelWithinItsLimits()
    {
        QFETCH(QList<int>, turns);
        QFETCH(double, scale);
        QGraphicsScene scene(-100.0, -100.0, 200.0, 200.0);
        ZelGraphicsViewZoom view;
        view.setScene(&scene);
        for (const int delta : turns)
            turnWheel(&view, delta);
        QCOMPARE(scaleOf(view), scale);
        QCOMPARE(view.transform().m22(), scale);
    }

    void refusesFactorsThatAreNone()
    {
        ZelGraphicsViewZoom view;
        for (const double factor : {0.0, std::nan(""), HUGE_VAL})
            view.scaleView(factor);
        QCOMPARE(scaleOf(view), 2.0);
    }

    void resetsToItsDefault()
    {
        QGraphicsScene scene(-1000.0, -1000.0, 2000.0, 2000.0);
        ZelGraphicsViewZoom view;
        view.setScene(&scene);
        view.resize(300, 300);
        view.show();
        view.scaleView(3.0);
        view.centerOn(400.0, 300.0);
        view.resetZoom();
        QCOMPARE(scaleOf(view), 2.0);
        const QPointF centre = view.mapToScene(view.viewport()->rect().center());
        QVERIFY2(QLineF(QPointF(), centre).length() < 1.5, "the origin is in the centre");
    }

    void theSideWindowStartsUnscaled()
    {
        ZelGraphicsViewSideWindow view;
        QCOMPARE(scaleOf(view), 1.0);
        view.scaleDefaultFactor();
        QCOMPARE(scaleOf(view), 1.0);
        turnWheel(&view, -240);
        QCOMPARE(scaleOf(view), 2.0);
        view.resetZoom();
        QCOMPARE(scaleOf(view), 1.0);
    }

    void twinsZoomTogetherOnce()
    {
        ZelGraphicsViewTrn left;
        ZelGraphicsViewTrn right;
        left.setTwinView(&right);
        right.setTwinView(&left);
        turnWheel(&left, -120);
        QCOMPARE(scaleOf(left), 2.0 * std::sqrt(2.0));
        QCOMPARE(scaleOf(right), scaleOf(left));
        // Each keeps its own limits.
        right.resetZoom();
        turnWheel(&left, 480);
        QCOMPARE(scaleOf(left), std::sqrt(0.5));
        QCOMPARE(scaleOf(right), 0.5);
        turnWheel(&left, 120);
        QCOMPARE(scaleOf(left), 0.5);
        QCOMPARE(scaleOf(right), 0.5);
    }

    void aTwinMayDieOrBeTheViewItself()
    {
        ZelGraphicsViewTrn view;
        {
            ZelGraphicsViewTrn twin;
            view.setTwinView(&twin);
        }
        view.scaleView(2.0);
        QCOMPARE(scaleOf(view), 4.0);
        view.setTwinView(&view);
        view.scaleView(2.0);
        QCOMPARE(scaleOf(view), 8.0);
    }

    void fitsTheScene_data()
    {
        QTest::addColumn<QRectF>("sceneRect");
        QTest::addColumn<double>("scale");
        QTest::newRow("wide") << QRectF(-200.0, 0.0, 400.0, 100.0) << 0.95 * 300.0 / 400.0;
        QTest::newRow("tall") << QRectF(0.0, 0.0, 100.0, 800.0) << 0.95 * 200.0 / 800.0;
        QTest::newRow("without extent") << QRectF(5.0, 5.0, 0.0, 100.0) << 1.0;
    }
    void fitsTheScene()
    {
        QFETCH(QRectF, sceneRect);
        QFETCH(double, scale);
        QGraphicsScene scene;
        if (!sceneRect.isEmpty()) // the toolkit takes a null rectangle for "as large as the items"
            scene.setSceneRect(sceneRect);
        ZelGraphicsView view;
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.resize(300, 200);
        view.show();
        view.setSceneFitToView(); // without a scene: nothing
        QCOMPARE(scaleOf(view), 1.0);
        view.setScene(&scene);
        view.setSceneFitToView();
        QCOMPARE(scaleOf(view), scale);
        view.setSceneFitToView(); // multiplies what is there
        QCOMPARE(scaleOf(view), scale * scale);
    }

    void paintsItsGrid()
    {
        QGraphicsScene scene(0.0, 0.0, 100.0, 100.0);
        ZelGraphicsView view;
        view.setScene(&scene);
        const auto isEmptyAt = [&view](const QPointF &p) {
            QImage image(20, 20, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            view.render(&painter, image.rect(), QRect(view.mapFromScene(p), QSize(20, 20)));
            painter.end();
            QImage plain(20, 20, QImage::Format_RGB32);
            plain.fill(Qt::white);
            return image == plain;
        };
        view.resize(220, 220);
        view.show();
        QVERIFY(isEmptyAt({10.0, 10.0}));
        view.setGrid(10, 0);
        QVERIFY(!isEmptyAt({10.0, 10.0}));
        view.setGrid(3, 3); // too dense to be seen
        QVERIFY(isEmptyAt({10.0, 10.0}));
        view.setGrid(-5, 0);
        QVERIFY(isEmptyAt({10.0, 10.0}));
    }
};

ZEL_TEST(tst_Views)
#include "tst_Views.moc"
