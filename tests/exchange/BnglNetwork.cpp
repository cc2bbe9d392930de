#include "BnglNetwork.h"

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <set>

namespace {

using Mol = BnglNetwork::Mol;
using Site = BnglNetwork::Site;
using Species = BnglNetwork::Species;
using End = std::pair<int, int>;

/// Colours of molecules and sites, made finer by those of their neighbours until nothing changes.
using Colors = std::vector<int>;

struct Vertices
{
    std::vector<std::vector<int>> edges;
    std::vector<QByteArray> labels;

    Vertices(const ZelBnglModel &model, const Species &species)
    {
        std::vector<std::vector<int>> sites;
        for (const Mol &mol : species) {
            const int own = add(model.name(mol.name).toByteArray() + '@'
                + model.name(mol.compartment).toByteArray());
            std::vector<int> numbers;
            for (const Site &site : mol.sites) {
                numbers.push_back(add('.' + model.name(site.name).toByteArray() + '~'
                    + model.name(site.state).toByteArray()));
                join(own, numbers.back());
            }
            sites.push_back(numbers);
        }
        for (size_t m = 0; m < species.size(); ++m) {
            for (size_t s = 0; s < species[m].sites.size(); ++s) {
                const Site &site = species[m].sites[s];
                if (site.mol >= 0)
                    edges[size_t(sites[m][s])].push_back(
                        sites[size_t(site.mol)][size_t(site.site)]);
            }
        }
    }

    int add(const QByteArray &label)
    {
        edges.emplace_back();
        labels.push_back(label);
        return int(edges.size()) - 1;
    }
    void join(int a, int b)
    {
        edges[size_t(a)].push_back(b);
        edges[size_t(b)].push_back(a);
    }

    template <typename Key>
    static Colors number(const std::vector<Key> &keys)
    {
        std::map<Key, int> numbers;
        for (const Key &key : keys)
            numbers[key] = 0;
        int next = 0;
        for (auto &[key, value] : numbers)
            value = next++;
        Colors colors;
        for (const Key &key : keys)
            colors.push_back(numbers[key]);
        return colors;
    }

    Colors refine(Colors colors) const
    {
        for (size_t classes = 0;;) {
            std::vector<std::pair<int, std::vector<int>>> keys;
            for (size_t v = 0; v < edges.size(); ++v) {
                std::vector<int> around;
                for (const int neighbor : edges[v])
                    around.push_back(colors[size_t(neighbor)]);
                std::sort(around.begin(), around.end());
                keys.emplace_back(colors[v], around);
            }
            colors = number(keys);
            const size_t now = std::set<int>(colors.begin(), colors.end()).size();
            if (now == classes)
                return colors;
            classes = now;
        }
    }

