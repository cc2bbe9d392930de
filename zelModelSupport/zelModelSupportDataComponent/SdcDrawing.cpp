// What a component has to do with its drawing: layout, rectangles, highlight, and the states that
// live on the items of its subtree.

#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/support/zgs.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"

#include <QDebug>
#include <QDomDocument>
#include <QGraphicsScene>

#include <utility>

namespace {

QString layoutNumber(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

bool Sdc::isHighlighted()
{
    return m_highlighted;
}

QRectF Sdc::getBoundingRect(const QPointF &pos)
{
    return {pos, QSizeF(0.0, 0.0)};
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
