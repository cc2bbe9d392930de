#include "support/ZelTest.h"

#include "zelModelSupport/graphics/contact/ZelContactNames.h"
#include "zelModelSupport/graphics/contact/ZelContactRoutes.h"

#include <algorithm>
#include <cmath>

using namespace zel::contacts;

using Circles = std::vector<Circle>;

/// Lines and names of a contact map as pure geometry.
class tst_ContactRoutes : public ZelTest
{
    Q_OBJECT
private slots:
    void linesKeepClear_data();
    void linesKeepClear();
    void linesThatComeLaterGiveWay();
    void loopsGiveWayToLines();
    void namesGoToWhereNothingIs_data();
    void namesGoToWhereNothingIs();
    void shownNames_data();
    void shownNames();
};

namespace {

constexpr int FirstOther = 4;

/// Two components that look at each other, or away, their sites, and what else there is.
Circles between(double first, double second, const Circles &others)
{
    Circles circles{{{0.0, 0.0}, 20.0}, {{20.0 * std::cos(first), 20.0 * std::sin(first)}, 6.0},
        {{200.0, 0.0}, 20.0}, {{200.0 + 20.0 * std::cos(second), 20.0 * std::sin(second)}, 6.0}};
    circles.insert(circles.end(), others.cbegin(), others.cend());
    return circles;
}

const End FirstEnd{1, 0};
const End SecondEnd{3, 2};

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

bool isOnRim(const QPointF &point, const Circle &circle)
{
    return std::abs(distance(point, circle.centre) - circle.radius) < 0.01;
}

/// The least distance of a path's points from the rim of a circle; negative within.
double gapTo(const QPainterPath &path, const Circle &circle)
{
    double gap = 1.0e9;
    for (int i = 0; i <= 400; ++i)
        gap = std::min(gap, distance(path.pointAtPercent(i / 400.0), circle.centre));
    return gap - circle.radius;
}

} // namespace

void tst_ContactRoutes::linesKeepClear_data()
{
    QTest::addColumn<Circles>("circles");
    QTest::addColumn<double>("longest");
    const double pi = std::acos(-1.0);
    QTest::newRow("free") << between(0.0, pi, {}) << 148.1;
    QTest::newRow("one in the way") << between(0.0, pi, {{{100.0, 0.0}, 20.0}}) << 190.0;
    QTest::newRow("off the middle") << between(0.0, pi, {{{60.0, 12.0}, 20.0}}) << 180.0;
    Circles wall;
    for (int i = -1; i <= 1; ++i)
        wall.push_back({{100.0, i * 38.0}, 20.0});
    QTest::newRow("a wall") << between(0.0, pi, wall) << 280.0;
    QTest::newRow("looking away") << between(pi, 0.0, {}) << 420.0;
    QTest::newRow("looking aside") << between(pi / 2.0, -pi / 2.0, {}) << 260.0;
    QTest::newRow("with another site beside")
        << between(pi / 2.0, pi / 2.0, {{{100.0, 20.0}, 6.0}}) << 240.0;
}

void tst_ContactRoutes::linesKeepClear()
{
    QFETCH(const Circles, circles);
    Routes routes(circles, 1);
    const QPainterPath path = routes.route(FirstEnd, SecondEnd);
    QVERIFY(isOnRim(path.pointAtPercent(0.0), circles[1]));
    QVERIFY(isOnRim(path.pointAtPercent(1.0), circles[3]));
    for (std::size_t i = FirstOther; i < circles.size(); ++i)
        QVERIFY2(
            gapTo(path, circles[i]) > 1.0, qPrintable(QString::number(gapTo(path, circles[i]))));
    for (const std::size_t own : {std::size_t(0), std::size_t(2)})
        QVERIFY(gapTo(path, circles[own]) > -1.0);
    QFETCH(const double, longest);
    QVERIFY2(path.length() < longest, qPrintable(QString::number(path.length())));
}

// Two pairs crosswise cannot but cross once; that the first is straight makes the second no worse.
void tst_ContactRoutes::linesThatComeLaterGiveWay()
{
    const Circles circles{{{0.0, 0.0}, 20.0}, {{20.0, 0.0}, 6.0}, {{200.0, 0.0}, 20.0},
        {{180.0, 0.0}, 6.0}, {{100.0, -40.0}, 20.0}, {{100.0, -20.0}, 6.0}, {{40.0, -60.0}, 20.0},
        {{40.0, -40.0}, 6.0}};
    Routes routes(circles, 2);
    const QPainterPath first = routes.route({1, 0}, {3, 2});
    const QPainterPath second = routes.route({5, 4}, {7, 6});
    QCOMPARE(first.elementCount(), 2);
    // Under the first line would be shorter for neither: they stay on one side of it.
    QVERIFY(second.boundingRect().bottom() < 0.0);
}

