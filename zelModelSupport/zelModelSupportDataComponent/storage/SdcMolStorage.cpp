// How a molecule is written to the database and built from its records and its layout.

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcpTag.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMolLoader.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcNewParts.h"
#include "zelModelSupport/zelModelSupportDataComponent/layout/SdcLayout.h"

#include <QDebug>
#include <QDomElement>

namespace {

QString withDefault(const QString &text, const char *defaultText)
{
    return text.isEmpty() ? QLatin1String(defaultText) : text;
}

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
    ZelDbSqliteModel *const db = getZelDbSqliteModel();
    const ZelDbReading reading(db ? db->database() : nullptr);
    SdcMolType::Reader types(db);
    const std::shared_ptr<const SdcMolType> type = types.read(psiimId);
    if (!type)
        return loadLayout(psiimId, SdcLayout(), scene, QPointF(0.0, 0.0), false);
    if (const QString &error = type->drawing().error; !error.isEmpty())
        qDebug() << "Error found at bool SdcMol::loadFromDb(): the layout of" << psiimId
                 << "is not readable, parts get default places:" << error;
    return SdcMolLoader(&types, scene, false)
        .load(this, psiimId, type->drawing().layout, QPointF(0.0, 0.0));
}

bool SdcMol::loadLayout(const QString &psiimId, const SdcLayout &layout, ZelScene *scene,
    const QPointF &refPos, bool limited)
{
    SdcMolType::Reader types(getZelDbSqliteModel());
    if (!types.db()) {
        SdcMolLoader::report(psiimId, QStringLiteral("no database"));
        return false;
    }
    return SdcMolLoader(&types, scene, limited).load(this, psiimId, layout, refPos);
}
