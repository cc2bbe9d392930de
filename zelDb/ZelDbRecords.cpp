#include "zelDb/ZelDbRecords.h"

#include "zelDb/ZelDbSqliteModel.h"

namespace {

using Type = ZelDbColumnType;

// Columns as expressions: see ZelDbConnection::read().
QString selectStatement(const ZelDbKind &kind)
{
    QString columns;
    for (const ZelDbColumnInfo &info : kind.columns)
        columns += QLatin1String(", +") + QLatin1String(info.name);
    return QLatin1String("SELECT +rowNumber%1 FROM %2 WHERE psiimId = ?")
        .arg(columns, QLatin1String(kind.word));
}

/// Texts of the statements by kind and column set: they are needed for each row of a save.
template <typename Make>
QString cached(ZelDbConnection *connection, const ZelDbKind &kind, quint64 columns, Make make)
{
    QString &text = connection->statementTexts()[{kind.type, columns}];
    if (text.isEmpty())
        text = make();
    return text;
}

constexpr quint64 SelectAll = ~quint64(0);

QString insertStatement(const ZelDbKind &kind, quint64 present)
{
    QString names = QStringLiteral("psiimId");
    QString values = QStringLiteral("?");
    QString updates;
    for (size_t i = 0; i < kind.columns.size(); ++i) {
        const ZelDbColumnInfo &info = kind.columns[i];
        const QString name = QLatin1String(info.name);
        if (present & (quint64(1) << i)) {
            names += QLatin1String(", ") + name;
            values += QLatin1String(", ?");
            updates += QLatin1String(updates.isEmpty() ? "%1 = excluded.%1" : ", %1 = excluded.%1")
                           .arg(name);
        } else if (info.refersToRecord()) {
            // Required references are checked before the conflict that makes this an update.
            names += QLatin1String(", ") + name;
            values += QLatin1String(", (SELECT %1 FROM %2 WHERE psiimId = ?)")
                          .arg(name, QLatin1String(kind.word));
        }
    }
    const QString conflict =
        updates.isEmpty() ? QStringLiteral("NOTHING") : QLatin1String("UPDATE SET ") + updates;
    return QLatin1String("INSERT INTO %1 (%2) VALUES (%3) ON CONFLICT (psiimId) DO %4")
        .arg(QLatin1String(kind.word), names, values, conflict);
}

/// The value to store; false when the text does not suit the column.
bool convert(const ZelDbColumnInfo &info, const QString &text, QVariant *value)
{
    bool ok = true;
    switch (info.type) {
    case Type::Text:
        *value = ZelDbRecords::notNull(text);
        return true;
    case Type::Owner:
    case Type::Reference:
        *value = ZelDbRecords::reference(text);
        return true;
    case Type::Integer:
        *value = text.isEmpty() ? 0 : text.toInt(&ok);
        return ok;
    case Type::OptionalInteger:
        *value = text.isEmpty() ? QVariant() : QVariant(text.toInt(&ok));
        return ok && (text.isEmpty() || value->toInt() >= 0);
    case Type::FlagOff:
    case Type::FlagOn:
        if (text.isEmpty())
            *value = info.type == Type::FlagOn ? 1 : 0;
        else
            *value = text.toInt(&ok);
        return ok && (value->toInt() == 0 || value->toInt() == 1);
    }
    return false;
}

} // namespace

ZelDbConnection *ZelDbRecords::connection(const ZelDbSqliteModel *model)
{
    return model ? model->openConnection() : nullptr;
}

QStringList ZelDbRecords::list(ZelDbConnection *connection, const ZelDbKind &kind)
{
    return connection
        ? connection->column(QLatin1String("SELECT psiimId FROM %1 ORDER BY rowNumber")
                                 .arg(QLatin1String(kind.word)),
            {})
        : QStringList();
}

ZelDbRecord ZelDbRecords::read(
    ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId)
{
    ZelDbRecord record;
    if (!connection || psiimId.isEmpty())
        return record;
    const QString statement =
        cached(connection, kind, SelectAll, [&] { return selectStatement(kind); });
    const bool ok = connection->read(statement, {psiimId}, [&](const QSqlQuery &row) {
        record.reserve(qsizetype(kind.columns.size()) + 2);
        record.insert(ZelDbColumn::PsiimId, psiimId);
        record.insert(ZelDbColumn::RowNumber, row.value(0).toString());
        int i = 0;
        for (const ZelDbColumnInfo &info : kind.columns) {
            const QVariant value = row.value(++i);
            if (!value.isNull())
                record.insert(info.column, value.toString());
        }
    });
    return ok ? record : ZelDbRecord();
}

bool ZelDbRecords::visit(ZelDbConnection *connection, const ZelDbKind &kind,
    const QList<int> &columns, const std::function<bool(const ZelDbRecord &)> &visit)
{
    if (!connection)
        return false;
    QString names;
    for (const int column : columns) {
        const ZelDbColumnInfo *const info = kind.find(column);
        if (!info) {
            return connection->fail(ZelDbSqlite::InvalidInput,
                QLatin1String("A %1 has no column %2; ask for those that it has.")
                    .arg(QLatin1String(kind.title), QString::number(column)));
        }
        names += QLatin1String(", +") + QLatin1String(info->name);
    }
    bool goesOn = true;
    ZelDbRecord record; // one for all rows: its places are made once
    return connection->read(QLatin1String("SELECT +psiimId%1 FROM %2 ORDER BY rowNumber")
                                .arg(names, QLatin1String(kind.word)),
        {}, [&](const QSqlQuery &row) {
            if (!goesOn)
                return;
            record.insert(ZelDbColumn::PsiimId, row.value(0).toString());
            for (qsizetype i = 0; i < columns.size(); ++i)
                record.insert(columns.at(i), row.value(static_cast<int>(i) + 1).toString());
            goesOn = visit(record);
        });
}

