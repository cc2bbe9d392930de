#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QGraphicsPolygonItem>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

Q_DECLARE_METATYPE(BindingStatusType)

namespace {

QRectF centred(double width, double height)
{
    return {-width / 2.0, -height / 2.0, width, height};
}

// A component item with its component and named stickies, in a scene.
struct DrawnComponent
{
    explicit DrawnComponent(const QRectF &rect, int stickies = 0)
    {
        item->setRect(rect);
        item->setPos(70.0, 30.0);
        scene.addItem(item);
        item->setSdcMcp(&mcp);
        for (int i = 0; i < stickies; ++i) {
            auto *const sticky = new ZelRectItemMcpSticky(nullptr);
            sticky->setName(QString(QChar(u'P' + i)));
            item->addStateSticky(sticky, true);
        }
    }

    QPointF stickyCentre(int i) const
    {
        ZelRectItemMcpSticky *const sticky = item->getSticky(i);
        return sticky->mapToParent(sticky->rect().center());
    }

    QGraphicsScene scene;
    SdcMcp mcp{nullptr};
    ZelEllipseItemMcp *item = new ZelEllipseItemMcp;
};

QList<QGraphicsLineItem *> strokesOf(const QGraphicsItem *item)
{
    QList<QGraphicsLineItem *> strokes;
    for (QGraphicsItem *child : item->childItems()) {
        if (auto *line = qgraphicsitem_cast<QGraphicsLineItem *>(child); line && line->isVisible())
            strokes.append(line);
    }
    return strokes;
}

QGraphicsPolygonItem *halfOf(const QGraphicsItem *sticky)
{
    for (QGraphicsItem *child : sticky->childItems()) {
        if (auto *polygon = qgraphicsitem_cast<QGraphicsPolygonItem *>(child))
            return polygon;
    }
    return nullptr;
}

} // namespace

class tst_ItemLooks : public ZelTest
{
    Q_OBJECT

private slots:
    void boundsAreTheRectangleWhateverThePen_data()
    {
        rows<QPen>({"pen"},
            {{"default", {QPen()}}, {"none", {QPen(Qt::NoPen)}}, {"wide", {QPen(Qt::black, 9.0)}},
                {"wider than the item", {QPen(Qt::black, 90.0)}}});
    }

