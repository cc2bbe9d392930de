#include "zelDb/ZelDbModelAccess.h"
#include "zelDb/ZelDbSqliteModel.h"

using namespace ZelDbModelAccess;

namespace {

/// Says which alias has the complex, second key and state code already, if that was the failure.
void explainTwin(
    const ZelDbSqliteModel *model, const QString &cpaPsiimId, const QString &twinPsiimId)
{
    ZelDbConnection *connection = model->openConnection();
    if (!connection || connection->error() != ZelDbSqlite::Constraint || twinPsiimId.isEmpty()
        || twinPsiimId == cpaPsiimId)
        return;
    connection->explain(
        ZelDbRecords::describeCapital(connection, *ZelDbSchema::kind(ZelDb::Cpa), twinPsiimId)
        + QLatin1String(" stands for the same complex in the same state already; use that one."));
}

} // namespace

QStringList ZelDbSqliteModel::cpaGetListPsiimId() const
{
    return list(this, ZelDb::Cpa);
}

ZelDbRecord ZelDbSqliteModel::cpaGetHashInfo(const QString &cpaPsiimId) const
{
    return read(this, ZelDb::Cpa, cpaPsiimId);
}

bool ZelDbSqliteModel::cpaRemove(const QString &cpaPsiimId)
{
    return remove(this, ZelDb::Cpa, cpaPsiimId);
}

QStringList ZelDbSqliteModel::cpaGetListPsiimIdBasedOnCpx(const QString &cpxPsiimId) const
{
    return column(this, "SELECT psiimId FROM cpa WHERE cpx = ? ORDER BY rowNumber", {cpxPsiimId});
}

QStringList ZelDbSqliteModel::cpaGetListWellDefinedPsiimIds() const
{
    return column(this, "SELECT psiimId FROM cpa WHERE wellDefined = 1 ORDER BY rowNumber", {});
}

QString ZelDbSqliteModel::cpaGetPsiimId(
    const QString &cpxPsiimId, const QString &key2, const QString &stateCode) const
{
    return value(this, "SELECT psiimId FROM cpa WHERE cpx = ? AND key2 = ? AND stateCode = ?",
        {cpxPsiimId, ZelDbRecords::notNull(key2), ZelDbRecords::notNull(stateCode)});
}

QString ZelDbSqliteModel::cpaGetCpxPsiimId(const QString &cpaPsiimId) const
{
    return ZelDbRecords::text(openConnection(), *ZelDbSchema::kind(ZelDb::Cpa), "cpx", cpaPsiimId);
}

bool ZelDbSqliteModel::cpaIsShowEnabled(const QString &cpaPsiimId) const
{
    return value(this, "SELECT shown FROM cpa WHERE psiimId = ?", {cpaPsiimId})
        == QLatin1String("1");
}

bool ZelDbSqliteModel::cpaIsWellDefined(const QString &cpaPsiimId) const
{
    return value(this, "SELECT wellDefined FROM cpa WHERE psiimId = ?", {cpaPsiimId})
        == QLatin1String("1");
}

bool ZelDbSqliteModel::cpaInsert(const QString &psiimId, const QString &cpxPsiimId,
    const QString &key2, const QString &stateCode, const QString &shortName)
{
    return cpaInsert({{ZelDbColumn::PsiimId, psiimId}, {ZelDbColumn::CpaCpx, cpxPsiimId},
        {ZelDbColumn::CpaKey2, key2}, {ZelDbColumn::CpaStateCode, stateCode},
        {ZelDbColumn::CpaShortName, shortName}});
}

bool ZelDbSqliteModel::cpaInsert(const ZelDbRecord &record)
{
    if (insert(this, ZelDb::Cpa, record))
        return true;
    explainTwin(this, record.value(ZelDbColumn::PsiimId),
        cpaGetPsiimId(record.value(ZelDbColumn::CpaCpx), record.value(ZelDbColumn::CpaKey2),
            record.value(ZelDbColumn::CpaStateCode)));
    return false;
}

bool ZelDbSqliteModel::cpaUpdateMcpStateCode(const QString &cpaPsiimId, const QString &stateCode)
{
    ZelDbConnection *connection = openConnection();
    if (ZelDbRecords::update(connection, *ZelDbSchema::kind(ZelDb::Cpa), "stateCode", cpaPsiimId,
            ZelDbRecords::notNull(stateCode)))
        return true;
    const ZelDbRecord stored = connection ? cpaGetHashInfo(cpaPsiimId) : ZelDbRecord();
    explainTwin(this, cpaPsiimId,
        cpaGetPsiimId(
            stored.value(ZelDbColumn::CpaCpx), stored.value(ZelDbColumn::CpaKey2), stateCode));
    return false;
}

bool ZelDbSqliteModel::cpaSetShowEnabled(const QString &cpaPsiimId, bool shown)
{
    return ZelDbRecords::update(
        openConnection(), *ZelDbSchema::kind(ZelDb::Cpa), "shown", cpaPsiimId, shown ? 1 : 0);
}

bool ZelDbSqliteModel::cpaSetWellDefined(const QString &cpaPsiimId, bool wellDefined)
{
    return ZelDbRecords::update(openConnection(), *ZelDbSchema::kind(ZelDb::Cpa), "wellDefined",
        cpaPsiimId, wellDefined ? 1 : 0);
}
