#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelSpecies/MoleculeTypes.h"
#include "zelSpecies/ZelSpeciesExport.h"

#include <QString>

#include <vector>

namespace zel::species {

/// A species or pattern as plain data over a catalog, which must outlive it: molecules with their
/// states, the statuses of their sites, and bonds.
struct ZELSPECIES_EXPORT Species
{
    static constexpr int None = -1;
    /// More molecules than this are shown by their number only and never compared.
    static constexpr int MaxMols = 1000;

    struct Site
    {
        int status = BindingStatusUnspecified; ///< bonded sites are bound
        int partnerMol = None;
        int partnerSite = None;
    };

    struct Mol
    {
        const MoleculeTypes::Mol *type = nullptr;
        std::vector<int> states; ///< ComponentStateType, counted over the molecule
        std::vector<char> negated; ///< by component
        std::vector<Site> sites; ///< counted over the molecule
        QString compartment;
    };

    struct Bond
    {
        int mol1;
        int site1;
        int mol2;
        int site2;
    };

    std::vector<Mol> mols;

    /// Adds a molecule of which everything is open.
    void addMol(const MoleculeTypes::Mol *type);
    /// False when a place does not exist or has a bond already.
    bool addBond(int mol1, int site1, int mol2, int site2);
    int bondCount() const;
    /// Each once, in the order of their first ends.
    std::vector<Bond> bonds() const;

    /// In the manner of the BioNetGen language: "A(b!1,s~P).B(a!1)"; what is open is left out.
    QString text() const;
    /// Whether all that the pattern, of the same catalog, says holds of this species; with `whole`,
    /// of which it then must be all molecules and bonds. Undecided after too many tries, it answers
    /// false.
    bool isMatchedBy(const Species &pattern, bool whole) const;
};

} // namespace zel::species
