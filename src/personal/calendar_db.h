#pragma once

#include "personal/abs_local_db.h"
#include "personal/calendar_event.h"
#include "personal/scope.h"

#include <QList>

class FileSource;
class Report;

/// Reads the calendar database of a source. Opens it on first use and keeps it open; `source` must outlive
/// the reader.
class IOSCalendarDb
{
public:
    explicit IOSCalendarDb(FileSource &source);

    /// Events grouped by calendar, without birthdays made from contacts, tasks, events that leave their time
    /// free, and those of no calendar. Throws Error("Cannot find Calendar.sqlitedb") when the source has no
    /// calendar database.
    QList<CalendarEvent> readAll(Scope scope, Report &report);

private:
    FileSource &m_source;
    Sqlite3DB m_db;

    void open(Report &report);
};

/// "calendars.db": events gathered from any number of sources, by calendar; one of the same start and title
/// is one event.
class LocalCalendarsDb : public AbsLocalDb
{
public:
    explicit LocalCalendarsDb(const QString &folder,
                              const QString &fileName = QStringLiteral("calendars.db"));

    struct Saved
    {
        qint64 id = 0;
        bool wasThere = false; // then nothing was changed
        bool differs = false;  // in anything but start and title; the stored one was kept
    };

    /// Of those that readAll() gives. Throws Error where the store is damaged.
    qint64 count();
    /// By calendar name, then in the order of saving; an event whose calendar is lost comes first, under
    /// none. Reads around damage, which is told in the report.
    QList<CalendarEvent> readAll(Report &report);
    /// Call between begin() and commit().
    Saved save(const CalendarEvent &event);
    /// Removes the event with its reminders. False when there is no such event. removeLeftovers() must
    /// follow.
    bool remove(qint64 id);
    /// Removes the calendars that are left empty.
    void removeLeftovers();

    /// MD5 over the start and the first line of the summary, as 32 hexadecimal digits.
    static QString hashOf(const CalendarEvent &event);

protected:
    void upgrade() override;

private:
    qint64 calendarId(const CalendarEvent &event);
};

/// "FREQ=WEEKLY;INTERVAL=2" of the device's numbers; an unknown frequency writes no FREQ part.
QString recurrenceRule(int frequency, int interval);
