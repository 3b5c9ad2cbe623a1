#include "base/report.h"
#include "personal/bookmark_db.h"
#include "personal/calendar_db.h"
#include "personal/ios_call_history_db.h"
#include "personal/local_call_history_db.h"
#include "personal/local_contacts_db.h"
#include "personal/notes_db.h"
#include "personal/personal_source.h"
#include "personal/store_job.h"
#include "resources/resources.h"
#include "support/database_pages.h"
#include "support/scratch_source.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {
constexpr int rowCount = 400;

const SourceFile callsFile{u"WirelessDomain"_s, u"Library/CallHistory/call_history.db"_s};
const SourceFile newerCallsFile{u"HomeDomain"_s, u"Library/CallHistoryDB/CallHistory.storedata"_s};
const SourceFile notesFile{u"HomeDomain"_s, u"Library/Notes/notes.sqlite"_s};
const SourceFile calendarFile{u"HomeDomain"_s, u"Library/Calendar/Calendar.sqlitedb"_s};
const SourceFile bookmarksFile{u"HomeDomain"_s, u"Library/Safari/Bookmarks.db"_s};

// Fills a table with a row for each number i from 1 on.
QString filled(const QString &table, const QString &columns, const QString &values)
{
    return u"create table %1(%2); with recursive n(i) as (select 1 union all select i+1 from n where i<%3) "
           "insert into %1 select %4 from n;"_s.arg(table, columns)
               .arg(rowCount)
               .arg(values);
}

const QString calls = u"create table _SqliteDatabaseProperties(key, value);"_s +
                      filled(u"call"_s, u"ROWID INTEGER PRIMARY KEY, address, date, duration, flags, pad"_s,
                             u"i,'+1'||i,i,5,4,hex(zeroblob(40))"_s);
const QString newerCalls = filled(
    u"ZCALLRECORD"_s, u"Z_PK INTEGER PRIMARY KEY, ZADDRESS, ZDATE, ZDURATION, ZANSWERED, ZORIGINATED, pad"_s,
    u"i,'+1'||i,i,5,1,0,hex(zeroblob(40))"_s);
const QString notes =
    filled(
        u"ZNOTE"_s,
        u"Z_PK INTEGER PRIMARY KEY, ZINTEGERID, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZSUMMARY, ZBODY"_s,
        u"i,i,i,i,'title '||i,hex(zeroblob(40)),i"_s) +
    filled(u"ZNOTEBODY"_s, u"Z_PK INTEGER PRIMARY KEY, ZCONTENT"_s, u"i,hex(zeroblob(80))"_s);
const QString calendarItems =
    filled(u"CalendarItem"_s,
           u"ROWID INTEGER PRIMARY KEY, calendar_id, summary, start_date, end_date, all_day, "
           "entity_type, birthday_id, availability, description"_s,
           u"i,1+i%50,'event '||i,i,i,0,2,-1,0,hex(zeroblob(40))"_s);
const QString calendars =
    filled(u"Calendar"_s, u"ROWID INTEGER PRIMARY KEY, title"_s, u"i,hex(zeroblob(60))"_s);
const QString locations = filled(u"Location"_s, u"ROWID INTEGER PRIMARY KEY, title, item_owner_id"_s,
                                 u"i,'place '||hex(zeroblob(40)),i"_s);
const QString recurrences =
    filled(u"Recurrence"_s, u"ROWID INTEGER PRIMARY KEY, frequency, interval, owner_id"_s, u"i,2,1,i"_s);
const QString bookmarks = filled(
    u"bookmarks"_s, u"id INTEGER PRIMARY KEY, parent, type, title, url, order_index, hidden, external_uuid"_s,
    u"i,0,0,'page '||i,'http://'||hex(zeroblob(40)),i,0,'u'"_s);

using Read = std::function<qsizetype(FileSource &, Report &)>;
using Fill = std::function<QString(const QString &)>;

qsizetype readCalls(FileSource &source, Report &report)
{
    return IOSCallHistoryDb(source).readAll(report).size();
}

qsizetype readNotes(FileSource &source, Report &report)
{
    return IOSNotesDb(source, {}).readAll(Scope::Usual, report).size();
}

qsizetype readCalendar(FileSource &source, Report &report)
{
    return IOSCalendarDb(source).readAll(Scope::Usual, report).size();
}

