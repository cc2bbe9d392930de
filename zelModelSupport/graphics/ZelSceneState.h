#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QSharedDataPointer>

class ZelScene;
class ZelSceneStateData;

/// Everything that the user can change on a scene, as one value: what exists, the layout, feature
/// states, binding statuses, negations, names and colours of the scene's molecules.
///
/// The molecules are those of the scene's data component, else those that it shows. States are
/// equal when they describe the same drawing, whichever objects it consists of.
class ZELMODELSUPPORT_EXPORT ZelSceneState
{
public:
    ZelSceneState();
    ZelSceneState(const ZelSceneState &other);
    ZelSceneState(ZelSceneState &&other) noexcept;
    ~ZelSceneState();
    ZelSceneState &operator=(const ZelSceneState &other);
    ZelSceneState &operator=(ZelSceneState &&other) noexcept;

    /// The present state of a scene; empty for null.
    static ZelSceneState take(ZelScene *scene);
    /// Makes the scene as it was: objects that have gone are made anew, those that have come are
    /// destroyed, and the rest keep their identity. Molecules themselves are the host's: those
    /// that have come to a scene without data component lose their components. False, and nothing
    /// done, when a molecule of the state is gone or has joined the scene's data component since.
    bool restore(ZelScene *scene) const;

    bool isEmpty() const;
    friend ZELMODELSUPPORT_EXPORT bool operator==(const ZelSceneState &a, const ZelSceneState &b);
    friend bool operator!=(const ZelSceneState &a, const ZelSceneState &b) { return !(a == b); }

private:
    QSharedDataPointer<ZelSceneStateData> d;
};
