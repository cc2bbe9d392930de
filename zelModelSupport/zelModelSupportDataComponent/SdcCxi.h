#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class QDomElement;
class ZelSceneCxi;

/// A complex interaction: two complexes and the bonds between their sites, each of which stands
/// for one stored association.
///
/// Bonds are not owned; a bond that dies leaves the list.
class ZELMODELSUPPORT_EXPORT SdcCxi : public Sdc
{
    Q_OBJECT
public:
    explicit SdcCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcCxi() override;

    /// Appends without a question: a bond that is added twice is listed twice.
    void addSdcBstBstCxi(SdcBstBstCxi *bond);
    void removeSdcBstBstCxi(SdcBstBstCxi *bond);
    QList<SdcBstBstCxi *> getListSdcBstBstCxi() const { return m_bonds; }
    /// Null when the index is out of range.
    SdcBstBst *getSdcBstBstCxiFromIndex(int index) const;
    /// -1 when the bond is not in the list.
    int getSdcBstBstCxiIndex(SdcBstBstCxi *bond) const;
    /// The bonds that hold any of the sites, in the order of the bonds.
    QList<SdcBstBstCxi *> getListSdcBstBstCxiFromListSdcBst(const QList<SdcBst *> &sites) const;

    /// Null when there is no such child or it is no complex.
    SdcCpx *getSdcCpxAtPosIndex(int index);
    /// The first site with the id in the molecule and complex at those positions (texts, from 0).
    SdcBst *getSdcBstFromBstPsiimIdAndPosIndices(
        const QString &bstPsiimId, const QString &molPosIndex, const QString &cpxPosIndex);

    /// Takes id and names from the stored association and builds the first two complexes of the
    /// layout element with their inner bonds. False when not both could be built; a complex that
    /// is not stored stays without content.
    bool loadDom(const QString &psiimId, const QDomElement &elt, ZelSceneCxi *scene);

    /// Builds an empty interaction from a stored association: both aliases in their states where
    /// they were drawn, and the bond with its properties, among them the rate of the dissociation
    /// that undoes it. An association within one complex has one child. False when the database
    /// does not know it, or when something of it is missing: that is reported and left out.
    bool loadFromDb(const QString &caiPsiimId, ZelSceneCxi *scene = nullptr);
    /// Writes an association for each bond, and for a bond that has a dissociation rate the
    /// dissociation into its two aliases. Missing geometry, rate and short name are filled in.
    /// False, with the reason as debug line and as getRefusal(), and nothing changed, unless each
    /// bond joins sites of complexes of this interaction that are stored aliases; also when the
    /// model has another association of these sites, aliases and qualifiers, or a dissociation of
    /// these complexes at another rate, that this one has not read: the reason says which. The
    /// statements run in one transaction, nested in the host's if there is one.
    bool saveToDb();
    /// The same after SdcBstBstCxi::saveResultToDb() of each bond that has no result yet, or that
    /// of other complexes than it joins now: all in one transaction.
    bool saveToDbWithResults();

    void reset() override;
    using Sdc::setHighlight;
    SdcCxi *toSdcCxi() override;
    bool isSdcCxi() const override;

public slots:
    void setHighlight(bool status, bool extendable) override;

private:
    friend class SdcBstBst;
    void forgetBond(SdcBstBst *bond);
    bool save(bool withResults);
    SdcBstBstCxi *makeBond(SdcBst *site1, SdcBst *site2, ZelSceneCxi *scene);
    /// The layout with the complexes in the order of the bond's sites.
    QString layoutOfBond(SdcBstBstCxi *bond);

    QList<SdcBstBstCxi *> m_bonds;
};
