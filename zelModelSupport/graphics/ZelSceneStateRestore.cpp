// How a state of a scene is put back.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/ZelSceneEditing.h"
#include "zelModelSupport/graphics/ZelSceneStateData.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>

using namespace zel::state;

namespace {

/// The living objects that take the places of the stored ones, null where one must be made, and
/// those that have no place.
template <typename T>
struct Match
{
    QList<T *> places;
    QList<T *> surplus;
};

template <typename T, typename State, typename Key>
Match<T> match(const QList<State> &states, const QList<T *> &living, Key isLike)
{
    Match<T> result{QList<T *>(states.size(), nullptr), living};
    for (qsizetype i = 0; i < states.size(); ++i) {
        if (result.surplus.removeOne(states.at(i).origin.object))
            result.places[i] = states.at(i).origin.object;
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
    const QString psiimId = state.properties.value(SdcProperty::PsiimId);
    return !psiimId.isEmpty() && sdc->getPsiimId() == psiimId;
}

void putProperties(Sdc *sdc, const Properties &properties)
{
    const Properties present = sdc->getProperties();
    for (auto it = present.cbegin(); it != present.cend(); ++it) {
        if (!properties.contains(it.key())) {
            sdc->setProperty(it.key(), QString()); // told to whoever listens
            sdc->clearProperty(it.key());
        }
    }
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        const auto found = present.constFind(it.key());
        if (found == present.cend() || *found != it.value())
            sdc->setProperty(it.key(), it.value());
    }
}

void putEllipse(ZelEllipseItem *item, const EllipseState &state)
{
    item->setRect(state.rect);
    item->setPos(state.pos);
    item->setPen(state.pen);
    item->setBrush(state.brush);
}

void putSticky(ZelRectItemMcpSticky *sticky, const StickyState &state)
{
    if (SdcMcpTag *tag = sticky->getSdcMcpTag())
        putProperties(tag, state.properties);
    if (sticky->getName() != state.name)
        sticky->setName(state.name);
    sticky->setActive(true);
    sticky->setColor(state.color, state.state == ComponentStateOn);
    sticky->setStateType(state.state, state.half);
    sticky->setActive(state.active);
    sticky->setPen(state.pen);
    sticky->setBrush(state.brush);
    sticky->setOpacity(state.opacity);
    sticky->setRect(state.rect);
    sticky->setPos(state.pos);
    sticky->updateHalfNofillItem();
}

void putStickies(SdcMcp *mcp, ZelEllipseItemMcp *item, const ComponentState &state)
{
    // A sticky whose feature has been destroyed never shows one again.
    const QList<ZelRectItemMcpSticky *> present = item->getListSticky();
    for (ZelRectItemMcpSticky *sticky : present) {
        if (!sticky->getSdcMcpTag())
            item->removeStateSticky(sticky);
    }
    auto [stickies, surplus] = match(state.stickies, item->getListSticky(),
        [](const StickyState &stored, ZelRectItemMcpSticky *sticky) {
            return sticky->getName() == stored.name;
        });
    for (ZelRectItemMcpSticky *sticky : std::as_const(surplus))
        item->removeStateSticky(sticky);
    for (qsizetype i = 0; i < stickies.size(); ++i) {
        if (!stickies.at(i)) {
            stickies[i] = new ZelRectItemMcpSticky(mcp->getZelDbSqliteModel());
            stickies.at(i)->getSdcMcpTag()->setParentSdcMcp(mcp);
            item->addStateSticky(stickies.at(i), false);
        }
        putSticky(stickies.at(i), state.stickies.at(i));
    }
    item->setStickyOrder(stickies);

    SdcMcpTagSet *const set = mcp->getSdcMcpTagSet();
    for (SdcMcpTag *tag : mcp->getListSdcMcpTags()) {
        mcp->removeSdcTag(tag);
        if (set)
            set->removeSdcMcpTag(tag);
    }
    for (const int index : state.features) {
        if (index < 0)
            continue;
        SdcMcpTag *const tag = stickies.at(index)->getSdcMcpTag();
        mcp->addSdcTag(tag);
        if (set)
            set->addSdcMcpTag(tag);
    }
}

void putOrder(Sdc *parentSdc, const QList<Sdc *> &wanted)
{
    const QList<Sdc *> present = parentSdc->getListSdcChildren();
    if (std::equal(present.cbegin(), present.cend(), wanted.cbegin(), wanted.cend())
        || !std::is_permutation(present.cbegin(), present.cend(), wanted.cbegin(), wanted.cend()))
        return;
    const auto differing =
        std::mismatch(present.cbegin(), present.cend(), wanted.cbegin()).first - present.cbegin();
    QHash<Sdc *, bool> isRow;
    for (qsizetype i = present.size() - 1; i >= differing; --i) {
        Sdc *const child = present.at(i);
        isRow.insert(child, child->QStandardItem::parent() == parentSdc);
        parentSdc->removeSdcChild(child);
    }
    for (qsizetype i = differing; i < wanted.size(); ++i)
        parentSdc->addSdcChild(wanted.at(i), isRow.value(wanted.at(i)));
}

void putSites(ZelScene *scene, SdcMcp *mcp, const ComponentState &state)
{
    auto [sites, surplus] = match(state.sites, mcp->getListSdcBst(), hasSamePsiimId<SiteState>);
    for (SdcBst *bst : std::as_const(surplus))
        scene->removeSdcBst(bst);
    ZelEllipseItemMcp *const mcpItem = mcp->getZelEllipseItemMcp();
    QList<Sdc *> order;
    for (qsizetype i = 0; i < sites.size(); ++i) {
        const SiteState &stored = state.sites.at(i);
        const bool isNew = !sites.at(i);
        if (isNew)
            sites[i] = new SdcBst(mcp->getZelDbSqliteModel());
        SdcBst *const bst = sites.at(i);
        if (stored.drawn && !bst->getZelEllipseItemBst())
            scene->addBst(stored.ellipse.rect, mcpItem)->setSdc(bst);
        putProperties(bst, stored.properties);
        bst->setAllowChangeBindingStatus(stored.allowChange);
        bst->setAlwaysHighlight(stored.alwaysHighlighted);
        if (isNew)
            mcp->addSdcBst(bst);
        if (bst->getStoredBindingStatus() != stored.status)
            bst->setBindingStatus(stored.status);
        if (ZelEllipseItemBst *item = stored.drawn ? bst->getZelEllipseItemBst() : nullptr)
            putEllipse(item, stored.ellipse);
        order.append(bst);
    }
    putOrder(mcp, order);
    if (SdcBstSet *set = mcp->getSdcBstSet()) {
        for (qsizetype i = 0; i < sites.size(); ++i) {
            set->removeSdcBst(sites.at(i));
            if (state.sites.at(i).inSet)
                set->addSdcBst(sites.at(i));
        }
    }
}

void putComponent(ZelScene *scene, SdcMcp *mcp, const ComponentState &state)
{
    putProperties(mcp, state.properties);
    if (state.hasTagSet && !mcp->getSdcMcpTagSet())
        mcp->setSdcMcpTagSet(new SdcMcpTagSet(mcp->getZelDbSqliteModel(), mcp));
    if (state.hasSiteSet && !mcp->getSdcBstSet())
        mcp->setSdcBstSet(new SdcBstSet(mcp->getZelDbSqliteModel(), mcp));
    if (ZelEllipseItemMcp *item = state.drawn ? mcp->getZelEllipseItemMcp() : nullptr) {
        putEllipse(item, state.ellipse);
        putStickies(mcp, item, state);
    }
    // Removing a sticky lays the row out anew; what was stored holds.
    mcp->setTagDirectionCode(state.tagDirectionCode.code);
    mcp->setTagSize(state.tagSize);
    mcp->setTagGap(state.tagGap);
    putSites(scene, mcp, state);
    mcp->updateMcpNot();
}

void putBackbones(ZelScene *scene, const QList<SdcMcp *> &components, const Backbones &pairs)
{
    for (const auto &pair : backbonesOf(components)) {
        if (std::binary_search(pairs.cbegin(), pairs.cend(), pair))
            continue;
        ZelEllipseItemMcp *const item = components.at(pair.first)->getZelEllipseItemMcp();
        ZelEllipseItemMcp *const partner = components.at(pair.second)->getZelEllipseItemMcp();
        const QList<ZelLineItemMcpMcp *> lines = item->getListMcpMcp();
        for (ZelLineItemMcpMcp *line : lines) {
            if (line->getPartner(item) == partner)
                delete line;
        }
    }
    for (const auto &[first, second] : pairs)
        scene->drawBackBones(components.at(first)->getZelEllipseItemMcp(),
            components.at(second)->getZelEllipseItemMcp());
}

void putMolecule(ZelScene *scene, SdcMol *mol, const MoleculeState &state)
{
    auto [components, surplus] =
        match(state.components, mol->getListSdcMcp(), hasSamePsiimId<ComponentState>);
    for (SdcMcp *mcp : std::as_const(surplus))
        scene->removeSdcMcp(mcp);
    QList<Sdc *> order;
    for (qsizetype i = 0; i < components.size(); ++i) {
        const ComponentState &stored = state.components.at(i);
        const bool isNew = !components.at(i);
        if (isNew)
            components[i] = new SdcMcp(mol->getZelDbSqliteModel());
        SdcMcp *const mcp = components.at(i);
        if (stored.drawn && !mcp->getZelEllipseItemMcp())
            scene->addMcp(stored.ellipse.rect)->setSdcMcp(mcp);
        if (isNew)
            mol->addSdcMcp(mcp);
        putComponent(scene, mcp, stored);
        order.append(mcp);
    }
    putOrder(mol, order);
    putBackbones(scene, components, state.backbones);
    putProperties(mol, state.properties);
    mol->updatePosIndex();
    for (SdcMcp *mcp : std::as_const(components)) {
        if (ZelEllipseItemMcp *item = mcp->getZelEllipseItemMcp()) {
            item->updateMcpMcpPos();
            item->updateNotIndicator();
            item->notifyPosChanged();
        }
    }
}

void putSitePens(SdcMol *mol, const MoleculeState &state)
{
    const QList<SdcMcp *> components = mol->getListSdcMcp();
    for (qsizetype i = 0; i < std::min(components.size(), state.components.size()); ++i) {
        const QList<SiteState> &stored = state.components.at(i).sites;
        const QList<SdcBst *> sites = components.at(i)->getListSdcBst();
        for (qsizetype k = 0; k < std::min(sites.size(), stored.size()); ++k) {
            ZelEllipseItemBst *const item = sites.at(k)->getZelEllipseItemBst();
            if (item && stored.at(k).drawn)
                item->setPen(stored.at(k).ellipse.pen);
        }
    }
}

SdcBstBst *makeBond(ZelScene *scene, SdcBst *first, SdcBst *second, bool ofInteraction)
{
    SdcCpx *const cpx = first->getParentSdcCpx();
    if (ofInteraction || !cpx)
        return scene->addBond(first, second);
    SdcBstBstCpx *const bond = scene->addSdcBstBstCpx(first, second);
    cpx->addSdcBstBstCpx(bond);
    return bond;
}

void putBonds(ZelScene *scene, const QList<SdcMol *> &molecules, const QList<BondState> &states)
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
            bonds[i] = makeBond(scene, first, second, state.ofInteraction);
        if (bonds.at(i))
            putProperties(bonds.at(i), state.properties);
    }
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
        return restoreEditing(editing);
    QList<SdcMol *> surplus = moleculesOf(scene);
    QList<SdcMol *> molecules;
    for (const MoleculeState &molecule : d->molecules) {
        SdcMol *const mol = molecule.origin.object;
        const bool isThere = surplus.removeOne(mol) || (mol && !scene->getSdc());
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
    putContents(scene, molecules);
    --scene->m_changeDepth;
    emit scene->signal_changed();
    return true;
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
    return joined.restoreEditing(scene);
}

bool ZelSceneState::restoreEditing(ZelSceneEditing *scene) const
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
            parentSdc->addSdcChild(molecules.at(i), true);
        }
        orders[parentSdc].append(molecules.at(i));
    }
    if (sdc->isSdcCxi())
        putOrder(sdc, QList<Sdc *>(complexes.cbegin(), complexes.cend()));
    for (auto it = orders.cbegin(); it != orders.cend(); ++it)
        putOrder(it.key(), it.value());
    putContents(scene, molecules);
    const QList<SdcBst *> sites = sitesOf(molecules);
    for (SdcBst *site : sites)
        site->updateDisplayBstBindingStatus();
    --scene->m_changeDepth;
    emit scene->signal_changed();
    return true;
}

void ZelSceneState::putContents(ZelScene *scene, const QList<SdcMol *> &molecules) const
{
    for (qsizetype i = 0; i < molecules.size(); ++i)
        putMolecule(scene, molecules.at(i), d->molecules.at(i));
    putBonds(scene, molecules, d->bonds);
    // Taking a bond away has shown its sites' status anew.
    for (qsizetype i = 0; i < molecules.size(); ++i)
        putSitePens(molecules.at(i), d->molecules.at(i));
}
