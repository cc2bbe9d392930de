#include "support/ZelHands.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <algorithm>

ZelHands::ZelHands(QGraphicsScene *scene) : m_view(scene)
{
    m_view.resize(1000, 700);
    m_view.setSceneRect(-450.0, -300.0, 900.0, 600.0);
    m_view.show();
    (void)QTest::qWaitForWindowExposed(&m_view);
}

void ZelHands::press(const QPointF &p, Qt::MouseButton button)
{
    send(QEvent::MouseButtonPress, p, button, button);
}

void ZelHands::move(const QPointF &p, Qt::MouseButtons buttons)
{
    send(QEvent::MouseMove, p, Qt::NoButton, buttons);
}

void ZelHands::release(const QPointF &p, Qt::MouseButton button)
{
    send(QEvent::MouseButtonRelease, p, button, Qt::NoButton);
}

void ZelHands::click(const QPointF &p)
{
    press(p);
    release(p);
}

void ZelHands::doubleClick(const QPointF &p)
{
    click(p);
    send(QEvent::MouseButtonDblClick, p, Qt::LeftButton, Qt::LeftButton);
    release(p);
}

void ZelHands::drag(const QPointF &from, const QPointF &to, int steps)
{
    press(from);
    for (int i = 1; i <= steps; ++i)
        move(from + (to - from) * i / steps);
    release(to);
}

void ZelHands::key(Qt::Key key)
{
    QTest::keyClick(&m_view, key);
}

bool ZelHands::menuAt(const QPointF &p, const std::function<void(QMenu *)> &onMenu)
{
    bool shown = false;
    QTimer timer; // fires in the menu's own event loop
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &m_view, [&] {
        const QPointer<QMenu> menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return;
        shown = true;
        onMenu(menu);
        if (menu && menu->isVisible())
            menu->close();
    });
    timer.start(0);
    const QPoint at = m_view.mapFromScene(p);
    press(p, Qt::RightButton);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_view.viewport()->mapToGlobal(at));
    QApplication::sendEvent(m_view.viewport(), &event);
    release(p, Qt::RightButton);
    return shown;
}

QAction *ZelHands::action(QMenu *menu, const QString &text)
{
    const QList<QAction *> actions = menu->actions();
    const auto found = std::find_if(actions.cbegin(), actions.cend(),
        [&text](const QAction *candidate) { return candidate->text() == text; });
    return found == actions.cend() ? nullptr : *found;
}

void ZelHands::choose(QMenu *menu, const QString &text)
{
    menu->setActiveAction(action(menu, text));
    QTest::keyClick(menu, Qt::Key_Return);
}

bool ZelHands::choose(const QPointF &p, const QString &text)
{
    bool found = false;
    menuAt(p, [&](QMenu *menu) {
        const QAction *const entry = action(menu, text);
        found = entry && entry->isEnabled();
        if (found)
            choose(menu, text);
    });
    return found;
}

QStringList ZelHands::entries(const QPointF &p)
{
    QStringList texts;
    menuAt(p, [&texts](QMenu *menu) {
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions) {
            if (!action->isSeparator())
                texts.append(action->text());
        }
    });
    return texts;
}

void ZelHands::send(
    QEvent::Type type, const QPointF &p, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    const QPoint at = m_view.mapFromScene(p);
    QMouseEvent event(
        type, at, m_view.viewport()->mapToGlobal(QPointF(at)), button, buttons, modifiers);
    QApplication::sendEvent(m_view.viewport(), &event);
}
