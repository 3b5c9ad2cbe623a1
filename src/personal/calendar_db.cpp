#include "personal/calendar_db.h"

#include "backup/device_database.h"
#include "base/error.h"
#include "base/report.h"
#include "personal/stored_date.h"
#include "sqlite/read_rows.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

namespace {
/// The side tables of the events, each read in one pass.
struct SideTables
{
    struct Recurrence
    {
        int frequency;
        int interval;
    };

    SideTables(const Sqlite3DB &db, Report &report)
    {
        const auto read = [&](const QString &table, const QStringList &columns, auto take) {
            return readRows(db, {table, columns, {}, TableRows::Need::Expected}, report,
                            [&take](const Sqlite3Cursor &row) { return [&take, &row] { take(row); }; })
                .isWhole;
        };
        hasAllCalendars =
            read(QStringLiteral("Calendar"), {QStringLiteral("title")},
                 [this](const auto &row) { calendars.insert(row.getInt64(0), row.getText(1)); });
        read(QStringLiteral("Location"), {QStringLiteral("item_owner_id"), QStringLiteral("title")},
             [this](const auto &row) {
                 if (const QString title = row.getText(2); !title.isEmpty())
                     locations[row.getInt64(1)].append(title);
             });
        read(QStringLiteral("Recurrence"),
             {QStringLiteral("owner_id"), QStringLiteral("frequency"), QStringLiteral("interval")},
             [this](const auto &row) {
                 recurrences[row.getInt64(1)].append({row.getInt(2), row.getInt(3)});
             });
    }

