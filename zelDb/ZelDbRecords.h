#pragma once

#include "zelDb/ZelDbConnection.h"
#include "zelDb/ZelDbSchema.h"
#include "zelDb/ZelDbTypes.h"

#include <functional>

class ZelDbSqliteModel;

/// What all kinds of records have in common, driven by the column lists of the schema.
namespace ZelDbRecords {

/// The model's open connection; null, with the failure noted, when there is none.
ZelDbConnection *connection(const ZelDbSqliteModel *model);

/// A null text would be stored as "nothing", which only references may be.
inline QString notNull(const QString &text)
{
    return text.isNull() ? QLatin1String("") : text;
}
/// A reference for storing: nothing when empty.
inline QVariant reference(const QString &id)
{
    return id.isEmpty() ? QVariant() : QVariant(id);
}

QStringList list(ZelDbConnection *connection, const ZelDbKind &kind);
ZelDbRecord read(ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId);
/// Calls `visit` for each record with its id and the named columns, until it answers false.
bool visit(ZelDbConnection *connection, const ZelDbKind &kind, const QList<int> &columns,
    const std::function<bool(const ZelDbRecord &)> &visit);
/// One column of a record; empty when unknown.
QString text(ZelDbConnection *connection, const ZelDbKind &kind, const char *columnName,
    const QString &psiimId);
bool exists(ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId);
bool insert(ZelDbConnection *connection, const ZelDbKind &kind, const ZelDbRecord &record);
/// Sets one column of a record that must exist.
bool update(ZelDbConnection *connection, const ZelDbKind &kind, const char *columnName,
    const QString &psiimId, const QVariant &value);

/// A whole number from 0 on; false, with the failure noted, for any other text.
bool position(ZelDbConnection *connection, const QString &text, int *number);
/// Notes that a row of the kind names a record that does not exist, when that is the case.
bool explainMissing(
    ZelDbConnection *connection, const QList<QPair<int, QString>> &references, const QString &what);

/// "complex 'A.B' (cpx3)"
QString describe(ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId);
/// "Complex 'A.B' (cpx3)"
QString describeCapital(ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId);

/// Removes a record and what belongs to it; refused, naming them, while others refer to it.
bool remove(ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId);
/// False, with the failure noted, when something refers to the record.
bool isFree(ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId);

/// A new id of the kind; empty on failure.
QString newId(ZelDbSqlite *db, ZelDbConnection *connection, const ZelDbKind &kind);

} // namespace ZelDbRecords
