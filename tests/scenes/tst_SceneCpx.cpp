#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

#include <QSignalSpy>
#include <QStandardItemModel>

// The scene of a complex: molecules that come, move, turn and go, and the menus that set states.
class tst_SceneCpx : public EditingTest<ZelSceneCpx>
{
    Q_OBJECT
protected:
    void init() override
    {
        EditingTest::init();
        addThree();
    }

private slots:
    void droppedMolecule()
    {
        QStandardItemModel model;
        auto *const cpx = new SdcCpx(m_model->db());
        model.appendRow(cpx);
        ZelSceneCpx scene;
        scene.setZelDbSqliteModel(m_model->db());
        scene.setSdc(cpx);
        Hands user(&scene);
        QSignalSpy added(cpx, &Sdc::childSdcAdded);
        QSignalSpy ended(&scene, &ZelScene::signal_changeEnd);
        QVERIFY(user.drop(QLatin1String("mol;") + m_model->molA(), {50.0, 40.0}));
        QCOMPARE(added.size(), 1);
        QCOMPARE(ended.size(), 1);
        QCOMPARE(cpx->rowCount(), 1);
        SdcMol *const mol = cpx->getListSdcMol().at(0);
        QCOMPARE(mol->getPsiimId(), m_model->molA());
        const QRectF rect = scene.getSceneRectForAllItems();
        QVERIFY(QLineF(rect.center(), QPointF(50.0, 40.0)).length() < 1.5); // pixels are whole
        QVERIFY(mol->getListSdcBst().at(0)->getZelEllipseItemBst()->getBindStatusItem());
    }

    void droppedOnAnother()
    {
        SdcMol *const mol = m_scene->addMolFromDb(m_model->molA(), componentOf(0));
        for (SdcMcp *mcp : mol->getListSdcMcp())
            QVERIFY(!m_scene->collidingWithOtherSdcItems(
                mcp->getZelEllipseItemMcp(), QList<ZelEllipseItem *>()));
        QVERIFY(QLineF(Hands::centreOf(mol), componentOf(0)).length() < 200.0);
    }

    void dropRefused_data()
    {
        rows<QString, bool>({"record", "readOnly"},
            {{"unknown molecule", {"mol;mol99", false}}, {"unknown complex", {"cpx;cpx99", false}},
                {"unknown alias", {"cpa;", false}}, {"another kind", {"trn;trn1", false}},
                {"no record", {"mol", false}}, {"read-only", {"mol;mol1", true}}});
    }

    void dropRefused()
    {
        QFETCH(QString, record);
        QFETCH(bool, readOnly);
        m_scene->setReadOnly(readOnly);
        QVERIFY(!m_user->drop(record, {0.0, -200.0}));
        QCOMPARE(m_scene->getSdcCpx()->getListSdcMol().size(), 3);
        // Asked for without a drop it says why.
        QSignalSpy begun(m_scene.get(), &ZelScene::signal_changeBegin);
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        QVERIFY(!m_scene->addRecordFromDb(
            record.section(u';', 0, 0), record.section(u';', 1), {0.0, -200.0}));
        QCOMPARE(refused.size(), 1);
        QVERIFY(refused.at(0).at(0).toString().endsWith(u'.'));
        QVERIFY(begun.isEmpty());
    }

    void dragMovesTheMolecule_data()
    {
        rows<bool>({"ctrl"}, {{"alone", {false}}, {"with what is bonded to it", {true}}});
    }

    void dragMovesTheMolecule()
    {
        QFETCH(bool, ctrl);
        bond();
        QList<QPointF> before;
        for (SdcMol *mol : std::as_const(m_mols))
            before.append(Hands::centreOf(mol));
        const QPointF by(20.0, 30.0);
        m_user->modifiers = ctrl ? Qt::ControlModifier : Qt::NoModifier;
        m_user->drag(componentOf(0), componentOf(0) + by);
        QVERIFY(QLineF(Hands::centreOf(m_mols.at(0)), before.at(0) + by).length() < 1.5);
        const QPointF bonded = ctrl ? before.at(1) + by : before.at(1);
        QVERIFY(QLineF(Hands::centreOf(m_mols.at(1)), bonded).length() < 1.5);
        QCOMPARE(Hands::centreOf(m_mols.at(2)), before.at(2));
    }

