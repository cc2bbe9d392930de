#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelRectItemWithText.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"

#include <QBrush>
#include <QDebug>
#include <QGraphicsScene>
#include <QSet>

namespace {

template <typename T>
bool isUniqueName(const QList<T *> &list, const QString &name, T *except)
{
    if (name.isEmpty())
        return false;
    return std::none_of(list.cbegin(), list.cend(), [&](T *entry) {
        return entry != except && entry->getProperty(SdcProperty::ShortName) == name;
    });
}

template <typename T>
bool areNamesConsistent(const QList<T *> &list)
{
    QSet<QString> seen;
    for (T *entry : list) {
        const QString name = entry->getProperty(SdcProperty::ShortName);
        if (name.isEmpty() || seen.contains(name))
            return false;
        seen.insert(name);
    }
    return true;
}

void setBrushColor(QAbstractGraphicsShapeItem *item, const QColor &color)
{
    if (!item)
        return;
    QBrush brush = item->brush();
    brush.setColor(color);
    if (brush.style() == Qt::NoBrush) // which would show no colour at all
        brush.setStyle(Qt::SolidPattern);
    item->setBrush(brush);
}

} // namespace

SdcMol::SdcMol(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Mol, QStringLiteral("Molecule"))
{
}

SdcMol::~SdcMol()
{
    hideIndexCode();
    deleteItemsInNoScene();
}

void SdcMol::addSdcMcp(SdcMcp *mcp)
{
    addSdcChild(mcp, true);
}

void SdcMol::removeSdcMcp(SdcMcp *mcp)
{
    if (!mcp || !sdcChildren().contains(mcp))
        return;
    removeSdcChild(mcp);
    emit sdcMcpRemoved(mcp);
}

void SdcMol::removeSdcMcpAtIndex(int index)
{
    if (index >= 0 && index < sdcChildren().size())
        removeSdcMcp(getSdcMcpAtIndex(index));
}

SdcMcp *SdcMol::getSdcMcpAtIndex(int index)
{
    Sdc *const child = getChildSdcAtIndex(index);
    return child ? child->toSdcMcp() : nullptr;
}

SdcMcp *SdcMol::getSdcMcpWithPsiimId(const QString &psiimId)
{
    for (SdcMcp *mcp : getListSdcMcp()) {
        if (mcp->getPsiimId() == psiimId)
            return mcp;
    }
    return nullptr;
}

SdcBst *SdcMol::getSdcBstFromPsiimId(const QString &psiimId)
{
    for (SdcBst *bst : getListSdcBst()) {
        if (bst->getPsiimId() == psiimId)
            return bst;
    }
    return nullptr;
}

bool SdcMol::isUniqueMcpName(const QString &name, SdcMcp *except)
{
    return isUniqueName(getListSdcMcp(), name, except);
}

bool SdcMol::isUniqueBstName(const QString &name, SdcBst *except)
{
    return isUniqueName(getListSdcBst(), name, except);
}

bool SdcMol::isConsistentMcpNames()
{
    return areNamesConsistent(getListSdcMcp());
}

bool SdcMol::isConsistentBstNames()
{
    return areNamesConsistent(getListSdcBst());
}

QColor SdcMol::getMolColor()
{
    if (rowCount() == 0)
        return {};
    const QList<SdcMcp *> list = getListSdcMcp();
    ZelEllipseItemMcp *const item = list.isEmpty() ? nullptr : list.first()->getZelEllipseItemMcp();
    return item ? item->brush().color() : QColor();
}

void SdcMol::setMolColor(const QString &name)
{
    const QColor color(name);
    if (!color.isValid())
        return;
    m_color = color;
    for (SdcMcp *mcp : getListSdcMcp())
        setBrushColor(mcp->getZelEllipseItemMcp(), color);
    for (SdcBst *bst : getListSdcBst()) {
        setBrushColor(bst->getZelEllipseItemBst(), color);
        bst->updateDisplayBstBindingStatus(); // the mark's pens depend on the brush
    }
    setProperty(SdcProperty::Color, color.name());
}

