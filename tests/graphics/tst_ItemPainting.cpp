#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelLineItem.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelRectItemWithText.h"
#include "zelModelSupport/graphics/ZelTextItemLabel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QBuffer>
#include <QGraphicsScene>
#include <QGraphicsSimpleTextItem>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include <memory>

namespace {

constexpr double Scale = 8.0;
const QRectF shown(-20.0, -20.0, 40.0, 40.0);

/// A scene that shows one item, which it does not own, on a background colour.
struct Stage
{
    explicit Stage(QGraphicsItem *shownItem, const QColor &background = Qt::white) : item(shownItem)
    {
        scene.setBackgroundBrush(background);
        scene.addItem(item);
        image = QImage((shown.size() * Scale).toSize(), QImage::Format_RGB32);
    }
    ~Stage() { scene.removeItem(item); }
    Q_DISABLE_COPY_MOVE(Stage)

    void render(QPaintDevice *device)
    {
        QPainter painter(device);
        painter.setRenderHint(QPainter::Antialiasing);
        scene.render(&painter, QRectF(QPointF(), shown.size() * Scale), shown);
    }
    QColor at(const QPointF &p) const
    {
        return image.pixelColor(((p - shown.topLeft()) * Scale).toPoint());
    }

    QGraphicsScene scene;
    QGraphicsItem *item;
    QImage image;
};

bool isBluish(const QColor &color)
{
    return color.blue() > color.red() + 40;
}

std::unique_ptr<ZelRectItemMcpSticky> sticky(double side, int state)
{
    auto item = std::make_unique<ZelRectItemMcpSticky>(nullptr);
    item->setRect(-side / 2.0, -side / 2.0, side, side);
    item->setColor(Qt::black, true);
    item->setStateType(state, false);
    return item;
}

} // namespace

class tst_ItemPainting : public ZelTest
{
    Q_OBJECT

private slots:
    void haloLiesAroundItsOwner()
    {
        ZelEllipseItem ellipse(QRectF(-10.0, -10.0, 20.0, 20.0));
        const auto feature = sticky(20.0, ComponentStateOff);
        for (ZelGItem *owner : QList<ZelGItem *>{&ellipse, feature.get()}) {
            auto *const item = owner->asEllipseItem()
                ? static_cast<QGraphicsItem *>(owner->asEllipseItem())
                : owner->asRectItemMcpSticky();
            Stage stage(item);
            stage.render(&stage.image);
            const QImage plain = stage.image;
            owner->setHighlightItem(true);
            stage.render(&stage.image);
            // Rim and filling are as before; the glow begins at the rim and fades away.
            for (const double x : {0.0, 5.0, 8.0, 9.5})
                QCOMPARE(
                    stage.at({x, 0.0}), QColor(plain.pixelColor(int((x + 20.0) * Scale), 160)));
            QVERIFY(isBluish(stage.at({10.6, 0.0})) && isBluish(stage.at({0.0, -10.6})));
            QVERIFY(stage.at({12.0, 0.0}).red() > stage.at({10.6, 0.0}).red() + 20);
            QCOMPARE(stage.at({15.0, 0.0}), QColor(Qt::white));
            owner->setHighlightItem(false);
            stage.render(&stage.image);
            QCOMPARE(stage.image, plain);
        }
    }

    void haloCoversALine()
    {
        ZelLineItem line;
        line.setLine(-10.0, 0.0, 10.0, 0.0);
        Stage stage(&line);
        line.setHighlightItem(true);
        stage.render(&stage.image);
        QVERIFY(isBluish(stage.at({0.0, 0.0})) && isBluish(stage.at({0.0, 1.0})));
        QCOMPARE(stage.at({0.0, 5.0}), QColor(Qt::white));
    }

    void haloIsNoBitmapInVectorGraphics()
    {
        const auto draw = [](QGraphicsItem *item) {
            QBuffer buffer;
            QSvgGenerator svg;
            svg.setOutputDevice(&buffer);
            svg.setSize((shown.size() * Scale).toSize());
            Stage stage(item);
            stage.render(&svg);
            return buffer.data();
        };
        ZelEllipseItemBst site(QRectF(-6.0, -6.0, 12.0, 12.0));
        const QByteArray plain = draw(&site);
        site.setHighlight(true);
        const QByteArray halo = draw(&site);
        site.setAlwaysHighlight(true);
        const QByteArray ring = draw(&site);
        QVERIFY(halo.count("stroke-opacity") > plain.count("stroke-opacity"));
        QVERIFY(ring.count("stroke-opacity") > halo.count("stroke-opacity"));
        QVERIFY(!ring.contains("<image"));
    }

