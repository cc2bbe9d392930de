#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include <QSignalSpy>

#include <tuple>

namespace {

/// A host's undo list: the states before each announced change, and the last one.
class History : public QObject
{
public:
    explicit History(ZelScene *scene) : m_scene(scene)
    {
        connect(scene, &ZelScene::signal_changeEnd, this, &History::note);
        note();
    }

    qsizetype steps() const { return m_states.size() - 1; }
    /// Goes back to the first state and forth to the last, comparing what is drawn at each.
    QString walk(Sdc *sdc)
    {
        for (qsizetype i = m_states.size() - 1; i >= 0; --i) {
            if (const QString fault = goTo(i, sdc); !fault.isEmpty())
                return fault;
        }
        for (qsizetype i = 0; i < m_states.size(); ++i) {
            if (const QString fault = goTo(i, sdc); !fault.isEmpty())
                return fault;
        }
        return {};
    }
    /// What a host's dialog does.
    void edit(Sdc *sdc, int key, const QString &value)
    {
        const ZelScene::Change change(m_scene);
        sdc->setProperty(key, value);
    }
    QString jump(qsizetype from, qsizetype to, Sdc *sdc)
    {
        const QString fault = goTo(from, sdc);
        return fault.isEmpty() ? goTo(to, sdc) : fault;
    }

private:
    QString goTo(qsizetype i, Sdc *sdc)
    {
        if (!m_states.at(i).restore(m_scene))
            return QStringLiteral("state %1 is refused").arg(i);
        if (ZelSceneState::take(m_scene) != m_states.at(i))
            return QStringLiteral("state %1 is not what was restored").arg(i);
        if (ZelTree::text(sdc) != m_texts.at(i))
            return QStringLiteral("state %1 is drawn as\n%2\ninstead of\n%3")
                .arg(QString::number(i), ZelTree::text(sdc), m_texts.at(i));
        return {};
    }

    void note()
    {
        m_states.append(ZelSceneState::take(m_scene));
        m_texts.append(ZelTree::text(m_scene->getSdc()));
    }

    ZelScene *m_scene;
    QList<ZelSceneState> m_states;
    QStringList m_texts;
};

QStringList idsOf(Sdc *sdc)
{
    QStringList ids{sdc->getPsiimId()};
    for (Sdc *child : sdc->getListSdcChildren())
        ids += idsOf(child);
    return ids;
}

/// The stored complexes of one molecule each, in the states that they have as stored.
QStringList saveAliases(EditingModel *model)
{
    QStringList aliases;
    for (const QString &mol : {model->molA(), model->molB()}) {
        ZelSceneCpx single;
        single.setZelDbSqliteModel(model->db());
        single.addMolFromDb(mol, {0.0, 0.0});
        if (!single.getSdcCpx()->saveToDbCpx() || !single.getSdcCpx()->saveToDbCpa())
            return {};
        aliases.append(single.getSdcCpx()->getProperty(SdcProperty::CpaPsiimId));
    }
    return aliases;
}

void setRates(SdcMli *mli, const QString &rate)
{
    mli->setProperty(SdcProperty::AssociationRate, rate);
    mli->setProperty(SdcProperty::DissociationRate, rate);
}

} // namespace

