#pragma once

#include "backup/backup_manifest.h"
#include "base/error.h"

#include <mutex>

/// Sets access and modification time. A record without a time, and a file system that keeps none, leave the
/// file with the time of the copy.
void setFileTimes(const QString &path, std::uint32_t unixSeconds);

/// Gets contents out of a backup folder: where they lie, whether they are there, which key opens them.
/// Changes nothing of itself or of the folder, so any number of threads may use it.
class FileFetcher
{
public:
    using Index = FileCatalogue::Index;

    /// All three must stay where they are while this lives.
    FileFetcher(const BackupInfo &info, const FileCatalogue &catalogue, const Keybag &keybag);

    CopySource stored(Index index) const;
    QString path(Index index) const { return stored(index).path; }
    bool hasContent(Index index) const;
    /// True when no key opens the content: its class is not one that the password unlocks, or its record lacks
    /// the key.
    bool isLocked(Index index) const;
    /// What is thrown where the content of such a file is asked for: as it is stored it is nobody's content.
    Error lockedError(Index index) const;
    /// Throws Error, which knows the file of the backup.
    FetchOutcome fetch(Index index, const QString &destination, const CopyProgress &progress) const;
    Index firstEncryptedItem() const;
    /// "domain path".
    QString displayPath(Index index) const;

private:
    const BackupInfo &m_info;
    const FileCatalogue &m_catalogue;
    const Keybag &m_keybag;
    mutable std::once_flag m_keysSought;
    mutable bool m_anyFileHasKey = false;

    QByteArray key(Index index) const;
    bool anyFileHasKey() const;
    void requireFile(Index index) const;
};
