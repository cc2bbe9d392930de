#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelRectItemWithText.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSignalSpy>

#include <memory>

namespace {

const QList<ZelTree::Mcp> Chain{{"a", {"P", "Q"}, 2}, {"b", {}, 1}};

QString statuses(SdcMol *mol)
{
    QString text;
    for (SdcBst *bst : mol->getListSdcBst())
        text +=
            bst->getBindingStatusName().left(1) + (bst->isAllowChangeBindingStatus() ? u' ' : u'!');
    return text;
}

} // namespace

class tst_SdcMol : public ZelTest
{
    Q_OBJECT
private slots:
    void namesInsideAMolecule()
    {
        const std::unique_ptr<SdcMol> mol(ZelTree::bareMolecule(nullptr, "M", Chain));
        SdcMcp *const a = mol->getSdcMcpAtIndex(0);
        QVERIFY(!mol->isUniqueMcpName(QString(), nullptr));
        QVERIFY(!mol->isUniqueMcpName("a", nullptr));
        QVERIFY(mol->isUniqueMcpName("a", a));
        QVERIFY(mol->isConsistentMcpNames());
        QVERIFY(!mol->isConsistentBstNames()); // nameless
        int i = 0;
        for (SdcBst *bst : mol->getListSdcBst())
            bst->setProperty(2, QString::number(i++));
        QVERIFY(mol->isConsistentBstNames());
        QVERIFY(!mol->isUniqueBstName("2", mol->getListSdcBst().first()));
        mol->getSdcMcpAtIndex(1)->setProperty(2, "a");
        QVERIFY(!mol->isConsistentMcpNames());
    }

    void removalByIndex()
    {
        const std::unique_ptr<SdcMol> mol(ZelTree::bareMolecule(nullptr, "M", Chain));
        QSignalSpy removed(mol.get(), &Sdc::sdcMcpRemoved);
        const std::unique_ptr<SdcMcp> last(mol->getSdcMcpAtIndex(1));
        for (const int index : {-1, 2, 1})
            mol->removeSdcMcpAtIndex(index);
        QCOMPARE(removed.size(), 1);
        QCOMPARE(mol->getListSdcMcp(), QList<SdcMcp *>{mol->getSdcMcpAtIndex(0)});
    }

    void theDrawingIsTheTruthForTheColour()
    {
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcMol> mol(ZelTree::molecule(nullptr, "M", Chain, &scene));
        mol->setMolColor("#102030");
        QCOMPARE(mol->getMolColor(), QColor(0x10, 0x20, 0x30));
        for (SdcBst *bst : mol->getListSdcBst())
            QCOMPARE(bst->getZelEllipseItemBst()->brush().color(), QColor(0x10, 0x20, 0x30));
        mol->setMolColor("no such colour");
        QCOMPARE(mol->getMolColor(), QColor(0x10, 0x20, 0x30));
        // A shape without brush is filled; how one is filled stays.
        ZelEllipseItemMcp *const item = mol->getSdcMcpAtIndex(0)->getZelEllipseItemMcp();
        for (const Qt::BrushStyle style : {Qt::NoBrush, Qt::Dense4Pattern}) {
            item->setBrush(style);
            mol->setMolColor("#102030");
            QCOMPARE(item->brush(),
                QBrush(QColor(0x10, 0x20, 0x30), style == Qt::NoBrush ? Qt::SolidPattern : style));
        }
        mol->getSdcMcpAtIndex(0)->getZelEllipseItemMcp()->setBrush(Qt::red);
        QCOMPARE(mol->getMolColor(), QColor(Qt::red));
        SdcMol unlisted(nullptr);
        SdcMcp mcp(nullptr);
        unlisted.addSdcChild(&mcp, false);
        QVERIFY(!unlisted.getMolColor().isValid());
        unlisted.removeSdcChild(&mcp);
    }

    void indexCodeHues_data()
    {
        rows<QString, int, int>({"code", "count", "hue"},
            {{"2 of 3", {"2", 3, 240}}, {"1 of 7: divided first", {"1", 7, 51}},
                {"count of none", {"1", 0, 0}}, {"beyond the count", {"9", 3, 359}},
                {"no number", {"x", 3, 0}}, {"negative", {"-1", 3, 0}}});
    }

