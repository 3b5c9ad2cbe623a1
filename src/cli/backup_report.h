#pragma once

#include "backup/backup_info.h"
#include "cli/json_writer.h"

/// The fields that `list` and `info` share, into an object that has been begun.
void writeBackupFields(JsonWriter &json, const BackupInfo &info);

/// For people: the date in local time, empty when there is none.
QString dateForPeople(const QDateTime &date);
/// "Encrypted" or "Normal".
QString statusForPeople(const BackupInfo &info);
