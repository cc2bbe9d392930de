#include "zelExchange/import/ZelBnglInstance.h"

#include "zelExchange/bngl/ZelBnglLexer.h"
#include "zelRules/CanonicalOrder.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

using Instance = ZelBnglInstance;
using Color = zel::rules::Color;

/// The graph of an instance: a vertex for each molecule and, behind them, one for each of its
/// sites.
class Graph
{
public:
    explicit Graph(const Instance &instance)
    {
        for (const Instance::Mol &mol : instance.mols) {
            m_firstSite.push_back(m_count + 1);
            m_count += 1 + static_cast<int>(mol.sites.size());
        }
        m_edges.resize(static_cast<size_t>(m_count));
        for (size_t m = 0; m < instance.mols.size(); ++m) {
            const Instance::Mol &mol = instance.mols[m];
            for (size_t s = 0; s < mol.sites.size(); ++s) {
                const int site = vertex(static_cast<int>(m), static_cast<int>(s));
                join(molVertex(static_cast<int>(m)), site);
                if (mol.sites[s].bond == Instance::Bonded)
                    m_edges[static_cast<size_t>(site)].push_back(
                        vertex(mol.sites[s].partnerMol, mol.sites[s].partnerSite));
            }
        }
    }

    int count() const { return m_count; }
    int molVertex(int mol) const { return m_firstSite[static_cast<size_t>(mol)] - 1; }
    int vertex(int mol, int site) const { return m_firstSite[static_cast<size_t>(mol)] + site; }

    std::vector<int> canonicalOrder(
        const std::vector<Color> &colors, const std::vector<int> &order) const
    {
        return zel::rules::canonicalOrder(m_edges, colors, order);
    }

private:
    void join(int a, int b)
    {
        m_edges[static_cast<size_t>(a)].push_back(b);
        m_edges[static_cast<size_t>(b)].push_back(a);
    }

    int m_count = 0;
    std::vector<int> m_firstSite;
    zel::rules::Edges m_edges;
};

QString quoted(const ZelBnglModel &model, quint32 name)
{
    return ZelBnglLexer::quoted(model.name(name));
}

} // namespace

QString ZelBnglInstance::read(
    const ZelBnglModel &model, const ZelBnglTypes &types, const ZelBnglPattern &pattern)
{
    mols.clear();
    struct Place
    {
        int mol = None;
        int site = None;
    };
    const std::span<const ZelBnglMolecule> molecules = model.moleculesOf(pattern);
    if (molecules.size() > MaxMolecules)
        return QStringLiteral("it has more than %1 molecules").arg(MaxMolecules);
    if (model.hasAttributes(pattern))
        return QStringLiteral("the model holds no attributes in braces");
    size_t parts = 0;
    const quint32 firstComponent = molecules.empty() ? 0 : molecules.front().components.first;
    std::vector<Place> places; // of the pattern's components
    for (size_t m = 0; m < molecules.size(); ++m) {
        const ZelBnglMolecule &molecule = molecules[m];
        Mol mol;
        mol.type = types.find(molecule.name);
        mol.molecule = pattern.molecules.first + static_cast<quint32>(m);
        mol.compartment =
            molecule.compartment != ZelBnglNames::None ? molecule.compartment : pattern.compartment;
        const ZelBnglType &type = types.types[static_cast<size_t>(mol.type)];
        for (const ZelBnglTypeSite &site : type.sites)
            parts += 1 + site.states.size();
        if (parts > MaxParts) {
            return QStringLiteral("it has more than %1 components and states in all").arg(MaxParts);
        }
        mol.sites.resize(type.sites.size());
        for (quint32 c = 0; c < molecule.components.count; ++c) {
            const quint32 index = molecule.components.first + c;
            const ZelBnglComponent &component = model.components[index];
            // The next of the equal-named components.
            int place = type.findGroup(component.name);
            while (place >= 0 && static_cast<size_t>(place) < type.sites.size()
                && (type.sites[static_cast<size_t>(place)].name != component.name
                    || mol.sites[static_cast<size_t>(place)].component != None))
                ++place;
            if (place < 0 || static_cast<size_t>(place) == type.sites.size()) {
                return QStringLiteral("the molecule type %1 has no %2component %3")
                    .arg(quoted(model, molecule.name),
                        place < 0 ? QString() : QStringLiteral("further "),
                        quoted(model, component.name));
            }
            Site &site = mol.sites[static_cast<size_t>(place)];
            const std::vector<quint32> &states = type.sites[static_cast<size_t>(place)].states;
            site.component = static_cast<int>(index);
            for (const quint32 state : ZelBnglModel::items(model.states, component.states)) {
                if (state >= ZelBnglNames::FirstFree)
                    site.state = static_cast<int>(
                        std::find(states.begin(), states.end(), state) - states.begin());
            }
            if (component.bonds.count > 1) {
                return QStringLiteral(
                    "two bonds meet at the component %1 of %2, and a binding site "
                    "holds one")
                    .arg(quoted(model, component.name), quoted(model, molecule.name));
            }
            site.bond = Unbound;
            for (const ZelBnglBond &bond : ZelBnglModel::items(model.bonds, component.bonds)) {
                site.bond = bond.label == ZelBnglNames::Any ? AnyBond
                    : bond.label == ZelBnglNames::Bound     ? Bound
                                                            : Bonded;
            }
            places.resize(index - firstComponent + 1);
            places[index - firstComponent] = {static_cast<int>(m), place};
        }
        mols.push_back(std::move(mol));
    }
    for (Mol &mol : mols) {
        for (Site &site : mol.sites) {
            if (site.bond != Bonded)
                continue;
            const ZelBnglComponent &component =
                model.components[static_cast<size_t>(site.component)];
            const Place partner =
                places[model.bonds[component.bonds.first].partner - firstComponent];
            if (&mols[static_cast<size_t>(partner.mol)] == &mol) {
                return QStringLiteral("a bond joins two components of one molecule %1")
                    .arg(quoted(model, model.molecules[mol.molecule].name));
            }
            site.partnerMol = partner.mol;
            site.partnerSite = partner.site;
        }
    }
    return {};
}