    void indexCodeHues()
    {
        QFETCH(QString, code);
        QFETCH(int, count);
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcMol> mol(ZelTree::molecule(nullptr, "M", Chain, &scene));
        mol->getSdcMcpAtIndex(0)->getZelEllipseItemMcp()->setZValue(7.0);
        const auto plates = [&] {
            QList<ZelRectItem *> list;
            for (QGraphicsItem *item : scene.items()) {
                if (ZelRectItem *rect = ZelGItem::toZelRectItem(item))
                    list.append(rect);
            }
            return list;
        };
        mol->showIndexCode(true, code, count);
        mol->showIndexCode(true, code, count); // replaces the one before
        QCOMPARE(plates().size(), 1);
        ZelRectItem *const plate = plates().first();
        QTEST(plate->brush().color().hslHue(), "hue");
        QCOMPARE(plate->brush().color().hslSaturation(), 100);
        QCOMPARE(plate->brush().color().lightness(), 60);
        QCOMPARE(plate->zValue(), 7.5);
        QCOMPARE(plate->mapRectToScene(plate->rect()), mol->getSdcSceneRectF());
        QCOMPARE(
            static_cast<ZelRectItemWithText *>(plate)->getText(), QString::number(code.toInt()));
        mol->showIndexCode(false, code, count);
        QVERIFY(plates().isEmpty());
    }

    void plateGoesWithTheDrawing_data()
    {
        rows<QString>({"how"},
            {{"the molecule dies", {"molecule"}}, {"its parts are removed", {"parts"}},
                {"its items die", {"items"}}, {"its items change scenes", {"moved"}}});
    }

    void plateGoesWithTheDrawing()
    {
        QFETCH(QString, how);
        ZelScene other(nullptr);
        ZelScene scene(nullptr);
        std::unique_ptr<SdcMol> mol(ZelTree::molecule(nullptr, "M", {Chain.first()}, &scene));
        mol->showIndexCode(true, "1", 3);
        auto *const added = new SdcMcp(nullptr);
        scene.addMcp(QRectF(100.0, 0.0, 50.0, 50.0))->setSdcMcp(added);
        mol->addSdcMcp(added);
        for (int i = 1; i >= 0; --i) {
            const QList<QGraphicsItem *> all = scene.items();
            QVERIFY(std::any_of(all.cbegin(), all.cend(), &ZelGItem::toZelRectItem));
            if (how == QLatin1String("molecule"))
                mol.reset();
            else if (how == QLatin1String("parts"))
                scene.removeSdcMcp(mol->getSdcMcpAtIndex(0));
            else if (how == QLatin1String("items"))
                delete mol->getSdcMcpAtIndex(i)->getZelEllipseItemMcp();
            else
                other.addItem(mol->getSdcMcpAtIndex(i)->getZelEllipseItemMcp());
            if (!mol)
                break;
        }
        const QList<QGraphicsItem *> all = scene.items();
        QVERIFY(std::none_of(all.cbegin(), all.cend(), &ZelGItem::toZelRectItem));
    }

    void bindingStatusesFollow_data()
    {
        // The first site may be bound; the second is skipped; the third is Unbound in the other.
        rows<bool, bool, bool, QString, QString>({"otherBound", "ownBound", "both", "own", "other"},
            {{"copied", {false, false, false, "D D U ", "D D U "}},
                {"bound there only", {true, false, false, "U!D U ", "B D U "}},
                {"bound here only", {false, true, false, "B D U ", "D D U "}},
                {"bound here only, both ways", {false, true, true, "B D U ", "U!D U "}},
                {"bound in both", {true, true, true, "B D U ", "B D U "}}});
    }

