#include "SceneHost.h"

#include "SceneChecks.h"
#include "SceneParts.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QAbstractItemModelTester>
#include <QDomDocument>

#include <algorithm>

namespace {

/// A base scene that lets its drags be chosen, as the scenes for several molecules do.
class SceneOfSeveral : public ZelScene
{
public:
    bool toMove() const override
    {
        return mode == SceneHost::MoveMolecule || mode == SceneHost::MoveComponent;
    }
    bool toChangeLayout() const override
    {
        return mode == SceneHost::MoveAttached || mode == SceneHost::MoveGroup;
    }
    bool toMoveGroup() const override { return mode == SceneHost::MoveGroup; }
    QList<SdcMcp *> getListSdcMcpToMove(Sdc *sdc) override
    {
        if (sdc && mode == SceneHost::MoveMolecule && sdc->getParentSdcMol())
            return sdc->getParentSdcMol()->getListSdcMcp();
        return ZelScene::getListSdcMcpToMove(sdc);
    }

    SceneHost::DragMode mode = SceneHost::MoveMolecule;
};

} // namespace

SceneHost::SceneHost(Kind kind, const LiveObjects *objects, SceneHistory::Fail fail)
    : m_kind(kind), m_fail(std::move(fail))
{
    m_file.create(QStringLiteral(":memory:"));
    new QAbstractItemModelTester(
        &m_model, QAbstractItemModelTester::FailureReportingMode::Warning, &m_model);
    if (kind == OneMolecule)
        m_scene = std::make_unique<ZelSceneMol>(nullptr);
    else
        m_scene = std::make_unique<SceneOfSeveral>();
    m_scene->setZelDbSqliteModel(&m_db);
    m_scene->setAllowToDisplayBindingStatus(kind != OneMolecule);
    m_scene->setAllowToChangeBindingStatus(kind != OneMolecule);
    connect(m_scene.get(), &ZelScene::signal_setStickyState, this, &SceneHost::setStickyState);
    connect(m_scene.get(), &ZelScene::signal_setNegation, this, &SceneHost::setNegation);
    connect(
        m_scene.get(), &ZelScene::signal_setBstBindingStatus, this, &SceneHost::setBindingStatus);
    m_history = std::make_unique<SceneHistory>(m_scene.get(), objects, m_fail);
    m_view = std::make_unique<QGraphicsView>(m_scene.get());
    m_view->resize(420, 320);
    m_view->show();
}

SceneHost::~SceneHost()
{
    close(0);
}

QList<SdcMol *> SceneHost::molecules() const
{
    QList<SdcMol *> list;
    for (const QPointer<SdcMol> &mol : m_molecules) {
        if (mol)
            list.append(mol);
    }
    return list;
}

void SceneHost::setDragMode(DragMode mode)
{
    if (m_kind != OneMolecule)
        static_cast<SceneOfSeveral *>(m_scene.get())->mode = mode;
}

SdcMol *SceneHost::addMolecule()
{
    const ZelScene::Change change(m_scene.get());
    auto *const mol = new SdcMol(&m_db);
    mol->setProperty(SdcProperty::ShortName, newName(u'M'));
    keep(mol);
    return mol;
}

void SceneHost::addComponent(SdcMol *mol, QGraphicsEllipseItem *ref, SdcMcp *attachTo)
{
    const QColor color = mol->getMolColor();
    ref->setBrush(color.isValid() ? color : mol->getMolDefaultColor());
    SdcMcp *mcp = nullptr;
    if (attachTo || m_scene->getSdc() == mol) {
        mcp = m_scene->addSdcMcp(ref, attachTo);
        if (mcp && attachTo)
            m_fail(SceneChecks::apart(m_scene.get(), {mcp->getZelEllipseItemMcp()}));
    } else {
        const ZelScene::Change change(m_scene.get());
        ZelEllipseItemMcp *const item = m_scene->addMcp(ref, nullptr);
        mcp = new SdcMcp(&m_db);
        item->setSdcMcp(mcp);
        mol->addSdcMcp(mcp);
    }
    if (mcp)
        rename(mcp, newName(u'c'));
}

void SceneHost::addFeature(SdcMcp *mcp, const QString &color)
{
    const ZelScene::Change change(m_scene.get());
    mcp->addTag(newName(u'f'), color);
    mcp->updateStatePropertyFromSticky();
}

void SceneHost::addBond(SdcBst *first, SdcBst *second)
{
    if (m_kind == OneMolecule || !first || !second || first == second
        || !first->getListSdcBstBst().isEmpty() || !second->getListSdcBstBst().isEmpty())
        return;
    const ZelScene::Change change(m_scene.get());
    m_scene->addSdcBstBstCpx(first, second);
}

void SceneHost::removeMolecule(SdcMol *mol)
{
    {
        const ZelScene::Change change(m_scene.get());
        mol->hideIndexCode();
        const QList<SdcMcp *> mcps = mol->getListSdcMcp();
        for (SdcMcp *mcp : mcps)
            m_scene->removeSdcMcp(mcp);
        forget(mol);
    }
    if (m_kind == OneMolecule)
        m_history->forget();
}

void SceneHost::cycleState(ZelRectItemMcpSticky *sticky)
{
    const ZelScene::Change change(m_scene.get());
    const int state = sticky->getStateType();
    setStickyState(sticky,
        state == ComponentStateOn        ? ComponentStateOff
            : state == ComponentStateOff ? ComponentStateDontCare
                                         : ComponentStateOn);
}

