#include "zelDb/ZelDbModelAccess.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <algorithm>

using namespace ZelDbModelAccess;

namespace {

QList<QPair<int, int>> mcpPairs(const ZelDbSqliteModel *model, const QString &molPsiimId)
{
    QList<QPair<int, int>> pairs;
    for (const QStringList &row :
        rows(model, "SELECT a, b FROM mcpMcp WHERE mol = ? ORDER BY a, b", 2, {molPsiimId}))
        pairs.append({row.first().toInt(), row.last().toInt()});
    return pairs;
}

} // namespace

QStringList ZelDbSqliteModel::molGetListPsiimId() const
{
    return list(this, ZelDb::Mol);
}

ZelDbRecord ZelDbSqliteModel::molGetHashInfo(const QString &molPsiimId) const
{
    return read(this, ZelDb::Mol, molPsiimId);
}

bool ZelDbSqliteModel::molInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Mol, record);
}

bool ZelDbSqliteModel::molRemove(const QString &molPsiimId)
{
    return remove(this, ZelDb::Mol, molPsiimId);
}

QStringList ZelDbSqliteModel::mcpGetListPsiimId() const
{
    return list(this, ZelDb::Mcp);
}

ZelDbRecord ZelDbSqliteModel::mcpGetHashInfo(const QString &mcpPsiimId) const
{
    return read(this, ZelDb::Mcp, mcpPsiimId);
}

bool ZelDbSqliteModel::mcpInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Mcp, record);
}

QStringList ZelDbSqliteModel::bstGetListPsiimId() const
{
    return list(this, ZelDb::Bst);
}

ZelDbRecord ZelDbSqliteModel::bstGetHashInfo(const QString &bstPsiimId) const
{
    return read(this, ZelDb::Bst, bstPsiimId);
}

bool ZelDbSqliteModel::bstInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Bst, record);
}

bool ZelDbSqliteModel::bstRemove(const QString &bstPsiimId)
{
    return remove(this, ZelDb::Bst, bstPsiimId);
}

ZelDbRecord ZelDbSqliteModel::mcpStateGetHashInfo(const QString &statePsiimId) const
{
    return read(this, ZelDb::McpState, statePsiimId);
}

bool ZelDbSqliteModel::mcpStateInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::McpState, record);
}

bool ZelDbSqliteModel::mcpStateRemove(const QString &statePsiimId)
{
    return remove(this, ZelDb::McpState, statePsiimId);
}

QStringList ZelDbSqliteModel::molGetListMcpPsiimId(const QString &molPsiimId) const
{
    return column(
        this, "SELECT +psiimId FROM mcp WHERE mol = ? ORDER BY posIndex, rowNumber", {molPsiimId});
}

QStringList ZelDbSqliteModel::bstGetListPsiimIdBasedOnMcp(const QString &mcpPsiimId) const
{
    return column(
        this, "SELECT +psiimId FROM bst WHERE mcp = ? ORDER BY posIndex, rowNumber", {mcpPsiimId});
}

QMultiHash<int, int> ZelDbSqliteModel::molGetMultiHashMcpMcp(const QString &molPsiimId) const
{
    QMultiHash<int, int> pairs;
    for (const auto &[a, b] : mcpPairs(this, molPsiimId))
        pairs.insert(a, b);
    return pairs;
}

bool ZelDbSqliteModel::molInsertMcpMcp(const QString &molPsiimId, int indexA, int indexB)
{
    ZelDbConnection *connection = openConnection();
    if (!connection)
        return false;
    const auto [a, b] = std::minmax(indexA, indexB);
    if (a < 0 || a == b) {
        return connection->fail(ZelDbSqlite::InvalidInput,
            QLatin1String(
                "Components %1 and %2 of molecule %3 cannot be joined; give two different "
                "indices from 0 on.")
                .arg(QString::number(indexA), QString::number(indexB), molPsiimId.left(80)));
    }
    if (connection->write(QStringLiteral("INSERT INTO mcpMcp (mol, a, b) VALUES (?, ?, ?) "
                                         "ON CONFLICT (mol, a, b) DO NOTHING"),
            {molPsiimId, a, b}))
        return true;
    return ZelDbRecords::explainMissing(
        connection, {{ZelDb::Mol, molPsiimId}}, QStringLiteral("A backbone line"));
}

