#pragma once

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QString>

#include <functional>

class QGraphicsScene;
class QPainter;
class SdcBst;
class ZelEllipseItemBst;

/// A bond that the user is drawing: the provisional line from a site to the mouse, and the sites
/// that light up because they may be its other end.
///
/// It makes no items: the scene paints it on top of everything. Sites and their items may be
/// destroyed meanwhile.
class ZelSceneBondDrawing
{
public:
    /// Why two sites may not be bonded; empty when they may.
    using Refusal = std::function<QString(SdcBst *first, SdcBst *second)>;

    ZelSceneBondDrawing(QGraphicsScene *scene, Refusal refusal);

    /// False as soon as the site where it begins is gone.
    bool isActive() const;
    SdcBst *getSource() const;
    /// The site at the mouse, or near it when it may be bonded; null when there is none.
    SdcBst *getTarget() const;
    /// Why the target is refused; empty without a target.
    QString getRefusal() const { return m_refusal; }
    /// In scene coordinates, from rim to rim; without length while the mouse is on the source.
    QLineF getLine() const;

    void start(ZelEllipseItemBst *source);
    void moveTo(const QPointF &scenePos);
    /// Takes line and lights away; nothing when no bond is being drawn.
    void reset();
    void paint(QPainter *painter) const;

private:
    struct Light
    {
        QPointer<ZelEllipseItemBst> item;
        bool wasHighlighted;
    };

    void lightUp();
    ZelEllipseItemBst *itemAt(const QPointF &scenePos) const;
    void repaint();

    QGraphicsScene *m_scene; // the owner
    Refusal m_refuse;
    QPointer<ZelEllipseItemBst> m_source;
    QPointer<ZelEllipseItemBst> m_target;
    QPointF m_mousePos;
    QString m_refusal;
    QList<Light> m_lights;
    QRectF m_painted;
    bool m_started = false;
};
