#include "zelExchange/bngl/ZelBnglActionReader.h"

#include <array>

namespace {

using Lexer = ZelBnglLexer;

/// Deepest nesting of brackets in the arguments.
constexpr size_t MaxNesting = 200;

} // namespace

bool ZelBnglActionReader::read(bool isBeforeModel)
{
    const quint32 start = m_parts.start();
    const ZelBnglText name = m_lexer.readWord();
    m_lexer.skipBlanks();
    if (name.isEmpty() || Lexer::isDigit(m_model.source()[start]) || m_lexer.peek() != '(') {
        m_lexer.setOffset(start);
        return m_parts.fail(
            QStringLiteral("%1 stands outside of all blocks and is no command. Write \"begin\" "
                           "and the name of its block before it, or \"(\" and \")\" behind a "
                           "command.")
                .arg(m_lexer.describe()));
    }
    std::array<Bracket, MaxNesting> open{};
    size_t depth = 0;
    do {
        const char c = m_lexer.peek();
        const quint32 here = m_lexer.offset();
        if (m_lexer.atEnd())
            return failUnclosed(open[depth - 1]);
        switch (c) {
        case '(':
        case '{':
        case '[':
            if (depth == open.size()) {
                return m_parts.fail(
                    QStringLiteral("Brackets are nested deeper than %1. Simplify the command.")
                        .arg(open.size()));
            }
            open[depth++] = {here, c == '(' ? ')' : (c == '{' ? '}' : ']')};
            break;
        case ')':
        case '}':
        case ']':
            if (open[--depth].closing != c) {
                return m_parts.fail(
                    QStringLiteral("%1 closes a bracket of another kind. Write \"%2\" before it.")
                        .arg(m_lexer.describe(), QString(QLatin1Char(open[depth].closing))));
            }
            break;
        case '"':
        case '\'':
            m_lexer.advance();
            while (!m_lexer.atEnd() && m_lexer.peek() != c && m_lexer.peek() != '\n')
                m_lexer.advance();
            if (m_lexer.peek() != c) {
                m_lexer.setOffset(here);
                return m_parts.fail(
                    QStringLiteral("This text is never closed. Add a quote on the same line."));
            }
            break;
        case '#':
            m_lexer.skipLine();
            continue;
        case '\n':
            m_lexer.advance();
            m_lexer.skipBlanks();
            if (m_lexer.isAtKeyword("begin") || m_lexer.isAtKeyword("end")) {
                // The block is read as one.
                m_lexer.setOffset(here);
                return failUnclosed(open[depth - 1]);
            }
            continue;
        default:
            break;
        }
        m_lexer.advance();
    } while (depth > 0);
    const ZelBnglText text{start, m_lexer.offset() - start};
    if (text.length > ZelBnglEntryParts::MaxLength) {
        return m_fault.set(start,
            QStringLiteral("This command has more than %1 characters. Split it.")
                .arg(ZelBnglEntryParts::MaxLength));
    }
    m_lexer.skipBlanks();
    while (m_lexer.accept(';'))
        m_lexer.skipBlanks();
    m_model.actions.push_back({text, isBeforeModel});
    return true;
}

bool ZelBnglActionReader::failUnclosed(const Bracket &bracket)
{
    return m_fault.set(bracket.offset,
        QStringLiteral("This bracket is never closed. Add a \"%1\".")
            .arg(QLatin1Char(bracket.closing)));
}