qsizetype readBookmarks(FileSource &source, Report &report)
{
    return countBookmarks(IOSBookmarkDb(source).readTree(Scope::Usual, report));
}

const QString pad(200, u'x');

/// Opens a store, lets `save` put a record of each number into it, and gives its path.
template <typename Store>
QString fill(const QString &folder, const std::function<void(Store &, int)> &save)
{
    Store store(folder);
    store.open();
    StoreJob job(store);
    for (int number = 1; number <= rowCount; ++number)
        save(store, number);
    job.commit();
    return store.path();
}

QString fillContacts(const QString &folder)
{
    return fill<LocalContactsDb>(folder, [](LocalContactsDb &store, int number) {
        ContactRecord contact;
        ContactDataRow name;
        name.data(1) = u"%1 %2"_s.arg(number).arg(pad);
        contact.rows[ContactDataKind::Name].append(name);
        store.save(contact, IOSContactCombineRule());
    });
}

QString fillCalls(const QString &folder)
{
    return fill<LocalCallHistoryDb>(folder, [](LocalCallHistoryDb &store, int number) {
        CallEntry call;
        call.date = QDateTime::fromSecsSinceEpoch(number, Qt::UTC);
        call.address = pad;
        store.add(call);
    });
}

QString fillNotes(const QString &folder)
{
    return fill<LocalNotesDb>(folder, [](LocalNotesDb &store, int number) {
        NoteEntry note;
        note.create_date = note.modified_date = QDateTime::fromSecsSinceEpoch(number, Qt::UTC);
        note.title = u"%1 %2"_s.arg(number).arg(pad);
        store.save(note);
    });
}

QString fillCalendar(const QString &folder)
{
    return fill<LocalCalendarsDb>(folder, [](LocalCalendarsDb &store, int number) {
        CalendarEvent event;
        event.start_date = event.end_date = QDateTime::fromSecsSinceEpoch(number, Qt::UTC);
        event.calendar = u"%1 %2"_s.arg(number).arg(pad);
        event.description = pad;
        store.save(event);
    });
}

QString fillBookmarks(const QString &folder)
{
    return fill<LocalBookmarkDb>(folder, [](LocalBookmarkDb &store, int number) {
        BookmarkNode node;
        node.url = u"http://%1/%2"_s.arg(number).arg(pad);
        store.saveRow(node, 0);
    });
}

qsizetype listed(DataClass dataClass, PersonalSource &records, Report &report)
{
    switch (dataClass) {
    case DataClass::Contacts:
        return records.contacts(Scope::Usual, report).size();
    case DataClass::Calls:
        return records.calls(Scope::Usual, report).size();
    case DataClass::Notes:
        return records.notes(Scope::Usual, report).size();
    case DataClass::Calendar:
        return records.calendar(Scope::Usual, report).size();
    default:
        return countBookmarks(records.bookmarks(Scope::Usual, report));
    }
}

/// How many rows a statement for each still gets.
qsizetype readableRows(const QString &path, const QString &table)
{
    Sqlite3DB db;
    db.openForeign(path);
    Sqlite3Cursor row = db.queryThrow(u"select * from %1 where rowid=?"_s.arg(table));
    qsizetype count = 0;
    for (int rowid = 1; rowid <= rowCount; ++rowid) {
        row.rebind(Sqlite3Sql().addInt64Param(rowid));
        try {
            count += row.moveNext() ? 1 : 0;
        } catch (const Error &) {
        }
    }
    return count;
}
} // namespace

class TestDamagedRecords : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void onePage_data();
    void onePage();
    void whatIsMissing_data();
    void whatIsMissing();
    void viewInPlaceOfATable();
    void localStores_data();
    void localStores();
};

