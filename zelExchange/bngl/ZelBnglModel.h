#pragma once

#include "zelExchange/ZelExchangeExport.h"
#include "zelExchange/bngl/ZelBnglNames.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <span>
#include <vector>

/// A range of one of the model's lists.
struct ZelBnglRange
{
    quint32 first = 0;
    quint32 count = 0;
};

/// A place in a file; both count from 1, columns count characters.
struct ZelBnglPlace
{
    int line = 0;
    int column = 0;
};

/// What could not be read, where, and what to do; line 0 when it concerns the whole file.
struct ZelBnglError
{
    ZelBnglPlace place;
    QString message;
};

/// One end of a bond. Its label is a name, ZelBnglNames::Any or ZelBnglNames::Bound.
struct ZelBnglBond
{
    static constexpr quint32 NoPartner = 0xffffffff;

    quint32 offset = 0;
    quint32 label = ZelBnglNames::None;
    quint32 partner = NoPartner; ///< the component at the other end, for a bond with a name
};

/// A component of a molecule: with all its states in a molecule type, with at most one elsewhere.
struct ZelBnglComponent
{
    quint32 offset = 0;
    quint32 name = ZelBnglNames::None;
    quint32 label = ZelBnglNames::None;
    ZelBnglRange states; ///< of ZelBnglModel::states
    ZelBnglRange bonds; ///< of ZelBnglModel::bonds
    quint32 attributes = 0; ///< of ZelBnglModel::attributes, which begins with an empty one
};

/// A molecule of a pattern, or a molecule type.
struct ZelBnglMolecule
{
    quint32 offset = 0;
    quint32 name = ZelBnglNames::None;
    quint32 label = ZelBnglNames::None;
    quint32 compartment = ZelBnglNames::None; ///< written at this molecule itself
    ZelBnglRange components;
    quint32 attributes = 0;
};

/// Molecules joined by dots, with what is said about them all.
struct ZelBnglPattern
{
    enum class Quantifier : quint8 { None, Equal, Less, Greater, LessOrEqual, GreaterOrEqual };

    ZelBnglText text;
    ZelBnglRange molecules; ///< empty for nothing ("0", "Trash")
    quint32 compartment = ZelBnglNames::None; ///< written before the pattern, for all its molecules
    quint32 label = ZelBnglNames::None;
    quint32 attributes = 0;
    quint32 quantity = 0;
    Quantifier quantifier = Quantifier::None;
    bool isFixed = false; ///< "$": the amount never changes
};

struct ZelBnglParameter
{
    quint32 offset = 0;
    quint32 name = ZelBnglNames::None;
    ZelBnglText value;
};

struct ZelBnglFunction
{
    quint32 offset = 0;
    quint32 name = ZelBnglNames::None;
    ZelBnglRange arguments; ///< of ZelBnglModel::arguments
    ZelBnglText value;
};

struct ZelBnglCompartment
{
    quint32 offset = 0;
    quint32 name = ZelBnglNames::None;
    int dimensions = 3; ///< 2 or 3
    ZelBnglText size;
    quint32 parent = ZelBnglNames::None;
};

struct ZelBnglMoleculeType
{
    quint32 offset = 0;
    quint32 molecule = 0; ///< of ZelBnglModel::molecules
    bool isPopulation = false;
};

/// A seed species, or one line of a generated species list.
struct ZelBnglSpecies
{
    quint32 offset = 0;
    quint32 index = 0; ///< the number before the entry, 0 without one
    quint32 pattern = 0;
    ZelBnglText amount; ///< empty when none is given, which means 0
};

struct ZelBnglObservable
{
    quint32 offset = 0;
    bool countsSpecies = false; ///< "Species" instead of "Molecules"
    quint32 name = ZelBnglNames::None;
    ZelBnglRange patterns;
};

struct ZelBnglModifier
{
    enum class Kind : quint8 {
        DeleteMolecules,
        MoveConnected,
        MatchOnce,
        TotalRate,
        IncludeReactants,
        ExcludeReactants,
        IncludeProducts,
        ExcludeProducts,
        Priority
    };

    quint32 offset = 0;
    Kind kind = Kind::DeleteMolecules;
    quint32 side = 0; ///< the number of the reactant or product pattern, from 1
    ZelBnglRange patterns;
    ZelBnglText value; ///< of a priority
};

struct ZelBnglRule
{
    ZelBnglText text; ///< the whole entry without its label
    ZelBnglText label;
    ZelBnglRange reactants; ///< of ZelBnglModel::patterns
    ZelBnglRange products;
    ZelBnglText rates[2]; ///< forward and backward; the second is empty when it is not given
    ZelBnglRange modifiers;
    bool isReversible = false;
};

