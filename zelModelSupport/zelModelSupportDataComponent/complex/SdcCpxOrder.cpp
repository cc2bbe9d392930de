// What a complex answers about the canonical order of its molecules, and the texts over it.

#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxRanking.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxText.h"

#include <QDebug>
#include <QMap>
#include <QStringList>

#include <algorithm>

using Mols = QList<SdcMol *>;
using Bonds = QList<SdcBstBst *>;
using Ties = SdcCpxRanking::Ties;

namespace {

using SdcCpxTexts::units;

constexpr QStringView Comma = u", ";

/// The bonds of a fingerprint: "(mol-0)s2-(mol-1)t1", the sites in order of their texts.
class BondTexts
{
public:
    BondTexts(const Mols &mols, const Bonds &bonds) : m_mols(mols)
    {
        for (const SdcBstBst *bond : bonds) {
            if (bond)
                add(bond->getSdcBst1(), bond->getSdcBst2());
        }
    }

    qsizetype size() const { return m_text.size(); }

    void appendTo(QString *text) const
    {
        QVarLengthArray<QStringView, 32> sorted;
        for (const SdcCpxTexts::Piece &piece : m_pieces)
            sorted.append(m_text.view(piece));
        std::sort(sorted.begin(), sorted.end(),
            [](QStringView a, QStringView b) { return units(a) < units(b); });
        for (qsizetype i = 0; i < sorted.size(); ++i) {
            if (i > 0)
                *text += Comma;
            *text += sorted[i];
        }
    }

private:
    using Text = SdcCpxText<64>;

    void add(SdcBst *site1, SdcBst *site2)
    {
        Text first;
        Text second;
        if (site1)
            writeSite(site1, &first);
        if (site2)
            writeSite(site2, &second);
        QStringView before = first.view();
        QStringView behind = second.view();
        if (site2 && units(behind) < units(before))
            std::swap(before, behind);
        const qsizetype begin = m_text.size();
        m_text.append(before);
        if (site2)
            m_text.append(u'-');
        m_text.append(behind);
        m_pieces.append(m_text.since(begin));
    }

    void writeSite(SdcBst *site, Text *text) const
    {
        text->append(MolPlace);
        text->appendNumber(m_mols.indexOf(site->getParentSdcMol()));
        text->append(u')');
        text->append(site->getPsiimIdView());
    }

    static constexpr QStringView MolPlace = u"(mol-";

    const Mols &m_mols;
    SdcCpxText<1024> m_text;
    QVarLengthArray<SdcCpxTexts::Piece, 32> m_pieces;
};

} // namespace

QString SdcCpx::getMolSignature(SdcMol *sdcMol, const Mols &molSet, const Mols &rankedList,
    const Bonds &listSbb, bool considerBstStatus, SdcMol *firstMol)
{
    SdcCpxRanking ranking(molSet, listSbb, considerBstStatus, rankedList);
    ranking.setRanked(rankedList);
    ranking.setFirstMol(firstMol);
    return ranking.signature(sdcMol);
}

SdcMol *SdcCpx::getFrontMol(SdcMol *sdcMol1, SdcMol *sdcMol2, Mols &molSet, const Mols &rankedList,
    const Bonds &listSbb, bool considerBstStatus)
{
    SdcCpxRanking ranking(molSet, listSbb, considerBstStatus, rankedList + Mols{sdcMol1, sdcMol2});
    ranking.setRanked(rankedList);
    return ranking.front(sdcMol1, sdcMol2);
}

SdcMol *SdcCpx::getFrontMolWithFirstMol(SdcMol *sdcMol1, SdcMol *sdcMol2, Mols &molSet,
    const Mols &rankedList, const Bonds &listSbb, SdcMol *firstMol)
{
    return getConstFrontMol(sdcMol1, sdcMol2, molSet, rankedList, listSbb, firstMol);
}

SdcMol *SdcCpx::getConstFrontMol(SdcMol *sdcMol1, SdcMol *sdcMol2, const Mols &molSet,
    const Mols &rankedList, const Bonds &listSbb, bool considerBstStatus)
{
    SdcCpxRanking ranking(molSet, listSbb, considerBstStatus, rankedList + Mols{sdcMol1, sdcMol2});
    ranking.setRanked(rankedList);
    return ranking.constFront(sdcMol1, sdcMol2, Ties::KeepEarlier);
}

