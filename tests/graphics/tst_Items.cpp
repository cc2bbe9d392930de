#include "support/ZelTest.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelHighlightItem.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCpx.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelRectItemWithText.h"
#include "zelModelSupport/graphics/ZelTextItemLabel.h"
#include "zelModelSupport/graphics/ZelTextItemLabelCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelShare/ZelSettings.h"

#include <QGraphicsScene>
#include <QSettings>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace {

QRectF disc(double diameter)
{
    return {-diameter / 2.0, -diameter / 2.0, diameter, diameter};
}

// A complex of one molecule with one component and one site, drawn.
struct DrawnComplex
{
    DrawnComplex()
    {
        cpx.addSdcChild(mol, true);
        mol->addSdcMcp(mcp);
        mcp->addSdcBst(bst);
        scene.addItem(mcpItem);
        mcpItem->setSdcMcp(mcp);
        bstItem->setPos(20.0, 0.0);
        bstItem->setSdcBst(bst);
    }

    QGraphicsScene scene;
    SdcCpx cpx{nullptr};
    SdcMol *mol = new SdcMol(nullptr);
    SdcMcp *mcp = new SdcMcp(nullptr);
    SdcBst *bst = new SdcBst(nullptr);
    ZelEllipseItemMcp *mcpItem = new ZelEllipseItemMcp(disc(40));
    ZelEllipseItemBst *bstItem = new ZelEllipseItemBst(disc(10), mcpItem);
};

// Two sites of a bond, drawn as circles of diameter 10 in a scene.
struct DrawnBond
{
    DrawnBond()
    {
        for (int i = 0; i < 2; ++i) {
            items[i]->setPos(50.0 * i, 0.0);
            items[i]->setSdcBst(&sites[i]);
            scene.addItem(items[i]);
        }
        line->setSdc(&bond);
        bond.setZelLineItemBstBst(line);
    }

    QGraphicsScene scene;
    SdcBst sites[2]{SdcBst(nullptr), SdcBst(nullptr)};
    SdcBstBst bond{nullptr};
    ZelEllipseItemBst *items[2]{new ZelEllipseItemBst(disc(10)), new ZelEllipseItemBst(disc(10))};
    ZelLineItemBstBst *line = new ZelLineItemBstBst;
};

} // namespace

