#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

#include <QLineF>

#include <functional>
#include <memory>
#include <vector>

class QMimeData;
class SdcCpx;
class ZelSceneBondDrawing;

/// What the scenes of complexes and interactions have in common: molecules that come from the
/// database and go, bonds that are drawn by dragging from site to site, keys, menus and drops.
///
/// A drag of a component moves its unit, with Ctrl all units that bonds join to it; a drag of a
/// site draws a bond, with Alt it moves the site on the rim; Escape gives a half-drawn bond up.
/// Presses, drags, drops and right clicks select what they act on, and Delete removes it, as the
/// menu would. Unlike other scenes this one also destroys molecules. What is dragged comes to lie
/// on top, and the scene's rectangle grows and shrinks with what is drawn, down to the one it
/// begins with.
class ZELMODELSUPPORT_EXPORT ZelSceneEditing : public ZelScene
{
    Q_OBJECT
    Q_MOC_INCLUDE("zelModelSupport/zelModelSupportDataComponent/Sdc.h")
public:
    explicit ZelSceneEditing(QObject *parent = nullptr);
    ~ZelSceneEditing() override;

    /// Nothing of another component stays selected.
    void setSdc(Sdc *sdc) override;

    /// The MIME type of records that are dragged onto a scene. The data is a record's tag and id
    /// in UTF-8, "mol;mol12", as in the user role of a list's entries.
    static QString getPsiimIdMimeType();
    /// The caller owns it.
    static QMimeData *createPsiimIdMimeData(const QString &tagAndPsiimId);

    /// Whether choices in the menus take effect by themselves; otherwise that is up to whoever
    /// receives the signals.
    bool isApplyingMenus() const { return m_appliesMenus; }
    void setAppliesMenus(bool applies) { m_appliesMenus = applies; }

    bool isDrawingBond() const;
    /// In scene coordinates; without length while no bond is being drawn.
    QLineF getProvisionalLine() const;
    /// The unit or bond on which the user acted last, which glows; Delete removes it. Null when
    /// there is none or it is gone.
    Sdc *getSelectedSdc() const;
    void setSelectedSdc(Sdc *sdc);

    /// Why the user may not bond the two sites here, as a sentence; empty when he may.
    virtual QString getBondRefusal(SdcBst *first, SdcBst *second);
    /// Why no bond may begin or end at the site; empty when one may.
    virtual QString getSiteRefusal(SdcBst *site);
    bool isBondAllowed(SdcBst *first, SdcBst *second) override;
    /// addBond() as one change, or null and signal_refused(); the reason is also shown at the
    /// mouse.
    SdcBstBst *drawBond(SdcBst *first, SdcBst *second);
    /// Takes a bond away; what it joined stays. Sites that were marked Bound by it, as those of a
    /// stored complex are, become Unbound.
    void removeBond(SdcBstBst *bond);

    /// What is moved, turned and removed as a whole: the molecule to which a component or site
    /// belongs. Null outside of one.
    virtual Sdc *getUnit(Sdc *sdc);
    /// The units that bonds join to this one, itself first.
    QList<Sdc *> getListConnectedUnits(Sdc *unit);
    /// Turns a unit, or all that are connected to it, by an angle in degrees, clockwise on screen.
    /// False, and the user told, when it would collide.
    bool rotateUnit(Sdc *unit, double angle, bool connected = false);
    /// Mirrors left and right.
    bool flipUnit(Sdc *unit, bool connected = false);
    /// Destroys a molecule or complex with all that draws it and its bonds.
    void removeUnit(Sdc *unit);
    void removeSdcMol(SdcMol *sdcMol);
    /// Removes all molecules and complexes of the scene's data component, which stays.
    void removeContents();

    /// Adds a molecule as stored, centred at a position or on the nearest free place. Null and
    /// signal_refused() when the database does not know it or the scene has no room.
    SdcMol *addMolFromDb(const QString &psiimId, const QPointF &scenePos);
    /// Adds a record of a kind given by its tag ("mol", "cpx", "cpa").
    virtual bool addRecordFromDb(
        const QString &tag, const QString &psiimId, const QPointF &scenePos);
    /// Why such a record may not be added, as a sentence; empty when it may.
    virtual QString getRecordRefusal(const QString &tag, const QString &psiimId);

