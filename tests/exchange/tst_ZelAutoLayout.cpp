#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelLayout/AutoLayout.h"
#include "zelLayout/Complex.h"
#include "zelLayout/Measure.h"
#include "zelLayout/Molecule.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

using namespace zel::layout;

namespace {

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// A molecule with one site in each of its components.
Body bodyOf(const std::vector<ComponentNeeds> &needs)
{
    Body body;
    for (const ComponentPlace &place : placeComponents(needs)) {
        body.components.push_back({place.centre, place.radius});
        for (const QPointF &site : place.sites) {
            const QPointF way = site - place.centre;
            body.sites.push_back({{site, SiteRadius}, way / std::hypot(way.x(), way.y())});
        }
    }
    return body;
}

Body bodyOf(int components)
{
    return bodyOf(std::vector<ComponentNeeds>(static_cast<std::size_t>(components), {0, 1}));
}

/// What is arranged, with what a good drawing of it keeps to.
struct Case
{
    std::vector<Body> bodies;
    std::vector<BodyBond> bonds;
    int crossings = 0;
    int hits = 0; ///< of bonds' lines with ellipses
    double aspect = 2.2;
};

Case chain(int count, int componentsEach)
{
    Case result;
    result.bodies.assign(static_cast<std::size_t>(count), bodyOf(componentsEach));
    for (int i = 1; i < count; ++i)
        result.bonds.push_back({i - 1, componentsEach > 1 ? 1 : 0, i, 0});
    return result;
}

Case ring(int count, int componentsEach)
{
    Case result = chain(count, componentsEach);
    result.bonds.push_back({count - 1, 1, 0, 0}); // closes it
    return result;
}

Case hub(int arms, bool oneComponent)
{
    Case result;
    result.bodies.push_back(oneComponent ? bodyOf({{0, arms}}) : bodyOf(arms));
    for (int i = 0; i < arms; ++i) {
        result.bodies.push_back(bodyOf(1));
        result.bonds.push_back({0, i, i + 1, 0});
    }
    return result;
}

Case ringWithTails()
{
    Case result = ring(6, 3);
    for (int i = 0; i < 6; ++i) {
        result.bodies.push_back(bodyOf(2));
        result.bonds.push_back({i, 2, 6 + i, 0});
    }
    return result;
}

/// Molecules of three sites and of two in turn, grown from one in the middle.
Case tree(int count)
{
    Case result;
    std::vector<int> used;
    std::size_t grown = 0;
    for (int i = 0; i < count; ++i) {
        const int sites = i == 0 || result.bodies[grown].sites.size() == 2 ? 3 : 2;
        if (i > 0) {
            result.bonds.push_back({static_cast<int>(grown), used[grown]++, i, 0});
        }
        result.bodies.push_back(bodyOf(sites));
        used.push_back(i == 0 ? 0 : 1);
        while (static_cast<std::size_t>(used[grown]) == result.bodies[grown].sites.size())
            ++grown;
    }
    return result;
}

Case clique(int count)
{
    Case result;
    result.bodies.assign(static_cast<std::size_t>(count), bodyOf(count - 1));
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < i; ++j)
            result.bonds.push_back({i, j, j, i - 1});
    }
    // A complete graph beyond four bodies crosses itself however it is drawn.
    result.crossings = count * count * count * count;
    result.hits = result.crossings;
    return result;
}

Case twoBonds(bool parallel)
{
    Case result;
    result.bodies.assign(2, bodyOf(2));
    result.bonds = {{0, 0, 1, parallel ? 0 : 1}, {0, 1, 1, parallel ? 1 : 0}};
    return result;
}

Case parts()
{
    Case result = chain(3, 2);
    const Case other = ring(4, 2);
    for (BodyBond bond : other.bonds) {
        bond.bodyA += 3;
        bond.bodyB += 3;
        result.bonds.push_back(bond);
    }
    result.bodies.insert(result.bodies.end(), other.bodies.cbegin(), other.bodies.cend());
    result.bodies.push_back(bodyOf(1));
    return result;
}

