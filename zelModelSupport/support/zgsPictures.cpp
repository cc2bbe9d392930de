// The pictures of records and reactions.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/support/zgsSpeciesDrawing.h"
#include "zelShare/ZelShare.h"

#include <QApplication>
#include <QDebug>
#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace {

using Cache = QHash<QString, QPixmap>;
using RecordReader = ZelDbRecord (ZelDbSqliteModel::*)(const QString &) const;

constexpr QLatin1String ProductionIcon(":/zelModelSupport/images/Production_Icon.svg");

constexpr int MaxSide = 4000; // of one species; beyond, a picture takes memory without use
constexpr double MarginShare = 0.1; // of the drawing, around it
constexpr double SignShare = 0.8; // of the operator's width, that a sign is high
constexpr double SymbolShare = 0.6; // of the picture's height, that the production symbol is high
constexpr double SymbolSpace = 1.2; // of the symbol's width, that it takes
constexpr double SymbolMargin = 0.1; // likewise, before it
constexpr double EmptySetShare = 0.5; // of the sign's height, that the circle is wide

bool isUsable(const QSize &size)
{
    return size.width() > 0 && size.height() > 0 && size.width() <= MaxSide
        && size.height() <= MaxSide;
}

QSize inDevicePixels(const QSize &size)
{
    return size * qApp->devicePixelRatio();
}

QPixmap transparentCanvas(const QSize &size)
{
    QPixmap canvas(inDevicePixels(size));
    canvas.setDevicePixelRatio(qApp->devicePixelRatio());
    canvas.fill(QColor(0, 0, 0, 0));
    return canvas;
}

/// The part of a drawing that fills a picture of that ratio of width to height.
QRectF pictureSource(const QRectF &bounds, double ratio)
{
    QRectF source =
        bounds.adjusted(-bounds.width() * MarginShare / 2.0, -bounds.height() * MarginShare / 2.0,
            bounds.width() * MarginShare / 2.0, bounds.height() * MarginShare / 2.0);
    const QPointF centre = source.center();
    if (source.width() > source.height() * ratio)
        source.setHeight(source.width() / ratio);
    else
        source.setWidth(source.height() * ratio);
    source.moveCenter(centre);
    return source;
}

std::unique_ptr<ZelScene> loadScene(const QString &psiimId, int kind, ZelDbSqliteModel *db)
{
    bool loaded = false;
    std::unique_ptr<ZelScene> scene;
    if (kind == zgs::PictureMli) {
        scene = std::make_unique<ZelSceneMli>();
        scene->setItemIndexMethod(QGraphicsScene::NoIndex);
        scene->setZelDbSqliteModel(db);
        loaded = scene->loadSdc(psiimId);
    } else {
        auto sideWindow = std::make_unique<ZelSceneSideWindow>();
        sideWindow->setItemIndexMethod(QGraphicsScene::NoIndex);
        sideWindow->setZelDbSqliteModel(db);
        if (kind == zgs::PictureCpx)
            loaded = sideWindow->loadCpx(psiimId, db);
        else if (kind == zgs::PictureCpa)
            loaded = sideWindow->loadCpa(psiimId, db);
        else
            loaded = sideWindow->loadMol(psiimId, db);
        scene = std::move(sideWindow);
    }
    if (!loaded)
        scene.reset();
    return scene;
}

/// What stands in a reaction's picture.
struct Part
{
    enum What {
        None,
        Species,
        SpeciesOrNothing,
        PlusSpecies, ///< neither when the record names none
        Plus,
        Arrow,
        Nothing,
        ProductionSymbol
    };

    What what = None;
    int column = -1; ///< of the record, with the species' alias
};

/// What the picture of one kind of reaction is made of.
struct ReactionKind
{
    RecordReader read;
    std::array<Part, 5> parts; ///< from left to right
    const char *function; ///< that reports what it cannot draw
    bool namesId = false; ///< in such a report
    bool isPlain = false; ///< signs come in the painter's own font and are not smoothed
};

