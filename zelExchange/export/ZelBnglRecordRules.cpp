#include "zelExchange/export/ZelBnglRecordRules.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/import/ZelBnglEntries.h"

#include <algorithm>

namespace {

using Graph = ZelBnglGraph;
using RuleGraph = ZelBnglRuleGraph;

QByteArray keyOf(const QByteArray &label, const QByteArray &left, const QByteArray &right)
{
    return label + '\n' + left + '\n' + right;
}

bool isNumber(const QString &text, double number)
{
    bool isGood = false;
    const double value = text.toDouble(&isGood);
    return text.isEmpty() || (isGood && value == number);
}

} // namespace

ZelBnglRecordRules::ZelBnglRecordRules(ZelDbSqliteModel *db, const ZelBnglMolecules &molecules,
    ZelBnglAliases *aliases, ZelExportReport *report)
    : m_db(db), m_molecules(molecules), m_aliases(*aliases), m_report(*report)
{
}

void ZelBnglRecordRules::read()
{
    const auto readAll = [this](const QStringList &ids, auto readOne) {
        for (const QString &id : ids)
            (this->*readOne)(id);
    };
    readAll(m_db->caiGetListPsiimId(), &ZelBnglRecordRules::readAssociation);
    readAll(m_db->cadGetListPsiimId(), &ZelBnglRecordRules::readDissociation);
    readAll(m_db->trnGetListPsiimId(), &ZelBnglRecordRules::readTransformation);
    readAll(m_db->pdnGetListPsiimId(), &ZelBnglRecordRules::readProduction);
    readAll(m_db->degGetListPsiimId(), &ZelBnglRecordRules::readDegradation);
}

QList<QByteArray> ZelBnglRecordRules::entries() const
{
    QList<QByteArray> entries;
    for (const Rule &rule : m_rules) {
        QByteArray entry = rule.label.isEmpty() ? QByteArray() : rule.label + ": ";
        entry += rule.text.left + (rule.backRate.isEmpty() ? " -> " : " <-> ") + rule.text.right
            + ' ' + rule.rate;
        if (!rule.backRate.isEmpty())
            entry += ", " + rule.backRate;
        entries.append(entry);
    }
    return entries;
}

ZelBnglRecordRules::Bond ZelBnglRecordRules::bondOf(
    int type1, int component1, int type2, int component2) const
{
    const auto end = [this](int type, int component) {
        return std::pair(type,
            m_molecules.types()[static_cast<size_t>(type)]
                .components[static_cast<size_t>(component)]
                .group);
    };
    const std::pair<int, int> a = end(type1, component1);
    const std::pair<int, int> b = end(type2, component2);
    const auto &[first, second] = std::minmax(a, b);
    return {first.first, first.second, second.first, second.second};
}

void ZelBnglRecordRules::begin(const char *kind, const QString &psiimId, const ZelDbRecord &record)
{
    QString name = record.value(ZelDbColumn::ShortName);
    if (name.isEmpty())
        name = record.value(ZelDbColumn::Name);
    if (name.isEmpty())
        name = psiimId;
    m_item = QStringLiteral("%1 \"%2\"").arg(QLatin1String(kind), name);
    m_label = ZelBnglEntries::label(name);
    if (const QString type = record.value(ZelDbColumn::BindingType); !type.isEmpty())
        note(QStringLiteral("its binding type \"%1\" is not in the file").arg(type));
}

const ZelBnglGraph *ZelBnglRecordRules::pattern(const QString &cpaPsiimId)
{
    const ZelBnglAliases::Alias &alias = m_aliases.alias(cpaPsiimId);
    if (alias.problem.isEmpty())
        return &alias.pattern;
    leaveOut(QStringLiteral("of the complex \"%1\": %2")
                 .arg(alias.name.isEmpty() ? cpaPsiimId : alias.name, alias.problem));
    return nullptr;
}

bool ZelBnglRecordRules::findSite(const ZelBnglGraph &pattern, const ZelDbRecord &record,
    int posColumn, int siteColumn, ZelBnglReactions::End *end)
{
    end->mol = record.value(posColumn).toInt();
    if (end->mol >= 0 && end->mol < static_cast<int>(pattern.mols.size())) {
        const Graph::Mol &mol = pattern.mols[static_cast<size_t>(end->mol)];
        end->site =
            m_molecules.molecule(mol.type).sites.value(record.value(siteColumn), Graph::None);
        if (end->site != Graph::None) {
            const Graph::BondKind bond = mol.sites[static_cast<size_t>(end->site)].bond;
            if (bond != Graph::Bonded && bond != Graph::Bound)
                return true;
            leaveOut(QStringLiteral("it binds a site that is bound already"));
            return false;
        }
    }
    leaveOut(QStringLiteral("it binds a site that its complex does not have"));
    return false;
}

