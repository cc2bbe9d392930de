#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDebug>
#include <QDomDocument>
#include <QGraphicsScene>
#include <QMetaObject>
#include <QStandardItemModel>

#include <algorithm>

namespace {

QString layoutNumber(double value)
{
    return QString::number(value, 'g', 6);
}

template <typename T>
void sortByPsiimId(QList<T *> &list)
{
    std::vector<std::pair<QString, T *>> keyed;
    keyed.reserve(static_cast<std::size_t>(list.size()));
    for (T *entry : std::as_const(list))
        keyed.emplace_back(entry ? entry->getPsiimId() : QString(), entry);
    std::stable_sort(
        keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (qsizetype i = 0; i < list.size(); ++i)
        list[i] = keyed[static_cast<std::size_t>(i)].second;
}

} // namespace

Sdc::Sdc(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent)
    : Sdc(zelDbSqliteModel, parent, SdcType::None, QString())
{
}

// What setSdcType(), setSdcName() and an empty short name leave behind, written once.
Sdc::Sdc(ZelDbSqliteModel *zelDbSqliteModel, QObject *parent, int type, const QString &name)
    : QObject(parent), m_zelDbSqliteModel(zelDbSqliteModel), m_sdcType(type), m_sdcName(name)
{
    m_properties.emplace_back(SdcProperty::ShortName, QString());
    if (type != SdcType::McpTagSet && type != SdcType::BstSet)
        Sdc::updateStandardItemText();
}

Sdc::~Sdc()
{
    m_dying = true;
    for (Sdc *child : std::as_const(m_children)) {
        if (child && child->m_parentSdc == this)
            child->m_parentSdc.clear();
    }
    m_children.clear();
    while (rowCount() > 0)
        qDeleteAll(takeRow(rowCount() - 1));
    leaveItemParent();
    if (m_parentSdc)
        m_parentSdc->forgetDyingChild(this);
}

int Sdc::getPosIndex() const
{
    if (!m_parentSdc)
        return -1;
    const QList<Sdc *> siblings = m_parentSdc->getListSdcChildren();
    if (m_indexHint < 0 || m_indexHint >= siblings.size() || siblings.at(m_indexHint) != this)
        m_indexHint = static_cast<int>(siblings.indexOf(const_cast<Sdc *>(this)));
    return m_indexHint;
}

Sdc *Sdc::getParentSdc()
{
    return m_parentSdc;
}

Sdc *Sdc::getTopParentSdc()
{
    return m_parentSdc ? m_parentSdc->getTopParentSdc() : this;
}

QString Sdc::getProperty(int key) const
{
    for (const auto &[k, value] : m_properties) {
        if (k == key)
            return value;
    }
    return {};
}

int Sdc::getSdcType() const
{
    return m_sdcType;
}

bool Sdc::isHighlighted()
{
    return m_highlighted;
}

void Sdc::setProperty(int key, const QString &value)
{
    const QString old = getProperty(key);
    const auto at = std::find_if(m_properties.begin(), m_properties.end(),
        [key](const auto &entry) { return entry.first == key; });
    if (at == m_properties.end())
        m_properties.emplace_back(key, value);
    else
        at->second = value;
    if (key == SdcProperty::ShortName)
        updateStandardItemText();
    if (old != value) {
        emit propertyChanged(key, value);
        setChanged();
    }
}

void Sdc::clearProperty(int key)
{
    std::erase_if(m_properties, [key](const auto &entry) { return entry.first == key; });
}

QRectF Sdc::getBoundingRect(const QPointF &pos)
{
    return {pos, QSizeF(0.0, 0.0)};
}

QList<Sdc *> Sdc::getListSdcChildren()
{
    return m_children;
}

void Sdc::addSdcChild(Sdc *child, bool addToItemModel)
{
    m_children.append(child);
    if (!child)
        return;
    const int index = static_cast<int>(m_children.size()) - 1;
    if (child->m_parentSdc != this)
        child->m_indexHint = index;
    child->setParentSdc(this);
    childListChangedFrom(index);
    if (addToItemModel) {
        removeEmptyRows();
        if (QStandardItem *old = child->QStandardItem::parent())
            old->takeRow(child->row());
        else if (child->model())
            child->model()->takeRow(child->row());
        insertRow(rowCount(), child);
        child->setEditable(false);
    }
    notifyChildSdcAdded(child);
    child->updatePosIndex();
    if (SdcMol *mol = toSdcMol()) {
        mol->renumberSites(index, index + 1);
    } else if (isSdcMcp()) {
        if (SdcMol *parentMol = getParentSdcMol())
            parentMol->renumberSites(getPosIndex() + 1);
    }
    setChanged();
}

void Sdc::removeSdcChild(Sdc *child)
{
    const int index = static_cast<int>(m_children.indexOf(child));
    m_children.removeAll(child);
    if (index >= 0)
        childListChangedFrom(index);
    removeEmptyRows();
    if (child && child->QStandardItem::parent() == this)
        takeRow(child->row());
    const QList<Sdc *> remaining = m_children;
    for (Sdc *sibling : remaining) {
        if (sibling)
            sibling->updatePosIndex();
    }
    if (SdcMol *mol = toSdcMol()) {
        mol->renumberSites(std::max(index, 0));
    } else if (isSdcMcp()) {
        if (SdcMol *parentMol = getParentSdcMol())
            parentMol->renumberSites(getPosIndex() + 1);
    }
    setChanged();
}

void Sdc::setParentSdc(Sdc *parentSdc)
{
    m_parentSdc = parentSdc;
}

bool Sdc::hasSdcChild() const
{
    return !m_children.isEmpty();
}

void Sdc::removeSelfFromParent()
{
    Sdc *const old = m_parentSdc;
    if (!old)
        return;
    setParentSdc(nullptr);
    old->removeSdcChild(this);
}

QString Sdc::getPsiimId() const
{
    return getProperty(SdcProperty::PsiimId);
}

void Sdc::updatePosIndex()
{
    updateStandardItemText();
}

void Sdc::updateStandardItemText()
{
    if (isSdcMcpTagSet() || isSdcBstSet())
        return;
    QString label = getProperty(SdcProperty::ShortName).trimmed();
    if (label.isEmpty())
        label = QStringLiteral("ShortName not defined");
    QString index;
    if (m_parentSdc) {
        SdcBst *const bst = toSdcBst();
        index = u' ' + QString::number(bst ? bst->getDisplayIndex() : getPosIndex() + 1);
    }
    setText(m_sdcName + index + QLatin1String(": ") + label);
}

Sdc *Sdc::getChildSdcAtIndex(int index)
{
    return index >= 0 && index < m_children.size() ? m_children.at(index) : nullptr;
}

Sdc *Sdc::getChildSdcFromPsiimId(const QString &psiimId, int n)
{
    if (psiimId.isEmpty())
        return nullptr;
    int found = 0;
    for (Sdc *child : std::as_const(m_children)) {
        if (child && child->getPsiimId() == psiimId && ++found == n)
            return child;
    }
    return nullptr;
}

QList<SdcMcp *> Sdc::getListSdcMcp()
{
    QList<SdcMcp *> list;
    if (isSdcMcp())
        list.append(toSdcMcp());
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            list += child->getListSdcMcp();
    }
    return list;
}

