#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/graphics/ZelEllipseItem.h"

#include <QFont>
#include <QString>

class QGraphicsTextItem;
class SdcBst;

/// Draws a binding site: a small ellipse with its number and a mark of its binding status.
///
/// The site paints its number itself until somebody asks for the label's own item: drawings hold
/// thousands of sites, and text items are dear.
class ZELMODELSUPPORT_EXPORT ZelEllipseItemBst : public ZelEllipseItem
{
    Q_OBJECT
public:
    explicit ZelEllipseItemBst(QGraphicsItem *parentItem = nullptr);
    explicit ZelEllipseItemBst(const QRectF &rect, QGraphicsItem *parentItem = nullptr);
    ~ZelEllipseItemBst() override;

    SdcBst *getSdcBst();
    /// Shows a site; becomes the site's item unless that already has one.
    void setSdcBst(SdcBst *sdcBst);
    /// The label as an item of its own, made on the first call; a child of this item.
    QGraphicsTextItem *getBstLabelItem();
    /// The label's text, without making the item; once that is made, the text that it shows.
    QString getLabel() const;
    /// Sets the label at the largest font size that fits the site.
    void setLabel(const QString &text);
    /// The site's status; unspecified without a site.
    BindingStatusType getBindingStatus();
    /// Passed on to the site; nothing without one.
    void setBindingStatus(BindingStatusType status);
    /// Redraws the mark of the binding status, or removes it.
    void updateBindStatusDisplay(bool show);
    /// The mark; null while none is shown.
    QGraphicsEllipseItem *getBindStatusItem() const { return m_statusMark; }
    void setAlwaysHighlight(bool on);
    /// A dotted rim marks a site that may not be edited freely.
    void setAsLimited(bool on);

    void setHighlight(bool on) override;
    ZelEllipseItemBst *asEllipseItemBst() override;
    bool isEllipseItemBst() override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    class LabelPainter;

    void paintLabel(QPainter *painter) const;
    void placeLabelItem();
    QColor labelColor() const;

    QString m_label;
    QGraphicsTextItem *m_labelItem = nullptr;
    LabelPainter *m_labelPainter = nullptr; // paints the label over a mark
    QGraphicsEllipseItem *m_statusMark = nullptr;
    QGraphicsEllipseItem *m_ring = nullptr;
};
