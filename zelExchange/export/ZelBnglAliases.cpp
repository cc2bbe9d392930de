#include "zelExchange/export/ZelBnglAliases.h"

#include "zelDb/ZelDbSqliteModel.h"

#include <QXmlStreamReader>

namespace {

using Graph = ZelBnglGraph;

// Of a row of cpxGetArrayBstBst().
enum BondColumn { MolPos1, Bst1, MolPos2, Bst2 };

constexpr QLatin1String OffSuffix("(-)");
constexpr QLatin1String DontCareSuffix("(0)");
constexpr QLatin1String Bound("Bound");
constexpr QLatin1String Unbound("Unbound");

int number(const QXmlStreamReader &xml)
{
    return xml.attributes().value(QLatin1String("pos")).toInt();
}

} // namespace

const ZelBnglAliases::Alias &ZelBnglAliases::alias(const QString &cpaPsiimId)
{
    const auto known = m_aliases.find(cpaPsiimId);
    if (known != m_aliases.end())
        return known->second;
    Alias &alias = m_aliases[cpaPsiimId];
    const ZelDbRecord record = m_db->cpaGetHashInfo(cpaPsiimId);
    alias.name = record.value(ZelDbColumn::CpaShortName);
    alias.problem = record.isEmpty() ? QStringLiteral("there is no such complex")
                                     : read(record, &alias.pattern);
    return alias;
}

QString ZelBnglAliases::read(const ZelDbRecord &record, ZelBnglGraph *pattern) const
{
    const QString cpx = record.value(ZelDbColumn::CpaCpx);
    const QStringList molIds = m_db->cpxGetListMolPsiimId(cpx);
    for (const QString &id : molIds) {
        const int type = m_molecules.find(id);
        if (type < 0)
            return QStringLiteral("it holds a molecule that is not stored");
        Graph::Mol mol;
        mol.type = type;
        mol.sites.resize(m_molecules.types()[static_cast<size_t>(type)].components.size());
        pattern->mols.push_back(mol);
    }
    QString problem = readStates(record.value(ZelDbColumn::CpaStateCode), pattern);
    if (problem.isEmpty())
        problem = readBonds(cpx, pattern);
    if (problem.isEmpty())
        problem = readCompartments(record.value(ZelDbColumn::CpaKey2), pattern);
    if (problem.isEmpty() && !pattern->isConnected())
        problem = QStringLiteral("no bonds join its molecules");
    return problem;
}

QString ZelBnglAliases::readBonds(const QString &cpxPsiimId, ZelBnglGraph *pattern) const
{
    const QList<QStringList> rows = m_db->cpxGetArrayBstBst(cpxPsiimId);
    const auto count = static_cast<int>(pattern->mols.size());
    for (const QStringList &row : rows) {
        const int mols[2] = {row.value(MolPos1).toInt(), row.value(MolPos2).toInt()};
        int sites[2] = {Graph::None, Graph::None};
        for (int i = 0; i < 2; ++i) {
            if (mols[i] < 0 || mols[i] >= count)
                return QStringLiteral("it has a bond of a molecule that it does not hold");
            const int type = pattern->mols[static_cast<size_t>(mols[i])].type;
            sites[i] = m_molecules.molecule(type).sites.value(
                row.value(i == 0 ? Bst1 : Bst2), Graph::None);
            if (sites[i] == Graph::None)
                return QStringLiteral("it has a bond of a site that its molecule does not have");
            if (pattern->site(mols[i], sites[i]).bond == Graph::Bonded)
                return QStringLiteral("two bonds meet at one of its sites");
        }
        if (mols[0] == mols[1])
            return QStringLiteral("a bond joins two sites of one molecule");
        pattern->bond(mols[0], sites[0], mols[1], sites[1]);
    }
    return {};
}

