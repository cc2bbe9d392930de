// How associations are read into complex interactions and written from them.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/graphics/ZelSceneCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include <algorithm>
#include <array>

using namespace SdcReactionStorage;

namespace {

constexpr int CpxCount = 2;
constexpr char SaveFunction[] = "bool SdcCxi::saveToDb()";
constexpr char LoadFunction[] = "bool SdcCxi::loadFromDb(const QString & caiPsiimId, "
                                "ZelSceneCxi * scene)";

constexpr StoredProperty namesOnly[]{
    {SdcProperty::ShortName, ZelDbColumn::ShortName}, {SdcProperty::Name, ZelDbColumn::Name}};
constexpr StoredProperty qualifiers[]{{SdcProperty::Geometry, ZelDbColumn::Geometry},
    {SdcProperty::BindingType, ZelDbColumn::BindingType}};

bool isIntraComplex(const QString &geometry)
{
    return geometry != QLatin1String(ZelGeometry::Plane)
        && geometry != QLatin1String(ZelGeometry::Space);
}

/// Whether the association closes a ring in one complex. A site does not bind itself: where both
/// ends are one, the complex binds another one of its kind, even if no geometry says so.
bool isIntraComplex(const ZelDbRecord &record)
{
    using namespace ZelDbColumn;
    return isIntraComplex(record.value(Geometry)) && record.value(CaiCpa1) == record.value(CaiCpa2)
        && (record.value(Bst1) != record.value(Bst2)
            || record.value(MolPos1) != record.value(MolPos2));
}

/// Writes the association of one bond, and the dissociation that undoes it.
class BondSaver
{
public:
    BondSaver(SdcCxi *cxi, SdcBstBstCxi *bond, bool withResult)
        : m_cxi(cxi), m_bond(bond), m_db(cxi->getZelDbSqliteModel()), m_withResult(withResult)
    {
    }

    /// Why the bond cannot be stored; empty when it can.
    QString findObstacle()
    {
        if (!m_bond->getSdcBst2())
            return QStringLiteral("a bond needs two sites");
        for (auto &[site, end] : {std::pair(m_bond->getSdcBst1(), &m_key.end1),
                 std::pair(m_bond->getSdcBst2(), &m_key.end2)}) {
            SdcMol *const mol = site->getParentSdcMol();
            SdcCpx *const cpx = site->getParentSdcCpx();
            if (!mol || !cpx || mol->getParentSdc() != cpx || cpx->getParentSdc() != m_cxi
                || cpx->getPosIndex() < 0)
                return QStringLiteral("a bound site belongs to none of its complexes");
            *end = endOf(site);
            if (end->cpaPsiimId.isEmpty() || end->bstPsiimId.isEmpty())
                return QStringLiteral("a complex is not stored in its present states yet, save it "
                                      "first");
        }
        if (!p(SdcProperty::Geometry).isEmpty()
            && m_bond->isIntraComplex() != isIntraComplex(p(SdcProperty::Geometry)))
            return QStringLiteral("the geometry \"%1\" does not fit a bond %2")
                .arg(p(SdcProperty::Geometry),
                    m_bond->isIntraComplex() ? QStringLiteral("within one complex")
                                             : QStringLiteral("between two complexes"));
        if (!m_withResult && !p(SdcProperty::DissociationRate).isEmpty()
            && p(SdcProperty::ResultCpaPsiimId).isEmpty())
            return QStringLiteral("a dissociation rate needs a result complex to dissociate");
        m_key.geometry = p(SdcProperty::Geometry).isEmpty() ? m_bond->getDefaultGeometry()
                                                            : p(SdcProperty::Geometry);
        m_key.bindingType = p(SdcProperty::BindingType);
        m_stored = m_db->caiGetHashInfo(p(SdcProperty::PsiimId));
        m_readDissociation = readDissociation();
        return findTwin();
    }

    bool isSameAssociation(const BondSaver &other) const { return m_key.isSame(other.m_key); }

