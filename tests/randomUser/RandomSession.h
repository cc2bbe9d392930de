#pragma once

#include "LiveObjects.h"
#include "RandomDice.h"

#include <QEvent>
#include <QObject>
#include <QPointF>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class PopupUser;
class QGraphicsItem;
class QGraphicsView;

/// A user who does one thing after another at random, each step followed by a check.
class RandomSession : public QObject
{
    Q_OBJECT
public:
    ~RandomSession() override;

    /// False as soon as something is wrong.
    bool play(int steps);
    /// Destroys everything; false when something is left of it.
    bool finish();
    /// What is wrong, with what is needed to see it again.
    QString failure() const { return m_failure; }

protected:
    /// Something to do, and how often in comparison with the rest of its table.
    struct Act
    {
        int weight;
        std::function<void()> act;
    };

    /// Debug lines that hold one of these texts belong to what the user does.
    RandomSession(quint32 seed, QStringList expectedLines);

    virtual QList<QGraphicsView *> views() const = 0;
    virtual void step() = 0;
    virtual void check() = 0;
    virtual void close() = 0;
    /// What may happen in the middle of something else.
    virtual std::vector<Act> mishaps() = 0;
    /// What happens before the answer to a menu or a dialog.
    virtual void interrupt() { mishap(); }

    void doOneOf(const std::vector<Act> &acts);
    void mishap(int percent = 100);
    int mishapCount() const { return m_mishaps; }
    /// Nothing when there is nothing to say.
    void fail(const QString &what);
    void log(const QString &action);

    void mouse(QGraphicsView *view, QEvent::Type type, const QPointF &scenePos,
        Qt::MouseButton button = Qt::NoButton);
    void wheel(QGraphicsView *view, const QPointF &scenePos, const QPoint &delta);
    void askForMenu(QGraphicsView *view, const QPointF &scenePos);
    QPointF anyPointOf(QGraphicsItem *item);

    LiveObjects m_objects; // before what it counts
    RandomDice m_dice;
    Qt::MouseButtons m_buttons;
    Qt::KeyboardModifiers m_modifiers;
    bool m_calm = false; // no mishaps, no reactions
    bool m_tolerant = false; // lines of any kind are due

private:
    void checkLines();

    quint32 m_seed;
    QStringList m_expectedLines;
    std::unique_ptr<PopupUser> m_popups;
    bool m_inMishap = false;
    int m_mishaps = 0;
    int m_step = 0;
    QStringList m_log;
    QString m_failure;
};
