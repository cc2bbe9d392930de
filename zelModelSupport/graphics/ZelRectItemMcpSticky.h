#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/graphics/ZelRectItem.h"

#include <QBrush>
#include <QPen>
#include <QString>

class QGraphicsPolygonItem;
class SdcMcp;
class SdcMcpTag;
class ZelDbSqliteModel;

/// Draws one feature of a molecule component as a small square whose fill shows its state.
///
/// The sticky makes and owns its feature.
class ZELMODELSUPPORT_EXPORT ZelRectItemMcpSticky : public ZelRectItem
{
    Q_OBJECT
public:
    explicit ZelRectItemMcpSticky(ZelDbSqliteModel *zelDbSqliteModel);
    ~ZelRectItemMcpSticky() override;

    int type() const override;

    QString getName() const { return m_name; }
    bool isActive() const { return m_active; }
    /// A ComponentStateType.
    int getStateType() const { return m_stateType; }
    QString getStateTypeName() const;
    /// The colour chosen with setColor(), also while inactive.
    QColor getColor() const;
    SdcMcp *getSdcMcp() const;
    SdcMcpTag *getSdcMcpTag() const;

    void setName(const QString &name);
    /// An inactive sticky is drawn as a pale outline, and takes its look up again later.
    void setActive(bool on);
    /// Shows a state; with half, a part of the square is painted white. Unknown states change
    /// neither pen nor fill.
    void setStateType(int stateType, bool half);
    /// Sets the rim's colour, and the filling's when fill is true (else white). Invalid colours
    /// are ignored.
    void setColor(const QColor &color, bool fill);
    void setSdcMcp(SdcMcp *sdcMcp);
    /// Fits the white part to the square; nothing while there is none.
    void updateHalfNofillItem();

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    ZelRectItemMcpSticky *asRectItemMcpSticky() override;
    bool isRectItemMcpSticky() override;

private:
    friend class ZelEllipseItemMcp;
    void setLook(const QPen &pen, const QBrush &brush);

    QPointer<SdcMcpTag> m_sdcMcpTag;
    QPointer<SdcMcp> m_sdcMcp;
    QString m_name;
    int m_stateType = ComponentStateOn;
    bool m_active = true;
    QPen m_inactivePen;
    QBrush m_inactiveBrush;
    QPen m_savedPen; // the look of the active sticky while it is inactive
    QBrush m_savedBrush;
    QGraphicsPolygonItem *m_halfNofillItem = nullptr;
    ZelEllipseItemMcp *m_holder = nullptr; // the component item that lists this sticky
};
