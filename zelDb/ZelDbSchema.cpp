#include "zelDb/ZelDbSchema.h"

#include "zelDb/ZelDbConnection.h"

#include <algorithm>
#include <iterator>

namespace {

using Type = ZelDbColumnType;
namespace C = ZelDbColumn;

constexpr ZelDbColumnInfo shortNameColumn{C::ShortName, "shortName"};
constexpr ZelDbColumnInfo nameColumn{C::Name, "name"};
constexpr ZelDbColumnInfo notesColumn{C::Notes, "notes"};
constexpr ZelDbColumnInfo graphicsColumn{C::GraphicsInfo, "graphicsInfo"};
constexpr ZelDbColumnInfo posIndexColumn{C::PosIndex, "posIndex", Type::Integer};

constexpr ZelDbColumnInfo molColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    graphicsColumn,
    {C::MolNumber15, "number15"},
    {C::MolNumber16, "number16"},
    {C::MolNumber18, "number18"},
    {C::Color, "color"},
    {C::Location, "location"},
};

constexpr ZelDbColumnInfo mcpColumns[] = {
    {C::OwnerPsiimId, "mol", Type::Owner, ZelDb::Mol},
    posIndexColumn,
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::Location, "location"},
    {C::CopyGroup, "copyGroup"},
};

constexpr ZelDbColumnInfo mcpStateColumns[] = {
    {C::OwnerPsiimId, "mcp", Type::Owner, ZelDb::Mcp},
    posIndexColumn,
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::StateColor, "color"},
    {C::StateGroup, "exclusionGroup"},
};

constexpr ZelDbColumnInfo bstColumns[] = {
    {C::OwnerPsiimId, "mcp", Type::Owner, ZelDb::Mcp},
    posIndexColumn,
    shortNameColumn,
    nameColumn,
    notesColumn,
};

constexpr ZelDbColumnInfo mliColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    graphicsColumn,
    {C::AssociationRate, "associationRate"},
    {C::DissociationRate, "dissociationRate"},
};

constexpr ZelDbColumnInfo cpxColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    graphicsColumn,
    {C::CpxText, "text"},
    {C::CpxFingerPrint, "fingerPrint"},
    {C::CpxMolCode, "molCode"},
    {C::CpxFlag, "flag"},
};

constexpr ZelDbColumnInfo cpaColumns[] = {
    {C::CpaCpx, "cpx", Type::Reference, ZelDb::Cpx},
    {C::CpaKey2, "key2"},
    {C::CpaStateCode, "stateCode"},
    {C::CpaShortName, "shortName"},
    nameColumn,
    notesColumn,
    {C::CpaShown, "shown", Type::FlagOn},
    {C::CpaWellDefined, "wellDefined", Type::FlagOff},
};

constexpr ZelDbColumnInfo caiColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    graphicsColumn,
    {C::AssociationRate, "associationRate"},
    {C::CaiCpa1, "cpa1", Type::Reference, ZelDb::Cpa},
    {C::CaiCpa2, "cpa2", Type::Reference, ZelDb::Cpa},
    {C::CaiResultCpa, "resultCpa", Type::Reference, ZelDb::Cpa},
    {C::Bst1, "bst1", Type::Reference, ZelDb::Bst},
    {C::MolPos1, "molPos1", Type::OptionalInteger},
    {C::Bst2, "bst2", Type::Reference, ZelDb::Bst},
    {C::MolPos2, "molPos2", Type::OptionalInteger},
    {C::BindingType, "bindingType"},
    {C::Geometry, "geometry"},
};

constexpr ZelDbColumnInfo cadColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::DissociationRate, "dissociationRate"},
    {C::CadSourceCpa, "sourceCpa", Type::Reference, ZelDb::Cpa},
    {C::CadResultCpa1, "resultCpa1", Type::Reference, ZelDb::Cpa},
    {C::CadResultCpa2, "resultCpa2", Type::Reference, ZelDb::Cpa},
    {C::BindingType, "bindingType"},
    {C::GeometryText, "geometryText"},
};

constexpr ZelDbColumnInfo trnColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::TrnFromCpa, "fromCpa", Type::Reference, ZelDb::Cpa},
    {C::TrnToCpa, "toCpa", Type::Reference, ZelDb::Cpa},
    {C::Rate, "rate"},
};

