#include "zelModelSupport/graphics/ZelTextItemLabel.h"

#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QFont>
#include <QPainter>

ZelTextItemLabel::ZelTextItemLabel(QGraphicsItem *parentItem) : QGraphicsTextItem(parentItem)
{
    QFont labelFont = font();
    labelFont.setPointSize(zel::drawing::NamePointSize);
    labelFont.setWeight(QFont::Bold);
    labelFont.setHintingPreference(QFont::PreferNoHinting);
    setFont(labelFont);
    setZValue(zel::drawing::z::NameLabel);
    setVisible(false);
}

ZelTextItemLabel::~ZelTextItemLabel() = default;

Sdc *ZelTextItemLabel::getSdc() const
{
    return m_sdc;
}

void ZelTextItemLabel::setSdc(Sdc *sdc)
{
    if (sdc != m_sdc) {
        if (m_sdc)
            disconnect(m_sdc, nullptr, this, nullptr);
        m_sdc = sdc;
        if (sdc) {
            connect(sdc, &Sdc::signal_changed, this, &ZelTextItemLabel::updateLabel);
            connect(sdc, &QObject::destroyed, this, &ZelTextItemLabel::updateLabel);
        }
    }
    updateLabel();
}

void ZelTextItemLabel::paint(
    QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    // A veil keeps the name legible over any drawing.
    painter->setPen(Qt::NoPen);
    painter->setBrush(zel::drawing::nameVeil());
    painter->drawRoundedRect(
        boundingRect(), zel::drawing::NameVeilRadius, zel::drawing::NameVeilRadius);
    QGraphicsTextItem::paint(painter, option, widget);
}

void ZelTextItemLabel::updateLabel()
{
    const QString text = m_sdc ? m_sdc->getProperty(SdcProperty::ShortName) : QString();
    if (text != toPlainText())
        setPlainText(text);
    setVisible(!text.isEmpty());
    if (text.isEmpty() || !scene())
        return;
    const QPointF centre = m_sdc->getSdcSceneRectF().center();
    const QPointF place = parentItem() ? parentItem()->mapFromScene(centre) : centre;
    setPos(place - boundingRect().center());
}

QVariant ZelTextItemLabel::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSceneHasChanged)
        updateLabel();
    return QGraphicsTextItem::itemChange(change, value);
}
