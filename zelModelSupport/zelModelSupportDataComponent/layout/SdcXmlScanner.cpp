#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcXmlScanner.h"

#include <algorithm>

namespace {

bool isSpace(char16_t c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r';
}

bool isNameStart(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}

bool isNamePart(char16_t c)
{
    return isNameStart(c) || (c >= u'0' && c <= u'9') || c == u'-' || c == u'.';
}

bool isValuePart(char16_t c)
{
    return c >= u' ' && c <= u'~' && c != u'"' && c != u'<' && c != u'&';
}

QStringView viewOf(const char16_t *begin, const char16_t *end)
{
    return {begin, end - begin};
}

} // namespace

QStringView SdcXmlScanner::Attributes::value(QLatin1String name) const
{
    const auto *const end = m_list.cbegin() + m_count;
    const auto *const found = std::find_if(m_list.cbegin(), end, [name](const Attribute &entry) {
        return entry.name.size() == name.size() && entry.name == name;
    });
    return found == end ? QStringView() : found->value;
}

SdcXmlScanner::SdcXmlScanner(QStringView text) : m_at(text.utf16()), m_end(m_at + text.size()) { }

bool SdcXmlScanner::readRoot()
{
    skipSpace();
    if (takeWord(QLatin1String("<!DOCTYPE "))) {
        if (takeName().isEmpty() || !take(u'>'))
            return fail();
        skipSpace();
    }
    return take(u'<') ? readStartTag() : fail();
}

bool SdcXmlScanner::readChild()
{
    if (!m_plain || m_depth == 0)
        return false;
    if (m_isEmptyElement) {
        m_isEmptyElement = false;
        --m_depth;
        return false;
    }
    skipSpace();
    if (!take(u'<'))
        return fail();
    return take(u'/') ? readEndTag() : readStartTag();
}

void SdcXmlScanner::skipElement()
{
    const int outer = m_depth - 1;
    while (m_plain && m_depth > outer)
        readChild();
}

void SdcXmlScanner::readToEnd()
{
    while (m_plain && m_depth > 0)
        readChild();
    skipSpace();
    if (m_at != m_end)
        fail();
}

bool SdcXmlScanner::fail()
{
    m_plain = false;
    return false;
}

bool SdcXmlScanner::take(char16_t c)
{
    if (m_at == m_end || *m_at != c)
        return false;
    ++m_at;
    return true;
}

bool SdcXmlScanner::takeWord(QLatin1String word)
{
    if (!viewOf(m_at, m_end).startsWith(word))
        return false;
    m_at += word.size();
    return true;
}

bool SdcXmlScanner::skipSpace()
{
    const char16_t *const begin = m_at;
    m_at = std::find_if_not(m_at, m_end, isSpace);
    return m_at != begin;
}

QStringView SdcXmlScanner::takeName()
{
    const char16_t *const begin = m_at;
    if (m_at != m_end && isNameStart(*m_at))
        m_at = std::find_if_not(m_at, m_end, isNamePart);
    return viewOf(begin, m_at);
}

bool SdcXmlScanner::readStartTag()
{
    m_name = takeName();
    if (m_name.isEmpty() || m_depth == MaxNesting)
        return fail();
    m_open[static_cast<std::size_t>(m_depth++)] = m_name;
    m_attributes.m_count = 0;
    while (true) {
        const bool spaced = skipSpace();
        if (take(u'>'))
            return true;
        if (take(u'/')) {
            m_isEmptyElement = true;
            return take(u'>') || fail();
        }
        if (!spaced || !readAttribute())
            return fail();
    }
}

bool SdcXmlScanner::readEndTag()
{
    if (takeName() != m_open[static_cast<std::size_t>(--m_depth)])
        return fail();
    skipSpace();
    if (!take(u'>'))
        fail();
    return false;
}

bool SdcXmlScanner::readAttribute()
{
    const QStringView name = takeName();
    if (name.isEmpty() || m_attributes.m_count == MaxAttributes || !take(u'=') || !take(u'"'))
        return false;
    auto *const end = m_attributes.m_list.begin() + m_attributes.m_count;
    if (std::any_of(m_attributes.m_list.begin(), end,
            [name](const Attributes::Attribute &entry) { return entry.name == name; }))
        return false;
    const char16_t *const begin = m_at;
    m_at = std::find_if_not(m_at, m_end, isValuePart);
    *end = {name, viewOf(begin, m_at)};
    ++m_attributes.m_count;
    return take(u'"');
}
