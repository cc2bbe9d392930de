#pragma once

#include "zelDb/ZelDbSqlite.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <memory>

class QSqlError;

/// The statements, transactions and errors of one open database.
///
/// Statements are prepared once and kept by their text; each is finished after use, so that no
/// read lock stays behind.
class ZelDbConnection
{
public:
    ZelDbConnection() = default;
    ~ZelDbConnection();
    ZelDbConnection(const ZelDbConnection &) = delete;
    ZelDbConnection &operator=(const ZelDbConnection &) = delete;

    bool isOpen() const { return !m_name.isEmpty(); }
    bool isReadOnly() const { return m_readOnly; }
    const QString &path() const { return m_path; }
    int version() const { return m_version; }
    void setVersion(int version) { m_version = version; }
    /// The path that messages name, when it is not the one that is opened.
    void setShownPath(const QString &path) { m_path = path; }

    /// Opens without any check of the content.
    bool connect(const QString &path, bool readOnly);
    void disconnect();

    /// Executes a statement once, without a place in the cache.
    bool execute(const QString &statement);
    /// Executes a writing statement; `affected` receives the number of changed rows.
    bool write(const QString &statement, const QVariantList &values, int *affected = nullptr);
    /// Calls `row` for each row; false when the database refused. Of columns that are written as
    /// expressions ("+name") the driver does not look the declared type up in every execution:
    /// worth it where a load asks a thousand times.
    template <typename Row>
    bool read(const QString &statement, const QVariantList &values, Row row)
    {
        // Kept alive here: what `row` asks may clear the cache.
        const std::shared_ptr<QSqlQuery> query = start(statement, values);
        if (!query)
            return false;
        while (query->next())
            row(*query);
        return finish(query.get(), statement, values);
    }
    /// The first column of the first row, null when there is none.
    QVariant value(const QString &statement, const QVariantList &values = {});
    /// The first column of all rows.
    QStringList column(const QString &statement, const QVariantList &values);

    /// Takes note of a failure, also for the transaction in progress; answers false.
    bool fail(ZelDbSqlite::Error error, const QString &text);
    bool failNotOpen();
    /// Puts a better sentence in the place of the last failure's; answers false.
    bool explain(const QString &text);
    ZelDbSqlite::Error error() const { return m_error; }
    const QString &errorText() const { return m_errorText; }
    /// The kind of a driver's error and a sentence about it that names the file.
    ZelDbSqlite::Error classify(const QSqlError &error, QString *text) const;

    /// The depth after the begin; a level exists also when the database refused to begin it.
    int begin(bool *began, int *serial);
    /// `failures` receives what failed in the level, the last statement included.
    bool commit(int level, int serial, QStringList *failures);
    /// Takes a level back; `forget` drops its failures, else they count for the outer level.
    void rollback(int level, int serial, bool forget);
    bool isCurrent(int level, int serial) const;
    /// Whether the level is in progress and the database agreed to begin it.
    bool isSound(int level, int serial) const;
    int depth() const { return int(m_levels.size()); }
    QStringList failures(int level, int serial) const;

    /// From the first begin to the last end all statements see one state of the file, and the lock
    /// for reading is taken once.
    void beginReading();
    void endReading();

    /// A number that no connection had before molecules may have changed last through this one.
    quint64 moleculesNumber() const { return m_moleculesNumber; }

    /// The greatest number handed out for a tag in this session, so that a rolled-back transaction
    /// does not hand it out again.
    QHash<QString, qint64> &handedOut() { return m_handedOut; }

    /// Texts of the statements by kind and set of columns, which every row of a save needs.
    QHash<QPair<int, quint64>, QString> &statementTexts() { return m_statementTexts; }

    std::function<void(const QString &, const QVariantList &)> observer;

private:
    struct Level
    {
        int serial = 0;
        bool began = false;
        ZelDbSqlite::Error firstError = ZelDbSqlite::NoError;
        QStringList failures;
    };

    std::shared_ptr<QSqlQuery> start(const QString &statement, const QVariantList &values);
    bool finish(QSqlQuery *query, const QString &statement, const QVariantList &values);
    bool failStatement(const QSqlError &error);
    bool control(const QString &statement);
    bool refuseBroken();
    void rollbackTop(bool forget);
    void noteMoleculesChange();

    QString m_name;
    QString m_path;
    bool m_readOnly = false;
    int m_version = 0;
    QSqlDatabase m_db;
    QHash<QString, std::shared_ptr<QSqlQuery>> m_queries;
    std::shared_ptr<QSqlQuery> m_reading; // an unfinished statement keeps the lock
    int m_readers = 0;
    QList<Level> m_levels;
    int m_lastSerial = 0;
    /// SQLite may have ended the transaction by itself: nothing may be written until the outermost
    /// level has ended, or it would be written for good.
    bool m_broken = false;
    ZelDbSqlite::Error m_error = ZelDbSqlite::NoError;
    QString m_errorText;
    quint64 m_moleculesNumber = 0;
    QHash<QString, qint64> m_handedOut;
    QHash<QPair<int, quint64>, QString> m_statementTexts;
};
