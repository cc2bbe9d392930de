#pragma once

#include "zelModelSupport/graphics/ZelLineItem.h"

#include <QLineF>
#include <QList>
#include <QPointer>
#include <QRectF>

#include <array>

class SdcBstBst;

/// The line that draws a bond between two binding sites; its component is the bond.
///
/// A dying line takes itself off its bond and leaves the bond alone. The sites that it has made
/// glow stop glowing with it, and with the bond.
class ZELMODELSUPPORT_EXPORT ZelLineItemBstBst : public ZelLineItem
{
    Q_OBJECT
public:
    explicit ZelLineItemBstBst(QGraphicsItem *parentItem = nullptr);
    ~ZelLineItemBstBst() override;

    /// The items of the bond's sites, in the bond's order; sites without an item are left out.
    virtual QList<ZelEllipseItemBst *> getListZelEllipseItemBst();
    /// Lays the line between the rims of the two site items. Nothing unless the bond has two
    /// sites whose items lie in this line's scene.
    virtual void updateLine();
    virtual ZelEllipseItemBst *getZelEllipseItemBst1();
    virtual ZelEllipseItemBst *getZelEllipseItemBst2();
    /// Adds the item's site to the bond, if there is one.
    virtual void addZelEllipseItemBst(ZelEllipseItemBst *s);
    /// Shows or hides the halo; when extendable, highlights the site items likewise, those that
    /// were the bond's when they were highlighted included.
    virtual void setHighlight(bool status, bool extendable);

    SdcBstBst *getSdcBstBst();
    /// From now on the line itself follows its ends: the bond is losing a site.
    void keepEnds();
    /// One of the ends has moved: updateLine(), unless the line lies where the ends are by now.
    void endMoved();
    /// Lays the line anew after one of its ends has got or lost its item; without an item at each
    /// end it hides.
    void updateEnds();

    ZelLineItemBstBst *asLineItemBstBst() override;
    bool isLineItemBstBst() override;

private:
    void follow(ZelEllipseItem *item);
    bool isWhole();
    /// Where it is to be laid: the bond's site items, or where those were last.
    std::array<ZelEllipseItemBst *, 2> ends();
    void endGlow();
    void bondDied();
    void lay(ZelEllipseItemBst *first, ZelEllipseItemBst *second);

    std::array<QPointer<ZelEllipseItemBst>, 2> m_ends; // where it was laid last
    std::array<QRectF, 2> m_endRects; // and how they lay there
    QLineF m_laidLine;
    QList<QPointer<ZelEllipseItemBst>> m_glowing; // by this line
    bool m_laid = false;
    bool m_keepsEnds = false;
    bool m_hidden = false; // for want of an end
};
