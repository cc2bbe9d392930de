// The pictures of records and reactions.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelSceneMli.h"
#include "zelModelSupport/graphics/ZelSceneSideWindow.h"
#include "zelModelSupport/support/zgs.h"
#include "zelShare/ZelShare.h"

#include <QApplication>
#include <QDebug>
#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

using Cache = QHash<QString, QPixmap>;

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

/// The part of the scene that fills a picture of that ratio of width to height.
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

/// A reaction's picture: what stands in it from left to right.
class ReactionPicture
{
public:
    ReactionPicture(
        const QString &psiimId, const QSize &complexSize, ZelDbSqliteModel *db, Cache *cache)
        : m_psiimId(psiimId), m_complexSize(complexSize),
          m_operatorWidth(zgs::getOperatorWidth(complexSize)), m_db(db),
          m_cache(cache ? cache : &m_ownCache)
    {
    }

    void addSpecies(const QString &cpaPsiimId)
    {
        const QPixmap picture = speciesPicture(cpaPsiimId);
        m_hasSpecies = m_hasSpecies || !picture.isNull();
        m_complete = m_complete && !picture.isNull();
        m_key += u';' + QString::number(picture.cacheKey());
        add(m_complexSize.width(),
            [picture](QPainter *painter, int x) { painter->drawPixmap(x, 0, picture); });
    }

    void addSign(ZelShare::UnicodeSign sign)
    {
        add(m_operatorWidth, [this, sign](QPainter *painter, int x) {
            painter->drawText(QRect(x, 0, m_operatorWidth, m_complexSize.height()),
                Qt::AlignHCenter | Qt::AlignVCenter, ZelShare::getUnicodeString(sign));
        });
    }

    /// Nothing as a sign of its own, drawn so that it needs no font that has it.
    void addEmptySet(int width)
    {
        add(width, [this, width](QPainter *painter, int x) {
            const double diameter = m_operatorWidth * SignShare * EmptySetShare;
            QRectF circle(0.0, 0.0, diameter, diameter);
            circle.moveCenter(QPointF(x + width / 2.0, m_complexSize.height() / 2.0));
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(QPen(Qt::black, std::max(1.0, diameter / 10.0)));
            painter->drawEllipse(circle);
            painter->drawLine(circle.bottomLeft(), circle.topRight());
            painter->restore();
        });
    }

    void addProductionSymbol()
    {
        const auto renderer = std::make_shared<QSvgRenderer>(
            QStringLiteral(":/zelModelSupport/images/Production_Icon.svg"));
        const QSize size = renderer->defaultSize();
        const int height = static_cast<int>(m_complexSize.height() * SymbolShare);
        const int width = size.isEmpty()
            ? height
            : static_cast<int>(double(height) * size.width() / size.height());
        add(static_cast<int>(SymbolSpace * width),
            [this, renderer, width, height](QPainter *painter, int x) {
                renderer->render(painter,
                    QRectF(x + static_cast<int>(SymbolMargin * width),
                        (m_complexSize.height() - height) / 2, width, height));
            });
    }

    /// Without hints the signs come in the painter's own font and are not smoothed.
    void setPlain() { m_plain = true; }
    /// Whether all that was asked for is there.
    bool isComplete() const { return m_complete; }

    QPixmap draw()
    {
        if (!m_hasSpecies)
            return {};
        const QSize size(m_width, m_complexSize.height());
        const QString key = m_psiimId + m_key;
        if (const QPixmap kept = m_cache->value(key); kept.size() == inDevicePixels(size))
            return kept;
        QPixmap canvas = transparentCanvas(size);
        QPainter painter(&canvas);
        if (!m_plain) {
            QFont font;
            font.setPixelSize(static_cast<int>(m_operatorWidth * SignShare));
            painter.setFont(font);
            painter.setRenderHint(QPainter::Antialiasing);
        }
        int x = 0;
        for (const Part &part : m_parts) {
            part.paint(&painter, x);
            x += part.width;
        }
        painter.end();
        if (m_complete)
            m_cache->insert(key, canvas);
        return canvas;
    }

private:
    struct Part
    {
        int width;
        std::function<void(QPainter *, int x)> paint;
    };

    void add(int width, std::function<void(QPainter *, int)> paint)
    {
        m_width += width;
        m_parts.push_back({width, std::move(paint)});
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

    QString m_psiimId;
    QSize m_complexSize;
    int m_operatorWidth;
    ZelDbSqliteModel *m_db;
    Cache m_ownCache;
    Cache *m_cache;
    std::vector<Part> m_parts;
    QString m_key;
    int m_width = 0;
    bool m_hasSpecies = false;
    bool m_complete = true;
    bool m_plain = false;
};

/// The record, empty when the picture cannot be drawn at all.
template <typename Read>
ZelDbRecord readReaction(
    const QString &psiimId, const QSize &complexSize, ZelDbSqliteModel *db, Read read)
{
    return db && isUsable(complexSize) ? (db->*read)(psiimId) : ZelDbRecord();
}

} // namespace

