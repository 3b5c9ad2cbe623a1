#pragma once

#include <QByteArrayView>

#include <cstdint>

/// A view of the objects of a binary property list, without a tree and without allocation. It does not own
/// the bytes. Every access is checked; nothing is read outside of the object area.
///
///     "bplist00"  objects...  offset table (number of objects x offset size, big-endian)
///     trailer: 6 bytes, offset size (1), reference size (1), number of objects (8), top object (8),
///              position of the offset table (8)
///
/// An object starts with a marker: its kind in the high half, its size in the low half (15: the size follows
/// as an integer object).
class BinaryPlist
{
public:
    enum class Kind : std::uint8_t {
        Simple = 0x0, // null, false, true by size 0, 8, 9
        Integer = 0x1,
        Real = 0x2,
        Date = 0x3,
        Data = 0x4,
        Ascii = 0x5,
        Utf16 = 0x6, // big-endian
        Uid = 0x8,
        Array = 0xA,
        Set = 0xC,
        Dictionary = 0xD
    };

    /// One object whose payload lies inside the object area. `count` is the number of bytes of numbers, data
    /// and ASCII texts, of code units, of items or of entries.
    struct Object
    {
        Kind kind = Kind::Simple;
        std::uint64_t count = 0;
        const std::uint8_t *payload = nullptr;

        QByteArrayView bytes() const { return {payload, static_cast<qsizetype>(count)}; }
        /// Value of an integer or a UID. Of 16 bytes the lower 8 count.
        std::uint64_t number() const { return bigEndian(payload, count); }
    };

    /// False when the trailer is none or its numbers do not fit the bytes.
    bool open(QByteArrayView bytes);

    std::uint64_t objectCount() const { return m_objectCount; }
    std::uint64_t top() const { return m_top; }

    /// False when there is no such object, or it is of an unknown kind or reaches beyond the object area.
    bool object(std::uint64_t index, Object &out) const
    {
        const std::uint8_t *at = index < m_objectCount ? place(index) : nullptr;
        return at && (shortText(at, out) || anyObject(at, out));
    }
    /// The index that an array holds at `position`; a dictionary holds its keys, then its values.
    std::uint64_t reference(const Object &container, std::uint64_t position) const
    {
        return bigEndian(container.payload + position * m_referenceSize, m_referenceSize);
    }

private:
    static constexpr std::uint64_t magicSize = 8; // of "bplist00"

    const std::uint8_t *m_begin = nullptr;
    const std::uint8_t *m_offsets = nullptr; // also the end of the object area
    std::uint64_t m_objectCount = 0;
    std::uint64_t m_top = 0;
    std::uint8_t m_offsetSize = 0;
    std::uint8_t m_referenceSize = 0;

    static std::uint64_t bigEndian(const std::uint8_t *at, std::uint64_t size);
    const std::uint8_t *place(std::uint64_t index) const;
    bool shortText(const std::uint8_t *at, Object &out) const;
    bool anyObject(const std::uint8_t *at, Object &out) const;
    bool readCount(const std::uint8_t *&at, std::uint64_t &count) const;
};

inline std::uint64_t BinaryPlist::bigEndian(const std::uint8_t *at, std::uint64_t size)
{
    switch (size) {
    case 1:
        return at[0];
    case 2:
        return static_cast<std::uint64_t>(at[0]) << 8 | at[1];
    default:
        break;
    }
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i)
        value = value << 8 | at[i];
    return value;
}

/// Where an object begins, null when that is not in the object area.
inline const std::uint8_t *BinaryPlist::place(std::uint64_t index) const
{
    const std::uint64_t offset = bigEndian(m_offsets + index * m_offsetSize, m_offsetSize);
    const bool inside = offset >= magicSize && offset < static_cast<std::uint64_t>(m_offsets - m_begin);
    return inside ? m_begin + offset : nullptr;
}

/// The names of keys, which are most of what is looked at, without the general case.
inline bool BinaryPlist::shortText(const std::uint8_t *at, Object &out) const
{
    const auto length = static_cast<std::uint8_t>(*at - 0x50);
    if (length >= 0xF || m_offsets - at <= length)
        return false;
    out.kind = Kind::Ascii;
    out.count = length;
    out.payload = at + 1;
    return true;
}
