#pragma once

#include "backup/file_fetcher.h"
#include "backup/scratch_folder.h"

/// The plain copies that are made of a backup's files for looking into them. Each file is fetched once.
class PrivateCopies
{
public:
    using Index = FileCatalogue::Index;

    PrivateCopies(const FileCatalogue &catalogue, const FileFetcher &fetcher, ScratchFolder &scratch);

    /// A database together with its write-ahead log when the backup has one.
    QString database(Index index);
    QString forViewing(Index index);
    /// Forgets the copies, which go with the scratch folder.
    void clear();

private:
    const FileCatalogue &m_catalogue;
    const FileFetcher &m_fetcher;
    ScratchFolder &m_scratch;
    QHash<Index, QString> m_databases;
    QHash<Index, QString> m_views;

    QString fetch(Index index, const char *kind, std::uint64_t spareBytes);
    void fetchLog(Index log, const QString &database);
};
