#include "SceneHistory.h"

#include "SceneParts.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"

namespace {

constexpr qsizetype Depth = 20;

} // namespace

SceneHistory::SceneHistory(ZelScene *scene, const LiveObjects *objects, Fail fail)
    : m_scene(scene), m_objects(objects), m_fail(std::move(fail)), m_known(take())
{
    connect(scene, &ZelScene::signal_changeBegin, this, &SceneHistory::changeBegins);
    connect(scene, &ZelScene::signal_changeEnd, this, &SceneHistory::changeEnds);
}

void SceneHistory::undo()
{
    if (m_undo.isEmpty())
        return;
    const Entry entry = m_undo.takeLast();
    if (restore(entry.before))
        m_redo.append(entry);
}

void SceneHistory::redo()
{
    if (m_redo.isEmpty())
        return;
    const Entry entry = m_redo.takeLast();
    if (restore(entry.after))
        m_undo.append(entry);
}

void SceneHistory::jump(RandomDice *dice)
{
    const Entry entry = dice->anyOf(m_undo + m_redo);
    const Snapshot target = dice->chance(50) ? entry.before : entry.after;
    if (m_undo.isEmpty() && m_redo.isEmpty())
        return;
    const Snapshot before = take();
    if (restore(target) && !m_changing)
        m_undo.append({before, target});
}

void SceneHistory::settle()
{
    m_known = take();
}

void SceneHistory::forget()
{
    m_undo.clear();
    m_redo.clear();
    m_blind = false;
    settle();
}

void SceneHistory::check()
{
    if (!m_changing && !m_blind && ZelSceneState::take(m_scene) != m_known.state)
        m_fail(QStringLiteral("something has changed without being announced"));
}

void SceneHistory::changeBegins()
{
    if (m_changing)
        m_fail(QStringLiteral("a change begins within another"));
    m_changing = true;
    m_before = take();
    if (!m_blind && m_before.state != m_known.state)
        m_fail(QStringLiteral("something had changed before it was announced"));
}

void SceneHistory::changeEnds()
{
    if (!m_changing)
        m_fail(QStringLiteral("a change ends that has not begun"));
    m_changing = false;
    settle();
    if (m_known.state == m_before.state)
        return;
    m_undo.append({m_before, m_known});
    if (m_undo.size() > Depth)
        m_undo.removeFirst();
    m_redo.clear();
}

SceneHistory::Snapshot SceneHistory::take() const
{
    Snapshot snapshot{ZelSceneState::take(m_scene), {}, {}};
    if (Sdc *sdc = m_scene->getSdc()) {
        for (const int key : {SdcProperty::ShortName, SdcProperty::Name, SdcProperty::Notes,
                 SdcProperty::AssociationRate, SdcProperty::DissociationRate})
            snapshot.ownTexts.append(sdc->getProperty(key));
    }
    for (SdcMol *mol : SceneParts::molecules(m_scene))
        snapshot.molecules.append(mol);
    return snapshot;
}

bool SceneHistory::restore(const Snapshot &snapshot)
{
    if (m_blind)
        return false;
    const ZelSceneState before = ZelSceneState::take(m_scene);
    const bool mayBeRefused = this->mayBeRefused(snapshot);
    QList<QPair<QPointer<Sdc>, QString>> ids;
    for (Sdc *sdc : m_objects->all<Sdc>()) {
        // Another drawing may make it another record.
        if (!sdc->isSdcCpx() && !sdc->isSdcMli() && !sdc->isSdcCxi())
            ids.append({sdc, sdc->getPsiimId()});
    }
    m_restoring = true;
    const bool done = snapshot.state.restore(m_scene);
    m_restoring = false;
    ++m_restorations;
    settle();
    if (done && m_known.state != snapshot.state)
        m_fail(QStringLiteral("a restored state differs from the one that was taken"));
    if (!done && m_known.state != before)
        m_fail(QStringLiteral("a refused restoration has changed something"));
    if (!done && !mayBeRefused)
        m_fail(QStringLiteral("a state of living molecules is not restored"));
    for (const auto &[sdc, id] : std::as_const(ids)) {
        if (sdc && sdc->getPsiimId() != id)
            m_fail(QStringLiteral("going back gives %1 the id \"%2\" in place of \"%3\"")
                       .arg(sdc->text(), sdc->getPsiimId(), id));
    }
    if (done && !snapshot.ownTexts.isEmpty() && m_known.ownTexts != snapshot.ownTexts)
        m_fail(QStringLiteral("going back leaves the scene's component as \"%1\", which was \"%2\"")
                   .arg(m_known.ownTexts.join(u'|'), snapshot.ownTexts.join(u'|')));
    return done;
}

/// A scene that does not make molecules cannot bring them back, nor take those away that a data
/// component holds.
bool SceneHistory::mayBeRefused(const Snapshot &snapshot) const
{
    Sdc *const sdc = m_scene->getSdc();
    if (qobject_cast<ZelSceneEditing *>(m_scene))
        return !sdc;
    return snapshot.molecules.contains(nullptr) || (sdc && snapshot.molecules != take().molecules);
}
