#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxSignature.h"

#include <QDebug>

#include <algorithm>
#include <string>

namespace {

constexpr int None = SdcCpxGraph::None;

/// "[rankedNeighborMol-7]".
class RankText
{
public:
    QStringView view(int rank)
    {
        static constexpr QStringView begin = u"[rankedNeighborMol-";
        m_text.clear();
        m_text.append(begin);
        m_text.appendNumber(rank);
        m_text.append(u']');
        return m_text.view();
    }

private:
    SdcCpxText<32> m_text;
};

int compareUnits(QStringView a, QStringView b, qsizetype count)
{
    return std::char_traits<char16_t>::compare(
        a.utf16(), b.utf16(), static_cast<std::size_t>(count));
}

} // namespace

/// Yields a signature piece by piece, beginning anywhere.
class SdcCpxSignature::Cursor
{
public:
    Cursor(const SdcCpxSignature &signature, Used &used) : m_signature(signature), m_used(used) { }

    void add(int mol, int site, Step step) { m_frames.append({mol, site, step}); }

    /// False at the end.
    bool next(QStringView &piece)
    {
        const SdcCpxGraph &graph = m_signature.m_graph;
        while (!m_frames.isEmpty()) {
            Frame &frame = m_frames.last();
            const SdcCpxGraph::Mol &mol = graph.mol(frame.mol);
            switch (frame.step) {
            case Step::Head:
                ++m_used[frame.mol];
                frame.step = Step::Site;
                piece = graph.head(frame.mol);
                return true;
            case Step::Site:
                if (frame.site == mol.siteCount) {
                    --m_used[frame.mol];
                    m_frames.removeLast();
                    piece = u"]";
                    return true;
                }
                frame.step = Step::Partner;
                piece = graph.text(graph.site(mol.firstSite + frame.site).text);
                return true;
            case Step::Partner: {
                frame.step = Step::Separator;
                const Next next = m_signature.nextOf(mol.firstSite + frame.site, m_used);
                if (next.rank != None) {
                    piece = m_rankText.view(next.rank);
                    return true;
                }
                if (next.mol != None)
                    m_frames.append({next.mol, 0, Step::Head});
                break;
            }
            case Step::Separator:
                frame.step = Step::Site;
                if (++frame.site < mol.siteCount) {
                    piece = u";";
                    return true;
                }
                break;
            }
        }
        return false;
    }

    void leaveAll()
    {
        for (const Frame &frame : std::as_const(m_frames)) {
            if (frame.step != Step::Head)
                --m_used[frame.mol];
        }
        m_frames.clear();
    }

private:
    struct Frame
    {
        int mol;
        int site;
        Step step;
    };

    const SdcCpxSignature &m_signature;
    Used &m_used;
    QVarLengthArray<Frame, 32> m_frames;
    RankText m_rankText;
};

SdcCpxSignature::SdcCpxSignature(const SdcCpxGraph &graph)
    : m_graph(graph), m_usedA(graph.size()), m_usedB(graph.size())
{
    std::fill(m_usedA.begin(), m_usedA.end(), 0);
    std::fill(m_usedB.begin(), m_usedB.end(), 0);
}

int SdcCpxSignature::compare(int a, int b)
{
    const bool isEmptyA = isEmpty(a);
    const bool isEmptyB = isEmpty(b);
    if (isEmptyA || isEmptyB)
        return static_cast<int>(isEmptyB) - static_cast<int>(isEmptyA);
    if (a == b)
        return 0;
    const int result = compareWalks(a, b);
    leaveAll();
    return result;
}

QString SdcCpxSignature::text(int number)
{
    return isEmpty(number) ? QString() : write(number, MaxSize);
}

QString SdcCpxSignature::textToReport(int number)
{
    const bool isEmpty = m_graph.mol(number).count == 0 || reachesDoublyBound(number);
    return isEmpty ? QString() : write(number, MaxReportSize);
}

QString SdcCpxSignature::write(int number, qsizetype maxSize)
{
    QString text;
    Cursor cursor(*this, m_usedA);
    cursor.add(number, 0, Step::Head);
    for (QStringView piece; cursor.next(piece);) {
        if (text.size() + piece.size() > maxSize) {
            text += QLatin1String("...");
            break;
        }
        text += piece;
    }
    cursor.leaveAll();
    return text;
}

bool SdcCpxSignature::isEmpty(int number)
{
    if (m_graph.mol(number).count == 0)
        return true;
    if (!reachesDoublyBound(number))
        return false;
    qDebug() << "zelModelSupport/zelModelSupportDataComponent/SdcCpx" << 2042 << "Error found";
    return true;
}

