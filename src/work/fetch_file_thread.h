#pragma once

#include "work/open_backup.h"
#include "work/worker_thread.h"

/// Files of at most so many bytes are opened out of a backup; larger ones the user extracts first.
inline constexpr std::uint64_t largestOpenedBytes = 10485760;

bool isTooLargeToOpen(const BackupManifest &backup, FileCatalogue::Index file);

/// Where a file is copied to for being opened with another program, see placeToOpen(): named after the device
/// and the file. Throws Error when it may not be opened.
QString openedCopyPath(const BackupManifest &backup, FileCatalogue::Index file);

/// Fetches one file out of a backup for looking at it.
class FetchFileThread : public WorkerThread
{
    Q_OBJECT

public:
    /// Without a destination the copy is a private one that vanishes when the backup is closed.
    FetchFileThread(OpenBackupPtr backup, FileCatalogue::Index file, QString destination = {});

    /// To be read after success: the copy.
    const QString &path() const { return m_path; }

protected:
    QString work(Progress &progress) override;

private:
    OpenBackupPtr m_backup;
    FileCatalogue::Index m_file;
    QString m_path;
};
