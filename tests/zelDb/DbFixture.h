#pragma once

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QTemporaryDir>

namespace C = ZelDbColumn;

/// A new model in a real file of a temporary folder.
struct DbFixture
{
    DbFixture();

    QString file(const QString &name) const { return dir.filePath(name); }
    /// The texts of the columns, in their order, "-" for one that the record lacks.
    static QStringList texts(const ZelDbRecord &record, std::initializer_list<int> columns);
    /// Closes the file and changes it without the library.
    bool execute(const QStringList &statements);
    static bool execute(const QString &path, const QStringList &statements);
    /// The whole content of a model, to compare before and after.
    static QStringList dump(const QString &path);

    /// Molecules mol1 (components mcp1 and mcp2, sites bst1 and bst2, states P and Q of mcp1) and
    /// mol2 (mcp3, bst3), interaction mli1 of bst1 and bst3, complex cpx1 of both with that bond.
    bool addComplex();
    /// Aliases cpa1 to cpa3 of cpx1 and one reaction of each kind on them.
    bool addReactions();

    QTemporaryDir dir;
    QString path;
    ZelDbSqlite db;
    ZelDbSqliteModel model{&db};
};
