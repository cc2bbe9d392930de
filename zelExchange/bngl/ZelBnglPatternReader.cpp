#include "zelExchange/bngl/ZelBnglPatternReader.h"

namespace {

using Lexer = ZelBnglLexer;

template <typename Item>
quint32 sizeOf(const std::vector<Item> &list)
{
    return static_cast<quint32>(list.size());
}

} // namespace

ZelBnglPatternReader::ZelBnglPatternReader(
    ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault)
    : m_lexer(lexer), m_model(model), m_fault(fault)
{
}

bool ZelBnglPatternReader::readPattern(Context context)
{
    ++m_patternNumber;
    m_openBonds = 0;
    ZelBnglPattern pattern;
    pattern.text.offset = m_lexer.offset();
    const quint32 firstBond = sizeOf(m_model.bonds);
    pattern.molecules.first = sizeOf(m_model.molecules);
    if (context == Context::RuleSide && m_lexer.peek() == '0'
        && !Lexer::isWord(m_lexer.peekSecond())) {
        m_lexer.advance();
    } else {
        if (!readPrefix(pattern))
            return false;
        do {
            // A blank before the dot would make ".5" of a rate ambiguous; behind it there is no
            // doubt.
            m_lexer.skipBlanks();
            if (!readMolecule(context))
                return false;
        } while (context != Context::MoleculeType && m_lexer.accept('.'));
        pattern.molecules.count = sizeOf(m_model.molecules) - pattern.molecules.first;
        if (m_openBonds > 0 && !checkBonds(firstBond))
            return false;
    }
    pattern.text.length = m_lexer.offset() - pattern.text.offset;
    if (context == Context::Observable && !readQuantifier(pattern))
        return false;
    m_model.patterns.push_back(pattern);
    return true;
}

bool ZelBnglPatternReader::readPrefix(ZelBnglPattern &pattern)
{
    for (;;) {
        const char c = m_lexer.peek();
        if (c == '$') {
            m_lexer.advance();
            pattern.isFixed = true;
        } else if (c == '{') {
            if (!readAttributes(pattern.attributes))
                return false;
        } else if (c == '@' || c == '%') {
            m_lexer.advance();
            quint32 &name = c == '@' ? pattern.compartment : pattern.label;
            name = readName(c == '@' ? "compartment" : "label", c == '%');
            if (name == ZelBnglNames::None)
                return false;
            if (m_lexer.accept(':')) {
                m_lexer.accept(':');
                m_lexer.skipBlanks();
            } else if (m_lexer.peek() != '@' && m_lexer.peek() != '%') {
                return fail(
                    QStringLiteral("%1 follows \"%2%3\" before a pattern. Write \":\" between "
                                   "them.")
                        .arg(m_lexer.describe(), QString(QLatin1Char(c)),
                            QString::fromLatin1(m_model.name(name))));
            }
        } else {
            return true;
        }
    }
}

quint32 ZelBnglPatternReader::readName(const char *what, bool mayBeginWithDigit)
{
    const char c = m_lexer.peek();
    if (mayBeginWithDigit ? !Lexer::isWord(c) : !Lexer::isNameStart(c)) {
        fail(Lexer::isDigit(c)
                ? QStringLiteral(
                    "The name of a %1 cannot begin with a digit, as %2 does. Begin it with "
                    "a letter or \"_\".")
                      .arg(QLatin1String(what), m_lexer.describe())
                : QStringLiteral(
                    "%1 stands where the name of a %2 is missing. Write a name of letters, "
                    "digits and \"_\".")
                      .arg(m_lexer.describe(), QLatin1String(what)));
        return ZelBnglNames::None;
    }
    const ZelBnglText word = m_lexer.readWord();
    if (word.length > Lexer::MaxNameLength) {
        m_fault.set(word.offset,
            QStringLiteral("The name %1 has more than %2 characters. Shorten it.")
                .arg(Lexer::quoted(m_model.view(word)))
                .arg(Lexer::MaxNameLength));
        return ZelBnglNames::None;
    }
    return m_model.internName(word);
}

bool ZelBnglPatternReader::readMolecule(Context context)
{
    ZelBnglMolecule molecule;
    molecule.offset = m_lexer.offset();
    molecule.name = readName("molecule");
    if (molecule.name == ZelBnglNames::None || !readMoleculeTags(molecule)
        || !readComponents(molecule, context) || !readMoleculeTags(molecule))
        return false;
    m_model.molecules.push_back(molecule);
    return true;
}