// What the editing scenes change can be taken back, molecules and complexes included.
class tst_EditingUndo : public ZelTest
{
    Q_OBJECT
private slots:
    void complex()
    {
        EditingModel model;
        SdcCpx cpx(model.db());
        ZelSceneCpx scene;
        scene.setZelDbSqliteModel(model.db());
        scene.setSdc(&cpx);
        Hands user(&scene);
        History history(&scene);
        SdcMol *const a = scene.addMolFromDb(model.molA(), {-200.0, 0.0});
        SdcMol *const b = scene.addMolFromDb(model.molB(), {100.0, 0.0});
        SdcMol *const other = scene.addMolFromDb(model.molB(), {100.0, 150.0});
        QVERIFY(scene.drawBond(siteOf(a, "a1"), siteOf(b, "b1")));
        QVERIFY(scene.drawBond(siteOf(b, "b2"), siteOf(other, "b2")));
        QVERIFY(user.choose(Hands::centreOf(siteOf(a, "a2")), "Unbound"));
        QVERIFY(user.choose(
            a->getSdcMcpAtIndex(0)->getListSticky().at(1)->sceneBoundingRect().center(), "Off"));
        const QPointF from = Hands::centreOf(other->getSdcMcpAtIndex(0));
        user.drag(from, from + QPointF(-60.0, 20.0));
        QVERIFY(scene.rotateUnit(a, 90.0));
        history.edit(&cpx, SdcProperty::CpaShortName, "alias");
        scene.removeUnit(b);
        scene.removeUnit(a);
        QCOMPARE(history.steps(), 12);
        for (int i = 0; i < 2; ++i) // the second time through molecules that were made anew
            QCOMPARE(history.walk(&cpx), QString());
    }

    void moleculeInteraction()
    {
        EditingModel model;
        SdcMli mli(model.db());
        ZelSceneMli scene;
        scene.setZelDbSqliteModel(model.db());
        scene.setSdc(&mli);
        History history(&scene);
        SdcMol *const a = scene.addMolFromDb(model.molA(), {-200.0, 0.0});
        SdcMol *const b = scene.addMolFromDb(model.molB(), {100.0, 0.0});
        scene.removeBond(scene.drawBond(siteOf(a, "a1"), siteOf(b, "b1")));
        scene.removeBond(scene.drawBond(siteOf(b, "b1"), siteOf(a, "a1")));
        QVERIFY(scene.drawBond(siteOf(a, "a2"), siteOf(b, "b1")));
        history.edit(&mli, SdcProperty::AssociationRate, "0.7");
        scene.removeUnit(b);
        QCOMPARE(history.steps(), 9);
        QCOMPARE(history.jump(3, 5, &mli), QString()); // the same bond, drawn the other way round
        for (int i = 0; i < 2; ++i)
            QCOMPARE(history.walk(&mli), QString());
    }

    void complexInteraction()
    {
        EditingModel model;
        const QStringList aliases = saveAliases(&model);
        SdcCxi cxi(model.db());
        ZelSceneCxi scene;
        scene.setZelDbSqliteModel(model.db());
        scene.setSdc(&cxi);
        History history(&scene);
        SdcCpx *const a = scene.addCpaFromDb(aliases.at(0), {-200.0, 0.0});
        SdcCpx *const b = scene.addCpaFromDb(aliases.at(1), {100.0, 0.0});
        QVERIFY(scene.drawBond(
            siteOf(a->getListSdcMol().at(0), "a1"), siteOf(b->getListSdcMol().at(0), "b1")));
        QVERIFY(scene.drawBond(
            siteOf(a->getListSdcMol().at(0), "a2"), siteOf(b->getListSdcMol().at(0), "b1")));
        history.edit(&cxi, SdcProperty::Notes, "notes");
        history.edit(a, SdcProperty::CpaShortName, "alias");
        scene.removeUnit(a);
        scene.removeUnit(b);
        QCOMPARE(history.steps(), 8);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(history.walk(&cxi), QString());
        QVERIFY(!scene.getResultSdcCpx());
    }

    void savedMoleculeKeepsItsIds_data()
    {
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("living parts") << false;
        QTest::newRow("parts deleted after the save") << true;
    }

