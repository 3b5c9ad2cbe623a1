#include "backup/byte_arena.h"

#include "base/error.h"

namespace {
constexpr std::size_t longestLengthCode = 10;
}

std::uint32_t ByteArena::append(QByteArrayView bytes)
{
    const std::size_t offset = m_bytes.size();
    if (static_cast<std::size_t>(bytes.size()) > UINT32_MAX - longestLengthCode - offset)
        throw Error(QStringLiteral("The catalogue of the backup holds more than 4 GiB of names."));
    auto length = static_cast<std::size_t>(bytes.size());
    while (length >= 0x80) {
        m_bytes.push_back(static_cast<char>(0x80 | (length & 0x7F)));
        length >>= 7;
    }
    m_bytes.push_back(static_cast<char>(length));
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return static_cast<std::uint32_t>(offset);
}

QByteArrayView ByteArena::read(std::uint32_t &offset) const
{
    std::size_t length = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<std::uint8_t>(m_bytes[offset++]);
        length |= static_cast<std::size_t>(byte & 0x7F) << shift;
        if (byte < 0x80)
            break;
    }
    const QByteArrayView bytes(m_bytes.data() + offset, static_cast<qsizetype>(length));
    offset += static_cast<std::uint32_t>(length);
    return bytes;
}
