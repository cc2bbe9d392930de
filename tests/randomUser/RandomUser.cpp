#include "RandomUser.h"

#include "SceneChecks.h"
#include "SceneParts.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

namespace {

constexpr qsizetype GreatestMolecule = 9;
constexpr qsizetype MostMolecules = 5;
constexpr qsizetype MostSites = 6;
constexpr qsizetype MostFeatures = 7;

QList<ZelEllipseItem *> ellipsesOf(const QList<SdcMcp *> &mcps)
{
    QList<ZelEllipseItem *> list;
    for (SdcMcp *mcp : mcps) {
        list.append(mcp->getZelEllipseItemMcp());
        for (SdcBst *bst : mcp->getListSdcBst())
            list.append(bst->getZelEllipseItemBst());
    }
    list.removeAll(nullptr);
    return list;
}

QList<ZelEllipseItem *> ellipsesOf(ZelEllipseItem *item)
{
    ZelEllipseItemMcp *const mcpItem = item->asEllipseItemMcp();
    if (mcpItem && mcpItem->getSdcMcp())
        return ellipsesOf(QList<SdcMcp *>{mcpItem->getSdcMcp()});
    return {item};
}

} // namespace

RandomUser::RandomUser(SceneHost::Kind kind, quint32 seed)
    : SceneUser(seed,
        {QStringLiteral("Warning at SdcMcp * ZelScene::addSdcMcp("),
            QStringLiteral("found at void ZelScene::changeMolColor("), QStringLiteral("name = ")}),
      m_host(std::make_unique<SceneHost>(
          kind, &m_objects, [this](const QString &what) { fail(what); }))
{
    connect(scene(), &ZelScene::zelGItemClicked, this, &RandomUser::itemClicked);
    connect(scene(), &ZelScene::zelGItemDoubleClicked, this, &RandomUser::itemClicked);
    connect(scene(), &ZelScene::signal_ZelGItemMoved, this, &RandomUser::itemMoved);
    connect(scene(), &ZelScene::zelEllipseItemCollided, this, &RandomUser::itemsCollided);
    followScene();
}

void RandomUser::step()
{
    const qsizetype mcps = SceneParts::components(molecules()).size();
    const qsizetype sites = SceneParts::sites(molecules()).size();
    // Mishaps take more away than the rest of the acts would build.
    const bool sparse = mcps < 5 * molecules().size() || sites < 2 * mcps;
    if (mcps == 0 || (sparse && m_dice.chance(30))) {
        build();
    } else {
        m_host->setDragMode(static_cast<SceneHost::DragMode>(m_dice.below(5)));
        doOneOf({
            {27, [this] { drag(); }},
            {12, [this] { click(); }},
            {14, [this] { contextMenu(); }},
            {3, [this] { hover(); }},
            {2, [this] { frozenGesture(&ZelScene::setReadOnly); }},
            {2, [this] { frozenGesture(&ZelScene::setEnforcedNoMove); }},
            {12, [this] { build(); }},
            {8, [this] { turn(); }},
            {4, [this] { reshape(); }},
            {2, [this] { store(); }},
            {2, [this] { load(); }},
            {3, [this] { look(); }},
            {3, [this] { mishap(); }},
            {3, [this] { undoAndRedo(); }},
        });
    }
    m_host->tidy();
}

void RandomUser::build()
{
    const QList<SdcMol *> mols = molecules();
    const qsizetype most = m_host->kind() == SceneHost::OneMolecule ? 1 : MostMolecules;
    if (mols.isEmpty() || (mols.size() < most && m_dice.chance(15))) {
        log("add a molecule");
        m_host->addMolecule();
    }
    SdcMol *const mol = anyMolecule();
    SdcMcp *const mcp = m_dice.anyOf(mol->getListSdcMcp());
    const int thrown = m_dice.below(5);
    if (!mcp || (thrown == 0 && mol->getListSdcMcp().size() < GreatestMolecule)) {
        const double width = m_dice.between(6.0, 70.0);
        const double height = m_dice.chance(50) ? width : m_dice.between(6.0, 70.0);
        QGraphicsEllipseItem ref(QRectF(-width / 2.0, -height / 2.0, width, height));
        ref.setPos(anyPoint());
        SdcMcp *const attachTo = m_dice.chance(85) ? mcp : nullptr;
        log(QLatin1String("add a component to ") + nameOf(attachTo));
        m_host->addComponent(mol, &ref, attachTo);
    } else if (thrown <= 2 && mcp->getListSdcBst().size() < MostSites) {
        log(QLatin1String("add a site to ") + nameOf(mcp));
        if (SdcBst *bst = scene()->addSdcBst(mcp)) {
            fail(SceneChecks::apart(scene(), {bst->getZelEllipseItemBst()}));
        }
    } else if (thrown == 3 && mcp->getListSticky().size() < MostFeatures) {
        log(QLatin1String("add a feature to ") + nameOf(mcp));
        m_host->addFeature(mcp, QColor::fromHsv(m_dice.below(360), 200, 200).name());
    } else {
        log("add a bond");
        SdcBst *const first = anySite();
        m_host->addBond(first, anySite());
    }
}

