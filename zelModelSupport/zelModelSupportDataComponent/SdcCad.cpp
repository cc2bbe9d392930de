#include "zelModelSupport/zelModelSupportDataComponent/SdcCad.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxConnectivity.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcReactionStorage.h"

#include <QSet>

#include <algorithm>

using namespace SdcReactionStorage;

namespace {

constexpr char SaveFunction[] = "bool SdcCad::saveToDb()";
constexpr char LoadFunction[] = "bool SdcCad::loadFromDb(const QString & psiimId, "
                                "ZelScene * scene)";

constexpr StoredProperty cadProperties[]{{SdcProperty::ShortName, ZelDbColumn::ShortName},
    {SdcProperty::Name, ZelDbColumn::Name},
    {SdcProperty::DissociationRate, ZelDbColumn::DissociationRate},
    {SdcProperty::GeometryText, ZelDbColumn::GeometryText},
    {SdcProperty::Notes, ZelDbColumn::Notes}};

/// What tells parts of complexes apart: first what is quick to write, and of equals the species.
struct Part
{
    QList<SdcMol *> mols;
    QList<SdcBstBst *> bonds;

    /// The molecules by id, with their features when these count, too.
    QString content(bool withFeatures) const
    {
        QStringList texts;
        for (SdcMol *mol : mols) {
            QString text = mol->getPsiimId();
            const QList<SdcMcp *> mcps = withFeatures ? mol->getListSdcMcp() : QList<SdcMcp *>();
            for (SdcMcp *mcp : mcps)
                text += u'|' + mcp->getProperty(SdcProperty::Negation) + u'|'
                    + mcp->getProperty(SdcProperty::StateCode);
            texts.append(text);
        }
        texts.sort();
        return texts.join(u'\n');
    }

    QString fingerPrint() const
    {
        return SdcCpx::getCpxFingerPrint(
            SdcCpx::getConstRankedMolList(mols, mols, bonds, false), bonds);
    }
};

Part partOf(SdcCpx *cpx)
{
    return {cpx->getListSdcMol(), Sdc::toListSdcBstBst(cpx->getListSdcBstBstCpx())};
}

/// What breaking the bond leaves of the complex: one part or two.
QList<Part> partsWithout(const Part &whole, const SdcBstBst *bond)
{
    QList<SdcBstBst *> others = whole.bonds;
    others.removeIf([bond](const SdcBstBst *other) { return other == bond; });
    const auto [first, second] = SdcCpxConnectivity::endsOf(bond);
    if (!first || !second)
        return {};
    QList<Part> parts;
    for (SdcMol *mol : {first, second}) {
        if (!parts.isEmpty() && parts.first().mols.contains(mol))
            break;
        Part part{SdcCpxConnectivity::reachable(mol, others), {}};
        const QSet<SdcMol *> reached(part.mols.cbegin(), part.mols.cend());
        for (SdcBstBst *other : std::as_const(others)) {
            if (reached.contains(SdcCpxConnectivity::endsOf(other).first))
                part.bonds.append(other);
        }
        parts.append(part);
    }
    return parts;
}

bool isSame(const Part &a, const Part &b, bool withFeatures)
{
    return a.mols.size() == b.mols.size() && a.bonds.size() == b.bonds.size()
        && a.content(withFeatures) == b.content(withFeatures) && a.fingerPrint() == b.fingerPrint();
}

bool areSame(const QList<Part> &a, const QList<Part> &b, bool withFeatures)
{
    if (a.size() != b.size())
        return false;
    if (a.size() == 1)
        return isSame(a.at(0), b.at(0), withFeatures);
    return (isSame(a.at(0), b.at(0), withFeatures) && isSame(a.at(1), b.at(1), withFeatures))
        || (isSame(a.at(0), b.at(1), withFeatures) && isSame(a.at(1), b.at(0), withFeatures));
}

} // namespace

SdcCad::SdcCad(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent) : Sdc(zelDbSqliteModel, parent)
{
}

SdcCad::~SdcCad() = default;

void SdcCad::setSbbc(SdcBstBstCpx *sbbc)
{
    m_sbbc = sbbc;
}

SdcBstBstCpx *SdcCad::getSbbc() const
{
    return m_sbbc;
}

void SdcCad::setCpxSrc(SdcCpx *cpx)
{
    m_cpxSrc = cpx;
}

SdcCpx *SdcCad::getCpxSrc() const
{
    return m_cpxSrc;
}

void SdcCad::setCpxR1(SdcCpx *cpx)
{
    m_cpxR1 = cpx;
}

SdcCpx *SdcCad::getCpxR1() const
{
    return m_cpxR1;
}

void SdcCad::setCpxR2(SdcCpx *cpx)
{
    m_cpxR2 = cpx;
}

SdcCpx *SdcCad::getCpxR2() const
{
    return m_cpxR2;
}

