#include "zelDb/ZelDbModelAccess.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <tuple>

using namespace ZelDbModelAccess;

QStringList ZelDbSqliteModel::caiGetListPsiimId() const
{
    return list(this, ZelDb::Cai);
}

ZelDbRecord ZelDbSqliteModel::caiGetHashInfo(const QString &caiPsiimId) const
{
    return read(this, ZelDb::Cai, caiPsiimId);
}

bool ZelDbSqliteModel::caiInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Cai, record);
}

bool ZelDbSqliteModel::caiRemove(const QString &caiPsiimId)
{
    return remove(this, ZelDb::Cai, caiPsiimId);
}

QStringList ZelDbSqliteModel::cadGetListPsiimId() const
{
    return list(this, ZelDb::Cad);
}

ZelDbRecord ZelDbSqliteModel::cadGetHashInfo(const QString &cadPsiimId) const
{
    return read(this, ZelDb::Cad, cadPsiimId);
}

QString ZelDbSqliteModel::cadGetPsiimId(const QString &sourceCpaPsiimId, const QString &cpaPsiimId1,
    const QString &cpaPsiimId2, const QString &bindingType) const
{
    using ZelDbRecords::reference;
    return value(this,
        "SELECT psiimId FROM cad WHERE sourceCpa = ? AND ((resultCpa1 IS ? AND resultCpa2 IS ?)"
        " OR (resultCpa1 IS ? AND resultCpa2 IS ?)) ORDER BY bindingType <> ?, rowNumber LIMIT 1",
        {sourceCpaPsiimId, reference(cpaPsiimId1), reference(cpaPsiimId2), reference(cpaPsiimId2),
            reference(cpaPsiimId1), ZelDbRecords::notNull(bindingType)});
}

bool ZelDbSqliteModel::cadInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Cad, record);
}

bool ZelDbSqliteModel::cadRemove(const QString &cadPsiimId)
{
    return remove(this, ZelDb::Cad, cadPsiimId);
}

QStringList ZelDbSqliteModel::trnGetListPsiimId() const
{
    return list(this, ZelDb::Trn);
}

ZelDbRecord ZelDbSqliteModel::trnGetHashInfo(const QString &trnPsiimId) const
{
    return read(this, ZelDb::Trn, trnPsiimId);
}

bool ZelDbSqliteModel::trnInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Trn, record);
}

bool ZelDbSqliteModel::trnRemove(const QString &trnPsiimId)
{
    return remove(this, ZelDb::Trn, trnPsiimId);
}

QStringList ZelDbSqliteModel::pdnGetListPsiimId() const
{
    return list(this, ZelDb::Pdn);
}

ZelDbRecord ZelDbSqliteModel::pdnGetHashInfo(const QString &pdnPsiimId) const
{
    return read(this, ZelDb::Pdn, pdnPsiimId);
}

bool ZelDbSqliteModel::pdnInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Pdn, record);
}

bool ZelDbSqliteModel::pdnRemove(const QString &pdnPsiimId)
{
    return remove(this, ZelDb::Pdn, pdnPsiimId);
}

QStringList ZelDbSqliteModel::degGetListPsiimId() const
{
    return list(this, ZelDb::Deg);
}

ZelDbRecord ZelDbSqliteModel::degGetHashInfo(const QString &degPsiimId) const
{
    return read(this, ZelDb::Deg, degPsiimId);
}

bool ZelDbSqliteModel::degInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Deg, record);
}

bool ZelDbSqliteModel::degRemove(const QString &degPsiimId)
{
    return remove(this, ZelDb::Deg, degPsiimId);
}

QStringList ZelDbSqliteModel::parGetListPsiimId() const
{
    return list(this, ZelDb::Parameter);
}

ZelDbRecord ZelDbSqliteModel::parGetHashInfo(const QString &parPsiimId) const
{
    return read(this, ZelDb::Parameter, parPsiimId);
}

bool ZelDbSqliteModel::parInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Parameter, record);
}

bool ZelDbSqliteModel::parRemove(const QString &parPsiimId)
{
    return remove(this, ZelDb::Parameter, parPsiimId);
}

