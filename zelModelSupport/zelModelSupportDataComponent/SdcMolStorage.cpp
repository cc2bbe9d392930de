// How a molecule is written to the database and built from its records and its layout.

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelEllipseItemBst.h"
#include "zelModelSupport/graphics/ZelEllipseItemMcp.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/graphics/ZelScene.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcLayout.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"
#include "zelShare/ZelShare.h"

#include <QBrush>
#include <QDebug>
#include <QDomElement>

#include <algorithm>

namespace {

// Where a component or site is drawn that the layout does not mention.
constexpr double DefaultMcpWidth = 60.0;
constexpr double DefaultMcpHeight = 40.0;
constexpr double DefaultMcpGap = 10.0;

QString withDefault(const QString &text, const char *defaultText)
{
    return text.isEmpty() ? QLatin1String(defaultText) : text;
}

} // namespace

/// One load of a molecule: what its steps share.
class SdcMolLoader
{
public:
    SdcMolLoader(SdcMol *mol, ZelDbSqliteModel *db, ZelScene *scene, bool limited)
        : m_mol(mol), m_db(db), m_scene(scene), m_limited(limited)
    {
    }

    bool load(const QString &psiimId, const SdcLayout &layout, const QPointF &refPos)
    {
        const ZelDbRecord record = m_db->molGetHashInfo(psiimId);
        if (record.isEmpty()) {
            report(psiimId, QStringLiteral("no such molecule"));
            return false;
        }
        checkId(layout, psiimId);
        setMolProperties(psiimId, record);
        m_origin = refPos + layout.topLeft;
        m_nextDefaultPlace = m_origin;

        const SdcLayoutChildren layouts(layout, SdcType::Mcp);
        const QStringList mcpIds = m_db->molGetListMcpPsiimId(psiimId);
        SdcNewParts::Layouts gainedLayouts(m_mol, m_origin);
        for (int i = 0; i < static_cast<int>(mcpIds.size()); ++i) {
            const SdcLayout &own = layouts.find(mcpIds.at(i), i);
            const std::optional<SdcLayout> gained =
                own.isNull() && !layout.isNull() ? gainedLayouts.of(mcpIds.at(i), i) : std::nullopt;
            loadMcp(mcpIds.at(i), gained ? *gained : own);
        }
        drawBackBones(psiimId);
        return true;
    }

private:
    void report(const QString &id, const QString &what) const
    {
        qDebug() << "Error found at void SdcMol::loadDom(const QDomElement & domEltMol, ZelScene * "
                    "scene, const QPointF & refPos) "
                 << id << what;
    }

    void checkId(const SdcLayout &layout, const QString &psiimId) const
    {
        if (!layout.isNull() && layout.psiimId != psiimId)
            report(psiimId, layout.psiimId);
    }

    void setMolProperties(const QString &psiimId, const ZelDbRecord &record)
    {
        using namespace ZelDbColumn;
        m_mol->setProperty(SdcProperty::PsiimId, record.value(PsiimId, psiimId));
        m_mol->setProperty(SdcProperty::ShortName, record.value(ShortName));
        m_mol->setProperty(SdcProperty::Name, record.value(Name));
        m_mol->setProperty(SdcProperty::MolNumber16, record.value(MolNumber16));
        m_mol->setProperty(SdcProperty::MolNumber18,
            ZelShare::getScientificFormat(record.value(MolNumber18), 2, 10, false));
        m_mol->setProperty(SdcProperty::MolNumber15, record.value(MolNumber15));
        m_mol->setProperty(SdcProperty::Notes, record.value(Notes));
        QColor color(record.value(Color));
        if (!color.isValid())
            color = m_mol->getMolDefaultColor();
        m_mol->setProperty(SdcProperty::Color, color.name());
        m_mol->m_color = color;
        m_mol->setProperty(
            SdcProperty::References, m_db->refGetReferences(QStringLiteral("mol"), psiimId));
        m_mol->setProperty(SdcProperty::Location, record.value(Location));
    }

