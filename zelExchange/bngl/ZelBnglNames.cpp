#include "zelExchange/bngl/ZelBnglNames.h"

#include <QHashFunctions>

#include <cstring>

namespace {

constexpr size_t FirstSlots = 256;

size_t hashOf(QByteArrayView name)
{
    // Seeded, so that no file can be written to make all its names collide.
    return qHashBits(name.data(), static_cast<size_t>(name.size()), QHashSeed::globalSeed());
}

} // namespace

ZelBnglNames::ZelBnglNames() : m_entries(FirstFree), m_slots(FirstSlots, None) { }

quint32 ZelBnglNames::intern(const char *source, ZelBnglText text)
{
    const QByteArrayView name(source + text.offset, text.length);
    const size_t hash = hashOf(name);
    size_t slot = slotOf(source, name, hash);
    if (m_slots[slot] != None)
        return m_slots[slot];
    if (m_entries.size() * 2 > m_slots.size()) {
        grow();
        slot = slotOf(source, name, hash);
    }
    m_slots[slot] = count();
    m_entries.push_back({text, hash});
    return m_slots[slot];
}

quint32 ZelBnglNames::find(const char *source, QByteArrayView name) const
{
    return m_slots[slotOf(source, name, hashOf(name))];
}

size_t ZelBnglNames::slotOf(const char *source, QByteArrayView name, size_t hash) const
{
    const size_t mask = m_slots.size() - 1;
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const quint32 known = m_slots[slot];
        if (known == None)
            return slot;
        const Entry &entry = m_entries[known];
        if (entry.hash == hash && entry.text.length == static_cast<quint32>(name.size())
            && std::memcmp(source + entry.text.offset, name.data(), entry.text.length) == 0)
            return slot;
    }
}

void ZelBnglNames::grow()
{
    m_slots.assign(m_slots.size() * 2, None);
    const size_t mask = m_slots.size() - 1;
    for (quint32 name = FirstFree; name < count(); ++name) {
        size_t slot = m_entries[name].hash & mask;
        while (m_slots[slot] != None)
            slot = (slot + 1) & mask;
        m_slots[slot] = name;
    }
}
