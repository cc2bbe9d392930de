#include "zelExchange/export/ZelBnglExport.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/export/ZelBnglAliases.h"
#include "zelExchange/export/ZelBnglMolecules.h"
#include "zelExchange/export/ZelBnglRecordRules.h"
#include "zelExchange/import/ZelBnglEntries.h"
#include "zelExchange/import/ZelBnglItem.h"

#include <QFileInfo>
#include <QSaveFile>

#include <utility>

namespace {

// Of a row of mliGetArrayBstBst().
enum PairColumn { Bst1 = 3, Bst2 = 5 };

constexpr QLatin1String FixedAmount("fixed");
constexpr QLatin1String CountsSpecies("Species");
constexpr QLatin1String CountsMolecules("Molecules");
const QByteArray NotTranslated = QByteArrayLiteral("# not translated: ");

/// Writes the blocks of one file.
class Exporter
{
public:
    Exporter(ZelDbSqliteModel *db, ZelExportReport *report)
        : m_db(db), m_report(*report), m_molecules(db, report), m_aliases(db, m_molecules)
    {
    }

    QByteArray write();

private:
    struct Item
    {
        QByteArray text;
        QByteArray reason;
    };

    void readItems();
    void readSeeds();
    void writeParameters();
    void writeCompartments();
    void writeTypes();
    void writeSpecies();
    void addSpecies(const QString &cpaPsiimId, const QString &amount, bool isFixed);
    void writeObservables();
    void writeRules();
    /// The items of a kind as they came, each below the reason why it is kept.
    void writeBlockOfItems(const char *kind);
    void writeCommands(const char *kind);
    void addItems(const char *kind);
    void addEntry(const QByteArray &entry) { m_block += "  " + entry + '\n'; }
    /// Closes the block of the entries that were added; nothing without entries.
    void closeBlock(const char *name);
    QSet<QString> usedAliases() const;
    void noteUnusedInteractions(const ZelBnglRecordRules &rules);
    /// The type's component of a site, both -1 for an unknown one.
    std::pair<int, int> findSite(const QString &bstPsiimId) const;
    void leaveOut(const QString &item, const QString &reason)
    {
        m_report.notes.append({item, reason, true});
    }

