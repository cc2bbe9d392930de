#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxBondTable.h"
#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxText.h"

#include <QList>
#include <QString>
#include <QVarLengthArray>

#include <optional>
#include <span>

class Sdc;
class SdcBst;
class SdcCpx;
class SdcMcp;
class SdcMol;

/// Writes in which states and bindings molecules are, in any orders of them.
///
/// Orders are compared by their texts: what a molecule says of itself is written once, whichever
/// place it takes. The components must not change while the writer is used.
class SdcCpxStateCodeWriter
{
public:
    enum Content { BindingsOnly, StatesAndBindings };
    enum Form { Bare, WithElement };

    explicit SdcCpxStateCodeWriter(const QList<SdcMol *> &mols, Content content);

    /// The molecules by their numbers in the list; null keeps its place and is not written. A
    /// component that has lost a sticky ends the process.
    QString text(std::span<const int> order, bool withMolPsiimId, Form form);
    /// The list in its own order.
    QString text(bool withMolPsiimId, Form form);

private:
    struct Mol
    {
        SdcMol *mol = nullptr;
        int firstMcp = 0;
        int mcpCount = 0;
        SdcCpxTexts::Piece text; ///< what it says of itself; empty until that is written
    };

    struct Mcp
    {
        SdcMcp *mcp = nullptr;
        int firstState = 0;
        int stateCount = 0;
    };

    void addMcps(Sdc *sdc);
    void readStates();
    void write(Mol &mol);
    void writeStates(const Mcp &mcp);
    void writeSites(Sdc *sdc, int *count);
    void writeSite(const SdcBst *bst, int pos);

    QVarLengthArray<Mol, 16> m_mols;
    QVarLengthArray<Mcp, 32> m_mcps;
    QVarLengthArray<int, 64> m_states;
    SdcCpxText<4096> m_text;
    Content m_content;
    const SdcCpx *m_cpx = nullptr; // that of the molecule that was written last
    std::optional<SdcCpxBondTable> m_held; // by its bonds
};
