#include "bench_SpeciesModel.h"

#include "support/ZelBenchmark.h"

#include "randomUser/RandomDice.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QBrush>

#include <algorithm>
#include <array>

using ZelBenchmark::giveUp;

namespace BenchSpecies {

namespace {

constexpr int Species = 1000;
constexpr int MaxMols = 7;
constexpr int CheckedEvery = 20;
constexpr QSizeF McpSize(60.0, 40.0);
constexpr double McpDistance = 80.0;
constexpr double MolDistance = 120.0;
constexpr double SiteSize = 12.0;

/// Components, and sites and features of each, of the molecule types.
struct Shape
{
    int mcps;
    int sites;
    int tags;
};
constexpr std::array<Shape, 5> Types{{{1, 3, 1}, {2, 2, 1}, {2, 2, 2}, {3, 2, 1}, {4, 1, 2}}};

void setProperties(Sdc *sdc, const Properties &properties)
{
    for (const auto &[key, value] : properties)
        sdc->setProperty(key, value);
}

Properties propertiesOf(const Sdc *sdc)
{
    const QHash<int, QString> hash = sdc->getProperties();
    return {hash.constKeyValueBegin(), hash.constKeyValueEnd()};
}

void shift(MolParts *mol, const QPointF &by)
{
    for (McpParts &mcp : mol->mcps) {
        mcp.sceneRect.translate(by);
        for (SiteParts &site : mcp.sites)
            site.sceneRect.translate(by);
    }
}

int siteCount(const MolParts &mol)
{
    int count = 0;
    for (const McpParts &mcp : mol.mcps)
        count += static_cast<int>(mcp.sites.size());
    return count;
}

McpParts describe(SdcMcp *mcp)
{
    McpParts parts{propertiesOf(mcp), mcp->getSdcSceneRectF(), mcp->getTagDirectionCode(),
        mcp->getTagSize(), mcp->getTagGap(), {}, {}};
    for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
        parts.tags.push_back({propertiesOf(sticky->getSdcMcpTag()), sticky->getName(),
            sticky->getColor().name(), sticky->getStateType()});
    for (SdcBst *bst : mcp->getListSdcBst())
        parts.sites.push_back(
            {propertiesOf(bst), bst->getSdcSceneRectF(), bst->getStoredBindingStatus()});
    return parts;
}

MolParts describe(SdcMol *mol)
{
    MolParts parts{propertiesOf(mol), mol->getMolColor(), {}, {}};
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        parts.mcps.push_back(describe(mcp));
        for (SdcMcp *neighbour : mcp->getListNeighborSdcMcps()) {
            if (neighbour->getPosIndex() > mcp->getPosIndex())
                parts.backbones.push_back({mcp->getPosIndex(), neighbour->getPosIndex()});
        }
    }
    return parts;
}

void makeSites(SdcMcp *mcp, const McpParts &parts, const QBrush &brush, ZelScene *scene)
{
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    for (const SiteParts &site : parts.sites) {
        ZelEllipseItemBst *const siteItem =
            scene ? scene->addBst(site.sceneRect, item) : ZelScene::createBst(site.sceneRect, item);
        siteItem->setBrush(brush);
        auto *const bst = new SdcBst(mcp->getZelDbSqliteModel());
        setProperties(bst, site.properties);
        bst->setZelEllipseItemBst(siteItem);
        siteItem->setSdcBst(bst);
        mcp->addSdcBst(bst);
        bst->setBindingStatus(site.status);
    }
}

void makeMcp(SdcMol *mol, const McpParts &parts, const QBrush &brush, ZelScene *scene)
{
    ZelEllipseItemMcp *const item =
        scene ? scene->addMcp(parts.sceneRect) : ZelScene::createMcp(parts.sceneRect);
    if (!scene)
        mol->adoptItemInNoScene(item);
    item->setBrush(brush);
    auto *const mcp = new SdcMcp(mol->getZelDbSqliteModel());
    setProperties(mcp, parts.properties);
    mcp->setTagDirectionCode(parts.tagDirectionCode);
    mcp->setTagSize(parts.tagSize);
    mcp->setTagGap(parts.tagGap);
    mcp->setZelEllipseItemMcp(item);
    mol->addSdcMcp(mcp);
    for (const TagParts &tagParts : parts.tags) {
        SdcMcpTag *const tag = mcp->addTag(tagParts.name, tagParts.color, false);
        setProperties(tag, tagParts.properties);
        tag->getZelRectItemMcpSticky()->setStateType(tagParts.state, false);
    }
    makeSites(mcp, parts, brush, scene);
    item->setSdcMcp(mcp);
    item->updateLayoutOfListStateSticky(false);
    item->slot_updateToolTips();
}

SdcMol *makeMol(const MolParts &parts, ZelDbSqliteModel *db, ZelScene *scene)
{
    auto *const mol = new SdcMol(db);
    setProperties(mol, parts.properties);
    mol->setMolColor(parts.color.name());
    const QBrush brush(parts.color, Qt::SolidPattern);
    for (const McpParts &mcp : parts.mcps)
        makeMcp(mol, mcp, brush, scene);
    for (const auto &[a, b] : parts.backbones) {
        ZelEllipseItemMcp *const first = mol->getSdcMcpAtIndex(a)->getZelEllipseItemMcp();
        ZelEllipseItemMcp *const second = mol->getSdcMcpAtIndex(b)->getZelEllipseItemMcp();
        if (scene)
            scene->drawBackBones(first, second);
        else
            ZelScene::createBackBone(first, second);
    }
    return mol;
}

} // namespace

