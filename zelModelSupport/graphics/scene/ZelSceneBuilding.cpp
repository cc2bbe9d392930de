// How a scene makes, places and destroys items.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCpx.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstCxi.h"
#include "zelModelSupport/graphics/ZelLineItemBstBstMli.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCxi.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMli.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelShare/ZelShareGui.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr double SiteDiameter = 12.0;
constexpr double SiteShare = 0.4; // of a small component's lesser extent
constexpr double FirstAngle = 135.0;
constexpr double FirstSiteAngle = 90.0;
constexpr double AngleStep = 5.0;
constexpr double DefaultGap = 10.0;

QRectF centred(const QSizeF &size)
{
    return {QPointF(-size.width() / 2.0, -size.height() / 2.0), size};
}

QRectF sceneRectOf(const QGraphicsEllipseItem *item)
{
    return item->mapRectToScene(item->rect());
}

bool isDrawnIn(SdcBst *bst, const QGraphicsScene *scene)
{
    ZelEllipseItemBst *const item = bst ? bst->getZelEllipseItemBst() : nullptr;
    return item && item->scene() == scene;
}

/// That of the components that are drawn already, else the one that the molecule shall have.
QBrush brushOf(SdcMol *mol)
{
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
        if (item && item->brush().style() != Qt::NoBrush)
            return item->brush();
    }
    const QColor color(mol->getProperty(SdcProperty::Color));
    return color.isValid() ? color : mol->getMolDefaultColor();
}

// A component that is joined to no other.
void warnOfLooseComponent()
{
    qDebug() << "Warning at SdcMcp * ZelScene::addSdcMcp(QGraphicsEllipseItem * referenceItem, "
                "SdcMcp * sdcMcpToAttach)";
}

} // namespace

ZelEllipseItemMcp *ZelScene::createMcp(const QRectF &sceneRect)
{
    auto *const item = new ZelEllipseItemMcp(centred(sceneRect.size()));
    item->setPos(sceneRect.center());
    return item;
}

ZelEllipseItemBst *ZelScene::createBst(const QRectF &sceneRect, ZelEllipseItemMcp *mcpItem)
{
    auto *const item = new ZelEllipseItemBst(centred(sceneRect.size()), mcpItem);
    item->setPos(mcpItem ? mcpItem->mapFromScene(sceneRect.center()) : sceneRect.center());
    return item;
}

ZelLineItemMcpMcp *ZelScene::createBackBone(ZelEllipseItemMcp *first, ZelEllipseItemMcp *second)
{
    if (!first || !second || first == second)
        return nullptr;
    const QList<ZelLineItemMcpMcp *> lines = first->getListMcpMcp();
    for (ZelLineItemMcpMcp *line : lines) {
        if (line->getPartner(first) == second)
            return line;
    }
    return new ZelLineItemMcpMcp(first, second);
}

ZelEllipseItemMcp *ZelScene::addMcp(const QRectF &sceneRect)
{
    forgetSurroundings();
    ZelEllipseItemMcp *const item = createMcp(sceneRect);
    addItem(item);
    return item;
}

ZelEllipseItemMcp *ZelScene::addMcp(QGraphicsEllipseItem *ref, ZelEllipseItemMcp *attachTo)
{
    ZelEllipseItemMcp *const item = createPlacedMcp(ref, attachTo);
    if (!item)
        return nullptr;
    if (!attachTo)
        warnOfLooseComponent();
    const Change change(this);
    addItem(item);
    drawBackBones(item, attachTo);
    return item;
}

ZelEllipseItemBst *ZelScene::addBst(const QRectF &sceneRect, ZelEllipseItemMcp *mcpItem)
{
    forgetSurroundings();
    ZelEllipseItemBst *const item = createBst(sceneRect, mcpItem);
    if (!mcpItem)
        addItem(item);
    return item;
}

