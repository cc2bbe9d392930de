#include "zelExchange/import/ZelBnglRules.h"

#include "zelExchange/bngl/ZelBnglLexer.h"
#include "zelExchange/export/ZelBnglReactions.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

constexpr quint32 None = ZelBnglRules::None;

constexpr const char *rateLaws[] = {"Sat", "MM", "Hill", "Arrhenius", "FunctionProduct"};

/// A molecule of one side and the pattern it stands in.
struct Part
{
    quint32 molecule = 0;
    int pattern = 0;
    quint32 other = None; ///< the molecule on the other side that it is
};

std::vector<quint32> patternsOf(const ZelBnglModel &model, ZelBnglRange side)
{
    std::vector<quint32> patterns;
    for (quint32 i = side.first; i < side.first + side.count; ++i) {
        if (model.patterns[i].molecules.count > 0)
            patterns.push_back(i);
    }
    return patterns;
}

std::vector<Part> partsOf(const ZelBnglModel &model, const std::vector<quint32> &patterns)
{
    std::vector<Part> parts;
    for (size_t p = 0; p < patterns.size(); ++p) {
        const ZelBnglRange molecules = model.patterns[patterns[p]].molecules;
        for (quint32 m = 0; m < molecules.count; ++m)
            parts.push_back({molecules.first + m, static_cast<int>(p), None});
    }
    return parts;
}

/// What a rule does to the molecules that are on both of its sides.
struct Changes
{
    std::vector<std::pair<quint32, quint32>> addedBonds; ///< components of the left side
    std::vector<std::pair<quint32, quint32>> removedBonds;
    int states = 0;
    int compartments = 0;
    QString reason; ///< why it cannot be told
};

/// Compares the two sides of a rule, molecule by molecule in the order in which they are written.
class Comparison
{
public:
    Comparison(const ZelBnglModel &model, std::vector<Part> &left, std::vector<Part> &right)
        : m_model(model), m_left(left), m_right(right)
    {
    }

    Changes run();

private:
    void matchMolecules();
    bool matchComponents(const ZelBnglMolecule &left, const ZelBnglMolecule &right);
    void compareStates(quint32 left, quint32 right);
    void compareBonds(quint32 left, quint32 right);
    quint32 leftOf(quint32 component) const;
    const ZelBnglBond *bondOf(quint32 component) const
    {
        const ZelBnglRange bonds = m_model.components[component].bonds;
        return bonds.count > 0 ? &m_model.bonds[bonds.first] : nullptr;
    }
    void refuse(const QString &reason)
    {
        if (m_changes.reason.isEmpty())
            m_changes.reason = reason;
    }

    const ZelBnglModel &m_model;
    std::vector<Part> &m_left;
    std::vector<Part> &m_right;
    std::vector<std::pair<quint32, quint32>> m_matched; ///< components: right, left
    Changes m_changes;
};

Changes Comparison::run()
{
    matchMolecules();
    for (const Part &part : m_left) {
        if (part.other == None)
            continue;
        const ZelBnglMolecule &left = m_model.molecules[part.molecule];
        const ZelBnglMolecule &right = m_model.molecules[part.other];
        m_changes.compartments += left.compartment != right.compartment;
        if (!matchComponents(left, right)) {
            refuse(
                QStringLiteral("it mentions other components of the molecule %1 on its two sides")
                    .arg(ZelBnglLexer::quoted(m_model.name(left.name))));
        }
    }
    std::sort(m_matched.begin(), m_matched.end());
    for (const auto &[right, left] : m_matched) {
        compareStates(left, right);
        compareBonds(left, right);
    }
    return m_changes;
}

void Comparison::matchMolecules()
{
    for (Part &right : m_right) {
        const ZelBnglMolecule &wanted = m_model.molecules[right.molecule];
        for (Part &left : m_left) {
            const ZelBnglMolecule &candidate = m_model.molecules[left.molecule];
            if (left.other == None && candidate.name == wanted.name
                && candidate.label == wanted.label) {
                left.other = right.molecule;
                right.other = left.molecule;
                break;
            }
        }
    }
}

bool Comparison::matchComponents(const ZelBnglMolecule &left, const ZelBnglMolecule &right)
{
    if (left.components.count != right.components.count)
        return false;
    std::vector<char> taken(left.components.count, 0);
    for (quint32 r = 0; r < right.components.count; ++r) {
        const ZelBnglComponent &wanted = m_model.components[right.components.first + r];
        quint32 found = None;
        for (quint32 l = 0; l < left.components.count && found == None; ++l) {
            const ZelBnglComponent &candidate = m_model.components[left.components.first + l];
            if (!taken[l] && candidate.name == wanted.name && candidate.label == wanted.label)
                found = l;
        }
        if (found == None)
            return false;
        taken[found] = 1;
        m_matched.emplace_back(right.components.first + r, left.components.first + found);
    }
    return true;
}