bool ZelBnglInstance::isConnected() const
{
    if (mols.empty())
        return false;
    std::vector<char> reached(mols.size(), 0);
    std::vector<int> open{0};
    reached[0] = 1;
    size_t count = 0;
    while (!open.empty()) {
        const Mol &mol = mols[static_cast<size_t>(open.back())];
        open.pop_back();
        ++count;
        for (const Site &site : mol.sites) {
            if (site.partnerMol != None
                && !std::exchange(reached[static_cast<size_t>(site.partnerMol)], 1))
                open.push_back(site.partnerMol);
        }
    }
    return count == mols.size();
}

void ZelBnglInstance::makeCanonical(const ZelBnglModel &model, const ZelBnglTypes &types)
{
    // Names are numbered in the order of the file; the order of colours must not depend on it.
    std::vector<quint32> compartments;
    for (const Mol &mol : mols)
        compartments.push_back(mol.compartment);
    std::sort(compartments.begin(), compartments.end(),
        [&](quint32 a, quint32 b) { return model.name(a).compare(model.name(b)) < 0; });
    compartments.erase(std::unique(compartments.begin(), compartments.end()), compartments.end());

    const Graph vertices(*this);
    std::vector<Color> states(static_cast<size_t>(vertices.count()));
    std::vector<Color> bonds(static_cast<size_t>(vertices.count()));
    for (size_t m = 0; m < mols.size(); ++m) {
        const Mol &mol = mols[m];
        const auto v = static_cast<size_t>(vertices.molVertex(static_cast<int>(m)));
        const auto place = std::find(compartments.begin(), compartments.end(), mol.compartment);
        bonds[v] = {0, mol.type, 0, 0, 0};
        states[v] = {0, mol.type, static_cast<int>(place - compartments.begin()), 0, 0};
        const ZelBnglType &type = types.types[static_cast<size_t>(mol.type)];
        for (size_t s = 0; s < mol.sites.size(); ++s) {
            const Site &site = mol.sites[s];
            const auto w =
                static_cast<size_t>(vertices.vertex(static_cast<int>(m), static_cast<int>(s)));
            bonds[w] = {1, mol.type, type.sites[s].group, 0, 0};
            states[w] = {1, mol.type, type.sites[s].group, site.state, site.bond};
        }
    }
    // First everything counts: the order is then the same however it was written. Over that, the
    // bonds alone decide, so that they do not depend on states.
    std::vector<int> order(static_cast<size_t>(vertices.count()));
    std::iota(order.begin(), order.end(), 0);
    order = vertices.canonicalOrder(states, order);
    order = vertices.canonicalOrder(bonds, order);
    std::vector<int> rank(order.size());
    for (size_t i = 0; i < order.size(); ++i)
        rank[static_cast<size_t>(order[i])] = static_cast<int>(i);

    const auto byRank = [&](int a, int b) {
        return rank[static_cast<size_t>(a)] < rank[static_cast<size_t>(b)];
    };
    std::vector<int> molOrder(mols.size());
    std::iota(molOrder.begin(), molOrder.end(), 0);
    std::sort(molOrder.begin(), molOrder.end(),
        [&](int a, int b) { return byRank(vertices.molVertex(a), vertices.molVertex(b)); });
    std::vector<int> molPlace(mols.size());
    std::vector<std::vector<int>> sitePlace(mols.size());
    for (size_t i = 0; i < molOrder.size(); ++i) {
        const int m = molOrder[i];
        const Mol &mol = mols[static_cast<size_t>(m)];
        const ZelBnglType &type = types.types[static_cast<size_t>(mol.type)];
        molPlace[static_cast<size_t>(m)] = static_cast<int>(i);
        std::vector<int> &place = sitePlace[static_cast<size_t>(m)];
        place.resize(mol.sites.size());
        // The copies of each component, in their order, take the places of its group in theirs.
        std::vector<int> copies(mol.sites.size());
        std::iota(copies.begin(), copies.end(), 0);
        const auto groupOf = [&](int s) { return type.sites[static_cast<size_t>(s)].group; };
        std::stable_sort(
            copies.begin(), copies.end(), [&](int a, int b) { return groupOf(a) < groupOf(b); });
        std::vector<int> sorted = copies;
        std::sort(sorted.begin(), sorted.end(), [&](int a, int b) {
            return groupOf(a) != groupOf(b) ? groupOf(a) < groupOf(b)
                                            : byRank(vertices.vertex(m, a), vertices.vertex(m, b));
        });
        for (size_t k = 0; k < copies.size(); ++k)
            place[static_cast<size_t>(sorted[k])] = copies[k];
    }
    std::vector<Mol> result(mols.size());
    for (size_t m = 0; m < mols.size(); ++m) {
        Mol &mol = result[static_cast<size_t>(molPlace[m])];
        mol = mols[m];
        for (size_t s = 0; s < mol.sites.size(); ++s) {
            Site site = mols[m].sites[s];
            if (site.partnerMol != None) {
                site.partnerSite = sitePlace[static_cast<size_t>(site.partnerMol)]
                                            [static_cast<size_t>(site.partnerSite)];
                site.partnerMol = molPlace[static_cast<size_t>(site.partnerMol)];
            }
            mol.sites[static_cast<size_t>(sitePlace[m][s])] = site;
        }
    }
    mols = std::move(result);
}