constexpr ReactionKind association{&ZelDbSqliteModel::caiGetHashInfo,
    {{{Part::Species, ZelDbColumn::CaiCpa1}, {Part::Plus}, {Part::Species, ZelDbColumn::CaiCpa2},
        {Part::Arrow}, {Part::Species, ZelDbColumn::CaiResultCpa}}},
    "QPixmap zgs::getPixMapForAssociation(const QString & psiimId, "
    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)"};

constexpr ReactionKind dissociation{&ZelDbSqliteModel::cadGetHashInfo,
    {{{Part::Species, ZelDbColumn::CadSourceCpa}, {Part::Arrow},
        {Part::Species, ZelDbColumn::CadResultCpa1},
        // A bond within one complex leaves one.
        {Part::PlusSpecies, ZelDbColumn::CadResultCpa2}}},
    "QPixmap zgs::getPixMapForDissociation(const QString & psiimId, "
    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)"};

constexpr ReactionKind transformation{&ZelDbSqliteModel::trnGetHashInfo,
    {{{Part::Species, ZelDbColumn::TrnFromCpa}, {Part::Arrow},
        {Part::Species, ZelDbColumn::TrnToCpa}}},
    "QPixmap zgs::getPixMapForTransformation(const QString & psiimId, "
    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)"};

constexpr ReactionKind production{&ZelDbSqliteModel::pdnGetHashInfo,
    {{{Part::SpeciesOrNothing, ZelDbColumn::PdnSourceCpa}, {Part::ProductionSymbol},
        {Part::Species, ZelDbColumn::PdnProductCpa}}},
    "QPixmap QPixmap zgs::getPixMapForProduction(const QString & "
    "psiimId, const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel, "
    "QHash<QString, QPixmap> * psiim2Pixmap) ",
    true, true};

constexpr ReactionKind degradation{&ZelDbSqliteModel::degGetHashInfo,
    {{{Part::Species, ZelDbColumn::DegradationCpa}, {Part::Arrow}, {Part::Nothing}}},
    "QPixmap zgs::getPixMapForDegradation(const QString & psiimId, "
    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)"};

/// The production symbol's size in a picture of that height.
QSize symbolSize(int pictureHeight)
{
    static const QSize drawn = QSvgRenderer(ProductionIcon).defaultSize();
    const int height = static_cast<int>(pictureHeight * SymbolShare);
    const int width = drawn.isEmpty()
        ? height
        : static_cast<int>(double(height) * drawn.width() / drawn.height());
    return {width, height};
}

/// One picture of a reaction.
class ReactionPicture
{
public:
    ReactionPicture(const QSize &complexSize, ZelDbSqliteModel *db, Cache *cache)
        : m_complexSize(complexSize), m_operatorWidth(zgs::getOperatorWidth(complexSize)), m_db(db),
          m_cache(cache ? cache : &m_ownCache)
    {
    }

    QPixmap make(const ReactionKind &kind, const QString &psiimId)
    {
        const ZelDbRecord record =
            m_db && isUsable(m_complexSize) ? (m_db->*kind.read)(psiimId) : ZelDbRecord();
        if (!record.isEmpty())
            arrange(kind, record);
        if (record.isEmpty() || !m_isComplete)
            report(kind, psiimId);
        return m_hasSpecies ? draw(kind, psiimId + m_key) : QPixmap();
    }

private:
    struct Place
    {
        Part::What what;
        QRect rect;
        QPixmap species;
    };

    static void report(const ReactionKind &kind, const QString &psiimId)
    {
        QDebug line = qDebug() << "Error found at" << kind.function;
        if (kind.namesId)
            line << "pdnPsiimId: " << psiimId;
    }

