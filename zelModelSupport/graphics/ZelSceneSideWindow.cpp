#include "zelModelSupport/graphics/ZelSceneSideWindow.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxLoader.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCode.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"

#include <QDebug>

namespace {

/// The stored layout; an empty one, reported, when it cannot be read.
SdcLayout readLayout(const QString &text, int sdcType, const QString &psiimId)
{
    QString error;
    if (text.isEmpty())
        return {};
    const SdcLayout layout = SdcLayout::fromXml(text, sdcType, &error);
    if (!error.isEmpty())
        qDebug() << "Warning at ZelSceneSideWindow: the layout of" << psiimId
                 << "is not readable, parts get default places:" << error;
    return layout;
}

/// What brings a layout's rectangle to the origin; its loader adds the rectangle's own corner.
QPointF offsetToOrigin(const SdcLayout &layout)
{
    return layout.rect ? -layout.rect->center() : -layout.topLeft;
}

} // namespace

ZelSceneSideWindow::ZelSceneSideWindow(QObject *parent) : ZelScene(parent)
{
    setSceneRect(-100.0, -100.0, 200.0, 200.0);
}

ZelSceneSideWindow::~ZelSceneSideWindow() = default;

bool ZelSceneSideWindow::loadMol(const QString &psiimId, ZelDbSqliteModel *db)
{
    if (!prepare(db,
            "bool ZelSceneSideWindow::loadMol(const QString & psiimId, ZelDbSqliteModel * db)",
            psiimId))
        return false;
    SdcMol mol(db);
    const SdcLayout layout = readLayout(
        ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), psiimId, db), SdcType::Mol, psiimId);
    if (!mol.loadLayout(psiimId, layout, this, offsetToOrigin(layout), false))
        return false;
    if (!layout.rect)
        moveToOrigin(mol.getListSdcMcp());
    return true;
}

bool ZelSceneSideWindow::loadCpx(const QString &psiimId, ZelDbSqliteModel *db)
{
    if (!prepare(db,
            "bool ZelSceneSideWindow::loadCpx(const QString & psiimId, ZelDbSqliteModel * db)",
            psiimId))
        return false;
    SdcCpx cpx(db);
    return loadComplex(&cpx, psiimId);
}

bool ZelSceneSideWindow::loadCpa(const QString &psiimId, ZelDbSqliteModel *db)
{
    static constexpr char function[] =
        "bool ZelSceneSideWindow::loadCpa(const QString & psiimId, ZelDbSqliteModel * db)";
    if (!prepare(db, function, psiimId))
        return false;
    const ZelDbRecord record = db->cpaGetHashInfo(psiimId);
    if (record.isEmpty()) {
        qDebug() << "Error found at" << function << psiimId << "no such alias";
        return false;
    }
    SdcCpx cpx(db);
    if (!loadComplex(&cpx, record.value(ZelDbColumn::CpaCpx)))
        return false;
    SdcCpxStateCode::apply(&cpx, record.value(ZelDbColumn::CpaStateCode), true,
        SdcCpxStateCode::MolPositions::FromOne);
    if (isAllowedToDisplayBindingStatus()) {
        cpx.setBstBindingStatusEnabled(true);
        const QList<SdcBst *> sites = cpx.getListSdcBst();
        for (SdcBst *bst : sites)
            bst->updateDisplayBstBindingStatus();
    }
    return true;
}

bool ZelSceneSideWindow::prepare(ZelDbSqliteModel *db, const char *function, const QString &psiimId)
{
    removeAllItems();
    if (!db) {
        qDebug() << "Error found at" << function << psiimId << "no database";
        return false;
    }
    setZelDbSqliteModel(db);
    return true;
}

bool ZelSceneSideWindow::loadComplex(SdcCpx *cpx, const QString &psiimId)
{
    const SdcLayout layout = readLayout(
        cpx->getZelDbSqliteModel()->cpxGetHashInfo(psiimId).value(ZelDbColumn::GraphicsInfo),
        SdcType::Cpx, psiimId);
    SdcMolType::Reader types(cpx->getZelDbSqliteModel());
    if (!SdcCpxLoader(cpx, &types, this, offsetToOrigin(layout), false).load(psiimId, layout))
        return false;
    if (!layout.rect)
        moveToOrigin(cpx->getListSdcMcp());
    cpx->updateBstBstCpx(this, true);
    return true;
}

void ZelSceneSideWindow::moveToOrigin(const QList<SdcMcp *> &components)
{
    moveListSdcMcps(components, -getSceneRectForAllItems().center());
}