    /// The least text over all ways to tell like vertices apart.
    void search(const Colors &colors, QByteArray *best) const
    {
        std::map<int, std::vector<int>> classes;
        for (size_t v = 0; v < colors.size(); ++v)
            classes[colors[v]].push_back(int(v));
        const auto open = std::find_if(classes.begin(), classes.end(),
            [](const auto &entry) { return entry.second.size() > 1; });
        if (open != classes.end()) {
            for (const int chosen : open->second) {
                Colors finer = colors;
                for (int &color : finer)
                    color *= 2;
                --finer[size_t(chosen)];
                search(refine(finer), best);
            }
            return;
        }
        QByteArray text;
        for (const auto &[color, members] : classes) {
            const auto v = size_t(members.front());
            std::vector<int> around;
            for (const int neighbor : edges[v])
                around.push_back(
                    int(std::distance(classes.begin(), classes.find(colors[size_t(neighbor)]))));
            std::sort(around.begin(), around.end());
            text += labels[v];
            for (const int neighbor : around)
                text += ' ' + QByteArray::number(neighbor);
            text += ';';
        }
        if (best->isEmpty() || text < *best)
            *best = text;
    }
};

/// A pattern of a rule's left side: conditions on molecules and their sites.
struct Pattern
{
    struct Place
    {
        quint32 name = 0;
        quint32 state = 0; ///< 0 for any
        quint32 bond = ZelBnglNames::None; ///< None for no bond
        int mol = -1; ///< partner in the pattern
        int site = -1;
        quint32 label = 0;
    };
    struct Part
    {
        quint32 name = 0;
        quint32 compartment = 0;
        quint32 label = 0;
        std::vector<Place> places;
    };
    std::vector<Part> parts;
    std::vector<int> patternOf;
};

Pattern read(const ZelBnglModel &model, ZelBnglRange side)
{
    Pattern result;
    int pattern = -1;
    for (const ZelBnglPattern &source : ZelBnglModel::items(model.patterns, side)) {
        ++pattern;
        std::map<quint32, End> ends;
        for (const ZelBnglMolecule &molecule : model.moleculesOf(source)) {
            Pattern::Part part{molecule.name,
                molecule.compartment ? molecule.compartment : source.compartment, molecule.label,
                {}};
            for (quint32 c = 0; c < molecule.components.count; ++c) {
                const quint32 index = molecule.components.first + c;
                const ZelBnglComponent &component = model.components[index];
                Pattern::Place place;
                place.name = component.name;
                place.label = component.label;
                if (component.states.count > 0) {
                    const quint32 state = model.states[component.states.first];
                    place.state = state == ZelBnglNames::Any ? 0 : state;
                }
                if (component.bonds.count > 0)
                    place.bond = model.bonds[component.bonds.first].label;
                ends[index] = {int(result.parts.size()), int(part.places.size())};
                part.places.push_back(place);
            }
            result.parts.push_back(part);
            result.patternOf.push_back(pattern);
        }
        for (const auto &[index, end] : ends) {
            const ZelBnglComponent &component = model.components[index];
            if (component.bonds.count == 0
                || model.bonds[component.bonds.first].label < ZelBnglNames::FirstFree)
                continue;
            const End partner = ends.at(model.bonds[component.bonds.first].partner);
            Pattern::Place &place = result.parts[size_t(end.first)].places[size_t(end.second)];
            place.mol = partner.first;
            place.site = partner.second;
        }
    }
    return result;
}

} // namespace

/// Where a pattern's molecules and components are in a species.
struct BnglNetwork::Match
{
    int species = 0;
    std::vector<int> mols;
    std::vector<std::vector<int>> sites;
};

struct BnglNetwork::Rule
{
    Pattern left;
    Pattern right;
    int reactants = 0;
    int products = 0;
    std::vector<int> rightOf; ///< part of the right side, -1 when removed
    std::vector<int> leftOf;
    std::vector<std::vector<int>> placeOnRight;
    std::vector<End> center; ///< parts and places that change; place -1 for the molecule itself
    bool deletesMolecules = false;
    QString rate;
    double symmetry = 1;

    void map();
    void findCenter();
    void countSymmetry();
    End rightEnd(const End &end) const
    {
        const int part = rightOf[size_t(end.first)];
        return part < 0 ? End(-1, -1)
                        : End(part, placeOnRight[size_t(end.first)][size_t(end.second)]);
    }
};