    void arrange(const ReactionKind &kind, const ZelDbRecord &record)
    {
        for (const Part &part : kind.parts) {
            const QString alias = record.value(part.column);
            switch (part.what) {
            case Part::None:
                break;
            case Part::SpeciesOrNothing:
                if (alias.isEmpty()) { // made from nothing that the model knows
                    addPlace(Part::Nothing, m_complexSize.width());
                    break;
                }
                [[fallthrough]];
            case Part::Species:
                addSpecies(alias);
                break;
            case Part::PlusSpecies:
                if (alias.isEmpty())
                    break;
                addPlace(Part::Plus, m_operatorWidth);
                addSpecies(alias);
                break;
            case Part::ProductionSymbol:
                addPlace(part.what,
                    static_cast<int>(SymbolSpace * symbolSize(m_complexSize.height()).width()));
                break;
            default:
                addPlace(part.what, m_operatorWidth);
                break;
            }
        }
    }

    void addPlace(Part::What what, int width, const QPixmap &species = {})
    {
        m_places.push_back({what, QRect(m_width, 0, width, m_complexSize.height()), species});
        m_width += width;
    }

    void addSpecies(const QString &cpaPsiimId)
    {
        const QPixmap picture = speciesPicture(cpaPsiimId);
        m_hasSpecies = m_hasSpecies || !picture.isNull();
        m_isComplete = m_isComplete && !picture.isNull();
        m_key += u';' + QString::number(picture.cacheKey());
        addPlace(Part::Species, m_complexSize.width(), picture);
    }

    QPixmap speciesPicture(const QString &cpaPsiimId)
    {
        if (cpaPsiimId.isEmpty())
            return {};
        const auto kept = m_cache->constFind(cpaPsiimId);
        if (kept != m_cache->cend() && kept->size() == inDevicePixels(m_complexSize)
            && kept->devicePixelRatio() == qApp->devicePixelRatio())
            return *kept;
        const QPixmap picture =
            zgs::getPixMapFromSdcPsiimId(cpaPsiimId, zgs::PictureCpa, m_complexSize, m_db);
        if (!picture.isNull())
            m_cache->insert(cpaPsiimId, picture);
        return picture;
    }

    QPixmap draw(const ReactionKind &kind, const QString &key)
    {
        const QSize size(m_width, m_complexSize.height());
        if (const QPixmap kept = m_cache->value(key); kept.size() == inDevicePixels(size))
            return kept;
        QPixmap canvas = transparentCanvas(size);
        QPainter painter(&canvas);
        if (!kind.isPlain) {
            QFont font;
            font.setPixelSize(static_cast<int>(m_operatorWidth * SignShare));
            painter.setFont(font);
            painter.setRenderHint(QPainter::Antialiasing);
        }
        for (const Place &place : m_places)
            paint(&painter, place);
        painter.end();
        if (m_isComplete)
            m_cache->insert(key, canvas);
        return canvas;
    }

    void paint(QPainter *painter, const Place &place) const
    {
        switch (place.what) {
        case Part::Species:
            painter->drawPixmap(place.rect.topLeft(), place.species);
            break;
        case Part::Plus:
            painter->drawText(
                place.rect, Qt::AlignCenter, ZelShare::getUnicodeString(ZelShare::SignPlus));
            break;
        case Part::Arrow:
            painter->drawText(
                place.rect, Qt::AlignCenter, ZelShare::getUnicodeString(ZelShare::SignArrow));
            break;
        case Part::Nothing:
            paintEmptySet(painter, place.rect);
            break;
        case Part::ProductionSymbol: {
            const QSize size = symbolSize(place.rect.height());
            QSvgRenderer(ProductionIcon)
                .render(painter,
                    QRectF(place.rect.left() + static_cast<int>(SymbolMargin * size.width()),
                        (place.rect.height() - size.height()) / 2, size.width(), size.height()));
            break;
        }
        default:
            break;
        }
    }

