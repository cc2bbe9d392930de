#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"

#include <QColorDialog>
#include <QSignalSpy>

// The context menus of the base scene and the choice of a molecule's colour.
class tst_SceneMenus : public ZelTest
{
    Q_OBJECT
private slots:
    void stickyMenu_data();
    void stickyMenu();
    void stickyMenuDismissed();
    void componentMenuNegates_data();
    void componentMenuNegates();
    void componentMenuShowsInteractions();
    void siteMenu_data();
    void siteMenu();
    void siteMenuEntries();
    void siteMenuNeedsDisplay();
    void noMenu();
    void deathInOpenMenu_data();
    void deathInOpenMenu();
    void colour_data();
    void colour();
    void colourWithoutView();
    void colourFindsNothing();
};

namespace {

void answerColorDialog(QObject *context, bool accept, const QColor &color, QString *title)
{
    QTimer::singleShot(0, context, [=] {
        auto *const dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        *title = dialog->windowTitle();
        dialog->setCurrentColor(color);
        if (accept)
            dialog->accept();
        else
            dialog->reject();
    });
}

} // namespace

void tst_SceneMenus::stickyMenu_data()
{
    QTest::addColumn<int>("present");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("changes");
    QTest::newRow("on to off") << 2 << QStringLiteral("Off") << 1 << 1;
    QTest::newRow("off to on") << 1 << QStringLiteral("On") << 2 << 1;
    QTest::newRow("on to don't care") << 2 << QStringLiteral("Don't Care") << 4 << 1;
    QTest::newRow("what it is already") << 4 << QStringLiteral("Don't Care") << 4 << 0;
}

void tst_SceneMenus::stickyMenu()
{
    QFETCH(int, present);
    QFETCH(QString, chosen);
    QFETCH(int, state);
    QFETCH(int, changes);
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->addTag(QStringLiteral("P"), QString());
    ZelRectItemMcpSticky *const sticky = mcp->getListSticky().first();
    sticky->setStateType(present, false);
    QSignalSpy spy(&stage.scene(), &ZelScene::signal_setStickyState);
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QSignalSpy ended(&stage.scene(), &ZelScene::signal_changeEnd);
    QStringList texts;
    QString checked;
    QVERIFY(stage.menuAt(sticky->sceneBoundingRect().center(), [&](QMenu *menu) {
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            texts << action->text();
            if (action->isChecked())
                checked += action->text();
        }
        stage.choose(menu, chosen);
    }));
    QCOMPARE(texts,
        (QStringList{QStringLiteral("Feature \"P\" State"), QString(), QStringLiteral("On"),
            QStringLiteral("Off"), QStringLiteral("Don't Care")}));
    QCOMPARE(checked, sticky->getStateTypeName());
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<ZelRectItemMcpSticky *>(), sticky);
    QCOMPARE(spy.at(0).at(1).toInt(), state);
    QCOMPARE(begun.size(), changes);
    QCOMPARE(ended.size(), changes);
}

void tst_SceneMenus::stickyMenuDismissed()
{
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->addTag(QStringLiteral("P"), QString());
    QSignalSpy spy(&stage.scene(), &ZelScene::signal_setStickyState);
    QVERIFY(stage.menuAt(mcp->getListSticky().first()->sceneBoundingRect().center(),
        [](QMenu *menu) { QTest::keyClick(menu, Qt::Key_Escape); }));
    QCOMPARE(spy.size(), 0);
}

void tst_SceneMenus::componentMenuNegates_data()
{
    QTest::addColumn<bool>("negated");
    QTest::addColumn<bool>("chooses");
    QTest::addColumn<bool>("result");
    QTest::newRow("negate") << false << true << true;
    QTest::newRow("affirm") << true << true << false;
    QTest::newRow("dismissed, plain") << false << false << false;
    QTest::newRow("dismissed, negated") << true << false << true;
}

void tst_SceneMenus::componentMenuNegates()
{
    QFETCH(bool, negated);
    QFETCH(bool, chooses);
    QFETCH(bool, result);
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->setProperty(SdcProperty::Negation, negated ? QStringLiteral("1") : QString());
    QSignalSpy spy(&stage.scene(), &ZelScene::signal_setNegation);
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    const QString entry = QStringLiteral("Molecule Component: Not -- Negation of Tag States");
    bool checked = !negated;
    QVERIFY(stage.menuAt({0.0, 20.0}, [&](QMenu *menu) {
        checked = stage.action(menu, entry)->isChecked();
        if (chooses)
            stage.choose(menu, entry);
    }));
    QCOMPARE(checked, negated);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<SdcMcp *>(), mcp);
    QCOMPARE(spy.at(0).at(1).toBool(), result);
    QCOMPARE(begun.size(), chooses ? 1 : 0);
}

