#include "zelDb/ZelDbConnection.h"

#include "zelDb/ZelDbSchema.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QUuid>

#include <atomic>

namespace {

constexpr int MaxCachedStatements = 512;
constexpr int MaxFailures = 100;
constexpr char ConnectOptions[] = "QSQLITE_BUSY_TIMEOUT=2000";

// Primary result codes of SQLite; the driver reports extended ones, whose low byte they are.
enum SqliteCode : int {
    SqliteBusy = 5,
    SqliteLocked = 6,
    SqliteReadOnly = 8,
    SqliteIoError = 10,
    SqliteCorrupt = 11,
    SqliteFull = 13,
    SqliteCantOpen = 14,
    SqliteTooBig = 18,
    SqliteConstraint = 19,
    SqliteNotADb = 26,
    SqliteIoErrorShortRead = 522,
    SqliteReadOnlyRollback = 776
};

} // namespace

ZelDbConnection::~ZelDbConnection()
{
    disconnect();
}

bool ZelDbConnection::connect(const QString &path, bool readOnly)
{
    disconnect();
    noteMoleculesChange();
    m_path = path;
    m_readOnly = readOnly;
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE"))) {
        return fail(ZelDbSqlite::Failed,
            QStringLiteral("The SQLite driver of the Qt toolkit is missing; install it."));
    }
    m_name = QLatin1String("zel-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    const bool inMemory = path == QLatin1String(":memory:");
    m_db.setDatabaseName(inMemory ? path : QFileInfo(path).absoluteFilePath());
    QString options = QLatin1String(ConnectOptions);
    if (readOnly)
        options += QLatin1String(";QSQLITE_OPEN_READONLY");
    m_db.setConnectOptions(options);
    if (!m_db.open()) {
        failStatement(m_db.lastError());
        disconnect();
        return false;
    }
    return true;
}

void ZelDbConnection::disconnect()
{
    if (!isOpen())
        return;
    while (!m_levels.isEmpty())
        rollbackTop(true);
    m_reading.reset();
    m_queries.clear();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
    m_name.clear();
    m_version = 0;
    m_handedOut.clear();
}

bool ZelDbConnection::execute(const QString &statement)
{
    if (refuseBroken())
        return false;
    noteMoleculesChange();
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    const bool ok = query.exec(statement);
    if (!ok)
        return failStatement(query.lastError());
    while (query.next()) { }
    if (observer)
        observer(statement, {});
    return true;
}

bool ZelDbConnection::write(const QString &statement, const QVariantList &values, int *affected)
{
    if (refuseBroken())
        return false;
    if (ZelDbSchema::mayChangeMolecules(statement))
        noteMoleculesChange();
    const std::shared_ptr<QSqlQuery> query = start(statement, values);
    if (!query)
        return false;
    if (affected)
        *affected = query->numRowsAffected();
    return finish(query.get(), statement, values);
}

QVariant ZelDbConnection::value(const QString &statement, const QVariantList &values)
{
    QVariant first;
    bool found = false;
    read(statement, values, [&](const QSqlQuery &row) {
        if (!std::exchange(found, true))
            first = row.value(0);
    });
    return first;
}

QStringList ZelDbConnection::column(const QString &statement, const QVariantList &values)
{
    QStringList texts;
    const bool ok = read(
        statement, values, [&](const QSqlQuery &row) { texts.append(row.value(0).toString()); });
    return ok ? texts : QStringList();
}

void ZelDbConnection::beginReading()
{
    if (++m_readers == 1)
        m_reading = start(QStringLiteral("SELECT 1 FROM sqlite_master"), {});
}

void ZelDbConnection::endReading()
{
    if (--m_readers > 0 || !m_reading)
        return;
    m_reading->finish();
    m_reading.reset();
}

std::shared_ptr<QSqlQuery> ZelDbConnection::start(
    const QString &statement, const QVariantList &values)
{
    auto it = m_queries.constFind(statement);
    if (it == m_queries.constEnd()) {
        if (m_queries.size() >= MaxCachedStatements)
            m_queries.clear();
        auto query = std::make_shared<QSqlQuery>(m_db);
        query->setForwardOnly(true);
        if (!query->prepare(statement)) {
            failStatement(query->lastError());
            return nullptr;
        }
        it = m_queries.insert(statement, std::move(query));
    }
    const std::shared_ptr<QSqlQuery> query = *it;
    for (qsizetype i = 0; i < values.size(); ++i)
        query->bindValue(int(i), values.at(i));
    if (!query->exec()) {
        failStatement(query->lastError());
        query->finish();
        return nullptr;
    }
    return query;
}

