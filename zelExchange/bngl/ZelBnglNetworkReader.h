#pragma once

#include "zelExchange/import/ZelBnglEntryParts.h"

/// Reads the reactions of a generated network and the groups of its species.
class ZelBnglNetworkReader
{
public:
    ZelBnglNetworkReader(
        ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault, ZelBnglEntryParts &parts)
        : m_lexer(lexer), m_model(model), m_fault(fault), m_parts(parts)
    {
    }

    /// Both take the number before the entry; false with the fault set.
    bool readReaction(quint32 index);
    bool readGroup(quint32 index);

private:
    bool readNumbers(ZelBnglRange &numbers);

    ZelBnglLexer &m_lexer;
    ZelBnglModel &m_model;
    ZelBnglFault &m_fault;
    ZelBnglEntryParts &m_parts;
};
