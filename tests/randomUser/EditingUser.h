#pragma once

#include "RandomModel.h"
#include "SceneUser.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"

#include <QPointer>

#include <memory>

class ZelGraphicsViewZoom;
class ZelSceneEditing;

/// A user who does anything to a scene of a complex or an interaction, while things are destroyed
/// and changes taken back at any moment.
class EditingUser : public SceneUser
{
    Q_OBJECT
public:
    enum Kind { Complex, TemporaryComplex, MoleculeInteraction, ComplexInteraction };

    EditingUser(Kind kind, quint32 seed);
    ~EditingUser() override;

private:
    ZelScene *scene() const override;
    QGraphicsView *view() const override;
    QList<SdcMol *> molecules() const override;
    bool isBusy() const override { return m_restoring || m_changing; }
    void step() override;
    void check() override;
    void close() override;
    std::vector<Act> mishaps() override;

    void drop();
    void load();
    void turn();
    void save();
    void showSdc();
    void goBack();
    void destroy();
    /// What a host does after a destruction that the scene knows nothing of.
    void startAfresh();

    void changeBegins();
    void changeEnds();

    Kind m_kind;
    RandomModel m_model;
    QStringList m_records; // that can be dropped
    QPointer<Sdc> m_sdc; // the host's own
    std::unique_ptr<ZelSceneEditing> m_scene;
    std::unique_ptr<ZelGraphicsViewZoom> m_view;
    QList<ZelSceneState> m_states; // all that were announced
    ZelSceneState m_known; // after the last change that was announced
    bool m_changing = false;
    bool m_restoring = false;
    bool m_dirty = false; // something has been destroyed behind the scene's back
};
