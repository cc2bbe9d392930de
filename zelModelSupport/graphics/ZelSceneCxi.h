#pragma once

#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"

class SdcBstBstCxi;
class SdcCxi;
class ZelSceneCxiResult;

/// The scene in which one complex interaction is drawn: two complexes, the bonds between them, and
/// the complex that the bond yields in a frame beside them.
///
/// Each bond stands for an association of its own. The result is that of the bond that was drawn or
/// clicked last. With one complex only, a bond closes a ring in it.
class ZELMODELSUPPORT_EXPORT ZelSceneCxi : public ZelSceneEditing
{
    Q_OBJECT
public:
    explicit ZelSceneCxi(QObject *parent = nullptr);
    ~ZelSceneCxi() override;

    /// Null when there is none; the first complex that is added then makes one.
    SdcCxi *getSdcCxi() const;
    /// Edits an interaction, which is not owned. One that the scene has made goes with all that
    /// draws it.
    void setSdc(Sdc *sdc) override;

    /// Shows a stored association in place of what is shown. False when the database does not know
    /// it, and nothing is done, or when something of it is missing.
    bool load(const QString &caiPsiimId);
    bool loadSdc(const QString &psiimId) override;
    /// Adds an alias, in its states, centred at a position or on the nearest free place. Null and
    /// signal_refused() when the database does not know it or there are two already.
    SdcCpx *addCpaFromDb(const QString &cpaPsiimId, const QPointF &scenePos);
    bool addRecordFromDb(
        const QString &tag, const QString &psiimId, const QPointF &scenePos) override;
    QString getRecordRefusal(const QString &tag, const QString &psiimId) override;

    QString getBondRefusal(SdcBst *first, SdcBst *second) override;
    QString getSiteRefusal(SdcBst *site) override;
    SdcBstBst *addBond(SdcBst *first, SdcBst *second) override;
    SdcBstBst *makeBond(SdcBst *first, SdcBst *second) override;
    Sdc *getUnit(Sdc *sdc) override;

    /// The bond whose result is shown; null when there is none.
    SdcBstBstCxi *getCurrentBond() const;
    void setCurrentBond(SdcBstBstCxi *bond);
    /// The result as it is drawn, a complex of the scene's; null when there is none.
    SdcCpx *getResultSdcCpx() const;
    /// "Result", with the name of the stored complex that it is known to be.
    QString getResultTitle() const;
    /// Where the result is drawn; null when there is none.
    QRectF getResultRect() const;

protected:
    Sdc *getMolParent() override;
    QString getUnitWord() const override;
    void restored() override;

private:
    void updateResult();
    void updateResultTitle();
    void placeResult();
    QString resultTitle(SdcBstBstCxi *bond) const;

    QPointer<SdcCxi> m_ownCxi;
    QPointer<SdcBstBstCxi> m_currentBond;
    QPointer<ZelSceneCxiResult> m_result;
    bool m_loading = false;
    bool m_updatingResult = false;
};
