#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

class ZelLineItemBstBstCxi;

/// A bond between two complexes that associate, with the complexes it joins and yields.
///
/// Its properties are those of the stored association.
class ZELMODELSUPPORT_EXPORT SdcBstBstCxi : public SdcBstBst
{
    Q_OBJECT
public:
    explicit SdcBstBstCxi(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    /// The bond's line as a line of its own kind; null when it has none or one of another kind.
    ZelLineItemBstBstCxi *getZelLineItemBstBstCxi() const;

    /// The complexes are not owned; one that dies is forgotten.
    SdcCpx *getSdcCpx1() const;
    void setSdcCpx1(SdcCpx *cpx);
    SdcCpx *getSdcCpx2() const;
    void setSdcCpx2(SdcCpx *cpx);
    SdcCpx *getSdcCpxResult() const;
    void setSdcCpxResult(SdcCpx *cpx);

    /// Takes id, names, rate, result, notes and references from the association that is stored for
    /// the bond's sites, their complexes' aliases and the two qualifiers that the bond has
    /// (geometry and binding type). All stay as they are when there is none.
    void updatePropertiesFromDb();
    /// The canonical fingerprint of what the bond joins its sites' complexes to. Empty, after a
    /// report, unless there are two sites; empty when a site lies in no complex. The sites must
    /// lie in different complexes.
    QString getResultCpxFingerPrint() const;
    /// Takes the alias for the result when its complex has the fingerprint of the result; reports
    /// a mismatch, and does nothing for an unknown alias.
    void setResultCpxAliasPsiimId(const QString &cpxAliasPsiimId);
    /// Makes the stored alias the result that is what the bond joins its sites' complexes to, in
    /// the states that these have here. What the model has not yet of it is stored, drawn as the
    /// complexes stand, under default names. False, with getRefusal() saying why and the result as
    /// it was, when it cannot be stored. The statements run in one transaction, nested in the
    /// host's if there is one.
    bool saveResultToDb();
    /// Whether both sites lie in one complex, so that the bond closes a ring in it.
    bool isIntraComplex() const;
    /// The geometry that the locations of the complexes suggest: "2D" when both are at the
    /// membrane, "3D", or "Intra Complex".
    QString getDefaultGeometry() const;

    /// The layouts of both complexes, as elements "cpx1" and "cpx2"; empty when one is missing.
    QString getGraphicsInfo() override;
    SdcBstBstCxi *toSdcBstBstCxi() override;
    bool isSdcBstBstCxi() const override;

private:
    QPointer<SdcCpx> m_sdcCpxResult;
    QPointer<SdcCpx> m_sdcCpx1;
    QPointer<SdcCpx> m_sdcCpx2;
};
