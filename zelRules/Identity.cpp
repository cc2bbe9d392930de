#include "zelRules/Identity.h"

#include "zelRules/CanonicalOrder.h"
#include "zelSpecies/Species.h"

#include <QCryptographicHash>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using zel::rules::Sameness;
using zel::species::MoleculeTypes;
using zel::species::Species;

/// Lengths keep "a", "bc" apart from "ab", "c".
void appendText(QByteArray *to, const QByteArray &text)
{
    *to += QByteArray::number(text.size()) + ':' + text;
}

/// The graph of a species. Its vertices are the molecules, and those of their components and sites
/// that a bond leads to; what else there is to say of a molecule is in its colour.
class SpeciesGraph
{
public:
    SpeciesGraph(const Species &species, Sameness sameness)
        : m_species(species), m_withStates(sameness == Sameness::States)
    {
        m_siteVertices.resize(species.mols.size());
        for (std::size_t m = 0; m < species.mols.size(); ++m)
            addMol(m);
        for (const Species::Bond &bond : species.bonds())
            join(siteVertex(bond.mol1, bond.site1), siteVertex(bond.mol2, bond.site2));
    }

    QByteArray canonicalText() const
    {
        const std::vector<int> order = zel::rules::canonicalOrder(m_edges, colors(), everyVertex());
        std::vector<int> places(order.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            places[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
        QByteArray text;
        for (const int vertex : order) {
            const auto v = static_cast<std::size_t>(vertex);
            appendText(&text, m_texts[v]);
            std::vector<int> neighbors;
            for (const int neighbor : m_edges[v])
                neighbors.push_back(places[static_cast<std::size_t>(neighbor)]);
            std::sort(neighbors.begin(), neighbors.end());
            for (const int neighbor : neighbors)
                text += QByteArray::number(neighbor) + ',';
            text += ';';
        }
        return text;
    }

private:
    int addVertex(const QByteArray &text)
    {
        m_texts.push_back(text);
        m_edges.emplace_back();
        return static_cast<int>(m_edges.size()) - 1;
    }

    void join(int a, int b)
    {
        m_edges[static_cast<std::size_t>(a)].push_back(b);
        m_edges[static_cast<std::size_t>(b)].push_back(a);
    }

    int siteVertex(int mol, int site) const
    {
        return m_siteVertices[static_cast<std::size_t>(mol)][static_cast<std::size_t>(site)];
    }

    void addMol(std::size_t m)
    {
        const Species::Mol &mol = m_species.mols[m];
        m_siteVertices[m].assign(mol.sites.size(), Species::None);
        const int molVertex = addVertex({});
        std::vector<QByteArray> ownTexts; // in no order of the type's: copies may be exchanged
        for (const MoleculeTypes::Mcp &mcp : mol.type->mcps) {
            const QByteArray text = textOf(mol, mcp);
            if (!isBonded(mol, mcp)) {
                ownTexts.push_back(text);
                continue;
            }
            const int mcpVertex = addVertex('c' + text);
            join(molVertex, mcpVertex);
            for (int i = 0; i < static_cast<int>(mcp.sites.size()); ++i) {
                const int site = mcp.firstSite + i;
                if (mol.sites[static_cast<std::size_t>(site)].partnerMol == Species::None)
                    continue;
                const int vertex = addVertex('s' + QByteArray::number(i));
                join(mcpVertex, vertex);
                m_siteVertices[m][static_cast<std::size_t>(site)] = vertex;
            }
        }
        std::sort(ownTexts.begin(), ownTexts.end());
        QByteArray text("m");
        appendText(&text, mol.type->name.toUtf8());
        if (m_withStates)
            appendText(&text, mol.compartment.toUtf8());
        for (const QByteArray &own : ownTexts)
            appendText(&text, own);
        m_texts[static_cast<std::size_t>(molVertex)] = text;
    }

    static bool isBonded(const Species::Mol &mol, const MoleculeTypes::Mcp &mcp)
    {
        const auto first = mol.sites.begin() + mcp.firstSite;
        return std::any_of(first, first + mcp.sites.size(),
            [](const Species::Site &site) { return site.partnerMol != Species::None; });
    }

    /// What can be said of a component without saying which of its copies it is.
    QByteArray textOf(const Species::Mol &mol, const MoleculeTypes::Mcp &mcp) const
    {
        QByteArray text;
        text += mcp.isCopy ? '*' : '=';
        appendText(&text, mcp.title().toUtf8());
        if (!m_withStates)
            return text;
        // What is open says nothing, in whatever order the states are.
        std::vector<QByteArray> states;
        for (qsizetype i = 0; i < mcp.states.size(); ++i) {
            const int state = mol.states[static_cast<std::size_t>(mcp.firstState + i)];
            if (state != ComponentStateDontCare)
                states.push_back(QByteArray::number(state) + mcp.states.at(i).name.toUtf8());
        }
        std::sort(states.begin(), states.end());
        for (const QByteArray &state : states)
            appendText(&text, state);
        text += mol.negated[static_cast<std::size_t>(&mcp - mol.type->mcps.data())] ? '-' : '+';
        for (qsizetype i = 0; i < mcp.sites.size(); ++i)
            text +=
                QByteArray::number(mol.sites[static_cast<std::size_t>(mcp.firstSite + i)].status);
        return text;
    }

    /// The ranks of the vertices' texts: alike in all species that can be the same.
    std::vector<zel::rules::Color> colors() const
    {
        std::vector<QByteArray> sorted = m_texts;
        std::sort(sorted.begin(), sorted.end());
        sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
        std::vector<zel::rules::Color> ranks;
        ranks.reserve(m_texts.size());
        for (const QByteArray &text : m_texts) {
            const auto at = std::lower_bound(sorted.begin(), sorted.end(), text);
            ranks.push_back({static_cast<int>(at - sorted.begin())});
        }
        return ranks;
    }

    std::vector<int> everyVertex() const
    {
        std::vector<int> vertices(m_edges.size());
        std::iota(vertices.begin(), vertices.end(), 0);
        return vertices;
    }

    const Species &m_species;
    bool m_withStates;
    std::vector<QByteArray> m_texts; ///< what tells the vertices apart
    zel::rules::Edges m_edges;
    std::vector<std::vector<int>> m_siteVertices; ///< by molecule and site
};

} // namespace

QByteArray zel::rules::identity(const Species &species, Sameness sameness)
{
    return QCryptographicHash::hash(
        SpeciesGraph(species, sameness).canonicalText(), QCryptographicHash::Sha256);
}
