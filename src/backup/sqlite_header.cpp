#include "backup/sqlite_header.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace {
constexpr QByteArrayView magic("SQLite format 3", 16);
constexpr qsizetype headerSize = 100;

QByteArray headerOf(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(headerSize) : QByteArray();
}
} // namespace

bool hasSqliteHeader(const QString &path)
{
    return headerOf(path).startsWith(magic);
}

std::optional<std::uint64_t> databaseBytes(const QString &path)
{
    const QByteArray header = headerOf(path);
    if (!header.startsWith(magic))
        return std::nullopt;
    if (header.size() < headerSize)
        return headerSize;
    const auto number = [&header](qsizetype at) { return qFromBigEndian<std::uint32_t>(header.constData() + at); };
    const std::uint32_t pageSize = qFromBigEndian<std::uint16_t>(header.constData() + 16);
    // Programs of before 2010 change a database without counting its pages.
    const bool isCounted = number(24) == number(92);
    return isCounted ? std::uint64_t{pageSize == 1 ? 65536 : pageSize} * number(28) : 0;
}
