#include "zelExchange/export/ZelBnglWriter.h"

#include "zelExchange/bngl/ZelBnglLexer.h"

#include <algorithm>
#include <utility>

namespace {

/// Builds the text of one model.
class Writer
{
public:
    explicit Writer(const ZelBnglModel &model) : m_model(model) { }

    QByteArray take() { return std::exchange(m_text, {}); }

    void writeModel();
    void writePattern(const ZelBnglPattern &pattern);
    void writeRule(const ZelBnglRule &rule);

private:
    template <typename Items, typename Function>
    void writeBlock(const char *name, const Items &items, Function &&writeItem);
    template <typename Function>
    void writeList(ZelBnglRange range, const char *separator, Function &&writeItem);

    void write(const char *text) { m_text += text; }
    void writeName(quint32 name) { m_text += m_model.name(name); }
    void writeTag(const char *sign, quint32 name);
    void writeText(ZelBnglText text) { m_text += m_model.line(text); }
    void writeLabel(ZelBnglText label);
    void writeIndex(quint32 index);
    void writeMolecule(const ZelBnglMolecule &molecule);
    void writeComponent(const ZelBnglComponent &component);
    void writeQuantifier(const ZelBnglPattern &pattern);
    void writeSide(ZelBnglRange patterns);
    void writeModifier(const ZelBnglModifier &modifier);
    void writeActions(bool isBeforeModel);
    void writeBlocks();
    void writeNetwork();
    void writeGroupMembers(ZelBnglRange members);