    void draggedMoleculeIsOnTop()
    {
        const QPointF home = componentOf(0);
        const QPointF place = componentOf(1);
        const auto molAt = [&](const QPointF &p) {
            return m_scene->getZelGItemFromScenePos(p)->getSdc()->getParentSdcMol();
        };
        m_user->drag(home, place);
        QCOMPARE(molAt(place), m_mols.at(0));
        m_user->drag(place, home);
        m_user->drag(componentOf(1), home);
        QCOMPARE(molAt(home), m_mols.at(1));
    }

    void sceneRectFollows()
    {
        const QRectF least = m_scene->sceneRect();
        SdcMol *const far = m_scene->addMolFromDb(m_model->molA(), {3000.0, 0.0});
        const ZelSceneState state = ZelSceneState::take(m_scene.get());
        const QPointF at = Hands::centreOf(far->getSdcMcpAtIndex(0));
        m_user->drag(at, at + QPointF(0.0, 1500.0));
        QVERIFY(m_scene->sceneRect().contains(far->getSdcSceneRectF()));
        m_scene->removeSdcMol(far);
        QCOMPARE(m_scene->sceneRect(), least);
        QVERIFY(state.restore(m_scene.get()));
        QVERIFY(m_scene->sceneRect().contains(m_scene->getSceneRectForAllItems()));
    }

    void menuTurnsAndFlips_data()
    {
        rows<QString, bool>({"entry", "group"},
            {{"clockwise", {"Rotate Molecule Clockwise", false}},
                {"counterclockwise", {"Rotate Molecule Counterclockwise", false}},
                {"flip", {"Flip Molecule", false}}, {"group", {"Flip Connected Group", true}}});
    }

    void menuTurnsAndFlips()
    {
        QFETCH(QString, entry);
        QFETCH(bool, group);
        QVERIFY(!m_user->entries(componentOf(0)).contains(QLatin1String("Flip Connected Group")));
        bond();
        const QPointF site0 = Hands::centreOf(site(0, "a3"));
        const QPointF site1 = Hands::centreOf(site(1, "b1"));
        const QPointF site2 = Hands::centreOf(site(2, "b1"));
        QVERIFY(m_user->choose(componentOf(0), entry));
        QVERIFY(QLineF(Hands::centreOf(site(0, "a3")), site0).length() > 10.0);
        QCOMPARE(QLineF(Hands::centreOf(site(1, "b1")), site1).length() > 10.0, group);
        QCOMPARE(Hands::centreOf(site(2, "b1")), site2);
    }

    void bondGoesItsStatusReturns()
    {
        site(1, "b2")->setBindingStatus(BindingStatusUnbound);
        const auto markColor = [this] {
            return site(1, "b2")->getZelEllipseItemBst()->getBindStatusItem()->brush().color();
        };
        const QColor unbound = markColor();
        bond();
        QVERIFY(markColor() != unbound);
        m_scene->removeBond(m_scene->getSdcCpx()->getListSdcBstBstCpx().at(0));
        QCOMPARE(markColor(), unbound);
        QCOMPARE(site(1, "b2")->getBindingStatus(), BindingStatusUnbound);
    }

    void storedBondLeavesItsSitesFree_data()
    {
        rows<bool>({"wholeMolecule"}, {{"bond", {false}}, {"molecule", {true}}});
    }

