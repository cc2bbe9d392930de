#pragma once

#include "zelExchange/bngl/ZelBnglLexer.h"
#include "zelExchange/bngl/ZelBnglModel.h"

#include <vector>

/// Reads patterns, species and molecule types into the model's lists.
class ZelBnglPatternReader
{
public:
    /// Where a pattern stands decides what it may be.
    enum class Context {
        Species, ///< of molecules
        Observable, ///< with a number of matches behind it
        RuleSide, ///< or nothing
        MoleculeType ///< one molecule, components with all their states
    };

    ZelBnglPatternReader(ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault);

    /// Appends the pattern that begins here to the model's patterns, with its parts. False with the
    /// fault set.
    bool readPattern(Context context);
    /// Reads a name, which `what` names in messages ("molecule"), ZelBnglNames::None with the fault
    /// set. A name of a component or state may begin with a digit.
    quint32 readName(const char *what, bool mayBeginWithDigit = false);

private:
    struct Seen
    {
        quint32 pattern = 0; ///< number of the pattern that used the label last, from 1
        quint32 bond = 0;
        quint32 component = 0;
    };

    bool readPrefix(ZelBnglPattern &pattern);
    bool readMolecule(Context context);
    bool readMoleculeTags(ZelBnglMolecule &molecule);
    bool readComponents(ZelBnglMolecule &molecule, Context context);
    bool readComponent(Context context, const ZelBnglMolecule &molecule);
    bool readState(ZelBnglComponent &component, Context context);
    bool readBond(ZelBnglComponent &component, Context context);
    bool joinBond(quint32 component, quint32 bond);
    bool readAttributes(quint32 &attributes);
    bool readQuantifier(ZelBnglPattern &pattern);
    bool checkBonds(quint32 firstBond);
    bool fail(const QString &text) { return m_fault.set(m_lexer.offset(), text); }
    QString shown(quint32 name) const { return ZelBnglLexer::quoted(m_model.name(name)); }

    ZelBnglLexer &m_lexer;
    ZelBnglModel &m_model;
    ZelBnglFault &m_fault;
    std::vector<Seen> m_seen; ///< by the label's name
    quint32 m_patternNumber = 0;
    quint32 m_openBonds = 0;
};
