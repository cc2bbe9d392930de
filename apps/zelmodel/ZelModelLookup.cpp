#include "apps/zelmodel/ZelModelLookup.h"

#include "apps/zelmodel/ZelModelRun.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace {

namespace C = ZelDbColumn;

constexpr qsizetype MostNamed = 8;
constexpr qsizetype LongestName = 80;

/// The columns that hold ids; parts do not use what they are part of.
constexpr int referenceColumns[] = {C::CpaCpx, C::CaiCpa1, C::CaiCpa2, C::CaiResultCpa,
    C::CadSourceCpa, C::CadResultCpa1, C::CadResultCpa2, C::TrnFromCpa, C::TrnToCpa,
    C::PdnSourceCpa, C::PdnProductCpa, C::DegradationCpa, C::SeedCpa, C::Bst1, C::Bst2,
    C::CompartmentParent};

bool isReference(int column)
{
    return std::find(std::begin(referenceColumns), std::end(referenceColumns), column)
        != std::end(referenceColumns);
}

/// The records of that id, and those of that name, in the order of the kinds.
bool collect(ZelModelRun &run, const QString &idOrName, bool withPictureOnly,
    QList<ZelModelFound> *byId, QList<ZelModelFound> *byName)
{
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        if (withPictureOnly && !kind.hasPicture())
            continue;
        const bool read =
            run.db().visitRecords(kind.type, kind.readColumns(), [&](const ZelDbRecord &record) {
                if (!kind.holds(record))
                    return true;
                if (record.value(C::PsiimId) == idOrName)
                    byId->append({&kind, record});
                else if (kind.nameOf(record) == idOrName || record.value(C::Name) == idOrName)
                    byName->append({&kind, record});
                return true;
            });
        if (!read) {
            run.fail(run.db().errorText());
            return false;
        }
    }
    return true;
}

QString titles(const QList<ZelModelFound> &records)
{
    QStringList texts;
    for (const ZelModelFound &found : records.mid(0, MostNamed)) {
        texts.append(QLatin1String("%1 (%2)").arg(
            found.record.value(C::PsiimId), QLatin1String(found.kind->title)));
    }
    if (records.size() > MostNamed)
        texts.append(QLatin1String("%1 more").arg(QString::number(records.size() - MostNamed)));
    return texts.join(QLatin1String(", "));
}

/// The binding sites of a molecule or component, or the site itself.
QSet<QString> sitesOf(const ZelDbSqliteModel &db, const ZelModelFound &found)
{
    const QString id = found.record.value(C::PsiimId);
    if (found.kind->type == ZelDb::Bst)
        return {id};
    QStringList mcps;
    if (found.kind->type == ZelDb::Mol)
        mcps = db.molGetListMcpPsiimId(id);
    else if (found.kind->type == ZelDb::Mcp)
        mcps.append(id);
    QSet<QString> sites;
    for (const QString &mcp : std::as_const(mcps)) {
        for (const QString &site : db.bstGetListPsiimIdBasedOnMcp(mcp))
            sites.insert(site);
    }
    return sites;
}

bool bondsUse(const QList<QStringList> &bonds, int column1, int column2, const QSet<QString> &sites)
{
    return std::any_of(bonds.begin(), bonds.end(), [&](const QStringList &bond) {
        return sites.contains(bond.value(column1)) || sites.contains(bond.value(column2));
    });
}

} // namespace

bool ZelModelLookup::find(
    ZelModelRun &run, const QString &idOrName, bool withPictureOnly, ZelModelFound *found)
{
    QList<ZelModelFound> byId;
    QList<ZelModelFound> byName;
    if (!collect(run, idOrName, withPictureOnly, &byId, &byName))
        return false;
    const QList<ZelModelFound> &all = byId.isEmpty() ? byName : byId;
    const QString asked = idOrName.left(LongestName);
    if (all.isEmpty()) {
        run.fail(QLatin1String("'%1' has no %2 '%3'; 'zelmodel list %1 all' shows what it has.")
                     .arg(run.argument(0),
                         withPictureOnly ? QStringLiteral("record with a picture")
                                         : QStringLiteral("record"),
                         asked));
        return false;
    }
    const QList<ZelModelFound> others = all.mid(1);
    if (all.size() > 1 && all.at(1).kind == all.first().kind) {
        run.fail(QLatin1String("'%1' is the name of several records; use an id: %2.")
                     .arg(asked, titles(all)));
        return false;
    }
    if (!others.isEmpty())
        run.note(QLatin1String("'%1' is also the name of %2.").arg(asked, titles(others)));
    *found = all.first();
    return true;
}

QList<ZelModelFound> ZelModelLookup::referrers(
    const ZelDbSqliteModel &db, const ZelModelFound &found)
{
    QList<ZelModelFound> list;
    const QString id = found.record.value(C::PsiimId);
    const QSet<QString> sites = sitesOf(db, found);
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        const QList<int> columns = kind.readColumns();
        db.visitRecords(kind.type, columns, [&](const ZelDbRecord &record) {
            if (!kind.holds(record))
                return true;
            const QString own = record.value(C::PsiimId);
            bool uses = std::any_of(columns.begin(), columns.end(), [&](int column) {
                return isReference(column)
                    && (record.value(column) == id || sites.contains(record.value(column)));
            });
            if (kind.type == ZelDb::Cpx && found.kind->type == ZelDb::Mol)
                uses = record.value(C::CpxMolCode).split(u';').contains(id);
            else if (kind.type == ZelDb::Cpx && !sites.isEmpty())
                uses = bondsUse(db.cpxGetArrayBstBst(own), 1, 3, sites);
            else if (kind.type == ZelDb::Mli && !sites.isEmpty())
                uses = bondsUse(db.mliGetArrayBstBst(own), 3, 5, sites);
            if (uses && own != id)
                list.append({&kind, record});
            return true;
        });
    }
    return list;
}
