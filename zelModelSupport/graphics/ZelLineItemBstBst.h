#pragma once

#include "zelModelSupport/graphics/ZelLineItem.h"

#include <QList>
#include <QPointer>

#include <array>

class SdcBstBst;

/// The line that draws a bond between two binding sites; its component is the bond.
///
/// A dying line takes itself off its bond and leaves the bond alone.
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
    /// Shows or hides the halo; when extendable, highlights the site items likewise.
    virtual void setHighlight(bool status, bool extendable);

    SdcBstBst *getSdcBstBst();
    /// From now on the line itself follows its ends: the bond is losing a site.
    void keepEnds();
    /// Lays the line anew after one of its ends has got or lost its item; without an item at each
    /// end it hides.
    void updateEnds();

    ZelLineItemBstBst *asLineItemBstBst() override;
    bool isLineItemBstBst() override;

private:
    void follow(ZelEllipseItem *item);
    bool isWhole();
    void lay(ZelEllipseItemBst *first, ZelEllipseItemBst *second);

    std::array<QPointer<ZelEllipseItemBst>, 2> m_ends; // where it was laid last
    bool m_laid = false;
    bool m_keepsEnds = false;
    bool m_hidden = false; // for want of an end
};
