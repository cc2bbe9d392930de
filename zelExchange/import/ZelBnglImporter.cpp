#include "zelExchange/import/ZelBnglImporter.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelExchange/import/ZelBnglItem.h"

#include <algorithm>

namespace {

constexpr char FixedAmount[] = "fixed";

} // namespace

QString ZelBnglImporter::obstacle() const
{
    if (const ZelBnglFault &fault = m_types.fault(); !fault.message.isEmpty())
        return m_model.errorText({m_model.place(fault.offset), fault.message});
    for (const ZelBnglType &type : m_types.types) {
        const QString known = name(type.name);
        const ZelDbNameAnswer answer =
            ZelDbSqlite::askShortName(QStringLiteral("mol"), known, QString(), m_db);
        if (answer.state == ZelDbNameAnswer::Unknown)
            return m_db->errorText();
        if (answer.state == ZelDbNameAnswer::Taken) {
            return QStringLiteral("The model has a molecule \"%1\" already. Import into a new "
                                  "model, or rename one of the two.")
                .arg(known);
        }
    }
    return {};
}

bool ZelBnglImporter::run()
{
    m_total = static_cast<int>(m_model.compartments.size() + m_model.parameters.size()
        + m_types.types.size() + m_model.species.size() + m_model.rules.size()
        + m_model.observables.size());
    return importCompartments() && importParameters() && importTypes() && importSpecies()
        && importRules() && importObservables() && importRest();
}

bool ZelBnglImporter::advance()
{
    m_isBrokenOff = m_progress && !m_progress(m_done++, m_total);
    return !m_isBrokenOff;
}

bool ZelBnglImporter::importCompartments()
{
    QHash<quint32, QString> ids;
    std::vector<const ZelBnglCompartment *> inside;
    for (const ZelBnglCompartment &compartment : m_model.compartments) {
        if (!advance())
            return false;
        if (ids.contains(compartment.name)) {
            leaveOut(compartment.offset, m_model.name(compartment.name).toByteArray(),
                QStringLiteral("a compartment of that name stands before it"));
            continue;
        }
        const QString id = newId(ZelDb::Compartment);
        if (!m_db->cmpInsert(
                {{ZelDbColumn::PsiimId, id}, {ZelDbColumn::ShortName, name(compartment.name)},
                    {ZelDbColumn::Name, name(compartment.name)},
                    {ZelDbColumn::CompartmentDimension, QString::number(compartment.dimensions)},
                    {ZelDbColumn::CompartmentSize, line(compartment.size)}}))
            return false;
        ids.insert(compartment.name, id);
        if (compartment.dimensions == 2)
            m_membranes.insert(compartment.name);
        // It may stand before the one that surrounds it.
        if (compartment.parent != ZelBnglNames::None)
            inside.push_back(&compartment);
        ++m_report.compartments;
    }
    for (const ZelBnglCompartment *compartment : inside) {
        if (!ids.contains(compartment->parent)) {
            leaveOut(compartment->offset, m_model.name(compartment->parent).toByteArray(),
                QStringLiteral("there is no compartment of that name"));
        } else if (!m_db->cmpInsert({{ZelDbColumn::PsiimId, ids.value(compartment->name)},
                       {ZelDbColumn::CompartmentParent, ids.value(compartment->parent)}})) {
            return false;
        }
    }
    return true;
}

bool ZelBnglImporter::importParameters()
{
    for (const ZelBnglParameter &parameter : m_model.parameters) {
        if (!advance()
            || !m_db->parInsert({{ZelDbColumn::PsiimId, newId(ZelDb::Parameter)},
                {ZelDbColumn::ShortName, name(parameter.name)},
                {ZelDbColumn::Name, name(parameter.name)},
                {ZelDbColumn::ParameterValue, line(parameter.value)}}))
            return false;
        ++m_report.parameters;
    }
    return true;
}

