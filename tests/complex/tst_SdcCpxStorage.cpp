#include "CpxStage.h"

#include "support/ZelTest.h"
#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/support/ZelDialogs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QApplication>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTimer>

#include <memory>
#include <tuple>

using Bonds = QList<CpxStage::Bond>;

namespace {

// A triangle of A with a B at one corner, in two orders of molecules and bonds.
const Bonds lassoBonds{{{0, 0}, {1, 1}}, {{1, 0}, {2, 1}}, {{2, 0}, {0, 1}}, {{2, 2}, {3, 1}}};
const Bonds lassoBondsOtherwise{
    {{0, 1}, {1, 2}}, {{2, 1}, {1, 0}}, {{2, 0}, {3, 1}}, {{1, 1}, {3, 0}}};

std::unique_ptr<SdcCpx> lasso(CpxStage &stage, ZelScene *scene = nullptr)
{
    return std::unique_ptr<SdcCpx>(stage.complex("AAAB", lassoBonds, scene));
}

std::unique_ptr<SdcCpx> lassoOtherwise(CpxStage &stage)
{
    return std::unique_ptr<SdcCpx>(stage.complex("BAAA", lassoBondsOtherwise));
}

/// Without the ids of an alias, which a complex that was just saved does not have.
QString tree(SdcCpx *cpx)
{
    QString text = ZelTree::text(cpx);
    for (SdcBstBstCpx *bond : cpx->getListSdcBstBstCpx()) {
        text += QStringLiteral("bond");
        for (SdcBst *site : bond->getListSdcBst())
            text += QStringLiteral(" %1.%2")
                        .arg(site->getParentSdcMol()->getPosIndex())
                        .arg(site->getPsiimId());
        text += u' ' + bond->getProperty(SdcProperty::Notes) + u'\n';
    }
    return text;
}

} // namespace

class tst_SdcCpxStorage : public ZelTest
{
    Q_OBJECT

private slots:
    void comesBackAsItWas_data()
    {
        rows<bool>({"inScene"}, {{"in a scene", {true}}, {"in none", {false}}});
    }

    void comesBackAsItWas()
    {
        QFETCH(bool, inScene);
        CpxStage stage;
        ZelScene drawn(nullptr);
        const auto cpx = lasso(stage, &drawn);
        cpx->setProperty(SdcProperty::Name, "a <lasso>");
        cpx->setProperty(SdcProperty::ShortName, "'L'");
        cpx->setProperty(SdcProperty::CpxText, "nine");
        cpx->setProperty(SdcProperty::Notes, "notes \u03b2");
        cpx->setProperty(SdcProperty::References, "doi:1");
        cpx->getSdcBstBstCpxFromIndex(1)->setProperty(SdcProperty::Notes, "bond");
        cpx->getListSdcMcp().at(3)->getZelEllipseItemMcp()->moveBy(12.5, -7.25);
        QVERIFY(cpx->saveToDbCpx());
        const QString id = cpx->getPsiimId();
        const QStringList rows = stage.rows(id);

        ZelScene scene(nullptr);
        SdcCpx loaded(&stage.db);
        QVERIFY(loaded.loadCpxFromDb(id, inScene ? &scene : nullptr));
        // Bonds know their notes through their rows, item texts their first order: both follow
        // below.
        QString expected = tree(cpx.get());
        expected.replace(QLatin1String(" bond\n"), QLatin1String(" \n"));
        const auto withoutNumbers = [](QString text) {
            return text.replace(QRegularExpression("Molecule \\d+"), QString());
        };
        QCOMPARE(withoutNumbers(tree(&loaded)), withoutNumbers(expected));
        if (inScene) {
            for (SdcBstBstCpx *bond : loaded.getListSdcBstBstCpx())
                QVERIFY(bond->getZelLineItemBstBst() && bond->getZelLineItemBstBst()->scene());
        }
        QVERIFY(loaded.saveToDbCpx());
        QStringList again = stage.rows(id);
        QCOMPARE(again, rows);
    }