namespace {

/// All ways to put the parts of a pattern onto molecules and their places onto sites.
template <typename Accept>
void eachAssignment(const Pattern &pattern, const std::vector<int> &parts, size_t molCount,
    const std::function<bool(int part, int mol)> &fitsMol,
    const std::function<bool(int part, int place, int mol, int site)> &fitsSite,
    const std::function<int(int mol)> &siteCount, Accept &&accept)
{
    std::vector<int> mols(pattern.parts.size(), -1);
    std::vector<std::vector<int>> sites(pattern.parts.size());
    std::vector<char> used(molCount, 0);
    std::function<void(size_t)> nextPart;
    std::function<void(size_t, size_t)> nextPlace = [&](size_t i, size_t p) {
        const int part = parts[i];
        if (p == pattern.parts[size_t(part)].places.size()) {
            nextPart(i + 1);
            return;
        }
        std::vector<int> &own = sites[size_t(part)];
        for (int s = 0; s < siteCount(mols[size_t(part)]); ++s) {
            if (std::find(own.begin(), own.end(), s) != own.end()
                || !fitsSite(part, int(p), mols[size_t(part)], s))
                continue;
            own.push_back(s);
            nextPlace(i, p + 1);
            own.pop_back();
        }
    };
    nextPart = [&](size_t i) {
        if (i == parts.size()) {
            accept(mols, sites);
            return;
        }
        for (size_t m = 0; m < molCount; ++m) {
            if (used[m] || !fitsMol(parts[i], int(m)))
                continue;
            used[m] = 1;
            mols[size_t(parts[i])] = int(m);
            nextPlace(i, 0);
            mols[size_t(parts[i])] = -1;
            used[m] = 0;
        }
    };
    nextPart(0);
}

/// Whether the bonds that a pattern names are there between what its places were put on.
template <typename PartnerOf>
bool hasBonds(const Pattern &pattern, const std::vector<int> &parts, const std::vector<int> &mols,
    const std::vector<std::vector<int>> &sites, PartnerOf &&partnerOf)
{
    for (const int part : parts) {
        for (size_t p = 0; p < pattern.parts[size_t(part)].places.size(); ++p) {
            const Pattern::Place &place = pattern.parts[size_t(part)].places[p];
            if (place.mol < 0)
                continue;
            const End wanted(mols[size_t(place.mol)], sites[size_t(place.mol)][size_t(place.site)]);
            if (partnerOf(mols[size_t(part)], sites[size_t(part)][p]) != wanted)
                return false;
        }
    }
    return true;
}

} // namespace

void BnglNetwork::Rule::map()
{
    rightOf.assign(left.parts.size(), -1);
    leftOf.assign(right.parts.size(), -1);
    placeOnRight.resize(left.parts.size());
    for (size_t r = 0; r < right.parts.size(); ++r) {
        for (size_t l = 0; l < left.parts.size() && leftOf[r] < 0; ++l) {
            if (rightOf[l] < 0 && left.parts[l].name == right.parts[r].name
                && left.parts[l].label == right.parts[r].label) {
                rightOf[l] = int(r);
                leftOf[r] = int(l);
            }
        }
    }
    for (size_t l = 0; l < left.parts.size(); ++l) {
        if (rightOf[l] < 0)
            continue;
        const Pattern::Part &other = right.parts[size_t(rightOf[l])];
        std::vector<char> taken(other.places.size(), 0);
        for (const Pattern::Place &place : left.parts[l].places) {
            int found = -1;
            for (size_t p = 0; p < other.places.size() && found < 0; ++p) {
                if (!taken[p] && other.places[p].name == place.name
                    && other.places[p].label == place.label)
                    found = int(p);
            }
            if (found >= 0)
                taken[size_t(found)] = 1;
            placeOnRight[l].push_back(found);
        }
    }
}

void BnglNetwork::Rule::findCenter()
{
    for (int l = 0; l < int(left.parts.size()); ++l) {
        const Pattern::Part &part = left.parts[size_t(l)];
        const int other = rightOf[size_t(l)];
        if (other < 0 || right.parts[size_t(other)].compartment != part.compartment)
            center.emplace_back(l, -1);
        for (int p = 0; p < int(part.places.size()) && other >= 0; ++p) {
            const Pattern::Place &before = part.places[size_t(p)];
            const End end = rightEnd({l, p});
            const Pattern::Place &after = right.parts[size_t(end.first)].places[size_t(end.second)];
            const End partner = before.mol < 0 ? End(-1, -1) : rightEnd({before.mol, before.site});
            if (before.state != after.state || partner != End(after.mol, after.site))
                center.emplace_back(l, p);
        }
    }
}

