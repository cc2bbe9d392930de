#include "zelExchange/ZelAutoLayout.h"

#include "zelExchange/ZelAutoLayoutComplex.h"
#include "zelExchange/ZelAutoLayoutMolecule.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QBrush>
#include <QHash>
#include <QRectF>

#include <cmath>
#include <utility>

namespace {

using namespace zel::layout;

enum TagDirectionChange : int { NextSide = 0, PreviousSide = 1, MirroredSide = 2 };

QRectF rectOf(const QPointF &centre, const QSizeF &size)
{
    return {centre - QPointF(size.width() / 2.0, size.height() / 2.0), size};
}

QRectF sceneRectOf(const ZelEllipseItem *item)
{
    return item->mapRectToScene(item->rect());
}

/// Gives the item a rectangle in the scene, with its origin on the centre.
void place(ZelEllipseItem *item, const QRectF &sceneRect)
{
    const QRectF rect = rectOf({}, sceneRect.size());
    if (item->rect() != rect)
        item->setRect(rect);
    const QPointF centre = sceneRect.center();
    item->setPos(item->parentItem() ? item->parentItem()->mapFromScene(centre) : centre);
}

/// Brings up to date what follows the component's place and size.
void refresh(SdcMcp *mcp)
{
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    for (SdcBst *bst : mcp->getListSdcBst())
        bst->updateBstLabel();
    item->updateMcpMcpPos();
    item->updateLayoutOfListStateSticky(true);
    item->updateNotIndicator();
    item->notifyPosChanged();
}

QList<SdcMcp *> drawnComponents(SdcMol *mol)
{
    QList<SdcMcp *> list;
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        if (mcp && mcp->getZelEllipseItemMcp())
            list.append(mcp);
    }
    return list;
}

QColor colourOf(SdcMol *mol)
{
    const QColor stored(mol ? mol->getProperty(SdcProperty::Color) : QString());
    if (stored.isValid())
        return stored;
    const QColor drawn = mol ? mol->getMolColor() : QColor();
    return drawn.isValid() ? drawn : QColor(Qt::white);
}

void drawSites(SdcMcp *mcp, const std::vector<QPointF> &centres, ZelScene *scene)
{
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    const QList<SdcBst *> sites = mcp->getListSdcBst();
    for (qsizetype i = 0; i < sites.size(); ++i) {
        const QRectF rect = rectOf(
            centres.at(static_cast<std::size_t>(i)), QSizeF(2.0 * SiteRadius, 2.0 * SiteRadius));
        if (ZelEllipseItemBst *siteItem = sites.at(i)->getZelEllipseItemBst()) {
            place(siteItem, rect);
            continue;
        }
        ZelEllipseItemBst *const siteItem =
            scene ? scene->addBst(rect, item) : ZelScene::createBst(rect, item);
        siteItem->setBrush(item->brush());
        siteItem->setSdcBst(sites.at(i));
        sites.at(i)->updateDisplayBstBindingStatus();
    }
}

/// A molecule with its items, seen as a rigid body about the centre of its drawing.
struct DrawnBody
{
    QList<SdcMcp *> mcps;
    QPointF origin;
    Body body;
    QHash<SdcBst *, int> siteIndices;
};

bool isCircle(const QRectF &rect)
{
    return std::abs(rect.width() - rect.height()) < 0.01;
}

DrawnBody bodyOf(SdcMol *mol)
{
    DrawnBody drawn;
    drawn.mcps = drawnComponents(mol);
    QRectF bounds;
    for (SdcMcp *mcp : std::as_const(drawn.mcps))
        bounds |= sceneRectOf(mcp->getZelEllipseItemMcp());
    drawn.origin = bounds.center();
    const auto discOf = [&drawn](const QRectF &rect) {
        return Disc{rect.center() - drawn.origin, std::max(rect.width(), rect.height()) / 2.0};
    };
    Body &body = drawn.body;
    for (SdcMcp *mcp : std::as_const(drawn.mcps)) {
        const QRectF rect = sceneRectOf(mcp->getZelEllipseItemMcp());
        body.components.push_back(discOf(rect));
        body.quarterTurnsOnly = body.quarterTurnsOnly || !isCircle(rect);
        for (SdcBst *bst : mcp->getListSdcBst()) {
            ZelEllipseItemBst *const item = bst->getZelEllipseItemBst();
            if (!item)
                continue;
            const QRectF siteRect = sceneRectOf(item);
            body.quarterTurnsOnly = body.quarterTurnsOnly || !isCircle(siteRect);
            const QPointF way = siteRect.center() - rect.center();
            const double length = std::hypot(way.x(), way.y());
            drawn.siteIndices.insert(bst, static_cast<int>(body.sites.size()));
            body.sites.push_back(
                {discOf(siteRect), length > 0.0 ? way / length : QPointF(1.0, 0.0)});
        }
    }
    return drawn;
}