    void savedMoleculeKeepsItsIds()
    {
        QFETCH(bool, isDeleted);
        EditingModel model;
        ZelSceneMol scene;
        scene.setZelDbSqliteModel(model.db());
        const std::unique_ptr<SdcMol> mol(
            ZelTree::molecule(model.db(), "C", {{"c", {"P"}, 2}, {"d", {}, 1}}, &scene));
        scene.setSdc(mol.get());
        const ZelSceneState before = ZelSceneState::take(&scene);
        QVERIFY(mol->saveToDb());
        const QStringList ids = idsOf(mol.get());
        QVERIFY(!ids.contains(QString()));
        QVERIFY(ZelSceneState::take(&scene) == before);
        for (int i = 0; i < 2; ++i) { // the second time what was made anew goes
            if (isDeleted)
                scene.removeSdcMcp(mol->getSdcMcpAtIndex(0));
            const ZelSceneState after = ZelSceneState::take(&scene);
            QCOMPARE(after == before, !isDeleted);
            QVERIFY(before.restore(&scene));
            QCOMPARE(idsOf(mol.get()), ids);
            QVERIFY(mol->saveToDb());
            QCOMPARE(model.db()->molGetListMcpPsiimId(ids.first()).size(), 2);
        }
        mol->getSdcMcpAtIndex(1)->setProperty(SdcProperty::PsiimId, "copy"); // another component
        QVERIFY(before.restore(&scene));
        QCOMPARE(mol->getSdcMcpAtIndex(1)->getPsiimId(), "copy");
    }

    // The id of an interaction is that of the record for what is drawn.
    void savedInteraction()
    {
        EditingModel model;
        SdcMli mli(model.db());
        ZelSceneMli scene;
        scene.setZelDbSqliteModel(model.db());
        scene.setSdc(&mli);
        SdcMol *const a = scene.addMolFromDb(model.molA(), {-200.0, 0.0});
        SdcMol *const b = scene.addMolFromDb(model.molB(), {100.0, 0.0});
        const ZelSceneState empty = ZelSceneState::take(&scene);
        mli.setProperty(SdcProperty::PsiimId, "mli99");
        mli.setProperty(SdcProperty::PsiimId, QString()); // as a save does that fails
        QVERIFY(empty.restore(&scene));
        QCOMPARE(mli.getPsiimId(), QString());
        QVERIFY(scene.drawBond(siteOf(a, "a1"), siteOf(b, "b1")));
        setRates(&mli, "1");
        const ZelSceneState unsaved = ZelSceneState::take(&scene);
        QVERIFY(mli.saveToDb());
        const QString first = mli.getPsiimId();
        setRates(&mli, "2");
        const ZelSceneState edited = ZelSceneState::take(&scene);

        QVERIFY(empty.restore(&scene));
        QVERIFY(scene.drawBond(siteOf(a, "a2"), siteOf(b, "b1")));
        QCOMPARE(mli.getPsiimId(), QString());
        setRates(&mli, "3");
        const ZelSceneState other = ZelSceneState::take(&scene);
        QVERIFY(mli.saveToDb());
        const QString second = mli.getPsiimId();
        for (const auto &[state, id, rate] : {std::tuple(edited, first, "2"),
                 std::tuple(other, second, "3"), std::tuple(unsaved, first, "1")}) {
            QVERIFY(state.restore(&scene));
            QCOMPARE(mli.getProperty(SdcProperty::AssociationRate), rate);
            QVERIFY(ZelSceneState::take(&scene) == state);
            QCOMPARE(mli.getPsiimId(), id);
            QVERIFY(mli.saveToDb());
        }
        QCOMPARE(model.db()->mliGetListPsiimId().size(), 2);
        // What was loaded goes with its id, so that the next drawing does not overwrite it.
        ZelSceneMli loading;
        loading.setZelDbSqliteModel(model.db());
        SdcMli fresh(model.db());
        loading.setSdc(&fresh);
        const ZelSceneState before = ZelSceneState::take(&loading);
        QVERIFY(loading.load(first));
        const ZelSceneState loaded = ZelSceneState::take(&loading);
        QVERIFY(before.restore(&loading));
        QCOMPARE(fresh.getPsiimId(), QString());
        QVERIFY(loaded.restore(&loading));
        QCOMPARE(fresh.getPsiimId(), first);
    }

