#include "zelModelSupport/zelModelSupportDataComponent/SdcMolLoader.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"

#include <QDebug>

#include <optional>

namespace {

// Where a component is drawn that the layout does not mention.
constexpr double DefaultMcpWidth = 60.0;
constexpr double DefaultMcpHeight = 40.0;
constexpr double DefaultMcpGap = 10.0;

} // namespace

SdcMolLoader::SdcMolLoader(SdcMolType::Reader *types, ZelScene *scene, bool limited)
    : m_types(types), m_scene(scene), m_limited(limited)
{
}

bool SdcMolLoader::load(
    SdcMol *mol, const QString &psiimId, const SdcLayout &layout, const QPointF &refPos)
{
    // Held here: what a receiver of the first component's signal does may change the file.
    const std::shared_ptr<const SdcMolType> type = m_types->read(psiimId);
    if (!type) {
        report(psiimId, QStringLiteral("no such molecule"));
        return false;
    }
    if (!layout.isNull() && layout.psiimId != psiimId)
        report(psiimId, layout.psiimId);
    m_mol = mol;
    setMolProperties(*type);
    m_origin = refPos + layout.topLeft;
    m_nextDefaultPlace = m_origin;
    const SdcLayoutChildren layouts(layout, SdcType::Mcp);
    SdcNewParts::Layouts gainedLayouts(m_mol, type.get(), m_origin);
    for (int i = 0; i < static_cast<int>(type->mcps.size()); ++i) {
        const SdcMolType::Mcp &mcp = type->mcps.at(i);
        const SdcLayout &own = layouts.find(mcp.psiimId, i);
        const std::optional<SdcLayout> gained =
            own.isNull() && !layout.isNull() ? gainedLayouts.of(mcp.psiimId, i) : std::nullopt;
        loadMcp(mcp, gained ? *gained : own);
    }
    drawBackBones(psiimId, *type);
    return true;
}

void SdcMolLoader::report(const QString &id, const QString &what)
{
    qDebug() << "Error found at void SdcMol::loadDom(const QDomElement & domEltMol, ZelScene * "
                "scene, const QPointF & refPos) "
             << id << what;
}

void SdcMolLoader::setMolProperties(const SdcMolType &type)
{
    for (const auto &[key, value] : type.properties)
        m_mol->setProperty(key, value);
    const QColor color = type.color.isValid() ? type.color : m_mol->getMolDefaultColor();
    m_mol->setProperty(SdcProperty::Color, color.name());
    m_mol->m_color = color;
    m_brush = QBrush(color, Qt::SolidPattern);
}

void SdcMolLoader::loadMcp(const SdcMolType::Mcp &type, const SdcLayout &layout)
{
    if (!layout.isNull() && layout.psiimId != type.psiimId)
        report(type.psiimId, layout.psiimId);
    auto *mcp = new SdcMcp(m_types->db());
    if (layout.tagSizeAndGap) {
        mcp->setTagSize(layout.tagSizeAndGap->first);
        mcp->setTagGap(layout.tagSizeAndGap->second);
    }
    QRectF rect;
    if (layout.rect) {
        rect = layout.rect->translated(m_origin);
    } else {
        report(type.psiimId, QStringLiteral("has no place in the layout"));
        rect = QRectF(m_nextDefaultPlace, QSizeF(DefaultMcpWidth, DefaultMcpHeight));
    }
    m_nextDefaultPlace = rect.topRight() + QPointF(DefaultMcpGap, 0.0);

    ZelEllipseItemMcp *const item = m_scene ? m_scene->addMcp(rect) : ZelScene::createMcp(rect);
    if (!m_scene)
        m_mol->m_itemsInNoScene.append(item);
    item->setBrush(m_brush);
    mcp->initProperties(type.properties);
    mcp->setZelEllipseItemMcp(item);
    m_mol->addSdcMcp(mcp);
    loadTags(mcp, type);
    loadSites(mcp, type, layout, rect);
    // The item follows the component from here on: until now each step would have changed it.
    item->setSdcMcp(mcp);
    mcp->setTagDirectionCode(layout.tagDirectionCode);
    item->updateLayoutOfListStateSticky(!layout.tagSizeAndGap);
    item->slot_updateToolTips();
}

void SdcMolLoader::loadTags(SdcMcp *mcp, const SdcMolType::Mcp &type)
{
    for (const SdcMolType::State &state : type.states) {
        SdcMcpTag *const tag = mcp->addTag(state.name, state.colorName, false);
        if (!tag)
            continue;
        tag->setProperty(SdcProperty::PsiimId, state.psiimId);
        tag->setProperty(SdcProperty::References, state.references);
    }
    mcp->setProperty(SdcProperty::StateCode, type.stateCode);
}

void SdcMolLoader::loadSites(
    SdcMcp *mcp, const SdcMolType::Mcp &type, const SdcLayout &mcpLayout, const QRectF &mcpRect)
{
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    const SdcLayoutChildren layouts(mcpLayout, SdcType::Bst);
    const QStringList &ids = type.bstPsiimIds;
    QList<QRectF> taken; // by the sites before
    for (qsizetype i = 0; i < ids.size(); ++i) {
        const QString &id = ids.at(i);
        const SdcLayout &layout = layouts.find(id, static_cast<int>(i));
        if (!layout.isNull() && layout.psiimId != id)
            report(id, layout.psiimId);
        // One that the component has gained since it was drawn is no fault.
        if (!layout.rect && !(layout.isNull() && mcpLayout.rect))
            report(id, QStringLiteral("has no place in the layout"));
        const QRectF rect = layout.rect ? layout.rect->translated(mcpRect.topLeft())
                                        : SdcNewParts::siteRect(mcpRect, i, ids.size(), taken);
        taken.append(rect);
        ZelEllipseItemBst *const bstItem =
            m_scene ? m_scene->addBst(rect, item) : ZelScene::createBst(rect, item);
        bstItem->setBrush(m_brush);
        auto *bst = new SdcBst(m_types->db());
        bst->initProperties(type.bstProperties.at(i));
        bst->setZelEllipseItemBst(bstItem);
        bstItem->setSdcBst(bst);
        mcp->addSdcBst(bst);
        bstItem->setAsLimited(m_limited);
        bst->updateDisplayBstBindingStatus();
    }
}

void SdcMolLoader::drawBackBones(const QString &psiimId, const SdcMolType &type)
{
    for (const auto &[a, b] : type.backbones) {
        SdcMcp *const mcpA = m_mol->getSdcMcpAtIndex(a);
        SdcMcp *const mcpB = m_mol->getSdcMcpAtIndex(b);
        if (!mcpA || !mcpB || mcpA == mcpB) {
            report(psiimId, QStringLiteral("backbone %1-%2").arg(a).arg(b));
            continue;
        }
        if (m_scene)
            m_scene->drawBackBones(mcpA->getZelEllipseItemMcp(), mcpB->getZelEllipseItemMcp());
        else
            ZelScene::createBackBone(mcpA->getZelEllipseItemMcp(), mcpB->getZelEllipseItemMcp());
    }
}