    QHash<qint64, QString> calendars; // titles by row id
    bool hasAllCalendars;
    QHash<qint64, QStringList> locations;         // titles by event
    QHash<qint64, QList<Recurrence>> recurrences; // by event
};

const TableRows eventRows{QStringLiteral("CalendarItem"),
                          {QStringLiteral("calendar_id"), QStringLiteral("summary"),
                           QStringLiteral("start_date"), QStringLiteral("end_date"),
                           QStringLiteral("all_day"), QStringLiteral("entity_type"),
                           QStringLiteral("birthday_id"), QStringLiteral("availability")},
                          {QStringLiteral("description"), QStringLiteral("start_tz"), QStringLiteral("url")}};
enum EventColumn {
    CalendarId = 1,
    Summary,
    Start,
    End,
    AllDay,
    EntityType,
    Birthday,
    Availability,
    Description,
    Zone,
    Url
};

/// Why a row is left out: a text of the report, or nothing for an event to be listed.
const char *whyLeftOut(const Sqlite3Cursor &row, const SideTables &side, bool hasAvailability)
{
    constexpr int event = 2;
    if (row.getInt(EntityType) != event)
        return "IDS_ISSUE_TASKS";
    if (row.getInt64(Birthday) > 0)
        return "IDS_ISSUE_BIRTHDAYS_OF_CONTACTS";
    if (side.hasAllCalendars && !side.calendars.contains(row.getInt64(CalendarId)))
        return "IDS_ISSUE_EVENTS_WITHOUT_CALENDAR";
    const bool isFree = hasAvailability && (row.getInt(Availability) != 0 || row.isNull(Availability));
    return isFree ? "IDS_ISSUE_EVENTS_SHOWN_AS_FREE" : nullptr;
}

/// A table with rows of events, which this program does not read.
struct UnreadTable
{
    const char *name;
    const char *what; // a text of the report
    bool (*counts)(const Sqlite3Cursor &row);
};

bool everyRow(const Sqlite3Cursor &)
{
    return true;
}

bool hasLimits(const Sqlite3Cursor &row)
{
    const int count = row.columnIndex(QStringLiteral("count"));
    const int end = row.columnIndex(QStringLiteral("end_date"));
    const int days = row.columnIndex(QStringLiteral("specifier"));
    return (count >= 0 && row.getInt64(count) > 0) || (end >= 0 && row.getDouble(end) > 0) ||
           (days >= 0 && !row.getText(days).isEmpty());
}

constexpr UnreadTable unreadTables[] = {
    {"Alarm", "IDS_ISSUE_ALARMS", everyRow},
    {"Participant", "IDS_ISSUE_ATTENDEES", everyRow},
    {"ExceptionDate", "IDS_ISSUE_EXCLUDED_DATES", everyRow},
    {"Recurrence", "IDS_ISSUE_REPETITION_LIMITS", hasLimits},
};

/// Tells what of the events that are listed is not read.
void tellUnread(const Sqlite3DB &db, const QSet<qint64> &events, Report &report)
{
    Report damage; // costs nothing that would be shown, and of the recurrences it is told already
    for (const UnreadTable &table : unreadTables) {
        const TableRows rows{.table = QLatin1String(table.name), .need = TableRows::Need::Optional};
        qint64 count = 0;
        readRows(db, rows, damage, [&](const Sqlite3Cursor &row) {
            const int former = row.columnIndex(QStringLiteral("owner_id"));
            const int owner = former >= 0 ? former : row.columnIndex(QStringLiteral("calendaritem_owner_id"));
            return [&, owner] {
                count += owner >= 0 && events.contains(row.getInt64(owner)) && table.counts(row) ? 1 : 0;
            };
        });
        if (count > 0)
            report.add({.kind = IssueKind::LeftOut, .what = table.what, .count = count});
    }
}

CalendarEvent eventOf(const Sqlite3Cursor &row, const SideTables &side, const QString &where, Report &report)
{
    CalendarEvent event;
    event.id = row.getInt64(0);
    event.src_id = QString::number(event.id);
    event.calendar = side.calendars.value(row.getInt64(CalendarId));
    event.summary = row.getText(Summary);
    event.description = row.getText(Description);
    event.tz = row.getText(Zone);
    event.start_date = storedDate(row, Start, Epoch::Apple, where, report);
    event.end_date = storedDate(row, End, Epoch::Apple, where, report);
    event.all_day = row.getInt(AllDay);
    event.url = row.getText(Url);
    for (const QString &title : side.locations.value(event.id))
        event.summary += QLatin1Char('\n') + title;
    return event;
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

const TableRows storedEventRows{
    QStringLiteral("events"),
    {QStringLiteral("calendar_id"), QStringLiteral("tz"), QStringLiteral("start_date"),
     QStringLiteral("end_date"), QStringLiteral("summary"), QStringLiteral("description"),
     QStringLiteral("url"), QStringLiteral("rrule"), QStringLiteral("all_day"), QStringLiteral("src_id")}};

struct StoredEvent
{
    qint64 calendar = 0; // row id
    CalendarEvent event;
};

/// What a store keeps beside its events.
struct StoredSides
{
    StoredSides(const Sqlite3DB &db, Report &report)
    {
        readRows(db, {QStringLiteral("calendars"), {QStringLiteral("name")}, {}, TableRows::Need::Expected},
                 report, [this](const Sqlite3Cursor &row) {
                     return [this, &row] { calendars.insert(row.getInt64(0), row.getText(1)); };
                 });
        std::map<qint64, std::pair<qint64, CalendarReminder>> ordered;
        readRows(db,
                 {QStringLiteral("reminders"),
                  {QStringLiteral("event_id"), QStringLiteral("minutes"), QStringLiteral("method"),
                   QStringLiteral("src_id")},
                  {},
                  TableRows::Need::Expected},
                 report, [&ordered](const Sqlite3Cursor &row) {
                     return [&ordered, &row] {
                         ordered[row.getInt64(0)] = {row.getInt64(1),
                                                     {row.getInt(2), row.getInt(3), row.getText(4)}};
                     };
                 });
        for (const auto &[id, reminder] : ordered)
            reminders[reminder.first].append(reminder.second);
    }

    QHash<qint64, QString> calendars;                 // names by row id
    QHash<qint64, QList<CalendarReminder>> reminders; // by event
};

CalendarEvent storedEventOf(const Sqlite3Cursor &row, const StoredSides &sides, const QString &where,
                            Report &report)
{
    CalendarEvent event;
    event.id = row.getInt64(0);
    event.calendar = sides.calendars.value(row.getInt64(1));
    event.tz = row.getText(2);
    event.start_date = storedDate(row, 3, Epoch::Unix, where, report);
    event.end_date = storedDate(row, 4, Epoch::Unix, where, report);
    event.summary = row.getText(5);
    event.description = row.getText(6);
    event.url = row.getText(7);
    event.rrule = row.getText(8);
    event.all_day = row.getInt(9);
    event.src_id = row.getText(10);
    event.reminders = sides.reminders.value(event.id);
    return event;
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

void IOSCalendarDb::open(Report &report)
{
    if (!openDeviceDatabase(
            m_db, m_source,
            {QStringLiteral("HomeDomain"), QStringLiteral("Library/Calendar/Calendar.sqlitedb")}, report))
        throw Error(QStringLiteral("Cannot find Calendar.sqlitedb"), ErrorKind::NotFound);
}

QList<CalendarEvent> IOSCalendarDb::readAll(Scope scope, Report &report)
{
    open(report);
    m_db.requireTable(eventRows.table);
    const SideTables side(m_db, report);
    const bool hasAvailability = m_db.tbCols(eventRows.table).contains(QStringLiteral("availability"));
    QList<std::pair<qint64, CalendarEvent>> events;
    QSet<qint64> listed;
    readRows(m_db, eventRows, report, [&](const Sqlite3Cursor &row) {
        return [&] {
            const char *why = scope == Scope::Usual ? whyLeftOut(row, side, hasAvailability) : nullptr;
            if (why) {
                report.add({.kind = IssueKind::Hidden, .what = why});
                return;
            }
            CalendarEvent event = eventOf(row, side, m_db.name(), report);
            listed.insert(event.id);
            const qint64 calendar = row.getInt64(CalendarId);
            const auto rules = side.recurrences.value(event.id, {{0, 0}});
            for (const SideTables::Recurrence &rule : rules) {
                event.rrule = recurrenceRule(rule.frequency, rule.interval);
                events.append({calendar, event});
            }
        };
    });
    tellUnread(m_db, listed, report);
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
    Sqlite3Cursor row = m_db.queryThrow(QStringLiteral("select count(*) from events not indexed"));
    return row.moveNext() ? row.getInt64(0) : 0;
}

QList<CalendarEvent> LocalCalendarsDb::readAll(Report &report)
{
    const StoredSides sides(m_db, report);
    std::vector<StoredEvent> found;
    readRows(m_db, storedEventRows, report, [&](const Sqlite3Cursor &row) {
        return [&] { found.push_back({row.getInt64(1), storedEventOf(row, sides, m_db.name(), report)}); };
    });
    std::sort(found.begin(), found.end(), [](const StoredEvent &a, const StoredEvent &b) {
        if (const int names = a.event.calendar.toUtf8().compare(b.event.calendar.toUtf8()); names != 0)
            return names < 0;
        return std::tie(a.calendar, a.event.id) < std::tie(b.calendar, b.event.id);
    });
    QList<CalendarEvent> events;
    events.reserve(static_cast<qsizetype>(found.size()));
    for (StoredEvent &stored : found)
        events.append(std::move(stored.event));
    return events;
}

QString LocalCalendarsDb::hashOf(const CalendarEvent &event)
{
    const quint32 start = qToLittleEndian(static_cast<quint32>(unixSeconds(event.start_date)));
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
    Sqlite3Sql same(
        QStringLiteral("select _id,(coalesce(tz,''),end_date,summary,coalesce(description,''),"
                       "coalesce(rrule,''),all_day,coalesce(url,'')) is not (?3,?4,?5,?6,?7,?8,?9) "
                       "from events where calendar_id=?1 and hash=?2"));
    same.addInt64Param(calendar).addTextParam(hash).addTextParam(event.tz);
    Sqlite3Cursor &there = m_db.cachedThrow(addDate(same, event.end_date)
                                                .addTextParam(event.summary)
                                                .addTextParam(event.description)
                                                .addTextParam(event.rrule)
                                                .addIntParam(event.all_day)
                                                .addTextParam(event.url));
    if (there.moveNext())
        return {there.getInt64(0), true, there.getInt(1) != 0};
    Sqlite3Sql insert(
        QStringLiteral("insert into events(calendar_id,tz,start_date,end_date,summary,description,rrule,"
                       "all_day,hash,src_id,url) values(?,?,?,?,?,?,?,?,?,?,?)"));
    insert.addInt64Param(calendar).addTextParam(event.tz);
    m_db.executeCachedThrow(addDate(addDate(insert, event.start_date), event.end_date)
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
    return {id};
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
