#pragma once

#include "backup/backup_manifest.h"

#include <memory>

class PasswordOption;

/// Whether a command can do without the password of an encrypted backup.
enum class PasswordNeed {
    Always,  // asks on a terminal when none was given
    IfGiven, // an encrypted backup without a password stays locked, without an index
};

/// Opens the backup in `folder`: descriptive fields, password, catalogue. Throws Error, PasswordError and
/// Cancelled.
std::unique_ptr<BackupManifest> openBackup(const QString &folder, const PasswordOption &password,
                                           PasswordNeed need, Progress &progress);
