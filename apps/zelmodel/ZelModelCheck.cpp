#include "apps/zelmodel/ZelModelCheck.h"

#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelDetails.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelRules/Identity.h"
#include "zelSpecies/SpeciesReader.h"

#include <QJsonObject>
#include <QMap>
#include <QSet>

#include <algorithm>

using zel::rules::Sameness;
using zel::species::MoleculeTypes;
using zel::species::Species;
using zel::species::SpeciesReader;

namespace {

namespace C = ZelDbColumn;

constexpr qsizetype LongestName = 80;
constexpr qsizetype MostNamed = 5;

using Finding = ZelModelFinding;

/// "mol1, mol2 and 3 more"
QString idList(const QStringList &ids)
{
    const QString text = ids.mid(0, MostNamed).join(QLatin1String(", "));
    return ids.size() <= MostNamed
        ? text
        : text + QLatin1String(" and %1 more").arg(QString::number(ids.size() - MostNamed));
}

/// Looks through a model; each check answers false when the database refused.
class Checker
{
public:
    Checker(ZelDbSqlite &file, ZelDbSqliteModel &db, const ZelModelCheckProgress &progress)
        : m_file(file), m_db(db), m_progress(progress), m_details(db)
    {
    }

    bool run()
    {
        const QStringList problems = m_file.checkIntegrity();
        for (const QString &problem : problems)
            add("integrity", QString(), problem);
        for (const ZelModelKind &kind : ZelModelKinds::all()) {
            if (!m_details.prepare(kind))
                return false;
        }
        // Of a damaged file nothing more can be said than what is damaged.
        return readSpecies() && checkNames() && checkBonds() && checkReactions() && checkReach()
            && checkCompartments();
    }

    const QList<Finding> &findings() const { return m_findings; }

private:
    struct Alias
    {
        QString id;
        QString name;
        bool isSpecies = false;
        Species species;
    };

    void add(const char *check, const QString &id, const QString &text)
    {
        m_findings.append({check, id, text});
    }

    static QString called(const QString &id, const QString &name)
    {
        return name.isEmpty()
            ? id
            : QLatin1String("%1 '%2'").arg(id, ZelModelText::shortened(name, LongestName));
    }

    bool readSpecies();
    bool checkNames();
    void checkNamesIn(const QString &what, const QMap<QString, QStringList> &idsByName);
    void checkParts();
    bool checkBonds();
    bool checkReactions();
    void checkSite(
        const QString &reaction, const QString &cpa, const QString &bst, const QString &pos);
    bool checkReach();
    bool checkCompartments();
    QPair<QString, QString> sitePair(const QString &bst1, const QString &bst2) const;
    QString siteKey(const QString &bst) const;
    QString untranslatedHint() const;

