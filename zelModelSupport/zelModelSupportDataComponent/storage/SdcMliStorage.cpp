// How a molecule interaction is built from its record and its layout, and written.

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include <array>

using namespace SdcReactionStorage;

namespace {

constexpr int MolCount = 2;
constexpr char SaveFunction[] = "bool SdcMli::saveToDb()";
constexpr char LoadFunction[] = "bool SdcMli::loadFromDb(const QString & psiimId, "
                                "ZelSceneMli * scene)";
constexpr char BondFunction[] = "void SdcMli::updateBstBstMli(ZelSceneMli * scene)";

// Of a row of mliGetArrayBstBst().
enum PairColumn { MolPos1 = 2, Bst1, MolPos2, Bst2 };

/// The molecule that the stored pair of sites puts at a position; empty when it says nothing.
QString molAtPosition(
    const ZelDbSqliteModel *db, const QList<QStringList> &pairs, const QString &position)
{
    QString site;
    for (const QStringList &pair : pairs) {
        for (const auto &[molPos, bst] : {std::pair(MolPos1, Bst1), std::pair(MolPos2, Bst2)}) {
            if (site.isEmpty() && pair.value(molPos) == position)
                site = pair.value(bst);
        }
    }
    const QString mcp = db->bstGetHashInfo(site).value(ZelDbColumn::OwnerPsiimId);
    return db->mcpGetHashInfo(mcp).value(ZelDbColumn::OwnerPsiimId);
}

/// Why the bond's site cannot be stored; empty when it can.
QString obstacleOf(SdcMli *mli, SdcBst *site)
{
    SdcMol *const mol = site->getParentSdcMol();
    if (!mol || mol->getParentSdc() != mli || mol->getPosIndex() < 0)
        return QStringLiteral("a bound site belongs to none of its molecules");
    if (site->getPsiimId().isEmpty())
        return QStringLiteral("a molecule is not stored yet, save it first");
    return {};
}

} // namespace

void SdcMli::updateBstBstMli(ZelSceneMli *scene)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || getPsiimId().isEmpty())
        return;
    const QList<QStringList> pairs = db->mliGetArrayBstBst(getPsiimId());
    for (const QStringList &pair : pairs) {
        SdcBst *const site1 = getSdcBstFromMolPosBstId(pair.value(MolPos1), pair.value(Bst1));
        SdcBst *const site2 = getSdcBstFromMolPosBstId(pair.value(MolPos2), pair.value(Bst2));
        if (!site1 || !site2) {
            report(BondFunction,
                QStringLiteral("%1 binds a site that its molecules do not have: %2")
                    .arg(getPsiimId(), pair.value(site1 ? Bst2 : Bst1)));
            continue;
        }
        if (scene && scene->getSdc() == this)
            scene->makeBond(site1, site2);
        if (!m_bonds.isEmpty())
            continue;
        auto *const bond = new SdcBstBstMli(db, scene ? static_cast<QObject *>(scene) : this);
        joinSites(
            bond, site1, site2, scene, scene ? new ZelLineItemBstBstMli(false, nullptr) : nullptr);
        addSdcBstBstMli(bond);
    }
}

SdcMol *SdcMli::addMol(const QString &molPsiimId, const QDomElement &layout, ZelSceneMli *scene,
    const QPointF &refPos, bool *good)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const bool takesOwn = layout.isNull();
    const Layouts own(LoadFunction, molPsiimId,
        takesOwn ? ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), molPsiimId, db) : QString(),
        "mol", "mcp");
    auto *const mol = new SdcMol(db, nullptr);
    if (!mol->loadDom(
            molPsiimId, takesOwn ? own.element() : layout, scene, refPos - own.origin(), false)) {
        mol->setProperty(SdcProperty::PsiimId, molPsiimId); // it keeps its position
        *good = false;
    }
    addSdcChild(mol, true);
    return mol;
}

bool SdcMli::loadDom(const QString &psiimId, const QDomElement &elt, ZelSceneMli *scene)
{
    if (ZelDbSqliteModel *const db = getZelDbSqliteModel())
        db->mliGetHashInfo(psiimId);
    const QList<QDomElement> mols = childElements(elt, "mol").mid(0, MolCount);
    bool good = mols.size() == MolCount;
    for (const QDomElement &mol : mols)
        addMol(mol.attribute(QStringLiteral("psiimId")), mol, scene, topLeftOf(elt), &good);
    return good;
}

