#include "backup/database_log.h"

#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <QFile>
#include <QtEndian>

namespace {
// The header of the log: magic, version, page size, counter, two salts, two sums. Before each page: its
// number, the pages of the database when the page ends a change and else 0, the two salts, two sums.
constexpr qsizetype headerSize = 32;
constexpr qsizetype frameHeaderSize = 24;
constexpr qsizetype saltsSize = 8;
constexpr std::uint32_t magicNumber = 0x377f0682; // one more when the sums are of big-endian numbers
constexpr std::uint32_t largestPage = 65536;

std::uint32_t numberAt(QByteArrayView bytes, qsizetype at)
{
    return qFromBigEndian<std::uint32_t>(bytes.data() + at);
}

/// The sums run on from the header through all pages.
class LogSums
{
public:
    explicit LogSums(bool isBigEndian) : m_isBigEndian(isBigEndian) {}

    void add(QByteArrayView bytes)
    {
        for (qsizetype at = 0; at + 8 <= bytes.size(); at += 8) {
            m_first += word(bytes, at) + m_second;
            m_second += word(bytes, at + 4) + m_first;
        }
    }
    bool areAt(QByteArrayView bytes, qsizetype at) const
    {
        return numberAt(bytes, at) == m_first && numberAt(bytes, at + 4) == m_second;
    }

private:
    bool m_isBigEndian;
    std::uint32_t m_first = 0;
    std::uint32_t m_second = 0;

    std::uint32_t word(QByteArrayView bytes, qsizetype at) const
    {
        return m_isBigEndian ? numberAt(bytes, at) : qFromLittleEndian<std::uint32_t>(bytes.data() + at);
    }
};
} // namespace

void applyLog(const QString &database)
{
    Sqlite3DB db;
    db.openThrow(database, SqliteOpen::ReadWrite);
    // A copy that breaks off with the machine is made again.
    if (!db.exec(QStringLiteral("pragma synchronous=off; pragma journal_mode=delete")))
        throw Error(QStringLiteral("can not read %1. %2").arg(database, db.lastError()));
}

QString faultOfLog(const QString &log)
{
    QFile file(log);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const QByteArray header = file.read(headerSize);
    if (header.isEmpty())
        return {};
    LogSums sums(header.size() == headerSize && numberAt(header, 0) == magicNumber + 1);
    sums.add(header.first(std::min(header.size(), headerSize - saltsSize)));
    const bool isLog = header.size() == headerSize && numberAt(header, 0) / 2 == magicNumber / 2 &&
                       numberAt(header, 8) <= largestPage && sums.areAt(header, headerSize - saltsSize);
    if (!isLog)
        return QStringLiteral("it is no log of a database");
    const QByteArrayView salts = QByteArrayView(header).sliced(16, saltsSize);
    const qsizetype frameSize = frameHeaderSize + numberAt(header, 8);
    bool isAtEndOfChange = true;
    bool isBehindEnd = false;
    for (;;) {
        const QByteArray frame = file.read(frameSize);
        if (frame.size() < 16)
            break;
        // What an older log left behind the end has other salts. A page of this log there shows that the one
        // which seemed to end it is damaged.
        if (QByteArrayView(frame).sliced(8, saltsSize) != salts) {
            isBehindEnd = true;
            continue;
        }
        if (isBehindEnd)
            return QStringLiteral("it is damaged");
        sums.add(frame.first(8));
        sums.add(frame.sliced(std::min(frame.size(), frameHeaderSize)));
        if (frame.size() < frameSize || !sums.areAt(frame, 16))
            return QStringLiteral("it is damaged or breaks off");
        isAtEndOfChange = numberAt(frame, 4) != 0;
    }
    return isAtEndOfChange ? QString() : QStringLiteral("it breaks off within a change");
}
