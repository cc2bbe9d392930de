#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelDetails.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelRules/Identity.h"
#include "zelSpecies/SpeciesReader.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

#include <algorithm>
#include <map>
#include <memory>

using zel::rules::Sameness;
using zel::species::MoleculeTypes;
using zel::species::Species;
using zel::species::SpeciesReader;

namespace {

namespace C = ZelDbColumn;

constexpr qsizetype LongestTitle = 400;

/// A thing of a model, under a key that it has in any model that holds the same thing.
struct Entry
{
    QString title;
    QStringList values; ///< what may differ; several when the model says the same thing again
};

using Entries = QMap<QByteArray, Entry>;

struct Section
{
    const char *name;
    Entries entries;
};

struct Difference
{
    QString title;
    QString before;
    QString after;
};

/// What distinguishes one section of two models.
struct Differences
{
    const char *section;
    QStringList removed;
    QStringList added;
    QList<Difference> changed;

    bool isEmpty() const { return removed.isEmpty() && added.isEmpty() && changed.isEmpty(); }
};

void put(Entries *entries, const QByteArray &key, const QString &title, const QString &value)
{
    Entry &entry = (*entries)[key];
    if (entry.title.isEmpty())
        entry.title = title;
    if (!value.isEmpty())
        entry.values.append(value);
}

/// One of the two models in terms that do not depend on its ids.
class Side
{
public:
    explicit Side(ZelDbSqliteModel &db) : m_db(db), m_details(db) { }

    // False when the database refused.
    bool prepare();
    bool read();
    /// Names may be changed before read().
    MoleculeTypes &catalog() { return m_catalog; }
    const std::vector<Section> &sections() const { return m_sections; }
    Entries molecules() const;

private:
    bool readSpecies();
    bool readReactions();
    bool readInteractions();
    bool readNamed(const char *name, int type, const QList<int> &columns);
    bool readSeeds();
    QString siteTitle(const QString &bst) const;

    ZelDbSqliteModel &m_db;
    MoleculeTypes m_catalog;
    ZelModelDetails m_details;
    QHash<QString, QByteArray> m_identity; ///< of aliases
    std::vector<Section> m_sections;
};

bool Side::prepare()
{
    return m_catalog.read(m_db)
        && std::all_of(ZelModelKinds::all().begin(), ZelModelKinds::all().end(),
            [this](const ZelModelKind &kind) { return m_details.prepare(kind); });
}

Entries Side::molecules() const
{
    Entries entries;
    for (const MoleculeTypes::Mol &mol : m_catalog.mols())
        put(&entries, mol.name.toUtf8(), mol.name, mol.sortedStructure());
    return entries;
}

bool Side::read()
{
    return readInteractions() && readSpecies() && readReactions() && readSeeds()
        && readNamed("parameters", ZelDb::Parameter, {C::ParameterValue, C::Unit})
        && readNamed("observables", ZelDb::Observable, {C::ObservableKind, C::ObservablePattern})
        && readNamed("compartments", ZelDb::Compartment,
            {C::CompartmentDimension, C::CompartmentSize, C::Unit})
        && readNamed("untranslated", ZelDb::Untranslated, {});
}

/// The same for all copies of a component.
QString Side::siteTitle(const QString &bst) const
{
    const MoleculeTypes::Site site = m_catalog.site(bst);
    if (site.mol < 0)
        return bst;
    const MoleculeTypes::Mol &mol = m_catalog.mols()[static_cast<std::size_t>(site.mol)];
    const MoleculeTypes::Mcp &mcp = mol.mcpOfSite(site.site);
    const MoleculeTypes::Mcp &first = mol.mcps[static_cast<std::size_t>(mcp.group)];
    return mol.name + u'.' + mol.siteName(first.firstSite + site.site - mcp.firstSite);
}

bool Side::readInteractions()
{
    Entries entries;
    const bool read = m_db.visitRecords(
        ZelDb::Mli, {C::AssociationRate, C::DissociationRate}, [&](const ZelDbRecord &record) {
            const QList<QStringList> bonds = m_db.mliGetArrayBstBst(record.value(C::PsiimId));
            for (const QStringList &bond : bonds) {
                QStringList sites{siteTitle(bond.value(3)), siteTitle(bond.value(5))};
                sites.sort();
                put(&entries, sites.join(u'\n').toUtf8(), sites.join(QLatin1String(" + ")),
                    QLatin1String("rates %1, %2")
                        .arg(record.value(C::AssociationRate), record.value(C::DissociationRate)));
            }
            return true;
        });
    m_sections.push_back({"interactions", entries});
    return read;
}

bool Side::readSpecies()
{
    SpeciesReader reader(m_catalog, m_db);
    Entries complexes;
    Entries species;
    Entries patterns;
    const auto readComplex = [&](const ZelDbRecord &record) {
        const Species complex = reader.readComplex(record.value(C::PsiimId));
        put(&complexes, zel::rules::identity(complex, Sameness::Structure), complex.text(),
            QString());
        return true;
    };
    const auto readAlias = [&](const ZelDbRecord &record) {
        const Species alias = reader.readAlias(record);
        const QByteArray identity = zel::rules::identity(alias, Sameness::States);
        m_identity.insert(record.value(C::PsiimId), identity);
        const bool isSpecies = record.value(C::CpaWellDefined) == QLatin1String("1");
        put(isSpecies ? &species : &patterns, identity, alias.text(), QString());
        return true;
    };
    const bool read = m_db.visitRecords(ZelDb::Cpx, {}, readComplex)
        && m_db.visitRecords(
            ZelDb::Cpa, {C::CpaCpx, C::CpaKey2, C::CpaStateCode, C::CpaWellDefined}, readAlias);
    m_sections.push_back({"complexes", complexes});
    m_sections.push_back({"species", species});
    m_sections.push_back({"patterns", patterns});
    return read;
}

bool Side::readReactions()
{
    const auto identities = [this](const QStringList &aliases) {
        QByteArrayList list;
        for (const QString &alias : aliases)
            list.append(m_identity.value(alias));
        std::sort(list.begin(), list.end());
        return list.join();
    };
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (!kind.isReaction())
            continue;
        Entries entries;
        const bool read =
            m_db.visitRecords(kind.type, kind.readColumns(), [&](const ZelDbRecord &record) {
                QStringList sites{
                    siteTitle(record.value(C::Bst1)), siteTitle(record.value(C::Bst2))};
                sites.sort();
                QStringList values;
                for (const ZelModelColumn &column : kind.columns) {
                    const QString value = record.value(column.column);
                    switch (column.column) {
                    case C::AssociationRate:
                    case C::DissociationRate:
                    case C::Rate:
                    case C::DegradationRate:
                    case C::PdnM:
                    case C::PdnN:
                    case C::PdnK:
                    case C::PdnDelay:
                    case C::BindingType:
                    case C::Geometry:
                    case C::GeometryText:
                        if (!value.isEmpty())
                            values.append(QLatin1String(column.key) + u' ' + value);
                        break;
                    default:
                        break; // ids, which the key stands for
                    }
                }
                put(&entries,
                    identities(ZelModelKinds::reactants(kind, record)) + '>'
                        + identities(ZelModelKinds::products(kind, record)) + '|'
                        + sites.join(u'\n').toUtf8(),
                    kind.nameOf(record) + QLatin1String(": ") + m_details.equation(kind, record),
                    values.join(QLatin1String(", ")));
                return true;
            });
        m_sections.push_back({kind.name, entries});
        if (!read)
            return false;
    }
    return true;
}