struct ZelBnglEnergyPattern
{
    quint32 offset = 0;
    ZelBnglText label;
    quint32 pattern = 0;
    ZelBnglText energy;
};

struct ZelBnglPopulationMap
{
    quint32 offset = 0;
    ZelBnglText label;
    quint32 pattern = 0;
    quint32 population = 0; ///< a pattern of one molecule
    ZelBnglText rate;
};

/// A command of the file, with its arguments as they stand there.
struct ZelBnglAction
{
    ZelBnglText text;
    bool isBeforeModel = false; ///< stands before the first block
};

/// A reaction of a generated network.
struct ZelBnglReaction
{
    quint32 offset = 0;
    quint32 index = 0;
    ZelBnglRange reactants; ///< numbers of species, of ZelBnglModel::numbers
    ZelBnglRange products;
    ZelBnglText rate;
};

/// The species that an observable of a generated network sums up, as weight and number in turn.
struct ZelBnglGroup
{
    quint32 offset = 0;
    quint32 index = 0;
    quint32 name = ZelBnglNames::None;
    ZelBnglRange members; ///< of ZelBnglModel::numbers, two each
};

/// All that a BioNetGen language file says, in the order of the file. Lists are flat: an item
/// refers to its parts by a range of the list that holds them.
class ZELEXCHANGE_EXPORT ZelBnglModel
{
public:
    ZelBnglModel();
    /// Takes the text, whose size must fit 32 bits.
    ZelBnglModel(const QByteArray &source, const QString &fileName);

    const QString &fileName() const { return m_fileName; }
    const QByteArray &source() const { return m_source; }
    /// Where an item stands that begins at this offset.
    ZelBnglPlace place(quint32 offset) const;
    /// A piece of the text as it stands in the file.
    QByteArrayView view(ZelBnglText text) const;
    /// A piece of the text on one line: continuations are joined, blanks single.
    QByteArray line(ZelBnglText text) const;
    /// The name of that number; "?" and "+" for the reserved ones, empty for none.
    QByteArrayView name(quint32 name) const;
    /// The number of a name, ZelBnglNames::None when the file does not hold it.
    quint32 findName(QByteArrayView name) const;
    /// The number of the name at this place of the text, which becomes known.
    quint32 internName(ZelBnglText text);
    quint32 nameCount() const { return m_names.count(); }

    template <typename Item>
    static std::span<const Item> items(const std::vector<Item> &list, ZelBnglRange range)
    {
        return {list.data() + range.first, range.count};
    }
    std::span<const ZelBnglMolecule> moleculesOf(const ZelBnglPattern &pattern) const
    {
        return items(molecules, pattern.molecules);
    }
    std::span<const ZelBnglComponent> componentsOf(const ZelBnglMolecule &molecule) const
    {
        return items(components, molecule.components);
    }

    /// Whether braces follow the molecule or one of its components.
    bool hasAttributes(const ZelBnglMolecule &molecule) const;
    /// Whether braces stand anywhere in the pattern.
    bool hasAttributes(const ZelBnglPattern &pattern) const;

    bool isValid() const { return errors.empty(); }
    /// "file:line:column: message".
    QString errorText(const ZelBnglError &error) const;
    QStringList errorTexts() const;

    std::vector<ZelBnglParameter> parameters;
    std::vector<ZelBnglFunction> functions;
    std::vector<ZelBnglCompartment> compartments;
    std::vector<ZelBnglMoleculeType> moleculeTypes;
    std::vector<ZelBnglSpecies> species;
    std::vector<ZelBnglObservable> observables;
    std::vector<ZelBnglRule> rules;
    std::vector<ZelBnglEnergyPattern> energyPatterns;
    std::vector<ZelBnglPopulationMap> populationMaps;
    std::vector<ZelBnglAction> actions;
    std::vector<ZelBnglReaction> reactions;
    std::vector<ZelBnglGroup> groups;

    std::vector<ZelBnglPattern> patterns;
    std::vector<ZelBnglMolecule> molecules;
    std::vector<ZelBnglComponent> components;
    std::vector<ZelBnglBond> bonds;
    std::vector<quint32> states; ///< names
    std::vector<quint32> arguments; ///< names
    std::vector<quint32> numbers;
    std::vector<ZelBnglModifier> modifiers;
    std::vector<ZelBnglText> attributes{1};

    std::vector<ZelBnglError> errors;

private:
    QString m_fileName;
    QByteArray m_source;
    std::vector<quint32> m_lineStarts;
    ZelBnglNames m_names;
};