SdcMol *SdcCpx::getConstFrontMol(SdcMol *sdcMol1, SdcMol *sdcMol2, const Mols &molSet,
    const Mols &rankedList, const Bonds &listSbb, SdcMol *firstMol)
{
    SdcCpxRanking ranking(molSet, listSbb, false, rankedList + Mols{sdcMol1, sdcMol2});
    ranking.setRanked(rankedList);
    ranking.setFirstMol(firstMol);
    return ranking.constFront(sdcMol1, sdcMol2, Ties::ReportAndDrop);
}

SdcMol *SdcCpx::getConstFrontMol(const Mols &candidates, const Mols &molSet, const Mols &rankedList,
    const Bonds &listSbb, bool considerBstStatus)
{
    SdcCpxRanking ranking(molSet, listSbb, considerBstStatus, rankedList + candidates);
    ranking.setRanked(rankedList);
    return ranking.constFront(candidates, Ties::KeepEarlier);
}

SdcMol *SdcCpx::getConstFrontMol(const Mols &candidates, const Mols &molSet, const Mols &rankedList,
    const Bonds &listSbb, SdcMol *firstMol)
{
    SdcCpxRanking ranking(molSet, listSbb, false, rankedList + candidates);
    ranking.setRanked(rankedList);
    ranking.setFirstMol(firstMol);
    return ranking.constFront(candidates, Ties::ReportAndDrop);
}

Mols SdcCpx::getConstRankedMolList(
    const Mols &mols, const Mols &molSet, const Bonds &listSbb, bool considerBstStatus)
{
    SdcCpxRanking ranking(molSet, listSbb, considerBstStatus, mols);
    return ranking.ranked(mols, Ties::KeepEarlier);
}

Mols SdcCpx::getConstRankedMolList(
    const Mols &mols, const Mols &molSet, const Bonds &listSbb, SdcMol *firstMol)
{
    SdcCpxRanking ranking(molSet, listSbb, false, mols);
    ranking.setFirstMol(firstMol);
    return ranking.ranked(mols, Ties::ReportAndDrop);
}

Mols SdcCpx::getConstRankedMolList(
    const Mols &mols, const Mols &molSet, const QList<SdcBstBstCpx *> &listSbbc)
{
    return getConstRankedMolList(mols, molSet, toListSdcBstBst(listSbbc), false);
}

Mols SdcCpx::getFrontMolSet(const Mols &mols, const Bonds &listSbb, bool considerBstStatus)
{
    return SdcCpxRanking(mols, listSbb).frontSet(considerBstStatus);
}

Mols SdcCpx::getRankedListMol(bool considerBstStatus, bool considerMcpState)
{
    const Mols mols = getChildMolList();
    if (mols.isEmpty())
        return {};
    return SdcCpxRanking(mols, toListSdcBstBst(m_bonds))
        .canonicalOrder(
            m_specisStaticSymmetryState == AsymmetricSpecies, considerBstStatus, considerMcpState);
}

void SdcCpx::reRankMols(bool considerBstStatus, bool considerMcpState)
{
    m_listMolPrevIndices.clear();
    SdcCpxRanking ranking(getChildMolList(), toListSdcBstBst(m_bonds));
    const SdcCpxGraph &graph = ranking.graph();
    if (graph.hasDoublyBound() ? !areAllConnected() : !graph.isConnected()) {
        m_specisStaticSymmetryState = SymmetryUnknown;
        return;
    }
    if (m_specisStaticSymmetryState == SymmetryUnknown)
        m_specisStaticSymmetryState =
            ranking.frontSet(false).size() >= 2 ? SymmetricSpecies : AsymmetricSpecies;
    const Mols ranked = ranking.canonicalOrder(
        m_specisStaticSymmetryState == AsymmetricSpecies, considerBstStatus, considerMcpState);

    const QList<Sdc *> before = sdcChildren();
    QList<Sdc *> after;
    QList<int> prevIndices;
    after.reserve(before.size());
    prevIndices.reserve(before.size());
    for (SdcMol *mol : ranked) {
        const auto index = static_cast<int>(before.indexOf(mol));
        if (index < 0)
            qDebug() << "Error found at void SdcCpx::reRankMols(bool considerBstStatus, "
                        "bool considerMcpState)";
        after.append(mol);
        prevIndices.append(index);
    }
    // A tie leaves molecules out, and nothing ranks null: they stay members all the same.
    for (int i = 0; after.size() < before.size() && i < before.size(); ++i) {
        if (!prevIndices.contains(i)) {
            after.append(before.at(i));
            prevIndices.append(i);
        }
    }
    if (after == before)
        return;
    m_listMolPrevIndices = prevIndices;
    setChildrenList(after);
}

