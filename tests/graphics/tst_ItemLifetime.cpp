#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCpx.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QGraphicsScene>
#include <QPointer>

#include <algorithm>
#include <memory>

namespace {

QRectF disc(double diameter)
{
    return {-diameter / 2.0, -diameter / 2.0, diameter, diameter};
}

// Two components, each with a site and a feature, joined by a backbone and by a bond.
struct Drawing
{
    Drawing()
    {
        for (int i = 0; i < 2; ++i) {
            mcps[i] = new SdcMcp(nullptr);
            bsts[i] = new SdcBst(nullptr);
            mol->addSdcMcp(mcps[i]);
            mcps[i]->addSdcBst(bsts[i]);
            mcpItems[i] = new ZelEllipseItemMcp(disc(40));
            mcpItems[i]->setPos(100.0 * i, 0.0);
            scene->addItem(mcpItems[i]);
            mcpItems[i]->setSdcMcp(mcps[i]);
            bstItems[i] = new ZelEllipseItemBst(disc(10), mcpItems[i]);
            bstItems[i]->setPos(0.0, 20.0);
            bstItems[i]->setSdcBst(bsts[i]);
            mcps[i]->addTag(QStringLiteral("P"), QStringLiteral("#ff0000"));
            stickies[i] = mcpItems[i]->getSticky(0);
            tags[i] = stickies[i]->getSdcMcpTag();
        }
        backbone = new ZelLineItemMcpMcp(mcpItems[0], mcpItems[1]);
        line = new ZelLineItemBstBstCpx;
        scene->addItem(line);
        line->setSdc(bond.get());
        bond->setZelLineItemBstBst(line);
        bond->addSdcBst(bsts[0]);
        bond->addSdcBst(bsts[1]);
        line->updateLine();
        mcps[0]->setProperty(SdcProperty::Negation, QStringLiteral("1"));
        mcps[0]->updateMcpNot();
        for (Sdc *sdc : {static_cast<Sdc *>(mol.get()), static_cast<Sdc *>(bond.get())})
            sdc->setHighlight(true);
    }

    // What a host does to a drawing of which parts are gone; must be safe at any time.
    void use()
    {
        for (int i = 0; i < 2; ++i) {
            if (mcps[i]) {
                mcps[i]->setProperty(SdcProperty::ShortName, QStringLiteral("changed"));
                mcps[i]->setAllStickyState(ComponentStateOff);
                mcps[i]->getListNeighborSdcMcps();
                mcps[i]->updateStatePropertyFromSticky();
            }
            if (tags[i])
                tags[i]->setProperty(SdcProperty::ShortName, QStringLiteral("pY"));
            if (mcpItems[i]) {
                mcpItems[i]->setHighlight(i == 0);
                mcpItems[i]->notifyPosChanged();
                mcpItems[i]->updateMcpMcpPos();
                mcpItems[i]->getListNeighborZelEllipseItemMcp();
                mcpItems[i]->updateLayoutOfListStateSticky(true);
                mcpItems[i]->slot_updateToolTips();
            }
            if (bstItems[i]) {
                bstItems[i]->setLabel(QStringLiteral("1"));
                bstItems[i]->setBindingStatus(BindingStatusUnbound);
                bstItems[i]->updateBindStatusDisplay(true);
                bstItems[i]->setHighlight(true);
                bstItems[i]->notifyPosChanged();
            }
        }
        if (bond) {
            bond->updateBstPos();
            bond->setHighlight(true, true);
        }
        if (line)
            line->updateLine();
        if (backbone)
            backbone->updateLine();
    }

    std::unique_ptr<QGraphicsScene> scene = std::make_unique<QGraphicsScene>();
    std::unique_ptr<SdcMol> mol = std::make_unique<SdcMol>(nullptr);
    std::unique_ptr<SdcBstBstCpx> bond = std::make_unique<SdcBstBstCpx>(nullptr);
    QPointer<SdcMcp> mcps[2];
    QPointer<SdcBst> bsts[2];
    QPointer<SdcMcpTag> tags[2];
    QPointer<ZelEllipseItemMcp> mcpItems[2];
    QPointer<ZelEllipseItemBst> bstItems[2];
    QPointer<ZelRectItemMcpSticky> stickies[2];
    QPointer<ZelLineItemMcpMcp> backbone;
    QPointer<ZelLineItemBstBstCpx> line;
};

} // namespace