void RandomUser::turn()
{
    const QList<SdcMcp *> mcps = anySelection();
    const bool careful = m_dice.chance(80);
    bool turned = false;
    if (m_dice.chance(30)) {
        log(QStringLiteral("flip %1 components").arg(mcps.size()));
        turned = zgs::flipY(mcps, careful);
    } else {
        const double angle =
            m_dice.anyOf(QList<double>{90.0, -90.0, 180.0, 45.0, m_dice.between(-360.0, 360.0)});
        log(QStringLiteral("turn %1 components by %2").arg(mcps.size()).arg(angle));
        turned = zgs::rotate(mcps, angle, careful);
    }
    // A refusal shows a message, during which anything may have gone.
    if (turned && careful)
        fail(SceneChecks::apart(scene(), ellipsesOf(mcps)));
}

void RandomUser::reshape()
{
    log("rename something, or set features, a status or a colour");
    SdcBst *const bst = anySite();
    doOneOf({
        {1, [this] { m_host->rename(anyComponent(), u'n' + QString::number(m_dice.below(1000))); }},
        {1,
            [this] {
                const ZelScene::Change change(scene());
                anyMolecule()->setAllMcpFeatureValue(
                    m_dice.chance(50) ? ComponentStateOff : ComponentStateOn);
            }},
        {bst ? 1 : 0,
            [this, bst] {
                const ZelScene::Change change(scene());
                bst->setBindingStatus(m_dice.anyOf(QList<BindingStatusType>{
                    BindingStatusUnspecified, BindingStatusBound, BindingStatusUnbound}));
            }},
        {1, [this] { scene()->changeMolColor(anyPoint()); }},
    });
}

void RandomUser::store()
{
    SdcMol *const mol = anyMolecule();
    log(QLatin1String("save ") + nameOf(mol));
    m_host->save(mol);
}

void RandomUser::load()
{
    const QString psiimId = m_dice.anyOf(m_host->db()->molGetListPsiimId());
    const bool full =
        m_host->kind() != SceneHost::OneMolecule && molecules().size() >= MostMolecules;
    if (psiimId.isEmpty() || full)
        return;
    log(QLatin1String("load ") + psiimId);
    m_host->load(psiimId, anyPoint() * 0.3);
}

void RandomUser::look()
{
    log("zoom, show an index code, limit the edits or highlight something");
    SdcMol *const mol = anyMolecule();
    SdcBst *const bst = anySite();
    doOneOf({
        {1,
            [this] {
                view()->resetTransform();
                view()->scale(m_dice.between(0.5, 3.0), m_dice.between(0.5, 3.0));
                view()->centerOn(anyPoint());
            }},
        {1, [&] { mol->showIndexCode(m_dice.chance(50), QString::number(m_dice.below(12)), 7); }},
        {1,
            [&] {
                scene()->setLimitedEdit(m_dice.chance(50));
                if (auto *molScene = qobject_cast<ZelSceneMol *>(scene()))
                    molScene->setZelEllipseItemBstLimited(
                        bst ? bst->getZelEllipseItemBst() : nullptr);
            }},
        {1,
            [&] {
                if (Sdc *sdc = m_dice.chance(50) ? anyVictim() : mol)
                    sdc->setHighlight(m_dice.chance(60), m_dice.chance(50));
            }},
    });
}

void RandomUser::undoAndRedo()
{
    log("undo and redo");
    SceneHistory *const history = m_host->history();
    for (int i = m_dice.below(4); i >= 0; --i)
        history->undo();
    for (int i = m_dice.below(4); i > 0; --i)
        history->redo();
    if (m_dice.chance(30))
        history->jump(&m_dice);
}