bool ZelDbConnection::finish(QSqlQuery *query, const QString &statement, const QVariantList &values)
{
    // A failing step ends the rows like the last one, but leaves an error.
    if (query->lastError().isValid()) {
        failStatement(query->lastError());
        query->finish();
        return false;
    }
    query->finish();
    if (observer)
        observer(statement, values);
    return true;
}

bool ZelDbConnection::fail(ZelDbSqlite::Error error, const QString &text)
{
    noteMoleculesChange(); // what was read meanwhile may lack what could not be read
    m_error = error;
    m_errorText = text;
    if (m_levels.isEmpty())
        return false;
    Level &level = m_levels.last();
    if (level.failures.isEmpty())
        level.firstError = error;
    if (level.failures.size() < MaxFailures)
        level.failures.append(text);
    return false;
}

bool ZelDbConnection::explain(const QString &text)
{
    m_errorText = text;
    if (!m_levels.isEmpty() && !m_levels.last().failures.isEmpty())
        m_levels.last().failures.last() = text;
    return false;
}

bool ZelDbConnection::failNotOpen()
{
    return fail(ZelDbSqlite::NotOpen,
        QStringLiteral("No model file is open; open one or create a new one first."));
}

bool ZelDbConnection::failStatement(const QSqlError &error)
{
    QString text;
    const ZelDbSqlite::Error kind = classify(error, &text);
    if (kind != ZelDbSqlite::Constraint && !m_levels.isEmpty())
        m_broken = true;
    return fail(kind, text);
}

ZelDbSqlite::Error ZelDbConnection::classify(const QSqlError &error, QString *text) const
{
    const QString file = QDir::toNativeSeparators(m_path);
    const auto say = [&](ZelDbSqlite::Error kind, const char *sentence) {
        *text = QLatin1String(sentence).arg(file);
        return kind;
    };
    const int code = error.nativeErrorCode().toInt();
    if (code == SqliteIoErrorShortRead) {
        return say(ZelDbSqlite::Corrupt,
            "The model file '%1' is damaged or cut short; restore it from a backup.");
    }
    if (code == SqliteReadOnlyRollback) {
        return say(ZelDbSqlite::ReadOnly,
            "The last save of the model file '%1' was cut short; open it for writing once, so that "
            "it is as it was before.");
    }
    switch (code & 0xff) {
    case SqliteBusy:
    case SqliteLocked:
        return say(ZelDbSqlite::Locked,
            "The model file '%1' is in use by another program or window; close it there and try "
            "again.");
    case SqliteReadOnly:
        return say(ZelDbSqlite::ReadOnly,
            "The model file '%1' is read-only; make it writable or save the model under another "
            "name.");
    case SqliteCorrupt:
        return say(ZelDbSqlite::Corrupt,
            "The model file '%1' is damaged or cut short; restore it from a backup.");
    case SqliteFull:
        return say(ZelDbSqlite::DiskFull,
            "There is no room left to write the model file '%1'; free some space and save again.");
    case SqliteNotADb:
        return say(ZelDbSqlite::ForeignFile,
            "'%1' is not a model file; choose a file that this program has written.");
    case SqliteCantOpen:
        return say(ZelDbSqlite::Failed,
            "The model file '%1' cannot be opened; check that its folder exists and may be used.");
    case SqliteTooBig:
        *text = QStringLiteral("A text is too long to be stored; shorten it.");
        return ZelDbSqlite::InvalidInput;
    case SqliteConstraint:
        *text = QLatin1String("The model file '%1' refuses the record (%2); correct it.")
                    .arg(file, error.databaseText());
        return ZelDbSqlite::Constraint;
    case SqliteIoError:
        *text = QLatin1String(
            "The model file '%1' could not be read or written (%2); check the disk and try again.")
                    .arg(file, error.databaseText());
        return ZelDbSqlite::Failed;
    default:
        *text = QLatin1String("The model file '%1' reports a failure (%2); close it and try again.")
                    .arg(file, error.text().trimmed());
        return ZelDbSqlite::Failed;
    }
}

