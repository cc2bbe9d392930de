#pragma once

#include "zelExchange/bngl/ZelBnglNames.h"

#include <QByteArray>
#include <QString>

#include <array>

/// Why an entry could not be read; where several faults follow from each other, the first stays.
struct ZelBnglFault
{
    quint32 offset = 0;
    QString message;

    /// Always false, so that a reader can leave with it.
    bool set(quint32 at, const QString &text)
    {
        if (message.isEmpty()) {
            offset = at;
            message = text;
        }
        return false;
    }
};

/// What a character can be a part of.
struct ZelBnglCharacters
{
    enum Kind : quint8 { Other = 0, Word = 1, Blank = 2, LineEnd = 4 };

    static constexpr std::array<quint8, 256> makeKinds()
    {
        std::array<quint8, 256> table{};
        for (size_t c = '0'; c <= '9'; ++c)
            table[c] = Word;
        for (size_t c = 'a'; c <= 'z'; ++c)
            table[c] = table[c - 'a' + 'A'] = Word;
        table['_'] = Word;
        table[' '] = table['\t'] = table['\v'] = table['\f'] = Blank;
        table['\n'] = table['\r'] = table['#'] = table['\0'] = LineEnd;
        return table;
    }
};

inline constexpr std::array<quint8, 256> zelBnglKinds = ZelBnglCharacters::makeKinds();

/// Walks over the characters of a source text. What a character means depends on where it stands,
/// so that there are no tokens beyond words, numbers and single signs.
class ZelBnglLexer
{
public:
    /// Longest name, in characters.
    static constexpr quint32 MaxNameLength = 255;

    /// The text must end with a null character, as a QByteArray's does, and outlive the lexer.
    explicit ZelBnglLexer(const QByteArray &source);

    quint32 offset() const { return static_cast<quint32>(m_at - m_begin); }
    void setOffset(quint32 offset) { m_at = m_begin + offset; }
    bool atEnd() const { return m_at == m_end; }
    /// The next character, a null character at the end.
    char peek() const { return *m_at; }
    char peekSecond() const { return m_at == m_end ? '\0' : m_at[1]; }
    void advance() { ++m_at; }
    bool accept(char c)
    {
        if (*m_at != c || atEnd())
            return false;
        ++m_at;
        return true;
    }

    static bool isWord(char c)
    {
        return zelBnglKinds[static_cast<uchar>(c)] & ZelBnglCharacters::Word;
    }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static bool isNameStart(char c) { return isWord(c) && !isDigit(c); }
    static bool isBlank(char c)
    {
        return zelBnglKinds[static_cast<uchar>(c)] & ZelBnglCharacters::Blank;
    }

    /// Over blanks and line continuations.
    void skipBlanks();
    /// Whether the entry ends here: a comment, the end of the line or of the text.
    bool atLineEnd() const
    {
        return (zelBnglKinds[static_cast<uchar>(*m_at)] & ZelBnglCharacters::LineEnd)
            && (*m_at != '\0' || atEnd());
    }
    /// To the end of the entry's last line.
    void skipLine();
    /// To the next character that is not blank, comment or line end; false when there is none.
    bool skipToEntry();
    /// The letters, digits and "_" that follow, perhaps none.
    ZelBnglText readWord();
    /// Whether this word stands here, with a blank or the end of the line behind it.
    bool isAtKeyword(QByteArrayView word) const;

    /// What stands here, for a message: `"x"`, `the end of the line`, `the character U+00E9`.
    QString describe() const;
    /// A name for a message, shortened when it is long.
    static QString quoted(QByteArrayView text);

private:
    /// Over a continuation; false when the backslash here is none.
    bool skipContinuation();

    const char *m_begin;
    const char *m_end;
    const char *m_at;
};