bool SdcCpxSignature::reachesDoublyBound(int number)
{
    if (!m_graph.hasDoublyBound())
        return false;
    QVarLengthArray<bool, 64> seen(m_graph.size());
    std::fill(seen.begin(), seen.end(), false);
    QVarLengthArray<int, 64> reached{number};
    seen[number] = true;
    for (qsizetype i = 0; i < reached.size(); ++i) {
        const SdcCpxGraph::Mol &mol = m_graph.mol(reached[i]);
        if (mol.doublyBound)
            return true;
        for (int site = mol.firstSite; site < mol.firstSite + mol.siteCount; ++site) {
            const int next = nextOf(site, m_usedA).mol;
            if (next == None || seen[next])
                continue;
            seen[next] = true;
            reached.append(next);
        }
    }
    return false;
}

int SdcCpxSignature::compareWalks(int a, int b)
{
    // Trees and single rings are walked through sooner than this; only then do proofs pay.
    int nextProof = 2 * m_graph.size() + 16;
    int steps = 0;
    int nextA = a;
    int nextB = b;
    for (;;) {
        if (nextA != None) {
            if (!areAlike(nextA, nextB) && m_graph.head(nextA) != m_graph.head(nextB)) {
                const QStringView headA = m_graph.head(nextA);
                const QStringView headB = m_graph.head(nextB);
                enter(nextA, nextB);
                return comparePieces(headA, headB, Step::Head);
            }
            enter(nextA, nextB);
            nextA = None;
            if (++steps < nextProof)
                continue;
            // What failed is not tried again before as much has been walked.
            const int cost = proofCost(m_pairs.last());
            nextProof = steps + cost;
            if (cost == 0 && !leave())
                return 0;
            continue;
        }
        Pair &pair = m_pairs.last();
        const SdcCpxGraph::Mol &molA = m_graph.mol(pair.a);
        const SdcCpxGraph::Mol &molB = m_graph.mol(pair.b);
        const bool hasMoreA = pair.site < molA.siteCount;
        const bool hasMoreB = pair.site < molB.siteCount;
        if (hasMoreA != hasMoreB)
            return compareStreams(pair.site > 0 ? Step::Separator : Step::Site);
        if (!hasMoreA) {
            if (!leave())
                return 0;
            continue;
        }
        const SdcCpxGraph::Site &siteA = m_graph.site(molA.firstSite + pair.site);
        const SdcCpxGraph::Site &siteB = m_graph.site(molB.firstSite + pair.site);
        if (!pair.alike) {
            const QStringView textA = m_graph.text(siteA.text);
            const QStringView textB = m_graph.text(siteB.text);
            if (textA != textB)
                return comparePieces(textA, textB, Step::Site);
        }
        const Next followA = nextOf(molA.firstSite + pair.site, m_usedA);
        const Next followB = nextOf(molB.firstSite + pair.site, m_usedB);
        if (followA.rank != followB.rank || (followA.mol == None) != (followB.mol == None)) {
            const QStringView endA = pair.site + 1 < molA.siteCount ? u";" : u"]";
            const QStringView endB = pair.site + 1 < molB.siteCount ? u";" : u"]";
            RankText rankA;
            RankText rankB;
            const auto beginOf = [this](const Next &next, RankText &rank, QStringView nothing) {
                if (next.rank != None)
                    return rank.view(next.rank);
                return next.mol != None ? m_graph.head(next.mol) : nothing;
            };
            return comparePieces(
                beginOf(followA, rankA, endA), beginOf(followB, rankB, endB), Step::Partner);
        }
        if (followA.mol == None) {
            ++pair.site;
        } else {
            nextA = followA.mol;
            nextB = followB.mol;
        }
    }
}

// Both walks stand before these pieces. Where one is the beginning of the other, what follows
// decides, however it is cut into pieces.
int SdcCpxSignature::comparePieces(QStringView a, QStringView b, Step step)
{
    const int result = compareUnits(a, b, std::min(a.size(), b.size()));
    return result != 0 ? result : compareStreams(step);
}

