#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTagSet.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QColor>
#include <QDebug>
#include <QStringList>

namespace {

/// Ends what ties a set or feature to the component, unless it is another one's by now.
template <typename T>
void release(T *member, const SdcMcp *mcp)
{
    if (member && member->getParentSdcMcp() == mcp)
        member->setParentSdcMcp(nullptr);
}

} // namespace

SdcMcp::SdcMcp(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::Mcp, QStringLiteral("Molecule component"))
{
}

SdcMcp::~SdcMcp()
{
    for (const QPointer<SdcMcpTag> &tag : std::as_const(m_tags))
        release(tag.data(), this);
    removeSdcBstSet();
    removeSdcMcpTagSet();
}

void SdcMcp::setZelEllipseItemMcp(ZelEllipseItemMcp *item)
{
    m_zelEllipseItemMcp = item;
}

ZelEllipseItemMcp *SdcMcp::getZelEllipseItemMcp() const
{
    return m_zelEllipseItemMcp;
}

void SdcMcp::setTagDirectionCode(int code)
{
    m_tagDirectionCode = code;
}

void SdcMcp::setTagSize(double size)
{
    m_tagSize = size;
}

void SdcMcp::setTagGap(double gap)
{
    m_tagGap = gap;
}

void SdcMcp::changeTagDirectionCode(int directionChageType)
{
    // Rows: step forward, step backward, mirror; columns: sides 1 to 4.
    static constexpr int next[3][4] = {{2, 3, 4, 1}, {4, 1, 2, 3}, {3, 2, 1, 4}};
    if (directionChageType < 0 || directionChageType > 2) {
        qDebug() << "Error found at void SdcMcp::changeTagDirectionCode(int directionChageType)";
        return;
    }
    if (m_tagDirectionCode < 0 || m_tagDirectionCode > 4) {
        qDebug() << "Error plug90 at void SdcMcp::changeTagDirectionCode(int directionChageType)";
        return;
    }
    m_tagDirectionCode = next[directionChageType][std::max(m_tagDirectionCode, 1) - 1];
}

SdcBstSet *SdcMcp::getSdcBstSet() const
{
    return m_bstSet;
}

void SdcMcp::setSdcBstSet(SdcBstSet *set)
{
    if (set == m_bstSet)
        return;
    removeSdcBstSet();
    if (SdcMcp *old = set ? set->getParentSdcMcp() : nullptr; old && old->m_bstSet == set)
        old->removeSdcBstSet();
    m_bstSet = set;
    if (set)
        set->setParentSdcMcp(this);
}

void SdcMcp::removeSdcBstSet()
{
    release(m_bstSet.data(), this);
    m_bstSet.clear();
}

SdcMcpTagSet *SdcMcp::getSdcMcpTagSet() const
{
    return m_tagSet;
}

void SdcMcp::setSdcMcpTagSet(SdcMcpTagSet *set)
{
    if (set == m_tagSet)
        return;
    removeSdcMcpTagSet();
    if (SdcMcp *old = set ? set->getParentSdcMcp() : nullptr; old && old->m_tagSet == set)
        old->removeSdcMcpTagSet();
    m_tagSet = set;
    if (set)
        set->setParentSdcMcp(this);
}

void SdcMcp::removeSdcMcpTagSet()
{
    release(m_tagSet.data(), this);
    m_tagSet.clear();
}

void SdcMcp::addSdcBst(SdcBst *sdcBst)
{
    if (!sdcBst)
        return;
    addSdcChild(sdcBst, true);
    if (m_bstSet)
        m_bstSet->addSdcBst(sdcBst);
}

void SdcMcp::removeSdcBst(SdcBst *sdcBst)
{
    if (!sdcBst || !sdcChildren().contains(sdcBst))
        return;
    removeSdcChild(sdcBst);
    if (m_bstSet)
        m_bstSet->removeSdcBst(sdcBst);
    emit sdcBstRemoved(sdcBst);
}

void SdcMcp::addSdcTag(SdcMcpTag *tag)
{
    m_tags.removeAll(nullptr);
    if (tag && !m_tags.contains(tag))
        m_tags.append(tag);
}

void SdcMcp::removeSdcTag(SdcMcpTag *tag)
{
    m_tags.removeAll(tag);
}

