#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QMap>
#include <QString>
#include <QStringList>

class RandomDice;

/// A model in memory for random users: molecules of one to three components, complexes of one to
/// three molecules, and records of all other kinds.
class RandomModel
{
public:
    RandomModel();
    ~RandomModel();

    ZelDbSqliteModel *db() { return &m_db; }
    /// The identifiers of one kind by its tag: "mol", "cpa", "cai".
    QStringList ids(const QString &tag) const { return m_ids.value(tag); }
    QStringList tags() const { return m_ids.keys(); }
    /// "mol;mol1" and so on, as dragged from a list.
    QStringList records(const QStringList &tags) const;
    /// Why the model is not what it should be; empty when all went well.
    QString fault() const { return m_fault; }

    /// Makes rows vanish, or columns hold what no program of ours writes, until mend().
    void damage(RandomDice *dice);
    void mend();
    bool isDamaged() const { return m_damaged; }

private:
    void addMolecules();
    void addComplexes();
    void addInteraction();
    void addAssociation();
    void addReactions();
    void note(const QString &tag, const QString &psiimId);

    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QMap<QString, QStringList> m_ids;
    QString m_fault;
    bool m_damaged = false;
};
