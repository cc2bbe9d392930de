#include "zelModelSupport/zelModelSupportDataComponent/SdcMolType.h"

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace {

using Shared = std::shared_ptr<const SdcMolType>;

constexpr qsizetype MaxKept = 4096;

/// Molecules of the file that was read last; a stamp is never the same for two files.
struct Kept
{
    QByteArray stamp;
    QHash<QString, Shared> types;
};

Kept &kept()
{
    static Kept types;
    return types;
}

Shared readType(const QString &molPsiimId, const ZelDbSqliteModel *db)
{
    auto type = std::make_shared<SdcMolType>();
    type->color = QColor(db->molGetHashInfo(molPsiimId).value(ZelDbColumn::Color));
    if (!type->color.isValid())
        return nullptr;
    const QStringList mcpIds = db->molGetListMcpPsiimId(molPsiimId);
    for (const QString &id : mcpIds) {
        SdcMolType::Mcp mcp{id, {}, db->bstGetListPsiimIdBasedOnMcp(id)};
        const QList<ZelDbState> states = db->mcpGetOrderedStates(id);
        for (const ZelDbState &state : states)
            mcp.states.append({state.name, QColor(state.color)});
        type->mcps.append(mcp);
    }
    const QMultiHash<int, int> pairs = db->molGetMultiHashMcpMcp(molPsiimId);
    for (auto it = pairs.cbegin(); it != pairs.cend(); ++it) {
        const auto [low, high] = std::minmax(it.key(), it.value());
        if (low < 0 || high >= mcpIds.size() || low == high)
            return nullptr;
        type->backbones.append({it.key(), it.value()});
    }
    std::sort(type->backbones.begin(), type->backbones.end()); // the hash has no order of its own
    return type;
}

} // namespace

SdcMolType::Reader::Reader(ZelDbSqliteModel *db) : m_db(db)
{
    const QByteArray stamp = db && db->database() ? db->database()->moleculesStamp() : QByteArray();
    m_isKept = !stamp.isEmpty();
    if (stamp != kept().stamp)
        kept() = {stamp, {}};
}

std::shared_ptr<const SdcMolType> SdcMolType::Reader::read(const QString &molPsiimId)
{
    if (!m_db)
        return nullptr;
    if (!m_isKept)
        return readType(molPsiimId, m_db);
    QHash<QString, Shared> &types = kept().types;
    if (const auto found = types.constFind(molPsiimId); found != types.cend())
        return *found;
    if (types.size() >= MaxKept)
        types.clear();
    return *types.insert(molPsiimId, readType(molPsiimId, m_db));
}
