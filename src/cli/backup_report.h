#pragma once

#include "backup/backup_info.h"
#include "cli/json_writer.h"

class Report;

/// The fields that `list` and `info` share, into an object that has been begun.
void writeBackupFields(JsonWriter &json, const BackupInfo &info);

/// The key "problems" with the sentences on what is damaged.
void writeProblems(JsonWriter &json, const Report &report);

/// For people: the date in local time, empty when there is none.
QString dateForPeople(const QDateTime &date);
/// "Encrypted" or "Normal".
QString statusForPeople(const BackupInfo &info);
