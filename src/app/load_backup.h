#pragma once

#include "work/load_bk_thread.h"

#include <optional>

class QWidget;

struct LoadedBackup
{
    OpenBackupPtr backup;
    BackupCounts counts;
};

/// A backup of which only the description is read, with its cache. Throws Error.
OpenBackupPtr describedBackup(const QString &folder);

/// Loads a described backup for the user: asks for the password when it has one, builds the index under the
/// progress dialog, shows what goes wrong. Nothing when it failed or the user stopped.
std::optional<BackupCounts> loadForUser(const OpenBackupPtr &backup, QWidget *parent);

/// The same from the folder on. A backup that was not loaded keeps nothing in its cache any more.
std::optional<LoadedBackup> openBackupForUser(const QString &folder, QWidget *parent);