void Comparison::compareStates(quint32 left, quint32 right)
{
    const auto stateOf = [this](quint32 component) {
        const ZelBnglRange states = m_model.components[component].states;
        const quint32 state = states.count > 0 ? m_model.states[states.first] : ZelBnglNames::None;
        return state == ZelBnglNames::Any ? quint32(ZelBnglNames::None) : state;
    };
    const quint32 before = stateOf(left);
    const quint32 after = stateOf(right);
    if (before == after)
        return;
    ++m_changes.states;
    if (before == ZelBnglNames::None || after == ZelBnglNames::None) {
        refuse(QStringLiteral("it states the component %1 on one side only")
                   .arg(ZelBnglLexer::quoted(m_model.name(m_model.components[left].name))));
    }
}

quint32 Comparison::leftOf(quint32 component) const
{
    const auto at = std::lower_bound(
        m_matched.begin(), m_matched.end(), std::pair<quint32, quint32>(component, 0));
    return at != m_matched.end() && at->first == component ? at->second : None;
}

void Comparison::compareBonds(quint32 left, quint32 right)
{
    const ZelBnglBond *const before = bondOf(left);
    const ZelBnglBond *const after = bondOf(right);
    const auto partnerOf = [](const ZelBnglBond *bond) {
        return bond && bond->label >= ZelBnglNames::FirstFree ? bond->partner : None;
    };
    const quint32 oldPartner = partnerOf(before);
    const quint32 newPartner = partnerOf(after) == None ? None : leftOf(partnerOf(after));
    const bool wasNamed = partnerOf(before) != None;
    const bool isNamed = partnerOf(after) != None;
    if (wasNamed == isNamed && oldPartner == newPartner) {
        const quint32 oldLabel = wasNamed || !before ? quint32(ZelBnglNames::None) : before->label;
        const quint32 newLabel = isNamed || !after ? quint32(ZelBnglNames::None) : after->label;
        if (oldLabel != newLabel) {
            refuse(
                QStringLiteral("it makes or breaks a bond at the component %1 whose other end it "
                               "does not name")
                    .arg(ZelBnglLexer::quoted(m_model.name(m_model.components[left].name))));
        }
        return;
    }
    if ((!wasNamed && before) || (!isNamed && after) || (isNamed && newPartner == None)) {
        refuse(
            QStringLiteral("it makes or breaks a bond at the component %1 whose other end it does "
                           "not name")
                .arg(ZelBnglLexer::quoted(m_model.name(m_model.components[left].name))));
        return;
    }
    // Each bond is met at both of its ends.
    if (wasNamed && left < oldPartner)
        m_changes.removedBonds.emplace_back(left, oldPartner);
    if (isNamed && left < newPartner)
        m_changes.addedBonds.emplace_back(left, newPartner);
}

bool isNew(const std::vector<Part> &parts, int pattern)
{
    return std::all_of(parts.begin(), parts.end(),
        [pattern](const Part &part) { return part.pattern != pattern || part.other == None; });
}

bool hasUnmatched(const std::vector<Part> &parts)
{
    return std::any_of(
        parts.begin(), parts.end(), [](const Part &part) { return part.other == None; });
}

/// What a rule that only bonds, unbonds and changes states does too much to be one reaction.
QString tooMuch(const Changes &changes, size_t reactants, size_t products)
{
    const size_t bonds = changes.addedBonds.size() + changes.removedBonds.size();
    const size_t all = bonds + (changes.states > 0) + (changes.compartments > 0);
    if (all == 0)
        return QStringLiteral("it changes nothing");
    if (all > 1)
        return QStringLiteral("it does several things at once");
    if (bonds == 0)
        return QStringLiteral("it changes one molecule in the presence of another");
    if (reactants == 1 && products == 1) {
        return changes.addedBonds.empty()
            ? QStringLiteral("it breaks a bond and nothing falls apart")
            : QStringLiteral("it makes a bond within one complex");
    }
    return QStringLiteral("its bonds do not join or part two whole patterns");
}

} // namespace

ZelBnglRules::ZelBnglRules(const ZelBnglModel &model, const ZelBnglTypes &types)
    : m_model(model), m_types(types)
{
    for (const ZelBnglFunction &function : model.functions)
        m_variables.insert(function.name);
    for (const ZelBnglObservable &observable : model.observables)
        m_variables.insert(observable.name);
    for (const ZelBnglType &type : types.types) {
        ZelBnglGraphType graphType{model.name(type.name).toByteArray(), {}};
        for (const ZelBnglTypeSite &site : type.sites) {
            ZelBnglGraphType::Component component{
                model.name(site.name).toByteArray(), site.group, {}, site.canBind};
            for (const quint32 state : site.states)
                component.states.push_back(model.name(state).toByteArray());
            graphType.components.push_back(component);
        }
        m_graphTypes.push_back(graphType);
    }
}