    void isStoredOnceHoweverItIsDrawn()
    {
        CpxStage stage;
        const auto cpx = lasso(stage);
        QVERIFY(cpx->saveToDbCpx());
        QVERIFY(cpx->saveToDbCpx()); // again under its id: its rows are replaced
        QCOMPARE(stage.db.cpxGetArrayBstBst(cpx->getPsiimId()).size(), 4);
        QCOMPARE(stage.db.cpxGetListMolPsiimId(cpx->getPsiimId()).size(), 4);

        const auto other = lassoOtherwise(stage);
        QVERIFY(!other->saveToDbCpx());
        QCOMPARE(takeDebugText(),
            "zelModelSupport/zelModelSupportDataComponent/SdcCpx 978 Error found ");
        QCOMPARE(stage.db.cpxGetListPsiimId(), QStringList{cpx->getPsiimId()});
        QCOMPARE(other->getBstBindingCode(), cpx->getBstBindingCode()); // both in canonical order

        const std::unique_ptr<SdcCpx> chain(
            stage.complex("AAAB", {lassoBonds[0], lassoBonds[1], lassoBonds[3]}));
        QVERIFY(chain->saveToDbCpx());
        QCOMPARE(stage.db.cpxGetListPsiimId().size(), 2);
    }

    void refusesAnUnconnectedComplex()
    {
        CpxStage stage;
        const std::unique_ptr<SdcCpx> cpx(stage.complex("AB", {}));
        QVERIFY(!cpx->saveToDbCpx());
        QCOMPARE(takeDebugText(),
            "Warning at bool SdcCpx::saveToDb(), Complex component are not all connected. Can't "
            "save.");
        QVERIFY(cpx->getPsiimId().isEmpty());
        QVERIFY(!cpx->updateToDbWithNewBst());
        QCOMPARE(takeDebugText(),
            "Warning at bool SdcCpx::updateToDbWithNewBst() , Complex component are not all "
            "connected. Can't update.");
        QVERIFY(!cpx->saveToDbCpa());
        QCOMPARE(takeDebugLines().size(), 1);
        QVERIFY(stage.db.cpxGetListPsiimId().isEmpty());
    }

    void refusesATakenShortNameAndSaysSo_data()
    {
        rows<bool, QString>({"byHost", "reason"},
            {{"in a box",
                 {false,
                     "Complex species short name 'same' is already used, please rename and try "
                     "to save again."}},
                {"in the host's way",
                    {true,
                        "Complex species short name 'same' is already used, please rename and try "
                        "to save again."}},
                {"nobody can tell whether it is taken", {true, "open"}}});
    }

