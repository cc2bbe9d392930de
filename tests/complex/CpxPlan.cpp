#include "complex/CpxPlan.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

int CpxPlan::siteCount(int mol) const
{
    int count = 0;
    for (const Mcp &mcp : mols.at(mol).mcps)
        count += static_cast<int>(mcp.sites.size());
    return count;
}

const CpxPlan::Site &CpxPlan::site(const End &end) const
{
    static const Site none;
    int index = end.site;
    for (const Mcp &mcp : mols.at(end.mol).mcps) {
        if (index < mcp.sites.size())
            return mcp.sites.at(index);
        index -= static_cast<int>(mcp.sites.size());
    }
    return none;
}

QString CpxPlan::text() const
{
    QString text;
    for (qsizetype i = 0; i < mols.size(); ++i) {
        text += QStringLiteral("%1 '%2'").arg(i).arg(mols.at(i).id);
        for (const Mcp &mcp : mols.at(i).mcps) {
            text += mcp.negated ? QStringLiteral(" !{") : QStringLiteral(" {");
            for (int state : mcp.states)
                text += QStringLiteral("%1 ").arg(state);
            for (const Site &site : mcp.sites)
                text += QStringLiteral("'%1'/%2 ").arg(site.id).arg(site.status);
            text += u'}';
        }
        text += u'\n';
    }
    for (const Bond &bond : bonds) {
        for (const End &end : bond)
            text += QStringLiteral("(%1 %2)").arg(end.mol).arg(end.site);
        text += u' ';
    }
    return text + u'\n';
}

CpxModel::CpxModel(const CpxPlan &plan) : m_cpx(std::make_unique<SdcCpx>(nullptr))
{
    for (const CpxPlan::Mol &molPlan : plan.mols) {
        auto *mol = new SdcMol(nullptr);
        mol->setProperty(SdcProperty::PsiimId, molPlan.id);
        for (const CpxPlan::Mcp &mcpPlan : molPlan.mcps) {
            auto *mcp = new SdcMcp(nullptr);
            mol->addSdcMcp(mcp);
            if (mcpPlan.negated)
                mcp->setProperty(SdcProperty::Negation, QStringLiteral("1"));
            if (!mcpPlan.states.isEmpty()) {
                m_items.emplace_back(ZelScene::createMcp(QRectF(0.0, 0.0, 60.0, 40.0)));
                m_items.back()->setSdcMcp(mcp);
                for (int state : mcpPlan.states)
                    mcp->addTag(QStringLiteral("f"), QString(), false)
                        ->getZelRectItemMcpSticky()
                        ->setStateType(state, false);
            }
            for (const CpxPlan::Site &sitePlan : mcpPlan.sites) {
                auto *bst = new SdcBst(nullptr);
                bst->setProperty(SdcProperty::PsiimId, sitePlan.id);
                bst->setBindingStatus(static_cast<BindingStatusType>(sitePlan.status));
                mcp->addSdcBst(bst);
            }
        }
        m_cpx->addSdcChild(mol, true);
        m_mols.append(mol);
    }
    for (const CpxPlan::Bond &bondPlan : plan.bonds) {
        auto *bond = new SdcBstBstCpx(nullptr, m_cpx.get());
        for (const CpxPlan::End &end : bondPlan)
            bond->addSdcBst(site(end));
        m_cpx->addSdcBstBstCpx(bond);
    }
}

CpxModel::~CpxModel() = default;

SdcBst *CpxModel::site(const CpxPlan::End &end) const
{
    return m_mols.at(end.mol)->getListSdcBst().value(end.site);
}

QList<SdcBstBstCpx *> CpxModel::bonds() const
{
    return m_cpx->getListSdcBstBstCpx();
}