    void loadMcp(const QString &id, const SdcLayout &layout)
    {
        const ZelDbRecord record = m_db->mcpGetHashInfo(id);
        checkId(layout, id);
        auto *mcp = new SdcMcp(m_db);
        mcp->setProperty(
            SdcProperty::References, m_db->refGetReferences(QStringLiteral("mcp"), id));
        if (layout.tagSizeAndGap) {
            mcp->setTagSize(layout.tagSizeAndGap->first);
            mcp->setTagGap(layout.tagSizeAndGap->second);
        }
        QRectF rect;
        if (layout.rect) {
            rect = layout.rect->translated(m_origin);
        } else {
            report(id, QStringLiteral("has no place in the layout"));
            rect = QRectF(m_nextDefaultPlace, QSizeF(DefaultMcpWidth, DefaultMcpHeight));
        }
        m_nextDefaultPlace = rect.topRight() + QPointF(DefaultMcpGap, 0.0);

        ZelEllipseItemMcp *const item = m_scene ? m_scene->addMcp(rect) : ZelScene::createMcp(rect);
        if (!m_scene)
            m_mol->m_itemsInNoScene.append(item);
        item->setBrush(QBrush(m_mol->m_color, Qt::SolidPattern));
        setNamedProperties(mcp, id, record);
        mcp->setProperty(SdcProperty::Location, record.value(ZelDbColumn::Location));
        mcp->setZelEllipseItemMcp(item);
        m_mol->addSdcMcp(mcp);
        loadTags(mcp, id);
        loadSites(mcp, item, id, layout, rect);
        // The item follows the component from here on: until now each step would have changed it.
        item->setSdcMcp(mcp);
        mcp->setTagDirectionCode(layout.tagDirectionCode);
        item->updateLayoutOfListStateSticky(!layout.tagSizeAndGap);
        item->slot_updateToolTips();
    }

    static void setNamedProperties(Sdc *sdc, const QString &id, const ZelDbRecord &record)
    {
        sdc->setProperty(SdcProperty::PsiimId, id);
        sdc->setProperty(SdcProperty::ShortName, record.value(ZelDbColumn::ShortName));
        sdc->setProperty(SdcProperty::Name, record.value(ZelDbColumn::Name));
        sdc->setProperty(SdcProperty::Notes, record.value(ZelDbColumn::Notes));
    }

    void loadTags(SdcMcp *mcp, const QString &id)
    {
        QStringList names;
        const QList<ZelDbState> states = m_db->mcpGetOrderedStates(id);
        for (const ZelDbState &state : states) {
            SdcMcpTag *const tag = mcp->addTag(state.name, state.color, false);
            if (!tag)
                continue;
            tag->setProperty(SdcProperty::PsiimId, state.psiimId);
            tag->setProperty(SdcProperty::References,
                m_db->refGetReferences(QStringLiteral("mcpState"), state.psiimId));
            names.append(state.name);
        }
        mcp->setProperty(SdcProperty::StateCode, names.join(u';'));
    }

    void loadSites(SdcMcp *mcp, ZelEllipseItemMcp *item, const QString &mcpId,
        const SdcLayout &mcpLayout, const QRectF &mcpRect)
    {
        const SdcLayoutChildren layouts(mcpLayout, SdcType::Bst);
        const QStringList ids = m_db->bstGetListPsiimIdBasedOnMcp(mcpId);
        QList<QRectF> taken; // by the sites before
        for (qsizetype i = 0; i < ids.size(); ++i) {
            const QString &id = ids.at(i);
            const SdcLayout &layout = layouts.find(id, static_cast<int>(i));
            checkId(layout, id);
            // One that the component has gained since it was drawn is no fault.
            if (!layout.rect && !(layout.isNull() && mcpLayout.rect))
                report(id, QStringLiteral("has no place in the layout"));
            const QRectF rect = layout.rect ? layout.rect->translated(mcpRect.topLeft())
                                            : SdcNewParts::siteRect(mcpRect, i, ids.size(), taken);
            taken.append(rect);
            ZelEllipseItemBst *const bstItem =
                m_scene ? m_scene->addBst(rect, item) : ZelScene::createBst(rect, item);
            bstItem->setBrush(QBrush(m_mol->m_color, Qt::SolidPattern));
            auto *bst = new SdcBst(m_db);
            bst->setProperty(
                SdcProperty::References, m_db->refGetReferences(QStringLiteral("bst"), id));
            setNamedProperties(bst, id, m_db->bstGetHashInfo(id));
            bst->setZelEllipseItemBst(bstItem);
            bstItem->setSdcBst(bst);
            mcp->addSdcBst(bst);
            bstItem->setAsLimited(m_limited);
            bst->updateDisplayBstBindingStatus();
        }
    }