void SceneHost::rename(Sdc *sdc, const QString &name)
{
    const ZelScene::Change change(m_scene.get());
    sdc->setProperty(SdcProperty::ShortName, name);
}

void SceneHost::save(SdcMol *mol)
{
    if (!mol->saveToDb()) {
        m_fail(QLatin1String("a molecule cannot be saved: ") + m_db.errorText());
        return;
    }
    ZelScene scene;
    SdcMol stored(&m_db);
    if (!stored.loadFromDb(mol->getPsiimId(), &scene))
        m_fail(QStringLiteral("a stored molecule cannot be loaded"));
    m_fail(SceneChecks::sameDrawing(&stored, mol));
    m_history->settle(); // new ids are no change of the drawing
}

void SceneHost::load(const QString &psiimId, const QPointF &offset)
{
    if (m_kind == OneMolecule) {
        m_scene->removeAllItems();
        m_scene->setSdc(nullptr);
        for (SdcMol *mol : molecules())
            forget(mol);
    }
    QDomDocument layout;
    layout.setContent(ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), psiimId, &m_db));
    {
        const ZelScene::Change change(m_kind == OneMolecule ? nullptr : m_scene.get());
        auto *const mol = new SdcMol(&m_db);
        const QDomElement element = layout.documentElement().firstChildElement();
        if (!mol->loadDom(psiimId, element, m_scene.get(), offset, false))
            m_fail(QStringLiteral("a stored molecule cannot be loaded"));
        keep(mol);
    }
    if (m_kind == OneMolecule)
        m_history->forget();
}

void SceneHost::destroy(QObject *object)
{
    if (!object)
        return;
    if (!m_untidy) {
        m_untidy = true;
        m_scene->beginChange();
    }
    delete object;
}

void SceneHost::tidy()
{
    if (!m_untidy)
        return;
    const auto isGhost = [](QGraphicsItem *item) {
        ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(item);
        ZelLineItem *const line = ZelGItem::toZelLineItem(item);
        ZelRectItemMcpSticky *const sticky = ZelGItem::toZelRectItemMcpSticky(item);
        return (ellipse && !ellipse->getSdc())
            || (line && line->asLineItemBstBst() && !line->getSdc())
            || (sticky && !sticky->getSdcMcpTag());
    };
    for (;;) { // anew after each, which takes its children along
        const QList<QGraphicsItem *> items = m_scene->items(Qt::AscendingOrder);
        const auto ghost = std::find_if(items.cbegin(), items.cend(), isGhost);
        if (ghost == items.cend())
            break;
        delete *ghost;
    }
    for (SdcMcp *mcp : SceneParts::components(molecules())) {
        if (!mcp->getZelEllipseItemMcp())
            m_scene->removeSdcMcp(mcp);
    }
    for (SdcBst *bst : SceneParts::sites(molecules())) {
        if (!bst->getZelEllipseItemBst())
            m_scene->removeSdcBst(bst);
    }
    for (SdcBstBst *bond : SceneParts::bonds(m_scene.get())) {
        if (bond->getListSdcBst().size() < 2 || !bond->getZelLineItemBstBst())
            m_scene->removeSdcBstBst(bond);
    }
    for (SdcMcp *mcp : SceneParts::components(molecules()))
        mcp->updateStatePropertyFromSticky();
    m_molecules.removeIf([](const QPointer<SdcMol> &mol) { return !mol; });
    m_untidy = false;
    m_scene->endChange();
}

void SceneHost::close(int order)
{
    if (!m_scene)
        return;
    m_scene->disconnect(this);
    m_scene->disconnect(m_history.get());
    const auto closeMolecules = [this] {
        for (SdcMol *mol : molecules())
            forget(mol);
        m_model.clear();
    };
    if (order == 0)
        m_scene.reset();
    if (order == 1)
        closeMolecules();
    m_view.reset();
    m_scene.reset();
    closeMolecules();
}

void SceneHost::setStickyState(ZelRectItemMcpSticky *sticky, int state)
{
    if (state == sticky->getStateType())
        return;
    sticky->setStateType(state, false);
    if (SdcMcp *mcp = sticky->getSdcMcp())
        mcp->updateStatePropertyFromSticky();
}

void SceneHost::setNegation(SdcMcp *mcp, bool negated)
{
    if (negated == (mcp->getProperty(SdcProperty::Negation) == u'1'))
        return;
    mcp->setProperty(SdcProperty::Negation, negated ? QStringLiteral("1") : QString());
    mcp->updateMcpNot();
}

void SceneHost::setBindingStatus(SdcBst *bst, BindingStatusType status)
{
    if (bst->getBindingStatus() != status)
        bst->setBindingStatus(status);
}

void SceneHost::keep(SdcMol *mol)
{
    m_molecules.append(mol);
    if (m_kind == OneMolecule)
        m_scene->setSdc(mol);
    else
        m_model.appendRow(mol);
}

void SceneHost::forget(SdcMol *mol)
{
    m_molecules.removeAll(mol);
    if (mol->model())
        m_model.takeRow(mol->row());
    delete mol;
}

QString SceneHost::newName(QChar kind)
{
    return kind + QString::number(++m_names);
}