void BnglNetwork::Rule::countSymmetry()
{
    std::vector<int> all(left.parts.size());
    std::iota(all.begin(), all.end(), 0);
    const auto placeAt = [&](int part, int place) -> const Pattern::Place & {
        return left.parts[size_t(part)].places[size_t(place)];
    };
    const auto after = [&](int part, int place) {
        const End end = rightEnd({part, place});
        return end.second < 0 ? Pattern::Place()
                              : right.parts[size_t(end.first)].places[size_t(end.second)];
    };
    const auto compartmentAfter = [&](int part) {
        return rightOf[size_t(part)] < 0 ? 0
                                         : right.parts[size_t(rightOf[size_t(part)])].compartment;
    };
    const auto kind = [](const Pattern::Place &place) {
        return place.mol >= 0 ? quint32(ZelBnglNames::FirstFree) : place.bond;
    };
    const auto partnerAfter = [&](int part, int place) {
        // In terms of the left side.
        const Pattern::Place own = after(part, place);
        if (own.mol < 0)
            return End(-1, -1);
        for (size_t l = 0; l < left.parts.size(); ++l) {
            for (size_t p = 0; p < left.parts[l].places.size(); ++p) {
                if (rightEnd({int(l), int(p)}) == End(own.mol, own.site))
                    return End(int(l), int(p));
            }
        }
        return End(-1, -1);
    };
    std::set<std::vector<End>> images; // of the center
    eachAssignment(
        left, all, left.parts.size(),
        [&](int part, int mol) {
            const Pattern::Part &a = left.parts[size_t(part)];
            const Pattern::Part &b = left.parts[size_t(mol)];
            return a.name == b.name && a.compartment == b.compartment
                && a.places.size() == b.places.size()
                && (rightOf[size_t(part)] < 0) == (rightOf[size_t(mol)] < 0)
                && compartmentAfter(part) == compartmentAfter(mol);
        },
        [&](int part, int place, int mol, int site) {
            const Pattern::Place &a = placeAt(part, place);
            const Pattern::Place &b = placeAt(mol, site);
            const Pattern::Place afterA = after(part, place);
            const Pattern::Place afterB = after(mol, site);
            return a.name == b.name && a.state == b.state && kind(a) == kind(b)
                && afterA.state == afterB.state && kind(afterA) == kind(afterB);
        },
        [&](int mol) { return int(left.parts[size_t(mol)].places.size()); },
        [&](const std::vector<int> &mols, const std::vector<std::vector<int>> &sites) {
            bool good = hasBonds(left, all, mols, sites, [&](int mol, int site) {
                return End(placeAt(mol, site).mol, placeAt(mol, site).site);
            });
            for (size_t a = 0; a < mols.size(); ++a) {
                for (size_t b = 0; b < mols.size(); ++b) {
                    good = good
                        && (left.patternOf[a] == left.patternOf[b])
                            == (left.patternOf[size_t(mols[a])] == left.patternOf[size_t(mols[b])]);
                }
                for (size_t p = 0; p < left.parts[a].places.size(); ++p) {
                    const End partner = partnerAfter(int(a), int(p));
                    const End image = partner.first < 0
                        ? partner
                        : End(mols[size_t(partner.first)],
                            sites[size_t(partner.first)][size_t(partner.second)]);
                    good = good && partnerAfter(mols[a], sites[a][p]) == image;
                }
            }
            std::vector<End> image;
            for (const auto &[part, place] : center) {
                image.emplace_back(
                    mols[size_t(part)], place < 0 ? -1 : sites[size_t(part)][size_t(place)]);
            }
            if (good)
                images.insert(image);
        });
    symmetry = double(images.size());
}