    bool save(Assignments *assignments, const QString &layout, QString *why)
    {
        assignments->assign(m_bond, SdcProperty::Geometry, m_key.geometry);
        if (p(SdcProperty::AssociationRate).isEmpty())
            assignments->assign(
                m_bond, SdcProperty::AssociationRate, m_bond->getDefaultAssocRateFromMli());
        if ((m_withResult && !saveResult(assignments, why))
            || !assignIdAndShortName(assignments, m_bond, ZelDb::Cai, "cai", defaultName(), m_db))
            return false;
        ZelDbRecord record = recordOf(m_bond, caiProperties);
        record.insert(recordOf(m_bond, qualifiers));
        record.insert({{ZelDbColumn::CaiCpa1, m_key.end1.cpaPsiimId},
            {ZelDbColumn::CaiCpa2, m_key.end2.cpaPsiimId},
            {ZelDbColumn::Bst1, m_key.end1.bstPsiimId}, {ZelDbColumn::MolPos1, m_key.end1.molPos},
            {ZelDbColumn::Bst2, m_key.end2.bstPsiimId}, {ZelDbColumn::MolPos2, m_key.end2.molPos},
            {ZelDbColumn::GraphicsInfo, layout}});
        return m_db->caiInsert(record) && writeReferences(m_bond, "cai", m_db)
            && saveDissociation(why);
    }

private:
    QString p(int key) const { return m_bond->getProperty(key); }

    /// Which other association is stored for the same sites, so that a save would write over what
    /// this one has not read. One that has stood beside it under the same key may stay.
    QString findTwin() const
    {
        const QString twin = findAssociation(m_key, true, m_db);
        if (twin.isEmpty() || twin == p(SdcProperty::PsiimId)
            || (!m_stored.isEmpty() && m_key.isSame(keyOf(m_stored))))
            return {};
        return QLatin1String("the model has this association already, as %1; open that one to "
                             "change it, or choose another geometry or binding type")
            .arg(titleOf(twin, m_db->caiGetHashInfo(twin)));
    }

    /// A result that someone has chosen stays; one that was stored for other reactants does not.
    bool saveResult(Assignments *assignments, QString *why)
    {
        const QString result = p(SdcProperty::ResultCpaPsiimId);
        const AssociationKey stored = keyOf(m_stored);
        const bool isOfOthers = !m_stored.isEmpty()
            && result == m_stored.value(ZelDbColumn::CaiResultCpa)
            && !(stored.end1 == m_key.end1 && stored.end2 == m_key.end2);
        if (!result.isEmpty() && !isOfOthers)
            return true;
        assignments->assign(m_bond, SdcProperty::ResultCpaPsiimId, result);
        if (m_bond->saveResultToDb())
            return true;
        *why = m_bond->getRefusal();
        return false;
    }

    QString defaultName() const
    {
        const QString name1 = cpxNameOf(m_bond->getSdcBst1());
        return m_bond->isIntraComplex() ? name1 : name1 + u'.' + cpxNameOf(m_bond->getSdcBst2());
    }

    static QString cpxNameOf(SdcBst *site)
    {
        return site->getParentSdcCpx()->getProperty(SdcProperty::CpaShortName);
    }

    /// The dissociation that loading the stored association has read the rate of.
    QString readDissociation() const
    {
        const QString result = m_stored.value(ZelDbColumn::CaiResultCpa);
        return result.isEmpty()
            ? QString()
            : m_db->cadGetPsiimId(result, m_stored.value(ZelDbColumn::CaiCpa1),
                isIntraComplex(m_stored) ? QString() : m_stored.value(ZelDbColumn::CaiCpa2),
                m_stored.value(ZelDbColumn::BindingType));
    }

    bool saveDissociation(QString *why)
    {
        const QString rate = p(SdcProperty::DissociationRate);
        if (rate.isEmpty())
            return true; // a stored one is a record of its own and stays
        const QString source = p(SdcProperty::ResultCpaPsiimId);
        const QString product2 = m_bond->isIntraComplex() ? QString() : m_key.end2.cpaPsiimId;
        QString id =
            m_db->cadGetPsiimId(source, m_key.end1.cpaPsiimId, product2, m_key.bindingType);
        if (!id.isEmpty() && id != m_readDissociation) {
            const ZelDbRecord other = m_db->cadGetHashInfo(id);
            const QString otherRate = other.value(ZelDbColumn::DissociationRate);
            if (other.value(ZelDbColumn::BindingType) != m_key.bindingType) {
                id.clear();
            } else if (otherRate == rate) {
                return true;
            } else {
                *why = QLatin1String("the model has this dissociation already, as %1 with the rate "
                                     "%2; give that rate, or none and open that one to change it")
                           .arg(titleOf(id, other), otherRate);
                return false;
            }
        }
        ZelDbRecord record{
            {ZelDbColumn::DissociationRate, rate}, {ZelDbColumn::BindingType, m_key.bindingType}};
        if (id.isEmpty()) {
            id = ZelDb::getNewSdcPsiimId(ZelDb::Cad, m_db);
            record.insert({{ZelDbColumn::ShortName, p(SdcProperty::ShortName)},
                {ZelDbColumn::Name, p(SdcProperty::Name)}, {ZelDbColumn::CadSourceCpa, source},
                {ZelDbColumn::CadResultCpa1, m_key.end1.cpaPsiimId},
                {ZelDbColumn::CadResultCpa2, product2},
                {ZelDbColumn::GeometryText,
                    m_bond->isIntraComplex() ? m_key.geometry : QString()}});
        }
        record.insert(ZelDbColumn::PsiimId, id);
        return !id.isEmpty() && m_db->cadInsert(record);
    }