    // Nothing as a sign of its own, drawn so that it needs no font that has it.
    void paintEmptySet(QPainter *painter, const QRect &rect) const
    {
        const double diameter = m_operatorWidth * SignShare * EmptySetShare;
        QRectF circle(0.0, 0.0, diameter, diameter);
        circle.moveCenter(QPointF(rect.left() + rect.width() / 2.0, rect.height() / 2.0));
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(Qt::black, std::max(1.0, diameter / 10.0)));
        painter->drawEllipse(circle);
        painter->drawLine(circle.bottomLeft(), circle.topRight());
        painter->restore();
    }

    QSize m_complexSize;
    int m_operatorWidth;
    ZelDbSqliteModel *m_db;
    Cache m_ownCache;
    Cache *m_cache;
    std::vector<Place> m_places;
    QString m_key; // of the species
    int m_width = 0;
    bool m_hasSpecies = false;
    bool m_isComplete = true;
};

/// What a record is drawn from: shapes where these do, else a scene.
struct Drawing
{
    std::optional<zgs::SpeciesDrawing> shapes;
    std::unique_ptr<ZelScene> scene;

    QRectF bounds() const { return shapes ? shapes->bounds() : scene->itemsBoundingRect(); }
};

Drawing load(const QString &psiimId, int kind, ZelDbSqliteModel *db)
{
    Drawing drawing;
    if (kind == zgs::PictureCpa)
        drawing.shapes = zgs::SpeciesDrawing::ofAlias(psiimId, db);
    if (!drawing.shapes)
        drawing.scene = loadScene(psiimId, kind, db);
    return drawing;
}

} // namespace

QPixmap zgs::getPixMapFromSdcPsiimId(
    const QString &psiimId, int kind, const QSize &size, ZelDbSqliteModel *zelDbSqliteModel)
{
    const Drawing drawing =
        zelDbSqliteModel && isUsable(size) ? load(psiimId, kind, zelDbSqliteModel) : Drawing();
    if (!drawing.shapes && !drawing.scene) {
        qDebug() << "Error found at QPixmap zgs::getPixMapFromSdcPsiimId(const QString & psiimId, "
                    "int kind, const QSize & size, ZelDbSqliteModel * zelDbSqliteModel)"
                 << psiimId;
        return {};
    }
    const QSize canvasSize(kind == PictureMli ? 3 * size.width() : size.width(), size.height());
    QPixmap canvas = transparentCanvas(canvasSize);
    const QRectF bounds = drawing.bounds();
    if (bounds.width() <= 0.0 && bounds.height() <= 0.0)
        return canvas; // such as a molecule without components
    // A molecule interaction too is fitted into the ratio of the size itself.
    const QRectF source = pictureSource(bounds, double(size.width()) / size.height());
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    if (drawing.scene) {
        drawing.scene->render(
            &painter, QRectF(QPointF(0.0, 0.0), canvasSize), source, Qt::KeepAspectRatio);
    } else {
        const double scale =
            std::min(size.width() / source.width(), size.height() / source.height());
        // As a scene does it: without a clip, rims come out a shade different.
        painter.setClipRect(QRect(QPoint(), canvasSize));
        painter.scale(scale, scale);
        painter.translate(-source.topLeft());
        drawing.shapes->paint(&painter);
    }
    painter.end();
    return canvas;
}

QPixmap zgs::getPixMapForProduction(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    return ReactionPicture(complexSize, zelDbSqliteModel, psiim2Pixmap).make(production, psiimId);
}

QPixmap zgs::getPixMapForTransformation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    return ReactionPicture(complexSize, zelDbSqliteModel, psiim2Pixmap)
        .make(transformation, psiimId);
}

QPixmap zgs::getPixMapForAssociation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    return ReactionPicture(complexSize, zelDbSqliteModel, psiim2Pixmap).make(association, psiimId);
}

QPixmap zgs::getPixMapForDissociation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    return ReactionPicture(complexSize, zelDbSqliteModel, psiim2Pixmap).make(dissociation, psiimId);
}

QPixmap zgs::getPixMapForDegradation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    return ReactionPicture(complexSize, zelDbSqliteModel, psiim2Pixmap).make(degradation, psiimId);
}
