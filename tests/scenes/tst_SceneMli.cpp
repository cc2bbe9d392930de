#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include <QSignalSpy>

// The scene of a molecule interaction: two molecules and one bond.
class tst_SceneMli : public EditingTest<ZelSceneMli>
{
    Q_OBJECT
protected:
    void init() override
    {
        EditingTest::init();
        add(m_model->molA(), {-150.0, 0.0});
        add(m_model->molB(), {150.0, 0.0});
    }

private slots:
    void drawnBondIsTheInteractions()
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

    void knownPairTakesItsRecord()
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

    void secondBondIsRefused()
    {
        QVERIFY(m_scene->drawBond(site(0, "a3"), site(1, "b2")));
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        m_user->drag(Hands::centreOf(site(0, "a1")), Hands::centreOf(site(1, "b1")));
        QCOMPARE(refused.size(), 1);
        QVERIFY(refused.at(0).at(0).toString().startsWith(
            QLatin1String("The interaction has its bond already.")));
        QCOMPARE(mli()->getListSdcBstBstMli().size(), 1);
    }

    void thirdMoleculeIsRefused()
    {
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        QVERIFY(!m_user->drop(QLatin1String("mol;") + m_model->molB(), {0.0, 100.0}));
        QVERIFY(!m_scene->addMolFromDb(m_model->molB(), {0.0, 100.0}));
        QCOMPARE(refused.size(), 1);
        QCOMPARE(mli()->getListSdcMol().size(), 2);
    }

    void sameTypeTwice()
    {
        m_scene->removeSdcMol(m_mols.at(0));
        SdcMol *const second = m_scene->addMolFromDb(m_model->molB(), {-150.0, 0.0});
        QVERIFY(m_scene->drawBond(siteOf(second, "b1"), site(1, "b1")));
    }

    void touchingSitesBond()
    {
        // B is laid so that its site lies on one of A.
        const QPointF by = Hands::centreOf(site(0, "a3")) - Hands::centreOf(site(1, "b2"));
        const QPointF from = Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0));
        m_user->drag(from, from + by);
        QVERIFY(mli()->hasBstBstConnection(site(0, "a3"), site(1, "b2")));
    }

    void itemsWithoutSitesMakeNoBond()
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

    void menuHasNoStates()
    {
        const QStringList entries =
            m_user->entries(Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0)));
        QCOMPARE(entries.first(), "Molecule: Show Predefined Interactions");
        QCOMPARE(entries.last(), "Delete Molecule");
        QVERIFY(entries.filter(QLatin1String("Negation")).isEmpty());
        const QPointF sticky =
            m_mols.at(0)->getSdcMcpAtIndex(0)->getListSticky().at(0)->sceneBoundingRect().center();
        QVERIFY(m_user->entries(sticky).filter(QLatin1String("State")).isEmpty());
    }

    void savedAndLoaded()
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

    void loadsWithoutLayout()
    {
        QVERIFY(m_model->db()->mliInsert(
            {{ZelDbColumn::PsiimId, "mli7"}, {ZelDbColumn::ShortName, "bare"},
                {ZelDbColumn::Bst1, site(0, "a1")->getPsiimId()}, {ZelDbColumn::MolPos1, "0"},
                {ZelDbColumn::Bst2, site(1, "b1")->getPsiimId()}, {ZelDbColumn::MolPos2, "1"}}));
        QVERIFY(m_scene->loadSdc("mli7"));
        const QList<SdcMol *> mols = mli()->getListSdcMol();
        QCOMPARE(mols.size(), 2);
        QVERIFY(!mols.at(0)->getSdcSceneRectF().intersects(mols.at(1)->getSdcSceneRectF()));
        QCOMPARE(mli()->getListSdcBstBstMli().size(), 1);
        ZelTest::takeDebugLines();
    }

    void loadIsRefused()
    {
        QVERIFY(!m_scene->load("mli99"));
        QCOMPARE(mli()->getListSdcMol().size(), 2);
        ZelSceneMli bare;
        QVERIFY(!bare.load("mli1"));
        QVERIFY(!bare.addBstBstMli(site(0, "a1")->getZelEllipseItemBst(), nullptr));
    }

private:
    SdcMli *mli() { return m_scene->getSdcMli(); }

    bool save()
    {
        mli()->setProperty(SdcProperty::AssociationRate, "0.1");
        mli()->setProperty(SdcProperty::DissociationRate, "0.2");
        return mli()->saveToDb();
    }
};

ZEL_TEST(tst_SceneMli)
#include "tst_SceneMli.moc"
