#include "SceneChecks.h"

#include "LiveObjects.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelLineItemBstBst.h"
#include "zelModelSupport/graphics/ZelLineItemMcpMcp.h"
#include "zelModelSupport/graphics/ZelRectItem.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double Hair = 0.15; // rims that touch by less do not overlap
constexpr double StoredPrecision = 2e-5; // six digits, of a sum of coordinates

/// Collects the first thing that is wrong.
class Report
{
public:
    bool fails(bool wrong, const char *what, Sdc *sdc = nullptr)
    {
        if (!wrong || !m_text.isEmpty())
            return wrong;
        m_text = QLatin1String(what);
        if (sdc)
            m_text += QLatin1String(": ") + sdc->text();
        return true;
    }
    QString text() const { return m_text; }

private:
    QString m_text;
};

QGraphicsItem *graphicsItemOf(ZelGItem *item)
{
    if (item->isEllipseItem())
        return item->asEllipseItem();
    if (item->isLineItem())
        return item->asLineItem();
    if (item->isRectItemMcpSticky())
        return item->asRectItemMcpSticky();
    return item->asRectItem();
}

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width())
        && std::isfinite(rect.height());
}

/// A line that changes when it is laid anew had not followed its ends.
template <typename Line>
bool isStale(Line *line)
{
    const QLineF before(line->mapToScene(line->line().p1()), line->mapToScene(line->line().p2()));
    line->updateLine();
    const QLineF after(line->mapToScene(line->line().p1()), line->mapToScene(line->line().p2()));
    return QLineF(before.p1(), after.p1()).length() > 0.01
        || QLineF(before.p2(), after.p2()).length() > 0.01;
}

void checkMcpItem(ZelEllipseItemMcp *item, ZelScene *scene, Report *report)
{
    SdcMcp *const mcp = item->getSdcMcp();
    if (report->fails(!mcp, "a component item without component"))
        return;
    report->fails(mcp->getZelEllipseItemMcp() != item, "a component has another item", mcp);
    report->fails(!isFinite(item->sceneBoundingRect()), "a component lies nowhere", mcp);
    for (ZelLineItemMcpMcp *line : item->getListMcpMcp()) {
        ZelEllipseItemMcp *const partner = line->getPartner(item);
        if (report->fails(!partner || line->scene() != scene || partner->scene() != scene,
                "a backbone without its ends", mcp))
            return;
        report->fails(
            !partner->getListMcpMcp().contains(line), "a backbone is listed at one end", mcp);
        report->fails(isStale(line), "a backbone has not followed", mcp);
    }
}

void checkItem(QGraphicsItem *graphicsItem, ZelScene *scene, Report *report)
{
    if (ZelEllipseItemMcp *item = ZelGItem::toZelEllipseItemMcp(graphicsItem)) {
        checkMcpItem(item, scene, report);
    } else if (ZelEllipseItemBst *site = ZelGItem::toZelEllipseItemBst(graphicsItem)) {
        SdcBst *const bst = site->getSdcBst();
        if (!report->fails(!bst, "a site item without site"))
            report->fails(bst->getZelEllipseItemBst() != site, "a site has another item", bst);
    } else if (ZelRectItemMcpSticky *sticky = ZelGItem::toZelRectItemMcpSticky(graphicsItem)) {
        SdcMcpTag *const tag = sticky->getSdcMcpTag();
        ZelEllipseItemMcp *const holder = ZelGItem::toZelEllipseItemMcp(sticky->parentItem());
        if (report->fails(!tag || !holder, "a sticky without feature or component"))
            return;
        report->fails(tag->getZelRectItemMcpSticky() != sticky, "a feature has another item", tag);
        report->fails(!holder->getListSticky().contains(sticky), "a sticky is not listed", tag);
        report->fails(
            sticky->getSdcMcp() != holder->getSdcMcp(), "a sticky knows another component", tag);
    } else if (ZelLineItem *line = ZelGItem::toZelLineItem(graphicsItem)) {
        ZelLineItemBstBst *const bondLine = line->asLineItemBstBst();
        SdcBstBst *const bond = bondLine ? bondLine->getSdcBstBst() : nullptr;
        if (!bondLine || report->fails(!bond, "a bond line without bond"))
            return;
        report->fails(bond->getZelLineItemBstBst() != bondLine, "a bond has another line", bond);
        report->fails(isStale(bondLine), "a bond line has not followed", bond);
    }
}

