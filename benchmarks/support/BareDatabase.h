#pragma once

#include <QByteArray>
#include <QHash>
#include <QVariant>

#include <vector>

class ZelDbSqlite;
struct sqlite3;
struct sqlite3_stmt;

/// A statement as the library has asked it.
struct BareStatement
{
    QByteArray text;
    QVariantList values;
};

/// A copy of a model in memory, asked through SQLite's C interface: what a measurement of the
/// library is compared with. Each distinct statement is prepared once. A failure ends the process.
class BareDatabase
{
public:
    /// Reads texts as they are stored (UTF-8) or as the toolkit needs them (UTF-16).
    enum class Texts { Utf8, Utf16 };

    BareDatabase(ZelDbSqlite *file, Texts texts);

    void run(const std::vector<BareStatement> &statements);

private:
    sqlite3 *m_db = nullptr;
    Texts m_texts;
    QHash<QByteArray, sqlite3_stmt *> m_prepared;
};
