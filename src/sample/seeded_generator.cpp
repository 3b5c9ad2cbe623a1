#include "sample/seeded_generator.h"

namespace sample {

quint64 SeededGenerator::next()
{
    m_state += 0x9E3779B97F4A7C15ULL;
    quint64 mixed = m_state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
    return mixed ^ (mixed >> 31);
}

int SeededGenerator::below(int limit)
{
    return static_cast<int>(((next() >> 32) * static_cast<quint64>(limit)) >> 32);
}

int SeededGenerator::skewedBelow(int limit)
{
    const quint64 unit = next() >> 43;              // 21 bits, so that the cube fits
    const quint64 cubed = unit * unit * unit >> 31; // 32 bits
    return static_cast<int>(cubed * static_cast<quint64>(limit) >> 32);
}

QByteArray SeededGenerator::bytes(int length)
{
    QByteArray result(length, Qt::Uninitialized);
    quint64 word = 0;
    for (int i = 0; i < length; ++i) {
        if (i % 8 == 0)
            word = next();
        result[i] = static_cast<char>(word >> (i % 8 * 8));
    }
    return result;
}

QByteArray SeededGenerator::uuid()
{
    QByteArray raw = bytes(16);
    raw[6] = static_cast<char>((raw[6] & 0x0F) | 0x40);
    raw[8] = static_cast<char>((raw[8] & 0x3F) | 0x80);
    const QByteArray hex = raw.toHex().toUpper();
    QByteArray result;
    result.reserve(36);
    for (int i = 0; i < 32; ++i) {
        if (i == 8 || i == 12 || i == 16 || i == 20)
            result += '-';
        result += hex[i];
    }
    return result;
}

SeededGenerator SeededGenerator::fork(const char *purpose) const
{
    quint64 hash = 0xCBF29CE484222325ULL;
    for (const char *c = purpose; *c; ++c)
        hash = (hash ^ static_cast<unsigned char>(*c)) * 0x100000001B3ULL;
    SeededGenerator result(m_state ^ hash);
    result.next();
    return result;
}

} // namespace sample
