#pragma once

#include "backup/cache_tree.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

/// Builds the index of an unlocked backup and copies its messages with all their attachments into the cache
/// that is attached. Throws Error, as for a backup without a message database, and Cancelled; what was copied
/// until then stays.
CachedFiles cacheMessages(OpenBackup &backup, Progress &progress);

/// Loads a backup and caches its messages: for whoever keeps backups on a disk that is slow or not always
/// there.
class ITunesCacheSMSThread : public WorkerThread
{
    Q_OBJECT

public:
    explicit ITunesCacheSMSThread(OpenBackupPtr backup);

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
};
