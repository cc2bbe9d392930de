#include "zelSpecies/SpeciesReader.h"

#include "zelDb/ZelDbSqliteModel.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace zel::species {

using Mcp = MoleculeTypes::Mcp;

Species SpeciesReader::readComplex(const QString &cpxPsiimId)
{
    m_problems.clear();
    Species species;
    const QStringList molIds = m_db.cpxGetListMolPsiimId(cpxPsiimId);
    if (molIds.isEmpty()) {
        m_problems.append(QStringLiteral("it has no molecules"));
        return species;
    }
    if (molIds.size() > Species::MaxMols) {
        m_problems.append(QLatin1String("its %1 molecules are too many to be looked at")
                              .arg(QString::number(molIds.size())));
        return species;
    }
    for (const QString &molId : molIds) {
        const MoleculeTypes::Mol *const type = m_catalog.mol(molId);
        if (!type) {
            m_problems.append(QLatin1String("there is no molecule %1").arg(molId));
            return {};
        }
        species.addMol(type);
    }
    const QList<QStringList> bonds = m_db.cpxGetArrayBstBst(cpxPsiimId);
    for (const QStringList &bond : bonds) {
        const MoleculeTypes::Site site1 = m_catalog.site(bond.value(1));
        const MoleculeTypes::Site site2 = m_catalog.site(bond.value(3));
        const auto belongs = [&](const QString &position, const MoleculeTypes::Site &site) {
            return site.mol >= 0
                && m_catalog.mol(molIds.value(position.toInt()))
                == &m_catalog.mols()[static_cast<std::size_t>(site.mol)];
        };
        if (!belongs(bond.value(0), site1) || !belongs(bond.value(2), site2)
            || !species.addBond(
                bond.value(0).toInt(), site1.site, bond.value(2).toInt(), site2.site)) {
            m_problems.append(
                QLatin1String("its bond of %1 and %2 joins no two free sites of its molecules")
                    .arg(m_catalog.siteTitle(bond.value(1)), m_catalog.siteTitle(bond.value(3))));
        }
    }
    return species;
}

Species SpeciesReader::readAlias(const ZelDbRecord &cpa)
{
    Species species = readComplex(cpa.value(ZelDbColumn::CpaCpx));
    applyStates(&species, cpa.value(ZelDbColumn::CpaStateCode));
    const QString key2 = cpa.value(ZelDbColumn::CpaKey2);
    const QStringList compartments = key2.split(u';');
    if (!key2.isEmpty() && static_cast<std::size_t>(compartments.size()) == species.mols.size()) {
        for (std::size_t m = 0; m < species.mols.size(); ++m)
            species.mols[m].compartment = compartments.at(static_cast<qsizetype>(m));
    }
    return species;
}

void SpeciesReader::applyStates(Species *species, const QString &stateCode)
{
    const auto refuse = [this](const QString &problem) {
        if (!m_problems.contains(problem))
            m_problems.append(problem);
    };
    if (stateCode.isEmpty() || species->mols.empty())
        return;
    if (stateCode.contains(QLatin1String("<!"))) {
        refuse(QStringLiteral("its state code is not readable"));
        return;
    }
    QXmlStreamReader reader(stateCode);
    Species::Mol *mol = nullptr;
    const Mcp *mcp = nullptr;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const int place = attributes.value(QLatin1String("pos")).toInt() - 1;
        const auto index = static_cast<std::size_t>(place);
        if (reader.name() == u"mol") {
            mol = place >= 0 && index < species->mols.size() ? &species->mols[index] : nullptr;
            mcp = nullptr;
            if (!mol)
                refuse(QStringLiteral("its state code names a molecule that it does not have"));
        } else if (reader.name() == u"mcp" && mol) {
            mcp = place >= 0 && index < mol->type->mcps.size() ? &mol->type->mcps[index] : nullptr;
            if (!mcp) {
                refuse(QStringLiteral("its state code names a component that it does not have"));
                continue;
            }
            mol->negated[index] = attributes.value(QLatin1String("not")) == u"1";
            const QList<QStringView> states =
                attributes.value(QLatin1String("states")).split(u';', Qt::SkipEmptyParts);
            if (states.size() > mcp->states.size())
                refuse(QStringLiteral("its state code names a feature that it does not have"));
            for (qsizetype i = 0; i < std::min(states.size(), mcp->states.size()); ++i) {
                mol->states[static_cast<std::size_t>(mcp->firstState + i)] =
                    states.at(i).endsWith(QLatin1String("(-)"))   ? ComponentStateOff
                    : states.at(i).endsWith(QLatin1String("(0)")) ? ComponentStateDontCare
                                                                  : ComponentStateOn;
            }
        } else if (reader.name() == u"bst" && mol && mcp) {
            const MoleculeTypes::Site site =
                m_catalog.site(attributes.value(QLatin1String("id")).toString());
            if (site.mol < 0
                || &m_catalog.mols()[static_cast<std::size_t>(site.mol)] != mol->type) {
                refuse(QStringLiteral("its state code names a site that it does not have"));
                continue;
            }
            Species::Site &end = mol->sites[static_cast<std::size_t>(site.site)];
            const QStringView status = attributes.value(QLatin1String("bindingStatus"));
            if (end.partnerMol == Species::None) {
                end.status = status == u"Bound" ? BindingStatusBound
                    : status == u"Unbound"      ? BindingStatusUnbound
                                                : BindingStatusUnspecified;
            }
        }
    }
    if (reader.hasError())
        refuse(QStringLiteral("its state code is not readable"));
}

} // namespace zel::species
