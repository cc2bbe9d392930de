#pragma once

#include "zelModelSupport/graphics/ZelGItem.h"

#include <QGraphicsRectItem>

/// A rectangle that stands for a data component.
class ZELMODELSUPPORT_EXPORT ZelRectItem : public ZelGItem, public QGraphicsRectItem
{
    Q_OBJECT
public:
    explicit ZelRectItem(QGraphicsItem *parentItem = nullptr);
    explicit ZelRectItem(const QRectF &rect, QGraphicsItem *parentItem = nullptr);
    ~ZelRectItem() override;

    int type() const override;

    ZelRectItem *asRectItem() override;
    bool isRectItem() override;
};
