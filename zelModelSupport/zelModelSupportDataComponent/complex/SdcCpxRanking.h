#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxGraph.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxSignature.h"

#include <QList>
#include <QString>

#include <optional>

class SdcBstBst;
class SdcMol;

/// The canonical order of molecules over one set of tables.
///
/// Ties are reported as often as the rules compare, since a pass that finds nothing is repeated.
class SdcCpxRanking
{
public:
    using Mols = QList<SdcMol *>;
    using Bonds = QList<SdcBstBst *>;

    /// What becomes of two molecules that are alike.
    enum class Ties {
        KeepEarlier,
        ReportAndDrop ///< both lose, and the next molecule wins
    };

    /// Signatures walk through molSet; others are molecules that may be asked for as well.
    SdcCpxRanking(
        const Mols &molSet, const Bonds &bonds, bool withStatuses = false, const Mols &others = {});
    Q_DISABLE_COPY_MOVE(SdcCpxRanking)

    const SdcCpxGraph &graph() const { return m_graph; }
    void setRanked(const Mols &ranked);
    /// The molecule that signatures mark; null and one that is nowhere mark nothing.
    void setFirstMol(SdcMol *firstMol);

    QString signature(SdcMol *mol);
    /// The molecule with the smaller signature; null on a tie.
    SdcMol *front(SdcMol *mol1, SdcMol *mol2);
    SdcMol *constFront(SdcMol *mol1, SdcMol *mol2, Ties ties);
    SdcMol *constFront(const Mols &candidates, Ties ties);
    Mols ranked(const Mols &mols, Ties ties);
    /// The molecules of molSet that come first, all alike.
    Mols frontSet(bool considerBstStatus);
    /// molSet in canonical order. An asymmetric species needs no front set.
    Mols canonicalOrder(bool isAsymmetric, bool considerBstStatus, bool considerMcpState);

private:
    using Numbers = QVarLengthArray<int, 32>;

    int front(int a, int b);
    int constFront(int a, int b, Ties ties);
    int constFront(const Numbers &candidates, Ties ties);
    Numbers rank(Numbers remaining, Ties ties);
    Numbers frontNumbers(bool considerBstStatus);
    Numbers frontSetOf(const Numbers &mols);
    int firstByState(const Numbers &candidates, std::optional<Numbers> *order);
    int firstByPosition(const Numbers &candidates) const;
    Numbers numbersOf(const Mols &mols) const;
    Mols molsOf(const Numbers &numbers) const;
    SdcMol *molOf(int number) const;
    bool isNull(int number) const { return !molOf(number); }

    const Bonds m_bonds;
    SdcCpxGraph m_graph;
    const Numbers m_molSet;
    SdcCpxSignature m_signature;
    std::optional<Numbers> m_frontSet; // without statuses
    int m_tieReports = 0;
};
