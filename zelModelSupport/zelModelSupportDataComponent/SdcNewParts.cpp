#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double SiteSize = 12.0;
constexpr double SiteGap = 2.0;
constexpr int SiteTries = 72; // around the rim
constexpr int MostSites = 200; // more leave no room on a rim
constexpr int MostSettled = 200; // more than anybody adds: they stay beside their neighbours
constexpr double Step = 5.0; // between two places for a component

/// The component, among those before it, beside which it is drawn; -1 when it is the first.
int neighbourOf(int mcpIndex, const QList<QPair<int, int>> &backbones)
{
    int neighbour = mcpIndex;
    for (const auto &[a, b] : backbones) {
        const int other = a == mcpIndex ? b : (b == mcpIndex ? a : mcpIndex);
        if (other >= 0)
            neighbour = std::min(neighbour, other);
    }
    return neighbour < mcpIndex ? neighbour : mcpIndex - 1;
}

} // namespace

std::optional<SdcLayout> SdcNewParts::Layouts::of(const QString &mcpPsiimId, int index)
{
    if (!m_components)
        m_components.emplace(m_type->drawing().layout, SdcType::Mcp);
    SdcLayout layout = m_components->find(mcpPsiimId, index);
    if (layout.psiimId != mcpPsiimId || !layout.rect)
        return std::nullopt;
    const int neighbour = neighbourOf(index, m_type->backbones);
    if (SdcMcp *beside = neighbour < 0 ? nullptr : m_mol->getSdcMcpAtIndex(neighbour)) {
        const SdcLayout &there = m_components->find(beside->getPsiimId(), neighbour);
        if (there.rect)
            layout.rect->translate(
                beside->getSdcSceneRectF().center() - m_origin - there.rect->center());
    }
    return layout;
}

QRectF SdcNewParts::siteRect(
    const QRectF &mcpRect, qsizetype index, qsizetype count, const QList<QRectF> &taken)
{
    const double first =
        2.0 * std::numbers::pi * double(index) / double(std::max<qsizetype>(count, 1));
    const auto rectAt = [&mcpRect](double angle) {
        return zel::geometry::centredSquare(mcpRect.center()
                + QPointF(std::sin(angle) * mcpRect.width() / 2.0,
                    -std::cos(angle) * mcpRect.height() / 2.0),
            SiteSize);
    };
    for (int i = 0; i < SiteTries && taken.size() <= MostSites; ++i) {
        const QRectF rect = rectAt(first + 2.0 * std::numbers::pi * i / SiteTries);
        if (std::none_of(taken.cbegin(), taken.cend(), [&rect](const QRectF &other) {
                return other.adjusted(-SiteGap, -SiteGap, SiteGap, SiteGap).intersects(rect);
            }))
            return rect;
    }
    return rectAt(first);
}

QRectF SdcNewParts::coveredBy(const QList<SdcMcp *> &components)
{
    QRectF rect;
    for (SdcMcp *mcp : components) {
        rect |= mcp->getSdcSceneRectF();
        for (SdcBst *bst : mcp->getListSdcBst())
            rect |= bst->getSdcSceneRectF();
    }
    return rect;
}

void SdcNewParts::settle(const Drawn &molecules)
{
    QList<SdcMcp *> added;
    for (const auto &[mol, layout] : molecules) {
        const QList<SdcMcp *> components = mol->getListSdcMcp();
        if (layout->isNull() || layout->children.size() >= components.size())
            continue; // as nearly always
        const SdcLayoutChildren layouts(*layout, SdcType::Mcp);
        for (int i = 0; i < static_cast<int>(components.size()); ++i) {
            if (layouts.find(components.at(i)->getPsiimId(), i).isNull())
                added.append(components.at(i));
        }
    }
    if (added.isEmpty())
        return;
    QList<QRectF> taken;
    for (const auto &[mol, layout] : molecules) {
        const QList<SdcMcp *> components = mol->getListSdcMcp();
        for (SdcMcp *mcp : components) {
            if (!added.contains(mcp))
                taken.append(coveredBy({mcp}));
        }
    }
    for (SdcMcp *mcp : added.mid(0, MostSettled)) {
        const QRectF wanted = coveredBy({mcp});
        const QRectF place =
            zel::geometry::freePlace(wanted, taken, zel::drawing::PlacingGap, Step);
        taken.append(place);
        ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
        const QPointF by = place.center() - wanted.center();
        if (!item || by.isNull())
            continue;
        item->moveBy(by.x(), by.y());
        item->updateMcpMcpPos();
        item->notifyPosChanged();
    }
}

QSet<QString> SdcNewParts::storedParts(const QString &molPsiimId, ZelDbSqliteModel *db)
{
    QSet<QString> parts;
    const QStringList mcpIds = db->molGetListMcpPsiimId(molPsiimId);
    for (const QString &mcpId : mcpIds) {
        for (const QString &bst : db->bstGetListPsiimIdBasedOnMcp(mcpId))
            parts.insert(bst);
        for (const ZelDbState &state : db->mcpGetOrderedStates(mcpId))
            parts.insert(state.psiimId);
    }
    return parts;
}

bool SdcNewParts::unsetWellDefined(
    const QString &molPsiimId, const QSet<QString> &before, ZelDbSqliteModel *db)
{
    if (before.contains(storedParts(molPsiimId, db)))
        return true;
    bool good = true;
    const QStringList aliases = db->cpaGetListWellDefinedPsiimIds();
    for (const QString &alias : aliases) {
        if (db->cpxGetListMolPsiimId(db->cpaGetCpxPsiimId(alias)).contains(molPsiimId))
            good = db->cpaSetWellDefined(alias, false) && good;
    }
    return good;
}
