#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelSpecies/Species.h"
#include "zelSpecies/ZelSpeciesExport.h"

#include <QString>
#include <QStringList>

class ZelDbSqliteModel;

namespace zel::species {

/// Reads species of one model.
class ZELSPECIES_EXPORT SpeciesReader
{
public:
    SpeciesReader(const MoleculeTypes &catalog, const ZelDbSqliteModel &db)
        : m_catalog(catalog), m_db(db)
    {
    }

    /// A complex with everything open but its bonds.
    Species readComplex(const QString &cpxPsiimId);
    /// An alias, of which complex, second key and state code must be given.
    Species readAlias(const ZelDbRecord &cpa);
    /// What was wrong with the last one, one sentence each.
    const QStringList &problems() const { return m_problems; }

private:
    void applyStates(Species *species, const QString &stateCode);

    const MoleculeTypes &m_catalog;
    const ZelDbSqliteModel &m_db;
    QStringList m_problems;
};

} // namespace zel::species
