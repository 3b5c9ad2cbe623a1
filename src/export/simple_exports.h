#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "personal/bookmark_node.h"
#include "personal/calendar_event.h"
#include "personal/call_entry.h"
#include "personal/note_entry.h"

#include <QList>
#include <QString>

enum class CalendarFormat { ICalendar, Csv };
enum class CallFormat { Text, Csv };

/// Each writes one file, complete or absent, but for a cancelled export, whose file keeps what was written.
/// The report says how many records were written, and what a person should know of the file. `day` is the day
/// of the export, for the stamps of iCalendar. Throw Error and Cancelled.
Report exportCalendar(const QList<CalendarEvent> &events, CalendarFormat format, const QString &path,
                      const QDate &day, Progress &progress);
Report exportCalls(const QList<CallEntry> &calls, CallFormat format, const QString &path, Progress &progress);
Report exportBookmarks(const BookmarkTree &tree, const QString &path, Progress &progress);

/// One HTML file a note in `folder`; what was written before a cancel stays.
Report exportNotes(const QList<NoteEntry> &notes, const QString &folder, Progress &progress);
