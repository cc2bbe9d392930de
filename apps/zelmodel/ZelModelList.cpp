#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelDetails.h"
#include "apps/zelmodel/ZelModelFilter.h"
#include "apps/zelmodel/ZelModelKinds.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelSpecies/SpeciesReader.h"

#include <QJsonObject>

using zel::species::MoleculeTypes;
using zel::species::SpeciesReader;

namespace {

constexpr qsizetype KindWidth = 18;
constexpr qsizetype IdWidth = 8;
constexpr qsizetype NameWidth = 24;
constexpr qsizetype LongestName = 60;
constexpr qsizetype LongestSummary = 200;

bool countKind(ZelModelRun &run, const ZelModelKind &kind, qint64 *count)
{
    if (!kind.wellDefined) {
        *count = run.db().countRecords(kind.type);
        return *count >= 0;
    }
    *count = 0;
    return run.db().visitRecords(
        kind.type, {ZelDbColumn::CpaWellDefined}, [&](const ZelDbRecord &record) {
            *count += kind.holds(record) ? 1 : 0;
            return true;
        });
}

int listCounts(ZelModelRun &run)
{
    QJsonObject object;
    QStringList lines;
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        qint64 count = 0;
        if (!countKind(run, kind, &count))
            return run.fail(run.db().errorText());
        object.insert(QLatin1String(kind.name), count);
        lines.append(
            ZelModelText::padded(QLatin1String(kind.name), KindWidth) + QString::number(count));
    }
    if (run.isSet("json"))
        run.printJson(object);
    else
        run.print(lines.join(u'\n'));
    return ZelModelRun::AllWell;
}

/// What is read of a kind to filter it and to write it on a line.
QList<int> lineColumns(const ZelModelRun &run, const ZelModelKind &kind)
{
    QList<int> columns{kind.nameColumn()};
    if (run.isSet("name") && kind.nameColumn() != ZelDbColumn::Name)
        columns.append(ZelDbColumn::Name);
    switch (kind.type) {
    case ZelDb::Mol:
        break;
    case ZelDb::Mcp:
    case ZelDb::McpState:
    case ZelDb::Bst:
        columns.append(ZelDbColumn::OwnerPsiimId);
        break;
    case ZelDb::Cpx:
        columns.append(ZelDbColumn::CpxMolCode);
        break;
    case ZelDb::Cpa:
        columns += {ZelDbColumn::CpaCpx, ZelDbColumn::CpaWellDefined};
        if (run.isSet("text"))
            columns.append(ZelDbColumn::CpaKey2);
        break;
    default:
        for (const ZelModelColumn &column : kind.columns)
            columns.append(column.column);
    }
    return columns;
}

/// Writes the records that pass the filter, one by one as the database gives them.
class Lister
{
public:
    Lister(ZelModelRun &run, const ZelModelFilter &filter, ZelModelDetails &details, bool hasTitles)
        : m_run(run), m_filter(filter), m_details(details), m_hasTitles(hasTitles),
          m_isJson(run.isSet("json")), m_reader(details.catalog(), run.db())
    {
    }

    bool list(const ZelModelKind &kind)
    {
        QList<int> columns = m_isJson ? kind.readColumns() : lineColumns(m_run, kind);
        const bool hasText = m_run.isSet("text") && kind.type == ZelDb::Cpa;
        if (hasText)
            columns.append(ZelDbColumn::CpaStateCode);
        bool isFirst = true;
        return m_run.db().visitRecords(kind.type, columns, [&](const ZelDbRecord &record) {
            if (!m_filter.accepts(kind, record))
                return true;
            if (isFirst && m_hasTitles && !m_isJson)
                m_run.print(QLatin1String(kind.name) + u':');
            isFirst = false;
            write(kind, record, hasText ? m_reader.readAlias(record).text() : QString());
            return true;
        });
    }

private:
    void write(const ZelModelKind &kind, const ZelDbRecord &record, const QString &text)
    {
        if (m_isJson) {
            QJsonObject object = m_details.json(kind, record);
            if (!text.isEmpty())
                object.insert(QStringLiteral("text"), text);
            m_run.printListed(object);
            return;
        }
        const auto shown = [](const QString &part, qsizetype longest) {
            return ZelModelText::shown(ZelModelText::shortened(part, longest));
        };
        const QString line =
            ZelModelText::padded(shown(record.value(ZelDbColumn::PsiimId), LongestName), IdWidth)
            + ZelModelText::padded(shown(kind.nameOf(record), LongestName), NameWidth)
            + (text.isEmpty() ? shown(m_details.summary(kind, record), LongestSummary)
                              : ZelModelText::shown(text));
        m_run.print((m_hasTitles ? QStringLiteral("  ") : QString()) + line.trimmed());
    }

