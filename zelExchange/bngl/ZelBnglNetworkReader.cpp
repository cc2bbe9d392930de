#include "zelExchange/bngl/ZelBnglNetworkReader.h"

namespace {

using Lexer = ZelBnglLexer;

} // namespace

bool ZelBnglNetworkReader::readReaction(quint32 index)
{
    ZelBnglReaction reaction;
    reaction.offset = m_lexer.offset();
    reaction.index = index;
    if (index == 0) {
        return m_fault.set(m_parts.start(),
            QStringLiteral("This reaction has no number. Write one from 1 before it."));
    }
    if (!readNumbers(reaction.reactants) || !readNumbers(reaction.products))
        return false;
    m_lexer.skipBlanks();
    const quint32 start = m_lexer.offset();
    // Old networks write rate laws as words in a row, which need no look here.
    m_lexer.skipLine();
    reaction.rate = m_parts.textSince(start);
    if (const qsizetype comment = m_model.view(reaction.rate).indexOf('#'); comment >= 0)
        reaction.rate.length = static_cast<quint32>(comment);
    if (m_model.view(reaction.rate).trimmed().endsWith('\\')) {
        return m_fault.set(start,
            QStringLiteral("This rate ends in a backslash that continues nothing. Remove it."));
    }
    if (!m_parts.readEnd())
        return false;
    m_model.reactions.push_back(reaction);
    return true;
}

bool ZelBnglNetworkReader::readGroup(quint32 index)
{
    ZelBnglGroup group;
    group.offset = m_lexer.offset();
    group.index = index;
    group.name = m_parts.readLineName("group");
    if (group.name == ZelBnglNames::None)
        return false;
    group.members.first = static_cast<quint32>(m_model.numbers.size());
    m_lexer.skipBlanks();
    while (!m_lexer.atLineEnd()) {
        quint32 weight = 1;
        quint32 species = 0;
        if (!m_parts.readNumber(species, "a species"))
            return false;
        if (m_lexer.accept('*')) {
            weight = species;
            if (!m_parts.readNumber(species, "a species"))
                return false;
        }
        m_model.numbers.push_back(weight);
        m_model.numbers.push_back(species);
        group.members.count += 2;
        m_lexer.skipBlanks();
        if (!m_lexer.accept(','))
            break;
        m_lexer.skipBlanks();
    }
    if (!m_parts.readEnd())
        return false;
    m_model.groups.push_back(group);
    return true;
}

bool ZelBnglNetworkReader::readNumbers(ZelBnglRange &numbers)
{
    m_lexer.skipBlanks();
    numbers.first = static_cast<quint32>(m_model.numbers.size());
    do {
        quint32 number = 0;
        if (!m_parts.readNumber(number, "a species"))
            return false;
        m_model.numbers.push_back(number);
        ++numbers.count;
    } while (m_lexer.accept(','));
    if (Lexer::isBlank(m_lexer.peek()) || m_lexer.peek() == '\\' || m_lexer.atLineEnd())
        return true;
    return m_parts.fail(
        QStringLiteral("%1 follows the numbers of species at once. Write a blank before it.")
            .arg(m_lexer.describe()));
}
