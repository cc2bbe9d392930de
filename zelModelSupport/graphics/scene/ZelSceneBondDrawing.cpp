#include "zelModelSupport/graphics/scene/ZelSceneBondDrawing.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"

#include <QGraphicsScene>
#include <QPainter>
#include <QPen>

#include <cmath>
#include <utility>

using namespace zel::drawing;

namespace {

QRectF sceneRectOf(const ZelEllipseItemBst *item)
{
    return item->mapRectToScene(item->rect());
}

QRectF grown(const QRectF &rect, double by)
{
    return rect.adjusted(-by, -by, by, by);
}

SdcBst *siteOf(ZelEllipseItemBst *item)
{
    return item ? item->getSdcBst() : nullptr;
}

} // namespace

ZelSceneBondDrawing::ZelSceneBondDrawing(QGraphicsScene *scene, Refusal refusal)
    : m_scene(scene), m_refuse(std::move(refusal))
{
}

bool ZelSceneBondDrawing::isActive() const
{
    return m_started && getSource();
}

SdcBst *ZelSceneBondDrawing::getSource() const
{
    return siteOf(m_source);
}

SdcBst *ZelSceneBondDrawing::getTarget() const
{
    return siteOf(m_target);
}

QLineF ZelSceneBondDrawing::getLine() const
{
    if (!isActive())
        return {};
    const QRectF from = sceneRectOf(m_source);
    if (m_target)
        return zel::geometry::rimToRimLine(from, sceneRectOf(m_target));
    const QPointF way = m_mousePos - from.center();
    const double length = std::hypot(way.x(), way.y());
    const double radius = zel::geometry::rimRadius(from, way);
    if (length <= radius)
        return {m_mousePos, m_mousePos};
    return {from.center() + way * (radius / length), m_mousePos};
}

void ZelSceneBondDrawing::start(ZelEllipseItemBst *source)
{
    reset();
    if (!siteOf(source))
        return;
    m_source = source;
    m_mousePos = sceneRectOf(source).center();
    m_started = true;
    lightUp();
    repaint();
}

void ZelSceneBondDrawing::moveTo(const QPointF &scenePos)
{
    if (!isActive()) {
        reset();
        return;
    }
    m_mousePos = scenePos;
    m_target = itemAt(scenePos);
    m_refusal = m_target ? m_refuse(getSource(), getTarget()) : QString();
    repaint();
}

void ZelSceneBondDrawing::reset()
{
    if (!std::exchange(m_started, false))
        return;
    const QList<Light> lights = std::exchange(m_lights, {});
    for (const Light &light : lights) {
        if (light.item)
            light.item->setHighlight(light.wasHighlighted);
    }
    m_source.clear();
    m_target.clear();
    m_refusal.clear();
    repaint();
}

void ZelSceneBondDrawing::paint(QPainter *painter) const
{
    if (!isActive())
        return;
    const QColor color = m_refusal.isEmpty() ? bondDrawingColor() : bondRefusedColor();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(color, BondDrawingPenWidth, Qt::DashLine, Qt::RoundCap));
    if (const QLineF line = getLine(); line.length() > 0.0)
        painter->drawLine(line);
    painter->setPen(QPen(color, BondDrawingPenWidth));
    painter->drawEllipse(grown(sceneRectOf(m_source), BondDrawingRing));
    if (m_target)
        painter->drawEllipse(grown(sceneRectOf(m_target), BondDrawingRing));
    painter->restore();
}

void ZelSceneBondDrawing::lightUp()
{
    SdcBst *const source = getSource();
    const QList<QGraphicsItem *> all = m_scene->items();
    for (QGraphicsItem *item : all) {
        ZelEllipseItemBst *const candidate = ZelGItem::toZelEllipseItemBst(item);
        SdcBst *const site = siteOf(candidate);
        if (!site || candidate == m_source || !m_refuse(source, site).isEmpty())
            continue;
        m_lights.append({candidate, candidate->isHighlighted()});
        candidate->setHighlight(true);
    }
}

// A site is small: it is enough to come near one that may be bonded.
ZelEllipseItemBst *ZelSceneBondDrawing::itemAt(const QPointF &scenePos) const
{
    const QList<QGraphicsItem *> hit = m_scene->items(scenePos);
    for (QGraphicsItem *item : hit) {
        ZelEllipseItemBst *const candidate = ZelGItem::toZelEllipseItemBst(item);
        if (siteOf(candidate))
            return candidate == m_source ? nullptr : candidate;
    }
    ZelEllipseItemBst *nearest = nullptr;
    double least = BondDrawingReach;
    for (const Light &light : m_lights) {
        if (!siteOf(light.item))
            continue;
        const QRectF rect = sceneRectOf(light.item);
        const QPointF way = scenePos - rect.center();
        const double distance = std::hypot(way.x(), way.y()) - zel::geometry::rimRadius(rect, way);
        if (distance < least) {
            least = distance;
            nearest = light.item;
        }
    }
    return nearest;
}

void ZelSceneBondDrawing::repaint()
{
    QRectF rect;
    if (isActive()) {
        const QLineF line = getLine();
        rect = sceneRectOf(m_source) | QRectF(line.p1(), line.p2()).normalized();
        if (m_target)
            rect |= sceneRectOf(m_target);
        rect = grown(rect, BondDrawingRing + BondDrawingPenWidth);
    }
    const QRectF dirty = rect | m_painted;
    m_painted = rect;
    if (!dirty.isNull())
        m_scene->update(dirty);
}
