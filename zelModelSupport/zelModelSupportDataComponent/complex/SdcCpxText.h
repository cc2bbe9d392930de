#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <array>
#include <charconv>
#include <string_view>

namespace SdcCpxTexts {

/// A piece of a text, valid also while the text grows.
struct Piece
{
    qsizetype begin = 0;
    qsizetype size = 0;
};

/// Ordered and compared as QString is, without a call for texts of a few characters.
inline std::u16string_view units(QStringView text)
{
    return {text.utf16(), static_cast<std::size_t>(text.size())};
}

} // namespace SdcCpxTexts

/// A text that is written piece by piece; it leaves the stack only when it grows long.
template <qsizetype Prealloc = 1024>
class SdcCpxText
{
public:
    using Piece = SdcCpxTexts::Piece;

    void append(QStringView text) { m_units.append(text.utf16(), text.size()); }
    void append(char16_t unit) { m_units.append(unit); }
    void appendNumber(qsizetype number)
    {
        std::array<char, 20> digits;
        const char *const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        for (const char *digit = digits.begin(); digit != end; ++digit)
            m_units.append(static_cast<char16_t>(*digit));
    }
    void clear() { m_units.clear(); }

    qsizetype size() const { return m_units.size(); }
    Piece since(qsizetype begin) const { return {begin, size() - begin}; }
    /// Views are valid until something is appended.
    QStringView view(const Piece &piece) const
    {
        return {m_units.constData() + piece.begin, piece.size};
    }
    QStringView view() const { return {m_units.constData(), size()}; }

private:
    QVarLengthArray<char16_t, Prealloc> m_units;
};
