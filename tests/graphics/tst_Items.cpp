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
#include <QGraphicsSimpleTextItem>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace {

QRectF disc(double diameter)
{
    return {-diameter / 2.0, -diameter / 2.0, diameter, diameter};
}

// The names of the kinds that the item answers to; a pair that disagrees is named with "!".
QStringList kindsOf(ZelGItem *item)
{
    const QList<std::tuple<const char *, bool, bool>> pairs{
        {"Host", item->asHostItem() != nullptr, item->isHostItem()},
        {"Ellipse", item->asEllipseItem() != nullptr, item->isEllipseItem()},
        {"Mcp", item->asEllipseItemMcp() != nullptr, item->isEllipseItemMcp()},
        {"Bst", item->asEllipseItemBst() != nullptr, item->isEllipseItemBst()},
        {"Line", item->asLineItem() != nullptr, item->isLineItem()},
        {"BstBst", item->asLineItemBstBst() != nullptr, item->isLineItemBstBst()},
        {"Mli", item->asLineItemBstBstMli() != nullptr, item->isLineItemBstBstMli()},
        {"McpMcp", item->asLineItemMcpMcp() != nullptr, item->isLineItemMcpMcp()},
        {"Cpx", item->asLineItemBstBstCpx() != nullptr, item->isLineItemBstBstCpx()},
        {"Cxi", item->asLineItemBstBstCxi() != nullptr, item->isLineItemBstBstCxi()},
        {"HostLine", item->asHostLineItem() != nullptr, item->isHostLineItem()},
        {"Rect", item->asRectItem() != nullptr, item->isRectItem()},
        {"HostRect", item->asHostRectItem() != nullptr, item->isHostRectItem()},
        {"Sticky", item->asRectItemMcpSticky() != nullptr, item->isRectItemMcpSticky()},
        {"HostLabel", item->asHostLabelItem() != nullptr, item->isHostLabelItem()},
    };
    QStringList kinds;
    for (const auto &[name, as, is] : pairs) {
        if (as != is)
            kinds.append(QLatin1String("!") + QLatin1String(name));
        else if (as)
            kinds.append(QLatin1String(name));
    }
    return kinds;
}

} // namespace

class tst_Items : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void kindsAndCasts_data();
    void kindsAndCasts();
    void castsOfOtherItems();
    void registration();
    void siteKeepsItsFirstItem();
    void tooltips_data();
    void tooltips();
    void tooltipFollowsTheComponentShown();
    void collisionsBetweenEllipses();
    void interactionHighlights();
    void haloFollowsItsOwner();
    void bondLineIsTrimmedAndFollows();
    void bondLineNeedsBothSitesInItsScene();
    void bondLineRefusesItemsWithoutSite();
    void linesWithABondOfTheirOwn();
    void backbones();
    void moveNotifiesSites();
    void labels();

private:
    QTemporaryDir m_settingsFolder;
};

void tst_Items::initTestCase()
{
    // The tooltip style is a setting of the user.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settingsFolder.path());
}

void tst_Items::kindsAndCasts_data()
{
    using Maker = std::function<QGraphicsItem *()>;
    QTest::addColumn<Maker>("make");
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("kinds");
    const auto row = [](const char *name, Maker make, int type, const char *kinds) {
        QTest::newRow(name) << make << type << QString::fromLatin1(kinds).split(u' ');
    };
    row(
        "ellipse", [] { return new ZelEllipseItem; }, 65537, "Ellipse");
    row(
        "component", [] { return new ZelEllipseItemMcp; }, 65537, "Ellipse Mcp");
    row(
        "site", [] { return new ZelEllipseItemBst; }, 65537, "Ellipse Bst");
    row(
        "line", [] { return new ZelLineItem; }, 65540, "Line");
    row(
        "backbone", [] { return new ZelLineItemMcpMcp; }, 65540, "Line McpMcp");
    row(
        "bond", [] { return new ZelLineItemBstBst; }, 65540, "Line BstBst");
    row(
        "interaction bond", [] { return new ZelLineItemBstBstMli; }, 65540, "Line BstBst Mli");
    row(
        "complex bond", [] { return new ZelLineItemBstBstCpx; }, 65540, "Line BstBst Cpx");
    row(
        "complex interaction bond", [] { return new ZelLineItemBstBstCxi; }, 65540,
        "Line BstBst Cxi");
    row(
        "rect", [] { return new ZelRectItem; }, 65546, "Rect");
    row(
        "rect with text", [] { return new ZelRectItemWithText; }, 65546, "Rect");
    row(
        "sticky", [] { return new ZelRectItemMcpSticky(nullptr); }, 65547, "Rect Sticky");
}

