#include "zelExchange/import/ZelBnglEntryParts.h"

#include "zelExchange/bngl/ZelBnglExpression.h"

namespace {

using Lexer = ZelBnglLexer;

} // namespace

bool ZelBnglEntryParts::isInLabel(char c)
{
    return Lexer::isWord(c) || c == ' ' || c == '\t' || c == '*' || c == '(' || c == ')' || c == '-'
        || c == '.' || c == '/' || c == '[' || c == ']';
}

ZelBnglEntryParts::ZelBnglEntryParts(ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault)
    : m_lexer(lexer), m_model(model), m_fault(fault), m_patterns(lexer, model, fault)
{
}

bool ZelBnglEntryParts::readNumber(quint32 &number, const char *what)
{
    const quint32 start = m_lexer.offset();
    bool isNumber = false;
    number = m_model.view(m_lexer.readWord()).toUInt(&isNumber);
    if (isNumber)
        return true;
    m_lexer.setOffset(start);
    return fail(QStringLiteral("%1 stands where the number of %2 is missing. Write a whole number.")
                    .arg(m_lexer.describe(), QLatin1String(what)));
}

quint32 ZelBnglEntryParts::readLineName(const char *what)
{
    const quint32 start = m_lexer.offset();
    const quint32 name = readName(what);
    const QByteArrayView text = m_model.name(name);
    if (text != QByteArrayView("begin") && text != QByteArrayView("end"))
        return name;
    m_fault.set(start,
        QStringLiteral(
            "The name of a %1 cannot be %2, which begins or ends a block. Choose another.")
            .arg(QLatin1String(what), Lexer::quoted(text)));
    return ZelBnglNames::None;
}

bool ZelBnglEntryParts::readExpression(const char *what, ZelBnglText &text)
{
    return ZelBnglExpression::read(m_lexer, what, text, m_fault);
}

bool ZelBnglEntryParts::readPattern(ZelBnglPatternReader::Context context, quint32 &pattern)
{
    if (!m_patterns.readPattern(context))
        return false;
    pattern = static_cast<quint32>(m_model.patterns.size() - 1);
    return true;
}

ZelBnglText ZelBnglEntryParts::readLabel(bool isOfRule)
{
    const quint32 start = m_lexer.offset();
    ZelBnglText label = m_lexer.readWord();
    if (isOfRule) {
        while (isInLabel(m_lexer.peek()))
            m_lexer.advance();
        label.length = m_lexer.offset() - start;
        while (label.length > 0 && Lexer::isBlank(m_model.source()[start + label.length - 1]))
            --label.length;
    } else {
        m_lexer.skipBlanks();
    }
    if (label.length > 0 && m_lexer.peek() == ':' && m_lexer.peekSecond() != ':') {
        m_lexer.advance();
        m_lexer.skipBlanks();
        return label;
    }
    m_lexer.setOffset(start);
    return {};
}

bool ZelBnglEntryParts::readArrow(bool &isReversible)
{
    const quint32 start = m_lexer.offset();
    isReversible = m_lexer.accept('<');
    if (m_lexer.accept('-') && m_lexer.accept('>'))
        return true;
    m_lexer.setOffset(start);
    return fail(
        QStringLiteral("%1 stands where \"+\" or an arrow is missing. Write \"+\" before another "
                       "reactant, or \"->\" or \"<->\" before the products.")
            .arg(m_lexer.describe()));
}

ZelBnglText ZelBnglEntryParts::textSince(quint32 offset) const
{
    quint32 end = m_lexer.offset();
    while (end > offset && Lexer::isBlank(m_model.source()[end - 1]))
        --end;
    return {offset, end - offset};
}

bool ZelBnglEntryParts::readEnd()
{
    m_lexer.skipBlanks();
    while (m_lexer.accept(';'))
        m_lexer.skipBlanks();
    if (!m_lexer.atLineEnd()) {
        return fail(
            QStringLiteral("%1 follows where the entry should end. Remove it, or begin a new "
                           "line.")
                .arg(m_lexer.describe()));
    }
    if (m_lexer.offset() - m_start > MaxLength) {
        return m_fault.set(m_start,
            QStringLiteral("This entry has more than %1 characters. Split it.").arg(MaxLength));
    }
    return true;
}

quint32 ZelBnglEntryParts::readIndex()
{
    if (!Lexer::isDigit(m_lexer.peek()))
        return 0;
    const quint32 start = m_lexer.offset();
    const ZelBnglText word = m_lexer.readWord();
    m_lexer.skipBlanks();
    const char next = m_lexer.peek();
    // "0 -> ..." begins with nothing, not with a number.
    const bool isIndex = m_lexer.offset() > word.offset + word.length && !m_lexer.atLineEnd()
        && next != '+' && next != '-' && next != '<' && next != ':';
    bool isNumber = false;
    const quint32 index = m_model.view(word).toUInt(&isNumber);
    if (isIndex && isNumber)
        return index;
    m_lexer.setOffset(start);
    return 0;
}
