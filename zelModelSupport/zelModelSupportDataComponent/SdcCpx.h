#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QStringList>

class QDomElement;
class ZelScene;

/// A complex species: molecules joined by bonds between their binding sites.
///
/// The molecules are its children, in an order that stored bonds refer to. Bonds are not owned; a
/// bond that dies leaves the list. Texts that identify the species are written over a canonical
/// order of the molecules, so that they do not depend on how it was drawn.
class ZELMODELSUPPORT_EXPORT SdcCpx : public Sdc
{
    Q_OBJECT
public:
    /// What is known of the species' symmetry.
    enum SymmetryState : int {
        SymmetryUnknown = 0, ///< not computed since the last change, or not connected
        SymmetricSpecies = 1,
        AsymmetricSpecies = 2
    };

    explicit SdcCpx(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcCpx() override;

    // Bonds
    /// False when the bond is null or in the list already; the complex becomes its parent.
    bool addSdcBstBstCpx(SdcBstBstCpx *bond);
    void removeSdcBstBstCpx(SdcBstBstCpx *bond);
    bool hasSdcBstBstCpx(SdcBstBstCpx *bond) const;
    /// Null when the index is out of range.
    SdcBstBstCpx *getSdcBstBstCpxFromIndex(int index) const;
    /// -1 when the bond is not in the list.
    int getSdcBstBstCpxIndex(SdcBstBstCpx *bond) const;
    QList<SdcBstBstCpx *> getListSdcBstBstCpx() const { return m_bonds; }
    /// The bond that joins the two sites, in either order.
    SdcBstBstCpx *getSdcBstBstCpx(SdcBst *a, SdcBst *b) const;
    bool isSdcBstInvolvedInBstBst(SdcBst *bst) const;
    SdcBst *getPartnerSdcBstFromBstBstCpx(SdcBst *bst) const;
    /// The bonds that hold any of the sites, in the order of the bonds.
    QList<SdcBstBstCpx *> getListSdcBstBstCpxFromListSdcBst(const QList<SdcBst *> &sites) const;

    /// The first site with the id in the molecule at that position (a text, counted from 0; what is
    /// no number counts as 0).
    SdcBst *getSdcBstFromMolPosBstId(const QString &molPos, const QString &bstId);
    /// Makes the bonds that are stored for this complex, in the scene or, without one, as objects
    /// of this complex's own. Unless forced, only sites that are drawn next to each other are
    /// joined; a record whose molecules stand the other way round swaps them.
    void updateBstBstCpx(ZelScene *scene, bool force);

    // Connectivity
    bool areAllConnected();
    static bool areListMolConnected(
        const QList<SdcMol *> &listMol, const QList<SdcBstBst *> &listSbb);
    /// The molecules that bonds join to mol, itself included; each leaves remaining.
    static QList<SdcMol *> getConnectedListMol(
        SdcMol *mol, QList<SdcMol *> &remaining, const QList<SdcBstBst *> &listSbb);
    /// Whether the bond's two molecules stay connected without it.
    bool isBstBstPartOfRing(SdcBstBstCpx *sbbc);
    bool hasRingStructure();
    /// Whether there are bonds and all of them are part of a ring.
    bool isAbsoluteRingCpx();
    QList<SdcBstBstCpx *> getListNoRingBstBstCpx();
    /// Whether breaking some one bond leaves two parts.
    bool canBeSplit();

    // Small questions
    bool isMcpChildrenInvolvedInBstBstCpx(SdcMcp *mcp) const;
    /// Whether no bond holds any site of the complex.
    bool AreAllOutwardBstsFree();
    /// Whether exactly one bond joins the molecule to others.
    bool isMolWithOneLinkedCpxBstBst(SdcMol *mol) const;
    /// Whether exactly one bond holds a site of the component.
    bool isMcpWithOneDirectLinkedCpxBstBst(SdcMcp *mcp) const;
    /// Whether a bond joins a site of one component to a site of the other.
    bool isMcpLinkedToCpxBstBst(SdcMcp *a, SdcMcp *b) const;
    /// The other molecules that bonds join to this one directly, each once.
    QList<SdcMol *> getListLinkedSdcMolToSdcMol(SdcMol *mol) const;
    /// The molecules among the children.
    QList<SdcMol *> getChildMolList();
    int getNumOfFreeBst();
    bool hasInconsistentBinding() const;
    bool containsMemAssociatedMol();
    /// Whether it leaves something open: a site neither bound nor unbound, a feature that is
    /// "Don't Care", a negated component.
    bool isPattern();
    /// Whether every site has that binding status.
    bool isInBindingStatus(int status);

    // Canonical order. molSet is where signatures walk, rankedList what is ranked already.
    /// The bond tree seen from sdcMol as a text; it is as long as the tree of all its paths.
    static QString getMolSignature(SdcMol *sdcMol, const QList<SdcMol *> &molSet,
        const QList<SdcMol *> &rankedList, const QList<SdcBstBst *> &listSbb,
        bool considerBstStatus, SdcMol *firstMol);
    /// The molecule with the smaller signature; null on a tie.
    static SdcMol *getFrontMol(SdcMol *sdcMol1, SdcMol *sdcMol2, QList<SdcMol *> &molSet,
        const QList<SdcMol *> &rankedList, const QList<SdcBstBst *> &listSbb,
        bool considerBstStatus);
    static SdcMol *getFrontMolWithFirstMol(SdcMol *sdcMol1, SdcMol *sdcMol2,
        QList<SdcMol *> &molSet, const QList<SdcMol *> &rankedList,
        const QList<SdcBstBst *> &listSbb, SdcMol *firstMol);
    static SdcMol *getConstFrontMol(SdcMol *sdcMol1, SdcMol *sdcMol2, const QList<SdcMol *> &molSet,
        const QList<SdcMol *> &rankedList, const QList<SdcBstBst *> &listSbb,
        bool considerBstStatus);
    static SdcMol *getConstFrontMol(SdcMol *sdcMol1, SdcMol *sdcMol2, const QList<SdcMol *> &molSet,
        const QList<SdcMol *> &rankedList, const QList<SdcBstBst *> &listSbb, SdcMol *firstMol);
    static SdcMol *getConstFrontMol(const QList<SdcMol *> &candidates,
        const QList<SdcMol *> &molSet, const QList<SdcMol *> &rankedList,
        const QList<SdcBstBst *> &listSbb, bool considerBstStatus);
    static SdcMol *getConstFrontMol(const QList<SdcMol *> &candidates,
        const QList<SdcMol *> &molSet, const QList<SdcMol *> &rankedList,
        const QList<SdcBstBst *> &listSbb, SdcMol *firstMol);
    static QList<SdcMol *> getConstRankedMolList(const QList<SdcMol *> &mols,
        const QList<SdcMol *> &molSet, const QList<SdcBstBst *> &listSbb, bool considerBstStatus);
    /// A tie leaves its molecules to the position: the list may be shorter than mols.
    static QList<SdcMol *> getConstRankedMolList(const QList<SdcMol *> &mols,
        const QList<SdcMol *> &molSet, const QList<SdcBstBst *> &listSbb, SdcMol *firstMol);
    static QList<SdcMol *> getConstRankedMolList(const QList<SdcMol *> &mols,
        const QList<SdcMol *> &molSet, const QList<SdcBstBstCpx *> &listSbbc);
    /// The molecules whose signatures are the least; all of them are alike.
    static QList<SdcMol *> getFrontMolSet(
        const QList<SdcMol *> &mols, const QList<SdcBstBst *> &listSbb, bool considerBstStatus);
    QList<SdcMol *> getRankedListMol(bool considerBstStatus, bool considerMcpState);
    /// Puts the children into canonical order; rows and item texts keep theirs.
    void reRankMols(bool considerBstStatus, bool considerMcpState);
    /// Entry i: where the molecule at position i stood before the last re-ranking; empty when it
    /// changed nothing.
    QList<int> getListMolPrevIndices() const { return m_listMolPrevIndices; }
    /// The same with the identity in place of an empty list.
    QList<int> getListMolPosMap() const;
    int getSpecisStaticSymmetryState() const { return m_specisStaticSymmetryState; }
    void setSpecisStaticSymmetryState(int state) { m_specisStaticSymmetryState = state; }
    void updateStaticSpeciesSymmetryStatus();
    bool isSymmetricSpecies();
    int getNumWayToRank();
    /// The molecules by type, those of one type by their bonds; what these cannot tell apart is
    /// left out.
    QList<SdcMol *> getSortedListMol();
    static QList<SdcMol *> sortListMol(
        const QList<SdcMol *> &group, const QList<SdcBstBstCpx *> &bonds);

    // Texts
    QString getMolCode();
    QString getCpxFingerPrint();
    static QString getCpxFingerPrint(
        const QList<SdcMol *> &listMol, const QList<SdcBstBst *> &listSbb);
    /// Feature states, negations and binding statuses of the molecules, in the given order. Ends
    /// the process when a component has lost a sticky.
    static QString getMcpStateCodeSignature(const QList<SdcMol *> &listSdcMol, bool withMolPsiimId);
    /// Re-ranks only while the symmetry is unknown: reRankMols() first after a change of states.
    QString getAliasMcpStateCode();
    /// Applies a state code; molecule positions are indices into the children as written.
    void loadAliasMcpStateCode(const QString &stateCode, bool loadBindingStatus);
    QString getBstBindingCode();
    static QString getBstBindingCodeFromListMol(const QList<SdcMol *> &listSdcMol);

    // Storage
    /// Looks the present states up among the aliases of this complex; true when one has them.
    bool retrieveAliasBasedOnState(bool clearIfMissing);
    bool updateDbToAlias(bool clearIfMissing);
    /// The complexes that become this one by closing or opening a ring, and the other way round.
    static QStringList getEquivalentCpxPsiimIds(
        const QString &cpxPsiimId, ZelDbSqliteModel *db, bool includeSelf);
    /// The stored complexes of the same molecules that have exactly one ring bond more or less.
    static QStringList getSplitRingCpxPsiimIds(
        const QString &cpxPsiimId, ZelDbSqliteModel *db, bool includeSelf);
    /// The short names joined with ".".
    static QString getDefaultComplexName(const QStringList &molShortNames);
    /// A default short name that no other stored complex has; empty when that cannot be asked.
    QString getDefaultSpeciesName();
    /// Takes id, names, text, notes and references of the stored complex that is this species, and
    /// drops id and names of a stored one that this is no longer. For a host before saveToDbCpx(),
    /// since the user may have changed the structure. True when the species is stored.
    bool adoptStoredSpecies();
    /// Why saveToDbCpx() would refuse the complex as it is, as a sentence; empty when it would not.
    /// A host asks before it begins the transaction around the save, so that no box stands open
    /// while the file is locked. Nothing is written or said.
    QString getSaveRefusal();
    /// Writes the complex in canonical order; the caller's transaction makes it all or nothing.
    /// False when it is not connected, when another complex has its short name (ZelDialogs tells
    /// the user) or is the same species, when aliases need the stored one of this id as it was, or
    /// when a record could not be written; order and id may have changed by then. getRefusal()
    /// says why. A bond whose notes were never set keeps those that are stored.
    bool saveToDbCpx();
    /// Writes the present states as an alias of the stored complex, or attaches the one that has
    /// them already, which stays as it is stored. After false, getRefusal() says why.
    bool saveToDbCpa();
    /// Writes order, fingerprint, layout and bonds of a stored complex again after its bonds
    /// changed.
    bool updateToDbWithNewBst();
    /// Builds the complex from its records; the layout element gives the places, shifted by
    /// refPos. Bonds are left to updateBstBstCpx(). False when the database does not know it.
    bool loadDom(const QString &psiimId, const QDomElement &domEltCpx, ZelScene *scene,
        const QPointF &refPos, bool limited);
    /// The same from a layout text, with its bonds.
    bool loadCpx(const QString &psiimId, const QString &graphicsInfo, ZelScene *scene,
        const QPointF &refPos, bool limited);
    /// The same from the stored layout.
    bool loadCpxFromDb(const QString &psiimId, ZelScene *scene = nullptr,
        const QPointF &refPos = QPointF(0.0, 0.0), bool limited = false);
    /// The alias's complex in the alias's states.
    bool loadCpaFromDb(const QString &cpaPsiimId, ZelScene *scene = nullptr,
        const QPointF &refPos = QPointF(0.0, 0.0), bool limited = false);

    using Sdc::getSdcSceneRectF;
    /// The joint rectangle of the molecules and, withBonds, of the bonds' lines.
    QRectF getSdcSceneRectF(bool withBonds);

    void addSdcChild(Sdc *child, bool addToItemModel) override;
    void removeSdcChild(Sdc *child) override;
    void reset() override;
    bool isEmpty() override;
    void setAllMcpFeatureValue(ComponentStateType value) override;
    SdcCpx *toSdcCpx() override;
    bool isSdcCpx() const override;
    void setBstBindingStatusEnabled(bool enabled) override;
    bool isBstBindingStatusDisplayEnabled() override;

public slots:
    void setHighlight(bool status, bool extendable) override;
    /// Not extendable, unlike that of other components.
    void setHighlight(bool status);

private:
    friend class SdcBst;
    friend class SdcBstBst;
    void forgetBond(SdcBstBst *bond);
    /// hasSdcBstBstCpx() for a bond of whatever kind.
    bool lists(const SdcBstBst *bond) const;
    /// Rewrites the state code of an alias, which old shows as it was before the bonds changed.
    bool updateAlias(const QString &cpaPsiimId, SdcCpx *old);

    QList<SdcBstBstCpx *> m_bonds;
    QList<int> m_listMolPrevIndices;
    bool m_bstBindingStatusEnabled = false;
    int m_specisStaticSymmetryState = SymmetryUnknown;
};
