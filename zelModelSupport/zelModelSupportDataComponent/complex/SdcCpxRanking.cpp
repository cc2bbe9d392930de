#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxRanking.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxStateCodeWriter.h"

#include <QDebug>

#include <algorithm>
#include <numeric>

namespace {

constexpr int None = SdcCpxGraph::None;

} // namespace

SdcCpxRanking::SdcCpxRanking(
    const Mols &molSet, const Bonds &bonds, bool withStatuses, const Mols &others)
    : m_bonds(bonds), m_graph(molSet, others, bonds, withStatuses), m_molSet(numbersOf(molSet)),
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
    return molsOf(rank(numbersOf(mols), ties));
}

SdcCpxRanking::Mols SdcCpxRanking::frontSet(bool considerBstStatus)
{
    return molsOf(frontNumbers(considerBstStatus));
}

SdcCpxRanking::Mols SdcCpxRanking::canonicalOrder(
    bool isAsymmetric, bool considerBstStatus, bool considerMcpState)
{
    if (isAsymmetric)
        return molsOf(rank(m_molSet, Ties::KeepEarlier));
    const Numbers candidates = frontNumbers(considerBstStatus);
    std::optional<Numbers> order;
    const int first = candidates.size() >= 2 && considerMcpState ? firstByState(candidates, &order)
                                                                 : firstByPosition(candidates);
    if (order)
        return molsOf(*order);
    m_graph.setFirst(first);
    return molsOf(rank(m_molSet, Ties::ReportAndDrop));
}

SdcCpxRanking::Numbers SdcCpxRanking::rank(Numbers remaining, Ties ties)
{
    m_graph.clearRanks();
    Numbers result;
    const qsizetype passes = remaining.size();
    for (qsizetype pass = 0; pass < passes && !remaining.isEmpty(); ++pass) {
        const int reportsBefore = m_tieReports;
        const int front = constFront(remaining, ties);
        if (isNull(front)) {
            // The passes to come are like this one; they matter only for what they report.
            if (m_tieReports == reportsBefore && !m_graph.hasDoublyBound())
                break;
            continue;
        }
        m_graph.setRank(front, static_cast<int>(result.size()));
        result.append(front);
        remaining.resize(
            std::remove(remaining.begin(), remaining.end(), front) - remaining.begin());
    }
    m_graph.clearRanks();
    return result;
}

SdcCpxRanking::Numbers SdcCpxRanking::frontNumbers(bool considerBstStatus)
{
    // Known already, unless finding it reports something.
    if (!m_frontSet || m_graph.hasDoublyBound())
        m_frontSet = frontSetOf(m_molSet);
    if (m_frontSet->size() < 2 || !considerBstStatus)
        return *m_frontSet;
    SdcCpxRanking withStatuses(molsOf(*m_frontSet), m_bonds, true);
    return numbersOf(withStatuses.molsOf(withStatuses.frontSetOf(withStatuses.m_molSet)));
}

SdcCpxRanking::Numbers SdcCpxRanking::frontSetOf(const Numbers &mols)
{
    m_graph.setFirst(None);
    Numbers set;
    for (int number : mols) {
        const int result = set.isEmpty() ? number : front(set.first(), number);
        if (!set.isEmpty() && isNull(result)) {
            set.append(number);
        } else if (set.isEmpty() || result != set.first()) {
            set.clear();
            set.append(number);
        }
    }
    return set;
}

// The candidate whose order has the least state code. The order is known as well, unless finding
// it again reports something.
int SdcCpxRanking::firstByState(const Numbers &candidates, std::optional<Numbers> *order)
{
    Numbers all(m_graph.size());
    std::iota(all.begin(), all.end(), 0);
    SdcCpxStateCodeWriter writer(molsOf(all), SdcCpxStateCodeWriter::StatesAndBindings);
    QString bestText;
    int best = None;
    for (int number : candidates) {
        const int reportsBefore = m_tieReports;
        m_graph.setFirst(number);
        const Numbers ranked = rank(m_molSet, Ties::ReportAndDrop);
        const QString text =
            writer.text({ranked.cbegin(), ranked.cend()}, true, SdcCpxStateCodeWriter::Bare);
        const bool isBetter = best == None || text < bestText;
        if (!isBetter
            && (text != bestText || molOf(number)->getPosIndex() >= molOf(best)->getPosIndex()))
            continue;
        best = number;
        bestText = text;
        order->reset();
        if (m_tieReports == reportsBefore && !m_graph.hasDoublyBound())
            *order = ranked;
    }
    return best;
}

int SdcCpxRanking::firstByPosition(const Numbers &candidates) const
{
    const auto at = std::min_element(candidates.cbegin(), candidates.cend(),
        [this](int a, int b) { return molOf(a)->getPosIndex() < molOf(b)->getPosIndex(); });
    return at == candidates.cend() ? None : *at;
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

SdcCpxRanking::Mols SdcCpxRanking::molsOf(const Numbers &numbers) const
{
    Mols mols;
    mols.reserve(numbers.size());
    for (int number : numbers)
        mols.append(molOf(number));
    return mols;
}

SdcMol *SdcCpxRanking::molOf(int number) const
{
    return number == None ? nullptr : m_graph.mol(number).mol;
}
