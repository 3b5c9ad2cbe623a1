#pragma once

#include "personal/bookmark_node.h"
#include "personal/calendar_event.h"
#include "personal/call_entry.h"
#include "personal/contact_record.h"
#include "personal/data_class.h"
#include "personal/note_entry.h"
#include "personal/scope.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

class FileSource;
class Report;

/// Where the records of the small data classes come from, a device's files or a local database: one interface
/// for whoever lists, exports or saves them. Used by one thread at a time. What is damaged, and what the rules leave
/// out, goes into the report, and the rest is returned. An operation throws Error when nothing of a class can be
/// read, with ErrorKind::NotFound and the sentence of the reader when the source lacks the class.
class PersonalSource
{
public:
    virtual ~PersonalSource() = default;

    virtual QList<ContactRecord> contacts(Scope scope, Report &report) = 0;
    virtual QList<CallEntry> calls(Scope scope, Report &report) = 0;
    virtual QList<NoteEntry> notes(Scope scope, Report &report) = 0;
    virtual QList<CalendarEvent> calendar(Scope scope, Report &report) = 0;
    virtual BookmarkTree bookmarks(Scope scope, Report &report) = 0;

    /// True when the source lists the database of a class at all, whether or not it can be read.
    virtual bool has(DataClass dataClass) const = 0;

    /// Number of records of a class (bookmarks without their folders): those that the operations above return with
    /// Scope::Usual. Nothing where a zero would hide records that this program cannot read; `report` says why.
    virtual std::optional<qint64> count(DataClass dataClass, Report &report);
};

/// The records of a device. `files` must outlive the result; `deviceId` goes into the notes.
std::unique_ptr<PersonalSource> openDeviceRecords(FileSource &files, const QString &deviceId);

/// The records of the local database in `folder`. A store that is not there yet holds nothing.
std::unique_ptr<PersonalSource> openLocalRecords(const QString &folder);
