#include "zelDb/ZelDbModelAccess.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QSet>

#include <algorithm>

using namespace ZelDbModelAccess;

namespace {

/// Removes the found records that are not kept; stops at one that something refers to.
bool removeSurplus(ZelDbConnection *connection, int type, const char *statement,
    const QString &molPsiimId, const QSet<QString> &kept)
{
    QStringList surplus;
    const bool ok =
        connection->read(QLatin1String(statement), {molPsiimId}, [&](const QSqlQuery &row) {
            const QString id = row.value(0).toString();
            if (!kept.contains(id))
                surplus.append(id);
        });
    const ZelDbKind &kind = *ZelDbSchema::kind(type);
    return ok && std::all_of(surplus.begin(), surplus.end(), [&](const QString &id) {
        return ZelDbRecords::remove(connection, kind, id);
    });
}

QSet<QString> toSet(const QStringList &list)
{
    return {list.begin(), list.end()};
}

/// The ids of the states whose component and name are kept.
QSet<QString> keptStates(
    const ZelDbSqliteModel *model, const QString &molPsiimId, const ZelDbMolRows &kept)
{
    QSet<QString> ids;
    QHash<QString, QSet<QString>> names;
    for (auto it = kept.stateNames.begin(); it != kept.stateNames.end(); ++it)
        names.insert(it.key(), toSet(it.value()));
    for (const QStringList &row : rows(model,
             "SELECT s.psiimId, s.mcp, s.name FROM mcp c JOIN mcpState s ON s.mcp = c.psiimId "
             "WHERE c.mol = ? ORDER BY s.rowNumber",
             3, {molPsiimId})) {
        const auto it = names.constFind(row.at(1));
        if (it != names.constEnd() && it->contains(row.at(2)))
            ids.insert(row.at(0));
    }
    return ids;
}

bool removeSurplusPairs(
    ZelDbConnection *connection, const QString &molPsiimId, const ZelDbMolRows &kept)
{
    QSet<QPair<int, int>> keptPairs;
    for (const auto &[first, second] : kept.mcpPairs)
        keptPairs.insert({qMin(first, second), qMax(first, second)});
    QList<QPair<int, int>> surplus;
    const bool ok =
        connection->read(QStringLiteral("SELECT a, b FROM mcpMcp WHERE mol = ? ORDER BY a, b"),
            {molPsiimId}, [&](const QSqlQuery &row) {
                const QPair<int, int> pair{row.value(0).toInt(), row.value(1).toInt()};
                if (!keptPairs.contains(pair))
                    surplus.append(pair);
            });
    return ok && std::all_of(surplus.begin(), surplus.end(), [&](const QPair<int, int> &pair) {
        return connection->write(
            QStringLiteral("DELETE FROM mcpMcp WHERE mol = ? AND a = ? AND b = ?"),
            {molPsiimId, pair.first, pair.second});
    });
}

} // namespace

bool ZelDbSqliteModel::molRemoveRowsExcept(const QString &molPsiimId, const ZelDbMolRows &kept)
{
    ZelDbConnection *connection = openConnection();
    if (!connection)
        return false;
    ZelDbTransaction transaction(m_db);
    // Sites and states first: the message then names the smallest thing that is in use.
    const bool ok =
        removeSurplus(connection, ZelDb::Bst,
            "SELECT b.psiimId FROM mcp c JOIN bst b ON b.mcp = c.psiimId WHERE c.mol = ? "
            "ORDER BY b.rowNumber",
            molPsiimId, toSet(kept.bstPsiimIds))
        && removeSurplus(connection, ZelDb::McpState,
            "SELECT s.psiimId FROM mcp c JOIN mcpState s ON s.mcp = c.psiimId WHERE c.mol = ? "
            "ORDER BY s.rowNumber",
            molPsiimId, keptStates(this, molPsiimId, kept))
        && removeSurplus(connection, ZelDb::Mcp,
            "SELECT psiimId FROM mcp WHERE mol = ? ORDER BY rowNumber", molPsiimId,
            toSet(kept.mcpPsiimIds))
        && removeSurplusPairs(connection, molPsiimId, kept);
    return ok && transaction.commit();
}