QList<SdcBst *> Sdc::getListSdcBst()
{
    QList<SdcBst *> list;
    if (isSdcBst())
        list.append(toSdcBst());
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            list += child->getListSdcBst();
    }
    return list;
}

QList<SdcMol *> Sdc::getListSdcMol()
{
    QList<SdcMol *> list;
    if (isSdcMol())
        list.append(toSdcMol());
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            list += child->getListSdcMol();
    }
    return list;
}

QList<SdcCpx *> Sdc::getListSdcCpx()
{
    QList<SdcCpx *> list;
    if (isSdcCpx())
        list.append(toSdcCpx());
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            list += child->getListSdcCpx();
    }
    return list;
}

SdcCpx *Sdc::getParentSdcCpx()
{
    if (!m_parentSdc)
        return nullptr;
    if (SdcCpx *cpx = m_parentSdc->toSdcCpx())
        return cpx;
    return m_parentSdc->getParentSdcCpx();
}

SdcMol *Sdc::getParentSdcMol()
{
    return nullptr;
}

QString Sdc::getSdcName() const
{
    return m_sdcName;
}

QString Sdc::getDisplayName(bool withName, bool withIndex) const
{
    QString text;
    if (withName)
        text += m_sdcName;
    if (withIndex) {
        if (withName)
            text += u' ';
        text += QString::number(getPosIndex() + 1);
    }
    if (withName || withIndex)
        text += QLatin1String(": ");
    return text + getProperty(SdcProperty::ShortName);
}

QString Sdc::getGraphicsInfo()
{
    QDomDocument doc(QStringLiteral("doc"));
    QDomElement root = doc.createElement(QStringLiteral("schema"));
    doc.appendChild(root);
    recordGraphicsInfoToDomDoc(doc, root, QPointF(0.0, 0.0));
    return doc.toString(1);
}

