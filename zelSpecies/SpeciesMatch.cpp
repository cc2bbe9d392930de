// Whether a pattern holds of a species: a walk along the pattern's bonds that tries the copies of a
// component in turn.
#include "zelSpecies/Species.h"

#include <utility>

namespace zel::species {

namespace {

using Mcp = MoleculeTypes::Mcp;

constexpr int None = Species::None;
constexpr int MaxTries = 200000;

bool holds(int wanted, int open, int given)
{
    return wanted == open || wanted == given;
}

class Matcher
{
public:
    Matcher(const Species &pattern, const Species &species) : m_pattern(pattern), m_species(species)
    {
        m_molImage.assign(pattern.mols.size(), None);
        m_isTaken.assign(species.mols.size(), 0);
        for (const Species::Mol &mol : pattern.mols)
            m_mcpImage.emplace_back(mol.type->mcps.size(), None);
        for (const Species::Mol &mol : species.mols)
            m_isMcpTaken.emplace_back(mol.type->mcps.size(), 0);
        orderSteps();
    }

    bool run()
    {
        if (m_pattern.mols.empty() || !m_isConnected)
            return false;
        for (std::size_t root = 0; root < m_species.mols.size(); ++root) {
            Choice rootChoice;
            if (placeMol(0, static_cast<int>(root), &rootChoice) && placeAll())
                return true;
            undo(rootChoice);
        }
        return false;
    }

private:
    struct Step
    {
        int mol;
        int mcp;
    };

    /// What a step has placed, and which component it tries next.
    struct Choice
    {
        std::size_t next = 0;
        std::vector<int> mols;
        std::vector<std::pair<int, int>> mcps;
    };

    /// The components that say something, each after one that a bond joins its molecule to.
    void orderSteps()
    {
        std::vector<char> seen(m_pattern.mols.size(), 0);
        std::vector<int> open;
        if (!seen.empty()) {
            open.push_back(0);
            seen[0] = 1;
        }
        std::size_t count = 0;
        while (!open.empty()) {
            const int m = open.back();
            open.pop_back();
            ++count;
            const Species::Mol &mol = m_pattern.mols[static_cast<std::size_t>(m)];
            for (std::size_t c = 0; c < mol.type->mcps.size(); ++c) {
                if (saysSomething(mol, c))
                    m_steps.push_back({m, static_cast<int>(c)});
            }
            for (const Species::Site &site : mol.sites) {
                if (site.partnerMol != None
                    && !std::exchange(seen[static_cast<std::size_t>(site.partnerMol)], 1))
                    open.push_back(site.partnerMol);
            }
        }
        m_isConnected = count == m_pattern.mols.size();
    }

    static bool saysSomething(const Species::Mol &mol, std::size_t c)
    {
        const Mcp &mcp = mol.type->mcps[c];
        bool says = mol.negated[c];
        for (qsizetype i = 0; i < mcp.states.size(); ++i)
            says = says
                || mol.states[static_cast<std::size_t>(mcp.firstState + i)]
                    != ComponentStateDontCare;
        for (qsizetype i = 0; i < mcp.sites.size(); ++i)
            says = says
                || mol.sites[static_cast<std::size_t>(mcp.firstSite + i)].status
                    != BindingStatusUnspecified;
        return says;
    }

    bool placeAll()
    {
        std::vector<Choice> choices(1);
        while (choices.size() <= m_steps.size()) {
            const Step step = m_steps[choices.size() - 1];
            Choice &choice = choices.back();
            const std::size_t candidates =
                m_pattern.mols[static_cast<std::size_t>(step.mol)].type->mcps.size();
            bool placed = false;
            while (!placed && choice.next < candidates) {
                if (++m_tries > MaxTries)
                    return false;
                placed = tryStep(step, static_cast<int>(choice.next++), &choice);
                if (!placed)
                    undo(choice);
            }
            if (placed) {
                choices.emplace_back();
                continue;
            }
            choices.pop_back();
            if (choices.empty())
                return false;
            undo(choices.back());
        }
        return true;
    }

