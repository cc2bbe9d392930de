#pragma once

#include "zelDb/ZelDbRecords.h"
#include "zelDb/ZelDbSqliteModel.h"

/// The operations that a model has for every kind of record.
namespace ZelDbModelAccess {

inline QStringList list(const ZelDbSqliteModel *model, int type)
{
    return ZelDbRecords::list(model->openConnection(), *ZelDbSchema::kind(type));
}

inline ZelDbRecord read(const ZelDbSqliteModel *model, int type, const QString &psiimId)
{
    return ZelDbRecords::read(model->openConnection(), *ZelDbSchema::kind(type), psiimId);
}

inline bool insert(const ZelDbSqliteModel *model, int type, const ZelDbRecord &record)
{
    return ZelDbRecords::insert(model->openConnection(), *ZelDbSchema::kind(type), record);
}

inline bool remove(const ZelDbSqliteModel *model, int type, const QString &psiimId)
{
    return ZelDbRecords::remove(model->openConnection(), *ZelDbSchema::kind(type), psiimId);
}

/// The first column of all rows of a statement.
inline QStringList column(
    const ZelDbSqliteModel *model, const char *statement, const QVariantList &values)
{
    ZelDbConnection *connection = model->openConnection();
    return connection ? connection->column(QLatin1String(statement), values) : QStringList();
}

/// The first column of the first row of a statement.
inline QString value(
    const ZelDbSqliteModel *model, const char *statement, const QVariantList &values)
{
    ZelDbConnection *connection = model->openConnection();
    return connection ? connection->value(QLatin1String(statement), values).toString() : QString();
}

/// All rows of a statement, their columns as texts.
inline QList<QStringList> rows(
    const ZelDbSqliteModel *model, const char *statement, int columns, const QVariantList &values)
{
    QList<QStringList> all;
    ZelDbConnection *connection = model->openConnection();
    const bool ok =
        connection && connection->read(QLatin1String(statement), values, [&](const QSqlQuery &row) {
            QStringList texts;
            for (int i = 0; i < columns; ++i)
                texts.append(row.value(i).toString());
            all.append(texts);
        });
    return ok ? all : QList<QStringList>();
}

} // namespace ZelDbModelAccess