Case ovals()
{
    Case result = chain(4, 2);
    for (Body &body : result.bodies)
        body.quarterTurnsOnly = true;
    return result;
}

double aspectOf(const Drawing &drawing)
{
    // As it is printed, with a margin.
    const QRectF bounds = boundsOf(drawing).adjusted(-20.0, -20.0, 20.0, 20.0);
    return std::max(bounds.width(), bounds.height()) / std::min(bounds.width(), bounds.height());
}

/// A molecule in no scene with its features, ready to be drawn.
SdcMol *molecule(const QStringList &names, int sitesEach, int features, ZelScene *scene = nullptr)
{
    auto *const mol = new SdcMol(nullptr);
    mol->setProperty(SdcProperty::Color, "#ffcc00");
    for (const QString &name : names) {
        auto *const mcp = new SdcMcp(nullptr);
        mcp->setProperty(SdcProperty::ShortName, name);
        mol->addSdcMcp(mcp);
        zel::layout::makeItem(mcp, scene);
        for (int i = 0; i < features; ++i)
            mcp->addTag(QStringLiteral("f%1").arg(i), "#336699", false);
        for (int i = 0; i < sitesEach; ++i)
            mcp->addSdcBst(new SdcBst(nullptr));
    }
    zel::layout::drawMolecule(mol, scene);
    return mol;
}

QRectF sceneRect(const ZelEllipseItem *item)
{
    return item->mapRectToScene(item->rect());
}

} // namespace

class tst_ZelAutoLayout : public ZelTest
{
    Q_OBJECT

private slots:
    void componentsKeepApartAndCarryTheirSites_data()
    {
        rows<int, int, bool>({"components", "sites", "uneven"},
            {{"one site", {1, 1, false}}, {"a dozen sites on one", {1, 12, false}},
                {"pair", {2, 1, false}}, {"crowded pair", {2, 9, false}},
                {"triangle", {3, 2, false}}, {"eight", {8, 3, false}}, {"forty", {40, 1, false}},
                {"wide among narrow ones", {4, 1, true}}, {"two wide among six", {6, 2, true}}});
    }

