#include "Stage.h"

#include <zelModelSupport/graphics/ZelEllipseItemBst.h>
#include <zelModelSupport/graphics/ZelEllipseItemMcp.h>
#include <zelModelSupport/graphics/ZelRectItemMcpSticky.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcBst.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcCpx.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcp.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h>
#include <zelModelSupport/zelModelSupportDataComponent/SdcMol.h>
#include <zelShare/ZelShareGui.h>

#include <QFont>
#include <QGraphicsSimpleTextItem>

#include <algorithm>

namespace {

QRectF centredAt(const QPointF &centre, const QSizeF &size)
{
    return {centre - QPointF(size.width(), size.height()) / 2.0, size};
}

} // namespace

SdcMol *Stage::addMol(const QString &name, const QColor &color)
{
    auto mol = std::make_unique<SdcMol>(nullptr);
    SdcMol *const added = mol.get();
    added->setProperty(SdcProperty::ShortName, name);
    added->setProperty(SdcProperty::Color, color.name());
    m_owned.push_back(std::move(mol));
    return added;
}

SdcCpx *Stage::addCpx(const QString &name, const QList<SdcMol *> &mols)
{
    auto cpx = std::make_unique<SdcCpx>(nullptr);
    SdcCpx *const added = cpx.get();
    added->setProperty(SdcProperty::ShortName, name);
    for (SdcMol *mol : mols) {
        const auto owned = std::find_if(m_owned.begin(), m_owned.end(),
            [mol](const std::unique_ptr<QObject> &entry) { return entry.get() == mol; });
        if (owned == m_owned.end())
            continue;
        owned->release();
        m_owned.erase(owned);
        added->addSdcChild(mol, true);
    }
    m_owned.push_back(std::move(cpx));
    return added;
}

SdcMcp *Stage::addMcp(SdcMol *mol, const QPointF &centre, const QSizeF &size)
{
    return m_scene.addSdcMcp(mol, centredAt(centre, size));
}

SdcMcp *Stage::addMcp(const QPointF &centre, const QSizeF &size, const QColor &color)
{
    return addMcp(addMol(QString(), color), centre, size);
}

SdcBst *Stage::addBst(SdcMcp *mcp, double angle, double diameter)
{
    const QPointF place = ZelShareGui::getAttachScenePoint(itemOf(mcp), nullptr, angle);
    return m_scene.addSdcBst(mcp, centredAt(place, QSizeF(diameter, diameter)));
}

ZelRectItemMcpSticky *Stage::addFeature(
    SdcMcp *mcp, const QString &name, const QColor &color, int state, bool half)
{
    SdcMcpTag *const tag = mcp->addTag(name, color.name(), false);
    ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
    sticky->setStateType(state, half);
    itemOf(mcp)->updateLayoutOfListStateSticky(false);
    return sticky;
}

void Stage::join(const QList<SdcMcp *> &chain)
{
    for (qsizetype i = 1; i < chain.size(); ++i)
        m_scene.drawBackBones(itemOf(chain.at(i - 1)), itemOf(chain.at(i)));
}

void Stage::addBand(const QRectF &rect, const QColor &color)
{
    m_scene.addRect(rect, Qt::NoPen, color)->setZValue(-10.0);
}

void Stage::addText(const QPointF &centre, const QString &text)
{
    QFont font;
    font.setPixelSize(9);
    font.setHintingPreference(QFont::PreferNoHinting); // drawn at any scale
    auto *const item = new QGraphicsSimpleTextItem(text);
    item->setFont(font);
    item->setBrush(QColor("#444444"));
    item->setPos(centre - item->boundingRect().center());
    item->setZValue(20.0);
    m_scene.addItem(item);
}

QRectF Stage::bounds() const
{
    QRectF rect;
    const QList<QGraphicsItem *> items = m_scene.items();
    for (const QGraphicsItem *item : items) {
        if (item->isVisible())
            rect |= item->sceneBoundingRect();
    }
    return rect;
}

ZelEllipseItemMcp *itemOf(SdcMcp *mcp)
{
    return mcp->getZelEllipseItemMcp();
}

ZelEllipseItemBst *itemOf(SdcBst *bst)
{
    return bst->getZelEllipseItemBst();
}
