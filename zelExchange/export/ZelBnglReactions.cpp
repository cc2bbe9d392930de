#include "zelExchange/export/ZelBnglReactions.h"

#include <QSet>

#include <algorithm>
#include <iterator>
#include <map>
#include <tuple>

namespace {

using Graph = ZelBnglGraph;
using Rule = ZelBnglRuleGraph;

/// Ways to read one reaction, times molecules, that are tried; beyond it none is.
constexpr size_t MaxWork = 250'000;
constexpr size_t MaxChanges = 32;

/// The molecules of one part alone.
Graph extract(const Graph &graph, const std::vector<int> &parts, int part)
{
    std::vector<int> place(graph.mols.size(), Graph::None);
    Graph result;
    for (size_t m = 0; m < graph.mols.size(); ++m) {
        if (parts[m] != part)
            continue;
        place[m] = static_cast<int>(result.mols.size());
        result.mols.push_back(graph.mols[m]);
    }
    for (Graph::Mol &mol : result.mols) {
        for (Graph::Site &site : mol.sites) {
            if (site.bond == Graph::Bonded)
                site.partnerMol = place[static_cast<size_t>(site.partnerMol)];
        }
    }
    return result;
}

std::vector<Graph> split(const Graph &graph)
{
    const std::vector<int> parts = graph.parts();
    std::vector<Graph> result;
    for (size_t m = 0; m < parts.size(); ++m) {
        if (parts[m] == static_cast<int>(m))
            result.push_back(extract(graph, parts, parts[m]));
    }
    return result;
}

std::vector<size_t> sizesOf(const std::vector<Graph> &graphs)
{
    std::vector<size_t> sizes;
    for (const Graph &graph : graphs)
        sizes.push_back(graph.mols.size());
    std::sort(sizes.begin(), sizes.end());
    return sizes;
}

std::vector<QByteArray> textsOf(const ZelBnglGraphTypes &types, const std::vector<Graph> &graphs)
{
    std::vector<QByteArray> texts;
    for (const Graph &graph : graphs)
        texts.push_back(Rule::text(types, graph));
    std::sort(texts.begin(), texts.end());
    return texts;
}

/// Rules that are not the same.
class Distinct
{
public:
    explicit Distinct(const ZelBnglGraphTypes &types) : m_types(types) { }

    void add(const Rule &rule)
    {
        const QByteArray text = rule.text(m_types).joined();
        if (m_texts.contains(text))
            return;
        m_texts.insert(text);
        rules.push_back(rule);
    }

    std::vector<Rule> rules;

private:
    const ZelBnglGraphTypes &m_types;
    QSet<QByteArray> m_texts;
};

/// What can change: the compartment of a molecule, or the state of one of its components.
struct Place
{
    int mol = 0;
    int site = Graph::None; ///< none for the compartment
};

/// What is alike as far as its name tells: type, group and whether it is bonded.
using Key = std::tuple<int, int, int>;

/// Tries the ways in which the fewest changes make one pattern the other.
class Transformer
{
public:
    Transformer(const ZelBnglGraphTypes &types, const Graph &from, const Graph &to)
        : m_types(types), m_from(from), m_to(Rule::text(types, to)), m_found(types)
    {
        collect(from, &m_before);
        collect(to, &m_after);
    }

    std::vector<Rule> run()
    {
        if (!compare() || m_changes.empty())
            return {};
        tryAll();
        return m_found.rules;
    }

private:
    struct Value
    {
        QByteArray text; ///< of a compartment
        int state = Graph::None;
        bool operator<(const Value &other) const
        {
            return std::tie(text, state) < std::tie(other.text, other.state);
        }
    };
    using Values = std::map<Key, std::vector<std::pair<Value, Place>>>;

    struct Change
    {
        Value value; ///< that some place gets
        std::vector<Place> places; ///< where it may come
    };

    void collect(const Graph &graph, Values *values) const;
    bool compare();
    void tryAll();
    void apply(const std::vector<size_t> &choice);
    static std::vector<Value> valuesOf(const std::vector<std::pair<Value, Place>> &entries);

