#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/graphics/ZelSceneState.h"
#include "zelModelSupport/support/zgs.h"

#include <QColorDialog>
#include <QMessageBox>

#include <random>

// A user who does anything in any order. ZEL_RANDOM_STEPS and ZEL_RANDOM_SEED make the run longer
// or another.
class tst_SceneRandomUser : public ZelTest
{
    Q_OBJECT
private slots:
    void moleculeScene();
    void openScene();
};

namespace {

template <typename Scene>
class RandomUser : public QObject
{
public:
    explicit RandomUser(unsigned seed) : m_random(seed)
    {
        ZelScene &scene = m_stage.scene();
        scene.setAllowToDisplayBindingStatus(true);
        scene.setAllowToChangeBindingStatus(true);
        connect(&scene, &ZelScene::signal_setStickyState, this,
            [](ZelRectItemMcpSticky *sticky, int state) {
                sticky->setStateType(state, false);
                if (sticky->getSdcMcp())
                    sticky->getSdcMcp()->updateStatePropertyFromSticky();
            });
        connect(&scene, &ZelScene::signal_setNegation, this, [](SdcMcp *mcp, bool negated) {
            mcp->setProperty(SdcProperty::Negation, negated ? QStringLiteral("1") : QString());
            mcp->updateMcpNot();
        });
        connect(&scene, &ZelScene::signal_setBstBindingStatus, this,
            [](SdcBst *bst, BindingStatusType status) {
                if (bst->getBindingStatus() != status)
                    bst->setBindingStatus(status);
            });
        connect(&scene, &ZelScene::signal_ZelGItemMoved, this,
            [this](ZelGItem *item) { m_lastMoved = item->asEllipseItem(); });
        connect(&scene, &ZelScene::signal_changeBegin, this, [this] { ++m_open; });
        connect(&scene, &ZelScene::signal_changeEnd, this, [this] {
            --m_open;
            if (m_states.size() > 20)
                m_states.removeAt(number(m_states.size()));
            m_states.append(ZelSceneState::take(&m_stage.scene()));
        });
        addComponent();
    }

    void step()
    {
        m_lastMoved.clear();
        switch (number(16)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            drag();
            break;
        case 5:
            m_stage.click(somewhere());
            break;
        case 6:
            m_stage.doubleClick(somewhere());
            break;
        case 7:
        case 8:
            menu();
            break;
        case 9:
            if (mol().getListSdcMcp().size() < 6)
                addComponent();
            break;
        case 10:
            if (SdcMcp *mcp = component(); mcp && mcp->getListSdcBst().size() < 4)
                m_stage.scene().addSdcBst(mcp);
            break;
        case 11:
            remove();
            break;
        case 12:
            turn();
            break;
        case 13:
        case 14:
            if (!m_states.isEmpty()) {
                const ZelSceneState state = m_states.at(number(m_states.size()));
                QVERIFY(state.restore(&m_stage.scene()));
                QVERIFY(ZelSceneState::take(&m_stage.scene()) == state);
            }
            break;
        default:
            m_stage.scene().setReadOnly(number(4) == 0);
            break;
        }
    }

    void checkInvariants()
    {
        QCOMPARE(m_open, 0);
        const QList<SdcMcp *> mcps = mol().getListSdcMcp();
        int number = 0;
        for (qsizetype i = 0; i < mcps.size(); ++i) {
            SdcMcp *const mcp = mcps.at(i);
            QCOMPARE(mcp->getPosIndex(), int(i));
            ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
            QVERIFY(item && item->scene() == &m_stage.scene());
            QCOMPARE(item->getSdcMcp(), mcp);
            QCOMPARE(item->getListSticky().size(), mcp->getListSdcMcpTags().size());
            QCOMPARE(item->isNotIndicatorVisible(),
                mcp->getProperty(SdcProperty::Negation) == QLatin1String("1"));
            for (ZelEllipseItemMcp *neighbour : item->getListNeighborZelEllipseItemMcp())
                QVERIFY(mcps.contains(neighbour->getSdcMcp()));
            for (SdcBst *bst : mcp->getListSdcBst()) {
                ZelEllipseItemBst *const site = bst->getZelEllipseItemBst();
                QVERIFY(site && site->parentItem() == item);
                QCOMPARE(site->getSdcBst(), bst);
                QCOMPARE(bst->getBstLabelText(), QString::number(++number));
            }
        }
        for (QGraphicsItem *item : m_stage.scene().items()) {
            if (ZelEllipseItemMcp *mcpItem = ZelGItem::toZelEllipseItemMcp(item))
                QVERIFY(mcps.contains(mcpItem->getSdcMcp()));
        }
        if (m_lastMoved)
            QVERIFY(!m_stage.scene().collidingWithOtherSdcItems(
                m_lastMoved, QList<ZelEllipseItem *>()));
    }

