#include "zelExchange/bngl/ZelBnglEntryReader.h"

namespace {

using Context = ZelBnglPatternReader::Context;
using Lexer = ZelBnglLexer;

} // namespace

ZelBnglEntryReader::ZelBnglEntryReader(
    ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault, ZelBnglEntryParts &parts)
    : m_lexer(lexer), m_model(model), m_fault(fault), m_parts(parts),
      m_rules(lexer, model, fault, parts), m_networks(lexer, model, fault, parts)
{
}

bool ZelBnglEntryReader::readEntry(ZelBnglBlock block)
{
    const Sizes before = sizes();
    m_index = m_parts.readIndex();
    if (readBody(block))
        return true;
    restore(before);
    return false;
}

bool ZelBnglEntryReader::readBody(ZelBnglBlock block)
{
    switch (block) {
    case ZelBnglBlock::Parameters:
        return readParameter();
    case ZelBnglBlock::Compartments:
        return readCompartment();
    case ZelBnglBlock::MoleculeTypes:
        return readMoleculeType(false);
    case ZelBnglBlock::PopulationTypes:
        return readMoleculeType(true);
    case ZelBnglBlock::Species:
        return readSpecies();
    case ZelBnglBlock::Observables:
        return readObservable();
    case ZelBnglBlock::Functions:
        return readFunction();
    case ZelBnglBlock::EnergyPatterns:
        return readEnergyPattern();
    case ZelBnglBlock::PopulationMaps:
        return readPopulationMap();
    case ZelBnglBlock::ReactionRules:
        return m_rules.read();
    case ZelBnglBlock::Reactions:
        return m_networks.readReaction(m_index);
    case ZelBnglBlock::Groups:
        return m_networks.readGroup(m_index);
    case ZelBnglBlock::None:
    case ZelBnglBlock::Actions:
    case ZelBnglBlock::Unknown:
        break;
    }
    return true;
}

bool ZelBnglEntryReader::readParameter()
{
    m_parts.readLabel(false);
    ZelBnglParameter parameter;
    parameter.offset = m_lexer.offset();
    parameter.name = m_parts.readLineName("parameter");
    if (parameter.name == ZelBnglNames::None)
        return false;
    m_lexer.skipBlanks();
    m_lexer.accept('=');
    if (!m_parts.readExpression("value", parameter.value) || !m_parts.readEnd())
        return false;
    m_model.parameters.push_back(parameter);
    return true;
}

bool ZelBnglEntryReader::readCompartment()
{
    m_parts.readLabel(false);
    ZelBnglCompartment compartment;
    compartment.offset = m_lexer.offset();
    compartment.name = m_parts.readLineName("compartment");
    if (compartment.name == ZelBnglNames::None)
        return false;
    m_lexer.skipBlanks();
    const char dimensions = m_lexer.peek();
    if ((dimensions != '2' && dimensions != '3') || !Lexer::isBlank(m_lexer.peekSecond())) {
        return m_parts.fail(
            QStringLiteral("%1 stands where the dimensions of the compartment are missing. Write "
                           "3 for a volume or 2 for a membrane.")
                .arg(m_lexer.describe()));
    }
    m_lexer.advance();
    compartment.dimensions = dimensions - '0';
    if (!m_parts.readExpression("size", compartment.size))
        return false;
    m_lexer.skipBlanks();
    if (Lexer::isNameStart(m_lexer.peek()))
        compartment.parent = m_parts.readName("compartment");
    if (!m_parts.readEnd())
        return false;
    m_model.compartments.push_back(compartment);
    return true;
}

bool ZelBnglEntryReader::readMoleculeType(bool isPopulation)
{
    m_parts.readLabel(false);
    ZelBnglMoleculeType type;
    type.offset = m_lexer.offset();
    type.isPopulation = isPopulation;
    quint32 pattern = 0;
    if (!m_parts.readPattern(Context::MoleculeType, pattern))
        return false;
    type.molecule = m_model.patterns[pattern].molecules.first;
    m_model.patterns.pop_back();
    m_lexer.skipBlanks();
    if (m_lexer.isAtKeyword("population")) {
        m_lexer.readWord();
        type.isPopulation = true;
    }
    if (!m_parts.readEnd())
        return false;
    m_model.moleculeTypes.push_back(type);
    return true;
}

bool ZelBnglEntryReader::readSpecies()
{
    m_parts.readLabel(false);
    ZelBnglSpecies species;
    species.offset = m_lexer.offset();
    species.index = m_index;
    if (!m_parts.readPattern(Context::Species, species.pattern))
        return false;
    m_lexer.skipBlanks();
    if (!m_lexer.atLineEnd() && m_lexer.peek() != ';'
        && !m_parts.readExpression("amount", species.amount))
        return false;
    if (!m_parts.readEnd())
        return false;
    m_model.species.push_back(species);
    return true;
}

