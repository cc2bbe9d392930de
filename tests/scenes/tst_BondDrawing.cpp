#include "EditingStage.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <QSignalSpy>

// A bond drawn by hand from site to site: the provisional line, the lights, the refusals.
class tst_BondDrawing : public EditingTest<ZelSceneCpx>
{
    Q_OBJECT
protected:
    void init() override
    {
        EditingTest::init();
        addThree();
    }

private slots:
    void dragFromSiteToSiteMakesABond()
    {
        QSignalSpy changed(m_scene.get(), &ZelScene::signal_changed);
        QSignalSpy begun(m_scene.get(), &ZelScene::signal_changeBegin);
        QSignalSpy ended(m_scene.get(), &ZelScene::signal_changeEnd);
        m_user->drag(Hands::centreOf(site(0, "a1")), Hands::centreOf(site(1, "b2")));
        SdcBstBstCpx *const bond =
            m_scene->getSdcCpx()->getSdcBstBstCpx(site(0, "a1"), site(1, "b2"));
        QVERIFY(bond);
        QCOMPARE(bond->getSdcBst1(), site(0, "a1"));
        QVERIFY(bond->getZelLineItemBstBst()->line().length() > 50.0);
        QCOMPARE(site(1, "b2")->getBindingStatus(), BindingStatusBound);
        QVERIFY(!changed.isEmpty());
        QCOMPARE(begun.size(), 1);
        QCOMPARE(ended.size(), 1);
        QVERIFY(!m_scene->isDrawingBond());
        // The bond follows the molecules.
        const QLineF before = bond->getZelLineItemBstBst()->line();
        const QPointF from = Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0));
        m_user->drag(from, from + QPointF(30.0, 40.0));
        QVERIFY(bond->getZelLineItemBstBst()->line() != before);
    }

    void lineFollowsTheMouse()
    {
        const QPointF from = Hands::centreOf(site(0, "a1"));
        m_user->press(from);
        QVERIFY(!m_scene->isDrawingBond());
        for (const QPointF &to : {QPointF(0.0, -200.0), QPointF(30.0, -150.0)}) {
            m_user->move(to);
            QVERIFY(m_scene->isDrawingBond());
            const QLineF line = m_scene->getProvisionalLine();
            QVERIFY(QLineF(line.p2(), to).length() < 1.0);
            // It begins on the rim of the site.
            QVERIFY(std::abs(QLineF(line.p1(), from).length() - 6.0) < 0.1);
        }
        m_user->move(from);
        QCOMPARE(m_scene->getProvisionalLine().length(), 0.0);
        m_user->release(from);
        QVERIFY(!m_scene->isDrawingBond());
        QVERIFY(m_scene->getSdcCpx()->getListSdcBstBstCpx().isEmpty());
    }

    void sitesThatMayBindLightUp()
    {
        QVERIFY(m_scene->drawBond(site(1, "b1"), site(2, "b1")));
        const auto isLit = [this](int mol, const char *name) {
            return site(mol, name)->getZelEllipseItemBst()->isHighlighted();
        };
        site(1, "b1")->getZelEllipseItemBst()->setHighlight(
            true); // before the gesture, by someone else
        m_user->press(Hands::centreOf(site(0, "a1")));
        m_user->move({0.0, -200.0});
        QVERIFY(isLit(1, "b2"));
        QVERIFY(isLit(2, "b2"));
        QVERIFY(!isLit(2, "b1")); // bound
        QVERIFY(!isLit(0, "a3")); // the same molecule
        QVERIFY(!isLit(0, "a1"));
        m_user->release({0.0, -200.0});
        QVERIFY(!isLit(1, "b2"));
        QVERIFY(!isLit(2, "b2"));
        QVERIFY(isLit(1, "b1"));
    }

    void nearASiteIsNearEnough()
    {
        const QPointF at = Hands::centreOf(site(1, "b1"));
        m_user->press(Hands::centreOf(site(0, "a1")));
        m_user->move(at + QPointF(9.0, 0.0));
        // It snaps to the rim.
        QVERIFY(std::abs(QLineF(m_scene->getProvisionalLine().p2(), at).length() - 6.0) < 0.1);
        m_user->release(at + QPointF(9.0, 0.0));
        QVERIFY(site(1, "b1")->isBound());
    }

    void refusal_data()
    {
        rows<QString, QString>({"case_", "word"},
            {{"same molecule", {"same", "same molecule"}},
                {"bound site", {"bound", "\"B / b1\" is bound already"}},
                {"site marked Bound", {"marked", "\"B / b1\" is marked as bound"}},
                {"sides of the membrane", {"sides", "different sides of the membrane"}}});
    }

    void refusal()
    {
        QFETCH(QString, case_);
        QFETCH(QString, word);
        SdcBst *target = site(1, "b1");
        if (case_ == QLatin1String("same")) {
            target = site(0, "a3");
        } else if (case_ == QLatin1String("bound")) {
            QVERIFY(m_scene->drawBond(site(1, "b1"), site(2, "b1")));
        } else if (case_ == QLatin1String("marked")) {
            target->setBindingStatus(BindingStatusBound);
        } else {
            site(0, "a1")->getParentMcp()->setProperty(SdcProperty::Location, "Outside");
            target->getParentMcp()->setProperty(
                SdcProperty::Location, QLatin1String(ZelLocation::InsideMembrane));
        }
        const qsizetype bonds = m_scene->getSdcCpx()->getListSdcBstBstCpx().size();
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        QSignalSpy begun(m_scene.get(), &ZelScene::signal_changeBegin);
        m_user->drag(Hands::centreOf(site(0, "a1")), Hands::centreOf(target));
        QCOMPARE(refused.size(), 1);
        QVERIFY2(refused.at(0).at(0).toString().contains(word),
            qPrintable(refused.at(0).at(0).toString()));
        QCOMPARE(begun.size(), 0);
        QCOMPARE(m_scene->getSdcCpx()->getListSdcBstBstCpx().size(), bonds);
    }

    void boundSiteBeginsNoBond()
    {
        QVERIFY(m_scene->drawBond(site(0, "a1"), site(1, "b1")));
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        const QPointF before = Hands::centreOf(m_mols.at(0));
        m_user->drag(Hands::centreOf(site(0, "a1")), Hands::centreOf(site(2, "b1")));
        QCOMPARE(refused.size(), 1);
        QCOMPARE(m_scene->getSdcCpx()->getListSdcBstBstCpx().size(), 1);
        QCOMPARE(Hands::centreOf(m_mols.at(0)), before);
    }

    void droppedOnNothing()
    {
        QSignalSpy refused(m_scene.get(), &ZelScene::signal_refused);
        m_user->drag(Hands::centreOf(site(0, "a1")), {0.0, -250.0});
        QVERIFY(refused.isEmpty());
        QVERIFY(m_scene->getSdcCpx()->getListSdcBstBstCpx().isEmpty());
    }

    void givenUp_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"Escape", "read-only", "molecule removed", "button lost", "window"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    void givenUp()
    {
        QFETCH(QString, how);
        m_user->press(Hands::centreOf(site(0, "a1")));
        m_user->move({0.0, -200.0});
        QVERIFY(m_scene->isDrawingBond());
        if (how == QLatin1String("Escape")) {
            m_user->key(Qt::Key_Escape);
        } else if (how == QLatin1String("read-only")) {
            m_scene->setReadOnly(true);
        } else if (how == QLatin1String("molecule removed")) {
            m_scene->removeSdcMol(m_mols.at(2));
            m_mols.removeAt(2);
        } else if (how == QLatin1String("button lost")) {
            QMouseEvent hover(QEvent::MouseMove, QPointF(10.0, 10.0), QPointF(10.0, 10.0),
                Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            m_user->view().setMouseTracking(true);
            QApplication::sendEvent(m_user->view().viewport(), &hover);
        } else {
            QEvent deactivated(QEvent::WindowDeactivate);
            QApplication::sendEvent(m_scene.get(), &deactivated);
        }
        QVERIFY(!m_scene->isDrawingBond());
        QVERIFY(!site(1, "b1")->getZelEllipseItemBst()->isHighlighted());
        // The button is still down: the mouse goes on, and draws no more.
        const QPointF target = Hands::centreOf(site(1, "b1"));
        m_user->move(target);
        QVERIFY(!m_scene->isDrawingBond());
        m_user->release(target);
        QVERIFY(m_scene->getSdcCpx()->getListSdcBstBstCpx().isEmpty());
    }

    void altMovesTheSite()
    {
        SdcBst *const moved = site(1, "b1");
        const QPointF centre = Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0));
        m_user->modifiers = Qt::AltModifier;
        m_user->press(Hands::centreOf(moved));
        m_user->move(centre + QPointF(10.0, 30.0));
        QVERIFY(!m_scene->isDrawingBond());
        m_user->move(centre + QPointF(0.0, 60.0));
        m_user->release(centre + QPointF(0.0, 60.0));
        const QPointF now = Hands::centreOf(moved) - centre;
        QVERIFY(std::abs(now.x()) < 1.0 && now.y() > 15.0); // straight below, on the rim
        QCOMPARE(Hands::centreOf(m_mols.at(1)->getSdcMcpAtIndex(0)), centre);
    }

    void siteDiesWhileItsBondIsDrawn_data()
    {
        rows<bool, bool>({"source", "withItem"},
            {{"source", {true, false}}, {"source with its item", {true, true}},
                {"target", {false, false}}, {"target with its item", {false, true}}});
    }

    void siteDiesWhileItsBondIsDrawn()
    {
        QFETCH(bool, source);
        QFETCH(bool, withItem);
        SdcBst *const victim = source ? site(0, "a1") : site(1, "b1");
        const QPointF target = Hands::centreOf(site(1, "b1"));
        m_user->press(Hands::centreOf(site(0, "a1")));
        m_user->move(target);
        if (withItem)
            delete victim->getZelEllipseItemBst();
        delete victim;
        picture();
        m_user->move(target + QPointF(1.0, 0.0));
        m_user->release(target);
        QVERIFY(!m_scene->isDrawingBond());
        QVERIFY(m_scene->getSdcCpx()->getListSdcBstBstCpx().isEmpty());
    }

    void lineIsPaintedAndGoes()
    {
        const QImage before = picture();
        m_user->press(Hands::centreOf(site(0, "a1")));
        m_user->move({0.0, -200.0});
        QVERIFY(picture() != before);
        m_user->key(Qt::Key_Escape);
        QCOMPARE(picture(), before);
    }
};

ZEL_TEST(tst_BondDrawing)
#include "tst_BondDrawing.moc"
