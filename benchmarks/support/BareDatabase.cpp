#include "support/BareDatabase.h"

#include "support/ZelBenchmark.h"
#include "zelDb/ZelDbSqlite.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

namespace {

void check(bool good, const char *what)
{
    if (!good)
        ZelBenchmark::giveUp(QString::fromUtf8(what));
}

void bind(sqlite3_stmt *prepared, int index, const QVariant &value)
{
    if (value.isNull()) {
        sqlite3_bind_null(prepared, index);
    } else if (value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong) {
        sqlite3_bind_int64(prepared, index, value.toLongLong());
    } else {
        const QByteArray text = value.toString().toUtf8();
        sqlite3_bind_text(
            prepared, index, text.constData(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    }
}

} // namespace

BareDatabase::BareDatabase(ZelDbSqlite *file, Texts texts) : m_texts(texts)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("copy.zel"));
    check(file->backupTo(path), "no backup");
    sqlite3 *copy = nullptr;
    sqlite3_open(path.toUtf8().constData(), &copy);
    sqlite3_open(":memory:", &m_db);
    sqlite3_backup *backup = sqlite3_backup_init(m_db, "main", copy, "main");
    sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    sqlite3_close(copy);
    sqlite3_exec(m_db, "PRAGMA foreign_keys=ON", nullptr, nullptr, nullptr);
}

void BareDatabase::run(const std::vector<BareStatement> &statements)
{
    for (const BareStatement &statement : statements) {
        sqlite3_stmt *&prepared = m_prepared[statement.text];
        if (!prepared)
            check(sqlite3_prepare_v2(m_db, statement.text.constData(), -1, &prepared, nullptr)
                    == SQLITE_OK,
                sqlite3_errmsg(m_db));
        int index = 0;
        for (const QVariant &value : statement.values)
            bind(prepared, ++index, value);
        int code = SQLITE_ROW;
        while ((code = sqlite3_step(prepared)) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
                if (m_texts == Texts::Utf16)
                    benchmark::DoNotOptimize(sqlite3_column_text16(prepared, i));
                else
                    benchmark::DoNotOptimize(sqlite3_column_text(prepared, i));
            }
        }
        check(code == SQLITE_DONE, sqlite3_errmsg(m_db));
        sqlite3_reset(prepared);
    }
}
