#include "apps/zelmodel/ZelModelPicture.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/support/zgs.h"
#include "zelShare/ZelShare.h"

#include <QBuffer>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPixmap>
#include <QSvgGenerator>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

namespace {

constexpr double MarginShare = 0.1; // of the drawing, around it
constexpr double SignShare = 0.8; // of the operator's width, that a sign is high
constexpr double SymbolShare = 0.6; // of the height, that the production symbol is high
constexpr double SymbolMargin = 0.1; // of the symbol's width, on either side
constexpr int InteractionCells = 3;
constexpr int PdfResolution = 1200;

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

/// The toolkit would write the title as it is, and text with characters that XML does not have.
QByteArray withTitle(QByteArray svg, const QString &title)
{
    svg.insert(svg.indexOf("<defs>"),
        (QLatin1String("<title>") + title.toHtmlEscaped() + QLatin1String("</title>\n")).toUtf8());
    svg.removeIf([](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 && c != '\n' && c != '\t';
    });
    return svg;
}

/// The writer's own moment in place of which one that never changes stands, of the same length.
QByteArray withoutDate(const QByteArray &pdf)
{
    QByteArray result = pdf;
    const qsizetype begin = result.lastIndexOf("/CreationDate (D:");
    if (begin >= 0) {
        for (qsizetype i = begin + 17; i < result.size() && result.at(i) != ')'; ++i) {
            if (result.at(i) >= '0' && result.at(i) <= '9')
                result[i] = '0';
        }
    }
    return result;
}

} // namespace

ZelModelPicture::ZelModelPicture(
    ZelDbSqliteModel *db, const ZelModelFound &found, const QSize &size)
    : m_db(db), m_cell(size), m_size(0, size.height())
{
    const QString id = found.record.value(ZelDbColumn::PsiimId);
    if (found.kind->type == ZelDb::Mli) {
        auto scene = makeScene<ZelSceneMli>(db);
        if (scene->load(id))
            addScene(std::move(scene), InteractionCells * size.width());
    } else if (found.kind->type == ZelDb::Cpa) {
        addAlias(id);
    } else if (found.kind->isReaction()) {
        addReaction(found);
    } else {
        auto scene = makeScene<ZelSceneSideWindow>(db);
        if (found.kind->type == ZelDb::Cpx ? scene->loadCpx(id, db) : scene->loadMol(id, db))
            addScene(std::move(scene), size.width());
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
    const std::shared_ptr<ZelScene> kept = std::move(scene);
    add(width, [kept, cell = m_cell](QPainter *painter, const QRect &place) {
        const QRectF bounds = kept->itemsBoundingRect();
        if (!bounds.isEmpty())
            kept->render(painter, place, sourceOf(bounds, cell), Qt::KeepAspectRatio);
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

void ZelModelPicture::paintOn(QPainter *painter, const QColor &background) const
{
    painter->setRenderHint(QPainter::Antialiasing);
    if (background.isValid())
        painter->fillRect(QRect(QPoint(), m_size), background);
    paint(painter);
}

QByteArray ZelModelPicture::toPng(double scale, const QColor &background) const
{
    QImage image((QSizeF(m_size) * scale).toSize().expandedTo(QSize(1, 1)),
        QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    paintOn(&painter, background);
    painter.end();
    return zgs::getPngFromPixMap(QPixmap::fromImage(std::move(image)));
}

QByteArray ZelModelPicture::toSvg(
    double scale, const QColor &background, const QString &title) const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize((QSizeF(m_size) * scale).toSize().expandedTo(QSize(1, 1)));
    generator.setViewBox(QRect(QPoint(), m_size));
    QPainter painter(&generator);
    paintOn(&painter, background);
    painter.end();
    return withTitle(buffer.data(), title);
}

QByteArray ZelModelPicture::toPdf(
    double scale, const QColor &background, const QString &title) const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("zelmodel"));
        writer.setResolution(PdfResolution);
        writer.setPageSize(
            QPageSize(QSizeF(m_size) * scale, QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF(0.0, 0.0, 0.0, 0.0));
        QPainter painter(&writer);
        painter.setWindow(QRect(QPoint(), m_size));
        paintOn(&painter, background);
    }
    return withoutDate(buffer.data());
}
