#pragma once

#include "personal/abs_local_db.h"
#include "personal/calendar_event.h"

#include <QList>

class FileSource;

/// Any source of calendar events. Used by one thread at a time.
class ICalendarDb
{
public:
    virtual ~ICalendarDb() = default;
    virtual qint64 count() = 0;
    /// Events grouped by calendar.
    virtual QList<CalendarEvent> readAll() = 0;
};

/// Reads the calendar database of a source. Opens it on first use and keeps it open; `source` must outlive
/// the reader.
class IOSCalendarDb : public ICalendarDb
{
public:
    explicit IOSCalendarDb(FileSource &source);

    /// Throws Error("Cannot find Calendar.sqlitedb") when the source has no calendar database.
    qint64 count() override;
    /// Without birthdays made from contacts, tasks, and events that leave one free. Throws as count() does.
    QList<CalendarEvent> readAll() override;

private:
    FileSource &m_source;
    Sqlite3DB m_db;

    void open();
};

/// "calendars.db": events gathered from any number of sources, by calendar; one of the same start and title
/// is one event.
class LocalCalendarsDb : public AbsLocalDb, public ICalendarDb
{
public:
    explicit LocalCalendarsDb(const QString &folder,
                              const QString &fileName = QStringLiteral("calendars.db"));

    struct Saved
    {
        qint64 id = 0;
        bool wasThere = false; // then nothing was changed
    };

    qint64 count() override;
    /// By calendar name, then in the order of saving.
    QList<CalendarEvent> readAll() override;
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
