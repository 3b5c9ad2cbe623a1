#pragma once

#include "export/simple_exports.h"
#include "personal/contact_record.h"

#include <variant>

/// Records of one class that are to be written. A bookmark tree is pointed to, since it cannot be copied; it
/// must live until the export has ended.
using RecordSelection = std::variant<QList<ContactRecord>, QList<CallEntry>, QList<NoteEntry>,
                                     QList<CalendarEvent>, std::shared_ptr<const BookmarkTree>>;

/// Writes them in a format of their class: contacts "vcard", "csv", "text", "html"; calls "text", "csv";
/// notes "html"; calendar "ical", "csv"; bookmarks "html". The target is a file, for notes a folder. Throws
/// Error, also for a format that the class lacks, and Cancelled.
Report exportRecords(const RecordSelection &selection, const QString &format, const QString &target,
                     Progress &progress);
