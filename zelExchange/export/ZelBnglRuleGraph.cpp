#include "zelExchange/export/ZelBnglRuleGraph.h"

#include "zelRules/CanonicalOrder.h"

#include <QHash>
#include <QPair>

#include <algorithm>
#include <array>
#include <climits>
#include <numeric>
#include <utility>

namespace {

using Graph = ZelBnglGraph;
using Rule = ZelBnglRuleGraph;
using End = QPair<int, int>; ///< molecule and site

/// Writes both sides of a rule over one canonical order of its molecules and their components.
class Writer
{
public:
    Writer(const ZelBnglGraphTypes &types, const Rule &rule) : m_types(types), m_rule(rule)
    {
        makeVertices();
        makeOrder();
    }

    Rule::Text write()
    {
        Rule::Text text;
        text.left = writeSide(Rule::Before);
        text.right = writeSide(Rule::After);
        return text;
    }

private:
    size_t molCount() const { return m_rule.sides[Rule::Before].mols.size(); }
    const Graph::Mol &mol(int side, int index) const
    {
        return m_rule.sides[side].mols[static_cast<size_t>(index)];
    }
    bool isThere(int side, int index) const { return mol(side, index).type != Graph::None; }
    const Graph::Mol &anySide(int index) const
    {
        return mol(isThere(Rule::Before, index) ? Rule::Before : Rule::After, index);
    }
    const ZelBnglGraphType &typeOf(int index) const
    {
        return m_types[static_cast<size_t>(anySide(index).type)];
    }
    int vertex(int mol, int site) const { return m_firstSite[static_cast<size_t>(mol)] + site; }

    void makeVertices();
    void addBonds();
    zel::rules::Color siteColor(int mol, int site) const;
    void makeOrder();
    /// Where each molecule's pattern of a side stands among those of that side.
    std::vector<int> rankPatterns(int side) const;
    bool isMentioned(int mol, int site) const;
    QByteArray writeSide(int side);
    QByteArray writeMol(int side, int index);
    QByteArray writeSite(int side, int mol, int site);
    int bondLabel(const End &a, const End &b);

