// How a molecule interaction is built from its record and its layout, and written.

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcReactionStorage.h"

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

/// One end of the bond as it is stored.
struct End
{
    QString molPos;
    QString bstPsiimId;
    QString molName;
};

/// Why the bond's site cannot be stored; empty when it can.
QString readEnd(SdcMli *mli, SdcBst *site, End *end)
{
    SdcMol *const mol = site->getParentSdcMol();
    if (!mol || mol->getParentSdc() != mli || mol->getPosIndex() < 0)
        return QStringLiteral("a bound site belongs to none of its molecules");
    if (site->getPsiimId().isEmpty())
        return QStringLiteral("a molecule is not stored yet, save it first");
    *end = {QString::number(mol->getPosIndex()), site->getPsiimId(),
        mol->getProperty(SdcProperty::ShortName)};
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
            scene->addBstBstMli(site1->getZelEllipseItemBst(), site2->getZelEllipseItemBst());
        if (!m_bonds.isEmpty())
            continue;
        // What is stored is shown, even where the user may not draw it.
        auto *const bond = new SdcBstBstMli(db, scene ? static_cast<QObject *>(scene) : this);
        bond->addSdcBst(site1);
        bond->addSdcBst(site2);
        if (scene)
            scene->addBondLine(bond, new ZelLineItemBstBstMli(false, nullptr));
        addSdcBstBstMli(bond);
    }
}

SdcMol *SdcMli::addMol(const QString &molPsiimId, const QDomElement &layout, ZelSceneMli *scene,
    const QPointF &refPos, bool *good)
{
    auto *const mol = new SdcMol(getZelDbSqliteModel(), nullptr);
    if (!mol->loadDom(molPsiimId, layout, scene, refPos, false)) {
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
    const QPointF origin = topLeftOf(elt);
    QDomElement molElt = elt.firstChildElement(QStringLiteral("mol"));
    bool good = true;
    int count = 0;
    for (; !molElt.isNull() && count < MolCount; ++count) {
        addMol(molElt.attribute(QStringLiteral("psiimId")), molElt, scene, origin, &good);
        molElt = molElt.nextSiblingElement(QStringLiteral("mol"));
    }
    return good && count == MolCount;
}

bool SdcMli::loadFromDb(const QString &psiimId, ZelSceneMli *scene)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db) {
        report(LoadFunction, QStringLiteral("no database"));
        return false;
    }
    if (!isEmpty() || !m_bonds.isEmpty()) {
        report(LoadFunction, QStringLiteral("the interaction is not empty, reset it first"));
        return false;
    }
    const ZelDbRecord record = db->mliGetHashInfo(psiimId);
    if (record.isEmpty()) {
        report(LoadFunction, QStringLiteral("no molecule interaction ") + psiimId);
        return false;
    }
    for (const auto &[key, column] : {std::pair(SdcProperty::PsiimId, ZelDbColumn::PsiimId),
             std::pair(SdcProperty::AssociationRate, ZelDbColumn::AssociationRate),
             std::pair(SdcProperty::DissociationRate, ZelDbColumn::DissociationRate),
             std::pair(SdcProperty::ShortName, ZelDbColumn::ShortName),
             std::pair(SdcProperty::Name, ZelDbColumn::Name),
             std::pair(SdcProperty::Notes, ZelDbColumn::Notes)})
        setProperty(key, record.value(column));
    setProperty(SdcProperty::References, db->refGetReferences(QStringLiteral("mli"), psiimId));

    const Layouts layouts(
        ZelDbSqlite::getGraphicsInfo(QStringLiteral("mli"), psiimId, db), "mli", "mol");
    bool good = true;
    if (!layouts.error().isEmpty())
        report(LoadFunction,
            QStringLiteral("the layout of %1 is not readable, molecules get default places: %2")
                .arg(psiimId, layouts.error()));
    const QList<QStringList> pairs = db->mliGetArrayBstBst(psiimId);
    Sdc *before = nullptr;
    for (int i = 0; i < MolCount; ++i) {
        QString id = molAtPosition(db, pairs, QString::number(i));
        const QDomElement layout = layouts.find(id, i);
        if (id.isEmpty())
            id = layout.attribute(QStringLiteral("psiimId"));
        if (!layout.isNull()) {
            before = addMol(id, layout, scene, layouts.origin(), &good);
            continue;
        }
        const Layouts own(
            ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), id, db), "mol", "mcp");
        before = addMol(id, own.element(), scene, placeBeside(before) - own.origin(), &good);
    }
    updateBstBstMli(scene);
    return good && m_bonds.size() == 1;
}

bool SdcMli::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const auto refuse = [](const QString &why) {
        report(SaveFunction, why);
        return false;
    };
    if (!db || !db->database())
        return refuse(QStringLiteral("no database"));
    if (m_bonds.size() != 1 || !m_bonds.first() || m_bonds.first()->getListSdcBst().size() != 2)
        return refuse(QStringLiteral("it needs one bond between two sites"));
    if (!canSave())
        return refuse(QStringLiteral("give an association and a dissociation rate"));
    const QList<SdcBst *> sites = m_bonds.first()->getListSdcBst();
    End end1;
    End end2;
    QString why = readEnd(this, sites.at(0), &end1);
    if (why.isEmpty())
        why = readEnd(this, sites.at(1), &end2);
    if (why.isEmpty() && end1.molPos == end2.molPos)
        why = QStringLiteral("the bond joins two sites of one molecule");
    if (!why.isEmpty())
        return refuse(why);
    const QString declared =
        db->mliGetHashInfo(end1.bstPsiimId, end2.bstPsiimId).value(ZelDbColumn::PsiimId);
    if (!declared.isEmpty() && declared != getPsiimId())
        return refuse(QStringLiteral("%1 joins the same sites, change that one").arg(declared));

    Assignments assignments;
    return writeInTransaction(db, SaveFunction, &assignments, [&] {
        if (!assignId(&assignments, this, ZelDb::Mli, db))
            return false;
        assignShortName(&assignments, this, "mli", end1.molName + u'.' + end2.molName, db);
        const QString id = getPsiimId();
        return db->mliInsert({{ZelDbColumn::PsiimId, id},
                   {ZelDbColumn::ShortName, getProperty(SdcProperty::ShortName)},
                   {ZelDbColumn::Name, getProperty(SdcProperty::Name)},
                   {ZelDbColumn::Notes, getProperty(SdcProperty::Notes)},
                   {ZelDbColumn::AssociationRate, getProperty(SdcProperty::AssociationRate)},
                   {ZelDbColumn::DissociationRate, getProperty(SdcProperty::DissociationRate)},
                   {ZelDbColumn::GraphicsInfo, getGraphicsInfo()}})
            && db->mliRemoveAllBstBst(id)
            && db->mliInsertBstBst(
                id, 0, end1.molPos, end1.bstPsiimId, end2.molPos, end2.bstPsiimId)
            && writeReferences(this, "mli", db);
    });
}
