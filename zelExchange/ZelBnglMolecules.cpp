#include "zelExchange/ZelBnglMolecules.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/ZelBnglLexer.h"

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

/// Whether an import gave that short name to a copy of the component of that name.
bool isCopyName(const QString &shortName, const QString &name)
{
    if (name.isEmpty() || !shortName.startsWith(name))
        return false;
    const QStringView rest = QStringView(shortName).sliced(name.size());
    return rest.isEmpty()
        || (rest.size() > 1 && rest.front() == u'_'
            && std::all_of(
                rest.begin() + 1, rest.end(), [](QChar c) { return c >= u'0' && c <= u'9'; }));
}

} // namespace

/// A molecule component as the database has it.
struct ZelBnglMolecules::Source
{
    QString psiimId;
    QString name;
    QString shortName;
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
    bool isLike(const Source &other) const
    {
        return isOnePart() && other.isOnePart() && states == other.states
            && sites.size() == other.sites.size();
    }
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
    std::vector<Source> sources;
    const QStringList ids = m_db->molGetListMcpPsiimId(molPsiimId);
    for (const QString &id : ids)
        sources.push_back(readComponent(id));
    findCopies(&sources);
    for (const Source &source : sources)
        addComponent(source);
}

ZelBnglMolecules::Source ZelBnglMolecules::readComponent(const QString &mcpPsiimId) const
{
    const ZelDbRecord record = m_db->mcpGetHashInfo(mcpPsiimId);
    Source source;
    source.psiimId = mcpPsiimId;
    source.name = record.value(ZelDbColumn::Name);
    source.shortName = record.value(ZelDbColumn::ShortName);
    const QList<ZelDbState> states = m_db->mcpGetOrderedStates(mcpPsiimId);
    for (const ZelDbState &state : states) {
        source.states.append(state.name);
        source.groups.append(m_db->mcpStateGetExclusionGroup(state.psiimId));
    }
    source.sites = m_db->bstGetListPsiimIdBasedOnMcp(mcpPsiimId);
    for (const QString &site : source.sites) {
        const ZelDbRecord siteRecord = m_db->bstGetHashInfo(site);
        const QString name = siteRecord.value(ZelDbColumn::ShortName);
        source.siteNames.append(name.isEmpty() ? siteRecord.value(ZelDbColumn::Name) : name);
    }
    return source;
}

void ZelBnglMolecules::findCopies(std::vector<Source> *sources)
{
    QHash<QString, int> first; // by given name
    QSet<QString> taken;
    int index = 0;
    for (Source &source : *sources) {
        const bool hasCopyName =
            isCopyName(source.shortName, source.name) && !taken.contains(source.shortName);
        taken.insert(source.shortName);
        const int known = hasCopyName ? first.value(source.name, -1) : -1;
        if (hasCopyName && known < 0)
            first.insert(source.name, index);
        else if (known >= 0 && source.isLike((*sources)[static_cast<size_t>(known)]))
            source.copyOf = known;
        else if (!source.shortName.isEmpty())
            source.name = source.shortName;
        ++index;
    }
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