bool ZelBnglEntryReader::readObservable()
{
    m_parts.readLabel(false);
    ZelBnglObservable observable;
    observable.offset = m_lexer.offset();
    const QByteArray kind = m_model.view(m_lexer.readWord()).toByteArray().toLower();
    observable.countsSpecies = kind == "species";
    const bool hasKind = observable.countsSpecies || kind == "molecules" || kind == "molecule";
    // Old networks give no kind, which means molecules.
    if (!hasKind)
        m_lexer.setOffset(observable.offset);
    m_lexer.skipBlanks();
    observable.name = m_parts.readName("observable", true);
    if (observable.name == ZelBnglNames::None)
        return false;
    observable.patterns.first = static_cast<quint32>(m_model.patterns.size());
    do {
        m_lexer.skipBlanks();
        quint32 pattern = 0;
        if (!m_parts.readPattern(Context::Observable, pattern))
            return false;
        ++observable.patterns.count;
        m_lexer.skipBlanks();
        if (!hasKind && m_lexer.peek() != ',' && !m_lexer.atLineEnd()) {
            return m_fault.set(observable.offset,
                QStringLiteral("An observable begins with %1. Begin it with \"Molecules\" or "
                               "\"Species\", and a name.")
                    .arg(Lexer::quoted(m_model.name(observable.name))));
        }
    } while (m_lexer.accept(',') || (!m_lexer.atLineEnd() && m_lexer.peek() != ';'));
    if (!m_parts.readEnd())
        return false;
    m_model.observables.push_back(observable);
    return true;
}

bool ZelBnglEntryReader::readFunction()
{
    m_parts.readLabel(false);
    ZelBnglFunction function;
    function.offset = m_lexer.offset();
    function.name = m_parts.readName("function");
    if (function.name == ZelBnglNames::None)
        return false;
    function.arguments.first = static_cast<quint32>(m_model.arguments.size());
    if (m_lexer.accept('(')) {
        m_lexer.skipBlanks();
        while (m_lexer.peek() != ')') {
            if (function.arguments.count > 0 && !m_lexer.accept(',')) {
                return m_parts.fail(
                    QStringLiteral("%1 stands behind an argument of the function. Write \",\" "
                                   "before the next argument or \")\" behind the last.")
                        .arg(m_lexer.describe()));
            }
            m_lexer.skipBlanks();
            const quint32 argument = m_parts.readName("argument");
            if (argument == ZelBnglNames::None)
                return false;
            m_model.arguments.push_back(argument);
            ++function.arguments.count;
            m_lexer.skipBlanks();
        }
        m_lexer.advance();
    }
    m_lexer.skipBlanks();
    m_lexer.accept('=');
    if (!m_parts.readExpression("function", function.value) || !m_parts.readEnd())
        return false;
    m_model.functions.push_back(function);
    return true;
}

bool ZelBnglEntryReader::readEnergyPattern()
{
    ZelBnglEnergyPattern energy;
    energy.label = m_parts.readLabel(true);
    energy.offset = m_lexer.offset();
    if (!m_parts.readPattern(Context::Species, energy.pattern)
        || !m_parts.readExpression("energy", energy.energy) || !m_parts.readEnd())
        return false;
    m_model.energyPatterns.push_back(energy);
    return true;
}

bool ZelBnglEntryReader::readPopulationMap()
{
    ZelBnglPopulationMap map;
    map.label = m_parts.readLabel(true);
    map.offset = m_lexer.offset();
    bool isReversible = false;
    if (!m_parts.readPattern(Context::Species, map.pattern))
        return false;
    m_lexer.skipBlanks();
    const quint32 arrow = m_lexer.offset();
    if (!m_parts.readArrow(isReversible))
        return false;
    if (isReversible) {
        return m_fault.set(arrow,
            QStringLiteral("A population map goes one way. Write \"->\" instead of \"<->\"."));
    }
    m_lexer.skipBlanks();
    if (!m_parts.readPattern(Context::Species, map.population)
        || !m_parts.readExpression("rate", map.rate) || !m_parts.readEnd())
        return false;
    m_model.populationMaps.push_back(map);
    return true;
}

ZelBnglEntryReader::Sizes ZelBnglEntryReader::sizes() const
{
    return {m_model.patterns.size(), m_model.molecules.size(), m_model.components.size(),
        m_model.bonds.size(), m_model.states.size(), m_model.arguments.size(),
        m_model.numbers.size(), m_model.modifiers.size(), m_model.attributes.size()};
}

void ZelBnglEntryReader::restore(const Sizes &sizes)
{
    m_model.patterns.resize(sizes.patterns);
    m_model.molecules.resize(sizes.molecules);
    m_model.components.resize(sizes.components);
    m_model.bonds.resize(sizes.bonds);
    m_model.states.resize(sizes.states);
    m_model.arguments.resize(sizes.arguments);
    m_model.numbers.resize(sizes.numbers);
    m_model.modifiers.resize(sizes.modifiers);
    m_model.attributes.resize(sizes.attributes);
}
