#include "apps/zelmodel/ZelModelPicture.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/support/zgs.h"
#include "zelShare/ZelShare.h"

#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

namespace {

constexpr double MarginShare = 0.1; // of the drawing, around it
constexpr double ZoomedMargin = 4.0; // in the drawing's units
constexpr double SignShare = 0.8; // of the operator's width, that a sign is high
constexpr double SymbolShare = 0.6; // of the height, that the production symbol is high
constexpr double SymbolMargin = 0.1; // of the symbol's width, on either side
constexpr int InteractionCells = 3;

/// The part of the scene that fills a cell.
QRectF sourceOf(const QRectF &bounds, const QSize &cell)
{
    const double ratio = double(cell.width()) / cell.height();
    QRectF source(QPointF(), bounds.size() * (1.0 + MarginShare));
    if (source.width() > source.height() * ratio)
        source.setHeight(source.width() / ratio);
    else
        source.setWidth(source.height() * ratio);
    source.moveCenter(bounds.center());
    return source;
}

template <typename Scene>
std::unique_ptr<Scene> makeScene(ZelDbSqliteModel *db)
{
    auto scene = std::make_unique<Scene>();
    scene->setItemIndexMethod(QGraphicsScene::NoIndex);
    scene->setZelDbSqliteModel(db);
    return scene;
}

} // namespace

ZelModelPicture::ZelModelPicture(
    ZelDbSqliteModel *db, const ZelModelFound &found, const QSize &size)
    : m_db(db), m_cell(size), m_size(0, size.height())
{
    load(found);
}

ZelModelPicture::ZelModelPicture(
    ZelDbSqliteModel *db, const ZelModelFound &found, double zoom, const QSize &limits)
    : m_db(db), m_cell(limits), m_zoom(zoom), m_size(0, limits.height())
{
    load(found);
}

void ZelModelPicture::load(const ZelModelFound &found)
{
    const QString id = found.record.value(ZelDbColumn::PsiimId);
    if (found.kind->type == ZelDb::Mli) {
        auto scene = makeScene<ZelSceneMli>(m_db);
        if (scene->load(id))
            addScene(std::move(scene), InteractionCells * m_cell.width());
    } else if (found.kind->type == ZelDb::Cpa) {
        addAlias(id);
    } else if (found.kind->isReaction()) {
        addReaction(found);
    } else {
        auto scene = makeScene<ZelSceneSideWindow>(m_db);
        if (found.kind->type == ZelDb::Cpx ? scene->loadCpx(id, m_db) : scene->loadMol(id, m_db))
            addScene(std::move(scene), m_cell.width());
    }
}

ZelModelPicture::~ZelModelPicture() = default;

void ZelModelPicture::add(int width, Paint paint)
{
    m_parts.push_back({width, std::move(paint)});
    m_size.rwidth() += width;
}

void ZelModelPicture::addScene(std::unique_ptr<ZelScene> scene, int width)
{
    if (m_zoom > 0.0) {
        addZoomed(std::move(scene));
        return;
    }
    const std::shared_ptr<ZelScene> kept = std::move(scene);
    add(width, [kept, cell = m_cell](QPainter *painter, const QRect &place) {
        const QRectF bounds = kept->itemsBoundingRect();
        if (!bounds.isEmpty())
            kept->render(painter, place, sourceOf(bounds, cell), Qt::KeepAspectRatio);
    });
}

void ZelModelPicture::addZoomed(std::unique_ptr<ZelScene> scene)
{
    const std::shared_ptr<ZelScene> kept = std::move(scene);
    const QRectF bounds = kept->itemsBoundingRect();
    if (bounds.isEmpty()) {
        add(0, [](QPainter *, const QRect &) {});
        return;
    }
    const QRectF source = bounds.adjusted(-ZoomedMargin, -ZoomedMargin, ZoomedMargin, ZoomedMargin);
    const double zoom =
        std::min({m_zoom, m_cell.width() / source.width(), m_cell.height() / source.height()});
    m_cell = (source.size() * zoom).toSize().expandedTo(QSize(1, 1));
    m_size.setHeight(m_cell.height());
    add(m_cell.width(), [kept, source](QPainter *painter, const QRect &place) {
        kept->render(painter, place, source, Qt::KeepAspectRatio);
    });
}

void ZelModelPicture::addAlias(const QString &psiimId)
{
    auto scene = makeScene<ZelSceneSideWindow>(m_db);
    if (scene->loadCpa(psiimId, m_db))
        addScene(std::move(scene), m_cell.width());
}

void ZelModelPicture::addSign(int sign)
{
    const int width = zgs::getOperatorWidth(m_cell);
    add(width, [width, sign](QPainter *painter, const QRect &place) {
        QFont font;
        font.setPixelSize(std::max(1, static_cast<int>(width * SignShare)));
        painter->setFont(font);
        painter->setPen(Qt::black);
        painter->drawText(place, Qt::AlignCenter, ZelShare::getUnicodeString(sign));
    });
}

void ZelModelPicture::addEmptySet(int width)
{
    const double diameter = zgs::getOperatorWidth(m_cell) * SignShare / 2.0;
    add(width, [diameter](QPainter *painter, const QRect &place) {
        QRectF circle(0.0, 0.0, diameter, diameter);
        circle.moveCenter(QRectF(place).center());
        painter->setPen(QPen(Qt::black, std::max(1.0, diameter / 10.0)));
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(circle);
        painter->drawLine(circle.bottomLeft(), circle.topRight());
    });
}

void ZelModelPicture::addProductionSymbol()
{
    const auto renderer = std::make_shared<QSvgRenderer>(
        QStringLiteral(":/zelModelSupport/images/Production_Icon.svg"));
    const QSizeF size = renderer->defaultSize();
    const double height = m_cell.height() * SymbolShare;
    const double width = size.isEmpty() ? height : height * size.width() / size.height();
    add(static_cast<int>(width * (1.0 + 2.0 * SymbolMargin)),
        [renderer, width, height](QPainter *painter, const QRect &place) {
            QRectF target(0.0, 0.0, width, height);
            target.moveCenter(QRectF(place).center());
            renderer->render(painter, target);
        });
}

void ZelModelPicture::addReaction(const ZelModelFound &found)
{
    const QStringList reactants = ZelModelKinds::reactants(*found.kind, found.record);
    const QStringList products = ZelModelKinds::products(*found.kind, found.record);
    const auto addSide = [this](const QStringList &aliases) {
        for (qsizetype i = 0; i < aliases.size(); ++i) {
            if (i > 0)
                addSign(ZelShare::SignPlus);
            addAlias(aliases.at(i));
        }
    };
    if (reactants.isEmpty())
        addEmptySet(m_cell.width());
    addSide(reactants);
    if (found.kind->type == ZelDb::Pdn)
        addProductionSymbol();
    else
        addSign(ZelShare::SignArrow);
    if (products.isEmpty())
        addEmptySet(zgs::getOperatorWidth(m_cell));
    addSide(products);
}

void ZelModelPicture::paint(QPainter *painter) const
{
    int x = 0;
    for (const Part &part : m_parts) {
        painter->save();
        part.paint(painter, QRect(x, 0, part.width, m_cell.height()));
        painter->restore();
        x += part.width;
    }
}