class tst_ItemLifetime : public ZelTest
{
    Q_OBJECT

private slots:
    void partsDieInAnyOrder_data()
    {
        QTest::addColumn<QString>("order");
        // m molecule, b bond, s scene, 0 and 1 component items, x site item 0, t sticky 0, k
        // backbone, l line
        QString order = QStringLiteral("bms");
        do {
            QTest::newRow(qPrintable(QLatin1String("all at once: ") + order)) << order;
        } while (std::next_permutation(order.begin(), order.end()));
        for (const char *parts : {"0mb1s", "1s0bm", "0b", "10m", "x0bm", "xlb", "lbms", "lsbm",
                 "t0m", "mt0", "k01", "0k1m", "k1m0", "sm", "m01lb", "mxtb", "txlk01bms"})
            QTest::newRow(parts) << QString::fromLatin1(parts);
    }

    void partsDieInAnyOrder()
    {
        QFETCH(QString, order);
        Drawing drawing;
        for (const QChar part : order) {
            switch (part.toLatin1()) {
            case 'm':
                drawing.mol.reset();
                break;
            case 'b':
                drawing.bond.reset();
                break;
            case 's':
                drawing.scene.reset();
                break;
            case '0':
                delete drawing.mcpItems[0];
                break;
            case '1':
                delete drawing.mcpItems[1];
                break;
            case 'x':
                delete drawing.bstItems[0];
                break;
            case 't':
                delete drawing.stickies[0];
                break;
            case 'k':
                delete drawing.backbone;
                break;
            case 'l':
                delete drawing.line;
                break;
            }
            drawing.use();
            // Sites that lost their molecule say so when they are asked for their number.
            takeDebugLines();
        }
        const bool sceneLeft = !order.contains(u's');
        QCOMPARE(!drawing.mcpItems[0].isNull(), sceneLeft && !order.contains(u'0'));
        QCOMPARE(!drawing.mcps[0].isNull(), !order.contains(u'm'));
    }

    void deadStickyLeavesItsRow()
    {
        Drawing drawing;
        delete drawing.stickies[0];
        QVERIFY(drawing.mcpItems[0]->getListSticky().isEmpty());
        QVERIFY(!drawing.mcpItems[0]->getSticky(0));
        QVERIFY(drawing.mcps[0]->getListSdcMcpTags().isEmpty());
        QCOMPARE(drawing.mcps[0]->getMcpStateCode(), QString());

        // A sticky given to another component belongs to that one only.
        drawing.mcpItems[0]->addStateSticky(drawing.stickies[1], true);
        QVERIFY(drawing.mcpItems[1]->getListSticky().isEmpty());
        QCOMPARE(drawing.stickies[1]->getSdcMcp(), drawing.mcps[0].data());
        delete drawing.mcpItems[1];
        QVERIFY(!drawing.stickies[1].isNull());
    }

    void removedStickyTakesItsFeatureAlong()
    {
        Drawing drawing;
        drawing.mcps[0]->addTag(QStringLiteral("Q"), QStringLiteral("#00ff00"));
        drawing.mcpItems[0]->removeStateSticky(nullptr);
        drawing.mcpItems[0]->removeStateSticky(drawing.stickies[1]);
        QVERIFY(!drawing.stickies[1].isNull());
        drawing.mcpItems[0]->removeStateSticky(drawing.stickies[0]);
        QVERIFY(drawing.stickies[0].isNull() && drawing.tags[0].isNull());
        QCOMPARE(drawing.mcps[0]->getListSdcMcpTags().size(), 1);
        QCOMPARE(drawing.mcps[0]->getMcpStateCode(), QStringLiteral("Q"));
        // The row has closed around the one that is left.
        ZelRectItemMcpSticky *const left = drawing.mcpItems[0]->getSticky(0);
        QVERIFY((left->mapRectToParent(left->rect()).center()).manhattanLength() < 1e-9);
    }

    void lineLeavesItsBondAlone()
    {
        Drawing drawing;
        // A line that only shows the bond does not unregister the bond's own line.
        {
            ZelLineItemBstBst other;
            other.setSdc(drawing.bond.get());
        }
        QCOMPARE(drawing.bond->getZelLineItemBstBst(), drawing.line.data());
        delete drawing.line;
        QVERIFY(!drawing.bond->getZelLineItemBstBst());
        QCOMPARE(drawing.bond->getPartnerSdcBst(drawing.bsts[0]), drawing.bsts[1].data());
    }
};

ZEL_TEST(tst_ItemLifetime)
#include "tst_ItemLifetime.moc"