    SdcCxi *m_cxi;
    SdcBstBstCxi *m_bond;
    ZelDbSqliteModel *m_db;
    bool m_withResult;
    AssociationKey m_key;
    ZelDbRecord m_stored; ///< of the bond's id, before the save
    QString m_readDissociation;
};

} // namespace

bool SdcCxi::loadDom(const QString &psiimId, const QDomElement &elt, ZelSceneCxi *scene)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbRecord record = db ? db->caiGetHashInfo(psiimId) : ZelDbRecord();
    setProperty(SdcProperty::PsiimId, record.value(ZelDbColumn::PsiimId));
    readProperties(this, record, namesOnly);
    const QList<QDomElement> cpxs = childElements(elt, "cpx").mid(0, CpxCount);
    bool good = cpxs.size() == CpxCount;
    for (const QDomElement &layout : cpxs) {
        auto *const cpx = new SdcCpx(db, nullptr);
        good = cpx->loadDom(layout.attribute(QStringLiteral("psiimId")), layout, scene,
                   topLeftOf(elt), false)
            && good;
        cpx->updateBstBstCpx(scene, true);
        addSdcChild(cpx, true);
    }
    return good;
}

SdcBstBstCxi *SdcCxi::makeBond(SdcBst *site1, SdcBst *site2, ZelSceneCxi *scene)
{
    SdcBstBst *const drawn =
        scene && scene->getSdc() == this ? scene->makeBond(site1, site2) : nullptr;
    SdcBstBstCxi *bond = drawn ? drawn->toSdcBstBstCxi() : nullptr;
    if (!bond) {
        bond =
            new SdcBstBstCxi(getZelDbSqliteModel(), scene ? static_cast<QObject *>(scene) : this);
        joinSites(
            bond, site1, site2, scene, scene ? new ZelLineItemBstBstCxi(false, nullptr) : nullptr);
    }
    bond->setSdcCpx1(site1->getParentSdcCpx());
    bond->setSdcCpx2(site2->getParentSdcCpx());
    if (!m_bonds.contains(bond))
        addSdcBstBstCxi(bond);
    return bond;
}

bool SdcCxi::loadFromDb(const QString &caiPsiimId, ZelSceneCxi *scene)
{
    if (!isEmpty() || !m_bonds.isEmpty())
        return refuse(
            this, LoadFunction, QStringLiteral("the interaction is not empty, reset it first"));
    const ZelDbRecord record = findRecord(
        this, LoadFunction, &ZelDbSqliteModel::caiGetHashInfo, "association", caiPsiimId);
    if (record.isEmpty())
        return false;
    setProperty(SdcProperty::PsiimId, caiPsiimId);
    readProperties(this, record, namesOnly);

    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const std::array<QString, CpxCount> aliases{
        record.value(ZelDbColumn::CaiCpa1), record.value(ZelDbColumn::CaiCpa2)};
    const bool intraComplex = isIntraComplex(record);
    const Layouts layouts(
        LoadFunction, caiPsiimId, record.value(ZelDbColumn::GraphicsInfo), "cxi", "cpx");
    bool good = true;
    Sdc *before = nullptr;
    for (std::size_t i = 0; i < (intraComplex ? 1 : aliases.size()); ++i) {
        const QDomElement layout =
            layouts.find(db->cpaGetCpxPsiimId(aliases[i]), static_cast<int>(i));
        auto *const cpx = new SdcCpx(db, nullptr);
        good = loadAlias(
                   cpx, LoadFunction, aliases[i], layout, scene, layouts.refPosOf(layout, before))
            && good;
        addSdcChild(cpx, true); // one that is missing keeps its position
        before = cpx;
    }
    const auto siteOf = [&](int bstColumn, int molPosColumn, const char *cpxPos) {
        return getSdcBstFromBstPsiimIdAndPosIndices(
            record.value(bstColumn), record.value(molPosColumn), QLatin1String(cpxPos));
    };
    SdcBst *const site1 = siteOf(ZelDbColumn::Bst1, ZelDbColumn::MolPos1, "0");
    SdcBst *const site2 = siteOf(ZelDbColumn::Bst2, ZelDbColumn::MolPos2, intraComplex ? "0" : "1");
    if (!site1 || !site2)
        return refuse(this, LoadFunction,
            QStringLiteral("%1 binds a site that its complexes do not have: %2")
                .arg(caiPsiimId, record.value(site1 ? ZelDbColumn::Bst2 : ZelDbColumn::Bst1)));
    SdcBstBstCxi *const bond = makeBond(site1, site2, scene);
    readProperties(bond, record, qualifiers);
    readProperties(bond, "cai", caiPsiimId, record, caiProperties);
    const QString cad = db->cadGetPsiimId(record.value(ZelDbColumn::CaiResultCpa), aliases[0],
        intraComplex ? QString() : aliases[1], record.value(ZelDbColumn::BindingType));
    if (!cad.isEmpty())
        bond->setProperty(SdcProperty::DissociationRate,
            db->cadGetHashInfo(cad).value(ZelDbColumn::DissociationRate));
    return good;
}

