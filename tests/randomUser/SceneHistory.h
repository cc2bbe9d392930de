#pragma once

#include "LiveObjects.h"
#include "RandomDice.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

class SdcMol;
class ZelScene;

/// The undo stack of an application around a scene. It tells what goes wrong with changes and
/// states: a change that was not announced, a state that does not come back as it was taken.
class SceneHistory : public QObject
{
    Q_OBJECT
public:
    using Fail = std::function<void(const QString &what)>;

    SceneHistory(ZelScene *scene, const LiveObjects *objects, Fail fail);

    void undo();
    void redo();
    /// Back or forth to any state of the stack.
    void jump(RandomDice *dice);
    bool isChanging() const { return m_changing; }
    bool isRestoring() const { return m_restoring; }
    /// How often a state has been put back.
    int restorations() const { return m_restorations; }

    /// Something other than the user has changed the scene.
    void settle();
    /// The same, and what was before is no longer of use.
    void forget();
    /// From now on nobody can say what the scene should be, until forget().
    void setBlind() { m_blind = true; }
    bool isBlind() const { return m_blind; }
    /// To be called while no change is under way.
    void check();

private:
    struct Snapshot
    {
        ZelSceneState state;
        QList<QPointer<SdcMol>> molecules;
        QStringList ownTexts; // of the scene's data component
    };
    struct Entry
    {
        Snapshot before;
        Snapshot after;
    };

    void changeBegins();
    void changeEnds();
    Snapshot take() const;
    bool restore(const Snapshot &snapshot);
    bool mayBeRefused(const Snapshot &snapshot) const;

    ZelScene *m_scene;
    const LiveObjects *m_objects;
    Fail m_fail;
    QList<Entry> m_undo;
    QList<Entry> m_redo;
    Snapshot m_before; // of the change that is under way
    Snapshot m_known; // after the last change that was announced
    bool m_changing = false;
    bool m_restoring = false;
    bool m_blind = false;
    int m_restorations = 0;
};
