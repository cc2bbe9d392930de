#include "zelModelSupport/graphics/contact/ZelSceneContactMap.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/contact/ZelContactNames.h"
#include "zelModelSupport/graphics/contact/ZelContactRoutes.h"
#include "zelModelSupport/graphics/contact/ZelSceneContactMapDrawn.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelSpecies/MoleculeTypes.h"

#include <QDebug>
#include <QGraphicsPathItem>
#include <QGraphicsSimpleTextItem>
#include <QHash>
#include <QSet>

#include <algorithm>

using namespace zel::drawing;
using namespace zel::contacts;

namespace {

constexpr qsizetype LongestMolName = 28;
constexpr qsizetype LongestPartName = 20;
constexpr double RowGap = 40.0;
constexpr double RowAspect = 1.5;
constexpr double MapMargin = 12.0;
constexpr double MostSiteNameWork = 4.0e6; // names times lines, to look for places at sites
constexpr int MostAround = 6; // lines within a molecule that are led around it

/// Carries items that are made and removed together; shows nothing itself.
class Layer : public QGraphicsObject
{
public:
    QRectF boundingRect() const override { return {}; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override { }
};

QString nameOf(Sdc *sdc)
{
    const QString name = sdc->getProperty(SdcProperty::ShortName);
    return name.isEmpty() ? sdc->getProperty(SdcProperty::Name) : name;
}

QColor colorOn(const ZelEllipseItem *item)
{
    return textColorOn(item->brush());
}

} // namespace

ZelSceneContactMap::ZelSceneContactMap(QObject *parent) : ZelScene(parent)
{
    setReadOnly(true);
}

ZelSceneContactMap::~ZelSceneContactMap()
{
    clearMap();
}

bool ZelSceneContactMap::load(ZelDbSqliteModel *db)
{
    clearMap();
    if (!db) {
        qDebug()
            << "Error found at bool ZelSceneContactMap::load(ZelDbSqliteModel * db) no database";
        return false;
    }
    setZelDbSqliteModel(db);
    zel::species::MoleculeTypes types;
    types.read(*db);
    for (const zel::species::MoleculeTypes::Mol &mol : types.mols()) {
        for (const zel::species::MoleculeTypes::Mcp &mcp : mol.mcps) {
            if (mcp.isCopy)
                m_copyNames.insert(mcp.id, mcp.title());
        }
    }
    const QStringList ids = db->molGetListPsiimId();
    for (const QString &id : ids) {
        auto *const mol = new SdcMol(db, this);
        if (mol->loadFromDb(id, this)) {
            m_mols.append(mol);
        } else {
            delete mol;
            ++m_missingCount;
        }
    }
    loadContacts(db);
    moveToRows();
    updateMap();
    return !m_mols.isEmpty();
}

void ZelSceneContactMap::clearMap()
{
    removeAllItems();
    for (const QPointer<SdcMol> &mol : std::as_const(m_mols))
        delete mol;
    m_mols.clear();
    m_contacts.clear();
    m_copyNames.clear();
    m_missingCount = 0;
    m_names.clear();
    m_siteNames.clear();
    m_paths.clear();
}

void ZelSceneContactMap::loadContacts(ZelDbSqliteModel *db)
{
    QHash<QString, SdcBst *> sites;
    for (const QPointer<SdcMol> &mol : std::as_const(m_mols)) {
        for (SdcBst *bst : mol->getListSdcBst())
            sites.insert(bst->getPsiimId(), bst);
    }
    QSet<QPair<QString, QString>> known;
    const QStringList ids = db->mliGetListPsiimId();
    for (const QString &id : ids) {
        const QList<QStringList> rows = db->mliGetArrayBstBst(id);
        for (const QStringList &row : rows) {
            const QString &first = row.at(3);
            const QString &second = row.at(5);
            if (!sites.contains(first) || !sites.contains(second)) {
                qDebug() << "Warning at bool ZelSceneContactMap::load(ZelDbSqliteModel * db)" << id
                         << "no such binding site:" << (sites.contains(first) ? second : first);
                ++m_missingCount;
                continue;
            }
            const QPair<QString, QString> pair(std::min(first, second), std::max(first, second));
            if (known.contains(pair))
                continue;
            known.insert(pair);
            m_contacts.push_back({sites.value(first), sites.value(second), id});
        }
    }
}

void ZelSceneContactMap::moveToRows()
{
    updateNames();
    std::vector<QRectF> rects;
    double area = 0.0;
    double width = 0.0;
    const Drawn drawn(*this);
    for (int i = 0; i < m_mols.size(); ++i) {
        QRectF rect = drawn.mols[static_cast<std::size_t>(i)].rect;
        for (const QRectF &name : getNameRects(i))
            rect |= name;
        rects.push_back(rect);
        area += (rect.width() + RowGap) * (rect.height() + RowGap);
        width = std::max(width, rect.width());
    }
    width = std::max(width, std::sqrt(area * RowAspect));
    QPointF at;
    double height = 0.0;
    for (int i = 0; i < m_mols.size(); ++i) {
        const QRectF &rect = rects[static_cast<std::size_t>(i)];
        if (at.x() > 0.0 && at.x() + rect.width() > width) {
            at = QPointF(0.0, at.y() + height + RowGap);
            height = 0.0;
        }
        moveMol(i, at - rect.topLeft());
        at.rx() += rect.width() + RowGap;
        height = std::max(height, rect.height());
    }
}

void ZelSceneContactMap::updateNames()
{
    m_names.clear();
    m_siteNames.clear();
    const Drawn drawn(*this);
    for (int i = 0; i < m_mols.size(); ++i) {
        if (m_mols.at(i))
            nameMol(i, drawn);
    }
}

void ZelSceneContactMap::nameMol(int index, const Drawn &drawn)
{
    SdcMol *const mol = m_mols.at(index);
    const Drawn::Mol &place = drawn.mols[static_cast<std::size_t>(index)];
    Surroundings surroundings = place.surroundings;
    QRectF whole = place.rect;
    const QString molName = nameOf(mol);
    for (const Drawn::Mcp &entry : place.mcps) {
        const QString name = m_copyNames.value(entry.mcp->getPsiimId(), nameOf(entry.mcp));
        if (place.mcps.size() == 1 && name == molName)
            continue;
        const QString text = shownName(name, LongestPartName);
        if (text.isEmpty())
            continue;
        Surroundings inner;
        const int sites = static_cast<int>(entry.mcp->getListSdcBst().size());
        for (int i = 1; i <= sites; ++i)
            inner.circles.push_back(drawn.circles[static_cast<std::size_t>(entry.circle + i)]);
        if (!entry.stickies.isNull())
            inner.rects.push_back(entry.stickies);
        if (const std::optional<InnerName> fit = fitInside(text, entry.rect, inner)) {
            m_names.push_back({index, fit->rect, text, fit->pixels, false, true,
                colorOn(entry.mcp->getZelEllipseItemMcp())});
            continue;
        }
        const QRectF rect =
            placeBeside(nameSize(text, PartNamePixels, false), entry.rect, whole, surroundings);
        surroundings.rects.push_back(rect);
        whole |= rect;
        m_names.push_back({index, rect, text, PartNamePixels, false, false, nameColor()});
    }
    QString text = shownName(molName, LongestMolName);
    if (text.isEmpty())
        text = shownName(mol->getPsiimId(), LongestMolName);
    const QRectF rect =
        placeBeside(nameSize(text, MolNamePixels, true), place.rect, whole, surroundings);
    m_names.push_back({index, rect, text, MolNamePixels, true, false, nameColor()});
}

QList<QRectF> ZelSceneContactMap::getNameRects(int mol) const
{
    QList<QRectF> rects;
    for (auto name = firstName(mol); name != m_names.cend() && name->mol == mol; ++name) {
        if (!name->isInside)
            rects.append(name->rect);
    }
    return rects;
}

void ZelSceneContactMap::moveMol(int mol, const QPointF &delta)
{
    if (mol < 0 || mol >= m_mols.size())
        return;
    if (m_mols.at(mol))
        moveListSdcMcps(m_mols.at(mol)->getListSdcMcp(), delta);
    const auto first = static_cast<std::size_t>(firstName(mol) - m_names.cbegin());
    for (std::size_t i = first; i < m_names.size() && m_names[i].mol == mol; ++i)
        m_names[i].rect.translate(delta);
}

std::vector<ZelSceneContactMap::Name>::const_iterator ZelSceneContactMap::firstName(int mol) const
{
    return std::lower_bound(m_names.cbegin(), m_names.cend(), mol,
        [](const Name &name, int wanted) { return name.mol < wanted; });
}

void ZelSceneContactMap::updateMap()
{
    const Drawn drawn(*this);
    routeContacts(drawn);
    nameSites(drawn);
    delete m_lineLayer;
    delete m_nameLayer;
    m_lineLayer = new Layer;
    m_lineLayer->setZValue(z::Contact);
    m_nameLayer = new Layer;
    m_nameLayer->setZValue(z::NameLabel);
    for (const QPainterPath &path : m_paths) {
        auto *const item = new QGraphicsPathItem(path, m_lineLayer);
        item->setPen(contactPen());
    }
    for (const std::vector<Name> *list : {&m_names, &m_siteNames}) {
        for (const Name &name : *list)
            addName(name);
    }
    addItem(m_lineLayer);
    addItem(m_nameLayer);
    setSceneRect(getMapRect());
}

void ZelSceneContactMap::addName(const Name &name)
{
    auto *const item = new QGraphicsSimpleTextItem(name.text, m_nameLayer);
    item->setFont(nameFont(name.isBold));
    item->setBrush(name.color);
    const QRectF own = item->boundingRect();
    if (own.isEmpty())
        return;
    item->setScale(name.rect.height() / own.height());
    item->setPos(name.rect.center() - own.center() * item->scale());
}

void ZelSceneContactMap::routeContacts(const Drawn &drawn)
{
    std::vector<Circle> circles = drawn.circles;
    for (const Name &name : m_names) {
        if (name.isInside)
            continue;
        const std::vector<Circle> covering = circlesOver(name.rect);
        circles.insert(circles.end(), covering.cbegin(), covering.cend());
    }
    QHash<int, int> inner; // lines within each molecule
    struct Line
    {
        int mol; // -1 for two
        std::size_t contact;
        End from;
        End to;
        double length;
    };
    m_paths.assign(m_contacts.size(), {});
    std::vector<Line> lines;
    for (std::size_t i = 0; i < m_contacts.size(); ++i) {
        const auto first = drawn.ends.constFind(m_contacts[i].first);
        const auto second = drawn.ends.constFind(m_contacts[i].second);
        if (first == drawn.ends.cend() || second == drawn.ends.cend())
            continue;
        const QPointF way = drawn.circles[static_cast<std::size_t>(first->site)].centre
            - drawn.circles[static_cast<std::size_t>(second->site)].centre;
        const bool isInner = first->mol == second->mol && first->site != second->site;
        if (isInner)
            ++inner[first->mol];
        lines.push_back({isInner ? first->mol : -1, i, {first->site, first->component},
            {second->site, second->component}, lengthOf(way)});
    }
    // The shortest first: others go around them; loops last, to where no line leaves.
    std::stable_sort(lines.begin(), lines.end(), [](const Line &a, const Line &b) {
        const bool isLoopA = a.from.site == a.to.site;
        const bool isLoopB = b.from.site == b.to.site;
        return isLoopA != isLoopB ? isLoopB : a.length < b.length;
    });
    Routes routes(std::move(circles), lines.size());
    for (const Line &line : lines)
        m_paths[line.contact] = inner.value(line.mol) > MostAround
            ? routes.chord(line.from, line.to)
            : routes.route(line.from, line.to);
}

void ZelSceneContactMap::nameSites(const Drawn &drawn)
{
    m_siteNames.clear();
    Surroundings surroundings;
    for (const QPainterPath &path : m_paths) {
        const std::vector<QPointF> points =
            path.isEmpty() ? std::vector<QPointF>() : piecesOf(path);
        for (std::size_t i = 1; i < points.size(); ++i)
            surroundings.lines.push_back({points[i - 1], points[i]});
    }
    surroundings.circles = drawn.circles;
    for (const Name &name : m_names) {
        if (!name.isInside)
            surroundings.rects.push_back(name.rect);
    }
    const auto obstacles = static_cast<double>(surroundings.lines.size() + drawn.circles.size());
    for (std::size_t i = 0; i < drawn.mols.size(); ++i) {
        for (const Drawn::Mcp &entry : drawn.mols[i].mcps) {
            for (SdcBst *bst : entry.mcp->getListSdcBst()) {
                const QString name = nameOf(bst);
                const auto end = drawn.ends.constFind(bst);
                // A name that was made up says no more than the site's number.
                if (end == drawn.ends.cend() || name.isEmpty()
                    || name.contains(QLatin1String("_site_")) || name == nameOf(entry.mcp)
                    || obstacles * static_cast<double>(m_siteNames.size() + 1) > MostSiteNameWork)
                    continue;
                const QString text = shownName(name, LongestPartName);
                const std::optional<QRectF> rect =
                    placeAtSite(nameSize(text, SiteNamePixels, false),
                        drawn.circles[static_cast<std::size_t>(end->site)], surroundings);
                if (!rect || text.isEmpty())
                    continue;
                surroundings.rects.push_back(*rect);
                m_siteNames.push_back(
                    {static_cast<int>(i), *rect, text, SiteNamePixels, false, false, nameColor()});
            }
        }
    }
}

QRectF ZelSceneContactMap::getMapRect() const
{
    QRectF rect = getSceneRectForAllItems();
    for (const std::vector<Name> *list : {&m_names, &m_siteNames}) {
        for (const Name &name : *list)
            rect |= name.rect;
    }
    for (const QPainterPath &path : m_paths)
        rect |= path.boundingRect();
    return rect.isNull() ? rect : rect.adjusted(-MapMargin, -MapMargin, MapMargin, MapMargin);
}