QString ZelBnglRules::read(const ZelBnglRule &rule, std::vector<Reaction> *reactions) const
{
    reactions->clear();
    if (rule.modifiers.count > 0) {
        const ZelBnglModifier &modifier = m_model.modifiers[rule.modifiers.first];
        const QByteArrayView text =
            m_model.view(rule.text).sliced(modifier.offset - rule.text.offset);
        qsizetype length = 0;
        while (length < text.size() && ZelBnglLexer::isWord(text[length]))
            ++length;
        return QStringLiteral("it is modified by %1").arg(ZelBnglLexer::quoted(text.first(length)));
    }
    if (rule.isReversible && rule.rates[1].isEmpty())
        return QStringLiteral("it goes both ways by one rate");
    QString reason = readOneWay(rule.reactants, rule.products, rule.rates[0], reactions);
    if (reason.isEmpty() && rule.isReversible) {
        reason = readOneWay(rule.products, rule.reactants, rule.rates[1], reactions);
        if (!reason.isEmpty())
            reason = QStringLiteral("backwards, ") + reason;
    }
    return reason;
}

QString ZelBnglRules::readOneWay(
    ZelBnglRange from, ZelBnglRange to, ZelBnglText rate, std::vector<Reaction> *reactions) const
{
    const std::vector<quint32> sources = patternsOf(m_model, from);
    const std::vector<quint32> targets = patternsOf(m_model, to);
    if (const QString reason = checkRate(rate); !reason.isEmpty())
        return reason;
    if (sources.size() > 2)
        return QStringLiteral("it has more than two reactants");
    if (targets.size() > 2)
        return QStringLiteral("it has more than two products");
    std::vector<quint32> patterns = sources;
    patterns.insert(patterns.end(), targets.begin(), targets.end());
    std::vector<ZelBnglInstance> instances;
    if (const QString reason = checkPatterns(patterns, &instances); !reason.isEmpty())
        return reason;

    Reaction reaction;
    reaction.rate = rate;
    std::copy(sources.begin(), sources.end(), reaction.from);
    std::copy(targets.begin(), targets.end(), reaction.to);
    std::vector<Part> left = partsOf(m_model, sources);
    std::vector<Part> right = partsOf(m_model, targets);
    const Changes changes = Comparison(m_model, left, right).run();
    const bool changesNothing = changes.reason.isEmpty() && changes.addedBonds.empty()
        && changes.removedBonds.empty() && changes.states == 0 && changes.compartments == 0;
    const bool changesBonds = changes.addedBonds.size() + changes.removedBonds.size() == 1
        && changes.states == 0 && changes.compartments == 0;

    if (sources.empty() && targets.size() == 1) {
        reaction.kind = Kind::Production;
    } else if (sources.size() == 1 && targets.empty()) {
        reaction.kind = Kind::Degradation;
    } else if (sources.size() == 1 && targets.size() == 2 && changesNothing && !hasUnmatched(left)
        && isNew(right, 0) != isNew(right, 1)) {
        reaction.kind = Kind::Production;
        if (isNew(right, 0))
            std::swap(reaction.to[0], reaction.to[1]);
        reaction.to[0] = std::exchange(reaction.to[1], None);
    } else if (hasUnmatched(left) || hasUnmatched(right)) {
        return QStringLiteral("it makes or removes molecules in the presence of others");
    } else if (!changes.reason.isEmpty()) {
        return changes.reason;
    } else if (sources.size() == 2 && targets.size() == 1 && changesBonds
        && changes.addedBonds.size() == 1) {
        reaction.kind = Kind::Association;
        std::tie(reaction.site1, reaction.site2) = changes.addedBonds.front();
    } else if (sources.size() == 1 && targets.size() == 2 && changesBonds
        && changes.removedBonds.size() == 1) {
        reaction.kind = Kind::Dissociation;
        std::tie(reaction.site1, reaction.site2) = changes.removedBonds.front();
    } else if (sources.size() == 1 && targets.size() == 1 && !changesNothing
        && changes.addedBonds.empty() && changes.removedBonds.empty()) {
        reaction.kind = Kind::Transformation;
    } else {
        return tooMuch(changes, sources.size(), targets.size());
    }
    const auto firstTarget = instances.begin() + static_cast<std::ptrdiff_t>(sources.size());
    const QString reason = checkClarity(reaction, {instances.begin(), firstTarget},
        {firstTarget, instances.end()}, changes.states + changes.compartments);
    if (reason.isEmpty())
        reactions->push_back(reaction);
    return reason;
}