    void boundsAreTheRectangleWhateverThePen()
    {
        QFETCH(QPen, pen);
        const QRectF rect = centred(40.0, 20.0);
        ZelEllipseItem item(rect);
        item.setPen(pen);
        item.setBrush(Qt::black);
        QCOMPARE(item.boundingRect(), rect);
        QCOMPARE(item.shape().boundingRect(), rect);
        QVERIFY(item.contains({0.0, 9.9}) && !item.contains({18.0, 8.0}));

        // Nothing is painted outside the ellipse, and it is painted full.
        QImage image(80, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.translate(40.0, 30.0);
        item.paint(&painter, nullptr, nullptr);
        painter.end();
        int inside = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == Qt::white)
                    continue;
                ++inside;
                const double dx = (x + 0.5 - 40.0) / 20.8;
                const double dy = (y + 0.5 - 30.0) / 10.8;
                QVERIFY2(
                    dx * dx + dy * dy <= 1.0, qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
            }
        }
        QVERIFY(inside > 590 && inside < 680); // 628 in theory
    }

    void statusMarks_data()
    {
        const auto pen = [](const QColor &color) {
            QPen result;
            result.setColor(color);
            return result;
        };
        const QPen none(Qt::NoPen);
        const QPen dotted(Qt::black, 1.0, Qt::DotLine);
        const QPen wide(Qt::gray, 2.0);
        const QColor red(Qt::red);
        const QColor white(Qt::white);
        const QBrush gray(Qt::gray);
        rows<BindingStatusType, QColor, QPen, double, QBrush, QPen, double>(
            {"status", "siteColour", "sitePen", "diameter", "markBrush", "markPen", "opacity"},
            {{"bound, white site", {BindingStatusBound, white, QPen(), 9.0, gray, none, 1.0}},
                {"bound, coloured site", {BindingStatusBound, red, QPen(), 9.0, gray, none, 1.0}},
                {"unbound, white site",
                    {BindingStatusUnbound, white, QPen(), 9.0, white, none, 1.0}},
                {"unbound, coloured site",
                    {BindingStatusUnbound, red, none, 10.0, white, wide, 0.5}},
                {"don't care",
                    {BindingStatusUnspecified, red, pen(red), 11.0, QBrush(), dotted, 0.5}},
                {"don't care, white site",
                    {BindingStatusUnspecified, white, pen(white), 11.0, QBrush(), dotted, 0.5}}});
    }

    void statusMarks()
    {
        QFETCH(BindingStatusType, status);
        QFETCH(QColor, siteColour);
        QFETCH(QPen, sitePen);
        QFETCH(double, diameter);
        QFETCH(QBrush, markBrush);
        QFETCH(QPen, markPen);
        QFETCH(double, opacity);

        SdcBst bst(nullptr);
        ZelEllipseItemBst item(centred(12.0, 12.0));
        item.setSdcBst(&bst);
        item.setBrush(siteColour);
        item.setPen(QPen(Qt::green, 3.0)); // whatever was there before
        if (status == BindingStatusUnspecified)
            item.setPen(QPen());
        item.setBindingStatus(status);
        item.updateBindStatusDisplay(true);

        QCOMPARE(item.pen(), sitePen);
        QGraphicsEllipseItem *const mark = item.getBindStatusItem();
        QVERIFY(mark && mark->parentItem() == &item && mark->isVisible());
        QCOMPARE(mark->rect(), centred(diameter, diameter));
        QCOMPARE(mark->brush(), markBrush);
        QCOMPARE(mark->pen(), markPen);
        QCOMPARE(mark->opacity(), opacity);
        QCOMPARE(mark->zValue(), item.getBstLabelItem()->zValue() - 0.1);
        QVERIFY(item.boundingRect().contains(mark->boundingRect()));
    }

    void statusMarkChangesAndGoes()
    {
        SdcBst bst(nullptr);
        ZelEllipseItemBst item(centred(12.0, 12.0));
        item.setBindingStatus(BindingStatusBound); // no site: nothing to change
        QCOMPARE(item.getBindingStatus(), BindingStatusUnspecified);
        item.setSdcBst(&bst);
        item.setBrush(Qt::red);
        item.setLabel(QStringLiteral("1"));

        // Each status has its own look, whichever was shown before.
        for (const auto status :
            {BindingStatusUnbound, BindingStatusUnspecified, BindingStatusBound}) {
            bst.setBindingStatus(status);
            item.updateBindStatusDisplay(true);
            QCOMPARE(item.childItems().size(), 2); // the label and one mark
        }
        bst.setBindingStatus(BindingStatusUnbound);
        item.updateBindStatusDisplay(true);
        item.updateBindStatusDisplay(false);
        QVERIFY(!item.getBindStatusItem());
        QCOMPARE(item.pen(), QPen(Qt::NoPen));

        // Dark sites have a light label.
        item.setBrush(Qt::darkBlue);
        item.setLabel(QStringLiteral("8"));
        QCOMPARE(item.getBstLabelItem()->defaultTextColor(), QColor(Qt::white));

        // A site smaller than the mark's margin keeps a mark without extent.
        item.setRect(centred(2.0, 2.0));
        item.updateBindStatusDisplay(true);
        QVERIFY(item.getBindStatusItem()->rect().width() >= 0.0);
    }

    void siteRims()
    {
        SdcBst bst(nullptr);
        ZelEllipseItemBst item(centred(12.0, 12.0));
        item.setSdcBst(&bst);
        item.setAsLimited(true);
        QCOMPARE(item.pen().style(), Qt::DotLine);
        item.setAsLimited(false);
        QCOMPARE(item.pen(), QPen());

        item.setAlwaysHighlight(false);
        item.setHighlight(true);
        item.setHighlight(false);
        QCOMPARE(item.childItems().size(), 1); // the halo only
        bst.setAlwaysHighlight(true);
        item.setHighlight(false);
        QCOMPARE(item.childItems().size(), 2);
        auto *const ring = qgraphicsitem_cast<QGraphicsEllipseItem *>(item.childItems().last());
        QVERIFY(ring && ring->isVisible());
        QCOMPARE(ring->rect(), centred(9.0, 9.0));
        QCOMPARE(ring->opacity(), 0.7);
        item.setAlwaysHighlight(false);
        QVERIFY(!ring->isVisible());
        item.setAlwaysHighlight(true);
        QVERIFY(ring->isVisible());
    }

    void stickyStates_data()
    {
        rows<int, QString, Qt::PenStyle, QColor, double>(
            {"state", "name", "penStyle", "filling", "opacity"},
            {{"off", {1, "Off", Qt::SolidLine, QColor(Qt::white), 1.0}},
                {"on", {2, "On", Qt::SolidLine, QColor(Qt::red), 1.0}},
                {"don't care", {4, "Don't Care", Qt::DotLine, QColor(Qt::white), 0.8}},
                {"unknown keeps pen and fill",
                    {3, "Don't Care", Qt::DashLine, QColor(Qt::blue), 1.0}}});
    }

    void stickyStates()
    {
        QFETCH(int, state);
        QFETCH(QString, name);
        QFETCH(Qt::PenStyle, penStyle);
        QFETCH(QColor, filling);
        QFETCH(double, opacity);
        ZelRectItemMcpSticky sticky(nullptr);
        sticky.setPen(QPen(Qt::red, 1.0, Qt::DashLine));
        sticky.setBrush(QBrush(Qt::blue, Qt::CrossPattern));
        sticky.setOpacity(0.3);
        sticky.setStateType(state, false);
        QCOMPARE(sticky.getStateType(), state);
        QCOMPARE(sticky.getStateTypeName(), name);
        QCOMPARE(sticky.pen(), QPen(Qt::red, 1.0, penStyle));
        QCOMPARE(sticky.brush(), QBrush(filling, Qt::SolidPattern));
        QCOMPARE(sticky.opacity(), opacity);

        QVERIFY(!halfOf(&sticky));
        sticky.setStateType(state, true);
        QVERIFY(halfOf(&sticky));
        QCOMPARE(halfOf(&sticky)->polygon().boundingRect(), QRectF(1, 1, 6, 6));
        sticky.setRect({0, 0, 40, 40});
        sticky.updateHalfNofillItem();
        QCOMPARE(halfOf(&sticky)->polygon().boundingRect(), QRectF(4, 4, 32, 32));
    }

    void inactiveSticky()
    {
        ZelRectItemMcpSticky sticky(nullptr);
        sticky.setColor(Qt::red, true);
        const QPen pen = sticky.pen();
        const QBrush brush = sticky.brush();
        sticky.setActive(true);
        QCOMPARE(sticky.pen(), pen);
        sticky.setActive(false);
        sticky.setActive(false); // must not save the pale look
        QCOMPARE(sticky.pen().color(), QColor(Qt::lightGray));
        QCOMPARE(sticky.pen().style(), Qt::DotLine);
        QCOMPARE(sticky.brush().style(), Qt::NoBrush);
        QCOMPARE(sticky.getColor(), QColor(Qt::red));
        QVERIFY(!halfOf(&sticky)->isVisible());
        sticky.setActive(true);
        QVERIFY(halfOf(&sticky)->isVisible());
        QCOMPARE(sticky.pen(), pen);
        QCOMPARE(sticky.brush(), brush);

        // What changes meanwhile shows when it is active again.
        sticky.setActive(false);
        sticky.setColor(Qt::blue, true);
        sticky.setStateType(ComponentStateOff, false);
        QCOMPARE(sticky.brush().style(), Qt::NoBrush);
        QCOMPARE(sticky.getColor(), QColor(Qt::blue));
        sticky.setActive(true);
        QCOMPARE(sticky.pen().color(), QColor(Qt::blue));
        QCOMPARE(sticky.brush(), QBrush(Qt::white));
    }

    void rowIsFittedAndStored()
    {
        DrawnComponent drawn(centred(60.0, 40.0), 3);
        const double side = drawn.mcp.getTagSize();
        const double gap = drawn.mcp.getTagGap();
        QVERIFY(side > 8.0);
        QCOMPARE(gap, 2.0);
        QCOMPARE(drawn.item->getSticky(1)->rect(), QRectF(0, 0, side, side));
        QVERIFY(drawn.stickyCentre(1).manhattanLength() < 1e-9);
        QCOMPARE(drawn.stickyCentre(2).x() - drawn.stickyCentre(1).x(), side + gap);
        for (int i = 0; i < 3; ++i) {
            ZelRectItemMcpSticky *const sticky = drawn.item->getSticky(i);
            QCOMPARE(sticky->zValue(), 2.0);
            QCOMPARE(sticky->getSdcMcp(), &drawn.mcp);
            QPainterPath square;
            square.addRect(sticky->mapRectToParent(sticky->rect()));
            QVERIFY(drawn.item->shape().contains(square));
        }
        // One more makes all smaller; the same again is not added twice.
        drawn.item->addStateSticky(new ZelRectItemMcpSticky(nullptr), true);
        drawn.item->addStateSticky(drawn.item->getSticky(0), true);
        drawn.item->addStateSticky(nullptr, true);
        QCOMPARE(drawn.item->getListSticky().size(), 4);
        QVERIFY(drawn.mcp.getTagSize() < side);
        QCOMPARE(drawn.item->getSticky(QStringLiteral("Q")), drawn.item->getSticky(1));
        QVERIFY(!drawn.item->getSticky(QStringLiteral("Z")));
        QVERIFY(!drawn.item->getSticky(-1) && !drawn.item->getSticky(4));
    }

    void storedRowIsKept_data()
    {
        // step: from the first sticky to the second, where kept
        rows<int, double, bool, bool, QPointF>({"code", "side", "fit", "kept", "step"},
            {{"stored side", {0, 6.0, false, true, QPointF(9.5, 0)}},
                {"stored side, fitted anew", {1, 6.0, true, false, QPointF()}},
                {"no stored side", {1, 0.0, false, false, QPointF()}},
                {"vertical keeps it when fitted", {2, 6.0, true, true, QPointF(0, 9.5)}},
                {"backwards", {3, 6.0, true, true, QPointF(-9.5, 0)}},
                {"upwards", {4, 6.0, false, true, QPointF(0, -9.5)}},
                {"small side, small gap", {0, 4.0, false, true, QPointF(5, 0)}},
                {"tiny side, no gap", {2, 1.0, false, true, QPointF(0, 1)}}});
    }

    void storedRowIsKept()
    {
        QFETCH(int, code);
        QFETCH(double, side);
        QFETCH(bool, fit);
        QFETCH(bool, kept);
        QFETCH(QPointF, step);
        DrawnComponent drawn(centred(60.0, 40.0), 3);
        drawn.mcp.setTagDirectionCode(code);
        drawn.mcp.setTagSize(side);
        drawn.mcp.setTagGap(3.5);
        drawn.item->updateLayoutOfListStateSticky(fit);
        if (kept) {
            QCOMPARE(drawn.mcp.getTagSize(), side);
            QCOMPARE(drawn.mcp.getTagGap(), 3.5);
            QCOMPARE(drawn.item->getSticky(0)->rect().width(), side);
            QCOMPARE(drawn.stickyCentre(1) - drawn.stickyCentre(0), step);
        } else {
            QVERIFY(drawn.mcp.getTagSize() > 6.0);
            QCOMPARE(drawn.item->getSticky(0)->rect().width(), drawn.mcp.getTagSize());
        }
        QVERIFY(drawn.stickyCentre(1).manhattanLength() < 1e-9);
    }

    void stickyKeepsItsPlaceWithoutLayout()
    {
        DrawnComponent drawn(centred(60.0, 40.0));
        auto *const sticky = new ZelRectItemMcpSticky(nullptr);
        drawn.scene.addItem(sticky);
        sticky->setPos(85.0, 41.0);
        drawn.item->addStateSticky(sticky, false);
        QCOMPARE(sticky->parentItem(), drawn.item);
        QCOMPARE(sticky->scenePos(), QPointF(85.0, 41.0));
        QCOMPARE(drawn.mcp.getTagSize(), 8.0);
    }

    void stickyOrder()
    {
        DrawnComponent drawn(centred(60.0, 40.0), 3);
        const QList<ZelRectItemMcpSticky *> list = drawn.item->getListSticky();
        drawn.item->setStickyOrder({list.at(2), list.at(0), list.at(1)});
        QCOMPARE(drawn.mcp.getMcpStateCode(), QStringLiteral("R;P;Q"));
        drawn.item->setStickyOrder({list.at(2), list.at(0)});
        drawn.item->setStickyOrder({list.at(2), list.at(0), nullptr});
        QCOMPARE(drawn.mcp.getMcpStateCode(), QStringLiteral("R;P;Q"));
    }

    void negationStrokesCoverComponentAndStickies()
    {
        DrawnComponent drawn(centred(60.0, 80.0));
        QVERIFY(!drawn.item->isNotIndicatorVisible());
        drawn.item->setNotIndicatorVisible(false);
        QCOMPARE(drawn.scene.itemsBoundingRect(), drawn.item->sceneBoundingRect());
        drawn.item->setNotIndicatorVisible(true);
        QCOMPARE(strokesOf(drawn.item).size(), 2);
        // 3-4-5: two units along the diagonal are 1.2 across and 1.6 down.
        QCOMPARE(strokesOf(drawn.item).at(0)->line(), QLineF(-31.2, -41.6, 31.2, 41.6));
        QCOMPARE(strokesOf(drawn.item).at(1)->line(), QLineF(31.2, -41.6, -31.2, 41.6));
        for (QGraphicsLineItem *stroke : strokesOf(drawn.item)) {
            QCOMPARE(stroke->zValue(), 3.0);
            QCOMPARE(stroke->pen().widthF(), 1.4);
            QCOMPARE(stroke->opacity(), 0.7);
        }

        // A row of stickies that reaches beyond the ellipse is struck through as well.
        for (int i = 0; i < 4; ++i)
            drawn.item->addStateSticky(new ZelRectItemMcpSticky(nullptr), false);
        drawn.mcp.setTagSize(30.0);
        drawn.item->updateLayoutOfListStateSticky(false);
        const QRectF struck(
            strokesOf(drawn.item).at(0)->line().p1(), strokesOf(drawn.item).at(0)->line().p2());
        for (ZelRectItemMcpSticky *sticky : drawn.item->getListSticky())
            QVERIFY(struck.contains(sticky->mapRectToParent(sticky->rect())));
        drawn.item->setNotIndicatorVisible(false);
        QVERIFY(strokesOf(drawn.item).isEmpty());
    }
};

ZEL_TEST(tst_ItemLooks)
#include "tst_ItemLooks.moc"