bool ZelBnglImporter::importTypes()
{
    int index = 0;
    for (ZelBnglType &type : m_types.types) {
        if (!advance() || !m_store.storeType(type, index++))
            return false;
        ++m_report.moleculeTypes;
        m_report.components += static_cast<int>(type.sites.size());
        for (const ZelBnglTypeSite &site : type.sites) {
            m_report.sites += site.canBind ? 1 : 0;
            m_report.features += static_cast<int>(site.states.size());
        }
        if (!type.isDeclared && !m_model.moleculeTypes.empty()) {
            leaveOut(type.offset, m_model.name(type.name).toByteArray(),
                QStringLiteral("the molecule is not declared; its components and states are those "
                               "that patterns mention"));
        }
    }
    for (const ZelBnglMoleculeType &declared : m_model.moleculeTypes) {
        const ZelBnglMolecule &molecule = m_model.molecules[declared.molecule];
        const ZelBnglType &type = m_types.types[static_cast<size_t>(m_types.find(molecule.name))];
        const auto say = [&](const QString &reason) {
            leaveOut(declared.offset, m_model.name(molecule.name).toByteArray(), reason);
        };
        if (type.offset != declared.offset) {
            say(QStringLiteral("a molecule type of that name stands before it"));
            continue;
        }
        if (m_model.hasAttributes(molecule))
            say(QStringLiteral("the model holds no attributes in braces"));
    }
    return true;
}

bool ZelBnglImporter::importSpecies()
{
    for (const ZelBnglSpecies &species : m_model.species) {
        if (!advance())
            return false;
        const ZelBnglPattern &source = m_model.patterns[species.pattern];
        ZelBnglInstance instance;
        QString reason = instance.read(m_model, m_types, source);
        if (reason.isEmpty() && !instance.isConnected())
            reason = QStringLiteral("its molecules are joined by an unsaid path");
        if (!reason.isEmpty()) {
            const QByteArray text = pattern(species.pattern) + ' ' + m_model.line(species.amount);
            if (!keep(ZelBnglItem::Species, species.offset, text.trimmed(), reason))
                return false;
            continue;
        }
        ZelBnglStored stored;
        if (!m_store.storeInstance(source, std::move(instance), &stored))
            return false;
        if (stored.isNew) {
            ++m_report.species;
        } else {
            leaveOut(species.offset, pattern(species.pattern),
                QStringLiteral("the species stands in the file already"));
        }
        if (!importSeed(species, stored))
            return false;
    }
    m_report.complexes = m_store.complexCount();
    return true;
}

bool ZelBnglImporter::importSeed(const ZelBnglSpecies &species, const ZelBnglStored &stored)
{
    // A network lists every species, most of them with nothing at the start.
    const QString amount = species.amount.isEmpty() ? QStringLiteral("0") : line(species.amount);
    const ZelBnglPattern &source = m_model.patterns[species.pattern];
    if (species.index > 0 && amount == QLatin1String("0") && !source.isFixed)
        return true;
    return m_db->sedInsert({{ZelDbColumn::PsiimId, newId(ZelDb::Seed)},
        {ZelDbColumn::SeedCpa, stored.cpaPsiimId}, {ZelDbColumn::SeedAmount, amount},
        {ZelDbColumn::Notes, source.isFixed ? QLatin1String(FixedAmount) : QLatin1String()}});
}

bool ZelBnglImporter::storePattern(quint32 index, ZelBnglStored *stored)
{
    const QByteArray text = pattern(index);
    if (const auto known = m_patterns.constFind(text); known != m_patterns.constEnd()) {
        *stored = *known;
        return true;
    }
    ZelBnglInstance instance;
    instance.read(m_model, m_types, m_model.patterns[index]);
    if (!m_store.storeInstance(m_model.patterns[index], std::move(instance), stored))
        return false;
    m_report.patterns += stored->isNew ? 1 : 0;
    m_report.complexes = m_store.complexCount();
    m_patterns.insert(text, *stored);
    return true;
}

bool ZelBnglImporter::importRules()
{
    int number = 0;
    for (const ZelBnglRule &rule : m_model.rules) {
        ++number;
        if (!advance())
            return false;
        const QString ownName = line(rule.label);
        const QString givenName =
            ownName.isEmpty() ? QStringLiteral("Rule%1").arg(number) : QString();
        std::vector<ZelBnglRules::Reaction> reactions;
        const QString reason = m_rules.read(rule, &reactions);
        m_interactions.add(rule, reactions);
        if (!reason.isEmpty()) {
            if (!keep(ZelBnglItem::Rule, rule.text.offset, ZelBnglWriter::rule(m_model, rule),
                    reason, givenName))
                return false;
            continue;
        }
        for (const ZelBnglRules::Reaction &reaction : reactions) {
            if (!importReaction(rule, ownName + givenName, reaction))
                return false;
        }
    }
    return m_interactions.store(&m_report.interactions);
}

