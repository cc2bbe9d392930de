#pragma once

#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

#include <QList>
#include <QVarLengthArray>

#include <bit>
#include <cstddef>
#include <cstdint>

/// The sites that bonds hold, found by their addresses.
class SdcCpxBondTable
{
public:
    struct Held
    {
        SdcBst *site = nullptr;
        SdcBst *partner = nullptr; ///< in the first bond that holds the site; null without one
        bool twice = false; ///< whether another bond holds the site as well
    };

    template <typename Bond>
    explicit SdcCpxBondTable(const QList<Bond *> &bonds)
        : m_bits(static_cast<int>(std::bit_width(4 * static_cast<std::size_t>(bonds.size()) + 1))),
          m_slots(qsizetype(1) << m_bits, 0)
    {
        for (const SdcBstBst *bond : bonds) {
            SdcBst *const first = bond ? bond->getSdcBst1() : nullptr;
            SdcBst *const second = bond ? bond->getSdcBst2() : nullptr;
            if (first)
                add(first, second);
            if (second && second != first)
                add(second, first);
        }
    }

    const QVarLengthArray<Held, 32> &entries() const { return m_entries; }
    /// The number of its entry; -1 when no bond holds the site.
    int find(const SdcBst *site) const { return m_slots[slotOf(site)] - 1; }

private:
    void add(SdcBst *site, SdcBst *partner)
    {
        int &slot = m_slots[slotOf(site)];
        if (slot > 0) {
            m_entries[slot - 1].twice = true;
            return;
        }
        m_entries.append({site, partner, false});
        slot = static_cast<int>(m_entries.size());
    }

    // At least half of the slots stay free.
    qsizetype slotOf(const SdcBst *site) const
    {
        const std::uint64_t hash =
            reinterpret_cast<std::uintptr_t>(site) * std::uint64_t(0x9E3779B97F4A7C15);
        auto slot = static_cast<qsizetype>(hash >> (64 - m_bits));
        while (m_slots[slot] > 0 && m_entries[m_slots[slot] - 1].site != site)
            slot = (slot + 1) & (m_slots.size() - 1);
        return slot;
    }

    QVarLengthArray<Held, 32> m_entries; // in the order of the bonds
    int m_bits;
    QVarLengthArray<int, 128> m_slots; // 0: free, else the number of an entry, from 1
};
