#include "CpxStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QBrush>

#include <functional>
#include <memory>

using Bonds = QList<CpxStage::Bond>;
Q_DECLARE_METATYPE(Bonds)

namespace {

std::unique_ptr<SdcCpx> make(CpxStage &stage, const QString &types, const Bonds &bonds)
{
    return std::unique_ptr<SdcCpx>(stage.complex(types, bonds));
}

QList<bool> inRings(SdcCpx *cpx)
{
    QList<bool> list;
    for (SdcBstBstCpx *bond : cpx->getListSdcBstBstCpx())
        list.append(cpx->isBstBstPartOfRing(bond));
    return list;
}

} // namespace

class tst_SdcCpx : public ZelTest
{
    Q_OBJECT

private slots:
    void listsEachBondOnce()
    {
        CpxStage stage;
        const auto cpx = make(stage, "AB", {{{0, 0}, {1, 0}}});
        SdcBstBstCpx *const bond = cpx->getListSdcBstBstCpx().value(0);
        SdcBst *const a = CpxStage::site(cpx.get(), {0, 0});
        SdcBst *const b = CpxStage::site(cpx.get(), {1, 0});
        QVERIFY(!cpx->addSdcBstBstCpx(bond));
        QVERIFY(!cpx->addSdcBstBstCpx(nullptr));
        QCOMPARE(cpx->getListSdcBstBstCpx(), QList<SdcBstBstCpx *>{bond});
        QCOMPARE(cpx->getSdcBstBstCpx(b, a), bond);
        QCOMPARE(cpx->getPartnerSdcBstFromBstBstCpx(b), a);
        QCOMPARE(cpx->getListSdcBstBstCpxFromListSdcBst({b, a, nullptr}).size(), 1);
        QCOMPARE(a->getBindingStatus(), BindingStatusBound);
        cpx->removeSdcBstBstCpx(bond);
        cpx->removeSdcBstBstCpx(bond);
        QCOMPARE(a->getBindingStatus(), BindingStatusUnspecified);
        QVERIFY(!bond->getParentSdc());
        QCOMPARE(cpx->getSdcBstBstCpxIndex(bond), -1);
        QVERIFY(!cpx->getSdcBstBstCpxFromIndex(0));
    }

    void aSiteIsMarkedAsItsBondSays()
    {
        CpxStage stage;
        const auto cpx = make(stage, "AB", {{{0, 0}, {1, 0}}});
        SdcBstBstCpx *const bond = cpx->getListSdcBstBstCpx().value(0);
        SdcBst *const a = CpxStage::site(cpx.get(), {0, 0});
        const auto isMarkedBound = [a] {
            return a->getZelEllipseItemBst()->getBindStatusItem()->brush().color() == Qt::gray;
        };
        cpx->setBstBindingStatusEnabled(true);
        a->updateDisplayBstBindingStatus();
        QVERIFY(isMarkedBound());
        bond->removeSdcBst(a);
        QVERIFY(!isMarkedBound());
        bond->addSdcBst(a);
        QVERIFY(isMarkedBound());
        delete bond;
        QVERIFY(!isMarkedBound());
    }

    void findsASiteByMoleculeAndId_data()
    {
        rows<QString, QString, bool>({"molPos", "bstId", "isFound"},
            {{"the first molecule", {"0", "x", true}}, {"no number means it", {"one", "x", true}},
                {"before it", {"-1", "x", false}}, {"behind the last", {"1", "x", false}},
                {"no id", {"0", "", false}}, {"unknown id", {"0", "y", false}}});
    }

    void findsASiteByMoleculeAndId()
    {
        QFETCH(QString, molPos);
        QFETCH(QString, bstId);
        CpxStage stage;
        const auto cpx = make(stage, "A", {});
        SdcBst *const first = CpxStage::site(cpx.get(), {0, 0});
        for (SdcBst *site : cpx->getListSdcBst())
            site->setProperty(SdcProperty::PsiimId, "x");
        CpxStage::site(cpx.get(), {0, 2})->setProperty(SdcProperty::PsiimId, QString());
        SdcBst *const found = cpx->getSdcBstFromMolPosBstId(molPos, bstId);
        QTEST(found == first, "isFound");
        QVERIFY(found == first || !found);
    }

