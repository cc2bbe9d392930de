// How a state of a scene is put back.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/graphics/scene/ZelSceneStatePut.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>

using namespace zel::state;

namespace {

// What a complex or interaction is looked up by has been drawn: an id that drawing has taken from
// it comes back, and one that was loaded goes.
void putOwn(Sdc *own, const OwnState &state)
{
    putProperties(own, state.properties);
    Sdc *const known = state.identity.object();
    const bool isAnother = known ? known != own : state.exists && !own->getPsiimId().isEmpty();
    if (!isAnother && !state.identity.isOf(own))
        state.identity.passTo(own);
}

// As a load makes it: the user may not be allowed to draw it now, and what the database says of it
// is not what was changed since.
SdcBstBst *makeBond(ZelScene *scene, SdcBst *first, SdcBst *second, const BondState &state)
{
    SdcBstBst *const bond = state.ofInteraction
        ? scene->makeBond(first, second)
        : scene->addSdcBstBstCpx(first->getParentSdcCpx(), first, second);
    if (bond)
        state.identity.passTo(bond);
    return bond;
}

/// False when a bond could not be made.
bool putBonds(ZelScene *scene, const QList<SdcMol *> &molecules, const QList<BondState> &states)
{
    const QList<SdcBst *> sites = sitesOf(molecules);
    QList<SdcBstBst *> surplus = bondsOf(scene, molecules);
    QList<SdcBstBst *> bonds;
    for (const BondState &state : states) {
        SdcBst *const first = sites.value(state.sites.first);
        SdcBst *const second = sites.value(state.sites.second);
        const auto found = std::find_if(surplus.begin(), surplus.end(), [&](SdcBstBst *bond) {
            return bond->isSdcBstBstCpx() != state.ofInteraction && bond->getSdcBst1() == first
                && bond->getSdcBst2() == second;
        });
        bonds.append(found == surplus.end() ? nullptr : *found);
        if (found != surplus.end())
            surplus.erase(found);
    }
    // An interaction may have room for one bond only.
    for (SdcBstBst *bond : std::as_const(surplus))
        scene->removeSdcBstBst(bond);
    for (qsizetype i = 0; i < states.size(); ++i) {
        const BondState &state = states.at(i);
        SdcBst *const first = sites.value(state.sites.first);
        SdcBst *const second = sites.value(state.sites.second);
        if (!bonds.at(i) && first && second)
            bonds[i] = makeBond(scene, first, second, state);
        if (bonds.at(i))
            putProperties(bonds.at(i), state.properties);
    }
    return !bonds.contains(nullptr);
}

/// The complex of an interaction in which a molecule lies, as its index; -1 outside of one.
int complexOf(SdcMol *mol, const QList<SdcCpx *> &complexes)
{
    return static_cast<int>(complexes.indexOf(mol->getParentSdcCpx()));
}

} // namespace

bool ZelSceneState::restore(ZelScene *scene) const
{
    if (!scene)
        return false;
    auto *const editing = qobject_cast<ZelSceneEditing *>(scene);
    if (editing && scene->getSdc())
        return restoreEditing(editing, ownOf(scene));
    QList<SdcMol *> surplus = moleculesOf(scene);
    QList<SdcMol *> molecules;
    for (const MoleculeState &molecule : d->molecules) {
        Sdc *const origin = molecule.identity.object();
        SdcMol *const mol = origin ? origin->toSdcMol() : nullptr;
        const bool isThere = mol && (surplus.removeOne(mol) || !scene->getSdc());
        if (!isThere)
            return false;
        molecules.append(mol);
    }
    if (scene->getSdc() && !surplus.isEmpty())
        return false;
    scene->resetPressState();
    ++scene->m_changeDepth; // putting back is no change of the user's
    for (SdcMol *mol : std::as_const(surplus)) {
        const QList<SdcMcp *> components = mol->getListSdcMcp();
        for (SdcMcp *mcp : components)
            scene->removeSdcMcp(mcp);
    }
    const bool good = putContents(scene, molecules);
    if (Sdc *own = d->own.exists ? ownOf(scene) : nullptr)
        putOwn(own, d->own);
    --scene->m_changeDepth;
    emit scene->signal_changed();
    return good;
}

