#pragma once

#include "LiveObjects.h"
#include "RandomDice.h"
#include "RandomModel.h"
#include "zelModelSupport/graphics/ZelSceneState.h"

#include <QEvent>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QStringList>

#include <memory>

class PopupUser;
class QGraphicsItem;
class Sdc;
class SdcBst;
class SdcBstBst;
class SdcMcp;
class SdcMol;
class ZelGraphicsViewZoom;
class ZelSceneEditing;

/// A user who does anything to a scene of a complex or an interaction, while things are destroyed
/// and changes taken back at any moment.
class EditingUser : public QObject
{
    Q_OBJECT
public:
    enum Kind { Complex, TemporaryComplex, MoleculeInteraction, ComplexInteraction };

    EditingUser(Kind kind, quint32 seed);
    ~EditingUser() override;

    /// Checks everything after every step. False as soon as something is wrong.
    bool play(int steps);
    /// Destroys the scene and what it shows; false when something is left of them.
    bool finish();
    QString failure() const { return m_failure; }

private:
    void showSdc();

    void step();
    void drag();
    void click();
    void contextMenu();
    void wheel();
    void key();
    void drop();
    void load();
    void hostAction();
    void undo();

    /// Something that happens in the middle of something else.
    void mishap();
    void remove();
    void destroy();
    /// What a host does after a destruction that the scene knows nothing of.
    void startAfresh();

    void changeBegins();
    void changeEnds();
    void restore(const ZelSceneState &state);
    void check();
    void fail(const QString &what);
    void log(const QString &action);

    void mouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button);
    QPointF anyPoint();
    QPointF anyPointOf(QGraphicsItem *item);
    QList<SdcMol *> molecules();
    QList<SdcMcp *> components();
    QList<SdcBst *> sites();
    QList<SdcBstBst *> bonds();

    Kind m_kind;
    quint32 m_seed;
    LiveObjects m_objects; // before what it counts
    RandomDice m_dice;
    RandomModel m_model;
    QStringList m_records; // that can be dropped
    QPointer<Sdc> m_sdc; // the host's own
    std::unique_ptr<ZelSceneEditing> m_scene;
    std::unique_ptr<ZelGraphicsViewZoom> m_view;
    std::unique_ptr<PopupUser> m_popups;
    Qt::MouseButtons m_buttons;
    Qt::KeyboardModifiers m_modifiers;
    QList<ZelSceneState> m_states; // all that were announced
    ZelSceneState m_known; // after the last change that was announced
    bool m_changing = false;
    bool m_restoring = false;
    bool m_dirty = false; // something has been destroyed behind the scene's back
    bool m_inMishap = false;
    bool m_calm = false;
    int m_step = 0;
    QStringList m_log;
    QString m_failure;
};
