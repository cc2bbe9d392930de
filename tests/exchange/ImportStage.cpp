#include "ImportStage.h"

#include "zelExchange/bngl/ZelBnglParser.h"

#include <QHash>

#include <algorithm>
#include <numeric>

ImportStage::ImportStage()
{
    if (!file.create(QStringLiteral(":memory:")))
        qFatal("no model in memory");
}

bool ImportStage::import(const ZelBnglModel &model)
{
    return importer.importModel(model);
}

bool ImportStage::import(const QByteArray &source)
{
    return importer.importModel(ZelBnglParser::parse(source, QStringLiteral("m.bngl")));
}

QStringList ImportStage::identities() const
{
    QStringList list;
    for (const QString &id : db.cpaGetListPsiimId()) {
        const ZelDbRecord record = db.cpaGetHashInfo(id);
        list.append(db.cpxGetFingerPrint(record.value(ZelDbColumn::CpaCpx)) + u'|'
            + record.value(ZelDbColumn::CpaKey2) + u'|' + record.value(ZelDbColumn::CpaStateCode));
    }
    list.sort();
    return list;
}

QStringList ImportStage::losses() const
{
    QStringList list;
    for (const ZelImportReport::Loss &loss : report().losses)
        list.append(QStringLiteral("%1: %2 (%3)").arg(loss.line).arg(loss.text, loss.reason));
    return list;
}

namespace {

/// Writes patterns of a model in another order of molecules and components, with other bond labels.
class Shuffler
{
public:
    Shuffler(const ZelBnglModel &model, QRandomGenerator &random) : m_model(model), m_random(random)
    {
    }

    QByteArray pattern(const ZelBnglPattern &source);

private:
    QByteArray component(const ZelBnglComponent &source);
    QByteArray molecule(const ZelBnglMolecule &source);

    const ZelBnglModel &m_model;
    QRandomGenerator &m_random;
    QHash<quint32, QByteArray> m_labels;
    QList<int> m_numbers; ///< for the labels to come
};

QByteArray Shuffler::component(const ZelBnglComponent &source)
{
    QByteArray text = m_model.name(source.name).toByteArray();
    for (const quint32 state : ZelBnglModel::items(m_model.states, source.states))
        text += '~' + m_model.name(state).toByteArray();
    for (const ZelBnglBond &bond : ZelBnglModel::items(m_model.bonds, source.bonds)) {
        QByteArray label = m_model.name(bond.label).toByteArray();
        if (bond.label >= ZelBnglNames::FirstFree) {
            QByteArray &given = m_labels[bond.label];
            if (given.isEmpty())
                given = QByteArray::number(m_numbers.takeLast());
            label = given;
        }
        text += '!' + label;
    }
    return text;
}

QByteArray Shuffler::molecule(const ZelBnglMolecule &source)
{
    QByteArrayList components;
    for (const ZelBnglComponent &item : m_model.componentsOf(source))
        components.append(component(item));
    std::shuffle(components.begin(), components.end(), m_random);
    QByteArray text = m_model.name(source.name).toByteArray() + '(' + components.join(',') + ')';
    if (source.compartment != ZelBnglNames::None)
        text += '@' + m_model.name(source.compartment).toByteArray();
    return text;
}

QByteArray Shuffler::pattern(const ZelBnglPattern &source)
{
    m_labels.clear();
    m_numbers.resize(200);
    std::iota(m_numbers.begin(), m_numbers.end(), 1);
    std::shuffle(m_numbers.begin(), m_numbers.end(), m_random);
    QByteArrayList molecules;
    for (const ZelBnglMolecule &item : m_model.moleculesOf(source))
        molecules.append(molecule(item));
    std::shuffle(molecules.begin(), molecules.end(), m_random);
    const QByteArray prefix = source.compartment != ZelBnglNames::None
        ? '@' + m_model.name(source.compartment).toByteArray() + "::"
        : QByteArray();
    return prefix + molecules.join('.');
}

} // namespace

QByteArray shuffled(const ZelBnglModel &model, QRandomGenerator &random)
{
    Shuffler shuffler(model, random);
    QByteArray text("begin molecule types\n");
    for (const ZelBnglMoleculeType &type : model.moleculeTypes) {
        const ZelBnglMolecule &molecule = model.molecules[type.molecule];
        QByteArrayList components;
        for (const ZelBnglComponent &component : model.componentsOf(molecule)) {
            components.append(model.name(component.name).toByteArray());
            for (const quint32 state : ZelBnglModel::items(model.states, component.states))
                components.last() += '~' + model.name(state).toByteArray();
        }
        text += model.name(molecule.name).toByteArray() + '(' + components.join(',') + ")\n";
    }
    QByteArrayList species;
    for (const ZelBnglSpecies &source : model.species)
        species.append(shuffler.pattern(model.patterns[source.pattern]) + " 0\n");
    QByteArrayList rules;
    for (const ZelBnglRule &rule : model.rules) {
        for (const ZelBnglRange side : {rule.reactants, rule.products}) {
            for (const ZelBnglPattern &pattern : ZelBnglModel::items(model.patterns, side)) {
                if (pattern.molecules.count > 0)
                    rules.append(shuffler.pattern(pattern) + " -> 0 1\n");
            }
        }
    }
    std::shuffle(species.begin(), species.end(), random);
    std::shuffle(rules.begin(), rules.end(), random);
    return text + "end molecule types\nbegin species\n" + species.join()
        + "end species\nbegin reaction rules\n" + rules.join() + "end reaction rules\n";
}