    void knowsRings_data()
    {
        const Bonds triangle{{{0, 0}, {1, 1}}, {{1, 0}, {2, 1}}, {{2, 0}, {0, 1}}};
        const Bonds tail{{{2, 2}, {3, 0}}};
        const Bonds chain{{{0, 0}, {1, 1}}, {{1, 0}, {2, 1}}};
        const Bonds twice{{{0, 0}, {1, 0}}, {{0, 1}, {1, 1}}};
        rows<QString, Bonds, QList<bool>, bool>({"types", "bonds", "rings", "splits"},
            {{"chain", {"AAA", chain, {false, false}, true}},
                {"triangle", {"AAA", triangle, {true, true, true}, false}},
                {"triangle with a tail",
                    {"AAAB", triangle + tail, {true, true, true, false}, true}},
                {"two bonds between two", {"AB", twice, {true, true}, false}},
                {"no bond", {"A", Bonds(), QList<bool>(), false}}});
    }

    void knowsRings()
    {
        QFETCH(QString, types);
        QFETCH(Bonds, bonds);
        QFETCH(QList<bool>, rings);
        QFETCH(bool, splits);
        CpxStage stage;
        const auto cpx = make(stage, types, bonds);
        QCOMPARE(inRings(cpx.get()), rings);
        QCOMPARE(cpx->hasRingStructure(), rings.contains(true));
        QCOMPARE(cpx->isAbsoluteRingCpx(), !rings.isEmpty() && !rings.contains(false));
        QCOMPARE(cpx->getListNoRingBstBstCpx().size(), rings.count(false));
        QCOMPARE(cpx->canBeSplit(), splits);
    }

    void aBondWithinAMoleculeIsNoRing()
    {
        CpxStage stage;
        const auto cpx = make(stage, "AB", {{{0, 0}, {0, 1}}, {{0, 2}, {1, 0}}});
        const QString message =
            QStringLiteral("Error found at bool SdcCpx::isBstBstPartOfRing(SdcBstBstCpx * sbbc)");
        QVERIFY(!cpx->isBstBstPartOfRing(cpx->getSdcBstBstCpxFromIndex(0)));
        QCOMPARE(takeDebugLines(), QStringList{message});
        QVERIFY(cpx->canBeSplit());
        QCOMPARE(takeDebugLines(), QStringList{message});
        SdcBstBstCpx foreign(&stage.db);
        foreign.addSdcBst(CpxStage::site(cpx.get(), {0, 0}));
        foreign.addSdcBst(CpxStage::site(cpx.get(), {1, 1}));
        QVERIFY(!cpx->isBstBstPartOfRing(&foreign));
        QVERIFY(!cpx->isBstBstPartOfRing(nullptr));
    }

    void walksFromMoleculeToMolecule()
    {
        CpxStage stage;
        const auto cpx =
            make(stage, "AABB", {{{0, 0}, {2, 0}}, {{2, 1}, {1, 0}}}); // 0 - 2 - 1, and 3 alone
        const QList<SdcMol *> mols = cpx->getChildMolList();
        const QList<SdcBstBst *> bonds = Sdc::toListSdcBstBst(cpx->getListSdcBstBstCpx());
        QVERIFY(!cpx->areAllConnected());
        QVERIFY(SdcCpx::areListMolConnected({mols[0], mols[1]}, bonds));
        QVERIFY(!SdcCpx::areListMolConnected({mols[0], mols[3]}, bonds));
        QVERIFY(!SdcCpx::areListMolConnected({}, bonds));
        QVERIFY(SdcCpx::areListMolConnected({mols[3]}, {}));
        QList<SdcMol *> remaining = mols;
        QCOMPARE(SdcCpx::getConnectedListMol(mols[0], remaining, bonds),
            (QList<SdcMol *>{mols[0], mols[2], mols[1]}));
        QCOMPARE(remaining, QList<SdcMol *>{mols[3]});
        stage.bond(cpx.get(), {{1, 2}, {3, 0}});
        QVERIFY(cpx->areAllConnected());
        QVERIFY(!SdcCpx(nullptr).areAllConnected());
    }

    void bondsOfARemovedMoleculeLeadNowhere()
    {
        CpxStage stage;
        const auto cpx = make(stage, "ABA", {{{0, 0}, {1, 0}}, {{1, 1}, {2, 0}}});
        QVERIFY(cpx->areAllConnected());
        const std::unique_ptr<SdcMol> removed(cpx->getChildMolList().at(1));
        cpx->removeSdcChild(removed.get());
        QCOMPARE(cpx->getListSdcBstBstCpx().size(), 2);
        QVERIFY(!cpx->areAllConnected());
    }

