#pragma once

#include "zelDb/ZelDb.h"

#include <QSet>
#include <QStringList>

#include <span>

/// What a column of a record table holds.
enum class ZelDbColumnType {
    Text,
    Integer, ///< a decimal whole number, 0 when not given
    OptionalInteger, ///< a whole number from 0 on, or nothing
    FlagOff, ///< "0" or "1", "0" when not given
    FlagOn, ///< "0" or "1", "1" when not given
    Reference, ///< id of another record, or nothing
    Owner ///< id of the record that this one belongs to and is removed with
};

/// One column of a record table.
struct ZelDbColumnInfo
{
    int column;
    const char *name;
    ZelDbColumnType type = ZelDbColumnType::Text;
    int target = -1; ///< ZelDb::RecordType that a Reference or Owner names

    bool refersToRecord() const
    {
        return type == ZelDbColumnType::Reference || type == ZelDbColumnType::Owner;
    }
};

/// A kind of record: its table, the tag of its ids and its columns. Every table has the columns
/// rowNumber and psiimId beside these.
struct ZelDbKind
{
    int type;
    const char *word; ///< table name, record word and tag of new ids
    const char *title; ///< for messages
    std::span<const ZelDbColumnInfo> columns;

    /// The column's name in the table, null when the kind does not have it.
    const ZelDbColumnInfo *find(int column) const;
};

/// The tables of a model file.
namespace ZelDbSchema {

inline constexpr int Version = 2;
/// "ZELM"; tells model files from other SQLite databases.
inline constexpr int ApplicationId = 0x5a454c4d;

std::span<const ZelDbKind> kinds();
/// Null for an unknown type or word.
const ZelDbKind *kind(int type);
const ZelDbKind *kind(const QString &word);

/// Whether a writing statement may concern molecules, their parts or references: false only for
/// one that plainly writes to another table.
bool mayChangeMolecules(const QString &statement);

/// The statements that make an empty model.
QStringList createStatements();
/// Lists "table.column" and the texts of triggers and views of a file.
QString describeStatement();
/// What describeStatement() answers for an intact file.
const QSet<QString> &expectedDescription();
/// Answers the statements that have made the tables, indexes and triggers of a file.
QString originStatement();
/// What originStatement() answers for a file that nobody else has changed.
QSet<QString> expectedOrigin();

} // namespace ZelDbSchema
