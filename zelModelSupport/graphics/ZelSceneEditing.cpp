#include "zelModelSupport/graphics/ZelSceneEditing.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelDrawing.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelItemGeometry.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelSceneBondDrawing.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QKeyEvent>
#include <QToolTip>

#include <utility>

namespace {

QRectF jointRect(const QList<SdcMcp *> &components)
{
    QRectF rect;
    for (SdcMcp *mcp : components) {
        rect |= mcp->getSdcSceneRectF();
        for (SdcBst *bst : mcp->getListSdcBst())
            rect |= bst->getSdcSceneRectF();
    }
    return rect;
}

SdcBst *siteOf(ZelGItem *item)
{
    ZelEllipseItemBst *const bstItem = item ? item->asEllipseItemBst() : nullptr;
    return bstItem ? bstItem->getSdcBst() : nullptr;
}

bool isSite(ZelGItem *item)
{
    return item && item->isEllipseItemBst();
}

} // namespace

ZelSceneEditing::ZelSceneEditing(QObject *parent)
    : ZelScene(parent),
      m_bondDrawing(std::make_unique<ZelSceneBondDrawing>(
          this, [this](SdcBst *first, SdcBst *second) { return getBondRefusal(first, second); }))
{
    setFurtherDisplayFlag(1);
    connect(this, &ZelScene::zelGItemClicked, this, &ZelSceneEditing::itemClicked);
    connect(this, &ZelScene::noGItemClicked, this, &ZelSceneEditing::spaceClicked);
    connect(this, &ZelScene::signal_setStickyState, this, &ZelSceneEditing::applyStickyState);
    connect(this, &ZelScene::signal_setNegation, this, &ZelSceneEditing::applyNegation);
    connect(
        this, &ZelScene::signal_setBstBindingStatus, this, &ZelSceneEditing::applyBindingStatus);
}

ZelSceneEditing::~ZelSceneEditing() = default;

bool ZelSceneEditing::isDrawingBond() const
{
    return m_bondDrawing->isActive();
}

QLineF ZelSceneEditing::getProvisionalLine() const
{
    return m_bondDrawing->getLine();
}

Sdc *ZelSceneEditing::getSelectedSdc() const
{
    return m_selected;
}

void ZelSceneEditing::setSelectedSdc(Sdc *sdc)
{
    if (sdc == m_selected)
        return;
    if (m_selected)
        m_selected->setHighlight(false, true);
    m_selected = sdc;
    if (sdc)
        sdc->setHighlight(true, true);
    emit signal_selectionChanged(sdc);
}

QString ZelSceneEditing::getBondRefusal(SdcBst *first, SdcBst *second)
{
    if (!first || !second)
        return tr("A bond needs two binding sites.");
    for (SdcBst *site : {first, second}) {
        const QString reason = getSiteRefusal(site);
        if (!reason.isEmpty())
            return reason;
    }
    if (first == second)
        return tr("Binding site \"%1\" cannot bind itself.").arg(getSiteName(first));
    if (first->getParentSdcMol() == second->getParentSdcMol())
        return tr("Both binding sites belong to the same molecule. Draw the bond to a site of "
                  "another molecule.");
    const auto locationOf = [](SdcBst *site) {
        SdcMcp *const mcp = site->getParentMcp();
        return mcp ? mcp->getProperty(SdcProperty::Location) : QString();
    };
    if (locationOf(first).isEmpty() && locationOf(second).isEmpty())
        return {};
    SdcBstBst trial(nullptr);
    trial.addSdcBst(first);
    trial.addSdcBst(second);
    if (trial.isInconsistentBinding())
        return tr("Binding sites \"%1\" and \"%2\" lie on different sides of the membrane and "
                  "cannot meet. Change the location of one of their components first.")
            .arg(getSiteName(first), getSiteName(second));
    return {};
}

QString ZelSceneEditing::getSiteRefusal(SdcBst *site)
{
    if (!site || !site->getParentSdcMol())
        return tr("This binding site belongs to no molecule.");
    if (site->isInCpxBinding())
        return tr("Binding site \"%1\" is bound already. Delete its bond first.")
            .arg(getSiteName(site));
    return {};
}

bool ZelSceneEditing::isBondAllowed(SdcBst *first, SdcBst *second)
{
    return getBondRefusal(first, second).isEmpty();
}

SdcBstBst *ZelSceneEditing::drawBond(SdcBst *first, SdcBst *second)
{
    const QString reason = getBondRefusal(first, second);
    if (!reason.isEmpty()) {
        refuseBond(reason);
        return nullptr;
    }
    const QPointer<ZelSceneEditing> self = this;
    QPointer<SdcBstBst> bond;
    {
        const Change change(this);
        bond = addBond(first, second);
    }
    if (self && bond)
        contentsChanged();
    return bond;
}

