#pragma once

#include <QByteArrayView>

#include <cstdint>
#include <vector>

/// Many short byte strings in one run of memory, each behind its length (7 bits a byte, the highest bit of
/// all but the last set), so that a string costs one or two bytes more than it holds. What view() gives is
/// valid until the next append.
class ByteArena
{
public:
    /// Throws Error when the arena would outgrow its 32-bit offsets.
    std::uint32_t append(QByteArrayView bytes);
    /// The string at `offset`, which afterwards stands behind it.
    QByteArrayView read(std::uint32_t &offset) const;

    void squeeze() { m_bytes.shrink_to_fit(); }
    std::size_t memoryBytes() const { return m_bytes.capacity(); }

private:
    std::vector<char> m_bytes;
};
