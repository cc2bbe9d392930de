// What a complex answers about the canonical order of its molecules, and the texts over it.

#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpxRanking.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDebug>
#include <QMap>
#include <QStringList>

#include <algorithm>

using Mols = QList<SdcMol *>;
using Bonds = QList<SdcBstBst *>;
using Ties = SdcCpxRanking::Ties;

namespace {

// "(mol-0)s2-(mol-1)t1", the sites in order of their texts.
void appendSiteText(QString *text, SdcBst *site, const Mols &mols)
{
    *text += QLatin1String("(mol-");
    *text += QString::number(mols.indexOf(site->getParentSdcMol()));
    *text += u')';
    *text += site->getPsiimIdView();
}

QString interactionText(const SdcBstBst *bond, const Mols &mols)
{
    SdcBst *const site1 = bond->getSdcBst1();
    SdcBst *const site2 = bond->getSdcBst2();
    QString first;
    first.reserve(48);
    if (site1)
        appendSiteText(&first, site1, mols);
    if (!site2)
        return first;
    QString second;
    second.reserve(48);
    appendSiteText(&second, site2, mols);
    if (second < first)
        first.swap(second);
    first += u'-';
    return first += second;
}

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

    const QList<Sdc *> before = children();
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
    const qsizetype count = children().size();
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
    QStringList interactions;
    interactions.reserve(listSbb.size());
    for (const SdcBstBst *bond : listSbb) {
        if (bond)
            interactions.append(interactionText(bond, listMol));
    }
    interactions.sort();
    QString text = QStringLiteral("Mols[");
    text.reserve(16 * listMol.size() + 32 * interactions.size() + 32);
    for (qsizetype i = 0; i < listMol.size(); ++i) {
        if (i > 0)
            text += QLatin1String(", ");
        if (const SdcMol *mol = listMol.at(i))
            text += mol->getPsiimIdView();
    }
    text += QLatin1String("]; Interactions[");
    for (qsizetype i = 0; i < interactions.size(); ++i) {
        if (i > 0)
            text += QLatin1String(", ");
        text += interactions.at(i);
    }
    return text + u']';
}
