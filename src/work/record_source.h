#pragma once

#include "base/progress.h"
#include "personal/personal_source.h"
#include "work/open_backup.h"

#include <functional>
#include <memory>
#include <variant>

/// Where records come from: an open backup, a local database's folder, or a file of vCards, one of the three.
struct RecordSource
{
    OpenBackupPtr backup;
    QString folder;
    QString cardFile{};

    bool isLocal() const { return !folder.isEmpty(); }
};

/// The records of one class.
using Records = std::variant<QList<ContactRecord>, QList<CallEntry>, QList<NoteEntry>, QList<CalendarEvent>,
                             BookmarkTree>;
using RecordsPtr = std::shared_ptr<const Records>;

/// Runs `job` on the opened source; a backup's files are this worker's alone meanwhile. Throws Error and
/// Cancelled.
void withRecords(const RecordSource &source, Progress &progress,
                 const std::function<void(PersonalSource &)> &job);

/// Reads the records of a class; what does not come with them goes into the report. A source that lacks the class
/// has none. Throws Error and Cancelled.
RecordsPtr readRecords(const RecordSource &source, DataClass dataClass, Scope scope, Report &report,
                       Progress &progress);
