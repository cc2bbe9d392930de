#include "CpxStage.h"

#include "support/ZelTree.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <memory>

namespace {

QString store(ZelDbSqliteModel *db, const QString &name, const QList<ZelTree::Mcp> &mcps)
{
    ZelScene scene(nullptr);
    const std::unique_ptr<SdcMol> mol(ZelTree::molecule(db, name, mcps, &scene));
    return mol->saveToDb() ? mol->getPsiimId() : QString();
}

QStringList lines(const ZelDbRecord &record)
{
    QStringList list;
    for (auto it = record.cbegin(); it != record.cend(); ++it)
        list.append(QStringLiteral("%1=%2").arg(it.key()).arg(it.value()));
    list.sort();
    return list;
}

} // namespace

CpxStage::CpxStage()
{
    if (!file.create(":memory:"))
        qFatal("no model in memory");
    const QStringList features{"P", "Q"};
    molA = store(&db, "A", {{"kinase", features, 2}, {"tail", {}, 1}});
    molB = store(&db, "B", {{"head", features.mid(0, 1), 2}});
    if (molA.isEmpty() || molB.isEmpty())
        qFatal("molecules are not stored");
}

SdcCpx *CpxStage::complex(const QString &types, const QList<Bond> &bonds, ZelScene *scene)
{
    auto *const cpx = new SdcCpx(&db);
    double y = 0.0;
    for (const QChar type : types) {
        auto *const mol = new SdcMol(&db);
        mol->loadFromDb(type == u'A' ? molA : molB, scene);
        for (SdcMcp *mcp : mol->getListSdcMcp())
            mcp->getZelEllipseItemMcp()->moveBy(0.0, y);
        cpx->addSdcChild(mol, true);
        y += 80.0;
    }
    for (const Bond &entry : bonds)
        bond(cpx, entry, scene);
    return cpx;
}

SdcBst *CpxStage::site(SdcCpx *cpx, End end)
{
    return cpx->getChildSdcAtIndex(end.mol)->getListSdcBst().at(end.site);
}

SdcBstBstCpx *CpxStage::bond(SdcCpx *cpx, Bond bond, ZelScene *scene)
{
    SdcBstBstCpx *result = nullptr;
    if (scene) {
        result = scene->addSdcBstBstCpx(site(cpx, bond.a), site(cpx, bond.b));
    } else {
        result = new SdcBstBstCpx(&db, cpx);
        result->addSdcBst(site(cpx, bond.a));
        result->addSdcBst(site(cpx, bond.b));
    }
    cpx->addSdcBstBstCpx(result);
    return result;
}

void CpxStage::setState(SdcCpx *cpx, int mol, int feature, int state)
{
    SdcMcp *const mcp = cpx->getChildSdcAtIndex(mol)->getListSdcMcp().first();
    mcp->getListSticky().at(feature)->setStateType(state, false);
    mcp->updateStatePropertyFromSticky();
}

QStringList CpxStage::rows(const QString &cpxPsiimId) const
{
    QStringList list = lines(db.cpxGetHashInfo(cpxPsiimId));
    list += db.cpxGetListMolPsiimId(cpxPsiimId);
    for (const QStringList &bond : db.cpxGetArrayBstBst(cpxPsiimId))
        list.append(bond.join(u' '));
    for (const QString &alias : db.cpaGetListPsiimIdBasedOnCpx(cpxPsiimId))
        list += lines(db.cpaGetHashInfo(alias));
    return list;
}