    void drawBackBones(const QString &psiimId)
    {
        const QMultiHash<int, int> hash = m_db->molGetMultiHashMcpMcp(psiimId);
        QList<QPair<int, int>> pairs;
        for (auto it = hash.cbegin(); it != hash.cend(); ++it)
            pairs.append({it.key(), it.value()});
        std::sort(pairs.begin(), pairs.end()); // the hash has no order of its own
        for (const auto &[a, b] : std::as_const(pairs)) {
            SdcMcp *const mcpA = m_mol->getSdcMcpAtIndex(a);
            SdcMcp *const mcpB = m_mol->getSdcMcpAtIndex(b);
            if (!mcpA || !mcpB || mcpA == mcpB) {
                report(psiimId, QStringLiteral("backbone %1-%2").arg(a).arg(b));
                continue;
            }
            if (m_scene)
                m_scene->drawBackBones(mcpA->getZelEllipseItemMcp(), mcpB->getZelEllipseItemMcp());
            else
                ZelScene::createBackBone(
                    mcpA->getZelEllipseItemMcp(), mcpB->getZelEllipseItemMcp());
        }
    }

    SdcMol *m_mol;
    ZelDbSqliteModel *m_db;
    ZelScene *m_scene;
    bool m_limited;
    QPointF m_origin;
    QPointF m_nextDefaultPlace;
};

namespace {

/// One save of a molecule. Every write is tried even after one has failed: the transaction's commit
/// takes them all back.
class MolSaver
{
public:
    MolSaver(SdcMol *mol, ZelDbSqliteModel *db) : m_mol(mol), m_db(db) { }

    bool save()
    {
        giveIds();
        const QString molId = m_mol->getPsiimId();
        const QSet<QString> before = SdcNewParts::storedParts(molId, m_db);
        check(m_db->molInsert(molRecord()));
        saveReferences(QStringLiteral("mol"), m_mol);
        const QList<SdcMcp *> mcps = m_mol->getListSdcMcp();
        for (SdcMcp *mcp : mcps)
            saveMcp(mcp);
        for (qsizetype i = 0; i < mcps.size(); ++i) {
            const QList<SdcMcp *> neighbors = mcps.at(i)->getListNeighborSdcMcps();
            for (SdcMcp *neighbor : neighbors) {
                const int other = neighbor->getPosIndex();
                const int own = mcps.at(i)->getPosIndex();
                // Each line is met from both of its ends.
                if (neighbor->getParentSdc() != m_mol || other <= own)
                    continue;
                check(m_db->molInsertMcpMcp(molId, own, other));
                m_kept.mcpPairs.append({own, other});
            }
        }
        check(m_db->molRemoveRowsExcept(molId, m_kept));
        check(SdcNewParts::unsetWellDefined(molId, before, m_db));
        return m_good;
    }

private:
    void check(bool done) { m_good = m_good && done; }

    void giveId(Sdc *sdc, int recordType)
    {
        if (!sdc->getPsiimId().isEmpty())
            return;
        const QString id = ZelDb::getNewSdcPsiimId(recordType, m_db);
        check(!id.isEmpty());
        sdc->setProperty(SdcProperty::PsiimId, id);
    }

