#pragma once

#include <QEvent>
#include <QGraphicsView>

#include <functional>

class QAction;
class QMenu;

/// The user's hands on a scene that is shown in a view; all places are the scene's.
class ZelHands
{
public:
    explicit ZelHands(QGraphicsScene *scene = nullptr);

    QGraphicsView &view() { return m_view; }
    Qt::KeyboardModifiers modifiers; // held down

    void press(const QPointF &p, Qt::MouseButton button = Qt::LeftButton);
    void move(const QPointF &p, Qt::MouseButtons buttons = Qt::LeftButton);
    void release(const QPointF &p, Qt::MouseButton button = Qt::LeftButton);
    void click(const QPointF &p);
    void doubleClick(const QPointF &p);
    void drag(const QPointF &from, const QPointF &to, int steps = 4);
    void key(Qt::Key key);

    /// Right-clicks; onMenu is given the menu that opens, which then closes. False when none does.
    bool menuAt(const QPointF &p, const std::function<void(QMenu *)> &onMenu);
    static QAction *action(QMenu *menu, const QString &text);
    static void choose(QMenu *menu, const QString &text);
    /// Chooses an entry of the context menu; false when there is no such entry or no menu.
    bool choose(const QPointF &p, const QString &text);
    /// The texts of the context menu's entries.
    QStringList entries(const QPointF &p);

private:
    void send(
        QEvent::Type type, const QPointF &p, Qt::MouseButton button, Qt::MouseButtons buttons);

    QGraphicsView m_view;
};
