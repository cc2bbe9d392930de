#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <functional>
#include <utility>

// The scene of a complex interaction: two complexes, bonds between them, the result beside them.
class tst_SceneCxi : public EditingTest<ZelSceneCxi>
{
    Q_OBJECT
protected:
    void init() override
    {
        EditingTest::init();
        m_cpaAB = saveAlias({m_model->molA(), m_model->molB()});
        m_cpaB = saveAlias({m_model->molB()});
        QVERIFY(m_user->drop(QLatin1String("cpa;") + m_cpaAB, {-250.0, 0.0}));
        QVERIFY(m_user->drop(QLatin1String("cpa;") + m_cpaB, {50.0, 0.0}));
        m_cpxs = cxi()->getListSdcCpx();
        QCOMPARE(m_cpxs.size(), 2);
    }

private slots:
    void dragMovesTheComplex()
    {
        const QPointF first = Hands::centreOf(m_cpxs.at(0));
        const QPointF second = Hands::centreOf(m_cpxs.at(1));
        const QPointF by(10.0, -40.0);
        m_user->drag(componentOf(0), componentOf(0) + by);
        QVERIFY(QLineF(Hands::centreOf(m_cpxs.at(0)), first + by).length() < 1.5);
        QCOMPARE(Hands::centreOf(m_cpxs.at(1)), second);
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b1")));
        m_user->modifiers = Qt::ControlModifier;
        m_user->drag(componentOf(0), componentOf(0) - by);
        QVERIFY(QLineF(Hands::centreOf(m_cpxs.at(1)), second - by).length() < 1.5);
    }

    void resultIsBothAndTheBond()
    {
        QVERIFY(!m_scene->getResultSdcCpx());
        m_user->drag(Hands::centreOf(site(0, 0, "a2")), Hands::centreOf(site(1, 0, "b2")));
        QCOMPARE(cxi()->getListSdcBstBstCxi().size(), 1);
        SdcBstBstCxi *const bond = cxi()->getListSdcBstBstCxi().at(0);
        QCOMPARE(bond->getSdcCpx1(), m_cpxs.at(0));
        QCOMPARE(bond->getSdcCpx2(), m_cpxs.at(1));
        SdcCpx *const result = m_scene->getResultSdcCpx();
        QVERIFY(result);
        QCOMPARE(bond->getSdcCpxResult(), result);
        QCOMPARE(result->getListSdcMol().size(), 3);
        QCOMPARE(result->getListSdcBstBstCpx().size(), 2);
        QCOMPARE(result->getCpxFingerPrint(), bond->getResultCpxFingerPrint());
        QVERIFY(result->areAllConnected());
        QVERIFY(m_scene->getResultRect().left() > m_scene->getSceneRectForAllItems().right());
        // The complexes themselves are not bonded.
        QVERIFY(!site(0, 0, "a2")->isBound());
    }

    void resultFollows()
    {
        SdcBstBst *const bond = m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2"));
        const QRectF before = m_scene->getResultSdcCpx()->getSdcSceneRectF();
        m_user->drag(componentOf(1), componentOf(1) + QPointF(30.0, 80.0));
        QCOMPARE(m_scene->getResultSdcCpx()->getListSdcMol().size(), 3);
        const QRectF after = m_scene->getResultSdcCpx()->getSdcSceneRectF();
        QVERIFY(after.height() > before.height() + 40.0);
        QVERIFY(m_scene->getResultRect().left() > m_scene->getSceneRectForAllItems().right());
        m_scene->removeBond(bond);
        QVERIFY(!m_scene->getResultSdcCpx());
        QVERIFY(m_scene->getResultRect().isNull());
    }

