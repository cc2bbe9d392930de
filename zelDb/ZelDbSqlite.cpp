#include "zelDb/ZelDbSqlite.h"

#include "zelDb/ZelDbConnection.h"
#include "zelDb/ZelDbIntegrity.h"
#include "zelDb/ZelDbMigration.h"
#include "zelDb/ZelDbRecords.h"
#include "zelDb/ZelDbSchema.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>

namespace {

constexpr char InMemory[] = ":memory:";
constexpr char SqliteMagic[] = "SQLite format 3";

bool isInMemory(const QString &path)
{
    return path == QLatin1String(InMemory);
}

/// A name beside the file that nobody else uses.
QString temporaryPath(const QString &path)
{
    return path + QLatin1String(".new-")
        + QUuid::createUuid().toString(QUuid::WithoutBraces).left(8);
}

void removeWithJournal(const QString &path)
{
    QFile::remove(path);
    QFile::remove(path + QLatin1String("-journal"));
}

/// Settings of every connection; they are not stored in the file.
bool configure(ZelDbConnection &connection)
{
    const QStringList settings{QStringLiteral("PRAGMA foreign_keys = ON"),
        QStringLiteral("PRAGMA trusted_schema = OFF"),
        QStringLiteral("PRAGMA cell_size_check = ON"), QStringLiteral("PRAGMA synchronous = FULL")};
    return std::all_of(settings.begin(), settings.end(),
        [&](const QString &setting) { return connection.execute(setting); });
}

/// Whether the file has the tables of a model. False when that cannot be read.
bool compareSchema(ZelDbConnection &connection, bool *isWhole)
{
    QSet<QString> missing = ZelDbSchema::expectedOrigin();
    bool strange = false;
    const auto take = [&](const QString &line) {
        const bool isKnown = missing.remove(line);
        // Unknown tables do no harm, unknown triggers and views would act on what is written.
        if (!isKnown && line.startsWith(QLatin1String("CREATE"), Qt::CaseInsensitive))
            strange = true;
    };
    const auto read = [&](const QString &statement) {
        return connection.read(
            statement, {}, [&](const QSqlQuery &row) { take(row.value(0).toString()); });
    };
    if (!read(ZelDbSchema::originStatement()))
        return false;
    // What was made otherwise may have the same tables; to see that takes longer.
    if (strange || !missing.isEmpty()) {
        missing = ZelDbSchema::expectedDescription();
        strange = missing.isEmpty();
        if (!read(ZelDbSchema::describeStatement()))
            return false;
    }
    *isWhole = !strange && missing.isEmpty();
    return true;
}

/// Whether a file that SQLite does not take for a database begins like one all the same.
bool beginsLikeDatabase(const QString &path)
{
    // Closing a file drops the locks that this process holds on it, but nobody can hold one on a
    // file that is no database.
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
        && file.read(sizeof(SqliteMagic) - 1) == QByteArray(SqliteMagic);
}

} // namespace

ZelDbSqlite::ZelDbSqlite(QObject *parent)
    : QObject(parent), m_connection(std::make_unique<ZelDbConnection>())
{
}

ZelDbSqlite::~ZelDbSqlite() = default;

bool ZelDbSqlite::isOpen() const
{
    return m_connection->isOpen();
}

bool ZelDbSqlite::isReadOnly() const
{
    return isOpen() && m_connection->isReadOnly();
}

bool ZelDbSqlite::isInTransaction() const
{
    return m_connection->depth() > 0;
}

QString ZelDbSqlite::path() const
{
    return isOpen() ? m_connection->path() : QString();
}

int ZelDbSqlite::schemaVersion() const
{
    return m_connection->version();
}

int ZelDbSqlite::currentSchemaVersion()
{
    return ZelDbSchema::Version;
}

QByteArray ZelDbSqlite::moleculesStamp()
{
    if (!m_connection->isOpen())
        return {};
    // The database's own number tells of commits by other connections only.
    const QVariant others = m_connection->value(QStringLiteral("PRAGMA data_version"));
    return others.isNull()
        ? QByteArray()
        : QByteArray::number(m_connection->moleculesNumber()) + ' ' + others.toByteArray();
}

ZelDbSqlite::Error ZelDbSqlite::error() const
{
    return m_connection->error();
}

QString ZelDbSqlite::errorText() const
{
    return m_connection->errorText();
}

