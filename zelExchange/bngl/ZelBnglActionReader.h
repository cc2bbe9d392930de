#pragma once

#include "zelExchange/import/ZelBnglEntryParts.h"

/// Reads a command with its arguments, which may run over several lines.
class ZelBnglActionReader
{
public:
    ZelBnglActionReader(
        ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault, ZelBnglEntryParts &parts)
        : m_lexer(lexer), m_model(model), m_fault(fault), m_parts(parts)
    {
    }

    /// False with the fault set.
    bool read(bool isBeforeModel);

private:
    struct Bracket
    {
        quint32 offset = 0;
        char closing = ')';
    };

    bool failUnclosed(const Bracket &bracket);

    ZelBnglLexer &m_lexer;
    ZelBnglModel &m_model;
    ZelBnglFault &m_fault;
    ZelBnglEntryParts &m_parts;
};
