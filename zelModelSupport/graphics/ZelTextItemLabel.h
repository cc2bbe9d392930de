#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QGraphicsTextItem>
#include <QPointer>

class Sdc;

/// The short name of a data component, written over the centre of its drawing; hidden when there
/// is nothing to show.
class ZELMODELSUPPORT_EXPORT ZelTextItemLabel : public QGraphicsTextItem
{
    Q_OBJECT
public:
    explicit ZelTextItemLabel(QGraphicsItem *parentItem = nullptr);
    ~ZelTextItemLabel() override;

    Sdc *getSdc() const;
    /// Shows a component and follows its changes.
    void setSdc(Sdc *sdc);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

public slots:
    /// Brings text and place up to date. The place is left alone while in no scene.
    void updateLabel();

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    QPointer<Sdc> m_sdc;
};