void SdcMol::showIndexCode(bool show, const QString &code, int count)
{
    QGraphicsScene *const scene = getScene();
    if (!scene)
        return;
    hideIndexCode();
    if (!show)
        return;
    const int number = code.toInt();
    const int hue = count > 0 ? std::clamp(360 / count * number, 0, 359) : 0;
    m_indexCodeItem = new ZelRectItemWithText(nullptr);
    m_indexCodeItem->setRect(getSdcSceneRectF());
    m_indexCodeItem->setBrush(QBrush(QColor::fromHsl(hue, 100, 60, 255), Qt::SolidPattern));
    m_indexCodeItem->setOpacity(0.5);
    m_indexCodeItem->setText(QString::number(number));
    scene->addItem(m_indexCodeItem);
    double top = 0.0;
    const QList<QGraphicsItem *> below = scene->collidingItems(m_indexCodeItem);
    for (QGraphicsItem *item : below)
        top = std::max(top, item->zValue());
    m_indexCodeItem->setZValue(top + 0.5);
    keepIndexCode();
}

void SdcMol::hideIndexCode()
{
    if (!m_indexCodeItem)
        return;
    m_indexCodeItem->hide();
    if (QGraphicsScene *scene = m_indexCodeItem->scene())
        scene->removeItem(m_indexCodeItem);
    delete m_indexCodeItem;
}

void SdcMol::keepIndexCode()
{
    if (!m_indexCodeItem)
        return;
    if (m_indexCodeItem->scene() != getScene()) {
        hideIndexCode();
        return;
    }
    for (SdcMcp *mcp : getListSdcMcp()) {
        ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
        if (!item)
            continue;
        connect(item, &ZelEllipseItemMcp::sceneChanged, this, &SdcMol::keepIndexCode,
            Qt::UniqueConnection);
        connect(item, &QObject::destroyed, this, &SdcMol::keepIndexCode, Qt::UniqueConnection);
    }
}

void SdcMol::synchronizeBindingStatus(SdcMol *other, const QList<SdcBst *> &excluded, bool both)
{
    if (!other)
        return;
    const QList<SdcBst *> sites = getListSdcBst();
    const QList<SdcBst *> otherSites = other->getListSdcBst();
    if (sites.size() != otherSites.size()) {
        qDebug() << "Error 1 found at void SdcMol::synchronizeBindingStatus(SdcMol * sdcMol)";
        return;
    }
    for (qsizetype i = 0; i < sites.size(); ++i) {
        SdcBst *const s = sites.at(i);
        SdcBst *const t = otherSites.at(i);
        if (excluded.contains(s) || excluded.contains(t))
            continue;
        s->setAllowChangeBindingStatus(true);
        t->setAllowChangeBindingStatus(true);
        if (s->getPsiimId() != t->getPsiimId()) {
            qDebug() << "Error 2 found at void SdcMol::synchronizeBindingStatus(SdcMol * sdcMol)";
            return;
        }
        if (t->isInCpxBinding() && !s->isInCpxBinding()) {
            s->setBindingStatus(BindingStatusUnbound);
            s->setAllowChangeBindingStatus(false);
        } else {
            s->setBindingStatus(t->getBindingStatus());
        }
        if (both && s->isInCpxBinding() && !t->isInCpxBinding()) {
            t->setBindingStatus(BindingStatusUnbound);
            t->setAllowChangeBindingStatus(false);
        }
    }
}

void SdcMol::synchronizeMcpTagStates(SdcMol *other, bool half)
{
    if (!other)
        return;
    const QList<SdcMcp *> mcps = getListSdcMcp();
    const QList<SdcMcp *> otherMcps = other->getListSdcMcp();
    if (mcps.size() != otherMcps.size()) {
        qDebug() << "Error 1 found at void SdcMol::synchronizeMcpTagStates(SdcMol * sdcMol)";
        return;
    }
    for (qsizetype i = 0; i < mcps.size(); ++i) {
        SdcMcp *const mcp = mcps.at(i);
        SdcMcp *const otherMcp = otherMcps.at(i);
        if (mcp->getPsiimId() != otherMcp->getPsiimId()) {
            qDebug() << "Error 2 found at void SdcMol::synchronizeMcpTagStates(SdcMol * sdcMol)";
            return;
        }
        ZelEllipseItemMcp *const otherItem = otherMcp->getZelEllipseItemMcp();
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky()) {
            ZelRectItemMcpSticky *const partner =
                otherItem && sticky ? otherItem->getSticky(sticky->getName()) : nullptr;
            if (partner) // a feature that the other lacks keeps its state
                sticky->setStateType(partner->getStateType(), half);
        }
        const QString negation = otherMcp->getProperty(SdcProperty::Negation);
        if (mcp->getProperty(SdcProperty::Negation) != negation) {
            mcp->setProperty(SdcProperty::Negation, negation);
            mcp->updateMcpNot();
        }
        mcp->updateStatePropertyFromSticky();
    }
}

