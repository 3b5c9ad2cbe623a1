#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

struct CalendarReminder
{
    int minutes = 0; // before the start
    int method = 0;
    QString src_id;

    bool operator==(const CalendarReminder &) const = default;
};

/// One event of a calendar. Dates are instants in UTC.
struct CalendarEvent
{
    qint64 id = 0; // row id in its source
    QString calendar;
    QString tz; // zone name of the start; "_float" for a floating time
    QDateTime start_date;
    QDateTime end_date;
    QString summary; // first line the title, further lines the places
    QString description;
    QString url;
    QString rrule; // empty when the event does not repeat
    int all_day = 0;
    QString src_id;
    QList<CalendarReminder> reminders;

    bool operator==(const CalendarEvent &) const = default;
};
Q_DECLARE_TYPEINFO(CalendarEvent, Q_RELOCATABLE_TYPE);

/// True for an all-day or floating event: it means the same day wherever one is, the day as it is stored.
inline bool isDayAsStored(const CalendarEvent &event)
{
    return event.all_day != 0 || event.tz == QLatin1String("_float");
}
