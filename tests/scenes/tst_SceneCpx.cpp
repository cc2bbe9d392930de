#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

#include <QSignalSpy>
#include <QStandardItemModel>

// The scene of a complex: molecules that come, move, turn and go, and the menus that set states.
class tst_SceneCpx : public ZelTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void droppedMolecule();
    void droppedOnAnother();
    void dropRefused_data();
    void dropRefused();
    void dragMovesTheMolecule_data();
    void dragMovesTheMolecule();
    void menuTurnsAndFlips_data();
    void menuTurnsAndFlips();
    void deleting_data();
    void deleting();
    void bondGoesItsStatusReturns();
    void menusSetStates();
    void menusLeftToTheHost();
    void exclusiveFeatures();
    void loadsWhatWasSaved();
    void loadIsRefused();
    void complexesAreAddedWhole();
    void ownComplexIsReplaced();
    void temporarySceneOwnsItsComplex();
    void bondOfASiteThatHasGone();
    void bondOfAnItemThatHasGone();
    void looseMoleculesAreNoSpecies();
    void scrollingEndsWithItsButton_data();
    void scrollingEndsWithItsButton();

private:
    SdcBst *site(int mol, const char *name) { return siteOf(m_mols.at(mol), name); }
    void bond() { QVERIFY(m_scene->drawBond(site(0, "a1"), site(1, "b2"))); }
    QPointF componentOf(int mol) { return Hands::centreOf(m_mols.at(mol)->getSdcMcpAtIndex(0)); }

    std::unique_ptr<EditingModel> m_model;
    std::unique_ptr<ZelSceneCpx> m_scene;
    std::unique_ptr<Hands> m_user;
    QList<SdcMol *> m_mols; // A, B, B
};

void tst_SceneCpx::init()
{
    ZelTest::init();
    m_model = std::make_unique<EditingModel>();
    m_scene = std::make_unique<ZelSceneCpx>();
    m_scene->setZelDbSqliteModel(m_model->db());
    m_user = std::make_unique<Hands>(m_scene.get());
    m_mols = {m_scene->addMolFromDb(m_model->molA(), {-200.0, 0.0}),
        m_scene->addMolFromDb(m_model->molB(), {100.0, 0.0}),
        m_scene->addMolFromDb(m_model->molB(), {100.0, 150.0})};
}

void tst_SceneCpx::cleanup()
{
    m_user.reset();
    m_scene.reset();
    m_model.reset();
    ZelTest::cleanup();
}

void tst_SceneCpx::droppedMolecule()
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

void tst_SceneCpx::droppedOnAnother()
{
    SdcMol *const mol = m_scene->addMolFromDb(m_model->molA(), componentOf(0));
    for (SdcMcp *mcp : mol->getListSdcMcp())
        QVERIFY(!m_scene->collidingWithOtherSdcItems(
            mcp->getZelEllipseItemMcp(), QList<ZelEllipseItem *>()));
    QVERIFY(QLineF(Hands::centreOf(mol), componentOf(0)).length() < 200.0);
}

void tst_SceneCpx::dropRefused_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("unknown molecule") << "mol;mol99" << false;
    QTest::newRow("unknown complex") << "cpx;cpx99" << false;
    QTest::newRow("unknown alias") << "cpa;" << false;
    QTest::newRow("another kind") << "trn;trn1" << false;
    QTest::newRow("no record") << "mol" << false;
    QTest::newRow("read-only") << "mol;mol1" << true;
}

void tst_SceneCpx::dropRefused()
{
    QFETCH(QString, record);
    QFETCH(bool, readOnly);
    m_scene->setReadOnly(readOnly);
    QVERIFY(!m_user->drop(record, {0.0, -200.0}));
    QCOMPARE(m_scene->getSdcCpx()->getListSdcMol().size(), 3);
    // Asked for without a drop it says why.
    QSignalSpy begun(m_scene.get(), &ZelScene::signal_changeBegin);
    QSignalSpy refused(m_scene.get(), &ZelSceneEditing::signal_recordRefused);
    QVERIFY(!m_scene->addRecordFromDb(
        record.section(u';', 0, 0), record.section(u';', 1), {0.0, -200.0}));
    QCOMPARE(refused.size(), 1);
    QVERIFY(refused.at(0).at(0).toString().endsWith(u'.'));
    QVERIFY(begun.isEmpty());
}

void tst_SceneCpx::dragMovesTheMolecule_data()
{
    QTest::addColumn<bool>("ctrl");
    QTest::newRow("alone") << false;
    QTest::newRow("with what is bonded to it") << true;
}

void tst_SceneCpx::dragMovesTheMolecule()
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

