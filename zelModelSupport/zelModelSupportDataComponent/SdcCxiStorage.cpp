// How associations are read into complex interactions and written from them.

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcReactionStorage.h"

#include <array>

using namespace SdcReactionStorage;

namespace {

constexpr int CpxCount = 2;
constexpr char SaveFunction[] = "bool SdcCxi::saveToDb()";
constexpr char LoadFunction[] = "bool SdcCxi::loadFromDb(const QString & caiPsiimId, "
                                "ZelSceneCxi * scene)";

bool isIntraComplex(const QString &geometry)
{
    return geometry != QLatin1String(ZelGeometry::Plane)
        && geometry != QLatin1String(ZelGeometry::Space);
}

/// One end of a bond as it is stored.
struct End
{
    QString cpaPsiimId;
    QString bstPsiimId;
    QString molPos;
    QString cpxName;
};

/// Writes the association of one bond, and the dissociation that undoes it.
class BondSaver
{
public:
    BondSaver(SdcCxi *cxi, SdcBstBstCxi *bond) : m_cxi(cxi), m_bond(bond) { }

    /// Why the bond cannot be stored; empty when it can.
    QString findObstacle()
    {
        for (auto &[site, end] :
            {std::pair(m_bond->getSdcBst1(), &m_end1), std::pair(m_bond->getSdcBst2(), &m_end2)}) {
            if (!site)
                return QStringLiteral("a bond needs two sites");
            SdcMol *const mol = site->getParentSdcMol();
            SdcCpx *const cpx = site->getParentSdcCpx();
            if (!mol || !cpx || mol->getParentSdc() != cpx || cpx->getParentSdc() != m_cxi
                || cpx->getPosIndex() < 0)
                return QStringLiteral("a bound site belongs to none of its complexes");
            *end = {aliasOf(cpx), site->getPsiimId(), QString::number(mol->getPosIndex()),
                cpx->getProperty(SdcProperty::CpaShortName)};
            if (end->cpaPsiimId.isEmpty() || end->bstPsiimId.isEmpty())
                return QStringLiteral("a complex is not stored in its present states yet, save it "
                                      "first");
        }
        if (m_bond->hasProperty(SdcProperty::Geometry)
            && m_bond->isIntraComplex() != isIntraComplex(p(SdcProperty::Geometry)))
            return QStringLiteral("the geometry \"%1\" does not fit a bond %2")
                .arg(p(SdcProperty::Geometry),
                    m_bond->isIntraComplex() ? QStringLiteral("within one complex")
                                             : QStringLiteral("between two complexes"));
        if (!p(SdcProperty::DissociationRate).isEmpty()
            && p(SdcProperty::ResultCpaPsiimId).isEmpty())
            return QStringLiteral("a dissociation rate needs a result complex to dissociate");
        return {};
    }

    bool save(Assignments *assignments, const QString &layout, ZelDbSqliteModel *db)
    {
        if (!m_bond->hasProperty(SdcProperty::Geometry))
            assignments->assign(m_bond, SdcProperty::Geometry, m_bond->getDefaultGeometry());
        if (p(SdcProperty::AssociationRate).isEmpty())
            assignments->assign(
                m_bond, SdcProperty::AssociationRate, m_bond->getDefaultAssocRateFromMli());
        if (p(SdcProperty::PsiimId).isEmpty())
            assignments->assign(m_bond, SdcProperty::PsiimId, storedId(db));
        if (!assignId(assignments, m_bond, ZelDb::Cai, db))
            return false;
        assignShortName(assignments, m_bond, "cai",
            m_bond->isIntraComplex() ? m_end1.cpxName : m_end1.cpxName + u'.' + m_end2.cpxName, db);
        const ZelDbRecord record{{ZelDbColumn::PsiimId, p(SdcProperty::PsiimId)},
            {ZelDbColumn::ShortName, p(SdcProperty::ShortName)},
            {ZelDbColumn::Name, p(SdcProperty::Name)}, {ZelDbColumn::Notes, p(SdcProperty::Notes)},
            {ZelDbColumn::AssociationRate, p(SdcProperty::AssociationRate)},
            {ZelDbColumn::CaiCpa1, m_end1.cpaPsiimId}, {ZelDbColumn::CaiCpa2, m_end2.cpaPsiimId},
            {ZelDbColumn::CaiResultCpa, p(SdcProperty::ResultCpaPsiimId)},
            {ZelDbColumn::Bst1, m_end1.bstPsiimId}, {ZelDbColumn::MolPos1, m_end1.molPos},
            {ZelDbColumn::Bst2, m_end2.bstPsiimId}, {ZelDbColumn::MolPos2, m_end2.molPos},
            {ZelDbColumn::BindingType, p(SdcProperty::BindingType)},
            {ZelDbColumn::Geometry, p(SdcProperty::Geometry)}, {ZelDbColumn::GraphicsInfo, layout}};
        return db->caiInsert(record) && writeReferences(m_bond, "cai", db) && saveDissociation(db);
    }

private:
    QString p(int key) const { return m_bond->getProperty(key); }