    void forgetsItsSymmetryWithEachChange_data()
    {
        using Change = std::function<void(CpxStage &, SdcCpx *)>;
        rows<Change>({"change"},
            {{"molecule added", {Change([](CpxStage &, SdcCpx *cpx) {
                  cpx->addSdcChild(new SdcMol(nullptr), true);
              })}},
                {"molecule removed", {Change([](CpxStage &, SdcCpx *cpx) {
                     Sdc *const mol = cpx->getChildSdcAtIndex(0);
                     cpx->removeSdcChild(mol);
                     delete mol;
                 })}},
                {"molecule dies",
                    {Change([](CpxStage &, SdcCpx *cpx) { delete cpx->getChildSdcAtIndex(0); })}},
                {"bond added", {Change([](CpxStage &stage, SdcCpx *cpx) {
                     stage.bond(cpx, {{0, 1}, {1, 1}});
                 })}},
                {"bond removed", {Change([](CpxStage &, SdcCpx *cpx) {
                     cpx->removeSdcBstBstCpx(cpx->getSdcBstBstCpxFromIndex(0));
                 })}},
                {"bond dies", {Change([](CpxStage &, SdcCpx *cpx) {
                     delete cpx->getSdcBstBstCpxFromIndex(0);
                 })}},
                {"bond loses a site", {Change([](CpxStage &, SdcCpx *cpx) {
                     cpx->getSdcBstBstCpxFromIndex(0)->removeSdcBst(CpxStage::site(cpx, {0, 0}));
                 })}},
                {"bond gains a site", {Change([](CpxStage &, SdcCpx *cpx) {
                     SdcBst *const site = CpxStage::site(cpx, {0, 0});
                     cpx->getSdcBstBstCpxFromIndex(0)->removeSdcBst(site);
                     cpx->setSpecisStaticSymmetryState(SdcCpx::AsymmetricSpecies);
                     cpx->getSdcBstBstCpxFromIndex(0)->addSdcBst(site);
                 })}},
                {"site dies", {Change([](CpxStage &, SdcCpx *cpx) {
                     delete CpxStage::site(cpx, {0, 1});
                 })}},
                {"reset", {Change([](CpxStage &, SdcCpx *cpx) { cpx->reset(); })}},
                {"reset without bonds", {Change([](CpxStage &, SdcCpx *cpx) {
                     cpx->removeSdcBstBstCpx(cpx->getSdcBstBstCpxFromIndex(0));
                     cpx->setSpecisStaticSymmetryState(SdcCpx::AsymmetricSpecies);
                     cpx->reset();
                 })}}});
    }

    void forgetsItsSymmetryWithEachChange()
    {
        using Change = std::function<void(CpxStage &, SdcCpx *)>;
        QFETCH(Change, change);
        CpxStage stage;
        const auto cpx = make(stage, "AA", {{{0, 0}, {1, 0}}});
        cpx->reRankMols(false, false);
        QCOMPARE(cpx->getSpecisStaticSymmetryState(), int(SdcCpx::SymmetricSpecies));
        change(stage, cpx.get());
        QCOMPARE(cpx->getSpecisStaticSymmetryState(), int(SdcCpx::SymmetryUnknown));
    }

    void rebuildsStoredBonds_data()
    {
        // order: of the children when the bonds are rebuilt
        // known: whether the site of the record is still there
        rows<QString, bool, bool, bool>({"order", "known", "force", "good"},
            {{"as stored", {"AB", true, true, true}},
                {"molecules swapped", {"BA", true, true, true}},
                {"drawn apart", {"AB", true, false, false}},
                {"unknown site", {"AB", false, true, false}}});
    }

    void rebuildsStoredBonds()
    {
        QFETCH(QString, order);
        QFETCH(bool, known);
        QFETCH(bool, force);
        QFETCH(bool, good);
        CpxStage stage;
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcCpx> cpx(stage.complex(order, {}, &scene));
        Sdc *const molA = cpx->getChildSdcAtIndex(order.startsWith(u'A') ? 0 : 1);
        Sdc *const molB = cpx->getChildSdcAtIndex(order.startsWith(u'A') ? 1 : 0);
        SdcBst *const siteA = molA->getListSdcBst().first();
        SdcBst *const siteB = molB->getListSdcBst().first();
        const QString id = QStringLiteral("cpx1");
        QVERIFY(stage.db.cpxInsert(id, id, id, {}, {}, id, {}, {}, "0"));
        QVERIFY(
            stage.db.cpxInsertBstBst(id, "0", siteA->getPsiimId(), "1", siteB->getPsiimId(), {}));
        if (!known)
            siteA->setProperty(SdcProperty::PsiimId, "another");

        cpx->updateBstBstCpx(&scene, force); // the complex has no id yet
        QVERIFY(cpx->getListSdcBstBstCpx().isEmpty());
        cpx->setProperty(SdcProperty::PsiimId, id);
        cpx->updateBstBstCpx(&scene, force);
        const QString message =
            QStringLiteral("Error found at void SdcCpx::updateBstBstCpx(ZelScene * scene) ");
        QCOMPARE(takeDebugLines(), good ? QStringList() : QStringList{message});
        QCOMPARE(cpx->getListSdcChildren(), (QList<Sdc *>{molA, molB}));
        QCOMPARE(cpx->getListSdcBstBstCpx().size(), 1);
        const SdcBstBstCpx *const bond = cpx->getSdcBstBstCpxFromIndex(0);
        QCOMPARE(bond->isSameSdcBstBst(siteA, siteB), known);
        QVERIFY(!cpx->getCpxFingerPrint().isEmpty()); // also with a bond that lacks sites
    }

