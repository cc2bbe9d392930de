#include "zelModelSupport/graphics/ZelSceneMol.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QAction>
#include <QGraphicsSceneContextMenuEvent>
#include <QMenu>

ZelSceneMol::ZelSceneMol(QObject *parent) : ZelScene(parent)
{
    setZelSceneType(ZelSceneType::Mol);
    setFurtherDisplayFlag(1);
    setSceneRect(-300.0, -200.0, 600.0, 400.0);
    setContextMenuEnabled(true);
    m_changeColorAction = new QAction(QStringLiteral("Change Molecule Color"), this);
    connect(m_changeColorAction, &QAction::triggered, this, &ZelScene::slotChangeMolColor);
}

ZelSceneMol::~ZelSceneMol() = default;

void ZelSceneMol::setZelEllipseItemBstLimited(ZelEllipseItemBst *item)
{
    m_limitedItem = item;
}

bool ZelSceneMol::toMove() const
{
    return m_moveWhole;
}

bool ZelSceneMol::allowToChangeRelativePos() const
{
    if (!isLimitedEdit())
        return true;
    if (!m_limitedItem)
        return false;
    ZelEllipseItem *const limited = m_limitedItem;
    ZelGItem *const pressed = getPressedItem();
    return (pressed && pressed->asEllipseItem() == limited) || getLastCollidingItem() == limited;
}

void ZelSceneMol::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    if (!isContextMenuEnabled() || freezeMouseActions()
        || !getZelEllipseItemFromScenePos(event->scenePos()))
        return;
    m_changeColorAction->setData(event->scenePos());
    QMenu menu;
    menu.addAction(m_changeColorAction);
    menu.exec(event->screenPos());
}

void ZelSceneMol::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    ZelScene::mousePressEvent(event);
    m_moveWhole = false;
    m_sdcToMove.clear();
    ZelGItem *const pressed = getPressedItem();
    ZelEllipseItemMcp *const mcpItem = pressed ? pressed->asEllipseItemMcp() : nullptr;
    SdcMcp *const mcp = mcpItem ? mcpItem->getSdcMcp() : nullptr;
    if (!mcp)
        return;
    m_moveWhole = mcp->getNumOfNeigbhors() != 1;
    if (m_moveWhole)
        m_sdcToMove = mcp->getParentSdc();
}

void ZelSceneMol::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    QGraphicsScene::mouseDoubleClickEvent(event);
}