void TestDamagedRecords::onePage_data()
{
    QTest::addColumn<SourceFile>("file");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("table");
    QTest::addColumn<bool>("isMain"); // its rows are the records
    QTest::addColumn<Read>("read");
    const QString calendar = calendars + calendarItems + locations + recurrences;
    QTest::newRow("calls") << callsFile << calls << u"call"_s << true << Read(readCalls);
    QTest::newRow("newer calls") << newerCallsFile << newerCalls << u"ZCALLRECORD"_s << true
                                 << Read(readCalls);
    QTest::newRow("notes") << notesFile << notes << u"ZNOTE"_s << true << Read(readNotes);
    QTest::newRow("bodies of notes") << notesFile << notes << u"ZNOTEBODY"_s << false << Read(readNotes);
    QTest::newRow("events") << calendarFile << calendar << u"CalendarItem"_s << true << Read(readCalendar);
    QTest::newRow("calendars") << calendarFile << calendar << u"Calendar"_s << false << Read(readCalendar);
    QTest::newRow("places of events")
        << calendarFile << calendar << u"Location"_s << false << Read(readCalendar);
    QTest::newRow("recurrences") << calendarFile << calendar << u"Recurrence"_s << false
                                 << Read(readCalendar);
    QTest::newRow("bookmarks") << bookmarksFile << bookmarks << u"bookmarks"_s << true << Read(readBookmarks);
}

void TestDamagedRecords::onePage()
{
    QFETCH(SourceFile, file);
    QFETCH(QString, script);
    QFETCH(QString, table);
    QFETCH(bool, isMain);
    QFETCH(Read, read);
    ScratchSource source;
    source.putDatabase(file, u"pragma page_size=1024;"_s + script);
    Report whole;
    QCOMPARE(read(source, whole), rowCount);
    QVERIFY(!whole.isFailure());
    {
        DatabasePages pages(source.pathOf(file));
        const DatabaseTree tree(pages, rootPageOf(source.pathOf(file), table));
        pages.destroy(tree.leaves.at(tree.leaves.size() / 2));
    }
    const qsizetype readable = readableRows(source.pathOf(file), table);
    QVERIFY(readable > 0 && readable < rowCount);
    Report report;
    QCOMPARE(read(source, report), isMain ? readable : rowCount);
    QVERIFY(report.isFailure());
    const auto issues = report.issues();
    QVERIFY(std::all_of(issues.begin(), issues.end(),
                        [&](const Issue &issue) { return issue.where == file.display(); }));
    QVERIFY(std::any_of(issues.begin(), issues.end(),
                        [&](const Issue &issue) { return issue.reason.contains(table); }));
}

void TestDamagedRecords::whatIsMissing_data()
{
    QTest::addColumn<SourceFile>("file");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("change");
    QTest::addColumn<Read>("read");
    const QString calendar = calendars + calendarItems + locations + recurrences;
    QTest::newRow("no column of birthdays")
        << calendarFile << calendar << u"alter table CalendarItem drop column birthday_id"_s
        << Read(readCalendar);
    QTest::newRow("no column that tells who is free")
        << calendarFile << calendar << u"alter table CalendarItem drop column availability"_s
        << Read(readCalendar);
    QTest::newRow("no recurrences") << calendarFile << calendar << u"drop table Recurrence"_s
                                    << Read(readCalendar);
    QTest::newRow("no places") << calendarFile << calendar << u"drop table Location"_s << Read(readCalendar);
    QTest::newRow("no calendars") << calendarFile << calendar << u"drop table Calendar"_s
                                  << Read(readCalendar);
    QTest::newRow("no bodies") << notesFile << notes << u"drop table ZNOTEBODY"_s << Read(readNotes);
    QTest::newRow("no summaries") << notesFile << notes << u"alter table ZNOTE drop column ZSUMMARY"_s
                                  << Read(readNotes);
    QTest::newRow("no dates") << callsFile << calls << u"alter table call drop column date"_s
                              << Read(readCalls);
    QTest::newRow("no version that tells what flags of calls mean")
        << callsFile << calls << u"drop table _SqliteDatabaseProperties"_s << Read(readCalls);
    QTest::newRow("no titles") << bookmarksFile << bookmarks << u"alter table bookmarks drop column title"_s
                               << Read(readBookmarks);
}

void TestDamagedRecords::whatIsMissing()
{
    QFETCH(SourceFile, file);
    QFETCH(QString, script);
    QFETCH(QString, change);
    QFETCH(Read, read);
    ScratchSource source;
    source.putDatabase(file, script + change);
    Report report;
    QCOMPARE(read(source, report), rowCount);
    QCOMPARE(report.issues().size(), 1);
    QCOMPARE(report.issues().first().kind, IssueKind::Damaged);
    QCOMPARE(report.issues().first().where, file.display());
    QVERIFY(report.issues().first().reason.contains(change.section(u' ', -1)));
}