bool Side::readNamed(const char *name, int type, const QList<int> &columns)
{
    Entries entries;
    // Untranslated items have no names; they are what stood in the file.
    const int title = type == ZelDb::Untranslated ? C::SourceText : C::ShortName;
    const bool read =
        m_db.visitRecords(type, QList<int>{title} + columns, [&](const ZelDbRecord &record) {
            QStringList values;
            for (const int column : columns) {
                if (const QString value = record.value(column); !value.isEmpty())
                    values.append(value);
            }
            put(&entries, record.value(title).toUtf8(), record.value(title), values.join(u' '));
            return true;
        });
    m_sections.push_back({name, entries});
    return read;
}

bool Side::readSeeds()
{
    Entries entries;
    const bool read = m_db.visitRecords(
        ZelDb::Seed, {C::SeedCpa, C::SeedAmount, C::Unit}, [&](const ZelDbRecord &record) {
            const QString cpa = record.value(C::SeedCpa);
            put(&entries, m_identity.value(cpa), m_details.aliasName(cpa),
                (record.value(C::SeedAmount) + u' ' + record.value(C::Unit)).trimmed());
            return true;
        });
    m_sections.push_back({"seeds", entries});
    return read;
}

Differences compare(const char *section, const Entries &before, const Entries &after)
{
    Differences result;
    result.section = section;
    const auto valueOf = [](Entry entry) {
        entry.values.sort();
        return entry.values.join(QLatin1String("; "));
    };
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        const auto other = after.constFind(it.key());
        if (other == after.cend())
            result.removed.append(it->title);
        else if (valueOf(*it) != valueOf(*other))
            result.changed.append({it->title, valueOf(*it), valueOf(*other)});
    }
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (!before.contains(it.key()))
            result.added.append(it->title);
    }
    result.removed.sort();
    result.added.sort();
    std::sort(result.changed.begin(), result.changed.end(),
        [](const Difference &a, const Difference &b) { return a.title < b.title; });
    return result;
}

