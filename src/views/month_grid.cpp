#include "views/month_grid.h"

#include "base/texts.h"

#include <QTextCharFormat>

MonthGrid::MonthGrid(QWidget *parent) : QCalendarWidget(parent)
{
    setObjectName(QStringLiteral("monthGrid"));
    setAccessibleName(textFor("IDS_ACC_MONTH"));
    setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    // Red is for what destroys.
    QTextCharFormat weekend;
    weekend.setForeground(palette().text());
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        setWeekdayTextFormat(day, weekend);
    connect(this, &QCalendarWidget::clicked, this, &MonthGrid::dayPicked);
    connect(this, &QCalendarWidget::activated, this, &MonthGrid::dayPicked);
}

QDate MonthGrid::dayOf(const CalendarEvent &event)
{
    return shownDate(event, event.start_date).date();
}

void MonthGrid::setEvents(const QList<CalendarEvent> &events)
{
    QTextCharFormat busy;
    busy.setFontWeight(QFont::Bold);
    busy.setFontUnderline(true);
    setDateTextFormat(QDate(), QTextCharFormat());
    QSet<QDate> days;
    for (const CalendarEvent &event : events)
        if (const QDate day = dayOf(event); day.isValid()) // without a day, every day would be meant
            days.insert(day);
    for (const QDate &day : std::as_const(days))
        setDateTextFormat(day, busy);
}
