#include "bench_SceneModel.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDomDocument>
#include <QGraphicsTextItem>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int Columns = 20;
constexpr QSizeF Cell(420.0, 160.0);
constexpr QSizeF McpSize(60.0, 40.0);
constexpr double McpDistance = 80.0;
constexpr double SiteSize = 12.0;
constexpr int LabelPointSize = 6;

[[noreturn]] void giveUp(const QString &why)
{
    std::fprintf(stderr, "bench_graphics: %s\n", qPrintable(why));
    std::exit(2);
}

BenchScene::BareItem describeItem(QGraphicsItem *item)
{
    BenchScene::BareItem bare;
    bare.pos = item->pos();
    bare.z = item->zValue();
    bare.opacity = item->opacity();
    if (auto *shape = dynamic_cast<QAbstractGraphicsShapeItem *>(item)) {
        bare.pen = shape->pen();
        bare.brush = shape->brush();
    }
    if (auto *ellipse = dynamic_cast<QGraphicsEllipseItem *>(item)) {
        bare.type = QGraphicsEllipseItem::Type;
        bare.rect = ellipse->rect();
    } else if (auto *rect = dynamic_cast<QGraphicsRectItem *>(item)) {
        bare.type = QGraphicsRectItem::Type;
        bare.rect = rect->rect();
    } else if (auto *line = dynamic_cast<QGraphicsLineItem *>(item)) {
        bare.type = QGraphicsLineItem::Type;
        bare.line = line->line();
        bare.pen = line->pen();
    } else if (auto *polygon = dynamic_cast<QGraphicsPolygonItem *>(item)) {
        bare.type = QGraphicsPolygonItem::Type;
        bare.polygon = polygon->polygon();
    }
    return bare;
}

} // namespace

BenchScene::Model &BenchScene::Model::instance()
{
    static Model *const model = new Model;
    return *model;
}

BenchScene::Model::Model()
{
    if (!m_file.create(QStringLiteral(":memory:")))
        giveUp(m_file.errorText());
    ZelDbTransaction transaction(&m_file);
    ZelScene scene;
    store(&scene, 12);
    for (int i = 0; i < Molecules; ++i)
        store(&scene, 4);
    if (!transaction.commit())
        giveUp(m_db.errorText());
}

void BenchScene::Model::store(ZelScene *scene, int components)
{
    SdcMol mol(&m_db);
    mol.setProperty(SdcProperty::ShortName, QStringLiteral("m%1").arg(m_psiimIds.size()));
    ZelEllipseItemMcp *before = nullptr;
    for (int i = 0; i < components; ++i) {
        const QRectF rect(QPointF(i * McpDistance, 0.0), McpSize);
        ZelEllipseItemMcp *const item = scene->addMcp(rect);
        auto *mcp = new SdcMcp(&m_db);
        mcp->setProperty(SdcProperty::ShortName, QStringLiteral("c%1").arg(i));
        item->setSdcMcp(mcp);
        mol.addSdcMcp(mcp);
        mcp->addTag(QStringLiteral("Y1"), QStringLiteral("#3366cc"));
        mcp->addTag(QStringLiteral("Y2"), QStringLiteral("#cc6633"));
        for (int j = 0; j <= i % 2; ++j) {
            auto *bst = new SdcBst(&m_db);
            QRectF site(QPointF(), QSizeF(SiteSize, SiteSize));
            site.moveCenter(QPointF(rect.center().x(), j == 0 ? rect.top() : rect.bottom()));
            scene->addBst(site, item)->setSdcBst(bst);
            mcp->addSdcBst(bst);
        }
        if (before)
            scene->drawBackBones(before, item);
        before = item;
    }
    mol.setMolColor(QStringLiteral("#ffe0a0"));
    mol.setProperty(SdcProperty::Color, QStringLiteral("#ffe0a0"));
    if (!mol.saveToDb())
        giveUp(m_db.errorText());
    m_psiimIds.append(mol.getPsiimId());
    scene->removeAllItems();
}

SdcMol *BenchScene::Model::load(int index, ZelScene *scene)
{
    const QString psiimId = m_psiimIds.at(1 + index % Molecules);
    QDomDocument layout;
    layout.setContent(ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), psiimId, &m_db));
    auto *const mol = new SdcMol(&m_db);
    const QPointF place(
        (index % Columns) * Cell.width(), static_cast<double>(index / Columns) * Cell.height());
    if (!mol->loadDom(psiimId, layout.documentElement().firstChildElement(), scene, place, false))
        giveUp(m_db.errorText());
    return mol;
}

