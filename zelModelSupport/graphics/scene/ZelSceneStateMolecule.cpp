// How a molecule of a state is put back.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/scene/ZelSceneStatePut.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>

using namespace zel::state;

namespace {

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
            state.stickies.at(i).identity.passTo(stickies.at(i)->getSdcMcpTag());
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
        if (isNew) {
            sites[i] = new SdcBst(mcp->getZelDbSqliteModel());
            stored.identity.passTo(sites.at(i));
        }
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

} // namespace

Sdc *zel::state::sdcOf(ZelRectItemMcpSticky *sticky)
{
    return sticky->getSdcMcpTag();
}

void zel::state::putProperties(Sdc *sdc, const Properties &properties)
{
    Properties present = sdc->getProperties();
    present.remove(SdcProperty::PsiimId);
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

void zel::state::putOrder(Sdc *parentSdc, const QList<Sdc *> &wanted)
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

void zel::state::putMolecule(ZelScene *scene, SdcMol *mol, const MoleculeState &state)
{
    auto [components, surplus] =
        match(state.components, mol->getListSdcMcp(), hasSamePsiimId<ComponentState>);
    for (SdcMcp *mcp : std::as_const(surplus))
        scene->removeSdcMcp(mcp);
    QList<Sdc *> order;
    for (qsizetype i = 0; i < components.size(); ++i) {
        const ComponentState &stored = state.components.at(i);
        const bool isNew = !components.at(i);
        if (isNew) {
            components[i] = new SdcMcp(mol->getZelDbSqliteModel());
            stored.identity.passTo(components.at(i));
        }
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

void zel::state::putSitePens(SdcMol *mol, const MoleculeState &state)
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
