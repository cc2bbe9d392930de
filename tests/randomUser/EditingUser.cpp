#include "EditingUser.h"

#include "SaveCheck.h"
#include "SceneChecks.h"
#include "SceneParts.h"
#include "zelModelSupport/graphics/ZelGraphicsViewZoom.h"
#include "zelModelSupport/graphics/ZelLineItem.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneCpxTemp.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

#include <algorithm>

namespace {

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
        {"name = ", "Warning at bool SdcCpx::saveToDb()", "978 Error found",
            // A drawing that is not complete.
            "bool SdcMli::saveToDb()", "bool SdcCxi::saveToDb()", "::saveResultToDb()"}),
      m_kind(kind), m_scene(createScene(kind)), m_view(std::make_unique<ZelGraphicsViewZoom>())
{
    fail(m_model.fault());
    m_records = m_model.records({kind == ComplexInteraction ? "cpa" : "mol", "cpx", "cpa"});
    m_records.append({"mol;mol99", "cpa;", "x;y"});
    m_scene->setZelDbSqliteModel(m_model.db());
    m_view->setScene(m_scene.get());
    m_view->resize(620, 420);
    m_view->setSceneRect(-300.0, -200.0, 600.0, 400.0);
    m_view->show();
    m_history = std::make_unique<SceneHistory>(
        m_scene.get(), &m_objects, [this](const QString &what) { fail(what); });
    followScene();
    connect(m_scene.get(), &ZelSceneEditing::signal_selectionChanged, this,
        [this](Sdc *sdc) { m_announced = sdc; });
    connect(m_scene.get(), &ZelScene::signal_setBstBindingStatus, this,
        [this](SdcBst *site) { m_chosen.insert(site); });
    const auto rarely = [this] { mishap(2); };
    connect(m_scene.get(), &ZelScene::signal_refused, this, rarely);
}

EditingUser::~EditingUser() = default;

void EditingUser::close()
{
    m_scene->disconnect(this);
    m_scene->disconnect(m_history.get());
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
    QList<QPointer<SdcBst>> bonded;
    for (SdcBst *site : SceneParts::sites(molecules())) {
        if (site->isInCpxBinding())
            bonded.append(site);
    }
    const int restorations = m_history->restorations();
    const int mishapsBefore = mishapCount();
    m_chosen.clear();
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
            {1,
                [this] {
                    m_scene->rotateUnit(m_scene->getUnit(anySite()), 90.0, m_dice.chance(50));
                }},
            {8, [this] { save(); }},
            {4, [this] { edit(); }},
            {1, [this] { showSdc(); }},
            {2, [this] { mishap(); }},
        });
    if (m_history->isBlind())
        startAfresh();
    else if (m_history->restorations() == restorations && mishapCount() == mishapsBefore)
        checkFreed(bonded);
}

void EditingUser::checkFreed(const QList<QPointer<SdcBst>> &before)
{
    for (const QPointer<SdcBst> &site : before) {
        if (site && !m_chosen.contains(site) && !site->isInCpxBinding()
            && site->getBindingStatus() == BindingStatusBound)
            fail(QLatin1String("a site is Bound to nobody since its bond has gone: ")
                + nameOf(site));
    }
}

void EditingUser::drop()
{
    QString record = m_dice.anyOf(m_records);
    if (molecules().size() >= MostMolecules)
        record = QStringLiteral("mol;mol99");
    log(QLatin1String("drop ") + record);
    const QPointF at = anyPoint();
    const QList<Sdc *> before = units();
    const int mishapsBefore = mishapCount();
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
    QList<Sdc *> added = units();
    added.removeIf([&before](Sdc *unit) { return before.contains(unit); });
    Sdc *const selected = m_scene->getSelectedSdc();
    const bool isOld =
        added.size() == 1 ? !selected || before.contains(selected) : selected && !added.isEmpty();
    if (isOld && mishapCount() == mishapsBefore)
        fail(QLatin1String("a drop does not select what it has brought, but ") + nameOf(selected));
}