void ZelSceneEditing::removeBond(SdcBstBst *bond)
{
    if (!bond)
        return;
    removeSdcBstBst(bond);
    contentsChanged();
}

Sdc *ZelSceneEditing::getUnit(Sdc *sdc)
{
    return sdc ? sdc->getParentSdcMol() : nullptr;
}

QList<Sdc *> ZelSceneEditing::getListConnectedUnits(Sdc *unit)
{
    QList<Sdc *> units;
    if (unit)
        units.append(unit);
    for (qsizetype i = 0; i < units.size(); ++i) {
        const QList<SdcBst *> sites = units.at(i)->getListSdcBst();
        for (SdcBst *site : sites) {
            for (SdcBstBst *bond : site->getListSdcBstBst()) {
                Sdc *const other = getUnit(bond->getPartnerSdcBst(site));
                if (other && !units.contains(other))
                    units.append(other);
            }
        }
    }
    return units;
}

bool ZelSceneEditing::turn(
    Sdc *unit, bool connected, const std::function<bool(const QList<SdcMcp *> &)> &act)
{
    QList<SdcMcp *> components;
    const QList<Sdc *> units = connected ? getListConnectedUnits(unit) : QList<Sdc *>{unit};
    for (Sdc *member : units) {
        if (member)
            components += member->getListSdcMcp();
    }
    const QPointer<ZelSceneEditing> self = this;
    if (!act(components))
        return false;
    if (self)
        emit signal_changed();
    return true;
}

bool ZelSceneEditing::rotateUnit(Sdc *unit, double angle, bool connected)
{
    return turn(unit, connected, [angle](const QList<SdcMcp *> &components) {
        return zgs::rotate(components, angle, true);
    });
}

bool ZelSceneEditing::flipUnit(Sdc *unit, bool connected)
{
    return turn(unit, connected,
        [](const QList<SdcMcp *> &components) { return zgs::flipY(components, true); });
}

void ZelSceneEditing::removeUnit(Sdc *unit)
{
    if (!unit)
        return;
    const QPointer<ZelSceneEditing> self = this;
    {
        const Change change(this);
        destroyUnit(unit);
    }
    if (self)
        contentsChanged();
}

void ZelSceneEditing::removeSdcMol(SdcMol *sdcMol)
{
    removeUnit(sdcMol);
}

void ZelSceneEditing::removeContents()
{
    Sdc *const sdc = getSdc();
    if (!sdc || sdc->isEmpty())
        return;
    const QPointer<ZelSceneEditing> self = this;
    {
        const Change change(this);
        QList<QPointer<Sdc>> children;
        for (Sdc *child : sdc->getListSdcChildren())
            children.append(child);
        for (const QPointer<Sdc> &child : std::as_const(children))
            destroyUnit(child);
    }
    if (self)
        contentsChanged();
}

// Receivers of the removals may be faster.
void ZelSceneEditing::destroyUnit(Sdc *unit)
{
    if (!unit)
        return;
    resetPressState();
    const QPointer<Sdc> target = unit;
    QList<QPointer<SdcMcp>> components;
    for (SdcMcp *mcp : unit->getListSdcMcp())
        components.append(mcp);
    for (const QPointer<SdcMcp> &mcp : std::as_const(components))
        removeSdcMcp(mcp);
    if (Sdc *parentSdc = target ? target->getParentSdc() : nullptr)
        parentSdc->removeSdcChild(target);
    delete target.data();
}

SdcMol *ZelSceneEditing::addMolFromDb(const QString &psiimId, const QPointF &scenePos)
{
    const QString reason = getRecordRefusal(QStringLiteral("mol"), psiimId);
    if (!reason.isEmpty()) {
        refuseRecord(reason);
        return nullptr;
    }
    const QPointer<ZelSceneEditing> self = this;
    QPointer<SdcMol> mol;
    {
        const Change change(this);
        mol = new SdcMol(getZelDbSqliteModel());
        mol->loadFromDb(psiimId, this);
        settleExclusiveFeatures(mol);
        placeAt(mol->getListSdcMcp(), scenePos);
        if (Sdc *parentSdc = mol ? getMolParent() : nullptr)
            parentSdc->addSdcChild(mol, true);
        if (mol) {
            for (SdcBst *site : mol->getListSdcBst())
                site->updateDisplayBstBindingStatus();
        }
    }
    if (self)
        contentsChanged();
    return mol;
}

bool ZelSceneEditing::addRecordFromDb(
    const QString &tag, const QString &psiimId, const QPointF &scenePos)
{
    if (tag == QLatin1String("mol"))
        return addMolFromDb(psiimId, scenePos);
    refuseRecord(getRecordRefusal(tag, psiimId));
    return false;
}

