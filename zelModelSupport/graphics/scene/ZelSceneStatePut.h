#pragma once

#include "zelModelSupport/graphics/scene/ZelSceneStateData.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <algorithm>

class ZelRectItemMcpSticky;

/// The steps in which a state of a scene is put back.
namespace zel::state {

/// The living objects that take the places of the stored ones, null where one must be made, and
/// those that have no place.
template <typename T>
struct Match
{
    QList<T *> places;
    QList<T *> surplus;
};

inline Sdc *sdcOf(Sdc *sdc)
{
    return sdc;
}
/// The feature, which tells who a sticky is.
Sdc *sdcOf(ZelRectItemMcpSticky *sticky);

template <typename T, typename State, typename Key>
Match<T> match(const QList<State> &states, const QList<T *> &living, Key isLike)
{
    Match<T> result{QList<T *>(states.size(), nullptr), living};
    for (qsizetype i = 0; i < states.size(); ++i) {
        Sdc *const origin = states.at(i).identity.object();
        const auto found = std::find_if(result.surplus.begin(), result.surplus.end(),
            [origin](T *object) { return origin && sdcOf(object) == origin; });
        if (found == result.surplus.end())
            continue;
        result.places[i] = *found;
        result.surplus.erase(found);
    }
    for (qsizetype i = 0; i < states.size(); ++i) {
        if (result.places.at(i))
            continue;
        const auto found = std::find_if(result.surplus.begin(), result.surplus.end(),
            [&](T *object) { return isLike(states.at(i), object); });
        if (found == result.surplus.end())
            continue;
        result.places[i] = *found;
        result.surplus.erase(found);
    }
    return result;
}

template <typename State>
bool hasSamePsiimId(const State &state, Sdc *sdc)
{
    const QString psiimId = state.identity.psiimId();
    return !psiimId.isEmpty() && sdc->getPsiimId() == psiimId;
}

/// The id says which record an object is, which is nothing that the user has done: it is left
/// alone.
void putProperties(Sdc *sdc, const Properties &properties);
void putOrder(Sdc *parentSdc, const QList<Sdc *> &wanted);
/// All of a molecule but its bonds.
void putMolecule(ZelScene *scene, SdcMol *mol, const MoleculeState &state);
/// Bonds that come or go show the status of their sites anew; what was stored holds.
void putSitePens(SdcMol *mol, const MoleculeState &state);

} // namespace zel::state
