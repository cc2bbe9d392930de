#include "zelExchange/export/ZelBnglMolecules.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglLexer.h"

#include <algorithm>
#include <utility>

namespace {

/// What a name keeps when a number is put behind it.
constexpr qsizetype MaxNumberedLength = 240;
constexpr char OffState[] = "off";
constexpr char OnState[] = "on";

bool isAllowed(QChar c)
{
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'_');
}

} // namespace

/// A molecule component as the database has it.
struct ZelBnglMolecules::Source
{
    QString psiimId;
    QString name;
    QStringList states;
    QStringList groups; ///< of each state
    QStringList sites;
    QStringList siteNames;
    int copyOf = -1; ///< an earlier component

    bool excludesAll() const
    {
        return std::all_of(groups.begin(), groups.end(),
            [this](const QString &group) { return !group.isEmpty() && group == groups.first(); });
    }
    bool isOnePart() const { return sites.size() <= 1 && excludesAll(); }
};

QByteArray ZelBnglMolecules::allowedName(const QString &text, bool mayBeginWithDigit)
{
    QByteArray name;
    for (const QChar c : text.left(ZelBnglLexer::MaxNameLength))
        name += isAllowed(c) ? c.toLatin1() : '_';
    if (name.isEmpty())
        name = "x";
    if (!mayBeginWithDigit && name.front() >= '0' && name.front() <= '9')
        name.prepend('_');
    return name.left(ZelBnglLexer::MaxNameLength);
}

ZelBnglMolecules::ZelBnglMolecules(ZelDbSqliteModel *db, ZelExportReport *report)
    : m_db(db), m_report(*report)
{
    m_moleculeTypes.read(*m_db);
    const QStringList ids = m_db->molGetListPsiimId();
    for (const QString &id : ids)
        read(id);
}

void ZelBnglMolecules::read(const QString &molPsiimId)
{
    const ZelDbRecord record = m_db->molGetHashInfo(molPsiimId);
    QString name = record.value(ZelDbColumn::ShortName);
    if (name.isEmpty())
        name = record.value(ZelDbColumn::Name);
    if (name.isEmpty())
        name = molPsiimId;
    m_item = QStringLiteral("molecule \"%1\"").arg(name);
    m_index.insert(molPsiimId, static_cast<int>(m_types.size()));
    m_types.push_back({uniqueName(name, false, &m_names, m_item), {}});
    m_molecules.emplace_back();
    m_partNames.clear();
    const QString location = record.value(ZelDbColumn::Location);
    if (!location.isEmpty() && location != QLatin1String(ZelLocation::FreelyDiffusing)) {
        m_report.notes.append(
            {m_item, QStringLiteral("its location \"%1\" is not in the file").arg(location)});
    }
    if (const zel::species::MoleculeTypes::Mol *const mol = m_moleculeTypes.mol(molPsiimId)) {
        for (std::size_t i = 0; i < mol->mcps.size(); ++i)
            addComponent(sourceOf(mol->mcps[i], static_cast<int>(i)));
    }
}

ZelBnglMolecules::Source ZelBnglMolecules::sourceOf(
    const zel::species::MoleculeTypes::Mcp &mcp, int index) const
{
    Source source;
    source.psiimId = mcp.id;
    for (const zel::species::MoleculeTypes::Part &state : mcp.states) {
        source.states.append(state.name);
        source.groups.append(state.group);
    }
    for (const zel::species::MoleculeTypes::Part &site : mcp.sites) {
        source.sites.append(site.id);
        source.siteNames.append(site.name.isEmpty()
                ? m_db->bstGetHashInfo(site.id).value(ZelDbColumn::Name)
                : site.name);
    }
    // Copies that are several components there cannot share their names.
    const bool isCopy = mcp.isCopy && source.isOnePart();
    source.name = isCopy ? mcp.copyGroup : mcp.shortName.isEmpty() ? mcp.name : mcp.shortName;
    if (isCopy && mcp.group != index)
        source.copyOf = mcp.group;
    return source;
}

