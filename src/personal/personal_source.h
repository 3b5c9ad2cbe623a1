#pragma once

#include "personal/bookmark_node.h"
#include "personal/calendar_event.h"
#include "personal/call_entry.h"
#include "personal/contact_record.h"
#include "personal/data_class.h"
#include "personal/note_entry.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class FileSource;

/// Where the records of the small data classes come from, a device's files or a local database: one interface
/// for whoever lists, exports or saves them. Used by one thread at a time. Every operation throws Error, with
/// the sentence of the reader when the source lacks the class.
class PersonalSource
{
public:
    virtual ~PersonalSource() = default;

    virtual QList<ContactRecord> contacts() = 0;
    virtual QList<CallEntry> calls() = 0;
    virtual QList<NoteEntry> notes() = 0;
    virtual QList<CalendarEvent> calendar() = 0;
    virtual BookmarkTree bookmarks() = 0;

    /// Number of records of a class that this interface reads, without reading them.
    virtual qint64 count(DataClass dataClass) = 0;
    /// True when the source has the database of a class at all.
    virtual bool has(DataClass dataClass) const = 0;
    /// What the last reading of a class has left out, each named with its reason.
    virtual QStringList problems(DataClass) const { return {}; }
};

/// The records of a device. `files` must outlive the result; `deviceId` goes into the notes.
std::unique_ptr<PersonalSource> openDeviceRecords(FileSource &files, const QString &deviceId);

/// The records of the local database in `folder`. A store that is not there yet holds nothing.
std::unique_ptr<PersonalSource> openLocalRecords(const QString &folder);
