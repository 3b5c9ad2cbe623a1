#include "base/byte_reader.h"

#include "base/error.h"

void ByteReader::require(qsizetype count) const
{
    if (count < 0 || count > remaining())
        throw Error(QStringLiteral("the data ends at byte %1, %2 more were expected")
                        .arg(m_bytes.size())
                        .arg(count < 0 ? 0 : count - remaining()));
}

void ByteReader::seek(qsizetype offset)
{
    if (offset < 0 || offset > m_bytes.size())
        throw Error(
            QStringLiteral("offset %1 lies outside the data of %2 bytes").arg(offset).arg(m_bytes.size()));
    m_position = offset;
}

void ByteReader::skip(qsizetype count)
{
    require(count);
    m_position += count;
}

std::uint64_t ByteReader::bigEndian(int size)
{
    require(size);
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | static_cast<std::uint8_t>(m_bytes[m_position + i]);
    m_position += size;
    return value;
}

std::uint64_t ByteReader::littleEndian(int size)
{
    require(size);
    std::uint64_t value = 0;
    for (int i = size; i-- > 0;)
        value = value << 8 | static_cast<std::uint8_t>(m_bytes[m_position + i]);
    m_position += size;
    return value;
}

QByteArrayView ByteReader::slice(qsizetype count)
{
    require(count);
    const QByteArrayView view = m_bytes.sliced(m_position, count);
    m_position += count;
    return view;
}
