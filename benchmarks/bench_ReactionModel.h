#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QByteArray>
#include <QHash>
#include <QRandomGenerator>
#include <QSize>
#include <QStringList>

/// A model in memory with 1,000 associations whose results have 2 to 6 molecules.
class ReactionModel
{
public:
    static constexpr int Associations = 1000;

    static ReactionModel &instance();

    ZelDbSqliteModel *db() { return &m_db; }
    const QStringList &associations() const { return m_associations; }
    /// The same species as graphs with given positions, three for each association in turn, each
    /// to be drawn in that many pixels.
    QByteArray graphs(const QSize &size);

private:
    ReactionModel();
    void storeMolecule(int type);
    /// The alias of a chain of molecules of these types, bonded one to the next.
    QString alias(const QString &types);

    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QStringList m_molecules;
    QHash<QString, QString> m_aliases;
    QStringList m_associations;
    QRandomGenerator m_random{1};
};