bool ZelBnglPatternReader::readMoleculeTags(ZelBnglMolecule &molecule)
{
    for (;;) {
        const char c = m_lexer.peek();
        if (c == '{') {
            if (!readAttributes(molecule.attributes))
                return false;
            continue;
        }
        if (c != '@' && c != '%')
            return true;
        quint32 &name = c == '@' ? molecule.compartment : molecule.label;
        const char *const what = c == '@' ? "compartment" : "label";
        if (name != ZelBnglNames::None) {
            return fail(QStringLiteral("The molecule %1 has two %2s. Keep one of them.")
                            .arg(shown(molecule.name), QLatin1String(what)));
        }
        m_lexer.advance();
        name = readName(what, c == '%');
        if (name == ZelBnglNames::None)
            return false;
    }
}

bool ZelBnglPatternReader::readComponents(ZelBnglMolecule &molecule, Context context)
{
    molecule.components.first = sizeOf(m_model.components);
    if (!m_lexer.accept('('))
        return true;
    m_lexer.skipBlanks();
    if (m_lexer.accept(')'))
        return true;
    for (;;) {
        m_lexer.skipBlanks();
        if (!readComponent(context, molecule))
            return false;
        ++molecule.components.count;
        m_lexer.skipBlanks();
        if (m_lexer.accept(')'))
            return true;
        if (!m_lexer.accept(',')) {
            return fail(m_lexer.atLineEnd()
                    ? QStringLiteral(
                        "The molecule %1 is not closed. Add \")\" behind its last component.")
                          .arg(shown(molecule.name))
                    : QStringLiteral(
                        "%1 stands behind a component of the molecule %2. Write \",\" before "
                        "the next component or \")\" behind the last.")
                          .arg(m_lexer.describe(), shown(molecule.name)));
        }
    }
}

bool ZelBnglPatternReader::readComponent(Context context, const ZelBnglMolecule &molecule)
{
    ZelBnglComponent component;
    component.offset = m_lexer.offset();
    if (!Lexer::isWord(m_lexer.peek())) {
        return fail(
            QStringLiteral("%1 stands where a component of the molecule %2 is missing. Write the "
                           "component's name, or remove the comma before it.")
                .arg(m_lexer.describe(), shown(molecule.name)));
    }
    component.name = readName("component", true);
    if (component.name == ZelBnglNames::None)
        return false;
    component.states.first = sizeOf(m_model.states);
    component.bonds.first = sizeOf(m_model.bonds);
    for (;;) {
        switch (m_lexer.peek()) {
        case '~':
            if (!readState(component, context))
                return false;
            continue;
        case '!':
            if (!readBond(component, context))
                return false;
            continue;
        case '%':
            m_lexer.advance();
            component.label = readName("label", true);
            if (component.label == ZelBnglNames::None)
                return false;
            continue;
        case '{':
            if (!readAttributes(component.attributes))
                return false;
            continue;
        default:
            m_model.components.push_back(component);
            return true;
        }
    }
}

bool ZelBnglPatternReader::readState(ZelBnglComponent &component, Context context)
{
    const bool isType = context == Context::MoleculeType;
    if (!isType && component.states.count > 0) {
        return fail(QStringLiteral("The component %1 has two states here. Keep one of them; only a "
                                   "molecule type lists several.")
                        .arg(shown(component.name)));
    }
    m_lexer.advance();
    if (!isType && m_lexer.accept('?')) {
        m_model.states.push_back(ZelBnglNames::Any);
    } else {
        const quint32 state = readName("state", true);
        if (state == ZelBnglNames::None)
            return false;
        m_model.states.push_back(state);
    }
    ++component.states.count;
    return true;
}

