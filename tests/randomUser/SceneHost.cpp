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
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QAbstractItemModelTester>
#include <QDomDocument>

namespace {

constexpr qsizetype UndoDepth = 30;
constexpr qsizetype Bookmarks = 8;

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

SceneHost::SceneHost(Kind kind) : m_kind(kind)
{
    m_file.create(QStringLiteral(":memory:"));
    new QAbstractItemModelTester(
        &m_model, QAbstractItemModelTester::FailureReportingMode::Warning, &m_model);
    if (kind == OneMolecule)
        m_scene = std::make_unique<ZelSceneMol>(nullptr);
    else
        m_scene = std::make_unique<SceneOfSeveral>();
    m_scene->setZelDbSqliteModel(&m_db);
    if (kind == Complex) {
        m_cpx = new SdcCpx(&m_db);
        m_model.appendRow(m_cpx);
        m_scene->setSdc(m_cpx);
        m_cpx->setBstBindingStatusEnabled(true);
    }
    m_scene->setAllowToDisplayBindingStatus(kind != OneMolecule);
    m_scene->setAllowToChangeBindingStatus(kind != OneMolecule);
    connect(m_scene.get(), &ZelScene::signal_changeBegin, this, &SceneHost::changeBegins);
    connect(m_scene.get(), &ZelScene::signal_changeEnd, this, &SceneHost::changeEnds);
    connect(m_scene.get(), &ZelScene::signal_setStickyState, this, &SceneHost::setStickyState);
    connect(m_scene.get(), &ZelScene::signal_setNegation, this, &SceneHost::setNegation);
    connect(
        m_scene.get(), &ZelScene::signal_setBstBindingStatus, this, &SceneHost::setBindingStatus);
    m_known = ZelSceneState::take(m_scene.get());
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

void SceneHost::setFault(const QString &fault)
{
    if (m_fault.isEmpty())
        m_fault = fault;
}

void SceneHost::setDragMode(DragMode mode)
{
    if (m_kind != OneMolecule)
        static_cast<SceneOfSeveral *>(m_scene.get())->mode = mode;
}

void SceneHost::toggleSecondView()
{
    if (m_secondView) {
        m_secondView.reset();
        return;
    }
    m_secondView = std::make_unique<QGraphicsView>(m_scene.get());
    m_secondView->resize(100, 80);
    m_secondView->scale(0.2, 0.2);
    m_secondView->show();
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
            setFault(SceneChecks::apart(m_scene.get(), {mcp->getZelEllipseItemMcp()}));
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
    SdcBstBstCpx *const bond = m_scene->addSdcBstBstCpx(first, second);
    if (m_cpx)
        m_cpx->addSdcBstBstCpx(bond);
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
    if (m_kind == OneMolecule) {
        m_undo.clear();
        m_redo.clear();
    }
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
        setFault(QLatin1String("a molecule cannot be saved: ") + m_db.errorText());
        return;
    }
    ZelScene scene;
    SdcMol stored(&m_db);
    if (!stored.loadFromDb(mol->getPsiimId(), &scene))
        setFault(QStringLiteral("a stored molecule cannot be loaded"));
    setFault(SceneChecks::sameDrawing(&stored, mol));
    m_known = ZelSceneState::take(m_scene.get()); // new ids are no change of the drawing
}

void SceneHost::load(const QString &psiimId, const QPointF &offset)
{
    if (m_kind == OneMolecule) {
        m_scene->removeAllItems();
        m_scene->setSdc(nullptr);
        for (SdcMol *mol : molecules())
            forget(mol);
        m_undo.clear();
        m_redo.clear();
    }
    QDomDocument layout;
    layout.setContent(ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), psiimId, &m_db));
    {
        const ZelScene::Change change(m_kind == OneMolecule ? nullptr : m_scene.get());
        auto *const mol = new SdcMol(&m_db);
        const QDomElement element = layout.documentElement().firstChildElement();
        if (!mol->loadDom(psiimId, element, m_scene.get(), offset, false))
            setFault(QStringLiteral("a stored molecule cannot be loaded"));
        keep(mol);
    }
    if (m_kind == OneMolecule)
        m_known = ZelSceneState::take(m_scene.get());
}

void SceneHost::undo()
{
    if (m_undo.isEmpty())
        return;
    const Entry entry = m_undo.takeLast();
    if (restore(entry.before))
        m_redo.append(entry);
}

void SceneHost::redo()
{
    if (m_redo.isEmpty())
        return;
    const Entry entry = m_redo.takeLast();
    if (restore(entry.after))
        m_undo.append(entry);
}