    void resultIsWorkedOutOnceAChange()
    {
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2")));
        SdcBstBstCxi *const first = cxi()->getListSdcBstBstCxi().at(0);
        QGraphicsView second(m_scene.get()); // so that a drag of empty space reaches the scene
        const ZelSceneState state = ZelSceneState::take(m_scene.get());
        const QPointF at = componentOf(1);
        const QPointF to = at + QPointF(30.0, 80.0);
        QSignalSpy workedOut(qobject_cast<ZelScene *>(m_scene->getResultSdcCpx()->getScene()),
            &ZelScene::signal_changed);
        const QList<std::pair<int, std::function<void()>>> acts{
            {0,
                [&] {
                    m_user->drag({0.0, -250.0}, {40.0, -250.0});
                }},
            {0, [&] { m_user->press(at), m_user->move(at + QPointF(5.0, 0.0)), m_user->move(to); }},
            {1, [&] { m_user->release(to); }}, {0, [&] { m_user->click(to); }},
            {1, [&] { m_scene->rotateUnit(m_cpxs.at(0), 90.0); }},
            {1, [&] { m_scene->drawBond(site(0, 0, "a1"), site(1, 0, "b1")); }},
            {1, [&] { m_scene->setSelectedSdc(first); }}, {1, [&] { m_user->key(Qt::Key_Delete); }},
            {1, [&] { state.restore(m_scene.get()); }}};
        for (const auto &[times, act] : acts) {
            workedOut.clear();
            act();
            QCOMPARE(workedOut.size(), times);
        }
        // A bond that dies behind the scene's back takes its result along.
        delete cxi()->getListSdcBstBstCxi().at(0);
        QCoreApplication::processEvents();
        QVERIFY(!m_scene->getResultSdcCpx());
    }

    void resultOfTheBondThatWasClicked()
    {
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2")));
        QVERIFY(m_scene->drawBond(site(0, 0, "a1"), site(1, 0, "b1")));
        SdcBstBstCxi *const first = cxi()->getListSdcBstBstCxi().at(0);
        SdcBstBstCxi *const second = cxi()->getListSdcBstBstCxi().at(1);
        const auto isShown = [this](SdcBstBstCxi *bond) {
            return m_scene->getResultSdcCpx()->getCpxFingerPrint()
                == bond->getResultCpxFingerPrint();
        };
        QCOMPARE(m_scene->getCurrentBond(), second);
        QVERIFY(isShown(second) && !isShown(first));
        m_scene->setSelectedSdc(first);
        QVERIFY(isShown(first) && !isShown(second));
        QCOMPARE(first->getSdcCpxResult(), m_scene->getResultSdcCpx());
        QVERIFY(!second->getSdcCpxResult());
        m_scene->removeBond(first);
        QVERIFY(isShown(second));
    }

    void resultIsNoPlaceToClick()
    {
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2")));
        QSignalSpy clicked(m_scene.get(), &ZelScene::zelGItemClicked);
        const QPointF at = m_scene->getResultRect().center();
        QVERIFY(m_user->view().sceneRect().contains(at));
        m_user->drag(at, at + QPointF(-50.0, 20.0));
        m_user->click(at);
        QVERIFY(m_user->entries(at).isEmpty());
        QVERIFY(clicked.isEmpty());
        QCOMPARE(m_scene->getResultSdcCpx()->getListSdcMol().size(), 3);
    }

    void bondBeginsInTheFirstComplex()
    {
        m_user->drag(Hands::centreOf(site(1, 0, "b2")), Hands::centreOf(site(0, 0, "a2")));
        QCOMPARE(cxi()->getListSdcBstBstCxi().at(0)->getSdcBst1(), site(0, 0, "a2"));
    }

    void refusal_data()
    {
        rows<QString, QString>({"case_", "word"},
            {{"same complex", {"complex", "same complex"}},
                {"same molecule", {"molecule", "same molecule"}},
                {"bound within", {"bound", "is bound already"}},
                {"bound to what is not drawn", {"marked", "is marked as bound"}},
                {"twice", {"twice", "joined already"}}});
    }

