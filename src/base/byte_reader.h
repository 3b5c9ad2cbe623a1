#pragma once

#include <QByteArrayView>

#include <cstdint>

/// A bounded reader over bytes that it does not own: position, remaining, integers of both byte orders,
/// slices. Every read checks the remaining length first; a read that runs short throws Error and moves
/// nothing.
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView bytes) : m_bytes(bytes) {}

    qsizetype position() const { return m_position; }
    qsizetype remaining() const { return m_bytes.size() - m_position; }
    bool atEnd() const { return remaining() == 0; }

    /// Moves to an absolute offset; throws Error when it lies behind the end.
    void seek(qsizetype offset);
    void skip(qsizetype count);

    std::uint8_t u8() { return static_cast<std::uint8_t>(bigEndian(1)); }
    std::uint16_t u16be() { return static_cast<std::uint16_t>(bigEndian(2)); }
    std::uint32_t u32be() { return static_cast<std::uint32_t>(bigEndian(4)); }
    std::uint64_t u64be() { return bigEndian(8); }
    std::uint16_t u16le() { return static_cast<std::uint16_t>(littleEndian(2)); }
    std::uint32_t u32le() { return static_cast<std::uint32_t>(littleEndian(4)); }
    std::uint64_t u64le() { return littleEndian(8); }
    /// An unsigned big- or little-endian integer of 1 to 8 bytes.
    std::uint64_t bigEndian(int size);
    std::uint64_t littleEndian(int size);

    /// The next `count` bytes, valid as long as the bytes this reader stands on.
    QByteArrayView slice(qsizetype count);

private:
    QByteArrayView m_bytes;
    qsizetype m_position = 0;

    void require(qsizetype count) const;
};