    void bindingStatusesFollow()
    {
        QFETCH(bool, otherBound);
        QFETCH(bool, ownBound);
        QFETCH(bool, both);
        SdcCpx cpx[2] = {SdcCpx(nullptr), SdcCpx(nullptr)};
        SdcBstBstCpx bonds[2] = {SdcBstBstCpx(nullptr), SdcBstBstCpx(nullptr)};
        SdcMol *mols[2];
        const bool bound[2] = {ownBound, otherBound};
        for (int i = 0; i < 2; ++i) {
            for (int j = 0; j < 2; ++j)
                cpx[i].addSdcChild(ZelTree::bareMolecule(nullptr, "M", Chain), true);
            mols[i] = cpx[i].getListSdcMol().at(0);
            bonds[i].addSdcBst(mols[i]->getListSdcBst().at(0));
            bonds[i].addSdcBst(cpx[i].getListSdcMol().at(1)->getListSdcBst().at(0));
            if (bound[i])
                cpx[i].addSdcBstBstCpx(&bonds[i]);
        }
        mols[1]->getListSdcBst().at(2)->setBindingStatus(BindingStatusUnbound);
        mols[0]->getListSdcBst().at(2)->setAllowChangeBindingStatus(false);
        mols[0]->synchronizeBindingStatus(mols[1], {mols[0]->getListSdcBst().at(1)}, both);
        QTEST(statuses(mols[0]), "own");
        QTEST(statuses(mols[1]), "other");
    }

    void moleculesThatDoNotMatchAreReported()
    {
        const std::unique_ptr<SdcMol> mol(ZelTree::bareMolecule(nullptr, "M", Chain));
        const std::unique_ptr<SdcMol> shorter(ZelTree::bareMolecule(nullptr, "M", {Chain.first()}));
        const std::unique_ptr<SdcMol> renamed(ZelTree::bareMolecule(nullptr, "M", Chain));
        renamed->getListSdcBst().at(1)->setProperty(1, "bst9");
        renamed->getListSdcBst().at(0)->setBindingStatus(BindingStatusUnbound);
        renamed->getSdcMcpAtIndex(0)->setProperty(1, "mcp9");
        mol->synchronizeBindingStatus(nullptr, {}, true);
        mol->synchronizeMcpTagStates(nullptr, true);
        QCOMPARE(takeDebugLines(), QStringList());
        mol->synchronizeBindingStatus(shorter.get(), {}, true);
        mol->synchronizeBindingStatus(renamed.get(), {}, true);
        QCOMPARE(statuses(mol.get()), "U D D ");
        mol->synchronizeMcpTagStates(shorter.get(), true);
        mol->synchronizeMcpTagStates(renamed.get(), true);
        QStringList lines;
        for (const char *name : {"synchronizeBindingStatus", "synchronizeMcpTagStates"}) {
            for (int i = 1; i <= 2; ++i)
                lines.append(QStringLiteral("Error %1 found at void SdcMol::%2(SdcMol * sdcMol)")
                                 .arg(i)
                                 .arg(QLatin1String(name)));
        }
        QCOMPARE(takeDebugLines(), lines);
    }

    void featureStatesAndNegationFollow()
    {
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcMol> mol(ZelTree::molecule(nullptr, "M", Chain, &scene));
        const std::unique_ptr<SdcMol> other(ZelTree::molecule(nullptr, "M", Chain, &scene));
        ZelEllipseItemMcp *const item = mol->getSdcMcpAtIndex(0)->getZelEllipseItemMcp();
        ZelEllipseItemMcp *const otherItem = other->getSdcMcpAtIndex(0)->getZelEllipseItemMcp();
        otherItem->getSticky(0)->setStateType(1, false);
        otherItem->getSticky(1)->setStateType(4, false);
        item->getSticky(1)->setName("R");
        other->getSdcMcpAtIndex(0)->setProperty(10, "1");
        mol->synchronizeMcpTagStates(other.get(), false);
        QCOMPARE(mol->getSdcMcpAtIndex(0)->getProperty(9), "P(-);R");
        QVERIFY(item->isNotIndicatorVisible());
        other->getSdcMcpAtIndex(0)->setProperty(10, QString());
        mol->synchronizeMcpTagStates(other.get(), false);
        QVERIFY(!item->isNotIndicatorVisible());
    }

    void withoutADrawingNothingIsShownOrTurned()
    {
        const std::unique_ptr<SdcMol> mol(ZelTree::bareMolecule(nullptr, "M", Chain));
        QCOMPARE(mol->getScene(), nullptr);
        QVERIFY(mol->getSdcSceneRectF().isNull());
        mol->showIndexCode(true, "1", 1);
        mol->rotateSdc(90.0);
        QVERIFY(mol->getTransform().isIdentity());
    }
};

ZEL_TEST(tst_SdcMol)
#include "tst_SdcMol.moc"
