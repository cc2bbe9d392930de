#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/ZelModelSupportExport.h"

#include <QGraphicsScene>
#include <QList>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QString>

#include <optional>

class QAction;
class QGraphicsEllipseItem;
class QGraphicsView;
class QMenu;
class Sdc;
class SdcBst;
class SdcBstBst;
class SdcBstBstCpx;
class SdcCpx;
class SdcMcp;
class SdcMol;
class ZelDbSqliteModel;
class ZelEllipseItem;
class ZelEllipseItemBst;
class ZelEllipseItemMcp;
class ZelGItem;
class ZelLineItem;
class ZelLineItemBstBst;
class ZelLineItemMcpMcp;
class ZelRectItem;
class ZelRectItemMcpSticky;

/// The values of ZelScene::getZelSceneType().
namespace ZelSceneType {
enum Type : int { None = 0, Mol = 1, Cpx = 2, Mli = 3, Cxi = 4 };
}

/// The editing surface: turns mouse and menu actions on the items of data components into moves
/// and into signals to the host.
///
/// The scene owns its items and the bonds that it makes, but no other data component; the
/// removal functions alone destroy a component or site together with its drawing. Angles are
/// degrees, counter-clockwise on screen from the right; lengths are scene units.
class ZELMODELSUPPORT_EXPORT ZelScene : public QGraphicsScene
{
    Q_OBJECT
    Q_MOC_INCLUDE("zelModelSupport/graphics/ZelEllipseItem.h")
    Q_MOC_INCLUDE("zelModelSupport/graphics/ZelRectItemMcpSticky.h")
    Q_MOC_INCLUDE("zelModelSupport/zelModelSupportDataComponent/SdcBst.h")
    Q_MOC_INCLUDE("zelModelSupport/zelModelSupportDataComponent/SdcMcp.h")
public:
    explicit ZelScene(QObject *parent = nullptr);
    ~ZelScene() override;

    virtual void setSdc(Sdc *sdc);
    /// Also enables the context menu exactly when the scene is not read-only.
    virtual void setReadOnly(bool readOnly);
    virtual void setLimitedEdit(bool limitedEdit);
    virtual bool isLimitedEdit() const;

