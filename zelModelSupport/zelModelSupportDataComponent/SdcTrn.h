#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

class ZelScene;

/// A transformation of one complex into another, held in two fixed slots that may be null.
///
/// The complexes are neither owned nor rows of this item, but for those that loadFromDb() makes.
class ZELMODELSUPPORT_EXPORT SdcTrn : public Sdc
{
    Q_OBJECT
public:
    explicit SdcTrn(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent = nullptr);

    SdcCpx *getSdcCpxFrom();
    SdcCpx *getSdcCpxTo();
    /// Null is ignored: a transformation never loses a side that way.
    void setSdcCpxFrom(SdcCpx *cpx);
    void setSdcCpxTo(SdcCpx *cpx);

    /// Builds both complexes in their stored states, side by side, and takes them in place of the
    /// present ones. They live as long as this object. False when the database does not know the
    /// transformation, or a side of it: that is reported, and its slot is null.
    bool loadFromDb(const QString &psiimId, ZelScene *scene = nullptr);
    /// Writes the transformation, giving it an id and a short name if it has none. False, with the
    /// reason as debug line and nothing changed, unless both sides are stored aliases and there is
    /// a rate. The statements run in one transaction, nested in the host's if there is one.
    bool saveToDb();

    /// Empties the child's slots.
    void removeSdcChild(Sdc *child) override;
    SdcTrn *toSdcTrn() override;
    bool isSdcTrn() const override;

private:
    void setSides(SdcCpx *from, SdcCpx *to);
};
