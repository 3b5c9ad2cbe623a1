#pragma once

#include "base/progress.h"
#include "personal/bookmark_node.h"
#include "personal/calendar_event.h"
#include "personal/call_entry.h"
#include "personal/note_entry.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What an export wrote.
struct SimpleExportSummary
{
    qint64 written = 0;
    QStringList skipped; // "what: reason"
    QStringList remarks; // what a person should know of the files, such as pictures that lie on a server
};

enum class CalendarFormat { ICalendar, Csv };
enum class CallFormat { Text, Csv };

/// Each writes one file, complete or absent, but for a cancelled export, whose file keeps what was written.
/// `day` is the day of the export, for the stamps of iCalendar. Throw Error and Cancelled.
SimpleExportSummary exportCalendar(const QList<CalendarEvent> &events, CalendarFormat format,
                                   const QString &path, const QDate &day, Progress &progress);
SimpleExportSummary exportCalls(const QList<CallEntry> &calls, CallFormat format, const QString &path,
                                Progress &progress);
SimpleExportSummary exportBookmarks(const BookmarkTree &tree, const QString &path, Progress &progress);

/// One HTML file a note in `folder`; what was written before a cancel stays.
SimpleExportSummary exportNotes(const QList<NoteEntry> &notes, const QString &folder, Progress &progress);
