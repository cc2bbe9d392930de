#pragma once

#include "zelSpecies/Species.h"

#include <QString>
#include <QStringList>

/// A species or pattern in words: for those who do not see its drawing, and beside it.
class ZelModelReportWords
{
public:
    /// The species must outlive it.
    explicit ZelModelReportWords(const zel::species::Species &species);

    /// "EGF", "2 EGFR".
    QStringList molecules() const;
    /// "EGFR (1) tyr: P"; molecules are numbered where there are several of a type.
    QStringList states() const;
    QStringList bonds() const;
    /// Sites that are bound, a pattern does not say to what.
    QStringList boundSites() const;
    QStringList freeSites() const;
    /// "EGFR in PM"
    QStringList compartments() const;
    /// All of it, for a picture's alternative text.
    QString drawing() const;

    static QString of(const zel::species::MoleculeTypes::Mol &mol);

private:
    QString molTitle(int mol) const;
    QString siteTitle(int mol, int site) const;
    QStringList sitesOf(int status) const;

    const zel::species::Species &m_species;
    std::vector<int> m_numbers; ///< among the molecules of the type; 0 when it is the only one
};