void SdcCad::setReverse12(bool reverse12)
{
    m_reverse12 = reverse12;
}

bool SdcCad::getReverse12() const
{
    return m_reverse12;
}

bool SdcCad::loadFromDb(const QString &psiimId, ZelScene *scene)
{
    const ZelDbRecord record =
        findRecord(this, LoadFunction, &ZelDbSqliteModel::cadGetHashInfo, "dissociation", psiimId);
    if (record.isEmpty())
        return false;
    const auto load = [&](ZelDbColumn::Column column, Sdc *before) {
        return newAlias(this, LoadFunction, record.value(column), before, scene);
    };
    m_cpxSrc = load(ZelDbColumn::CadSourceCpa, nullptr);
    m_cpxR1 = load(ZelDbColumn::CadResultCpa1, m_cpxSrc);
    const bool intraComplex = record.value(ZelDbColumn::CadResultCpa2).isEmpty();
    m_cpxR2 =
        intraComplex ? nullptr : load(ZelDbColumn::CadResultCpa2, m_cpxR1 ? m_cpxR1 : m_cpxSrc);
    m_reverse12 = false;
    readProperties(this, "cad", psiimId, record, cadProperties);
    setProperty(SdcProperty::BindingType, record.value(ZelDbColumn::BindingType));
    const bool good = m_cpxSrc && m_cpxR1 && (intraComplex || m_cpxR2);
    m_sbbc = good ? findDividingBond() : nullptr;
    if (good && !m_sbbc)
        return refuse(this, LoadFunction,
            QStringLiteral("no bond divides the source of %1 into its products").arg(psiimId));
    return good;
}

bool SdcCad::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const QString source = aliasOf(m_cpxSrc);
    QString product1 = aliasOf(m_cpxR1);
    QString product2 = aliasOf(m_cpxR2);
    if (m_reverse12)
        product1.swap(product2);
    const bool intraComplex =
        getProperty(SdcProperty::GeometryText).contains(QLatin1String(ZelGeometry::IntraComplex));
    if (!db || !db->database())
        return refuse(this, SaveFunction, QLatin1String(NoDatabase));
    if (source.isEmpty() || product1.isEmpty()
        || (product2.isEmpty() && !(intraComplex && !m_cpxR2)))
        return refuse(this, SaveFunction,
            QStringLiteral("it needs a source and products that are stored in their present "
                           "states"));
    if (getProperty(SdcProperty::DissociationRate).isEmpty())
        return refuse(this, SaveFunction, QStringLiteral("give a dissociation rate"));
    Assignments assignments;
    return writeInTransaction(this, SaveFunction, &assignments, [&](QString *) {
        if (!assignIdAndShortName(&assignments, this, ZelDb::Cad, "cad",
                m_cpxSrc->getProperty(SdcProperty::CpaShortName), db))
            return false;
        ZelDbRecord record = recordOf(this, cadProperties);
        record.insert({{ZelDbColumn::CadSourceCpa, source}, {ZelDbColumn::CadResultCpa1, product1},
            {ZelDbColumn::CadResultCpa2, product2},
            {ZelDbColumn::BindingType, getProperty(SdcProperty::BindingType)}});
        return db->cadInsert(record) && writeReferences(this, "cad", db);
    });
}

bool SdcCad::isConsistentToDb()
{
    if (getPsiimId().isEmpty())
        return true;
    for (SdcCpx *cpx : {m_cpxSrc.data(), m_cpxR1.data(), m_cpxR2.data()}) {
        if (!cpx || cpx->isEmpty())
            return false;
    }
    if (!m_sbbc)
        return false;
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbRecord record = db ? db->cadGetHashInfo(getPsiimId()) : ZelDbRecord();
    const bool agrees = std::all_of(std::begin(cadProperties), std::end(cadProperties),
        [&](const StoredProperty &p) { return getProperty(p.key) == record.value(p.column); });
    return agrees && aliasOf(m_cpxSrc) == record.value(ZelDbColumn::CadSourceCpa);
}

// The record does not say which bond it breaks. Bonds that leave parts of the same species are told
// apart by the features of the parts; their binding statuses differ from the products' anyway.
SdcBstBstCpx *SdcCad::findDividingBond() const
{
    if (!m_cpxSrc || !m_cpxR1)
        return nullptr;
    QList<Part> products{partOf(m_cpxR1)};
    if (m_cpxR2)
        products.append(partOf(m_cpxR2));
    const Part whole = partOf(m_cpxSrc);
    const QList<SdcBstBstCpx *> bonds = m_cpxSrc->getListSdcBstBstCpx();
    for (const bool withFeatures : {true, false}) {
        for (SdcBstBstCpx *bond : bonds) {
            if (areSame(partsWithout(whole, bond), products, withFeatures))
                return bond;
        }
    }
    return nullptr;
}