bool ZelDbConnection::refuseBroken()
{
    if (!m_broken)
        return false;
    // Keeps the cause as the error: it is what the user must mend.
    fail(m_error, m_errorText);
    return true;
}

bool ZelDbConnection::control(const QString &statement)
{
    QSqlQuery query(m_db);
    if (!query.exec(statement))
        return failStatement(query.lastError());
    if (observer)
        observer(statement, {});
    return true;
}

int ZelDbConnection::begin(bool *began, int *serial)
{
    Level level;
    level.serial = ++m_lastSerial;
    m_levels.append(level);
    const bool outermost = m_levels.size() == 1;
    if (!outermost && m_broken)
        *began = false;
    else if (!outermost)
        *began = control(QLatin1String("SAVEPOINT zel%1").arg(QString::number(m_levels.size())));
    else // The write lock is taken now: later it could be refused in the middle of a save.
        *began = control(QLatin1String(m_readOnly ? "BEGIN" : "BEGIN IMMEDIATE"));
    m_levels.last().began = *began;
    *serial = level.serial;
    return int(m_levels.size());
}

bool ZelDbConnection::isCurrent(int level, int serial) const
{
    return level > 0 && level <= m_levels.size() && m_levels.at(level - 1).serial == serial;
}

bool ZelDbConnection::isSound(int level, int serial) const
{
    return isCurrent(level, serial) && m_levels.at(level - 1).began;
}

bool ZelDbConnection::commit(int level, int serial, QStringList *failures)
{
    if (!isCurrent(level, serial))
        return false;
    while (m_levels.size() > level) {
        fail(ZelDbSqlite::Failed,
            QStringLiteral("A part of the changes was not finished, so nothing was saved."));
        rollbackTop(false);
    }
    const bool sound = m_levels.last().failures.isEmpty() && m_levels.last().began && !m_broken;
    const QString statement = level == 1
        ? QStringLiteral("COMMIT")
        : QLatin1String("RELEASE zel%1").arg(QString::number(level));
    if (sound && control(statement)) {
        m_levels.removeLast();
        return true;
    }
    *failures = m_levels.last().failures;
    // The first failure is what the user must mend; later ones often only follow from it.
    if (!m_levels.last().failures.isEmpty()) {
        m_error = m_levels.last().firstError;
        m_errorText = m_levels.last().failures.first();
    }
    rollbackTop(false);
    return false;
}

void ZelDbConnection::rollback(int level, int serial, bool forget)
{
    if (!isCurrent(level, serial))
        return;
    while (m_levels.size() >= level)
        rollbackTop(forget);
}

void ZelDbConnection::rollbackTop(bool forget)
{
    noteMoleculesChange();
    const auto undo = [this](const QString &statement) {
        // Fails only where SQLite has rolled back by itself already.
        QSqlQuery query(m_db);
        if (query.exec(statement) && observer)
            observer(statement, {});
    };
    const Level top = m_levels.last();
    if (m_levels.size() == 1) {
        if (top.began)
            undo(QStringLiteral("ROLLBACK"));
        m_levels.clear();
        m_broken = false;
        return;
    }
    if (top.began) {
        const QString name = QLatin1String("zel%1").arg(QString::number(m_levels.size()));
        undo(QLatin1String("ROLLBACK TO ") + name);
        undo(QLatin1String("RELEASE ") + name);
    }
    m_levels.removeLast();
    if (!forget || m_broken) {
        Level &below = m_levels.last();
        if (below.failures.isEmpty())
            below.firstError = top.firstError;
        QStringList &outer = below.failures;
        outer.append(top.failures.first(qMin(top.failures.size(), MaxFailures - outer.size())));
    }
}

void ZelDbConnection::noteMoleculesChange()
{
    static std::atomic<quint64> last = 0;
    m_moleculesNumber = ++last;
}

QStringList ZelDbConnection::failures(int level, int serial) const
{
    return isCurrent(level, serial) ? m_levels.at(level - 1).failures : QStringList();
}