    ZelDbSqliteModel *m_db;
    ZelExportReport &m_report;
    ZelBnglMolecules m_molecules;
    ZelBnglAliases m_aliases;
    QHash<QByteArray, QList<Item>> m_items; ///< by kind
    QByteArray m_text;
    QByteArray m_block;
};

QString itemName(const char *kind, const ZelDbRecord &record, const QString &psiimId)
{
    const QString name = record.value(ZelDbColumn::ShortName);
    return QStringLiteral("%1 \"%2\"").arg(QLatin1String(kind), name.isEmpty() ? psiimId : name);
}

QByteArray Exporter::write()
{
    readItems();
    writeCommands(ZelBnglItem::Setting);
    m_text += "begin model\n";
    writeParameters();
    writeCompartments();
    writeTypes();
    writeSpecies();
    writeObservables();
    writeBlockOfItems(ZelBnglItem::Function);
    writeBlockOfItems(ZelBnglItem::EnergyPattern);
    writeBlockOfItems(ZelBnglItem::PopulationMap);
    writeRules();
    m_text += "end model\n";
    writeCommands(ZelBnglItem::Action);
    return m_text;
}

void Exporter::readItems()
{
    const QStringList ids = m_db->utrGetListPsiimId();
    for (const QString &id : ids) {
        const ZelDbRecord record = m_db->utrGetHashInfo(id);
        const QByteArray kind = record.value(ZelDbColumn::Name).toUtf8();
        QByteArray text = record.value(ZelDbColumn::SourceText).toUtf8();
        // Without its label it would get the number of its place, which another may have as name.
        const QByteArray label = ZelBnglEntries::label(record.value(ZelDbColumn::ShortName));
        if (kind == ZelBnglItem::Rule && !label.isEmpty())
            text.prepend(label + ": ");
        const bool isCommand = kind == ZelBnglItem::Setting || kind == ZelBnglItem::Action;
        if (isCommand ? ZelBnglEntries::isCommand(text) : ZelBnglEntries::isEntry(kind, text)) {
            m_items[kind].append({text, record.value(ZelDbColumn::Reason).simplified().toUtf8()});
            m_report.untranslated += kind != ZelBnglItem::PopulationType;
        } else {
            leaveOut(QStringLiteral("untranslated item \"%1\"").arg(QString::fromUtf8(text)),
                QStringLiteral("it does not say in which block of the file it can stand"));
        }
    }
}

void Exporter::closeBlock(const char *name)
{
    if (!m_block.isEmpty())
        m_text += QByteArray("begin ") + name + '\n' + m_block + "end " + name + '\n';
    m_block.clear();
}

void Exporter::addItems(const char *kind)
{
    const QList<Item> items = m_items.value(kind);
    for (const Item &item : items) {
        addEntry(NotTranslated + item.reason);
        addEntry(item.text);
    }
}

void Exporter::writeBlockOfItems(const char *kind)
{
    addItems(kind);
    closeBlock(kind);
}

void Exporter::writeCommands(const char *kind)
{
    const QList<Item> items = m_items.value(kind);
    for (const Item &item : items)
        m_text += NotTranslated + item.reason + '\n' + item.text + '\n';
}

void Exporter::writeParameters()
{
    const QStringList ids = m_db->parGetListPsiimId();
    for (const QString &id : ids) {
        const ZelDbRecord record = m_db->parGetHashInfo(id);
        const QByteArray entry = record.value(ZelDbColumn::ShortName).toUtf8() + ' '
            + record.value(ZelDbColumn::ParameterValue).toUtf8();
        if (!ZelBnglEntries::isEntry("parameters", entry)) {
            leaveOut(itemName("parameter", record, id),
                QStringLiteral("its name or its value is not allowed"));
            continue;
        }
        addEntry(entry);
        ++m_report.parameters;
    }
    closeBlock("parameters");
}

void Exporter::writeCompartments()
{
    const QStringList ids = m_db->cmpGetListPsiimId();
    for (const QString &id : ids) {
        const ZelDbRecord record = m_db->cmpGetHashInfo(id);
        QByteArray entry = record.value(ZelDbColumn::ShortName).toUtf8() + ' '
            + record.value(ZelDbColumn::CompartmentDimension).toUtf8() + ' '
            + record.value(ZelDbColumn::CompartmentSize).toUtf8();
        if (const QString parent = record.value(ZelDbColumn::CompartmentParent); !parent.isEmpty())
            entry += ' ' + m_db->cmpGetHashInfo(parent).value(ZelDbColumn::ShortName).toUtf8();
        if (!ZelBnglEntries::isEntry("compartments", entry)) {
            leaveOut(itemName("compartment", record, id),
                QStringLiteral("its name, its dimensions or its size are not allowed"));
            continue;
        }
        addEntry(entry);
        ++m_report.compartments;
    }
    closeBlock("compartments");
}

void Exporter::writeTypes()
{
    QSet<QByteArray> populations;
    const QList<Item> items = m_items.value(ZelBnglItem::PopulationType);
    for (const Item &item : items)
        populations.insert(item.text.left(item.text.indexOf('(')));
    for (const ZelBnglGraphType &type : m_molecules.types()) {
        QByteArrayList components;
        for (const ZelBnglGraphType::Component &component : type.components) {
            QByteArray text = component.name;
            for (const QByteArray &state : component.states)
                text += '~' + state;
            components.append(text);
        }
        addEntry(type.name + '(' + components.join(',') + ')'
            + (populations.contains(type.name) ? " population" : ""));
        ++m_report.moleculeTypes;
    }
    closeBlock("molecule types");
}

QSet<QString> Exporter::usedAliases() const
{
    QSet<QString> used;
    const auto add = [&used](const ZelDbRecord &record, std::initializer_list<int> columns) {
        for (const int column : columns)
            used.insert(record.value(column));
    };
    for (const QString &id : m_db->caiGetListPsiimId()) {
        add(m_db->caiGetHashInfo(id),
            {ZelDbColumn::CaiCpa1, ZelDbColumn::CaiCpa2, ZelDbColumn::CaiResultCpa});
    }
    for (const QString &id : m_db->cadGetListPsiimId()) {
        add(m_db->cadGetHashInfo(id),
            {ZelDbColumn::CadSourceCpa, ZelDbColumn::CadResultCpa1, ZelDbColumn::CadResultCpa2});
    }
    for (const QString &id : m_db->trnGetListPsiimId())
        add(m_db->trnGetHashInfo(id), {ZelDbColumn::TrnFromCpa, ZelDbColumn::TrnToCpa});
    for (const QString &id : m_db->pdnGetListPsiimId())
        add(m_db->pdnGetHashInfo(id), {ZelDbColumn::PdnSourceCpa, ZelDbColumn::PdnProductCpa});
    for (const QString &id : m_db->degGetListPsiimId())
        add(m_db->degGetHashInfo(id), {ZelDbColumn::DegradationCpa});
    return used;
}

void Exporter::writeSpecies()
{
    QSet<QString> seeded;
    const QStringList ids = m_db->sedGetListPsiimId();
    for (const QString &id : ids) {
        const ZelDbRecord record = m_db->sedGetHashInfo(id);
        const QString cpa = record.value(ZelDbColumn::SeedCpa);
        seeded.insert(cpa);
        addSpecies(cpa, record.value(ZelDbColumn::SeedAmount),
            record.value(ZelDbColumn::Notes) == FixedAmount);
    }
    // What only stands in the list of complexes would be lost otherwise. What reactions refer to
    // appears when they run, provided that they have something to begin with.
    const bool hasSeeds = !ids.isEmpty() || m_items.contains(ZelBnglItem::Species);
    const QSet<QString> used = usedAliases();
    const QStringList aliases = m_db->cpaGetListPsiimId();
    for (const QString &id : aliases) {
        if (seeded.contains(id) || (hasSeeds && used.contains(id)))
            continue;
        const ZelBnglAliases::Alias &alias = m_aliases.alias(id);
        if (!alias.problem.isEmpty() || alias.pattern.isSpecies(m_molecules.types()))
            addSpecies(id, QStringLiteral("0"), false);
        else if (!used.contains(id))
            leaveOut(QStringLiteral("complex \"%1\"").arg(alias.name),
                QStringLiteral("it leaves sites or features open, and no reaction uses it"));
    }
    addItems(ZelBnglItem::Species);
    closeBlock("seed species");
}

void Exporter::addSpecies(const QString &cpaPsiimId, const QString &amount, bool isFixed)
{
    const ZelBnglAliases::Alias &alias = m_aliases.alias(cpaPsiimId);
    const QString item = QStringLiteral("complex \"%1\"").arg(alias.name);
    if (!alias.problem.isEmpty()) {
        leaveOut(item, alias.problem);
        return;
    }
    if (!alias.pattern.isSpecies(m_molecules.types())) {
        m_report.notes.append(
            {item, QStringLiteral("it leaves sites or features open, which simulators refuse")});
    }
    QByteArray text = amount.trimmed().toUtf8();
    if (!ZelBnglEntries::isExpression(text)) {
        m_report.notes.append({item,
            QStringLiteral("its amount \"%1\" is no expression; it stands with 0").arg(amount)});
        text = "0";
    }
    addEntry((isFixed ? "$" : "") + ZelBnglRuleGraph::text(m_molecules.types(), alias.pattern) + ' '
        + text);
    ++m_report.species;
}

void Exporter::writeObservables()
{
    const QStringList ids = m_db->obsGetListPsiimId();
    for (const QString &id : ids) {
        const ZelDbRecord record = m_db->obsGetHashInfo(id);
        const bool countsSpecies = record.value(ZelDbColumn::ObservableKind) == CountsSpecies;
        const QByteArray entry =
            QByteArray((countsSpecies ? CountsSpecies : CountsMolecules).data()) + ' '
            + record.value(ZelDbColumn::ShortName).toUtf8() + ' '
            + record.value(ZelDbColumn::ObservablePattern).toUtf8();
        if (!ZelBnglEntries::isEntry("observables", entry)) {
            leaveOut(itemName("observable", record, id),
                QStringLiteral("its name or its patterns are not allowed"));
            continue;
        }
        addEntry(entry);
        ++m_report.observables;
    }
    closeBlock("observables");
}

void Exporter::writeRules()
{
    ZelBnglRecordRules rules(m_db, m_molecules, &m_aliases, &m_report);
    rules.read();
    const QList<QByteArray> entries = rules.entries();
    for (const QByteArray &entry : entries)
        addEntry(entry);
    m_report.rules = static_cast<int>(entries.size());
    addItems(ZelBnglItem::Rule);
    closeBlock("reaction rules");
    // A rule that is kept as it came may well make the bond.
    if (!m_items.contains(ZelBnglItem::Rule))
        noteUnusedInteractions(rules);
}

void Exporter::noteUnusedInteractions(const ZelBnglRecordRules &rules)
{
    const QStringList ids = m_db->mliGetListPsiimId();
    for (const QString &id : ids) {
        const QList<QStringList> pairs = m_db->mliGetArrayBstBst(id);
        const auto [type1, component1] = findSite(pairs.value(0).value(Bst1));
        const auto [type2, component2] = findSite(pairs.value(0).value(Bst2));
        if (type1 < 0 || type2 < 0
            || !rules.joins(rules.bondOf(type1, component1, type2, component2))) {
            leaveOut(itemName("molecule interaction", m_db->mliGetHashInfo(id), id),
                QStringLiteral("no reaction makes its bond, and the file has no bonds but those "
                               "that rules make"));
        }
    }
}

std::pair<int, int> Exporter::findSite(const QString &bstPsiimId) const
{
    const QString mcp = m_db->bstGetHashInfo(bstPsiimId).value(ZelDbColumn::OwnerPsiimId);
    const int type = m_molecules.find(m_db->mcpGetHashInfo(mcp).value(ZelDbColumn::OwnerPsiimId));
    return {type, type < 0 ? -1 : m_molecules.molecule(type).sites.value(bstPsiimId, -1)};
}

} // namespace