QList<Sdc *> EditingUser::units() const
{
    Sdc *const sdc = m_scene->getSdc();
    return sdc ? sdc->getListSdcChildren() : QList<Sdc *>();
}

void EditingUser::itemActedOn(ZelGItem *item, const char *gesture)
{
    ZelLineItem *const line = item->asLineItem();
    ZelRectItemMcpSticky *const sticky = item->asRectItemMcpSticky();
    SdcBst *const site = item->getSdc() ? item->getSdc()->toSdcBst() : nullptr;
    Sdc *const selected = m_scene->getSelectedSdc();
    Sdc *const due = line ? item->getSdc()
        : sticky          ? m_scene->getUnit(sticky->getSdcMcp())
                          : m_scene->getUnit(item->getSdc());
    const bool isBondOfSite =
        site && selected && selected->toSdcBstBst() && selected->toSdcBstBst()->hasSdcBst(site);
    if (due && selected != due && !isBondOfSite)
        fail(QStringLiteral("a %1 does not select what it acts on: %2 and not %3")
                 .arg(QLatin1String(gesture), nameOf(selected), nameOf(due)));
}

void EditingUser::load()
{
    const QString id = m_dice.anyOf(m_model.records({"cpx", "cpa", "mli", "cai"})).section(u';', 1);
    log(QLatin1String("load ") + id);
    m_scene->loadSdc(id);
}

void EditingUser::save()
{
    Sdc *const sdc = m_scene->getSdc();
    if (!sdc || sdc->isEmpty() || !isWhole())
        return;
    const SaveCheck check(&m_model, sdc);
    const bool saved = saveSdc(sdc);
    log(saved ? QStringLiteral("save") : QLatin1String("save in vain: ") + sdc->getRefusal());
    if (!saved && sdc->getRefusal().isEmpty())
        fail("a save is refused without a reason");
    m_history->settle(); // new ids and another order
    // A species is drawn before the interactions and reactions that make it.
    const QStringList ownToMend = sdc->isSdcCpx() ? QStringList{"reach", "bonds"} : QStringList();
    fail(check.fault(ownToMend));
    if (saved && m_dice.chance(30))
        showSdc(); // and draws the next one
}

/// Only a host can take a part out of a molecule that comes from the model.
bool EditingUser::isWhole()
{
    for (SdcMol *mol : molecules()) {
        QStringList ids;
        for (SdcMcp *mcp : mol->getListSdcMcp()) {
            ids.append(mcp->getPsiimId());
            if (mcp->getListSdcBst().size()
                != m_model.db()->bstGetListPsiimIdBasedOnMcp(ids.last()).size())
                return false;
        }
        if (ids != m_model.db()->molGetListMcpPsiimId(mol->getPsiimId()))
            return false;
    }
    return true;
}

void EditingUser::edit()
{
    Sdc *const own = m_scene->getSdc();
    QList<Sdc *> candidates{own, own, own};
    for (SdcBstBst *bond : SceneParts::bonds(m_scene.get()))
        candidates.append(bond);
    Sdc *const sdc = m_dice.anyOf(candidates);
    const int key = m_dice.anyOf(QList<int>{SdcProperty::ShortName, SdcProperty::Name,
        SdcProperty::Notes, SdcProperty::AssociationRate, SdcProperty::DissociationRate});
    if (!sdc)
        return;
    const bool isRate = key == SdcProperty::AssociationRate || key == SdcProperty::DissociationRate;
    const QString value = QLatin1String(isRate ? "3." : "text") + QString::number(++m_edits);
    log(QStringLiteral("set property %1 of %2 to %3").arg(key).arg(nameOf(sdc), value));
    const ZelSceneState before = ZelSceneState::take(m_scene.get());
    {
        const ZelScene::Change change(m_scene.get());
        sdc->setProperty(key, value);
    }
    if (ZelSceneState::take(m_scene.get()) == before)
        fail(QLatin1String("an edit of a property is no change of the scene: ") + nameOf(sdc));
}

