#include "zelModelSupport/zelModelSupportDataComponent/SdcCpxRanking.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpxStateCode.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr int None = SdcCpxGraph::None;

} // namespace

SdcCpxRanking::SdcCpxRanking(
    const Mols &molSet, const Bonds &bonds, bool withStatuses, const Mols &others)
    : m_molSet(molSet), m_bonds(bonds), m_graph(molSet, others, bonds, withStatuses),
      m_signature(m_graph)
{
}

void SdcCpxRanking::setRanked(const Mols &ranked)
{
    for (qsizetype i = 0; i < ranked.size(); ++i) {
        const int number = m_graph.find(ranked.at(i));
        if (number != None)
            m_graph.setRank(number, static_cast<int>(i));
    }
}

void SdcCpxRanking::setFirstMol(SdcMol *firstMol)
{
    m_graph.setFirst(firstMol ? m_graph.find(firstMol) : None);
}

QString SdcCpxRanking::signature(SdcMol *mol)
{
    const int number = m_graph.find(mol);
    return number == None ? QString() : m_signature.text(number);
}

SdcMol *SdcCpxRanking::front(SdcMol *mol1, SdcMol *mol2)
{
    return molOf(front(m_graph.find(mol1), m_graph.find(mol2)));
}

SdcMol *SdcCpxRanking::constFront(SdcMol *mol1, SdcMol *mol2, Ties ties)
{
    return molOf(constFront(m_graph.find(mol1), m_graph.find(mol2), ties));
}

SdcMol *SdcCpxRanking::constFront(const Mols &candidates, Ties ties)
{
    return molOf(constFront(numbersOf(candidates), ties));
}

SdcCpxRanking::Mols SdcCpxRanking::ranked(const Mols &mols, Ties ties)
{
    m_graph.clearRanks();
    Numbers remaining = numbersOf(mols);
    Mols result;
    result.reserve(mols.size());
    for (qsizetype pass = 0; pass < mols.size() && !remaining.isEmpty(); ++pass) {
        const int reportsBefore = m_tieReports;
        const int front = constFront(remaining, ties);
        if (isNull(front)) {
            // The passes to come are like this one; they matter only for what they report.
            if (m_tieReports == reportsBefore && !m_graph.hasDoublyBound())
                break;
            continue;
        }
        m_graph.setRank(front, static_cast<int>(result.size()));
        result.append(molOf(front));
        remaining.resize(
            std::remove(remaining.begin(), remaining.end(), front) - remaining.begin());
    }
    m_graph.clearRanks();
    return result;
}

SdcCpxRanking::Mols SdcCpxRanking::frontSet(bool considerBstStatus)
{
    // Known already, unless finding it reports something.
    if (!m_frontSet || m_graph.hasDoublyBound())
        m_frontSet = frontSetOf(m_molSet);
    if (m_frontSet->size() < 2 || !considerBstStatus)
        return *m_frontSet;
    return SdcCpxRanking(*m_frontSet, m_bonds, true).frontSetOf(*m_frontSet);
}

SdcCpxRanking::Mols SdcCpxRanking::canonicalOrder(
    bool isAsymmetric, bool considerBstStatus, bool considerMcpState)
{
    if (isAsymmetric)
        return ranked(m_molSet, Ties::KeepEarlier);
    Mols candidates = frontSet(considerBstStatus);
    SdcMol *firstMol = nullptr;
    Mols order;
    bool isOrderKnown = false;
    if (candidates.size() >= 2 && considerMcpState) {
        QString bestSignature;
        bool hasBest = false;
        for (SdcMol *mol : std::as_const(candidates)) {
            const int reportsBefore = m_tieReports;
            setFirstMol(mol);
            const Mols molOrder = ranked(m_molSet, Ties::ReportAndDrop);
            const QString signature = SdcCpxStateCode::signature(molOrder, true);
            const bool isBetter = !hasBest || signature < bestSignature;
            if (!isBetter && signature != bestSignature)
                continue;
            if (isBetter || mol->getPosIndex() < firstMol->getPosIndex()) {
                firstMol = mol;
                order = molOrder;
                isOrderKnown = m_tieReports == reportsBefore && !m_graph.hasDoublyBound();
            }
            bestSignature = signature;
            hasBest = true;
        }
    } else if (!candidates.isEmpty()) {
        firstMol = *std::min_element(candidates.cbegin(), candidates.cend(),
            [](const SdcMol *a, const SdcMol *b) { return a->getPosIndex() < b->getPosIndex(); });
    }
    if (isOrderKnown)
        return order;
    setFirstMol(firstMol);
    return ranked(m_molSet, Ties::ReportAndDrop);
}

int SdcCpxRanking::front(int a, int b)
{
    if (a == None || b == None)
        return None;
    const int result = m_signature.compare(a, b);
    if (result == 0)
        return None;
    return result < 0 ? a : b;
}

int SdcCpxRanking::constFront(int a, int b, Ties ties)
{
    if (ties == Ties::KeepEarlier) {
        const int result = front(a, b);
        return isNull(result) ? a : result;
    }
    if (m_molSet.isEmpty())
        return None;
    if (isNull(a) || isNull(b))
        return isNull(a) ? b : a;
    const int result = front(a, b);
    if (result == None) {
        ++m_tieReports;
        qDebug() << "Possible error at SdcMol * SdcCpx::getFrontMol(SdcMol * sdcMol1, SdcMol * "
                    "sdcMol2, QList<SdcMol *> & molSet, const QList<SdcBstBst *> & listSbb, "
                    "SdcMol * firstMol)"
                 << m_signature.textToReport(a) << m_signature.textToReport(b);
    }
    return result;
}

int SdcCpxRanking::constFront(const Numbers &candidates, Ties ties)
{
    int result = candidates.isEmpty() ? None : candidates.first();
    for (qsizetype i = 1; i < candidates.size(); ++i)
        result = constFront(result, candidates[i], ties);
    return result;
}

SdcCpxRanking::Numbers SdcCpxRanking::numbersOf(const Mols &mols) const
{
    Numbers numbers;
    for (const SdcMol *mol : mols)
        numbers.append(m_graph.find(mol));
    return numbers;
}

SdcCpxRanking::Mols SdcCpxRanking::frontSetOf(const Mols &mols)
{
    if (mols.isEmpty())
        return {};
    m_graph.setFirst(None);
    int first = m_graph.find(mols.first());
    Mols set{mols.first()};
    for (qsizetype i = 1; i < mols.size(); ++i) {
        const int number = m_graph.find(mols.at(i));
        const int result = front(first, number);
        if (isNull(result)) {
            set.append(mols.at(i));
        } else if (result != first) {
            first = result;
            set = {mols.at(i)};
        }
    }
    return set;
}

SdcMol *SdcCpxRanking::molOf(int number) const
{
    return number == None ? nullptr : m_graph.mol(number).mol;
}