    QString storedId(ZelDbSqliteModel *db) const
    {
        return db->caiGetPsiimId(m_end1.cpaPsiimId, m_end1.bstPsiimId, m_end1.molPos,
            m_end2.cpaPsiimId, m_end2.bstPsiimId, m_end2.molPos, p(SdcProperty::Geometry),
            p(SdcProperty::BindingType), true);
    }

    bool saveDissociation(ZelDbSqliteModel *db)
    {
        if (p(SdcProperty::DissociationRate).isEmpty())
            return true; // a stored one is a record of its own and stays
        const QString source = p(SdcProperty::ResultCpaPsiimId);
        const QString product2 = m_bond->isIntraComplex() ? QString() : m_end2.cpaPsiimId;
        QString id =
            db->cadGetPsiimId(source, m_end1.cpaPsiimId, product2, p(SdcProperty::BindingType));
        ZelDbRecord record{{ZelDbColumn::DissociationRate, p(SdcProperty::DissociationRate)},
            {ZelDbColumn::BindingType, p(SdcProperty::BindingType)}};
        if (id.isEmpty()) {
            id = ZelDb::getNewSdcPsiimId(ZelDb::Cad, db);
            record.insert({{ZelDbColumn::ShortName, p(SdcProperty::ShortName)},
                {ZelDbColumn::Name, p(SdcProperty::Name)}, {ZelDbColumn::CadSourceCpa, source},
                {ZelDbColumn::CadResultCpa1, m_end1.cpaPsiimId},
                {ZelDbColumn::CadResultCpa2, product2},
                {ZelDbColumn::GeometryText,
                    m_bond->isIntraComplex() ? p(SdcProperty::Geometry) : QString()}});
        }
        record.insert(ZelDbColumn::PsiimId, id);
        return !id.isEmpty() && db->cadInsert(record);
    }

    SdcCxi *m_cxi;
    SdcBstBstCxi *m_bond;
    End m_end1;
    End m_end2;
};

} // namespace

bool SdcCxi::loadDom(const QString &psiimId, const QDomElement &elt, ZelSceneCxi *scene)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbRecord record = db ? db->caiGetHashInfo(psiimId) : ZelDbRecord();
    setProperty(SdcProperty::PsiimId, record.value(ZelDbColumn::PsiimId));
    setProperty(SdcProperty::ShortName, record.value(ZelDbColumn::ShortName));
    setProperty(SdcProperty::Name, record.value(ZelDbColumn::Name));
    const QPointF origin = topLeftOf(elt);
    QDomElement cpxElt = elt.firstChildElement(QStringLiteral("cpx"));
    bool good = true;
    int count = 0;
    for (; !cpxElt.isNull() && count < CpxCount; ++count) {
        auto *const cpx = new SdcCpx(db, nullptr);
        good =
            cpx->loadDom(cpxElt.attribute(QStringLiteral("psiimId")), cpxElt, scene, origin, false)
            && good;
        cpx->updateBstBstCpx(scene, true);
        addSdcChild(cpx, true);
        cpxElt = cpxElt.nextSiblingElement(QStringLiteral("cpx"));
    }
    return good && count == CpxCount;
}