    // Hooks with trivial defaults, for the scenes that derive from this one.
    virtual void setZelSceneMode(int mode);
    /// Loads the record that the scene is for; false when it cannot.
    virtual bool loadSdc(const QString &psiimId);
    /// After a left press; null over empty space.
    virtual void itemPressed(ZelGItem *item);
    /// Before a drag moves anything; true when the scene has dealt with the move itself.
    virtual bool itemDragged(ZelGItem *item, const QPointF &scenePos);
    /// Before the press state of a left press is given up.
    virtual void itemReleased(ZelGItem *item, const QPointF &scenePos);
    /// After zelEllipseItemCollided().
    virtual void itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second);
    /// Whether the user may bond the two sites here.
    virtual bool isBondAllowed(SdcBst *first, SdcBst *second);
    /// Makes the bond of the scene's own kind; null when it may not be made.
    virtual SdcBstBst *addBond(SdcBst *first, SdcBst *second);
    /// When a press is given up without a release.
    virtual void pressCancelled();

    virtual bool isContextMenuEnabled() const;
    /// Lets the user choose the colour of the molecule at a scene position.
    virtual void changeMolColor(const QPointF &p);
    virtual bool freezeMouseActions() const;
    /// Whether a drag moves whole components.
    virtual bool toMove() const;
    /// Whether a drag may re-place an attached item.
    virtual bool toChangeLayout() const;
    /// Whether a drag that moves no whole components may re-place the pressed item.
    virtual bool allowToChangeRelativePos() const;
    /// Whether the highlighted sites of a component move together with the dragged one.
    virtual bool toMoveGroup() const;
    /// Whether a drag of empty space moves the view.
    virtual bool toMoveScene() const;
    virtual bool isEnforcedNoMove() const;
    /// The component item around which an item is dragged: a site's component, and the only
    /// neighbour of an end component; null when there is none.
    virtual ZelEllipseItemMcp *getDragCenterZelEllipseMcp(ZelEllipseItem *item);
    /// The components that move together when sdc is dragged.
    virtual QList<SdcMcp *> getListSdcMcpToMove(Sdc *sdc);

    Sdc *getSdc() const;
    ZelDbSqliteModel *getZelDbSqliteModel() const;
    void setZelDbSqliteModel(ZelDbSqliteModel *model);
    int getZelSceneType() const { return m_zelSceneType; }
    void setZelSceneType(int type) { m_zelSceneType = type; }
    int getZelSceneMode() const { return m_zelSceneMode; }
    bool isReadOnly() const { return m_readOnly; }
    void setEnforcedNoMove(bool enforced) { m_enforcedNoMove = enforced; }
    void setContextMenuEnabled(bool enabled) { m_contextMenuEnabled = enabled; }
    bool isAllowedToDisplayBindingStatus() const { return m_allowToDisplayBindingStatus; }
    void setAllowToDisplayBindingStatus(bool allow) { m_allowToDisplayBindingStatus = allow; }
    bool isAllowedToChangeBindingStatus() const { return m_allowToChangeBindingStatus; }
    void setAllowToChangeBindingStatus(bool allow) { m_allowToChangeBindingStatus = allow; }
    QAction *getShowRelatedMliAction() const { return m_showRelatedMliAction; }

    // The first item of a kind at a scene position, the topmost first; null when there is none.
    // A sticky is found by its own function only.
    ZelGItem *getZelGItemFromScenePos(const QPointF &p) const;
    ZelEllipseItem *getZelEllipseItemFromScenePos(const QPointF &p) const;
    ZelLineItem *getZelLineItemFromScenePos(const QPointF &p) const;
    ZelRectItem *getZelRectItemFromScenePos(const QPointF &p) const;
    ZelRectItemMcpSticky *getZelRectItemMcpStickyFromScenePos(const QPointF &p) const;
    /// A site's component item, or the component item itself.
    ZelEllipseItemMcp *getCenterZelEllipseMcp(ZelEllipseItem *item) const;

    // The items as the scene makes them, in no scene yet. An ellipse item lies with its origin on
    // the centre of the rectangle; a site item becomes a child of its component item, and its
    // rectangle is given in scene coordinates, too. A backbone becomes a child of one end.
    static ZelEllipseItemMcp *createMcp(const QRectF &sceneRect);
    static ZelEllipseItemBst *createBst(const QRectF &sceneRect, ZelEllipseItemMcp *mcpItem);
    /// The line that joins the pair already, or a new one; null unless there are two items.
    static ZelLineItemMcpMcp *createBackBone(ZelEllipseItemMcp *first, ZelEllipseItemMcp *second);

    ZelEllipseItemMcp *addMcp(const QRectF &sceneRect);
    /// A component item with the looks of ref: next to attachTo and joined to it, or else where
    /// ref lies. Null when there is no free place next to attachTo.
    ZelEllipseItemMcp *addMcp(QGraphicsEllipseItem *ref, ZelEllipseItemMcp *attachTo);
    ZelEllipseItemBst *addBst(const QRectF &sceneRect, ZelEllipseItemMcp *mcpItem);
    /// A site item at the first free place on the rim; null when there is none.
    ZelEllipseItemBst *addBst(ZelEllipseItemMcp *mcpItem);
    ZelLineItemMcpMcp *drawBackBones(ZelEllipseItemMcp *first, ZelEllipseItemMcp *second);
    /// A component with its item, appended to the molecule of sdcMcpToAttach, else to the scene's
    /// own. Null when it finds no place.
    SdcMcp *addSdcMcp(QGraphicsEllipseItem *referenceItem, SdcMcp *sdcMcpToAttach);
    /// A site with its item on the rim of a component; null when it finds no place.
    SdcBst *addSdcBst(SdcMcp *sdcMcp);
    /// A bond that belongs to the scene, with its line where both sites are drawn here. Sites may
    /// be null.
    SdcBstBstCpx *addSdcBstBstCpx(SdcBst *first, SdcBst *second);

    // The same in one call: made, drawn and put where it belongs. Null, with nothing done, where
    // what it belongs to is null or not drawn.
    /// A component with its item on a rectangle, in the molecule's colour, appended to it.
    SdcMcp *addSdcMcp(SdcMol *sdcMol, const QRectF &sceneRect);
    /// A site with its item on a rectangle, in the component's colour, appended to it.
    SdcBst *addSdcBst(SdcMcp *sdcMcp, const QRectF &sceneRect);
    /// A bond that a complex lists. Neither asked for nor announced, like one without complex.
    SdcBstBstCpx *addSdcBstBstCpx(SdcCpx *sdcCpx, SdcBst *first, SdcBst *second);
    /// A bond of the kind that the scene's data component lists, or else of the complex in which
    /// its sites lie, as a load makes it: nobody is asked, nothing is announced or read. Null when
    /// there is nothing to list it or no room.
    virtual SdcBstBst *makeBond(SdcBst *first, SdcBst *second);
    /// Draws a bond by a line, which is destroyed where one of its sites is not drawn here.
    void addBondLine(SdcBstBst *bond, ZelLineItemBstBst *line);

    /// Destroys a component, its sites and their bonds, together with all that draws them.
    void removeSdcMcp(SdcMcp *sdcMcp);
    void removeSdcBst(SdcBst *sdcBst);
    /// Destroys a bond and its line.
    void removeSdcBstBst(SdcBstBst *sdcBstBst);
    /// Destroys everything on the scene; molecules and complexes stay, without components.
    void removeAllItems();

    /// The joint rectangle of all component and site items; null when there are none.
    QRectF getSceneRectForAllItems() const;
    /// The centre of all component and site items, else of the scene.
    QPointF getCenterPos() const;
    /// Right of everything by gap, else the centre of the scene.
    QPointF getNewMcpDefaultScenePos(double gap) const;

    // Moves of an item about the component item to which it is attached. Those that return bool
    // refuse what would collide: false, and everything is where it was.
    /// Puts the item at an angle, half way between the least and the greatest distance.
    void moveItemToAngle(ZelEllipseItem *item, ZelEllipseItemMcp *centre, double angle);
    bool moveAroundAttachedItemByDegree(
        ZelEllipseItem *item, ZelEllipseItemMcp *centre, double degree);
    /// Moves the item's centre towards p, as far as the bounds of its distance allow.
    bool moveAroundAttachedItemByPos(
        ZelEllipseItem *item, ZelEllipseItemMcp *centre, const QPointF &p);
    /// Moves the first item of the group towards p and the others along with it.
    bool moveGroupAroundItemByPos(
        const QList<ZelEllipseItem *> &group, ZelEllipseItemMcp *centre, const QPointF &p);
    /// Moves components with all that is attached to them; never refused.
    void moveListSdcMcps(const QList<SdcMcp *> &list, const QPointF &delta);
    /// Tries the angles of one turn about centre from startAngle on; false when none is free, and
    /// the item is where it was.
    bool automaticFindAndMoveToPos(
        ZelEllipseItem *item, ZelEllipseItemMcp *centre, double startAngle, double step);
    /// A place for the item's centre without collision, half way between two items or beside.
    std::optional<QPointF> findLocBetweenItems(
        ZelEllipseItem *item, ZelEllipseItem *first, ZelEllipseItem *second);

    /// Whether the item overlaps another component or site item of the scene, or a component
    /// item (for a site: a site item) of its own molecule lies within one unit. Neither its
    /// parent nor its children count.
    bool collidingWithOtherSdcItems(ZelEllipseItem *item, const QList<QGraphicsItem *> &exclude);
    bool collidingWithOtherSdcItems(ZelEllipseItem *item, const QList<ZelEllipseItem *> &exclude);

    /// Lets the scene's only view scroll by hand, or not.
    void setMoveScene(bool on);

    /// Bracket a change that the user made, so that it is announced as one; they nest.
    void beginChange();
    void endChange();

    /// Brackets the change made in its lifetime; tolerates null and a scene that dies meanwhile.
    class Change
    {
    public:
        explicit Change(ZelScene *scene) : m_scene(scene)
        {
            if (scene)
                scene->beginChange();
        }
        ~Change()
        {
            if (m_scene)
                m_scene->endChange();
        }
        Q_DISABLE_COPY_MOVE(Change)

    private:
        QPointer<ZelScene> m_scene;
    };