void ZelBnglRecordRules::readAssociation(const QString &psiimId)
{
    const ZelDbRecord record = m_db->caiGetHashInfo(psiimId);
    begin("association", psiimId, record);
    const QString cpa1 = record.value(ZelDbColumn::CaiCpa1);
    const QString cpa2 = record.value(ZelDbColumn::CaiCpa2);
    const QString geometry = record.value(ZelDbColumn::Geometry);
    const bool isWithin = geometry != QLatin1String(ZelGeometry::Plane)
        && geometry != QLatin1String(ZelGeometry::Space) && (cpa2.isEmpty() || cpa1 == cpa2);
    const Graph *const pattern1 = pattern(cpa1);
    const Graph *const pattern2 = isWithin || !pattern1 ? pattern1 : pattern(cpa2);
    ZelBnglReactions::End end1;
    ZelBnglReactions::End end2;
    if (!pattern1 || !pattern2
        || !findSite(*pattern1, record, ZelDbColumn::MolPos1, ZelDbColumn::Bst1, &end1)
        || !findSite(*pattern2, record, ZelDbColumn::MolPos2, ZelDbColumn::Bst2, &end2))
        return;
    if (isWithin && end1.mol == end2.mol) {
        leaveOut(QStringLiteral("it joins two sites of one molecule"));
        return;
    }
    const RuleGraph rule = isWithin
        ? ZelBnglReactions::closure(*pattern1, end1, end2)
        : ZelBnglReactions::association(*pattern1, end1, *pattern2, end2);
    if (const QString result = record.value(ZelDbColumn::CaiResultCpa); !result.isEmpty()) {
        const ZelBnglAliases::Alias &alias = m_aliases.alias(result);
        if (!alias.problem.isEmpty()
            || RuleGraph::text(m_molecules.types(), alias.pattern)
                != RuleGraph::text(m_molecules.types(), rule.sides[RuleGraph::After])) {
            note(QStringLiteral("its result is what its reactants become, which the complex "
                                "\"%1\" is not")
                     .arg(alias.name));
        }
    }
    add(rule, record.value(ZelDbColumn::AssociationRate));
}

void ZelBnglRecordRules::readDissociation(const QString &psiimId)
{
    const ZelDbRecord record = m_db->cadGetHashInfo(psiimId);
    begin("dissociation", psiimId, record);
    const Graph *const source = pattern(record.value(ZelDbColumn::CadSourceCpa));
    if (!source)
        return;
    std::vector<Graph> products;
    for (const int column : {ZelDbColumn::CadResultCpa1, ZelDbColumn::CadResultCpa2}) {
        const QString cpa = record.value(column);
        if (cpa.isEmpty())
            continue;
        const Graph *const product = pattern(cpa);
        if (!product)
            return;
        products.push_back(*product);
    }
    addOneOf(ZelBnglReactions::dissociations(m_molecules.types(), *source, products),
        QStringLiteral("no bond of its source parts it into its products"),
        QStringLiteral("several bonds of its source part it into its products; one of them is in "
                       "the file"),
        record.value(ZelDbColumn::DissociationRate));
}

void ZelBnglRecordRules::readTransformation(const QString &psiimId)
{
    const ZelDbRecord record = m_db->trnGetHashInfo(psiimId);
    begin("transformation", psiimId, record);
    const Graph *const from = pattern(record.value(ZelDbColumn::TrnFromCpa));
    const Graph *const to = from ? pattern(record.value(ZelDbColumn::TrnToCpa)) : nullptr;
    if (!from || !to)
        return;
    const QString rate = record.value(ZelDbColumn::Rate);
    const auto typesOf = [](const Graph &graph) {
        std::vector<int> types;
        for (const Graph::Mol &mol : graph.mols)
            types.push_back(mol.type);
        std::sort(types.begin(), types.end());
        return types;
    };
    if (typesOf(*from) != typesOf(*to)) {
        checkProduct(*to);
        add(ZelBnglReactions::replacement(*from, *to), rate);
        return;
    }
    addOneOf(ZelBnglReactions::transformations(m_molecules.types(), *from, *to),
        QStringLiteral("its sides differ in more than states and compartments, or in nothing"),
        QStringLiteral("several molecules or components could be the ones that change; one of them "
                       "is in the file"),
        rate);
}