int SdcCpxSignature::compareStreams(Step step)
{
    Cursor a(*this, m_usedA);
    Cursor b(*this, m_usedB);
    for (const Pair &pair : std::as_const(m_pairs)) {
        const bool isLast = &pair == &m_pairs.last();
        // A separator counts the site on, which the pair has done already.
        const int site = isLast && step == Step::Separator ? pair.site - 1 : pair.site;
        a.add(pair.a, site, isLast ? step : Step::Separator);
        b.add(pair.b, site, isLast ? step : Step::Separator);
    }
    if (step == Step::Head) { // counted as entered, but not written yet
        --m_usedA[m_pairs.last().a];
        --m_usedB[m_pairs.last().b];
    }
    m_pairs.clear();
    int result = 0;
    QStringView pieceA;
    QStringView pieceB;
    while (result == 0) {
        const bool hasA = !pieceA.isEmpty() || a.next(pieceA);
        const bool hasB = !pieceB.isEmpty() || b.next(pieceB);
        if (!hasA || !hasB) {
            result = static_cast<int>(hasA) - static_cast<int>(hasB);
            break;
        }
        const qsizetype count = std::min(pieceA.size(), pieceB.size());
        result = compareUnits(pieceA, pieceB, count);
        pieceA = pieceA.sliced(count);
        pieceB = pieceB.sliced(count);
    }
    a.leaveAll();
    b.leaveAll();
    return result;
}

// 0 when the subtrees of both have equal texts for certain: what can be entered from a maps one to
// one onto what can be entered from b, with equal texts and equal ends of all paths. Otherwise the
// work that the attempt took. Both have been entered.
int SdcCpxSignature::proofCost(const Pair &pair)
{
    if (m_imageOfA.isEmpty()) {
        m_imageOfA.resize(m_graph.size());
        m_imageOfB.resize(m_graph.size());
        std::fill(m_imageOfA.begin(), m_imageOfA.end(), None);
        std::fill(m_imageOfB.begin(), m_imageOfB.end(), None);
    }
    int cost = 1;
    bool isMapped = mapPair(pair.a, pair.b);
    for (qsizetype i = 0; isMapped && i < m_mapped.size(); ++i)
        isMapped = mapNeighbors(m_mapped[i].first, m_mapped[i].second, cost);
    for (const auto &[fromA, fromB] : std::as_const(m_mapped)) {
        m_imageOfA[fromA] = None;
        m_imageOfB[fromB] = None;
    }
    m_mapped.clear();
    return isMapped ? 0 : cost;
}

bool SdcCpxSignature::mapPair(int a, int b)
{
    if (m_imageOfA[a] != None || m_imageOfB[b] != None)
        return m_imageOfA[a] == b && m_imageOfB[b] == a;
    const int leftA = m_graph.mol(a).count - m_usedA[a];
    const int leftB = m_graph.mol(b).count - m_usedB[b];
    if (!areAlike(a, b) || leftA != leftB)
        return false;
    m_imageOfA[a] = b;
    m_imageOfB[b] = a;
    m_mapped.append({a, b});
    return true;
}

bool SdcCpxSignature::mapNeighbors(int a, int b, int &cost)
{
    const SdcCpxGraph::Mol &molA = m_graph.mol(a);
    const SdcCpxGraph::Mol &molB = m_graph.mol(b);
    for (int i = 0; i < molA.siteCount; ++i) {
        ++cost;
        const Next nextA = nextOf(molA.firstSite + i, m_usedA);
        const Next nextB = nextOf(molB.firstSite + i, m_usedB);
        if (nextA.rank != nextB.rank || (nextA.mol == None) != (nextB.mol == None)
            || (nextA.mol != None && !mapPair(nextA.mol, nextB.mol)))
            return false;
    }
    return true;
}

bool SdcCpxSignature::areAlike(int a, int b) const
{
    return m_graph.mol(a).shape == m_graph.mol(b).shape
        && (a == m_graph.first()) == (b == m_graph.first());
}

SdcCpxSignature::Next SdcCpxSignature::nextOf(int site, const Used &used) const
{
    const int partner = m_graph.site(site).partner;
    if (partner == None)
        return {};
    const SdcCpxGraph::Mol &mol = m_graph.mol(partner);
    if (mol.rank != None)
        return {mol.rank, None};
    return {None, used[partner] < mol.count ? partner : None};
}

void SdcCpxSignature::enter(int a, int b)
{
    m_pairs.append({a, b, 0, areAlike(a, b)});
    ++m_usedA[a];
    ++m_usedB[b];
}

// False when that was the whole walk.
bool SdcCpxSignature::leave()
{
    --m_usedA[m_pairs.last().a];
    --m_usedB[m_pairs.last().b];
    m_pairs.removeLast();
    if (m_pairs.isEmpty())
        return false;
    ++m_pairs.last().site;
    return true;
}

void SdcCpxSignature::leaveAll()
{
    for (const Pair &pair : std::as_const(m_pairs)) {
        --m_usedA[pair.a];
        --m_usedB[pair.b];
    }
    m_pairs.clear();
}
