#include "zelModelSupport/graphics/scene/ZelSceneState.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/graphics/scene/ZelSceneStateData.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QGraphicsPolygonItem>

#include <algorithm>
#include <tuple>

using namespace zel::state;

namespace {

Properties propertiesOf(const Sdc *sdc)
{
    Properties properties = sdc->getProperties();
    properties.remove(SdcProperty::PsiimId);
    return properties;
}

EllipseState takeEllipse(const ZelEllipseItem *item)
{
    return {item->rect(), item->pos(), item->pen(), item->brush()};
}

StickyState takeSticky(ZelRectItemMcpSticky *sticky)
{
    const QList<QGraphicsItem *> children = sticky->childItems();
    const bool half = std::any_of(children.cbegin(), children.cend(),
        [](QGraphicsItem *child) { return child->type() == QGraphicsPolygonItem::Type; });
    SdcMcpTag *const tag = sticky->getSdcMcpTag();
    return {Identity::of(tag), sticky->getName(), tag ? propertiesOf(tag) : Properties(),
        sticky->getColor(), sticky->getStateType(), half, sticky->isActive(), sticky->pen(),
        sticky->brush(), sticky->opacity(), sticky->rect(), sticky->pos()};
}

SiteState takeSite(SdcBst *bst, const SdcBstSet *set, const QList<SdcBst *> &inSet)
{
    SiteState state;
    state.identity = Identity::of(bst);
    state.properties = propertiesOf(bst);
    if (ZelEllipseItemBst *item = bst->getZelEllipseItemBst()) {
        state.drawn = true;
        state.ellipse = takeEllipse(item);
    }
    state.status = bst->getStoredBindingStatus();
    state.allowChange = bst->isAllowChangeBindingStatus();
    state.alwaysHighlighted = bst->isAlwaysHighlighted();
    state.inSet = set && inSet.contains(bst);
    return state;
}

ComponentState takeComponent(SdcMcp *mcp)
{
    ComponentState state;
    state.identity = Identity::of(mcp);
    state.properties = propertiesOf(mcp);
    state.tagDirectionCode = {mcp->getTagDirectionCode()};
    state.tagSize = mcp->getTagSize();
    state.tagGap = mcp->getTagGap();
    state.hasTagSet = mcp->getSdcMcpTagSet();
    state.hasSiteSet = mcp->getSdcBstSet();
    if (ZelEllipseItemMcp *item = mcp->getZelEllipseItemMcp()) {
        state.drawn = true;
        state.ellipse = takeEllipse(item);
        const QList<ZelRectItemMcpSticky *> stickies = item->getListSticky();
        for (ZelRectItemMcpSticky *sticky : stickies)
            state.stickies.append(takeSticky(sticky));
        for (SdcMcpTag *tag : mcp->getListSdcMcpTags())
            state.features.push_back(
                static_cast<int>(stickies.indexOf(tag->getZelRectItemMcpSticky())));
    }
    SdcBstSet *const set = mcp->getSdcBstSet();
    const QList<SdcBst *> inSet = set ? set->getListSdcBst() : QList<SdcBst *>();
    for (SdcBst *bst : mcp->getListSdcBst())
        state.sites.append(takeSite(bst, set, inSet));
    return state;
}

MoleculeState takeMolecule(SdcMol *mol)
{
    MoleculeState state;
    state.identity = Identity::of(mol);
    state.properties = propertiesOf(mol);
    const QList<SdcMcp *> components = mol->getListSdcMcp();
    for (SdcMcp *mcp : components)
        state.components.append(takeComponent(mcp));
    state.backbones = backbonesOf(components);
    return state;
}

QList<BondState> takeBonds(ZelScene *scene, const QList<SdcMol *> &molecules)
{
    QList<BondState> states;
    const QList<SdcBstBst *> bonds = bondsOf(scene, molecules);
    if (bonds.isEmpty())
        return states;
    const QList<SdcBst *> sites = sitesOf(molecules);
    for (SdcBstBst *bond : bonds) {
        const auto first = static_cast<int>(sites.indexOf(bond->getSdcBst1()));
        const auto second = static_cast<int>(sites.indexOf(bond->getSdcBst2()));
        if (first >= 0 && second >= 0)
            states.append(
                {{first, second}, !bond->isSdcBstBstCpx(), Identity::of(bond), propertiesOf(bond)});
    }
    // A bond that is made anew stands behind the others.
    std::sort(states.begin(), states.end(), [](const BondState &a, const BondState &b) {
        return std::tie(a.ofInteraction, a.sites) < std::tie(b.ofInteraction, b.sites);
    });
    return states;
}

bool hasText(const OwnState &own)
{
    return std::any_of(own.properties.cbegin(), own.properties.cend(),
        [](const QString &text) { return !text.isEmpty(); });
}

} // namespace

// One that the scene has only made is as good as none.
bool zel::state::operator==(const OwnState &a, const OwnState &b)
{
    if (a.exists != b.exists)
        return !hasText(a) && !hasText(b);
    return a.identity == b.identity && a.properties == b.properties;
}

Sdc *zel::state::ownOf(ZelScene *scene)
{
    Sdc *const sdc = scene->getSdc();
    return sdc && (sdc->isSdcCpx() || sdc->isSdcMli() || sdc->isSdcCxi()) ? sdc : nullptr;
}