BnglNetwork::BnglNetwork(const ZelBnglModel &model, const Limits &limits)
    : m_model(model), m_limits(limits)
{
    for (const ZelBnglSpecies &seed : model.species)
        add(speciesOf(model.patterns[seed.pattern]));
    for (const ZelBnglRule &rule : model.rules)
        addRules(rule);
    const auto isWithinLimit = [this] { return int(m_species.size()) <= m_limits.species; };
    for (int i = 0; i < m_limits.iterations && m_active != m_species.size() && isWithinLimit();
         ++i) {
        m_active = m_species.size();
        m_reactions.clear();
        for (const Rule &rule : m_rules)
            apply(rule);
    }
}

BnglNetwork::~BnglNetwork() = default;

QStringList BnglNetwork::species() const
{
    QStringList sorted = m_texts;
    sorted.sort();
    return sorted;
}

BnglNetwork::Species BnglNetwork::speciesOf(const ZelBnglPattern &pattern) const
{
    const auto index = quint32(&pattern - m_model.patterns.data());
    const Pattern source = read(m_model, {index, 1});
    Species species;
    for (const Pattern::Part &part : source.parts) {
        Mol mol{part.name, part.compartment, {}};
        for (const Pattern::Place &place : part.places)
            mol.sites.push_back({place.name, place.state, place.mol, place.site});
        species.push_back(mol);
    }
    return species;
}

QString BnglNetwork::textOf(const ZelBnglPattern &pattern) const
{
    return canonical(speciesOf(pattern));
}

void BnglNetwork::addRules(const ZelBnglRule &source)
{
    for (const bool isBack : {false, true}) {
        if (isBack && !source.isReversible)
            continue;
        Rule rule;
        const ZelBnglRange left = isBack ? source.products : source.reactants;
        const ZelBnglRange right = isBack ? source.reactants : source.products;
        rule.left = read(m_model, left);
        rule.right = read(m_model, right);
        rule.reactants = rule.left.parts.empty() ? 0 : int(left.count);
        rule.products = rule.right.parts.empty() ? 0 : int(right.count);
        for (const ZelBnglModifier &modifier :
            ZelBnglModel::items(m_model.modifiers, source.modifiers)) {
            rule.deletesMolecules =
                rule.deletesMolecules || modifier.kind == ZelBnglModifier::Kind::DeleteMolecules;
        }
        rule.rate = QString::fromUtf8(m_model.line(source.rates[isBack])).remove(u' ');
        rule.map();
        rule.findCenter();
        rule.countSymmetry();
        m_rules.push_back(rule);
    }
}

void BnglNetwork::apply(const Rule &rule)
{
    m_images.clear();
    if (rule.reactants == 0) {
        react(rule, {}, {});
        return;
    }
    std::vector<std::vector<Match>> matches(size_t(rule.reactants));
    for (int r = 0; r < rule.reactants; ++r) {
        std::vector<int> parts;
        for (size_t part = 0; part < rule.left.parts.size(); ++part) {
            if (rule.left.patternOf[part] == r)
                parts.push_back(int(part));
        }
        for (size_t s = 0; s < m_active; ++s) {
            const Species &species = m_species[s];
            eachAssignment(
                rule.left, parts, species.size(),
                [&](int part, int mol) {
                    const Pattern::Part &wanted = rule.left.parts[size_t(part)];
                    return wanted.name == species[size_t(mol)].name
                        && (wanted.compartment == 0
                            || wanted.compartment == species[size_t(mol)].compartment);
                },
                [&](int part, int place, int mol, int site) {
                    const Pattern::Place &wanted =
                        rule.left.parts[size_t(part)].places[size_t(place)];
                    const Site &own = species[size_t(mol)].sites[size_t(site)];
                    return wanted.name == own.name
                        && (wanted.state == 0 || wanted.state == own.state)
                        && (wanted.bond == ZelBnglNames::Any
                            || (wanted.bond != ZelBnglNames::None) == (own.mol >= 0));
                },
                [&](int mol) { return int(species[size_t(mol)].sites.size()); },
                [&](const std::vector<int> &mols, const std::vector<std::vector<int>> &sites) {
                    if (hasBonds(rule.left, parts, mols, sites, [&](int mol, int site) {
                            const Site &own = species[size_t(mol)].sites[size_t(site)];
                            return End(own.mol, own.site);
                        }))
                        matches[size_t(r)].push_back({int(s), mols, sites});
                });
        }
    }
    for (const Match &first : matches[0]) {
        if (rule.reactants == 1) {
            react(rule, {&first}, {first.species});
            continue;
        }
        for (const Match &second : matches[1])
            react(rule, {&first, &second}, {first.species, second.species});
    }
}

