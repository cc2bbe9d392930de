#pragma once

#include "zelExchange/import/ZelBnglTypes.h"

/// A species or pattern of a file spelled out over the molecule types: every component of every
/// molecule, each on one of the equal-named components of its type.
struct ZelBnglInstance
{
    enum BondKind { Unbound, AnyBond, Bound, Bonded };

    /// Most molecules, and most components and features of them all: what is drawn.
    static constexpr size_t MaxMolecules = 1000;
    static constexpr size_t MaxParts = 10000;

    static constexpr int NoState = -1; ///< any, or the component has none
    static constexpr int None = -1;

    struct Site
    {
        int state = NoState; ///< index into the type's states
        BondKind bond = AnyBond;
        int partnerMol = None; ///< when bonded
        int partnerSite = None;
        int component = None; ///< of ZelBnglModel::components, where the pattern mentions it
    };

    struct Mol
    {
        int type = 0;
        quint32 molecule = 0; ///< of ZelBnglModel::molecules
        quint32 compartment = ZelBnglNames::None;
        std::vector<Site> sites; ///< as the type's
    };

    std::vector<Mol> mols;

    /// Spells out a pattern as it is written. A reason why it cannot be, empty when it can.
    QString read(
        const ZelBnglModel &model, const ZelBnglTypes &types, const ZelBnglPattern &pattern);
    /// Whether bonds join all its molecules.
    bool isConnected() const;
    /// Puts the molecules into an order, and their equal-named components onto those of the type,
    /// that are the same for all ways to write one species. Where only states or compartments
    /// differ, the bonds stay on the same sites.
    void makeCanonical(const ZelBnglModel &model, const ZelBnglTypes &types);
};
