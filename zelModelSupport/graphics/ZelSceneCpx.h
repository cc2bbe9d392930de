#pragma once

#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"

class SdcCpx;

/// The scene in which one complex is drawn and edited: its molecules, the bonds between them, and
/// the states of features and sites.
class ZELMODELSUPPORT_EXPORT ZelSceneCpx : public ZelSceneEditing
{
    Q_OBJECT
public:
    explicit ZelSceneCpx(QObject *parent = nullptr);
    ~ZelSceneCpx() override;

    /// Null when there is none; the first molecule that is added then makes one.
    SdcCpx *getSdcCpx() const;
    /// Edits a complex, which is not owned and whose molecules may be drawn here already. A
    /// complex that the scene has made goes with all that draws it.
    void setSdc(Sdc *sdc) override;

    /// Shows a stored complex in place of what is shown, as the scene's complex if there is one.
    /// False, and nothing done, when the database does not know it.
    bool load(const QString &psiimId);
    /// The same for an alias, in its states.
    bool loadAlias(const QString &cpaPsiimId);
    /// load() or loadAlias(), whichever knows the id.
    bool loadSdc(const QString &psiimId) override;
    /// Adds the molecules and bonds of a stored complex or alias.
    bool addCpxFromDb(const QString &psiimId, const QPointF &scenePos);
    bool addCpaFromDb(const QString &cpaPsiimId, const QPointF &scenePos);

    QString getSiteRefusal(SdcBst *site) override;
    SdcBstBst *addBond(SdcBst *first, SdcBst *second) override;
    bool addRecordFromDb(
        const QString &tag, const QString &psiimId, const QPointF &scenePos) override;
    QString getRecordRefusal(const QString &tag, const QString &psiimId) override;

protected:
    bool isEditingStates() const override;
    Sdc *getMolParent() override;

private:
    bool loadInto(const QString &tag, const QString &psiimId);
    bool addContents(const QString &tag, const QString &psiimId, const QPointF &scenePos);

    QPointer<SdcCpx> m_ownCpx;
};