    ZelModelRun &m_run;
    const ZelModelFilter &m_filter;
    ZelModelDetails &m_details;
    bool m_hasTitles;
    bool m_isJson;
    SpeciesReader m_reader;
};

/// The kinds that a user names; empty for an unknown name.
QList<const ZelModelKind *> kindsNamed(const QString &name)
{
    QList<const ZelModelKind *> list;
    const ZelModelKind *const named = ZelModelKinds::find(name);
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (&kind == named || name.isEmpty() || name == QLatin1String("all")
            || (name == QLatin1String("reactions") && kind.isReaction()))
            list.append(&kind);
    }
    return list;
}

int runList(ZelModelRun &run)
{
    const QString name = run.argument(1);
    const QList<const ZelModelKind *> kinds = kindsNamed(name);
    if (kinds.isEmpty()) {
        return run.misuse(
            QLatin1String("There is no kind of record '%1'; there are all, reactions, %2.")
                .arg(name, ZelModelKinds::names()));
    }
    ZelModelFilter filter(run);
    if (!run.openModel(run.argument(0)))
        return ZelModelRun::Failed;
    if (name.isEmpty() && filter.isEmpty())
        return listCounts(run);
    ZelModelDetails details(run.db());
    for (const ZelModelKind *const kind : kinds) {
        if (!details.prepare(*kind))
            return run.fail(run.db().errorText());
    }
    MoleculeTypes catalog;
    QString reason;
    if (!filter.isEmpty()
        && (!catalog.read(run.db()) || !filter.prepare(catalog, run.db(), &reason)))
        return run.fail(reason.isEmpty() ? run.db().errorText() : reason);
    Lister lister(run, filter, details, kinds.size() > 1);
    if (run.isSet("json"))
        run.beginList();
    for (const ZelModelKind *const kind : kinds) {
        if (!lister.list(*kind))
            return run.fail(run.db().errorText());
    }
    if (run.isSet("json"))
        run.endList();
    return ZelModelRun::AllWell;
}

constexpr ZelModelOption options[] = {
    {"name", "text", "Only records whose name holds the text; with * and ? it is the whole name."},
    {"molecule", "name", "Only records that are about this molecule.", 'm'},
    {"site", "name", "Only records in which this site or component is bound.", 's'},
    {"state", "name", "Only records in which this state is on, as P or as Y1068~P."},
    {"text", nullptr, "Write species and patterns out: A(b!1,s~P).B(a!1)."},
    {"json", nullptr, "Write for a script."},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel list model.zel", "Count the records of each kind."},
    {"zelmodel list --text model.zel species", "All species, written out."},
    {"zelmodel list --molecule EGFR --state Y1068~P model.zel",
        "Everything in which EGFR is phosphorylated at Y1068."},
    {"zelmodel list --json model.zel reactions | jq '.[].equation'",
        "All reactions, for a script."},
};

} // namespace

constexpr ZelModelCommand listCommand = {"list", "<model> [kind]", 1, 2,
    "list records, all or by name, molecule, site and state",
    "Without a kind and a filter it counts the records of each kind. Else it lists id, name and "
    "what stands in each record, in the order in which they were made."
    "\n\n"
    "Kinds are all, reactions, molecules, components, features, sites, interactions, complexes, "
    "species, patterns, associations, dissociations, transformations, productions, degradations, "
    "parameters, observables, seeds, compartments and untranslated. A filter by molecule, site or "
    "state leaves kinds out that are about none.",
    options, examples, false, runList};