void tst_SceneMenus::componentMenuShowsInteractions()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    QSignalSpy spy(&stage.scene(), &ZelScene::signal_showRelatedMli);
    const auto choose = [&](QMenu *menu) {
        QCOMPARE(menu->actions().first()->text(),
            QStringLiteral("Molecule: Show Predefined Interactions"));
        stage.choose(menu, menu->actions().first()->text());
    };
    QVERIFY(stage.menuAt({0.0, 20.0}, choose));
    QCOMPARE(spy.size(), 0); // a molecule that was never saved has none
    stage.mol().setProperty(SdcProperty::PsiimId, QStringLiteral("mol7"));
    QVERIFY(stage.menuAt({0.0, 20.0}, choose));
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("mol7"));
}

void tst_SceneMenus::siteMenu_data()
{
    QTest::addColumn<int>("present");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<bool>("mayChange");
    QTest::addColumn<int>("reported");
    QTest::newRow("bound") << 1 << QStringLiteral("Bound") << true << 2;
    QTest::newRow("unbound") << 2 << QStringLiteral("Unbound") << true << 4;
    QTest::newRow("don't care") << 4 << QStringLiteral("Don't Care") << true << 1;
    QTest::newRow("dismissed") << 4 << QString() << true << 4;
    QTest::newRow("locked") << 4 << QStringLiteral("Bound") << false << 4;
}

void tst_SceneMenus::siteMenu()
{
    QFETCH(int, present);
    QFETCH(QString, chosen);
    QFETCH(bool, mayChange);
    QFETCH(int, reported);
    SceneStage<OpenScene> stage;
    SdcBst *const bst = stage.addSite(stage.addComponent({0.0, 0.0}), 0.0);
    bst->setBindingStatus(static_cast<BindingStatusType>(present));
    stage.scene().setAllowToDisplayBindingStatus(true);
    stage.scene().setAllowToChangeBindingStatus(mayChange);
    QSignalSpy spy(&stage.scene(), &ZelScene::signal_setBstBindingStatus);
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QVERIFY(stage.menuAt(centreOf(bst->getZelEllipseItemBst()), [&](QMenu *menu) {
        if (chosen.isEmpty())
            QTest::keyClick(menu, Qt::Key_Escape);
        else
            stage.choose(menu, chosen);
    }));
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).value<SdcBst *>(), bst);
    QCOMPARE(spy.at(0).at(1).value<BindingStatusType>(), BindingStatusType(reported));
    QCOMPARE(begun.size(), reported == present ? 0 : 1);
}

void tst_SceneMenus::siteMenuEntries()
{
    SceneStage<OpenScene> stage;
    SdcBst *const bst = stage.addSite(stage.addComponent({0.0, 0.0}), 0.0);
    bst->setProperty(SdcProperty::ShortName, QStringLiteral("s"));
    stage.scene().setAllowToDisplayBindingStatus(true);
    stage.scene().setAllowToChangeBindingStatus(true);
    QVERIFY(stage.menuAt(centreOf(bst->getZelEllipseItemBst()), [&](QMenu *menu) {
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.size(), 5);
        QCOMPARE(actions.at(0)->text(), QStringLiteral("Binding Site \"s\" Binding Status:"));
        QVERIFY(!actions.at(0)->isEnabled());
        QVERIFY(actions.at(1)->isSeparator());
        QVERIFY(stage.action(menu, QStringLiteral("Don't Care"))->isChecked());
        QVERIFY(stage.action(menu, QStringLiteral("Bound"))->isEnabled());
        QVERIFY(stage.action(menu, QStringLiteral("Unbound"))->isEnabled());
    }));
}

void tst_SceneMenus::siteMenuNeedsDisplay()
{
    SceneStage<OpenScene> stage;
    SdcBst *const bst = stage.addSite(stage.addComponent({0.0, 0.0}), 0.0);
    QVERIFY(!stage.menuAt(centreOf(bst->getZelEllipseItemBst()), [](QMenu *) {}));
}

void tst_SceneMenus::noMenu()
{
    SceneStage<OpenScene> stage;
    stage.addComponent({0.0, 0.0});
    stage.scene().addMcp(QRectF(100.0, 0.0, 60.0, 60.0)); // without component
    const auto ignore = [](QMenu *) {};
    QVERIFY(!stage.menuAt({200.0, 200.0}, ignore));
    QVERIFY(!stage.menuAt({130.0, 30.0}, ignore));
    stage.scene().setContextMenuEnabled(false);
    QVERIFY(!stage.menuAt({0.0, 0.0}, ignore));
}

void tst_SceneMenus::deathInOpenMenu_data()
{
    QTest::addColumn<QString>("over");
    for (const char *over : {"sticky", "component", "site"})
        QTest::newRow(over) << QString::fromLatin1(over);
}