void tst_Items::kindsAndCasts()
{
    QFETCH(std::function<QGraphicsItem *()>, make);
    QFETCH(int, type);
    QFETCH(QStringList, kinds);
    const std::unique_ptr<QGraphicsItem> item(make());
    QCOMPARE(item->type(), type);
    auto *const gItem = dynamic_cast<ZelGItem *>(item.get());
    QCOMPARE(kindsOf(gItem), kinds);

    // Each cast gives the item itself or nothing.
    const auto check = [gItem](ZelGItem *cast, bool expected) {
        return cast == (expected ? gItem : nullptr);
    };
    const bool sticky = kinds.contains(u"Sticky");
    QVERIFY(check(ZelGItem::toZelEllipseItem(item.get()), kinds.contains(u"Ellipse")));
    QVERIFY(check(ZelGItem::toZelEllipseItemMcp(item.get()), kinds.contains(u"Mcp")));
    QVERIFY(check(ZelGItem::toZelEllipseItemBst(item.get()), kinds.contains(u"Bst")));
    QVERIFY(check(ZelGItem::toZelLineItem(item.get()), kinds.contains(u"Line")));
    QVERIFY(check(ZelGItem::toZelLineItemBstBstMli(item.get()), kinds.contains(u"Mli")));
    QVERIFY(check(ZelGItem::toZelRectItem(item.get()), kinds.contains(u"Rect") && !sticky));
    QVERIFY(check(ZelGItem::toZelRectItemMcpSticky(item.get()), sticky));
}

void tst_Items::castsOfOtherItems()
{
    ZelTextItemLabel label;
    QGraphicsEllipseItem plain;
    for (QGraphicsItem *item : {static_cast<QGraphicsItem *>(nullptr),
             static_cast<QGraphicsItem *>(&label), static_cast<QGraphicsItem *>(&plain)}) {
        QVERIFY(!ZelGItem::toZelEllipseItem(item));
        QVERIFY(!ZelGItem::toZelEllipseItemMcp(item));
        QVERIFY(!ZelGItem::toZelEllipseItemBst(item));
        QVERIFY(!ZelGItem::toZelLineItem(item));
        QVERIFY(!ZelGItem::toZelLineItemBstBstMli(item));
        QVERIFY(!ZelGItem::toZelRectItem(item));
        QVERIFY(!ZelGItem::toZelRectItemMcpSticky(item));
    }
}

void tst_Items::registration()
{
    SdcMcp mcp(nullptr);
    ZelEllipseItemMcp item;
    item.setSdcMcp(&mcp);
    QCOMPARE(mcp.getZelEllipseItemMcp(), &item);
    {
        // An item of another shape shows the component without taking its place.
        ZelRectItem rect;
        rect.setSdc(&mcp);
        QCOMPARE(mcp.getZelEllipseItemMcp(), &item);
    }
    QCOMPARE(mcp.getZelEllipseItemMcp(), &item);
    {
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

void tst_Items::siteKeepsItsFirstItem()
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

void tst_Items::tooltips_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<bool>("site");
    QTest::addColumn<QString>("molName");
    QTest::addColumn<bool>("statusShown");
    QTest::addColumn<QString>("expected");

    QTest::newRow("name of a site") << 1 << true << "Grb2" << true << "s";
    QTest::newRow("name of a component") << 1 << false << "Grb2" << true << "SH2";
    QTest::newRow("path of a component") << 2 << false << "Grb2" << true << "Grb2 / SH2";
    QTest::newRow("path of a site") << 2 << true << "Grb2" << false << "Grb2 / SH2 / s";
    QTest::newRow("path and status of a site")
        << 2 << true << "Grb2" << true << "Grb2 / SH2 / s -- Bound";
    QTest::newRow("molecule without a name") << 2 << true << "" << true << "SH2 / s -- Bound";
    QTest::newRow("component of a nameless molecule") << 2 << false << "" << true << "SH2";
    QTest::newRow("none") << 0 << true << "Grb2" << true << "";
    QTest::newRow("unknown style") << 3 << false << "Grb2" << true << "";
}

void tst_Items::tooltips()
{
    QFETCH(int, style);
    QFETCH(bool, site);
    QFETCH(QString, molName);
    QFETCH(bool, statusShown);
    QFETCH(QString, expected);

    SdcCpx cpx(nullptr);
    auto *const mol = new SdcMol(nullptr);
    auto *const mcp = new SdcMcp(nullptr);
    auto *const bst = new SdcBst(nullptr);
    cpx.addSdcChild(mol, true);
    mol->addSdcMcp(mcp);
    mcp->addSdcBst(bst);
    mol->setProperty(SdcProperty::ShortName, molName);
    mcp->setProperty(SdcProperty::ShortName, QStringLiteral("SH2"));
    bst->setProperty(SdcProperty::ShortName, QStringLiteral("s"));
    bst->setBindingStatus(BindingStatusBound);
    cpx.setBstBindingStatusEnabled(statusShown);

    const int before = ZelSettings::getMoleculeTooltipsType();
    ZelSettings::setMoleculeTooltipsType(style);
    ZelEllipseItemMcp mcpItem;
    ZelEllipseItemBst bstItem;
    mcpItem.setSdcMcp(mcp);
    bstItem.setSdcBst(bst);
    mcpItem.setToolTip(QStringLiteral("stale"));
    bstItem.setToolTip(QStringLiteral("stale"));
    mcp->setChanged();
    bst->setChanged();
    ZelSettings::setMoleculeTooltipsType(before);
    QCOMPARE(site ? bstItem.toolTip() : mcpItem.toolTip(), expected);
}

void tst_Items::tooltipFollowsTheComponentShown()
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

void tst_Items::collisionsBetweenEllipses()
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

    QCOMPARE(large->getAtan2(nullptr), 1000.0);
    QCOMPARE(inside->getAtan2(inside), 1000.0);
    near->setPos(0.0, -50.0);
    QVERIFY(near->getAtan2(large) > 1.5 && near->getAtan2(large) < 1.6);
}