constexpr ZelDbColumnInfo pdnColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::PdnSourceCpa, "sourceCpa", Type::Reference, ZelDb::Cpa},
    {C::PdnProductCpa, "productCpa", Type::Reference, ZelDb::Cpa},
    {C::PdnDelay, "delay"},
    {C::PdnM, "m"},
    {C::PdnN, "n"},
    {C::PdnK, "k"},
};

constexpr ZelDbColumnInfo degColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::DegradationRate, "rate"},
    {C::DegradationCpa, "cpa", Type::Reference, ZelDb::Cpa},
};

constexpr ZelDbColumnInfo parColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::ParameterValue, "value"},
    {C::Unit, "unit"},
};

constexpr ZelDbColumnInfo obsColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::ObservableKind, "kind"},
    {C::ObservablePattern, "pattern"},
};

constexpr ZelDbColumnInfo sedColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::SeedCpa, "cpa", Type::Reference, ZelDb::Cpa},
    {C::SeedAmount, "amount"},
    {C::Unit, "unit"},
};

constexpr ZelDbColumnInfo cmpColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::CompartmentDimension, "dimension"},
    {C::CompartmentSize, "size"},
    {C::Unit, "unit"},
    {C::CompartmentParent, "parent", Type::Reference, ZelDb::Compartment},
};

constexpr ZelDbColumnInfo utrColumns[] = {
    shortNameColumn,
    nameColumn,
    notesColumn,
    {C::SourceFile, "sourceFile"},
    {C::SourceLine, "sourceLine", Type::OptionalInteger},
    {C::SourceText, "sourceText"},
    {C::Reason, "reason"},
};

// Owners stand before what they own, so that the tables can be made in this order.
constexpr ZelDbKind allKinds[] = {
    {ZelDb::Mol, "mol", "molecule", molColumns},
    {ZelDb::Mcp, "mcp", "molecule component", mcpColumns},
    {ZelDb::McpState, "mcpState", "feature state", mcpStateColumns},
    {ZelDb::Bst, "bst", "binding site", bstColumns},
    {ZelDb::Mli, "mli", "molecule interaction", mliColumns},
    {ZelDb::Cpx, "cpx", "complex", cpxColumns},
    {ZelDb::Cpa, "cpa", "complex alias", cpaColumns},
    {ZelDb::Cai, "cai", "association", caiColumns},
    {ZelDb::Cad, "cad", "dissociation", cadColumns},
    {ZelDb::Trn, "trn", "transformation", trnColumns},
    {ZelDb::Pdn, "pdn", "production", pdnColumns},
    {ZelDb::Deg, "deg", "degradation", degColumns},
    {ZelDb::Parameter, "par", "parameter", parColumns},
    {ZelDb::Observable, "obs", "observable", obsColumns},
    {ZelDb::Seed, "sed", "seed amount", sedColumns},
    {ZelDb::Compartment, "cmp", "compartment", cmpColumns},
    {ZelDb::Untranslated, "utr", "untranslated item", utrColumns},
};

