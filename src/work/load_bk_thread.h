#pragma once

#include "personal/data_class.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

#include <QHash>

/// What loading a backup found out for its nodes.
struct BackupCounts
{
    qint64 messages = 0;
    QHash<DataClass, qint64> records; // of the small classes; none where they cannot be counted
    QString messagesProblem;          // why they could not be counted; empty when they could
};

/// Builds the index of an unlocked backup and counts what it holds. A message database that cannot be read
/// does not keep the rest of the backup from being looked at. Throws Error and Cancelled.
BackupCounts loadBackup(OpenBackup &backup, Progress &progress);

/// Loads a backup.
class LoadBkThread : public WorkerThread
{
    Q_OBJECT

public:
    explicit LoadBkThread(OpenBackupPtr backup);

    /// To be read after success.
    const BackupCounts &counts() const { return m_counts; }

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    BackupCounts m_counts;
};