QStringList ZelDbSqliteModel::obsGetListPsiimId() const
{
    return list(this, ZelDb::Observable);
}

ZelDbRecord ZelDbSqliteModel::obsGetHashInfo(const QString &obsPsiimId) const
{
    return read(this, ZelDb::Observable, obsPsiimId);
}

bool ZelDbSqliteModel::obsInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Observable, record);
}

bool ZelDbSqliteModel::obsRemove(const QString &obsPsiimId)
{
    return remove(this, ZelDb::Observable, obsPsiimId);
}

QStringList ZelDbSqliteModel::sedGetListPsiimId() const
{
    return list(this, ZelDb::Seed);
}

ZelDbRecord ZelDbSqliteModel::sedGetHashInfo(const QString &sedPsiimId) const
{
    return read(this, ZelDb::Seed, sedPsiimId);
}

bool ZelDbSqliteModel::sedInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Seed, record);
}

bool ZelDbSqliteModel::sedRemove(const QString &sedPsiimId)
{
    return remove(this, ZelDb::Seed, sedPsiimId);
}

QStringList ZelDbSqliteModel::cmpGetListPsiimId() const
{
    return list(this, ZelDb::Compartment);
}

ZelDbRecord ZelDbSqliteModel::cmpGetHashInfo(const QString &cmpPsiimId) const
{
    return read(this, ZelDb::Compartment, cmpPsiimId);
}

bool ZelDbSqliteModel::cmpInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Compartment, record);
}

bool ZelDbSqliteModel::cmpRemove(const QString &cmpPsiimId)
{
    return remove(this, ZelDb::Compartment, cmpPsiimId);
}

QStringList ZelDbSqliteModel::utrGetListPsiimId() const
{
    return list(this, ZelDb::Untranslated);
}

ZelDbRecord ZelDbSqliteModel::utrGetHashInfo(const QString &utrPsiimId) const
{
    return read(this, ZelDb::Untranslated, utrPsiimId);
}

bool ZelDbSqliteModel::utrInsert(const ZelDbRecord &record)
{
    return insert(this, ZelDb::Untranslated, record);
}

bool ZelDbSqliteModel::utrRemove(const QString &utrPsiimId)
{
    return remove(this, ZelDb::Untranslated, utrPsiimId);
}

QString ZelDbSqliteModel::caiGetPsiimId(const QString &cpaPsiimId1, const QString &bstPsiimId1,
    const QString &molPos1, const QString &cpaPsiimId2, const QString &bstPsiimId2,
    const QString &molPos2, const QString &geometry, const QString &bindingType,
    bool bothDirections) const
{
    using ZelDbRecords::reference;
    const auto find = [&](bool exchanged) {
        const auto &[cpa1, bst1, pos1] = exchanged ? std::tie(cpaPsiimId2, bstPsiimId2, molPos2)
                                                   : std::tie(cpaPsiimId1, bstPsiimId1, molPos1);
        const auto &[cpa2, bst2, pos2] = exchanged ? std::tie(cpaPsiimId1, bstPsiimId1, molPos1)
                                                   : std::tie(cpaPsiimId2, bstPsiimId2, molPos2);
        return value(this,
            "SELECT psiimId FROM cai WHERE cpa1 IS ? AND bst1 IS ? AND molPos1 IS CAST(? AS "
            "INTEGER)"
            " AND cpa2 IS ? AND bst2 IS ? AND molPos2 IS CAST(? AS INTEGER)"
            " AND geometry = ? AND bindingType = ? ORDER BY rowNumber LIMIT 1",
            {reference(cpa1), reference(bst1), reference(pos1), reference(cpa2), reference(bst2),
                reference(pos2), ZelDbRecords::notNull(geometry),
                ZelDbRecords::notNull(bindingType)});
    };
    const QString id = find(false);
    return id.isEmpty() && bothDirections ? find(true) : id;
}

QString ZelDbSqliteModel::degGetDegradationRate(const QString &cpaPsiimId) const
{
    return value(
        this, "SELECT rate FROM deg WHERE cpa = ? ORDER BY rowNumber LIMIT 1", {cpaPsiimId});
}
