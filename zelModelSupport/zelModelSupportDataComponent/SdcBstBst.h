#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <array>

class ZelLineItemBstBst;

/// A bond between two binding sites, drawn as a line that follows them.
///
/// Sites and line are not owned. A bond that dies leaves its sites and every list that holds it;
/// a site that dies leaves the bond.
class ZELMODELSUPPORT_EXPORT SdcBstBst : public Sdc
{
    Q_OBJECT
public:
    explicit SdcBstBst(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcBstBst() override;

    /// The first added is site 1, the second site 2; a third is refused with a warning.
    void addSdcBst(SdcBst *sdcBst);
    void removeSdcBst(SdcBst *sdcBst);
    SdcBst *getSdcBst1() const { return m_sites[0]; }
    SdcBst *getSdcBst2() const { return m_sites[1]; }
    /// Null unless the bond holds exactly two sites of which sdcBst is one.
    SdcBst *getPartnerSdcBst(SdcBst *sdcBst) const;
    bool hasSdcBst(SdcBst *sdcBst) const;
    bool isSameSdcBstBst(SdcBst *a, SdcBst *b) const;
    bool isSameSdcBstBst(SdcBstBst *other) const;

    void setZelLineItemBstBst(ZelLineItemBstBst *item);
    virtual ZelLineItemBstBst *getZelLineItemBstBst() const;

    /// Whether the database declares a molecule interaction between the two sites' types.
    bool isMliDefined() const;
    /// The rate texts of that interaction; empty when there is none.
    QString getDefaultAssocRateFromMli() const;
    QString getDefaultDissocRateFromMli() const;
    /// Whether the places of the two sites in and at the membrane rule the bond out.
    bool isInconsistentBinding() const;

    QList<SdcBst *> getListSdcBst() override;
    SdcBstBst *toSdcBstBst() override;
    bool isSdcBstBst() const override;
    using Sdc::setHighlight;
    /// Highlights the line; the bond's own flag stays as it is.
    void setHighlight(bool status, bool extendable) override;

public slots:
    void updateBstPos();

private:
    friend class SdcBst;
    friend class SdcCpx;
    friend class SdcCxi;
    friend class SdcMli;

    /// removeSdcBst() without redrawing the site, which may be dying. True when a complex lists the
    /// bond.
    bool forgetSdcBst(SdcBst *sdcBst);
    /// Tells the complexes that list the bond; true when there is one.
    bool noteSitesChanged();
    void follow(SdcBst *sdcBst);
    void unfollow(SdcBst *sdcBst);
    void updateLineEnds();
    /// The complex or interaction in whose list the bond is (or no longer is).
    void addHolder(Sdc *holder);
    void removeHolder(Sdc *holder);

    bool isComplete() const { return m_sites[1]; }

    std::array<SdcBst *, 2> m_sites{}; // the second is null while the first is
    QList<QPointer<Sdc>> m_holders;
    QPointer<ZelLineItemBstBst> m_line;
};
