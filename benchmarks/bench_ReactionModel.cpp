#include "bench_ReactionModel.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {

constexpr int MoleculeTypes = 12;
constexpr int MostMolecules = 6;
constexpr QSizeF McpSize(60.0, 40.0);
constexpr double McpDistance = 66.0;
constexpr double MolGap = 24.0;
constexpr double SiteSize = 12.0;
constexpr double UnitsPerInch = 72.0;
constexpr double PixelsPerInch = 96.0;
constexpr double Margin = 1.1; // of the drawing, that its picture shows
constexpr double LabelShare = 0.6; // of a site's height, that its label's font has

[[noreturn]] void giveUp(const QString &why)
{
    std::fprintf(stderr, "bench_pictures: %s\n", qPrintable(why));
    std::exit(2);
}

/// The drawing of a scene in the words of the graph tool, whose y axis points up.
class GraphWriter
{
public:
    explicit GraphWriter(const QSize &size) : m_size(size) { }

    QByteArray write(const QGraphicsScene &scene)
    {
        // The part of the scene that the picture shows, as its only page.
        const QRectF bounds = scene.itemsBoundingRect();
        m_scale = std::min(m_size.width() / (bounds.width() * Margin),
            m_size.height() / (bounds.height() * Margin));
        const double points = UnitsPerInch / PixelsPerInch; // of a pixel
        m_text = "graph g {\nviewport=\"" + number(m_size.width() * points) + ','
            + number(m_size.height() * points) + ',' + number(m_scale * points)
            + "\" dpi=96 bgcolor=transparent pad=0\n"
            + "node [label=\"\" style=filled fixedsize=true fontname=\"DejaVu Sans\"]\n";
        const QList<QGraphicsItem *> items = scene.items(Qt::AscendingOrder);
        for (QGraphicsItem *item : items) {
            if (ZelEllipseItemBst *site = ZelGItem::toZelEllipseItemBst(item))
                node(item, site->rect(), "ellipse", site->brush().color(), shownLabel(site));
            else if (ZelEllipseItemMcp *mcp = ZelGItem::toZelEllipseItemMcp(item))
                node(item, mcp->rect(), "ellipse", mcp->brush().color());
            else if (ZelRectItemMcpSticky *sticky = ZelGItem::toZelRectItemMcpSticky(item))
                node(item, sticky->rect(), "box", sticky->getColor());
        }
        for (QGraphicsItem *item : items) {
            if (auto *line = dynamic_cast<ZelLineItemMcpMcp *>(item)) {
                ZelEllipseItemMcp *const mcp = ZelGItem::toZelEllipseItemMcp(line->parentItem());
                edge(mcp, line->getPartner(mcp), "dotted", Qt::black);
            } else if (auto *bond = dynamic_cast<ZelLineItemBstBst *>(item)) {
                edge(siteAt(scene, bond->line().p1()), siteAt(scene, bond->line().p2()), "solid",
                    bond->pen().color());
            }
        }
        return m_text + "}\n";
    }

private:
    static QByteArray number(double value) { return QByteArray::number(value, 'f', 3); }

    // Neither side draws labels that nobody can read.
    QString shownLabel(const ZelEllipseItemBst *site) const
    {
        const bool isShown =
            site->rect().height() * m_scale >= zel::drawing::SiteLabelLeastDeviceHeight;
        return isShown ? site->getLabel() : QString();
    }

    // A drawing in the side window has lost the components that its bonds join.
    static const QGraphicsItem *siteAt(const QGraphicsScene &scene, const QPointF &end)
    {
        const QRectF around(end - QPointF(SiteSize, SiteSize), QSizeF(2 * SiteSize, 2 * SiteSize));
        const QList<QGraphicsItem *> items = scene.items(around);
        const auto distance = [&end](QGraphicsItem *item) {
            return ZelGItem::toZelEllipseItemBst(item)
                ? QLineF(item->sceneBoundingRect().center(), end).length()
                : std::numeric_limits<double>::infinity();
        };
        return *std::min_element(items.cbegin(), items.cend(),
            [&](QGraphicsItem *a, QGraphicsItem *b) { return distance(a) < distance(b); });
    }

    void node(const QGraphicsItem *item, const QRectF &rect, const char *shape, const QColor &color,
        const QString &label = {})
    {
        const QPointF centre = item->mapToScene(rect.center());
        m_text += name(item) + " [pos=\"" + number(centre.x()) + ',' + number(-centre.y())
            + "!\" width=" + number(rect.width() / UnitsPerInch)
            + " height=" + number(rect.height() / UnitsPerInch) + " shape=" + shape
            + " fillcolor=\"" + color.name().toLatin1() + '"';
        if (!label.isEmpty())
            m_text += " label=\"" + label.toLatin1()
                + "\" fontsize=" + number(rect.height() * LabelShare);
        m_text += "]\n";
    }

    void edge(
        const QGraphicsItem *from, const QGraphicsItem *to, const char *style, const QColor &color)
    {
        m_text += name(from) + " -- " + name(to) + " [style=" + style + " color=\""
            + color.name().toLatin1() + "\"]\n";
    }

    QByteArray name(const QGraphicsItem *item)
    {
        const auto known = m_numbers.constFind(item);
        return 'n'
            + QByteArray::number(
                known != m_numbers.cend() ? *known : *m_numbers.insert(item, m_numbers.size()));
    }

    QSize m_size;
    double m_scale = 1.0; // pixels for a unit
    QByteArray m_text;
    QHash<const QGraphicsItem *, qsizetype> m_numbers;
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

QByteArray ReactionModel::graphs(const QSize &size)
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
                graph = GraphWriter(size).write(scene);
            }
            text += graph;
        }
    }
    return text;
}