CpxParts describe(SdcCpx *cpx)
{
    CpxParts parts{propertiesOf(cpx), {}, {}, cpx->getZelDbSqliteModel()};
    for (SdcMol *mol : cpx->getListSdcMol())
        parts.mols.push_back(describe(mol));
    const auto numberOf = [](SdcBst *site) {
        return static_cast<int>(site->getParentSdcMol()->getListSdcBst().indexOf(site));
    };
    for (SdcBstBstCpx *bond : cpx->getListSdcBstBstCpx()) {
        SdcBst *const first = bond->getSdcBst1();
        SdcBst *const second = bond->getSdcBst2();
        parts.bonds.push_back({first->getParentSdcMol()->getPosIndex(), numberOf(first),
            second->getParentSdcMol()->getPosIndex(), numberOf(second)});
    }
    return parts;
}

std::unique_ptr<SdcCpx> make(const CpxParts &parts, ZelScene *scene)
{
    auto cpx = std::make_unique<SdcCpx>(parts.db);
    setProperties(cpx.get(), parts.properties);
    std::vector<QList<SdcBst *>> sites;
    sites.reserve(parts.mols.size());
    for (const MolParts &molParts : parts.mols) {
        SdcMol *const mol = makeMol(molParts, parts.db, scene);
        cpx->addSdcChild(mol, true);
        sites.push_back(mol->getListSdcBst());
    }
    for (const BondParts &ends : parts.bonds) {
        SdcBst *const first = sites[static_cast<std::size_t>(ends.mol1)].at(ends.site1);
        SdcBst *const second = sites[static_cast<std::size_t>(ends.mol2)].at(ends.site2);
        SdcBstBstCpx *bond = nullptr;
        if (scene) {
            bond = scene->addSdcBstBstCpx(first, second);
        } else {
            bond = new SdcBstBstCpx(parts.db, cpx.get());
            bond->addSdcBst(first);
            bond->addSdcBst(second);
        }
        cpx->addSdcBstBstCpx(bond);
    }
    return cpx;
}

Model::Model()
{
    if (!m_file.create(m_dir.filePath(QStringLiteral("species.zel"))))
        giveUp(m_file.errorText());
    ZelDbTransaction transaction(&m_file);
    std::vector<MolParts> types;
    for (int i = 0; i < static_cast<int>(Types.size()); ++i)
        types.push_back(storeType(i));
    RandomDice dice(1);
    while (m_species.size() < Species) {
        const QString id = store(types, &dice);
        if (!m_species.contains(id))
            m_species.append(id);
    }
    if (!transaction.commit())
        giveUp(m_db.errorText());
    for (int i = 0; i < count(); ++i) {
        m_parts.push_back(describe(load(i, nullptr).get()));
        if (i % CheckedEvery == 0)
            checkPeer(i);
    }
}

std::unique_ptr<SdcCpx> Model::load(int index, ZelScene *scene) const
{
    auto cpx = std::make_unique<SdcCpx>(&m_db);
    if (!cpx->loadCpaFromDb(m_species.at(index), scene))
        giveUp(m_db.errorText());
    return cpx;
}