QString ZelBnglRules::checkPatterns(
    const std::vector<quint32> &patterns, std::vector<ZelBnglInstance> *instances) const
{
    instances->resize(patterns.size());
    // What no complex can have comes before what only this pattern leaves open.
    for (size_t i = 0; i < patterns.size(); ++i) {
        const ZelBnglPattern &pattern = m_model.patterns[patterns[i]];
        const QString reason = (*instances)[i].read(m_model, m_types, pattern);
        if (!reason.isEmpty())
            return reason;
    }
    for (size_t i = 0; i < patterns.size(); ++i) {
        const ZelBnglPattern &pattern = m_model.patterns[patterns[i]];
        if (pattern.compartment != ZelBnglNames::None) {
            return QStringLiteral("it says that a whole complex is in the compartment %1")
                .arg(ZelBnglLexer::quoted(m_model.name(pattern.compartment)));
        }
        if (pattern.label != ZelBnglNames::None)
            return QStringLiteral("its rate depends on what a pattern matches");
        if (!(*instances)[i].isConnected())
            return QStringLiteral("the molecules of a pattern are joined by an unsaid path");
    }
    return {};
}

ZelBnglGraph ZelBnglRules::graphOf(const ZelBnglInstance &instance) const
{
    ZelBnglGraph graph;
    for (const ZelBnglInstance::Mol &mol : instance.mols) {
        ZelBnglGraph::Mol own{mol.type, m_model.name(mol.compartment).toByteArray(), {}};
        for (const ZelBnglInstance::Site &site : mol.sites) {
            const bool canBind =
                m_types.types[static_cast<size_t>(mol.type)].sites[own.sites.size()].canBind;
            own.sites.push_back(
                {site.state, ZelBnglGraph::AnyBond, ZelBnglGraph::None, ZelBnglGraph::None});
            if (canBind && site.bond == ZelBnglInstance::Unbound)
                own.sites.back().bond = ZelBnglGraph::Unbound;
            else if (canBind && site.bond == ZelBnglInstance::Bound)
                own.sites.back().bond = ZelBnglGraph::Bound;
        }
        graph.mols.push_back(own);
    }
    for (size_t m = 0; m < instance.mols.size(); ++m) {
        for (size_t s = 0; s < instance.mols[m].sites.size(); ++s) {
            const ZelBnglInstance::Site &site = instance.mols[m].sites[s];
            if (site.bond == ZelBnglInstance::Bonded) {
                graph.bond(
                    static_cast<int>(m), static_cast<int>(s), site.partnerMol, site.partnerSite);
            }
        }
    }
    return graph;
}

QString ZelBnglRules::checkClarity(const Reaction &reaction,
    const std::vector<ZelBnglInstance> &from, const std::vector<ZelBnglInstance> &to,
    int changes) const
{
    if (reaction.kind == Kind::Dissociation) {
        const std::vector<ZelBnglRuleGraph> rules = ZelBnglReactions::dissociations(
            m_graphTypes, graphOf(from[0]), {graphOf(to[0]), graphOf(to[1])});
        if (rules.size() != 1)
            return QStringLiteral("its two sides do not tell which bond it breaks");
    } else if (reaction.kind == Kind::Transformation) {
        const std::vector<ZelBnglRuleGraph> rules =
            ZelBnglReactions::transformations(m_graphTypes, graphOf(from[0]), graphOf(to[0]));
        if (rules.size() != 1 || ZelBnglReactions::countChanges(rules.front()) != changes)
            return QStringLiteral("its two sides do not tell what it changes");
    }
    return {};
}

QString ZelBnglRules::checkRate(ZelBnglText rate) const
{
    const QByteArrayView text = m_model.view(rate);
    for (qsizetype at = 0; at < text.size();) {
        if (!ZelBnglLexer::isWord(text[at])) {
            ++at;
            continue;
        }
        const qsizetype start = at;
        while (at < text.size() && ZelBnglLexer::isWord(text[at]))
            ++at;
        const QByteArrayView word = text.sliced(start, at - start);
        for (const char *law : rateLaws) {
            if (word == QByteArrayView(law))
                return QStringLiteral("its rate follows the law %1")
                    .arg(ZelBnglLexer::quoted(word));
        }
        const quint32 name = m_model.findName(word);
        if (name != ZelBnglNames::None && m_variables.contains(name))
            return QStringLiteral("its rate changes with %1").arg(ZelBnglLexer::quoted(word));
    }
    return {};
}