bool ZelDbSqlite::create(const QString &path)
{
    close();
    const QString shown = QDir::toNativeSeparators(path);
    if (path.isEmpty()) {
        return m_connection->fail(
            InvalidInput, QStringLiteral("A new model file needs a name; choose one."));
    }
    const QFileInfo info(path);
    // A dangling link does not "exist", but writing through it would surprise its owner.
    if (!isInMemory(path) && (info.exists() || info.isSymLink())) {
        return m_connection->fail(AlreadyExists,
            QLatin1String("'%1' exists already; open it or choose another name.").arg(shown));
    }
    if (!isInMemory(path) && !info.absoluteDir().exists()) {
        return m_connection->fail(MissingFile,
            QLatin1String("The folder '%1' does not exist; make it or choose another one.")
                .arg(QDir::toNativeSeparators(info.absolutePath())));
    }
    // The file takes its name only once it is whole.
    const QString made = isInMemory(path) ? path : temporaryPath(path);
    bool ok = m_connection->connect(made, false);
    if (!ok)
        m_connection->explain(errorText().replace(QDir::toNativeSeparators(made), shown));
    m_connection->setShownPath(path);
    if (ok) {
        ZelDbTransaction transaction(this);
        for (const QString &statement : ZelDbSchema::createStatements())
            ok = ok && m_connection->execute(statement);
        ok = transaction.commit() && ok;
    }
    if (ok && isInMemory(path)) {
        m_connection->setVersion(ZelDbSchema::Version);
        return configure(*m_connection);
    }
    close();
    if (ok && QFile::rename(made, path))
        return open(path);
    if (ok) {
        m_connection->fail(Failed,
            QLatin1String(
                "The model file '%1' cannot be made; check that its folder may be written.")
                .arg(shown));
    }
    removeWithJournal(made);
    return false;
}

bool ZelDbSqlite::open(const QString &path)
{
    return open(path, ZelDbMigration::builtIn());
}

bool ZelDbSqlite::open(const QString &path, const ZelDbMigrations &migrations)
{
    const bool opened = openChecked(path, false, migrations);
    if (!opened)
        close();
    return opened;
}

bool ZelDbSqlite::openReadOnly(const QString &path)
{
    const bool opened = openChecked(path, true, ZelDbMigration::builtIn());
    if (!opened)
        close();
    return opened;
}

bool ZelDbSqlite::openChecked(const QString &path, bool readOnly, const ZelDbMigrations &migrations)
{
    close();
    const QString shown = QDir::toNativeSeparators(path);
    const QFileInfo info(path);
    const auto refuse = [&](Error error, const char *sentence) {
        return m_connection->fail(error, QLatin1String(sentence).arg(shown));
    };
    if (path.isEmpty() || isInMemory(path) || !info.exists())
        return refuse(MissingFile, "There is no model file '%1'; check its name and folder.");
    if (!info.isFile())
        return refuse(ForeignFile, "'%1' is not a model file but a folder or a device.");
    if (info.size() == 0) {
        return refuse(
            ForeignFile, "'%1' is not a model file: it is empty; restore it from a backup.");
    }
    if (!readOnly && !info.isWritable()) {
        return refuse(ReadOnly,
            "The model file '%1' is read-only; make it writable or open it for reading only.");
    }
    if (!m_connection->connect(path, readOnly))
        return false;
    int applicationId = 0;
    bool ok = m_connection->read(QStringLiteral("PRAGMA application_id"), {},
        [&](const QSqlQuery &row) { applicationId = row.value(0).toInt(); });
    if (!ok && error() == ForeignFile && beginsLikeDatabase(path)) {
        return refuse(
            Corrupt, "The model file '%1' is damaged or cut short; restore it from a backup.");
    }
    if (!ok || !configure(*m_connection))
        return false;
    if (applicationId != ZelDbSchema::ApplicationId) {
        return refuse(ForeignFile,
            "'%1' is a database of another program, not a model file; choose a file that this "
            "program has written.");
    }
    const int version = m_connection->value(QStringLiteral("PRAGMA user_version")).toInt();
    if (version > migrations.version) {
        return refuse(NewerSchema,
            "The model file '%1' was written by a newer version of this program; install that "
            "version to open it.");
    }
    if (version < migrations.version) {
        if (readOnly) {
            return refuse(OlderSchema,
                "The model file '%1' was written by an older version of this program; open it for "
                "writing once, so that it is brought up to date.");
        }
        if (!ZelDbMigration::run(this, *m_connection, version, migrations))
            return false;
    }
    m_connection->setVersion(migrations.version);
    bool isWhole = false;
    ok = compareSchema(*m_connection, &isWhole);
    if (ok && !isWhole) {
        return refuse(Corrupt,
            "The model file '%1' does not have the tables of a model; restore it from a backup.");
    }
    // A file that someone switched to a write-ahead log would not be whole without its side files.
    return ok
        && (readOnly || m_connection->execute(QStringLiteral("PRAGMA journal_mode = DELETE")));
}

void ZelDbSqlite::close()
{
    m_connection->disconnect();
}

