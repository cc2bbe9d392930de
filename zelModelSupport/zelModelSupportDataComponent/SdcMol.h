#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QColor>

class ZelEllipseItemMcp;
class ZelRectItemWithText;
class ZelScene;
struct SdcLayout;

/// A molecule: a chain of components with their features and binding sites.
class ZELMODELSUPPORT_EXPORT SdcMol : public Sdc
{
    Q_OBJECT
public:
    explicit SdcMol(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcMol() override;

    void addSdcMcp(SdcMcp *mcp);
    /// Takes the component out, unowned afterwards, and emits sdcMcpRemoved().
    void removeSdcMcp(SdcMcp *mcp);
    void removeSdcMcpAtIndex(int index);
    SdcMcp *getSdcMcpAtIndex(int index);
    SdcMcp *getSdcMcpWithPsiimId(const QString &psiimId);
    SdcBst *getSdcBstFromPsiimId(const QString &psiimId);
    /// False for an empty name and for one that a component other than except has.
    bool isUniqueMcpName(const QString &name, SdcMcp *except);
    bool isUniqueBstName(const QString &name, SdcBst *except);
    /// True when every component (site) has a name that no other of the molecule has.
    bool isConsistentMcpNames();
    bool isConsistentBstNames();

    /// The colour that is drawn: the first component's brush; invalid without component or item.
    QColor getMolColor();
    /// Repaints components and sites, and makes it the colour that is stored; a text that names no
    /// colour changes nothing.
    void setMolColor(const QString &name);
    QColor getMolDefaultColor() const { return m_defaultColor; }
    /// Lays a translucent plate with the code's number over the drawing; its hue is the code-th of
    /// count evenly spaced ones. The plate goes with the molecule, and when the drawing leaves its
    /// scene.
    void showIndexCode(bool show, const QString &code, int count);
    void hideIndexCode();

    /// Writes the molecule and all it holds, giving ids to what has none, and removes stored parts
    /// that it no longer holds. False when a statement failed or when such a part is still used;
    /// the database model's error text says why. The statements run in one transaction, nested in
    /// the host's if there is one. False, too, with nothing changed, while two features of a
    /// component have one name: stored by name, they would become one. getRefusal() says why.
    bool saveToDb();
    /// Builds the molecule from its records and its layout element, shifted by refPos. Without a
    /// scene the same items are made in none; the molecule then deletes those that no scene has
    /// taken over by its death. With limited, sites are drawn as limited. False when the database
    /// does not know the molecule; anything less is reported and loading goes on.
    bool loadDom(const QString &psiimId, const QDomElement &domEltMol, ZelScene *scene,
        const QPointF &refPos, bool limited);
    /// loadDom() with the layout that is stored beside the record, where it was drawn.
    bool loadFromDb(const QString &psiimId, ZelScene *scene = nullptr);
    /// Takes over a component item that was made in no scene: the molecule deletes it unless a
    /// scene has taken it over by the molecule's death.
    void adoptItemInNoScene(ZelEllipseItemMcp *item);

    /// Makes the binding statuses of this molecule's sites follow those of the other's, of the
    /// same type; with both, sites of other that only this molecule has bound become Unbound.
    void synchronizeBindingStatus(SdcMol *other, const QList<SdcBst *> &excluded, bool both);
    /// Makes feature states and negations follow those of other; half is passed to the stickies.
    void synchronizeMcpTagStates(SdcMol *other, bool half);

    /// How many sites the components before this index hold.
    int countSitesBefore(int mcpIndex);
    /// Refreshes texts and labels of the sites of components from begin on, up to end (-1: all).
    void renumberSites(int begin, int end = -1);
    /// Tells that components or their numbers of sites changed at this index.
    void siteCountsChangedFrom(int mcpIndex);

    void updatePosIndex() override;
    void reset() override;
    SdcMol *toSdcMol() override;
    bool isSdcMol() const override;
    void setAllMcpFeatureValue(ComponentStateType value) override;

private:
    friend class SdcMolLoader;
    friend class ZelSceneSideWindow;

    /// Why the molecule cannot be stored as it is, as far as that is known without the database.
    QString storageObstacle();
    bool loadLayout(const QString &psiimId, const SdcLayout &layout, ZelScene *scene,
        const QPointF &refPos, bool limited);
    void deleteItemsInNoScene();
    /// Takes the plate away when the drawing has left its scene, and goes on watching otherwise.
    void keepIndexCode();

    QColor m_color;
    QColor m_defaultColor = Qt::white;
    QPointer<ZelRectItemWithText> m_indexCodeItem;
    QList<QPointer<ZelEllipseItemMcp>> m_itemsInNoScene;
    std::vector<int> m_sitesBefore; // entry i: sites of components 0 to i - 1, as far as known
};
