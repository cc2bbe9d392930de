#pragma once

#include "LiveObjects.h"
#include "RandomDice.h"
#include "SceneHost.h"

#include <QEvent>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QStringList>

#include <memory>

class PopupUser;
class Sdc;
class ZelEllipseItem;
class ZelGItem;

/// A user who does anything to a scene, and things that happen at any moment: objects that are
/// destroyed, states that are restored, other molecules that are loaded.
class RandomUser : public QObject
{
    Q_OBJECT
public:
    RandomUser(SceneHost::Kind kind, quint32 seed);
    ~RandomUser() override;

    /// Checks everything after every step. False as soon as something is wrong.
    bool play(int steps);
    /// Destroys scene and molecules; false when something is left of them.
    bool finish();
    /// What is wrong, with what is needed to see it again.
    QString failure() const { return m_failure; }

private:
    void step();
    void gesture();
    void hostAction();
    void build();
    void turn();
    void place();
    void reshape();
    void store();
    void look();

    void drag();
    void click();
    void doubleClick();
    void contextMenu();
    void hover();
    void frozenGesture();

    void mishap();
    void remove(Sdc *sdc);
    void destroySomething();

    void itemPressed(ZelGItem *item);
    void itemClicked(ZelGItem *item);
    void itemMoved(ZelGItem *item);
    void itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second);

    void mouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button);
    QPointF anyPoint();
    QPointF anyPointOf(QGraphicsItem *item);
    QList<SdcMcp *> anySelection();
    Sdc *anyVictim();
    void log(const QString &action);
    bool check();
    void fail(const QString &what);

    quint32 m_seed;
    LiveObjects m_objects; // before what it counts
    RandomDice m_dice;
    std::unique_ptr<SceneHost> m_host;
    std::unique_ptr<PopupUser> m_popups;
    QPointer<ZelGItem> m_pressed;
    Qt::MouseButtons m_buttons;
    bool m_calm = false; // no mishaps, no reactions
    bool m_inMishap = false;
    int m_clicks = 0;
    int m_step = 0;
    QStringList m_log;
    QString m_failure;
};