void TestDamagedRecords::viewInPlaceOfATable()
{
    ScratchSource source;
    source.putDatabase(notesFile,
                       u"create view ZNOTE as with recursive c(x) as (select 1 union all select x+1 from c) "
                       "select x from c; create table ZNOTEBODY(Z_PK, ZCONTENT)"_s);
    Report report;
    try {
        readNotes(source, report);
        QFAIL("read all the same");
    } catch (const Error &error) {
        QCOMPARE(error.sentence(), u"the table ZNOTE of %1 is a view"_s.arg(notesFile.display()));
        QCOMPARE(error.kind(), ErrorKind::Damaged);
    }
}

void TestDamagedRecords::localStores_data()
{
    QTest::addColumn<DataClass>("dataClass");
    QTest::addColumn<Fill>("fillStore");
    QTest::addColumn<QString>("table");
    QTest::addColumn<bool>("isMain");    // its rows are the records
    QTest::addColumn<bool>("isIndexed"); // all that is read of it
    QTest::addColumn<QString>("change"); // that costs no record
    QTest::newRow("contacts") << DataClass::Contacts << Fill(fillContacts) << u"contact"_s << false << true
                              << u"delete from data where contact_id=3"_s;
    QTest::newRow("rows of contacts") << DataClass::Contacts << Fill(fillContacts) << u"data"_s << false
                                      << false << u"delete from contact where _id=3"_s;
    QTest::newRow("calls") << DataClass::Calls << Fill(fillCalls) << u"call"_s << true << false
                           << u"update call set date=null where _id=3"_s;
    QTest::newRow("notes") << DataClass::Notes << Fill(fillNotes) << u"notes"_s << true << false
                           << u"update notes set modified_date=null where _id=3"_s;
    QTest::newRow("events") << DataClass::Calendar << Fill(fillCalendar) << u"events"_s << true << false
                            << u"delete from calendars where _id=3"_s;
    QTest::newRow("calendars") << DataClass::Calendar << Fill(fillCalendar) << u"calendars"_s << false << true
                               << u"update calendars set name=null where _id=3"_s;
    QTest::newRow("bookmarks") << DataClass::Bookmarks << Fill(fillBookmarks) << u"bookmarks"_s << true
                               << false << u"update bookmarks set parent=77 where id=3"_s;
}

void TestDamagedRecords::localStores()
{
    QFETCH(DataClass, dataClass);
    QFETCH(Fill, fillStore);
    QFETCH(QString, table);
    QFETCH(bool, isMain);
    QFETCH(bool, isIndexed);
    QFETCH(QString, change);
    const QTemporaryDir folder;
    const QString path = fillStore(folder.path());
    {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWrite);
        db.executeThrow(change);
    }
    Report whole;
    QCOMPARE(listed(dataClass, *openLocalRecords(folder.path()), whole), rowCount);
    QCOMPARE(openLocalRecords(folder.path())->count(dataClass, whole), rowCount);
    QVERIFY(whole.isEmpty());
    {
        DatabasePages pages(path);
        const DatabaseTree tree(pages, rootPageOf(path, table));
        pages.destroy(tree.leaves.at(tree.leaves.size() / 2));
    }
    const qsizetype readable = readableRows(path, table);
    Report report;
    QCOMPARE(listed(dataClass, *openLocalRecords(folder.path()), report), isMain ? readable : rowCount);
    QCOMPARE(report.isFailure(), !isIndexed);
    QVERIFY(isIndexed || report.issues().first().reason.contains(table));
    if (dataClass != DataClass::Calendar || isMain)
        QVERIFY_EXCEPTION_THROWN(openLocalRecords(folder.path())->count(dataClass, report), Error);
    QVERIFY(QFile::resize(path, 0));
    QVERIFY_EXCEPTION_THROWN(openLocalRecords(folder.path())->count(dataClass, report), Error);
    QVERIFY_EXCEPTION_THROWN(listed(dataClass, *openLocalRecords(folder.path()), report), Error);
}

QTEST_APPLESS_MAIN(TestDamagedRecords)
#include "tst_damaged_records.moc"
