#include "zelDb/ZelDbRecords.h"

namespace {

/// A statement that finds the records of one kind that refer to a given record of another, whose id
/// takes the place of each "?".
struct Referrer
{
    int type;
    int byType;
    const char *statement;
};

#define ZEL_SITES_OF_MOL                                                                           \
    "(SELECT b.psiimId FROM bst b JOIN mcp c ON c.psiimId = b.mcp WHERE c.mol = ?)"
#define ZEL_SITES_OF_MCP "(SELECT psiimId FROM bst WHERE mcp = ?)"
// State codes name components, sites and states by their place in the molecule, so that taking one
// away would change what the aliases of the molecule's complexes mean.
#define ZEL_ALIASES_OF_MOL                                                                         \
    "SELECT DISTINCT a.psiimId FROM cpxMol m JOIN cpa a ON a.cpx = m.cpx WHERE m.mol = "

constexpr Referrer indirectReferrers[] = {
    {ZelDb::Mol, ZelDb::Cpx, "SELECT DISTINCT cpx FROM cpxMol WHERE mol = ?"},
    {ZelDb::Mol, ZelDb::Cpx,
        "SELECT DISTINCT cpx FROM cpxBstBst WHERE bst1 IN " ZEL_SITES_OF_MOL
        " OR bst2 IN " ZEL_SITES_OF_MOL},
    {ZelDb::Mol, ZelDb::Mli,
        "SELECT DISTINCT mli FROM mliBstBst WHERE bst1 IN " ZEL_SITES_OF_MOL
        " OR bst2 IN " ZEL_SITES_OF_MOL},
    {ZelDb::Mol, ZelDb::Cai,
        "SELECT psiimId FROM cai WHERE bst1 IN " ZEL_SITES_OF_MOL " OR bst2 IN " ZEL_SITES_OF_MOL},
    {ZelDb::Mcp, ZelDb::Cpx,
        "SELECT DISTINCT cpx FROM cpxBstBst WHERE bst1 IN " ZEL_SITES_OF_MCP
        " OR bst2 IN " ZEL_SITES_OF_MCP},
    {ZelDb::Mcp, ZelDb::Mli,
        "SELECT DISTINCT mli FROM mliBstBst WHERE bst1 IN " ZEL_SITES_OF_MCP
        " OR bst2 IN " ZEL_SITES_OF_MCP},
    {ZelDb::Mcp, ZelDb::Cai,
        "SELECT psiimId FROM cai WHERE bst1 IN " ZEL_SITES_OF_MCP " OR bst2 IN " ZEL_SITES_OF_MCP},
    {ZelDb::Mcp, ZelDb::Cpa, ZEL_ALIASES_OF_MOL "(SELECT mol FROM mcp WHERE psiimId = ?)"},
    {ZelDb::Bst, ZelDb::Cpx, "SELECT DISTINCT cpx FROM cpxBstBst WHERE bst1 = ? OR bst2 = ?"},
    {ZelDb::Bst, ZelDb::Mli, "SELECT DISTINCT mli FROM mliBstBst WHERE bst1 = ? OR bst2 = ?"},
    {ZelDb::Bst, ZelDb::Cpa,
        ZEL_ALIASES_OF_MOL
        "(SELECT c.mol FROM bst b JOIN mcp c ON c.psiimId = b.mcp WHERE b.psiimId = ?)"},
    {ZelDb::McpState, ZelDb::Cpa,
        ZEL_ALIASES_OF_MOL
        "(SELECT c.mol FROM mcpState s JOIN mcp c ON c.psiimId = s.mcp WHERE s.psiimId = ?)"},
};

#undef ZEL_SITES_OF_MOL
#undef ZEL_SITES_OF_MCP
#undef ZEL_ALIASES_OF_MOL

/// The statements that find what refers to records of a kind, by the referring kind.
QList<QPair<int, QString>> referrerStatements(int type)
{
    QList<QPair<int, QString>> statements;
    for (const Referrer &referrer : indirectReferrers) {
        if (referrer.type == type)
            statements.append({referrer.byType, QLatin1String(referrer.statement)});
    }
    for (const ZelDbKind &kind : ZelDbSchema::kinds()) {
        for (const ZelDbColumnInfo &info : kind.columns) {
            if (info.type == ZelDbColumnType::Reference && info.target == type) {
                statements.append({kind.type,
                    QLatin1String("SELECT psiimId FROM %1 WHERE %2 = ?")
                        .arg(QLatin1String(kind.word), QLatin1String(info.name))});
            }
        }
    }
    return statements;
}

} // namespace

QString ZelDbRecords::describe(
    ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId)
{
    const char *column = kind.type == ZelDb::McpState ? "name" : "shortName";
    const QString name = text(connection, kind, column, psiimId);
    if (name.isEmpty())
        return QLatin1String("%1 %2").arg(QLatin1String(kind.title), psiimId);
    return QLatin1String("%1 '%2' (%3)").arg(QLatin1String(kind.title), name.left(80), psiimId);
}

QString ZelDbRecords::describeCapital(
    ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId)
{
    QString sentence = describe(connection, kind, psiimId);
    sentence[0] = sentence.at(0).toUpper();
    return sentence;
}

bool ZelDbRecords::isFree(
    ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId)
{
    // A record that refers twice is one referrer; its first mention leads the sentence.
    QList<QPair<int, QString>> referrers;
    QSet<QString> seen;
    for (const auto &[referrerType, statement] : referrerStatements(kind.type)) {
        const int byType = referrerType; // not every compiler lets a lambda capture a binding
        const ZelDbKind &by = *ZelDbSchema::kind(byType);
        const QVariantList values(statement.count(u'?'), psiimId);
        const bool ok = connection->read(
            statement + QLatin1String(" ORDER BY 1"), values, [&](const QSqlQuery &row) {
                const QString id = row.value(0).toString();
                const bool itself = byType == kind.type && id == psiimId;
                const QString key = QLatin1String(by.word) + u' ' + id;
                if (itself || seen.contains(key))
                    return;
                seen.insert(key);
                referrers.append({byType, id});
            });
        if (!ok)
            return false;
    }
    if (referrers.isEmpty())
        return true;
    const auto &[byType, id] = referrers.first();
    const QString others = referrers.size() > 1 ? QLatin1String(" and %1 more; remove those first.")
                                                      .arg(QString::number(referrers.size() - 1))
                                                : QStringLiteral("; remove that first.");
    return connection->fail(ZelDbSqlite::InUse,
        describeCapital(connection, kind, psiimId) + QLatin1String(" is used by ")
            + describe(connection, *ZelDbSchema::kind(byType), id) + others);
}

bool ZelDbRecords::remove(
    ZelDbConnection *connection, const ZelDbKind &kind, const QString &psiimId)
{
    if (!connection)
        return false;
    if (!exists(connection, kind, psiimId)) {
        return connection->fail(ZelDbSqlite::InvalidInput,
            QLatin1String("There is no %1 '%2' to remove.")
                .arg(QLatin1String(kind.title), psiimId.left(80)));
    }
    return isFree(connection, kind, psiimId)
        && connection->write(
            QLatin1String("DELETE FROM %1 WHERE psiimId = ?").arg(QLatin1String(kind.word)),
            {psiimId});
}