bool ZelBnglImporter::importReaction(
    const ZelBnglRule &rule, const QString &ruleName, const ZelBnglRules::Reaction &reaction)
{
    using Kind = ZelBnglRules::Kind;
    ZelBnglStored from[2];
    ZelBnglStored to[2];
    for (int i = 0; i < 2; ++i) {
        if ((reaction.from[i] != ZelBnglRules::None && !storePattern(reaction.from[i], &from[i]))
            || (reaction.to[i] != ZelBnglRules::None && !storePattern(reaction.to[i], &to[i])))
            return false;
    }
    const QString rate = line(reaction.rate);
    ZelDbRecord record{{ZelDbColumn::ShortName, ruleName}, {ZelDbColumn::Name, ruleName},
        {ZelDbColumn::Notes, QString::fromUtf8(ZelBnglWriter::rule(m_model, rule))}};
    const auto give = [&record](int column, const QString &text) { record.insert(column, text); };
    switch (reaction.kind) {
    case Kind::Association: {
        const auto endOf = [this](const ZelBnglStored &stored, quint32 patternIndex,
                               quint32 component) {
            const ZelBnglPattern &source = m_model.patterns[patternIndex];
            const quint32 first = m_model.molecules[source.molecules.first].components.first;
            return stored.ends[component - first];
        };
        const ZelBnglStored::End end1 = endOf(from[0], reaction.from[0], reaction.site1);
        const ZelBnglStored::End end2 = endOf(from[1], reaction.from[1], reaction.site2);
        give(ZelDbColumn::PsiimId, newId(ZelDb::Cai));
        give(ZelDbColumn::AssociationRate, rate);
        give(ZelDbColumn::CaiCpa1, from[0].cpaPsiimId);
        give(ZelDbColumn::CaiCpa2, from[1].cpaPsiimId);
        give(ZelDbColumn::CaiResultCpa, to[0].cpaPsiimId);
        give(ZelDbColumn::Bst1, end1.bstPsiimId);
        give(ZelDbColumn::MolPos1, QString::number(end1.molPos));
        give(ZelDbColumn::Bst2, end2.bstPsiimId);
        give(ZelDbColumn::MolPos2, QString::number(end2.molPos));
        give(ZelDbColumn::Geometry, geometryOf(reaction));
        ++m_report.associations;
        return m_db->caiInsert(record);
    }
    case Kind::Dissociation:
        give(ZelDbColumn::PsiimId, newId(ZelDb::Cad));
        give(ZelDbColumn::DissociationRate, rate);
        give(ZelDbColumn::CadSourceCpa, from[0].cpaPsiimId);
        give(ZelDbColumn::CadResultCpa1, to[0].cpaPsiimId);
        give(ZelDbColumn::CadResultCpa2, to[1].cpaPsiimId);
        ++m_report.dissociations;
        return m_db->cadInsert(record);
    case Kind::Transformation:
        give(ZelDbColumn::PsiimId, newId(ZelDb::Trn));
        give(ZelDbColumn::Rate, rate);
        give(ZelDbColumn::TrnFromCpa, from[0].cpaPsiimId);
        give(ZelDbColumn::TrnToCpa, to[0].cpaPsiimId);
        ++m_report.transformations;
        return m_db->trnInsert(record);
    case Kind::Production:
        // One product at a time, at a rate that depends on nothing but the source.
        give(ZelDbColumn::PsiimId, newId(ZelDb::Pdn));
        give(ZelDbColumn::PdnSourceCpa, from[0].cpaPsiimId);
        give(ZelDbColumn::PdnProductCpa, to[0].cpaPsiimId);
        give(ZelDbColumn::PdnM, QStringLiteral("1"));
        give(ZelDbColumn::PdnN, QStringLiteral("1"));
        give(ZelDbColumn::PdnK, rate);
        ++m_report.productions;
        return m_db->pdnInsert(record);
    case Kind::Degradation:
        give(ZelDbColumn::PsiimId, newId(ZelDb::Deg));
        give(ZelDbColumn::DegradationRate, rate);
        give(ZelDbColumn::DegradationCpa, from[0].cpaPsiimId);
        ++m_report.degradations;
        return m_db->degInsert(record);
    }
    return false;
}

QString ZelBnglImporter::geometryOf(const ZelBnglRules::Reaction &reaction) const
{
    // Two that are bound to membranes meet within one.
    const bool isPlane =
        std::all_of(std::begin(reaction.from), std::end(reaction.from), [this](quint32 index) {
            const auto molecules = m_model.moleculesOf(m_model.patterns[index]);
            return std::any_of(
                molecules.begin(), molecules.end(), [this](const ZelBnglMolecule &molecule) {
                    return m_membranes.contains(molecule.compartment);
                });
        });
    return QLatin1String(isPlane ? ZelGeometry::Plane : ZelGeometry::Space);
}