ZelEllipseItemBst *ZelScene::addBst(ZelEllipseItemMcp *mcpItem)
{
    if (!mcpItem)
        return nullptr;
    const QRectF component = sceneRectOf(mcpItem);
    const double diameter =
        std::min(SiteDiameter, SiteShare * std::min(component.width(), component.height()));
    QRectF place = centred(QSizeF(diameter, diameter));
    SdcMol *const mol = moleculeOf(mcpItem);
    for (double turned = 0.0; turned < 360.0; turned += AngleStep) {
        place.moveCenter(
            ZelShareGui::getAttachScenePoint(mcpItem, nullptr, FirstSiteAngle + turned));
        if (isOccupied(place, mcpItem, mol))
            continue;
        const Change change(this);
        ZelEllipseItemBst *const item = addBst(place, mcpItem);
        item->setBrush(mcpItem->brush());
        return item;
    }
    return nullptr;
}

ZelLineItemMcpMcp *ZelScene::drawBackBones(ZelEllipseItemMcp *first, ZelEllipseItemMcp *second)
{
    return createBackBone(first, second);
}

SdcMcp *ZelScene::addSdcMcp(QGraphicsEllipseItem *referenceItem, SdcMcp *sdcMcpToAttach)
{
    SdcMol *mol = sdcMcpToAttach ? sdcMcpToAttach->getParentSdcMol() : nullptr;
    if (!mol && m_sdc)
        mol = m_sdc->toSdcMol();
    ZelEllipseItemMcp *const attachTo =
        sdcMcpToAttach ? sdcMcpToAttach->getZelEllipseItemMcp() : nullptr;
    if (!mol || (sdcMcpToAttach && !attachTo)) {
        qDebug() << "Error found at SdcMcp * ZelScene::addSdcMcp(QGraphicsEllipseItem * "
                    "referenceItem, SdcMcp * sdcMcpToAttach)";
        return nullptr;
    }
    ZelEllipseItemMcp *const item = createPlacedMcp(referenceItem, attachTo);
    if (!item)
        return nullptr;
    if (!attachTo && !mol->isEmpty())
        warnOfLooseComponent();
    const Change change(this);
    addItem(item);
    drawBackBones(item, attachTo);
    return appendMcp(mol, item);
}

SdcMcp *ZelScene::addSdcMcp(SdcMol *sdcMol, const QRectF &sceneRect)
{
    if (!sdcMol)
        return nullptr;
    const Change change(this);
    ZelEllipseItemMcp *const item = addMcp(sceneRect);
    item->setBrush(brushOf(sdcMol));
    return appendMcp(sdcMol, item);
}

SdcMcp *ZelScene::appendMcp(SdcMol *mol, ZelEllipseItemMcp *item)
{
    auto *const mcp =
        new SdcMcp(m_zelDbSqliteModel ? m_zelDbSqliteModel.data() : mol->getZelDbSqliteModel());
    item->setSdcMcp(mcp);
    mol->addSdcMcp(mcp);
    return mcp;
}

SdcBst *ZelScene::addSdcBst(SdcMcp *sdcMcp)
{
    ZelEllipseItemMcp *const mcpItem = sdcMcp ? sdcMcp->getZelEllipseItemMcp() : nullptr;
    const Change change(mcpItem ? this : nullptr);
    ZelEllipseItemBst *const item = addBst(mcpItem);
    return item ? appendBst(sdcMcp, item) : nullptr;
}

SdcBst *ZelScene::addSdcBst(SdcMcp *sdcMcp, const QRectF &sceneRect)
{
    ZelEllipseItemMcp *const mcpItem = sdcMcp ? sdcMcp->getZelEllipseItemMcp() : nullptr;
    if (!mcpItem)
        return nullptr;
    const Change change(this);
    ZelEllipseItemBst *const item = addBst(sceneRect, mcpItem);
    item->setBrush(mcpItem->brush());
    return appendBst(sdcMcp, item);
}

SdcBst *ZelScene::appendBst(SdcMcp *mcp, ZelEllipseItemBst *item)
{
    auto *const bst = new SdcBst(mcp->getZelDbSqliteModel());
    item->setSdcBst(bst);
    mcp->addSdcBst(bst);
    return bst;
}