bool ZelSceneState::restoreJoined(ZelSceneEditing *scene) const
{
    if (!scene || !scene->getSdc() || !scene->getSdc()->isSdcCpx())
        return false;
    ZelSceneState joined(*this);
    joined.d->complexes.clear();
    for (MoleculeState &mol : joined.d->molecules)
        mol.complex = -1;
    for (BondState &bond : joined.d->bonds)
        bond.ofInteraction = false;
    return joined.restoreEditing(scene, nullptr);
}

bool ZelSceneState::restoreEditing(ZelSceneEditing *scene, Sdc *own) const
{
    Sdc *const sdc = scene->getSdc();
    ZelDbSqliteModel *const db =
        scene->getZelDbSqliteModel() ? scene->getZelDbSqliteModel() : sdc->getZelDbSqliteModel();
    if (!d->complexes.isEmpty() && !sdc->isSdcCxi())
        return false;
    scene->resetPressState();
    ++scene->m_changeDepth;
    auto [complexes, surplusComplexes] =
        match(d->complexes, complexesOf(scene), hasSamePsiimId<ComplexState>);
    for (SdcCpx *cpx : std::as_const(surplusComplexes))
        scene->destroyUnit(cpx);
    for (qsizetype i = 0; i < complexes.size(); ++i) {
        if (!complexes.at(i)) {
            complexes[i] = new SdcCpx(db);
            complexes.at(i)->setBstBindingStatusEnabled(scene->isAllowedToDisplayBindingStatus());
            d->complexes.at(i).identity.passTo(complexes.at(i));
            sdc->addSdcChild(complexes.at(i), true);
        }
        putProperties(complexes.at(i), d->complexes.at(i).properties);
    }
    auto [molecules, surplus] = match(d->molecules, moleculesOf(scene),
        [&complexes = complexes](const MoleculeState &state, SdcMol *mol) {
            return hasSamePsiimId(state, mol) && complexOf(mol, complexes) == state.complex;
        });
    for (SdcMol *mol : std::as_const(surplus))
        scene->destroyUnit(mol);
    QHash<Sdc *, QList<Sdc *>> orders;
    for (qsizetype i = 0; i < molecules.size(); ++i) {
        SdcCpx *const cpx = complexes.value(d->molecules.at(i).complex);
        Sdc *const parentSdc = cpx ? cpx : sdc;
        if (!molecules.at(i)) {
            molecules[i] = new SdcMol(db);
            d->molecules.at(i).identity.passTo(molecules.at(i));
            parentSdc->addSdcChild(molecules.at(i), true);
        }
        orders[parentSdc].append(molecules.at(i));
    }
    if (sdc->isSdcCxi())
        putOrder(sdc, QList<Sdc *>(complexes.cbegin(), complexes.cend()));
    for (auto it = orders.cbegin(); it != orders.cend(); ++it)
        putOrder(it.key(), it.value());
    const bool good = putContents(scene, molecules);
    if (own)
        putOwn(own, d->own);
    const QList<SdcBst *> sites = sitesOf(molecules);
    for (SdcBst *site : sites)
        site->updateDisplayBstBindingStatus();
    --scene->m_changeDepth;
    scene->restored();
    return good;
}

bool ZelSceneState::putContents(ZelScene *scene, const QList<SdcMol *> &molecules) const
{
    for (qsizetype i = 0; i < molecules.size(); ++i)
        putMolecule(scene, molecules.at(i), d->molecules.at(i));
    const bool good = putBonds(scene, molecules, d->bonds);
    // Taking a bond away has shown its sites' status anew.
    for (qsizetype i = 0; i < molecules.size(); ++i)
        putSitePens(molecules.at(i), d->molecules.at(i));
    // Which molecule comes first may hang on the states that were put back.
    for (SdcMol *mol : molecules) {
        if (SdcCpx *cpx = mol->getParentSdcCpx())
            cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
    }
    return good;
}