QList<SdcMol *> zel::state::moleculesOf(ZelScene *scene)
{
    if (Sdc *sdc = scene->getSdc())
        return sdc->getListSdcMol();
    QList<SdcMol *> list;
    const QList<QGraphicsItem *> all = scene->items(Qt::AscendingOrder);
    for (QGraphicsItem *item : all) {
        ZelEllipseItemMcp *const mcpItem = ZelGItem::toZelEllipseItemMcp(item);
        SdcMcp *const mcp = mcpItem ? mcpItem->getSdcMcp() : nullptr;
        SdcMol *const mol = mcp ? mcp->getParentSdcMol() : nullptr;
        if (mol && !list.contains(mol))
            list.append(mol);
    }
    // Not in the order of the items, which changes when some of them are made anew.
    std::vector<std::tuple<QString, QString, double, double, SdcMol *>> sorted;
    for (SdcMol *mol : std::as_const(list)) {
        const QPointF place = mol->getSdcSceneRectF().topLeft();
        sorted.emplace_back(
            mol->getProperty(SdcProperty::ShortName), mol->getPsiimId(), place.x(), place.y(), mol);
    }
    std::sort(sorted.begin(), sorted.end());
    list.clear();
    for (const auto &entry : sorted)
        list.append(std::get<SdcMol *>(entry));
    return list;
}

QList<SdcBst *> zel::state::sitesOf(const QList<SdcMol *> &molecules)
{
    QList<SdcBst *> list;
    for (SdcMol *mol : molecules)
        list += mol->getListSdcBst();
    return list;
}

QList<SdcCpx *> zel::state::complexesOf(ZelScene *scene)
{
    QList<SdcCpx *> list;
    Sdc *const sdc = scene->getSdc();
    if (SdcCxi *cxi = sdc ? sdc->toSdcCxi() : nullptr) {
        for (Sdc *child : cxi->getListSdcChildren()) {
            if (SdcCpx *cpx = child ? child->toSdcCpx() : nullptr)
                list.append(cpx);
        }
    }
    return list;
}

QList<SdcBstBst *> zel::state::bondsOf(ZelScene *scene, const QList<SdcMol *> &molecules)
{
    QList<SdcBstBst *> list;
    QList<SdcCpx *> complexes;
    for (SdcMol *mol : molecules) {
        SdcCpx *const cpx = mol->getParentSdcCpx();
        if (!cpx || complexes.contains(cpx))
            continue;
        complexes.append(cpx);
        for (SdcBstBstCpx *bond : cpx->getListSdcBstBstCpx())
            list.append(bond);
    }
    Sdc *const sdc = scene->getSdc();
    if (SdcMli *mli = sdc ? sdc->toSdcMli() : nullptr) {
        for (SdcBstBstMli *bond : mli->getListSdcBstBstMli())
            list.append(bond);
    }
    if (SdcCxi *cxi = sdc ? sdc->toSdcCxi() : nullptr) {
        for (SdcBstBstCxi *bond : cxi->getListSdcBstBstCxi())
            list.append(bond);
    }
    list.removeAll(nullptr);
    return list;
}

Backbones zel::state::backbonesOf(const QList<SdcMcp *> &components)
{
    Backbones pairs;
    for (int i = 0; i < components.size(); ++i) {
        const QList<SdcMcp *> neighbours = components.at(i)->getListNeighborSdcMcps();
        for (SdcMcp *neighbour : neighbours) {
            const int other = static_cast<int>(components.indexOf(neighbour));
            if (other > i)
                pairs.emplace_back(i, other);
        }
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

ZelSceneState::ZelSceneState() : d(new ZelSceneStateData) { }

ZelSceneState::ZelSceneState(const ZelSceneState &other) = default;

ZelSceneState::ZelSceneState(ZelSceneState &&other) noexcept = default;

ZelSceneState::~ZelSceneState() = default;

ZelSceneState &ZelSceneState::operator=(const ZelSceneState &other) = default;

ZelSceneState &ZelSceneState::operator=(ZelSceneState &&other) noexcept = default;

ZelSceneState ZelSceneState::take(ZelScene *scene)
{
    ZelSceneState state;
    if (!scene)
        return state;
    if (Sdc *own = ownOf(scene))
        state.d->own = {Identity::of(own), propertiesOf(own), true};
    const QList<SdcCpx *> complexes = complexesOf(scene);
    for (SdcCpx *cpx : complexes)
        state.d->complexes.append({Identity::of(cpx), propertiesOf(cpx)});
    const QList<SdcMol *> molecules = moleculesOf(scene);
    for (SdcMol *mol : molecules) {
        state.d->molecules.append(takeMolecule(mol));
        state.d->molecules.last().complex =
            static_cast<int>(complexes.indexOf(mol->getParentSdcCpx()));
    }
    state.d->bonds = takeBonds(scene, molecules);
    return state;
}

ZelSceneState ZelSceneState::withBond(ZelScene *scene, SdcBst *first, SdcBst *second) const
{
    ZelSceneState state(*this);
    const QList<SdcBst *> sites = sitesOf(moleculesOf(scene));
    const std::pair<int, int> ends(
        static_cast<int>(sites.indexOf(first)), static_cast<int>(sites.indexOf(second)));
    state.d->bonds.removeIf(
        [&ends](const BondState &bond) { return bond.ofInteraction && bond.sites != ends; });
    return state;
}

bool ZelSceneState::isEmpty() const
{
    return d->molecules.isEmpty() && d->complexes.isEmpty();
}

bool operator==(const ZelSceneState &a, const ZelSceneState &b)
{
    return a.d == b.d
        || (a.d->own == b.d->own && a.d->complexes == b.d->complexes
            && a.d->molecules == b.d->molecules && a.d->bonds == b.d->bonds);
}
