#include "zelModelSupport/graphics/ZelRectItemWithText.h"

#include "zelModelSupport/graphics/ZelDrawing.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QFont>
#include <QGraphicsSimpleTextItem>

ZelRectItemWithText::ZelRectItemWithText(QGraphicsItem *parentItem)
    : ZelRectItemWithText(QRectF(), parentItem)
{
}

ZelRectItemWithText::ZelRectItemWithText(const QRectF &rect, QGraphicsItem *parentItem)
    : ZelRectItem(rect, parentItem), m_textItem(new QGraphicsSimpleTextItem(this))
{
    QFont font = m_textItem->font();
    font.setPointSize(zel::drawing::RectTextPointSize);
    m_textItem->setFont(font);
    centreText();
}

ZelRectItemWithText::~ZelRectItemWithText() = default;

QString ZelRectItemWithText::getText() const
{
    return m_textItem->text();
}

void ZelRectItemWithText::setText(const QString &text)
{
    m_textItem->setText(text);
    centreText();
}

void ZelRectItemWithText::setRect(const QRectF &rect)
{
    ZelRectItem::setRect(rect);
    centreText();
}

void ZelRectItemWithText::setSdc(Sdc *sdc)
{
    m_namedSdc = sdc;
    setText(sdc ? sdc->getProperty(SdcProperty::ShortName) : QString());
}

Sdc *ZelRectItemWithText::getSdc()
{
    return m_namedSdc;
}

void ZelRectItemWithText::centreText()
{
    m_textItem->setPos(rect().center() - m_textItem->boundingRect().center());
}
