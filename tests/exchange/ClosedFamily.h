#pragma once

#include <QByteArray>

#include <vector>

/// A family of models whose number of species is known: a molecule S with sites that are U or P, a
/// kinase K that binds sites that are U, and a phosphatase F that binds those that are P. That
/// gives 4^n + 2 species for n distinct sites, and C(n + 3, 3) + 2 for n identical ones.
struct ClosedFamily
{
    /// A site of S: its state, and whether the enzyme for that state is bound.
    struct Site
    {
        bool isP = false;
        bool isBound = false;
    };

    int sites = 1;
    bool isIdentical = false;

    int speciesCount() const;
    /// Every S with each site in each of its four ways. Identical sites are told apart here, so
    /// that a species is listed as often as it can be written.
    std::vector<std::vector<Site>> listed() const;
    /// Molecule types and the list of species, in the BioNetGen language.
    QByteArray source() const;
};
