#include "apps/zelmodel/ZelModelReportWords.h"

#include <QHash>

using zel::species::MoleculeTypes;
using zel::species::Species;

namespace {

QString sentence(const QString &title, const QStringList &parts)
{
    return parts.isEmpty()
        ? QString()
        : u' ' + title + QLatin1String(": ") + parts.join(QLatin1String(", ")) + u'.';
}

} // namespace

ZelModelReportWords::ZelModelReportWords(const Species &species)
    : m_species(species), m_numbers(species.mols.size(), 0)
{
    QHash<const MoleculeTypes::Mol *, int> counts;
    for (std::size_t m = 0; m < species.mols.size(); ++m)
        m_numbers[m] = ++counts[species.mols[m].type];
    for (std::size_t m = 0; m < species.mols.size(); ++m) {
        if (counts.value(species.mols[m].type) == 1)
            m_numbers[m] = 0;
    }
}

QString ZelModelReportWords::molTitle(int mol) const
{
    const auto m = static_cast<std::size_t>(mol);
    const QString &name = m_species.mols[m].type->name;
    return m_numbers[m] == 0 ? name
                             : name + QLatin1String(" (%1)").arg(QString::number(m_numbers[m]));
}

QString ZelModelReportWords::siteTitle(int mol, int site) const
{
    return molTitle(mol) + u' '
        + m_species.mols[static_cast<std::size_t>(mol)].type->siteName(site);
}

QStringList ZelModelReportWords::molecules() const
{
    QStringList texts;
    std::vector<const MoleculeTypes::Mol *> types;
    QHash<const MoleculeTypes::Mol *, int> counts;
    for (const Species::Mol &mol : m_species.mols) {
        if (++counts[mol.type] == 1)
            types.push_back(mol.type);
    }
    for (const MoleculeTypes::Mol *const type : types) {
        const int count = counts.value(type);
        texts.append(count == 1 ? type->name : QString::number(count) + u' ' + type->name);
    }
    return texts;
}

QStringList ZelModelReportWords::states() const
{
    QStringList texts;
    for (std::size_t m = 0; m < m_species.mols.size(); ++m) {
        const Species::Mol &mol = m_species.mols[m];
        for (std::size_t c = 0; c < mol.type->mcps.size(); ++c) {
            const MoleculeTypes::Mcp &mcp = mol.type->mcps[c];
            QStringList on;
            QStringList off;
            for (qsizetype i = 0; i < mcp.states.size(); ++i) {
                const int state = mol.states[static_cast<std::size_t>(mcp.firstState + i)];
                if (state == ComponentStateOn)
                    on.append(mcp.states.at(i).name);
                else if (state == ComponentStateOff)
                    off.append(QLatin1String("not ") + mcp.states.at(i).name);
            }
            // A state that is on says of most components all that there is to say.
            const QStringList &said = on.isEmpty() ? off : on;
            if (said.isEmpty() && !mol.negated[c])
                continue;
            texts.append(molTitle(static_cast<int>(m)) + u' ' + mcp.shortName
                + (said.isEmpty() ? QString()
                                  : QLatin1String(": ") + said.join(QLatin1String(" and ")))
                + (mol.negated[c] ? QLatin1String(" (negated)") : QLatin1String()));
        }
    }
    return texts;
}

QStringList ZelModelReportWords::bonds() const
{
    QStringList texts;
    for (const Species::Bond &bond : m_species.bonds()) {
        texts.append(siteTitle(bond.mol1, bond.site1) + QStringLiteral(" \u2013 ")
            + siteTitle(bond.mol2, bond.site2));
    }
    return texts;
}

QStringList ZelModelReportWords::sitesOf(int status) const
{
    QStringList texts;
    for (std::size_t m = 0; m < m_species.mols.size(); ++m) {
        const std::vector<Species::Site> &sites = m_species.mols[m].sites;
        for (std::size_t s = 0; s < sites.size(); ++s) {
            if (sites[s].partnerMol == Species::None && sites[s].status == status)
                texts.append(siteTitle(static_cast<int>(m), static_cast<int>(s)));
        }
    }
    return texts;
}

QStringList ZelModelReportWords::boundSites() const
{
    return sitesOf(BindingStatusBound);
}

QStringList ZelModelReportWords::freeSites() const
{
    return sitesOf(BindingStatusUnbound);
}

QStringList ZelModelReportWords::compartments() const
{
    QStringList texts;
    for (std::size_t m = 0; m < m_species.mols.size(); ++m) {
        if (!m_species.mols[m].compartment.isEmpty())
            texts.append(molTitle(static_cast<int>(m)) + QLatin1String(" in ")
                + m_species.mols[m].compartment);
    }
    return texts;
}

QString ZelModelReportWords::drawing() const
{
    return QLatin1String("Drawing of ")
        + (m_species.mols.empty() ? QStringLiteral("a complex")
                                  : molecules().join(QLatin1String(", ")))
        + u'.' + sentence(QStringLiteral("States"), states())
        + sentence(QStringLiteral("Bonds"), bonds())
        + sentence(QStringLiteral("Bound to something"), boundSites())
        + sentence(QStringLiteral("Free sites"), freeSites());
}

QString ZelModelReportWords::of(const MoleculeTypes::Mol &mol)
{
    QStringList components;
    for (const MoleculeTypes::Mcp &mcp : mol.mcps) {
        QStringList states;
        for (const MoleculeTypes::Part &state : mcp.states)
            states.append(state.name);
        QString text = mcp.shortName;
        if (!states.isEmpty())
            text += QLatin1String(" with states ") + states.join(QLatin1String(" and "));
        if (mcp.sites.isEmpty())
            text += QLatin1String(" without binding sites");
        components.append(text);
    }
    return QLatin1String("Drawing of ") + mol.name + u'.'
        + sentence(QStringLiteral("Components"), components);
}