    void refusal()
    {
        QFETCH(QString, case_);
        QFETCH(QString, word);
        SdcBst *source = site(0, 0, "a2");
        SdcBst *target = site(1, 0, "b1");
        if (case_ == QLatin1String("complex"))
            target = site(0, 1, "b1");
        else if (case_ == QLatin1String("molecule"))
            target = site(0, 0, "a1");
        else if (case_ == QLatin1String("bound"))
            source = site(0, 0, "a3");
        else if (case_ == QLatin1String("marked"))
            target->setBindingStatus(BindingStatusBound);
        else
            QVERIFY(m_scene->drawBond(target, source));
        const qsizetype bonds = cxi()->getListSdcBstBstCxi().size();
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        QVERIFY(!m_scene->drawBond(source, target));
        QCOMPARE(refused.size(), 1);
        QVERIFY2(refused.at(0).at(0).toString().contains(word),
            qPrintable(refused.at(0).at(0).toString()));
        QCOMPARE(cxi()->getListSdcBstBstCxi().size(), bonds);
    }

    void dropRefused_data()
    {
        rows<QString>({"record"},
            {{"a third complex", {QString()}}, {"a molecule", {"mol;mol1"}},
                {"a species without states", {"cpx;cpx1"}}, {"an unknown alias", {"cpa;cpa99"}}});
    }

    void dropRefused()
    {
        QFETCH(QString, record);
        QVERIFY(!m_user->drop(
            record.isEmpty() ? QLatin1String("cpa;") + m_cpaB : record, {0.0, 150.0}));
        QCOMPARE(cxi()->getListSdcCpx().size(), 2);
    }

    void ringWithinOneComplex()
    {
        m_scene->removeUnit(m_cpxs.at(1));
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(0, 1, "b1")));
        QVERIFY(cxi()->getListSdcBstBstCxi().at(0)->isIntraComplex());
        QCOMPARE(m_scene->getResultSdcCpx()->getListSdcMol().size(), 2);
        QCOMPARE(m_scene->getResultSdcCpx()->getListSdcBstBstCpx().size(), 2);
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        QVERIFY(!m_scene->addCpaFromDb(m_cpaB, {0.0, 0.0}));
        QCOMPARE(refused.size(), 1);
    }

    void deletingAComplex()
    {
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2")));
        QVERIFY(m_user->choose(componentOf(0), QStringLiteral("Delete Complex")));
        QCOMPARE(cxi()->getListSdcCpx(), QList<SdcCpx *>{m_cpxs.at(1)});
        QVERIFY(cxi()->getListSdcBstBstCxi().isEmpty());
        QVERIFY(!m_scene->getResultSdcCpx());
        m_scene->removeContents();
        QVERIFY(m_scene->items().isEmpty());
    }

    void savedAndLoaded()
    {
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2")));
        // The result must be known before the association can be.
        ZelSceneCpx joined;
        joined.setZelDbSqliteModel(m_model->db());
        QVERIFY(joined.addCpaFromDb(m_cpaAB, {0.0, 0.0}));
        QVERIFY(joined.addCpaFromDb(m_cpaB, {0.0, 100.0}));
        const QList<SdcMol *> mols = joined.getSdcCpx()->getListSdcMol();
        QVERIFY(joined.drawBond(siteOf(mols.at(0), "a2"), siteOf(mols.at(2), "b2")));
        QVERIFY(joined.getSdcCpx()->saveToDbCpx());
        QVERIFY(joined.getSdcCpx()->saveToDbCpa());
        SdcBstBstCxi *const bond = cxi()->getListSdcBstBstCxi().at(0);
        bond->setResultCpxAliasPsiimId(joined.getSdcCpx()->getProperty(SdcProperty::CpaPsiimId));
        QCOMPARE(m_scene->getResultTitle(),
            QLatin1String("Result: ") + joined.getSdcCpx()->getProperty(SdcProperty::CpaShortName));
        QVERIFY(cxi()->saveToDb());

        ZelSceneCxi other;
        other.setZelDbSqliteModel(m_model->db());
        for (int i = 0; i < 2; ++i) {
            QVERIFY(other.load(bond->getPsiimId()));
            QCOMPARE(ZelTree::text(other.getSdcCxi()->getListSdcCpx().at(0)),
                ZelTree::text(m_cpxs.at(0)));
            QCOMPARE(other.getSdcCxi()->getListSdcBstBstCxi().size(), 1);
            SdcBstBstCxi *const loaded = other.getSdcCxi()->getListSdcBstBstCxi().at(0);
            QCOMPARE(loaded->getPsiimId(), bond->getPsiimId());
            QCOMPARE(loaded->getZelLineItemBstBst()->line(), bond->getZelLineItemBstBst()->line());
            QCOMPARE(other.getResultSdcCpx()->getCpxFingerPrint(), bond->getResultCpxFingerPrint());
        }
        QVERIFY(!other.load(QStringLiteral("cai99")));
        QCOMPARE(other.getSdcCxi()->getListSdcCpx().size(), 2);
    }

    void thingsDieWhileShown_data()
    {
        QTest::addColumn<QString>("what");
        for (const char *what :
            {"site", "bond", "line", "inner bond", "molecule", "complex", "interaction"})
            QTest::newRow(what) << QString::fromLatin1(what);
    }

    void thingsDieWhileShown()
    {
        QFETCH(QString, what);
        SdcCxi shown(m_model->db());
        const QPointer<SdcCxi> interaction =
            what == QLatin1String("interaction") ? new SdcCxi(m_model->db()) : &shown;
        m_scene->setSdc(interaction);
        m_cpxs = {m_scene->addCpaFromDb(m_cpaAB, {-200.0, 0.0}),
            m_scene->addCpaFromDb(m_cpaB, {100.0, 0.0})};
        QVERIFY(m_scene->drawBond(site(0, 0, "a2"), site(1, 0, "b2")));
        const QPointF at = Hands::centreOf(site(0, 0, "a2"));
        const QPointF on = componentOf(0);
        m_user->click(on);
        m_user->press(at);
        m_user->move(at + QPointF(0.0, -40.0));
        if (what == QLatin1String("site"))
            delete site(0, 0, "a2");
        else if (what == QLatin1String("bond"))
            delete interaction->getListSdcBstBstCxi().at(0);
        else if (what == QLatin1String("line"))
            delete interaction->getListSdcBstBstCxi().at(0)->getZelLineItemBstBst();
        else if (what == QLatin1String("inner bond"))
            delete m_cpxs.at(0)->getListSdcBstBstCpx().at(0);
        else if (what == QLatin1String("molecule"))
            delete m_cpxs.at(0)->getListSdcMol().at(0);
        else if (what == QLatin1String("complex"))
            delete m_cpxs.at(0);
        else
            delete interaction.data();
        picture();
        m_user->move(at + QPointF(40.0, 40.0));
        m_user->release(at + QPointF(40.0, 40.0));
        m_user->drag(on, on + QPointF(10.0, 10.0));
        m_user->entries(on);
        m_user->key(Qt::Key_Delete);
        picture();
        m_scene->removeContents();
        m_scene->removeAllItems();
        QVERIFY(m_scene->items().isEmpty());
    }

