#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxGraph.h"

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <utility>

/// The signatures of molecules over their graph: compared without being written, or written.
///
/// A signature is as long as the tree of all paths through the bonds, which grows exponentially
/// where bonds form many rings. So two of them are walked side by side up to the first difference,
/// and subtrees that map onto each other molecule by molecule are passed over.
class SdcCpxSignature
{
public:
    /// Longer texts are cut there and end in "...": what is written out, and what is reported.
    static constexpr qsizetype MaxSize = qsizetype(1) << 24;
    static constexpr qsizetype MaxReportSize = qsizetype(1) << 20;

    explicit SdcCpxSignature(const SdcCpxGraph &graph);

    /// Negative when the signature of a comes first, 0 when both are equal. Each signature that
    /// reaches a doubly bound site is reported and empty.
    int compare(int a, int b);
    /// Reports as well.
    QString text(int number);
    /// Written without a report, for one.
    QString textToReport(int number);

private:
    class Cursor;

    using Used = QVarLengthArray<int, 16>; // how often each molecule lies on the path

    /// What follows the text of a site: a ranked neighbor, a molecule to enter, or nothing.
    struct Next
    {
        int rank = SdcCpxGraph::None;
        int mol = SdcCpxGraph::None;
    };

    /// Where the next piece of a molecule's text comes from.
    enum class Step { Head, Site, Partner, Separator };

    /// Two molecules that both walks have entered at the same place of equal texts.
    struct Pair
    {
        int a;
        int b;
        int site;
        bool alike;
    };

    QString write(int number, qsizetype maxSize);
    bool isEmpty(int number);
    bool reachesDoublyBound(int number);
    int compareWalks(int a, int b);
    int comparePieces(QStringView a, QStringView b, Step step);
    int compareStreams(Step step);
    int proofCost(const Pair &pair);
    bool mapPair(int a, int b);
    bool mapNeighbors(int a, int b, int &cost);
    bool areAlike(int a, int b) const;
    Next nextOf(int site, const Used &used) const;
    void enter(int a, int b);
    bool leave();
    void leaveAll();

    const SdcCpxGraph &m_graph;
    Used m_usedA;
    Used m_usedB;
    QVarLengthArray<Pair, 32> m_pairs;
    QVarLengthArray<std::pair<int, int>, 32> m_mapped;
    QVarLengthArray<int, 16> m_imageOfA; // empty until the first proof
    QVarLengthArray<int, 16> m_imageOfB;
};
