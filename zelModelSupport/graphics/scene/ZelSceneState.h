#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QList>
#include <QSharedDataPointer>

class Sdc;
class SdcBst;
class SdcMol;
class ZelScene;
class ZelSceneEditing;
class ZelSceneStateData;

/// Everything that the user can change on a scene, as one value: what exists, the layout, feature
/// states, binding statuses, negations, names and colours of the scene's molecules, and all that is
/// written about the complex or interaction that the scene edits.
///
/// The molecules are those of the scene's data component, else those that it shows. States are
/// equal when they describe the same drawing, whichever objects it consists of. Ids say which
/// record an object is, which is no change of the user's: a state gives one only to what it makes
/// anew, the last that the object had, and something without id equals the same with any. Only the
/// id of a complex or interaction that drawing has made another one, or a load, comes and goes
/// with it.
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
    /// destroyed, and the rest keep their identity. Bonds are made as a load makes them. An editing
    /// scene with a data component does so with molecules and complexes, too. In other scenes these
    /// are the host's: molecules that have come to a scene without data component lose their
    /// components, and false, with nothing done, is the answer when a molecule of the state is gone
    /// or has joined the scene's data component since. False also when a bond could not be made.
    bool restore(ZelScene *scene) const;

    /// Makes a scene with a complex show what the state's complexes become when its bonds are
    /// made; the objects of the state's own scene are left alone. False when the scene has no
    /// complex.
    bool restoreJoined(ZelSceneEditing *scene) const;
    /// The same state with one of the interaction's bonds only, given by its two sites in their
    /// order.
    ZelSceneState withBond(ZelScene *scene, SdcBst *first, SdcBst *second) const;

    bool isEmpty() const;
    friend ZELMODELSUPPORT_EXPORT bool operator==(const ZelSceneState &a, const ZelSceneState &b);
    friend bool operator!=(const ZelSceneState &a, const ZelSceneState &b) { return !(a == b); }

private:
    bool restoreEditing(ZelSceneEditing *scene, Sdc *own) const;
    bool putContents(ZelScene *scene, const QList<SdcMol *> &molecules) const;

    QSharedDataPointer<ZelSceneStateData> d;
};
