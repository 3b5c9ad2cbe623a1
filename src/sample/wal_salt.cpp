#include "sample/wal_salt.h"

#include "base/error.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

namespace sample {

namespace {

// Header (32 bytes, big-endian): magic 377f0682, version, page size, checkpoint count, salts (8), checksum
// (8). Then frames: page number, database size, salts (8), checksum (8), the page. A checksum goes on from
// the one before, over the first 24 bytes of the header, then over 8 bytes of each frame and its page.
constexpr qsizetype headerSize = 32;
constexpr qsizetype frameHeaderSize = 24;
constexpr quint32 littleEndianSums = 0x377f0682;

struct Checksum
{
    quint32 first = 0;
    quint32 second = 0;

    void add(const char *bytes, qsizetype length)
    {
        for (qsizetype i = 0; i < length; i += 8) {
            first += qFromLittleEndian<quint32>(bytes + i) + second;
            second += qFromLittleEndian<quint32>(bytes + i + 4) + first;
        }
    }

    void store(char *target) const
    {
        qToBigEndian(first, target);
        qToBigEndian(second, target + 4);
    }
};

} // namespace

void saltWal(const QString &path, quint64 salt)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        throw Error(QStringLiteral("can not open %1. %2").arg(path, file.errorString()));
    QByteArray log = file.readAll();
    if (log.size() < headerSize)
        throw Error(QStringLiteral("%1 holds no pages.").arg(path));
    char *bytes = log.data();
    const qsizetype pageSize = qFromBigEndian<quint32>(bytes + 8);
    Checksum sum;
    qToBigEndian(littleEndianSums, bytes);
    qToBigEndian(salt, bytes + 16);
    sum.add(bytes, 24);
    sum.store(bytes + 24);
    for (qsizetype at = headerSize; at + frameHeaderSize + pageSize <= log.size();
         at += frameHeaderSize + pageSize) {
        qToBigEndian(salt, bytes + at + 8);
        sum.add(bytes + at, 8);
        sum.add(bytes + at + frameHeaderSize, pageSize);
        sum.store(bytes + at + 16);
    }
    if (!file.seek(0) || file.write(log) != log.size())
        throw Error(QStringLiteral("can not write %1. %2").arg(path, file.errorString()));
}

} // namespace sample
