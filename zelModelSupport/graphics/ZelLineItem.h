#pragma once

#include "zelModelSupport/graphics/ZelGItem.h"

#include <QGraphicsLineItem>

/// Base of the lines that draw bonds and backbones.
class ZELMODELSUPPORT_EXPORT ZelLineItem : public ZelGItem, public QGraphicsLineItem
{
    Q_OBJECT
public:
    explicit ZelLineItem(QGraphicsItem *parentItem = nullptr);
    ~ZelLineItem() override;

    int type() const override;
    /// The line's ends, grown by the pen; the toolkit's own strokes a path at every call.
    QRectF boundingRect() const override;
    bool isHighlighted() const { return m_highlighted; }

    ZelLineItem *asLineItem() override;
    bool isLineItem() override;

protected:
    /// Shows or hides the halo and stores the flag.
    void setLineHighlighted(bool on);
    /// Sets a line given in scene coordinates, and its halo with it.
    void setSceneLine(const QLineF &sceneLine);

private:
    bool m_highlighted = false;
};
