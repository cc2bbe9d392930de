#pragma once

#include "apps/zelmodel/ZelModelKinds.h"
#include "zelSpecies/MoleculeTypes.h"

#include <QRegularExpression>
#include <QSet>
#include <QString>

class ZelDbSqliteModel;
class ZelModelRun;
namespace zel::species {
struct Species;
}

/// Chooses records by name, and by the molecule, site and state that they are about.
class ZelModelFilter
{
public:
    /// Takes the options "name", "molecule", "site" and "state" of the run.
    explicit ZelModelFilter(const ZelModelRun &run);

    bool isEmpty() const { return !m_hasName && !m_hasPart; }
    /// Looks up what must be known before records can be judged. False, with a reason, when a
    /// molecule, site or state is not of the model, or the database refused.
    bool prepare(
        const zel::species::MoleculeTypes &catalog, const ZelDbSqliteModel &db, QString *reason);
    bool accepts(const ZelModelKind &kind, const ZelDbRecord &record) const;

private:
    bool acceptsPart(const ZelModelKind &kind, const ZelDbRecord &record) const;
    bool findMcps(const zel::species::MoleculeTypes &catalog, QString *reason);
    bool findSpecies(const zel::species::MoleculeTypes &catalog, const ZelDbSqliteModel &db);
    bool findInteractions(const ZelDbSqliteModel &db);
    bool isWanted(const zel::species::Species &species) const;

    bool m_hasName = false;
    bool m_hasPart = false;
    QRegularExpression m_name;
    QString m_mol;
    QString m_site;
    QString m_stateMcp; ///< of a state "Y1068~P"
    QString m_state;

    QSet<QString> m_mols;
    QSet<QString> m_mcps;
    QSet<QString> m_states;
    QSet<QString> m_sites;
    QSet<QString> m_complexes;
    QSet<QString> m_aliases;
    QSet<QString> m_interactions;
};
