#include "backup/binary_plist.h"

namespace {
constexpr qsizetype trailerSize = 32;
constexpr std::uint8_t sizeFollows = 0xF;
} // namespace

bool BinaryPlist::open(QByteArrayView bytes)
{
    if (bytes.size() < static_cast<qsizetype>(magicSize) + trailerSize || !bytes.startsWith("bplist00"))
        return false;
    m_begin = reinterpret_cast<const std::uint8_t *>(bytes.data());
    const auto trailerAt = static_cast<std::uint64_t>(bytes.size() - trailerSize);
    const std::uint8_t *trailer = m_begin + trailerAt;
    m_offsetSize = trailer[6];
    m_referenceSize = trailer[7];
    m_objectCount = bigEndian(trailer + 8, 8);
    m_top = bigEndian(trailer + 16, 8);
    const std::uint64_t tableAt = bigEndian(trailer + 24, 8);
    if (m_offsetSize < 1 || m_offsetSize > 8 || m_referenceSize < 1 || m_referenceSize > 8)
        return false;
    if (tableAt <= magicSize || tableAt > trailerAt || m_top >= m_objectCount)
        return false;
    m_offsets = m_begin + tableAt;
    return m_objectCount <= (trailerAt - tableAt) / m_offsetSize;
}

/// Reads the integer object that holds a size, and moves `at` behind it.
bool BinaryPlist::readCount(const std::uint8_t *&at, std::uint64_t &count) const
{
    if (at >= m_offsets || (*at & 0xF0) != 0x10 || (*at & 0x0F) > 3)
        return false;
    const std::ptrdiff_t size = std::ptrdiff_t{1} << (*at & 0x0F);
    ++at;
    if (m_offsets - at < size)
        return false;
    count = bigEndian(at, static_cast<std::uint64_t>(size));
    at += size;
    return true;
}

bool BinaryPlist::anyObject(const std::uint8_t *at, Object &out) const
{
    const std::uint8_t low = *at & 0x0F;
    out.kind = static_cast<Kind>(*at >> 4);
    out.count = low;
    ++at;

    std::uint64_t unit = 1;
    bool hasCount = true;
    switch (out.kind) {
    case Kind::Simple:
        out.payload = at;
        return true;
    case Kind::Integer:
    case Kind::Real:
    case Kind::Date:
        if (low > 4)
            return false;
        out.count = std::uint64_t{1} << low;
        hasCount = false;
        break;
    case Kind::Uid:
        out.count = low + 1;
        hasCount = false;
        break;
    case Kind::Data:
    case Kind::Ascii:
        break;
    case Kind::Utf16:
        unit = 2;
        break;
    case Kind::Array:
    case Kind::Set:
        unit = m_referenceSize;
        break;
    case Kind::Dictionary:
        unit = 2 * std::uint64_t{m_referenceSize};
        break;
    default:
        return false;
    }
    if (hasCount && low == sizeFollows && !readCount(at, out.count))
        return false;
    out.payload = at;
    return out.count <= static_cast<std::uint64_t>(m_offsets - at) / unit;
}