void tst_Items::interactionHighlights()
{
    QGraphicsScene scene;
    SdcMol mol(nullptr);
    auto *const mcp = new SdcMcp(nullptr);
    auto *const bst = new SdcBst(nullptr);
    mol.addSdcMcp(mcp);
    mcp->addSdcBst(bst);
    auto *const mcpItem = new ZelEllipseItemMcp(disc(40));
    scene.addItem(mcpItem);
    mcpItem->setSdcMcp(mcp);
    auto *const bstItem = new ZelEllipseItemBst(disc(10), mcpItem);
    bstItem->setPos(20.0, 0.0);
    bstItem->setSdcBst(bst);
    auto *const probe = new ZelEllipseItem(disc(10));
    scene.addItem(probe);

    // Over the site only.
    probe->setPos(29.0, 0.0);
    QVERIFY(probe->intersectsWithSdc(&mol));
    QVERIFY(!probe->intersectsWithListScp({nullptr, mcp}, false));
    QVERIFY(probe->intersectsWithListScp({mcp}, true));
    probe->hightlightInteractionWithSdc(&mol);
    QVERIFY(probe->isHighlighted() && bstItem->isHighlighted() && !mcpItem->isHighlighted());

    // Away from all, nothing is touched.
    probe->setHighlight(false);
    probe->setPos(100.0, 0.0);
    probe->hightlightInteractionWithSdc(&mol);
    QVERIFY(!probe->isHighlighted());
    probe->hightlightInteractionWithSdc(nullptr);

    // An item never interacts with itself, though it is one of the molecule's.
    QCOMPARE(mcpItem->getInteractedListZelEllipseItem(&mol), QList<ZelEllipseItem *>{bstItem});

    probe->setRect(disc(200.0));
    probe->setPos(0.0, 0.0);
    QVERIFY(probe->containsSdc(&mol) && probe->containsListScp({mcp}, true));
    QVERIFY(!mcpItem->containsSdc(nullptr));
}

void tst_Items::haloFollowsItsOwner()
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

    ZelRectItem rect(QRectF(0, 0, 8, 8));
    rect.setHighlightItem(false);
    QVERIFY(rect.getHighlightItem() && !rect.getHighlightItem()->isVisible());
    rect.setHighlightItem(true);
    auto *const frame =
        qgraphicsitem_cast<QGraphicsRectItem *>(rect.getHighlightItem()->getHaloItem());
    QVERIFY(frame && frame->isVisible());
    QCOMPARE(frame->pen().widthF(), 1.0);

    ZelLineItem line;
    line.setLine(0, 0, 10, 10);
    line.setHighlightItem(true);
    QVERIFY(line.getHighlightItem()->isVisible());
}

namespace {

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

void tst_Items::bondLineIsTrimmedAndFollows()
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

void tst_Items::bondLineNeedsBothSitesInItsScene()
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

void tst_Items::bondLineRefusesItemsWithoutSite()
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

void tst_Items::linesWithABondOfTheirOwn()
{
    ZelLineItemBstBstCxi without(false, nullptr);
    QVERIFY(!without.getSdc());
    ZelLineItemBstBstCxi refused(true, nullptr);
    QVERIFY(!refused.getSdc());
    QCOMPARE(takeDebugLines(),
        QStringList{QStringLiteral("Error in ZelLineItemBstBstCxi::ZelLineItemBstBstCxi(bool "
                                   "createSdc, ZelDbSqliteModel * zelDbSqliteModel)")});

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

    ZelLineItemBstBstCpx cpx;
    QCOMPARE(cpx.zValue(), 3.0);
    QCOMPARE(cpx.pen().color(), QColor(Qt::blue));
    cpx.setHighlight(true, true);
    cpx.setHighlight(false, true);
    QPen blue;
    blue.setColor(Qt::blue);
    QCOMPARE(cpx.pen(), blue);
    QCOMPARE(ZelLineItemBstBstMli().pen(), QPen());
}

void tst_Items::backbones()
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
    QCOMPARE(line->scene(), &scene);
    QCOMPARE(line->pen().style(), Qt::DotLine);
    QCOMPARE(line->line(), QLineF(10, 0, 40, 0));
    new ZelLineItemMcpMcp(items[1], items[2]);
    QCOMPARE(items[1]->getListNeighborZelEllipseItemMcp(),
        (QList<ZelEllipseItemMcp *>{items[0], items[2]}));