    SceneStage<Scene> &stage() { return m_stage; }

private:
    SdcMol &mol() { return m_stage.mol(); }
    int number(qsizetype below)
    {
        return int(m_random() % unsigned(std::max<qsizetype>(below, 1)));
    }
    SdcMcp *component()
    {
        const QList<SdcMcp *> list = mol().getListSdcMcp();
        return list.isEmpty() ? nullptr : list.at(number(list.size()));
    }
    QPointF somewhere()
    {
        if (number(5) == 0)
            return {double(number(600) - 300), double(number(400) - 200)};
        SdcMcp *const mcp = component();
        if (!mcp)
            return {};
        const QList<SdcBst *> sites = mcp->getListSdcBst();
        const QList<ZelRectItemMcpSticky *> stickies = mcp->getListSticky();
        if (!sites.isEmpty() && number(2) == 0)
            return centreOf(sites.at(number(sites.size()))->getZelEllipseItemBst());
        if (!stickies.isEmpty() && number(3) == 0)
            return stickies.at(number(stickies.size()))->sceneBoundingRect().center();
        return centreOf(mcp->getZelEllipseItemMcp()) + QPointF(number(20) - 10, number(20) - 10);
    }
    void addComponent()
    {
        QGraphicsEllipseItem reference(
            0.0, 0.0, 30.0 + number(30), number(2) == 0 ? 30.0 + number(30) : 40.0);
        SdcMcp *const mcp = m_stage.scene().addSdcMcp(&reference, component());
        ZelTest::takeDebugLines(); // the first one is placed with a warning
        for (int i = number(4); mcp && i > 0; --i)
            mcp->addTag(QStringLiteral("f%1").arg(i), QStringLiteral("red"));
    }
    void remove()
    {
        SdcMcp *const mcp = component();
        if (!mcp)
            return;
        const QList<SdcBst *> sites = mcp->getListSdcBst();
        if (!sites.isEmpty() && number(2) == 0)
            m_stage.scene().removeSdcBst(sites.at(number(sites.size())));
        else if (mol().getListSdcMcp().size() > 1 || number(4) == 0)
            m_stage.scene().removeSdcMcp(mcp);
    }
    void drag()
    {
        const QPointF from = somewhere();
        const QPointF to = from + QPointF(number(160) - 80, number(160) - 80);
        m_stage.press(from);
        const int steps = 1 + number(6);
        for (int i = 1; i <= steps; ++i) {
            m_stage.move(from + (to - from) * i / steps);
            if (number(40) == 0)
                remove(); // in the middle of it
        }
        m_stage.release(to);
    }
    void menu()
    {
        m_stage.menuAt(somewhere(), [this](QMenu *menu) {
            if (number(6) == 0)
                remove(); // what the menu may be about
            const QList<QAction *> actions = menu->actions();
            QAction *const action = actions.at(number(actions.size()));
            if (action->text() == QLatin1String("Change Molecule Color")) {
                QTimer::singleShot(0, this, [this] {
                    auto *const dialog =
                        qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
                    if (!dialog)
                        return;
                    dialog->setCurrentColor(QColor::fromHsv(number(360), 90, 220));
                    static_cast<QDialog *>(dialog)->done(number(2));
                });
            }
            if (action->isEnabled() && !action->isSeparator() && number(4) != 0) {
                menu->setActiveAction(action);
                QTest::keyClick(menu, Qt::Key_Return);
            }
        });
        // What the chosen colour action says when its item has gone meanwhile.
        const QStringList lines = ZelTest::takeDebugLines();
        for (const QString &line : lines) {
            if (!line.contains(QLatin1String("ZelScene::changeMolColor")))
                qDebug().noquote() << line;
        }
    }
    void turn()
    {
        QTimer::singleShot(0, this, [] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                box->accept();
        });
        QList<SdcMcp *> set = mol().getListSdcMcp();
        if (SdcMcp *mcp = number(2) == 0 ? component() : nullptr)
            set = {mcp};
        const bool turned = number(3) == 0 ? zgs::flipY(set, true)
                                           : zgs::rotate(set, 15.0 * (number(24) - 12), true);
        QCoreApplication::processEvents();
        if (turned)
            QVERIFY(!zgs::collidingWithOtherEllipse(set));
    }

    SceneStage<Scene> m_stage;
    std::mt19937 m_random;
    QList<ZelSceneState> m_states;
    QPointer<ZelEllipseItem> m_lastMoved;
    int m_open = 0;
};

template <typename Scene>
void play(const std::function<void(SceneStage<Scene> &)> &prepare)
{
    bool ok = false;
    const int wanted = qEnvironmentVariableIntValue("ZEL_RANDOM_STEPS", &ok);
    const int steps = ok ? wanted : 1000;
    const auto seed = unsigned(qEnvironmentVariableIntValue("ZEL_RANDOM_SEED"));
    RandomUser<Scene> user(seed);
    prepare(user.stage());
    for (int i = 0; i < steps && !QTest::currentTestFailed(); ++i) {
        user.step();
        user.checkInvariants();
        if (QTest::currentTestFailed())
            qInfo("seed %u, step %d", seed, i);
    }
}

} // namespace

void tst_SceneRandomUser::moleculeScene()
{
    play<ZelSceneMol>([](SceneStage<ZelSceneMol> &) {});
}

void tst_SceneRandomUser::openScene()
{
    play<OpenScene>([](SceneStage<OpenScene> &stage) {
        stage.scene().changesLayout = true;
        stage.scene().movesGroup = true;
    });
}

ZEL_TEST(tst_SceneRandomUser)
#include "tst_SceneRandomUser.moc"
