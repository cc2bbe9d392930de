#include "zelExchange/import/ZelBnglTypes.h"

#include <QSet>

#include <algorithm>
#include <map>

namespace {

void addState(std::vector<quint32> *states, quint32 state)
{
    // More than are allowed are refused, and not searched before.
    if (state >= ZelBnglNames::FirstFree && states->size() <= ZelBnglTypes::MaxParts
        && std::find(states->begin(), states->end(), state) == states->end())
        states->push_back(state);
}

/// What patterns say of a molecule that no type declares.
struct Use
{
    quint32 offset = 0;
    std::map<quint32, quint32> copies; ///< by name: as many as one molecule has at most
};

} // namespace

int ZelBnglType::findGroup(quint32 wanted) const
{
    for (size_t i = 0; i < sites.size(); ++i) {
        if (sites[i].name == wanted)
            return static_cast<int>(i);
    }
    return -1;
}

ZelBnglTypes::ZelBnglTypes(const ZelBnglModel &model)
{
    if (!declare(model) || !infer(model))
        return;
    nameSites(model);
    findStates(model);
}

bool ZelBnglTypes::declare(const ZelBnglModel &model)
{
    for (const ZelBnglMoleculeType &declared : model.moleculeTypes) {
        const ZelBnglMolecule &molecule = model.molecules[declared.molecule];
        if (m_index.contains(molecule.name))
            continue;
        ZelBnglType type;
        type.name = molecule.name;
        type.offset = declared.offset;
        type.isDeclared = true;
        if (!checkParts(model, type, molecule.components.count, MaxSites))
            return false;
        for (const ZelBnglComponent &component : model.componentsOf(molecule)) {
            ZelBnglTypeSite site;
            site.name = component.name;
            type.sites.push_back(site);
        }
        m_index.insert(type.name, static_cast<int>(types.size()));
        types.push_back(type);
    }
    return true;
}

bool ZelBnglTypes::infer(const ZelBnglModel &model)
{
    std::map<quint32, Use> uses;
    for (const ZelBnglMolecule &molecule : model.molecules) {
        if (m_index.contains(molecule.name))
            continue;
        Use &use = uses.try_emplace(molecule.name, Use{molecule.offset, {}}).first->second;
        std::map<quint32, quint32> copies;
        for (const ZelBnglComponent &component : model.componentsOf(molecule)) {
            quint32 &most = use.copies[component.name];
            most = std::max(most, ++copies[component.name]);
        }
    }
    const auto byName = [&model](const auto &a, const auto &b) {
        return model.name(a.first).compare(model.name(b.first)) < 0;
    };
    std::vector<std::pair<quint32, Use>> sorted(uses.begin(), uses.end());
    std::sort(sorted.begin(), sorted.end(), byName);
    for (const auto &[name, use] : sorted) {
        ZelBnglType type;
        type.name = name;
        type.offset = use.offset;
        std::vector<std::pair<quint32, quint32>> components(use.copies.begin(), use.copies.end());
        std::sort(components.begin(), components.end(), byName);
        for (const auto &[component, count] : components) {
            if (!checkParts(model, type, type.sites.size() + count, MaxSites))
                return false;
            ZelBnglTypeSite site;
            site.name = component;
            type.sites.insert(type.sites.end(), count, site);
        }
        m_index.insert(name, static_cast<int>(types.size()));
        types.push_back(type);
    }
    return true;
}

void ZelBnglTypes::nameSites(const ZelBnglModel &model)
{
    for (ZelBnglType &type : types) {
        QHash<quint32, int> first;
        QSet<QString> taken;
        for (const ZelBnglTypeSite &site : type.sites)
            taken.insert(QString::fromLatin1(model.name(site.name)));
        for (size_t i = 0; i < type.sites.size(); ++i) {
            ZelBnglTypeSite &site = type.sites[i];
            const QString name = QString::fromLatin1(model.name(site.name));
            site.shortName = name;
            if (!first.contains(site.name)) {
                first.insert(site.name, static_cast<int>(i));
            } else {
                for (int copy = 2; taken.contains(site.shortName); ++copy)
                    site.shortName = name + u'_' + QString::number(copy);
                taken.insert(site.shortName);
            }
            site.group = first.value(site.name);
        }
    }
}

void ZelBnglTypes::addUse(const ZelBnglModel &model, const ZelBnglMolecule &molecule)
{
    ZelBnglType &type = types[static_cast<size_t>(find(molecule.name))];
    for (const ZelBnglComponent &component : model.componentsOf(molecule)) {
        const int group = type.findGroup(component.name);
        if (group < 0)
            continue; // the pattern is refused where it is used
        ZelBnglTypeSite &site = type.sites[static_cast<size_t>(group)];
        for (const quint32 state : ZelBnglModel::items(model.states, component.states))
            addState(&site.states, state);
        for (const ZelBnglBond &bond : ZelBnglModel::items(model.bonds, component.bonds))
            site.canBind = site.canBind || bond.label != ZelBnglNames::Any;
    }
}

void ZelBnglTypes::findStates(const ZelBnglModel &model)
{
    // The declared order of states comes first.
    for (const ZelBnglMoleculeType &declared : model.moleculeTypes)
        addUse(model, model.molecules[declared.molecule]);
    for (const ZelBnglMolecule &molecule : model.molecules)
        addUse(model, molecule);
    for (ZelBnglType &type : types) {
        size_t parts = type.sites.size();
        for (ZelBnglTypeSite &site : type.sites) {
            const ZelBnglTypeSite &first = type.sites[static_cast<size_t>(site.group)];
            if (!type.isDeclared && &site == &first) {
                // The order of first use is no order.
                std::sort(site.states.begin(), site.states.end(),
                    [&](quint32 a, quint32 b) { return model.name(a).compare(model.name(b)) < 0; });
            }
            site.states = first.states;
            site.canBind = first.canBind || first.states.empty();
            parts += site.states.size();
        }
        if (!checkParts(model, type, parts, MaxParts))
            return;
    }
}

bool ZelBnglTypes::checkParts(
    const ZelBnglModel &model, const ZelBnglType &type, size_t parts, size_t most)
{
    if (parts <= most)
        return true;
    return m_fault.set(type.offset,
        QStringLiteral("The molecule %1 has more than %2 %3, which cannot be drawn. Split it into "
                       "several molecules.")
            .arg(ZelBnglLexer::quoted(model.name(type.name)))
            .arg(most)
            .arg(most == MaxSites ? QStringLiteral("components")
                                  : QStringLiteral("components and states")));
}
