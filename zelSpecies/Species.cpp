#include "zelSpecies/Species.h"

#include "zelDb/ZelDbSqliteModel.h"

#include <QCryptographicHash>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

using Mol = ZelModelSpecies::Mol;
using Mcp = ZelModelCatalog::Mcp;
using Colors = std::vector<QByteArray>;

/// Rings of alike molecules need a start to be told apart; beyond this it takes too long.
constexpr std::size_t MaxStarts = 64;

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
    QString label(int mol, int site, const ZelModelSpecies::Site &end)
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

QByteArray digest(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Sha1);
}

/// Lengths keep "a", "bc" apart from "ab", "c".
void appendText(QByteArray *to, const QByteArray &text)
{
    *to += QByteArray::number(text.size()) + ':' + text;
}

/// What can be said of a component without saying which of its copies it is.
QByteArray mcpColor(const ZelModelSpecies &species, const Mol &mol, const Mcp &mcp, bool withStates,
    const Colors &colors)
{
    QByteArray text;
    appendText(&text, mol.type->mcps[static_cast<std::size_t>(mcp.group)].shortName.toUtf8());
    if (withStates) {
        // What is open says nothing, in whatever order the states are.
        QByteArrayList states;
        for (qsizetype i = 0; i < mcp.states.size(); ++i) {
            const int state = mol.states[static_cast<std::size_t>(mcp.firstState + i)];
            if (state != ComponentStateDontCare)
                states.append(QByteArray::number(state) + mcp.states.at(i).name.toUtf8());
        }
        std::sort(states.begin(), states.end());
        for (const QByteArray &state : states)
            appendText(&text, state);
        text += mol.negated[static_cast<std::size_t>(&mcp - mol.type->mcps.data())] ? '-' : '+';
    }
    for (qsizetype i = 0; i < mcp.sites.size(); ++i) {
        const ZelModelSpecies::Site &site = mol.sites[static_cast<std::size_t>(mcp.firstSite + i)];
        if (site.partnerMol == ZelModelSpecies::None) {
            text += withStates ? QByteArray::number(site.status) : QByteArray("0");
            continue;
        }
        const Mol &partner = species.mols[static_cast<std::size_t>(site.partnerMol)];
        const Mcp &other = partner.type->mcpOfSite(site.partnerSite);
        appendText(
            &text, partner.type->mcps[static_cast<std::size_t>(other.group)].shortName.toUtf8());
        text += QByteArray::number(site.partnerSite - other.firstSite) + '!';
        text += colors[static_cast<std::size_t>(site.partnerMol)];
    }
    return text;
}

Colors startColors(const ZelModelSpecies &species, bool withStates)
{
    Colors colors;
    for (const Mol &mol : species.mols) {
        QByteArray text;
        appendText(&text, mol.type->name.toUtf8());
        if (withStates)
            appendText(&text, mol.compartment.toUtf8());
        colors.push_back(digest(text));
    }
    return colors;
}

/// Tells molecules apart by what is around them, as far as that goes.
void refine(const ZelModelSpecies &species, bool withStates, Colors *colors)
{
    qsizetype known = 0;
    for (std::size_t round = 0; round <= species.mols.size(); ++round) {
        Colors next;
        for (std::size_t m = 0; m < species.mols.size(); ++m) {
            const Mol &mol = species.mols[m];
            Colors parts;
            for (const Mcp &mcp : mol.type->mcps)
                parts.push_back(mcpColor(species, mol, mcp, withStates, *colors));
            std::sort(parts.begin(), parts.end());
            QByteArray text;
            appendText(&text, (*colors)[m]);
            for (const QByteArray &part : parts)
                appendText(&text, part);
            next.push_back(digest(text));
        }
        *colors = std::move(next);
        const qsizetype count = QSet<QByteArray>(colors->begin(), colors->end()).size();
        if (round > 0 && count == known)
            return;
        known = count;
    }
}

QByteArray summary(Colors colors)
{
    std::sort(colors.begin(), colors.end());
    QByteArray text;
    for (const QByteArray &color : colors)
        text += color;
    return digest(text);
}

} // namespace

void ZelModelSpecies::addMol(const ZelModelCatalog::Mol *type)
{
    Mol mol;
    mol.type = type;
    mol.states.assign(static_cast<std::size_t>(type->stateCount), ComponentStateDontCare);
    mol.negated.assign(type->mcps.size(), 0);
    mol.sites.resize(static_cast<std::size_t>(type->siteCount));
    mols.push_back(std::move(mol));
}

