#include "InteractionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>

#include <memory>

using Bonds = QList<CpxStage::Bond>;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");

} // namespace

class tst_SdcCxi : public ZelTest
{
    Q_OBJECT

    /// Complexes A and A.B, with a bond from site 2 of A to the free site 1 of B.
    struct Model : InteractionStage
    {
        QString aliasA = alias(A);
        QString aliasAB = alias("AB", {{{0, 2}, {1, 0}}});
        std::unique_ptr<SdcCxi> cxi{InteractionStage::cxi(aliasA, aliasAB)};
        SdcBst *siteA = InteractionStage::site(cxi->getChildSdcAtIndex(0), 0, 2);
        SdcBst *siteB = findB();
        SdcBstBstCxi *bond = cxiBond(cxi.get(), siteA, siteB);

        SdcBst *findB() const
        {
            for (SdcMol *mol : cxi->getSdcCpxAtPosIndex(1)->getChildMolList()) {
                if (mol->getPsiimId() == molB)
                    return mol->getListSdcBst().at(1);
            }
            return nullptr;
        }

        ZelDbRecord record() const
        {
            return {{ZelDbColumn::PsiimId, "cai7"}, {ZelDbColumn::ShortName, "bind"},
                {ZelDbColumn::Name, "name"}, {ZelDbColumn::Notes, "notes"},
                {ZelDbColumn::AssociationRate, "0.5"}, {ZelDbColumn::CaiCpa1, aliasA},
                {ZelDbColumn::CaiCpa2, aliasAB}, {ZelDbColumn::CaiResultCpa, aliasAB},
                {ZelDbColumn::Bst1, siteA->getPsiimId()}, {ZelDbColumn::MolPos1, "0"},
                {ZelDbColumn::Bst2, siteB->getPsiimId()},
                {ZelDbColumn::MolPos2, QString::number(siteB->getParentSdcMol()->getPosIndex())},
                {ZelDbColumn::Geometry, "3D"}, {ZelDbColumn::BindingType, "cis"}};
        }
    };

private slots:
    void listsBondsAsOftenAsTheyAreAdded()
    {
        SdcCxi cxi(nullptr);
        SdcBst bst(nullptr);
        SdcBstBstCxi bond(nullptr);
        SdcBstBstCxi other(nullptr);
        bond.addSdcBst(&bst);
        for (SdcBstBstCxi *entry : {&bond, &other, &bond, static_cast<SdcBstBstCxi *>(nullptr)})
            cxi.addSdcBstBstCxi(entry);
        QCOMPARE(cxi.getListSdcBstBstCxi().size(), 4);
        QCOMPARE(cxi.getSdcBstBstCxiIndex(&other), 1);
        QCOMPARE(cxi.getListSdcBstBstCxiFromListSdcBst({nullptr, &bst, &bst}),
            QList<SdcBstBstCxi *>({&bond}));
        QCOMPARE(cxi.getSdcBstBstCxiFromIndex(-1), nullptr);
        QCOMPARE(cxi.getSdcBstBstCxiFromIndex(4), nullptr);
        cxi.setHighlight(true);
        cxi.removeSdcBstBstCxi(&bond);
        QCOMPARE(cxi.getListSdcBstBstCxi(), QList<SdcBstBstCxi *>({&other, nullptr}));
        QCOMPARE(cxi.getSdcBstBstCxiIndex(&bond), -1);
    }

    void resetEmptiesBondsAndKeepsThem()
    {
        Model model;
        QPointer<Sdc> cpx = model.cxi->getChildSdcAtIndex(0);
        QPointer<SdcBstBstCxi> bond = model.bond;
        bond->setProperty(SdcProperty::Geometry, "2D");
        model.cxi->addSdcBstBstCxi(nullptr);
        model.cxi->reset();
        QVERIFY(!cpx && bond);
        QVERIFY(bond->getListSdcBst().isEmpty() && !bond->getSdcCpx1());
        QVERIFY(!bond->hasProperty(SdcProperty::Geometry));
        QVERIFY(model.cxi->getListSdcBstBstCxi().isEmpty());
    }

