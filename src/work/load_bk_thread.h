#pragma once

#include "base/report.h"
#include "personal/data_class.h"
#include "work/open_backup.h"
#include "work/worker_thread.h"

#include <QHash>

/// What loading a backup found out for its nodes.
struct BackupCounts
{
    QHash<DataClass, qint64> known; // lacks the classes whose number cannot be told
    Report report;                  // what is damaged in the catalogue and in what was counted, and the rest

    std::optional<qint64> of(DataClass dataClass) const
    {
        return known.contains(dataClass) ? std::optional(known.value(dataClass)) : std::nullopt;
    }
};

/// The counts by the names of their classes, as a list of backups keeps them, and back.
QHash<QString, qint64> countsByName(const BackupCounts &counts);
BackupCounts countsOfNames(const QHash<QString, qint64> &names);

/// Builds the index of an unlocked backup, fetches the databases that counting reads, so that they lie in its
/// cache, and counts what it holds. A database that cannot be read does not
/// keep the rest of the backup from being looked at. Throws Error and Cancelled.
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