private:
    QString saveAlias(const QStringList &mols)
    {
        ZelSceneCpx scene;
        scene.setZelDbSqliteModel(m_model->db());
        QList<SdcMol *> added;
        for (const QString &mol : mols)
            added.append(scene.addMolFromDb(mol, {200.0 * static_cast<double>(added.size()), 0.0}));
        if (added.size() > 1)
            scene.drawBond(siteOf(added.at(0), "a3"), siteOf(added.at(1), "b2"));
        SdcCpx *const cpx = scene.getSdcCpx();
        if (!cpx->saveToDbCpx() || !cpx->saveToDbCpa())
            qFatal("the complex is not saved");
        return cpx->getProperty(SdcProperty::CpaPsiimId);
    }

    SdcBst *site(int cpx, int mol, const char *name)
    {
        return siteOf(m_cpxs.at(cpx)->getListSdcMol().at(mol), name);
    }
    SdcCxi *cxi() { return m_scene->getSdcCxi(); }
    QPointF componentOf(int cpx)
    {
        return Hands::centreOf(m_cpxs.at(cpx)->getListSdcMol().at(0)->getSdcMcpAtIndex(0));
    }

    QString m_cpaAB; // A and B, joined by a1 and b2
    QString m_cpaB;
    QList<SdcCpx *> m_cpxs; // AB, B
};

ZEL_TEST(tst_SceneCxi)
#include "tst_SceneCxi.moc"
