#pragma once

#include "personal/calendar_event.h"

#include <QCalendarWidget>

/// A month in which the days that have events stand out.
class MonthGrid : public QCalendarWidget
{
    Q_OBJECT

public:
    explicit MonthGrid(QWidget *parent = nullptr);

    /// Marks their days.
    void setEvents(const QList<CalendarEvent> &events);

    /// The day on which an event begins: here, or as stored for one that means the same day wherever one is.
    static QDate dayOf(const CalendarEvent &event);

signals:
    void dayPicked(const QDate &day);
};
