#include "Editors.h"

#include <zelModelSupport/graphics/ZelSceneCpx.h>
#include <zelModelSupport/graphics/ZelSceneCxi.h>
#include <zelModelSupport/graphics/ZelSceneMli.h>
#include <zelModelSupport/graphics/ZelSceneMol.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCxi.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMli.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

namespace {

/// An editor of one kind, made of its scene, its data component, and how these load and save.
template <typename Scene, typename Component, auto Load, auto Save>
class EditorOf : public Editor
{
public:
    explicit EditorOf(ZelDbSqliteModel *db)
        : Editor(db, std::make_unique<Scene>(nullptr), std::make_unique<Component>(db))
    {
    }

protected:
    bool load(const QString &id) override
    {
        return Load(static_cast<Scene *>(scene()), static_cast<Component *>(sdc()), id);
    }
    bool write() override { return Save(static_cast<Component *>(sdc())); }
};

bool loadMol(ZelSceneMol *scene, SdcMol *mol, const QString &id)
{
    return mol->loadFromDb(id, scene);
}

bool saveMol(SdcMol *mol)
{
    return mol->saveToDb();
}

// A complex is opened and saved in the states of an alias: that is what reactions are about.
bool loadCpa(ZelSceneCpx *scene, SdcCpx *, const QString &id)
{
    return scene->loadAlias(id);
}

bool saveCpa(SdcCpx *cpx)
{
    cpx->adoptStoredSpecies();
    return cpx->saveToDbCpx() && cpx->saveToDbCpa();
}

bool loadMli(ZelSceneMli *scene, SdcMli *, const QString &id)
{
    return scene->load(id);
}

bool saveMli(SdcMli *mli)
{
    return mli->saveToDb();
}

bool loadCxi(ZelSceneCxi *scene, SdcCxi *, const QString &id)
{
    return scene->load(id);
}

bool saveCxi(SdcCxi *cxi)
{
    return cxi->saveToDb();
}

} // namespace

Editor::Editor(ZelDbSqliteModel *db, std::unique_ptr<ZelScene> scene, std::unique_ptr<Sdc> sdc)
    : m_db(db), m_sdc(std::move(sdc)), m_scene(std::move(scene))
{
    m_scene->setZelDbSqliteModel(db);
    m_scene->setSdc(m_sdc.get());
    m_scene->setAllowToDisplayBindingStatus(true);
    m_scene->setAllowToChangeBindingStatus(true);
    m_sdc->setBstBindingStatusEnabled(true);
    connect(m_scene.get(), &ZelScene::signal_changeBegin, this,
        [this] { m_undo.append(ZelSceneState::take(m_scene.get())); });
    connect(m_scene.get(), &ZelScene::signal_changeEnd, this, [this] {
        if (m_undo.isEmpty())
            return;
        if (m_undo.last() == ZelSceneState::take(m_scene.get())) {
            m_undo.removeLast(); // a menu was opened and left, or a move refused
            return;
        }
        m_redo.clear();
        m_isChanged = true;
        emit changed();
    });
}

Editor::~Editor() = default;

std::unique_ptr<Editor> Editor::create(const QString &tag, ZelDbSqliteModel *db)
{
    if (tag == QLatin1String("mol"))
        return std::make_unique<EditorOf<ZelSceneMol, SdcMol, loadMol, saveMol>>(db);
    if (tag == QLatin1String("cpa"))
        return std::make_unique<EditorOf<ZelSceneCpx, SdcCpx, loadCpa, saveCpa>>(db);
    if (tag == QLatin1String("mli"))
        return std::make_unique<EditorOf<ZelSceneMli, SdcMli, loadMli, saveMli>>(db);
    if (tag == QLatin1String("cai"))
        return std::make_unique<EditorOf<ZelSceneCxi, SdcCxi, loadCxi, saveCxi>>(db);
    return nullptr;
}

bool Editor::open(const QString &psiimId)
{
    const bool good = psiimId.isEmpty() || load(psiimId);
    m_undo.clear();
    m_redo.clear();
    m_isChanged = false;
    return good;
}

QString Editor::save()
{
    ZelDbTransaction transaction(m_db->database());
    const bool good = write();
    if (transaction.commit() && good) {
        m_isChanged = false;
        emit changed();
        return {};
    }
    const QString reason = m_db->errorText();
    return reason.isEmpty() ? tr("It was not saved: is all of it connected and named?") : reason;
}

void Editor::undo()
{
    step(&m_undo, &m_redo);
}

void Editor::redo()
{
    step(&m_redo, &m_undo);
}

void Editor::step(QList<ZelSceneState> *from, QList<ZelSceneState> *to)
{
    if (from->isEmpty())
        return;
    to->append(ZelSceneState::take(m_scene.get()));
    if (!from->takeLast().restore(m_scene.get()))
        to->removeLast();
    m_isChanged = true;
    emit changed();
}
