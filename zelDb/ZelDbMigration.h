#pragma once

#include "zelDb/ZelDbSqlite.h"

class ZelDbConnection;

/// Brings files of older schema versions up to date.
namespace ZelDbMigration {

/// The current version and all steps that lead to it.
const ZelDbMigrations &builtIn();
/// Backs the open file up beside itself, then applies the steps in one transaction; a failure
/// leaves the file as it was and names the backup.
bool run(
    ZelDbSqlite *db, ZelDbConnection &connection, int version, const ZelDbMigrations &migrations);

} // namespace ZelDbMigration
