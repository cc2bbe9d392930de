#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QMap>
#include <QString>
#include <QStringList>

class ZelSceneEditing;

/// A model in memory for random users: molecules of one to three components, complexes of one to
/// three molecules, and an interaction of either kind.
class RandomModel
{
public:
    RandomModel();
    ~RandomModel();

    ZelDbSqliteModel *db() { return &m_db; }
    /// The identifiers of one kind by its tag: "mol", "cpa", "cai".
    QStringList ids(const QString &tag) const { return m_ids.value(tag); }
    /// "mol;mol1" and so on, as dragged from a list.
    QStringList records(const QStringList &tags) const;
    /// The fields of all records by their names, layouts left out; the records by their ids.
    QMap<QString, QMap<QString, QString>> rows() const;
    /// What is wrong with the model, as a kind and a sentence: "names: ...".
    QStringList findings();
    /// Why the model is not what it should be; empty when all went well.
    QString fault() const { return m_fault; }

private:
    void addMolecules();
    void addComplexes();
    void draw(ZelSceneEditing *scene, const QStringList &records);
    void addInteractions();
    void note(const QString &tag, const QString &psiimId);

    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QMap<QString, QStringList> m_ids;
    QString m_fault;
};
