#include "support/ZelTest.h"
#include "zelShare/ZelShareGui.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGraphicsEllipseItem>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace {

QRectF centred(double width, double height, const QPointF &at = {})
{
    return {at.x() - width / 2.0, at.y() - height / 2.0, width, height};
}

// The least distance between two rims, by trying many points of each.
double leastDistance(const QRectF &first, const QRectF &second)
{
    constexpr int count = 720;
    double least = 1e9;
    for (int i = 0; i < count; ++i) {
        const double t = 2.0 * std::numbers::pi * i / count;
        const QPointF p = first.center()
            + QPointF(first.width() / 2.0 * std::cos(t), first.height() / 2.0 * std::sin(t));
        for (int j = 0; j < count; ++j) {
            const double u = 2.0 * std::numbers::pi * j / count;
            const QPointF q = second.center()
                + QPointF(second.width() / 2.0 * std::cos(u), second.height() / 2.0 * std::sin(u));
            least = std::min(least, std::hypot(p.x() - q.x(), p.y() - q.y()));
        }
    }
    return least;
}

QPointF direction(double angle)
{
    const double radians = angle * std::numbers::pi / 180.0;
    return {std::cos(radians), -std::sin(radians)};
}

} // namespace

class tst_ZelShareGui : public ZelTest
{
    Q_OBJECT

private slots:
    void rimPointsLieOnTheEllipse_data()
    {
        const QRectF wide = centred(40.0, 20.0, {100.0, 50.0});
        rows<QRectF, double, QPointF>({"ellipse", "angle", "expected"},
            {{"right", {wide, 0.0, QPointF(120.0, 50.0)}},
                {"up is counter-clockwise", {wide, 90.0, QPointF(100.0, 40.0)}},
                {"left", {wide, 180.0, QPointF(80.0, 50.0)}},
                {"down", {wide, 270.0, QPointF(100.0, 60.0)}},
                {"45 degrees, not the ellipse's parameter",
                    {wide, 45.0,
                        QPointF(100.0 + 20.0 / std::sqrt(5.0), 50.0 - 20.0 / std::sqrt(5.0))}},
                {"empty ellipse", {QRectF(5.0, 6.0, 0.0, 0.0), 30.0, QPointF(5.0, 6.0)}}});
    }

    void rimPointsLieOnTheEllipse()
    {
        QFETCH(QRectF, ellipse);
        QFETCH(double, angle);
        QFETCH(QPointF, expected);
        const QPointF point = ZelShareGui::rimPoint(ellipse, angle);
        QVERIFY(std::hypot(point.x() - expected.x(), point.y() - expected.y()) < 1e-9);

        QGraphicsEllipseItem component(ellipse.translated(-7.0, 3.0));
        component.setPos(7.0, -3.0);
        const QPointF attach = ZelShareGui::getAttachScenePoint(&component, nullptr, angle);
        QVERIFY(std::hypot(attach.x() - expected.x(), attach.y() - expected.y()) < 1e-9);
    }

    void gapBetweenEllipses_data()
    {
        rows<QSizeF, QSizeF, double>({"first", "second", "angle"},
            {{"circles", {QSizeF(50, 50), QSizeF(30, 30), 33.0}},
                {"wide and tall, oblique", {QSizeF(100, 20), QSizeF(20, 80), 40.0}},
                {"two wide, side by side", {QSizeF(100, 20), QSizeF(100, 20), 5.0}},
                {"two wide, one above", {QSizeF(100, 20), QSizeF(100, 20), 85.0}},
                {"very flat", {QSizeF(200, 4), QSizeF(50, 50), 200.0}}});
    }

    void gapBetweenEllipses()
    {
        QFETCH(QSizeF, first);
        QFETCH(QSizeF, second);
        QFETCH(double, angle);
        const QRectF from = centred(first.width(), first.height());
        const QRectF to = centred(second.width(), second.height());
        for (const double gap : {1.0, 12.5}) {
            const double distance =
                ZelShareGui::centerDistanceForGap(from, to, direction(angle) * 3.0, gap);
            const QRectF placed = to.translated(direction(angle) * distance);
            QVERIFY(std::abs(leastDistance(from, placed) - gap) < 0.05);
        }
    }