    ZelDbSqlite &m_file;
    ZelDbSqliteModel &m_db;
    const ZelModelCheckProgress &m_progress;
    ZelModelDetails m_details;
    std::vector<Alias> m_aliases;
    QHash<QString, std::size_t> m_aliasOfId;
    QSet<QString> m_used; ///< aliases that stand in a reaction
    QList<Finding> m_findings;
};

bool Checker::readSpecies()
{
    SpeciesReader reader(m_details.catalog(), m_db);
    const auto report = [&](const char *what, const QString &id, const QString &name) {
        for (const QString &problem : reader.problems()) {
            add("references", id,
                QLatin1String("%1 %2: %3.").arg(QLatin1String(what), called(id, name), problem));
        }
    };
    QMap<QByteArray, QStringList> sameComplexes;
    const bool readComplexes =
        m_db.visitRecords(ZelDb::Cpx, {C::ShortName}, [&](const ZelDbRecord &record) {
            const QString id = record.value(C::PsiimId);
            const Species species = reader.readComplex(id);
            report("complex", id, record.value(C::ShortName));
            if (!species.mols.empty())
                sameComplexes[zel::rules::identity(species, Sameness::Structure)].append(id);
            return true;
        });
    QMap<QByteArray, QStringList> sameAliases;
    const auto readAlias = [&](const ZelDbRecord &record) {
        Alias alias{record.value(C::PsiimId), record.value(C::CpaShortName),
            record.value(C::CpaWellDefined) == QLatin1String("1"), reader.readAlias(record)};
        report(alias.isSpecies ? "species" : "pattern", alias.id, alias.name);
        if (!alias.species.mols.empty())
            sameAliases[zel::rules::identity(alias.species, Sameness::States)].append(alias.id);
        m_aliasOfId.insert(alias.id, m_aliases.size());
        m_aliases.push_back(std::move(alias));
        return true;
    };
    const bool good = readComplexes
        && m_db.visitRecords(ZelDb::Cpa,
            {C::CpaShortName, C::CpaWellDefined, C::CpaCpx, C::CpaKey2, C::CpaStateCode},
            readAlias);
    const auto reportSame = [&](const char *what, const QMap<QByteArray, QStringList> &same) {
        for (const QStringList &ids : same) {
            if (ids.size() > 1) {
                add("duplicates", ids.first(),
                    QLatin1String("%1 %2 are the same.").arg(QLatin1String(what), idList(ids)));
            }
        }
    };
    reportSame("complexes", sameComplexes);
    reportSame("species or patterns", sameAliases);
    return good;
}

void Checker::checkNamesIn(const QString &what, const QMap<QString, QStringList> &idsByName)
{
    for (auto it = idsByName.cbegin(); it != idsByName.cend(); ++it) {
        if (it.value().size() < 2 && !it.key().isEmpty())
            continue;
        const QString text = it.key().isEmpty()
            ? QLatin1String("%1 %2: there is no name.").arg(what, idList(it.value()))
            : QLatin1String("%1 %2: all are called '%3'.")
                  .arg(what, idList(it.value()), ZelModelText::shortened(it.key(), LongestName));
        add("names", it.value().first(), text);
    }
}

bool Checker::checkNames()
{
    // Species and patterns share their names; the two ways of a reaction may.
    QMap<QString, QStringList> aliasNames;
    for (const Alias &alias : m_aliases)
        aliasNames[alias.name].append(alias.id);
    checkNamesIn(QStringLiteral("species or pattern"), aliasNames);
    checkParts();
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (kind.type != ZelDb::Mol && kind.type != ZelDb::Mli && kind.type != ZelDb::Cpx
            && kind.type != ZelDb::Parameter && kind.type != ZelDb::Observable
            && kind.type != ZelDb::Compartment)
            continue;
        QMap<QString, QStringList> names;
        if (!m_db.visitRecords(kind.type, {kind.nameColumn()}, [&](const ZelDbRecord &record) {
                names[kind.nameOf(record)].append(record.value(C::PsiimId));
                return true;
            }))
            return false;
        checkNamesIn(QLatin1String(kind.title), names);
    }
    return true;
}

void Checker::checkParts()
{
    for (const MoleculeTypes::Mol &mol : m_details.catalog().mols()) {
        QMap<QString, QStringList> components;
        for (const MoleculeTypes::Mcp &mcp : mol.mcps)
            components[mcp.shortName].append(mcp.id);
        checkNamesIn(QLatin1String("component of %1").arg(called(mol.id, mol.name)), components);
    }
}

QString Checker::siteKey(const QString &bst) const
{
    const MoleculeTypes::Site site = m_details.catalog().site(bst);
    if (site.mol < 0)
        return bst;
    const MoleculeTypes::Mol &mol = m_details.catalog().mols()[static_cast<std::size_t>(site.mol)];
    const MoleculeTypes::Mcp &mcp = mol.mcpOfSite(site.site);
    return mol.mcps[static_cast<std::size_t>(mcp.group)].sites.value(site.site - mcp.firstSite).id;
}

/// The same for all copies of a component, and in either order.
QPair<QString, QString> Checker::sitePair(const QString &bst1, const QString &bst2) const
{
    const QString key1 = siteKey(bst1);
    const QString key2 = siteKey(bst2);
    return std::minmax(key1, key2);
}

QString Checker::untranslatedHint() const
{
    const qint64 count = m_db.countRecords(ZelDb::Untranslated);
    return count > 0 ? QLatin1String(" (none of those that are translated; %1 items are not)")
                           .arg(QString::number(count))
                     : QString();
}