    // The layout names every part by its id, so all have one before it is written.
    void giveIds()
    {
        giveId(m_mol, ZelDb::Mol);
        for (SdcMcp *mcp : m_mol->getListSdcMcp())
            giveId(mcp, ZelDb::Mcp);
        for (SdcBst *bst : m_mol->getListSdcBst())
            giveId(bst, ZelDb::Bst);
    }

    ZelDbRecord molRecord() const
    {
        const auto p = [this](int key) { return m_mol->getProperty(key); };
        return {
            {ZelDbColumn::PsiimId, p(SdcProperty::PsiimId)},
            {ZelDbColumn::ShortName, p(SdcProperty::ShortName)},
            {ZelDbColumn::Name, p(SdcProperty::Name)},
            {ZelDbColumn::Notes, p(SdcProperty::Notes)},
            {ZelDbColumn::MolNumber15, withDefault(p(SdcProperty::MolNumber15), "0.1")},
            {ZelDbColumn::MolNumber16, withDefault(p(SdcProperty::MolNumber16), "0.1")},
            {ZelDbColumn::MolNumber18, withDefault(p(SdcProperty::MolNumber18), "0.1")},
            {ZelDbColumn::Color, p(SdcProperty::Color)},
            {ZelDbColumn::Location,
                withDefault(p(SdcProperty::Location), ZelLocation::FreelyDiffusing)},
            {ZelDbColumn::GraphicsInfo, m_mol->getGraphicsInfo()},
        };
    }

    // Only a molecule at the membrane has components inside it.
    QString mcpLocation(SdcMcp *mcp) const
    {
        const QString own = mcp->getProperty(SdcProperty::Location);
        const QString ofMol = m_mol->getProperty(SdcProperty::Location);
        if (own == QLatin1String(ZelLocation::InsideMembrane)
            && ofMol != QLatin1String(ZelLocation::MembraneAssociated))
            return withDefault(ofMol, ZelLocation::FreelyDiffusing);
        return own;
    }

    static ZelDbRecord namedRecord(Sdc *sdc, const QString &ownerId, int posIndex)
    {
        return {
            {ZelDbColumn::PsiimId, sdc->getPsiimId()},
            {ZelDbColumn::OwnerPsiimId, ownerId},
            {ZelDbColumn::PosIndex, QString::number(posIndex)},
            {ZelDbColumn::ShortName, sdc->getProperty(SdcProperty::ShortName)},
            {ZelDbColumn::Name, sdc->getProperty(SdcProperty::Name)},
            {ZelDbColumn::Notes, sdc->getProperty(SdcProperty::Notes)},
        };
    }

    void saveMcp(SdcMcp *mcp)
    {
        const QString id = mcp->getPsiimId();
        ZelDbRecord record = namedRecord(mcp, m_mol->getPsiimId(), mcp->getPosIndex());
        record.insert(ZelDbColumn::Location, mcpLocation(mcp));
        check(m_db->mcpInsert(record));
        m_kept.mcpPsiimIds.append(id);
        saveReferences(QStringLiteral("mcp"), mcp);

        QStringList &stateNames = m_kept.stateNames[id];
        int index = 0;
        bool hasTagReferences = false;
        const QList<SdcMcpTag *> tags = mcp->getListSdcMcpTags();
        for (SdcMcpTag *tag : tags) {
            ZelRectItemMcpSticky *const sticky = tag->getZelRectItemMcpSticky();
            if (!sticky)
                continue;
            check(m_db->mcpInsertState(id, sticky->getName(), sticky->getColor().name(), index++));
            stateNames.append(sticky->getName());
            hasTagReferences = hasTagReferences || tag->hasProperty(SdcProperty::References);
        }
        if (hasTagReferences)
            saveTagReferences(id, tags);

        const QList<Sdc *> sites = mcp->getListSdcChildren();
        for (Sdc *child : sites) {
            SdcBst *const bst = child ? child->toSdcBst() : nullptr;
            if (!bst)
                continue;
            ZelDbRecord site = namedRecord(bst, id, bst->getPosIndex());
            site.insert(ZelDbColumn::ShortName, bst->bstGetDefaultName(false));
            site.insert(ZelDbColumn::RowNumber, QString::number(bst->getDisplayIndex()));
            check(m_db->bstInsert(site));
            m_kept.bstPsiimIds.append(bst->getPsiimId());
            saveReferences(QStringLiteral("bst"), bst);
        }
    }

