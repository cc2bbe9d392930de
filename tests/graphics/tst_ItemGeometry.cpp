#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelItemGeometry.h"

#include <QPainterPath>
#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

using namespace zel::geometry;

class tst_ItemGeometry : public ZelTest
{
    Q_OBJECT

private slots:
    void bondLineFollowsTheSteps_data();
    void bondLineFollowsTheSteps();
    void bondLineOfRandomEllipses();
    void rimToRim_data();
    void rimToRim();
    void angles_data();
    void angles();
    void fittedRow_data();
    void fittedRow();
    void rowDirections_data();
    void rowDirections();
    void negationStrokesLengthenTheDiagonals();
    void halfFillStaysInsideTheRim_data();
    void halfFillStaysInsideTheRim();
};

namespace {

QRectF centred(double width, double height, const QPointF &at = {})
{
    return {at.x() - width / 2.0, at.y() - height / 2.0, width, height};
}

QPainterPath ellipsePath(const QRectF &rect)
{
    QPainterPath path;
    path.addEllipse(rect);
    return path;
}

bool touches(const QLineF &line, const QRectF &ellipse)
{
    QPainterPath path(line.p1());
    path.lineTo(line.p2());
    return path.intersects(ellipsePath(ellipse));
}

// The rule of the trim word by word, with painter paths.
QLineF trimmedStepByStep(const QRectF &from, const QRectF &to)
{
    QLineF line(from.center(), to.center());
    for (const bool atStart : {true, false}) {
        const QRectF &ellipse = atStart ? from : to;
        while (line.length() > 0.0 && touches(line, ellipse)) {
            if (line.length() - 1.0 <= 0.0)
                break;
            const QPointF step = (line.p2() - line.p1()) / line.length();
            if (atStart)
                line.setP1(line.p1() + step);
            else
                line.setP2(line.p2() - step);
        }
    }
    return line;
}

double apart(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

bool rowInside(const QRectF &ellipse, int count, double side, double gap)
{
    const double x = (count * side + (count - 1) * gap) / ellipse.width();
    const double y = side / ellipse.height();
    return x * x + y * y <= 0.75 * 0.75
        && side <= 0.3 * std::min(ellipse.width(), ellipse.height());
}

} // namespace

void tst_ItemGeometry::bondLineFollowsTheSteps_data()
{
    QTest::addColumn<QRectF>("from");
    QTest::addColumn<QRectF>("to");

    QTest::newRow("apart, rim at a whole number") << centred(10, 10) << centred(10, 10, {50, 0});
    QTest::newRow("apart, oblique") << centred(10, 10) << centred(14, 14, {37.3, -61.2});
    QTest::newRow("flat ellipses") << centred(40, 6) << centred(5, 30, {80, 31});
    QTest::newRow("touching") << centred(10, 10) << centred(10, 10, {10, 0});
    QTest::newRow("overlapping") << centred(10, 10) << centred(10, 10, {6.5, 0});
    QTest::newRow("one inside the other") << centred(40, 40) << centred(6, 6, {9.25, 4});
    QTest::newRow("the small one first") << centred(6, 6) << centred(40, 40, {9.25, 4});
    QTest::newRow("less than a step apart") << centred(10, 10) << centred(10, 10, {0.5, 0});
    QTest::newRow("same place") << centred(10, 10) << centred(20, 20);
    QTest::newRow("empty ellipse") << QRectF(3, 4, 0, 0) << centred(10, 10, {50, 0});
}

void tst_ItemGeometry::bondLineFollowsTheSteps()
{
    QFETCH(QRectF, from);
    QFETCH(QRectF, to);
    const QLineF expected = trimmedStepByStep(from, to);
    const QLineF line = bondLine(from, to);
    QVERIFY(apart(line.p1(), expected.p1()) < 1e-6);
    QVERIFY(apart(line.p2(), expected.p2()) < 1e-6);
}

void tst_ItemGeometry::bondLineOfRandomEllipses()
{
    QRandomGenerator random(11);
    const auto number = [&](double low, double high) {
        return low + (high - low) * random.generateDouble();
    };
    for (int i = 0; i < 300; ++i) {
        const QRectF from = centred(number(4, 60), number(4, 60));
        const QRectF to = centred(number(4, 60), number(4, 60), {number(65, 200), number(65, 200)});
        const QLineF expected = trimmedStepByStep(from, to);
        const QLineF line = bondLine(from, to);
        QVERIFY(apart(line.p1(), expected.p1()) < 1e-6);
        QVERIFY(apart(line.p2(), expected.p2()) < 1e-6);
        QVERIFY(!touches(line, from) && !touches(line, to));
    }
}

void tst_ItemGeometry::rimToRim_data()
{
    QTest::addColumn<QRectF>("from");
    QTest::addColumn<QRectF>("to");
    QTest::addColumn<QLineF>("expected");

    QTest::newRow("apart") << centred(20, 10) << centred(10, 10, {50, 0}) << QLineF(10, 0, 45, 0);
    QTest::newRow("above each other")
        << centred(20, 10) << centred(10, 8, {0, -50}) << QLineF(0, -5, 0, -46);
    QTest::newRow("overlapping") << centred(20, 20) << centred(20, 20, {10, 0})
                                 << QLineF(5, 0, 5, 0);
    QTest::newRow("same centre") << centred(20, 20) << centred(10, 10) << QLineF(0, 0, 0, 0);
}

void tst_ItemGeometry::rimToRim()
{
    QFETCH(QRectF, from);
    QFETCH(QRectF, to);
    QFETCH(QLineF, expected);
    QCOMPARE(rimToRimLine(from, to), expected);
}

void tst_ItemGeometry::angles_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<double>("expected");