SdcBstBstCpx *ZelScene::addSdcBstBstCpx(SdcBst *first, SdcBst *second)
{
    auto *const bond = new SdcBstBstCpx(m_zelDbSqliteModel, this);
    bond->addSdcBst(first);
    bond->addSdcBst(second);
    if (isDrawnIn(first, this) && isDrawnIn(second, this))
        addBondLine(bond, new ZelLineItemBstBstCpx(false, nullptr));
    return bond;
}

SdcBstBstCpx *ZelScene::addSdcBstBstCpx(SdcCpx *sdcCpx, SdcBst *first, SdcBst *second)
{
    if (!sdcCpx || !first || !second)
        return nullptr;
    SdcBstBstCpx *const bond = addSdcBstBstCpx(first, second);
    sdcCpx->addSdcBstBstCpx(bond);
    return bond;
}

SdcBstBst *ZelScene::makeBond(SdcBst *first, SdcBst *second)
{
    if (!first || !second)
        return nullptr;
    const auto join = [&](SdcBstBst *bond, ZelLineItemBstBst *line) {
        bond->addSdcBst(first);
        bond->addSdcBst(second);
        addBondLine(bond, line);
    };
    Sdc *const sdc = m_sdc;
    ZelDbSqliteModel *const db =
        m_zelDbSqliteModel || !sdc ? m_zelDbSqliteModel.data() : sdc->getZelDbSqliteModel();
    if (SdcMli *mli = sdc ? sdc->toSdcMli() : nullptr) {
        if (!mli->getListSdcBstBstMli().isEmpty())
            return nullptr;
        auto *const bond = new SdcBstBstMli(db, this);
        join(bond, new ZelLineItemBstBstMli(false, nullptr));
        mli->addSdcBstBstMli(bond);
        return bond;
    }
    if (SdcCxi *cxi = sdc ? sdc->toSdcCxi() : nullptr) {
        auto *const bond = new SdcBstBstCxi(db, this);
        bond->setSdcCpx1(first->getParentSdcCpx());
        bond->setSdcCpx2(second->getParentSdcCpx());
        join(bond, new ZelLineItemBstBstCxi(false, nullptr));
        cxi->addSdcBstBstCxi(bond);
        return bond;
    }
    SdcCpx *const cpx = sdc ? sdc->toSdcCpx() : nullptr;
    return addSdcBstBstCpx(cpx ? cpx : first->getParentSdcCpx(), first, second);
}

void ZelScene::addBondLine(SdcBstBst *bond, ZelLineItemBstBst *line)
{
    for (SdcBst *site : bond->getListSdcBst()) {
        if (!isDrawnIn(site, this)) {
            delete line;
            return;
        }
    }
    line->setSdc(bond);
    bond->setZelLineItemBstBst(line);
    addItem(line);
    line->updateLine();
}

void ZelScene::removeSdcMcp(SdcMcp *sdcMcp)
{
    if (!sdcMcp)
        return;
    resetPressState();
    const Change change(this);
    const QList<SdcBst *> sites = sdcMcp->getListSdcBst();
    for (SdcBst *bst : sites)
        removeBondsOf(bst);
    const QPointer<SdcMcp> mcp = sdcMcp;
    if (SdcMol *mol = sdcMcp->getParentSdcMol())
        mol->removeSdcMcp(sdcMcp);
    else if (Sdc *parentSdc = sdcMcp->getParentSdc())
        parentSdc->removeSdcChild(sdcMcp);
    if (!mcp)
        return; // a receiver of the removal was faster
    for (SdcBst *bst : mcp->getListSdcBst())
        delete bst->getZelEllipseItemBst();
    delete mcp->getZelEllipseItemMcp();
    delete mcp.data();
}

void ZelScene::removeSdcBst(SdcBst *sdcBst)
{
    if (!sdcBst)
        return;
    resetPressState();
    const Change change(this);
    removeBondsOf(sdcBst);
    const QPointer<SdcBst> bst = sdcBst;
    Sdc *const parentSdc = sdcBst->getParentSdc();
    if (SdcMcp *mcp = parentSdc ? parentSdc->toSdcMcp() : nullptr)
        mcp->removeSdcBst(sdcBst);
    if (!bst)
        return;
    delete bst->getZelEllipseItemBst();
    delete bst.data();
}

