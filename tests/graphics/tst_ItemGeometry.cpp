#include "support/ZelTest.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"

#include <QPainterPath>
#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

using namespace zel::geometry;

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

class tst_ItemGeometry : public ZelTest
{
    Q_OBJECT

private slots:
    void bondLineFollowsTheSteps_data()
    {
        rows<QRectF, QRectF>({"from", "to"},
            {{"apart, rim at a whole number", {centred(10, 10), centred(10, 10, {50, 0})}},
                {"apart, oblique", {centred(10, 10), centred(14, 14, {37.3, -61.2})}},
                {"flat ellipses", {centred(40, 6), centred(5, 30, {80, 31})}},
                {"touching", {centred(10, 10), centred(10, 10, {10, 0})}},
                {"overlapping", {centred(10, 10), centred(10, 10, {6.5, 0})}},
                {"one inside the other", {centred(40, 40), centred(6, 6, {9.25, 4})}},
                {"the small one first", {centred(6, 6), centred(40, 40, {9.25, 4})}},
                {"less than a step apart", {centred(10, 10), centred(10, 10, {0.5, 0})}},
                {"same place", {centred(10, 10), centred(20, 20)}},
                {"empty ellipse", {QRectF(3, 4, 0, 0), centred(10, 10, {50, 0})}}});
    }

    void bondLineFollowsTheSteps()
    {
        QFETCH(QRectF, from);
        QFETCH(QRectF, to);
        const QLineF expected = trimmedStepByStep(from, to);
        const QLineF line = bondLine(from, to);
        QVERIFY(apart(line.p1(), expected.p1()) < 1e-6);
        QVERIFY(apart(line.p2(), expected.p2()) < 1e-6);
    }

    void bondLineOfRandomEllipses()
    {
        QRandomGenerator random(11);
        const auto number = [&](double low, double high) {
            return low + (high - low) * random.generateDouble();
        };
        for (int i = 0; i < 300; ++i) {
            const QRectF from = centred(number(4, 60), number(4, 60));
            const QRectF to =
                centred(number(4, 60), number(4, 60), {number(65, 200), number(65, 200)});
            const QLineF expected = trimmedStepByStep(from, to);
            const QLineF line = bondLine(from, to);
            QVERIFY(apart(line.p1(), expected.p1()) < 1e-6);
            QVERIFY(apart(line.p2(), expected.p2()) < 1e-6);
            QVERIFY(!touches(line, from) && !touches(line, to));
        }
    }

    void rimToRim_data()
    {
        rows<QRectF, QRectF, QLineF>({"from", "to", "expected"},
            {{"apart", {centred(20, 10), centred(10, 10, {50, 0}), QLineF(10, 0, 45, 0)}},
                {"above each other",
                    {centred(20, 10), centred(10, 8, {0, -50}), QLineF(0, -5, 0, -46)}},
                {"overlapping", {centred(20, 20), centred(20, 20, {10, 0}), QLineF(5, 0, 5, 0)}},
                {"same centre", {centred(20, 20), centred(10, 10), QLineF(0, 0, 0, 0)}}});
    }

    void rimToRim()
    {
        QFETCH(QRectF, from);
        QFETCH(QRectF, to);
        QFETCH(QLineF, expected);
        QCOMPARE(rimToRimLine(from, to), expected);
    }

    void angles_data()
    {
        const double pi = std::numbers::pi;
        rows<QPointF, double>({"point", "expected"},
            {{"right", {QPointF(12, 5), 0.0}}, {"above", {QPointF(2, -5), pi / 2}},
                {"below", {QPointF(2, 15), -pi / 2}},
                {"lower left", {QPointF(-8, 15), -3 * pi / 4}},
                {"same place", {QPointF(2, 5), 1000.0}}});
    }

    void angles()
    {
        QFETCH(QPointF, point);
        QFETCH(double, expected);
        QCOMPARE(angleBetween(point, {2, 5}), expected);
    }

    void fittedRow_data()
    {
        rows<QRectF, int, double>({"ellipse", "count", "gap"},
            {
                {"one sticky", {centred(40, 40), 1, 2.0}},
                {"three", {centred(60, 40), 3, 2.0}},
                {"tiny squares have no gap", {centred(40, 40), 30, 2.0}},
                {"flat ellipse", {centred(200, 5), 3, 2.0}},
                {"too many to fit", {centred(20, 20), 500, 2.0}},
                {"ellipse without extent", {QRectF(), 2, 2.0}},
            });
    }

    void fittedRow()
    {
        QFETCH(QRectF, ellipse);
        QFETCH(int, count);
        QFETCH(double, gap);

        // The rule word by word: from the lesser extent down by 0.2 until the row fits, off the rim
        // and no higher than a share of the ellipse.
        const auto gapOf = [gap](double side) {
            return side <= 1.0 ? 0.0 : side <= 4.0 ? 1.0 : gap;
        };
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
};

ZEL_TEST(tst_ItemGeometry)
#include "tst_ItemGeometry.moc"