    void storedBondLeavesItsSitesFree()
    {
        QFETCH(bool, wholeMolecule);
        bond();
        m_scene->removeSdcMol(m_mols.at(2));
        SdcCpx *const cpx = m_scene->getSdcCpx();
        QVERIFY(cpx->saveToDbCpx() && cpx->saveToDbCpa());
        QVERIFY(m_scene->loadAlias(cpx->getProperty(SdcProperty::CpaPsiimId)));
        SdcBstBstCpx *const loaded = cpx->getListSdcBstBstCpx().at(0);
        SdcBst *const left = loaded->getSdcBst1();
        const QPointer<SdcBst> other = loaded->getSdcBst2();
        const ZelSceneState state = ZelSceneState::take(m_scene.get());
        QSignalSpy ended(m_scene.get(), &ZelScene::signal_changeEnd);
        if (wholeMolecule)
            m_scene->removeSdcMol(other->getParentSdcMol());
        else
            QVERIFY(m_user->choose(Hands::centreOf(other), "Delete Bond"));
        QCOMPARE(ended.size(), 1);
        for (SdcBst *site : wholeMolecule ? QList{left} : QList{left, other.data()})
            QCOMPARE(site->getBindingStatus(), BindingStatusUnbound);
        QVERIFY(state.restore(m_scene.get()));
        QCOMPARE(cpx->getListSdcBstBstCpx().size(), 1);
        QCOMPARE(left->getStoredBindingStatus(), BindingStatusBound);
    }

    void oneLookForOneState_data()
    {
        rows<QString>({"how"}, {{"molecule", {"mol"}}, {"complex", {"drop"}}, {"load", {"load"}}});
    }

    // What comes with all features On looks as it does when it is opened again.
    void oneLookForOneState()
    {
        QFETCH(QString, how);
        m_scene->removeContents();
        m_scene->addMolFromDb(m_model->molA(), {0.0, 0.0});
        SdcCpx *const cpx = m_scene->getSdcCpx();
        QVERIFY(cpx->saveToDbCpx());
        const QString id = cpx->getPsiimId();
        if (how == QLatin1String("drop")) {
            m_scene->removeContents();
            QVERIFY(m_scene->addCpxFromDb(id, {0.0, 0.0}));
        } else if (how == QLatin1String("load")) {
            QVERIFY(m_scene->load(id));
        }
        QVERIFY(cpx->saveToDbCpa());
        const QImage before = picture();
        QVERIFY(m_scene->loadAlias(cpx->getProperty(SdcProperty::CpaPsiimId)));
        QCOMPARE(picture(), before);
    }

    void aMoleculeGrowsAfterItsComplexes()
    {
        bond();
        // B lies where a new component would come, were it alone.
        const QRectF first = m_mols.at(0)->getSdcSceneRectF();
        m_scene->moveListSdcMcps(m_mols.at(1)->getListSdcMcp(),
            first.center() + QPointF(0.5 * first.width() + 50.0, 0.0)
                - Hands::centreOf(m_mols.at(1)));
        m_scene->removeSdcMol(m_mols.at(2));
        SdcCpx *const cpx = m_scene->getSdcCpx();
        cpx->setAllBstStatus(BindingStatusUnbound);
        QVERIFY(cpx->saveToDbCpx() && cpx->saveToDbCpa());
        const QStringList aliases{cpx->getProperty(SdcProperty::CpaPsiimId)};
        ZelSceneMol drawing;
        SdcMol mol(m_model->db());
        QVERIFY(mol.loadFromDb(m_model->molA(), &drawing));
        drawing.setSdc(&mol);
        QGraphicsEllipseItem reference(0.0, 0.0, 60.0, 40.0);
        QVERIFY(drawing.addSdcMcp(&reference, mol.getSdcMcpAtIndex(1)) && mol.saveToDb());
        QCOMPARE(m_model->db()->cpaGetListWellDefinedPsiimIds(), aliases);
        QVERIFY(drawing.addSdcBst(mol.getSdcMcpAtIndex(2)));
        QVERIFY(drawing.addSdcBst(mol.getSdcMcpAtIndex(0)) && mol.saveToDb());
        QVERIFY(m_model->db()->cpaGetListWellDefinedPsiimIds().isEmpty());

        QVERIFY(m_scene->loadAlias(aliases.at(0))); // and nothing is reported
        QCOMPARE(cpx->getListSdcBst().size(), 7);
        for (SdcMcp *mcp : cpx->getListSdcMcp())
            QVERIFY(!m_scene->collidingWithOtherSdcItems(
                mcp->getZelEllipseItemMcp(), QList<ZelEllipseItem *>()));
        QVERIFY2(cpx->getSdcSceneRectF().width() < 400.0, "beside its neighbour");
    }