    void saveReferences(const QString &kind, Sdc *sdc)
    {
        if (sdc->hasProperty(SdcProperty::References))
            check(m_db->refInsert(
                kind, sdc->getPsiimId(), sdc->getProperty(SdcProperty::References)));
    }

    // A state's id is the database's: it is known once the state is stored.
    void saveTagReferences(const QString &mcpId, const QList<SdcMcpTag *> &tags)
    {
        QHash<QString, QString> idOfName;
        const QList<ZelDbState> states = m_db->mcpGetOrderedStates(mcpId);
        for (const ZelDbState &state : states)
            idOfName.insert(state.name, state.psiimId);
        for (SdcMcpTag *tag : tags) {
            const QString id = idOfName.value(tag->getProperty(SdcProperty::ShortName));
            if (!id.isEmpty() && tag->hasProperty(SdcProperty::References))
                check(m_db->refInsert(
                    QStringLiteral("mcpState"), id, tag->getProperty(SdcProperty::References)));
        }
    }

    SdcMol *m_mol;
    ZelDbSqliteModel *m_db;
    ZelDbMolRows m_kept;
    bool m_good = true;
};

} // namespace

bool SdcMol::saveToDb()
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const bool isOpen = db && db->database();
    const QString obstacle =
        isOpen ? storageObstacle() : QStringLiteral("no database, open a model first");
    if (!obstacle.isEmpty()) {
        qDebug().noquote() << "Error found at bool SdcMol::saveToDb():" << obstacle;
        setRefusal(obstacle);
        return false;
    }
    ZelDbTransaction transaction(db->database());
    if (!transaction.isActive())
        qDebug() << "Error found at bool SdcMol::saveToDb():" << db->errorText();
    const bool good = transaction.isActive() && MolSaver(this, db).save() && transaction.commit();
    setRefusal(good ? QString() : db->errorText());
    return good;
}

bool SdcMol::loadDom(const QString &psiimId, const QDomElement &domEltMol, ZelScene *scene,
    const QPointF &refPos, bool limited)
{
    return loadLayout(psiimId, SdcLayout::fromElement(domEltMol), scene, refPos, limited);
}

bool SdcMol::loadFromDb(const QString &psiimId, ZelScene *scene)
{
    const QString text =
        ZelDbSqlite::getGraphicsInfo(QStringLiteral("mol"), psiimId, getZelDbSqliteModel());
    QString error;
    const SdcLayout layout =
        text.isEmpty() ? SdcLayout() : SdcLayout::fromXml(text, SdcType::Mol, &error);
    if (!error.isEmpty())
        qDebug() << "Error found at bool SdcMol::loadFromDb(): the layout of" << psiimId
                 << "is not readable, parts get default places:" << error;
    return loadLayout(psiimId, layout, scene, QPointF(0.0, 0.0), false);
}

bool SdcMol::loadLayout(const QString &psiimId, const SdcLayout &layout, ZelScene *scene,
    const QPointF &refPos, bool limited)
{
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    if (!db) {
        qDebug() << "Error found at void SdcMol::loadDom(const QDomElement & domEltMol, ZelScene * "
                    "scene, const QPointF & refPos) "
                 << psiimId << "no database";
        return false;
    }
    return SdcMolLoader(this, db, scene, limited).load(psiimId, layout, refPos);
}