    const ZelBnglModel &m_model;
    QByteArray m_text;
};

const char *modifierWord(ZelBnglModifier::Kind kind)
{
    switch (kind) {
    case ZelBnglModifier::Kind::DeleteMolecules:
        return "DeleteMolecules";
    case ZelBnglModifier::Kind::MoveConnected:
        return "MoveConnected";
    case ZelBnglModifier::Kind::MatchOnce:
        return "MatchOnce";
    case ZelBnglModifier::Kind::TotalRate:
        return "TotalRate";
    case ZelBnglModifier::Kind::IncludeReactants:
        return "include_reactants";
    case ZelBnglModifier::Kind::ExcludeReactants:
        return "exclude_reactants";
    case ZelBnglModifier::Kind::IncludeProducts:
        return "include_products";
    case ZelBnglModifier::Kind::ExcludeProducts:
        return "exclude_products";
    case ZelBnglModifier::Kind::Priority:
        return "priority=";
    }
    return "";
}

template <typename Items, typename Function>
void Writer::writeBlock(const char *name, const Items &items, Function &&writeItem)
{
    if (items.empty())
        return;
    m_text += QByteArray("begin ") + name + '\n';
    for (const auto &item : items) {
        write("  ");
        writeItem(item);
        write("\n");
    }
    m_text += QByteArray("end ") + name + '\n';
}

template <typename Function>
void Writer::writeList(ZelBnglRange range, const char *separator, Function &&writeItem)
{
    for (quint32 i = 0; i < range.count; ++i) {
        if (i > 0)
            write(separator);
        writeItem(range.first + i);
    }
}

void Writer::writeModel()
{
    writeActions(true);
    writeBlocks();
    writeNetwork();
    writeActions(false);
}

void Writer::writeBlocks()
{
    writeBlock("parameters", m_model.parameters, [this](const ZelBnglParameter &parameter) {
        writeName(parameter.name);
        write(" ");
        writeText(parameter.value);
    });
    writeBlock("compartments", m_model.compartments, [this](const ZelBnglCompartment &compartment) {
        writeName(compartment.name);
        write(compartment.dimensions == 2 ? " 2 " : " 3 ");
        writeText(compartment.size);
        writeTag(" ", compartment.parent);
    });
    std::vector<ZelBnglMoleculeType> types[2];
    for (const ZelBnglMoleculeType &type : m_model.moleculeTypes)
        types[type.isPopulation].push_back(type);
    const auto writeType = [this](const ZelBnglMoleculeType &type) {
        writeMolecule(m_model.molecules[type.molecule]);
    };
    writeBlock("molecule types", types[0], writeType);
    writeBlock("population types", types[1], writeType);
    writeBlock("seed species", m_model.species, [this](const ZelBnglSpecies &species) {
        writeIndex(species.index);
        writePattern(m_model.patterns[species.pattern]);
        write(" ");
        if (species.amount.isEmpty())
            write("0");
        writeText(species.amount);
    });
    writeBlock("observables", m_model.observables, [this](const ZelBnglObservable &observable) {
        write(observable.countsSpecies ? "Species " : "Molecules ");
        writeName(observable.name);
        write(" ");
        writeList(observable.patterns, ", ",
            [this](quint32 pattern) { writePattern(m_model.patterns[pattern]); });
    });
    writeBlock("functions", m_model.functions, [this](const ZelBnglFunction &function) {
        writeName(function.name);
        write("(");
        writeList(function.arguments, ",",
            [this](quint32 argument) { writeName(m_model.arguments[argument]); });
        write(") = ");
        writeText(function.value);
    });
    writeBlock(
        "energy patterns", m_model.energyPatterns, [this](const ZelBnglEnergyPattern &energy) {
            writeLabel(energy.label);
            writePattern(m_model.patterns[energy.pattern]);
            write(" ");
            writeText(energy.energy);
        });
    writeBlock("population maps", m_model.populationMaps, [this](const ZelBnglPopulationMap &map) {
        writeLabel(map.label);
        writePattern(m_model.patterns[map.pattern]);
        write(" -> ");
        writePattern(m_model.patterns[map.population]);
        write(" ");
        writeText(map.rate);
    });
    writeBlock(
        "reaction rules", m_model.rules, [this](const ZelBnglRule &rule) { writeRule(rule); });
}

void Writer::writeNetwork()
{
    writeBlock("reactions", m_model.reactions, [this](const ZelBnglReaction &reaction) {
        const auto writeNumber = [this](quint32 number) {
            m_text += QByteArray::number(m_model.numbers[number]);
        };
        writeIndex(reaction.index);
        writeList(reaction.reactants, ",", writeNumber);
        write(" ");
        writeList(reaction.products, ",", writeNumber);
        write(" ");
        writeText(reaction.rate);
    });
    writeBlock("groups", m_model.groups, [this](const ZelBnglGroup &group) {
        writeIndex(group.index);
        writeName(group.name);
        write(" ");
        writeGroupMembers(group.members);
    });
}

void Writer::writeGroupMembers(ZelBnglRange members)
{
    for (quint32 i = 0; i < members.count; i += 2) {
        const quint32 weight = m_model.numbers[members.first + i];
        if (i > 0)
            write(",");
        if (weight != 1)
            m_text += QByteArray::number(weight) + '*';
        m_text += QByteArray::number(m_model.numbers[members.first + i + 1]);
    }
}

void Writer::writeActions(bool isBeforeModel)
{
    for (const ZelBnglAction &action : m_model.actions) {
        if (action.isBeforeModel == isBeforeModel) {
            m_text += m_model.view(action.text);
            write("\n");
        }
    }
}

void Writer::writeTag(const char *sign, quint32 name)
{
    if (name == ZelBnglNames::None)
        return;
    write(sign);
    writeName(name);
}

void Writer::writeLabel(ZelBnglText label)
{
    if (label.isEmpty())
        return;
    // A number that begins a label would be read as the number of the entry.
    const QByteArray text = m_model.line(label);
    const auto end = std::find_if_not(text.begin(), text.end(), ZelBnglLexer::isDigit);
    if (end != text.begin() && end != text.end() && *end == ' ')
        write("0 ");
    m_text += text + ": ";
}

void Writer::writeIndex(quint32 index)
{
    if (index > 0)
        m_text += QByteArray::number(index) + ' ';
}

void Writer::writePattern(const ZelBnglPattern &pattern)
{
    if (pattern.molecules.count == 0) {
        write("0");
        return;
    }
    writeTag("%", pattern.label);
    writeTag("@", pattern.compartment);
    if (pattern.label != ZelBnglNames::None || pattern.compartment != ZelBnglNames::None)
        write("::");
    if (pattern.isFixed)
        write("$");
    writeText(m_model.attributes[pattern.attributes]);
    writeList(pattern.molecules, ".",
        [this](quint32 molecule) { writeMolecule(m_model.molecules[molecule]); });
    writeQuantifier(pattern);
}

void Writer::writeQuantifier(const ZelBnglPattern &pattern)
{
    switch (pattern.quantifier) {
    case ZelBnglPattern::Quantifier::None:
        return;
    case ZelBnglPattern::Quantifier::Equal:
        write("==");
        break;
    case ZelBnglPattern::Quantifier::Less:
        write("<");
        break;
    case ZelBnglPattern::Quantifier::Greater:
        write(">");
        break;
    case ZelBnglPattern::Quantifier::LessOrEqual:
        write("<=");
        break;
    case ZelBnglPattern::Quantifier::GreaterOrEqual:
        write(">=");
        break;
    }
    m_text += QByteArray::number(pattern.quantity);
}

void Writer::writeMolecule(const ZelBnglMolecule &molecule)
{
    writeName(molecule.name);
    write("(");
    writeList(molecule.components, ",",
        [this](quint32 component) { writeComponent(m_model.components[component]); });
    write(")");
    writeTag("%", molecule.label);
    writeTag("@", molecule.compartment);
    writeText(m_model.attributes[molecule.attributes]);
}

void Writer::writeComponent(const ZelBnglComponent &component)
{
    writeName(component.name);
    writeTag("%", component.label);
    for (const quint32 state : ZelBnglModel::items(m_model.states, component.states))
        writeTag("~", state);
    for (const ZelBnglBond &bond : ZelBnglModel::items(m_model.bonds, component.bonds))
        writeTag("!", bond.label);
    writeText(m_model.attributes[component.attributes]);
}

void Writer::writeRule(const ZelBnglRule &rule)
{
    writeLabel(rule.label);
    writeSide(rule.reactants);
    write(rule.isReversible ? " <-> " : " -> ");
    writeSide(rule.products);
    write(" ");
    writeText(rule.rates[0]);
    if (!rule.rates[1].isEmpty()) {
        write(", ");
        writeText(rule.rates[1]);
    }
    for (const ZelBnglModifier &modifier : ZelBnglModel::items(m_model.modifiers, rule.modifiers)) {
        write(" ");
        writeModifier(modifier);
    }
}

void Writer::writeSide(ZelBnglRange patterns)
{
    writeList(
        patterns, " + ", [this](quint32 pattern) { writePattern(m_model.patterns[pattern]); });
}

void Writer::writeModifier(const ZelBnglModifier &modifier)
{
    write(modifierWord(modifier.kind));
    if (modifier.kind == ZelBnglModifier::Kind::Priority) {
        writeText(modifier.value);
    } else if (modifier.patterns.count > 0) {
        m_text += '(' + QByteArray::number(modifier.side) + ',';
        writeList(modifier.patterns, ",",
            [this](quint32 pattern) { writePattern(m_model.patterns[pattern]); });
        write(")");
    }
}

} // namespace

QByteArray ZelBnglWriter::write(const ZelBnglModel &model)
{
    Writer writer(model);
    writer.writeModel();
    return writer.take();
}

QByteArray ZelBnglWriter::pattern(const ZelBnglModel &model, const ZelBnglPattern &pattern)
{
    Writer writer(model);
    writer.writePattern(pattern);
    return writer.take();
}

QByteArray ZelBnglWriter::rule(const ZelBnglModel &model, const ZelBnglRule &rule)
{
    Writer writer(model);
    writer.writeRule(rule);
    return writer.take();
}
