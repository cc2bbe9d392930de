#include "zelModelSupport/graphics/ZelSceneMli.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

namespace {

constexpr int MolCount = 2;

SdcBst *siteOf(ZelEllipseItem *item)
{
    ZelEllipseItemBst *const bstItem = item ? item->asEllipseItemBst() : nullptr;
    return bstItem ? bstItem->getSdcBst() : nullptr;
}

} // namespace

ZelSceneMli::ZelSceneMli(QObject *parent) : ZelSceneEditing(parent)
{
    setZelSceneType(ZelSceneType::Mli);
}

ZelSceneMli::~ZelSceneMli() = default;

SdcMli *ZelSceneMli::getSdcMli() const
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcMli() : nullptr;
}

void ZelSceneMli::setSdc(Sdc *sdc)
{
    if (m_ownMli && sdc != m_ownMli) {
        removeContents();
        delete m_ownMli.data();
    }
    ZelSceneEditing::setSdc(sdc);
}

bool ZelSceneMli::load(const QString &psiimId)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || db->mliGetHashInfo(psiimId).isEmpty())
        return false;
    const Change change(this);
    removeContents();
    removeAllItems();
    getMolParent();
    SdcMli *const mli = getSdcMli();
    if (!mli)
        return false;
    const QList<SdcBstBstMli *> bonds = mli->getListSdcBstBstMli();
    for (SdcBstBstMli *bond : bonds) // without sites
        removeSdcBstBst(bond);
    clearToLoad(mli);
    const bool loaded = mli->loadFromDb(psiimId, this);
    contentsChanged();
    return loaded;
}

bool ZelSceneMli::loadSdc(const QString &psiimId)
{
    return load(psiimId);
}

SdcBstBstMli *ZelSceneMli::addBstBstMli(ZelEllipseItemBst *itemA, ZelEllipseItemBst *itemB)
{
    SdcBstBst *const bond = addBond(siteOf(itemA), siteOf(itemB));
    return bond ? bond->toSdcBstBstMli() : nullptr;
}

QString ZelSceneMli::getSiteRefusal(SdcBst *site)
{
    SdcMli *const mli = getSdcMli();
    SdcMol *const mol = site ? site->getParentSdcMol() : nullptr;
    if (mol && (!mli || mol->getParentSdc() != mli))
        return tr("Binding site \"%1\" does not belong to this interaction.")
            .arg(getSiteName(site));
    if (mli && !mli->getListSdcBstBstMli().isEmpty())
        return tr("The interaction has its bond already. Delete that bond first to choose other "
                  "sites.");
    return ZelSceneEditing::getSiteRefusal(site);
}

SdcBstBst *ZelSceneMli::addBond(SdcBst *first, SdcBst *second)
{
    SdcMli *const mli = getSdcMli();
    if (!mli || !isBondAllowed(first, second))
        return nullptr;
    const Change change(this);
    SdcBstBst *const bond = makeBond(first, second);
    mli->updateMliPropertyFromDb(); // the sites may have a stored interaction
    return bond;
}

QString ZelSceneMli::getRecordRefusal(const QString &tag, const QString &psiimId)
{
    if (tag == QLatin1String("mol") && getSdcMli()
        && getSdcMli()->getListSdcMol().size() >= MolCount)
        return tr("An interaction joins two molecules. Delete one of them first.");
    return ZelSceneEditing::getRecordRefusal(tag, psiimId);
}

void ZelSceneMli::itemsCollided(ZelEllipseItem *first, ZelEllipseItem *second)
{
    if (isBondAllowed(siteOf(first), siteOf(second)))
        drawBondByHand(siteOf(first), siteOf(second));
}

Sdc *ZelSceneMli::getMolParent()
{
    if (!getSdc()) {
        m_ownMli = new SdcMli(getZelDbSqliteModel(), this);
        setSdc(m_ownMli);
    }
    return getSdc();
}
