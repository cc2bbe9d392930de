#include "Editors.h"

#include <zelModelSupport/graphics/ZelSceneCpx.h>
#include <zelModelSupport/graphics/ZelSceneCxi.h>
#include <zelModelSupport/graphics/ZelSceneMli.h>
#include <zelModelSupport/graphics/ZelSceneMol.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCxi.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMli.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>

namespace {

/// An editor of one kind, made of its scene and its data component.
template <typename Scene, typename Component>
class EditorOf : public Editor
{
public:
    explicit EditorOf(ZelDbSqliteModel *db)
        : Editor(db, std::make_unique<Scene>(nullptr), std::make_unique<Component>(db))
    {
    }

protected:
    Scene *drawing() const { return static_cast<Scene *>(scene()); }
    Component *component() const { return static_cast<Component *>(sdc()); }
};

class MolEditor : public EditorOf<ZelSceneMol, SdcMol>
{
    using EditorOf::EditorOf;

    bool load(const QString &id) override { return component()->loadFromDb(id, drawing()); }
    bool write() override { return component()->saveToDb(); }
};

// A complex is opened and saved in the states of an alias: that is what reactions are about.
class CpaEditor : public EditorOf<ZelSceneCpx, SdcCpx>
{
    using EditorOf::EditorOf;

    bool load(const QString &id) override { return drawing()->loadAlias(id); }

    void prepare() override { component()->adoptStoredSpecies(); }
    QString refusal() override { return component()->getSaveRefusal(); }
    bool write() override { return component()->saveToDbCpx() && component()->saveToDbCpa(); }
};

class MliEditor : public EditorOf<ZelSceneMli, SdcMli>
{
    using EditorOf::EditorOf;

    Sdc *rated() const override { return sdc(); }
    bool load(const QString &id) override { return drawing()->load(id); }
    bool write() override { return component()->saveToDb(); }
};

class CaiEditor : public EditorOf<ZelSceneCxi, SdcCxi>
{
    using EditorOf::EditorOf;

    Sdc *rated() const override { return drawing()->getCurrentBond(); }
    bool load(const QString &id) override { return drawing()->load(id); }
    bool write() override { return component()->saveToDbWithResults(); }
};

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
    std::unique_ptr<Editor> editor;
    if (tag == QLatin1String("mol"))
        editor = std::make_unique<MolEditor>(db);
    if (tag == QLatin1String("cpa"))
        editor = std::make_unique<CpaEditor>(db);
    if (tag == QLatin1String("mli"))
        editor = std::make_unique<MliEditor>(db);
    if (tag == QLatin1String("cai"))
        editor = std::make_unique<CaiEditor>(db);
    if (editor) {
        editor->m_tag = tag;
        editor->m_idKey =
            tag == QLatin1String("cpa") ? SdcProperty::CpaPsiimId : SdcProperty::PsiimId;
    }
    return editor;
}

QString Editor::nameHolder()
{
    // Of a species, the complex has the name that its user gives.
    const QString word = m_tag == QLatin1String("cpa") ? QStringLiteral("cpx") : m_tag;
    const QString name = m_sdc->getProperty(SdcProperty::ShortName);
    return name.isEmpty()
        ? QString()
        : ZelDbSqlite::askShortName(word, name, m_sdc->getPsiimId(), m_db).psiimId;
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
    if (const QString reason = refusal(); !reason.isEmpty())
        return reason;
    ZelDbTransaction transaction(m_db->database());
    if (!write()) {
        const QString reason = m_sdc->getRefusal();
        return reason.isEmpty() ? m_db->errorText() : reason;
    }
    if (!transaction.commit())
        return m_db->errorText();
    m_isChanged = false;
    emit changed();
    return {};
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
