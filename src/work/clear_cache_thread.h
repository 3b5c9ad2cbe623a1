#pragma once

#include "work/open_backup.h"
#include "work/worker_thread.h"

#include <vector>

/// Clears the cache of the backup with this uid, or of all backups when it is empty, and takes away what was
/// handed to other programs for viewing. `open` are the backups
/// whose files somebody may be using just now: each is waited for. Throws Cancelled.
void clearCacheFiles(const QString &uid, const std::vector<OpenBackupPtr> &open, Progress &progress);

/// Clears caches.
class ClearCacheThread : public WorkerThread
{
    Q_OBJECT

public:
    /// `doneText` is shown at the end; empty for none.
    ClearCacheThread(QString uid, std::vector<OpenBackupPtr> open, QString doneText);

protected:
    QString work(Progress &progress) override;

private:
    QString m_uid;
    std::vector<OpenBackupPtr> m_open;
    QString m_doneText;
};