bool ZelDbSqliteModel::mcpRemove(const QString &mcpPsiimId)
{
    ZelDbConnection *connection = openConnection();
    if (!connection)
        return false;
    const QString mol =
        ZelDbRecords::text(connection, *ZelDbSchema::kind(ZelDb::Mcp), "mol", mcpPsiimId);
    const int index = int(molGetListMcpPsiimId(mol).indexOf(mcpPsiimId));
    ZelDbTransaction transaction(m_db);
    if (!remove(this, ZelDb::Mcp, mcpPsiimId))
        return false;
    // The pairs name components by their place, which the later ones have changed.
    const QList<QPair<int, int>> pairs = mcpPairs(this, mol);
    connection->write(QStringLiteral("DELETE FROM mcpMcp WHERE mol = ?"), {mol});
    for (const auto &[a, b] : pairs) {
        if (a != index && b != index)
            molInsertMcpMcp(mol, a > index ? a - 1 : a, b > index ? b - 1 : b);
    }
    return transaction.commit();
}

QList<ZelDbState> ZelDbSqliteModel::mcpGetOrderedStates(const QString &mcpPsiimId) const
{
    QList<ZelDbState> states;
    ZelDbConnection *connection = openConnection();
    const bool ok = connection
        && connection->read(
            QStringLiteral("SELECT +psiimId, +name, +color FROM mcpState WHERE mcp = ? "
                           "ORDER BY posIndex, rowNumber"),
            {mcpPsiimId}, [&](const QSqlQuery &row) {
                states.append(
                    {row.value(0).toString(), row.value(1).toString(), row.value(2).toString()});
            });
    return ok ? states : QList<ZelDbState>();
}

QStringList ZelDbSqliteModel::mcpGetOrderedStateNames(const QString &mcpPsiimId) const
{
    return column(
        this, "SELECT name FROM mcpState WHERE mcp = ? ORDER BY posIndex, rowNumber", {mcpPsiimId});
}

QString ZelDbSqliteModel::mcpGetStateNameFromIndex(const QString &mcpPsiimId, int index) const
{
    if (index < 0)
        return {};
    return value(this,
        "SELECT name FROM mcpState WHERE mcp = ? ORDER BY posIndex, rowNumber LIMIT 1 OFFSET ?",
        {mcpPsiimId, index});
}

bool ZelDbSqliteModel::mcpInsertState(
    const QString &mcpPsiimId, const QString &name, const QString &colorName, int index)
{
    ZelDbConnection *connection = openConnection();
    if (!connection)
        return false;
    const QVariant color = ZelDbRecords::notNull(colorName);
    int affected = 0;
    if (!connection->write(
            QStringLiteral(
                "UPDATE mcpState SET color = ?, posIndex = ? WHERE mcp = ? AND name = ?"),
            {color, index, mcpPsiimId, ZelDbRecords::notNull(name)}, &affected))
        return false;
    if (affected > 0)
        return true;
    const QString psiimId =
        ZelDbRecords::newId(m_db, connection, *ZelDbSchema::kind(ZelDb::McpState));
    return !psiimId.isEmpty()
        && mcpStateInsert({{ZelDbColumn::PsiimId, psiimId}, {ZelDbColumn::OwnerPsiimId, mcpPsiimId},
            {ZelDbColumn::Name, name}, {ZelDbColumn::StateColor, colorName},
            {ZelDbColumn::PosIndex, QString::number(index)}});
}

bool ZelDbSqliteModel::mcpSetCopyGroup(const QString &mcpPsiimId, const QString &group)
{
    return ZelDbRecords::update(openConnection(), *ZelDbSchema::kind(ZelDb::Mcp), "copyGroup",
        mcpPsiimId, ZelDbRecords::notNull(group));
}

bool ZelDbSqliteModel::mcpStateSetExclusionGroup(const QString &statePsiimId, const QString &group)
{
    return ZelDbRecords::update(openConnection(), *ZelDbSchema::kind(ZelDb::McpState),
        "exclusionGroup", statePsiimId, ZelDbRecords::notNull(group));
}

QString ZelDbSqliteModel::mcpStateGetExclusionGroup(const QString &statePsiimId) const
{
    return ZelDbRecords::text(
        openConnection(), *ZelDbSchema::kind(ZelDb::McpState), "exclusionGroup", statePsiimId);
}

QList<QStringList> ZelDbSqliteModel::mcpGetExclusionGroups(const QString &mcpPsiimId) const
{
    const QList<QStringList> states = rows(this,
        "SELECT exclusionGroup, psiimId FROM mcpState WHERE mcp = ? AND exclusionGroup <> '' "
        "ORDER BY exclusionGroup, posIndex, rowNumber",
        2, {mcpPsiimId});
    QList<QStringList> groups;
    for (qsizetype i = 0; i < states.size(); ++i) {
        if (i == 0 || states.at(i).first() != states.at(i - 1).first())
            groups.append(QStringList());
        groups.last().append(states.at(i).last());
    }
    return groups;
}
