#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCpx.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <QSignalSpy>

#include <functional>
#include <utility>

// What gestures select, and how long it glows; the lines of bonds that follow what is dragged.
class tst_EditingSelection : public EditingTest<ZelSceneCpx>
{
    Q_OBJECT
protected:
    void init() override
    {
        EditingTest::init();
        addThree();
    }

private slots:
    void deleteHitsWhatWasActedOn_data()
    {
        rows<QString>({"dead"},
            {{"pressed", {"B bond"}}, {"dragged", {"B bond"}}, {"right-clicked", {"B bond"}},
                {"by its menu", {"B bond"}}, {"line pressed", {"bond"}},
                {"line by its menu", {"bond"}}, {"site pressed", {"bond"}},
                {"site right-clicked", {"bond"}}, {"site by its menu", {"bond"}},
                {"line over a molecule pressed", {"C"}},
                {"line over a molecule right-clicked", {"C"}}, {"space clicked", {""}},
                {"space right-clicked", {""}}, {"dropped", {""}}, {"bond drawn", {""}},
                {"bond given up", {""}}, {"bond drawn and undone", {""}}, {"molecule died", {"B"}},
                {"bond died", {"bond"}}});
    }

    void deleteHitsWhatWasActedOn()
    {
        QFETCH(QString, dead);
        bond();
        SdcCpx *const cpx = m_scene->getSdcCpx();
        SdcBstBst *const first = cpx->getListSdcBstBstCpx().at(0);
        const QList<std::pair<QString, QPointer<Sdc>>> parts{
            {"A", m_mols.at(0)}, {"B", m_mols.at(1)}, {"C", m_mols.at(2)}, {"bond", first}};
        const QPointF on = componentOf(1);
        const QPointF bonded = Hands::centreOf(site(1, "b2"));
        const QPointF bare = Hands::centreOf(site(1, "b1"));
        const QPointF space(0.0, -250.0);
        QPointF line; // a whole pixel
        for (double at = 0.4; !m_scene->getZelLineItemFromScenePos(line); at += 0.01)
            line = first->getZelLineItemBstBst()->line().pointAt(at).toPoint();
        const QPointF nearLine = line + QPointF(0.0, 2.0);
        const auto lineOverC = [&] {
            m_scene->moveListSdcMcps(m_mols.at(2)->getListSdcMcp(), line - componentOf(2));
        };
        const auto drawBond = [&] { m_user->drag(bare, Hands::centreOf(site(2, "b1"))); };
        const auto selectAndDelete = [&](Sdc *sdc) {
            m_scene->setSelectedSdc(sdc);
            delete sdc;
        };
        const ZelSceneState state = ZelSceneState::take(m_scene.get());
        const QHash<QString, std::function<void()>> acts{{"pressed", [&] { m_user->press(on); }},
            {"dragged", [&] { m_user->drag(on, on + QPointF(30.0, 30.0)); }},
            {"right-clicked", [&] { m_user->entries(on); }},
            {"by its menu", [&] { m_user->choose(on, "Delete Molecule"); }},
            {"line pressed", [&] { m_user->press(nearLine); }},
            {"line by its menu", [&] { m_user->choose(nearLine, "Delete Bond"); }},
            {"site pressed", [&] { m_user->press(bonded); }},
            {"site right-clicked", [&] { m_user->entries(bonded); }},
            {"site by its menu", [&] { m_user->choose(bonded, "Delete Bond"); }},
            {"line over a molecule pressed", [&] { lineOverC(), m_user->press(line); }},
            {"line over a molecule right-clicked", [&] { lineOverC(), m_user->entries(line); }},
            {"space clicked", [&] { m_user->click(space); }},
            {"space right-clicked", [&] { m_user->entries(space); }},
            {"dropped", [&] { m_user->drop(QLatin1String("mol;") + m_model->molB(), space); }},
            {"bond drawn", drawBond}, {"bond given up", [&] { m_user->drag(bare, space); }},
            {"bond drawn and undone", [&] { drawBond(), state.restore(m_scene.get()); }},
            {"molecule died", [&] { selectAndDelete(m_mols.at(1)); }},
            {"bond died", [&] { selectAndDelete(first); }}};
        m_user->click(componentOf(0));
        QSignalSpy selected(m_scene.get(), &ZelSceneEditing::signal_selectionChanged);
        acts.value(QString::fromLatin1(QTest::currentDataTag()))();
        m_user->key(Qt::Key_Delete);
        QStringList gone;
        for (const auto &[name, sdc] : parts) {
            if (!sdc)
                gone.append(name);
        }
        QCOMPARE(gone.join(u' '), dead);
        const int bonds = gone.removeAll("bond") > 0 ? 0 : 1;
        QCOMPARE(cpx->getListSdcBstBstCpx().size(), bonds);
        QCOMPARE(cpx->getListSdcMol().size(), 3 - gone.size());
        QVERIFY(!m_scene->getSelectedSdc());
        QVERIFY(!selected.isEmpty() && !selected.last().at(0).value<Sdc *>());
        for (SdcBst *each : cpx->getListSdcBst())
            QVERIFY(!each->getZelEllipseItemBst()->isHighlighted());
    }

    void bondWhoseEndsMoveIsLaidOnce()
    {
        class CountedLine : public ZelLineItemBstBstCpx
        {
        public:
            void updateLine() override
            {
                ++laid;
                ZelLineItemBstBstCpx::updateLine();
            }
            int laid = 0;
        };
        bond();
        SdcBstBst *const drawn = m_scene->getSdcCpx()->getListSdcBstBstCpx().at(0);
        delete drawn->getZelLineItemBstBst();
        auto *const line = new CountedLine;
        m_scene->addBondLine(drawn, line);
        const QList<SdcMcp *> one = m_mols.at(0)->getListSdcMcp();
        m_scene->moveListSdcMcps(one + m_mols.at(1)->getListSdcMcp(), {10.0, 5.0});
        QCOMPARE(line->laid, 2);
        m_scene->moveListSdcMcps(one, {10.0, 5.0});
        QCOMPARE(line->laid, 3);
        QVERIFY(m_scene->flipUnit(m_mols.at(0), true));
        QCOMPARE(line->laid, 4);
    }

private:
    void bond() { QVERIFY(m_scene->drawBond(site(0, "a1"), site(1, "b2"))); }
    QPointF componentOf(int mol) { return Hands::centreOf(m_mols.at(mol)->getSdcMcpAtIndex(0)); }
};

ZEL_TEST(tst_EditingSelection)
#include "tst_EditingSelection.moc"