    void findsASiteByItsPlaces_data()
    {
        const QString zero = QStringLiteral("0");
        rows<QString, QString, bool, bool>({"molPos", "cpxPos", "known", "found"},
            {{"there", {zero, zero, true, true}},
                {"no numbers mean the first", {A, "", true, true}},
                {"no id", {zero, zero, false, false}},
                {"no such molecule", {"1", zero, true, false}},
                {"no such complex", {zero, "3", true, false}},
                {"null complex", {zero, "2", true, false}},
                {"negative", {"-1", zero, true, false}}});
    }

    void findsASiteByItsPlaces()
    {
        QFETCH(QString, molPos);
        QFETCH(QString, cpxPos);
        QFETCH(bool, known);
        QFETCH(bool, found);
        Model model;
        model.cxi->addSdcChild(nullptr, false);
        if (!known) // no id finds no site, not even one without id
            model.siteA->clearProperty(SdcProperty::PsiimId);
        QCOMPARE(model.cxi->getSdcBstFromBstPsiimIdAndPosIndices(
                     known ? model.siteA->getPsiimId() : QString(), molPos, cpxPos),
            found ? model.siteA : nullptr);
        for (const int index : {-1, 2, 3})
            QCOMPARE(model.cxi->getSdcCpxAtPosIndex(index), nullptr);
    }

    void theBondFindsItsAssociation_data()
    {
        rows<bool>({"found"},
            {{"the stored one", {true}}, {"geometry", {false}}, {"binding type", {false}},
                {"sites exchanged", {false}}, {"no alias", {false}}, {"one site", {false}},
                {"no complex", {false}}, {"no database", {false}}});
    }

    void theBondFindsItsAssociation()
    {
        QFETCH(bool, found);
        Model model;
        QVERIFY(model.db.caiInsert(model.record()));
        SdcBstBstCxi *const bond = model.bond;
        bond->setProperty(26, isRow("geometry") ? "2D" : "3D");
        bond->setProperty(23, isRow("binding type") ? "trans" : "cis");
        for (const int key :
            std::initializer_list<int>{1, 2, 3, 11, 15, 19, SdcProperty::References})
            bond->setProperty(key, "old");
        SdcBst loose(&model.db);
        if (isRow("sites exchanged") || isRow("one site") || isRow("no complex"))
            bond->removeSdcBst(model.siteA);
        if (isRow("sites exchanged"))
            bond->addSdcBst(model.siteA);
        if (isRow("no complex"))
            bond->addSdcBst(&loose);
        if (isRow("no alias"))
            model.cxi->getSdcCpxAtPosIndex(1)->clearProperty(SdcProperty::CpaPsiimId);
        if (isRow("no database"))
            bond->setZelDbSqliteModel(nullptr);
        bond->updatePropertiesFromDb();
        QStringList texts;
        for (const int key : {1, 2, 3, 15, 19, 11})
            texts.append(bond->getProperty(key));
        QCOMPARE(texts.join(u','),
            found ? QStringLiteral("cai7,bind,name,0.5,") + model.aliasAB + QLatin1String(",notes")
                  : QStringLiteral("old,old,old,old,old,old"));
        QCOMPARE(bond->getProperty(SdcProperty::References), found ? "" : "old");
    }

    void theResultAliasMustBeTheResult_data()
    {
        const QString place = QStringLiteral("Error found at void SdcBstBstCxi::"
                                             "setResultCpxAliasPsiimId(const QString & "
                                             "cpxAliasPsiimId): ");
        const QString empty = place + QStringLiteral("empty finger print");
        rows<QStringList, bool>({"complaints", "accepted"},
            {{"stored in another order", {QStringList(), true}},
                {"unknown alias", {QStringList(), false}},
                {"another complex",
                    {{place + QStringLiteral("finger print not match"), "fingerPrintCpx:",
                         "\"Mols[mol1]; Interactions[]\"", "fingerPrintSbbc:", "\"%1\""},
                        false}},
                {"one site",
                    {{"Error found at QString SdcBstBstCxi::getResultCpxFingerPrint() ", empty},
                        false}},
                {"no complex", {{empty}, false}}, {"no database", {QStringList(), false}}});
    }

