#include "bench_ReactionModel.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int MoleculeTypes = 12;
constexpr int MostMolecules = 6;
constexpr QSizeF McpSize(60.0, 40.0);
constexpr double McpDistance = 66.0;
constexpr double MolGap = 24.0;
constexpr double SiteSize = 12.0;
constexpr double UnitsPerInch = 72.0;
constexpr double PixelsPerInch = 96.0;

[[noreturn]] void giveUp(const QString &why)
{
    std::fprintf(stderr, "bench_pictures: %s\n", qPrintable(why));
    std::exit(2);
}

/// The drawing of a scene in the words of the graph tool, whose y axis points up.
class GraphWriter
{
public:
    GraphWriter(int width, int height)
    {
        m_text = "graph g {\nsize=\"" + number(width / PixelsPerInch) + ','
            + number(height / PixelsPerInch) + "!\" dpi=96 bgcolor=transparent pad=0\n"
            + "node [label=\"\" style=filled fixedsize=true fontname=\"DejaVu Sans\" fontsize=6]\n";
    }

    QByteArray write(const QGraphicsScene &scene)
    {
        const QList<QGraphicsItem *> items = scene.items(Qt::AscendingOrder);
        QList<QPair<QGraphicsItem *, QGraphicsItem *>> edges;
        for (QGraphicsItem *item : items) {
            if (!item->isVisible())
                continue;
            if (ZelEllipseItemBst *site = ZelGItem::toZelEllipseItemBst(item))
                node(item, site->mapRectToScene(site->rect()), "ellipse", site->brush().color(),
                    site->getLabel());
            else if (ZelEllipseItemMcp *mcp = ZelGItem::toZelEllipseItemMcp(item))
                node(item, mcp->mapRectToScene(mcp->rect()), "ellipse", mcp->brush().color());
            else if (ZelRectItemMcpSticky *sticky = ZelGItem::toZelRectItemMcpSticky(item))
                node(item, sticky->mapRectToScene(sticky->rect()), "box", sticky->getColor());
            else if (auto *line = dynamic_cast<ZelLineItemMcpMcp *>(item))
                edge(line->mapToScene(line->line().p1()), line->mapToScene(line->line().p2()),
                    "style=dotted");
            else if (auto *bond = dynamic_cast<ZelLineItemBstBst *>(item))
                edge(bond->mapToScene(bond->line().p1()), bond->mapToScene(bond->line().p2()),
                    "color=blue");
        }
        return m_text + "}\n";
    }

private:
    static QByteArray number(double value) { return QByteArray::number(value, 'f', 3); }

    static QByteArray position(const QPointF &p)
    {
        return "pos=\"" + number(p.x()) + ',' + number(-p.y()) + "!\"";
    }

    void node(QGraphicsItem *, const QRectF &rect, const char *shape, const QColor &color,
        const QString &label = {})
    {
        m_text += 'n' + QByteArray::number(m_nodes++) + " [" + position(rect.center())
            + " width=" + number(rect.width() / UnitsPerInch) + " height="
            + number(rect.height() / UnitsPerInch) + " shape=" + shape + " fillcolor=\""
            + color.name().toLatin1() + "\" label=\"" + label.toLatin1() + "\"]\n";
    }

    // A line has ends of its own: they need no clipping at other nodes.
    void edge(const QPointF &from, const QPointF &to, const char *style)
    {
        const QByteArray a = 'n' + QByteArray::number(m_nodes++);
        const QByteArray b = 'n' + QByteArray::number(m_nodes++);
        m_text += a + " [" + position(from) + " shape=point width=0 style=invis]\n" + b + " ["
            + position(to) + " shape=point width=0 style=invis]\n" + a + " -- " + b + " [" + style
            + "]\n";
    }

    QByteArray m_text;
    int m_nodes = 0;
};

} // namespace

ReactionModel &ReactionModel::instance()
{
    static ReactionModel *const model = new ReactionModel;
    return *model;
}

