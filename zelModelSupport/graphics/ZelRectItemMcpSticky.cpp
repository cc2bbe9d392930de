#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/graphics/paint/ZelItemPainting.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

#include <QGraphicsPolygonItem>

#include <utility>

using namespace zel::drawing;

ZelRectItemMcpSticky::ZelRectItemMcpSticky(ZelDbSqliteModel *zelDbSqliteModel)
    : ZelRectItem(QRectF(0.0, 0.0, StickySize, StickySize)),
      m_sdcMcpTag(new SdcMcpTag(zelDbSqliteModel, this)),
      m_inactivePen(Qt::lightGray, 1.0, Qt::DotLine)
{
    m_sdcMcpTag->setZelRectItemMcpSticky(this);
    setPen(stickyPen());
    setColor(StickyColor, true);
    setStateType(ComponentStateOn, true);
}

ZelRectItemMcpSticky::~ZelRectItemMcpSticky()
{
    if (m_holder)
        m_holder->forgetSticky(this);
    // The feature goes while the sticky is still whole.
    if (m_sdcMcpTag) {
        m_sdcMcpTag->setZelRectItemMcpSticky(nullptr);
        delete m_sdcMcpTag.data();
    }
    releaseSdc();
}

int ZelRectItemMcpSticky::type() const
{
    return ZelRectItemMcpStickyType;
}

QString ZelRectItemMcpSticky::getStateTypeName() const
{
    switch (m_stateType) {
    case ComponentStateOff:
        return QStringLiteral("Off");
    case ComponentStateOn:
        return QStringLiteral("On");
    default:
        return QStringLiteral("Don't Care");
    }
}

QColor ZelRectItemMcpSticky::getColor() const
{
    return (m_active ? pen() : m_savedPen).color();
}

SdcMcp *ZelRectItemMcpSticky::getSdcMcp() const
{
    return m_sdcMcp;
}

SdcMcpTag *ZelRectItemMcpSticky::getSdcMcpTag() const
{
    return m_sdcMcpTag;
}

void ZelRectItemMcpSticky::setName(const QString &name)
{
    m_name = name;
    setToolTip(QLatin1String("Feature: ") + name);
}

void ZelRectItemMcpSticky::setActive(bool on)
{
    if (on == m_active)
        return;
    if (on) {
        m_active = true;
        setLook(m_savedPen, m_savedBrush);
    } else {
        m_savedPen = pen();
        m_savedBrush = brush();
        setLook(m_inactivePen, m_inactiveBrush);
        m_active = false;
    }
    if (m_halfNofillItem)
        m_halfNofillItem->setVisible(on);
}

void ZelRectItemMcpSticky::setStateType(int stateType, bool half)
{
    m_stateType = stateType;
    QPen rim = m_active ? pen() : m_savedPen;
    QBrush filling = m_active ? brush() : m_savedBrush;
    zel::painting::setStickyState(stateType, &rim, &filling);
    setOpacity(zel::painting::stickyOpacity(stateType));
    setLook(rim, filling);
    if (!half) {
        delete std::exchange(m_halfNofillItem, nullptr);
        return;
    }
    if (!m_halfNofillItem) {
        m_halfNofillItem = new QGraphicsPolygonItem(this);
        m_halfNofillItem->setPen(Qt::NoPen);
        m_halfNofillItem->setBrush(Qt::white);
        m_halfNofillItem->setVisible(m_active);
    }
    updateHalfNofillItem();
}

void ZelRectItemMcpSticky::setColor(const QColor &color, bool fill)
{
    if (!color.isValid())
        return;
    QPen rim = m_active ? pen() : m_savedPen;
    rim.setColor(color);
    setLook(rim, QBrush(fill ? color : QColor(Qt::white), Qt::SolidPattern));
}

void ZelRectItemMcpSticky::setSdcMcp(SdcMcp *sdcMcp)
{
    m_sdcMcp = sdcMcp;
}

void ZelRectItemMcpSticky::updateHalfNofillItem()
{
    if (m_halfNofillItem)
        m_halfNofillItem->setPolygon(zel::geometry::halfFillPolygon(rect()));
}

void ZelRectItemMcpSticky::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    zel::painting::paintSticky(painter, rect(), pen(), brush());
}

ZelRectItemMcpSticky *ZelRectItemMcpSticky::asRectItemMcpSticky()
{
    return this;
}

bool ZelRectItemMcpSticky::isRectItemMcpSticky()
{
    return true;
}

void ZelRectItemMcpSticky::setLook(const QPen &pen, const QBrush &brush)
{
    if (m_active) {
        setPen(pen);
        setBrush(brush);
    } else {
        m_savedPen = pen;
        m_savedBrush = brush;
    }
}
