#pragma once

#include "apps/zelmodel/ZelModelKinds.h"
#include "zelSpecies/MoleculeTypes.h"

#include <QHash>
#include <QString>

class QJsonObject;
class ZelDbSqliteModel;

/// Says of records what stands in them, in terms of names instead of ids.
class ZelModelDetails
{
public:
    explicit ZelModelDetails(const ZelDbSqliteModel &db) : m_db(db) { }

    /// Reads what the kind's records refer to, once for each. False when the database refused.
    bool prepare(const ZelModelKind &kind);
    const zel::species::MoleculeTypes &catalog() const { return m_catalog; }

    /// The name; the id where there is none.
    QString title(const ZelModelKind &kind, const ZelDbRecord &record) const;
    /// A few words for a list, such as "A + B -> A.B  (rate: kf)".
    QString summary(const ZelModelKind &kind, const ZelDbRecord &record) const;
    /// "A + B -> A.B", empty for other records than reactions.
    QString equation(const ZelModelKind &kind, const ZelDbRecord &record) const;
    /// "R.l + L.r", the pairs of sites of an interaction.
    QString sitePairs(const QString &mliPsiimId) const;
    QString aliasName(const QString &id) const;
    /// The name of what that is the id of: an alias, a molecule, a component or a site. Else empty.
    QString nameOf(const QString &id) const;
    /// All columns of the kind, for a script.
    QJsonObject json(const ZelModelKind &kind, const ZelDbRecord &record) const;

private:
    QString molNames(const QString &molCode) const;
    QString ownerName(const ZelModelKind &kind, const ZelDbRecord &record) const;

    const ZelDbSqliteModel &m_db;
    zel::species::MoleculeTypes m_catalog;
    QHash<QString, QString> m_aliasNames;
    QHash<QString, QString> m_mcpNames; ///< "EGFR.SH2" by id
    bool m_hasCatalog = false;
    bool m_hasAliases = false;
};
