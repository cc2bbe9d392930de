#pragma once

#include "zelExchange/bngl/ZelBnglLexer.h"

/// Finds where an arithmetic expression of a file ends and whether it is well formed. What it means
/// is not looked at: the text is kept.
class ZelBnglExpression
{
public:
    /// Deepest nesting of parentheses.
    static constexpr int MaxNesting = 200;

    /// Reads the expression that begins here, and leaves the lexer behind it: at the first thing
    /// that cannot continue it. `what` names it in messages ("rate"). False with the fault set.
    static bool read(ZelBnglLexer &lexer, const char *what, ZelBnglText &text, ZelBnglFault &fault);
};
