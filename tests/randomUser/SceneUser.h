#pragma once

#include "RandomSession.h"

#include <QPointer>

class Sdc;
class SdcBst;
class SdcBstBst;
class SdcMcp;
class SdcMol;
class ZelGItem;
class ZelRectItemMcpSticky;
class ZelScene;

/// A user of one scene, with the gestures that all scenes bear.
class SceneUser : public RandomSession
{
    Q_OBJECT
protected:
    using RandomSession::RandomSession;

    virtual ZelScene *scene() const = 0;
    virtual QGraphicsView *view() const = 0;
    virtual QList<SdcMol *> molecules() const = 0;
    /// In the middle of what nothing may interrupt.
    virtual bool isBusy() const = 0;
    QList<QGraphicsView *> views() const override { return {view()}; }
    /// After a press or right click on an item, where nothing else has happened.
    virtual void itemActedOn(ZelGItem *, const char *) { }

    /// To be called once there is a scene.
    void followScene();

    void drag();
    void click();
    void contextMenu();
    void hover();
    void turnWheel();
    void pressKey();
    /// While the scene is frozen, by that function of its.
    void frozenGesture(void (ZelScene::*freeze)(bool));

    SdcMol *anyMolecule() { return m_dice.anyOf(molecules()); }
    SdcMcp *anyComponent();
    SdcBst *anySite();
    SdcBstBst *anyBond();
    ZelRectItemMcpSticky *anySticky();
    QPointF anyPoint();
    /// A component, site, bond or feature; what is being pressed is the most interesting.
    Sdc *anyVictim();
    /// What draws it.
    static QObject *itemOf(Sdc *sdc);
    static QString nameOf(Sdc *sdc);

private:
    void mouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button = Qt::NoButton);

    QPointer<ZelGItem> m_pressed;
    int m_clicks = 0;
};
