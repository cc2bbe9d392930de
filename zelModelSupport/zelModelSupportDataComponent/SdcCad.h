#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class ZelScene;

/// An association or dissociation: a source complex, two others, and the bond made or broken.
///
/// None of them is owned, but for the complexes that loadFromDb() makes; one that dies is
/// forgotten.
class ZELMODELSUPPORT_EXPORT SdcCad : public Sdc
{
    Q_OBJECT
public:
    explicit SdcCad(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);
    ~SdcCad() override;

    void setSbbc(SdcBstBstCpx *sbbc);
    SdcBstBstCpx *getSbbc() const;
    void setCpxSrc(SdcCpx *cpx);
    SdcCpx *getCpxSrc() const;
    void setCpxR1(SdcCpx *cpx);
    SdcCpx *getCpxR1() const;
    void setCpxR2(SdcCpx *cpx);
    SdcCpx *getCpxR2() const;
    /// True when R1 and R2 stand in the opposite order to the stored record.
    void setReverse12(bool reverse12);
    bool getReverse12() const;

    /// Builds the three complexes in their stored states, side by side, and finds the bond of the
    /// source that divides it into the two others. They live as long as this object. False when
    /// the database does not know the dissociation, or something of it is missing: that is reported
    /// and left out.
    bool loadFromDb(const QString &psiimId, ZelScene *scene = nullptr);
    /// Writes the dissociation, giving it an id and a short name if it has none. False, with the
    /// reason as debug line and nothing changed, unless source and products are stored aliases and
    /// there is a rate; a dissociation within one complex has the first product only. The
    /// statements run in one transaction, nested in the host's if there is one.
    bool saveToDb();

    /// Whether texts, rates and source are those of the stored record; true when it has no id.
    bool isConsistentToDb() override;

private:
    SdcBstBstCpx *findDividingBond() const;

    QPointer<SdcBstBstCpx> m_sbbc;
    QPointer<SdcCpx> m_cpxSrc;
    QPointer<SdcCpx> m_cpxR1;
    QPointer<SdcCpx> m_cpxR2;
    bool m_reverse12 = false;
};