constexpr const char *fixedStatements[] = {
    "CREATE TABLE idCounter (tag TEXT PRIMARY KEY NOT NULL, lastNumber INTEGER NOT NULL)"
    " WITHOUT ROWID",
    "CREATE TABLE reference (kind TEXT NOT NULL, id TEXT NOT NULL, text TEXT NOT NULL,"
    " PRIMARY KEY (kind, id)) WITHOUT ROWID",
    "CREATE TABLE mcpMcp ("
    "mol TEXT NOT NULL REFERENCES mol(psiimId) ON DELETE CASCADE,"
    " a INTEGER NOT NULL, b INTEGER NOT NULL, PRIMARY KEY (mol, a, b), CHECK (0 <= a AND a < b)"
    ") WITHOUT ROWID",
    "CREATE TABLE mliBstBst ("
    "mli TEXT NOT NULL REFERENCES mli(psiimId) ON DELETE CASCADE,"
    " ordinal INTEGER NOT NULL CHECK (ordinal >= 0),"
    " molPos1 INTEGER NOT NULL CHECK (molPos1 >= 0),"
    " bst1 TEXT NOT NULL REFERENCES bst(psiimId) ON DELETE RESTRICT,"
    " molPos2 INTEGER NOT NULL CHECK (molPos2 >= 0),"
    " bst2 TEXT NOT NULL REFERENCES bst(psiimId) ON DELETE RESTRICT,"
    " PRIMARY KEY (mli, ordinal))",
    "CREATE INDEX mliBstBst_sites ON mliBstBst(bst1, bst2)",
    "CREATE INDEX mliBstBst_bst2 ON mliBstBst(bst2)",
    "CREATE TABLE cpxMol ("
    "cpx TEXT NOT NULL REFERENCES cpx(psiimId) ON DELETE CASCADE,"
    " position INTEGER NOT NULL CHECK (position >= 0),"
    " mol TEXT NOT NULL REFERENCES mol(psiimId) ON DELETE RESTRICT,"
    " PRIMARY KEY (cpx, position))",
    "CREATE INDEX cpxMol_mol ON cpxMol(mol)",
    "CREATE TABLE cpxBstBst ("
    "rowNumber INTEGER PRIMARY KEY,"
    " cpx TEXT NOT NULL REFERENCES cpx(psiimId) ON DELETE CASCADE,"
    " molPos1 INTEGER NOT NULL CHECK (molPos1 >= 0),"
    " bst1 TEXT NOT NULL REFERENCES bst(psiimId) ON DELETE RESTRICT,"
    " molPos2 INTEGER NOT NULL CHECK (molPos2 >= 0),"
    " bst2 TEXT NOT NULL REFERENCES bst(psiimId) ON DELETE RESTRICT,"
    " notes TEXT NOT NULL DEFAULT '',"
    " UNIQUE (cpx, molPos1, bst1, molPos2, bst2))",
    "CREATE INDEX cpxBstBst_bst1 ON cpxBstBst(bst1)",
    "CREATE INDEX cpxBstBst_bst2 ON cpxBstBst(bst2)",
    "CREATE INDEX cpx_fingerPrint ON cpx(fingerPrint)",
    "CREATE INDEX cpx_molCode ON cpx(molCode)",
    "CREATE UNIQUE INDEX cpa_identity ON cpa(cpx, key2, stateCode)",
    "CREATE INDEX cai_sites ON cai(bst1, bst2)",
    "CREATE UNIQUE INDEX mcpState_name ON mcpState(mcp, name)",
};

QString columnDefinition(const ZelDbKind &kind, const ZelDbColumnInfo &info)
{
    const QString name = QLatin1String(info.name);
    const QString target =
        info.refersToRecord() ? QLatin1String(ZelDbSchema::kind(info.target)->word) : QString();
    switch (info.type) {
    case Type::Text:
        return name + QLatin1String(" TEXT NOT NULL DEFAULT ''");
    case Type::Integer:
        return name + QLatin1String(" INTEGER NOT NULL DEFAULT 0");
    case Type::OptionalInteger:
        return name + QLatin1String(" INTEGER CHECK (%1 >= 0)").arg(name);
    case Type::FlagOff:
        return name + QLatin1String(" INTEGER NOT NULL DEFAULT 0 CHECK (%1 IN (0, 1))").arg(name);
    case Type::FlagOn:
        return name + QLatin1String(" INTEGER NOT NULL DEFAULT 1 CHECK (%1 IN (0, 1))").arg(name);
    case Type::Owner:
        return name
            + QLatin1String(" TEXT NOT NULL REFERENCES %1(psiimId) ON DELETE CASCADE").arg(target);
    case Type::Reference:
        return name
            + QLatin1String(" TEXT %1REFERENCES %2(psiimId) ON DELETE RESTRICT")
                  .arg(QLatin1String(kind.type == ZelDb::Cpa ? "NOT NULL " : ""), target);
    }
    return {};
}

QStringList recordStatements(const ZelDbKind &kind)
{
    const QString table = QLatin1String(kind.word);
    QStringList columns{QStringLiteral("rowNumber INTEGER PRIMARY KEY"),
        QStringLiteral("psiimId TEXT NOT NULL UNIQUE CHECK (psiimId <> '')")};
    QStringList indexes;
    for (const ZelDbColumnInfo &info : kind.columns) {
        columns.append(columnDefinition(kind, info));
        const QString name = QLatin1String(info.name);
        if (info.type == Type::Owner) {
            indexes.append(
                QLatin1String("CREATE INDEX %1_%2 ON %1(%2, posIndex)").arg(table, name));
        } else if (info.type == Type::Reference || name == QLatin1String("shortName")) {
            indexes.append(QLatin1String("CREATE INDEX %1_%2 ON %1(%2)").arg(table, name));
        }
    }
    // A number that was ever in use stays used: a removed id raises the counter of new ids.
    const QString trigger = QLatin1String(
        "CREATE TRIGGER %1_removed AFTER DELETE ON %1 BEGIN "
        "DELETE FROM reference WHERE kind = '%1' AND id = OLD.psiimId; "
        "INSERT INTO idCounter (tag, lastNumber) "
        "SELECT '%1', CAST(substr(OLD.psiimId, %2) AS INTEGER) "
        "WHERE substr(OLD.psiimId, 1, %3) = '%1' AND length(OLD.psiimId) BETWEEN %2 AND %2 + 14 "
        "AND substr(OLD.psiimId, %2) NOT GLOB '*[^0-9]*' "
        "ON CONFLICT (tag) DO UPDATE SET lastNumber = max(lastNumber, excluded.lastNumber); END")
                                .arg(table, QString::number(table.size() + 1),
                                    QString::number(table.size()));
    return QStringList{QLatin1String("CREATE TABLE %1 (%2)").arg(table, columns.join(u", "))}
    + indexes + QStringList{trigger};
}

