#include "EditingStage.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>

#include <memory>

EditingModel::EditingModel()
{
    if (!m_file.create(QStringLiteral(":memory:")))
        qFatal("%s", qPrintable(m_file.errorText()));
    m_molA = save(QStringLiteral("A"),
        {{QStringLiteral("x"), {QStringLiteral("P"), QStringLiteral("Q")}, 2},
            {QStringLiteral("y"), {}, 1}},
        {QStringLiteral("a1"), QStringLiteral("a2"), QStringLiteral("a3")});
    m_molB = save(QStringLiteral("B"), {{QStringLiteral("z"), {}, 2}},
        {QStringLiteral("b1"), QStringLiteral("b2")});
}

QString EditingModel::save(
    const QString &name, const QList<ZelTree::Mcp> &mcps, const QStringList &sites)
{
    ZelScene scene;
    const std::unique_ptr<SdcMol> mol(ZelTree::molecule(&m_db, name, mcps, &scene));
    const QList<SdcBst *> list = mol->getListSdcBst();
    for (qsizetype i = 0; i < list.size(); ++i)
        list.at(i)->setProperty(SdcProperty::ShortName, sites.at(i));
    mol->setMolColor(name == u'A' ? QStringLiteral("#88bbee") : QStringLiteral("#eebb77"));
    mol->setProperty(SdcProperty::Color, mol->getMolColor().name());
    if (!mol->saveToDb())
        qFatal("%s", qPrintable(m_db.errorText()));
    return mol->getPsiimId();
}

Hands::Hands(ZelSceneEditing *scene) : m_view(scene)
{
    m_view.resize(1000, 700);
    m_view.setSceneRect(-450.0, -300.0, 900.0, 600.0);
    m_view.show();
    (void)QTest::qWaitForWindowExposed(&m_view);
}

void Hands::press(const QPointF &p, Qt::MouseButton button)
{
    send(QEvent::MouseButtonPress, p, button, button);
}

void Hands::move(const QPointF &p)
{
    send(QEvent::MouseMove, p, Qt::NoButton, Qt::LeftButton);
}

void Hands::release(const QPointF &p, Qt::MouseButton button)
{
    send(QEvent::MouseButtonRelease, p, button, Qt::NoButton);
}

void Hands::click(const QPointF &p)
{
    press(p);
    release(p);
}

void Hands::drag(const QPointF &from, const QPointF &to)
{
    constexpr int Steps = 4;
    press(from);
    for (int i = 1; i <= Steps; ++i)
        move(from + (to - from) * i / Steps);
    release(to);
}

void Hands::key(Qt::Key key)
{
    QTest::keyClick(&m_view, key);
}

bool Hands::drop(const QString &tagAndPsiimId, const QPointF &p)
{
    const std::unique_ptr<QMimeData> data(ZelSceneEditing::createPsiimIdMimeData(tagAndPsiimId));
    const QPoint at = m_view.mapFromScene(p);
    QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view.viewport(), &enter);
    QDragMoveEvent over(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view.viewport(), &over);
    if (!over.isAccepted())
        return false;
    QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view.viewport(), &drop);
    return drop.isAccepted();
}

bool Hands::choose(const QPointF &p, const QString &entry)
{
    bool found = false;
    menu(p, [&](QMenu *menu) {
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            if (action->text() != entry || !action->isEnabled())
                continue;
            found = true;
            menu->setActiveAction(action);
            QTest::keyClick(menu, Qt::Key_Return);
            return;
        }
    });
    return found;
}

QStringList Hands::entries(const QPointF &p)
{
    QStringList texts;
    menu(p, [&texts](QMenu *menu) {
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            if (!action->isSeparator())
                texts.append(action->text());
        }
    });
    return texts;
}

QPointF Hands::centreOf(Sdc *sdc)
{
    return sdc->getSdcSceneRectF().center();
}

void Hands::send(
    QEvent::Type type, const QPointF &p, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    const QPoint at = m_view.mapFromScene(p);
    QMouseEvent event(
        type, at, m_view.viewport()->mapToGlobal(QPointF(at)), button, buttons, modifiers);
    QApplication::sendEvent(m_view.viewport(), &event);
}

void Hands::menu(const QPointF &p, const std::function<void(QMenu *)> &onMenu)
{
    QTimer timer; // fires in the menu's own event loop
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &m_view, [&onMenu] {
        const QPointer<QMenu> menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return;
        onMenu(menu);
        if (menu && menu->isVisible())
            menu->close();
    });
    timer.start(0);
    const QPoint at = m_view.mapFromScene(p);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_view.viewport()->mapToGlobal(at));
    QApplication::sendEvent(m_view.viewport(), &event);
}

SdcBst *siteOf(SdcMol *mol, const char *name)
{
    const QList<SdcBst *> sites = mol->getListSdcBst();
    for (SdcBst *site : sites) {
        if (site->getProperty(SdcProperty::ShortName) == QLatin1String(name))
            return site;
    }
    return nullptr;
}