signals:
    void zelGItemClicked(ZelGItem *item);
    void zelGItemPressed(ZelGItem *item);
    void zelGItemDoubleClicked(ZelGItem *item);
    void signal_ZelGItemMoved(ZelGItem *item);
    void noGItemClicked();
    void signal_changed();
    void signal_moved();
    void signal_setNegation(SdcMcp *mcp, bool negated);
    void signal_setStickyState(ZelRectItemMcpSticky *sticky, int state);
    void signal_setBstBindingStatus(SdcBst *bst, BindingStatusType status);
    void signal_showRelatedMli(QString molPsiimId);
    void zelEllipseItemCollided(ZelEllipseItem *first, ZelEllipseItem *second);
    /// Just before a change to what the scene shows, while all is as it was.
    void signal_changeBegin();
    /// When that change is complete: at a drag's release, at a menu's or dialog's close.
    void signal_changeEnd();
    /// Why what the user asked for was not done, in a sentence for the user.
    void signal_refused(QString reason);

public slots:
    void slot_setSceneMode(int mode);
    /// changeMolColor() at the position in the sending action's data.
    void slotChangeMolColor();
    void slot_showRelatedMli();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;

    /// What a press at a scene position takes hold of: the first item there.
    virtual ZelGItem *getZelGItemToPress(const QPointF &scenePos) const;
    ZelGItem *getPressedItem() const;
    /// The ellipse item that the last collision test found in the way.
    ZelEllipseItem *getLastCollidingItem() const;
    /// What the menus of components and sites offer beside their own entries; not owned, and only
    /// for as long as the actions live.
    void setFurtherMenuActions(const QList<QAction *> &actions);
    /// Not 0: a release over a sticky reports the sticky.
    void setFurtherDisplayFlag(int flag) { m_furtherDisplayFlag = flag; }
    /// Gives the press up, and closes a change that a drag has opened.
    void resetPressState();

    /// What a drag moves when toMove() is true.
    QPointer<Sdc> m_sdcToMove;