bool Checker::checkBonds()
{
    QSet<QPair<QString, QString>> allowed;
    const bool good = m_db.visitRecords(ZelDb::Mli, {}, [&](const ZelDbRecord &record) {
        const QList<QStringList> bonds = m_db.mliGetArrayBstBst(record.value(C::PsiimId));
        for (const QStringList &bond : bonds)
            allowed.insert(sitePair(bond.value(3), bond.value(5)));
        return true;
    }) && m_db.visitRecords(ZelDb::Cai, {C::Bst1, C::Bst2}, [&](const ZelDbRecord &record) {
        allowed.insert(sitePair(record.value(C::Bst1), record.value(C::Bst2)));
        return true;
    });
    QMap<QPair<QString, QString>, QStringList> impossible; // complexes that have such a bond
    const bool read = good && m_db.visitRecords(ZelDb::Cpx, {}, [&](const ZelDbRecord &record) {
        const QString id = record.value(C::PsiimId);
        const QList<QStringList> bonds = m_db.cpxGetArrayBstBst(id);
        for (const QStringList &bond : bonds) {
            const QPair<QString, QString> pair = sitePair(bond.value(1), bond.value(3));
            if (!allowed.contains(pair) && !impossible[pair].endsWith(id))
                impossible[pair].append(id);
        }
        return true;
    });
    for (auto it = impossible.cbegin(); it != impossible.cend(); ++it) {
        add("bonds", it.value().first(),
            QLatin1String("complex %1: the bond of %2 and %3 cannot form; no interaction and no "
                          "association joins these sites%4.")
                .arg(idList(it.value()), m_details.catalog().siteTitle(it.key().first),
                    m_details.catalog().siteTitle(it.key().second), untranslatedHint()));
    }
    return read;
}

void Checker::checkSite(
    const QString &reaction, const QString &cpa, const QString &bst, const QString &pos)
{
    const auto alias = m_aliasOfId.constFind(cpa);
    if (alias == m_aliasOfId.cend() || m_aliases[*alias].species.mols.empty())
        return;
    const std::vector<Species::Mol> &mols = m_aliases[*alias].species.mols;
    const MoleculeTypes::Site site = m_details.catalog().site(bst);
    const auto place = static_cast<std::size_t>(pos.toInt());
    if (site.mol < 0 || place >= mols.size()
        || mols[place].type != &m_details.catalog().mols()[static_cast<std::size_t>(site.mol)]) {
        add("references", reaction,
            QLatin1String("association %1: its reactant %2 has no site %3 at molecule %4.")
                .arg(reaction, cpa, bst.isEmpty() ? QStringLiteral("(none)") : bst,
                    pos.isEmpty() ? QStringLiteral("(none)") : pos));
    }
}

bool Checker::checkReactions()
{
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (!kind.isReaction())
            continue;
        const bool read =
            m_db.visitRecords(kind.type, kind.readColumns(), [&](const ZelDbRecord &record) {
                const QString id = record.value(C::PsiimId);
                const QStringList from = ZelModelKinds::reactants(kind, record);
                const QStringList to = ZelModelKinds::products(kind, record);
                for (const QString &alias : from + to)
                    m_used.insert(alias);
                const qsizetype wantedFrom = kind.type == ZelDb::Cai ? 2
                    : kind.type == ZelDb::Pdn                        ? 0
                                                                     : 1;
                // A ring that opens stays one complex.
                const bool isSplit = kind.type == ZelDb::Cad
                    && !record.value(C::GeometryText)
                            .contains(QLatin1String(ZelGeometry::IntraComplex));
                const qsizetype wantedTo = isSplit ? 2 : kind.type == ZelDb::Deg ? 0 : 1;
                if (from.size() < wantedFrom || to.size() < wantedTo) {
                    add("references", id,
                        QLatin1String("%1 %2: a reactant or product is missing.")
                            .arg(QLatin1String(kind.title), called(id, kind.nameOf(record))));
                } else if (kind.type == ZelDb::Cai) {
                    checkSite(id, record.value(C::CaiCpa1), record.value(C::Bst1),
                        record.value(C::MolPos1));
                    checkSite(id, record.value(C::CaiCpa2), record.value(C::Bst2),
                        record.value(C::MolPos2));
                }
                return true;
            });
        if (!read)
            return false;
    }
    return true;
}

