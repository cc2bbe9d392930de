#include "zelExchange/bngl/ZelBnglExpression.h"

#include <QByteArrayView>

#include <utility>

namespace {

using Lexer = ZelBnglLexer;

/// One pass over an expression: operands and operators in turn, and a list of what is open.
class Scan
{
public:
    Scan(Lexer &lexer, const char *what, ZelBnglFault &fault)
        : m_lexer(lexer), m_what(QLatin1String(what)), m_fault(fault)
    {
    }

    bool run(ZelBnglText &text);

private:
    enum Step { Continue, Finished, Failed };

    struct Opening
    {
        quint32 offset = 0;
        bool isCall = false;
    };

    Step readOperand();
    Step readOperator();
    bool readNumber();
    bool readString();
    bool open(bool isCall);
    Step fail(const QString &text) { return failAt(m_lexer.offset(), text); }
    Step failAt(quint32 offset, const QString &text)
    {
        m_fault.set(offset, text);
        return Failed;
    }

    Lexer &m_lexer;
    QLatin1String m_what;
    ZelBnglFault &m_fault;
    std::array<Opening, ZelBnglExpression::MaxNesting> m_open;
    int m_depth = 0;
    quint32 m_end = 0;
    bool m_wantsOperand = true;
    bool m_mayBeEmpty = false; ///< right behind the parenthesis of a call
};

bool Scan::run(ZelBnglText &text)
{
    m_lexer.skipBlanks();
    const quint32 start = m_lexer.offset();
    for (;;) {
        m_lexer.skipBlanks();
        const Step step = m_wantsOperand ? readOperand() : readOperator();
        if (step == Failed)
            return false;
        if (step == Finished)
            break;
        m_end = m_lexer.offset();
    }
    text = {start, m_end - start};
    return true;
}

Scan::Step Scan::readOperand()
{
    const bool mayBeEmpty = std::exchange(m_mayBeEmpty, false);
    const char c = m_lexer.peek();
    if (Lexer::isDigit(c) || (c == '.' && Lexer::isDigit(m_lexer.peekSecond()))) {
        m_wantsOperand = false;
        return readNumber() ? Continue : Failed;
    }
    if (Lexer::isNameStart(c)) {
        m_lexer.readWord();
        m_end = m_lexer.offset();
        m_lexer.skipBlanks();
        if (m_lexer.peek() == '(')
            return open(true) ? Continue : Failed;
        m_lexer.setOffset(m_end);
        m_wantsOperand = false;
        return Continue;
    }
    switch (c) {
    case '(':
        return open(false) ? Continue : Failed;
    case ')':
        if (!mayBeEmpty)
            break;
        m_lexer.advance();
        --m_depth;
        m_wantsOperand = false;
        return Continue;
    case '+':
    case '-':
    case '!':
    case '~':
        m_lexer.advance();
        return Continue;
    case '"':
    case '\'':
        if (m_depth == 0 || !m_open[static_cast<size_t>(m_depth - 1)].isCall)
            break;
        m_wantsOperand = false;
        return readString() ? Continue : Failed;
    default:
        break;
    }
    return fail(
        QStringLiteral("In the %1, %2 stands where a number or a name is missing. Write one, "
                       "or remove what leads to it.")
            .arg(m_what, m_lexer.describe()));
}

Scan::Step Scan::readOperator()
{
    const char c = m_lexer.peek();
    const char next = m_lexer.peekSecond();
    int length = 0;
    switch (c) {
    case ')':
        if (m_depth == 0)
            return Finished;
        m_lexer.advance();
        --m_depth;
        return Continue;
    case ',':
        if (m_depth == 0)
            return Finished;
        if (!m_open[static_cast<size_t>(m_depth - 1)].isCall) {
            return fail(
                QStringLiteral("In the %1, \",\" stands in parentheses that hold no arguments "
                               "of a function. Close the parentheses before it.")
                    .arg(m_what));
        }
        length = 1;
        break;
    case '+':
    case '-':
    case '/':
    case '^':
        length = 1;
        break;
    case '*':
        length = next == '*' ? 2 : 1;
        break;
    case '<':
    case '>':
        length = next == '=' ? 2 : 1;
        break;
    case '=':
    case '!':
    case '~':
        length = next == '=' ? 2 : 0;
        break;
    case '&':
    case '|':
        length = next == c ? 2 : 0;
        break;
    default:
        break;
    }
    if (length > 0) {
        for (; length > 0; --length)
            m_lexer.advance();
        m_wantsOperand = true;
        return Continue;
    }
    if (m_depth == 0)
        return Finished;
    if (m_lexer.atLineEnd()) {
        return failAt(m_open[static_cast<size_t>(m_depth - 1)].offset,
            QStringLiteral("In the %1, this parenthesis is never closed. Add a \")\".")
                .arg(m_what));
    }
    return fail(
        QStringLiteral("In the %1, %2 stands where an operator or a \")\" is missing. Write it.")
            .arg(m_what, m_lexer.describe()));
}

bool Scan::readNumber()
{
    const quint32 start = m_lexer.offset();
    const auto readDigits = [this] {
        while (Lexer::isDigit(m_lexer.peek()))
            m_lexer.advance();
    };
    readDigits();
    if (m_lexer.accept('.'))
        readDigits();
    if (m_lexer.peek() == 'e' || m_lexer.peek() == 'E') {
        m_lexer.advance();
        if (m_lexer.peek() == '+' || m_lexer.peek() == '-')
            m_lexer.advance();
        if (!Lexer::isDigit(m_lexer.peek())) {
            return m_fault.set(start,
                QStringLiteral(
                    "In the %1, a number has no digits after its \"e\". Add the exponent, or "
                    "write \"*\" before a name.")
                    .arg(m_what));
        }
        readDigits();
    }
    if (Lexer::isWord(m_lexer.peek()) || m_lexer.peek() == '.') {
        return m_fault.set(start,
            QStringLiteral(
                "In the %1, %2 follows a number at once. Write an operator between them.")
                .arg(m_what, m_lexer.describe()));
    }
    return true;
}

bool Scan::readString()
{
    const quint32 start = m_lexer.offset();
    const char quote = m_lexer.peek();
    m_lexer.advance();
    // A "#" in a string begins no comment.
    while (m_lexer.peek() != quote) {
        if (m_lexer.atEnd() || m_lexer.peek() == '\n' || m_lexer.peek() == '\r') {
            return m_fault.set(start,
                QStringLiteral("In the %1, this text is never closed. Add a quote.").arg(m_what));
        }
        m_lexer.advance();
    }
    m_lexer.advance();
    return true;
}

bool Scan::open(bool isCall)
{
    if (m_depth == ZelBnglExpression::MaxNesting) {
        return m_fault.set(m_lexer.offset(),
            QStringLiteral(
                "In the %1, parentheses are nested deeper than %2. Split it with parameters "
                "or functions.")
                .arg(m_what)
                .arg(ZelBnglExpression::MaxNesting));
    }
    m_open[static_cast<size_t>(m_depth++)] = {m_lexer.offset(), isCall};
    m_mayBeEmpty = isCall;
    m_lexer.advance();
    return true;
}

} // namespace

bool ZelBnglExpression::read(
    ZelBnglLexer &lexer, const char *what, ZelBnglText &text, ZelBnglFault &fault)
{
    return Scan(lexer, what, fault).run(text);
}
