#pragma once

#include "backup/cache_database.h"

#include <optional>

/// Which copies of backup files were made, and of which date of each file. A register that cannot be read
/// knows of no copy; one that cannot be written costs another copy the next time.
class CopyRegister
{
public:
    explicit CopyRegister(const QString &path);

    /// Unix seconds; nothing for a file without a row. `fileId` is the file's name in the backup.
    std::optional<qint64> cachedDate(const QByteArray &fileId);
    /// False when it could not be written.
    bool setCachedDate(const QByteArray &fileId, qint64 date);

private:
    CacheDatabase m_database;
};