QString SdcCxi::layoutOfBond(SdcBstBstCxi *bond)
{
    QDomDocument doc(QStringLiteral("doc"));
    doc.setContent(getGraphicsInfo());
    QDomElement element = doc.documentElement().firstChildElement(getDomXmlTag());
    const QList<QDomElement> parts = childElements(element, "cpx");
    QList<SdcCpx *> cpxs{bond->getSdcBst1()->getParentSdcCpx()};
    if (!bond->isIntraComplex())
        cpxs.append(bond->getSdcBst2()->getParentSdcCpx());
    QList<QDomElement> kept;
    for (SdcCpx *cpx : std::as_const(cpxs)) {
        for (const QDomElement &part : parts) {
            if (part.attribute(QStringLiteral("posIndex")) == QString::number(cpx->getPosIndex()))
                kept.append(part);
        }
    }
    for (const QDomElement &part : parts)
        element.removeChild(part);
    for (qsizetype i = 0; i < kept.size(); ++i) {
        kept[i].setAttribute(QStringLiteral("posIndex"), QString::number(i));
        element.appendChild(kept[i]);
    }
    return doc.toString(1);
}

bool SdcCxi::saveToDb()
{
    return save(false);
}

bool SdcCxi::saveToDbWithResults()
{
    return save(true);
}

bool SdcCxi::save(bool withResults)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db || !db->database())
        return refuse(this, SaveFunction, QLatin1String(NoDatabase));
    QList<SdcBstBstCxi *> bonds;
    for (SdcBstBstCxi *bond : std::as_const(m_bonds)) {
        if (bond && !bonds.contains(bond))
            bonds.append(bond);
    }
    if (bonds.isEmpty())
        return refuse(this, SaveFunction, QStringLiteral("it needs a bond between two complexes"));
    std::vector<BondSaver> savers;
    for (SdcBstBstCxi *bond : std::as_const(bonds)) {
        BondSaver saver(this, bond, withResults);
        QString obstacle = saver.findObstacle();
        if (obstacle.isEmpty()
            && std::any_of(savers.cbegin(), savers.cend(),
                [&](const BondSaver &other) { return other.isSameAssociation(saver); }))
            obstacle = QStringLiteral("two of its bonds are one association; delete one of them");
        if (!obstacle.isEmpty())
            return refuse(this, SaveFunction, obstacle);
        savers.push_back(std::move(saver));
    }
    Assignments assignments;
    return writeInTransaction(this, SaveFunction, &assignments, [&](QString *why) {
        // An interaction of one bond is named where the bond is not.
        for (const int key : {SdcProperty::ShortName, SdcProperty::Name}) {
            if (bonds.size() == 1 && bonds.first()->getProperty(key).isEmpty()
                && !getProperty(key).isEmpty())
                assignments.assign(bonds.first(), key, getProperty(key));
        }
        for (qsizetype i = 0; i < bonds.size(); ++i) {
            if (!savers[static_cast<std::size_t>(i)].save(
                    &assignments, layoutOfBond(bonds.at(i)), why))
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