SdcCpx *SdcCxi::addCpx(
    const QString &cpaPsiimId, const QDomElement &layout, ZelSceneCxi *scene, const QPointF &refPos)
{
    auto *const cpx = new SdcCpx(getZelDbSqliteModel(), nullptr);
    const bool good = loadAlias(cpx, cpaPsiimId, layout, scene, refPos);
    addSdcChild(cpx, true);
    if (good)
        return cpx;
    report(LoadFunction, QStringLiteral("no complex in the stored states ") + cpaPsiimId);
    return nullptr;
}

SdcBstBstCxi *SdcCxi::makeBond(SdcBst *site1, SdcBst *site2, ZelSceneCxi *scene)
{
    SdcBstBst *const drawn =
        scene && scene->getSdc() == this ? scene->addBond(site1, site2) : nullptr;
    SdcBstBstCxi *bond = drawn ? drawn->toSdcBstBstCxi() : nullptr;
    if (!bond) { // what is stored is shown, even where the user may not draw it
        bond =
            new SdcBstBstCxi(getZelDbSqliteModel(), scene ? static_cast<QObject *>(scene) : this);
        bond->addSdcBst(site1);
        bond->addSdcBst(site2);
        if (scene)
            scene->addBondLine(bond, new ZelLineItemBstBstCxi(false, nullptr));
    }
    bond->setSdcCpx1(site1->getParentSdcCpx());
    bond->setSdcCpx2(site2->getParentSdcCpx());
    if (!m_bonds.contains(bond))
        addSdcBstBstCxi(bond);
    return bond;
}

bool SdcCxi::loadFromDb(const QString &caiPsiimId, ZelSceneCxi *scene)
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
    ZelDbRecord record = db->caiGetHashInfo(caiPsiimId);
    if (record.isEmpty()) {
        report(LoadFunction, QStringLiteral("no association ") + caiPsiimId);
        return false;
    }
    record.insert(ZelDbColumn::PsiimId, caiPsiimId);
    setProperty(SdcProperty::PsiimId, caiPsiimId);
    setProperty(SdcProperty::ShortName, record.value(ZelDbColumn::ShortName));
    setProperty(SdcProperty::Name, record.value(ZelDbColumn::Name));

    const std::array<QString, CpxCount> aliases{
        record.value(ZelDbColumn::CaiCpa1), record.value(ZelDbColumn::CaiCpa2)};
    const QString geometry = record.value(ZelDbColumn::Geometry);
    const bool intraComplex = aliases[0] == aliases[1] && isIntraComplex(geometry);
    const Layouts layouts(record.value(ZelDbColumn::GraphicsInfo), "cxi", "cpx");
    if (!layouts.error().isEmpty())
        report(LoadFunction,
            QStringLiteral("the layout of %1 is not readable, complexes get default places: %2")
                .arg(caiPsiimId, layouts.error()));
    std::array<SdcCpx *, CpxCount> cpxs{};
    Sdc *before = nullptr;
    for (std::size_t i = 0; i < (intraComplex ? 1 : cpxs.size()); ++i) {
        const QDomElement layout =
            layouts.find(db->cpaGetCpxPsiimId(aliases[i]), static_cast<int>(i));
        cpxs[i] = addCpx(
            aliases[i], layout, scene, layout.isNull() ? placeBeside(before) : layouts.origin());
        before = cpxs[i];
    }
    const auto siteOf = [&](int bstColumn, int molPosColumn, const char *cpxPos) {
        return getSdcBstFromBstPsiimIdAndPosIndices(
            record.value(bstColumn), record.value(molPosColumn), QLatin1String(cpxPos));
    };
    SdcBst *const site1 = siteOf(ZelDbColumn::Bst1, ZelDbColumn::MolPos1, "0");
    SdcBst *const site2 = siteOf(ZelDbColumn::Bst2, ZelDbColumn::MolPos2, intraComplex ? "0" : "1");
    if (!site1 || !site2) {
        report(LoadFunction,
            QStringLiteral("%1 binds a site that its complexes do not have: %2")
                .arg(caiPsiimId, record.value(site1 ? ZelDbColumn::Bst2 : ZelDbColumn::Bst1)));
        return false;
    }
    SdcBstBstCxi *const bond = makeBond(site1, site2, scene);
    bond->setProperty(SdcProperty::Geometry, geometry);
    bond->setProperty(SdcProperty::BindingType, record.value(ZelDbColumn::BindingType));
    bond->setPropertiesFromRecord(record);
    bond->setProperty(
        SdcProperty::References, db->refGetReferences(QStringLiteral("cai"), caiPsiimId));
    const QString cad = db->cadGetPsiimId(record.value(ZelDbColumn::CaiResultCpa), aliases[0],
        intraComplex ? QString() : aliases[1], record.value(ZelDbColumn::BindingType));
    if (!cad.isEmpty())
        bond->setProperty(SdcProperty::DissociationRate,
            db->cadGetHashInfo(cad).value(ZelDbColumn::DissociationRate));
    return cpxs[0] && (intraComplex || cpxs[1]);
}

