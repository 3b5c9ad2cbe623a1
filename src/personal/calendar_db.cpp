#include "personal/calendar_db.h"

#include "backup/device_database.h"
#include "base/apple_time.h"
#include "base/error.h"
#include "base/report.h"

#include <QCryptographicHash>
#include <QHash>
#include <QStringList>
#include <QtEndian>

#include <algorithm>

namespace {
QDateTime instantOfApple(int appleSecondsValue)
{
    return QDateTime::fromSecsSinceEpoch(unixFromApple(appleSecondsValue), Qt::UTC);
}

QDateTime instantOfUnix(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

qint64 unixOf(const QDateTime &date)
{
    return date.toMSecsSinceEpoch() / 1000;
}

// The titles of every event's places, read in one pass.
QHash<qint64, QStringList> readLocations(const Sqlite3DB &db)
{
    QHash<qint64, QStringList> titles;
    if (!db.tbCols(QStringLiteral("Location")).contains(QStringLiteral("item_owner_id")))
        return titles;
    Sqlite3Cursor row =
        db.queryThrow(QStringLiteral("select item_owner_id, title from Location order by rowid"));
    while (row.moveNext())
        if (const QString title = row.getText(1); !title.isEmpty())
            titles[row.getInt64(0)].append(title);
    return titles;
}

// An event is worth reading without its recurrence, its description or its address on the web.
QString eventStatement(const Sqlite3DB &db)
{
    const QSet<QString> columns = db.tbCols(QStringLiteral("calendaritem"));
    const auto column = [&columns](const char *name, const char *otherwise = "null") {
        return columns.contains(QLatin1String(name)) ? QLatin1String("i.") + QLatin1String(name)
                                                     : QString(QLatin1String(otherwise));
    };
    const bool repeats = db.hasTable(QStringLiteral("recurrence"));
    return QStringLiteral("select i.rowid,i.calendar_id,c.title,i.summary,%1,%2,i.start_date,i.end_date,"
                          "i.all_day,%3,i.entity_type,%4,%5,c.rowid,%6 from calendaritem as i "
                          "left join calendar as c on i.calendar_id=c.rowid %7")
        .arg(column("description"), column("start_tz"), column("url"), column("birthday_id"),
             column("availability", "0"),
             repeats ? QStringLiteral("r.frequency,r.interval") : QStringLiteral("null,null"),
             repeats ? QStringLiteral("left join recurrence as r on i.rowid=r.owner_id") : QString());
}

/// Why a row of eventStatement() is left out: a text of the report, or nothing for an event to be listed.
const char *whyLeftOut(const Sqlite3Cursor &row)
{
    constexpr int entityType = 10, birthday = 11, availability = 12, calendarRow = 13, event = 2;
    if (row.getInt(entityType) != event)
        return "IDS_ISSUE_TASKS";
    if (row.getInt64(birthday) > 0)
        return "IDS_ISSUE_BIRTHDAYS_OF_CONTACTS";
    if (row.isNull(calendarRow))
        return "IDS_ISSUE_EVENTS_WITHOUT_CALENDAR";
    return row.getInt(availability) != 0 || row.isNull(availability) ? "IDS_ISSUE_EVENTS_SHOWN_AS_FREE" : nullptr;
}

// Events of one calendar stand together, calendars in the order in which they are met.
QList<CalendarEvent> grouped(QList<std::pair<qint64, CalendarEvent>> events)
{
    QHash<qint64, qsizetype> order;
    for (const auto &entry : std::as_const(events))
        order.insert(entry.first, order.value(entry.first, order.size()));
    std::stable_sort(events.begin(), events.end(), [&](const auto &a, const auto &b) {
        return order.value(a.first) < order.value(b.first);
    });
    QList<CalendarEvent> result;
    result.reserve(events.size());
    for (auto &entry : events)
        result.append(std::move(entry.second));
    return result;
}
} // namespace

QString recurrenceRule(int frequency, int interval)
{
    static constexpr const char *names[] = {"DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
    QString rule;
    if (frequency >= 1 && frequency <= 4)
        rule = QStringLiteral("FREQ=") + QLatin1String(names[frequency - 1]);
    if (interval > 0)
        rule += QStringLiteral(";INTERVAL=%1").arg(interval);
    return rule;
}

IOSCalendarDb::IOSCalendarDb(FileSource &source) : m_source(source) {}

void IOSCalendarDb::open()
{
    if (m_db.isOpen())
        return;
    if (!openDeviceDatabase(
            m_db, m_source,
            {QStringLiteral("HomeDomain"), QStringLiteral("Library/Calendar/Calendar.sqlitedb")}))
        throw Error(QStringLiteral("Cannot find Calendar.sqlitedb"), ErrorKind::NotFound);
}

QList<CalendarEvent> IOSCalendarDb::readAll(Scope scope, Report &report)
{
    open();
    const QHash<qint64, QStringList> locations = readLocations(m_db);
    Sqlite3Cursor row = m_db.queryThrow(eventStatement(m_db));
    QHash<qint64, QString> calendars;
    QList<std::pair<qint64, CalendarEvent>> events;
    while (row.moveNext()) {
        if (scope == Scope::Usual) {
            if (const char *why = whyLeftOut(row)) {
                report.add({.kind = IssueKind::Hidden, .what = why});
                continue;
            }
        }
        const qint64 calendar = row.getInt64(1);
        if (!calendars.contains(calendar))
            calendars.insert(calendar, row.getText(2));
        CalendarEvent event;
        event.id = row.getInt64(0);
        event.src_id = QString::number(event.id);
        event.calendar = calendars.value(calendar);
        event.summary = row.getText(3);
        event.description = row.getText(4);
        event.tz = row.getText(5);
        event.start_date = instantOfApple(row.getInt(6));
        event.end_date = instantOfApple(row.getInt(7));
        event.all_day = row.getInt(8);
        event.url = row.getText(9);
        event.rrule = recurrenceRule(row.getInt(14), row.getInt(15));
        for (const QString &title : locations.value(event.id))
            event.summary += QLatin1Char('\n') + title;
        events.append({calendar, std::move(event)});
    }
    return grouped(std::move(events));
}

LocalCalendarsDb::LocalCalendarsDb(const QString &folder, const QString &fileName)
    : AbsLocalDb(folder, fileName, QStringLiteral(":/res/local_calendars_db.sql"))
{
}

void LocalCalendarsDb::upgrade()
{
    if (!m_db.tbCols(QStringLiteral("events")).contains(QStringLiteral("url")))
        m_db.executeThrow(QStringLiteral("ALTER TABLE events ADD COLUMN url TEXT;"));
}

qint64 LocalCalendarsDb::count()
{
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select count(*) from events"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

QList<CalendarEvent> LocalCalendarsDb::readAll()
{
    QHash<qint64, QList<CalendarReminder>> reminders;
    Sqlite3Cursor reminder =
        m_db.queryThrow(QStringLiteral("select event_id,minutes,method,src_id from reminders order by _id"));
    while (reminder.moveNext())
        reminders[reminder.getInt64(0)].append({reminder.getInt(1), reminder.getInt(2), reminder.getText(3)});

    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral(
        "select "
        "e._id,c.name,e.tz,e.start_date,e.end_date,e.summary,e.description,e.url,e.rrule,e.all_day,e.src_id "
        "from events as e inner join calendars as c on e.calendar_id=c._id order by c.name asc,c._id,e._id"));
    QList<CalendarEvent> events;
    while (row.moveNext()) {
        CalendarEvent event;
        event.id = row.getInt64(0);
        event.calendar = row.getText(1);
        event.tz = row.getText(2);
        event.start_date = instantOfUnix(row.getInt64(3));
        event.end_date = instantOfUnix(row.getInt64(4));
        event.summary = row.getText(5);
        event.description = row.getText(6);
        event.url = row.getText(7);
        event.rrule = row.getText(8);
        event.all_day = row.getInt(9);
        event.src_id = row.getText(10);
        event.reminders = reminders.value(event.id);
        events.append(std::move(event));
    }
    return events;
}

QString LocalCalendarsDb::hashOf(const CalendarEvent &event)
{
    const quint32 start = qToLittleEndian(static_cast<quint32>(unixOf(event.start_date)));
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(QByteArrayView(reinterpret_cast<const char *>(&start), sizeof start));
    hash.addData(event.summary.section(QLatin1Char('\n'), 0, 0).toUtf8());
    return QString::fromLatin1(hash.result().toHex());
}

qint64 LocalCalendarsDb::calendarId(const CalendarEvent &event)
{
    // A name with a wildcard may match calendars that came later than its own; it must not move to them.
    Sqlite3Cursor &row =
        m_db.cachedThrow(Sqlite3Sql(QStringLiteral("select _id from calendars where name%1 order by _id")
                                        .arg(m_db.likeCondition(event.calendar)))
                             .addTextParam(event.calendar));
    if (row.moveNext())
        return row.getInt64(0);
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("insert into calendars(name,src_id) values(?,?)"))
                                .addTextParam(event.calendar)
                                .addTextParam(event.src_id));
    return m_db.lastInsertId();
}