bool ZelBnglImporter::importObservables()
{
    for (const ZelBnglObservable &observable : m_model.observables) {
        QStringList patterns;
        for (quint32 i = 0; i < observable.patterns.count; ++i)
            patterns.append(QString::fromUtf8(pattern(observable.patterns.first + i)));
        if (!advance()
            || !m_db->obsInsert({{ZelDbColumn::PsiimId, newId(ZelDb::Observable)},
                {ZelDbColumn::ShortName, name(observable.name)},
                {ZelDbColumn::Name, name(observable.name)},
                {ZelDbColumn::ObservableKind,
                    observable.countsSpecies ? QStringLiteral("Species")
                                             : QStringLiteral("Molecules")},
                {ZelDbColumn::ObservablePattern, patterns.join(QLatin1String(", "))}}))
            return false;
        ++m_report.observables;
    }
    return true;
}

bool ZelBnglImporter::importRest()
{
    bool good = true;
    for (const ZelBnglFunction &function : m_model.functions) {
        QByteArrayList arguments;
        for (const quint32 argument : ZelBnglModel::items(m_model.arguments, function.arguments))
            arguments.append(m_model.name(argument).toByteArray());
        good = good
            && keep(ZelBnglItem::Function, function.offset,
                m_model.name(function.name).toByteArray() + '(' + arguments.join(',')
                    + ") = " + m_model.line(function.value),
                QStringLiteral("the model holds no functions"));
    }
    for (const ZelBnglEnergyPattern &energy : m_model.energyPatterns) {
        good = good
            && keep(ZelBnglItem::EnergyPattern, energy.offset,
                label(energy.label) + pattern(energy.pattern) + ' ' + m_model.line(energy.energy),
                QStringLiteral("the model holds no energies"));
    }
    for (const ZelBnglPopulationMap &map : m_model.populationMaps) {
        good = good
            && keep(ZelBnglItem::PopulationMap, map.offset,
                label(map.label) + pattern(map.pattern) + " -> " + pattern(map.population) + ' '
                    + m_model.line(map.rate),
                QStringLiteral("the model holds no populations"));
    }
    for (const ZelBnglMoleculeType &type : m_model.moleculeTypes) {
        const QByteArrayView typeName = m_model.name(m_model.molecules[type.molecule].name);
        good = good
            && (!type.isPopulation
                || keep(ZelBnglItem::PopulationType, type.offset, typeName.toByteArray() + "()",
                    QStringLiteral("the model holds no populations; it is a molecule")));
    }
    for (const ZelBnglAction &action : m_model.actions) {
        good = good
            && keep(action.isBeforeModel ? ZelBnglItem::Setting : ZelBnglItem::Action,
                action.text.offset, m_model.view(action.text).toByteArray(),
                QStringLiteral("a command for a simulator"));
    }
    if (!m_model.reactions.empty()) {
        leaveOut(m_model.reactions.front().offset,
            QByteArray::number(qulonglong(m_model.reactions.size())) + " reactions",
            QStringLiteral("they follow from the rules"));
    }
    if (!m_model.groups.empty()) {
        leaveOut(m_model.groups.front().offset,
            QByteArray::number(qulonglong(m_model.groups.size())) + " groups",
            QStringLiteral("they follow from the observables"));
    }
    return good;
}

bool ZelBnglImporter::keep(const char *kind, quint32 offset, const QByteArray &text,
    const QString &reason, const QString &name)
{
    const int line = m_model.place(offset).line;
    m_report.losses.append({line, QString::fromUtf8(text), reason, true});
    return m_db->utrInsert(
        {{ZelDbColumn::PsiimId, newId(ZelDb::Untranslated)}, {ZelDbColumn::ShortName, name},
            {ZelDbColumn::Name, QLatin1String(kind)}, {ZelDbColumn::SourceFile, m_model.fileName()},
            {ZelDbColumn::SourceLine, QString::number(line)},
            {ZelDbColumn::SourceText, QString::fromUtf8(text)}, {ZelDbColumn::Reason, reason}});
}

void ZelBnglImporter::leaveOut(quint32 offset, const QByteArray &text, const QString &reason)
{
    m_report.losses.append({m_model.place(offset).line, QString::fromUtf8(text), reason, false});
}