    const ZelBnglGraphTypes &m_types;
    const Rule &m_rule;
    std::vector<int> m_firstSite; ///< vertices
    zel::rules::Edges m_edges;
    std::vector<zel::rules::Color> m_colors;
    std::vector<int> m_place; ///< of a vertex in canonical order
    std::vector<int> m_molOrder;
    QHash<QPair<End, End>, int> m_labels;
};

void Writer::makeVertices()
{
    std::vector<QByteArray> compartments;
    for (const Graph &side : m_rule.sides) {
        for (const Graph::Mol &mol : side.mols)
            compartments.push_back(mol.compartment);
    }
    std::sort(compartments.begin(), compartments.end());
    const auto rankOf = [&](const QByteArray &compartment) {
        return static_cast<int>(
            std::lower_bound(compartments.begin(), compartments.end(), compartment)
            - compartments.begin());
    };
    for (int m = 0; m < static_cast<int>(molCount()); ++m) {
        const int molVertex = static_cast<int>(m_edges.size());
        m_firstSite.push_back(molVertex + 1);
        m_edges.emplace_back();
        m_colors.push_back({0, anySide(m).type, isThere(Rule::Before, m), isThere(Rule::After, m),
            rankOf(mol(Rule::Before, m).compartment), rankOf(mol(Rule::After, m).compartment)});
        for (int s = 0; s < static_cast<int>(anySide(m).sites.size()); ++s) {
            m_edges[static_cast<size_t>(molVertex)].push_back(vertex(m, s));
            m_edges.push_back({molVertex});
            m_colors.push_back(siteColor(m, s));
        }
    }
    addBonds();
}

zel::rules::Color Writer::siteColor(int m, int s) const
{
    zel::rules::Color color{1, anySide(m).type, typeOf(m).components[static_cast<size_t>(s)].group};
    for (const int side : {Rule::Before, Rule::After}) {
        const auto at = static_cast<size_t>(3 + 2 * side);
        if (!isThere(side, m)) {
            color[at] = INT_MIN;
            continue;
        }
        const Graph::Site &site = mol(side, m).sites[static_cast<size_t>(s)];
        color[at] = site.state;
        color[at + 1] = site.bond;
    }
    return color;
}

void Writer::addBonds()
{
    QHash<QPair<End, End>, size_t> bonds;
    for (const int side : {Rule::Before, Rule::After}) {
        for (int m = 0; m < static_cast<int>(molCount()); ++m) {
            const std::vector<Graph::Site> &sites = mol(side, m).sites;
            for (int s = 0; s < static_cast<int>(sites.size()); ++s) {
                const Graph::Site &site = sites[static_cast<size_t>(s)];
                const End here{m, s};
                const End there{site.partnerMol, site.partnerSite};
                // Each bond is met at both of its ends.
                if (site.bond != Graph::Bonded || there < here)
                    continue;
                const auto known = bonds.constFind({here, there});
                if (known != bonds.constEnd()) {
                    m_colors[*known][1 + static_cast<size_t>(side)] = 1;
                    continue;
                }
                const size_t bond = m_edges.size();
                bonds.insert({here, there}, bond);
                m_colors.push_back({2});
                m_colors.back()[1 + static_cast<size_t>(side)] = 1;
                m_edges.emplace_back();
                for (const End &end : {here, there}) {
                    const int at = vertex(end.first, end.second);
                    m_edges[bond].push_back(at);
                    m_edges[static_cast<size_t>(at)].push_back(static_cast<int>(bond));
                }
            }
        }
    }
}

void Writer::makeOrder()
{
    std::vector<int> order(m_edges.size());
    std::iota(order.begin(), order.end(), 0);
    order = zel::rules::canonicalOrder(m_edges, m_colors, order);
    m_place.resize(order.size());
    for (size_t i = 0; i < order.size(); ++i)
        m_place[static_cast<size_t>(order[i])] = static_cast<int>(i);
    // Readers take the molecules of one name on both sides for each other in the order in which
    // they are written, so that the order must be the same on both.
    const std::vector<int> before = rankPatterns(Rule::Before);
    const std::vector<int> after = rankPatterns(Rule::After);
    m_molOrder.resize(molCount());
    std::iota(m_molOrder.begin(), m_molOrder.end(), 0);
    std::sort(m_molOrder.begin(), m_molOrder.end(), [&](int a, int b) {
        const auto keyOf = [&](int m) {
            const auto i = static_cast<size_t>(m);
            return std::array<int, 3>{
                before[i], after[i], m_place[static_cast<size_t>(m_firstSite[i] - 1)]};
        };
        return keyOf(a) < keyOf(b);
    });
}

std::vector<int> Writer::rankPatterns(int side) const
{
    const std::vector<int> parts = m_rule.sides[side].parts();
    std::vector<int> ranks(parts.size(), INT_MAX);
    // Patterns of what stays come before those of what is made or removed.
    const int removed = static_cast<int>(m_edges.size());
    for (size_t m = 0; m < parts.size(); ++m) {
        const int index = static_cast<int>(m);
        if (!isThere(side, index))
            continue;
        int &rank = ranks[static_cast<size_t>(parts[m])];
        const int place = m_place[static_cast<size_t>(m_firstSite[m] - 1)];
        rank = std::min(rank, isThere(1 - side, index) ? place : place + removed);
    }
    for (size_t m = 0; m < parts.size(); ++m)
        ranks[m] =
            isThere(side, static_cast<int>(m)) ? ranks[static_cast<size_t>(parts[m])] : INT_MAX;
    return ranks;
}

bool Writer::isMentioned(int m, int s) const
{
    const bool canBind = typeOf(m).components[static_cast<size_t>(s)].canBind;
    for (const int side : {Rule::Before, Rule::After}) {
        if (!isThere(side, m))
            continue;
        const Graph::Site &site = mol(side, m).sites[static_cast<size_t>(s)];
        if (site.state != Graph::None || (canBind && site.bond != Graph::AnyBond))
            return true;
    }
    return false;
}

QByteArray Writer::writeSide(int side)
{
    const std::vector<int> parts = m_rule.sides[side].parts();
    QByteArray text;
    int part = Graph::None;
    for (const int m : m_molOrder) {
        if (!isThere(side, m))
            continue;
        const int own = parts[static_cast<size_t>(m)];
        if (part != Graph::None)
            text += own == part ? "." : " + ";
        part = own;
        text += writeMol(side, m);
    }
    return text.isEmpty() ? QByteArray("0") : text;
}

QByteArray Writer::writeMol(int side, int index)
{
    const ZelBnglGraphType &type = typeOf(index);
    std::vector<int> sites(type.components.size());
    std::iota(sites.begin(), sites.end(), 0);
    std::sort(sites.begin(), sites.end(), [&](int a, int b) {
        const auto groupOf = [&](int s) { return type.components[static_cast<size_t>(s)].group; };
        const auto placeOf = [&](int s) { return m_place[static_cast<size_t>(vertex(index, s))]; };
        return std::pair(groupOf(a), placeOf(a)) < std::pair(groupOf(b), placeOf(b));
    });
    QByteArray text = type.name + '(';
    bool isFirst = true;
    for (const int s : sites) {
        if (!isMentioned(index, s))
            continue;
        if (!std::exchange(isFirst, false))
            text += ',';
        text += writeSite(side, index, s);
    }
    text += ')';
    const QByteArray &compartment = mol(side, index).compartment;
    return compartment.isEmpty() ? text : text + '@' + compartment;
}

QByteArray Writer::writeSite(int side, int m, int s)
{
    const ZelBnglGraphType::Component &component = typeOf(m).components[static_cast<size_t>(s)];
    const Graph::Site &site = mol(side, m).sites[static_cast<size_t>(s)];
    QByteArray text = component.name;
    if (site.state != Graph::None)
        text += '~' + component.states[static_cast<size_t>(site.state)];
    switch (site.bond) {
    case Graph::Unbound:
        return text;
    case Graph::AnyBond:
        return component.canBind ? text + "!?" : text;
    case Graph::Bound:
        return text + "!+";
    case Graph::Bonded:
        return text + '!'
            + QByteArray::number(bondLabel({m, s}, {site.partnerMol, site.partnerSite}));
    }
    return text;
}

int Writer::bondLabel(const End &a, const End &b)
{
    const QPair<End, End> bond = std::minmax(a, b);
    const auto known = m_labels.constFind(bond);
    if (known != m_labels.constEnd())
        return *known;
    const int label = static_cast<int>(m_labels.size()) + 1;
    m_labels.insert(bond, label);
    return label;
}

} // namespace

