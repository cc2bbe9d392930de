#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>

class QColorDialog;
class QMenu;
class QWidget;
class RandomDice;

/// Answers the menus, dialogs and message boxes that come up, at random.
class PopupUser : public QObject
{
    Q_OBJECT
public:
    /// Both functions are called from within the popup's event loop: log for each act, mishap
    /// once in a while before it.
    PopupUser(
        RandomDice *dice, std::function<void(const QString &)> log, std::function<void()> mishap);

    /// Dismisses everything from now on.
    void giveUp() { m_givenUp = true; }

private:
    void act();
    void answer(QMenu *menu);
    void answer(QColorDialog *dialog);

    RandomDice *m_dice;
    std::function<void(const QString &)> m_log;
    std::function<void()> m_mishap;
    QTimer m_timer;
    QPointer<QWidget> m_current;
    int m_tries = 0;
    bool m_givenUp = false;
};
