#include "apps/zelmodel/ZelModelCommand.h"
#include "apps/zelmodel/ZelModelDetails.h"
#include "apps/zelmodel/ZelModelLookup.h"
#include "apps/zelmodel/ZelModelRun.h"
#include "apps/zelmodel/ZelModelText.h"
#include "zelDb/ZelDb.h"
#include "zelSpecies/SpeciesReader.h"

#include <QJsonArray>
#include <QJsonObject>

using zel::species::MoleculeTypes;
using zel::species::Species;
using zel::species::SpeciesReader;

namespace {

constexpr qsizetype TitleWidth = 18;
constexpr qsizetype LongestName = 80;

QStringList bondTexts(const Species &species)
{
    QStringList texts;
    const auto mol = [&species](int m) { return species.mols[static_cast<std::size_t>(m)].type; };
    for (const Species::Bond &bond : species.bonds()) {
        // Molecules by their number, since there may be several of one type.
        texts.append(QLatin1String("%1 (%2).%3 - %4 (%5).%6")
                         .arg(mol(bond.mol1)->name, QString::number(bond.mol1 + 1),
                             mol(bond.mol1)->siteName(bond.site1), mol(bond.mol2)->name,
                             QString::number(bond.mol2 + 1), mol(bond.mol2)->siteName(bond.site2)));
    }
    return texts;
}

/// What is said of a record, in the order in which it is written.
struct Description
{
    QString headline;
    QString text; ///< a species written out
    QStringList bonds;
    QStringList components;
    QStringList problems;
    QString sites;
    QString references;
    QList<ZelModelFound> usedBy;
};

QStringList componentTexts(const MoleculeTypes::Mol &mol)
{
    QStringList texts;
    for (const MoleculeTypes::Mcp &mcp : mol.mcps) {
        QStringList states;
        for (const MoleculeTypes::Part &state : mcp.states)
            states.append(state.name);
        QStringList sites;
        for (const MoleculeTypes::Part &site : mcp.sites)
            sites.append(site.name);
        QString text = mcp.shortName;
        if (!states.isEmpty())
            text += QLatin1String("; states ") + states.join(QLatin1String(", "));
        if (!sites.isEmpty())
            text += QLatin1String("; sites ") + sites.join(QLatin1String(", "));
        texts.append(text);
    }
    return texts;
}

Description describe(ZelModelRun &run, const ZelModelFound &found, const ZelModelDetails &details)
{
    const QString id = found.record.value(ZelDbColumn::PsiimId);
    Description result;
    result.headline = ZelModelLookup::description(&run.db(), found);
    if (found.kind->nameOf(found.record).isEmpty() && !found.kind->hasPicture()) {
        result.headline = QLatin1String(found.kind->title) + QLatin1String(": ")
            + details.summary(*found.kind, found.record);
    }
    result.references = run.db().refGetReferences(QLatin1String(found.kind->word), id);
    SpeciesReader reader(details.catalog(), run.db());
    if (found.kind->type == ZelDb::Cpx || found.kind->type == ZelDb::Cpa) {
        const Species species = found.kind->type == ZelDb::Cpx
            ? reader.readComplex(id)
            : reader.readAlias(run.db().cpaGetHashInfo(id));
        result.text = species.text();
        result.bonds = bondTexts(species);
        result.problems = reader.problems();
    }
    if (const MoleculeTypes::Mol *const mol = details.catalog().mol(id);
        mol && found.kind->type == ZelDb::Mol)
        result.components = componentTexts(*mol);
    if (found.kind->type == ZelDb::Mli)
        result.sites = details.sitePairs(id);
    result.usedBy = ZelModelLookup::referrers(run.db(), found);
    return result;
}

void writeJson(ZelModelRun &run, const ZelModelFound &found, const ZelModelDetails &details,
    const Description &description)
{
    QJsonObject object = details.json(*found.kind, found.record);
    const auto insert = [&object](const char *key, const QString &text) {
        if (!text.isEmpty())
            object.insert(QLatin1String(key), text);
    };
    const auto insertList = [&object](const char *key, const QStringList &texts) {
        if (!texts.isEmpty())
            object.insert(QLatin1String(key), QJsonArray::fromStringList(texts));
    };
    insert("description", description.headline);
    insert("text", description.text);
    insert("sites", description.sites);
    insert("references", description.references);
    insertList("bonds", description.bonds);
    insertList("components", description.components);
    insertList("problems", description.problems);
    QJsonArray users;
    for (const ZelModelFound &user : description.usedBy) {
        users.append(QJsonObject{{QStringLiteral("kind"), QLatin1String(user.kind->title)},
            {QStringLiteral("id"), user.record.value(ZelDbColumn::PsiimId)},
            {QStringLiteral("name"), user.kind->nameOf(user.record)}});
    }
    object.insert(QStringLiteral("usedBy"), users);
    run.printJson(object);
}

void writeText(ZelModelRun &run, const ZelModelFound &found, const ZelModelDetails &details,
    const Description &description)
{
    const auto line = [&run](const QString &title, const QString &text) {
        if (!text.isEmpty())
            run.print(QLatin1String("  ") + ZelModelText::padded(title + u':', TitleWidth)
                + ZelModelText::shown(text));
    };
    const auto lines = [&line](const QString &title, const QStringList &texts) {
        for (const QString &text : texts)
            line(title, text);
    };
    run.print(ZelModelText::shown(description.headline));
    line(QStringLiteral("Id"), found.record.value(ZelDbColumn::PsiimId));
    line(QStringLiteral("Kind"), QLatin1String(found.kind->title));
    line(QStringLiteral("Name"), found.kind->nameOf(found.record));
    if (found.record.value(ZelDbColumn::Name) != found.kind->nameOf(found.record))
        line(QStringLiteral("Full name"), found.record.value(ZelDbColumn::Name));
    line(QStringLiteral("Reaction"), details.equation(*found.kind, found.record));
    line(QStringLiteral("Written out"), description.text);
    for (const ZelModelColumn &column : found.kind->columns) {
        const QString value = found.record.value(column.column);
        const QString name = details.nameOf(value);
        line(QLatin1String(column.title),
            name.isEmpty() || name == value ? value : QLatin1String("%1 '%2'").arg(value, name));
    }
    line(QStringLiteral("Sites"), description.sites);
    lines(QStringLiteral("Component"), description.components);
    lines(QStringLiteral("Bond"), description.bonds);
    lines(QStringLiteral("Problem"), description.problems);
    line(QStringLiteral("Notes"), found.record.value(ZelDbColumn::Notes));
    line(QStringLiteral("References"), description.references);
    for (const ZelModelFound &user : description.usedBy) {
        const QString name = user.kind->nameOf(user.record);
        line(QStringLiteral("Used by"),
            QLatin1String(user.kind->title) + u' ' + user.record.value(ZelDbColumn::PsiimId)
                + (name.isEmpty()
                        ? QString()
                        : QLatin1String(" '%1'").arg(ZelModelText::shortened(name, LongestName))));
    }
}

int runShow(ZelModelRun &run)
{
    ZelModelFound found;
    if (!run.openModel(run.argument(0))
        || !ZelModelLookup::find(run, run.argument(1), false, &found))
        return ZelModelRun::Failed;
    ZelModelDetails details(run.db());
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (!details.prepare(kind))
            return run.fail(run.db().errorText());
    }
    const Description description = describe(run, found, details);
    if (run.isSet("json"))
        writeJson(run, found, details, description);
    else
        writeText(run, found, details, description);
    return ZelModelRun::AllWell;
}

constexpr ZelModelOption options[] = {
    {"json", nullptr, "Write for a script."},
};

constexpr ZelModelExample examples[] = {
    {"zelmodel show model.zel EGFR", "Components, states and sites of a molecule, and its uses."},
    {"zelmodel show model.zel cpa12", "A species by its id."},
};

} // namespace

constexpr ZelModelCommand showCommand = {"show", "<model> <record>", 2, 2,
    "say everything about one record",
    "Says what one record is, in which states, with which bonds, notes and references, and which "
    "other records use it. The record is given by its id, or by its name when no other has the "
    "same.",
    options, examples, true, runShow};