void ZelBnglGraph::bond(int mol1, int site1, int mol2, int site2)
{
    Site &a = site(mol1, site1);
    a = {a.state, Bonded, mol2, site2};
    Site &b = site(mol2, site2);
    b = {b.state, Bonded, mol1, site1};
}

std::vector<int> ZelBnglGraph::parts() const
{
    std::vector<int> parts(mols.size(), None);
    std::vector<int> open;
    for (int first = 0; first < static_cast<int>(mols.size()); ++first) {
        if (parts[static_cast<size_t>(first)] != None)
            continue;
        parts[static_cast<size_t>(first)] = first;
        open.push_back(first);
        while (!open.empty()) {
            const Mol &mol = mols[static_cast<size_t>(open.back())];
            open.pop_back();
            for (const Site &site : mol.sites) {
                if (site.bond != Bonded)
                    continue;
                int &part = parts[static_cast<size_t>(site.partnerMol)];
                if (part == None) {
                    part = first;
                    open.push_back(site.partnerMol);
                }
            }
        }
    }
    return parts;
}

bool ZelBnglGraph::isConnected() const
{
    const std::vector<int> all = parts();
    return !all.empty() && std::all_of(all.begin(), all.end(), [](int part) { return part == 0; });
}

bool ZelBnglGraph::isSpecies(const ZelBnglGraphTypes &types) const
{
    for (const Mol &mol : mols) {
        const ZelBnglGraphType &type = types[static_cast<size_t>(mol.type)];
        for (size_t s = 0; s < mol.sites.size(); ++s) {
            const Site &site = mol.sites[s];
            if ((site.state == None && !type.components[s].states.empty())
                || (type.components[s].canBind && (site.bond == AnyBond || site.bond == Bound)))
                return false;
        }
    }
    return true;
}

int ZelBnglGraph::append(const ZelBnglGraph &other)
{
    const int first = static_cast<int>(mols.size());
    for (Mol mol : other.mols) {
        for (Site &site : mol.sites) {
            if (site.bond == Bonded)
                site.partnerMol += first;
        }
        mols.push_back(std::move(mol));
    }
    return first;
}

ZelBnglRuleGraph::Text ZelBnglRuleGraph::text(const ZelBnglGraphTypes &types) const
{
    return Writer(types, *this).write();
}

QByteArray ZelBnglRuleGraph::text(const ZelBnglGraphTypes &types, const ZelBnglGraph &pattern)
{
    ZelBnglRuleGraph rule;
    rule.sides[Before] = pattern;
    rule.sides[After].mols.resize(pattern.mols.size());
    return rule.text(types).left;
}
