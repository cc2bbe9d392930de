#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"

#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/scene/ZelSceneBondDrawing.h"
#include "zelModelSupport/graphics/scene/ZelSceneStateIdentity.h"
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
    m_leastSceneRect = sceneRect();
    connect(this, &ZelScene::signal_changed, this, &ZelSceneEditing::followContents);
    connect(this, &ZelScene::signal_changeEnd, this, &ZelSceneEditing::followContents);
    connect(this, &ZelScene::noGItemClicked, this, &ZelSceneEditing::spaceClicked);
    connect(this, &ZelScene::signal_setStickyState, this, &ZelSceneEditing::applyStickyState);
    connect(this, &ZelScene::signal_setNegation, this, &ZelSceneEditing::applyNegation);
    connect(
        this, &ZelScene::signal_setBstBindingStatus, this, &ZelSceneEditing::applyBindingStatus);
}

ZelSceneEditing::~ZelSceneEditing()
{
    if (m_selected)
        m_selected->disconnect(this);
}

void ZelSceneEditing::setSdc(Sdc *sdc)
{
    if (sdc != getSdc())
        setSelectedSdc(nullptr);
    ZelScene::setSdc(sdc);
    followContents();
}

bool ZelSceneEditing::isDrawingBond() const
{
    return m_bondDrawing->isActive();
}

QLineF ZelSceneEditing::getProvisionalLine() const
{
    return m_bondDrawing->getLine();
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
    if (site->isBound())
        return tr("Binding site \"%1\" is marked as bound, to something that is not drawn. Mark it "
                  "as unbound in its complex first.")
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
    const QPointer<ZelSceneEditing> self = this;
    {
        const Change change(this);
        QList<QPointer<SdcBst>> sites;
        if (bond->isSdcBstBstCpx()) {
            for (SdcBst *site : bond->getListSdcBst())
                sites.append(site);
        }
        removeSdcBstBst(bond);
        freeSites(sites);
    }
    if (self)
        contentsChanged();
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

void ZelSceneEditing::itemPressed(ZelGItem *item)
{
    m_siteRefused = false;
    m_raised = false;
    // A press on empty space may begin to move the view: only a click takes the selection away.
    if (Sdc *sdc = getSdcToSelect(item, m_pressScenePos))
        setSelectedSdc(sdc);
}

bool ZelSceneEditing::itemDragged(ZelGItem *item, const QPointF &scenePos)
{
    if (!isSite(item) || m_pressModifiers.testFlag(Qt::AltModifier)) {
        if (toMove() && !std::exchange(m_raised, true))
            raise(getListSdcMcpToMove(item->getSdc()));
        return false;
    }
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
        const QPointer<ZelGItem> guard = item;
        setSelectedSdc(nullptr); // until the bond is drawn, what glows is where it may end
        if (!guard)
            return true;
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
        drawBondByHand(source, target);
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
    return ellipse ? ellipse : ZelScene::getZelGItemToPress(scenePos);
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

void ZelSceneEditing::restored()
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
    emit signal_refused(reason);
}

void ZelSceneEditing::clearToLoad(Sdc *sdc)
{
    sdc->clearProperties();
    zel::state::Identity::renew(sdc); // undo is not to leave the id of what is loaded
    if (!sdc->getZelDbSqliteModel())
        sdc->setZelDbSqliteModel(getZelDbSqliteModel());
}

void ZelSceneEditing::refuseRecord(const QString &reason)
{
    emit signal_refused(reason);
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

QString ZelSceneEditing::getSiteName(SdcBst *site)
{
    QStringList names;
    if (SdcMol *mol = site->getParentSdcMol())
        names.append(mol->getProperty(SdcProperty::ShortName));
    names.append(site->bstGetDefaultName(false));
    names.removeAll(QString());
    return names.join(QLatin1String(" / "));
}
