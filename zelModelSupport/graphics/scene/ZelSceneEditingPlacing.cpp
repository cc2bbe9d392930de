// How molecules come from the database to an editing scene, and where they find room.

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/paint/ZelDrawing.h"
#include "zelModelSupport/graphics/paint/ZelItemGeometry.h"
#include "zelModelSupport/graphics/scene/ZelSceneEditing.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"

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
        if (isEditingStates())
            settleStates(mol);
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

void ZelSceneEditing::followContents()
{
    const double room = zel::drawing::EditingRoom;
    const QRectF rect = m_leastSceneRect | itemsBoundingRect().adjusted(-room, -room, room, room);
    if (rect != sceneRect())
        setSceneRect(rect);
}

// The nearest place is looked for on rings about the wanted one.
void ZelSceneEditing::placeAt(const QList<SdcMcp *> &components, const QPointF &scenePos)
{
    const QRectF rect = SdcNewParts::coveredBy(components);
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
