#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <memory>

class tst_SdcBstBst : public ZelTest
{
    Q_OBJECT
private slots:
    void atMostTwoSites()
    {
        SdcBst a(nullptr);
        SdcBst b(nullptr);
        SdcBst c(nullptr);
        SdcBstBst bond(nullptr);
        bond.addSdcBst(nullptr);
        bond.addSdcBst(&a);
        QCOMPARE(bond.getPartnerSdcBst(&a), nullptr);
        QVERIFY(!bond.isSameSdcBstBst(&a, &a));
        bond.addSdcBst(&b);
        bond.addSdcBst(&c);
        QCOMPARE(takeDebugText(),
            "Warning at void SdcBstBst::addSdcBst(SdcBst * sdcBst)  Already 2 SdcBst in this "
            "relation");
        QCOMPARE(bond.getListSdcBst(), QList<SdcBst *>({&a, &b}));
        QCOMPARE(bond.getPartnerSdcBst(&a), &b);
        QCOMPARE(bond.getPartnerSdcBst(&b), &a);
        QCOMPARE(bond.getPartnerSdcBst(&c), nullptr);
        QCOMPARE(bond.getPartnerSdcBst(nullptr), nullptr);
        QVERIFY(bond.isSameSdcBstBst(&b, &a));
        QVERIFY(!bond.isSameSdcBstBst(&a, &a));
        QVERIFY(!bond.isSameSdcBstBst(&a, nullptr));
        SdcBstBst reversed(nullptr);
        reversed.addSdcBst(&b);
        QVERIFY(!bond.isSameSdcBstBst(&reversed));
        reversed.addSdcBst(&a);
        QVERIFY(bond.isSameSdcBstBst(&reversed));
        QVERIFY(!bond.isSameSdcBstBst(static_cast<SdcBstBst *>(nullptr)));
        bond.removeSdcBst(&a);
        QCOMPARE(bond.getSdcBst1(), &b);
        QCOMPARE(bond.getSdcBst2(), nullptr);
        bond.addSdcBst(&b);
        QCOMPARE(bond.getPartnerSdcBst(&b), &b);
        bond.removeSdcBst(&b);
        QVERIFY(bond.getListSdcBst().isEmpty());
        QVERIFY(b.getListSdcBstBst() == QList<SdcBstBst *>{&reversed});
    }

    void interactionsOfTheTwoSiteTypes()
    {
        ZelDbSqlite database;
        QVERIFY(database.create(":memory:"));
        ZelDbSqliteModel db(&database);
        const std::unique_ptr<SdcMol> mol(ZelTree::bareMolecule(&db, "M", {{"a", {}, 3}}));
        QVERIFY(mol->saveToDb());
        const QList<SdcBst *> sites = mol->getListSdcBst();
        QVERIFY(db.mliInsert({{ZelDbColumn::PsiimId, "mli1"}, {ZelDbColumn::AssociationRate, "2e6"},
            {ZelDbColumn::DissociationRate, "0.3"}, {ZelDbColumn::Bst1, sites.at(0)->getPsiimId()},
            {ZelDbColumn::MolPos1, "0"}, {ZelDbColumn::Bst2, sites.at(1)->getPsiimId()},
            {ZelDbColumn::MolPos2, "1"}}));
        SdcBstBst declared(&db);
        declared.addSdcBst(sites.at(1));
        QVERIFY(!declared.isMliDefined());
        declared.addSdcBst(sites.at(0));
        QVERIFY(declared.isMliDefined());
        QCOMPARE(declared.getDefaultAssocRateFromMli(), "2e6");
        QCOMPARE(declared.getDefaultDissocRateFromMli(), "0.3");
        SdcBstBst undeclared(&db);
        undeclared.addSdcBst(sites.at(0));
        undeclared.addSdcBst(sites.at(2));
        QVERIFY(!undeclared.isMliDefined());
        QCOMPARE(undeclared.getDefaultAssocRateFromMli(), QString());
    }

    void placesThatCannotMeet_data()
    {
        const QString membrane = QStringLiteral("Membrane Associated");
        const QString inside = QStringLiteral("Inside-membrane");
        rows<QString, QString, QString, QString, bool>(
            {"mol1", "mcp1", "mol2", "mcp2", "inconsistent"},
            {{"nothing said", {"", "", "", "", false}},
                {"both inside", {membrane, inside, membrane, inside, false}},
                {"one reaches out", {membrane, "", membrane, inside, true}},
                {"two sides", {membrane, "Outer", membrane, "Inner", true}},
                {"one side", {"", "Inner", membrane, "Inner", false}},
                {"free molecule", {"Freely Diffusing", "", membrane, inside, false}}});
    }

    void placesThatCannotMeet()
    {
        QFETCH(QString, mol1);
        QFETCH(QString, mcp1);
        QFETCH(QString, mol2);
        QFETCH(QString, mcp2);
        std::unique_ptr<SdcMol> mols[2];
        SdcBstBst bonds[2] = {SdcBstBst(nullptr), SdcBstBst(nullptr)};
        QVERIFY(!bonds[0].isInconsistentBinding());
        const QString places[2][2] = {{mol1, mcp1}, {mol2, mcp2}};
        for (int i = 0; i < 2; ++i) {
            mols[i].reset(ZelTree::bareMolecule(nullptr, "M", {{"a", {}, 1}}));
            mols[i]->setProperty(25, places[i][0]);
            mols[i]->getSdcMcpAtIndex(0)->setProperty(25, places[i][1]);
        }
        for (int i = 0; i < 2; ++i) {
            bonds[i].addSdcBst(mols[i]->getListSdcBst().first());
            bonds[i].addSdcBst(mols[1 - i]->getListSdcBst().first());
            QTEST(bonds[i].isInconsistentBinding(), "inconsistent");
        }
    }
};

ZEL_TEST(tst_SdcBstBst)
#include "tst_SdcBstBst.moc"
