#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QStandardItemModel>

#include <algorithm>

namespace {

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
    if (child && !child->m_otherParents.isEmpty())
        child->m_otherParents.removeAll(this);
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
    // A complex may be listed in several places: those must learn of its death, too.
    if (m_parentSdc && m_parentSdc != parentSdc && m_parentSdc->m_children.contains(this))
        m_otherParents.append(m_parentSdc);
    if (parentSdc && !m_otherParents.isEmpty())
        m_otherParents.removeAll(parentSdc);
    m_parentSdc = parentSdc;
}

void Sdc::releaseChild(Sdc *child)
{
    if (!child)
        return;
    QList<QPointer<Sdc>> &others = child->m_otherParents;
    others.removeIf([this](const QPointer<Sdc> &other) { return !other || other == this; });
    if (child->m_parentSdc == this)
        child->m_parentSdc = others.isEmpty() ? nullptr : others.takeLast();
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

QStringView Sdc::getPsiimIdView() const
{
    for (const auto &[k, value] : m_properties) {
        if (k == SdcProperty::PsiimId)
            return value;
    }
    return {};
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
        if (!child)
            continue;
        // Sites have no children: most lists are put together without one for each site.
        SdcBst *const site = child->m_children.isEmpty() ? child->toSdcBst() : nullptr;
        if (site)
            list.append(site);
        else if (list.isEmpty())
            list = child->getListSdcBst();
        else
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

bool Sdc::isEmpty()
{
    return std::all_of(m_children.cbegin(), m_children.cend(), [](Sdc *child) { return !child; });
}

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

void Sdc::setSdcType(int type)
{
    m_sdcType = type;
}

void Sdc::setSdcName(const QString &name)
{
    m_sdcName = name;
    setProperty(SdcProperty::ShortName, QString());
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