    items[0]->addMcpMcp(line);
    QCOMPARE(items[0]->getListMcpMcp().size(), 1);
    items[2]->addMcpMcp(line);
    QCOMPARE(takeDebugLines().size(), 1);
    QCOMPARE(items[2]->getListMcpMcp().size(), 1);

    // Moving either end, the line runs from rim to rim in its parent's coordinates.
    items[0]->setPos(0.0, 100.0);
    items[1]->setPos(0.0, 0.0);
    items[1]->updateMcpMcpPos();
    QCOMPARE(line->line(), QLineF(0, -10, 0, -90));

    items[1]->removeMcpMcp(line);
    QVERIFY(items[0]->getListNeighborZelEllipseItemMcp().isEmpty());
    items[0]->updateMcpMcpPos();
}

void tst_Items::moveNotifiesSites()
{
    SdcMol mol(nullptr);
    auto *const mcp = new SdcMcp(nullptr);
    auto *const bst = new SdcBst(nullptr);
    mol.addSdcMcp(mcp);
    mcp->addSdcBst(bst);
    ZelEllipseItemMcp item(disc(20));
    item.setSdcMcp(mcp);
    auto *const site = new ZelEllipseItemBst(disc(5), &item);
    site->setSdcBst(bst);
    QSignalSpy moved(&item, &ZelEllipseItem::posChanged);
    QSignalSpy siteMoved(site, &ZelEllipseItem::posChanged);
    item.notifyPosChanged();
    QCOMPARE(moved.size(), 1);
    QCOMPARE(siteMoved.size(), 1);
}

void tst_Items::labels()
{
    QGraphicsScene scene;
    SdcCpx cpx(nullptr);
    auto *const mol = new SdcMol(nullptr);
    auto *const mcp = new SdcMcp(nullptr);
    cpx.addSdcChild(mol, true);
    mol->addSdcMcp(mcp);
    auto *const item = new ZelEllipseItemMcp(disc(40));
    item->setPos(30.0, -70.0);
    scene.addItem(item);
    item->setSdcMcp(mcp);

    auto *const label = new ZelTextItemLabelCpx;
    QVERIFY(!label->isVisible());
    label->setSdcCpx(&cpx);
    QVERIFY(!label->isVisible());
    cpx.setProperty(SdcProperty::ShortName, QStringLiteral("Grb2.Sos"));
    QVERIFY(label->isVisible());
    QCOMPARE(label->toPlainText(), QStringLiteral("Grb2.Sos"));
    QCOMPARE(label->font().weight(), int(QFont::Bold));
    scene.addItem(label);
    QCOMPARE(label->sceneBoundingRect().center(), QPointF(30.0, -70.0));
    cpx.setProperty(SdcProperty::ShortName, QStringLiteral("Grb2 with Sos"));
    QCOMPARE(label->sceneBoundingRect().center(), QPointF(30.0, -70.0));
    cpx.setProperty(SdcProperty::ShortName, QString());
    QVERIFY(!label->isVisible());

    auto gone = std::make_unique<SdcMol>(nullptr);
    gone->setProperty(SdcProperty::ShortName, QStringLiteral("Grb2"));
    ZelTextItemLabel molLabel;
    molLabel.setSdc(gone.get());
    QVERIFY(molLabel.isVisible());

    ZelRectItemWithText rect(QRectF(10, 10, 100, 60));
    rect.setSdc(gone.get());
    QCOMPARE(rect.getText(), QStringLiteral("Grb2"));
    const auto centreOfText = [&rect] {
        return rect
            .mapRectFromItem(rect.childItems().first(), rect.childItems().first()->boundingRect())
            .center();
    };
    QCOMPARE(centreOfText(), QPointF(60, 40));
    rect.setRect({0, 0, 200, 200});
    QCOMPARE(centreOfText(), QPointF(100, 100));

    gone.reset();
    QVERIFY(!molLabel.isVisible());
    QVERIFY(!rect.getSdc());
}

ZEL_TEST(tst_Items)
#include "tst_Items.moc"
