#include "zelModelSupport/graphics/scene/ZelSceneCxiResult.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelSceneCpx.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/scene/ZelSceneState.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

using namespace zel::drawing;

namespace {

QFont titleFont()
{
    QFont font;
    font.setPointSizeF(ResultTitlePointSize);
    return font;
}

} // namespace

ZelSceneCxiResult::ZelSceneCxiResult(ZelDbSqliteModel *zelDbSqliteModel)
    : m_scene(std::make_unique<ZelSceneCpx>()), m_cpx(std::make_unique<SdcCpx>(zelDbSqliteModel))
{
    m_scene->setZelDbSqliteModel(zelDbSqliteModel);
    m_scene->setSdc(m_cpx.get());
    setAcceptedMouseButtons(Qt::NoButton);
}

ZelSceneCxiResult::~ZelSceneCxiResult() = default;

bool ZelSceneCxiResult::show(const ZelSceneState &state)
{
    prepareGeometryChange();
    const bool shown = state.restoreJoined(m_scene.get());
    m_source = m_scene->getSceneRectForAllItems();
    m_frame = m_source.adjusted(-ResultMargin, -ResultMargin, ResultMargin, ResultMargin);
    m_frame.moveCenter(QPointF());
    update();
    return shown;
}

void ZelSceneCxiResult::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    update();
}

QRectF ZelSceneCxiResult::boundingRect() const
{
    const double title = QFontMetricsF(titleFont()).height();
    return m_frame.adjusted(
        -ResultPenWidth, -title - ResultPenWidth, ResultPenWidth, ResultPenWidth);
}

QPainterPath ZelSceneCxiResult::shape() const
{
    return {};
}

void ZelSceneCxiResult::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->setPen(QPen(Qt::gray, ResultPenWidth, Qt::DashLine));
    painter->setBrush(resultGround());
    painter->drawRoundedRect(m_frame, ResultMargin / 2.0, ResultMargin / 2.0);
    const QFont font = titleFont();
    const double height = QFontMetricsF(font).height();
    painter->setFont(font);
    painter->setPen(Qt::darkGray);
    const QRectF line(m_frame.left(), m_frame.top() - height, m_frame.width(), height);
    painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetricsF(font).elidedText(m_title, Qt::ElideRight, line.width()));
    const QRectF inner = m_frame.adjusted(ResultMargin, ResultMargin, -ResultMargin, -ResultMargin);
    painter->save();
    // With a rim for the halves of sites and marks that reach out.
    const double rim = ResultMargin / 2.0;
    m_scene->render(
        painter, inner.adjusted(-rim, -rim, rim, rim), m_source.adjusted(-rim, -rim, rim, rim));
    painter->restore();
}
