#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelExchange/export/ZelBnglMolecules.h"

#include <map>

/// The aliases of a model database as patterns of the language; each is read once.
class ZelBnglAliases
{
public:
    struct Alias
    {
        QString name;
        QString problem; ///< why the language cannot say it, empty when it can
        ZelBnglGraph pattern;
    };

    ZelBnglAliases(ZelDbSqliteModel *db, const ZelBnglMolecules &molecules)
        : m_db(db), m_molecules(molecules)
    {
    }

    /// Valid until the aliases die; an unknown id has a problem.
    const Alias &alias(const QString &cpaPsiimId);

private:
    QString read(const ZelDbRecord &record, ZelBnglGraph *pattern) const;
    QString readBonds(const QString &cpxPsiimId, ZelBnglGraph *pattern) const;
    QString readStates(const QString &stateCode, ZelBnglGraph *pattern) const;
    QString readFeatures(const ZelBnglMolecules::Component &component, const QString &text,
        ZelBnglGraph::Mol *mol) const;
    static QString readCompartments(const QString &key, ZelBnglGraph *pattern);

    ZelDbSqliteModel *m_db;
    const ZelBnglMolecules &m_molecules;
    std::map<QString, Alias> m_aliases;
};