QList<int> SdcCpx::getListMolPosMap() const
{
    const qsizetype count = sdcChildren().size();
    if (m_listMolPrevIndices.size() == count)
        return m_listMolPrevIndices;
    QList<int> map;
    if (!m_listMolPrevIndices.isEmpty()) {
        qDebug() << "Error found at QList<int> SdcCpx::getListMolPosMap() const";
        return map;
    }
    map.reserve(count);
    for (int i = 0; i < count; ++i)
        map.append(i);
    return map;
}

void SdcCpx::updateStaticSpeciesSymmetryStatus()
{
    if (!areAllConnected())
        m_specisStaticSymmetryState = SymmetryUnknown;
    else if (m_specisStaticSymmetryState == SymmetryUnknown)
        m_specisStaticSymmetryState = isSymmetricSpecies() ? SymmetricSpecies : AsymmetricSpecies;
}

bool SdcCpx::isSymmetricSpecies()
{
    return areAllConnected() && getNumWayToRank() >= 2;
}

int SdcCpx::getNumWayToRank()
{
    const Mols set = getFrontMolSet(getChildMolList(), toListSdcBstBst(m_bonds), false);
    return static_cast<int>(set.size());
}

Mols SdcCpx::getSortedListMol()
{
    if (!areAllConnected()) {
        qDebug() << "Error found at QList<SdcMol *> SdcCpx::getSortedListMol() ";
        return {};
    }
    QMap<QString, Mols> groups;
    for (SdcMol *mol : getChildMolList())
        groups[mol->getPsiimId()].append(mol);
    Mols sorted;
    for (const Mols &group : std::as_const(groups)) {
        if (group.isEmpty())
            qDebug() << "Error 2 found at QList<SdcMol *> SdcCpx::getSortedListMol() ";
        else if (group.size() == 1)
            sorted.append(group.first());
        else
            sorted.append(sortListMol(group, m_bonds));
    }
    return sorted;
}

Mols SdcCpx::sortListMol(const Mols &group, const QList<SdcBstBstCpx *> &bonds)
{
    // The ids of the sites that bonds hold, once for each bond.
    struct Held
    {
        SdcMol *mol;
        QStringList siteIds;
    };
    QMap<qsizetype, QList<Held>> heldByCount;
    for (SdcMol *mol : group) {
        if (!mol)
            continue;
        Held held{mol, {}};
        for (SdcBst *site : mol->getListSdcBst()) {
            const auto count = std::count_if(bonds.cbegin(), bonds.cend(),
                [site](const SdcBstBstCpx *bond) { return bond && bond->hasSdcBst(site); });
            held.siteIds.insert(held.siteIds.size(), count, site->getPsiimId());
        }
        heldByCount[held.siteIds.size()].append(held);
    }
    Mols sorted;
    for (const QList<Held> &helds : std::as_const(heldByCount)) {
        if (helds.size() == 1) {
            sorted.append(helds.first().mol);
            continue;
        }
        QMap<QString, Mols> molsById;
        for (const Held &held : helds) {
            for (const QString &id : held.siteIds)
                molsById[id].append(held.mol);
        }
        for (const Mols &mols : std::as_const(molsById)) {
            if (mols.size() == 1)
                sorted.append(mols.first());
        }
    }
    return sorted;
}

QString SdcCpx::getMolCode()
{
    QStringList ids;
    for (const SdcMol *mol : getChildMolList())
        ids.append(mol->getPsiimId());
    ids.sort();
    return ids.join(u';');
}

QString SdcCpx::getCpxFingerPrint()
{
    return getCpxFingerPrint(getRankedListMol(false, false), toListSdcBstBst(m_bonds));
}

QString SdcCpx::getCpxFingerPrint(const Mols &listMol, const Bonds &listSbb)
{
    static constexpr QStringView molsBegin = u"Mols[";
    static constexpr QStringView molsEnd = u"]; Interactions[";
    BondTexts bondTexts(listMol, listSbb);
    qsizetype size = molsBegin.size() + molsEnd.size() + bondTexts.size();
    size += Comma.size() * (listMol.size() + listSbb.size()) + 1;
    for (const SdcMol *mol : listMol)
        size += mol ? mol->getPsiimIdView().size() : 0;
    QString text;
    text.reserve(size);
    text += molsBegin;
    for (qsizetype i = 0; i < listMol.size(); ++i) {
        if (i > 0)
            text += Comma;
        if (const SdcMol *mol = listMol.at(i))
            text += mol->getPsiimIdView();
    }
    text += molsEnd;
    bondTexts.appendTo(&text);
    text += u']';
    return text;
}
