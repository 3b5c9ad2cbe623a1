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

/// A date of an event as it is shown and written: of an all-day or floating event as stored, else in local
/// time.
inline QDateTime shownDate(const CalendarEvent &event, const QDateTime &date)
{
    return isDayAsStored(event) ? date.toUTC() : date.toLocalTime();
}

/// The instant that tells whether an event is in a range of local days: when the date that is shown as its
/// start comes here.
inline QDateTime startHere(const CalendarEvent &event)
{
    const QDateTime shown = shownDate(event, event.start_date);
    return shown.isValid() ? QDateTime(shown.date(), shown.time(), Qt::LocalTime) : QDateTime();
}