    const double pi = std::numbers::pi;
    QTest::newRow("right") << QPointF(12, 5) << 0.0;
    QTest::newRow("above") << QPointF(2, -5) << pi / 2;
    QTest::newRow("below") << QPointF(2, 15) << -pi / 2;
    QTest::newRow("lower left") << QPointF(-8, 15) << -3 * pi / 4;
    QTest::newRow("same place") << QPointF(2, 5) << 1000.0;
}

void tst_ItemGeometry::angles()
{
    QFETCH(QPointF, point);
    QFETCH(double, expected);
    QCOMPARE(angleBetween(point, {2, 5}), expected);
}

void tst_ItemGeometry::fittedRow_data()
{
    QTest::addColumn<QRectF>("ellipse");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("gap");

    QTest::newRow("one sticky") << centred(40, 40) << 1 << 2.0;
    QTest::newRow("three") << centred(60, 40) << 3 << 2.0;
    QTest::newRow("small squares have the small gap") << centred(40, 40) << 8 << 2.0;
    QTest::newRow("tiny squares have no gap") << centred(40, 40) << 30 << 2.0;
    QTest::newRow("gap less than the small one") << centred(30, 40) << 5 << 0.1;
    QTest::newRow("no gap at all") << centred(60, 60) << 4 << 0.0;
    QTest::newRow("large gap") << centred(60, 60) << 4 << 12.0;
    QTest::newRow("flat ellipse") << centred(200, 5) << 3 << 2.0;
    QTest::newRow("too many to fit") << centred(20, 20) << 500 << 2.0;
    QTest::newRow("ellipse without extent") << QRectF() << 2 << 2.0;
    QTest::newRow("ellipse below the least side") << centred(0.1, 0.1) << 1 << 2.0;
}

