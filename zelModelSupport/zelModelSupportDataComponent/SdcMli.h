#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class QDomElement;
class ZelLineItemBstBstMli;
class ZelSceneMli;

/// A molecule interaction: two molecules joined by one bond that declares that their sites may
/// bind.
///
/// Bonds are not owned; a bond that dies leaves the list.
class ZELMODELSUPPORT_EXPORT SdcMli : public Sdc
{
    Q_OBJECT
    Q_MOC_INCLUDE("zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h")
public:
    explicit SdcMli(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcMli() override;

    /// False when there is a bond already: an interaction carries one at most.
    bool addSdcBstBstMli(SdcBstBstMli *bond);
    void removeSdcBstBstMli(SdcBstBstMli *bond);
    QList<SdcBstBstMli *> getListSdcBstBstMli() const { return m_bonds; }
    int getSdcBstBstMliIndex(SdcBstBstMli *bond) const;
    /// Null when the index is out of range; so is the line.
    SdcBstBst *getSdcBstBstFromIndex(int index) const;
    ZelLineItemBstBstMli *getZelLineItemBstBstMliFromIndex(int index) const;
    int getZelLineItemBstBstMliIndex(ZelLineItemBstBstMli *item) const;
    /// Whether some bond of two sites holds both.
    bool hasBstBstConnection(SdcBst *a, SdcBst *b) const;
    bool hasBstBstConnection(SdcBstBstMli *bond) const;

    // The bond that joins the two sites, in either order. A bond before it that has lost a site is
    // reported and ends the search.
    SdcBstBstMli *getSdcBstBstMli(SdcBst *sdcBst1, SdcBst *sdcBst2) const;
    ZelLineItemBstBstMli *getZelLineItemBstBstMli(SdcBst *sdcBst1, SdcBst *sdcBst2) const;
    int getBstBstIndex(SdcBst *sdcBst1, SdcBst *sdcBst2) const;

    /// The bonds that hold any of the sites, in the order of the bonds.
    QList<SdcBstBstMli *> getListSdcBstBstMliFromListSdcBstBst(const QList<SdcBst *> &sites) const;
    /// Their lines, as many: null for a bond that has none.
    QList<ZelLineItemBstBstMli *> getListZelLineItemBstBstMliFromListSdcBst(
        const QList<SdcBst *> &sites) const;
    /// The site with the id in the molecule at that position (a text, counted from 0; what is no
    /// number counts as 0): the last one of the first component that has it.
    SdcBst *getSdcBstFromMolPosBstId(const QString &molPos, const QString &bstId);

    /// Whether there is one bond and both rates are given.
    bool canSave() const;
    /// Takes id, rates, names, notes and references from the record that the database has for the
    /// bond's sites. False when it has none; the id is then empty. A malformed bond empties all of
    /// them.
    bool updateMliPropertyFromDb();
    void clearMliProperties();
    /// Makes the bond that is stored for this interaction, drawn and owned by the scene; without
    /// one it is an object of the interaction's own.
    void updateBstBstMli(ZelSceneMli *scene);
    /// Builds the first two molecules of the layout element; id and bond are left to the caller.
    /// False when not both could be built; a molecule that is not stored stays without content.
    bool loadDom(const QString &psiimId, const QDomElement &elt, ZelSceneMli *scene);

    /// Builds an empty interaction from its record: molecules where they were drawn, bond and
    /// properties. False when the database does not know it, or when something of it is missing:
    /// that is reported and left out.
    bool loadFromDb(const QString &psiimId, ZelSceneMli *scene = nullptr);
    /// Writes the interaction, giving it an id and a short name if it has none. False, with the
    /// reason as debug line and nothing changed, unless canSave() and the bond joins stored sites
    /// of two molecules of this interaction that no other stored one joins. The statements run in
    /// one transaction, nested in the host's if there is one.
    bool saveToDb();

    void addSdcChild(Sdc *child, bool addToItemModel) override;
    void reset() override;
    using Sdc::setHighlight;
    SdcMli *toSdcMli() override;
    bool isSdcMli() const override;

signals:
    void sdcBstBstMliAdded(SdcBstBstMli *bond);

public slots:
    void setHighlight(bool status, bool extendable) override;
    void updateBstBstPos();

private:
    friend class SdcBstBst;
    void forgetBond(SdcBstBst *bond);
    /// -1 when no bond joins the sites, also after a report in the name of the function.
    int indexOfBond(SdcBst *sdcBst1, SdcBst *sdcBst2, const char *function) const;
    SdcMol *addMol(const QString &molPsiimId, const QDomElement &layout, ZelSceneMli *scene,
        const QPointF &refPos, bool *good);

    QList<SdcBstBstMli *> m_bonds;
};