    void refusesATakenShortNameAndSaysSo()
    {
        struct HostDialogs : ZelDialogs
        {
            QStringList said;
            void tellRefusal(const QString &reason) override { said.append(reason); }
        };
        QFETCH(bool, byHost);
        QFETCH(QString, reason);
        CpxStage stage;
        const std::unique_ptr<SdcCpx> first(stage.complex("A", {}));
        first->setProperty(SdcProperty::ShortName, "same");
        QVERIFY(first->saveToDbCpx());
        const std::unique_ptr<SdcCpx> second(stage.complex("B", {}));
        second->setProperty(SdcProperty::ShortName, "same");
        const bool isClosed = isRow("nobody can tell whether it is taken");
        if (isClosed)
            stage.file.close();
        QVERIFY(second->getSaveRefusal().contains(reason)); // asked beforehand, nothing is shown
        QVERIFY(second->getRefusal().isEmpty());
        auto host = std::make_unique<HostDialogs>();
        QStringList *const said = &host->said;
        if (byHost)
            ZelDialogs::setCurrent(host.get());
        QTimer::singleShot(0, second.get(), [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                said->append(box->text());
                QCOMPARE(box->icon(), QMessageBox::Information);
                box->accept();
            }
        });
        QVERIFY(!second->saveToDbCpx());
        QVERIFY2(second->getRefusal().contains(reason), qPrintable(second->getRefusal()));
        QCOMPARE(*said, isClosed ? QStringList() : QStringList{reason});
        host.reset(); // gives way to the library's own
        if (isClosed) {
            QCOMPARE(takeDebugLines().size(), 1);
            QCOMPARE(second->getDefaultSpeciesName(), QString());
            QVERIFY(!second->saveToDbCpa());
            QCOMPARE(takeDebugLines().size(), 1);
            return;
        }
        QCOMPARE(stage.db.cpxGetListPsiimId().size(), 1);
        second->setProperty(SdcProperty::ShortName, "other");
        QVERIFY(second->getSaveRefusal().isEmpty());
        QVERIFY(second->saveToDbCpx());
        QVERIFY(second->getRefusal().isEmpty());
    }

    void aSpeciesDrawnAgainKeepsWhatIsStored()
    {
        CpxStage stage;
        const auto cpx = lasso(stage);
        for (const int key : {SdcProperty::ShortName, SdcProperty::Name, SdcProperty::CpxText,
                 SdcProperty::Notes, SdcProperty::References})
            cpx->setProperty(key, QString::number(key));
        cpx->getSdcBstBstCpxFromIndex(1)->setProperty(SdcProperty::Notes, "bond");
        QVERIFY(cpx->saveToDbCpx());
        const QString id = cpx->getPsiimId();
        const auto stored = [&] {
            ZelDbRecord record = stage.db.cpxGetHashInfo(id);
            record.remove(ZelDbColumn::GraphicsInfo); // drawn anew
            return std::tuple(record, stage.db.refGetReferences("cpx", id),
                stage.db.cpxGetBstBstNotes(id).values());
        };
        const auto before = stored();
        QCOMPARE(std::get<2>(before), QStringList{"bond"});
        const auto again = lassoOtherwise(stage);
        QVERIFY(again->getSaveRefusal().contains(id));
        QVERIFY(again->adoptStoredSpecies());
        QVERIFY(again->saveToDbCpx());
        QVERIFY(stored() == before);
    }

    void aBondWithoutASiteEndsTheBonds()
    {
        CpxStage stage;
        const auto cpx = lasso(stage);
        auto *const half = new SdcBstBstCpx(&stage.db, cpx.get());
        half->addSdcBst(CpxStage::site(cpx.get(), {0, 2}));
        cpx->addSdcBstBstCpx(half);
        stage.bond(cpx.get(), {{1, 2}, {3, 0}});
        QVERIFY(cpx->saveToDbCpx()); // the answer is about the complex and its molecules
        QCOMPARE(takeDebugText(), "Warning at void CpxEdit::saveCpx()  1");
        QCOMPARE(stage.db.cpxGetArrayBstBst(cpx->getPsiimId()).size(), 4);
    }

    void choosesDefaultNames_data()
    {
        rows<QString, QString, QString>({"types", "taken", "shortName"},
            {{"one molecule: its name", {"B", "", "B"}},
                {"names in canonical order", {"BA", "", "A.B"}},
                {"taken", {"BA", "A.B", "A.B_1"}}});
    }

    void choosesDefaultNames()
    {
        QFETCH(QString, types);
        QFETCH(QString, taken);
        QFETCH(QString, shortName);
        CpxStage stage;
        if (!taken.isEmpty()) {
            const std::unique_ptr<SdcCpx> other(stage.complex("A", {}));
            other->setProperty(SdcProperty::ShortName, taken);
            QVERIFY(other->saveToDbCpx());
        }
        const Bonds bonds = types.size() > 1 ? Bonds{{{0, 0}, {1, 0}}} : Bonds();
        const std::unique_ptr<SdcCpx> cpx(stage.complex(types, bonds));
        QVERIFY(cpx->saveToDbCpx());
        QCOMPARE(cpx->getProperty(SdcProperty::ShortName), shortName);
        QCOMPARE(cpx->getProperty(SdcProperty::Name), shortName);
    }

    void findsAnAliasHoweverItIsDrawn()
    {
        CpxStage stage;
        const Bonds dimerBonds{{{0, 0}, {1, 0}}};
        const std::unique_ptr<SdcCpx> dimer(stage.complex("AA", dimerBonds));
        QVERIFY(dimer->saveToDbCpx());
        const QList<SdcMol *> mols = dimer->getChildMolList();
        const auto setState = [&](int mol, int state) {
            CpxStage::setState(dimer.get(), mols.at(mol)->getPosIndex(), 1, state);
        };
        setState(0, ComponentStateOff);
        QVERIFY(dimer->saveToDbCpa());
        const QString aliasId = dimer->getProperty(SdcProperty::CpaPsiimId);
        // The same molecule is changed back and the other one changed: one species all the same.
        setState(0, ComponentStateOn);
        QVERIFY(!dimer->retrieveAliasBasedOnState(false));
        QCOMPARE(dimer->getProperty(SdcProperty::CpaPsiimId), aliasId);
        QVERIFY(!dimer->retrieveAliasBasedOnState(true));
        QCOMPARE(dimer->getProperty(SdcProperty::CpaPsiimId), QString());
        setState(1, ComponentStateOff);
        QVERIFY(dimer->retrieveAliasBasedOnState(false));
        QCOMPARE(dimer->getProperty(SdcProperty::CpaPsiimId), aliasId);
        QVERIFY(dimer->saveToDbCpa());
        QCOMPARE(stage.db.cpaGetListPsiimId(), QStringList{aliasId});
        // The second key tells places apart.
        dimer->setProperty(SdcProperty::CpaKey2, "nucleus");
        QVERIFY(!dimer->retrieveAliasBasedOnState(false));
    }

    void aChangedAliasIsANewOne()
    {
        CpxStage stage;
        const auto cpx = lasso(stage);
        cpx->setProperty(SdcProperty::ShortName, "L");
        QVERIFY(!cpx->saveToDbCpa()); // not stored yet
        QCOMPARE(takeDebugLines().size(), 1);
        QVERIFY(cpx->saveToDbCpx());
        QVERIFY(cpx->saveToDbCpa());
        const QString first = cpx->getProperty(SdcProperty::CpaPsiimId);
        CpxStage::setState(cpx.get(), 1, 0, ComponentStateDontCare);
        QVERIFY(cpx->saveToDbCpa());
        const QString second = cpx->getProperty(SdcProperty::CpaPsiimId);
        QVERIFY(first != second);
        const auto name = [&stage](const QString &id) {
            return stage.db.cpaGetHashInfo(id).value(ZelDbColumn::CpaShortName);
        };
        QCOMPARE(name(first), "L");
        QCOMPARE(name(second), "L_1");
        for (SdcBst *site : cpx->getListSdcBst())
            site->setBindingStatus(BindingStatusUnbound);
        CpxStage::setState(cpx.get(), 1, 0, ComponentStateOn);
        QVERIFY(cpx->saveToDbCpa());
        QCOMPARE(stage.db.cpaGetListWellDefinedPsiimIds(),
            QStringList{cpx->getProperty(SdcProperty::CpaPsiimId)});
    }

    void aChangedStructureIsASpeciesOfItsOwn()
    {
        CpxStage stage;
        const auto cpx = lasso(stage);
        QVERIFY(!cpx->adoptStoredSpecies());
        QVERIFY(cpx->saveToDbCpx() && cpx->saveToDbCpa());
        const QString id = cpx->getPsiimId();
        const QString aliasId = cpx->getProperty(SdcProperty::CpaPsiimId);
        const QStringList rows = stage.rows(id);
        // One ring bond less: the alias needs the complex as it was.
        SdcBstBstCpx *bond = nullptr;
        for (SdcBstBstCpx *entry : cpx->getListSdcBstBstCpx()) {
            if (cpx->isBstBstPartOfRing(entry))
                bond = entry;
        }
        SdcBst *const first = bond->getSdcBst1();
        SdcBst *const second = bond->getSdcBst2();
        delete bond;
        QVERIFY(!cpx->saveToDbCpx());
        QCOMPARE(takeDebugLines().size(), 1);
        QVERIFY(!cpx->adoptStoredSpecies());
        QVERIFY(cpx->saveToDbCpx() && cpx->saveToDbCpa());
        QVERIFY(cpx->getPsiimId() != id && cpx->getProperty(SdcProperty::CpaPsiimId) != aliasId);
        QCOMPARE(stage.rows(id), rows);
        // With the bond it is the stored one again.
        auto *const renewed = new SdcBstBstCpx(&stage.db, cpx.get());
        renewed->addSdcBst(first);
        renewed->addSdcBst(second);
        cpx->addSdcBstBstCpx(renewed);
        QVERIFY(cpx->adoptStoredSpecies());
        QVERIFY(cpx->saveToDbCpx() && cpx->saveToDbCpa());
        QCOMPARE(cpx->getProperty(SdcProperty::CpaPsiimId), aliasId);
        QCOMPARE(stage.db.cpxGetListPsiimId().size(), 2);
    }

    void aDamagedLayoutLosesNoMolecule_data()
    {
        // layout: %1: the stored one
        rows<QString>({"layout"},
            {{"empty", {""}},
                {"cut off", {"<schema><cpx psiimId=\"cpx1\"><boundingRect x=\"1\" y=\"2\""}},
                {"without molecules",
                    {"<schema><cpx psiimId=\"cpx1\"><boundingRect x=\"1\" "
                     "y=\"2\" w=\"1\" h=\"1\"/></cpx></schema>"}},
                {"of another kind", {"<schema><mol psiimId=\"mol1\"/></schema>"}},
                {"nested in itself",
                    {"<schema><cpx><cpx><cpx><cpx><cpx><mol/></cpx></cpx></cpx></"
                     "cpx></cpx></schema>"}}});
    }

    void aDamagedLayoutLosesNoMolecule()
    {
        QFETCH(QString, layout);
        CpxStage stage;
        const auto cpx = lasso(stage);
        QVERIFY(cpx->saveToDbCpx());
        SdcCpx loaded(&stage.db);
        QVERIFY(loaded.loadCpx(cpx->getPsiimId(), layout, nullptr, QPointF(5.0, 5.0), false));
        QVERIFY(takeDebugLines().size() >= 4); // each molecule without a place is reported
        QCOMPARE(loaded.getCpxFingerPrint(), cpx->getCpxFingerPrint());
        QList<QRectF> rects;
        for (SdcMol *mol : loaded.getChildMolList())
            rects.append(mol->getSdcSceneRectF());
        for (qsizetype i = 0; i < rects.size(); ++i) {
            for (qsizetype k = 0; k < i; ++k)
                QVERIFY(!rects.at(i).intersects(rects.at(k)));
        }
    }

    void reportsWhatDoesNotExist()
    {
        CpxStage stage;
        SdcCpx cpx(&stage.db);
        QVERIFY(!cpx.loadCpxFromDb("cpx7"));
        QVERIFY(!cpx.loadCpaFromDb("cpa7"));
        QVERIFY(!SdcCpx(nullptr).loadCpxFromDb("cpx7"));
        QVERIFY(!SdcCpx(nullptr).retrieveAliasBasedOnState(true));
        QCOMPARE(takeDebugLines().size(), 3);
        QVERIFY(!SdcCpx(nullptr).saveToDbCpx()); // what is wrong with the complex comes first
        QCOMPARE(takeDebugText(),
            "Warning at bool SdcCpx::saveToDb(), Complex component are not all connected. Can't "
            "save.");
        const std::unique_ptr<SdcCpx> dimer(stage.complex("AB", {{{0, 0}, {1, 0}}}));
        QVERIFY(!dimer->updateToDbWithNewBst());
        QCOMPARE(takeDebugText(), "Error (1) found at bool SdcCpx::updateToDbWithNewBst()");
    }

    void aNewBondKeepsTheAliases()
    {
        CpxStage stage;
        // With a second B the order of the molecules changes: the A with two neighbours comes
        // first.
        const std::unique_ptr<SdcCpx> cpx(
            stage.complex("AAAB", {{{0, 0}, {1, 1}}, {{1, 0}, {2, 1}}, {{0, 2}, {3, 0}}}));
        QVERIFY(cpx->saveToDbCpx());
        SdcMol *const changed = cpx->getChildMolList().at(0);
        CpxStage::setState(cpx.get(), 0, 0, ComponentStateOff);
        QVERIFY(cpx->saveToDbCpa());
        const QString aliasId = cpx->getProperty(SdcProperty::CpaPsiimId);
        for (SdcBst *site : cpx->getListSdcBst())
            site->setBindingStatus(BindingStatusUnspecified);
        CpxStage::setState(cpx.get(), cpx->getChildMolList().indexOf(changed), 0, ComponentStateOn);

        // Close the ring of the three A and store it again.
        SdcMol *first = nullptr;
        SdcMol *last = nullptr;
        for (SdcMol *mol : cpx->getChildMolList()) {
            if (mol->getPsiimId() != stage.molA)
                continue;
            if (!mol->getListSdcBst().at(1)->isInCpxBinding())
                first = mol;
            if (!mol->getListSdcBst().at(0)->isInCpxBinding())
                last = mol;
        }
        QVERIFY(first && last && first != last);
        stage.bond(cpx.get(), {{first->getPosIndex(), 1}, {last->getPosIndex(), 0}});
        QVERIFY(cpx->updateToDbWithNewBst());
        QCOMPARE(stage.db.cpxGetArrayBstBst(cpx->getPsiimId()).size(), 4);
        CpxStage::setState(cpx.get(), changed->getPosIndex(), 0, ComponentStateOff);
        QVERIFY(cpx->retrieveAliasBasedOnState(true));
        QCOMPARE(cpx->getProperty(SdcProperty::CpaPsiimId), aliasId);
        SdcCpx loaded(&stage.db);
        QVERIFY(loaded.loadCpaFromDb(aliasId));
        QVERIFY(loaded.hasRingStructure());
    }

    void findsTheComplexesThatOpenARing()
    {
        CpxStage stage;
        const std::unique_ptr<SdcCpx> ring(
            stage.complex("AAA", {{{0, 0}, {1, 1}}, {{1, 0}, {2, 1}}, {{2, 0}, {0, 1}}}));
        const std::unique_ptr<SdcCpx> chain(
            stage.complex("AAA", {{{0, 0}, {1, 1}}, {{1, 0}, {2, 1}}}));
        const std::unique_ptr<SdcCpx> otherChain(
            stage.complex("AAA", {{{0, 0}, {1, 0}}, {{1, 1}, {2, 1}}}));
        QVERIFY(ring->saveToDbCpx() && chain->saveToDbCpx() && otherChain->saveToDbCpx());
        const auto split = [&stage](const auto &cpx, bool self) {
            return SdcCpx::getSplitRingCpxPsiimIds(cpx->getPsiimId(), &stage.db, self);
        };
        QCOMPARE(split(ring, false), QStringList{chain->getPsiimId()});
        QCOMPARE(split(chain, true), (QStringList{chain->getPsiimId(), ring->getPsiimId()}));
        QCOMPARE(split(otherChain, false), QStringList());
        const auto equivalent = [&stage](const auto &cpx, bool self) {
            return SdcCpx::getEquivalentCpxPsiimIds(cpx->getPsiimId(), &stage.db, self);
        };
        int built = 0;
        stage.file.setStatementObserver([&built](const QString &sql, const QVariantList &) {
            built += sql.contains(QLatin1String("FROM cpxBstBst")) ? 1 : 0;
        });
        QCOMPARE(equivalent(ring, false), QStringList{chain->getPsiimId()});
        QCOMPARE(built, 3); // each of the three once
        QCOMPARE(equivalent(otherChain, true), QStringList{otherChain->getPsiimId()});
        QCOMPARE(SdcCpx::getEquivalentCpxPsiimIds("cpx9", &stage.db, true), QStringList());
    }
};

ZEL_TEST(tst_SdcCpxStorage)
#include "tst_SdcCpxStorage.moc"