void Sdc::recordGraphicsInfoToDomDoc(
    QDomDocument &doc, QDomElement &parentElement, const QPointF &refPos)
{
    const QString tag = getDomXmlTag();
    if (tag.isEmpty())
        return; // an element without a name cannot be written
    QDomElement element = doc.createElement(tag);
    parentElement.appendChild(element);
    element.setAttribute(QStringLiteral("psiimId"), getPsiimId());
    if (const int index = getPosIndex(); index >= 0)
        element.setAttribute(QStringLiteral("posIndex"), QString::number(index));
    element.setAttribute(QStringLiteral("sdcType"), QString::number(getSdcType()));
    if (SdcMcp *mcp = toSdcMcp()) {
        if (const int code = mcp->getTagDirectionCode(); code != 0)
            element.setAttribute(QStringLiteral("tagDirectCode"), QString::number(code));
        element.setAttribute(QStringLiteral("tagSize"), layoutNumber(mcp->getTagSize()));
        element.setAttribute(QStringLiteral("tagGap"), layoutNumber(mcp->getTagGap()));
    }
    const QRectF rect = getSdcSceneRectF();
    QDomElement rectElement = doc.createElement(QStringLiteral("boundingRect"));
    rectElement.setAttribute(QStringLiteral("x"), layoutNumber(rect.x() - refPos.x()));
    rectElement.setAttribute(QStringLiteral("y"), layoutNumber(rect.y() - refPos.y()));
    rectElement.setAttribute(QStringLiteral("w"), layoutNumber(rect.width()));
    rectElement.setAttribute(QStringLiteral("h"), layoutNumber(rect.height()));
    element.appendChild(rectElement);
    const QPointF origin = getSdcScenePos();
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            child->recordGraphicsInfoToDomDoc(doc, element, origin);
    }
}

QPointF Sdc::getSdcScenePos()
{
    return getSdcSceneRectF().topLeft();
}

QRectF Sdc::getSdcSceneRectF()
{
    QRectF rect;
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            rect |= child->getSdcSceneRectF();
    }
    return rect;
}

void Sdc::highlightChildSdc(Sdc *target)
{
    setHighlight(false, false);
    if (target == this) {
        setHighlight(true, !isSdcMcp());
        return;
    }
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            child->highlightChildSdc(target);
    }
}

void Sdc::reset()
{
    while (!m_children.isEmpty()) {
        Sdc *const child = m_children.takeLast();
        childListChangedFrom(static_cast<int>(m_children.size()));
        if (!child)
            continue;
        child->reset();
        if (child->QStandardItem::parent() == this)
            qDeleteAll(takeRow(child->row()));
    }
    removeEmptyRows();
    m_properties.clear();
    setProperty(SdcProperty::ShortName, QString());
    setParentSdc(nullptr);
    m_highlighted = false;
}

bool Sdc::isEmpty()
{
    return std::all_of(m_children.cbegin(), m_children.cend(), [](Sdc *child) { return !child; });
}

QGraphicsItem *Sdc::getGroupGraphicsItem()
{
    return nullptr;
}

void Sdc::rotateSdc(double angle)
{
    if (zgs::rotate(getListSdcMcp(), angle, false))
        multiplyTransformBy(QTransform().rotate(angle));
}

void Sdc::updateHighlight() { }

bool Sdc::isConsistentToDb()
{
    return false;
}

Sdc *Sdc::toSdc()
{
    return this;
}

// Every kind answers null and false here; the class of that kind alone overrides its pair.
#define ZEL_SDC_NO_KIND(Kind)                                                                      \
    Sdc##Kind *Sdc::toSdc##Kind()                                                                  \
    {                                                                                              \
        return nullptr;                                                                            \
    }                                                                                              \
    bool Sdc::isSdc##Kind() const                                                                  \
    {                                                                                              \
        return false;                                                                              \
    }

ZEL_SDC_NO_KIND(Bst)
ZEL_SDC_NO_KIND(Mcp)
ZEL_SDC_NO_KIND(Mol)
ZEL_SDC_NO_KIND(Mli)
ZEL_SDC_NO_KIND(Cpx)
ZEL_SDC_NO_KIND(Cxi)
ZEL_SDC_NO_KIND(Trn)
ZEL_SDC_NO_KIND(BstBst)
ZEL_SDC_NO_KIND(BstBstMli)
ZEL_SDC_NO_KIND(BstBstCpx)
ZEL_SDC_NO_KIND(BstBstCxi)
ZEL_SDC_NO_KIND(Cel)
ZEL_SDC_NO_KIND(McpTag)
ZEL_SDC_NO_KIND(McpTagSet)
ZEL_SDC_NO_KIND(BstSet)

