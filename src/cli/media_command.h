#pragma once

#include "cli/command.h"
#include "personal/data_class.h"

#include <optional>

class BackupManifest;
class PasswordOption;

/// True for the classes that are files of the backup: photos, videos, voicemail, recordings, and all files.
bool isMediaClass(DataClass dataClass);

/// Number of items; 0 when the backup lacks the class. Throws Error.
qint64 countMedia(BackupManifest &backup, DataClass dataClass);

/// `show`: one JSON object a line.
ExitStatus showMedia(DataClass dataClass, const QString &source, const PasswordOption &password,
                     CommandContext &context);

/// `export`: copies into a folder; what lies there whole from an earlier run is left.
ExitStatus exportMedia(DataClass dataClass, const QString &source, const QString &target,
                       const PasswordOption &password, CommandContext &context);