void BnglNetwork::react(
    const Rule &rule, const std::vector<const Match *> &matches, const std::vector<int> &reactants)
{
    Species all;
    std::vector<int> offsets;
    for (const int reactant : reactants) {
        const int offset = int(all.size());
        offsets.push_back(offset);
        for (Mol mol : m_species[size_t(reactant)]) {
            for (Site &site : mol.sites)
                site.mol += site.mol >= 0 ? offset : 0;
            all.push_back(mol);
        }
    }
    const auto molOf = [&](int part) {
        const auto pattern = size_t(rule.left.patternOf[size_t(part)]);
        return offsets[pattern] + matches[pattern]->mols[size_t(part)];
    };
    const auto endOf = [&](int part, int place) {
        const auto pattern = size_t(rule.left.patternOf[size_t(part)]);
        return End(molOf(part), matches[pattern]->sites[size_t(part)][size_t(place)]);
    };
    const auto siteAt = [&](const End &end) -> Site & {
        return all[size_t(end.first)].sites[size_t(end.second)];
    };
    const auto unbind = [&](const End &end) {
        Site &site = siteAt(end);
        if (site.mol < 0)
            return;
        Site &partner = siteAt({site.mol, site.site});
        partner.mol = partner.site = site.mol = site.site = -1;
    };
    // Matches that only differ in what stays as it is are one.
    std::vector<int> image = reactants;
    for (const auto &[part, place] : rule.center) {
        image.push_back(molOf(part));
        image.push_back(place < 0 ? -1 : endOf(part, place).second);
    }
    if (!m_images.insert(image).second)
        return;
    std::vector<char> removed(all.size(), 0);
    std::map<quint32, quint32> labelled; // states by label
    std::vector<std::vector<End>> rightEnds(rule.right.parts.size());
    for (size_t r = 0; r < rule.right.parts.size(); ++r)
        rightEnds[r].resize(rule.right.parts[r].places.size(), End(-1, -1));
    for (size_t l = 0; l < rule.left.parts.size(); ++l) {
        const Pattern::Part &part = rule.left.parts[l];
        const int other = rule.rightOf[l];
        for (size_t p = 0; p < part.places.size(); ++p) {
            const End end = endOf(int(l), int(p));
            if (part.places[p].label)
                labelled[part.places[p].label] = siteAt(end).state;
            if (other < 0)
                continue;
            const int place = rule.placeOnRight[l][p];
            rightEnds[size_t(other)][size_t(place)] = end;
            const Pattern::Place &after = rule.right.parts[size_t(other)].places[size_t(place)];
            if (after.state)
                siteAt(end).state = after.state;
            if (part.places[p].mol >= 0 && after.mol < 0 && after.bond == ZelBnglNames::None)
                unbind(end);
        }
        if (other >= 0) {
            const quint32 compartment = rule.right.parts[size_t(other)].compartment;
            if (compartment && part.compartment)
                all[size_t(molOf(int(l)))].compartment = compartment;
        } else {
            removed[size_t(molOf(int(l)))] = 1;
        }
    }
    bool removesMolecules = false;
    for (int r = 0; r < rule.reactants; ++r) {
        bool whole = true;
        bool some = false;
        for (size_t l = 0; l < rule.left.parts.size(); ++l) {
            if (rule.left.patternOf[l] == r) {
                whole = whole && rule.rightOf[l] < 0;
                some = some || rule.rightOf[l] < 0;
            }
        }
        removesMolecules = removesMolecules || some;
        if (whole && !rule.deletesMolecules) {
            const auto begin = removed.begin() + offsets[size_t(r)];
            std::fill(begin, begin + long(m_species[size_t(reactants[size_t(r)])].size()), char(1));
        }
    }
    for (size_t r = 0; r < rule.right.parts.size(); ++r) {
        if (rule.leftOf[r] >= 0)
            continue;
        const Pattern::Part &part = rule.right.parts[r];
        Mol mol{part.name, part.compartment, {}};
        for (size_t p = 0; p < part.places.size(); ++p) {
            const Pattern::Place &place = part.places[p];
            rightEnds[r][p] = End(int(all.size()), int(p));
            mol.sites.push_back({place.name,
                place.state || !labelled.count(place.label) ? place.state
                                                            : labelled.at(place.label),
                -1, -1});
        }
        all.push_back(mol);
        removed.push_back(0);
    }
    for (size_t r = 0; r < rule.right.parts.size(); ++r) {
        for (size_t p = 0; p < rule.right.parts[r].places.size(); ++p) {
            const Pattern::Place &place = rule.right.parts[r].places[p];
            if (place.mol < 0)
                continue;
            const End here = rightEnds[r][p];
            const End there = rightEnds[size_t(place.mol)][size_t(place.site)];
            siteAt(here).mol = there.first;
            siteAt(here).site = there.second;
        }
    }
    for (size_t m = 0; m < all.size(); ++m) {
        for (size_t s = 0; removed[m] && s < all[m].sites.size(); ++s)
            unbind({int(m), int(s)});
    }
    std::vector<int> part(all.size(), -1);
    std::vector<Species> made;
    for (size_t first = 0; first < all.size(); ++first) {
        if (removed[first] || part[first] >= 0)
            continue;
        std::vector<int> members{int(first)};
        part[first] = 0;
        for (size_t i = 0; i < members.size(); ++i) {
            for (const Site &site : all[size_t(members[i])].sites) {
                if (site.mol >= 0 && part[size_t(site.mol)] < 0) {
                    part[size_t(site.mol)] = int(members.size());
                    members.push_back(site.mol);
                }
            }
        }
        Species product;
        for (const int member : members) {
            product.push_back(all[size_t(member)]);
            for (Site &site : product.back().sites)
                site.mol = site.mol >= 0 ? part[size_t(site.mol)] : -1;
        }
        if (!isWithin(product))
            return;
        made.push_back(product);
    }
    if (int(made.size()) != rule.products && !removesMolecules)
        return;
    std::vector<int> products;
    for (const Species &product : made)
        products.push_back(add(product));
    const auto textsOf = [this](const std::vector<int> &numbers) {
        QStringList texts;
        for (const int number : numbers)
            texts.append(m_texts.at(number));
        texts.sort();
        return texts.join(QLatin1String(" + "));
    };
    m_reactions[textsOf(reactants) + QLatin1String(" -> ") + textsOf(products) + u' '
        + rule.rate] += 1.0 / rule.symmetry;
}

QString BnglNetwork::canonical(const Species &species) const
{
    const Vertices vertices(m_model, species);
    QByteArray best;
    vertices.search(vertices.refine(Vertices::number(vertices.labels)), &best);
    return QString::fromLatin1(best);
}

int BnglNetwork::add(const Species &species)
{
    const QString text = canonical(species);
    const auto known = m_index.constFind(text);
    if (known != m_index.constEnd())
        return *known;
    const int index = int(m_species.size());
    m_index.insert(text, index);
    m_texts.append(text);
    m_species.push_back(species);
    return index;
}

bool BnglNetwork::isWithin(const Species &species) const
{
    QHash<QByteArray, int> counts;
    for (const Mol &mol : species)
        ++counts[m_model.name(mol.name).toByteArray()];
    return std::all_of(counts.keyBegin(), counts.keyEnd(), [&](const QByteArray &name) {
        return counts.value(name) <= m_limits.molecules.value(name, counts.value(name));
    });
}
