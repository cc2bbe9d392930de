#pragma once

#include "zelExchange/bngl/ZelBnglPatternReader.h"

/// Reads what entries of several kinds are made of: names, numbers, labels, expressions, patterns.
/// Each answers false, or no name, with the fault set.
class ZelBnglEntryParts
{
public:
    /// Longest entry or command, continuations included.
    static constexpr quint32 MaxLength = 1 << 20;

    /// Whether the label of a rule may hold it.
    static bool isInLabel(char c);

    ZelBnglEntryParts(ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault);

    /// An entry begins here.
    void begin() { m_start = m_lexer.offset(); }
    quint32 start() const { return m_start; }
    /// Over a ";" and blanks; false when something else follows on the line.
    bool readEnd();

    /// The number before an entry, 0 when there is none.
    quint32 readIndex();
    /// A label with its colon. A label of a rule may hold blanks, parentheses and the like.
    ZelBnglText readLabel(bool isOfRule);
    bool readNumber(quint32 &number, const char *what);
    quint32 readName(const char *what, bool mayBeginWithDigit = false)
    {
        return m_patterns.readName(what, mayBeginWithDigit);
    }
    /// A name that begins a line when it is written again.
    quint32 readLineName(const char *what);
    bool readExpression(const char *what, ZelBnglText &text);
    bool readPattern(ZelBnglPatternReader::Context context, quint32 &pattern);
    bool readArrow(bool &isReversible);

    ZelBnglText textSince(quint32 offset) const;
    bool fail(const QString &text) { return m_fault.set(m_lexer.offset(), text); }

private:
    ZelBnglLexer &m_lexer;
    ZelBnglModel &m_model;
    ZelBnglFault &m_fault;
    ZelBnglPatternReader m_patterns;
    quint32 m_start = 0;
};
