#include "zelExchange/bngl/ZelBnglLexer.h"

#include <QList>
#include <QStringDecoder>

namespace {

constexpr qsizetype MaxShownLength = 40;

} // namespace

ZelBnglLexer::ZelBnglLexer(const QByteArray &source)
    : m_begin(source.constData()), m_end(m_begin + source.size()), m_at(m_begin)
{
}

void ZelBnglLexer::skipBlanks()
{
    for (;;) {
        while (isBlank(*m_at))
            ++m_at;
        if (*m_at != '\\' || !skipContinuation())
            return;
    }
}

bool ZelBnglLexer::skipContinuation()
{
    const char *at = m_at + 1;
    while (isBlank(*at))
        ++at;
    if (*at == '#') {
        while (at != m_end && *at != '\n' && *at != '\r')
            ++at;
    }
    if (at == m_end || (*at != '\n' && *at != '\r'))
        return false;
    m_at = *at == '\r' && at[1] == '\n' ? at + 2 : at + 1;
    return true;
}

void ZelBnglLexer::skipLine()
{
    while (!atEnd() && *m_at != '\n' && *m_at != '\r') {
        if (*m_at == '#') {
            // A backslash at the end of a comment continues nothing.
            while (!atEnd() && *m_at != '\n' && *m_at != '\r')
                ++m_at;
        } else if (*m_at != '\\' || !skipContinuation()) {
            ++m_at;
        }
    }
}

bool ZelBnglLexer::skipToEntry()
{
    for (;;) {
        skipBlanks();
        if (atEnd())
            return false;
        if (*m_at == '#')
            skipLine();
        else if (*m_at == '\n' || *m_at == '\r')
            ++m_at;
        else
            return true;
    }
}

ZelBnglText ZelBnglLexer::readWord()
{
    const char *const start = m_at;
    while (isWord(*m_at))
        ++m_at;
    return {static_cast<quint32>(start - m_begin), static_cast<quint32>(m_at - start)};
}

bool ZelBnglLexer::isAtKeyword(QByteArrayView word) const
{
    if (m_end - m_at < word.size() || QByteArrayView(m_at, word.size()) != word)
        return false;
    const char next = m_at[word.size()];
    return isBlank(next) || next == '\\' || next == ';'
        || (zelBnglKinds[static_cast<uchar>(next)] & ZelBnglCharacters::LineEnd);
}

QString ZelBnglLexer::describe() const
{
    if (atLineEnd())
        return atEnd() ? QStringLiteral("the end of the file")
                       : QStringLiteral("the end of the line");
    if (isWord(*m_at)) {
        const char *end = m_at;
        while (isWord(*end))
            ++end;
        return quoted(QByteArrayView(m_at, end));
    }
    if (isBlank(*m_at))
        return QStringLiteral("a blank");
    if (*m_at > ' ' && *m_at < 0x7f)
        return u'"' + QString(QLatin1Char(*m_at)) + u'"';
    // Long enough for one character of UTF-8; what is none is shown as its byte.
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(QByteArrayView(m_at, qMin<qsizetype>(4, m_end - m_at)));
    uint code = static_cast<uchar>(*m_at);
    if (code >= 0x80 && !decoded.isEmpty() && decoded.front() != QChar::ReplacementCharacter)
        code = decoded.toUcs4().value(0);
    const QString shown = QString::number(code, 16).toUpper().rightJustified(4, u'0');
    return QStringLiteral("the character U+") + shown;
}

QString ZelBnglLexer::quoted(QByteArrayView text)
{
    const QString shown = QString::fromLatin1(text.first(qMin(text.size(), MaxShownLength)));
    return u'"' + shown
        + (text.size() > MaxShownLength ? QStringLiteral("...\"") : QStringLiteral("\""));
}
