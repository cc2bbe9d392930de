#include "apps/zelmodel/ZelModelLookup.h"

#include "apps/zelmodel/ZelModelRun.h"
#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/support/zgs.h"
#include "zelSpecies/SpeciesReader.h"

#include <QRegularExpression>
#include <QSet>
#include <QStandardItem>

#include <algorithm>
#include <iterator>
#include <memory>

using zel::species::MoleculeTypes;
using zel::species::Species;
using zel::species::SpeciesReader;

namespace {

namespace C = ZelDbColumn;

constexpr qsizetype MostNamed = 8;
constexpr qsizetype LongestName = 80;

/// The columns that hold ids; parts do not use what they are part of.
constexpr int referenceColumns[] = {C::CpaCpx, C::CaiCpa1, C::CaiCpa2, C::CaiResultCpa,
    C::CadSourceCpa, C::CadResultCpa1, C::CadResultCpa2, C::TrnFromCpa, C::TrnToCpa,
    C::PdnSourceCpa, C::PdnProductCpa, C::DegradationCpa, C::SeedCpa, C::Bst1, C::Bst2,
    C::CompartmentParent};

/// The columns that hold numbers, names of parameters, or expressions of both.
constexpr int expressionColumns[] = {C::AssociationRate, C::DissociationRate, C::Rate,
    C::DegradationRate, C::PdnM, C::PdnN, C::PdnK, C::PdnDelay, C::ParameterValue, C::SeedAmount,
    C::CompartmentSize, C::SourceText};

template <std::size_t Count>
bool isOneOf(const int (&columns)[Count], int column)
{
    return std::find(std::begin(columns), std::end(columns), column) != std::end(columns);
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

/// What a record says of the given one other than by its id.
class Mentions
{
public:
    Mentions(const ZelDbSqliteModel &db, const ZelModelFound &found)
        : m_type(found.kind->type), m_id(found.record.value(C::PsiimId)),
          m_name(found.kind->nameOf(found.record)), m_reader(m_catalog, db),
          m_word(QLatin1String("(?<!\\w)%1(?!\\w)").arg(QRegularExpression::escape(m_name)))
    {
        if (m_type == ZelDb::McpState)
            m_catalog.read(db);
    }

    bool holds(const ZelModelKind &kind, const ZelDbRecord &record)
    {
        if (m_name.isEmpty())
            return false;
        switch (m_type) {
        case ZelDb::Parameter:
        case ZelDb::Observable:
            return std::any_of(std::begin(expressionColumns), std::end(expressionColumns),
                [&](int column) { return record.value(column).contains(m_word); });
        case ZelDb::Compartment:
            return kind.type == ZelDb::Cpa && record.value(C::CpaKey2).split(u';').contains(m_name);
        case ZelDb::McpState:
            return kind.type == ZelDb::Cpa && isOnIn(m_reader.readAlias(record));
        default:
            return false;
        }
    }

private:
    bool isOnIn(const Species &species) const
    {
        return std::any_of(
            species.mols.begin(), species.mols.end(), [this](const Species::Mol &mol) {
                for (const MoleculeTypes::Mcp &mcp : mol.type->mcps) {
                    for (qsizetype i = 0; i < mcp.states.size(); ++i) {
                        if (mcp.states.at(i).id == m_id)
                            return mol.states[static_cast<std::size_t>(mcp.firstState + i)]
                                == ComponentStateOn;
                    }
                }
                return false;
            });
    }

    int m_type;
    QString m_id;
    QString m_name;
    MoleculeTypes m_catalog;
    SpeciesReader m_reader;
    QRegularExpression m_word;
};

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

QString ZelModelLookup::description(ZelDbSqliteModel *db, const ZelModelFound &found)
{
    const QString id = found.record.value(C::PsiimId);
    std::unique_ptr<QStandardItem> item;
    if (found.kind->listedKind != ZelModelKind::NotListed) {
        item.reset(zgs::createItem(db, QSize(), QString(), id, found.kind->listedKind, true,
            QString(), false, {}, nullptr, {}));
    } else if (found.kind->type == ZelDb::Deg) {
        item.reset(zgs::createDegradationItem(db, QSize(), id, true, QString(), nullptr));
    }
    return item
        ? item->text()
        : QLatin1String(found.kind->title) + QLatin1String(": ") + found.kind->nameOf(found.record);
}

QList<ZelModelFound> ZelModelLookup::referrers(
    const ZelDbSqliteModel &db, const ZelModelFound &found)
{
    QList<ZelModelFound> list;
    const QString id = found.record.value(C::PsiimId);
    const QSet<QString> sites = sitesOf(db, found);
    Mentions mentions(db, found);
    for (const ZelModelKind &kind : ZelModelKinds::all()) {
        QList<int> columns = kind.readColumns();
        if (kind.type == ZelDb::Cpa)
            columns.append(C::CpaStateCode);
        db.visitRecords(kind.type, columns, [&](const ZelDbRecord &record) {
            if (!kind.holds(record))
                return true;
            const QString own = record.value(C::PsiimId);
            bool uses = std::any_of(columns.begin(), columns.end(), [&](int column) {
                return isOneOf(referenceColumns, column)
                    && (record.value(column) == id || sites.contains(record.value(column)));
            });
            if (kind.type == ZelDb::Cpx && found.kind->type == ZelDb::Mol)
                uses = record.value(C::CpxMolCode).split(u';').contains(id);
            else if (kind.type == ZelDb::Cpx && !sites.isEmpty())
                uses = bondsUse(db.cpxGetArrayBstBst(own), 1, 3, sites);
            else if (kind.type == ZelDb::Mli && !sites.isEmpty())
                uses = bondsUse(db.mliGetArrayBstBst(own), 3, 5, sites);
            if (own != id && (uses || mentions.holds(kind, record)))
                list.append({&kind, record});
            return true;
        });
    }
    return list;
}
