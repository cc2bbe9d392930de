#pragma once

#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"

class SdcBstBstMli;
class SdcMli;

/// The scene in which one molecule interaction is drawn: two molecules and the bond between them.
///
/// A molecule that is dropped with a site on a site of the other one is bonded to it.
class ZELMODELSUPPORT_EXPORT ZelSceneMli : public ZelSceneEditing
{
    Q_OBJECT
public:
    explicit ZelSceneMli(QObject *parent = nullptr);
    ~ZelSceneMli() override;

    /// Null when there is none; the first molecule that is added then makes one.
    SdcMli *getSdcMli() const;
    /// Edits an interaction, which is not owned. One that the scene has made goes with all that
    /// draws it.
    void setSdc(Sdc *sdc) override;

    /// Shows a stored interaction in place of what is shown. False when the database does not know
    /// it, and nothing is done, or when something of it is missing.
    bool load(const QString &psiimId);
    bool loadSdc(const QString &psiimId) override;
    /// The interaction's bond, with its line. Null when an item is null or shows no site, and when
    /// the two may not be bonded.
    SdcBstBstMli *addBstBstMli(ZelEllipseItemBst *itemA, ZelEllipseItemBst *itemB);

    QString getSiteRefusal(SdcBst *site) override;
    SdcBstBst *addBond(SdcBst *first, SdcBst *second) override;
    QString getRecordRefusal(const QString &tag, const QString &psiimId) override;
    void itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second) override;

protected:
    Sdc *getMolParent() override;

private:
    QPointer<SdcMli> m_ownMli;
};
