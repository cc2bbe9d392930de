#include "EditingUser.h"

#include "SceneChecks.h"
#include "SceneParts.h"
#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"
#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

namespace {

constexpr qsizetype MostStates = 12;
constexpr qsizetype MostMolecules = 7;

std::unique_ptr<ZelSceneEditing> createScene(EditingUser::Kind kind)
{
    switch (kind) {
    case EditingUser::Complex:
        return std::make_unique<ZelSceneCpx>();
    case EditingUser::TemporaryComplex:
        return std::make_unique<ZelSceneCpxTemp>();
    case EditingUser::MoleculeInteraction:
        return std::make_unique<ZelSceneMli>();
    default:
        return std::make_unique<ZelSceneCxi>();
    }
}

} // namespace

EditingUser::EditingUser(Kind kind, quint32 seed)
    : SceneUser(seed,
        {"name = ",
            // A species is the same without a part that was removed before it was saved, but that
            // part then has no place in the layout.
            "Error found at void SdcMol::loadDom(", "Warning at bool SdcCpx::saveToDb()",
            "978 Error found"}),
      m_kind(kind), m_scene(createScene(kind)), m_view(std::make_unique<ZelGraphicsViewZoom>())
{
    fail(m_model.fault());
    m_records = m_model.records({"mol", "cpx", "cpa"});
    m_records.append({"mol;mol99", "cpa;", "x;y"});
    m_scene->setZelDbSqliteModel(m_model.db());
    m_view->setScene(m_scene.get());
    m_view->resize(620, 420);
    m_view->setSceneRect(-300.0, -200.0, 600.0, 400.0);
    m_view->show();
    connect(m_scene.get(), &ZelScene::signal_changeBegin, this, &EditingUser::changeBegins);
    connect(m_scene.get(), &ZelScene::signal_changeEnd, this, &EditingUser::changeEnds);
    followScene();
    const auto rarely = [this] { mishap(2); };
    connect(m_scene.get(), &ZelScene::signal_refused, this, rarely);
    m_known = ZelSceneState::take(m_scene.get());
}

EditingUser::~EditingUser() = default;

void EditingUser::close()
{
    m_scene->disconnect(this);
    const int order = m_dice.below(3);
    if (order == 0)
        delete m_sdc.data();
    if (order == 1)
        m_view.reset();
    m_scene.reset();
    m_view.reset();
    delete m_sdc.data();
}

void EditingUser::step()
{
    if (SceneParts::components(molecules()).size() < 3 && m_dice.chance(60))
        drop();
    else
        doOneOf({
            {40, [this] { drag(); }},
            {10, [this] { click(); }},
            {15, [this] { contextMenu(); }},
            {3, [this] { turnWheel(); }},
            {3, [this] { hover(); }},
            {5, [this] { pressKey(); }},
            {7, [this] { drop(); }},
            {10, [this] { goBack(); }},
            {1, [this] { load(); }},
            {2, [this] { frozenGesture(&ZelScene::setReadOnly); }},
            {1, [this] { turn(); }},
            {1, [this] { save(); }},
            {1, [this] { showSdc(); }},
            {2, [this] { mishap(); }},
        });
    if (m_dirty)
        startAfresh();
}

void EditingUser::drop()
{
    QString record = m_dice.anyOf(m_records);
    if (molecules().size() >= MostMolecules)
        record = QStringLiteral("mol;mol99");
    log(QLatin1String("drop ") + record);
    const QPointF at = anyPoint();
    const std::unique_ptr<QMimeData> data(ZelSceneEditing::createPsiimIdMimeData(record));
    const QPoint pos = m_view->mapFromScene(at);
    QDragEnterEvent enter(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &enter);
    mishap(3);
    QDragMoveEvent over(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_view->viewport(), &over);
    if (over.isAccepted() && m_dice.chance(95)) {
        QDropEvent event(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_view->viewport(), &event);
    } else {
        QDragLeaveEvent leave;
        QApplication::sendEvent(m_view->viewport(), &leave);
    }
    if (!over.isAccepted())
        m_scene->addRecordFromDb(record.section(u';', 0, 0), record.section(u';', 1), at);
}

void EditingUser::load()
{
    const QString id = m_dice.anyOf(m_records).section(u';', 1);
    log(QLatin1String("load ") + id);
    m_scene->loadSdc(id);
}

void EditingUser::turn()
{
    log("turn");
    if (SdcMol *mol = anyMolecule())
        m_scene->rotateUnit(m_scene->getUnit(mol), 90.0, m_dice.chance(50));
}