    void featureStaysInItsSquare_data()
    {
        rows<double>(
            {"side"}, {{"as made", {8.0}}, {"small", {3.0}}, {"smaller than its pen", {0.75}}});
    }

    void featureStaysInItsSquare()
    {
        QFETCH(double, side);
        for (const int state : {ComponentStateOn, ComponentStateOff}) {
            const auto feature = sticky(side, state);
            Stage stage(feature.get());
            stage.render(&stage.image);
            // On and Off differ in the middle at every size, and neighbours keep their gap.
            QCOMPARE(
                stage.at({0.0, 0.0}), QColor(state == ComponentStateOn ? Qt::black : Qt::white));
            const double beyond = side / 2.0 + 0.2;
            QCOMPARE(stage.at({beyond, 0.0}), QColor(Qt::white));
            QCOMPARE(stage.at({-beyond, -beyond}), QColor(Qt::white));
        }
    }

    void numberStaysInItsSite_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<double>("diameter");
        for (const double diameter : {8.0, 12.0, 20.0}) {
            for (const char *number : {"8", "48", "128", "1000"})
                QTest::addRow("%s in %g", number, diameter) << QString(number) << diameter;
        }
    }

    void numberStaysInItsSite()
    {
        QFETCH(QString, number);
        QFETCH(double, diameter);
        ZelEllipseItemBst site(QRectF(-diameter / 2.0, -diameter / 2.0, diameter, diameter));
        site.setPen(Qt::NoPen);
        Stage stage(&site);
        site.setLabel(number);
        stage.render(&stage.image);
        // All ink keeps clear of the rim, which is 1 wide.
        bool hasInk = false;
        for (int y = 0; y < stage.image.height(); ++y) {
            for (int x = 0; x < stage.image.width(); ++x) {
                if (stage.image.pixelColor(x, y).lightness() > 128)
                    continue;
                hasInk = true;
                const QPointF p = QPointF(x + 0.5, y + 0.5) / Scale + shown.topLeft();
                QVERIFY(std::hypot(p.x(), p.y()) < diameter / 2.0 - 1.0);
            }
        }
        QVERIFY(hasInk);
    }

    void plateTextFitsThePlate_data()
    {
        rows<QString, QSizeF, bool>({"text", "size", "smaller"},
            {{"short", {"12", QSizeF(100.0, 60.0), false}},
                {"too long", {"a name that is too long", QSizeF(100.0, 60.0), true}},
                {"too high", {"1", QSizeF(100.0, 12.0), true}},
                {"plate without extent", {"1", QSizeF(), false}}});
    }

    void plateTextFitsThePlate()
    {
        QFETCH(QString, text);
        QFETCH(QSizeF, size);
        QFETCH(bool, smaller);
        ZelRectItemWithText plate(QRectF(QPointF(30.0, -40.0), size.expandedTo({0.0, 0.0})));
        plate.setText(text);
        auto *const label =
            dynamic_cast<QGraphicsSimpleTextItem *>(plate.childItems().constFirst());
        QVERIFY(label);
        QCOMPARE(label->font().pointSize(), 20);
        QCOMPARE(label->scale() < 1.0, smaller);
        const QRectF place = label->mapRectToParent(label->boundingRect());
        QVERIFY((place.center() - plate.rect().center()).manhattanLength() < 1e-6);
        QVERIFY(plate.rect().isEmpty() || plate.rect().contains(place));
    }

    void nameIsLegibleOverADarkDrawing()
    {
        SdcMcp mcp(nullptr);
        mcp.setProperty(SdcProperty::ShortName, QStringLiteral("l"));
        ZelTextItemLabel label;
        label.setSdc(&mcp);
        Stage stage(&label, Qt::black);
        label.setPos(-label.boundingRect().center());
        stage.render(&stage.image);
        int darkest = 255;
        for (double x = -3.0; x <= 3.0; x += 0.125)
            darkest = std::min(darkest, stage.at({x, 0.0}).lightness());
        QVERIFY(darkest < 40); // the letter
        QVERIFY(stage.at({-4.0, 0.0}).lightness() > 150 && stage.at({4.0, 0.0}).lightness() > 150);
        QCOMPARE(stage.at({-15.0, 15.0}), QColor(Qt::black));
    }
};

ZEL_TEST(tst_ItemPainting)
#include "tst_ItemPainting.moc"