QString ZelBnglAliases::readStates(const QString &stateCode, ZelBnglGraph *pattern) const
{
    QXmlStreamReader xml(stateCode);
    Graph::Mol *mol = nullptr;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::DTD)
            return QStringLiteral("its state code is not readable");
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("mol")) {
            const int index = number(xml) - 1;
            mol = index >= 0 && index < static_cast<int>(pattern->mols.size())
                ? &pattern->mols[static_cast<size_t>(index)]
                : nullptr;
        } else if (xml.name() == QLatin1String("mcp") && mol) {
            const auto &components = m_molecules.molecule(mol->type).components;
            const int index = number(xml) - 1;
            if (index < 0 || index >= static_cast<int>(components.size()))
                return QStringLiteral("its state code names a component that there is not");
            const ZelBnglMolecules::Component &component = components[static_cast<size_t>(index)];
            if (xml.attributes().value(QLatin1String("not")) == QLatin1String("1"))
                return QStringLiteral("its component \"%1\" is negated").arg(component.name);
            const QString states = xml.attributes().value(QLatin1String("states")).toString();
            if (const QString problem = readFeatures(component, states, mol); !problem.isEmpty())
                return problem;
        } else if (xml.name() == QLatin1String("bst") && mol) {
            const int site = m_molecules.molecule(mol->type).sites.value(
                xml.attributes().value(QLatin1String("id")).toString(), Graph::None);
            const QStringView status = xml.attributes().value(QLatin1String("bindingStatus"));
            if (site != Graph::None && status == Bound)
                mol->sites[static_cast<size_t>(site)].bond = Graph::Bound;
            else if (site != Graph::None && status == Unbound)
                mol->sites[static_cast<size_t>(site)].bond = Graph::Unbound;
        }
    }
    return xml.hasError() && !stateCode.isEmpty() ? QStringLiteral("its state code is not readable")
                                                  : QString();
}

QString ZelBnglAliases::readFeatures(
    const ZelBnglMolecules::Component &component, const QString &text, ZelBnglGraph::Mol *mol) const
{
    const QStringList codes = text.split(u';', Qt::SkipEmptyParts);
    const ZelBnglGraphType &type = m_molecules.types()[static_cast<size_t>(mol->type)];
    QHash<int, QSet<int>> excluded; // states by component
    for (size_t i = 0; i < component.features.size() && i < static_cast<size_t>(codes.size());
         ++i) {
        const ZelBnglMolecules::Feature &feature = component.features[i];
        const QString &code = codes.at(static_cast<qsizetype>(i));
        if (code.endsWith(DontCareSuffix))
            continue;
        int &state = mol->sites[static_cast<size_t>(feature.component)].state;
        if (!code.endsWith(OffSuffix)) {
            if (state != Graph::None && state != feature.state) {
                return QStringLiteral("two states of its component \"%1\" exclude each other")
                    .arg(component.name);
            }
            state = feature.state;
        } else if (feature.offState >= 0) {
            state = feature.offState;
        } else {
            excluded[feature.component].insert(feature.state);
        }
    }
    // Where one state is left, it is that one.
    for (auto entry = excluded.cbegin(); entry != excluded.cend(); ++entry) {
        int &state = mol->sites[static_cast<size_t>(entry.key())].state;
        const int count =
            static_cast<int>(type.components[static_cast<size_t>(entry.key())].states.size());
        if (state != Graph::None)
            continue;
        if (entry->size() != count - 1) {
            return QStringLiteral("its component \"%1\" says which state it has not")
                .arg(component.name);
        }
        for (state = 0; entry->contains(state);)
            ++state;
    }
    return {};
}

QString ZelBnglAliases::readCompartments(const QString &key, ZelBnglGraph *pattern)
{
    if (key.isEmpty())
        return {};
    const QStringList names = key.split(u';');
    bool good = names.size() == static_cast<qsizetype>(pattern->mols.size());
    for (qsizetype i = 0; good && i < names.size(); ++i) {
        const QByteArray name = names.at(i).toUtf8();
        good = name.isEmpty() || name == ZelBnglMolecules::allowedName(names.at(i), false);
        pattern->mols[static_cast<size_t>(i)].compartment = name;
    }
    return good ? QString()
                : QStringLiteral("its second key \"%1\" does not name compartments").arg(key);
}
