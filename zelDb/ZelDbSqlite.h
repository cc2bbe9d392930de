#pragma once

#include "zelDb/ZelDbExport.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class ZelDbConnection;
class ZelDbSqliteModel;

/// One step of a migration: statements that raise a file's schema version from fromVersion by one.
struct ZelDbMigrationStep
{
    int fromVersion = 0;
    QStringList statements;
};

/// The schema version that open() asks for and the steps that lead to it.
struct ZelDbMigrations
{
    int version = 1;
    QList<ZelDbMigrationStep> steps;
};

/// Whether a short name is free, and if not, who has it.
struct ZelDbNameAnswer
{
    enum State {
        Free,
        Taken,
        Unknown ///< it could not be asked: no such kind of records, or the file refused
    };
    State state = Unknown;
    QString psiimId; ///< of the first record that has it, when it is taken
};

/// A connection to one model file. The file holds the whole model whenever no connection is open.
///
/// Nothing throws and nothing is written to the debug output: a function that answers false has
/// left the file as it was, and errorText() says in full sentences what happened and what to do.
class ZELDB_EXPORT ZelDbSqlite : public QObject
{
    Q_OBJECT
public:
    enum Error {
        NoError,
        NotOpen, ///< no file is open
        InvalidInput, ///< an argument is unusable, e.g. an empty identifier
        AlreadyExists, ///< create() and backupTo() never overwrite
        MissingFile,
        ForeignFile, ///< not SQLite, or another application's database
        NewerSchema, ///< written by a newer version of this system
        OlderSchema, ///< needs a migration, which a read-only connection may not do
        MigrationFailed,
        Corrupt, ///< truncated or damaged
        ReadOnly,
        Locked, ///< another connection holds the file
        DiskFull,
        Constraint, ///< a record refers to one that does not exist, or a rule is broken
        InUse, ///< the record to delete is referred to
        Failed ///< anything else
    };
    Q_ENUM(Error)

    explicit ZelDbSqlite(QObject *parent = nullptr);
    ~ZelDbSqlite() override;

    bool isOpen() const;
    bool isReadOnly() const;
    /// True between the begin and the end of the outermost transaction.
    bool isInTransaction() const;
    /// The path as given to create() or open(); empty when closed.
    QString path() const;
    /// The schema version of the open file, 0 when closed.
    int schemaVersion() const;
    /// The schema version that this library writes.
    static int currentSchemaVersion();
    /// Stands for the stored molecules with their parts and references: as long as it stays the
    /// same, so do they, whoever writes. Never the same for two files; empty when it cannot be
    /// told.
    QByteArray moleculesStamp();
    /// The last failure, here or in a model on this connection.
    Error error() const;
    QString errorText() const;

    /// Makes a new file, or a database in memory for ":memory:", and opens it. Refuses an existing
    /// file; a failure leaves no file behind.
    bool create(const QString &path);
    /// Opens an existing file. An older schema is migrated after a backup beside the file.
    bool open(const QString &path);
    bool open(const QString &path, const ZelDbMigrations &migrations);
    /// Opens an existing file that is never written; an older schema is refused.
    bool openReadOnly(const QString &path);
    /// Rolls an unfinished transaction back; does nothing when closed.
    void close();

    /// Copies the open model to a new file; refused inside a transaction and over an existing file.
    bool backupTo(const QString &path);
    /// What is wrong with the stored data, one sentence each; empty when all is well.
    QStringList checkIntegrity();

    /// Called with the text and the bound values of each statement that was executed; for tracing.
    void setStatementObserver(
        std::function<void(const QString &statement, const QVariantList &values)> observer);
    /// Limits the size of the file to this number of kibibytes, for tests of full disks; 0 = none.
    bool setSizeLimit(int kibibytes);

    /// The layout XML of the record, empty when unknown; words "mol", "mli", "cpx", "cai".
    static QString getGraphicsInfo(
        const QString &recordWord, const QString &psiimId, const ZelDbSqliteModel *model);
    /// Whether no other record of that kind ("mol", "mli", "cpx", ...) has the short name ("cpa":
    /// the alias short name). Free without a database; after Unknown the model's errorText() says
    /// why. For a host beside a save: most kinds are saved whatever their names are.
    static ZelDbNameAnswer askShortName(const QString &recordWord, const QString &shortName,
        const QString &psiimIdToExcept, const ZelDbSqliteModel *model);
    /// The base when it is free, else the first free one of base_1, base_2, ... Empty when it
    /// could not be asked. With `number` the search begins there (0: the base itself) and leaves
    /// the number after that of the answer, so that many names are given out fast.
    static QString getFreeShortName(const QString &recordWord, const QString &base,
        const QString &psiimIdToExcept, const ZelDbSqliteModel *model, qint64 *number = nullptr);
    /// Whether askShortName() answers that it is free: what could not be asked counts as taken.
    static bool isUniqueShortName(const QString &recordWord, const QString &shortName,
        const QString &psiimIdToExcept, const ZelDbSqliteModel *model);

    /// For the database library itself: null, with the failure noted, when no file is open.
    ZelDbConnection *openConnection();

private:
    friend class ZelDbReading;
    friend class ZelDbTransaction;

    bool openChecked(const QString &path, bool readOnly, const ZelDbMigrations &migrations);

    std::unique_ptr<ZelDbConnection> m_connection;
};

/// A transaction that rolls back unless it is committed; transactions nest.
///
/// Every write that fails inside it, and every read that the database refuses, is remembered,
/// whatever the callers made of it: commit() then rolls back and answers false. Inside a nested
/// transaction the failures count for the outer ones too, unless rollback() took them back.
class ZELDB_EXPORT ZelDbTransaction
{
public:
    /// Begins at once; db may be null, then isActive() is false and commit() answers false.
    explicit ZelDbTransaction(ZelDbSqlite *db);
    ~ZelDbTransaction();
    ZelDbTransaction(const ZelDbTransaction &) = delete;
    ZelDbTransaction &operator=(const ZelDbTransaction &) = delete;

    /// False when it could not begin (locked, read-only, closed) or has ended.
    bool isActive() const;
    /// Ends the transaction; nested ones that are still open are rolled back with a failure.
    bool commit();
    /// Takes everything since the beginning back, the remembered failures included.
    void rollback();
    /// The failures so far, oldest first; kept after the end. At most the first hundred.
    QStringList failures() const;

private:
    QPointer<ZelDbSqlite> m_db;
    int m_level = 0;
    int m_serial = 0;
    QStringList m_failures;
};

/// Keeps the file as it is during a load of many statements: all see one state of it, and its lock
/// is taken once. Others cannot write meanwhile, so it must not outlive the load; they nest.
class ZELDB_EXPORT ZelDbReading
{
public:
    /// db may be null or closed: then nothing is kept.
    explicit ZelDbReading(ZelDbSqlite *db);
    ~ZelDbReading();
    ZelDbReading(const ZelDbReading &) = delete;
    ZelDbReading &operator=(const ZelDbReading &) = delete;

private:
    QPointer<ZelDbSqlite> m_db;
};
