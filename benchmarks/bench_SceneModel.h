#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelScene.h"

#include <QBrush>
#include <QFont>
#include <QGraphicsItem>
#include <QHash>
#include <QLineF>
#include <QPen>
#include <QStringList>

#include <memory>
#include <vector>

/// A large drawing for the benchmarks of scenes, and the same of bare toolkit items.
namespace BenchScene {

/// How many molecules of 4 components, 6 sites and 8 features the model holds.
inline constexpr int Molecules = 200;

/// The model in memory from which drawings are loaded.
class Model
{
public:
    static Model &instance();

    /// Loads a stored molecule with its place on the grid of a drawing.
    SdcMol *load(int index, ZelScene *scene);
    /// A molecule of 12 components, above the grid.
    SdcMol *loadLong(ZelScene *scene);
    static QRectF sceneRect(int molecules);

private:
    Model();
    void store(ZelScene *scene, int components);

    ZelDbSqlite m_file;
    ZelDbSqliteModel m_db{&m_file};
    QStringList m_psiimIds;
};

/// A scene in which a drag moves a whole molecule, or what is attached to a component.
class Drawing : public ZelScene
{
public:
    explicit Drawing(int molecules);
    ~Drawing() override;

    bool toMove() const override { return !attached; }
    bool toChangeLayout() const override { return attached; }
    QList<SdcMcp *> getListSdcMcpToMove(Sdc *sdc) override;
    SdcMol *longMolecule() const { return m_molecules.front().get(); }

    bool attached = false;

private:
    std::vector<std::unique_ptr<SdcMol>> m_molecules;
};

/// What is needed to make one bare item.
struct BareItem
{
    int type = 0; ///< the toolkit's type of item
    int parent = -1;
    QPointF pos;
    QRectF rect;
    QLineF line;
    QPolygonF polygon;
    QPen pen;
    QBrush brush;
    QString text;
    double z = 0.0;
    double opacity = 1.0;
};

/// The visible items of a drawing, parents first; places gives the index of each.
std::vector<BareItem> describe(
    const QGraphicsScene *scene, QHash<const QGraphicsItem *, int> *places = nullptr);
std::vector<QGraphicsItem *> addBareItems(
    QGraphicsScene *scene, const std::vector<BareItem> &items);

} // namespace BenchScene