private:
    friend class ZelSceneState;
    struct Probe;
    struct Placement;

    // Mouse
    void recordPress(const QPointF &scenePos);
    void reportClick();
    void dragTo(const QGraphicsSceneMouseEvent *event);
    void dragAttached(ZelEllipseItem *item, ZelEllipseItemMcp *centre, const QPointF &scenePos);
    void dragComponents(const QPointF &delta);
    QPointF processTempMouseStartPosFromCenter(const QPointF &scenePos) const;
    void setCollisionCandidates(ZelEllipseItem *first, ZelEllipseItem *second);
    void updateCollisionCandidates(const QList<SdcMcp *> &moved);
    void beginDragChange();
    void endDragChange();

    // Collision
    ZelEllipseItem *firstInTheWay(const Probe &probe, const QList<QGraphicsItem *> &exclude);
    ZelEllipseItem *firstColliding(ZelEllipseItem *item, const QPointF &moved, SdcMol *mol,
        const QList<QGraphicsItem *> &exclude);
    ZelEllipseItem *firstRefusing(const QList<Placement> &placements);
    bool isOccupied(const QRectF &siteRect, ZelEllipseItemMcp *component, SdcMol *mol);
    void lookAround(const QRectF &rect);
    void forgetSurroundings();
    SdcMol *moleculeOf(ZelEllipseItem *item) const;

    // Building and moves
    ZelEllipseItemMcp *createPlacedMcp(QGraphicsEllipseItem *ref, ZelEllipseItemMcp *attachTo);
    SdcMcp *appendMcp(SdcMol *mol, ZelEllipseItemMcp *item);
    static SdcBst *appendBst(SdcMcp *mcp, ZelEllipseItemBst *item);
    void removeBondsOf(SdcBst *bst);
    std::optional<QPointF> findFreePlaceAround(
        ZelEllipseItem *item, ZelEllipseItemMcp *centre, double startAngle, double step);
    bool moveAll(const QList<Placement> &placements);
    void attachmentMoved(ZelEllipseItem *item);

    // Menus
    void execStickyMenu(ZelRectItemMcpSticky *sticky, const QPoint &screenPos);
    void execMcpMenu(ZelEllipseItemMcp *item, const QPoint &screenPos);
    void execBstMenu(ZelEllipseItemBst *item, const QPoint &screenPos);
    void addFurtherActions(QMenu *menu) const;

    QPointer<ZelGItem> m_pressedItem;
    QPointer<ZelRectItemMcpSticky> m_pressedSticky;
    QPointer<ZelEllipseItemMcp> m_pressedCenter;
    QPointF m_pressPos; // relative to the pressed item's scene rectangle
    QPointF m_tempStartPos; // where the dragged item's centre is wanted
    QPointer<ZelEllipseItem> m_collided1;
    QPointer<ZelEllipseItem> m_collided2;
    bool m_collided1WasHighlighted = false;
    bool m_collided2WasHighlighted = false;
    QPointer<ZelEllipseItem> m_lastColliding;
    QPointer<QGraphicsView> m_scrolledView; // by hand, for as long as the press lasts
    QList<QPointer<ZelEllipseItem>> m_surroundings; // the ellipse items in the region seen
    QRectF m_seenRegion;
    QPointer<Sdc> m_sdc;
    QPointer<ZelDbSqliteModel> m_zelDbSqliteModel;
    int m_furtherDisplayFlag = 0;
    int m_zelSceneType = ZelSceneType::None;
    int m_zelSceneMode = 0;
    bool m_readOnly = false;
    bool m_enforcedNoMove = false;
    bool m_contextMenuEnabled = true;
    bool m_pressed = false; // a release would be a click
    bool m_dragging = false; // a left press has been recorded and not released
    bool m_limitedEdit = false;
    bool m_moved = false;
    bool m_allowToDisplayBindingStatus = false;
    bool m_allowToChangeBindingStatus = false;
    bool m_movingByDrag = false;
    bool m_dragChangeOpen = false; // the drag has announced a change that is not complete
    int m_changeDepth = 0;
    QAction *m_showRelatedMliAction = nullptr;
    QList<QPointer<QAction>> m_furtherMenuActions;
};