#undef ZEL_SDC_NO_KIND

void Sdc::setChanged()
{
    emit signal_changed();
    if (m_parentSdc)
        m_parentSdc->setChanged();
}

QGraphicsScene *Sdc::getScene()
{
    const QList<SdcMcp *> list = getListSdcMcp();
    if (list.isEmpty())
        return nullptr;
    ZelEllipseItemMcp *const item = list.first()->getZelEllipseItemMcp();
    return item ? item->scene() : nullptr;
}

void Sdc::setBstBindingStatusEnabled(bool) { }

bool Sdc::isBstBindingStatusDisplayEnabled()
{
    return false;
}

ZelEllipseItem *Sdc::getZelEllipseItem()
{
    return nullptr;
}

void Sdc::setAllMcpFeatureValue(ComponentStateType) { }

void Sdc::setHighlight(bool status, bool extendable)
{
    m_highlighted = status;
    if (!extendable)
        return;
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            child->setHighlight(status, true);
    }
}

void Sdc::setHighlight(bool status)
{
    setHighlight(status, true);
}

void Sdc::setSdcType(int type)
{
    m_sdcType = type;
}

void Sdc::setSdcName(const QString &name)
{
    m_sdcName = name;
    setProperty(SdcProperty::ShortName, QString());
}

QString Sdc::getDomXmlTag() const
{
    switch (m_sdcType) {
    case SdcType::Bst:
        return QStringLiteral("bst");
    case SdcType::Mcp:
        return QStringLiteral("mcp");
    case SdcType::Mol:
        return QStringLiteral("mol");
    case SdcType::Mli:
        return QStringLiteral("mli");
    case SdcType::Cpx:
        return QStringLiteral("cpx");
    case SdcType::Cxi:
        return QStringLiteral("cxi");
    case SdcType::Cel:
        return QStringLiteral("cel");
    default:
        qDebug() << "QString Sdc::getDomXmlTag() const"
                 << "Undefined domeXml tag for " << getSdcName();
        return {};
    }
}

void Sdc::updateCurrentIndexToPrevIndex()
{
    m_prevIndex = m_parentSdc ? getPosIndex() : -1;
}

void Sdc::switchChildrenBetween2Indices(int i, int j)
{
    if (i < 0 || j < 0 || i >= m_children.size() || j >= m_children.size())
        return;
    m_children.swapItemsAt(i, j);
    for (Sdc *child : {m_children.at(i), m_children.at(j)}) {
        if (child)
            child->m_indexHint = -1;
    }
    childListChangedFrom(std::min(i, j));
}

void Sdc::notifyChildSdcAdded(Sdc *child)
{
    emit getTopParentSdc()->childSdcAdded(child);
}

ZelDbSqliteModel *Sdc::getZelDbSqliteModel() const
{
    return m_zelDbSqliteModel;
}

void Sdc::setZelDbSqliteModel(ZelDbSqliteModel *model)
{
    m_zelDbSqliteModel = model;
}

QHash<int, QString> Sdc::getProperties() const
{
    QHash<int, QString> hash;
    for (const auto &[key, value] : m_properties)
        hash.insert(key, value);
    return hash;
}

bool Sdc::hasProperty(int key) const
{
    return std::any_of(m_properties.cbegin(), m_properties.cend(),
        [key](const auto &entry) { return entry.first == key; });
}

void Sdc::clearProperties()
{
    m_properties.clear();
}

bool Sdc::hasTagState(int kind)
{
    for (SdcMcp *mcp : getListSdcMcp()) {
        if ((kind == 1 || kind == 2) && mcp->getProperty(SdcProperty::Negation) == u'1')
            return true;
        if (kind != 0 && kind != 2)
            continue;
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky()) {
            if (sticky && sticky->getStateType() == ComponentStateDontCare)
                return true;
        }
    }
    return false;
}

bool Sdc::hasTagDontCare()
{
    return hasTagState(0);
}

bool Sdc::hasTagNegation()
{
    return hasTagState(1);
}

bool Sdc::hasTagDontCareOrNegation()
{
    return hasTagState(2);
}