SdcMol *BenchScene::Model::loadLong(ZelScene *scene)
{
    auto *const mol = new SdcMol(&m_db);
    if (!mol->loadFromDb(m_psiimIds.first(), scene))
        giveUp(m_db.errorText());
    scene->moveListSdcMcps(mol->getListSdcMcp(), QPointF(0.0, -Cell.height()));
    return mol;
}

QRectF BenchScene::Model::sceneRect(int molecules)
{
    return {-100.0, -2.0 * Cell.height(), Columns * Cell.width() + 200.0,
        (static_cast<double>(molecules / Columns) + 4.0) * Cell.height()};
}

BenchScene::Drawing::Drawing(int molecules)
{
    setSceneRect(Model::sceneRect(molecules));
    m_molecules.emplace_back(Model::instance().loadLong(this));
    for (int i = 0; i < molecules; ++i)
        m_molecules.emplace_back(Model::instance().load(i, this));
}

BenchScene::Drawing::~Drawing() = default;

QList<SdcMcp *> BenchScene::Drawing::getListSdcMcpToMove(Sdc *sdc)
{
    SdcMol *const mol = sdc ? sdc->getParentSdcMol() : nullptr;
    return mol ? mol->getListSdcMcp() : QList<SdcMcp *>();
}

std::vector<BenchScene::BareItem> BenchScene::describe(
    const QGraphicsScene *scene, QHash<const QGraphicsItem *, int> *places)
{
    std::vector<BareItem> list;
    QHash<const QGraphicsItem *, int> index;
    QList<QGraphicsItem *> pending;
    const QList<QGraphicsItem *> all = scene->items(Qt::AscendingOrder);
    for (QGraphicsItem *item : all) {
        if (!item->parentItem())
            pending.append(item);
    }
    for (qsizetype i = 0; i < pending.size(); ++i) {
        QGraphicsItem *const item = pending.at(i);
        BareItem bare = describeItem(item);
        if (!item->isVisible() || bare.type == 0)
            continue;
        bare.parent = index.value(item->parentItem(), -1);
        const auto place = static_cast<int>(list.size());
        index.insert(item, place);
        list.push_back(bare);
        if (ZelEllipseItemBst *site = ZelGItem::toZelEllipseItemBst(item)) {
            BareItem label;
            label.type = QGraphicsTextItem::Type;
            label.parent = place;
            label.text = site->getLabel();
            label.pos = QPointF(-SiteSize / 2.0, -SiteSize / 2.0);
            list.push_back(label);
        }
        pending += item->childItems();
    }
    if (places)
        *places = index;
    return list;
}

std::vector<QGraphicsItem *> BenchScene::addBareItems(
    QGraphicsScene *scene, const std::vector<BareItem> &items)
{
    std::vector<QGraphicsItem *> made;
    made.reserve(items.size());
    for (const BareItem &bare : items) {
        QGraphicsItem *const parentItem =
            bare.parent >= 0 ? made.at(static_cast<std::size_t>(bare.parent)) : nullptr;
        QGraphicsItem *item = nullptr;
        QAbstractGraphicsShapeItem *shape = nullptr;
        switch (bare.type) {
        case QGraphicsEllipseItem::Type:
            item = shape = new QGraphicsEllipseItem(bare.rect, parentItem);
            break;
        case QGraphicsRectItem::Type:
            item = shape = new QGraphicsRectItem(bare.rect, parentItem);
            break;
        case QGraphicsPolygonItem::Type:
            item = shape = new QGraphicsPolygonItem(bare.polygon, parentItem);
            break;
        case QGraphicsLineItem::Type: {
            auto *line = new QGraphicsLineItem(bare.line, parentItem);
            line->setPen(bare.pen);
            item = line;
            break;
        }
        default: {
            auto *text = new QGraphicsTextItem(bare.text, parentItem);
            QFont font;
            font.setPointSize(LabelPointSize);
            text->setFont(font);
            item = text;
            break;
        }
        }
        if (shape) {
            shape->setPen(bare.pen);
            shape->setBrush(bare.brush);
        }
        item->setPos(bare.pos);
        item->setZValue(bare.z);
        item->setOpacity(bare.opacity);
        if (!parentItem)
            scene->addItem(item);
        made.push_back(item);
    }
    return made;
}