    void answersSmallQuestions()
    {
        CpxStage stage;
        const auto cpx = make(stage, "AAB", {{{0, 0}, {1, 0}}, {{1, 2}, {2, 0}}});
        const QList<SdcMol *> mols = cpx->getChildMolList();
        SdcMcp *const kinase = mols[1]->getSdcMcpAtIndex(0);
        SdcMcp *const tail = mols[1]->getSdcMcpAtIndex(1);
        SdcMcp *const head = mols[2]->getSdcMcpAtIndex(0);
        QCOMPARE(cpx->getNumOfFreeBst(), 8 - 4);
        QVERIFY(!cpx->AreAllOutwardBstsFree());
        QVERIFY(cpx->isMolWithOneLinkedCpxBstBst(mols[0]));
        QVERIFY(!cpx->isMolWithOneLinkedCpxBstBst(mols[1]));
        QVERIFY(cpx->isMcpWithOneDirectLinkedCpxBstBst(tail));
        QVERIFY(!cpx->isMcpChildrenInvolvedInBstBstCpx(mols[0]->getSdcMcpAtIndex(1)));
        QVERIFY(cpx->isMcpLinkedToCpxBstBst(head, tail));
        QVERIFY(!cpx->isMcpLinkedToCpxBstBst(head, kinase));
        QCOMPARE(cpx->getListLinkedSdcMolToSdcMol(mols[1]), (QList<SdcMol *>{mols[0], mols[2]}));

        QVERIFY(cpx->isPattern()); // free sites are neither bound nor unbound
        for (SdcBst *site : cpx->getListSdcBst())
            site->setBindingStatus(BindingStatusUnbound);
        QVERIFY(!cpx->isPattern());
        QVERIFY(!cpx->isInBindingStatus(BindingStatusUnbound));
        CpxStage::setState(cpx.get(), 2, 0, ComponentStateDontCare);
        QVERIFY(cpx->isPattern());
        CpxStage::setState(cpx.get(), 2, 0, ComponentStateOff);
        QVERIFY(!cpx->isPattern());
        kinase->setProperty(SdcProperty::Negation, "1");
        QVERIFY(cpx->isPattern());
        cpx->setAllMcpFeatureValue(ComponentStateDontCare);
        QCOMPARE(head->getMcpStateCode(), "P(0)");

        QVERIFY(!cpx->containsMemAssociatedMol() && !cpx->hasInconsistentBinding());
        mols[1]->setProperty(SdcProperty::Location, QLatin1String(ZelLocation::MembraneAssociated));
        head->setProperty(SdcProperty::Location, QLatin1String(ZelLocation::InsideMembrane));
        QVERIFY(cpx->containsMemAssociatedMol() && cpx->hasInconsistentBinding());
    }

    void highlightReachesTheBondsOnlyWhenAsked()
    {
        CpxStage stage;
        ZelScene scene(nullptr);
        const std::unique_ptr<SdcCpx> cpx(stage.complex("AB", {{{0, 0}, {1, 0}}}, &scene));
        cpx->setHighlight(true);
        QVERIFY(cpx->isHighlighted() && !cpx->getChildSdcAtIndex(0)->isHighlighted());
        static_cast<Sdc *>(cpx.get())->setHighlight(true);
        QVERIFY(cpx->getChildSdcAtIndex(0)->isHighlighted());
        const QRectF mols = cpx->getSdcSceneRectF(false);
        QVERIFY(cpx->getSdcSceneRectF(true).contains(mols) && !mols.isEmpty());
    }
};

ZEL_TEST(tst_SdcCpx)
#include "tst_SdcCpx.moc"