QString ZelSceneEditing::getRecordRefusal(const QString &tag, const QString &psiimId)
{
    if (isReadOnly())
        return tr("This drawing cannot be changed.");
    if (tag != QLatin1String("mol"))
        return tr("Only molecules can be added here.");
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db)
        return tr("There is no model to take a molecule from. Open a model first.");
    if (db->molGetHashInfo(psiimId).isEmpty())
        return tr("The model has no molecule \"%1\".").arg(psiimId);
    return {};
}

bool ZelSceneEditing::toMove() const
{
    ZelGItem *const pressed = getPressedItem();
    return pressed && pressed->isEllipseItemMcp();
}

bool ZelSceneEditing::allowToChangeRelativePos() const
{
    return m_pressModifiers.testFlag(Qt::AltModifier) && isSite(getPressedItem());
}

QList<SdcMcp *> ZelSceneEditing::getListSdcMcpToMove(Sdc *sdc)
{
    Sdc *const unit = getUnit(sdc);
    if (!unit)
        return ZelScene::getListSdcMcpToMove(sdc);
    if (!m_pressModifiers.testFlag(Qt::ControlModifier))
        return unit->getListSdcMcp();
    QList<SdcMcp *> components;
    const QList<Sdc *> units = getListConnectedUnits(unit);
    for (Sdc *member : units)
        components += member->getListSdcMcp();
    return components;
}

void ZelSceneEditing::itemPressed(ZelGItem *)
{
    m_siteRefused = false;
}

bool ZelSceneEditing::itemDragged(ZelGItem *item, const QPointF &scenePos)
{
    if (!isSite(item) || m_pressModifiers.testFlag(Qt::AltModifier))
        return false;
    if (m_siteRefused || !siteOf(item))
        return true;
    m_lastScenePos = scenePos;
    if (!m_bondDrawing->isActive()) {
        const QString reason = getSiteRefusal(siteOf(item));
        if (!reason.isEmpty()) {
            m_siteRefused = true;
            refuseBond(reason);
            return true;
        }
        m_bondDrawing->start(item->asEllipseItemBst());
    }
    const QString before = m_bondDrawing->getRefusal();
    m_bondDrawing->moveTo(scenePos);
    if (m_bondDrawing->getRefusal() != before)
        showAtMouse(m_bondDrawing->getRefusal(), scenePos);
    return true;
}

void ZelSceneEditing::itemReleased(ZelGItem *, const QPointF &scenePos)
{
    if (!m_bondDrawing->isActive()) {
        m_bondDrawing->reset();
        return;
    }
    m_lastScenePos = scenePos;
    m_bondDrawing->moveTo(scenePos);
    SdcBst *const source = m_bondDrawing->getSource();
    SdcBst *const target = m_bondDrawing->getTarget();
    m_bondDrawing->reset();
    if (target)
        drawBond(source, target);
}

void ZelSceneEditing::pressCancelled()
{
    m_bondDrawing->reset();
}

bool ZelSceneEditing::event(QEvent *event)
{
    // A window that opens over the view takes the release.
    if (event->type() == QEvent::WindowDeactivate && m_bondDrawing->isActive())
        resetPressState();
    return ZelScene::event(event);
}

void ZelSceneEditing::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressModifiers = event->modifiers();
        m_pressScenePos = event->scenePos();
    }
    ZelScene::mousePressEvent(event);
}

void ZelSceneEditing::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (m_bondDrawing->isActive() && !event->buttons().testFlag(Qt::LeftButton))
        resetPressState(); // its release went elsewhere
    ZelScene::mouseMoveEvent(event);
}

void ZelSceneEditing::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_bondDrawing->isActive()) {
        resetPressState();
        QToolTip::hideText();
        event->accept();
        return;
    }
    const bool deletes = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    if (deletes && m_selected && !freezeMouseActions()) {
        event->accept();
        Sdc *const selected = m_selected;
        if (SdcBstBst *bond = selected->toSdcBstBst())
            removeBond(bond);
        else
            removeUnit(selected);
        return;
    }
    ZelScene::keyPressEvent(event);
}

ZelGItem *ZelSceneEditing::getZelGItemToPress(const QPointF &scenePos) const
{
    ZelEllipseItem *const ellipse = getZelEllipseItemFromScenePos(scenePos);
    if (ellipse && ellipse->asEllipseItemBst())
        return ellipse;
    return ZelScene::getZelGItemToPress(scenePos);
}

void ZelSceneEditing::drawForeground(QPainter *painter, const QRectF &rect)
{
    ZelScene::drawForeground(painter, rect);
    m_bondDrawing->paint(painter);
}

bool ZelSceneEditing::isEditingStates() const
{
    return false;
}

Sdc *ZelSceneEditing::getMolParent()
{
    return getSdc();
}

QString ZelSceneEditing::getUnitWord() const
{
    return tr("Molecule");
}

