#pragma once

#include "backup/backup_file_cache.h"
#include "backup/file_fetcher.h"
#include "backup/scratch_folder.h"
#include "base/report.h"

#include <QSet>

#include <mutex>

/// The plain copies that are made of a backup's files for looking into them. Each file is fetched once, and
/// not at all while a cache has a copy of its date.
class PrivateCopies
{
public:
    using Index = FileCatalogue::Index;

    PrivateCopies(const FileCatalogue &catalogue, const FileFetcher &fetcher, ScratchFolder &scratch);

    /// New copies go into `cache` as far as it keeps them; null for none. It must outlive this object.
    void setCache(BackupFileCache *cache) { m_cache = cache; }

    /// A database together with its write-ahead log when the backup has one.
    QString database(Index index, const CopyProgress &progress);
    QString forViewing(Index index, const CopyProgress &progress = {});
    /// Fetches a file into the cache. Throws Error.
    CacheOutcome cacheFile(Index index, const CopyProgress &progress);
    /// What of the databases' logs could not be read. May be called from any thread.
    Report report() const;
    /// Forgets the copies; those outside of the cache go with the scratch folder.
    void clear();

private:
    const FileCatalogue &m_catalogue;
    const FileFetcher &m_fetcher;
    ScratchFolder &m_scratch;
    BackupFileCache *m_cache = nullptr;
    QHash<Index, QString> m_databases;
    QHash<Index, QString> m_views;
    mutable std::mutex m_reportMutex;
    Report m_report;
    QSet<Index> m_toldLogs;

    Index logOf(Index database) const;
    bool isCompanion(Index index) const;
    QString fetch(Index index, const char *kind, std::uint64_t spareBytes, const CopyProgress &progress);
    bool fetchLog(Index log, const QString &database);
    void tellLog(Index log, const Error &error);
    QString keepDatabase(Index index, Index log, const QString &copy);
};
