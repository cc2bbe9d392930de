#include "zelModelSupport/graphics/ZelGraphicsView.h"

#include <QGraphicsScene>
#include <QLineF>
#include <QList>
#include <QPainter>
#include <QPen>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>

namespace {

constexpr double FitShare = 0.95;
constexpr double LeastGridDistance = 4.0; // pixels; a denser grid is a grey area
constexpr QRgb GridColor = 0xffe4e4e4;

} // namespace

ZelGraphicsView::ZelGraphicsView(QWidget *parent) : QGraphicsView(parent)
{
    // Items glow beyond their rectangles: partial updates would leave traces.
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    setRenderHint(QPainter::Antialiasing);
}

ZelGraphicsView::~ZelGraphicsView() = default;

void ZelGraphicsView::setGrid(int stepX, int stepY)
{
    if (stepX == m_gridStepX && stepY == m_gridStepY)
        return;
    m_gridStepX = stepX;
    m_gridStepY = stepY;
    resetCachedContent();
    viewport()->update();
}

void ZelGraphicsView::setSceneFitToView()
{
    if (!scene())
        return;
    const QSizeF size = scene()->sceneRect().size();
    if (size.isEmpty())
        return;
    const QRect shown = viewport()->rect();
    const double factor =
        std::min(shown.width() / size.width(), shown.height() / size.height()) * FitShare;
    if (factor > 0.0)
        scale(factor, factor);
}

void ZelGraphicsView::drawBackground(QPainter *painter, const QRectF &rect)
{
    QGraphicsView::drawBackground(painter, rect);
    const double scale =
        QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    const auto isShown = [scale](
                             int step) { return step > 0 && step * scale >= LeastGridDistance; };
    QList<QLineF> lines;
    if (isShown(m_gridStepX)) {
        for (double x = std::ceil(rect.left() / m_gridStepX) * m_gridStepX; x <= rect.right();
             x += m_gridStepX)
            lines.append({x, rect.top(), x, rect.bottom()});
    }
    if (isShown(m_gridStepY)) {
        for (double y = std::ceil(rect.top() / m_gridStepY) * m_gridStepY; y <= rect.bottom();
             y += m_gridStepY)
            lines.append({rect.left(), y, rect.right(), y});
    }
    if (lines.isEmpty())
        return;
    painter->save();
    painter->setPen(QPen(QColor::fromRgba(GridColor), 0.0));
    painter->drawLines(lines);
    painter->restore();
}
