#include "sample/calendar_schema.h"
#include "sample/data_classes.h"
#include "sample/sqlite_file.h"

namespace sample {

namespace {

struct Event
{
    const char *summary;
    int calendar = 1;
    qint64 start = 0; // Apple absolute seconds
    qint64 length = 3600;
    const char *zone = "Europe/Berlin";
    bool allDay = false;
    int frequency = 0; // 1 day, 2 week, 3 month, 4 year
    int interval = 1;
    const char *description = nullptr;
    const char *url = nullptr;
    int entityType = 2; // 3: a reminder
    int availability = 0;
    int birthday = 0; // the contact that the item was made from
    std::vector<const char *> locations = {};
};

constexpr qint64 day = 86400;
constexpr qint64 spring2012 = 354880800; // 2012-03-31T10:00:00Z, the day before the clocks change

std::vector<Event> events()
{
    return {
        {.summary = "Dentist", .start = spring2012, .description = "bring the card\nsecond floor"},
        {.summary = "Across the change of clocks", .start = spring2012 + 8 * 3600, .length = 12 * 3600},
        {.summary = "Holiday",
         .calendar = 2,
         .start = 347068800,
         .length = day - 1,
         .zone = "_float",
         .allDay = true},
        {.summary = "Three days",
         .calendar = 2,
         .start = 378691200,
         .length = 3 * day - 1,
         .zone = "_float",
         .allDay = true},
        {.summary = "Every other week", .start = spring2012 + day, .frequency = 2, .interval = 2},
        {.summary = "Every day", .start = spring2012 + 2 * day, .frequency = 1},
        {.summary = "Each month", .start = spring2012 + 3 * day, .zone = "America/New_York", .frequency = 3},
        {.summary = "Once a year", .start = spring2012 + 4 * day, .frequency = 4},
        {.summary = "No known rhythm", .start = spring2012 + 5 * day, .frequency = 5, .interval = 3},
        {.summary = "Concert",
         .calendar = 3,
         .start = spring2012 + 6 * day,
         .url = "https://www.example.org/?a=1,2;b",
         .locations = {"Hall, \"Great\" Room; 2nd floor", ""}},
        {.summary = "Title, with comma; semicolon \\ and\nline", .start = spring2012 + 7 * day},
        {.summary = "Ünïcode 会議 פגישה", .calendar = 3, .start = spring2012 + 8 * day, .zone = "Asia/Tokyo"},
        {.summary = "Long ago", .start = -3187296000, .zone = "GMT"},
        {.summary = "Far away", .start = 2000000000, .zone = "GMT"},
        {.summary = nullptr, .start = spring2012 + 9 * day},
        {.summary = "Birthday of a contact",
         .calendar = 4,
         .start = 347155200,
         .length = day - 1,
         .zone = "_float",
         .allDay = true,
         .frequency = 4,
         .birthday = 9},
        {.summary = "A reminder", .start = spring2012, .entityType = 3},
        {.summary = "Shown as free", .start = spring2012, .availability = 1},
    };
}

void addEvent(SqliteFile &file, const Event &event, const QByteArray &uuid, int ios)
{
    Statement insert(
        file, "insert into CalendarItem(summary, description, start_date, start_tz, end_date, all_day, "
              "calendar_id, "
              "orig_item_id, status, availability, url, last_modified, birthday_id, UUID, unique_identifier, "
              "entity_type, creation_date, has_recurrences) values(?,?,?,?,?,?,?,0,0,?,?,?,?,?,?,?,?,?)");
    insert.run(QString::fromUtf8(event.summary), QString::fromUtf8(event.description), event.start,
               Utf8{event.zone}, event.start + event.length, event.allDay, event.calendar, event.availability,
               QString::fromUtf8(event.url), event.start - 500, event.birthday, Utf8{uuid}, Utf8{uuid},
               event.entityType, event.start - 1000, event.frequency != 0);
    const qint64 item = file.lastInsertId();
    if (event.frequency != 0)
        Statement(
            file,
            "insert into Recurrence(frequency, interval, week_start, count, owner_id) values(?,?,1,0,?)")
            .run(event.frequency, event.interval, item);
    for (const char *title : event.locations)
        Statement(file, "insert into Location(title, item_owner_id) values(?,?)").run(Utf8{title}, item);
    Statement(file, ios >= 14
                        ? "insert into Alarm(trigger_interval, type, calendaritem_owner_id) values(-900,0,?)"
                        : "insert into Alarm(trigger_interval, type, owner_id) values(-900,0,?)")
        .run(item);
    if (event.frequency == 1)
        Statement(file, "insert into ExceptionDate(owner_id, date) values(?,?)")
            .run(item, event.start + 2 * day);
}

void putExtras(Making &making)
{
    const QString path = making.inScratch("Extras.db");
    SqliteFile file(path);
    file.execute("CREATE TABLE AlarmChange (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, alarm INTEGER, "
                 "trigger_date REAL);"
                 "CREATE TABLE OccurrenceCacheDays (calendar_id INTEGER, day REAL, count INTEGER);"
                 "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key))");
    file.close(SqliteFile::Journal::Rollback);
    making.container.putFile(making.place("HomeDomain", QStringLiteral("Library/Calendar/Extras.db")), path);
}

} // namespace

void addCalendar(Making &making)
{
    const QString path = making.inScratch("Calendar.sqlitedb");
    SqliteFile file(path);
    file.execute(
        calendarTables(making.generation) +
        ";INSERT INTO Calendar(store_id, title, color) VALUES(1,'DEFAULT_CALENDAR_NAME','#1BADF8'),"
        "(1,'Holidays','#FF2968'),(1,'Music & <more>','#63DA38'),(1,'BIRTHDAY_CALENDAR_NAME','#AC8E68')");
    SeededGenerator chance = making.chance.fork("calendar");
    for (const Event &event : events())
        addEvent(file, event, chance.uuid(), making.generation.ios);
    making.summary.counts.calendarEvents = static_cast<int>(
        file.integer("select count(*) from CalendarItem where (birthday_id <= 0 or birthday_id is null) "
                     "and entity_type=2 and availability=0"));
    file.close(making.generation.ios >= 9 ? SqliteFile::Journal::Wal : SqliteFile::Journal::Rollback);
    FilePlace place = making.place("HomeDomain", QStringLiteral("Library/Calendar/Calendar.sqlitedb"));
    place.sizeDifference = 4096; // the catalogue's size may be too large as well
    making.container.putFile(place, path);
    putExtras(making);
}

} // namespace sample