/// The children know their places, and the rows are the children.
void checkTree(Sdc *sdc, Report *report)
{
    const QList<Sdc *> children = sdc->getListSdcChildren();
    report->fails(sdc->rowCount() != children.size(), "rows and children differ", sdc);
    QSet<QString> ids; // of what is no molecule, of which several may be of one kind
    for (int i = 0; i < children.size(); ++i) {
        Sdc *const child = children.at(i);
        if (report->fails(!child, "a null child", sdc))
            continue;
        report->fails(child->getParentSdc() != sdc, "a child with another parent", child);
        report->fails(ids.contains(child->getPsiimId()), "two parts have one id", child);
        if (!child->isSdcMol() && !child->getPsiimId().isEmpty())
            ids.insert(child->getPsiimId());
        report->fails(child->getPosIndex() != i, "a position index out of place", child);
        report->fails(sdc->child(i) != child, "a row out of place", child);
        const QString shown = child->text();
        child->updateStandardItemText();
        report->fails(child->text() != shown, "the text of a row is not up to date", child);
        checkTree(child, report);
    }
}

void checkMcp(SdcMcp *mcp, ZelScene *scene, Report *report)
{
    ZelEllipseItemMcp *const item = mcp->getZelEllipseItemMcp();
    if (report->fails(!item || item->scene() != scene, "a component is not drawn", mcp))
        return;
    report->fails(
        item->isNotIndicatorVisible() != (mcp->getProperty(SdcProperty::Negation) == u'1'),
        "the strokes of a negation are not up to date", mcp);
    const QList<SdcMcpTag *> tags = mcp->getListSdcMcpTags();
    report->fails(tags.size() != item->getListSticky().size(), "features and stickies differ", mcp);
    for (SdcMcpTag *tag : tags) {
        ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
        report->fails(!sticky || sticky->scene() != scene, "a feature is not drawn", tag);
    }
    for (SdcBst *bst : mcp->getListSdcBst()) {
        ZelEllipseItemBst *const site = bst->getZelEllipseItemBst();
        report->fails(!site || site->scene() != scene || site->parentItem() != item,
            "a site is not drawn on its component", bst);
        for (SdcBstBst *bond : bst->getListSdcBstBst())
            report->fails(!bond->hasSdcBst(bst), "a site lists a bond that is not its own", bst);
    }
}

void checkObjects(
    const LiveObjects &objects, ZelScene *scene, const QList<SdcMol *> &molecules, Report *report)
{
    for (ZelGItem *item : objects.all<ZelGItem>()) {
        QGraphicsItem *const graphicsItem = graphicsItemOf(item);
        report->fails(!graphicsItem || graphicsItem->scene() != scene, "an item in no scene");
    }
    for (Sdc *sdc : objects.all<Sdc>()) {
        if (sdc->isSdcMcp() || sdc->isSdcBst()) {
            const bool known = std::any_of(molecules.cbegin(), molecules.cend(),
                [sdc](SdcMol *mol) { return sdc->getParentSdcMol() == mol; });
            report->fails(!known, "a component or site in no molecule", sdc);
        } else if (SdcMcpTag *tag = sdc->toSdcMcpTag()) {
            SdcMcp *const mcp = tag->getParentSdcMcp();
            report->fails(
                !mcp || !mcp->getListSdcMcpTags().contains(tag), "a feature is left over", tag);
        } else if (sdc->isSdcBstBst()) {
            report->fails(sdc->QObject::parent() != scene, "a bond is not the scene's", sdc);
        }
    }
}

QRectF sceneRectOf(ZelEllipseItem *item)
{
    return item->mapRectToScene(item->rect());
}

bool isInside(const QRectF &ellipse, const QPointF &p)
{
    const QPointF way = p - ellipse.center();
    const double x = way.x() / (ellipse.width() / 2.0);
    const double y = way.y() / (ellipse.height() / 2.0);
    return x * x + y * y < 1.0;
}

/// By points on the rims, so that nothing of the library's own test is taken for granted.
bool overlap(QRectF a, QRectF b)
{
    a.adjust(Hair, Hair, -Hair, -Hair);
    b.adjust(Hair, Hair, -Hair, -Hair);
    if (a.width() <= 0.0 || a.height() <= 0.0 || b.width() <= 0.0 || b.height() <= 0.0
        || !a.intersects(b))
        return false;
    if (isInside(a, b.center()) || isInside(b, a.center()))
        return true;
    constexpr int Points = 240;
    for (int i = 0; i < Points; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / Points;
        const QPointF way(std::cos(angle) / 2.0, std::sin(angle) / 2.0);
        if (isInside(a, b.center() + QPointF(way.x() * b.width(), way.y() * b.height()))
            || isInside(b, a.center() + QPointF(way.x() * a.width(), way.y() * a.height())))
            return true;
    }
    return false;
}

/// As far as six digits of the coordinates tell.
bool areClose(const QRectF &a, const QRectF &b)
{
    const double reach = std::max(
        {std::abs(a.left()), std::abs(a.top()), std::abs(a.right()), std::abs(a.bottom()), 1000.0});
    const double most = reach * StoredPrecision;
    return std::abs(a.x() - b.x()) < most && std::abs(a.y() - b.y()) < most
        && std::abs(a.width() - b.width()) < most && std::abs(a.height() - b.height()) < most;
}