void tst_ItemGeometry::fittedRow()
{
    QFETCH(QRectF, ellipse);
    QFETCH(int, count);
    QFETCH(double, gap);

    // The rule word by word: from the lesser extent down by 0.2 until the row fits, off the rim
    // and no higher than a share of the ellipse.
    const auto gapOf = [gap](double side) { return side <= 1.0 ? 0.0 : side <= 4.0 ? 1.0 : gap; };
    const double greatest = std::min(ellipse.width(), ellipse.height());
    double side = greatest;
    for (int step = 1; side > 0.2 && !rowInside(ellipse, count, side, gapOf(side)); ++step)
        side = greatest - 0.2 * step;
    side = std::max(side, 0.2);

    const RowMeasure measure = fitRow(ellipse, count, gap);
    QCOMPARE(measure.side, side);
    QCOMPARE(measure.gap, gapOf(side));

    // An ellipse of any size, as a damaged file may hold, is measured at once.
    const RowMeasure huge = fitRow(centred(1e12, 1e12), count, gap);
    QVERIFY(rowInside(centred(1e12, 1e12), count, huge.side, huge.gap));
    const double infinite = std::numeric_limits<double>::infinity();
    QCOMPARE(fitRow({0, 0, infinite, infinite}, count, gap).side, 0.2);
}

void tst_ItemGeometry::rowDirections_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QPointF>("firstCentre");
    QTest::addColumn<QPointF>("lastCentre");

    // Three squares of side 8 and gap 2 around (100, 50).
    QTest::newRow("0") << 0 << QPointF(90, 50) << QPointF(110, 50);
    QTest::newRow("1 as 0") << 1 << QPointF(90, 50) << QPointF(110, 50);
    QTest::newRow("2 downwards") << 2 << QPointF(100, 40) << QPointF(100, 60);
    QTest::newRow("3 backwards") << 3 << QPointF(110, 50) << QPointF(90, 50);
    QTest::newRow("4 upwards") << 4 << QPointF(100, 60) << QPointF(100, 40);
}

void tst_ItemGeometry::rowDirections()
{
    QFETCH(int, code);
    QFETCH(QPointF, firstCentre);
    QFETCH(QPointF, lastCentre);
    const QList<QRectF> rects = rowRects(centred(60, 60, {100, 50}), 3, {8.0, 2.0}, code);
    QCOMPARE(rects.size(), 3);
    QCOMPARE(rects.at(0).center(), firstCentre);
    QCOMPARE(rects.at(1).center(), QPointF(100, 50));
    QCOMPARE(rects.at(2).center(), lastCentre);
    QVERIFY(std::all_of(rects.cbegin(), rects.cend(),
        [](const QRectF &rect) { return rect.size() == QSizeF(8, 8); }));
}

void tst_ItemGeometry::negationStrokesLengthenTheDiagonals()
{
    const auto strokes = negationStrokes(QRectF(0, 0, 30, 40), 2.0);
    QCOMPARE(strokes.at(0), QLineF(-1.2, -1.6, 31.2, 41.6));
    QCOMPARE(strokes.at(1), QLineF(31.2, -1.6, -1.2, 41.6));
    const auto point = negationStrokes(QRectF(5, 5, 0, 0), 2.0);
    QCOMPARE(point.at(0), QLineF(5, 5, 5, 5));
}

void tst_ItemGeometry::halfFillStaysInsideTheRim_data()
{
    QTest::addColumn<double>("side");
    QTest::addColumn<double>("inset");

    QTest::newRow("least inset") << 8.0 << 1.0;
    QTest::newRow("a tenth of a large square") << 30.0 << 3.0;
}

void tst_ItemGeometry::halfFillStaysInsideTheRim()
{
    QFETCH(double, side);
    QFETCH(double, inset);
    const QRectF square(0, 0, side, side);
    const QPolygonF polygon = halfFillPolygon(square);
    QCOMPARE(polygon.boundingRect(), square.adjusted(inset, inset, -inset, -inset));
    QVERIFY(polygon.containsPoint({side * 0.7, side * 0.7}, Qt::OddEvenFill));
    QVERIFY(!polygon.containsPoint({side * 0.3, side * 0.3}, Qt::OddEvenFill));
    QVERIFY(halfFillPolygon(QRectF(0, 0, 1.5, 1.5)).isEmpty());
}

ZEL_TEST(tst_ItemGeometry)
#include "tst_ItemGeometry.moc"