    void bondThatCouldNotBeDrawnNow_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("complex") << static_cast<int>(ZelSceneType::Cpx);
        QTest::newRow("molecule interaction") << static_cast<int>(ZelSceneType::Mli);
        QTest::newRow("complex interaction") << static_cast<int>(ZelSceneType::Cxi);
    }

    void bondThatCouldNotBeDrawnNow()
    {
        QFETCH(int, type);
        EditingModel model;
        const QStringList aliases = saveAliases(&model);
        const bool isCxi = type == ZelSceneType::Cxi;
        std::unique_ptr<ZelSceneEditing> scene;
        if (type == ZelSceneType::Cpx)
            scene = std::make_unique<ZelSceneCpx>();
        else if (type == ZelSceneType::Mli)
            scene = std::make_unique<ZelSceneMli>();
        else
            scene = std::make_unique<ZelSceneCxi>();
        scene->setZelDbSqliteModel(model.db());
        QVERIFY(scene->addRecordFromDb(
            isCxi ? "cpa" : "mol", isCxi ? aliases.at(0) : model.molA(), {-200.0, 0.0}));
        QVERIFY(scene->addRecordFromDb(
            isCxi ? "cpa" : "mol", isCxi ? aliases.at(1) : model.molB(), {100.0, 0.0}));
        SdcBst *const first = siteOf(scene->getSdc()->getListSdcMol().at(0), "a1");
        SdcBst *const second = siteOf(scene->getSdc()->getListSdcMol().at(1), "b1");
        SdcBstBst *const bond = scene->drawBond(first, second);
        QVERIFY(bond);
        bond->setProperty(SdcProperty::Notes, "notes");
        first->getParentMcp()->setProperty(SdcProperty::Location, ZelLocation::InsideMembrane);
        second->getParentMcp()->setProperty(SdcProperty::Location, ZelLocation::FreelyDiffusing);
        const ZelSceneState before = ZelSceneState::take(scene.get());
        scene->removeBond(bond);
        QVERIFY(!scene->isBondAllowed(first, second));
        QVERIFY(before.restore(scene.get()));
        QVERIFY(ZelSceneState::take(scene.get()) == before);
        QVERIFY(!first->getListSdcBstBst().isEmpty());
        QVERIFY(first->getListSdcBstBst().first()->getZelLineItemBstBst());
    }

    // Of two alike molecules the states say which comes first.
    void stateCodeAfterUndo()
    {
        EditingModel model;
        for (int i = 0; i < 2; ++i) {
            ZelSceneCpx scene;
            scene.setZelDbSqliteModel(model.db());
            SdcMol *const a = scene.addMolFromDb(model.molB(), {-100.0, 0.0});
            SdcMol *const b = scene.addMolFromDb(model.molB(), {100.0, 0.0});
            QVERIFY(scene.drawBond(siteOf(a, "b1"), siteOf(b, "b1")));
            siteOf(i == 0 ? a : b, "b2")->setBindingStatus(BindingStatusUnbound);
            const ZelSceneState before = ZelSceneState::take(&scene);
            siteOf(i == 0 ? a : b, "b2")->setBindingStatus(BindingStatusUnspecified);
            siteOf(i == 0 ? b : a, "b2")->setBindingStatus(BindingStatusUnbound);
            const QString code = scene.getSdcCpx()->getAliasMcpStateCode();
            QVERIFY(before.restore(&scene));
            QCOMPARE(scene.getSdcCpx()->getAliasMcpStateCode(), code);
        }
    }

    void restoringIsNoChange()
    {
        EditingModel model;
        ZelSceneCpx scene;
        scene.setZelDbSqliteModel(model.db());
        SdcMol *const a = scene.addMolFromDb(model.molA(), {0.0, 0.0});
        const ZelSceneState state = ZelSceneState::take(&scene);
        scene.removeUnit(a);
        QSignalSpy begun(&scene, &ZelScene::signal_changeBegin);
        QSignalSpy changed(&scene, &ZelScene::signal_changed);
        QVERIFY(state.restore(&scene));
        QVERIFY(begun.isEmpty());
        QCOMPARE(changed.size(), 1);
        QVERIFY(
            scene.getSdcCpx()->getListSdcBst().at(0)->getZelEllipseItemBst()->getBindStatusItem());
    }
};

ZEL_TEST(tst_EditingUndo)
#include "tst_EditingUndo.moc"
