#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include <QSignalSpy>

// The scene of a molecule interaction: two molecules and one bond.
class tst_SceneMli : public ZelTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void drawnBondIsTheInteractions();
    void knownPairTakesItsRecord();
    void secondBondIsRefused();
    void thirdMoleculeIsRefused();
    void sameTypeTwice();
    void touchingSitesBond();
    void itemsWithoutSitesMakeNoBond();
    void menuHasNoStates();
    void savedAndLoaded();
    void loadsWithoutLayout();
    void loadIsRefused();
    void thingsDieWhileShown_data();
    void thingsDieWhileShown();

private:
    SdcBst *site(int mol, const char *name) { return siteOf(m_mols.at(mol), name); }
    SdcMli *mli() { return m_scene->getSdcMli(); }
    bool save();

    std::unique_ptr<EditingModel> m_model;
    std::unique_ptr<ZelSceneMli> m_scene;
    std::unique_ptr<Hands> m_user;
    QList<SdcMol *> m_mols; // A, B
};

void tst_SceneMli::init()
{
    ZelTest::init();
    m_model = std::make_unique<EditingModel>();
    m_scene = std::make_unique<ZelSceneMli>();
    m_scene->setZelDbSqliteModel(m_model->db());
    m_user = std::make_unique<Hands>(m_scene.get());
    m_mols = {m_scene->addMolFromDb(m_model->molA(), {-150.0, 0.0}),
        m_scene->addMolFromDb(m_model->molB(), {150.0, 0.0})};
}

void tst_SceneMli::cleanup()
{
    m_user.reset();
    m_scene.reset();
    m_model.reset();
    ZelTest::cleanup();
}

bool tst_SceneMli::save()
{
    mli()->setProperty(SdcProperty::AssociationRate, QStringLiteral("0.1"));
    mli()->setProperty(SdcProperty::DissociationRate, QStringLiteral("0.2"));
    return mli()->saveToDb();
}

void tst_SceneMli::drawnBondIsTheInteractions()
{
    QSignalSpy added(mli(), &SdcMli::sdcBstBstMliAdded);
    m_user->drag(Hands::centreOf(site(0, "a3")), Hands::centreOf(site(1, "b2")));
    QCOMPARE(added.size(), 1);
    SdcBstBstMli *const bond = mli()->getSdcBstBstMli(site(0, "a3"), site(1, "b2"));
    QVERIFY(bond && bond->getZelLineItemBstBstMli());
    // A drag moves the pressed molecule, and the bond follows.
    const QLineF before = bond->getZelLineItemBstBst()->line();
    const QPointF from = Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0));
    const QPointF other = Hands::centreOf(m_mols.at(0));
    m_user->drag(from, from + QPointF(0.0, 60.0));
    QVERIFY(bond->getZelLineItemBstBst()->line() != before);
    QCOMPARE(Hands::centreOf(m_mols.at(0)), other);
}

void tst_SceneMli::knownPairTakesItsRecord()
{
    QVERIFY(m_scene->drawBond(site(0, "a3"), site(1, "b2")));
    QVERIFY(mli()->getPsiimId().isEmpty());
    QVERIFY(save());
    const QString id = mli()->getPsiimId();
    m_scene->removeBond(mli()->getListSdcBstBstMli().at(0));
    mli()->clearMliProperties();
    QVERIFY(m_scene->drawBond(site(1, "b2"), site(0, "a3")));
    QCOMPARE(mli()->getPsiimId(), id);
    QVERIFY(mli()->canSave());
}

void tst_SceneMli::secondBondIsRefused()
{
    QVERIFY(m_scene->drawBond(site(0, "a3"), site(1, "b2")));
    QSignalSpy refused(m_scene.get(), &ZelSceneEditing::signal_bondRefused);
    m_user->drag(Hands::centreOf(site(0, "a1")), Hands::centreOf(site(1, "b1")));
    QCOMPARE(refused.size(), 1);
    QVERIFY(refused.at(0).at(0).toString().startsWith(
        QLatin1String("The interaction has its bond already.")));
    QCOMPARE(mli()->getListSdcBstBstMli().size(), 1);
}

void tst_SceneMli::thirdMoleculeIsRefused()
{
    QSignalSpy refused(m_scene.get(), &ZelSceneEditing::signal_recordRefused);
    QVERIFY(!m_user->drop(QLatin1String("mol;") + m_model->molB(), {0.0, 100.0}));
    QVERIFY(!m_scene->addMolFromDb(m_model->molB(), {0.0, 100.0}));
    QCOMPARE(refused.size(), 1);
    QCOMPARE(mli()->getListSdcMol().size(), 2);
}

void tst_SceneMli::sameTypeTwice()
{
    m_scene->removeSdcMol(m_mols.at(0));
    SdcMol *const second = m_scene->addMolFromDb(m_model->molB(), {-150.0, 0.0});
    QVERIFY(m_scene->drawBond(siteOf(second, "b1"), site(1, "b1")));
}

void tst_SceneMli::touchingSitesBond()
{
    // B is laid so that its site lies on one of A.
    const QPointF by = Hands::centreOf(site(0, "a3")) - Hands::centreOf(site(1, "b2"));
    const QPointF from = Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0));
    m_user->drag(from, from + by);
    QVERIFY(mli()->hasBstBstConnection(site(0, "a3"), site(1, "b2")));
}

