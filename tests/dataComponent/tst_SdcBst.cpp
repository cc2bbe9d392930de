#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QGraphicsTextItem>

#include <memory>

namespace {

/// Numbers in the tree and on the drawing, site by site.
QString numbers(SdcMol *mol)
{
    QStringList list;
    for (SdcBst *bst : mol->getListSdcBst()) {
        const QString inTree = bst->text().section(u' ', 2, 2).chopped(1);
        list.append(
            inTree == bst->getBstLabelText() ? inTree : inTree + u'|' + bst->getBstLabelText());
    }
    return list.join(u' ');
}

} // namespace

class tst_SdcBst : public ZelTest
{
    Q_OBJECT
private slots:
    void numbersRunOverTheMolecule()
    {
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcMol> mol(
            ZelTree::molecule(nullptr, "M", {{"a", {}, 2}, {"b", {}, 0}, {"c", {}, 3}}, &scene));
        QCOMPARE(numbers(mol.get()), "1 2 3 4 5");
        SdcMcp *const a = mol->getSdcMcpAtIndex(0);
        SdcMcp *const c = mol->getSdcMcpAtIndex(2);

        // A site that joins the first component moves the later ones' numbers on.
        auto *added = new SdcBst(nullptr);
        scene.addBst(QRectF(10, -30, 12, 12), a->getZelEllipseItemMcp())->setSdcBst(added);
        a->addSdcBst(added);
        QCOMPARE(numbers(mol.get()), "1 2 3 4 5 6");
        a->removeSdcBst(added);
        QCOMPARE(numbers(mol.get()), "1 2 3 4 5");
        delete added->getZelEllipseItemBst();
        delete added;

        // The first component goes to the end.
        mol->removeSdcMcp(a);
        QCOMPARE(numbers(mol.get()), "1 2 3");
        mol->addSdcMcp(a);
        QCOMPARE(numbers(mol.get()), "1 2 3 4 5");
        QCOMPARE(c->getListSdcBst().first()->getDisplayIndex(), 1);
        mol->switchChildrenBetween2Indices(0, 2);
        QCOMPARE(a->getListSdcBst().first()->getDisplayIndex(), 1);
        mol->updatePosIndex();
        QCOMPARE(numbers(mol.get()), "1 2 3 4 5");
        // Once there is an item for the label, what it shows is the label.
        c->getListSdcBst().first()->getZelEllipseItemBst()->getBstLabelItem()->setPlainText("x");
        QCOMPARE(c->getListSdcBst().first()->getBstLabelText(), "x");
        mol->updatePosIndex();
        QCOMPARE(numbers(mol.get()), "1 2 3 4 5");
    }

    void sitesThatWereThereFirstAreNumberedWhenTheirComponentJoins()
    {
        SdcMol mol(nullptr);
        mol.addSdcMcp(new SdcMcp(nullptr));
        auto *mcp = new SdcMcp(nullptr);
        auto *bst = new SdcBst(nullptr);
        mcp->addSdcBst(bst);
        takeDebugLines(); // no molecule yet
        QCOMPARE(bst->text(), "Binding site 0: ShortName not defined");
        mol.addSdcMcp(mcp);
        QCOMPARE(bst->text(), "Binding site 1: ShortName not defined");
    }

    void numberOutsideAMolecule()
    {
        SdcBst lone(nullptr);
        lone.updatePosIndex(); // without a parent nothing is asked
        QCOMPARE(takeDebugLines(), QStringList());
        QCOMPARE(lone.getDisplayIndex(), 0);
        QCOMPARE(takeDebugText(), "Error found at void SdcBst::updatePosIndex() 1");
    }

    void statusName()
    {
        SdcBst bst(nullptr);
        QStringList names;
        for (int status = 0; status < 5; ++status) {
            bst.setBindingStatus(static_cast<BindingStatusType>(status));
            names.append(bst.getBindingStatusName());
            QCOMPARE(int(bst.isBound()) + bst.isUnbound() + bst.isDontCareBindingStatus(), 1);
        }
        QCOMPARE(names.join(u','), "Don't Care,Don't Care,Bound,Don't Care,Unbound");
    }

    void defaultNames()
    {
        const std::unique_ptr<SdcMol> mol(
            ZelTree::bareMolecule(nullptr, "M", {{"SH2", {}, 1}, {"SH3", {}, 2}}));
        const QList<SdcBst *> sites = mol->getListSdcBst();
        QCOMPARE(sites.at(2)->bstGetDefaultName(false), "SH3_site_3");
        sites.at(0)->setProperty(2, "SH3_site_3");
        sites.at(1)->setProperty(2, "SH3_site_3_1");
        QCOMPARE(sites.at(2)->bstGetDefaultName(false), "SH3_site_3_2");
        sites.at(2)->setProperty(2, "mine");
        QCOMPARE(sites.at(2)->bstGetDefaultName(false), "mine");
        QCOMPARE(sites.at(2)->bstGetDefaultName(true), "SH3_site_3_2");
    }

    void closeness()
    {
        // Diameters 12 and 20: rims at most 20 apart, so centres at most 36.
        for (const double distance : {5.0, 36.0, 36.1}) {
            ZelScene scene(nullptr);
            ZelEllipseItemMcp *const mcpItem = scene.addMcp(QRectF(0, 0, 60, 40));
            SdcBst a(nullptr);
            SdcBst b(nullptr);
            QVERIFY(!a.closeToBst(&b) && !a.closeToBst(nullptr));
            scene.addBst(QRectF(-6, -6, 12, 12), mcpItem)->setSdcBst(&a);
            scene.addBst(QRectF(distance - 10, -10, 20, 20), mcpItem)->setSdcBst(&b);
            QCOMPARE(a.closeToBst(&b), distance <= 36.0);
            QCOMPARE(b.closeToBst(&a), distance <= 36.0);
        }
    }
};

ZEL_TEST(tst_SdcBst)
#include "tst_SdcBst.moc"
