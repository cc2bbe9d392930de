#include "PopupUser.h"

#include "RandomDice.h"

#include <QApplication>
#include <QColorDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>

namespace {

constexpr int Patience = 3; // a disabled entry closes nothing

/// The first of the two may destroy the widget.
template <typename Event>
void sendBoth(const QPointer<QWidget> &target, Event first, Event second)
{
    QApplication::sendEvent(target, &first);
    if (target)
        QApplication::sendEvent(target, &second);
}

void press(QWidget *widget, Qt::Key key)
{
    sendBoth(widget, QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier),
        QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier));
}

void click(QWidget *widget, const QPoint &pos)
{
    const QPointF global = widget->mapToGlobal(QPointF(pos));
    sendBoth(widget,
        QMouseEvent(
            QEvent::MouseButtonPress, pos, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier),
        QMouseEvent(
            QEvent::MouseButtonRelease, pos, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
}

} // namespace

PopupUser::PopupUser(
    RandomDice *dice, std::function<void(const QString &)> log, std::function<void()> mishap)
    : m_dice(dice), m_log(std::move(log)), m_mishap(std::move(mishap))
{
    connect(&m_timer, &QTimer::timeout, this, &PopupUser::act);
    m_timer.setSingleShot(true);
    m_timer.start(0);
}

void PopupUser::act()
{
    m_timer.start(0); // anew, as a timer does not fire within the event loops that it has caused
    QWidget *const popup = QApplication::activePopupWidget();
    QWidget *const widget = popup ? popup : QApplication::activeModalWidget();
    if (!widget) {
        m_current.clear();
        return;
    }
    if (widget != m_current) {
        m_current = widget;
        m_tries = 0;
    }
    if (m_givenUp || ++m_tries > Patience) {
        widget->close();
        return;
    }
    if (m_tries == 1 && m_dice->chance(20))
        m_mishap();
    if (!m_current)
        return;
    if (auto *menu = qobject_cast<QMenu *>(widget))
        answer(menu);
    else if (auto *dialog = qobject_cast<QColorDialog *>(widget))
        answer(dialog);
    else if (qobject_cast<QMessageBox *>(widget))
        press(widget, m_dice->chance(50) ? Qt::Key_Return : Qt::Key_Escape);
    else
        widget->close();
}

void PopupUser::answer(QMenu *menu)
{
    // A scene that has gone took its entries along.
    if (menu->actions().isEmpty() || m_dice->chance(20)) {
        m_log(QStringLiteral("dismiss the menu"));
        if (m_dice->chance(50))
            press(menu, Qt::Key_Escape);
        else
            click(menu, QPoint(-20, -20));
        return;
    }
    QAction *const action = m_dice->anyOf(menu->actions());
    m_log(QStringLiteral("choose \"%1\"").arg(action->text()));
    if (m_dice->chance(50)) {
        click(menu, menu->actionGeometry(action).center());
    } else {
        menu->setActiveAction(action);
        press(menu, Qt::Key_Return);
    }
}

void PopupUser::answer(QColorDialog *dialog)
{
    const QColor color = QColor::fromRgb(
        m_dice->below(256), m_dice->below(256), m_dice->chance(30) ? 255 : m_dice->below(256));
    const bool accepted = m_dice->chance(70);
    m_log(accepted ? QLatin1String("choose the colour ") + color.name()
                   : QStringLiteral("cancel the colour"));
    dialog->setCurrentColor(color);
    if (accepted)
        dialog->accept();
    else
        dialog->reject();
}