bool EditingUser::saveSdc(Sdc *sdc)
{
    if (SdcMli *mli = sdc->toSdcMli()) {
        if (!ZelDbSqlite::isUniqueShortName(
                "mli", mli->getProperty(SdcProperty::ShortName), mli->getPsiimId(), m_model.db()))
            mli->setProperty(SdcProperty::ShortName, QString());
        return mli->saveToDb();
    }
    if (SdcCxi *cxi = sdc->toSdcCxi())
        return cxi->saveToDbWithResults();
    SdcCpx *const cpx = sdc->toSdcCpx();
    cpx->adoptStoredSpecies();
    return cpx->saveToDbCpx() && cpx->saveToDbCpa();
}

// A data component of the host's takes the place of what was shown, or nothing does.
void EditingUser::showSdc()
{
    const bool none = m_dice.chance(30);
    log(none ? "show nothing" : "show another component");
    m_calm = true; // nothing may come back meanwhile
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
    m_calm = false;
    m_history->forget();
}

std::vector<RandomSession::Act> EditingUser::mishaps()
{
    return {
        {12, [this] { m_scene->removeSdcMcp(anyComponent()); }},
        {11, [this] { m_scene->removeSdcBst(anySite()); }},
        {11, [this] { m_scene->removeBond(anyBond()); }},
        {11, [this] { m_scene->removeUnit(m_scene->getUnit(anySite())); }},
        {25, [this] { destroy(); }},
        {15, [this] { goBack(); }},
        {5, [this] { load(); }},
        {5, [this] { m_scene->removeContents(); }},
        {5,
            [this] {
                m_scene->removeAllItems();
                m_history->setBlind(); // molecules without components
            }},
    };
}

void EditingUser::destroy()
{
    m_history->setBlind();
    Sdc *const sdc = anyVictim();
    SdcMol *const mol = anyMolecule();
    const QList<QObject *> candidates{sdc, sdc, sdc, sdc ? itemOf(sdc) : nullptr,
        sdc ? itemOf(sdc) : nullptr, mol ? m_scene->getUnit(anySite()) : nullptr, m_sdc};
    QObject *const victim = m_dice.anyOf(candidates);
    log(QLatin1String("destroy a ")
        + QLatin1String(victim ? victim->metaObject()->className() : "nothing"));
    delete victim;
}

void EditingUser::startAfresh()
{
    m_scene->removeContents();
    m_scene->removeAllItems();
    m_history->forget();
    if (!m_scene->items().isEmpty())
        fail("items are left in an empty scene");
}

void EditingUser::goBack()
{
    if (m_history->isChanging())
        return;
    log("go back to a state");
    m_history->jump(&m_dice);
}

void EditingUser::check()
{
    m_history->check();
    // The result of an interaction is drawn elsewhere.
    const LiveObjects *const objects = m_kind == ComplexInteraction ? nullptr : &m_objects;
    fail(SceneChecks::consistent(m_scene.get(), molecules(), objects));
    if (m_scene->isDrawingBond() && !m_buttons.testFlag(Qt::LeftButton))
        fail("a bond is being drawn without a button");
    Sdc *const selected = m_scene->getSelectedSdc();
    if (selected != m_announced)
        fail("what was selected has gone, or changed, without being announced");
    if (!m_buttons)
        fail(SceneChecks::glowing(m_scene.get(), selected));
    if (SdcCxi *cxi = m_kind == ComplexInteraction && m_scene->getSdc()
            ? m_scene->getSdc()->toSdcCxi()
            : nullptr)
        for (SdcBstBstCxi *bond : cxi->getListSdcBstBstCxi()) {
            for (SdcBst *site : bond->getListSdcBst()) {
                if (site->getStoredBindingStatus() == BindingStatusBound)
                    fail(QLatin1String("a site that is Bound is bonded again: ") + nameOf(site));
            }
        }
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