void move(const DrawnBody &drawn, const Placement &placement)
{
    const bool swapsExtent = std::fmod(placement.angle, 180.0) == 90.0;
    const auto moved = [&](const QRectF &rect) {
        return rectOf(placement.map(rect.center() - drawn.origin),
            swapsExtent ? rect.size().transposed() : rect.size());
    };
    // Where everything was, before the first item moves and takes its children along.
    QList<QPair<ZelEllipseItem *, QRectF>> places;
    for (SdcMcp *mcp : drawn.mcps)
        places.append({mcp->getZelEllipseItemMcp(), sceneRectOf(mcp->getZelEllipseItemMcp())});
    for (SdcMcp *mcp : drawn.mcps) {
        for (SdcBst *bst : mcp->getListSdcBst()) {
            if (ZelEllipseItemBst *item = bst->getZelEllipseItemBst())
                places.append({item, sceneRectOf(item)});
        }
    }
    for (const auto &[item, rect] : std::as_const(places))
        place(item, moved(rect));
    for (SdcMcp *mcp : drawn.mcps) {
        if (placement.mirrored)
            mcp->changeTagDirectionCode(MirroredSide);
        if (placement.angle == 90.0)
            mcp->changeTagDirectionCode(NextSide);
        else if (placement.angle == 270.0)
            mcp->changeTagDirectionCode(PreviousSide);
    }
    for (SdcMcp *mcp : drawn.mcps)
        refresh(mcp);
}

float hueAt(int index)
{
    constexpr double GoldenAngle = 137.508; // keeps any number of them apart
    return static_cast<float>(std::fmod(210.0 + GoldenAngle * index, 360.0) / 360.0);
}

} // namespace

ZelEllipseItemMcp *ZelAutoLayout::makeItem(SdcMcp *mcp, ZelScene *scene)
{
    if (!mcp)
        return nullptr;
    if (ZelEllipseItemMcp *item = mcp->getZelEllipseItemMcp())
        return item;
    const QRectF rect = rectOf({}, QSizeF(40.0, 40.0));
    ZelEllipseItemMcp *const item = scene ? scene->addMcp(rect) : ZelScene::createMcp(rect);
    SdcMol *const mol = mcp->getParentSdcMol();
    item->setBrush(QBrush(colourOf(mol), Qt::SolidPattern));
    item->setSdcMcp(mcp);
    if (!scene && mol)
        mol->adoptItemInNoScene(item);
    return item;
}

void ZelAutoLayout::drawMolecule(
    SdcMol *mol, ZelScene *scene, const QList<QPair<int, int>> &backbone)
{
    if (!mol)
        return;
    const ZelScene::Change change(scene);
    const QList<SdcMcp *> mcps = mol->getListSdcMcp();
    std::vector<ComponentNeeds> needs;
    for (SdcMcp *mcp : mcps) {
        makeItem(mcp, scene);
        needs.push_back({static_cast<int>(mcp->getListSticky().size()),
            static_cast<int>(mcp->getListSdcBst().size())});
    }
    const std::vector<ComponentPlace> places = placeComponents(needs);
    for (qsizetype i = 0; i < mcps.size(); ++i) {
        const ComponentPlace &component = places[static_cast<std::size_t>(i)];
        const double diameter = 2.0 * component.radius;
        place(mcps.at(i)->getZelEllipseItemMcp(),
            rectOf(component.centre, QSizeF(diameter, diameter)));
        drawSites(mcps.at(i), component.sites, scene);
    }
    for (const auto &[a, b] : backbone) {
        if (SdcMcp *first = mcps.value(a), *second = mcps.value(b); first && second)
            ZelScene::createBackBone(first->getZelEllipseItemMcp(), second->getZelEllipseItemMcp());
    }
    for (SdcMcp *mcp : mcps)
        refresh(mcp);
}

void ZelAutoLayout::drawMolecule(SdcMol *mol, ZelScene *scene)
{
    QList<QPair<int, int>> chain;
    const qsizetype count = mol ? mol->getListSdcMcp().size() : 0;
    for (int i = 1; i < count; ++i)
        chain.append({i - 1, i});
    drawMolecule(mol, scene, chain);
}

void ZelAutoLayout::arrangeComplex(SdcCpx *cpx)
{
    if (!cpx)
        return;
    QList<DrawnBody> drawn;
    std::vector<Body> bodies;
    QHash<SdcBst *, QPair<int, int>> ends; // body and site
    QRectF bounds;
    for (SdcMol *mol : cpx->getChildMolList()) {
        DrawnBody entry = bodyOf(mol);
        if (entry.mcps.isEmpty())
            continue;
        for (auto it = entry.siteIndices.cbegin(); it != entry.siteIndices.cend(); ++it)
            ends.insert(it.key(), {static_cast<int>(bodies.size()), it.value()});
        bodies.push_back(entry.body);
        drawn.append(std::move(entry));
        for (SdcMcp *mcp : drawn.constLast().mcps)
            bounds |= sceneRectOf(mcp->getZelEllipseItemMcp());
    }
    if (bodies.empty())
        return;
    std::vector<BodyBond> bonds;
    for (const SdcBstBstCpx *bond : cpx->getListSdcBstBstCpx()) {
        const auto first = ends.constFind(bond->getSdcBst1());
        const auto second = ends.constFind(bond->getSdcBst2());
        if (first != ends.cend() && second != ends.cend())
            bonds.push_back({first->first, first->second, second->first, second->second});
    }
    std::vector<Placement> placements = arrangeBodies(bodies, bonds);
    auto *const scene = qobject_cast<ZelScene *>(
        drawn.constFirst().mcps.constFirst()->getZelEllipseItemMcp()->scene());
    const ZelScene::Change change(scene);
    for (qsizetype i = 0; i < drawn.size(); ++i) {
        Placement &placement = placements[static_cast<std::size_t>(i)];
        placement.centre += bounds.center();
        move(drawn.at(i), placement);
    }
}

QColor ZelAutoLayout::colorAt(int index)
{
    return QColor::fromHsvF(hueAt(index), 0.35F, 0.95F);
}

QColor ZelAutoLayout::featureColorAt(int index)
{
    return QColor::fromHsvF(hueAt(index), 0.75F, 0.7F);
}