int SdcMol::countSitesBefore(int mcpIndex)
{
    if (mcpIndex <= 0)
        return 0;
    const int index = std::min(mcpIndex, static_cast<int>(sdcChildren().size()));
    if (m_sitesBefore.empty())
        m_sitesBefore.push_back(0);
    while (static_cast<int>(m_sitesBefore.size()) <= index) {
        Sdc *const before = sdcChildren().at(static_cast<qsizetype>(m_sitesBefore.size()) - 1);
        const int count = before ? static_cast<int>(before->getListSdcChildren().size()) : 0;
        m_sitesBefore.push_back(m_sitesBefore.back() + count);
    }
    return m_sitesBefore.at(static_cast<std::size_t>(index));
}

void SdcMol::renumberSites(int begin, int end)
{
    const QList<Sdc *> list = sdcChildren();
    const int stop = end < 0 ? static_cast<int>(list.size()) : end;
    for (int i = std::max(begin, 0); i < stop && i < list.size(); ++i) {
        if (!list.at(i))
            continue;
        for (SdcBst *bst : list.at(i)->getListSdcBst())
            bst->updatePosIndex();
    }
}

void SdcMol::siteCountsChangedFrom(int mcpIndex)
{
    const auto known = static_cast<std::size_t>(std::max(mcpIndex, 0)) + 1;
    if (m_sitesBefore.size() > known)
        m_sitesBefore.resize(known);
}

void SdcMol::updatePosIndex()
{
    Sdc::updatePosIndex();
    renumberSites(0);
}

void SdcMol::reset()
{
    deleteItemsInNoScene();
    Sdc::reset();
}

SdcMol *SdcMol::toSdcMol()
{
    return this;
}

bool SdcMol::isSdcMol() const
{
    return true;
}

void SdcMol::setAllMcpFeatureValue(ComponentStateType value)
{
    for (SdcMcp *mcp : getListSdcMcp())
        mcp->setAllMcpFeatureValue(value);
}

QString SdcMol::storageObstacle()
{
    const QList<SdcMcp *> mcps = getListSdcMcp();
    for (SdcMcp *mcp : mcps) {
        QSet<QString> names;
        const QList<SdcMcpTag *> tags = mcp->getListSdcMcpTags();
        for (const SdcMcpTag *tag : tags) {
            ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
            if (!sticky) // only what is drawn is stored
                continue;
            if (names.contains(sticky->getName()))
                return QStringLiteral(
                    "component '%1' has two features named '%2', rename one of them")
                    .arg(mcp->getProperty(SdcProperty::ShortName), sticky->getName());
            names.insert(sticky->getName());
        }
    }
    return {};
}

void SdcMol::adoptItemInNoScene(ZelEllipseItemMcp *item)
{
    if (item && !m_itemsInNoScene.contains(item))
        m_itemsInNoScene.append(item);
}

void SdcMol::deleteItemsInNoScene()
{
    const auto items = std::exchange(m_itemsInNoScene, {});
    for (const QPointer<ZelEllipseItemMcp> &item : items) {
        if (!item || item->scene())
            continue;
        // A component that has moved to another molecule takes its drawing along.
        SdcMcp *const mcp = item->getSdcMcp();
        SdcMol *const mol = mcp ? mcp->getParentSdcMol() : nullptr;
        if (mol && mol != this)
            mol->m_itemsInNoScene.append(item);
        else
            delete item.data();
    }
}