    void menusSetStates()
    {
        SdcMcp *const mcp = m_mols.at(0)->getSdcMcpAtIndex(0);
        const QPointF sticky = mcp->getListSticky().at(0)->sceneBoundingRect().center();
        QVERIFY(m_user->choose(sticky, "Off"));
        QCOMPARE(mcp->getProperty(SdcProperty::StateCode), "P(-);Q");
        QVERIFY(m_user->choose(Hands::centreOf(m_mols.at(0)->getSdcMcpAtIndex(1)),
            "Molecule Component: Not -- Negation of Tag States"));
        QVERIFY(m_mols.at(0)->getSdcMcpAtIndex(1)->getZelEllipseItemMcp()->isNotIndicatorVisible());
        QVERIFY(m_user->choose(Hands::centreOf(site(0, "a2")), "Unbound"));
        QCOMPARE(site(0, "a2")->getStoredBindingStatus(), BindingStatusUnbound);
        // A menu that only closes leaves a bonded site's own status alone.
        bond();
        QVERIFY(!m_user->entries(Hands::centreOf(site(0, "a1"))).isEmpty());
        QCOMPARE(site(0, "a1")->getStoredBindingStatus(), BindingStatusUnspecified);
    }

    void menusLeftToTheHost()
    {
        m_scene->setAppliesMenus(false);
        QSignalSpy asked(m_scene.get(), &ZelScene::signal_setBstBindingStatus);
        QVERIFY(m_user->choose(Hands::centreOf(site(0, "a2")), "Unbound"));
        QCOMPARE(asked.size(), 1);
        QCOMPARE(site(0, "a2")->getStoredBindingStatus(), BindingStatusUnspecified);
    }

    void exclusiveFeatures()
    {
        SdcMcp *const mcp = m_mols.at(0)->getSdcMcpAtIndex(0);
        for (SdcMcpTag *tag : mcp->getListSdcMcpTags())
            QVERIFY(m_model->db()->mcpStateSetExclusionGroup(tag->getPsiimId(), "phase"));
        const QPointF second = mcp->getListSticky().at(1)->sceneBoundingRect().center();
        QVERIFY(m_user->choose(second, "Off"));
        QVERIFY(m_user->choose(second, "On"));
        QCOMPARE(mcp->getProperty(SdcProperty::StateCode), "P(-);Q");
        // A molecule that comes anew has one of them On.
        SdcMol *const mol = m_scene->addMolFromDb(m_model->molA(), {0.0, -200.0});
        QCOMPARE(mol->getSdcMcpAtIndex(0)->getMcpStateCode(), "P;Q(-)");
    }

    void loadsWhatWasSaved()
    {
        bond();
        m_scene->removeSdcMol(m_mols.at(2));
        SdcCpx *const cpx = m_scene->getSdcCpx();
        site(0, "a2")->setBindingStatus(BindingStatusUnbound);
        m_mols.at(0)->getSdcMcpAtIndex(0)->getListSticky().at(1)->setStateType(
            ComponentStateDontCare, false);
        m_mols.at(0)->getSdcMcpAtIndex(0)->updateStatePropertyFromSticky();
        QVERIFY(cpx->saveToDbCpx());
        QVERIFY(cpx->saveToDbCpa());
        const QString cpxId = cpx->getPsiimId();
        const QString cpaId = cpx->getProperty(SdcProperty::CpaPsiimId);

        ZelSceneCpx other;
        other.setZelDbSqliteModel(m_model->db());
        for (const QString &id : {cpxId, cpaId}) {
            QVERIFY(other.loadSdc(id));
            SdcCpx *const loaded = other.getSdcCpx();
            QCOMPARE(loaded->getListSdcMol().size(), 2);
            QCOMPARE(loaded->getListSdcBstBstCpx().size(), 1);
            QCOMPARE(loaded->getSdcSceneRectF(), cpx->getSdcSceneRectF());
            QVERIFY(loaded->getListSdcBst().at(0)->getZelEllipseItemBst()->getBindStatusItem());
        }
        QCOMPARE(other.getSdcCpx()->getAliasMcpStateCode(), cpx->getAliasMcpStateCode());
    }

