// The units of an editing scene, which are moved, turned and removed as a whole.

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <utility>

Sdc *ZelSceneEditing::getUnit(Sdc *sdc)
{
    SdcMol *const mol = sdc ? sdc->toSdcMol() : nullptr;
    return mol || !sdc ? mol : sdc->getParentSdcMol();
}

QList<Sdc *> ZelSceneEditing::getListConnectedUnits(Sdc *unit)
{
    QList<Sdc *> units;
    if (unit)
        units.append(unit);
    for (qsizetype i = 0; i < units.size(); ++i) {
        const QList<SdcBst *> sites = units.at(i)->getListSdcBst();
        for (SdcBst *site : sites) {
            for (SdcBstBst *bond : site->getListSdcBstBst()) {
                Sdc *const other = getUnit(bond->getPartnerSdcBst(site));
                if (other && !units.contains(other))
                    units.append(other);
            }
        }
    }
    return units;
}

bool ZelSceneEditing::turn(
    Sdc *unit, bool connected, const std::function<bool(const QList<SdcMcp *> &)> &act)
{
    QList<SdcMcp *> components;
    const QList<Sdc *> units = connected ? getListConnectedUnits(unit) : QList<Sdc *>{unit};
    for (Sdc *member : units) {
        if (member)
            components += member->getListSdcMcp();
    }
    const QPointer<ZelSceneEditing> self = this;
    if (!act(components))
        return false;
    if (self)
        emit signal_changed();
    return true;
}

bool ZelSceneEditing::rotateUnit(Sdc *unit, double angle, bool connected)
{
    return turn(unit, connected, [angle](const QList<SdcMcp *> &components) {
        return zgs::rotate(components, angle, true);
    });
}

bool ZelSceneEditing::flipUnit(Sdc *unit, bool connected)
{
    return turn(unit, connected,
        [](const QList<SdcMcp *> &components) { return zgs::flipY(components, true); });
}

void ZelSceneEditing::removeUnit(Sdc *unit)
{
    if (!unit)
        return;
    const QPointer<ZelSceneEditing> self = this;
    {
        const Change change(this);
        QList<QPointer<SdcBst>> partners;
        for (SdcBst *site : unit->getListSdcBst()) {
            for (SdcBstBst *bond : site->getListSdcBstBst()) {
                if (bond->isSdcBstBstCpx())
                    partners.append(bond->getPartnerSdcBst(site));
            }
        }
        destroyUnit(unit);
        freeSites(partners);
    }
    if (self)
        contentsChanged();
}

// A complex that was stored marks what its bonds hold as bound; before he drew a bond, the user may
// have said anything of its sites.
void ZelSceneEditing::freeSites(const QList<QPointer<SdcBst>> &sites)
{
    for (const QPointer<SdcBst> &site : sites) {
        if (site && site->getStoredBindingStatus() == BindingStatusBound && !site->isInCpxBinding())
            site->setBindingStatus(BindingStatusUnbound);
    }
}

void ZelSceneEditing::removeSdcMol(SdcMol *sdcMol)
{
    removeUnit(sdcMol);
}

void ZelSceneEditing::removeContents()
{
    Sdc *const sdc = getSdc();
    if (!sdc || sdc->isEmpty())
        return;
    const QPointer<ZelSceneEditing> self = this;
    {
        const Change change(this);
        QList<QPointer<Sdc>> children;
        for (Sdc *child : sdc->getListSdcChildren())
            children.append(child);
        for (const QPointer<Sdc> &child : std::as_const(children))
            destroyUnit(child);
    }
    if (self)
        contentsChanged();
}

// Receivers of the removals may be faster.
void ZelSceneEditing::destroyUnit(Sdc *unit)
{
    if (!unit)
        return;
    resetPressState();
    const QPointer<Sdc> target = unit;
    QList<QPointer<SdcMcp>> components;
    for (SdcMcp *mcp : unit->getListSdcMcp())
        components.append(mcp);
    for (const QPointer<SdcMcp> &mcp : std::as_const(components))
        removeSdcMcp(mcp);
    if (Sdc *parentSdc = target ? target->getParentSdc() : nullptr)
        parentSdc->removeSdcChild(target);
    delete target.data();
}

// Among the components only: z-values keep saying what kind of item lies on what.
void ZelSceneEditing::raise(const QList<SdcMcp *> &components)
{
    QGraphicsItem *lowest = nullptr;
    QList<QGraphicsItem *> above;
    const QList<QGraphicsItem *> all = items(Qt::AscendingOrder);
    for (QGraphicsItem *item : all) {
        ZelEllipseItemMcp *const mcpItem = ZelGItem::toZelEllipseItemMcp(item);
        if (!mcpItem)
            continue;
        if (!components.contains(mcpItem->getSdcMcp())) {
            above.append(item);
        } else if (!lowest) {
            lowest = item;
            above.clear();
        }
    }
    for (QGraphicsItem *item : std::as_const(above)) {
        if (lowest && item->parentItem() == lowest->parentItem())
            item->stackBefore(lowest);
    }
}

QList<SdcMcp *> ZelSceneEditing::getListSdcMcpToMove(Sdc *sdc)
{
    Sdc *const unit = getUnit(sdc);
    if (!unit)
        return ZelScene::getListSdcMcpToMove(sdc);
    if (!m_pressModifiers.testFlag(Qt::ControlModifier))
        return unit->getListSdcMcp();
    QList<SdcMcp *> components;
    const QList<Sdc *> units = getListConnectedUnits(unit);
    for (Sdc *member : units)
        components += member->getListSdcMcp();
    return components;
}
