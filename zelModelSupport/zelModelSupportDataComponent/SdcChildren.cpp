// The tree of components: lists of children, parents, and what is gathered from a subtree.

#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QStandardItemModel>

#include <algorithm>

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

bool Sdc::isEmpty()
{
    return std::all_of(m_children.cbegin(), m_children.cend(), [](Sdc *child) { return !child; });
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

// The running numbers of a molecule's sites hang on its components and on how many sites each has,
// what its complex looks like on the sites themselves.
void Sdc::childListChangedFrom(int index)
{
    if (SdcCpx *cpx = getParentSdcCpx())
        cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
    if (SdcMol *mol = toSdcMol()) {
        mol->siteCountsChangedFrom(index);
    } else if (isSdcMcp()) {
        if (SdcMol *parentMol = getParentSdcMol())
            parentMol->siteCountsChangedFrom(std::max(getPosIndex(), 0));
    }
}
