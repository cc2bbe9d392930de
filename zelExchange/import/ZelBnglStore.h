#pragma once

#include "zelExchange/import/ZelBnglInstance.h"

#include <QColor>
#include <QHash>
#include <QString>

#include <memory>

class SdcCpx;
class SdcMol;
class ZelDbSqliteModel;

/// Where the parts of a stored species or pattern are.
struct ZelBnglStored
{
    struct End
    {
        int molPos = 0;
        QString bstPsiimId;
    };

    QString cpaPsiimId;
    bool isNew = false;
    std::vector<End> ends; ///< by component of the pattern, as it is written
};

/// Writes molecule types, complexes and aliases through the data components.
class ZelBnglStore
{
public:
    ZelBnglStore(const ZelBnglModel &model, ZelBnglTypes &types, ZelDbSqliteModel *db);
    ~ZelBnglStore();

    /// Writes a type as a molecule with components, features and sites; its ids become known.
    bool storeType(ZelBnglType &type, int index);
    /// Writes the species or pattern unless it is stored already. False when a record could not be
    /// written; the database model says why.
    bool storeInstance(
        const ZelBnglPattern &pattern, ZelBnglInstance instance, ZelBnglStored *stored);

    int complexCount() const { return m_complexCount; }

private:
    using Mols = std::vector<std::unique_ptr<SdcMol>>;

    /// One for each molecule of the instance, in its order; fewer when one could not be loaded.
    Mols takeMols(const ZelBnglInstance &instance);
    /// Keeps molecules that no complex holds and that stand as they were loaded.
    void giveBack(const ZelBnglInstance &instance, Mols mols);
    void build(SdcCpx *cpx, const ZelBnglInstance &instance, const Mols &mols);
    void join(SdcCpx *cpx, const ZelBnglInstance &instance, const Mols &mols);
    bool storeAlias(SdcCpx *cpx, const QString &key2, ZelBnglStored *stored);
    bool storeComplex(SdcCpx *cpx, bool *isNew);
    /// A short name that no record of the kind ("cpx", "cpa") has.
    QString uniqueName(const char *kind, const QString &base);

    const ZelBnglModel &m_model;
    ZelBnglTypes &m_types;
    ZelDbSqliteModel *m_db;
    std::vector<Mols> m_spareMols; ///< by type
    QHash<QString, qint64> m_names; ///< the next number of a name, by kind and name
    QHash<quint32, QColor> m_stateColors; ///< by name: a state looks the same everywhere
    int m_complexCount = 0;
};
