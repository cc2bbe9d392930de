#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxConnectivity.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

/// Sets of molecules that are joined step by step.
class Parts
{
public:
    explicit Parts(std::vector<SdcMol *> mols) : m_mols(std::move(mols))
    {
        std::sort(m_mols.begin(), m_mols.end(), std::less<>());
        m_mols.erase(std::unique(m_mols.begin(), m_mols.end()), m_mols.end());
        m_up.resize(m_mols.size());
        std::iota(m_up.begin(), m_up.end(), 0U);
    }

    /// False when one of them is none of the molecules or both were joined already.
    bool join(SdcMol *a, SdcMol *b)
    {
        const std::size_t i = find(a);
        const std::size_t j = find(b);
        if (i == None || j == None || i == j)
            return false;
        m_up[i] = j;
        return true;
    }

    bool areJoined(SdcMol *a, SdcMol *b) { return find(a) != None && find(a) == find(b); }
    std::size_t size() const { return m_mols.size(); }

private:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    std::size_t find(SdcMol *mol)
    {
        const auto at = std::lower_bound(m_mols.cbegin(), m_mols.cend(), mol, std::less<>());
        if (!mol || at == m_mols.cend() || *at != mol)
            return None;
        auto i = static_cast<std::size_t>(at - m_mols.cbegin());
        while (m_up[i] != i) {
            m_up[i] = m_up[m_up[i]];
            i = m_up[i];
        }
        return i;
    }

    std::vector<SdcMol *> m_mols;
    std::vector<std::size_t> m_up;
};

} // namespace

namespace SdcCpxConnectivity {

Ends endsOf(const SdcBstBst *bond)
{
    SdcBst *const first = bond ? bond->getSdcBst1() : nullptr;
    SdcBst *const second = bond ? bond->getSdcBst2() : nullptr;
    return {
        first ? first->getParentSdcMol() : nullptr, second ? second->getParentSdcMol() : nullptr};
}

QList<SdcMol *> reachable(SdcMol *mol, const QList<SdcBstBst *> &bonds)
{
    if (!mol)
        return {};
    QHash<SdcMol *, QList<SdcMol *>> neighbors;
    for (const SdcBstBst *bond : bonds) {
        const Ends ends = endsOf(bond);
        if (!ends.first || !ends.second || ends.first == ends.second)
            continue;
        neighbors[ends.first].append(ends.second);
        neighbors[ends.second].append(ends.first);
    }
    QList<SdcMol *> reached{mol};
    QSet<SdcMol *> seen{mol};
    for (qsizetype i = 0; i < reached.size(); ++i) {
        for (SdcMol *neighbor : neighbors.value(reached.at(i))) {
            if (seen.contains(neighbor))
                continue;
            seen.insert(neighbor);
            reached.append(neighbor);
        }
    }
    return reached;
}

bool isConnectedWithin(const QList<SdcMol *> &mols, const QList<SdcBstBst *> &bonds)
{
    if (mols.isEmpty())
        return false;
    Parts parts({mols.cbegin(), mols.cend()});
    std::size_t count = parts.size();
    for (const SdcBstBst *bond : bonds) {
        const Ends ends = endsOf(bond);
        if (parts.join(ends.first, ends.second))
            --count;
    }
    return count == 1;
}

bool isPartOfRing(const SdcBstBst *bond, const QList<SdcBstBst *> &bonds)
{
    const Ends broken = endsOf(bond);
    if (!broken.first || !broken.second || broken.first == broken.second)
        return false;
    std::vector<SdcMol *> mols;
    mols.reserve(2 * static_cast<std::size_t>(bonds.size()) + 2);
    const auto note = [&mols](const Ends &ends) {
        mols.insert(mols.end(), {ends.first, ends.second});
    };
    note(broken);
    for (const SdcBstBst *other : bonds)
        note(endsOf(other));
    Parts parts(std::move(mols));
    for (const SdcBstBst *other : bonds) {
        if (other == bond)
            continue;
        const Ends ends = endsOf(other);
        parts.join(ends.first, ends.second);
    }
    return parts.areJoined(broken.first, broken.second);
}

bool touches(const SdcBstBst *bond, const SdcMol *mol)
{
    const Ends ends = endsOf(bond);
    return mol && (ends.first == mol || ends.second == mol);
}

bool touches(const SdcBstBst *bond, const SdcMcp *mcp)
{
    const auto isOn = [mcp](SdcBst *site) { return site && site->getParentMcp() == mcp; };
    return bond && mcp && (isOn(bond->getSdcBst1()) || isOn(bond->getSdcBst2()));
}

} // namespace SdcCpxConnectivity
