#include "bench_table.h"
#include "device_files.h"
#include "touch_columns.h"

#include "base/progress.h"
#include "base/report.h"
#include "personal/personal_source.h"
#include "resources/resources.h"
#include "work/save_records.h"

#include <QGuiApplication>

namespace {
Report report;

constexpr int records = 20000;

/// A class of data, as a device keeps it.
struct DeviceClass
{
    DataClass dataClass;
    SourceFile file;
    const char *script; // makes the records i of the table n
    std::initializer_list<const char *> statements;
};

const DeviceClass classes[] = {
    {DataClass::Notes,
     {QStringLiteral("HomeDomain"), QStringLiteral("Library/Notes/notes.sqlite")},
     "create table ZNOTE(Z_PK INTEGER PRIMARY KEY, ZINTEGERID INTEGER, ZBODY INTEGER, ZCREATIONDATE "
     "TIMESTAMP, "
     "ZMODIFICATIONDATE TIMESTAMP, ZTITLE VARCHAR, ZSUMMARY VARCHAR);"
     "create table ZNOTEBODY(Z_PK INTEGER PRIMARY KEY, ZOWNER INTEGER, ZCONTENT VARCHAR);"
     "insert into ZNOTE select i, i, i, 400000000+i*60, 400000000+i*61, 'Note number '||i, 'summary of it "
     "'||i "
     "from n;"
     "insert into ZNOTEBODY select i, i, '<div>Note number '||i||'</div><div>'||hex(zeroblob(200))||'</div>' "
     "from n;",
     {"select ZNOTE.ZINTEGERID,ZCREATIONDATE,ZMODIFICATIONDATE,ZTITLE,ZSUMMARY,ZCONTENT from ZNOTE,ZNOTEBODY "
      "where ZNOTEBODY.Z_PK=ZNOTE.ZBODY"}},
    {DataClass::Calendar,
     {QStringLiteral("HomeDomain"), QStringLiteral("Library/Calendar/Calendar.sqlitedb")},
     "create table Calendar(ROWID INTEGER PRIMARY KEY, title TEXT);"
     "create table CalendarItem(ROWID INTEGER PRIMARY KEY, summary TEXT, description TEXT, start_date "
     "INTEGER, "
     "start_tz TEXT, end_date INTEGER, all_day INTEGER, calendar_id INTEGER, url TEXT, creation_date "
     "INTEGER, "
     "birthday_id INTEGER, entity_type INTEGER, availability INTEGER);"
     "create table Recurrence(ROWID INTEGER PRIMARY KEY, frequency INTEGER, interval INTEGER, owner_id "
     "INTEGER);"
     "create index RecurrenceOwner on Recurrence(owner_id);"
     "create table Location(ROWID INTEGER PRIMARY KEY, title TEXT, item_owner_id INTEGER);"
     "insert into Calendar select i, 'Calendar '||i from n where i<=10;"
     "insert into CalendarItem select i, 'Event number '||i, 'what it is about, '||i, 300000000+i*3600, "
     "'Europe/Berlin', 300003600+i*3600, i%5=0, 1+i%10, null, 300000000, null, 2, 0 from n;"
     "insert into Recurrence select i, 1+i%4, 1, i from n where i%3=0;"
     "insert into Location select i, 'Room '||i, i from n where i%2=0;",
     {"select item_owner_id, title from Location order by rowid",
      "select i.rowid,i.calendar_id,c.title as calendar,i.summary,i.description,i.creation_date,i.start_tz,"
      "i.start_date,i.end_date,i.all_day,i.url,r.frequency,r.interval from calendaritem as i inner join "
      "calendar as "
      "c on i.calendar_id=c.rowid and (i.birthday_id <= 0 or i.birthday_id is null) and i.entity_type=2 and "
      "i.availability=0 left join recurrence as r on i.rowid=r.owner_id"}},
    {DataClass::Bookmarks,
     {QStringLiteral("HomeDomain"), QStringLiteral("Library/Safari/Bookmarks.db")},
     "create table bookmarks(id INTEGER PRIMARY KEY, parent INTEGER, type INTEGER, title TEXT, url TEXT "
     "COLLATE "
     "NOCASE, hidden INTEGER, order_index INTEGER, external_uuid TEXT, num_children INTEGER, editable "
     "INTEGER, "
     "read INTEGER, added INTEGER, deleted INTEGER, syncable INTEGER);"
     "insert into bookmarks(id, parent, type, title, hidden, order_index, external_uuid) "
     "select i, 0, 1, 'Folder '||i, 0, i, hex(randomblob(16)) from n where i<=100;"
     "insert into bookmarks(id, parent, type, title, url, hidden, order_index, external_uuid) "
     "select 100+i, 1+i%100, 0, 'Bookmark number '||i, 'https://www.example.org/pages/'||i, 0, i, "
     "hex(randomblob(16)) from n;",
     {"select * from bookmarks where id > 0 and hidden=0 order by parent asc, type asc, order_index asc, id "
      "asc"}},
};

void read(DataClass dataClass, FileSource &device)
{
    const auto source = openDeviceRecords(device, QStringLiteral("device"));
    const bool whole = dataClass == DataClass::Notes ? source->notes(Scope::Usual, report).size() == records
                       : dataClass == DataClass::Calendar
                           ? source->calendar(Scope::Usual, report).size() == records
                           : source->bookmarks(Scope::Usual, report).size() == 100;
    if (!whole)
        std::abort();
}

void save(DataClass dataClass, PersonalSource &source, const QString &folder, qint64 expectedAdded)
{
    NoProgress progress;
    const SaveReport result = saveRecords(dataClass, source, Scope::Usual, folder, progress);
    if (result.handled() != records || result.added != expectedAdded)
        std::abort();
}

void benchClass(const DeviceClass &each)
{
    bench::DeviceFiles device;
    device.put(each.file,
               QStringLiteral("create temp table n as with recursive c(i) as (select 1 union all select "
                              "i+1 from c where i<%1) select i from c;")
                       .arg(records) +
                   QString::fromLatin1(each.script));
    const QByteArray name = dataClassName(each.dataClass).toLatin1();
    bench::compare(("read 20,000 of " + name).constData(), 3, [&] { read(each.dataClass, device); },
                   [&] { bench::touchEveryColumn(device.pathOf(each.file), each.statements); });

    const auto source = openDeviceRecords(device, QStringLiteral("device"));
    std::vector<double> first;
    std::vector<double> second;
    for (int i = 0; i < bench::runs; ++i) {
        const QTemporaryDir folder;
        first.push_back(bench::milliseconds([&] { save(each.dataClass, *source, folder.path(), records); }));
        second.push_back(bench::milliseconds([&] { save(each.dataClass, *source, folder.path(), 0); }));
    }
    bench::printRow(("save 20,000 of " + name + " again").constData(), bench::median(second),
                    bench::median(first), 0.7);
}
} // namespace

int main(int argc, char **argv)
{
    // The plain text of notes is laid out by the interface library.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    initResources();
    for (const DeviceClass &each : classes)
        benchClass(each);
}
