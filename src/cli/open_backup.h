#pragma once

#include "backup/backup_manifest.h"

#include <functional>
#include <memory>

class PasswordOption;
class Report;

/// Whether a command can do without the password of an encrypted backup.
enum class PasswordNeed {
    Always,  // asks on a terminal when none was given
    IfGiven, // an encrypted backup without a password stays locked, without an index
};

/// What of the catalogue could not be read; nothing for a source that is no backup, which is null.
Report reportOf(const BackupManifest *backup);

/// Reads a class of a source that may lack it altogether: that is told and no failure.
void readOrReportAbsent(Report &report, const std::function<void()> &read);

/// Opens the backup in `folder` as far as its descriptive fields, and unlocks it. Throws Error, PasswordError and
/// Cancelled.
std::unique_ptr<BackupManifest> openDescribed(const QString &folder, const PasswordOption &password,
                                              PasswordNeed need, Progress &progress);

/// The same with its catalogue.
std::unique_ptr<BackupManifest> openBackup(const QString &folder, const PasswordOption &password,
                                           Progress &progress);
