#include "zelExchange/bngl/ZelBnglModel.h"

#include <algorithm>
#include <cstring>

namespace {

/// Where a continuation that begins here ends, or 0: a backslash, blanks, perhaps a comment, and
/// the end of the line.
qsizetype continuationEnd(QByteArrayView text, qsizetype at)
{
    if (text[at] != '\\')
        return 0;
    ++at;
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t'))
        ++at;
    if (at < text.size() && text[at] == '#') {
        while (at < text.size() && text[at] != '\n' && text[at] != '\r')
            ++at;
    }
    return at < text.size() && (text[at] == '\n' || text[at] == '\r') ? at + 1 : 0;
}

} // namespace

ZelBnglModel::ZelBnglModel() : ZelBnglModel(QByteArray(), QString()) { }

ZelBnglModel::ZelBnglModel(const QByteArray &source, const QString &fileName)
    : m_fileName(fileName), m_source(source), m_lineStarts{0}
{
    const char *const begin = m_source.constData();
    const char *const end = begin + m_source.size();
    const bool hasReturns = m_source.contains('\r');
    for (const char *at = begin; at != end; ++at) {
        if (!hasReturns) {
            at = static_cast<const char *>(std::memchr(at, '\n', static_cast<size_t>(end - at)));
            if (!at)
                break;
        }
        const bool isLone = *at == '\r' && (at + 1 == end || at[1] != '\n');
        if (*at == '\n' || isLone)
            m_lineStarts.push_back(static_cast<quint32>(at + 1 - begin));
    }
}

ZelBnglPlace ZelBnglModel::place(quint32 offset) const
{
    const auto after = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), offset);
    const auto start = std::prev(after);
    const char *const text = m_source.constData();
    // Bytes that continue a character do not count.
    const auto characters = std::count_if(text + *start, text + offset,
        [](char c) { return (static_cast<uchar>(c) & 0xc0) != 0x80; });
    return {static_cast<int>(after - m_lineStarts.begin()), static_cast<int>(characters) + 1};
}

QByteArrayView ZelBnglModel::view(ZelBnglText text) const
{
    return QByteArrayView(m_source.constData() + text.offset, text.length);
}

QByteArray ZelBnglModel::line(ZelBnglText text) const
{
    const QByteArrayView raw = view(text);
    if (!raw.contains('\\'))
        return raw.toByteArray().simplified();
    QByteArray joined;
    joined.reserve(raw.size());
    for (qsizetype at = 0; at < raw.size();) {
        const qsizetype next = continuationEnd(raw, at);
        joined += next > 0 ? ' ' : raw[at];
        at = next > 0 ? next : at + 1;
    }
    return joined.simplified();
}

QByteArrayView ZelBnglModel::name(quint32 name) const
{
    if (name == ZelBnglNames::Any)
        return "?";
    if (name == ZelBnglNames::Bound)
        return "+";
    return name < m_names.count() ? view(m_names.text(name)) : QByteArrayView();
}

quint32 ZelBnglModel::findName(QByteArrayView name) const
{
    return m_names.find(m_source.constData(), name);
}

quint32 ZelBnglModel::internName(ZelBnglText text)
{
    return m_names.intern(m_source.constData(), text);
}

bool ZelBnglModel::hasAttributes(const ZelBnglMolecule &molecule) const
{
    const auto list = componentsOf(molecule);
    return molecule.attributes != 0
        || std::any_of(list.begin(), list.end(),
            [](const ZelBnglComponent &component) { return component.attributes != 0; });
}

bool ZelBnglModel::hasAttributes(const ZelBnglPattern &pattern) const
{
    const auto list = moleculesOf(pattern);
    return pattern.attributes != 0
        || std::any_of(list.begin(), list.end(),
            [this](const ZelBnglMolecule &molecule) { return hasAttributes(molecule); });
}

QString ZelBnglModel::errorText(const ZelBnglError &error) const
{
    const QString place = error.place.line > 0
        ? QStringLiteral("%1:%2:").arg(error.place.line).arg(error.place.column)
        : QString();
    return QStringLiteral("%1:%2 %3").arg(m_fileName, place, error.message);
}

QStringList ZelBnglModel::errorTexts() const
{
    QStringList texts;
    for (const ZelBnglError &error : errors)
        texts.append(errorText(error));
    return texts;
}
