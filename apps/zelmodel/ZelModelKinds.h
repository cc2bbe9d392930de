#pragma once

#include "zelDb/ZelDbTypes.h"

#include <QList>
#include <QString>

#include <functional>
#include <span>

class ZelDbSqliteModel;

/// One column of a kind of record as the command line names it.
struct ZelModelColumn
{
    int column;
    const char *key; ///< in JSON
    const char *title;
};

/// A kind of record as a user names it. Aliases of complexes are two: species, which are well
/// defined, and patterns, which leave something open.
struct ZelModelKind
{
    static constexpr int NotListed = -1;

    int type; ///< ZelDb::RecordType
    const char *word; ///< record word of the database, the tag of its ids
    const char *name; ///< on the command line: "molecules"
    const char *title; ///< of one: "molecule"
    int listedKind; ///< of zgs::createItem()
    std::span<const ZelModelColumn> columns; ///< beside id, short name, name and notes
    const char *wellDefined; ///< "1" or "0" for aliases, else null

    int nameColumn() const;
    bool isReaction() const;
    bool hasPicture() const;
    /// Whether a record of the type is of this kind.
    bool holds(const ZelDbRecord &record) const;
    /// The columns of the kind without the layout, those that all kinds have included.
    QList<int> readColumns() const;
    /// ZelDbSqliteModel::visitRecords() for the records of the kind, with readColumns().
    bool visit(
        const ZelDbSqliteModel &db, const std::function<bool(const ZelDbRecord &)> &visitor) const;
    QString nameOf(const ZelDbRecord &record) const { return record.value(nameColumn()); }
};

namespace ZelModelKinds {

std::span<const ZelModelKind> all();
/// By its name, the singular included; null for an unknown one.
const ZelModelKind *find(const QString &name);
/// The names, joined for a sentence.
QString names();
/// The aliases that a reaction takes and those that it gives, without empty ones.
QStringList reactants(const ZelModelKind &kind, const ZelDbRecord &record);
QStringList products(const ZelModelKind &kind, const ZelDbRecord &record);

} // namespace ZelModelKinds
