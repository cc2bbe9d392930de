#include "zelDb/ZelDb.h"

#include "zelDb/ZelDbRecords.h"
#include "zelDb/ZelDbSqliteModel.h"

QString ZelDb::getNewSdcPsiimId(int type, ZelDbSqliteModel *model)
{
    ZelDbConnection *connection = ZelDbRecords::connection(model);
    if (!connection)
        return {};
    const ZelDbKind *kind = ZelDbSchema::kind(type);
    if (!kind) {
        connection->fail(ZelDbSqlite::InvalidInput,
            QLatin1String("There is no kind %1 of records that could have an id.")
                .arg(QString::number(type)));
        return {};
    }
    return ZelDbRecords::newId(model->database(), connection, *kind);
}

QList<int> ZelDb::getListBindingStatusType()
{
    return {BindingStatusUnspecified, BindingStatusBound, BindingStatusUnbound};
}
