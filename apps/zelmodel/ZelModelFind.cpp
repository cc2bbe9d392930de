#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelSpecies/SpeciesReader.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using zel::species::MoleculeTypes;
using zel::species::Species;
using zel::species::SpeciesReader;

namespace {

constexpr char BlockBegin[] = "begin observables\n";
constexpr char EntryBegin[] = "Molecules pattern ";
constexpr char BlockEnd[] = "\nend observables\n";
constexpr qsizetype LongestPattern = 1 << 20;

/// Puts a pattern that was typed into terms of the model's molecules.
class PatternReader
{
public:
    explicit PatternReader(const MoleculeTypes &catalog) : m_catalog(catalog) { }

    /// False with a reason; isMisspelt() says whether the text or the model is to blame.
    bool read(const QString &text, Species *species);
    const QString &reason() const { return m_reason; }
    bool isMisspelt() const { return m_isMisspelt; }

private:
    bool parse(const QString &text);
    bool readMol(const ZelBnglMolecule &molecule, Species *species);
    bool readComponent(const ZelBnglComponent &component, quint32 index, Species *species);
    bool readState(
        const ZelBnglComponent &component, const MoleculeTypes::Mcp &mcp, Species *species);
    QString name(quint32 number) const { return QString::fromUtf8(m_model.name(number)); }
    bool misspelt(const QString &reason)
    {
        m_isMisspelt = true;
        return refuse(reason);
    }
    bool refuse(const QString &reason)
    {
        m_reason = reason;
        return false;
    }

