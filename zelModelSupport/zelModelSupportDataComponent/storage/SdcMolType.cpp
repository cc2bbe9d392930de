#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"
#include "zelShare/ZelShare.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr qsizetype MaxKept = 4096;

SdcMolType::Properties namedProperties(
    const QString &psiimId, const ZelDbRecord &record, const QString &references)
{
    return {{SdcProperty::PsiimId, psiimId},
        {SdcProperty::ShortName, record.value(ZelDbColumn::ShortName)},
        {SdcProperty::Name, record.value(ZelDbColumn::Name)},
        {SdcProperty::Notes, record.value(ZelDbColumn::Notes)},
        {SdcProperty::References, references}};
}

} // namespace

/// The molecules that have been read since the file changed last.
struct SdcMolType::Reader::Kept
{
    QByteArray stamp;
    QHash<QString, std::shared_ptr<const SdcMolType>> types;
};

const SdcMolType::Drawing &SdcMolType::drawing() const
{
    if (!m_drawing) {
        m_drawing.emplace();
        if (!m_graphicsInfo.isEmpty())
            m_drawing->layout = SdcLayout::fromXml(m_graphicsInfo, SdcType::Mol, &m_drawing->error);
    }
    return *m_drawing;
}

std::shared_ptr<const SdcMolType> SdcMolType::Reader::read(const QString &molPsiimId)
{
    if (!m_db)
        return nullptr;
    if (!std::exchange(m_isReading, true))
        findKept();
    if (!m_kept)
        return fromRecords(molPsiimId, m_db);
    if (const auto found = m_kept->types.constFind(molPsiimId); found != m_kept->types.cend())
        return *found;
    std::shared_ptr<const SdcMolType> type = fromRecords(molPsiimId, m_db);
    if (m_kept->types.size() >= MaxKept)
        m_kept->types.clear();
    if (type)
        m_kept->types.insert(molPsiimId, type);
    return type;
}

void SdcMolType::Reader::findKept()
{
    const QByteArray stamp = m_db->database() ? m_db->database()->moleculesStamp() : QByteArray();
    if (stamp.isEmpty())
        return;
    m_kept = std::static_pointer_cast<Kept>(m_db->kept());
    if (m_kept && m_kept->stamp == stamp)
        return;
    m_kept = std::make_shared<Kept>(Kept{stamp, {}});
    m_db->setKept(m_kept);
}

std::shared_ptr<const SdcMolType> SdcMolType::fromRecords(
    const QString &molPsiimId, const ZelDbSqliteModel *db)
{
    using namespace ZelDbColumn;
    const ZelDbRecord record = db->molGetHashInfo(molPsiimId);
    if (record.isEmpty())
        return nullptr;
    auto type = std::make_shared<SdcMolType>();
    type->properties = {{SdcProperty::PsiimId, record.value(PsiimId, molPsiimId)},
        {SdcProperty::ShortName, record.value(ShortName)}, {SdcProperty::Name, record.value(Name)},
        {SdcProperty::MolNumber16, record.value(MolNumber16)},
        {SdcProperty::MolNumber18,
            ZelShare::getScientificFormat(record.value(MolNumber18), 2, 10, false)},
        {SdcProperty::MolNumber15, record.value(MolNumber15)},
        {SdcProperty::Notes, record.value(Notes)},
        {SdcProperty::References, db->refGetReferences(QStringLiteral("mol"), molPsiimId)},
        {SdcProperty::Location, record.value(Location)}};
    type->m_graphicsInfo = record.value(GraphicsInfo);
    type->color = QColor(record.value(Color));
    type->isDamaged = !type->color.isValid();
    const QStringList mcpIds = db->molGetListMcpPsiimId(molPsiimId);
    for (const QString &id : mcpIds)
        type->readMcp(id, db);
    type->readBackbones(molPsiimId, db);
    return type;
}

void SdcMolType::readMcp(const QString &mcpPsiimId, const ZelDbSqliteModel *db)
{
    const ZelDbRecord record = db->mcpGetHashInfo(mcpPsiimId);
    Mcp mcp;
    mcp.psiimId = mcpPsiimId;
    mcp.properties = namedProperties(
        mcpPsiimId, record, db->refGetReferences(QStringLiteral("mcp"), mcpPsiimId));
    mcp.properties.append({SdcProperty::Location, record.value(ZelDbColumn::Location)});
    const QList<ZelDbState> states = db->mcpGetOrderedStates(mcpPsiimId);
    for (const ZelDbState &state : states) {
        mcp.stateNames.append(state.name);
        mcp.states.append({state.psiimId, state.name, state.color, QColor(state.color),
            db->refGetReferences(QStringLiteral("mcpState"), state.psiimId)});
    }
    mcp.stateCode = mcp.stateNames.join(u';');
    mcp.bstPsiimIds = db->bstGetListPsiimIdBasedOnMcp(mcpPsiimId);
    for (const QString &id : std::as_const(mcp.bstPsiimIds))
        mcp.bstProperties.append(namedProperties(
            id, db->bstGetHashInfo(id), db->refGetReferences(QStringLiteral("bst"), id)));
    mcps.append(mcp);
}

void SdcMolType::readBackbones(const QString &molPsiimId, const ZelDbSqliteModel *db)
{
    const QMultiHash<int, int> pairs = db->molGetMultiHashMcpMcp(molPsiimId);
    for (auto it = pairs.cbegin(); it != pairs.cend(); ++it) {
        const auto [low, high] = std::minmax(it.key(), it.value());
        isDamaged = isDamaged || low < 0 || high >= mcps.size() || low == high;
        backbones.append({it.key(), it.value()});
    }
    std::sort(backbones.begin(), backbones.end()); // the hash has no order of its own
}