void ZelBnglMolecules::addComponent(const Source &source)
{
    const QString &name = source.name;
    m_molecules.back().components.push_back({source.psiimId, name, {}, -1});
    const QString item = QStringLiteral("component \"%1\" of %2").arg(name, m_item);
    if (source.isOnePart()) {
        if (source.sites.isEmpty() && source.states.isEmpty()) {
            // One that is called as its molecule is there to be seen only.
            if (name != QString::fromLatin1(m_types.back().name)) {
                m_report.notes.append(
                    {item, QStringLiteral("it has neither sites nor features"), true});
            }
            return;
        }
        const int part = source.copyOf >= 0
            ? addCopy(source.copyOf)
            : addPart(name, stateNames(source.states, item), !source.sites.isEmpty(), item);
        Component &component = m_molecules.back().components.back();
        component.part = part;
        for (int i = 0; i < static_cast<int>(source.states.size()); ++i)
            component.features.push_back({part, i, -1});
        for (const QString &site : source.sites)
            m_molecules.back().sites.insert(site, part);
        return;
    }
    m_report.notes.append(
        {item, QStringLiteral("its sites and features are components of their own in the file")});
    addParts(source, item);
}

void ZelBnglMolecules::addParts(const Source &source, const QString &item)
{
    const auto joined = [&](const QString &rest) { return source.name + u'_' + rest; };
    for (qsizetype i = 0; i < source.sites.size(); ++i) {
        const QString name =
            source.sites.size() == 1 ? source.name : joined(source.siteNames.at(i));
        m_molecules.back().sites.insert(source.sites.at(i), addPart(name, {}, true, item));
    }
    std::vector<Feature> &features = m_molecules.back().components.back().features;
    features.resize(static_cast<size_t>(source.states.size()));
    bool isNameFree = source.sites.size() != 1;
    for (qsizetype i = 0; i < source.states.size(); ++i) {
        const QString &group = source.groups.at(i);
        if (group.isEmpty()) {
            const int part = addPart(joined(source.states.at(i)), {OffState, OnState}, false, item);
            features[static_cast<size_t>(i)] = {part, 1, 0};
        } else if (source.groups.indexOf(group) == i) {
            QStringList states;
            for (qsizetype k = i; k < source.states.size(); ++k) {
                if (source.groups.at(k) == group)
                    states.append(source.states.at(k));
            }
            const QString name = std::exchange(isNameFree, false) ? source.name : joined(group);
            const int part = addPart(name, stateNames(states, item), false, item);
            features[static_cast<size_t>(i)] = {part, 0, -1};
        } else {
            const qsizetype before = source.groups.lastIndexOf(group, i - 1);
            features[static_cast<size_t>(i)] = features[static_cast<size_t>(before)];
            ++features[static_cast<size_t>(i)].state;
        }
    }
}

int ZelBnglMolecules::addPart(
    const QString &name, const std::vector<QByteArray> &states, bool canBind, const QString &item)
{
    std::vector<ZelBnglGraphType::Component> &components = m_types.back().components;
    const int index = static_cast<int>(components.size());
    components.push_back({uniqueName(name, true, &m_partNames, item), index, states, canBind});
    return index;
}

int ZelBnglMolecules::addCopy(int component)
{
    std::vector<ZelBnglGraphType::Component> &components = m_types.back().components;
    const int part = m_molecules.back().components[static_cast<size_t>(component)].part;
    const ZelBnglGraphType::Component copy = components[static_cast<size_t>(part)];
    components.push_back(copy);
    return static_cast<int>(components.size()) - 1;
}

QByteArray ZelBnglMolecules::uniqueName(
    const QString &text, bool mayBeginWithDigit, QSet<QByteArray> *taken, const QString &item) const
{
    const QByteArray base = allowedName(text, mayBeginWithDigit);
    QByteArray name = base;
    for (int i = 2; taken->contains(name); ++i)
        name = base.left(MaxNumberedLength) + '_' + QByteArray::number(i);
    taken->insert(name);
    if (name != text.toUtf8()) {
        m_report.notes.append({item,
            QStringLiteral("\"%1\" is %2 in the file").arg(text, QString::fromLatin1(name))});
    }
    return name;
}

std::vector<QByteArray> ZelBnglMolecules::stateNames(
    const QStringList &names, const QString &item) const
{
    QSet<QByteArray> taken;
    std::vector<QByteArray> result;
    for (const QString &name : names)
        result.push_back(uniqueName(name, true, &taken, item));
    return result;
}