/// Molecules by name; of those that only one model has, the ones that are built alike are the same
/// under another name, which the second model's catalog then takes over.
Differences compareMolecules(const Side &before, Side *after)
{
    Entries left = before.molecules();
    Entries right = after->molecules();
    QMap<QString, QList<QByteArray>> alikeLeft;
    QMap<QString, QList<QByteArray>> alikeRight;
    for (auto it = left.cbegin(); it != left.cend(); ++it) {
        if (!right.contains(it.key()))
            alikeLeft[it->values.join(u'\n')].append(it.key());
    }
    for (auto it = right.cbegin(); it != right.cend(); ++it) {
        if (!left.contains(it.key()))
            alikeRight[it->values.join(u'\n')].append(it.key());
    }
    QList<Difference> renamed;
    QHash<QString, QString> newNames;
    for (auto it = alikeLeft.cbegin(); it != alikeLeft.cend(); ++it) {
        const QList<QByteArray> others = alikeRight.value(it.key());
        if (it->size() != 1 || others.size() != 1)
            continue;
        const QString oldName = left.take(it->first()).title;
        const QString newName = right.take(others.first()).title;
        renamed.append({QLatin1String("renamed"), oldName, newName});
        for (const MoleculeTypes::Mol &mol : after->catalog().mols()) {
            if (mol.name == newName)
                newNames.insert(mol.id, oldName);
        }
    }
    after->catalog().rename(newNames);
    Differences result = compare("molecules", left, right);
    result.changed = renamed + result.changed;
    return result;
}

void writeText(ZelModelRun &run, const std::vector<Differences> &all)
{
    const auto shown = [](const QString &text) {
        return ZelModelText::shown(ZelModelText::shortened(text, LongestTitle));
    };
    bool isSame = true;
    for (const Differences &section : all) {
        if (section.isEmpty())
            continue;
        isSame = false;
        run.print(QLatin1String(section.section) + u':');
        for (const QString &title : section.removed)
            run.print(QLatin1String("  - ") + shown(title));
        for (const QString &title : section.added)
            run.print(QLatin1String("  + ") + shown(title));
        for (const Difference &difference : section.changed) {
            run.print(QLatin1String("  ~ %1: %2 -> %3")
                          .arg(shown(difference.title), shown(difference.before),
                              shown(difference.after)));
        }
    }
    if (isSame)
        run.print(QStringLiteral("The models say the same."));
}

void writeJson(ZelModelRun &run, const std::vector<Differences> &all)
{
    QJsonObject object;
    for (const Differences &section : all) {
        if (section.isEmpty())
            continue;
        QJsonArray changed;
        for (const Difference &difference : section.changed) {
            changed.append(QJsonObject{{QStringLiteral("what"), difference.title},
                {QStringLiteral("before"), difference.before},
                {QStringLiteral("after"), difference.after}});
        }
        object.insert(QLatin1String(section.section),
            QJsonObject{{QStringLiteral("removed"), QJsonArray::fromStringList(section.removed)},
                {QStringLiteral("added"), QJsonArray::fromStringList(section.added)},
                {QStringLiteral("changed"), changed}});
    }
    run.printJson(object);
}

int runDiff(ZelModelRun &run)
{
    ZelDbSqlite otherFile;
    if (!run.openModel(run.argument(0)))
        return ZelModelRun::Failed;
    if (!ZelModelRun::openForReading(&otherFile, run.argument(1)))
        return run.fail(otherFile.errorText());
    ZelDbSqliteModel otherDb(&otherFile);
    Side before(run.db());
    Side after(otherDb);
    if (!before.prepare())
        return run.fail(run.db().errorText());
    if (!after.prepare())
        return run.fail(otherDb.errorText());
    std::vector<Differences> all{compareMolecules(before, &after)};
    if (!before.read())
        return run.fail(run.db().errorText());
    if (!after.read())
        return run.fail(otherDb.errorText());
    for (std::size_t i = 0; i < before.sections().size(); ++i) {
        all.push_back(compare(
            before.sections()[i].name, before.sections()[i].entries, after.sections()[i].entries));
    }
    if (run.isSet("json"))
        writeJson(run, all);
    else
        writeText(run, all);
    return std::all_of(
               all.begin(), all.end(), [](const Differences &section) { return section.isEmpty(); })
        ? ZelModelRun::AllWell
        : ZelModelRun::Findings;
}

constexpr ZelModelOption options[] = {
    {"json", nullptr, "Write for a script."},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel diff before.zel after.zel",
        "What has changed: - is gone, + is new, ~ is different."},
};

} // namespace

constexpr ZelModelCommand diffCommand = {"diff", "<model> <other>", 2, 2, "compare two models",
    "Compares what two models say, whatever their ids and drawings are: molecules by name and "
    "structure, species and patterns by their molecules, bonds and states, reactions by what they "
    "make of what, parameters and the like by name. The exit code is 3 when they differ.",
    options, examples, false, runDiff};