ZelBnglExport::ZelBnglExport(ZelDbSqliteModel *db) : m_db(db) { }

QByteArray ZelBnglExport::exportText()
{
    m_report = {};
    return write();
}

bool ZelBnglExport::exportFile(const QString &path)
{
    m_report = {};
    m_report.fileName = path;
    const QFileInfo info(path);
    if (info.exists() && !info.isFile() && !info.isDir()) {
        return fail(QStringLiteral("%1 is a device or a pipe, in whose place no file can be put. "
                                   "Choose another name.")
                        .arg(path));
    }
    const QByteArray text = write();
    if (text.isEmpty())
        return false;
    QSaveFile file(path);
    // What is still to be flushed when it commits may fail unnoticed.
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush()
        && file.commit())
        return true;
    return fail(QStringLiteral("The file %1 cannot be written: %2. Check the folder and the space "
                               "that is left; a file that was there is as it was.")
                    .arg(path, file.errorString()));
}

QByteArray ZelBnglExport::write()
{
    if (!m_db || !m_db->database() || !m_db->database()->isOpen()) {
        fail(QStringLiteral("No model is open. Open or create one first."));
        return {};
    }
    const QByteArray text = Exporter(m_db, &m_report).write();
    // Whatever a damaged model holds, what is written can be read.
    const ZelBnglModel model = ZelBnglParser::parse(text, m_report.fileName);
    if (model.isValid())
        return text;
    fail(QStringLiteral("The model gives a text that cannot be read: %1")
             .arg(model.errorTexts().value(0)));
    return {};
}

bool ZelBnglExport::fail(const QString &text)
{
    const QString fileName = m_report.fileName;
    m_report = {};
    m_report.fileName = fileName;
    m_report.error = text;
    return false;
}
