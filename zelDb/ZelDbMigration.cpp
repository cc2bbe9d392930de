#include "zelDb/ZelDbMigration.h"

#include "zelDb/ZelDbConnection.h"
#include "zelDb/ZelDbSchema.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

// Version 1 told copies of a component by their names: "b", "b_2", "b_3", all of the name "b".
const QStringList toVersion2{
    QStringLiteral("ALTER TABLE mcp ADD COLUMN copyGroup TEXT NOT NULL DEFAULT ''"),
    QStringLiteral("UPDATE mcp SET copyGroup = name WHERE name <> '' AND (shortName = name"
                   " OR (substr(shortName, 1, length(name) + 1) = name || '_'"
                   " AND length(shortName) > length(name) + 1"
                   " AND substr(shortName, length(name) + 2) NOT GLOB '*[^0-9]*'))"),
    QStringLiteral("UPDATE mcp SET copyGroup = '' WHERE copyGroup <> '' AND NOT EXISTS (SELECT 1"
                   " FROM mcp other WHERE other.mol = mcp.mol AND other.psiimId <> mcp.psiimId"
                   " AND other.copyGroup = mcp.copyGroup)"),
};

} // namespace

const ZelDbMigrations &ZelDbMigration::builtIn()
{
    static const ZelDbMigrations migrations{ZelDbSchema::Version, {{1, toVersion2}}};
    return migrations;
}

bool ZelDbMigration::run(
    ZelDbSqlite *db, ZelDbConnection &connection, int version, const ZelDbMigrations &migrations)
{
    const QString shown = QDir::toNativeSeparators(connection.path());
    QStringList statements;
    for (int from = version; from < migrations.version; ++from) {
        const auto step = std::find_if(migrations.steps.begin(), migrations.steps.end(),
            [from](const ZelDbMigrationStep &candidate) { return candidate.fromVersion == from; });
        if (step == migrations.steps.end()) {
            return connection.fail(ZelDbSqlite::MigrationFailed,
                QLatin1String("The model file '%1' has version %2, which this program cannot bring "
                              "up to date; open it with an older version of the program first.")
                    .arg(shown, QString::number(from)));
        }
        statements += step->statements;
        statements.append(QLatin1String("PRAGMA user_version = %1").arg(QString::number(from + 1)));
    }
    // Earlier backups stay.
    const QString stem =
        QLatin1String("%1.v%2.bak").arg(connection.path(), QString::number(version));
    QString backup = stem;
    for (int i = 2; QFileInfo::exists(backup); ++i)
        backup = stem + QString::number(i);
    if (!db->backupTo(backup))
        return false;
    bool ok = true;
    QString reason;
    {
        ZelDbTransaction transaction(db);
        for (const QString &statement : statements)
            ok = ok && connection.execute(statement);
        bool dangling = false;
        ok = ok
            && connection.read(QStringLiteral("PRAGMA foreign_key_check"), {},
                [&](const QSqlQuery &) { dangling = true; });
        if (ok && dangling) {
            ok = connection.fail(ZelDbSqlite::Constraint,
                QStringLiteral("Records refer to others that do not exist."));
        }
        ok = transaction.commit() && ok;
        reason = connection.errorText();
    }
    if (ok)
        return true;
    return connection.fail(ZelDbSqlite::MigrationFailed,
        QLatin1String(
            "The model file '%1' could not be brought up to date and is unchanged; a copy "
            "is in '%2'. %3")
            .arg(shown, QDir::toNativeSeparators(backup), reason));
}