bool ZelModelSpecies::addBond(int mol1, int site1, int mol2, int site2)
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

int ZelModelSpecies::bondCount() const
{
    int ends = 0;
    for (const Mol &mol : mols) {
        for (const Site &site : mol.sites)
            ends += site.partnerMol == None ? 0 : 1;
    }
    return ends / 2;
}

std::vector<ZelModelSpecies::Bond> ZelModelSpecies::bonds() const
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

QString ZelModelSpecies::text() const
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

QByteArray ZelModelSpecies::identity(bool withStates) const
{
    Colors colors = startColors(*this, withStates);
    refine(*this, withStates, &colors);
    const bool hasRing = static_cast<std::size_t>(bondCount()) >= mols.size();
    if (!hasRing || mols.size() > MaxStarts)
        return summary(colors);
    Colors views;
    for (std::size_t start = 0; start < mols.size(); ++start) {
        Colors view = colors;
        view[start] = digest(QByteArray("start") + view[start]);
        refine(*this, withStates, &view);
        views.push_back(summary(std::move(view)));
    }
    return summary(std::move(views));
}

ZelModelSpecies ZelModelSpeciesReader::readComplex(const QString &cpxPsiimId)
{
    m_problems.clear();
    ZelModelSpecies species;
    const QStringList molIds = m_db.cpxGetListMolPsiimId(cpxPsiimId);
    if (molIds.isEmpty()) {
        m_problems.append(QStringLiteral("it has no molecules"));
        return species;
    }
    if (molIds.size() > ZelModelSpecies::MaxMols) {
        m_problems.append(QLatin1String("its %1 molecules are too many to be looked at")
                              .arg(QString::number(molIds.size())));
        return species;
    }
    for (const QString &molId : molIds) {
        const ZelModelCatalog::Mol *const type = m_catalog.mol(molId);
        if (!type) {
            m_problems.append(QLatin1String("there is no molecule %1").arg(molId));
            return {};
        }
        species.addMol(type);
    }
    const QList<QStringList> bonds = m_db.cpxGetArrayBstBst(cpxPsiimId);
    for (const QStringList &bond : bonds) {
        const ZelModelCatalog::Site site1 = m_catalog.site(bond.value(1));
        const ZelModelCatalog::Site site2 = m_catalog.site(bond.value(3));
        const auto belongs = [&](const QString &position, const ZelModelCatalog::Site &site) {
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

ZelModelSpecies ZelModelSpeciesReader::readAlias(const ZelDbRecord &cpa)
{
    ZelModelSpecies species = readComplex(cpa.value(ZelDbColumn::CpaCpx));
    applyStates(&species, cpa.value(ZelDbColumn::CpaStateCode));
    const QString key2 = cpa.value(ZelDbColumn::CpaKey2);
    const QStringList compartments = key2.split(u';');
    if (!key2.isEmpty() && static_cast<std::size_t>(compartments.size()) == species.mols.size()) {
        for (std::size_t m = 0; m < species.mols.size(); ++m)
            species.mols[m].compartment = compartments.at(static_cast<qsizetype>(m));
    }
    return species;
}

void ZelModelSpeciesReader::applyStates(ZelModelSpecies *species, const QString &stateCode)
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
    ZelModelSpecies::Mol *mol = nullptr;
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
            const ZelModelCatalog::Site site =
                m_catalog.site(attributes.value(QLatin1String("id")).toString());
            if (site.mol < 0
                || &m_catalog.mols()[static_cast<std::size_t>(site.mol)] != mol->type) {
                refuse(QStringLiteral("its state code names a site that it does not have"));
                continue;
            }
            ZelModelSpecies::Site &end = mol->sites[static_cast<std::size_t>(site.site)];
            const QStringView status = attributes.value(QLatin1String("bindingStatus"));
            if (end.partnerMol == ZelModelSpecies::None) {
                end.status = status == u"Bound" ? BindingStatusBound
                    : status == u"Unbound"      ? BindingStatusUnbound
                                                : BindingStatusUnspecified;
            }
        }
    }
    if (reader.hasError())
        refuse(QStringLiteral("its state code is not readable"));
}