void tst_ContactRoutes::loopsGiveWayToLines()
{
    const Circles circles = between(0.0, std::acos(-1.0), {});
    Routes free(circles, 1);
    const QPainterPath alone = free.route(FirstEnd, FirstEnd);
    Routes busy(circles, 2);
    const QPainterPath line = busy.route(FirstEnd, SecondEnd);
    const QPainterPath beside = busy.route(FirstEnd, FirstEnd);
    for (const QPainterPath &loop : {alone, beside}) {
        QVERIFY(isOnRim(loop.pointAtPercent(0.0), circles[1]));
        QVERIFY(isOnRim(loop.pointAtPercent(1.0), circles[1]));
        QVERIFY(gapTo(loop, circles[0]) > -1.0);
        for (int i = 0; i <= 100; ++i) {
            QVERIFY(distance(loop.pointAtPercent(i / 100.0), circles[1].centre)
                < circles[1].radius + LoopReach + 1.0);
        }
    }
    // Straight out when alone, at an angle to the line otherwise.
    QVERIFY(std::abs(alone.boundingRect().center().y()) < 0.5);
    QVERIFY(!beside.intersects(line.boundingRect().adjusted(1.0, -0.1, 0.0, 0.1)));
}

void tst_ContactRoutes::namesGoToWhereNothingIs_data()
{
    QTest::addColumn<Circles>("circles");
    QTest::addColumn<QSizeF>("size");
    const Circles one{{{0.0, 0.0}, 20.0}};
    Circles ring;
    for (int i = 0; i < 12; ++i)
        ring.push_back({{100.0 * std::cos(i * 0.5236), 100.0 * std::sin(i * 0.5236)}, 20.0});
    QTest::newRow("one component") << one << QSizeF(40.0, 15.0);
    QTest::newRow("a long name") << one << QSizeF(300.0, 15.0);
    QTest::newRow("within a ring") << ring << QSizeF(40.0, 15.0);
    QTest::newRow("outside a ring") << ring << QSizeF(200.0, 15.0);
}

void tst_ContactRoutes::namesGoToWhereNothingIs()
{
    QFETCH(const Circles, circles);
    QFETCH(const QSizeF, size);
    Surroundings surroundings;
    surroundings.circles = circles;
    QRectF whole;
    for (const Circle &circle : circles) {
        const QPointF reach(circle.radius, circle.radius);
        whole |= QRectF(circle.centre - reach, circle.centre + reach);
    }
    QRectF before;
    for (int copies = 0; copies < 3; ++copies) {
        const QRectF rect = placeBeside(size, whole, whole, surroundings);
        QCOMPARE(rect.size(), size);
        QVERIFY(!rect.intersects(before));
        for (const Circle &circle : circles) {
            const double dx =
                std::max(std::abs(rect.center().x() - circle.centre.x()) - rect.width() / 2.0, 0.0);
            const double dy = std::max(
                std::abs(rect.center().y() - circle.centre.y()) - rect.height() / 2.0, 0.0);
            QVERIFY(std::hypot(dx, dy) > circle.radius);
        }
        QVERIFY(rect.adjusted(-60.0, -60.0, 60.0, 60.0).intersects(whole));
        surroundings.rects.push_back(rect);
        before = rect;
    }
}

void tst_ContactRoutes::shownNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    const QString dna = QString::fromUtf8("\U0001F9EC");
    QTest::newRow("plain") << QString("EGFR") << QString("EGFR");
    QTest::newRow("as long as may be") << QString(8, u'x') << QString(8, u'x');
    QTest::newRow("too long") << QString(10000, u'x') << QString(7, u'x') + QChar(0x2026);
    QTest::newRow("lines") << QString(" a\r\n\tb\n") << QString("a b");
    QTest::newRow("turned around") << QString::fromUtf8("\u202eabc\u2066") << QString("abc");
    QTest::newRow("from right to left")
        << QString::fromUtf8("\u05d0\u05d1") << QString::fromUtf8("\u05d0\u05d1");
    QTest::newRow("no characters of XML")
        << QString("a") + QChar(0xffff) + QChar(0xd800) + QChar(0x01) + "b" << QString("a b");
    QTest::newRow("pairs stay whole") << dna.repeated(5) << dna.repeated(3) + QChar(0x2026);
    QTest::newRow("nothing") << QString("\n\n") << QString();
}

void tst_ContactRoutes::shownNames()
{
    QFETCH(const QString, name);
    QTEST(shownName(name, 8), "shown");
}

ZEL_TEST(tst_ContactRoutes)
#include "tst_ContactRoutes.moc"