    void theResultAliasMustBeTheResult()
    {
        QFETCH(QStringList, complaints);
        QFETCH(bool, accepted);
        Model model;
        QString result = model.alias("BAA", {{{1, 2}, {0, 1}}, {{0, 0}, {2, 2}}});
        QVERIFY(!result.isEmpty());
        SdcBst loose(&model.db);
        if (isRow("unknown alias"))
            result = QStringLiteral("cpa99");
        if (isRow("another complex"))
            result = model.aliasA;
        if (isRow("one site") || isRow("no complex"))
            model.bond->removeSdcBst(model.siteB);
        if (isRow("no complex"))
            model.bond->addSdcBst(&loose);
        if (isRow("no database"))
            model.bond->setZelDbSqliteModel(nullptr);
        model.bond->setProperty(SdcProperty::ResultCpaPsiimId, "old");
        model.bond->setResultCpxAliasPsiimId(result);
        QCOMPARE(model.bond->getProperty(SdcProperty::ResultCpaPsiimId),
            accepted ? result : QStringLiteral("old"));
        if (isRow("another complex"))
            complaints.last() = complaints.last().arg(model.bond->getResultCpxFingerPrint());
        QCOMPARE(takeDebugLines(), complaints);
    }

    void theBondsLayoutHoldsBothComplexes()
    {
        Model model;
        QDomDocument doc;
        QVERIFY(doc.setContent(model.bond->getGraphicsInfo()));
        QStringList found;
        for (const char *tag : {"cpx1", "cpx2"}) {
            const QDomElement cpx = doc.documentElement()
                                        .firstChildElement(QLatin1String(tag))
                                        .firstChildElement(QStringLiteral("cpx"));
            found.append(cpx.attribute(QStringLiteral("psiimId")));
            QVERIFY(!cpx.firstChildElement(QStringLiteral("mol")).isNull());
        }
        QCOMPARE(found,
            QStringList(
                {model.bond->getSdcCpx1()->getPsiimId(), model.bond->getSdcCpx2()->getPsiimId()}));
        model.bond->setSdcCpx2(nullptr);
        QVERIFY(model.bond->getGraphicsInfo().isEmpty());
    }

    void partsDieInAnyOrder_data() { orderRows(4); }

    void partsDieInAnyOrder()
    {
        QFETCH(QList<int>, order);
        Model model;
        QPointer<SdcCpx> cpx = model.cxi->getSdcCpxAtPosIndex(0);
        QPointer<SdcBst> bst = model.siteB;
        auto bond = std::unique_ptr<SdcBstBstCxi>(model.bond);
        bond->QObject::setParent(nullptr);
        bond->setSdcCpxResult(cpx);
        model.cxi->addSdcBstBstCxi(bond.get()); // listed twice
        for (const int victim : order) {
            switch (victim) {
            case 0:
                model.cxi.reset();
                break;
            case 1:
                delete cpx;
                break;
            case 2:
                delete bst;
                break;
            default:
                bond.reset();
            }
            if (bond) {
                QCOMPARE(bond->getListSdcBst().size(), int(!cpx.isNull()) + int(!bst.isNull()));
                QCOMPARE(bond->getSdcCpx1(), cpx.data());
                QCOMPARE(bond->getSdcCpxResult(), cpx.data());
                bond->updatePropertiesFromDb();
                bond->getGraphicsInfo();
            }
            if (model.cxi) {
                QCOMPARE(model.cxi->getListSdcBstBstCxi().size(), bond ? 2 : 0);
                QCOMPARE(model.cxi->getListSdcCpx().size(), cpx ? 2 : 1);
                model.cxi->setHighlight(true);
            }
        }
    }
};

ZEL_TEST(tst_SdcCxi)
#include "tst_SdcCxi.moc"