ReactionModel::ReactionModel()
{
    if (!m_file.create(QStringLiteral(":memory:")))
        giveUp(m_file.errorText());
    ZelDbTransaction transaction(&m_file);
    for (int type = 0; type < MoleculeTypes; ++type)
        storeMolecule(type);
    // As models grow: what associates are molecules and the results of other associations.
    QStringList pool;
    for (int type = 0; type < MoleculeTypes; ++type)
        pool.append(QString(QChar(u'A' + type)));
    while (m_associations.size() < Associations) {
        const QString first = pool.at(m_random.bounded(int(pool.size())));
        const QString second = pool.at(m_random.bounded(int(pool.size())));
        const QString result = first + second;
        if (result.size() > MostMolecules || pool.contains(result))
            continue;
        pool.append(result);
        const QString id = QStringLiteral("cai%1").arg(m_associations.size() + 1);
        if (!m_db.caiInsert({{ZelDbColumn::PsiimId, id}, {ZelDbColumn::ShortName, result},
                {ZelDbColumn::CaiCpa1, alias(first)}, {ZelDbColumn::CaiCpa2, alias(second)},
                {ZelDbColumn::CaiResultCpa, alias(result)}}))
            giveUp(m_db.errorText());
        m_associations.append(id);
    }
    if (!transaction.commit())
        giveUp(m_db.errorText());
}

void ReactionModel::storeMolecule(int type)
{
    ZelScene scene;
    SdcMol mol(&m_db);
    mol.setProperty(SdcProperty::ShortName, QString(QChar(u'A' + type)));
    const int components = 2 + type % 2;
    ZelEllipseItemMcp *before = nullptr;
    for (int i = 0; i < components; ++i) {
        const QRectF rect(QPointF(i * McpDistance, 0.0), McpSize);
        ZelEllipseItemMcp *const item = scene.addMcp(rect);
        auto *mcp = new SdcMcp(&m_db);
        mcp->setProperty(SdcProperty::ShortName, QStringLiteral("c%1").arg(i));
        item->setSdcMcp(mcp);
        mol.addSdcMcp(mcp);
        mcp->addTag(QStringLiteral("Y%1").arg(i), QStringLiteral("#cc6633"));
        QRectF site(QPointF(), QSizeF(SiteSize, SiteSize));
        if (i == 0) {
            site.moveCenter({rect.left(), rect.center().y()});
            auto *bst = new SdcBst(&m_db);
            scene.addBst(site, item)->setSdcBst(bst);
            mcp->addSdcBst(bst);
        }
        if (i == components - 1) {
            site.moveCenter({rect.right(), rect.center().y()});
            auto *bst = new SdcBst(&m_db);
            scene.addBst(site, item)->setSdcBst(bst);
            mcp->addSdcBst(bst);
        }
        if (before)
            scene.drawBackBones(before, item);
        before = item;
    }
    const QString color = QColor::fromHsl(type * 360 / MoleculeTypes, 160, 210).name();
    mol.setMolColor(color);
    mol.setProperty(SdcProperty::Color, color);
    if (!mol.saveToDb())
        giveUp(m_db.errorText());
    m_molecules.append(mol.getPsiimId());
}

QString ReactionModel::alias(const QString &types)
{
    QString &id = m_aliases[types];
    if (!id.isEmpty())
        return id;
    ZelScene scene;
    SdcCpx cpx(&m_db);
    double x = 0.0;
    SdcBst *before = nullptr;
    for (const QChar type : types) {
        auto *const mol = new SdcMol(&m_db);
        mol->loadFromDb(m_molecules.at(type.unicode() - u'A'), &scene);
        scene.moveListSdcMcps(mol->getListSdcMcp(), QPointF(x, (x > 0.0) ? 12.0 : 0.0));
        x = mol->getSdcSceneRectF().right() + MolGap;
        cpx.addSdcChild(mol, true);
        const QList<SdcBst *> sites = mol->getListSdcBst();
        if (before)
            cpx.addSdcBstBstCpx(scene.addSdcBstBstCpx(before, sites.first()));
        before = sites.last();
    }
    if (!cpx.saveToDbCpx() || !cpx.saveToDbCpa())
        giveUp(types + u' ' + m_db.errorText());
    id = cpx.getProperty(SdcProperty::CpaPsiimId);
    return id;
}

QByteArray ReactionModel::graphs(int width, int height)
{
    QByteArray text;
    QHash<QString, QByteArray> known;
    for (const QString &id : std::as_const(m_associations)) {
        const ZelDbRecord record = m_db.caiGetHashInfo(id);
        for (const int column :
            {ZelDbColumn::CaiCpa1, ZelDbColumn::CaiCpa2, ZelDbColumn::CaiResultCpa}) {
            QByteArray &graph = known[record.value(column)];
            if (graph.isEmpty()) {
                ZelSceneSideWindow scene;
                scene.loadCpa(record.value(column), &m_db);
                graph = GraphWriter(width, height).write(scene);
            }
            text += graph;
        }
    }
    return text;
}