    const ZelBnglGraphTypes &m_types;
    const Graph &m_from;
    QByteArray m_to;
    Values m_before;
    Values m_after;
    std::vector<Change> m_changes;
    Distinct m_found;
};

void Transformer::collect(const Graph &graph, Values *values) const
{
    for (size_t m = 0; m < graph.mols.size(); ++m) {
        const Graph::Mol &mol = graph.mols[m];
        const ZelBnglGraphType &type = m_types[static_cast<size_t>(mol.type)];
        const int index = static_cast<int>(m);
        (*values)[{mol.type, Graph::None, 0}].push_back(
            {{mol.compartment, Graph::None}, {index, Graph::None}});
        for (size_t s = 0; s < mol.sites.size(); ++s) {
            (*values)[{mol.type, type.components[s].group, mol.sites[s].bond}].push_back(
                {{QByteArray(), mol.sites[s].state}, {index, static_cast<int>(s)}});
        }
    }
    for (auto &[key, entries] : *values)
        std::sort(entries.begin(), entries.end(),
            [](const auto &a, const auto &b) { return a.first < b.first; });
}

std::vector<Transformer::Value> Transformer::valuesOf(
    const std::vector<std::pair<Value, Place>> &entries)
{
    std::vector<Value> values;
    for (const auto &[value, place] : entries)
        values.push_back(value);
    return values;
}

bool Transformer::compare()
{
    if (m_before.size() != m_after.size())
        return false;
    for (const auto &[key, before] : m_before) {
        const auto after = m_after.find(key);
        if (after == m_after.end() || after->second.size() != before.size())
            return false;
        const std::vector<Value> old = valuesOf(before);
        const std::vector<Value> now = valuesOf(after->second);
        std::vector<Value> removed;
        std::vector<Value> added;
        std::set_difference(
            old.begin(), old.end(), now.begin(), now.end(), std::back_inserter(removed));
        std::set_difference(
            now.begin(), now.end(), old.begin(), old.end(), std::back_inserter(added));
        // A state that is left open on one side can be any there, which is no change.
        const bool isOfSite = std::get<1>(key) != Graph::None;
        const auto isOpen = [isOfSite](const Value &value) {
            return isOfSite && value.state == Graph::None;
        };
        if (std::any_of(removed.begin(), removed.end(), isOpen)
            || std::any_of(added.begin(), added.end(), isOpen))
            return false;
        std::vector<Place> places;
        for (const auto &[value, place] : before) {
            if (std::binary_search(removed.begin(), removed.end(), value))
                places.push_back(place);
        }
        for (const Value &value : added)
            m_changes.push_back({value, places});
    }
    return m_changes.size() <= MaxChanges;
}

void Transformer::tryAll()
{
    size_t count = 1;
    for (const Change &change : m_changes) {
        count *= change.places.size();
        if (count * m_from.mols.size() > MaxWork)
            return;
    }
    std::vector<size_t> choice(m_changes.size(), 0);
    for (;;) {
        apply(choice);
        size_t at = 0;
        while (at < choice.size() && ++choice[at] == m_changes[at].places.size())
            choice[at++] = 0;
        if (at == choice.size())
            return;
    }
}

void Transformer::apply(const std::vector<size_t> &choice)
{
    Rule rule{{m_from, m_from}};
    Graph &after = rule.sides[Rule::After];
    for (size_t i = 0; i < choice.size(); ++i) {
        const Place &place = m_changes[i].places[choice[i]];
        const Value &value = m_changes[i].value;
        if (place.site == Graph::None)
            after.mols[static_cast<size_t>(place.mol)].compartment = value.text;
        else
            after.site(place.mol, place.site).state = value.state;
    }
    // Of two changes of one place only one is left, which the text shows.
    if (Rule::text(m_types, after) == m_to)
        m_found.add(rule);
}

} // namespace

ZelBnglRuleGraph ZelBnglReactions::association(
    const ZelBnglGraph &pattern1, End end1, const ZelBnglGraph &pattern2, End end2)
{
    Graph both = pattern1;
    end2.mol += both.append(pattern2);
    return closure(both, end1, end2);
}

ZelBnglRuleGraph ZelBnglReactions::closure(const ZelBnglGraph &pattern, End end1, End end2)
{
    Rule rule{{pattern, pattern}};
    for (const End &end : {end1, end2})
        rule.sides[Rule::Before].site(end.mol, end.site).unbind();
    rule.sides[Rule::After].bond(end1.mol, end1.site, end2.mol, end2.site);
    return rule;
}

std::vector<ZelBnglRuleGraph> ZelBnglReactions::dissociations(const ZelBnglGraphTypes &types,
    const ZelBnglGraph &source, const std::vector<ZelBnglGraph> &products)
{
    if (source.mols.size() * source.mols.size() > MaxWork)
        return {};
    const std::vector<size_t> sizes = sizesOf(products);
    const std::vector<QByteArray> texts = textsOf(types, products);
    Distinct found(types);
    for (int m = 0; m < static_cast<int>(source.mols.size()); ++m) {
        const std::vector<Graph::Site> &sites = source.mols[static_cast<size_t>(m)].sites;
        for (int s = 0; s < static_cast<int>(sites.size()); ++s) {
            const Graph::Site &site = sites[static_cast<size_t>(s)];
            // Each bond is met at both of its ends.
            if (site.bond != Graph::Bonded || site.partnerMol < m)
                continue;
            Rule rule{{source, source}};
            Graph &after = rule.sides[Rule::After];
            after.site(m, s).unbind();
            after.site(site.partnerMol, site.partnerSite).unbind();
            const std::vector<Graph> parts = split(after);
            if (sizesOf(parts) == sizes && textsOf(types, parts) == texts)
                found.add(rule);
        }
    }
    return found.rules;
}

std::vector<ZelBnglRuleGraph> ZelBnglReactions::transformations(
    const ZelBnglGraphTypes &types, const ZelBnglGraph &from, const ZelBnglGraph &to)
{
    return Transformer(types, from, to).run();
}

int ZelBnglReactions::countChanges(const ZelBnglRuleGraph &rule)
{
    int count = 0;
    for (size_t m = 0; m < rule.sides[Rule::Before].mols.size(); ++m) {
        const Graph::Mol &before = rule.sides[Rule::Before].mols[m];
        const Graph::Mol &after = rule.sides[Rule::After].mols[m];
        count += before.compartment != after.compartment;
        for (size_t s = 0; s < before.sites.size(); ++s)
            count += before.sites[s].state != after.sites[s].state;
    }
    return count;
}

ZelBnglRuleGraph ZelBnglReactions::production(
    const ZelBnglGraph &source, const ZelBnglGraph &product)
{
    Rule rule{{source, source}};
    rule.sides[Rule::After].append(product);
    rule.sides[Rule::Before].mols.resize(rule.sides[Rule::After].mols.size());
    return rule;
}

ZelBnglRuleGraph ZelBnglReactions::replacement(const ZelBnglGraph &from, const ZelBnglGraph &to)
{
    Rule rule{{from, {}}};
    Graph &after = rule.sides[Rule::After];
    after.mols.resize(from.mols.size());
    after.append(to);
    rule.sides[Rule::Before].mols.resize(after.mols.size());
    return rule;
}