class tst_Items : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The tooltip style is a setting of the user.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settingsFolder.path());
    }

    void kindsAndCasts_data()
    {
        rows<std::function<QGraphicsItem *()>, int, QString>({"make", "type", "kinds"},
            {{"ellipse", {[] { return new ZelEllipseItem; }, 65537, "Ellipse"}},
                {"component", {[] { return new ZelEllipseItemMcp; }, 65537, "Ellipse Mcp"}},
                {"site", {[] { return new ZelEllipseItemBst; }, 65537, "Ellipse Bst"}},
                {"line", {[] { return new ZelLineItem; }, 65540, "Line"}},
                {"backbone", {[] { return new ZelLineItemMcpMcp; }, 65540, "Line McpMcp"}},
                {"bond", {[] { return new ZelLineItemBstBst; }, 65540, "Line BstBst"}},
                {"mli bond", {[] { return new ZelLineItemBstBstMli; }, 65540, "Line BstBst Mli"}},
                {"cpx bond", {[] { return new ZelLineItemBstBstCpx; }, 65540, "Line BstBst Cpx"}},
                {"cxi bond", {[] { return new ZelLineItemBstBstCxi; }, 65540, "Line BstBst Cxi"}},
                {"rect", {[] { return new ZelRectItem; }, 65546, "Rect"}},
                {"sticky",
                    {[] { return new ZelRectItemMcpSticky(nullptr); }, 65547, "Rect Sticky"}},
                {"no item of ours", {[] { return new QGraphicsEllipseItem; }, 4, ""}}});
    }

    void kindsAndCasts()
    {
        QFETCH(std::function<QGraphicsItem *()>, make);
        QFETCH(int, type);
        QFETCH(QString, kinds);
        const std::unique_ptr<QGraphicsItem> item(make());
        auto *const gItem = dynamic_cast<ZelGItem *>(item.get());
        QCOMPARE(item->type(), type);
        // Each cast gives the item itself or nothing.
        QStringList found;
        const auto ask = [&](const char *kind, ZelGItem *cast) {
            if (cast && cast == gItem)
                found.append(QLatin1String(kind));
            else if (cast)
                found.append(QStringLiteral("!"));
        };
        ask("Ellipse", ZelGItem::toZelEllipseItem(item.get()));
        ask("Mcp", ZelGItem::toZelEllipseItemMcp(item.get()));
        ask("Bst", ZelGItem::toZelEllipseItemBst(item.get()));
        ask("Line", ZelGItem::toZelLineItem(item.get()));
        ask("McpMcp", gItem ? gItem->asLineItemMcpMcp() : nullptr);
        ask("BstBst", gItem ? gItem->asLineItemBstBst() : nullptr);
        ask("Mli", ZelGItem::toZelLineItemBstBstMli(item.get()));
        ask("Cpx", gItem ? gItem->asLineItemBstBstCpx() : nullptr);
        ask("Cxi", gItem ? gItem->asLineItemBstBstCxi() : nullptr);
        ask("Rect", gItem ? gItem->asRectItem() : nullptr);
        ask("Sticky", ZelGItem::toZelRectItemMcpSticky(item.get()));
        QCOMPARE(found.join(u' '), kinds);
        QCOMPARE(ZelGItem::toZelRectItem(item.get()) != nullptr, kinds == QLatin1String("Rect"));
    }

    void registration()
    {
        SdcMcp mcp(nullptr);
        ZelEllipseItemMcp item;
        item.setSdcMcp(&mcp);
        {
            // An item of another shape shows the component without taking its place.
            ZelRectItem rect;
            rect.setSdc(&mcp);
            QCOMPARE(mcp.getZelEllipseItemMcp(), &item);
            // The one registered last counts; the one before may go without taking it along.
            ZelEllipseItemMcp later;
            later.setSdcMcp(&mcp);
            QCOMPARE(mcp.getZelEllipseItemMcp(), &later);
            mcp.setZelEllipseItemMcp(&item);
        }
        QCOMPARE(mcp.getZelEllipseItemMcp(), &item);
        item.setSdc(nullptr);
        QVERIFY(!item.getSdcMcp());
    }

    void siteKeepsItsFirstItem()
    {
        SdcBst bst(nullptr);
        ZelEllipseItemBst first;
        ZelEllipseItemBst second;
        first.setSdcBst(&bst);
        second.setSdcBst(&bst);
        QCOMPARE(bst.getZelEllipseItemBst(), &first);
        QCOMPARE(second.getSdcBst(), &bst);
        bst.setProperty(SdcProperty::ShortName, QStringLiteral("SH2"));
        QVERIFY(second.toolTip().contains(u"SH2"));
    }

    void tooltips_data()
    {
        rows<int, bool, QString, bool, QString>(
            {"style", "site", "molName", "statusShown", "expected"},
            {{"name of a site", {1, true, "Grb2", true, "s"}},
                {"name of a component", {1, false, "Grb2", true, "SH2"}},
                {"path of a component", {2, false, "Grb2", true, "Grb2 / SH2"}},
                {"path of a site", {2, true, "Grb2", false, "Grb2 / SH2 / s"}},
                {"path and status of a site", {2, true, "Grb2", true, "Grb2 / SH2 / s -- Bound"}},
                {"molecule without a name", {2, true, "", true, "SH2 / s -- Bound"}},
                {"component of a nameless molecule", {2, false, "", true, "SH2"}},
                {"none", {0, true, "Grb2", true, ""}},
                {"unknown style", {3, false, "Grb2", true, ""}}});
    }

    void tooltips()
    {
        QFETCH(int, style);
        QFETCH(bool, site);
        QFETCH(QString, molName);
        QFETCH(bool, statusShown);
        DrawnComplex drawn;
        drawn.mol->setProperty(SdcProperty::ShortName, molName);
        drawn.mcp->setProperty(SdcProperty::ShortName, QStringLiteral("SH2"));
        drawn.bst->setProperty(SdcProperty::ShortName, QStringLiteral("s"));
        drawn.bst->setBindingStatus(BindingStatusBound);
        drawn.cpx.setBstBindingStatusEnabled(statusShown);
        const int before = ZelSettings::getMoleculeTooltipsType();
        ZelSettings::setMoleculeTooltipsType(style);
        QGraphicsItem *const item = site ? static_cast<QGraphicsItem *>(drawn.bstItem)
                                         : static_cast<QGraphicsItem *>(drawn.mcpItem);
        item->setToolTip(QStringLiteral("stale"));
        (site ? static_cast<Sdc *>(drawn.bst) : drawn.mcp)->setChanged();
        ZelSettings::setMoleculeTooltipsType(before);
        QTEST(item->toolTip(), "expected");
    }

    void tooltipFollowsTheComponentShown()
    {
        SdcMcp first(nullptr);
        SdcMcp second(nullptr);
        ZelEllipseItemMcp item;
        item.setSdcMcp(&first);
        item.setSdcMcp(&first);
        item.setSdcMcp(&second);
        second.setProperty(SdcProperty::ShortName, QStringLiteral("second"));
        first.setProperty(SdcProperty::ShortName, QStringLiteral("first"));
        QCOMPARE(item.toolTip(), QStringLiteral("second"));

        // Other components leave the tooltip alone.
        SdcMol mol(nullptr);
        item.setSdc(&mol);
        mol.setProperty(SdcProperty::ShortName, QStringLiteral("molecule"));
        QCOMPARE(item.toolTip(), QStringLiteral("second"));
    }

    void collisionsBetweenEllipses()
    {
        QGraphicsScene scene;
        auto *const large = new ZelEllipseItemMcp(disc(40));
        auto *const inside = new ZelEllipseItemMcp(disc(10));
        auto *const near = new ZelEllipseItemMcp(disc(40));
        scene.addItem(large);
        scene.addItem(inside);
        scene.addItem(near);
        inside->setPos(5.0, 5.0);
        near->setPos(40.6, 0.0);

        QVERIFY(large->intersectsWithZelEllipseItem(inside));
        QVERIFY(large->containsZelEllipseItem(inside));
        QVERIFY(!inside->containsZelEllipseItem(large));
        QVERIFY(!large->intersectsWithZelEllipseItem(near));
        // The toolkit agrees: no pen makes two ellipses overlap that lie apart.
        QVERIFY(!large->collidesWithItem(near));
        near->setPos(39.0, 0.0);
        QVERIFY(large->intersectsWithZelEllipseItem(near));
        QVERIFY(!large->containsZelEllipseItem(near));
        // The corners of the rectangles overlap, the ellipses do not.
        near->setPos(35.0, 35.0);
        QVERIFY(!large->intersectsWithZelEllipseItem(near));

        QVERIFY(!large->intersectsWithZelEllipseItem(nullptr));
        ZelEllipseItemMcp elsewhere(disc(40));
        QVERIFY(!large->intersectsWithZelEllipseItem(&elsewhere));
        QVERIFY(!elsewhere.intersectsWithZelEllipseItem(&elsewhere));
        QGraphicsScene other;
        other.addItem(&elsewhere);
        QVERIFY(!large->intersectsWithZelEllipseItem(&elsewhere));
        other.removeItem(&elsewhere);
    }

    void interactionHighlights()
    {
        DrawnComplex drawn;
        auto *const probe = new ZelEllipseItem(disc(10));
        drawn.scene.addItem(probe);

        // Over the site only.
        probe->setPos(29.0, 0.0);
        QVERIFY(probe->intersectsWithSdc(drawn.mol));
        QVERIFY(!probe->intersectsWithListScp({nullptr, drawn.mcp}, false));
        QVERIFY(probe->intersectsWithListScp({drawn.mcp}, true));
        probe->hightlightInteractionWithSdc(drawn.mol);
        QVERIFY(probe->isHighlighted() && drawn.bstItem->isHighlighted()
            && !drawn.mcpItem->isHighlighted());

        // Away from all, nothing is touched.
        probe->setHighlight(false);
        probe->setPos(100.0, 0.0);
        probe->hightlightInteractionWithSdc(drawn.mol);
        QVERIFY(!probe->isHighlighted());
        probe->hightlightInteractionWithSdc(nullptr);

        // An item never interacts with itself, though it is one of the molecule's.
        QCOMPARE(drawn.mcpItem->getInteractedListZelEllipseItem(drawn.mol),
            QList<ZelEllipseItem *>{drawn.bstItem});

        probe->setRect(disc(200.0));
        probe->setPos(0.0, 0.0);
        QVERIFY(probe->containsSdc(drawn.mol) && probe->containsListScp({drawn.mcp}, true));
        QVERIFY(!drawn.mcpItem->containsSdc(nullptr));
    }

    void haloFollowsItsOwner()
    {
        ZelEllipseItem ellipse(disc(20));
        QVERIFY(!ellipse.getHighlightItem());
        ellipse.setHighlight(true);
        auto *const ring =
            qgraphicsitem_cast<QGraphicsEllipseItem *>(ellipse.getHighlightItem()->getHaloItem());
        QVERIFY(ring && ring->isVisible());
        QCOMPARE(ring->rect(), disc(20));
        QCOMPARE(ring->pen().widthF(), 2.0);
        QCOMPARE(ring->zValue(), -1.0);
        ellipse.setRect(disc(30));
        ellipse.setHighlight(false);
        QVERIFY(!ring->isVisible());
        QCOMPARE(ring->rect(), disc(30));
        QCOMPARE(ellipse.boundingRect(), disc(30));
    }

    void bondLineIsTrimmedAndFollows()
    {
        DrawnBond drawn;
        drawn.scene.addItem(drawn.line);
        drawn.line->addZelEllipseItemBst(drawn.items[0]);
        drawn.line->addZelEllipseItemBst(drawn.items[1]);
        QCOMPARE(drawn.bond.getSdcBst2(), &drawn.sites[1]);
        QCOMPARE(drawn.line->getListZelEllipseItemBst(),
            (QList<ZelEllipseItemBst *>{drawn.items[0], drawn.items[1]}));

        drawn.line->updateLine();
        QCOMPARE(drawn.line->line(), QLineF(6, 0, 44, 0));
        QCOMPARE(drawn.line->zValue(), 4.0);

        drawn.items[1]->setPos(0.0, 80.0);
        drawn.items[1]->notifyPosChanged();
        QCOMPARE(drawn.line->line(), QLineF(0, 6, 0, 74));

        // A line that lies elsewhere still runs between the sites, and its halo with it.
        drawn.line->setHighlight(true, true);
        QVERIFY(drawn.items[0]->isHighlighted() && drawn.items[1]->isHighlighted());
        drawn.line->setPos(10.0, 10.0);
        drawn.line->updateLine();
        QCOMPARE(drawn.line->line(), QLineF(-10, -4, -10, 64));
        auto *const halo =
            qgraphicsitem_cast<QGraphicsLineItem *>(drawn.line->getHighlightItem()->getHaloItem());
        QCOMPARE(halo->line(), drawn.line->line());
        drawn.line->setHighlight(false, false);
        QVERIFY(drawn.items[0]->isHighlighted() && !drawn.line->isHighlighted());
    }

    void bondLineNeedsBothSitesInItsScene()
    {
        DrawnBond drawn;
        const QLineF untouched(1, 2, 3, 4);
        drawn.line->setLine(untouched);
        drawn.line->updateLine(); // no sites
        drawn.bond.addSdcBst(&drawn.sites[0]);
        drawn.line->updateLine(); // one site
        drawn.bond.addSdcBst(&drawn.sites[1]);
        drawn.line->updateLine(); // line in no scene
        QCOMPARE(drawn.line->line(), untouched);
        drawn.scene.addItem(drawn.line);
        drawn.scene.removeItem(drawn.items[1]);
        drawn.line->updateLine();
        QCOMPARE(drawn.line->line(), untouched);
        QCOMPARE(drawn.line->zValue(), 0.0);
        delete drawn.items[1];
        drawn.line->updateLine(); // site without item
        QCOMPARE(drawn.line->line(), untouched);
        QCOMPARE(drawn.line->getListZelEllipseItemBst().size(), 1);
    }

    void bondLineRefusesItemsWithoutSite()
    {
        DrawnBond drawn;
        drawn.scene.addItem(drawn.line);
        ZelEllipseItemBst bare(disc(10));
        drawn.line->addZelEllipseItemBst(&bare);
        drawn.line->addZelEllipseItemBst(nullptr);
        const QString text = QStringLiteral(
            "Error found at void ZelLineItemBstBst::addZelEllipseItemBst(ZelEllipseItemBst * s)");
        QCOMPARE(takeDebugLines(), (QStringList{text, text}));
        QVERIFY(!drawn.bond.getSdcBst1());

        ZelLineItemBstBst withoutBond;
        withoutBond.addZelEllipseItemBst(drawn.items[0]);
        QVERIFY(withoutBond.getListZelEllipseItemBst().isEmpty());
    }

    void linesWithABondOfTheirOwn()
    {
        ZelLineItemBstBstCxi without(false, nullptr);
        QVERIFY(!without.getSdc());
        ZelLineItemBstBstCxi refused(true, nullptr);
        QVERIFY(!refused.getSdc());
        QCOMPARE(takeDebugText(),
            "Error in ZelLineItemBstBstCxi::ZelLineItemBstBstCxi(bool createSdc, ZelDbSqliteModel "
            "* zelDbSqliteModel)");

        // The bond belongs to the model and outlives its line.
        ZelDbSqliteModel model(nullptr);
        auto line = std::make_unique<ZelLineItemBstBstCxi>(true, &model);
        const QPointer<SdcBstBstCxi> bond = line->getSdcBstBstCxi();
        QVERIFY(bond);
        QCOMPARE(bond->QObject::parent(), &model);
        QCOMPARE(bond->getZelLineItemBstBst(), line.get());
        QVERIFY(ZelLineItemBstBstMli(true, &model).getSdcBstBstMli());
        QVERIFY(ZelLineItemBstBstCpx(true, &model).getSdcBstBstCpx());
        line.reset();
        QVERIFY(bond && !bond->getZelLineItemBstBst());
    }

    void backbones()
    {
        QGraphicsScene scene;
        ZelEllipseItemMcp *items[3];
        for (int i = 0; i < 3; ++i) {
            items[i] = new ZelEllipseItemMcp(disc(20));
            items[i]->setPos(50.0 * i, 0.0);
            scene.addItem(items[i]);
        }
        auto *const line = new ZelLineItemMcpMcp(items[0], items[1]);
        QCOMPARE(line->parentItem(), items[0]);
        QCOMPARE(line->line(), QLineF(10, 0, 40, 0));
        new ZelLineItemMcpMcp(items[1], items[2]);
        QCOMPARE(items[1]->getListNeighborZelEllipseItemMcp(),
            (QList<ZelEllipseItemMcp *>{items[0], items[2]}));
        items[0]->addMcpMcp(line); // a second time
        items[2]->addMcpMcp(line); // a line of others
        QCOMPARE(takeDebugLines().size(), 1);
        for (ZelEllipseItemMcp *end : {items[0], items[2]})
            QCOMPARE(end->getListMcpMcp().size(), 1);

        // Moving either end, the line runs from rim to rim in its parent's coordinates.
        items[0]->setPos(0.0, 100.0);
        items[1]->setPos(0.0, 0.0);
        items[1]->updateMcpMcpPos();
        QCOMPARE(line->line(), QLineF(0, -10, 0, -90));
        items[1]->removeMcpMcp(line);
        QVERIFY(items[0]->getListNeighborZelEllipseItemMcp().isEmpty());
        items[0]->updateMcpMcpPos();
    }

    void labels()
    {
        DrawnComplex drawn;
        drawn.mcpItem->setPos(30.0, -70.0);
        auto *const label = new ZelTextItemLabelCpx;
        drawn.scene.addItem(label);
        label->setSdcCpx(&drawn.cpx);
        QVERIFY(!label->isVisible());
        for (const char *name : {"Grb2.Sos", "Grb2 with Sos"}) {
            drawn.cpx.setProperty(SdcProperty::ShortName, QLatin1String(name));
            QVERIFY(label->isVisible());
            QCOMPARE(label->toPlainText(), QLatin1String(name));
            QCOMPARE(label->sceneBoundingRect().center(), QPointF(30.0, -70.0));
        }
        QCOMPARE(label->font().weight(), int(QFont::Bold));
        drawn.cpx.setProperty(SdcProperty::ShortName, QString());
        QVERIFY(!label->isVisible());

        auto gone = std::make_unique<SdcMol>(nullptr);
        gone->setProperty(SdcProperty::ShortName, QStringLiteral("Grb2"));
        ZelTextItemLabel molLabel;
        molLabel.setSdc(gone.get());
        QVERIFY(molLabel.isVisible());
        ZelRectItemWithText rect(QRectF(10, 10, 100, 60));
        rect.setSdc(gone.get());
        QCOMPARE(rect.getText(), QStringLiteral("Grb2"));
        gone.reset();
        QVERIFY(!molLabel.isVisible());
        QVERIFY(!rect.getSdc());
    }

private:
    QTemporaryDir m_settingsFolder;
};

ZEL_TEST(tst_Items)
#include "tst_Items.moc"