void ZelSceneEditing::contentsChanged()
{
    emit signal_changed();
}

void ZelSceneEditing::showStates(SdcCpx *cpx)
{
    if (!cpx)
        return;
    cpx->setBstBindingStatusEnabled(isAllowedToDisplayBindingStatus());
    const QList<SdcBst *> sites = cpx->getListSdcBst();
    for (SdcBst *site : sites)
        site->updateDisplayBstBindingStatus();
}

void ZelSceneEditing::refuseBond(const QString &reason)
{
    showAtMouse(reason, m_lastScenePos);
    emit signal_bondRefused(reason);
}

void ZelSceneEditing::addBondLine(SdcBstBst *bond, ZelLineItemBstBst *line)
{
    for (SdcBst *site : bond->getListSdcBst()) {
        ZelEllipseItemBst *const item = site->getZelEllipseItemBst();
        if (!item || item->scene() != this) {
            delete line;
            return;
        }
    }
    line->setSdc(bond);
    bond->setZelLineItemBstBst(line);
    addItem(line);
    line->updateLine();
}

void ZelSceneEditing::refuseRecord(const QString &reason)
{
    emit signal_recordRefused(reason);
}

void ZelSceneEditing::showAtMouse(const QString &text, const QPointF &scenePos)
{
    const QList<QGraphicsView *> list = views();
    for (QGraphicsView *view : list) {
        if (list.size() > 1 && !view->underMouse())
            continue;
        const QPoint at = view->viewport()->mapToGlobal(view->mapFromScene(scenePos));
        if (text.isEmpty())
            QToolTip::hideText();
        else if (view->isVisible())
            QToolTip::showText(at, text, view->viewport());
        return;
    }
}

// A line is thin: it is enough to come near it.
SdcBstBst *ZelSceneEditing::getBondNear(const QPointF &scenePos) const
{
    const double reach = zel::drawing::BondClickReach;
    const QRectF around(scenePos - QPointF(reach, reach), QSizeF(2.0 * reach, 2.0 * reach));
    const QList<QGraphicsItem *> near = items(around, Qt::IntersectsItemBoundingRect);
    SdcBstBst *nearest = nullptr;
    double least = reach;
    for (QGraphicsItem *item : near) {
        ZelLineItem *const line = ZelGItem::toZelLineItem(item);
        ZelLineItemBstBst *const bondLine = line ? line->asLineItemBstBst() : nullptr;
        if (!bondLine || !bondLine->getSdcBstBst())
            continue;
        const QLineF drawn(bondLine->mapToScene(bondLine->line().p1()),
            bondLine->mapToScene(bondLine->line().p2()));
        const double distance = zel::geometry::distanceToLine(scenePos, drawn);
        if (distance <= least) {
            least = distance;
            nearest = bondLine->getSdcBstBst();
        }
    }
    return nearest;
}

void ZelSceneEditing::itemClicked(ZelGItem *item)
{
    if (ZelLineItemBstBst *line = item ? item->asLineItemBstBst() : nullptr) {
        setSelectedSdc(line->getSdcBstBst());
        return;
    }
    ZelRectItemMcpSticky *const sticky = item ? item->asRectItemMcpSticky() : nullptr;
    if (sticky)
        setSelectedSdc(getUnit(sticky->getSdcMcp()));
    else
        setSelectedSdc(getUnit(item ? item->getSdc() : nullptr));
}

void ZelSceneEditing::spaceClicked()
{
    setSelectedSdc(getBondNear(m_pressScenePos));
}

// The nearest place is looked for on rings about the wanted one.
void ZelSceneEditing::placeAt(const QList<SdcMcp *> &components, const QPointF &scenePos)
{
    const QRectF rect = jointRect(components);
    if (rect.isNull())
        return;
    QList<QRectF> taken;
    const QList<QGraphicsItem *> all = items();
    for (QGraphicsItem *item : all) {
        ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(item);
        ZelEllipseItemMcp *const centre = getCenterZelEllipseMcp(ellipse);
        if (ellipse && !(centre && components.contains(centre->getSdcMcp())))
            taken.append(ellipse->mapRectToScene(ellipse->rect()));
    }
    QRectF wanted = rect;
    wanted.moveCenter(scenePos);
    const QRectF place = zel::geometry::freePlace(
        wanted, taken, zel::drawing::PlacingGap, zel::drawing::PlacingStep);
    moveListSdcMcps(components, place.center() - rect.center());
}

QString ZelSceneEditing::getSiteName(SdcBst *site)
{
    QStringList names;
    if (SdcMol *mol = site->getParentSdcMol())
        names.append(mol->getProperty(SdcProperty::ShortName));
    names.append(site->bstGetDefaultName(false));
    names.removeAll(QString());
    return names.join(QLatin1String(" / "));
}
