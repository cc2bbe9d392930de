// How a component leaves lists and rows when it dies or is emptied, whoever destroys it.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QMetaObject>
#include <QStandardItemModel>

#include <algorithm>
#include <utility>

Sdc::~Sdc()
{
    m_dying = true;
    const QList<Sdc *> leaving = std::exchange(m_children, {});
    for (Sdc *child : leaving)
        releaseChild(child);
    while (rowCount() > 0)
        qDeleteAll(takeRow(rowCount() - 1));
    leaveItemParent();
    for (const QPointer<Sdc> &parentSdc : std::as_const(m_otherParents)) {
        if (parentSdc)
            parentSdc->forgetDyingChild(this);
    }
    if (m_parentSdc)
        m_parentSdc->forgetDyingChild(this);
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
    clearProperties();
    setProperty(SdcProperty::ShortName, QString());
    setParentSdc(nullptr);
    m_highlighted = false;
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
    if (isSdcTrn()) { // its slots stay
        std::replace(m_children.begin(), m_children.end(), child, static_cast<Sdc *>(nullptr));
        return;
    }
    const int index = static_cast<int>(m_children.indexOf(child));
    m_children.removeAll(child);
    childListChangedFrom(std::max(index, 0));
    if (SdcCpx *cpx = toSdcCpx())
        cpx->setSpecisStaticSymmetryState(SdcCpx::SymmetryUnknown);
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
