#include "zelModelSupport/graphics/paint/ZelItemPainting.h"

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelShare/ZelShareGui.h"

#include <QBrush>
#include <QLineF>
#include <QPainter>
#include <QPen>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <numbers>

using namespace zel::drawing;

namespace zel::painting {

void paintEllipse(QPainter *painter, const QRectF &rect, const QPen &pen, const QBrush &brush)
{
    const double room = std::min(rect.width(), rect.height());
    const double width = pen.style() == Qt::NoPen || pen.isCosmetic() ? 0.0 : pen.widthF();
    if (width >= room && width > 0.0) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(pen.brush());
        painter->drawEllipse(rect);
        return;
    }
    const double inset = width / 2.0;
    painter->setPen(pen);
    painter->setBrush(brush);
    painter->drawEllipse(rect.adjusted(inset, inset, -inset, -inset));
}

QFont siteLabelFont(const QString &label, const QRectF &site)
{
    // One font object for all sites, so that its copies share what the toolkit looked up for it.
    static const auto &base = *[] {
        auto *const font = new QFont;
        font->setPointSize(SiteLabelPointSize);
        font->setStyleHint(QFont::TypeWriter, QFont::PreferDefault);
        // Measured at one scale and drawn at another: digits must not snap to pixels.
        font->setHintingPreference(QFont::PreferNoHinting);
        return font;
    }();
    if (label.isEmpty())
        return base;
    QFont font = base;
    // Whole sizes are coarse steps in a small site: fit a site many times as large.
    const int size = ZelShareGui::getMaxiumFontSize(label,
        site.width() * SiteLabelWidthShare * SiteLabelEnlargement,
        site.height() * SiteLabelHeightShare * SiteLabelEnlargement, base);
    font.setPointSizeF(size / SiteLabelEnlargement);
    return font;
}

void paintSiteLabel(
    QPainter *painter, const QString &label, const QRectF &site, const QColor &color)
{
    if (label.isEmpty())
        return;
    const double scale =
        QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    if (site.height() * scale < SiteLabelLeastDeviceHeight)
        return;
    painter->setFont(siteLabelFont(label, site));
    painter->setPen(color);
    painter->drawText(site, Qt::AlignCenter | Qt::TextDontClip, label);
}

void setStickyState(int stateType, QPen *rim, QBrush *filling)
{
    filling->setStyle(Qt::SolidPattern);
    switch (stateType) {
    case ComponentStateOn:
        rim->setStyle(Qt::SolidLine);
        filling->setColor(rim->color());
        break;
    case ComponentStateOff:
        rim->setStyle(Qt::SolidLine);
        filling->setColor(Qt::white);
        break;
    case ComponentStateDontCare:
        rim->setStyle(Qt::DotLine);
        filling->setColor(Qt::white);
        break;
    default:
        break;
    }
}

double stickyOpacity(int stateType)
{
    return stateType == ComponentStateDontCare ? StickyDontCareOpacity : 1.0;
}

void paintSticky(QPainter *painter, const QRectF &square, const QPen &rim, const QBrush &filling)
{
    // Inside the square, so that neighbours keep their gap; finer where the square is small, so
    // that its filling is seen.
    const double side = std::min(square.width(), square.height());
    QPen pen = rim;
    pen.setJoinStyle(Qt::MiterJoin);
    pen.setWidthF(std::min(pen.widthF(), side * StickyPenShare));
    const double inset = pen.style() == Qt::NoPen ? 0.0 : pen.widthF() / 2.0;
    painter->setPen(pen);
    painter->setBrush(filling);
    painter->drawRect(square.adjusted(inset, inset, -inset, -inset));
}

QRectF lineBounds(const QLineF &line, const QPen &pen)
{
    // Square caps reach out by the half width along both axes of a slanted line.
    const double reach = std::max(pen.widthF(), 1.0) / std::numbers::sqrt2 + 0.5;
    return QRectF(line.p1(), line.p2()).normalized().adjusted(-reach, -reach, reach, reach);
}

} // namespace zel::painting