    void componentsKeepApartAndCarryTheirSites()
    {
        QFETCH(int, components);
        QFETCH(int, sites);
        QFETCH(bool, uneven);
        std::vector<ComponentNeeds> needs;
        for (int i = 0; i < components; ++i)
            needs.push_back({0, uneven && i % 2 == 0 ? 40 : sites});
        const std::vector<ComponentPlace> places = placeComponents(needs);

        QCOMPARE(places.size(), needs.size());
        QList<QPointF> centres;
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                const double gap = distance(places[i].centre, places[j].centre) - places[i].radius
                    - places[j].radius;
                QVERIFY2(
                    gap > 1.0, qPrintable(QStringLiteral("%1 and %2: %3").arg(i).arg(j).arg(gap)));
            }
            QCOMPARE(static_cast<int>(places[i].sites.size()), needs[i].sites);
            for (const QPointF &site : places[i].sites) {
                QVERIFY(std::abs(distance(site, places[i].centre) - places[i].radius) < 1.0e-6);
                for (std::size_t j = 0; j < places.size(); ++j) {
                    if (j != i)
                        QVERIFY(
                            distance(site, places[j].centre) > places[j].radius + SiteRadius + 1.0);
                }
                for (const QPointF &other : std::as_const(centres))
                    QVERIFY(distance(site, other) > 2.0 * SiteRadius + 1.0);
                centres.append(site);
            }
        }
    }

    void complexIsFitToPrint_data()
    {
        QTest::addColumn<Case>("c");
        const auto add = [](const char *name, Case c) { QTest::newRow(name) << std::move(c); };
        // Two in a row are a strip whatever one does.
        Case dimer = chain(2, 1);
        dimer.aspect = 2.5;
        add("dimer", dimer);
        Case rods = chain(2, 2);
        rods.aspect = 3.5;
        add("two rods", rods);
        add("three rods", chain(3, 2));
        add("four rods", chain(4, 2));
        add("nine rods", chain(9, 2));
        add("chain of triangles", chain(8, 3));
        add("ring of three", ring(3, 2));
        add("ring of six", ring(6, 3));
        add("ring of ten rods", ring(10, 2));
        add("ring of six with tails", ringWithTails());
        add("two bonds between two rods", twoBonds(true));
        add("the same crosswise", twoBonds(false));
        add("hub of twelve components", hub(12, false));
        add("hub with twelve sites on one", hub(12, true));
        add("tree of ten", tree(10));
        add("tree of sixty", tree(60));
        add("clique of three", clique(3));
        add("clique of five", clique(5));
        add("clique of twenty", clique(20));
        add("unconnected parts", parts());
        add("ovals", ovals());
    }

    void complexIsFitToPrint()
    {
        QFETCH(Case, c);
        const std::vector<Placement> placements = arrangeBodies(c.bodies, c.bonds);

        QCOMPARE(placements.size(), c.bodies.size());
        for (std::size_t i = 0; i < placements.size(); ++i) {
            const double step = c.bodies[i].quarterTurnsOnly ? 90.0 : 1.0;
            QCOMPARE(std::fmod(placements[i].angle, step), 0.0);
            QVERIFY(placements[i].angle >= 0.0 && placements[i].angle < 360.0);
        }
        const Drawing drawing(c.bodies, c.bonds, placements);
        QVERIFY2(
            leastGap(drawing) >= LeastGap - 1.0e-6, qPrintable(QString::number(leastGap(drawing))));
        QVERIFY2(aspectOf(drawing) <= c.aspect, qPrintable(QString::number(aspectOf(drawing))));
        QVERIFY2(countCrossings(drawing) <= c.crossings,
            qPrintable(QString::number(countCrossings(drawing))));
        QVERIFY2(countHits(drawing) <= c.hits, qPrintable(QString::number(countHits(drawing))));
        const QPointF centre = boundsOf(drawing).center();
        QVERIFY(std::abs(centre.x()) < 1.0e-6 && std::abs(centre.y()) < 1.0e-6);
    }

    void bondsOfTreesAreStraight_data()
    {
        rows<Case>({"c"},
            {{"dimer", {chain(2, 1)}}, {"two rods", {chain(2, 2)}}, {"three arms", {hub(3, false)}},
                {"four arms on one component", {hub(4, true)}}, {"tree", {tree(4)}}});
    }

    // Where nothing is in the way, a bond leaves both of its sites in the direction that they face,
    // and is exactly as long as wanted.
    void bondsOfTreesAreStraight()
    {
        QFETCH(Case, c);
        const Drawing drawing(c.bodies, c.bonds, arrangeBodies(c.bodies, c.bonds));
        for (const Drawing::Line &entry : drawing.lines) {
            const QPointF way = (entry.line.p2() - entry.line.p1()) / entry.line.length();
            const BodyBond &bond = entry.bond;
            const QPointF first = drawing.parts[static_cast<std::size_t>(bond.bodyA)]
                                      .sites[static_cast<std::size_t>(bond.siteA)]
                                      .outward;
            const QPointF second = drawing.parts[static_cast<std::size_t>(bond.bodyB)]
                                       .sites[static_cast<std::size_t>(bond.siteB)]
                                       .outward;
            QVERIFY(QPointF::dotProduct(first, way) > 0.99);
            QVERIFY(QPointF::dotProduct(second, way) < -0.99);
            QVERIFY2(std::abs(entry.line.length() - BondLength) < 3.0,
                qPrintable(QString::number(entry.line.length())));
        }
    }

    void evenComplexesAreDrawnEven_data()
    {
        rows<Case>({"c"},
            {{"three rods", {chain(3, 2)}}, {"four rods", {chain(4, 2)}},
                {"seven rods", {chain(7, 2)}}, {"two triangles", {chain(2, 3)}},
                {"two bonds between two rods", {twoBonds(true)}}});
    }

    // A drawing in which both halves are alike looks so: upside down or in a mirror it covers
    // itself.
    void evenComplexesAreDrawnEven()
    {
        QFETCH(Case, c);
        const Drawing drawing(c.bodies, c.bonds, arrangeBodies(c.bodies, c.bonds));
        std::vector<QPointF> centres;
        for (const Drawing::Part &part : drawing.parts) {
            for (const Disc &disc : part.components)
                centres.push_back(disc.centre);
        }
        double least = std::numeric_limits<double>::max();
        for (const QPointF way : {QPointF(-1.0, 1.0), QPointF(1.0, -1.0), QPointF(-1.0, -1.0)}) {
            double worst = 0.0;
            for (const QPointF &centre : centres) {
                const QPointF image(centre.x() * way.x(), centre.y() * way.y());
                double nearest = std::numeric_limits<double>::max();
                for (const QPointF &other : centres)
                    nearest = std::min(nearest, distance(image, other));
                worst = std::max(worst, nearest);
            }
            least = std::min(least, worst);
        }
        QVERIFY2(least < 4.0, qPrintable(QString::number(least)));
    }

    void uselessBondsAreLeftOut()
    {
        Case c = chain(3, 2);
        const std::vector<Placement> wanted = arrangeBodies(c.bodies, c.bonds);
        c.bonds.insert(c.bonds.begin(), {{0, 0, 0, 1}, {-1, 0, 1, 0}, {0, 2, 1, 0}, {0, 0, 3, 0}});
        const std::vector<Placement> got = arrangeBodies(c.bodies, c.bonds);
        for (std::size_t i = 0; i < wanted.size(); ++i)
            QCOMPARE(got[i].centre, wanted[i].centre);
        QVERIFY(arrangeBodies({}, c.bonds).empty());
        // A molecule without any component is a point.
        QCOMPARE(arrangeBodies({Body(), Body()}, {}).size(), std::size_t(2));
    }

    void tooMuchIsPutInRows()
    {
        const Case c = chain(1500, 1);
        const Drawing drawing(c.bodies, {}, arrangeBodies(c.bodies, c.bonds));
        QVERIFY(leastGap(drawing) >= LeastGap);
        QVERIFY(aspectOf(drawing) < 2.2);
    }

    void drawnMoleculeFitsItsContents()
    {
        ZelScene scene;
        const std::unique_ptr<SdcMol> mol(molecule({"SH2", "kinase", "a", "tail"}, 2, 3, &scene));
        for (SdcMcp *mcp : mol->getListSdcMcp()) {
            ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
            QVERIFY(item->brush().color() == QColor("#ffcc00"));
            // Components of equal contents are equally large, whatever they are called.
            QCOMPARE(item->rect(), mol->getSdcMcpAtIndex(0)->getZelEllipseItemMcp()->rect());
            QCOMPARE(item->getListSticky().size(), 3);
            for (const ZelRectItemMcpSticky *sticky : item->getListSticky()) {
                QVERIFY(sticky->rect().width() >= 6.0); // large enough to tell its state
                QVERIFY(item->shape().contains(sticky->mapRectToParent(sticky->rect())));
            }
            QVERIFY(!scene.collidingWithOtherSdcItems(item, QList<ZelEllipseItem *>()));
            for (SdcBst *bst : mcp->getListSdcBst())
                QVERIFY(bst->getZelEllipseItemBst()->brush() == item->brush());
        }
        scene.removeAllItems();
    }

    void drawnAgainNothingIsMadeTwice()
    {
        const std::unique_ptr<SdcMol> mol(molecule({"a", "b", "c"}, 2, 1));
        const QString before = ZelTree::text(mol.get());
        ZelEllipseItemMcp *const item = mol->getSdcMcpAtIndex(1)->getZelEllipseItemMcp();
        item->moveBy(100.0, 7.0);
        item->setRect(QRectF(-5.0, -5.0, 10.0, 10.0));

        zel::layout::drawMolecule(mol.get(), nullptr);

        QCOMPARE(mol->getSdcMcpAtIndex(1)->getZelEllipseItemMcp(), item);
        QCOMPARE(ZelTree::text(mol.get()), before);
    }

    void backboneJoinsThePairsGiven()
    {
        const std::unique_ptr<SdcMol> mol(new SdcMol(nullptr));
        for (int i = 0; i < 4; ++i)
            mol->addSdcMcp(new SdcMcp(nullptr));
        zel::layout::drawMolecule(mol.get(), nullptr, {{0, 1}, {0, 3}, {1, 0}, {2, 9}, {-1, 2}});
        QCOMPARE(mol->getSdcMcpAtIndex(0)->getListNeighborSdcMcps(),
            (QList<SdcMcp *>{mol->getSdcMcpAtIndex(1), mol->getSdcMcpAtIndex(3)}));
        QVERIFY(mol->getSdcMcpAtIndex(2)->getListNeighborSdcMcps().isEmpty());
    }

    void moleculesAreMovedAsAWhole_data()
    {
        rows<bool>({"inScene"}, {{"in a scene", {true}}, {"in no scene", {false}}});
    }

    // A molecule looks the same in every complex: all distances within it stay.
    void moleculesAreMovedAsAWhole()
    {
        QFETCH(bool, inScene);
        ZelScene ownScene;
        ZelScene *const scene = inScene ? &ownScene : nullptr;
        SdcCpx cpx(nullptr);
        const auto centresOf = [](SdcMol *mol) {
            QList<QPointF> centres;
            for (SdcMcp *mcp : mol->getListSdcMcp()) {
                centres.append(sceneRect(mcp->getZelEllipseItemMcp()).center());
                for (SdcBst *bst : mcp->getListSdcBst())
                    centres.append(sceneRect(bst->getZelEllipseItemBst()).center());
            }
            return centres;
        };
        QList<QList<QPointF>> before;
        for (int i = 0; i < 4; ++i) {
            SdcMol *const mol = molecule({"a", "longer", "c"}, 1, 2, scene);
            before.append(centresOf(mol));
            cpx.addSdcChild(mol, true);
        }
        for (int i = 1; i < 4; ++i) {
            auto *const bond = new SdcBstBstCpx(nullptr, &cpx);
            bond->addSdcBst(cpx.getChildMolList().at(i - 1)->getListSdcBst().at(1));
            bond->addSdcBst(cpx.getChildMolList().at(i)->getListSdcBst().at(0));
            cpx.addSdcBstBstCpx(bond);
        }

        zel::layout::arrangeComplex(&cpx);

        int turned = 0;
        for (int i = 0; i < 4; ++i) {
            SdcMol *const mol = cpx.getChildMolList().at(i);
            const QList<QPointF> after = centresOf(mol);
            for (qsizetype k = 0; k < after.size(); ++k) {
                for (qsizetype l = 0; l < k; ++l) {
                    QVERIFY(std::abs(distance(after.at(k), after.at(l))
                                - distance(before.at(i).at(k), before.at(i).at(l)))
                        < 1.0e-6);
                }
            }
            const QPointF way = after.first() - after.last();
            const QPointF oldWay = before.at(i).first() - before.at(i).last();
            turned += distance(way, oldWay) > 1.0 ? 1 : 0;
            // Another molecule's ellipse lies nowhere within reach.
            for (int j = 0; j < i; ++j) {
                SdcMol *const other = cpx.getChildMolList().at(j);
                for (SdcMcp *a : mol->getListSdcMcp()) {
                    for (SdcMcp *b : other->getListSdcMcp()) {
                        const QRectF first = sceneRect(a->getZelEllipseItemMcp());
                        const QRectF second = sceneRect(b->getZelEllipseItemMcp());
                        QVERIFY(distance(first.center(), second.center())
                            >= (first.width() + second.width()) / 2.0 + LeastGap);
                    }
                }
            }
        }
        QVERIFY(turned > 0);
        ownScene.removeAllItems();
    }

    // A standing oval is laid over, its rim with it, and its row of features takes another side.
    void quarterTurnTakesFeaturesAndOvalsAlong()
    {
        SdcCpx cpx(nullptr);
        for (int i = 0; i < 2; ++i) {
            auto *const mol = new SdcMol(nullptr);
            auto *const mcp = new SdcMcp(nullptr);
            mol->addSdcMcp(mcp);
            ZelEllipseItemMcp *const item = zel::layout::makeItem(mcp, nullptr);
            item->setRect(QRectF(-20.0, -30.0, 40.0, 60.0));
            mcp->addTag("P", "#336699");
            auto *const bst = new SdcBst(nullptr);
            mcp->addSdcBst(bst);
            // Both on top: one of the two has to be turned upside down, or both laid over.
            ZelScene::createBst(QRectF(-6.0, -36.0, 12.0, 12.0), item)->setSdcBst(bst);
            cpx.addSdcChild(mol, true);
        }
        auto *const bond = new SdcBstBstCpx(nullptr, &cpx);
        for (SdcMol *mol : cpx.getChildMolList())
            bond->addSdcBst(mol->getListSdcBst().first());
        cpx.addSdcBstBstCpx(bond);

        zel::layout::arrangeComplex(&cpx);

        QList<int> codes;
        for (SdcMol *mol : cpx.getChildMolList()) {
            SdcMcp *const mcp = mol->getListSdcMcp().first();
            const QRectF rect = sceneRect(mcp->getZelEllipseItemMcp());
            const QRectF site = sceneRect(mol->getListSdcBst().first()->getZelEllipseItemBst());
            QCOMPARE(rect.size(), QSizeF(60.0, 40.0));
            QVERIFY(std::abs(site.center().y() - rect.center().y()) < 1.0e-6);
            QVERIFY(std::abs(std::abs(site.center().x() - rect.center().x()) - 30.0) < 1.0e-6);
            codes.append(mcp->getTagDirectionCode());
        }
        std::sort(codes.begin(), codes.end());
        QCOMPARE(codes, (QList<int>{2, 4}));
    }

    void bondLinesFollow()
    {
        ZelScene scene;
        SdcCpx cpx(nullptr);
        for (int i = 0; i < 2; ++i)
            cpx.addSdcChild(molecule({"a"}, 1, 0, &scene), true);
        SdcBst *const first = cpx.getChildMolList().at(0)->getListSdcBst().first();
        SdcBst *const second = cpx.getChildMolList().at(1)->getListSdcBst().first();
        SdcBstBstCpx *const bond = scene.addSdcBstBstCpx(first, second);
        cpx.addSdcBstBstCpx(bond);

        zel::layout::arrangeComplex(&cpx);

        const ZelLineItemBstBst *const line = bond->getZelLineItemBstBst();
        QVERIFY(line);
        const QLineF drawn(
            line->mapToScene(line->line().p1()), line->mapToScene(line->line().p2()));
        const QPointF from = sceneRect(first->getZelEllipseItemBst()).center();
        const QPointF to = sceneRect(second->getZelEllipseItemBst()).center();
        QVERIFY(distance(drawn.center(), (from + to) / 2.0) < 1.5);
        QVERIFY(drawn.length() > 10.0);
        scene.removeAllItems();
    }

    void nothingToDrawIsNoFault()
    {
        zel::layout::drawMolecule(nullptr, nullptr);
        zel::layout::arrangeComplex(nullptr);
        QVERIFY(!zel::layout::makeItem(nullptr, nullptr));
        SdcMol empty(nullptr);
        zel::layout::drawMolecule(&empty, nullptr);
        SdcCpx cpx(nullptr);
        zel::layout::arrangeComplex(&cpx);
        // Molecules without items, and a bond without sites.
        auto *const mol = new SdcMol(nullptr);
        mol->addSdcMcp(new SdcMcp(nullptr));
        cpx.addSdcChild(mol, true);
        cpx.addSdcBstBstCpx(new SdcBstBstCpx(nullptr, &cpx));
        zel::layout::arrangeComplex(&cpx);
        QVERIFY(!mol->getSdcMcpAtIndex(0)->getZelEllipseItemMcp());
    }
};

ZEL_TEST(tst_ZelAutoLayout)
#include "tst_ZelAutoLayout.moc"