void ZelScene::removeSdcBstBst(SdcBstBst *sdcBstBst)
{
    if (!sdcBstBst)
        return;
    resetPressState();
    const Change change(this);
    QList<QPointer<SdcBst>> sites; // whose status the bond hides
    if (sdcBstBst->isSdcBstBstCpx()) {
        for (SdcBst *bst : sdcBstBst->getListSdcBst())
            sites.append(bst);
    }
    delete sdcBstBst->getZelLineItemBstBst();
    delete sdcBstBst;
    for (const QPointer<SdcBst> &bst : std::as_const(sites)) {
        if (bst)
            bst->updateDisplayBstBindingStatus();
    }
}

void ZelScene::removeAllItems()
{
    resetPressState();
    const Change change(this);
    QList<QPointer<SdcMcp>> components;
    const QList<QGraphicsItem *> all = items(Qt::AscendingOrder);
    for (QGraphicsItem *item : all) {
        ZelEllipseItemMcp *const mcpItem = ZelGItem::toZelEllipseItemMcp(item);
        SdcMcp *const mcp = mcpItem ? mcpItem->getSdcMcp() : nullptr;
        // Another drawing of the same component does not decide its fate.
        if (mcp && mcp->getZelEllipseItemMcp() == mcpItem)
            components.append(mcp);
    }
    for (const QPointer<SdcMcp> &mcp : std::as_const(components))
        removeSdcMcp(mcp);
    const QList<SdcBstBst *> bonds =
        findChildren<SdcBstBst *>(QString(), Qt::FindDirectChildrenOnly);
    for (SdcBstBst *bond : bonds)
        removeSdcBstBst(bond);
    m_lastColliding.clear();
    clear();
}

QRectF ZelScene::getSceneRectForAllItems() const
{
    QRectF rect;
    const QList<QGraphicsItem *> all = items();
    for (QGraphicsItem *item : all) {
        if (ZelEllipseItem *ellipse = ZelGItem::toZelEllipseItem(item))
            rect |= sceneRectOf(ellipse);
    }
    return rect;
}

QPointF ZelScene::getCenterPos() const
{
    const QRectF rect = getSceneRectForAllItems();
    return (rect.isNull() ? sceneRect() : rect).center();
}

QPointF ZelScene::getNewMcpDefaultScenePos(double gap) const
{
    const QRectF rect = getSceneRectForAllItems();
    if (rect.isNull())
        return sceneRect().center();
    return {rect.right() + gap, rect.center().y()};
}

// The scene is left alone, so that a place that is not found changes nothing.
ZelEllipseItemMcp *ZelScene::createPlacedMcp(QGraphicsEllipseItem *ref, ZelEllipseItemMcp *attachTo)
{
    if (!ref) {
        qDebug() << "Error found at ZelEllipseItemMcp * "
                    "ZelScene::addMcp(QGraphicsEllipseItem * ref, ZelEllipseItemMcp * attachTo)";
        return nullptr;
    }
    auto *const item = new ZelEllipseItemMcp;
    item->getConfigFromRefItem(ref);
    item->setRect(centred(item->rect().size()));
    item->setPos(ref->mapToScene(ref->rect().center()));
    if (attachTo) {
        const std::optional<QPointF> place =
            findFreePlaceAround(item, attachTo, FirstAngle, AngleStep);
        if (!place) {
            delete item;
            return nullptr;
        }
        item->setPos(*place);
        return item;
    }
    const QList<QGraphicsItem *> all = items();
    const bool first = std::none_of(all.cbegin(), all.cend(),
        [](QGraphicsItem *other) { return ZelGItem::toZelEllipseItem(other); });
    if (first)
        item->setPos(getNewMcpDefaultScenePos(DefaultGap));
    else if (collidingWithOtherSdcItems(item, QList<ZelEllipseItem *>()))
        item->setPos(
            getNewMcpDefaultScenePos(DefaultGap) + QPointF(item->rect().width() / 2.0, 0.0));
    return item;
}

void ZelScene::removeBondsOf(SdcBst *bst)
{
    const QList<SdcBstBst *> bonds = bst->getListSdcBstBst();
    for (SdcBstBst *bond : bonds)
        removeSdcBstBst(bond);
}
