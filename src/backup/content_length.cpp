#include "backup/content_length.h"

#include "backup/sqlite_header.h"

#include <QFileInfo>

QString shortfallOf(const QString &copy, std::uint64_t listedBytes)
{
    for (const char *companion : {"-wal", "-shm", "-journal"})
        if (copy.endsWith(QLatin1String(companion)))
            return {};
    const auto size = static_cast<std::uint64_t>(QFileInfo(copy).size());
    const std::uint64_t whole = databaseBytes(copy).value_or(listedBytes);
    return size < whole ? QStringLiteral("%1 of %2 bytes").arg(size).arg(whole) : QString();
}