bool ZelDbSqlite::backupTo(const QString &path)
{
    if (!isOpen())
        return m_connection->failNotOpen();
    const QString shown = QDir::toNativeSeparators(path);
    if (isInTransaction()) {
        return m_connection->fail(
            Failed, QStringLiteral("A backup is not possible during a save; finish that first."));
    }
    const QFileInfo info(path);
    if (path.isEmpty() || info.exists() || info.isSymLink()) {
        return m_connection->fail(AlreadyExists,
            QLatin1String("The backup '%1' exists already; choose another name.").arg(shown));
    }
    const QString made = temporaryPath(path);
    if (m_connection->write(QStringLiteral("VACUUM INTO ?"), {QFileInfo(made).absoluteFilePath()})
        && QFile::rename(made, path))
        return true;
    removeWithJournal(made);
    return m_connection->fail(error() == DiskFull ? DiskFull : Failed,
        QLatin1String("The backup '%1' cannot be written; check that its folder exists, may be "
                      "written and has room.")
            .arg(shown));
}

QStringList ZelDbSqlite::checkIntegrity()
{
    if (!isOpen()) {
        m_connection->failNotOpen();
        return {errorText()};
    }
    return ZelDbIntegrity::problems(*m_connection);
}

void ZelDbSqlite::setStatementObserver(
    std::function<void(const QString &, const QVariantList &)> observer)
{
    m_connection->observer = std::move(observer);
}

bool ZelDbSqlite::setSizeLimit(int kibibytes)
{
    if (!isOpen())
        return m_connection->failNotOpen();
    const qint64 pageSize =
        qMax<qint64>(512, m_connection->value(QStringLiteral("PRAGMA page_size")).toLongLong());
    const qint64 pages =
        kibibytes > 0 ? qMax<qint64>(1, kibibytes * qint64(1024) / pageSize) : 1073741823;
    return m_connection->execute(
        QLatin1String("PRAGMA max_page_count = %1").arg(QString::number(pages)));
}

ZelDbConnection *ZelDbSqlite::openConnection()
{
    if (isOpen())
        return m_connection.get();
    m_connection->failNotOpen();
    return nullptr;
}

QString ZelDbSqlite::getGraphicsInfo(
    const QString &recordWord, const QString &psiimId, const ZelDbSqliteModel *model)
{
    ZelDbConnection *connection = ZelDbRecords::connection(model);
    const ZelDbKind *kind = ZelDbSchema::kind(recordWord);
    if (!connection || !kind || !kind->find(ZelDbColumn::GraphicsInfo))
        return {};
    return ZelDbRecords::text(connection, *kind, "graphicsInfo", psiimId);
}

ZelDbNameAnswer ZelDbSqlite::askShortName(const QString &recordWord, const QString &shortName,
    const QString &psiimIdToExcept, const ZelDbSqliteModel *model)
{
    if (!model || !model->database())
        return {ZelDbNameAnswer::Free, QString()};
    ZelDbConnection *connection = ZelDbRecords::connection(model);
    const ZelDbKind *kind = ZelDbSchema::kind(recordWord);
    if (!connection)
        return {};
    if (!kind) {
        connection->fail(
            InvalidInput, QLatin1String("There is no kind '%1' of records.").arg(recordWord));
        return {};
    }
    ZelDbNameAnswer answer{ZelDbNameAnswer::Free, QString()};
    const bool ok = connection->read(
        QLatin1String("SELECT psiimId FROM %1 WHERE shortName = ? AND psiimId <> ? LIMIT 1")
            .arg(recordWord),
        {ZelDbRecords::notNull(shortName), ZelDbRecords::notNull(psiimIdToExcept)},
        [&](const QSqlQuery &row) {
            answer = {ZelDbNameAnswer::Taken, row.value(0).toString()};
        });
    return ok ? answer : ZelDbNameAnswer();
}

QString ZelDbSqlite::getFreeShortName(const QString &recordWord, const QString &base,
    const QString &psiimIdToExcept, const ZelDbSqliteModel *model, qint64 *number)
{
    qint64 first = 0;
    qint64 &next = number ? *number : first;
    // Only so many names can be taken, so that the first question may be the last one.
    qint64 tries = -1;
    for (qint64 i = 0; tries < 0 || i <= tries; ++i) {
        const QString name = next == 0 ? base : base + u'_' + QString::number(next);
        ++next;
        const ZelDbNameAnswer answer = askShortName(recordWord, name, psiimIdToExcept, model);
        if (answer.state == ZelDbNameAnswer::Free)
            return name;
        if (answer.state == ZelDbNameAnswer::Unknown)
            return {};
        if (tries < 0)
            tries = std::max<qint64>(0, model->countRecords(ZelDbSchema::kind(recordWord)->type));
    }
    return {};
}

bool ZelDbSqlite::isUniqueShortName(const QString &recordWord, const QString &shortName,
    const QString &psiimIdToExcept, const ZelDbSqliteModel *model)
{
    return askShortName(recordWord, shortName, psiimIdToExcept, model).state
        == ZelDbNameAnswer::Free;
}