bool Checker::checkReach()
{
    const QString hint = untranslatedHint();
    qint64 done = 0;
    for (const Alias &alias : m_aliases) {
        if (m_progress)
            m_progress(++done, static_cast<qint64>(m_aliases.size()));
        if (!alias.isSpecies || m_used.contains(alias.id) || alias.species.mols.empty())
            continue;
        const bool isReached =
            std::any_of(m_aliases.begin(), m_aliases.end(), [&](const Alias &pattern) {
                return m_used.contains(pattern.id)
                    && alias.species.isMatchedBy(pattern.species, false);
            });
        if (!isReached) {
            add("reach", alias.id,
                QLatin1String("species %1: no reaction uses or makes it%2.")
                    .arg(called(alias.id, alias.name), hint));
        }
    }
    return true;
}

bool Checker::checkCompartments()
{
    QHash<QString, QString> parents;
    QSet<QString> names;
    if (!m_db.visitRecords(ZelDb::Compartment, {C::ShortName, C::CompartmentParent},
            [&](const ZelDbRecord &record) {
                parents.insert(record.value(C::PsiimId), record.value(C::CompartmentParent));
                names.insert(record.value(C::ShortName));
                return true;
            }))
        return false;
    QStringList circular;
    for (auto it = parents.cbegin(); it != parents.cend(); ++it) {
        QString outer = it.value();
        for (qsizetype i = 0; i <= parents.size() && !outer.isEmpty(); ++i)
            outer = parents.value(outer);
        if (!outer.isEmpty())
            circular.append(it.key());
    }
    circular.sort();
    if (!circular.isEmpty()) {
        add("references", circular.first(),
            QLatin1String("compartment %1: it surrounds itself.").arg(idList(circular)));
    }
    for (const Alias &alias : m_aliases) {
        for (const Species::Mol &mol : alias.species.mols) {
            if (!mol.compartment.isEmpty() && !names.contains(mol.compartment)) {
                add("references", alias.id,
                    QLatin1String("species %1: there is no compartment '%2'.")
                        .arg(called(alias.id, alias.name),
                            ZelModelText::shortened(mol.compartment, LongestName)));
                break;
            }
        }
    }
    return true;
}

int runCheck(ZelModelRun &run)
{
    if (!run.openModel(run.argument(0)))
        return ZelModelRun::Failed;
    QList<Finding> findings;
    const auto progress = [&run](qint64 done, qint64 total) {
        run.advance(QStringLiteral("Checking species"), done, total);
    };
    if (!checkModel(run.file(), run.db(), &findings, progress) && findings.isEmpty())
        return run.fail(run.db().errorText());
    run.clearProgress();
    if (run.isSet("json")) {
        run.beginList();
        for (const Finding &finding : findings) {
            run.printListed({{QStringLiteral("check"), QLatin1String(finding.check)},
                {QStringLiteral("id"), finding.id}, {QStringLiteral("text"), finding.text}});
        }
        run.endList();
    } else {
        for (const Finding &finding : findings)
            run.print(QLatin1String(finding.check) + QLatin1String(": ")
                + ZelModelText::shown(finding.text));
        run.print(findings.isEmpty()
                ? QStringLiteral("Nothing found.")
                : QLatin1String("%1 found.").arg(QString::number(findings.size())));
    }
    return findings.isEmpty() ? ZelModelRun::AllWell : ZelModelRun::Findings;
}

constexpr ZelModelOption options[] = {
    {"json", nullptr, "Write for a script."},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel check model.zel", "Say what is wrong with a model."},
    {"zelmodel check --json model.zel | jq '.[].id'", "The records that something is wrong with."},
};

} // namespace

bool checkModel(ZelDbSqlite &file, ZelDbSqliteModel &db, QList<ZelModelFinding> *findings,
    const ZelModelCheckProgress &progress)
{
    Checker checker(file, db, progress);
    const bool read = checker.run();
    *findings = checker.findings();
    return read;
}

constexpr ZelModelCommand checkCommand = {"check", "<model>", 1, 1,
    "say what is wrong with a model",
    "Looks for names that are not unique (names), bonds that no interaction and no association can "
    "form (bonds), species that no reaction uses or makes (reach), complexes and species that are "
    "the same (duplicates), what refers to something that is not there (references), and a damaged "
    "file (integrity). The exit code is 3 when something was found. The model is not changed.",
    options, examples, false, runCheck};