/// What a molecule's drawing consists of, and where that lies.
QList<QPair<QString, QRectF>> facts(SdcMol *mol)
{
    QList<QPair<QString, QRectF>> list;
    for (SdcMcp *mcp : mol->getListSdcMcp()) {
        QStringList neighbors;
        for (SdcMcp *neighbor : mcp->getListNeighborSdcMcps())
            neighbors.append(QString::number(neighbor->getPosIndex()));
        neighbors.sort();
        list.append({QLatin1String("component joined to ") + neighbors.join(u','),
            mcp->getSdcSceneRectF()});
        list.append({QStringLiteral("row of features, side %1").arg(mcp->getTagDirectionCode()),
            {0.0, 0.0, mcp->getTagSize(), mcp->getTagGap()}});
        for (ZelRectItemMcpSticky *sticky : mcp->getListSticky())
            list.append({sticky->getName() + u' ' + sticky->getColor().name(), {}});
        for (SdcBst *bst : mcp->getListSdcBst())
            list.append({QStringLiteral("a site"), bst->getSdcSceneRectF()});
    }
    return list;
}

/// A bond is a part of what either of its sites is a part of.
bool isPartOf(Sdc *sdc, Sdc *whole)
{
    if (SdcBstBst *bond = sdc->toSdcBstBst())
        return bond == whole
            || (whole && !whole->isSdcBstBst()
                && (isPartOf(bond->getSdcBst1(), whole) || isPartOf(bond->getSdcBst2(), whole)));
    for (; sdc; sdc = sdc->getParentSdc()) {
        if (sdc == whole)
            return true;
    }
    return false;
}

} // namespace

QString SceneChecks::consistent(
    ZelScene *scene, const QList<SdcMol *> &molecules, const LiveObjects *objects)
{
    Report report;
    const QList<QGraphicsItem *> items = scene->items();
    for (QGraphicsItem *item : items)
        checkItem(item, scene, &report);
    for (SdcMol *mol : molecules) {
        checkTree(mol, &report);
        int number = 0;
        for (SdcMcp *mcp : mol->getListSdcMcp()) {
            checkMcp(mcp, scene, &report);
            for (SdcBst *bst : mcp->getListSdcBst())
                report.fails(bst->getBstLabelText() != QString::number(++number),
                    "the label of a site is not its number", bst);
        }
    }
    if (objects)
        checkObjects(*objects, scene, molecules, &report);
    return report.text();
}

QString SceneChecks::apart(ZelScene *scene, const QList<ZelEllipseItem *> &moved)
{
    Report report;
    const QList<QGraphicsItem *> items = scene->items();
    for (QGraphicsItem *graphicsItem : items) {
        ZelEllipseItem *const other = ZelGItem::toZelEllipseItem(graphicsItem);
        if (!other || moved.contains(other))
            continue;
        for (ZelEllipseItem *item : moved) {
            if (item->parentItem() != other && other->parentItem() != item)
                report.fails(overlap(sceneRectOf(item), sceneRectOf(other)),
                    "an accepted move ends on a stranger", item->getSdc());
        }
    }
    return report.text();
}

QString SceneChecks::glowing(ZelScene *scene, Sdc *selected)
{
    Report report;
    const QList<QGraphicsItem *> items = scene->items();
    for (QGraphicsItem *graphicsItem : items) {
        ZelEllipseItem *const ellipse = ZelGItem::toZelEllipseItem(graphicsItem);
        ZelLineItem *const line = ZelGItem::toZelLineItem(graphicsItem);
        Sdc *const sdc = ellipse ? ellipse->getSdc() : line ? line->getSdc() : nullptr;
        if (!sdc || (ellipse ? !ellipse->isHighlighted() : !line->isHighlighted()))
            continue;
        SdcBst *const site = sdc->toSdcBst();
        SdcBstBst *const bond = selected ? selected->toSdcBstBst() : nullptr;
        report.fails(!isPartOf(sdc, selected) && !(bond && site && bond->hasSdcBst(site))
                && !(site && site->isAlwaysHighlighted()),
            "something glows that is not selected", sdc);
    }
    return report.text();
}

QString SceneChecks::sameDrawing(SdcMol *stored, SdcMol *drawn)
{
    const auto there = facts(stored);
    const auto here = facts(drawn);
    const bool same = std::equal(
        there.cbegin(), there.cend(), here.cbegin(), here.cend(), [](const auto &a, const auto &b) {
            return a.first == b.first && areClose(a.second, b.second);
        });
    return same ? QString()
                : QLatin1String("a molecule is stored otherwise than drawn: ") + drawn->text();
}
