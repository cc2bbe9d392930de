#include "SceneStage.h"
#include "support/ZelTest.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"

#include <QApplication>
#include <QColorDialog>
#include <QMenu>
#include <QTimer>

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

/// The texts of a menu, "|" for a separator, with "*" before what is checked and "-" before what
/// cannot be chosen.
QString textOf(QMenu *menu)
{
    QStringList texts;
    for (QAction *action : menu->actions()) {
        const QString mark = action->isChecked() ? "*" : action->isEnabled() ? "" : "-";
        texts << (action->isSeparator() ? "|" : mark + action->text());
    }
    return texts.join(u';');
}

} // namespace

// The context menus of the base scene and the choice of a molecule's colour.
class tst_SceneMenus : public ZelTest
{
    Q_OBJECT

    /// A component with feature P and a site, whose binding status the menu may show and change.
    struct MenuStage : RimStage
    {
        ZelRectItemMcpSticky *sticky;
        QString menu; ///< the texts of the one that opened last
        MenuStage()
        {
            mcp->addTag(QStringLiteral("P"), QString());
            sticky = mcp->getListSticky().first();
            bst->setProperty(SdcProperty::ShortName, QStringLiteral("s"));
            scene().setAllowToDisplayBindingStatus(true);
            scene().setAllowToChangeBindingStatus(true);
            log();
        }
        /// Right-clicks and chooses an entry, or dismisses the menu; what the scene said of it.
        QString choose(const QPointF &p, const QString &entry)
        {
            menu.clear();
            menuAt(p, [&](QMenu *opened) {
                menu = textOf(opened);
                if (entry.isEmpty())
                    QTest::keyClick(opened, Qt::Key_Escape);
                else
                    SceneStage<OpenScene>::choose(opened, entry);
            });
            return log();
        }
    };

private slots:
    void stickyMenu_data()
    {
        rows<int, QString, QString>({"present", "chosen", "said"},
            {{"on to off", {2, "Off", "begin, P=1, end"}},
                {"off to on", {1, "On", "begin, P=2, end"}},
                {"on to don't care", {2, "Don't Care", "begin, P=4, end"}},
                {"what it is already", {4, "Don't Care", "P=4"}}, {"dismissed", {2, "", ""}}});
    }

    void stickyMenu()
    {
        QFETCH(int, present);
        QFETCH(QString, chosen);
        QFETCH(QString, said);
        MenuStage stage;
        stage.sticky->setStateType(present, false);
        const QString before = stage.sticky->getStateTypeName();
        QCOMPARE(stage.choose(stage.sticky->sceneBoundingRect().center(), chosen), said);
        QCOMPARE(stage.menu.section(u'*', 1).section(u';', 0, 0), before); // the checked one
        QCOMPARE(stage.menu.remove(u'*'), "-Feature \"P\" State;|;On;Off;Don't Care");
    }

    void componentMenu_data()
    {
        rows<bool, bool, QString>({"negated", "chooses", "said"},
            {{"negate", {false, true, "begin, a=not, end"}},
                {"affirm", {true, true, "begin, a=plain, end"}},
                {"dismissed, plain", {false, false, "a=plain"}},
                {"dismissed, negated", {true, false, "a=not"}}});
    }

    void componentMenu()
    {
        QFETCH(bool, negated);
        QFETCH(bool, chooses);
        QFETCH(QString, said);
        MenuStage stage;
        stage.mcp->setProperty(SdcProperty::Negation, negated ? "1" : "");
        stage.log();
        const QString entry = QStringLiteral("Molecule Component: Not -- Negation of Tag States");
        QCOMPARE(stage.choose({0.0, 20.0}, chooses ? entry : QString()), said);
        QCOMPARE(stage.menu.contains(u'*' + entry), negated);
        const QString show = QStringLiteral("Molecule: Show Predefined Interactions");
        QVERIFY(stage.menu.startsWith(show));
        QVERIFY(!stage.choose({0.0, 20.0}, show).contains("interactions")); // was never saved
        stage.mol().setProperty(SdcProperty::PsiimId, QStringLiteral("mol7"));
        QVERIFY(stage.choose({0.0, 20.0}, show).contains("interactions of mol7"));
    }