    const MoleculeTypes &m_catalog;
    ZelBnglModel m_model;
    std::vector<char> m_usedSites; ///< of the molecule that is read
    std::vector<char> m_usedMcps;
    QHash<quint32, std::pair<int, int>> m_ends; ///< molecule and site by component of the file
    QString m_reason;
    bool m_isMisspelt = false;
};

bool PatternReader::parse(const QString &text)
{
    const bool isOneLine = std::none_of(text.begin(), text.end(),
        [](QChar c) { return c.unicode() < 0x20 || c == u'#' || c == u'\\'; });
    if (!isOneLine || text.size() > LongestPattern) {
        return misspelt(QStringLiteral("A pattern is one line such as 'A(b!1,s~P).B(a!1)'."));
    }
    m_model = ZelBnglParser::parse(
        BlockBegin + (EntryBegin + text.toUtf8()) + BlockEnd, QStringLiteral("pattern"));
    if (!m_model.errors.empty()) {
        const ZelBnglError &error = m_model.errors.front();
        const int column = error.place.column - static_cast<int>(sizeof(EntryBegin)) + 1;
        return misspelt(QLatin1String("The pattern cannot be read at character %1: %2")
                            .arg(QString::number(std::max(column, 1)), error.message));
    }
    if (m_model.patterns.size() != 1 || m_model.observables.size() != 1
        || m_model.patterns.front().molecules.count == 0
        || m_model.patterns.front().quantifier != ZelBnglPattern::Quantifier::None)
        return misspelt(QStringLiteral("One pattern is wanted, such as 'A(b!1,s~P).B(a!1)'."));
    return true;
}

bool PatternReader::read(const QString &text, Species *species)
{
    if (!parse(text.trimmed()))
        return false;
    const ZelBnglPattern &pattern = m_model.patterns.front();
    for (const ZelBnglMolecule &molecule : m_model.moleculesOf(pattern)) {
        if (!readMol(molecule, species))
            return false;
        const quint32 compartment =
            molecule.compartment != ZelBnglNames::None ? molecule.compartment : pattern.compartment;
        species->mols.back().compartment = name(compartment);
    }
    for (const ZelBnglMolecule &molecule : m_model.moleculesOf(pattern)) {
        for (quint32 i = 0; i < molecule.components.count; ++i) {
            const quint32 index = molecule.components.first + i;
            for (const ZelBnglBond &bond :
                ZelBnglModel::items(m_model.bonds, m_model.components[index].bonds)) {
                if (bond.partner == ZelBnglBond::NoPartner || bond.partner < index)
                    continue;
                const auto [mol1, site1] = m_ends.value(index);
                const auto [mol2, site2] = m_ends.value(bond.partner);
                if (!species->addBond(mol1, site1, mol2, site2))
                    return refuse(
                        QStringLiteral("A site of the pattern has two bonds; it holds one."));
            }
        }
    }
    return true;
}

bool PatternReader::readMol(const ZelBnglMolecule &molecule, Species *species)
{
    const MoleculeTypes::Mol *const type = m_catalog.molNamed(name(molecule.name));
    if (!type) {
        return refuse(QLatin1String("The model has no molecule '%1'; 'zelmodel list <model> "
                                    "molecules' shows those that it has.")
                          .arg(name(molecule.name)));
    }
    species->addMol(type);
    m_usedSites.assign(static_cast<std::size_t>(type->siteCount), 0);
    m_usedMcps.assign(type->mcps.size(), 0);
    for (quint32 i = 0; i < molecule.components.count; ++i) {
        const quint32 index = molecule.components.first + i;
        if (!readComponent(m_model.components[index], index, species))
            return false;
    }
    return true;
}

bool PatternReader::readComponent(
    const ZelBnglComponent &component, quint32 index, Species *species)
{
    Species::Mol &mol = species->mols.back();
    const MoleculeTypes::Mol &type = *mol.type;
    const QString wanted = name(component.name);
    // Copies of a component come one after the other; a site goes by its own name, too.
    const MoleculeTypes::Mcp *mcp = nullptr;
    int site = Species::None;
    for (std::size_t c = 0; c < type.mcps.size() && !mcp; ++c) {
        const MoleculeTypes::Mcp &candidate = type.mcps[c];
        if ((candidate.shortName == wanted || candidate.title() == wanted) && !m_usedMcps[c]) {
            mcp = &candidate;
            m_usedMcps[c] = 1;
            if (candidate.sites.size() == 1)
                site = candidate.firstSite;
        }
    }
    for (int s = 0; s < type.siteCount && !mcp; ++s) {
        const MoleculeTypes::Mcp &candidate = type.mcpOfSite(s);
        if (candidate.sites.at(s - candidate.firstSite).name == wanted
            && !m_usedSites[static_cast<std::size_t>(s)]) {
            mcp = &candidate;
            site = s;
        }
    }
    if (!mcp) {
        return refuse(
            QLatin1String("The molecule '%1' has no such component or no further '%2'; it "
                          "is %1%3.")
                .arg(type.name, wanted, type.structure()));
    }
    if (component.bonds.count > 0 && site == Species::None) {
        return refuse(QLatin1String("The component '%1' of '%2' has not exactly one site; name the "
                                    "site instead ('zelmodel show <model> %2').")
                          .arg(wanted, type.name));
    }
    for (int s = 0; s < static_cast<int>(mcp->sites.size()); ++s) {
        const int number = mcp->firstSite + s;
        if (site != Species::None && number != site)
            continue;
        Species::Site &end = mol.sites[static_cast<std::size_t>(number)];
        end.status = BindingStatusUnbound;
        m_usedSites[static_cast<std::size_t>(number)] = 1;
        for (const ZelBnglBond &bond : ZelBnglModel::items(m_model.bonds, component.bonds)) {
            end.status =
                bond.label == ZelBnglNames::Any ? BindingStatusUnspecified : BindingStatusBound;
        }
    }
    m_ends.insert(index, {static_cast<int>(species->mols.size()) - 1, site});
    return readState(component, *mcp, species);
}

bool PatternReader::readState(
    const ZelBnglComponent &component, const MoleculeTypes::Mcp &mcp, Species *species)
{
    Species::Mol &mol = species->mols.back();
    for (const quint32 number : ZelBnglModel::items(m_model.states, component.states)) {
        if (number < ZelBnglNames::FirstFree)
            continue; // any
        const QString wanted = name(number);
        const auto state = std::find_if(mcp.states.begin(), mcp.states.end(),
            [&wanted](const MoleculeTypes::Part &part) { return part.name == wanted; });
        if (state == mcp.states.end()) {
            return refuse(QLatin1String("The component '%1' of '%2' has no state '%3'; it is %2%4.")
                              .arg(mcp.shortName, mol.type->name, wanted, mol.type->structure()));
        }
        for (qsizetype i = 0; i < mcp.states.size(); ++i) {
            int &place = mol.states[static_cast<std::size_t>(mcp.firstState + i)];
            if (i == state - mcp.states.begin())
                place = ComponentStateOn;
            else if (!state->group.isEmpty() && mcp.states.at(i).group == state->group)
                place = ComponentStateOff;
        }
    }
    return true;
}

/// How a stored species or pattern stands to what is sought.
enum class Relation {
    Same,
    Narrower, ///< says all that is sought, and more
    Wider ///< leaves open what is sought
};

struct Match
{
    ZelDbRecord record;
    QString text;
    Relation relation = Relation::Same;
};

struct Result
{
    QList<ZelDbRecord> complexes;
    QList<Match> matches;
};

/// The complexes that are the pattern's molecules and bonds, and their aliases that it matches.
bool search(ZelModelRun &run, const MoleculeTypes &catalog, const Species &pattern, bool within,
    Result *result)
{
    Species structure = pattern;
    QStringList molIds;
    for (Species::Mol &mol : structure.mols) {
        molIds.append(mol.type->id);
        mol.compartment.clear();
        std::fill(mol.states.begin(), mol.states.end(), int(ComponentStateDontCare));
        for (Species::Site &site : mol.sites) {
            if (site.partnerMol == Species::None)
                site.status = BindingStatusUnspecified;
        }
    }
    molIds.sort();
    const QString molCode = molIds.join(u';');
    SpeciesReader reader(catalog, run.db());
    QHash<QString, bool> isSame; // by complex, those that were looked at
    const auto judgeComplex = [&](const ZelDbRecord &record) {
        const QString id = record.value(ZelDbColumn::PsiimId);
        if (record.value(ZelDbColumn::CpxMolCode) == molCode
            && reader.readComplex(id).isMatchedBy(structure, true)) {
            result->complexes.append(record);
            isSame.insert(id, true);
        }
        return true;
    };
    const auto judgeAlias = [&](const ZelDbRecord &record) {
        const bool whole = isSame.contains(record.value(ZelDbColumn::CpaCpx));
        if (!whole && !within)
            return true;
        const Species species = reader.readAlias(record);
        const bool isNarrower = species.isMatchedBy(pattern, !within);
        const bool isWider = whole && pattern.isMatchedBy(species, true);
        if (isNarrower || isWider) {
            result->matches.append({record, species.text(),
                !isWider          ? Relation::Narrower
                    : !isNarrower ? Relation::Wider
                                  : Relation::Same});
        }
        return true;
    };
    return run.db().visitRecords(
               ZelDb::Cpx, {ZelDbColumn::CpxMolCode, ZelDbColumn::ShortName}, judgeComplex)
        && run.db().visitRecords(ZelDb::Cpa,
            {ZelDbColumn::CpaCpx, ZelDbColumn::CpaKey2, ZelDbColumn::CpaStateCode,
                ZelDbColumn::CpaShortName, ZelDbColumn::CpaWellDefined},
            judgeAlias);
}

QString relationText(Relation relation)
{
    switch (relation) {
    case Relation::Same:
        return QStringLiteral("is");
    case Relation::Narrower:
        return QStringLiteral("matches");
    case Relation::Wider:
        return QStringLiteral("is a case of");
    }
    return {};
}

QString kindOf(const Match &match)
{
    return match.record.value(ZelDbColumn::CpaWellDefined) == QLatin1String("1")
        ? QStringLiteral("species")
        : QStringLiteral("pattern");
}

bool hasExact(const Result &result)
{
    return std::any_of(result.matches.begin(), result.matches.end(),
        [](const Match &match) { return match.relation == Relation::Same; });
}

void writeJson(ZelModelRun &run, const Species &pattern, const Result &result)
{
    QJsonArray complexes;
    for (const ZelDbRecord &record : result.complexes)
        complexes.append(QJsonObject{{QStringLiteral("id"), record.value(ZelDbColumn::PsiimId)},
            {QStringLiteral("name"), record.value(ZelDbColumn::ShortName)}});
    QJsonArray matches;
    for (const Match &match : result.matches) {
        matches.append(QJsonObject{{QStringLiteral("id"), match.record.value(ZelDbColumn::PsiimId)},
            {QStringLiteral("name"), match.record.value(ZelDbColumn::CpaShortName)},
            {QStringLiteral("kind"), kindOf(match)}, {QStringLiteral("text"), match.text},
            {QStringLiteral("relation"), relationText(match.relation)}});
    }
    run.printJson({{QStringLiteral("pattern"), pattern.text()},
        {QStringLiteral("newStructure"), result.complexes.isEmpty()},
        {QStringLiteral("new"), !hasExact(result)}, {QStringLiteral("complexes"), complexes},
        {QStringLiteral("matches"), matches}});
}

void writeText(ZelModelRun &run, const Result &result)
{
    if (result.complexes.isEmpty())
        run.print(QStringLiteral("New: no stored complex has these molecules and bonds."));
    for (const ZelDbRecord &record : result.complexes) {
        run.print(QLatin1String("Complex %1 '%2'")
                      .arg(record.value(ZelDbColumn::PsiimId),
                          ZelModelText::shown(record.value(ZelDbColumn::ShortName))));
    }
    for (const Match &match : result.matches) {
        run.print(QLatin1String("  %1 %2 %3 '%4': %5")
                      .arg(relationText(match.relation), kindOf(match),
                          match.record.value(ZelDbColumn::PsiimId),
                          ZelModelText::shown(match.record.value(ZelDbColumn::CpaShortName)),
                          ZelModelText::shown(match.text)));
    }
    if (!result.complexes.isEmpty() && !hasExact(result))
        run.print(QStringLiteral("New: no species or pattern has exactly these states."));
}

int runFind(ZelModelRun &run)
{
    if (!run.openModel(run.argument(0)))
        return ZelModelRun::Failed;
    MoleculeTypes catalog;
    if (!catalog.read(run.db()))
        return run.fail(run.db().errorText());
    PatternReader reader(catalog);
    Species pattern;
    if (!reader.read(run.argument(1), &pattern))
        return reader.isMisspelt() ? run.misuse(reader.reason()) : run.fail(reader.reason());
    Result result;
    if (!search(run, catalog, pattern, run.isSet("within"), &result))
        return run.fail(run.db().errorText());
    if (run.isSet("json"))
        writeJson(run, pattern, result);
    else
        writeText(run, result);
    return ZelModelRun::AllWell;
}

constexpr ZelModelOption options[] = {
    {"within", nullptr, "Also find species and patterns of which the pattern is only a part."},
    {"json", nullptr, "Write for a script."},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel find model.zel 'A(b!1).B(a!1)'", "Which complex is A bound to B, in which states?"},
    {"zelmodel find --within model.zel 'EGFR(Y1068~P!?)'",
        "All species that hold a phosphorylated EGFR, bound there or not."},
};

} // namespace

constexpr ZelModelCommand findCommand = {"find", "<model> <pattern>", 2, 2,
    "find a complex by drawing it in text",
    "Answers which stored complex is made of these molecules and bonds, and which species and "
    "patterns of it are in these states, or that it is new. The pattern is written as in the "
    "BioNetGen language: a component without a bond is free, !+ is bound to something, !? is "
    "either, and what is not mentioned may be anything.",
    options, examples, false, runFind};
