#pragma once

#include "zelSpecies/ZelSpeciesExport.h"

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <vector>

class ZelDbSqliteModel;

namespace zel::species {

/// The molecule types of a model with their parts, read once: everything that is said about
/// species refers to them.
class ZELSPECIES_EXPORT MoleculeTypes
{
public:
    struct Part
    {
        QString id;
        QString name;
        QString group; ///< states of a component with one non-empty group exclude each other
    };

    struct Mcp
    {
        QString id;
        QString shortName; ///< unique in its molecule
        QString name;
        QString copyGroup; ///< of the components that are copies of each other
        QList<Part> states;
        QList<Part> sites;
        int group = 0; ///< index of the first of its copies
        bool isCopy = false; ///< of another component, or copied by one: interchangeable with it
        int firstState = 0; ///< counted over the molecule
        int firstSite = 0; ///< counted over the molecule

        /// As it is called where species are written out.
        const QString &title() const { return isCopy ? copyGroup : shortName; }
    };

    struct Mol
    {
        QString id;
        QString name;
        std::vector<Mcp> mcps;
        int stateCount = 0;
        int siteCount = 0;

        /// The component of that site, counted over the molecule.
        const Mcp &mcpOfSite(int site) const;
        QString siteName(int site) const;
        /// Components with states and numbers of sites: what makes a type, but for its name.
        QString structure() const;
        /// The same in an order that does not depend on how it was written.
        QString sortedStructure() const;
    };

    struct Site
    {
        int mol = -1; ///< index into mols(); -1 for an unknown site
        int site = 0; ///< counted over the molecule
    };

    /// False when the database refused.
    bool read(const ZelDbSqliteModel &db);

    const std::vector<Mol> &mols() const { return m_mols; }
    /// Gives molecules other names, by id: those that they go by in another model.
    void rename(const QHash<QString, QString> &names);
    /// Null for an unknown molecule.
    const Mol *mol(const QString &id) const;
    const Mol *molNamed(const QString &name) const;
    Site site(const QString &id) const { return m_sites.value(id); }
    /// "EGFR.SH2" for messages; the id itself when the site is unknown.
    QString siteTitle(const QString &id) const;

private:
    void number();

    std::vector<Mol> m_mols;
    QHash<QString, int> m_molOfId;
    QHash<QString, int> m_molOfName;
    QHash<QString, Site> m_sites;
};

} // namespace zel::species
