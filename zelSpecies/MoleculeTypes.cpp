#include "zelSpecies/MoleculeTypes.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <algorithm>

namespace zel::species {

namespace {

/// A record that belongs to another one, at its place there.
struct OwnedPart
{
    int position = 0;
    ZelDbRecord record;
};

using PartsByOwner = QHash<QString, QList<OwnedPart>>;

bool readParts(const ZelDbSqliteModel &db, int type, PartsByOwner *parts)
{
    QList<int> columns{ZelDbColumn::OwnerPsiimId, ZelDbColumn::PosIndex, ZelDbColumn::ShortName,
        ZelDbColumn::Name};
    if (type == ZelDb::McpState)
        columns.append(ZelDbColumn::StateGroup);
    if (type == ZelDb::Mcp)
        columns.append(ZelDbColumn::CopyGroup);
    if (!db.visitRecords(type, columns, [parts](const ZelDbRecord &record) {
            (*parts)[record.value(ZelDbColumn::OwnerPsiimId)].append(
                {record.value(ZelDbColumn::PosIndex).toInt(), record});
            return true;
        }))
        return false;
    for (QList<OwnedPart> &list : *parts) {
        std::stable_sort(list.begin(), list.end(),
            [](const OwnedPart &a, const OwnedPart &b) { return a.position < b.position; });
    }
    return true;
}

QList<MoleculeTypes::Part> partsOf(const PartsByOwner &parts, const QString &owner, int nameColumn)
{
    QList<MoleculeTypes::Part> list;
    const QList<OwnedPart> owned = parts.value(owner);
    for (const OwnedPart &part : owned)
        list.append({part.record.value(ZelDbColumn::PsiimId), part.record.value(nameColumn),
            part.record.value(ZelDbColumn::StateGroup)});
    return list;
}

QStringList namesOf(const QList<MoleculeTypes::Part> &parts)
{
    QStringList names;
    for (const MoleculeTypes::Part &part : parts)
        names.append(part.name);
    return names;
}

QString mcpText(const MoleculeTypes::Mcp &mcp, const QStringList &states)
{
    QString text = mcp.title();
    for (const QString &state : states)
        text += u'~' + state;
    if (mcp.sites.size() > 1)
        text += QLatin1String("[%1 sites]").arg(QString::number(mcp.sites.size()));
    else if (mcp.sites.isEmpty())
        text += QLatin1String("[no site]");
    return text;
}

/// Whether two components of a molecule stand for one that it has several times: the record says
/// so, and an edit of one of them has not made them differ since.
bool areCopies(const MoleculeTypes::Mcp &a, const MoleculeTypes::Mcp &b)
{
    return !a.copyGroup.isEmpty() && a.copyGroup == b.copyGroup && a.sites.size() == b.sites.size()
        && std::equal(a.states.begin(), a.states.end(), b.states.begin(), b.states.end(),
            [](const MoleculeTypes::Part &one, const MoleculeTypes::Part &other) {
                return one.name == other.name && one.group == other.group;
            });
}

} // namespace

const MoleculeTypes::Mcp &MoleculeTypes::Mol::mcpOfSite(int site) const
{
    const auto behind = std::upper_bound(mcps.begin(), mcps.end(), site,
        [](int wanted, const Mcp &mcp) { return wanted < mcp.firstSite; });
    return *std::prev(behind);
}

QString MoleculeTypes::Mol::siteName(int site) const
{
    const Mcp &mcp = mcpOfSite(site);
    return mcp.sites.size() == 1 ? mcp.shortName : mcp.sites.at(site - mcp.firstSite).name;
}

QString MoleculeTypes::Mol::structure() const
{
    QStringList texts;
    for (const Mcp &mcp : mcps)
        texts.append(mcpText(mcp, namesOf(mcp.states)));
    return u'(' + texts.join(u',') + u')';
}

QString MoleculeTypes::Mol::sortedStructure() const
{
    QStringList texts;
    for (const Mcp &mcp : mcps) {
        QStringList states = namesOf(mcp.states);
        states.sort();
        texts.append(mcpText(mcp, states));
    }
    texts.sort();
    return u'(' + texts.join(u',') + u')';
}

bool MoleculeTypes::read(const ZelDbSqliteModel &db)
{
    PartsByOwner mcps;
    PartsByOwner states;
    PartsByOwner sites;
    m_mols.clear();
    const bool good = readParts(db, ZelDb::Mcp, &mcps) && readParts(db, ZelDb::McpState, &states)
        && readParts(db, ZelDb::Bst, &sites)
        && db.visitRecords(ZelDb::Mol, {ZelDbColumn::ShortName}, [&](const ZelDbRecord &record) {
               Mol mol;
               mol.id = record.value(ZelDbColumn::PsiimId);
               mol.name = record.value(ZelDbColumn::ShortName);
               const QList<OwnedPart> owned = mcps.value(mol.id);
               for (const OwnedPart &part : owned) {
                   Mcp mcp;
                   mcp.id = part.record.value(ZelDbColumn::PsiimId);
                   mcp.shortName = part.record.value(ZelDbColumn::ShortName);
                   mcp.name = part.record.value(ZelDbColumn::Name);
                   mcp.copyGroup = part.record.value(ZelDbColumn::CopyGroup);
                   mcp.states = partsOf(states, mcp.id, ZelDbColumn::Name);
                   mcp.sites = partsOf(sites, mcp.id, ZelDbColumn::ShortName);
                   mol.mcps.push_back(std::move(mcp));
               }
               m_mols.push_back(std::move(mol));
               return true;
           });
    number();
    return good;
}

void MoleculeTypes::number()
{
    for (std::size_t m = 0; m < m_mols.size(); ++m) {
        Mol &mol = m_mols[m];
        m_molOfId.insert(mol.id, static_cast<int>(m));
        if (!m_molOfName.contains(mol.name))
            m_molOfName.insert(mol.name, static_cast<int>(m));
        for (std::size_t c = 0; c < mol.mcps.size(); ++c) {
            Mcp &mcp = mol.mcps[c];
            mcp.group = static_cast<int>(c);
            for (std::size_t before = 0; before < c; ++before) {
                if (areCopies(mol.mcps[before], mcp)) {
                    mcp.group = static_cast<int>(before);
                    mcp.isCopy = true;
                    mol.mcps[before].isCopy = true;
                    break;
                }
            }
            mcp.firstState = mol.stateCount;
            mcp.firstSite = mol.siteCount;
            mol.stateCount += static_cast<int>(mcp.states.size());
            mol.siteCount += static_cast<int>(mcp.sites.size());
            for (qsizetype s = 0; s < mcp.sites.size(); ++s)
                m_sites.insert(
                    mcp.sites.at(s).id, {static_cast<int>(m), mcp.firstSite + static_cast<int>(s)});
        }
    }
}

void MoleculeTypes::rename(const QHash<QString, QString> &names)
{
    m_molOfName.clear();
    for (std::size_t m = 0; m < m_mols.size(); ++m) {
        m_mols[m].name = names.value(m_mols[m].id, m_mols[m].name);
        m_molOfName.insert(m_mols[m].name, static_cast<int>(m));
    }
}

const MoleculeTypes::Mol *MoleculeTypes::mol(const QString &id) const
{
    const auto at = m_molOfId.constFind(id);
    return at == m_molOfId.cend() ? nullptr : &m_mols[static_cast<std::size_t>(*at)];
}

const MoleculeTypes::Mol *MoleculeTypes::molNamed(const QString &name) const
{
    const auto at = m_molOfName.constFind(name);
    return at == m_molOfName.cend() ? nullptr : &m_mols[static_cast<std::size_t>(*at)];
}

QString MoleculeTypes::siteTitle(const QString &id) const
{
    const Site place = site(id);
    if (place.mol < 0)
        return id;
    const Mol &mol = m_mols[static_cast<std::size_t>(place.mol)];
    return mol.name + u'.' + mol.siteName(place.site);
}

} // namespace zel::species
