#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/graphics/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include <QSignalSpy>

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
        scene.removeUnit(b);
        scene.removeUnit(a);
        QCOMPARE(history.steps(), 11);
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
        scene.removeUnit(b);
        QCOMPARE(history.steps(), 8);
        QCOMPARE(history.jump(3, 5, &mli), QString()); // the same bond, drawn the other way round
        for (int i = 0; i < 2; ++i)
            QCOMPARE(history.walk(&mli), QString());
    }

    void complexInteraction()
    {
        EditingModel model;
        QStringList aliases;
        for (const QString &mol : {model.molA(), model.molB()}) {
            ZelSceneCpx single;
            single.setZelDbSqliteModel(model.db());
            single.addMolFromDb(mol, {0.0, 0.0});
            QVERIFY(single.getSdcCpx()->saveToDbCpx() && single.getSdcCpx()->saveToDbCpa());
            aliases.append(single.getSdcCpx()->getProperty(SdcProperty::CpaPsiimId));
        }
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
        scene.removeUnit(a);
        scene.removeUnit(b);
        QCOMPARE(history.steps(), 6);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(history.walk(&cxi), QString());
        QVERIFY(!scene.getResultSdcCpx());
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
