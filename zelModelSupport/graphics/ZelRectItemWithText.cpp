#include "zelModelSupport/graphics/ZelRectItemWithText.h"

#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGraphicsSimpleTextItem>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>

namespace {

/// A text with a light rim, which reads over any drawing.
class RimmedText : public QGraphicsSimpleTextItem
{
public:
    using QGraphicsSimpleTextItem::QGraphicsSimpleTextItem;

    QRectF boundingRect() const override
    {
        if (text().isEmpty())
            return {};
        constexpr double rim = zel::drawing::RectTextRim / 2.0;
        return QGraphicsSimpleTextItem::boundingRect().adjusted(-rim, -rim, rim, rim);
    }

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        QPainterPath letters;
        letters.addText(0.0, QFontMetricsF(font()).ascent(), font(), text());
        const QPen rim(
            Qt::white, zel::drawing::RectTextRim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        painter->strokePath(letters, rim);
        painter->fillPath(letters, brush());
    }
};

} // namespace

ZelRectItemWithText::ZelRectItemWithText(QGraphicsItem *parentItem)
    : ZelRectItemWithText(QRectF(), parentItem)
{
}

ZelRectItemWithText::ZelRectItemWithText(const QRectF &rect, QGraphicsItem *parentItem)
    : ZelRectItem(rect, parentItem), m_textItem(new RimmedText(this))
{
    QFont font = m_textItem->font();
    font.setPointSize(zel::drawing::RectTextPointSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    m_textItem->setFont(font);
    m_textItem->setBrush(Qt::black);
    m_textItem->setFlag(ItemIgnoresParentOpacity); // the text of a translucent plate stays clear
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
    const QRectF text = m_textItem->boundingRect();
    // Text that is too large is drawn smaller; a plate without extent has no say.
    double scale = 1.0;
    if (!rect().isEmpty() && !text.isEmpty()) {
        const double room =
            std::min(rect().width() / text.width(), rect().height() / text.height());
        scale = std::min(room * zel::drawing::RectTextShare, 1.0);
    }
    m_textItem->setScale(scale);
    m_textItem->setPos(rect().center() - text.center() * scale);
}
