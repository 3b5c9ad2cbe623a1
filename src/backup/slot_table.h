#pragma once

#include <QByteArrayView>
#include <QHash>

#include <algorithm>
#include <cstdint>
#include <vector>

/// A hash table from byte strings that are kept elsewhere to 32-bit numbers: eight bytes a place, and
/// nothing for the strings. Whoever looks up brings the hash and says whether a number is the wanted one.
class SlotTable
{
public:
    static constexpr std::uint32_t none = UINT32_MAX;

    /// The seed is drawn anew by every process: no backup can be made whose names collide.
    static std::uint32_t hash(QByteArrayView bytes)
    {
        const std::uint64_t full = qHash(bytes, QHashSeed::globalSeed());
        return static_cast<std::uint32_t>(full ^ full >> 32);
    }

    /// The number under `hash` for which `isWanted(number)` holds, or none.
    template <typename IsWanted>
    std::uint32_t find(std::uint32_t hash, const IsWanted &isWanted) const
    {
        if (m_places.empty())
            return none;
        for (std::size_t at = home(hash); m_places[at].number != none; at = behind(at))
            if (m_places[at].hash == hash && isWanted(m_places[at].number))
                return m_places[at].number;
        return none;
    }

    /// Adds a number whose string is not in the table yet.
    void insert(std::uint32_t hash, std::uint32_t number)
    {
        if ((m_used + 1) * 4 > m_places.size() * 3)
            resize(std::max<std::size_t>(64, m_places.size() * 2));
        put({hash, number});
        ++m_used;
    }

    /// Gives back the places that growing left over.
    void squeeze() { resize(m_used == 0 ? 0 : m_used + m_used / 4 + 1); }

    std::size_t memoryBytes() const { return m_places.capacity() * sizeof(Place); }

private:
    /// The whole hash stands beside the number: it tells almost all others apart, and it is what growing
    /// needs.
    struct Place
    {
        std::uint32_t hash;
        std::uint32_t number = none;
    };

    std::vector<Place> m_places;
    std::size_t m_used = 0;

    std::size_t home(std::uint32_t hash) const
    {
        return static_cast<std::size_t>(std::uint64_t{hash} * m_places.size() >> 32);
    }
    std::size_t behind(std::size_t at) const { return at + 1 == m_places.size() ? 0 : at + 1; }
    void put(Place place)
    {
        std::size_t at = home(place.hash);
        while (m_places[at].number != none)
            at = behind(at);
        m_places[at] = place;
    }
    void resize(std::size_t capacity)
    {
        std::vector<Place> old(capacity);
        old.swap(m_places);
        for (const Place &place : old)
            if (place.number != none)
                put(place);
    }
};