    bool tryStep(const Step &step, int candidate, Choice *choice)
    {
        const auto m = static_cast<std::size_t>(step.mol);
        const auto c = static_cast<std::size_t>(step.mcp);
        const Species::Mol &mol = m_pattern.mols[m];
        const int image = m_molImage[m];
        const Species::Mol &other = m_species.mols[static_cast<std::size_t>(image)];
        const Mcp &mcp = mol.type->mcps[c];
        const Mcp &target = other.type->mcps[static_cast<std::size_t>(candidate)];
        if (target.group != mcp.group
            || mol.negated[c] != other.negated[static_cast<std::size_t>(candidate)]
            || !placeMcp(step.mol, step.mcp, candidate, choice))
            return false;
        for (qsizetype i = 0; i < mcp.states.size(); ++i) {
            if (!holds(mol.states[static_cast<std::size_t>(mcp.firstState + i)],
                    ComponentStateDontCare,
                    other.states[static_cast<std::size_t>(target.firstState + i)]))
                return false;
        }
        for (qsizetype i = 0; i < mcp.sites.size(); ++i) {
            const Species::Site &wanted = mol.sites[static_cast<std::size_t>(mcp.firstSite + i)];
            const Species::Site &given =
                other.sites[static_cast<std::size_t>(target.firstSite + i)];
            if (!holds(wanted.status, BindingStatusUnspecified, given.status)
                || !placeBond(wanted, given, choice))
                return false;
        }
        return true;
    }

    bool placeBond(const Species::Site &wanted, const Species::Site &given, Choice *choice)
    {
        if (wanted.partnerMol == None)
            return true;
        if (given.partnerMol == None || !placeMol(wanted.partnerMol, given.partnerMol, choice))
            return false;
        const MoleculeTypes::Mol &wantedType =
            *m_pattern.mols[static_cast<std::size_t>(wanted.partnerMol)].type;
        const MoleculeTypes::Mol &givenType =
            *m_species.mols[static_cast<std::size_t>(given.partnerMol)].type;
        const Mcp &wantedMcp = wantedType.mcpOfSite(wanted.partnerSite);
        const Mcp &givenMcp = givenType.mcpOfSite(given.partnerSite);
        return wantedMcp.group == givenMcp.group
            && wanted.partnerSite - wantedMcp.firstSite == given.partnerSite - givenMcp.firstSite
            && placeMcp(wanted.partnerMol, static_cast<int>(&wantedMcp - wantedType.mcps.data()),
                static_cast<int>(&givenMcp - givenType.mcps.data()), choice);
    }

    bool placeMol(int mol, int image, Choice *choice)
    {
        int &place = m_molImage[static_cast<std::size_t>(mol)];
        if (place != None)
            return place == image;
        const Species::Mol &wanted = m_pattern.mols[static_cast<std::size_t>(mol)];
        const Species::Mol &given = m_species.mols[static_cast<std::size_t>(image)];
        if (m_isTaken[static_cast<std::size_t>(image)] || wanted.type != given.type
            || (!wanted.compartment.isEmpty() && wanted.compartment != given.compartment))
            return false;
        place = image;
        m_isTaken[static_cast<std::size_t>(image)] = 1;
        choice->mols.push_back(mol);
        return true;
    }

    bool placeMcp(int mol, int mcp, int image, Choice *choice)
    {
        int &place = m_mcpImage[static_cast<std::size_t>(mol)][static_cast<std::size_t>(mcp)];
        if (place != None)
            return place == image;
        char &isTaken = takenMcp(mol, image);
        if (isTaken)
            return false;
        place = image;
        isTaken = 1;
        choice->mcps.emplace_back(mol, mcp);
        return true;
    }

    char &takenMcp(int mol, int image)
    {
        const int molImage = m_molImage[static_cast<std::size_t>(mol)];
        return m_isMcpTaken[static_cast<std::size_t>(molImage)][static_cast<std::size_t>(image)];
    }

    void undo(Choice &choice)
    {
        for (const auto &[mol, mcp] : choice.mcps) {
            int &place = m_mcpImage[static_cast<std::size_t>(mol)][static_cast<std::size_t>(mcp)];
            takenMcp(mol, place) = 0;
            place = None;
        }
        for (const int mol : choice.mols) {
            int &place = m_molImage[static_cast<std::size_t>(mol)];
            m_isTaken[static_cast<std::size_t>(place)] = 0;
            place = None;
        }
        choice.mcps.clear();
        choice.mols.clear();
    }

    const Species &m_pattern;
    const Species &m_species;
    bool m_isConnected = false;
    std::vector<Step> m_steps;
    std::vector<int> m_molImage; ///< by molecule of the pattern
    std::vector<char> m_isTaken; ///< by molecule of the species
    std::vector<std::vector<int>> m_mcpImage; ///< by molecule and component of the pattern
    std::vector<std::vector<char>> m_isMcpTaken; ///< of the species
    int m_tries = 0;
};

} // namespace

bool Species::isMatchedBy(const Species &pattern, bool whole) const
{
    if (pattern.mols.size() > mols.size()
        || (whole && (pattern.mols.size() != mols.size() || pattern.bondCount() != bondCount())))
        return false;
    return Matcher(pattern, *this).run();
}

} // namespace zel::species