QList<SdcMcpTag *> SdcMcp::getListSdcMcpTags() const
{
    QList<SdcMcpTag *> list;
    list.reserve(m_tags.size());
    for (const QPointer<SdcMcpTag> &tag : m_tags) {
        if (tag)
            list.append(tag);
    }
    return list;
}

bool SdcMcp::isUniqueTag(const QString &name, SdcMcpTag *except) const
{
    const QString wanted = name.trimmed();
    if (wanted.isEmpty())
        return false;
    return std::none_of(m_tags.cbegin(), m_tags.cend(), [&](const QPointer<SdcMcpTag> &tag) {
        return tag && tag != except && tag->getProperty(SdcProperty::ShortName).trimmed() == wanted;
    });
}

void SdcMcp::addTag(const QString &name, const QString &colorName)
{
    addTag(name, colorName, true);
}

SdcMcpTag *SdcMcp::addTag(const QString &name, const QString &colorName, bool layout)
{
    if (!m_zelEllipseItemMcp) {
        qDebug() << "Error found at void SdcMcp::addTag(const QString & name, const QString & "
                    "colourName): no ellipse item";
        return nullptr;
    }
    auto *sticky = new ZelRectItemMcpSticky(getZelDbSqliteModel());
    if (const QColor color(colorName); color.isValid())
        sticky->setColor(color, sticky->getStateType() == ComponentStateOn);
    SdcMcpTag *const tag = sticky->getSdcMcpTag();
    tag->setParentSdcMcp(this);
    tag->setProperty(SdcProperty::ShortName, name);
    addSdcTag(tag);
    if (m_tagSet)
        m_tagSet->addSdcMcpTag(tag);
    m_zelEllipseItemMcp->addStateSticky(sticky, false);
    if (layout)
        m_zelEllipseItemMcp->updateLayoutOfListStateSticky(true);
    return tag;
}

QList<ZelRectItemMcpSticky *> SdcMcp::getListSticky() const
{
    return m_zelEllipseItemMcp ? m_zelEllipseItemMcp->getListSticky()
                               : QList<ZelRectItemMcpSticky *>();
}

void SdcMcp::setAllStickyState(int state)
{
    for (ZelRectItemMcpSticky *sticky : getListSticky()) {
        if (sticky)
            sticky->setStateType(state, false);
    }
}

bool SdcMcp::hasMultipleTagsNotDontCare() const
{
    const QList<ZelRectItemMcpSticky *> list = getListSticky();
    return std::count_if(list.cbegin(), list.cend(), [](ZelRectItemMcpSticky *sticky) {
        return sticky && sticky->getStateType() != ComponentStateDontCare;
    }) >= 2;
}

QString SdcMcp::getMcpStateCode() const
{
    QStringList entries;
    for (ZelRectItemMcpSticky *sticky : getListSticky()) {
        if (!sticky)
            continue;
        QString entry = sticky->getName();
        if (sticky->getStateType() == ComponentStateDontCare)
            entry += QLatin1String("(0)");
        else if (sticky->getStateType() == ComponentStateOff)
            entry += QLatin1String("(-)");
        entries.append(entry);
    }
    return entries.join(u';');
}

void SdcMcp::updateStatePropertyFromSticky()
{
    ZelDbSqliteModel *const db = m_zelEllipseItemMcp ? getZelDbSqliteModel() : nullptr;
    updateStatePropertyFromSticky(
        db && !getPsiimId().isEmpty() ? db->mcpGetOrderedStateNames(getPsiimId()) : QStringList());
}

void SdcMcp::updateStatePropertyFromSticky(const QStringList &storedNames)
{
    if (!m_zelEllipseItemMcp)
        return;
    const QList<ZelRectItemMcpSticky *> list = getListSticky();
    for (qsizetype i = 0; i < list.size() && i < storedNames.size(); ++i) {
        const QString &name = storedNames.at(i);
        if (list.at(i) && !name.isEmpty() && name != list.at(i)->getName())
            qDebug() << "name = " << list.at(i)->getName() << ", and dbName = " << name;
    }
    setProperty(SdcProperty::StateCode, getMcpStateCode());
}

