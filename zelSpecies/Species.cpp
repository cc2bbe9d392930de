#include "zelSpecies/Species.h"

#include <QHash>

#include <algorithm>

namespace zel::species {

namespace {

using Mol = Species::Mol;
using Mcp = MoleculeTypes::Mcp;

QString statesText(const Mol &mol, const Mcp &mcp)
{
    QString set;
    QString excluded;
    int setCount = 0;
    int openCount = 0;
    for (qsizetype i = 0; i < mcp.states.size(); ++i) {
        const int state = mol.states[static_cast<std::size_t>(mcp.firstState + i)];
        const QString &name = mcp.states.at(i).name;
        if (state == ComponentStateOn) {
            set += u'~' + name;
            ++setCount;
        } else if (state == ComponentStateOff) {
            excluded += u'~' + name + QLatin1String("(-)");
        } else {
            ++openCount;
        }
    }
    // One of several that exclude each other needs no mention of the others.
    return setCount == 1 && openCount == 0 ? set : set + excluded;
}

/// Numbers the bonds of a text as they come.
class BondLabels
{
public:
    QString label(int mol, int site, const Species::Site &end)
    {
        const auto own = std::pair(mol, site);
        const auto other = std::pair(end.partnerMol, end.partnerSite);
        const auto key = std::min(own, other);
        const auto at = m_labels.constFind(key);
        const int number = at == m_labels.cend() ? static_cast<int>(m_labels.size()) + 1 : *at;
        m_labels.insert(key, number);
        return u'!' + QString::number(number);
    }

private:
    QHash<std::pair<int, int>, int> m_labels;
};

} // namespace

void Species::addMol(const MoleculeTypes::Mol *type)
{
    Mol mol;
    mol.type = type;
    mol.states.assign(static_cast<std::size_t>(type->stateCount), ComponentStateDontCare);
    mol.negated.assign(type->mcps.size(), 0);
    mol.sites.resize(static_cast<std::size_t>(type->siteCount));
    mols.push_back(std::move(mol));
}

bool Species::addBond(int mol1, int site1, int mol2, int site2)
{
    const auto end = [this](int mol, int site) -> Site * {
        if (mol < 0 || static_cast<std::size_t>(mol) >= mols.size())
            return nullptr;
        std::vector<Site> &sites = mols[static_cast<std::size_t>(mol)].sites;
        if (site < 0 || static_cast<std::size_t>(site) >= sites.size())
            return nullptr;
        return &sites[static_cast<std::size_t>(site)];
    };
    Site *const first = end(mol1, site1);
    Site *const second = end(mol2, site2);
    if (!first || !second || first == second || first->partnerMol != None
        || second->partnerMol != None)
        return false;
    *first = {BindingStatusBound, mol2, site2};
    *second = {BindingStatusBound, mol1, site1};
    return true;
}

int Species::bondCount() const
{
    int ends = 0;
    for (const Mol &mol : mols) {
        for (const Site &site : mol.sites)
            ends += site.partnerMol == None ? 0 : 1;
    }
    return ends / 2;
}

std::vector<Species::Bond> Species::bonds() const
{
    std::vector<Bond> list;
    for (int m = 0; m < static_cast<int>(mols.size()); ++m) {
        const std::vector<Site> &sites = mols[static_cast<std::size_t>(m)].sites;
        for (int s = 0; s < static_cast<int>(sites.size()); ++s) {
            const Site &site = sites[static_cast<std::size_t>(s)];
            if (site.partnerMol != None
                && std::pair(m, s) < std::pair(site.partnerMol, site.partnerSite))
                list.push_back({m, s, site.partnerMol, site.partnerSite});
        }
    }
    return list;
}

QString Species::text() const
{
    BondLabels labels;
    QStringList molTexts;
    for (std::size_t m = 0; m < mols.size(); ++m) {
        const Mol &mol = mols[m];
        QStringList parts;
        for (std::size_t c = 0; c < mol.type->mcps.size(); ++c) {
            const Mcp &mcp = mol.type->mcps[c];
            QString states = statesText(mol, mcp);
            if (mol.negated[c])
                states += QLatin1String("(not)");
            QStringList sites;
            for (qsizetype i = 0; i < mcp.sites.size(); ++i) {
                const int number = mcp.firstSite + static_cast<int>(i);
                const Site &site = mol.sites[static_cast<std::size_t>(number)];
                const QString bond = site.partnerMol != None
                    ? labels.label(static_cast<int>(m), number, site)
                    : site.status == BindingStatusBound   ? QStringLiteral("!+")
                    : site.status == BindingStatusUnbound ? QString()
                                                          : QStringLiteral("!?");
                const bool isOpen = bond == QLatin1String("!?");
                // The only site of a component goes by the component's name.
                if (mcp.sites.size() == 1 && (!isOpen || !states.isEmpty()))
                    states = mcp.title() + states + bond;
                else if (!isOpen)
                    sites.append(mcp.sites.at(i).name + bond);
            }
            if (mcp.sites.size() != 1 && !states.isEmpty())
                states.prepend(mcp.title());
            if (!states.isEmpty())
                parts.append(states);
            parts += sites;
        }
        molTexts.append(mol.type->name + u'(' + parts.join(u',') + u')'
            + (mol.compartment.isEmpty() ? QString() : u'@' + mol.compartment));
    }
    return molTexts.join(u'.');
}

} // namespace zel::species
