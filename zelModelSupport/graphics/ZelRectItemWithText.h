#pragma once

#include "zelModelSupport/graphics/ZelRectItem.h"

#include <QString>

class QGraphicsSimpleTextItem;

/// A rectangle with a centred text: the short name of its component, or a text set on its own.
class ZELMODELSUPPORT_EXPORT ZelRectItemWithText : public ZelRectItem
{
    Q_OBJECT
public:
    explicit ZelRectItemWithText(QGraphicsItem *parentItem = nullptr);
    explicit ZelRectItemWithText(const QRectF &rect, QGraphicsItem *parentItem = nullptr);
    ~ZelRectItemWithText() override;

    QString getText() const;
    void setText(const QString &text);
    /// Sets the rectangle and centres the text in it.
    void setRect(const QRectF &rect);

    /// Stores the component and shows its short name. Neither registers the item nor follows the
    /// component's changes.
    void setSdc(Sdc *sdc) override;
    Sdc *getSdc() override;

private:
    void centreText();

    QPointer<Sdc> m_namedSdc;
    QGraphicsSimpleTextItem *m_textItem = nullptr;
};