std::vector<RandomSession::Act> RandomUser::mishaps()
{
    return {
        {38, [this] { remove(anyVictim()); }},
        {36, [this] { destroySomething(); }},
        {16, [this] { m_host->history()->undo(); }},
        {6, [this] { m_host->history()->jump(&m_dice); }},
        {1, [this] { scene()->removeAllItems(); }},
        {1, [this] { load(); }},
        {2,
            [this] {
                if (SdcMol *mol = anyMolecule())
                    m_host->removeMolecule(mol);
            }},
    };
}

void RandomUser::remove(Sdc *sdc)
{
    if (!sdc)
        return;
    log(QLatin1String("remove ") + nameOf(sdc));
    if (SdcMcp *mcp = sdc->toSdcMcp()) {
        scene()->removeSdcMcp(mcp);
    } else if (SdcBst *bst = sdc->toSdcBst()) {
        scene()->removeSdcBst(bst);
    } else if (SdcBstBst *bond = sdc->toSdcBstBst()) {
        scene()->removeSdcBstBst(bond);
    } else if (SdcMcpTag *tag = sdc->toSdcMcpTag()) {
        SdcMcp *const owner = tag->getParentSdcMcp();
        ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
        if (!owner || !owner->getZelEllipseItemMcp() || !sticky)
            return;
        const ZelScene::Change change(scene());
        owner->getZelEllipseItemMcp()->removeStateSticky(sticky);
        owner->updateStatePropertyFromSticky();
    }
}

// Either the component or what draws it; the other one stays behind.
void RandomUser::destroySomething()
{
    Sdc *const sdc = m_dice.chance(2) ? anyMolecule() : anyVictim();
    if (!sdc)
        return;
    QObject *const item = itemOf(sdc);
    const bool itemFirst = item && m_dice.chance(50);
    log((itemFirst ? QLatin1String("destroy the item of ") : QLatin1String("destroy "))
        + nameOf(sdc));
    m_host->destroy(itemFirst ? item : sdc);
}

void RandomUser::itemClicked(ZelGItem *item)
{
    if (m_calm)
        return;
    const QPointer<ZelGItem> clicked = item;
    mishap(3);
    if (!clicked)
        return;
    if (ZelRectItemMcpSticky *sticky = clicked->asRectItemMcpSticky())
        m_host->cycleState(sticky);
    else if (ZelEllipseItem *ellipse = clicked->asEllipseItem())
        ellipse->setHighlight(!ellipse->isHighlighted());
    else if (ZelLineItemBstBst *line = clicked->asLineItemBstBst())
        line->setHighlight(!line->isHighlighted(), m_dice.chance(50));
}

void RandomUser::itemMoved(ZelGItem *item)
{
    if (m_calm)
        fail(QStringLiteral("something was moved in a frozen scene"));
    if (ZelEllipseItem *ellipse = item->asEllipseItem())
        fail(SceneChecks::apart(scene(), ellipsesOf(ellipse)));
    mishap(2);
}

void RandomUser::itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second)
{
    if (m_calm)
        return;
    SdcBst *const firstSite =
        first->asEllipseItemBst() ? first->asEllipseItemBst()->getSdcBst() : nullptr;
    SdcBst *const secondSite =
        second->asEllipseItemBst() ? second->asEllipseItemBst()->getSdcBst() : nullptr;
    log(QStringLiteral("bond %1 and %2").arg(nameOf(firstSite), nameOf(secondSite)));
    if (m_dice.chance(10))
        remove(m_dice.chance(50) ? firstSite : secondSite);
    else
        m_host->addBond(firstSite, secondSite);
}

QList<SdcMcp *> RandomUser::anySelection()
{
    if (m_dice.chance(40))
        return anyMolecule()->getListSdcMcp();
    QList<SdcMcp *> list;
    for (SdcMcp *mcp : SceneParts::components(molecules())) {
        if (m_dice.chance(30))
            list.append(mcp);
    }
    return list;
}

void RandomUser::check()
{
    m_host->history()->check();
    fail(SceneChecks::consistent(scene(), molecules(), &m_objects));
}

void RandomUser::close()
{
    m_host->close(m_dice.below(3));
    m_host.reset();
}