QPixmap zgs::getPixMapFromSdcPsiimId(
    const QString &psiimId, int kind, const QSize &size, ZelDbSqliteModel *zelDbSqliteModel)
{
    const std::unique_ptr<ZelScene> scene =
        zelDbSqliteModel && isUsable(size) ? loadScene(psiimId, kind, zelDbSqliteModel) : nullptr;
    if (!scene) {
        qDebug() << "Error found at QPixmap zgs::getPixMapFromSdcPsiimId(const QString & psiimId, "
                    "int kind, const QSize & size, ZelDbSqliteModel * zelDbSqliteModel)"
                 << psiimId;
        return {};
    }
    const QSize canvasSize(kind == PictureMli ? 3 * size.width() : size.width(), size.height());
    QPixmap canvas = transparentCanvas(canvasSize);
    const QRectF bounds = scene->itemsBoundingRect();
    if (bounds.width() <= 0.0 && bounds.height() <= 0.0)
        return canvas; // such as a molecule without components
    // A molecule interaction too is fitted into the ratio of the size itself.
    const QRectF source = pictureSource(bounds, double(size.width()) / size.height());
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    scene->render(&painter, QRectF(QPointF(0.0, 0.0), canvasSize), source, Qt::KeepAspectRatio);
    painter.end();
    return canvas;
}

QPixmap zgs::getPixMapForProduction(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    const ZelDbRecord record =
        readReaction(psiimId, complexSize, zelDbSqliteModel, &ZelDbSqliteModel::pdnGetHashInfo);
    ReactionPicture picture(psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    if (!record.isEmpty()) {
        const QString source = record.value(ZelDbColumn::PdnSourceCpa);
        picture.setPlain();
        if (source.isEmpty()) // made from nothing that the model knows
            picture.addEmptySet(complexSize.width());
        else
            picture.addSpecies(source);
        picture.addProductionSymbol();
        picture.addSpecies(record.value(ZelDbColumn::PdnProductCpa));
    }
    if (record.isEmpty() || !picture.isComplete())
        qDebug() << "Error found at QPixmap QPixmap zgs::getPixMapForProduction(const QString & "
                    "psiimId, const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel, "
                    "QHash<QString, QPixmap> * psiim2Pixmap) "
                 << "pdnPsiimId: " << psiimId;
    return picture.draw();
}

QPixmap zgs::getPixMapForTransformation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    const ZelDbRecord record =
        readReaction(psiimId, complexSize, zelDbSqliteModel, &ZelDbSqliteModel::trnGetHashInfo);
    ReactionPicture picture(psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    if (!record.isEmpty()) {
        picture.addSpecies(record.value(ZelDbColumn::TrnFromCpa));
        picture.addSign(ZelShare::SignArrow);
        picture.addSpecies(record.value(ZelDbColumn::TrnToCpa));
    }
    if (record.isEmpty() || !picture.isComplete())
        qDebug() << "Error found at QPixmap zgs::getPixMapForTransformation(const QString & "
                    "psiimId, const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)";
    return picture.draw();
}

QPixmap zgs::getPixMapForAssociation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    const ZelDbRecord record =
        readReaction(psiimId, complexSize, zelDbSqliteModel, &ZelDbSqliteModel::caiGetHashInfo);
    ReactionPicture picture(psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    if (!record.isEmpty()) {
        picture.addSpecies(record.value(ZelDbColumn::CaiCpa1));
        picture.addSign(ZelShare::SignPlus);
        picture.addSpecies(record.value(ZelDbColumn::CaiCpa2));
        picture.addSign(ZelShare::SignArrow);
        picture.addSpecies(record.value(ZelDbColumn::CaiResultCpa));
    }
    if (record.isEmpty() || !picture.isComplete())
        qDebug() << "Error found at QPixmap zgs::getPixMapForAssociation(const QString & psiimId, "
                    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)";
    return picture.draw();
}

QPixmap zgs::getPixMapForDissociation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    const ZelDbRecord record =
        readReaction(psiimId, complexSize, zelDbSqliteModel, &ZelDbSqliteModel::cadGetHashInfo);
    ReactionPicture picture(psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    if (!record.isEmpty()) {
        picture.addSpecies(record.value(ZelDbColumn::CadSourceCpa));
        picture.addSign(ZelShare::SignArrow);
        picture.addSpecies(record.value(ZelDbColumn::CadResultCpa1));
        picture.addSign(ZelShare::SignPlus);
        picture.addSpecies(record.value(ZelDbColumn::CadResultCpa2));
    }
    if (record.isEmpty() || !picture.isComplete())
        qDebug() << "Error found at QPixmap zgs::getPixMapForDissociation(const QString & psiimId, "
                    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)";
    return picture.draw();
}

QPixmap zgs::getPixMapForDegradation(const QString &psiimId, const QSize &complexSize,
    ZelDbSqliteModel *zelDbSqliteModel, QHash<QString, QPixmap> *psiim2Pixmap)
{
    const ZelDbRecord record =
        readReaction(psiimId, complexSize, zelDbSqliteModel, &ZelDbSqliteModel::degGetHashInfo);
    ReactionPicture picture(psiimId, complexSize, zelDbSqliteModel, psiim2Pixmap);
    if (!record.isEmpty()) {
        picture.addSpecies(record.value(ZelDbColumn::DegradationCpa));
        picture.addSign(ZelShare::SignArrow);
        picture.addEmptySet(getOperatorWidth(complexSize));
    }
    if (record.isEmpty() || !picture.isComplete())
        qDebug() << "Error found at QPixmap zgs::getPixMapForDegradation(const QString & psiimId, "
                    "const QSize & complexSize, ZelDbSqliteModel * zelDbSqliteModel)";
    return picture.draw();
}