    bool toMove() const override;
    bool allowToChangeRelativePos() const override;
    QList<SdcMcp *> getListSdcMcpToMove(Sdc *sdc) override;
    void itemPressed(ZelGItem *item) override;
    bool itemDragged(ZelGItem *item, const QPointF &scenePos) override;
    void itemReleased(ZelGItem *item, const QPointF &scenePos) override;
    void pressCancelled() override;

signals:
    /// Null when nothing is selected any longer, also because what was selected is destroyed.
    void signal_selectionChanged(Sdc *sdc);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;
    void dragEnterEvent(QGraphicsSceneDragDropEvent *event) override;
    void dragMoveEvent(QGraphicsSceneDragDropEvent *event) override;
    void dropEvent(QGraphicsSceneDragDropEvent *event) override;
    void drawForeground(QPainter *painter, const QRectF &rect) override;
    /// A site or component also where the line of a bond crosses it.
    ZelGItem *getZelGItemToPress(const QPointF &scenePos) const override;

    /// Whether the menus that set states belong here.
    virtual bool isEditingStates() const;
    /// Where a molecule that comes from the database goes; made when there is none yet.
    virtual Sdc *getMolParent();
    /// "Molecule" or what else getUnit() answers, for menus.
    virtual QString getUnitWord() const;

    /// The change of a bond or unit is complete: more than its drawing has changed.
    virtual void contentsChanged();
    /// A state has been put back, which is no change of the user's.
    virtual void restored();
    /// drawBond() at the end of a gesture, which selects what it has made.
    void drawBondByHand(SdcBst *first, SdcBst *second);
    void refuseRecord(const QString &reason);
    /// Empties the data component's properties for what is to be loaded into it.
    void clearToLoad(Sdc *sdc);
    /// Brings the scene's rectangle up to date with what is drawn.
    void followContents();
    /// Shows the states of sites in all that the data component holds.
    void showStates(SdcCpx *cpx);
    /// Puts components with all that is attached to them at a position, or on the nearest place
    /// where they lie apart from all others.
    void placeAt(const QList<SdcMcp *> &components, const QPointF &scenePos);
    static QString getSiteName(SdcBst *site);
    /// A molecule as stored has all features On: drawn half filled, as in its own drawing, and
    /// some may exclude each other. Makes them the states of a complex.
    static void settleStates(Sdc *sdc);

private:
    friend class ZelSceneState;
    using Actions = std::vector<std::unique_ptr<QAction>>;

    void refuseBond(const QString &reason);
    void showAtMouse(const QString &text, const QPointF &scenePos);

    // Selection
    SdcBstBst *getBondNear(const QPointF &scenePos) const;
    Sdc *getSdcToSelect(ZelGItem *item, const QPointF &scenePos);
    void spaceClicked();
    void selectedDied();

    // Units
    bool turn(Sdc *unit, bool connected, const std::function<bool(const QList<SdcMcp *> &)> &act);
    void destroyUnit(Sdc *unit);
    /// Of complexes, that no bond holds any more.
    static void freeSites(const QList<QPointer<SdcBst>> &sites);
    void raise(const QList<SdcMcp *> &components);

    // Menus
    void applyStickyState(ZelRectItemMcpSticky *sticky, int state);
    void applyNegation(SdcMcp *mcp, bool negated);
    void applyBindingStatus(SdcBst *bst, BindingStatusType status);
    Actions createBondActions(SdcBstBst *bond);
    Actions createUnitActions(Sdc *unit);
    template <typename Act>
    void addAction(Actions *actions, const QString &text, Act act);

    std::unique_ptr<ZelSceneBondDrawing> m_bondDrawing;
    QPointer<Sdc> m_selected;
    Qt::KeyboardModifiers m_pressModifiers;
    QPointF m_pressScenePos;
    QPointF m_lastScenePos;
    QRectF m_leastSceneRect;
    bool m_raised = false; // what this press drags
    bool m_siteRefused = false; // this press has been told why no bond begins there
    bool m_appliesMenus = true;
};