void SdcMcp::updateStickyFromDbAsActivated()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!m_zelEllipseItemMcp || !db) {
        qDebug() << "Error found at void SdcMcp::updateStickyFromDbAsActivated()";
        return;
    }
    const auto states = db->mcpGetOrderedStates(getPsiimId());
    // One sticky per stored state, matched by name; the row takes the stored order.
    QList<ZelRectItemMcpSticky *> ordered;
    for (const ZelDbState &state : states) {
        ZelRectItemMcpSticky *sticky = m_zelEllipseItemMcp->getSticky(state.name);
        if (!sticky) {
            SdcMcpTag *const tag = addTag(state.name, state.color, false);
            sticky = tag->getZelRectItemMcpSticky();
        }
        ordered.append(sticky);
    }
    const QList<ZelRectItemMcpSticky *> present = getListSticky();
    for (ZelRectItemMcpSticky *sticky : present) {
        if (ordered.contains(sticky))
            continue;
        if (!sticky || !sticky->getSdcMcpTag())
            qDebug() << "Error found at void SdcMcp::updateStickyFromDbAsActivated()";
        m_zelEllipseItemMcp->removeStateSticky(sticky);
    }
    m_zelEllipseItemMcp->setStickyOrder(ordered);
    QList<QPointer<SdcMcpTag>> tags;
    for (ZelRectItemMcpSticky *sticky : std::as_const(ordered)) {
        sticky->setStateType(ComponentStateOn, false);
        if (SdcMcpTag *tag = sticky->getSdcMcpTag(); tag && m_tags.contains(tag))
            tags.append(tag);
    }
    m_tags = tags;
    m_zelEllipseItemMcp->updateLayoutOfListStateSticky(true);
}

void SdcMcp::updateMcpNot()
{
    if (m_zelEllipseItemMcp)
        m_zelEllipseItemMcp->setNotIndicatorVisible(getProperty(SdcProperty::Negation) == u'1');
}

QList<SdcMcp *> SdcMcp::getListNeighborSdcMcps() const
{
    QList<SdcMcp *> list;
    if (!m_zelEllipseItemMcp)
        return list;
    const auto items = m_zelEllipseItemMcp->getListNeighborZelEllipseItemMcp();
    for (ZelEllipseItemMcp *item : items) {
        SdcMcp *const mcp = item ? item->getSdcMcp() : nullptr;
        if (mcp && !list.contains(mcp))
            list.append(mcp);
    }
    return list;
}

int SdcMcp::getNumOfNeigbhors() const
{
    return static_cast<int>(getListNeighborSdcMcps().size());
}

QHash<Sdc *, double> SdcMcp::getHashSdc2AngleAroundThis()
{
    QHash<Sdc *, double> angles;
    if (!m_zelEllipseItemMcp)
        return angles;
    for (SdcMcp *mcp : getListNeighborSdcMcps())
        angles.insert(mcp, mcp->getZelEllipseItemMcp()->getAtan2(m_zelEllipseItemMcp));
    for (SdcBst *bst : getListSdcBst()) {
        if (ZelEllipseItemBst *item = bst->getZelEllipseItemBst())
            angles.insert(bst, item->getAtan2(m_zelEllipseItemMcp));
    }
    return angles;
}

SdcMol *SdcMcp::getParentSdcMol()
{
    Sdc *const parentSdc = getParentSdc();
    return parentSdc ? parentSdc->toSdcMol() : nullptr;
}

QRectF SdcMcp::getSdcSceneRectF()
{
    return m_zelEllipseItemMcp ? m_zelEllipseItemMcp->mapRectToScene(m_zelEllipseItemMcp->rect())
                               : QRectF();
}

bool SdcMcp::isEmpty()
{
    return false;
}

void SdcMcp::updateHighlight()
{
    if (m_zelEllipseItemMcp)
        m_zelEllipseItemMcp->setHighlight(isHighlighted());
}

SdcMcp *SdcMcp::toSdcMcp()
{
    return this;
}

bool SdcMcp::isSdcMcp() const
{
    return true;
}

ZelEllipseItem *SdcMcp::getZelEllipseItem()
{
    return m_zelEllipseItemMcp;
}

void SdcMcp::setAllMcpFeatureValue(ComponentStateType value)
{
    setAllStickyState(value);
    updateStatePropertyFromSticky();
}

void SdcMcp::setHighlight(bool status, bool extendable)
{
    Sdc::setHighlight(status, extendable);
    updateHighlight();
}