void SceneHost::bookmark()
{
    m_bookmarks.append(take());
    if (m_bookmarks.size() > Bookmarks)
        m_bookmarks.removeFirst();
}

void SceneHost::restoreBookmark(int index)
{
    if (index >= m_bookmarks.size())
        return;
    const Snapshot before = take();
    const Snapshot snapshot = m_bookmarks.at(index);
    if (!restore(snapshot)) {
        m_bookmarks.removeAt(index);
        return;
    }
    if (!m_changing)
        m_undo.append({before, snapshot});
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
    for (bool again = true; again;) {
        again = false;
        const QList<QGraphicsItem *> items = m_scene->items(Qt::AscendingOrder);
        for (QGraphicsItem *graphicsItem : items) {
            ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(graphicsItem);
            ZelLineItem *const line = ZelGItem::toZelLineItem(graphicsItem);
            ZelRectItemMcpSticky *const sticky = ZelGItem::toZelRectItemMcpSticky(graphicsItem);
            const bool ghost = (ellipse && !ellipse->getSdc())
                || (line && line->asLineItemBstBst() && !line->getSdc())
                || (sticky && !sticky->getSdcMcpTag());
            if (!ghost)
                continue;
            delete graphicsItem; // and its children, so the list is out of date
            again = true;
            break;
        }
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

void SceneHost::checkAnnounced()
{
    if (!m_changing && ZelSceneState::take(m_scene.get()) != m_known)
        setFault(QStringLiteral("something has changed without being announced"));
}

void SceneHost::close(int order)
{
    if (!m_scene)
        return;
    m_scene->disconnect(this);
    const auto closeViews = [this] {
        m_secondView.reset();
        m_view.reset();
    };
    const auto closeMolecules = [this] {
        for (SdcMol *mol : molecules())
            forget(mol);
        m_model.clear();
    };
    if (order == 0)
        m_scene.reset();
    if (order == 1)
        closeMolecules();
    closeViews();
    m_scene.reset();
    closeMolecules();
}

void SceneHost::changeBegins()
{
    if (m_changing)
        setFault(QStringLiteral("a change begins within another"));
    m_changing = true;
    m_before = take();
    if (m_before.state != m_known)
        setFault(QStringLiteral("something had changed before it was announced"));
}

void SceneHost::changeEnds()
{
    if (!m_changing)
        setFault(QStringLiteral("a change ends that has not begun"));
    m_changing = false;
    const Snapshot after = take();
    m_known = after.state;
    if (after.state == m_before.state)
        return;
    m_undo.append({m_before, after});
    if (m_undo.size() > UndoDepth)
        m_undo.removeFirst();
    m_redo.clear();
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

SceneHost::Snapshot SceneHost::take() const
{
    Snapshot snapshot;
    snapshot.state = ZelSceneState::take(m_scene.get());
    for (SdcMol *mol : molecules())
        snapshot.molecules.append(mol);
    return snapshot;
}

bool SceneHost::restore(const Snapshot &snapshot)
{
    const ZelSceneState before = ZelSceneState::take(m_scene.get());
    m_restoring = true;
    const bool done = snapshot.state.restore(m_scene.get());
    m_restoring = false;
    const ZelSceneState after = ZelSceneState::take(m_scene.get());
    if (done && after != snapshot.state)
        setFault(QStringLiteral("a restored state differs from the one that was taken"));
    if (!done && after != before)
        setFault(QStringLiteral("a refused restoration has changed something"));
    // A data component holds its molecules, whichever they are.
    const bool gone = snapshot.molecules.contains(nullptr)
        || (m_kind != LooseMolecules && snapshot.molecules != take().molecules);
    if (!done && !gone)
        setFault(QStringLiteral("a state of living molecules is not restored"));
    m_known = after;
    return done;
}

void SceneHost::keep(SdcMol *mol)
{
    m_molecules.append(mol);
    if (m_kind == OneMolecule)
        m_scene->setSdc(mol);
    else if (m_cpx)
        m_cpx->addSdcChild(mol, true);
    else
        m_model.appendRow(mol);
}

void SceneHost::forget(SdcMol *mol)
{
    m_molecules.removeAll(mol);
    if (m_cpx)
        m_cpx->removeSdcChild(mol);
    else if (mol->model())
        m_model.takeRow(mol->row());
    delete mol;
}

QString SceneHost::newName(QChar kind)
{
    return kind + QString::number(++m_names);
}
