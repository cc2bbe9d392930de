#pragma once

#include <QByteArrayView>

#include <vector>

/// A piece of the source text.
struct ZelBnglText
{
    quint32 offset = 0;
    quint32 length = 0;

    bool isEmpty() const { return length == 0; }
};

/// Numbers the distinct names of one source text, so that names compare as numbers.
class ZelBnglNames
{
public:
    /// What stands instead of a name; the first names of a text follow after these.
    enum Reserved : quint32 {
        None = 0,
        Any = 1, ///< "?", as a state or a bond
        Bound = 2, ///< "+", as a bond
        FirstFree = 3
    };

    ZelBnglNames();

    /// Number of distinct names, the reserved ones included.
    quint32 count() const { return static_cast<quint32>(m_entries.size()); }
    ZelBnglText text(quint32 name) const { return m_entries[name].text; }

    /// The number of the name that stands at this place of the source, new or known.
    quint32 intern(const char *source, ZelBnglText text);
    /// The number of a name, None when the source does not hold it.
    quint32 find(const char *source, QByteArrayView name) const;

private:
    struct Entry
    {
        ZelBnglText text;
        size_t hash = 0;
    };

    size_t slotOf(const char *source, QByteArrayView name, size_t hash) const;
    void grow();

    std::vector<Entry> m_entries;
    std::vector<quint32> m_slots; ///< a power of two, None where free
};
