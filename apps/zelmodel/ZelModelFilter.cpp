#include "apps/zelmodel/ZelModelFilter.h"

#include "apps/zelmodel/ZelModelRun.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelSpecies/SpeciesReader.h"

#include <algorithm>

using zel::species::MoleculeTypes;
using zel::species::Species;
using zel::species::SpeciesReader;

namespace {

/// A part of a name or, with "*" and "?", a whole one.
QRegularExpression namePattern(const QString &text)
{
    QString pattern = QRegularExpression::escape(text);
    if (text.contains(u'*') || text.contains(u'?')) {
        pattern.replace(QLatin1String("\\*"), QLatin1String(".*"));
        pattern.replace(QLatin1String("\\?"), QLatin1String("."));
        pattern = QLatin1String("\\A(?:") + pattern + QLatin1String(")\\z");
    }
    return QRegularExpression(pattern,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
}

bool isNamed(const MoleculeTypes::Mcp &mcp, const QString &name)
{
    return mcp.shortName == name || mcp.name == name;
}

} // namespace

ZelModelFilter::ZelModelFilter(const ZelModelRun &run)
    : m_hasName(run.isSet("name")), m_name(namePattern(run.value("name"))),
      m_mol(run.value("molecule")), m_site(run.value("site")), m_state(run.value("state"))
{
    m_hasPart = run.isSet("molecule") || run.isSet("site") || run.isSet("state");
    if (const qsizetype at = m_state.indexOf(u'~'); at >= 0) {
        m_stateMcp = m_state.left(at);
        m_state.remove(0, at + 1);
    }
}

bool ZelModelFilter::prepare(
    const MoleculeTypes &catalog, const ZelDbSqliteModel &db, QString *reason)
{
    if (!m_hasPart)
        return true;
    if (!findMcps(catalog, reason))
        return false;
    if (findSpecies(catalog, db) && findInteractions(db))
        return true;
    *reason = db.errorText();
    return false;
}

bool ZelModelFilter::findMcps(const MoleculeTypes &catalog, QString *reason)
{
    bool hasMol = false;
    for (const MoleculeTypes::Mol &mol : catalog.mols()) {
        if (!m_mol.isEmpty() && mol.name != m_mol)
            continue;
        hasMol = true;
        QSet<QString> mcps;
        QSet<QString> sites;
        QSet<QString> states;
        for (const MoleculeTypes::Mcp &mcp : mol.mcps) {
            bool hasSite = m_site.isEmpty() || isNamed(mcp, m_site);
            for (const MoleculeTypes::Part &site : mcp.sites) {
                if (m_site.isEmpty() || isNamed(mcp, m_site) || site.name == m_site) {
                    hasSite = true;
                    sites.insert(site.id);
                }
            }
            bool hasState = m_state.isEmpty();
            for (const MoleculeTypes::Part &state : mcp.states) {
                if (!m_state.isEmpty()
                    && (state.name != m_state
                        || (!m_stateMcp.isEmpty() && !isNamed(mcp, m_stateMcp))))
                    continue;
                hasState = true;
                states.insert(state.id);
            }
            if (hasSite && hasState)
                mcps.insert(mcp.id);
        }
        if ((!m_site.isEmpty() && sites.isEmpty()) || (!m_state.isEmpty() && states.isEmpty()))
            continue;
        m_mols.insert(mol.id);
        m_mcps += mcps;
        m_sites += sites;
        m_states += states;
    }
    if (!m_mols.isEmpty())
        return true;
    if (!hasMol && !m_mol.isEmpty()) {
        *reason = QLatin1String("The model has no molecule '%1'; 'zelmodel list <model> "
                                "molecules' names those that it has.")
                      .arg(m_mol);
        return false;
    }
    *reason = QStringLiteral("No molecule of the model has such a site or state; 'zelmodel list "
                             "<model> molecules' shows what they have.");
    return false;
}

bool ZelModelFilter::isWanted(const Species &species) const
{
    return std::any_of(species.mols.begin(), species.mols.end(), [this](const Species::Mol &mol) {
        if (!m_mols.contains(mol.type->id))
            return false;
        bool hasSite = m_site.isEmpty();
        bool hasState = m_state.isEmpty();
        for (const MoleculeTypes::Mcp &mcp : mol.type->mcps) {
            for (qsizetype i = 0; i < mcp.sites.size(); ++i)
                hasSite = hasSite
                    || (m_sites.contains(mcp.sites.at(i).id)
                        && mol.sites[static_cast<std::size_t>(mcp.firstSite + i)].status
                            == BindingStatusBound);
            for (qsizetype i = 0; i < mcp.states.size(); ++i)
                hasState = hasState
                    || (m_states.contains(mcp.states.at(i).id)
                        && mol.states[static_cast<std::size_t>(mcp.firstState + i)]
                            == ComponentStateOn);
        }
        return hasSite && hasState;
    });
}

bool ZelModelFilter::findSpecies(const MoleculeTypes &catalog, const ZelDbSqliteModel &db)
{
    SpeciesReader reader(catalog, db);
    const bool isAboutParts = !m_site.isEmpty() || !m_state.isEmpty();
    QSet<QString> candidates;
    const auto judgeComplex = [&](const ZelDbRecord &record) {
        const QString id = record.value(ZelDbColumn::PsiimId);
        const QStringList mols = record.value(ZelDbColumn::CpxMolCode).split(u';');
        if (std::none_of(mols.begin(), mols.end(),
                [this](const QString &mol) { return m_mols.contains(mol); }))
            return true;
        candidates.insert(id);
        // A complex has bonds and no states.
        if (!isAboutParts || (m_state.isEmpty() && isWanted(reader.readComplex(id))))
            m_complexes.insert(id);
        return true;
    };
    const auto judgeAlias = [&](const ZelDbRecord &record) {
        if (candidates.contains(record.value(ZelDbColumn::CpaCpx))
            && (!isAboutParts || isWanted(reader.readAlias(record))))
            m_aliases.insert(record.value(ZelDbColumn::PsiimId));
        return true;
    };
    return db.visitRecords(ZelDb::Cpx, {ZelDbColumn::CpxMolCode}, judgeComplex)
        && db.visitRecords(ZelDb::Cpa,
            {ZelDbColumn::CpaCpx, ZelDbColumn::CpaKey2, ZelDbColumn::CpaStateCode}, judgeAlias);
}

bool ZelModelFilter::findInteractions(const ZelDbSqliteModel &db)
{
    if (!m_state.isEmpty())
        return true;
    return db.visitRecords(ZelDb::Mli, {}, [&](const ZelDbRecord &record) {
        const QString id = record.value(ZelDbColumn::PsiimId);
        const QList<QStringList> bonds = db.mliGetArrayBstBst(id);
        for (const QStringList &bond : bonds) {
            if (m_sites.contains(bond.value(3)) || m_sites.contains(bond.value(5)))
                m_interactions.insert(id);
        }
        return true;
    });
}

bool ZelModelFilter::accepts(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    if (!kind.holds(record))
        return false;
    if (m_hasName && !m_name.match(kind.nameOf(record)).hasMatch()
        && !m_name.match(record.value(ZelDbColumn::Name)).hasMatch())
        return false;
    return !m_hasPart || acceptsPart(kind, record);
}

bool ZelModelFilter::acceptsPart(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    const QString id = record.value(ZelDbColumn::PsiimId);
    switch (kind.type) {
    case ZelDb::Mol:
        return m_mols.contains(id);
    case ZelDb::Mcp:
        return m_mcps.contains(id);
    case ZelDb::McpState:
        return m_states.contains(id)
            && (m_site.isEmpty() || m_mcps.contains(record.value(ZelDbColumn::OwnerPsiimId)));
    case ZelDb::Bst:
        return m_sites.contains(id)
            && (m_state.isEmpty() || m_mcps.contains(record.value(ZelDbColumn::OwnerPsiimId)));
    case ZelDb::Mli:
        return m_interactions.contains(id);
    case ZelDb::Cpx:
        return m_complexes.contains(id);
    case ZelDb::Cpa:
        return m_aliases.contains(id);
    case ZelDb::Seed:
        return m_aliases.contains(record.value(ZelDbColumn::SeedCpa));
    default:
        break;
    }
    if (!kind.isReaction())
        return false;
    if (m_state.isEmpty()
        && (m_sites.contains(record.value(ZelDbColumn::Bst1))
            || m_sites.contains(record.value(ZelDbColumn::Bst2))))
        return true;
    const QStringList aliases =
        ZelModelKinds::reactants(kind, record) + ZelModelKinds::products(kind, record);
    return std::any_of(aliases.begin(), aliases.end(),
        [this](const QString &alias) { return m_aliases.contains(alias); });
}
