#pragma once

#include "zelExchange/bngl/ZelBnglNetworkReader.h"
#include "zelExchange/bngl/ZelBnglRuleReader.h"

/// The kinds of blocks that a file is made of.
enum class ZelBnglBlock {
    None,
    Parameters,
    Compartments,
    MoleculeTypes,
    PopulationTypes,
    Species,
    Observables,
    Functions,
    EnergyPatterns,
    PopulationMaps,
    ReactionRules,
    Reactions,
    Groups,
    Actions,
    Unknown ///< read over, after its begin was reported
};

/// Reads one entry of a block into the model.
class ZelBnglEntryReader
{
public:
    ZelBnglEntryReader(
        ZelBnglLexer &lexer, ZelBnglModel &model, ZelBnglFault &fault, ZelBnglEntryParts &parts);

    /// Reads the entry that begins here and asks for its end. False with the fault set; parts that
    /// were read until then are taken out of the model again.
    bool readEntry(ZelBnglBlock block);

private:
    struct Sizes
    {
        size_t patterns, molecules, components, bonds, states, arguments, numbers, modifiers,
            attributes;
    };

    Sizes sizes() const;
    void restore(const Sizes &sizes);

    bool readBody(ZelBnglBlock block);
    bool readParameter();
    bool readCompartment();
    bool readMoleculeType(bool isPopulation);
    bool readSpecies();
    bool readObservable();
    bool readFunction();
    bool readEnergyPattern();
    bool readPopulationMap();

    ZelBnglLexer &m_lexer;
    ZelBnglModel &m_model;
    ZelBnglFault &m_fault;
    ZelBnglEntryParts &m_parts;
    ZelBnglRuleReader m_rules;
    ZelBnglNetworkReader m_networks;
    quint32 m_index = 0;
};