QString ZelDbRecords::text(ZelDbConnection *connection, const ZelDbKind &kind,
    const char *columnName, const QString &psiimId)
{
    return connection ? connection
                            ->value(QLatin1String("SELECT %1 FROM %2 WHERE psiimId = ?")
                                        .arg(QLatin1String(columnName), QLatin1String(kind.word)),
                                {notNull(psiimId)})
                            .toString()
                      : QString();
}

bool ZelDbRecords::exists(
    ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId)
{
    return !text(connection, kind, "psiimId", psiimId).isEmpty();
}

bool ZelDbRecords::insert(
    ZelDbConnection *connection, const ZelDbKind &kind, const ZelDbRecord &record)
{
    if (!connection)
        return false;
    const QString psiimId = record.value(ZelDbColumn::PsiimId);
    if (psiimId.isEmpty()) {
        return connection->fail(ZelDbSqlite::InvalidInput,
            QLatin1String("A %1 cannot be stored without an id; give it one.")
                .arg(QLatin1String(kind.title)));
    }
    quint64 present = 0;
    QVariantList values{psiimId};
    QList<QPair<int, QString>> references;
    qsizetype used = 1 + qsizetype(record.contains(ZelDbColumn::RowNumber));
    for (size_t i = 0; i < kind.columns.size(); ++i) {
        const ZelDbColumnInfo &info = kind.columns[i];
        const auto it = record.constFind(info.column);
        if (it == record.constEnd()) {
            if (info.refersToRecord()) // see insertStatement()
                values.append(psiimId);
            continue;
        }
        QVariant value;
        if (!convert(info, *it, &value)) {
            return connection->fail(ZelDbSqlite::InvalidInput,
                QLatin1String("The %1 (%2) cannot be stored: '%3' is no value for its %4.")
                    .arg(QLatin1String(kind.title), psiimId.left(80), it->left(80),
                        QLatin1String(info.name)));
        }
        present |= quint64(1) << i;
        values.append(value);
        ++used;
        if (info.refersToRecord())
            references.append({info.target, *it});
    }
    if (used != record.size()) {
        return connection->fail(ZelDbSqlite::InvalidInput,
            QLatin1String("The %1 (%2) cannot be stored: it was given a column that its kind does "
                          "not have.")
                .arg(QLatin1String(kind.title), psiimId.left(80)));
    }
    const QString statement =
        cached(connection, kind, present, [&] { return insertStatement(kind, present); });
    if (connection->write(statement, values))
        return true;
    if (connection->error() == ZelDbSqlite::Constraint) {
        explainMissing(connection, references,
            QLatin1String("The %1 (%2)").arg(QLatin1String(kind.title), psiimId.left(80)));
    }
    return false;
}

bool ZelDbRecords::update(ZelDbConnection *connection, const ZelDbKind &kind,
    const char *columnName, const QString &psiimId, const QVariant &value)
{
    if (!connection)
        return false;
    int affected = 0;
    if (!connection->write(QLatin1String("UPDATE %1 SET %2 = ? WHERE psiimId = ?")
                               .arg(QLatin1String(kind.word), QLatin1String(columnName)),
            {value, notNull(psiimId)}, &affected))
        return false;
    if (affected > 0)
        return true;
    return connection->fail(ZelDbSqlite::InvalidInput,
        QLatin1String("There is no %1 '%2'; store it first.")
            .arg(QLatin1String(kind.title), psiimId.left(80)));
}

bool ZelDbRecords::position(ZelDbConnection *connection, const QString &text, int *number)
{
    bool ok = false;
    *number = text.toInt(&ok);
    if (ok && *number >= 0)
        return true;
    return connection->fail(ZelDbSqlite::InvalidInput,
        QLatin1String("'%1' is no position of a molecule; give a whole number from 0 on.")
            .arg(text.left(80)));
}

bool ZelDbRecords::explainMissing(
    ZelDbConnection *connection, const QList<QPair<int, QString>> &references, const QString &what)
{
    for (const auto &[type, id] : references) {
        const ZelDbKind *kind = ZelDbSchema::kind(type);
        if (id.isEmpty() || !kind || exists(connection, *kind, id))
            continue;
        return connection->explain(
            QLatin1String("%1 refers to %2 '%3', which does not exist; store that first.")
                .arg(what, QLatin1String(kind->title), id.left(80)));
    }
    return false;
}

QString ZelDbRecords::newId(ZelDbSqlite *db, ZelDbConnection *connection, const ZelDbKind &kind)
{
    if (!connection)
        return {};
    const QString tag = QLatin1String(kind.word);
    const QString next =
        QStringLiteral("INSERT INTO idCounter (tag, lastNumber) VALUES (?, ?) ON CONFLICT (tag)"
                       " DO UPDATE SET lastNumber = max(lastNumber + 1, excluded.lastNumber) "
                       "RETURNING lastNumber");
    qint64 &last = connection->handedOut()[tag];
    ZelDbTransaction transaction(db);
    QString id;
    do {
        const QVariant number = connection->value(next, {tag, last + 1});
        if (number.isNull()) {
            id.clear();
            break;
        }
        last = number.toLongLong();
        id = tag + QString::number(last);
    } while (exists(connection, kind, id));
    return transaction.commit() ? id : QString();
}