void tst_SceneMenus::deathInOpenMenu()
{
    QFETCH(QString, over);
    SceneStage<OpenScene> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    mcp->addTag(QStringLiteral("P"), QString());
    SdcBst *const bst = stage.addSite(mcp, 0.0);
    stage.scene().setAllowToDisplayBindingStatus(true);
    QSignalSpy sticky(&stage.scene(), &ZelScene::signal_setStickyState);
    QSignalSpy negation(&stage.scene(), &ZelScene::signal_setNegation);
    QSignalSpy status(&stage.scene(), &ZelScene::signal_setBstBindingStatus);
    QPointF p(0.0, 20.0);
    if (over == QLatin1String("sticky"))
        p = mcp->getListSticky().first()->sceneBoundingRect().center();
    else if (over == QLatin1String("site"))
        p = centreOf(bst->getZelEllipseItemBst());
    QVERIFY(stage.menuAt(p, [&](QMenu *menu) {
        stage.scene().removeSdcMcp(mcp);
        if (QAction *entry = stage.action(menu, QStringLiteral("Off")))
            stage.choose(menu, entry->text());
    }));
    QCOMPARE(sticky.size() + negation.size() + status.size(), 0);
    QCOMPARE(stage.mol().getListSdcMcp().size(), 0);
}

void tst_SceneMenus::colour_data()
{
    QTest::addColumn<bool>("accept");
    QTest::addColumn<bool>("overSite");
    QTest::newRow("accepted over a component") << true << false;
    QTest::newRow("accepted over a site") << true << true;
    QTest::newRow("cancelled") << false << false;
}

void tst_SceneMenus::colour()
{
    QFETCH(bool, accept);
    QFETCH(bool, overSite);
    SceneStage<ZelSceneMol> stage;
    SdcMcp *const mcp = stage.addComponent({0.0, 0.0});
    SdcMcp *const second = stage.addComponent({100.0, 0.0});
    SdcBst *const bst = stage.addSite(mcp, 0.0);
    QSignalSpy begun(&stage.scene(), &ZelScene::signal_changeBegin);
    QSignalSpy ended(&stage.scene(), &ZelScene::signal_changeEnd);
    const QColor green(10, 200, 30);
    QString title;
    const QPointF p = overSite ? centreOf(bst->getZelEllipseItemBst()) : QPointF(0.0, 10.0);
    QVERIFY(stage.menuAt(p, [&](QMenu *menu) {
        answerColorDialog(&stage.scene(), accept, green, &title);
        stage.choose(menu, QStringLiteral("Change Molecule Color"));
    }));
    QCOMPARE(title, QStringLiteral("Select Color"));
    const QColor expected = accept ? green : QColor(Qt::white);
    QCOMPARE(stage.mol().getMolColor(), expected);
    QCOMPARE(second->getZelEllipseItemMcp()->brush().color(), expected);
    QCOMPARE(bst->getZelEllipseItemBst()->brush().color(), expected);
    QCOMPARE(stage.mol().getProperty(SdcProperty::Color), accept ? green.name() : QString());
    QCOMPARE(begun.size(), accept ? 1 : 0);
    QCOMPARE(ended.size(), accept ? 1 : 0);
}

void tst_SceneMenus::colourWithoutView()
{
    ZelScene scene;
    SdcMol mol(nullptr);
    auto *mcp = new SdcMcp(nullptr);
    scene.addMcp(QRectF(0.0, 0.0, 60.0, 60.0))->setSdcMcp(mcp);
    mol.addSdcMcp(mcp);
    QString title;
    answerColorDialog(&scene, true, Qt::red, &title);
    scene.changeMolColor({30.0, 30.0});
    QCOMPARE(mol.getMolColor(), QColor(Qt::red));
    // The molecule may die while the dialog is open.
    QTimer::singleShot(0, &scene, [&] { scene.removeSdcMcp(mcp); });
    answerColorDialog(&scene, true, Qt::blue, &title);
    scene.changeMolColor({30.0, 30.0});
    QCOMPARE(mol.getProperty(SdcProperty::Color), QColor(Qt::blue).name());
}

void tst_SceneMenus::colourFindsNothing()
{
    ZelScene scene;
    scene.changeMolColor({0.0, 0.0});
    QCOMPARE(takeDebugLines(),
        QStringList{
            QStringLiteral("Error found at void ZelScene::changeMolColor(const QPointF & p)")});
    auto *mcp = new SdcMcp(nullptr, &scene);
    scene.addMcp(QRectF(0.0, 0.0, 60.0, 60.0))->setSdcMcp(mcp);
    scene.changeMolColor({30.0, 30.0});
    QCOMPARE(takeDebugLines(),
        QStringList{
            QStringLiteral("Mol not found at void ZelScene::changeMolColor(const QPointF & p)")});
}

ZEL_TEST(tst_SceneMenus)
#include "tst_SceneMenus.moc"