void EditingUser::save()
{
    auto *const cpxScene = qobject_cast<ZelSceneCpx *>(m_scene.get());
    SdcCpx *const cpx = cpxScene ? cpxScene->getSdcCpx() : nullptr;
    if (!cpx || cpx->isEmpty())
        return;
    log("save");
    cpx->adoptStoredSpecies();
    if (cpx->saveToDbCpx())
        cpx->saveToDbCpa();
    m_known = ZelSceneState::take(m_scene.get()); // new ids and another order
}

// A data component of the host's takes the place of what was shown, or nothing does.
void EditingUser::showSdc()
{
    const bool none = m_dice.chance(30);
    log(none ? "show nothing" : "show another component");
    m_scene->removeContents();
    Sdc *shown = nullptr;
    if (!none && m_kind == MoleculeInteraction)
        shown = new SdcMli(m_model.db());
    else if (!none && m_kind == ComplexInteraction)
        shown = new SdcCxi(m_model.db());
    else if (!none)
        shown = new SdcCpx(m_model.db());
    const QPointer<Sdc> old = m_sdc;
    m_sdc = shown;
    m_scene->setSdc(shown);
    delete old.data();
    m_states.clear();
    m_known = ZelSceneState::take(m_scene.get());
}

std::vector<RandomSession::Act> EditingUser::mishaps()
{
    return {
        {12, [this] { m_scene->removeSdcMcp(anyComponent()); }},
        {11, [this] { m_scene->removeSdcBst(anySite()); }},
        {11, [this] { m_scene->removeBond(anyBond()); }},
        {11, [this] { m_scene->removeUnit(m_scene->getUnit(anyMolecule())); }},
        {25, [this] { destroy(); }},
        {15, [this] { goBack(); }},
        {5, [this] { load(); }},
        {5, [this] { m_scene->removeContents(); }},
        {5,
            [this] {
                m_scene->removeAllItems();
                m_dirty = true; // molecules without components
            }},
    };
}

void EditingUser::destroy()
{
    m_dirty = true;
    Sdc *const sdc = anyVictim();
    SdcMol *const mol = anyMolecule();
    const QList<QObject *> candidates{sdc, sdc, sdc, sdc ? itemOf(sdc) : nullptr,
        sdc ? itemOf(sdc) : nullptr, mol ? m_scene->getUnit(mol) : nullptr, m_sdc};
    QObject *const victim = m_dice.anyOf(candidates);
    log(QLatin1String("destroy a ")
        + QLatin1String(victim ? victim->metaObject()->className() : "nothing"));
    delete victim;
}

void EditingUser::startAfresh()
{
    m_scene->removeContents();
    m_scene->removeAllItems();
    m_dirty = false;
    m_states.clear();
    m_known = ZelSceneState::take(m_scene.get());
    if (!m_scene->items().isEmpty())
        fail("items are left in an empty scene");
}

void EditingUser::changeBegins()
{
    if (m_changing)
        fail("a change begins within another");
    m_changing = true;
    if (!m_dirty && ZelSceneState::take(m_scene.get()) != m_known)
        fail("something had changed before it was announced");
}

void EditingUser::changeEnds()
{
    m_changing = false;
    m_known = ZelSceneState::take(m_scene.get());
    m_states.append(m_known);
    if (m_states.size() > MostStates)
        m_states.removeFirst();
}

void EditingUser::goBack()
{
    if (m_dirty || m_changing || m_states.isEmpty())
        return;
    log("go back to a state");
    const ZelSceneState state = m_dice.anyOf(m_states);
    m_restoring = true;
    const bool done = state.restore(m_scene.get());
    m_restoring = false;
    m_known = ZelSceneState::take(m_scene.get());
    if (!done && m_scene->getSdc())
        fail("a state is not restored");
    if (done && m_known != state)
        fail("a restored state differs from the one that was taken");
}

void EditingUser::check()
{
    if (!m_changing && ZelSceneState::take(m_scene.get()) != m_known)
        fail("something has changed without being announced");
    // The result of an interaction is drawn elsewhere.
    const LiveObjects *const objects = m_kind == ComplexInteraction ? nullptr : &m_objects;
    fail(SceneChecks::consistent(m_scene.get(), molecules(), objects));
    if (m_scene->isDrawingBond() && !m_buttons.testFlag(Qt::LeftButton))
        fail("a bond is being drawn without a button");
}

ZelScene *EditingUser::scene() const
{
    return m_scene.get();
}

QGraphicsView *EditingUser::view() const
{
    return m_view.get();
}

QList<SdcMol *> EditingUser::molecules() const
{
    Sdc *const sdc = m_scene->getSdc();
    return sdc ? sdc->getListSdcMol() : QList<SdcMol *>();
}
