#pragma once

#include <zelDb/ZelDbTypes.h>
#include <zelModelSupport/graphics/ZelSceneMol.h>

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <memory>
#include <vector>

class SdcBst;
class SdcCpx;
class SdcMcp;
class SdcMol;
class ZelEllipseItemBst;
class ZelEllipseItemMcp;
class ZelLineItemBstBst;
class ZelRectItemMcpSticky;

/// The drawing of one figure: a scene, and the data components that it shows.
class Stage
{
public:
    ZelScene &scene() { return m_scene; }

    SdcMol *addMol(const QString &name, const QColor &color = Qt::white);
    /// A complex of the molecules, which it takes over from the stage.
    SdcCpx *addCpx(const QString &name, const QList<SdcMol *> &mols);
    SdcMcp *addMcp(SdcMol *mol, const QPointF &centre, const QSizeF &size);
    /// A component of a molecule of its own.
    SdcMcp *addMcp(const QPointF &centre, const QSizeF &size, const QColor &color = Qt::white);
    /// A site on the component's rim; the angle is counter-clockwise from the right, in degrees.
    SdcBst *addBst(SdcMcp *mcp, double angle, double diameter = 12.0);
    /// A feature of a size of its own, as a user would leave it.
    ZelRectItemMcpSticky *addFeature(SdcMcp *mcp, const QString &name, const QColor &color,
        int state = ComponentStateOn, bool half = false);
    /// A dotted line between neighbours, one after the other.
    void join(const QList<SdcMcp *> &chain);
    /// A bond with its line; Line and Bond are a pair of classes that belong together.
    template <typename Line, typename Bond>
    Line *addBond(SdcBst *first, SdcBst *second)
    {
        auto *const bond = new Bond(nullptr, &m_scene);
        bond->addSdcBst(first);
        bond->addSdcBst(second);
        auto *const line = new Line;
        line->setSdc(bond);
        bond->setZelLineItemBstBst(line);
        m_scene.addItem(line);
        line->updateLine();
        return line;
    }
    /// A coloured band behind the drawing.
    void addBand(const QRectF &rect, const QColor &color);
    /// Plain text in the drawing, centred on a point.
    void addText(const QPointF &centre, const QString &text);

    /// What is to be seen, without margin.
    QRectF bounds() const;

private:
    ZelSceneMol m_scene;
    std::vector<std::unique_ptr<QObject>> m_owned;
};

ZelEllipseItemMcp *itemOf(SdcMcp *mcp);
ZelEllipseItemBst *itemOf(SdcBst *bst);
