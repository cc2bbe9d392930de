#pragma once

#include "zelModelSupport/graphics/ZelScene.h"

class SdcCpx;

/// The small scene that shows one stored object, centred on its origin.
///
/// Each load first clears the scene. What is shown are drawings alone: their data components are
/// gone when a load returns. False when the record does not exist or nothing of it can be shown;
/// anything less is reported and the rest is shown.
class ZELMODELSUPPORT_EXPORT ZelSceneSideWindow : public ZelScene
{
    Q_OBJECT
public:
    explicit ZelSceneSideWindow(QObject *parent = nullptr);
    ~ZelSceneSideWindow() override;

    bool loadMol(const QString &psiimId, ZelDbSqliteModel *db);
    /// The complex with its bonds.
    bool loadCpx(const QString &psiimId, ZelDbSqliteModel *db);
    /// The complex of an alias, in the alias's states. Binding statuses are shown where
    /// isAllowedToDisplayBindingStatus().
    bool loadCpa(const QString &psiimId, ZelDbSqliteModel *db);

private:
    bool prepare(ZelDbSqliteModel *db, const char *function, const QString &psiimId);
    bool loadComplex(SdcCpx *cpx, const QString &psiimId);
    void moveToOrigin(const QList<SdcMcp *> &components);
};