void ZelBnglRecordRules::readProduction(const QString &psiimId)
{
    const ZelDbRecord record = m_db->pdnGetHashInfo(psiimId);
    begin("production", psiimId, record);
    if (!isNumber(record.value(ZelDbColumn::PdnDelay), 0.0)
        || !isNumber(record.value(ZelDbColumn::PdnM), 1.0)
        || !isNumber(record.value(ZelDbColumn::PdnN), 1.0)) {
        leaveOut(QStringLiteral("its rate depends on more than k: the file knows no delay, m and "
                                "n"));
        return;
    }
    const QString sourceId = record.value(ZelDbColumn::PdnSourceCpa);
    static const Graph nothing;
    const Graph *const source = sourceId.isEmpty() ? &nothing : pattern(sourceId);
    const Graph *const product =
        source ? pattern(record.value(ZelDbColumn::PdnProductCpa)) : source;
    if (!source || !product)
        return;
    checkProduct(*product);
    add(ZelBnglReactions::production(*source, *product), record.value(ZelDbColumn::PdnK));
}

void ZelBnglRecordRules::readDegradation(const QString &psiimId)
{
    const ZelDbRecord record = m_db->degGetHashInfo(psiimId);
    begin("degradation", psiimId, record);
    if (const Graph *const source = pattern(record.value(ZelDbColumn::DegradationCpa)))
        add(ZelBnglReactions::replacement(*source, {}), record.value(ZelDbColumn::DegradationRate));
}

void ZelBnglRecordRules::addOneOf(const std::vector<ZelBnglRuleGraph> &rules,
    const QString &whyNone, const QString &whySeveral, const QString &rate)
{
    if (rules.empty()) {
        leaveOut(whyNone);
        return;
    }
    if (rules.size() > 1)
        note(whySeveral);
    add(*std::min_element(rules.begin(), rules.end(),
            [this](const RuleGraph &a, const RuleGraph &b) {
                const ZelBnglGraphTypes &types = m_molecules.types();
                return a.text(types).joined() < b.text(types).joined();
            }),
        rate);
}

void ZelBnglRecordRules::add(const ZelBnglRuleGraph &rule, const QString &rate)
{
    for (const Graph &side : rule.sides) {
        for (const Graph::Mol &mol : side.mols) {
            for (size_t s = 0; s < mol.sites.size(); ++s) {
                const Graph::Site &site = mol.sites[s];
                if (site.bond == Graph::Bonded) {
                    m_bonds.insert(bondOf(mol.type, static_cast<int>(s),
                        side.mols[static_cast<size_t>(site.partnerMol)].type, site.partnerSite));
                }
            }
        }
    }
    const QByteArray given = rateText(rate);
    const RuleGraph::Text back = rule.reversed().text(m_molecules.types());
    const auto forward = m_open.constFind(keyOf(m_label, back.left, back.right));
    if (forward != m_open.constEnd()) {
        m_rules[static_cast<size_t>(*forward)].backRate = given;
        m_open.erase(forward);
        return;
    }
    const RuleGraph::Text text = rule.text(m_molecules.types());
    m_open.insert(keyOf(m_label, text.left, text.right), static_cast<qsizetype>(m_rules.size()));
    m_rules.push_back({m_label, text, given, QByteArray()});
}

QByteArray ZelBnglRecordRules::rateText(const QString &rate)
{
    const QByteArray text = rate.trimmed().toUtf8();
    if (ZelBnglEntries::isExpression(text))
        return text;
    note(text.isEmpty()
            ? QStringLiteral("it has no rate and goes with 0")
            : QStringLiteral("its rate \"%1\" is no expression; it goes with 0").arg(rate));
    return "0";
}

void ZelBnglRecordRules::checkProduct(const ZelBnglGraph &product)
{
    if (!product.isSpecies(m_molecules.types()))
        note(
            QStringLiteral("what it makes leaves sites or features open, which simulators refuse"));
}
