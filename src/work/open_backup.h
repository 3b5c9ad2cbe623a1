#pragma once

#include "backup/backup_manifest.h"

#include <QMutex>

#include <memory>

/// One backup that the program has open, shared by its views and workers; it closes with the last of them.
/// The catalogue and the tree may be read by anybody at any time, files only inside a BackupUse.
class OpenBackup
{
public:
    explicit OpenBackup(const QString &folder) : m_manifest(folder) {}

    BackupManifest &manifest() { return m_manifest; }
    const BackupManifest &manifest() const { return m_manifest; }
    const BackupInfo &info() const { return m_manifest.info(); }

private:
    friend class BackupUse;

    BackupManifest m_manifest;
    QMutex m_inUse;
};

using OpenBackupPtr = std::shared_ptr<OpenBackup>;

/// A worker's turn at the files of a backup; while it lives, the other workers wait.
class BackupUse
{
public:
    /// Waits for the turn; throws Cancelled.
    BackupUse(OpenBackup &backup, Progress &progress);
    ~BackupUse();
    BackupUse(const BackupUse &) = delete;
    BackupUse &operator=(const BackupUse &) = delete;

private:
    OpenBackup &m_backup;
};
