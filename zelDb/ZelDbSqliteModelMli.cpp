#include "zelDb/ZelDbModelAccess.h"
#include "zelDb/ZelDbSqliteModel.h"

using namespace ZelDbModelAccess;

namespace {

QString mliOfSites(const ZelDbSqliteModel *model, const QString &bst1, const QString &bst2)
{
    return value(model,
        "SELECT p.mli FROM mliBstBst p JOIN mli m ON m.psiimId = p.mli "
        "WHERE (p.bst1 = ? AND p.bst2 = ?) OR (p.bst1 = ? AND p.bst2 = ?) "
        "ORDER BY m.rowNumber, p.ordinal LIMIT 1",
        {bst1, bst2, bst2, bst1});
}

} // namespace

QStringList ZelDbSqliteModel::mliGetListPsiimId() const
{
    return list(this, ZelDb::Mli);
}

bool ZelDbSqliteModel::mliRemove(const QString &mliPsiimId)
{
    return remove(this, ZelDb::Mli, mliPsiimId);
}

bool ZelDbSqliteModel::mliIsDefined(const QString &bstPsiimId1, const QString &bstPsiimId2) const
{
    return !mliOfSites(this, bstPsiimId1, bstPsiimId2).isEmpty();
}

ZelDbRecord ZelDbSqliteModel::mliGetHashInfo(
    const QString &bstPsiimId1, const QString &bstPsiimId2) const
{
    return mliGetHashInfo(mliOfSites(this, bstPsiimId1, bstPsiimId2));
}

ZelDbRecord ZelDbSqliteModel::mliGetHashInfo(const QString &mliPsiimId) const
{
    ZelDbRecord record = read(this, ZelDb::Mli, mliPsiimId);
    if (record.isEmpty())
        return record;
    const QList<QStringList> pairs = mliGetArrayBstBst(mliPsiimId);
    if (!pairs.isEmpty()) {
        const QStringList &first = pairs.first();
        record.insert(ZelDbColumn::MolPos1, first.at(2));
        record.insert(ZelDbColumn::Bst1, first.at(3));
        record.insert(ZelDbColumn::MolPos2, first.at(4));
        record.insert(ZelDbColumn::Bst2, first.at(5));
    }
    return record;
}

QList<QStringList> ZelDbSqliteModel::mliGetArrayBstBst(const QString &mliPsiimId) const
{
    return rows(this,
        "SELECT mli, ordinal, molPos1, bst1, molPos2, bst2 FROM mliBstBst WHERE mli = ? "
        "ORDER BY ordinal",
        6, {mliPsiimId});
}

bool ZelDbSqliteModel::mliInsert(const ZelDbRecord &record)
{
    ZelDbRecord own = record;
    bool hasPair = false;
    for (const int key :
        {ZelDbColumn::Bst1, ZelDbColumn::MolPos1, ZelDbColumn::Bst2, ZelDbColumn::MolPos2})
        hasPair = own.remove(key) || hasPair;
    if (!hasPair)
        return insert(this, ZelDb::Mli, own);
    // Without a position, the sites' molecules are the interaction's first and second.
    const auto position = [&](int column, const char *usual) {
        const QString text = record.value(column);
        return text.isEmpty() ? QString(QLatin1String(usual)) : text;
    };
    ZelDbTransaction transaction(m_db);
    return insert(this, ZelDb::Mli, own)
        && mliInsertBstBst(own.value(ZelDbColumn::PsiimId), 0, position(ZelDbColumn::MolPos1, "0"),
            record.value(ZelDbColumn::Bst1), position(ZelDbColumn::MolPos2, "1"),
            record.value(ZelDbColumn::Bst2))
        && transaction.commit();
}

bool ZelDbSqliteModel::mliInsertBstBst(const QString &mliPsiimId, int ordinal,
    const QString &molPos1, const QString &bstPsiimId1, const QString &molPos2,
    const QString &bstPsiimId2)
{
    ZelDbConnection *connection = openConnection();
    int position1 = 0;
    int position2 = 0;
    if (!connection || !ZelDbRecords::position(connection, molPos1, &position1)
        || !ZelDbRecords::position(connection, molPos2, &position2))
        return false;
    if (connection->write(
            QStringLiteral("INSERT INTO mliBstBst (mli, ordinal, molPos1, bst1, molPos2, bst2) "
                           "VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT (mli, ordinal) DO UPDATE SET "
                           "molPos1 = excluded.molPos1, bst1 = excluded.bst1, "
                           "molPos2 = excluded.molPos2, bst2 = excluded.bst2"),
            {ZelDbRecords::reference(mliPsiimId), ordinal, position1,
                ZelDbRecords::reference(bstPsiimId1), position2,
                ZelDbRecords::reference(bstPsiimId2)}))
        return true;
    return ZelDbRecords::explainMissing(connection,
        {{ZelDb::Mli, mliPsiimId}, {ZelDb::Bst, bstPsiimId1}, {ZelDb::Bst, bstPsiimId2}},
        QStringLiteral("A pair of sites of a molecule interaction"));
}

bool ZelDbSqliteModel::mliRemoveAllBstBst(const QString &mliPsiimId)
{
    ZelDbConnection *connection = openConnection();
    return connection
        && connection->write(QStringLiteral("DELETE FROM mliBstBst WHERE mli = ?"), {mliPsiimId});
}
