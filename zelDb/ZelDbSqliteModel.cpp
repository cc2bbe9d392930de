#include "zelDb/ZelDbSqliteModel.h"

#include "zelDb/ZelDbModelAccess.h"

using namespace ZelDbModelAccess;

ZelDbSqliteModel::ZelDbSqliteModel(ZelDbSqlite *db, QObject *parent) : QObject(parent), m_db(db) { }

ZelDbSqliteModel::~ZelDbSqliteModel() = default;

ZelDbSqlite *ZelDbSqliteModel::database() const
{
    return m_db;
}

QString ZelDbSqliteModel::errorText() const
{
    return m_db ? m_db->errorText()
                : QStringLiteral("No model file is open; open one or create a new one first.");
}

ZelDbConnection *ZelDbSqliteModel::openConnection() const
{
    return m_db ? m_db->openConnection() : nullptr;
}

bool ZelDbSqliteModel::visitRecords(int recordType, const QList<int> &columns,
    const std::function<bool(const ZelDbRecord &)> &visit) const
{
    const ZelDbKind *const kind = ZelDbSchema::kind(recordType);
    return kind && ZelDbRecords::visit(openConnection(), *kind, columns, visit);
}

qint64 ZelDbSqliteModel::countRecords(int recordType) const
{
    const ZelDbKind *const kind = ZelDbSchema::kind(recordType);
    ZelDbConnection *const connection = openConnection();
    const QVariant count = kind && connection
        ? connection->value(QLatin1String("SELECT count(*) FROM ") + QLatin1String(kind->word))
        : QVariant();
    return count.isValid() ? count.toLongLong() : -1;
}

QString ZelDbSqliteModel::refGetReferences(const QString &kind, const QString &psiimId) const
{
    return value(this, "SELECT +text FROM reference WHERE kind = ? AND id = ?", {kind, psiimId});
}

bool ZelDbSqliteModel::refInsert(const QString &kind, const QString &psiimId, const QString &text)
{
    ZelDbConnection *connection = openConnection();
    if (!connection)
        return false;
    const ZelDbKind *info = ZelDbSchema::kind(kind);
    if (!info) {
        return connection->fail(ZelDbSqlite::InvalidInput,
            QLatin1String("'%1' is no kind of record; references cannot be kept for it.")
                .arg(kind.left(80)));
    }
    if (text.isEmpty()) {
        return connection->write(
            QStringLiteral("DELETE FROM reference WHERE kind = ? AND id = ?"), {kind, psiimId});
    }
    int affected = 0;
    const bool ok =
        connection->write(QLatin1String("INSERT INTO reference (kind, id, text) SELECT ?, ?, ? "
                                        "WHERE EXISTS (SELECT 1 FROM %1 WHERE psiimId = ?) "
                                        "ON CONFLICT (kind, id) DO UPDATE SET text = excluded.text")
                              .arg(kind),
            {kind, psiimId, text, psiimId}, &affected);
    if (!ok || affected > 0)
        return ok;
    return connection->fail(ZelDbSqlite::Constraint,
        QLatin1String("There is no %1 '%2' that could keep references; store it first.")
            .arg(QLatin1String(info->title), psiimId.left(80)));
}