    void loadIsRefused()
    {
        QVERIFY(!m_scene->load("cpx99"));
        QVERIFY(!m_scene->loadAlias("cpa99"));
        QVERIFY(!m_scene->loadSdc(QString()));
        QCOMPARE(m_scene->getSdcCpx()->getListSdcMol().size(), 3);
        ZelSceneCpx bare;
        QVERIFY(!bare.load("cpx1"));
        QVERIFY(!bare.addMolFromDb("mol1", {}));
        QVERIFY(!bare.getSdcCpx());
    }

    void complexesAreAddedWhole()
    {
        bond();
        m_scene->removeSdcMol(m_mols.at(2));
        SdcCpx *const cpx = m_scene->getSdcCpx();
        QVERIFY(cpx->saveToDbCpx());
        m_user->click(componentOf(0));
        QVERIFY(m_user->drop(QLatin1String("cpx;") + cpx->getPsiimId(), {0.0, 150.0}));
        QVERIFY(!m_scene->getSelectedSdc()); // of two molecules neither
        QCOMPARE(cpx->getListSdcMol().size(), 4);
        QCOMPARE(cpx->getListSdcBstBstCpx().size(), 2);
        QCOMPARE(m_scene->getListConnectedUnits(cpx->getListSdcMol().at(3)).size(), 2);
        QVERIFY(cpx->getListSdcMol().at(2)->getListSdcBst().at(0)->isBound());
    }

    void ownComplexIsReplaced()
    {
        const QPointer<SdcCpx> own = m_scene->getSdcCpx();
        SdcCpx another(m_model->db());
        m_scene->setSdc(&another);
        QVERIFY(own.isNull());
        QVERIFY(m_scene->items().isEmpty());
        m_scene->addMolFromDb(m_model->molA(), {0.0, 0.0});
        QCOMPARE(another.getListSdcMol().size(), 1);
        // A complex that dies leaves its drawing, which stays harmless.
        m_user->click(Hands::centreOf(another.getListSdcMol().at(0)->getSdcMcpAtIndex(0)));
        m_scene->setSdc(nullptr);
        QVERIFY(!m_scene->getSelectedSdc());
    }

    void temporarySceneOwnsItsComplex()
    {
        auto scene = std::make_unique<ZelSceneCpxTemp>();
        scene->setZelDbSqliteModel(m_model->db());
        const QPointer<SdcCpx> cpx = new SdcCpx(m_model->db());
        scene->setSdc(cpx);
        const QPointer<SdcMol> mol = scene->addMolFromDb(m_model->molA(), {0.0, 0.0});
        QVERIFY(mol);
        scene.reset();
        QVERIFY(cpx.isNull());
        QVERIFY(mol.isNull());
    }

    void bondOfAnItemThatHasGone()
    {
        bond();
        ZelLineItemBstBst *const line =
            m_scene->getSdcCpx()->getListSdcBstBstCpx().at(0)->getZelLineItemBstBst();
        const QRectF place = site(1, "b2")->getSdcSceneRectF();
        delete site(1, "b2")->getZelEllipseItemBst();
        QVERIFY(!line->isVisible());
        m_scene->addBst(place, m_mols.at(1)->getSdcMcpAtIndex(0)->getZelEllipseItemMcp())
            ->setSdcBst(site(1, "b2"));
        QVERIFY(line->isVisible());
    }

    void looseMoleculesAreNoSpecies()
    {
        bond();
        SdcCpx *const cpx = m_scene->getSdcCpx();
        m_scene->removeSdcMol(m_mols.at(2));
        QVERIFY(cpx->saveToDbCpx());
        QVERIFY(cpx->adoptStoredSpecies());
        for (int i = 0; i < 2; ++i)
            m_scene->addMolFromDb(m_model->molB(), {0.0, 100.0});
        QVERIFY(!cpx->adoptStoredSpecies());
    }

private:
    void bond() { QVERIFY(m_scene->drawBond(site(0, "a1"), site(1, "b2"))); }
    QPointF componentOf(int mol) { return Hands::centreOf(m_mols.at(mol)->getSdcMcpAtIndex(0)); }
};

ZEL_TEST(tst_SceneCpx)
#include "tst_SceneCpx.moc"