bool SdcMli::loadFromDb(const QString &psiimId, ZelSceneMli *scene)
{
    if (!isEmpty() || !m_bonds.isEmpty())
        return refuse(
            this, LoadFunction, QStringLiteral("the interaction is not empty, reset it first"));
    const ZelDbRecord record = findRecord(
        this, LoadFunction, &ZelDbSqliteModel::mliGetHashInfo, "molecule interaction", psiimId);
    if (record.isEmpty())
        return false;
    readProperties(this, "mli", psiimId, record, mliProperties);

    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const Layouts layouts(
        LoadFunction, psiimId, record.value(ZelDbColumn::GraphicsInfo), "mli", "mol");
    const QList<QStringList> pairs = db->mliGetArrayBstBst(psiimId);
    bool good = true;
    SdcMol *before = nullptr;
    std::array<SdcLayout, MolCount> own;
    SdcNewParts::Drawn drawn;
    for (int i = 0; i < MolCount; ++i) {
        QString id = molAtPosition(db, pairs, QString::number(i));
        const QDomElement layout = layouts.find(id, i);
        if (id.isEmpty())
            id = layout.attribute(QStringLiteral("psiimId"));
        before = addMol(id, layout, scene, layouts.refPosOf(layout, before), &good);
        SdcLayout &ownLayout = own.at(static_cast<std::size_t>(i));
        ownLayout = SdcLayout::fromElement(layout);
        drawn.emplace_back(before, &ownLayout);
    }
    SdcNewParts::settle(drawn);
    updateBstBstMli(scene);
    return good && m_bonds.size() == 1;
}

bool SdcMli::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || !db->database())
        return refuse(this, SaveFunction, QLatin1String(NoDatabase));
    if (m_bonds.size() != 1 || !m_bonds.first() || m_bonds.first()->getListSdcBst().size() != 2)
        return refuse(this, SaveFunction, QStringLiteral("it needs one bond between two sites"));
    if (!canSave())
        return refuse(
            this, SaveFunction, QStringLiteral("give an association and a dissociation rate"));
    SdcBst *const site1 = m_bonds.first()->getSdcBst1();
    SdcBst *const site2 = m_bonds.first()->getSdcBst2();
    for (SdcBst *site : {site1, site2}) {
        if (const QString obstacle = obstacleOf(this, site); !obstacle.isEmpty())
            return refuse(this, SaveFunction, obstacle);
    }
    SdcMol *const mol1 = site1->getParentSdcMol();
    SdcMol *const mol2 = site2->getParentSdcMol();
    if (mol1 == mol2)
        return refuse(
            this, SaveFunction, QStringLiteral("the bond joins two sites of one molecule"));
    const ZelDbRecord stored = db->mliGetHashInfo(site1->getPsiimId(), site2->getPsiimId());
    const QString declared = stored.value(ZelDbColumn::PsiimId);
    if (!declared.isEmpty() && declared != getPsiimId())
        return refuse(this, SaveFunction,
            QLatin1String("the model has an interaction of these sites already, %1; open that one "
                          "to change it")
                .arg(titleOf(declared, stored)));

    Assignments assignments;
    return writeInTransaction(this, SaveFunction, &assignments, [&](QString *) {
        const QString name = mol1->getProperty(SdcProperty::ShortName) + u'.'
            + mol2->getProperty(SdcProperty::ShortName);
        if (!assignIdAndShortName(&assignments, this, ZelDb::Mli, "mli", name, db))
            return false;
        ZelDbRecord record = recordOf(this, mliProperties);
        record.insert(ZelDbColumn::GraphicsInfo, getGraphicsInfo());
        return db->mliInsert(record) && db->mliRemoveAllBstBst(getPsiimId())
            && db->mliInsertBstBst(getPsiimId(), 0, QString::number(mol1->getPosIndex()),
                site1->getPsiimId(), QString::number(mol2->getPosIndex()), site2->getPsiimId())
            && writeReferences(this, "mli", db);
    });
}
