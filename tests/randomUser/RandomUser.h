#pragma once

#include "SceneHost.h"
#include "SceneUser.h"

#include <memory>

class ZelEllipseItem;

/// A user who does anything to a scene, and things that happen at any moment: objects that are
/// destroyed, states that are restored, other molecules that are loaded.
class RandomUser : public SceneUser
{
    Q_OBJECT
public:
    RandomUser(SceneHost::Kind kind, quint32 seed);

private:
    ZelScene *scene() const override { return m_host->scene(); }
    QGraphicsView *view() const override { return m_host->view(); }
    QList<SdcMol *> molecules() const override { return m_host->molecules(); }
    bool isBusy() const override { return m_host->history()->isRestoring(); }
    void step() override;
    void check() override;
    void close() override;
    std::vector<Act> mishaps() override;

    void build();
    void turn();
    void reshape();
    void store();
    void load();
    void look();
    void undoAndRedo();
    void remove(Sdc *sdc);
    void destroySomething();

    void itemClicked(ZelGItem *item);
    void itemMoved(ZelGItem *item);
    void itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second);

    QList<SdcMcp *> anySelection();

    std::unique_ptr<SceneHost> m_host;
};