    void siteLiesBetweenHalfInAndTouching()
    {
        QGraphicsEllipseItem component(centred(60.0, 40.0));
        component.setPos(10.0, 10.0);
        auto *site = new QGraphicsEllipseItem(centred(10.0, 10.0), &component);
        for (double angle = 0.0; angle < 360.0; angle += 30.0) {
            site->setPos(direction(angle) * 25.0);
            const double least =
                ZelShareGui::getMinimumAttachedItemCenterDistance(&component, site);
            const double greatest =
                ZelShareGui::getMaximumAttachedItemCenterDistance(&component, site);
            const QPointF onRim = direction(angle) * least;
            QVERIFY(std::abs(std::hypot(onRim.x() / 30.0, onRim.y() / 20.0) - 1.0) < 1e-9);
            const QRectF touching = centred(10.0, 10.0, direction(angle) * greatest);
            QVERIFY(leastDistance(component.rect(), touching) < 0.2);
            QVERIFY(greatest > least);
        }
        // A direction given overrules the place.
        QCOMPARE(
            ZelShareGui::getMinimumAttachedItemCenterDistance(&component, site, {0.0, 8.0}), 20.0);
    }

    void neighbourNeverCollides_data()
    {
        QTest::addColumn<double>("angle");
        for (const int angle : {0, 45, 70, 135, 260})
            QTest::newRow(qPrintable(QString::number(angle))) << double(angle);
    }

    void neighbourNeverCollides()
    {
        QFETCH(double, angle);
        QGraphicsEllipseItem component(centred(60.0, 40.0));
        QGraphicsEllipseItem neighbour(centred(30.0, 50.0));
        const QPointF way = direction(angle);
        const double least =
            ZelShareGui::getMinimumAttachedItemCenterDistance(&component, &neighbour, way);
        const double greatest =
            ZelShareGui::getMaximumAttachedItemCenterDistance(&component, &neighbour, way);
        QVERIFY(greatest > least);

        QPainterPath grown;
        grown.addEllipse(component.rect().adjusted(-1.0, -1.0, 1.0, 1.0));
        QPainterPath other;
        other.addEllipse(neighbour.rect().translated(way * least));
        QVERIFY(!grown.intersects(other));
        const QRectF tooClose = neighbour.rect().translated(way * (least - 0.5));
        QVERIFY(leastDistance(component.rect(), tooClose) < ZelShareGui::LeastRimGap);
    }

    void missingItems()
    {
        QGraphicsEllipseItem item(centred(60.0, 40.0));
        QCOMPARE(ZelShareGui::getAttachScenePoint(nullptr, &item), QPointF());
        QCOMPARE(ZelShareGui::getMinimumAttachedItemCenterDistance(nullptr, &item), 0.0);
        QCOMPARE(ZelShareGui::getMaximumAttachedItemCenterDistance(&item, nullptr), 0.0);
    }

    void fontSizeIsTheLargestThatFits_data()
    {
        rows<QString, QSizeF>({"text", "room"},
            {{"one digit", {"1", QSizeF(10, 10)}},
                {"limited by the width", {"1234", QSizeF(20, 100)}},
                {"limited by the height", {"1", QSizeF(500, 25)}},
                {"large", {"Grb2", QSizeF(300, 300)}},
                {"wide letters", {"WWWWWWWWWW", QSizeF(64, 64)}}});
    }

    void fontSizeIsTheLargestThatFits()
    {
        QFETCH(QString, text);
        QFETCH(QSizeF, room);
        QFont font;
        font.setPointSize(6);
        const auto fits = [&](int size) {
            QFont sized = font;
            sized.setPointSize(size);
            const QFontMetricsF metrics(sized);
            return metrics.horizontalAdvance(text) <= room.width()
                && metrics.height() <= room.height();
        };
        for (int round = 0; round < 2; ++round) {
            const int size =
                ZelShareGui::getMaxiumFontSize(text, room.width(), room.height(), font);
            QVERIFY(fits(size));
            QVERIFY(!fits(size + 1));
        }
        // No room at all still gives a size that a font takes.
        QCOMPARE(ZelShareGui::getMaxiumFontSize(text, 0.0, room.height(), font), 1);
        QCOMPARE(ZelShareGui::getMaxiumFontSize(text, room.width(), -3.0, font), 1);
    }
};

ZEL_TEST(tst_ZelShareGui)
#include "tst_ZelShareGui.moc"