void tst_SceneCpx::menuTurnsAndFlips_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("group");
    QTest::newRow("clockwise") << "Rotate Molecule Clockwise" << false;
    QTest::newRow("counterclockwise") << "Rotate Molecule Counterclockwise" << false;
    QTest::newRow("flip") << "Flip Molecule" << false;
    QTest::newRow("group") << "Flip Connected Group" << true;
}

void tst_SceneCpx::menuTurnsAndFlips()
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

void tst_SceneCpx::deleting_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("molecules");
    QTest::addColumn<int>("bonds");
    QTest::newRow("molecule by menu") << "mol menu" << 2 << 0;
    QTest::newRow("molecule by key") << "mol key" << 2 << 0;
    QTest::newRow("bond by menu of its line") << "line menu" << 3 << 0;
    QTest::newRow("bond by menu of its site") << "site menu" << 3 << 0;
    QTest::newRow("bond by key") << "line key" << 3 << 0;
    QTest::newRow("nothing chosen") << "nothing" << 3 << 1;
}

void tst_SceneCpx::deleting()
{
    QFETCH(QString, how);
    QFETCH(int, molecules);
    QFETCH(int, bonds);
    bond();
    SdcCpx *const cpx = m_scene->getSdcCpx();
    const QLineF line = cpx->getListSdcBstBstCpx().at(0)->getZelLineItemBstBst()->line();
    const QPointF nearLine = line.center() + QPointF(0.0, 2.0);
    const QPointer<SdcMol> mol = m_mols.at(1);
    const QPointer<ZelLineItemBstBst> drawn =
        cpx->getListSdcBstBstCpx().at(0)->getZelLineItemBstBst();
    if (how == QLatin1String("mol menu"))
        QVERIFY(m_user->choose(componentOf(1), QStringLiteral("Delete Molecule")));
    else if (how == QLatin1String("mol key"))
        m_user->click(componentOf(1));
    else if (how == QLatin1String("line menu"))
        QVERIFY(m_user->choose(nearLine, QStringLiteral("Delete Bond")));
    else if (how == QLatin1String("site menu"))
        QVERIFY(m_user->choose(Hands::centreOf(site(1, "b2")), QStringLiteral("Delete Bond")));
    else if (how == QLatin1String("line key"))
        m_user->click(nearLine);
    else
        m_user->click({0.0, -250.0});
    QSignalSpy ended(m_scene.get(), &ZelScene::signal_changeEnd);
    m_user->key(Qt::Key_Delete);
    QCOMPARE(ended.size(), how.endsWith(QLatin1String("key")) ? 1 : 0);
    QCOMPARE(cpx->getListSdcMol().size(), molecules);
    QCOMPARE(mol.isNull(), molecules == 2);
    QCOMPARE(cpx->getListSdcBstBstCpx().size(), bonds);
    QCOMPARE(drawn.isNull(), bonds == 0);
}

void tst_SceneCpx::bondGoesItsStatusReturns()
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

void tst_SceneCpx::menusSetStates()
{
    SdcMcp *const mcp = m_mols.at(0)->getSdcMcpAtIndex(0);
    const QPointF sticky = mcp->getListSticky().at(0)->sceneBoundingRect().center();
    QVERIFY(m_user->choose(sticky, QStringLiteral("Off")));
    QCOMPARE(mcp->getProperty(SdcProperty::StateCode), QStringLiteral("P(-);Q"));
    QVERIFY(m_user->choose(Hands::centreOf(m_mols.at(0)->getSdcMcpAtIndex(1)),
        QStringLiteral("Molecule Component: Not -- Negation of Tag States")));
    QVERIFY(m_mols.at(0)->getSdcMcpAtIndex(1)->getZelEllipseItemMcp()->isNotIndicatorVisible());
    QVERIFY(m_user->choose(Hands::centreOf(site(0, "a2")), QStringLiteral("Unbound")));
    QCOMPARE(site(0, "a2")->getStoredBindingStatus(), BindingStatusUnbound);
    // A menu that only closes leaves a bonded site's own status alone.
    bond();
    QVERIFY(!m_user->entries(Hands::centreOf(site(0, "a1"))).isEmpty());
    QCOMPARE(site(0, "a1")->getStoredBindingStatus(), BindingStatusUnspecified);
}

void tst_SceneCpx::menusLeftToTheHost()
{
    m_scene->setAppliesMenus(false);
    QSignalSpy asked(m_scene.get(), &ZelScene::signal_setBstBindingStatus);
    QVERIFY(m_user->choose(Hands::centreOf(site(0, "a2")), QStringLiteral("Unbound")));
    QCOMPARE(asked.size(), 1);
    QCOMPARE(site(0, "a2")->getStoredBindingStatus(), BindingStatusUnspecified);
}

