#include "InteractionStage.h"

#include "support/ZelTest.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <memory>

namespace {

QStringList lines(const QString &id, const ZelDbRecord &record)
{
    QStringList list;
    for (auto it = record.cbegin(); it != record.cend(); ++it) {
        if (it.key() != ZelDbColumn::GraphicsInfo) // the order of its attributes varies
            list.append(QStringLiteral("%1: %2=%3").arg(id).arg(it.key()).arg(it.value()));
    }
    list.sort();
    return list;
}

} // namespace

SdcMli *InteractionStage::mli(const QString &types, ZelScene *scene)
{
    auto *const mli = new SdcMli(&db);
    double x = 0.0;
    for (const QChar type : types) {
        auto *const mol = new SdcMol(&db);
        mol->loadFromDb(type == u'A' ? molA : molB, scene);
        for (SdcMcp *mcp : mol->getListSdcMcp())
            mcp->getZelEllipseItemMcp()->moveBy(x, 5.0);
        mli->addSdcChild(mol, true);
        x += 240.0;
    }
    return mli;
}

SdcBst *InteractionStage::site(Sdc *parent, int child, int index)
{
    return parent->getChildSdcAtIndex(child)->getListSdcBst().at(index);
}

SdcBstBstMli *InteractionStage::mliBond(SdcMli *mli, SdcBst *first, SdcBst *second)
{
    auto *const bond = new SdcBstBstMli(&db, mli);
    bond->addSdcBst(first);
    bond->addSdcBst(second);
    return bond;
}

QString InteractionStage::alias(const QString &types, const QList<Bond> &bonds, int state)
{
    const std::unique_ptr<SdcCpx> cpx(complex(types, bonds));
    const QString stored = db.cpxGetPsiimIdFromFingerPrint(cpx->getCpxFingerPrint());
    cpx->setProperty(SdcProperty::PsiimId, stored);
    cpx->setProperty(
        SdcProperty::ShortName, db.cpxGetHashInfo(stored).value(ZelDbColumn::ShortName));
    if (!cpx->saveToDbCpx())
        return {};
    // As someone does who opens the stored complex and sets a state.
    SdcCpx opened(&db);
    opened.loadCpxFromDb(cpx->getPsiimId());
    opened.setAllMcpStateType(ComponentStateDontCare, false);
    setState(&opened, 0, 0, state);
    return opened.saveToDbCpa() ? opened.getProperty(SdcProperty::CpaPsiimId) : QString();
}

SdcCxi *InteractionStage::cxi(const QString &alias1, const QString &alias2)
{
    auto *const cxi = new SdcCxi(&db);
    double y = 0.0;
    for (const QString &alias : {alias1, alias2}) {
        auto *const cpx = new SdcCpx(&db);
        cpx->loadCpaFromDb(alias, nullptr, QPointF(0.0, y));
        cxi->addSdcChild(cpx, true);
        y += 300.0;
    }
    return cxi;
}

SdcBstBstCxi *InteractionStage::cxiBond(SdcCxi *cxi, SdcBst *first, SdcBst *second)
{
    auto *const bond = new SdcBstBstCxi(&db, cxi);
    bond->addSdcBst(first);
    bond->addSdcBst(second);
    bond->setSdcCpx1(first->getParentSdcCpx());
    bond->setSdcCpx2(second->getParentSdcCpx());
    cxi->addSdcBstBstCxi(bond);
    return bond;
}

QStringList InteractionStage::records() const
{
    QStringList list;
    for (const QString &id : db.mliGetListPsiimId()) {
        list += lines(id, db.mliGetHashInfo(id));
        for (const QStringList &pair : db.mliGetArrayBstBst(id))
            list.append(pair.join(u' '));
    }
    for (const QString &id : db.caiGetListPsiimId())
        list += lines(id, db.caiGetHashInfo(id));
    for (const QString &id : db.cadGetListPsiimId())
        list += lines(id, db.cadGetHashInfo(id));
    for (const QString &id : db.trnGetListPsiimId())
        list += lines(id, db.trnGetHashInfo(id));
    return list;
}

QString InteractionStage::debugText()
{
    return ZelTest::takeDebugText().remove(u'"');
}

QString InteractionStage::faultOfRefusal(const QList<Sdc *> &sdcs,
    const std::function<bool()> &save, const QString &complaint, bool closeFirst)
{
    const auto state = [&] {
        QStringList texts = closeFirst ? QStringList() : records();
        for (Sdc *sdc : sdcs)
            texts += lines(QString(), sdc->getProperties());
        return texts;
    };
    if (closeFirst)
        file.close();
    const QStringList before = state();
    if (save())
        return QStringLiteral("saved");
    const QStringList said = ZelTest::takeDebugLines();
    if (said.size() != 1 || !said.first().startsWith(QLatin1String("Error found at bool Sdc"))
        || !said.first().contains(QLatin1String("::saveToDb(): "))
        || !said.first().contains(complaint))
        return said.join(u'\n');
    if (!sdcs.first()->getRefusal().contains(complaint, Qt::CaseInsensitive))
        return QLatin1String("not said why: ") + sdcs.first()->getRefusal();
    return state() == before ? QString() : state().join(u'\n');
}
