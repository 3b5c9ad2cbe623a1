#pragma once

#include "personal/data_class.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

#include <QHash>

/// What loading a backup found out for its nodes.
struct BackupCounts
{
    qint64 messages = 0;
    QHash<DataClass, qint64> records; // of the others; none where they cannot be counted
    QString messagesProblem;          // why they could not be counted; empty when they could
};

/// The counts by the names of their classes, as a list of backups keeps them, and back.
QHash<QString, qint64> countsByName(const BackupCounts &counts);
BackupCounts countsOfNames(const QHash<QString, qint64> &names);

/// Builds the index of an unlocked backup, fetches the databases that counting reads, so that they lie in its
/// cache, and counts what it holds. A message database that cannot be read
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
