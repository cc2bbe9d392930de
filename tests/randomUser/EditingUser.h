#pragma once

#include "RandomModel.h"
#include "SceneHistory.h"
#include "SceneUser.h"

#include <QPointer>
#include <QSet>

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
    bool isBusy() const override { return m_history->isRestoring() || m_history->isChanging(); }
    void step() override;
    void check() override;
    void close() override;
    std::vector<Act> mishaps() override;
    void itemActedOn(ZelGItem *item, const char *gesture) override;

    void drop();
    void load();
    void save();
    bool saveSdc(Sdc *sdc);
    bool isWhole();
    void edit();
    void showSdc();
    void goBack();
    void destroy();
    /// What a host does after a destruction that the scene knows nothing of.
    void startAfresh();

    QList<Sdc *> units() const;
    void checkFreed(const QList<QPointer<SdcBst>> &before);

    Kind m_kind;
    RandomModel m_model;
    QStringList m_records; // that can be dropped
    QPointer<Sdc> m_sdc; // the host's own
    std::unique_ptr<ZelSceneEditing> m_scene;
    std::unique_ptr<ZelGraphicsViewZoom> m_view;
    const Sdc *m_announced = nullptr; // as selected; may have died since
    QSet<const SdcBst *> m_chosen; // sites that the user has given a status in this step
    int m_edits = 0;
    std::unique_ptr<SceneHistory> m_history; // blind after a destruction behind the scene's back
};