void tst_SceneMli::itemsWithoutSitesMakeNoBond()
{
    ZelEllipseItemBst *const ghost = m_scene->addBst(QRectF(0.0, 0.0, 12.0, 12.0), nullptr);
    ZelEllipseItemBst *const item = site(0, "a1")->getZelEllipseItemBst();
    QVERIFY(!m_scene->addBstBstMli(nullptr, nullptr));
    QVERIFY(!m_scene->addBstBstMli(item, nullptr));
    QVERIFY(!m_scene->addBstBstMli(ghost, item));
    QVERIFY(!m_scene->addBstBstMli(item, item));
    QVERIFY(mli()->getListSdcBstBstMli().isEmpty());
    QVERIFY(m_scene->addBstBstMli(item, site(1, "b1")->getZelEllipseItemBst()));
}

void tst_SceneMli::menuHasNoStates()
{
    const QStringList entries = m_user->entries(Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0)));
    QCOMPARE(entries.first(), QStringLiteral("Molecule: Show Predefined Interactions"));
    QCOMPARE(entries.last(), QStringLiteral("Delete Molecule"));
    QVERIFY(entries.filter(QLatin1String("Negation")).isEmpty());
    const QPointF sticky =
        m_mols.at(0)->getSdcMcpAtIndex(0)->getListSticky().at(0)->sceneBoundingRect().center();
    QVERIFY(m_user->entries(sticky).filter(QLatin1String("State")).isEmpty());
}

void tst_SceneMli::savedAndLoaded()
{
    QVERIFY(m_scene->drawBond(site(0, "a3"), site(1, "b2")));
    QVERIFY(save());
    const QString before = ZelTree::text(mli());
    ZelSceneMli other;
    other.setZelDbSqliteModel(m_model->db());
    for (int i = 0; i < 2; ++i) { // the second load takes the place of the first
        QVERIFY(other.load(mli()->getPsiimId()));
        QCOMPARE(ZelTree::text(other.getSdcMli()), before);
        SdcMli *const loaded = other.getSdcMli();
        QCOMPARE(loaded->getListSdcBstBstMli().size(), 1);
        QCOMPARE(loaded->getListSdcBstBstMli().at(0)->getZelLineItemBstBst()->line(),
            mli()->getListSdcBstBstMli().at(0)->getZelLineItemBstBst()->line());
    }
    QCOMPARE(other.items().size(), m_scene->items().size());
}

void tst_SceneMli::loadsWithoutLayout()
{
    QVERIFY(m_model->db()->mliInsert({{ZelDbColumn::PsiimId, QStringLiteral("mli7")},
        {ZelDbColumn::ShortName, QStringLiteral("bare")},
        {ZelDbColumn::Bst1, site(0, "a1")->getPsiimId()},
        {ZelDbColumn::MolPos1, QStringLiteral("0")},
        {ZelDbColumn::Bst2, site(1, "b1")->getPsiimId()},
        {ZelDbColumn::MolPos2, QStringLiteral("1")}}));
    QVERIFY(m_scene->loadSdc(QStringLiteral("mli7")));
    const QList<SdcMol *> mols = mli()->getListSdcMol();
    QCOMPARE(mols.size(), 2);
    QVERIFY(!mols.at(0)->getSdcSceneRectF().intersects(mols.at(1)->getSdcSceneRectF()));
    QCOMPARE(mli()->getListSdcBstBstMli().size(), 1);
    ZelTest::takeDebugLines();
}

void tst_SceneMli::loadIsRefused()
{
    QVERIFY(!m_scene->load(QStringLiteral("mli99")));
    QCOMPARE(mli()->getListSdcMol().size(), 2);
    ZelSceneMli bare;
    QVERIFY(!bare.load(QStringLiteral("mli1")));
    QVERIFY(!bare.addBstBstMli(site(0, "a1")->getZelEllipseItemBst(), nullptr));
}

void tst_SceneMli::thingsDieWhileShown_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"site", "bond", "line", "molecule", "interaction"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void tst_SceneMli::thingsDieWhileShown()
{
    QFETCH(QString, what);
    SdcMli shown(m_model->db());
    const QPointer<SdcMli> interaction =
        what == QLatin1String("interaction") ? new SdcMli(m_model->db()) : &shown;
    m_scene->setSdc(interaction);
    m_mols = {m_scene->addMolFromDb(m_model->molA(), {-150.0, 0.0}),
        m_scene->addMolFromDb(m_model->molB(), {150.0, 0.0})};
    QVERIFY(m_scene->drawBond(site(0, "a3"), site(1, "b2")));
    const QPointF at = Hands::centreOf(site(0, "a3"));
    const QPointF on = Hands::centreOf(m_mols.at(0)->getSdcMcpAtIndex(0));
    m_user->click(on);
    m_user->press(at);
    if (what == QLatin1String("site"))
        delete site(0, "a3");
    else if (what == QLatin1String("bond"))
        delete interaction->getListSdcBstBstMli().at(0);
    else if (what == QLatin1String("line"))
        delete interaction->getListSdcBstBstMli().at(0)->getZelLineItemBstBst();
    else if (what == QLatin1String("molecule"))
        delete m_mols.at(0);
    else
        delete interaction.data();
    m_user->move(at + QPointF(40.0, 40.0));
    m_user->release(at + QPointF(40.0, 40.0));
    m_user->drag(on, on + QPointF(10.0, 10.0));
    m_user->entries(on);
    m_user->key(Qt::Key_Delete);
    (void)m_user->view().grab();
    m_scene->removeContents();
    m_scene->removeAllItems();
    QVERIFY(m_scene->items().isEmpty());
}

ZEL_TEST(tst_SceneMli)
#include "tst_SceneMli.moc"
