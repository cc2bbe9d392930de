#pragma once

#include "zelExchange/ZelExportReport.h"
#include "zelExchange/export/ZelBnglRuleGraph.h"
#include "zelSpecies/MoleculeTypes.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

class ZelDbSqliteModel;

/// The molecules of a model database as molecule types of the language.
///
/// A component with at most one site and either no features or features that exclude each other is
/// one component there. Otherwise each of its sites and features becomes one of its own, under
/// joined names; a feature that excludes no other has the states "off" and "on". Components
/// that are copies of each other share one name.
class ZelBnglMolecules
{
public:
    /// Where a feature or site of a molecule component went.
    struct Feature
    {
        int component = 0;
        int state = 0; ///< that says On
        int offState = -1; ///< that says Off; none when it excludes others
    };

    struct Component
    {
        QString psiimId;
        QString name;
        std::vector<Feature> features;
        int part = -1; ///< of the type, when it is one component there
    };

    /// A molecule of the database; its place is that of its type.
    struct Molecule
    {
        std::vector<Component> components; ///< in chain order
        QHash<QString, int> sites; ///< psiimId of a site to the type's component
    };

    /// A name that the language allows, as near to the text as can be.
    static QByteArray allowedName(const QString &text, bool mayBeginWithDigit);

    ZelBnglMolecules(ZelDbSqliteModel *db, ZelExportReport *report);

    const ZelBnglGraphTypes &types() const { return m_types; }
    const Molecule &molecule(int type) const { return m_molecules[static_cast<size_t>(type)]; }
    /// -1 when the id is no molecule's.
    int find(const QString &molPsiimId) const { return m_index.value(molPsiimId, -1); }

private:
    struct Source;

    void read(const QString &molPsiimId);
    Source sourceOf(const zel::species::MoleculeTypes::Mcp &mcp, int index) const;
    void addComponent(const Source &source);
    void addParts(const Source &source, const QString &item);
    int addPart(const QString &name, const std::vector<QByteArray> &states, bool canBind,
        const QString &item);
    int addCopy(int component);
    /// The allowed form of a name that none of the taken ones is; changes are reported.
    QByteArray uniqueName(const QString &text, bool mayBeginWithDigit, QSet<QByteArray> *taken,
        const QString &item) const;
    std::vector<QByteArray> stateNames(const QStringList &names, const QString &item) const;

    ZelDbSqliteModel *m_db;
    ZelExportReport &m_report;
    zel::species::MoleculeTypes m_moleculeTypes; ///< as the database has them
    ZelBnglGraphTypes m_types;
    std::vector<Molecule> m_molecules;
    QHash<QString, int> m_index;
    QSet<QByteArray> m_names;
    QSet<QByteArray> m_partNames; ///< of the molecule that is read
    QString m_item; ///< the same for the report
};
