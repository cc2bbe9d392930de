#pragma once

#include "zelModelSupport/ZelModelSupportExport.h"

#include <QObject>
#include <QPen>

class QGraphicsItem;
class ZelGItem;

/// The halo around a highlighted ellipse, line or rect item.
///
/// The halo's graphics item is a child of the owner and dies with it; this object belongs to the
/// owner and must not outlive it.
class ZELMODELSUPPORT_EXPORT ZelHighlightItem : public QObject
{
    Q_OBJECT
public:
    explicit ZelHighlightItem(ZelGItem *owner);
    ~ZelHighlightItem() override;

    /// Null before the halo is first shown, and when the owner is of no kind that has a halo.
    QGraphicsItem *getHaloItem() const { return m_haloItem; }
    bool isVisible() const;

    /// Brings the geometry up to date, then shows or hides the halo.
    void setVisible(bool on);
    /// Lays the halo over the owner's present rectangle or line.
    void updateGeometry();

private:
    void makeHalo();
    void addHalo(QGraphicsItem *haloItem);

    ZelGItem *m_owner = nullptr;
    QPen m_pen;
    QPen m_rectPen;
    QGraphicsItem *m_haloItem = nullptr;
};