// What molecules are made of. Removing a record of another table takes along at most its own
// references.
constexpr QLatin1String moleculeTables[] = {QLatin1String("mol"), QLatin1String("mcp"),
    QLatin1String("mcpState"), QLatin1String("mcpMcp"), QLatin1String("bst"),
    QLatin1String("reference")};

} // namespace

const ZelDbColumnInfo *ZelDbKind::find(int column) const
{
    for (const ZelDbColumnInfo &info : columns) {
        if (info.column == column)
            return &info;
    }
    return nullptr;
}

std::span<const ZelDbKind> ZelDbSchema::kinds()
{
    return allKinds;
}

const ZelDbKind *ZelDbSchema::kind(int type)
{
    for (const ZelDbKind &candidate : allKinds) {
        if (candidate.type == type)
            return &candidate;
    }
    return nullptr;
}

const ZelDbKind *ZelDbSchema::kind(const QString &word)
{
    for (const ZelDbKind &candidate : allKinds) {
        if (word == QLatin1String(candidate.word))
            return &candidate;
    }
    return nullptr;
}

bool ZelDbSchema::mayChangeMolecules(const QString &statement)
{
    for (const QLatin1String start :
        {QLatin1String("INSERT INTO "), QLatin1String("UPDATE "), QLatin1String("DELETE FROM ")}) {
        if (!statement.startsWith(start))
            continue;
        const QStringView rest = QStringView(statement).sliced(start.size());
        const QStringView table = rest.first(std::max<qsizetype>(rest.indexOf(u' '), 0));
        return table.isEmpty()
            || std::any_of(std::begin(moleculeTables), std::end(moleculeTables),
                [table](QLatin1String name) { return table == name; });
    }
    return true;
}

QStringList ZelDbSchema::createStatements()
{
    QStringList statements;
    for (const ZelDbKind &kind : allKinds)
        statements += recordStatements(kind);
    for (const char *statement : fixedStatements)
        statements.append(QLatin1String(statement));
    statements.append(
        QLatin1String("PRAGMA application_id = %1").arg(QString::number(ApplicationId)));
    statements.append(QLatin1String("PRAGMA user_version = %1").arg(QString::number(Version)));
    return statements;
}

QString ZelDbSchema::describeStatement()
{
    return QStringLiteral("SELECT m.name || '.' || p.name FROM sqlite_master m"
                          " JOIN pragma_table_info(m.name) p WHERE m.type = 'table'"
                          " UNION ALL SELECT sql FROM sqlite_master"
                          " WHERE type IN ('trigger', 'view') ORDER BY 1");
}

const QSet<QString> &ZelDbSchema::expectedDescription()
{
    static const QSet<QString> expected = [] {
        QSet<QString> lines;
        ZelDbConnection connection;
        if (!connection.connect(QStringLiteral(":memory:"), false))
            return lines;
        for (const QString &statement : createStatements())
            connection.execute(statement);
        connection.read(describeStatement(), {},
            [&](const QSqlQuery &row) { lines.insert(row.value(0).toString()); });
        return lines;
    }();
    return expected;
}

QString ZelDbSchema::originStatement()
{
    return QStringLiteral("SELECT sql FROM sqlite_master WHERE sql IS NOT NULL");
}

QSet<QString> ZelDbSchema::expectedOrigin()
{
    QSet<QString> statements;
    for (const QString &statement : createStatements()) {
        if (statement.startsWith(QLatin1String("CREATE")))
            statements.insert(statement);
    }
    return statements;
}
