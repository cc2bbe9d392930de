#include "zelLayout/AutoLayout.h"

#include "zelLayout/Complex.h"
#include "zelLayout/Drawn.h"
#include "zelLayout/Molecule.h"
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
        const QRectF rect = rectAbout(
            centres.at(static_cast<std::size_t>(i)), QSizeF(2.0 * SiteRadius, 2.0 * SiteRadius));
        if (ZelEllipseItemBst *siteItem = sites.at(i)->getZelEllipseItemBst()) {
            placeItem(siteItem, rect);
            continue;
        }
        ZelEllipseItemBst *const siteItem =
            scene ? scene->addBst(rect, item) : ZelScene::createBst(rect, item);
        siteItem->setBrush(item->brush());
        siteItem->setSdcBst(sites.at(i));
        sites.at(i)->updateDisplayBstBindingStatus();
    }
}

float hueAt(int index)
{
    constexpr double GoldenAngle = 137.508; // keeps any number of them apart
    return static_cast<float>(std::fmod(210.0 + GoldenAngle * index, 360.0) / 360.0);
}

} // namespace

ZelEllipseItemMcp *zel::layout::makeItem(SdcMcp *mcp, ZelScene *scene)
{
    if (!mcp)
        return nullptr;
    if (ZelEllipseItemMcp *item = mcp->getZelEllipseItemMcp())
        return item;
    const QRectF rect = rectAbout({}, QSizeF(40.0, 40.0));
    ZelEllipseItemMcp *const item = scene ? scene->addMcp(rect) : ZelScene::createMcp(rect);
    SdcMol *const mol = mcp->getParentSdcMol();
    item->setBrush(QBrush(colourOf(mol), Qt::SolidPattern));
    item->setSdcMcp(mcp);
    if (!scene && mol)
        mol->adoptItemInNoScene(item);
    return item;
}

void zel::layout::drawMolecule(SdcMol *mol, ZelScene *scene, const QList<QPair<int, int>> &backbone)
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
        placeItem(mcps.at(i)->getZelEllipseItemMcp(),
            rectAbout(component.centre, QSizeF(diameter, diameter)));
        drawSites(mcps.at(i), component.sites, scene);
    }
    for (const auto &[a, b] : backbone) {
        if (SdcMcp *first = mcps.value(a), *second = mcps.value(b); first && second)
            ZelScene::createBackBone(first->getZelEllipseItemMcp(), second->getZelEllipseItemMcp());
    }
    for (SdcMcp *mcp : mcps)
        refreshDrawn(mcp);
}

void zel::layout::drawMolecule(SdcMol *mol, ZelScene *scene)
{
    QList<QPair<int, int>> chain;
    const qsizetype count = mol ? mol->getListSdcMcp().size() : 0;
    for (int i = 1; i < count; ++i)
        chain.append({i - 1, i});
    drawMolecule(mol, scene, chain);
}

void zel::layout::arrangeComplex(SdcCpx *cpx)
{
    if (!cpx)
        return;
    QList<DrawnBody> drawn;
    std::vector<Body> bodies;
    QHash<SdcBst *, QPair<int, int>> ends; // body and site
    QRectF bounds;
    for (SdcMol *mol : cpx->getChildMolList()) {
        DrawnBody entry = drawnBodyOf(mol);
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
        moveDrawn(drawn.at(i), placement);
    }
}

QColor zel::layout::colorAt(int index)
{
    return QColor::fromHsvF(hueAt(index), 0.35F, 0.95F);
}

QColor zel::layout::featureColorAt(int index)
{
    return QColor::fromHsvF(hueAt(index), 0.75F, 0.7F);
}