MolParts Model::storeType(int index)
{
    const Shape &shape = Types.at(static_cast<std::size_t>(index));
    MolParts parts;
    parts.properties = {{SdcProperty::ShortName, QStringLiteral("Mol%1").arg(index)},
        {SdcProperty::Color, QStringLiteral("#ffe0a0")}};
    parts.color = QColor(0xff, 0xe0, 0xa0);
    for (int i = 0; i < shape.mcps; ++i) {
        McpParts mcp;
        mcp.properties = {{SdcProperty::ShortName, QStringLiteral("c%1").arg(i)}};
        mcp.sceneRect = QRectF(QPointF(i * McpDistance, 0.0), McpSize);
        mcp.tagGap = 2.0; // the side is fitted
        for (int k = 0; k < shape.tags; ++k)
            mcp.tags.push_back({{}, QStringLiteral("Y%1").arg(k), QStringLiteral("#3366cc")});
        for (int k = 0; k < shape.sites; ++k) {
            QRectF site(QPointF(), QSizeF(SiteSize, SiteSize));
            site.moveCenter(QPointF(mcp.sceneRect.left() + 10.0 + k * 20.0,
                k % 2 == 0 ? mcp.sceneRect.top() : mcp.sceneRect.bottom()));
            const QString name = QStringLiteral("s%1_%2").arg(i).arg(k);
            mcp.sites.push_back({{{SdcProperty::ShortName, name}}, site});
        }
        parts.mcps.push_back(mcp);
        if (i > 0)
            parts.backbones.push_back({i - 1, i});
    }
    const std::unique_ptr<SdcMol> mol(makeMol(parts, &m_db, nullptr));
    if (!mol->saveToDb())
        giveUp(m_db.errorText());
    SdcMol loaded(&m_db);
    if (!loaded.loadFromDb(mol->getPsiimId()))
        giveUp(m_db.errorText());
    return describe(&loaded);
}

QString Model::store(const std::vector<MolParts> &types, RandomDice *dice)
{
    CpxParts parts;
    parts.db = &m_db;
    std::vector<QList<int>> freeSites; // of each molecule
    const int molCount = 1 + dice->below(MaxMols);
    for (int i = 0; i < molCount; ++i) {
        MolParts mol = types[static_cast<std::size_t>(dice->below(static_cast<int>(types.size())))];
        shift(&mol, QPointF(0.0, i * MolDistance));
        QList<int> sites(siteCount(mol));
        for (int k = 0; k < sites.size(); ++k)
            sites[k] = k;
        if (i > 0) { // each has a bond with one before it
            QList<int> candidates;
            for (int k = 0; k < i; ++k) {
                if (!freeSites[static_cast<std::size_t>(k)].isEmpty())
                    candidates.append(k);
            }
            const int other = dice->anyOf(candidates);
            QList<int> &otherSites = freeSites[static_cast<std::size_t>(other)];
            parts.bonds.push_back(
                {other, otherSites.takeAt(dice->below(static_cast<int>(otherSites.size()))), i,
                    sites.takeAt(dice->below(static_cast<int>(sites.size())))});
        }
        for (McpParts &mcp : mol.mcps) {
            for (TagParts &tag : mcp.tags)
                tag.state = dice->chance(50) ? ComponentStateOn : ComponentStateOff;
            for (SiteParts &site : mcp.sites)
                site.status = BindingStatusUnbound;
        }
        parts.mols.push_back(mol);
        freeSites.push_back(sites);
    }
    const std::unique_ptr<SdcCpx> cpx = make(parts, nullptr);
    if (!(cpx->adoptStoredSpecies() || cpx->saveToDbCpx()) || !cpx->saveToDbCpa())
        giveUp(m_db.errorText());
    return cpx->getProperty(SdcProperty::CpaPsiimId);
}

/// What is made must be what is loaded, or their times say nothing.
void Model::checkPeer(int index) const
{
    for (const bool drawn : {false, true}) {
        ZelScene loadedScene(nullptr);
        ZelScene madeScene(nullptr);
        const auto loaded = load(index, drawn ? &loadedScene : nullptr);
        const auto made = make(parts(index), drawn ? &madeScene : nullptr);
        if (loaded->getGraphicsInfo() != made->getGraphicsInfo()
            || loaded->getCpxFingerPrint() != made->getCpxFingerPrint()
            || loaded->getAliasMcpStateCode() != made->getAliasMcpStateCode()
            || loadedScene.items().size() != madeScene.items().size())
            giveUp(QStringLiteral("species %1 is made otherwise than it is loaded").arg(index));
    }
}

} // namespace BenchSpecies
