#pragma once

#include "personal/data_class.h"

#include <QtGlobal>

#include <optional>

class BackupManifest;
class PersonalSource;
class Report;

/// How many records of a class an opened backup holds, but for the files: those that are listed when nothing
/// is asked for beyond the usual. Nothing when a damaged catalogue may have lost what holds them. `records`
/// are the backup's own. What cannot be read goes into the report. Throws Error when nothing of the class can
/// be read.
std::optional<qint64> countClass(BackupManifest &backup, PersonalSource &records, DataClass dataClass,
                                 Report &report);
