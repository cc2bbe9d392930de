#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QColor>
#include <QRectF>
#include <QTemporaryDir>

#include <memory>
#include <utility>
#include <vector>

class RandomDice;
class SdcCpx;
class ZelScene;

/// A model file of many species for the benchmarks, and each of them as plain data.
namespace BenchSpecies {

using Properties = std::vector<std::pair<int, QString>>;

struct SiteParts
{
    Properties properties;
    QRectF sceneRect;
    BindingStatusType status = BindingStatusUnspecified;
};

struct TagParts
{
    Properties properties;
    QString name;
    QString color;
    int state = ComponentStateOn;
};

struct McpParts
{
    Properties properties;
    QRectF sceneRect;
    int tagDirectionCode = 0;
    double tagSize = 0.0;
    double tagGap = 0.0;
    std::vector<TagParts> tags;
    std::vector<SiteParts> sites;
};

struct MolParts
{
    Properties properties;
    QColor color;
    std::vector<McpParts> mcps;
    std::vector<std::pair<int, int>> backbones; // indices of mcps
};

/// A bond by its ends: a molecule and the running number of a site in it, from 0.
struct BondParts
{
    int mol1 = 0;
    int site1 = 0;
    int mol2 = 0;
    int site2 = 0;
};

/// All that a loaded species consists of.
struct CpxParts
{
    Properties properties;
    std::vector<MolParts> mols;
    std::vector<BondParts> bonds;
    ZelDbSqliteModel *db = nullptr;
};

/// What the complex and its drawing consist of.
CpxParts describe(SdcCpx *cpx);
/// Makes it by direct calls, in the order that costs least; without a scene the items are in none.
std::unique_ptr<SdcCpx> make(const CpxParts &parts, ZelScene *scene);

/// 1,000 species of 1 to 7 molecules over 5 types, stored in a file.
class Model
{
public:
    Model();

    int count() const { return static_cast<int>(m_species.size()); }
    std::unique_ptr<SdcCpx> load(int index, ZelScene *scene) const;
    const CpxParts &parts(int index) const { return m_parts[static_cast<std::size_t>(index)]; }

private:
    MolParts storeType(int index);
    /// The alias that a random species is stored as.
    QString store(const std::vector<MolParts> &types, RandomDice *dice);
    void checkPeer(int index) const;

    QTemporaryDir m_dir;
    ZelDbSqlite m_file;
    mutable ZelDbSqliteModel m_db{&m_file};
    QStringList m_species; // psiimIds of aliases
    std::vector<CpxParts> m_parts;
};

} // namespace BenchSpecies
