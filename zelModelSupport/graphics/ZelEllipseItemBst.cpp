#include "zelModelSupport/graphics/ZelEllipseItemBst.h"

#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelGlow.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/graphics/paint/ZelItemPainting.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"

#include <QApplication>
#include <QBrush>
#include <QGraphicsBlurEffect>
#include <QGraphicsTextItem>
#include <QPalette>
#include <QPen>
#include <QTextDocument>

#include <utility>

using namespace zel::drawing;

/// Paints the site's label on top of the mark, in place of a text item.
class ZelEllipseItemBst::LabelPainter : public QGraphicsItem
{
public:
    explicit LabelPainter(ZelEllipseItemBst *site) : QGraphicsItem(site), m_site(site)
    {
        setZValue(z::Label);
    }

    QRectF boundingRect() const override { return m_site->rect(); }

    QPainterPath shape() const override { return {}; } // only looks, takes no clicks

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        m_site->paintLabel(painter);
    }

private:
    ZelEllipseItemBst *m_site;
};

ZelEllipseItemBst::ZelEllipseItemBst(QGraphicsItem *parentItem) : ZelEllipseItem(parentItem) { }

ZelEllipseItemBst::ZelEllipseItemBst(const QRectF &rect, QGraphicsItem *parentItem)
    : ZelEllipseItem(rect, parentItem)
{
}

ZelEllipseItemBst::~ZelEllipseItemBst()
{
    releaseSdc();
}

SdcBst *ZelEllipseItemBst::getSdcBst()
{
    Sdc *const sdc = getSdc();
    return sdc ? sdc->toSdcBst() : nullptr;
}

void ZelEllipseItemBst::setSdcBst(SdcBst *sdcBst)
{
    if (takeSdc(sdcBst) && sdcBst && !sdcBst->getZelEllipseItemBst())
        sdcBst->setZelEllipseItemBst(this);
}

QGraphicsTextItem *ZelEllipseItemBst::getBstLabelItem()
{
    if (m_labelItem)
        return m_labelItem;
    m_labelItem = new QGraphicsTextItem(this);
    m_labelItem->document()->setDocumentMargin(0.0);
    m_labelItem->setZValue(m_labelItem->zValue() + z::Label);
    placeLabelItem();
    // From now on the label draws itself.
    delete std::exchange(m_labelPainter, nullptr);
    update();
    return m_labelItem;
}

QString ZelEllipseItemBst::getLabel() const
{
    return m_labelItem ? m_labelItem->toPlainText() : m_label;
}

void ZelEllipseItemBst::setLabel(const QString &text)
{
    if (text == m_label && !m_labelItem)
        return;
    m_label = text;
    if (m_labelItem)
        placeLabelItem();
    else if (m_labelPainter)
        m_labelPainter->update();
    else
        update();
}

BindingStatusType ZelEllipseItemBst::getBindingStatus()
{
    SdcBst *const bst = getSdcBst();
    return bst ? bst->getBindingStatus() : BindingStatusUnspecified;
}

void ZelEllipseItemBst::setBindingStatus(BindingStatusType status)
{
    if (SdcBst *bst = getSdcBst())
        bst->setBindingStatus(status);
}

void ZelEllipseItemBst::updateBindStatusDisplay(bool show)
{
    delete std::exchange(m_statusMark, nullptr);
    delete std::exchange(m_labelPainter, nullptr);
    if (show) {
        // The mark is measured by the rectangle, before the pens change.
        const double width = boundingRect().width();
        const QPointF centre = rect().center();
        m_statusMark = new QGraphicsEllipseItem(this);
        m_statusMark->setPen(Qt::NoPen);
        QRectF markRect = zel::geometry::centredSquare(centre, width - MarkShrink);
        switch (getBindingStatus()) {
        case BindingStatusBound:
            setPen(QPen());
            m_statusMark->setBrush(Qt::gray);
            break;
        case BindingStatusUnbound:
            setPen(QPen());
            m_statusMark->setBrush(Qt::white);
            if (brush().color() != Qt::white) {
                setPen(Qt::NoPen);
                m_statusMark->setPen(QPen(Qt::gray, MarkUnboundPenWidth));
                m_statusMark->setOpacity(MarkOpacity);
                markRect =
                    zel::geometry::centredSquare(centre, markRect.width() + MarkUnboundWiden);
            }
            break;
        default: {
            QPen rim = pen();
            rim.setColor(brush().color());
            if (rim.style() == Qt::NoPen)
                rim.setStyle(Qt::SolidLine);
            setPen(rim);
            m_statusMark->setPen(QPen(Qt::black, 1.0, Qt::DotLine));
            m_statusMark->setOpacity(MarkOpacity);
            markRect = zel::geometry::centredSquare(centre, width - MarkShrinkDontCare);
            break;
        }
        }
        m_statusMark->setRect(markRect);
        m_statusMark->setZValue(z::Label + z::StatusMark);
        if (!m_labelItem)
            m_labelPainter = new LabelPainter(this);
    }
    if (m_labelItem)
        m_labelItem->setDefaultTextColor(labelColor());
}

void ZelEllipseItemBst::setAlwaysHighlight(bool on)
{
    if (!m_ring) {
        if (!on)
            return;
        m_ring = new zel::glow::Outline<QGraphicsEllipseItem>(
            rect().adjusted(RingShrink, RingShrink, -RingShrink, -RingShrink), this, 1);
        const QBrush highlight =
            QApplication::palette().brush(QPalette::Current, QPalette::Highlight);
        m_ring->setPen(QPen(highlight.color(), HaloPenWidth));
        m_ring->setZValue(zValue() + z::Ring);
        zel::glow::setBlur(m_ring)->setBlurHints(QGraphicsBlurEffect::QualityHint);
        m_ring->setOpacity(RingOpacity);
    }
    m_ring->setVisible(on);
}

void ZelEllipseItemBst::setAsLimited(bool on)
{
    QPen rim;
    if (on)
        rim.setStyle(Qt::DotLine);
    setPen(rim);
}

void ZelEllipseItemBst::setHighlight(bool on)
{
    if (SdcBst *bst = getSdcBst(); bst && bst->isAlwaysHighlighted())
        setAlwaysHighlight(true);
    ZelEllipseItem::setHighlight(on);
}

ZelEllipseItemBst *ZelEllipseItemBst::asEllipseItemBst()
{
    return this;
}

bool ZelEllipseItemBst::isEllipseItemBst()
{
    return true;
}

void ZelEllipseItemBst::paint(
    QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    ZelEllipseItem::paint(painter, option, widget);
    if (!m_labelItem && !m_labelPainter)
        paintLabel(painter);
}

void ZelEllipseItemBst::paintLabel(QPainter *painter) const
{
    zel::painting::paintSiteLabel(painter, m_label, rect(), labelColor());
}

void ZelEllipseItemBst::placeLabelItem()
{
    m_labelItem->setFont(zel::painting::siteLabelFont(m_label, rect()));
    m_labelItem->setPlainText(m_label);
    m_labelItem->setDefaultTextColor(labelColor());
    m_labelItem->setPos(rect().center() - m_labelItem->boundingRect().center());
}

QColor ZelEllipseItemBst::labelColor() const
{
    // A solid mark lies between the site and its label.
    const bool covered = m_statusMark && m_statusMark->brush().style() == Qt::SolidPattern;
    return covered ? QColor(Qt::black) : textColorOn(brush());
}
