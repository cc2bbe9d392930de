#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxText.h"

#include <QList>
#include <QStringView>
#include <QVarLengthArray>

class SdcBst;
class SdcBstBst;
class SdcCpxBondTable;
class SdcMol;

/// Molecules and the bonds between them as tables, with the texts that signatures are made of.
///
/// Molecules are numbered, each once however often the lists hold it. The tables are built once for
/// a question about order; the components must not change while they are used.
class SdcCpxGraph
{
public:
    static constexpr int None = -1;

    using Piece = SdcCpxTexts::Piece; ///< of the text that all molecules share

    /// A binding site: "id--id of the partner" or "id--0".
    struct Site
    {
        Piece text;
        int partner = None; ///< the partner's molecule, when it is one of the graph's
    };

    struct Mol
    {
        SdcMol *mol = nullptr;
        Piece head; ///< "[id(2): "
        int count = 0; ///< how often one walk may enter it: its occurrences in the set
        int firstSite = 0; ///< its sites are numbered on from here, in order of their ids
        int siteCount = 0;
        int shape = None; ///< equal for molecules with equal texts of their own
        int rank = None; ///< its place among the molecules that are ranked already
        bool doublyBound = false; ///< whether two bonds hold one of its sites
    };

    /// Walks lead through molSet; others can be asked for as well. Null is a molecule that no walk
    /// enters.
    SdcCpxGraph(const QList<SdcMol *> &molSet, const QList<SdcMol *> &others,
        const QList<SdcBstBst *> &bonds, bool withStatuses);

    int size() const { return static_cast<int>(m_mols.size()); }
    const Mol &mol(int number) const { return m_mols[number]; }
    const Site &site(int number) const { return m_sites[number]; }
    QStringView text(const Piece &piece) const { return m_text.view(piece); }
    /// The beginning of a molecule's text, which tells the first molecule from the others.
    QStringView head(int number) const;
    int first() const { return m_first; }
    bool hasDoublyBound() const { return m_hasDoublyBound; }
    /// Whether bonds join all molecules. Without doubly bound sites only: the tables hold one bond
    /// for each site.
    bool isConnected() const;
    /// None for a molecule that is in none of the lists.
    int find(const SdcMol *mol) const;

    void setFirst(int number);
    /// A molecule keeps the first rank that it is given.
    void setRank(int number, int rank);
    void clearRanks();

private:
    using Partners = QVarLengthArray<int, 32>; // the partner's molecule for each entry of a table

    void addMols(const QList<SdcMol *> &molSet, const QList<SdcMol *> &others);
    void addTexts(
        Mol &mol, const SdcCpxBondTable &held, const Partners &partners, bool withStatuses);
    void addSite(Mol &mol, SdcBst *site, QStringView id, const SdcCpxBondTable &held,
        const Partners &partners, bool withStatuses);
    void findShape(int number);
    bool haveSameTexts(const Mol &a, const Mol &b) const;
    Piece ownTexts(const Mol &mol) const;
    void appendStatus(SdcBst *site);

    QVarLengthArray<Mol, 16> m_mols; // in order of their addresses
    QVarLengthArray<Site, 64> m_sites;
    SdcCpxText<1024> m_text;
    QVarLengthArray<char16_t, 64> m_firstHead;
    int m_first = None;
    bool m_hasDoublyBound = false;
};