    void siteMenu_data()
    {
        rows<int, QString, bool, QString>({"present", "chosen", "mayChange", "said"},
            {{"bound", {1, "Bound", true, "begin, s=2, end"}},
                {"unbound", {2, "Unbound", true, "begin, s=4, end"}},
                {"don't care", {4, "Don't Care", true, "begin, s=1, end"}},
                {"dismissed", {4, "", true, "s=4"}}, {"locked", {4, "Bound", false, "s=4"}}});
    }

    void siteMenu()
    {
        QFETCH(int, present);
        QFETCH(QString, chosen);
        QFETCH(bool, mayChange);
        QFETCH(QString, said);
        MenuStage stage;
        stage.bst->setBindingStatus(static_cast<BindingStatusType>(present));
        stage.scene().setAllowToChangeBindingStatus(mayChange);
        QCOMPARE(stage.choose({30.0, 0.0}, chosen), said);
        QVERIFY(stage.menu.startsWith("-Binding Site \"s\" Binding Status:;|;"));
        QCOMPARE(stage.menu.count(u'*'), 1);
    }

    void noMenu()
    {
        MenuStage stage;
        stage.scene().addMcp(QRectF(100.0, 0.0, 60.0, 60.0)); // without component
        const auto ignore = [](QMenu *) {};
        QVERIFY(!stage.menuAt({200.0, 200.0}, ignore));
        QVERIFY(!stage.menuAt({130.0, 30.0}, ignore));
        stage.scene().setAllowToDisplayBindingStatus(false);
        QVERIFY(!stage.menuAt({30.0, 0.0}, ignore));
        stage.scene().setContextMenuEnabled(false);
        QVERIFY(!stage.menuAt({0.0, 20.0}, ignore));
    }

    void colour_data()
    {
        rows<bool, QPointF>({"accept", "at"},
            {{"accepted over a component", {true, QPointF(0.0, 10.0)}},
                {"accepted over a site", {true, QPointF(30.0, 0.0)}},
                {"cancelled", {false, QPointF(0.0, 10.0)}}});
    }

    void colour()
    {
        QFETCH(bool, accept);
        QFETCH(QPointF, at);
        SceneStage<ZelSceneMol> stage;
        SdcBst *const bst = stage.addSite(stage.addComponent({0.0, 0.0}), 0.0);
        SdcMcp *const second = stage.addComponent({100.0, 0.0});
        const QColor green(10, 200, 30);
        QString title;
        stage.log();
        QVERIFY(stage.menuAt(at, [&](QMenu *menu) {
            answerColorDialog(&stage.scene(), accept, green, &title);
            stage.choose(menu, QStringLiteral("Change Molecule Color"));
        }));
        QCOMPARE(title, "Select Color");
        const QColor expected = accept ? green : QColor(Qt::white);
        QCOMPARE(stage.mol().getMolColor(), expected);
        QCOMPARE(second->getZelEllipseItemMcp()->brush().color(), expected);
        QCOMPARE(bst->getZelEllipseItemBst()->brush().color(), expected);
        QCOMPARE(stage.mol().getProperty(SdcProperty::Color), accept ? green.name() : QString());
        QCOMPARE(stage.log(), accept ? "begin, end" : "");
    }

    void colourWithoutViewOrMolecule()
    {
        ZelScene scene;
        SdcMol mol(nullptr);
        QString title;
        scene.changeMolColor({0.0, 0.0});
        auto *mcp = new SdcMcp(nullptr);
        scene.addMcp(QRectF(0.0, 0.0, 60.0, 60.0))->setSdcMcp(mcp);
        scene.changeMolColor({30.0, 30.0});
        const QString place = QStringLiteral("found at void ZelScene::changeMolColor(const QPointF "
                                             "& p)");
        QCOMPARE(takeDebugLines(), (QStringList{"Error " + place, "Mol not " + place}));
        mol.addSdcMcp(mcp);
        answerColorDialog(&scene, true, Qt::red, &title);
        scene.changeMolColor({30.0, 30.0});
        QCOMPARE(mol.getMolColor(), QColor(Qt::red));
        // The molecule may die while the dialog is open.
        QTimer::singleShot(0, &scene, [&] { scene.removeSdcMcp(mcp); });
        answerColorDialog(&scene, true, Qt::blue, &title);
        scene.changeMolColor({30.0, 30.0});
        QCOMPARE(mol.getProperty(SdcProperty::Color), QColor(Qt::blue).name());
    }
};

ZEL_TEST(tst_SceneMenus)
#include "tst_SceneMenus.moc"
