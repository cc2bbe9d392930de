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
        rows<QList<int>, double>({"turns", "scale"},
            {{"at first", {QList<int>{}, 2.0}},
                {"away from the user: out", {{120}, 2.0 * std::pow(2.0, -0.5)}},
                {"towards the user: in", {{-120}, 2.0 * std::pow(2.0, 0.5)}},
                {"a fine wheel", {{-30, -30}, 2.0 * std::pow(2.0, 0.25)}},
                {"to the smallest", {{240, 240}, 0.5}},
                {"beyond the smallest is refused, not cut", {{240, 360}, 1.0}},
                {"beyond the largest", {{-720, -120, -120}, 16.0}},
                {"back from a refusal", {{-720, -120, 240}, 8.0}}});
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

    void showsAllOfADrawing_data()
    {
        rows<QRectF, double>({"drawing", "scale"},
            {{"small", {QRectF(20.0, 10.0, 50.0, 50.0), 2.0}},
                {"large", {QRectF(-300.0, -300.0, 1200.0, 300.0), 0.25}},
                {"without extent", {QRectF(), 2.0}}});
    }
    void showsAllOfADrawing()
    {
        QFETCH(QRectF, drawing);
        QFETCH(double, scale);
        QGraphicsScene scene(-1000.0, -1000.0, 2000.0, 2000.0);
        ZelGraphicsViewZoom view;
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setScene(&scene);
        view.resize(300, 200);
        view.show();
        view.showAll(drawing);
        QCOMPARE(scaleOf(view), scale);
        QVERIFY(view.viewport()
                    ->rect()
                    .adjusted(-1, -1, 1, 1)
                    .contains(view.mapFromScene(drawing).boundingRect()));
        // The wheel leads back, and no farther away than that.
        turnWheel(&view, 120);
        QCOMPARE(scaleOf(view), scale < 0.5 ? scale : scale * std::sqrt(0.5));
        turnWheel(&view, -120);
        QCOMPARE(scaleOf(view), scale < 0.5 ? scale * std::sqrt(2.0) : scale);
        view.resetZoom();
        turnWheel(&view, 720);
        QCOMPARE(scaleOf(view), 2.0);
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

    void fitsTheScene_data()
    {
        rows<QRectF, double>({"sceneRect", "scale"},
            {{"wide", {QRectF(-200.0, 0.0, 400.0, 100.0), 0.95 * 300.0 / 400.0}},
                {"tall", {QRectF(0.0, 0.0, 100.0, 800.0), 0.95 * 200.0 / 800.0}},
                {"without extent", {QRectF(5.0, 5.0, 0.0, 100.0), 1.0}}});
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