LocalCalendarsDb::Saved LocalCalendarsDb::save(const CalendarEvent &event)
{
    const qint64 calendar = calendarId(event);
    const QString hash = hashOf(event);
    Sqlite3Cursor &there =
        m_db.cachedThrow(Sqlite3Sql(QStringLiteral("select _id from events where calendar_id=? and hash=?"))
                             .addInt64Param(calendar)
                             .addTextParam(hash));
    if (there.moveNext())
        return {there.getInt64(0), true};
    m_db.executeCachedThrow(
        Sqlite3Sql(
            QStringLiteral(
                "insert into events(calendar_id,tz,start_date,end_date,summary,description,rrule,all_day,"
                "hash,src_id,url) values(?,?,?,?,?,?,?,?,?,?,?)"))
            .addInt64Param(calendar)
            .addTextParam(event.tz)
            .addInt64Param(unixOf(event.start_date))
            .addInt64Param(unixOf(event.end_date))
            .addTextParam(event.summary)
            .addTextParam(event.description)
            .addTextParam(event.rrule)
            .addIntParam(event.all_day)
            .addTextParam(hash)
            .addTextParam(event.src_id)
            .addTextParam(event.url));
    const qint64 id = m_db.lastInsertId();
    for (const CalendarReminder &reminder : event.reminders)
        m_db.executeCachedThrow(
            Sqlite3Sql(
                QStringLiteral("insert into reminders(event_id,minutes,method,src_id) values(?,?,?,?)"))
                .addInt64Param(id)
                .addIntParam(reminder.minutes)
                .addIntParam(reminder.method)
                .addTextParam(reminder.src_id));
    return {id, false};
}

bool LocalCalendarsDb::remove(qint64 id)
{
    m_db.executeCachedThrow(
        Sqlite3Sql(QStringLiteral("delete from reminders where event_id=?")).addInt64Param(id));
    m_db.executeCachedThrow(Sqlite3Sql(QStringLiteral("delete from events where _id=?")).addInt64Param(id));
    return m_db.changes() > 0;
}

void LocalCalendarsDb::removeLeftovers()
{
    m_db.executeThrow(QStringLiteral(
        "delete from calendars where _id not in (select calendar_id from events group by calendar_id)"));
}