void Sdc::setAllMcpStateType(int type, bool half)
{
    for (SdcMcp *mcp : getListSdcMcp()) {
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky()) {
            if (sticky)
                sticky->setStateType(type, half);
        }
        mcp->updateStatePropertyFromSticky();
    }
}

void Sdc::setAllBstStatus(BindingStatusType status)
{
    for (SdcBst *bst : getListSdcBst())
        bst->setBindingStatus(status);
}

void Sdc::copyPropertiesTo(Sdc *target)
{
    if (!target || target == this)
        return;
    target->m_properties = m_properties;
    target->updateStandardItemText();
    target->setChanged();
    const qsizetype count = std::min(m_children.size(), target->m_children.size());
    for (qsizetype i = 0; i < count; ++i) {
        Sdc *const from = m_children.at(i);
        Sdc *const to = target->m_children.at(i);
        if (from && to && from->getSdcType() == to->getSdcType())
            from->copyPropertiesTo(to);
    }
}

QList<SdcBstBst *> Sdc::toListSdcBstBst(const QList<SdcBstBstCpx *> &list)
{
    return {list.cbegin(), list.cend()};
}

QList<Sdc *> Sdc::getSortedSdcListByPsiimId(const QList<Sdc *> &list)
{
    QList<Sdc *> sorted = list;
    sortByPsiimId(sorted);
    return sorted;
}

QList<SdcBst *> Sdc::getSortedSdcBstListByPsiimId(const QList<SdcBst *> &list)
{
    QList<SdcBst *> sorted = list;
    sortByPsiimId(sorted);
    return sorted;
}

void Sdc::clearChildrenList()
{
    m_children.clear();
    childListChangedFrom(0);
}

void Sdc::setChildrenList(const QList<Sdc *> &list)
{
    m_children = list;
    for (Sdc *child : std::as_const(m_children)) {
        if (child)
            child->m_indexHint = -1;
    }
    childListChangedFrom(0);
}

// The running numbers of a molecule's sites hang on its components and on how many sites each has.
void Sdc::childListChangedFrom(int index)
{
    if (SdcMol *mol = toSdcMol()) {
        mol->siteCountsChangedFrom(index);
    } else if (isSdcMcp()) {
        if (SdcMol *parentMol = getParentSdcMol())
            parentMol->siteCountsChangedFrom(std::max(getPosIndex(), 0));
    }
}

// Called while dying. A row may be taken out of a model at any time but not from the loop in which
// the toolkit removes rows; in that loop, and without a model, model() is null and the row is only
// emptied. What is then left of it goes with the parent's next tidying.
void Sdc::leaveItemParent()
{
    QStandardItem *const itemParent = QStandardItem::parent();
    if (QStandardItemModel *itemModel = model()) {
        const QList<QStandardItem *> taken =
            itemParent ? itemParent->takeRow(row()) : itemModel->takeRow(row());
        for (QStandardItem *item : taken) {
            if (item != this)
                delete item;
        }
    } else if (itemParent && !itemParent->model()) { // else the parent is dying with its model
        itemParent->takeChild(row(), 0);
        if (m_parentSdc && itemParent == static_cast<QStandardItem *>(m_parentSdc.data()))
            m_parentSdc->m_hasEmptyRows = true;
    }
}

void Sdc::forgetDyingChild(Sdc *child)
{
    if (m_dying)
        return;
    const int index = child->getPosIndex();
    m_children.removeAll(child);
    childListChangedFrom(std::max(index, 0));
    if (!m_tidyPending) {
        m_tidyPending = true;
        QMetaObject::invokeMethod(this, &Sdc::tidyAfterDeath, Qt::QueuedConnection);
    }
}

// The numbers of the siblings follow when control is back in the event loop: the death may lie in
// the middle of a model's row removal, where nothing else must change.
void Sdc::tidyAfterDeath()
{
    m_tidyPending = false;
    removeEmptyRows();
    const QList<Sdc *> remaining = m_children;
    for (Sdc *child : remaining) {
        if (child)
            child->updatePosIndex();
    }
    if (SdcMol *mol = toSdcMol())
        mol->renumberSites(0);
    else if (SdcMol *parentMol = isSdcMcp() ? getParentSdcMol() : nullptr)
        parentMol->renumberSites(getPosIndex() + 1);
}

void Sdc::removeEmptyRows()
{
    if (!m_hasEmptyRows)
        return;
    m_hasEmptyRows = false;
    for (int i = rowCount() - 1; i >= 0; --i) {
        if (!QStandardItem::child(i, 0))
            removeRow(i);
    }
}
