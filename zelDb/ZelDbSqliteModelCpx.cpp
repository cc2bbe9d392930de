#include "zelDb/ZelDbModelAccess.h"
#include "zelDb/ZelDbSqliteModel.h"

using namespace ZelDbModelAccess;

QStringList ZelDbSqliteModel::cpxGetListPsiimId() const
{
    return list(this, ZelDb::Cpx);
}

ZelDbRecord ZelDbSqliteModel::cpxGetHashInfo(const QString &cpxPsiimId) const
{
    return read(this, ZelDb::Cpx, cpxPsiimId);
}

bool ZelDbSqliteModel::cpxRemove(const QString &cpxPsiimId)
{
    return remove(this, ZelDb::Cpx, cpxPsiimId);
}

QList<QStringList> ZelDbSqliteModel::cpxGetArrayBstBst(const QString &cpxPsiimId) const
{
    return rows(this,
        "SELECT +molPos1, +bst1, +molPos2, +bst2 FROM cpxBstBst WHERE cpx = ? ORDER BY rowNumber",
        4, {cpxPsiimId});
}

QHash<QStringList, QString> ZelDbSqliteModel::cpxGetBstBstNotes(const QString &cpxPsiimId) const
{
    QHash<QStringList, QString> notes;
    const QList<QStringList> found = rows(this,
        "SELECT molPos1, bst1, molPos2, bst2, notes FROM cpxBstBst WHERE cpx = ? AND notes <> ''",
        5, {cpxPsiimId});
    for (const QStringList &row : found)
        notes.insert(row.first(4), row.last());
    return notes;
}

QString ZelDbSqliteModel::cpxGetFingerPrint(const QString &cpxPsiimId) const
{
    return ZelDbRecords::text(
        openConnection(), *ZelDbSchema::kind(ZelDb::Cpx), "fingerPrint", cpxPsiimId);
}

bool ZelDbSqliteModel::cpxIsFingerPrintExisted(const QString &fingerPrint) const
{
    return !cpxGetPsiimIdFromFingerPrint(fingerPrint).isEmpty();
}

QString ZelDbSqliteModel::cpxGetPsiimIdFromFingerPrint(const QString &fingerPrint) const
{
    if (fingerPrint.isEmpty())
        return {};
    return value(this, "SELECT psiimId FROM cpx WHERE fingerPrint = ? ORDER BY rowNumber LIMIT 1",
        {fingerPrint});
}

QStringList ZelDbSqliteModel::cpxGetCpxPsiimIdListAtMolCodeFromCpx(
    const QString &cpxPsiimId, bool includeSelf) const
{
    // An empty code says nothing about the molecules: such a complex is like itself only.
    return column(this,
        "SELECT c.psiimId FROM cpx self JOIN cpx c ON c.molCode = self.molCode "
        "WHERE self.psiimId = ? AND CASE WHEN c.rowNumber = self.rowNumber THEN ? ELSE c.molCode "
        "<> '' END "
        "ORDER BY c.rowNumber",
        {cpxPsiimId, includeSelf ? 1 : 0});
}

QStringList ZelDbSqliteModel::cpxGetListMolPsiimId(const QString &cpxPsiimId) const
{
    return column(this, "SELECT +mol FROM cpxMol WHERE cpx = ? ORDER BY position", {cpxPsiimId});
}

bool ZelDbSqliteModel::cpxInsert(const QString &psiimId, const QString &shortName,
    const QString &name, const QString &text, const QString &notes, const QString &fingerPrint,
    const QString &graphicsInfo, const QString &molCode, const QString &flag)
{
    ZelDbConnection *connection = openConnection();
    if (!connection)
        return false;
    ZelDbTransaction transaction(m_db);
    return insert(this, ZelDb::Cpx,
               {{ZelDbColumn::PsiimId, psiimId}, {ZelDbColumn::ShortName, shortName},
                   {ZelDbColumn::Name, name}, {ZelDbColumn::CpxText, text},
                   {ZelDbColumn::Notes, notes}, {ZelDbColumn::CpxFingerPrint, fingerPrint},
                   {ZelDbColumn::GraphicsInfo, graphicsInfo}, {ZelDbColumn::CpxMolCode, molCode},
                   {ZelDbColumn::CpxFlag, flag}})
        && connection->write(QStringLiteral("DELETE FROM cpxMol WHERE cpx = ?"), {psiimId})
        && connection->write(QStringLiteral("DELETE FROM cpxBstBst WHERE cpx = ?"), {psiimId})
        && transaction.commit();
}

bool ZelDbSqliteModel::cpxInsertMol(
    const QString &cpxPsiimId, const QString &molPsiimId, const QString &position)
{
    ZelDbConnection *connection = openConnection();
    int number = 0;
    if (!connection || !ZelDbRecords::position(connection, position, &number))
        return false;
    if (connection->write(
            QStringLiteral("INSERT INTO cpxMol (cpx, position, mol) VALUES (?, ?, ?) "
                           "ON CONFLICT (cpx, position) DO UPDATE SET mol = excluded.mol"),
            {ZelDbRecords::reference(cpxPsiimId), number, ZelDbRecords::reference(molPsiimId)}))
        return true;
    return ZelDbRecords::explainMissing(connection,
        {{ZelDb::Cpx, cpxPsiimId}, {ZelDb::Mol, molPsiimId}},
        QStringLiteral("A molecule of a complex"));
}

bool ZelDbSqliteModel::cpxInsertBstBst(const QString &cpxPsiimId, const QString &molPos1,
    const QString &bstPsiimId1, const QString &molPos2, const QString &bstPsiimId2,
    const QString &notes)
{
    ZelDbConnection *connection = openConnection();
    int position1 = 0;
    int position2 = 0;
    if (!connection || !ZelDbRecords::position(connection, molPos1, &position1)
        || !ZelDbRecords::position(connection, molPos2, &position2))
        return false;
    if (connection->write(
            QStringLiteral("INSERT INTO cpxBstBst (cpx, molPos1, bst1, molPos2, bst2, notes) "
                           "VALUES (?, ?, ?, ?, ?, ?) "
                           "ON CONFLICT (cpx, molPos1, bst1, molPos2, bst2) "
                           "DO UPDATE SET notes = excluded.notes"),
            {ZelDbRecords::reference(cpxPsiimId), position1, ZelDbRecords::reference(bstPsiimId1),
                position2, ZelDbRecords::reference(bstPsiimId2), ZelDbRecords::notNull(notes)}))
        return true;
    return ZelDbRecords::explainMissing(connection,
        {{ZelDb::Cpx, cpxPsiimId}, {ZelDb::Bst, bstPsiimId1}, {ZelDb::Bst, bstPsiimId2}},
        QStringLiteral("A bond of a complex"));
}
