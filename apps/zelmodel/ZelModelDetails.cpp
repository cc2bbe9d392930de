#include "apps/zelmodel/ZelModelDetails.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QJsonObject>

using zel::species::MoleculeTypes;

bool ZelModelDetails::prepare(const ZelModelKind &kind)
{
    const bool needsAliases = kind.isReaction() || kind.type == ZelDb::Seed;
    const bool needsCatalog = kind.type == ZelDb::Mol || kind.type == ZelDb::Mcp
        || kind.type == ZelDb::McpState || kind.type == ZelDb::Bst || kind.type == ZelDb::Mli
        || kind.type == ZelDb::Cpx || kind.type == ZelDb::Cpa;
    if (needsAliases && !m_hasAliases) {
        m_hasAliases = m_db.visitRecords(
            ZelDb::Cpa, {ZelDbColumn::CpaShortName}, [this](const ZelDbRecord &record) {
                m_aliasNames.insert(
                    record.value(ZelDbColumn::PsiimId), record.value(ZelDbColumn::CpaShortName));
                return true;
            });
    }
    if (needsCatalog && !m_hasCatalog) {
        m_hasCatalog = m_catalog.read(m_db);
        for (const MoleculeTypes::Mol &mol : m_catalog.mols()) {
            for (const MoleculeTypes::Mcp &mcp : mol.mcps)
                m_mcpNames.insert(mcp.id, mol.name + u'.' + mcp.shortName);
        }
    }
    return (!needsAliases || m_hasAliases) && (!needsCatalog || m_hasCatalog);
}

QString ZelModelDetails::title(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    const QString name = kind.nameOf(record);
    return name.isEmpty() ? record.value(ZelDbColumn::PsiimId) : name;
}

QString ZelModelDetails::aliasName(const QString &id) const
{
    const QString name = m_aliasNames.value(id);
    return name.isEmpty() ? id : name;
}

QString ZelModelDetails::nameOf(const QString &id) const
{
    if (const MoleculeTypes::Mol *const mol = m_catalog.mol(id))
        return mol->name;
    if (m_catalog.site(id).mol >= 0)
        return m_catalog.siteTitle(id);
    return m_aliasNames.value(id, m_mcpNames.value(id));
}

QString ZelModelDetails::molNames(const QString &molCode) const
{
    QStringList names;
    const QStringList ids = molCode.split(u';', Qt::SkipEmptyParts);
    for (const QString &id : ids) {
        const MoleculeTypes::Mol *const mol = m_catalog.mol(id);
        names.append(mol ? mol->name : id);
    }
    return names.join(QLatin1String(" + "));
}

QString ZelModelDetails::ownerName(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    const QString owner = record.value(ZelDbColumn::OwnerPsiimId);
    if (kind.type != ZelDb::Mcp)
        return m_mcpNames.value(owner, owner);
    const MoleculeTypes::Mol *const mol = m_catalog.mol(owner);
    return mol ? mol->name : owner;
}

QString ZelModelDetails::sitePairs(const QString &mliPsiimId) const
{
    QStringList pairs;
    const QList<QStringList> bonds = m_db.mliGetArrayBstBst(mliPsiimId);
    for (const QStringList &bond : bonds) {
        pairs.append(m_catalog.siteTitle(bond.value(3)) + QLatin1String(" + ")
            + m_catalog.siteTitle(bond.value(5)));
    }
    return pairs.join(QLatin1String(", "));
}

QString ZelModelDetails::equation(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    if (!kind.isReaction())
        return {};
    const auto side = [this](const QStringList &ids) {
        QStringList names;
        for (const QString &id : ids)
            names.append(aliasName(id));
        return names.isEmpty() ? QStringLiteral("0") : names.join(QLatin1String(" + "));
    };
    return side(ZelModelKinds::reactants(kind, record)) + QLatin1String(" -> ")
        + side(ZelModelKinds::products(kind, record));
}

QString ZelModelDetails::summary(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    const auto value = [&record](int column) { return record.value(column); };
    const auto rated = [&](int column) {
        return equation(kind, record) + QLatin1String("  (rate: %1)").arg(value(column));
    };
    switch (kind.type) {
    case ZelDb::Mol: {
        const MoleculeTypes::Mol *const mol = m_catalog.mol(value(ZelDbColumn::PsiimId));
        return mol ? mol->name + mol->structure() : QString();
    }
    case ZelDb::Mcp:
    case ZelDb::McpState:
    case ZelDb::Bst:
        return QLatin1String("of ") + ownerName(kind, record);
    case ZelDb::Mli:
        return sitePairs(value(ZelDbColumn::PsiimId));
    case ZelDb::Cpx:
        return molNames(value(ZelDbColumn::CpxMolCode));
    case ZelDb::Cpa:
        return QLatin1String("of ") + value(ZelDbColumn::CpaCpx);
    case ZelDb::Cai:
        return rated(ZelDbColumn::AssociationRate);
    case ZelDb::Cad:
        return rated(ZelDbColumn::DissociationRate);
    case ZelDb::Trn:
        return rated(ZelDbColumn::Rate);
    case ZelDb::Pdn:
        return equation(kind, record)
            + QLatin1String("  (m: %1, n: %2, k: %3)")
                  .arg(
                      value(ZelDbColumn::PdnM), value(ZelDbColumn::PdnN), value(ZelDbColumn::PdnK));
    case ZelDb::Deg:
        return rated(ZelDbColumn::DegradationRate);
    case ZelDb::Parameter:
        return QLatin1String("= ") + value(ZelDbColumn::ParameterValue);
    case ZelDb::Observable:
        return value(ZelDbColumn::ObservableKind) + u' ' + value(ZelDbColumn::ObservablePattern);
    case ZelDb::Seed:
        return aliasName(value(ZelDbColumn::SeedCpa)) + QLatin1String(": ")
            + value(ZelDbColumn::SeedAmount);
    case ZelDb::Compartment:
        return value(ZelDbColumn::CompartmentDimension) + QLatin1String("D, size ")
            + value(ZelDbColumn::CompartmentSize);
    case ZelDb::Untranslated:
        return QLatin1String("line %1: %2 (%3)")
            .arg(value(ZelDbColumn::SourceLine), value(ZelDbColumn::SourceText),
                value(ZelDbColumn::Reason));
    default:
        return {};
    }
}

QJsonObject ZelModelDetails::json(const ZelModelKind &kind, const ZelDbRecord &record) const
{
    QJsonObject object{{QStringLiteral("kind"), QLatin1String(kind.title)},
        {QStringLiteral("id"), record.value(ZelDbColumn::PsiimId)},
        {QStringLiteral("name"), kind.nameOf(record)}};
    if (const QString name = record.value(ZelDbColumn::Name); !name.isEmpty())
        object.insert(QStringLiteral("fullName"), name);
    if (const QString notes = record.value(ZelDbColumn::Notes); !notes.isEmpty())
        object.insert(QStringLiteral("notes"), notes);
    for (const ZelModelColumn &column : kind.columns) {
        if (const QString value = record.value(column.column); !value.isEmpty())
            object.insert(QLatin1String(column.key), value);
    }
    if (kind.isReaction())
        object.insert(QStringLiteral("equation"), equation(kind, record));
    return object;
}
