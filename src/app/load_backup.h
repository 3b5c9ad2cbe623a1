#pragma once

#include "work/load_bk_thread.h"

#include <optional>

class QWidget;

struct LoadedBackup
{
    OpenBackupPtr backup;
    BackupCounts counts;
};

/// Opens the backup in a folder for the user: asks for the password when it has one, builds the index under
/// the progress dialog, shows what goes wrong. Nothing when it failed or the user stopped.
std::optional<LoadedBackup> openBackupForUser(const QString &folder, QWidget *parent);