void tst_SceneCpx::exclusiveFeatures()
{
    SdcMcp *const mcp = m_mols.at(0)->getSdcMcpAtIndex(0);
    for (SdcMcpTag *tag : mcp->getListSdcMcpTags())
        QVERIFY(
            m_model->db()->mcpStateSetExclusionGroup(tag->getPsiimId(), QStringLiteral("phase")));
    const QPointF second = mcp->getListSticky().at(1)->sceneBoundingRect().center();
    QVERIFY(m_user->choose(second, QStringLiteral("Off")));
    QVERIFY(m_user->choose(second, QStringLiteral("On")));
    QCOMPARE(mcp->getProperty(SdcProperty::StateCode), QStringLiteral("P(-);Q"));
    // A molecule that comes anew has one of them On.
    SdcMol *const mol = m_scene->addMolFromDb(m_model->molA(), {0.0, -200.0});
    QCOMPARE(mol->getSdcMcpAtIndex(0)->getMcpStateCode(), QStringLiteral("P;Q(-)"));
}

void tst_SceneCpx::loadsWhatWasSaved()
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

void tst_SceneCpx::loadIsRefused()
{
    QVERIFY(!m_scene->load(QStringLiteral("cpx99")));
    QVERIFY(!m_scene->loadAlias(QStringLiteral("cpa99")));
    QVERIFY(!m_scene->loadSdc(QString()));
    QCOMPARE(m_scene->getSdcCpx()->getListSdcMol().size(), 3);
    ZelSceneCpx bare;
    QVERIFY(!bare.load(QStringLiteral("cpx1")));
    QVERIFY(!bare.addMolFromDb(QStringLiteral("mol1"), {}));
    QVERIFY(!bare.getSdcCpx());
}

void tst_SceneCpx::complexesAreAddedWhole()
{
    bond();
    m_scene->removeSdcMol(m_mols.at(2));
    SdcCpx *const cpx = m_scene->getSdcCpx();
    QVERIFY(cpx->saveToDbCpx());
    QVERIFY(m_user->drop(QLatin1String("cpx;") + cpx->getPsiimId(), {0.0, 150.0}));
    QCOMPARE(cpx->getListSdcMol().size(), 4);
    QCOMPARE(cpx->getListSdcBstBstCpx().size(), 2);
    QCOMPARE(m_scene->getListConnectedUnits(cpx->getListSdcMol().at(3)).size(), 2);
    QVERIFY(cpx->getListSdcMol().at(2)->getListSdcBst().at(0)->isBound());
}

void tst_SceneCpx::ownComplexIsReplaced()
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
}

void tst_SceneCpx::temporarySceneOwnsItsComplex()
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

// The site is destroyed behind the scene's back; what draws it stays and is dragged on.
void tst_SceneCpx::bondOfASiteThatHasGone()
{
    bond();
    ZelLineItemBstBst *const line =
        m_scene->getSdcCpx()->getListSdcBstBstCpx().at(0)->getZelLineItemBstBst();
    ZelEllipseItemBst *const ends[] = {
        site(0, "a1")->getZelEllipseItemBst(), site(1, "b2")->getZelEllipseItemBst()};
    delete site(1, "b2");
    for (int mol : {1, 0}) {
        m_user->drag(componentOf(mol), componentOf(mol) + QPointF(30.0, -60.0));
        const QLineF now = line->line();
        QVERIFY(QLineF(now.p1(), ends[0]->sceneBoundingRect().center()).length() < 8.0);
        QVERIFY(QLineF(now.p2(), ends[1]->sceneBoundingRect().center()).length() < 8.0);
    }
    delete ends[1];
    QVERIFY(!line->isVisible());
}

void tst_SceneCpx::bondOfAnItemThatHasGone()
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

void tst_SceneCpx::looseMoleculesAreNoSpecies()
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

void tst_SceneCpx::scrollingEndsWithItsButton_data()
{
    QTest::addColumn<QString>("meanwhile");
    for (const char *meanwhile : {"nothing", "a second view", "another scene"})
        QTest::newRow(meanwhile) << QString::fromLatin1(meanwhile);
}

void tst_SceneCpx::scrollingEndsWithItsButton()
{
    QFETCH(QString, meanwhile);
    QGraphicsView second;
    QGraphicsView third;
    ZelSceneCpx other;
    const QPointF space(0.0, -250.0);
    m_user->press(space);
    QCOMPARE(m_user->view().dragMode(), QGraphicsView::ScrollHandDrag);
    if (meanwhile == QLatin1String("a second view")) {
        second.setScene(m_scene.get());
    } else if (meanwhile == QLatin1String("another scene")) {
        second.setScene(&other);
        third.setScene(&other);
        m_user->view().setScene(&other);
    }
    m_user->release(space);
    QCOMPARE(m_user->view().dragMode(), QGraphicsView::NoDrag);
}

ZEL_TEST(tst_SceneCpx)
#include "tst_SceneCpx.moc"