QString SdcCxi::layoutOfBond(SdcBstBstCxi *bond)
{
    QDomDocument doc(QStringLiteral("doc"));
    doc.setContent(getGraphicsInfo());
    QDomElement element = doc.documentElement().firstChildElement(getDomXmlTag());
    QList<QDomElement> parts;
    for (QDomElement part = element.firstChildElement(QStringLiteral("cpx")); !part.isNull();
         part = part.nextSiblingElement(QStringLiteral("cpx")))
        parts.append(part);
    QList<SdcCpx *> cpxs{bond->getSdcBst1()->getParentSdcCpx()};
    if (!bond->isIntraComplex())
        cpxs.append(bond->getSdcBst2()->getParentSdcCpx());
    QList<QDomElement> kept;
    for (SdcCpx *cpx : std::as_const(cpxs)) {
        for (const QDomElement &part : std::as_const(parts)) {
            if (part.attribute(QStringLiteral("posIndex")) == QString::number(cpx->getPosIndex()))
                kept.append(part);
        }
    }
    for (const QDomElement &part : std::as_const(parts))
        element.removeChild(part);
    for (qsizetype i = 0; i < kept.size(); ++i) {
        kept[i].setAttribute(QStringLiteral("posIndex"), QString::number(i));
        element.appendChild(kept[i]);
    }
    return doc.toString(1);
}

bool SdcCxi::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const auto refuse = [](const QString &why) {
        report(SaveFunction, why);
        return false;
    };
    if (!db || !db->database())
        return refuse(QStringLiteral("no database"));
    QList<SdcBstBstCxi *> bonds;
    for (SdcBstBstCxi *bond : std::as_const(m_bonds)) {
        if (bond && !bonds.contains(bond))
            bonds.append(bond);
    }
    if (bonds.isEmpty())
        return refuse(QStringLiteral("it needs a bond between two complexes"));
    std::vector<BondSaver> savers;
    for (SdcBstBstCxi *bond : std::as_const(bonds)) {
        savers.emplace_back(this, bond);
        if (const QString obstacle = savers.back().findObstacle(); !obstacle.isEmpty())
            return refuse(obstacle);
    }
    Assignments assignments;
    return writeInTransaction(db, SaveFunction, &assignments, [&] {
        // An interaction of one bond is named where the bond is not.
        for (const int key : {SdcProperty::ShortName, SdcProperty::Name}) {
            if (bonds.size() == 1 && bonds.first()->getProperty(key).isEmpty()
                && !getProperty(key).isEmpty())
                assignments.assign(bonds.first(), key, getProperty(key));
        }
        for (qsizetype i = 0; i < bonds.size(); ++i) {
            if (!savers[static_cast<std::size_t>(i)].save(
                    &assignments, layoutOfBond(bonds.at(i)), db))
                return false;
        }
        SdcBstBstCxi *const first = bonds.first();
        if (getPsiimId().isEmpty() || bonds.size() == 1) {
            for (const int key : {SdcProperty::PsiimId, SdcProperty::ShortName, SdcProperty::Name})
                assignments.assign(this, key, first->getProperty(key));
        }
        return true;
    });
}