bool ZelBnglPatternReader::readBond(ZelBnglComponent &component, Context context)
{
    ZelBnglBond bond;
    bond.offset = m_lexer.offset();
    if (context == Context::MoleculeType) {
        return fail(
            QStringLiteral("A molecule type says nothing about bonds. Remove the \"!\" behind its "
                           "component %1.")
                .arg(shown(component.name)));
    }
    m_lexer.advance();
    if (m_lexer.accept('+')) {
        bond.label = ZelBnglNames::Bound;
    } else if (m_lexer.accept('?')) {
        bond.label = ZelBnglNames::Any;
    } else if (Lexer::isWord(m_lexer.peek())) {
        bond.label = readName("bond", true);
    } else {
        return fail(
            QStringLiteral("%1 stands behind \"!\". Write the bond's number or name, \"+\" for "
                           "bound or \"?\" for either.")
                .arg(m_lexer.describe()));
    }
    if (bond.label == ZelBnglNames::None)
        return false;
    m_model.bonds.push_back(bond);
    ++component.bonds.count;
    // The component itself is appended once it is complete.
    return bond.label < ZelBnglNames::FirstFree
        || joinBond(sizeOf(m_model.components), sizeOf(m_model.bonds) - 1);
}

bool ZelBnglPatternReader::joinBond(quint32 component, quint32 bond)
{
    ZelBnglBond &here = m_model.bonds[bond];
    if (m_seen.size() <= here.label)
        m_seen.resize(qMax<size_t>(m_model.nameCount(), m_seen.size() * 2));
    Seen &seen = m_seen[here.label];
    if (seen.pattern != m_patternNumber) {
        seen = {m_patternNumber, bond, component};
        ++m_openBonds;
        return true;
    }
    ZelBnglBond &there = m_model.bonds[seen.bond];
    if (there.partner != ZelBnglBond::NoPartner) {
        return m_fault.set(here.offset,
            QStringLiteral(
                "The bond %1 has more than two ends. Give each bond of a pattern a label of "
                "its own.")
                .arg(shown(here.label)));
    }
    if (seen.component == component) {
        return m_fault.set(here.offset,
            QStringLiteral(
                "The bond %1 begins and ends at the same component. Write its other end at "
                "the component that it leads to.")
                .arg(shown(here.label)));
    }
    here.partner = seen.component;
    there.partner = component;
    --m_openBonds;
    return true;
}

bool ZelBnglPatternReader::checkBonds(quint32 firstBond)
{
    for (quint32 i = firstBond; i < m_model.bonds.size(); ++i) {
        const ZelBnglBond &bond = m_model.bonds[i];
        if (bond.label >= ZelBnglNames::FirstFree && bond.partner == ZelBnglBond::NoPartner) {
            return m_fault.set(bond.offset,
                QStringLiteral(
                    "The bond %1 has only one end in its pattern. Write the label at the "
                    "other end too, or \"!+\" for a bond to anything.")
                    .arg(shown(bond.label)));
        }
    }
    return true;
}

bool ZelBnglPatternReader::readAttributes(quint32 &attributes)
{
    const quint32 start = m_lexer.offset();
    while (m_lexer.peek() != '}') {
        if (m_lexer.atLineEnd() || m_lexer.peek() == '\0') {
            return m_fault.set(
                start, QStringLiteral("This \"{\" is never closed. Add a \"}\" on the same line."));
        }
        m_lexer.advance();
    }
    m_lexer.advance();
    attributes = sizeOf(m_model.attributes);
    m_model.attributes.push_back({start, m_lexer.offset() - start});
    return true;
}

bool ZelBnglPatternReader::readQuantifier(ZelBnglPattern &pattern)
{
    using Quantifier = ZelBnglPattern::Quantifier;
    const quint32 end = m_lexer.offset();
    m_lexer.skipBlanks();
    if (m_lexer.accept('=')) {
        m_lexer.accept('=');
        pattern.quantifier = Quantifier::Equal;
    } else if (m_lexer.accept('<')) {
        pattern.quantifier = m_lexer.accept('=') ? Quantifier::LessOrEqual : Quantifier::Less;
    } else if (m_lexer.accept('>')) {
        pattern.quantifier = m_lexer.accept('=') ? Quantifier::GreaterOrEqual : Quantifier::Greater;
    } else {
        m_lexer.setOffset(end);
        return true;
    }
    m_lexer.skipBlanks();
    const quint32 start = m_lexer.offset();
    bool isNumber = false;
    pattern.quantity = m_model.view(m_lexer.readWord()).toUInt(&isNumber);
    if (!isNumber) {
        m_lexer.setOffset(start);
        return fail(
            QStringLiteral("%1 stands where the number of matches is missing. Write a whole "
                           "number, as in \"==2\".")
                .arg(m_lexer.describe()));
    }
    pattern.text.length = m_lexer.offset() - pattern.text.offset;
    return true;
}
