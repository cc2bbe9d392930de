#pragma once

#include "zelExchange/import/ZelBnglEntryParts.h"

/// Reads a rule into the model.
class ZelBnglRuleReader
{
public:
    ZelBnglRuleReader(
        ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault, ZelBnglEntryParts &parts)
        : m_lexer(lexer), m_model(model), m_fault(fault), m_parts(parts)
    {
    }

    /// False with the fault set.
    bool read();

private:
    bool readSide(ZelBnglRange &patterns, bool isProduct);
    bool isAtTrash() const;
    bool readRates(ZelBnglRule &rule);
    bool readModifiers(ZelBnglRule &rule);
    bool readModifierPatterns(ZelBnglModifier &modifier);

    ZelBnglLexer &m_lexer;
    ZelBnglModel &m_model;
    ZelBnglFault &m_fault;
    ZelBnglEntryParts &m_parts;
};
