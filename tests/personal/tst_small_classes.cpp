#include "../support/scratch_source.h"

#include "base/error.h"
#include "base/report.h"
#include "personal/bookmark_db.h"
#include "personal/calendar_db.h"
#include "personal/local_call_history_db.h"
#include "personal/notes_db.h"
#include "resources/resources.h"

#include <QCryptographicHash>
#include <QTest>

namespace {
Report heard; // what the readers tell, in tests that do not ask for it

const SourceFile notesFile{QStringLiteral("HomeDomain"), QStringLiteral("Library/Notes/notes.sqlite")};
const SourceFile calendarFile{QStringLiteral("HomeDomain"),
                              QStringLiteral("Library/Calendar/Calendar.sqlitedb")};
const SourceFile bookmarksFile{QStringLiteral("HomeDomain"), QStringLiteral("Library/Safari/Bookmarks.db")};

QDateTime utc(qint64 unixSeconds)
{
    return QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::UTC);
}

/// "folder(child,child(grandchild))" of a tree, by title.
QString outline(const BookmarkTree &tree)
{
    QStringList parts;
    for (const auto &node : tree)
        parts.append(node->title + (node->children.empty()
                                        ? QString()
                                        : QLatin1Char('(') + outline(node->children) + QLatin1Char(')')));
    return parts.join(QLatin1Char(','));
}
} // namespace

/// Calls, notes, calendar and bookmarks: their readers and their local stores.
class TestSmallClasses : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void notesOfADevice();
    void noteSummary_data();
    void noteSummary();
    void localNotes();
    void calendarOfADevice();
    void recurrence_data();
    void recurrence();
    void localCalendar();
    void bookmarksOfADevice_data();
    void bookmarksOfADevice();
    void withoutTheColumnsOfLaterSystems();
    void deepFoldersEnd();
    void aHundredThousandInOneFolder();
    void eventsAtTheEndsOfTime();
    void localBookmarks();
    void localCalls();
    void olderCallStoreGainsColumns();
    void missingDatabases();
};

void TestSmallClasses::notesOfADevice()
{
    ScratchSource source;
    source.putDatabase(
        notesFile,
        QStringLiteral("create table ZNOTE(Z_PK INTEGER PRIMARY KEY, ZINTEGERID INTEGER, ZCREATIONDATE "
                       "TIMESTAMP, ZMODIFICATIONDATE TIMESTAMP,"
                       " ZTITLE TEXT, ZSUMMARY TEXT, ZBODY INTEGER);"
                       "create table ZNOTEBODY(Z_PK INTEGER PRIMARY KEY, ZOWNER INTEGER, ZCONTENT TEXT);"
                       "insert into ZNOTE values(1,41,347068800.7,347068801,'T','a &amp; "
                       "<b>b</b>',1),(2,42,0,0,'no body','s',9),"
                       "(3,43,2147483647,-2147483648,'far','',2);"
                       "insert into ZNOTEBODY values(1,1,'<div>a &amp; b</div>'),(2,3,'<div>x</div>');"));
    IOSNotesDb db(source, QStringLiteral("device"));
    const auto notes = db.readAll(Scope::Usual, heard);
    QCOMPARE(notes.size(), 2);
    const NoteEntry expected{utc(1325376000),
                             utc(1325376001),
                             QStringLiteral("T"),
                             QStringLiteral("a & b"),
                             QStringLiteral("<div>a &amp; b</div>"),
                             QStringLiteral("device"),
                             QStringLiteral("41"),
                             {}};
    QCOMPARE(notes.at(0), expected);
    QCOMPARE(notes.at(1).create_date, utc(2147483647LL + 978307200));
    QCOMPARE(notes.at(1).modified_date, utc(-2147483648LL + 978307200));
}

void TestSmallClasses::noteSummary_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("summary");
    const QString hundred(100, QLatin1Char('x'));
    QTest::newRow("100 characters") << QStringLiteral("<div>%1</div>").arg(hundred) << hundred;
    QTest::newRow("101 characters") << QStringLiteral("<div>%1y</div>").arg(hundred)
                                    << hundred + QStringLiteral("...");
    QTest::newRow("a character of two units at the end")
        << QStringLiteral("%1\U0001F600 and more").arg(hundred.left(99))
        << hundred.left(99) + QStringLiteral("...");
    QTest::newRow("no body text") << QString() << QString();
    const auto row = [](const char *name, const char *content, const char *summary) {
        QTest::newRow(name) << QString::fromUtf8(content) << QString::fromUtf8(summary);
    };
    row("blocks and breaks", "a<div>b<br></div><div><br></div><DIV>c</DIV>", "a\nb\n\nc");
    row("table and list", "<table><tr><td>1</td><td>2</td></tr></table><ul><li>x<li>y</ul>", "1\n2\nx\ny");
    row("blanks", " a \r\n\t b<b> c </b>d<p> e", "a b c d\ne");
    row("blanks that stay", "a&nbsp;&nbsp;b<pre>c  d\ne</pre> f", "a  b\nc  d\ne\nf");
    row("entities", "&lt;b&gt; &amp;amp; &eacute;&#233;&#xE9; &#x1F600;",
        "<b> &amp; \u00e9\u00e9\u00e9 \U0001F600");
    row("no entities", "AT&T &bogus; & &; &#xZ; &#0;&#xD800;", "AT&T &bogus; & &; &#xZ; \uFFFD\uFFFD");
    row("no tags", "1 < 2 <3 <", "1 < 2 <3 <");
    row("not for reading", "<head><title>t</title><style>p {}</style></head><!-- c --><script>s</script>x",
        "x");
    row("quotes in a tag", "<a title=\"a > b\" name=it's>x</a>", "x");
    row("sizes that depend on a font", "<p style=\"margin:1em;line-height:2ex\">x<font size=7>y", "xy");
    row("a style sheet of this machine",
        "<link rel=\"stylesheet\" type=\"text/css\" href=\"file:///etc/passwd\"><p>x", "x");
    row("a tag without an end", "x<p title=\"", "x");
    QTest::newRow("deep nesting") << QStringLiteral("<div><b><ul>").repeated(200'000) + u'x'
                                  << QStringLiteral("x");
    QTest::newRow("20 MB") << QStringLiteral("<div>%1</div>").arg(hundred).repeated(200'000)
                           << hundred + QStringLiteral("...");
}

void TestSmallClasses::noteSummary()
{
    QFETCH(QString, content);
    content.replace(u'\'', QStringLiteral("''"));
    ScratchSource source;
    source.putDatabase(
        notesFile,
        QStringLiteral(
            "create table ZNOTE(ZINTEGERID, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZSUMMARY, ZBODY);"
            "create table ZNOTEBODY(Z_PK, ZCONTENT); insert into ZNOTE values(1,0,0,'t',null,1);"
            "insert into ZNOTEBODY values(1,'%1');")
            .arg(content));
    QTEST(IOSNotesDb(source, {}).readAll(Scope::Usual, heard).first().summary, "summary");
}

void TestSmallClasses::localNotes()
{
    QTemporaryDir folder;
    LocalNotesDb db(folder.path());
    db.open();
    NoteEntry note{utc(10),
                   utc(20),
                   QStringLiteral("T"),
                   QStringLiteral("s"),
                   QStringLiteral("c"),
                   QStringLiteral("d"),
                   QStringLiteral("1"),
                   {}};
    db.begin();
    QVERIFY(!db.save(note).wasThere);
    QVERIFY(!db.save(note).differs);
    note.modified_date = utc(5); // the later save wins, whatever its dates say
    QVERIFY(db.save(note).differs);
    NoteEntry edited = note;
    edited.content = QStringLiteral("c2");
    QVERIFY(!db.save(edited).wasThere);
    db.commit();
    QCOMPARE(db.count(), 2);
    edited.title = QStringLiteral("newest");
    edited.modified_date = utc(30);
    QVERIFY(!db.save(edited).wasThere);
    QCOMPARE(db.readAll(heard).first().title, edited.title);
    QVERIFY(db.remove(LocalNotesDb::hashOf(edited)));
    note.hash = QString::fromLatin1(QCryptographicHash::hash("Tc", QCryptographicHash::Md5).toHex());
    QCOMPARE(db.read(note.hash), note);
    QVERIFY(db.remove(note.hash));
    QVERIFY(!db.remove(note.hash));
    QCOMPARE(db.readAll(heard).first().content, QStringLiteral("c2"));
}

void TestSmallClasses::calendarOfADevice()
{
    ScratchSource source;
    source.putDatabase(
        calendarFile,
        QStringLiteral(
            "create table Calendar(ROWID INTEGER PRIMARY KEY, title TEXT);"
            "create table CalendarItem(ROWID INTEGER PRIMARY KEY, summary, description, start_date, "
            "start_tz, end_date, all_day,"
            " calendar_id, url, creation_date, birthday_id, entity_type, availability);"
            "create table Recurrence(ROWID INTEGER PRIMARY KEY, frequency, interval, owner_id);"
            "create table Location(ROWID INTEGER PRIMARY KEY, title, item_owner_id);"
            "insert into Calendar values(1,'Home'),(2,'Work');"
            "insert into CalendarItem values(1,'B','d',347068800,'_float',347072399,1,2,'u',0,null,2,0),"
            "(2,'A',null,347068800,'Europe/"
            "Berlin',null,0,1,null,0,-1,2,0),(3,'birthday',null,0,null,0,1,1,null,0,5,2,0),"
            "(4,'task',null,0,null,0,0,1,null,0,null,3,0),(5,'free',null,0,null,0,0,1,null,0,null,2,1),"
            "(6,'C',null,0,null,0,0,2,null,0,null,2,0);"
            "insert into Recurrence values(1,2,2,1); insert into Location "
            "values(1,'Room',1),(2,'',1),(3,'Hall',1);"
            // The fifth is not listed, nor is what it has.
            "alter table Recurrence add column count; alter table Recurrence add column specifier;"
            "insert into Recurrence values(2,1,1,2,3,null),(3,1,1,6,0,'D=+1MO'),(4,1,1,5,3,null);"
            "create table Alarm(trigger_interval, calendaritem_owner_id);"
            "insert into Alarm values(-900,1),(-60,1),(-900,5);"
            "create table Participant(owner_id, email); insert into Participant values(1,'a@b'),(5,'a@b');"
            "create table ExceptionDate(owner_id, date); insert into ExceptionDate values(1,0),(5,0);"));
    IOSCalendarDb db(source);
    Report report;
    const auto events = db.readAll(Scope::Usual, report);
    QCOMPARE(report.count("IDS_ISSUE_ALARMS"), 2);
    QCOMPARE(report.count("IDS_ISSUE_ATTENDEES"), 1);
    QCOMPARE(report.count("IDS_ISSUE_EXCLUDED_DATES"), 1);
    QCOMPARE(report.count("IDS_ISSUE_REPETITION_LIMITS"), 2);
    QVERIFY(!report.isFailure());
    QCOMPARE(events.size(), 3);
    QCOMPARE(events.at(0).summary, QStringLiteral("B\nRoom\nHall"));
    QCOMPARE(events.at(0).rrule, QStringLiteral("FREQ=WEEKLY;INTERVAL=2"));
    QCOMPARE(events.at(0).start_date, utc(1325376000));
    QCOMPARE(events.at(0).tz, QStringLiteral("_float"));
    QCOMPARE(events.at(1).summary, QStringLiteral("C")); // beside the other event of its calendar
    QCOMPARE(events.at(2).calendar, QStringLiteral("Home"));
    QCOMPARE(events.at(2).rrule, QStringLiteral("FREQ=DAILY;INTERVAL=1"));
}

void TestSmallClasses::recurrence_data()
{
    QTest::addColumn<int>("frequency");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QString>("rule");
    QTest::newRow("daily") << 1 << 1 << "FREQ=DAILY;INTERVAL=1";
    QTest::newRow("yearly without interval") << 4 << 0 << "FREQ=YEARLY";
    QTest::newRow("unknown frequency") << 5 << 3 << ";INTERVAL=3";
    QTest::newRow("none") << 0 << 0 << "";
}

void TestSmallClasses::recurrence()
{
    QFETCH(int, frequency);
    QFETCH(int, interval);
    QTEST(recurrenceRule(frequency, interval), "rule");
}

void TestSmallClasses::localCalendar()
{
    QTemporaryDir folder;
    LocalCalendarsDb db(folder.path());
    db.open();
    CalendarEvent event;
    event.calendar = QStringLiteral("Home");
    event.start_date = utc(1325376000);
    event.end_date = utc(1325379600);
    event.summary = QStringLiteral("Lunch\nRoom");
    event.url = QStringLiteral("http://lunch");
    event.reminders = {{15, 1, QStringLiteral("r")}};
    db.begin();
    const auto first = db.save(event);
    QVERIFY(!first.wasThere);
    CalendarEvent moved = event;
    moved.summary = QStringLiteral("Lunch\nHall");
    moved.calendar = QStringLiteral("hOME");
    QVERIFY(!db.save(event).differs);
    QVERIFY(db.save(moved).wasThere);
    QVERIFY(db.save(moved).differs);
    for (const auto member : {&CalendarEvent::description, &CalendarEvent::url, &CalendarEvent::rrule}) {
        CalendarEvent changed = event;
        changed.*member = QStringLiteral("x");
        QVERIFY(db.save(changed).differs);
    }
    CalendarEvent elsewhere = event;
    elsewhere.calendar = QString(60'000, u'x'); // longer than LIKE allows
    const auto other = db.save(elsewhere);
    QVERIFY(!other.wasThere);
    elsewhere.calendar = elsewhere.calendar.toUpper();
    QVERIFY(db.save(elsewhere).wasThere);
    QVERIFY(db.remove(other.id));
    for (const bool wasThere : {false, true}) // "z!" sorts before "z%", which matches it
        for (const char *name : {"z%", "z!"}) {
            elsewhere.calendar = QLatin1String(name);
            const auto saved = db.save(elsewhere);
            QCOMPARE(saved.wasThere, wasThere);
            if (wasThere)
                QVERIFY(db.remove(saved.id));
        }
    db.commit();
    event.id = first.id;
    QCOMPARE(db.readAll(heard), QList{event});
    QVERIFY(db.remove(first.id));
    QVERIFY(!db.remove(first.id));
    db.removeLeftovers();
    Sqlite3DB raw;
    raw.openThrow(db.path());
    Sqlite3Cursor left = raw.queryThrow(
        QStringLiteral("select (select count(*) from calendars)+(select count(*) from reminders)"));
    QVERIFY(left.moveNext());
    QCOMPARE(left.getInt(0), 0);
}

void TestSmallClasses::bookmarksOfADevice_data()
{
    QTest::addColumn<QString>("rows"); // (id, parent, type, title, hidden, order_index)
    QTest::addColumn<QString>("tree");
    QTest::newRow("nested") << "(0,null,1,'Root',0,0),(1,0,1,'Bar',0,1),(2,1,0,'b',0,2),(3,1,1,'F',0,1),(4,3,"
                               "0,'c',0,0),(5,0,0,'a',0,0)"
                            << "a,Bar(b,F(c))";
    QTest::newRow("hidden folder hides what it holds") << "(1,0,1,'H',1,0),(2,1,0,'x',0,0),(3,0,0,'y',0,0)"
                                                       << "y";
    QTest::newRow("folder whose parent comes later")
        << "(1,0,1,'Top',0,0),(2,9,1,'Lost',0,0),(3,2,0,'lost',0,0),(9,1,1,'Late',0,0)"
        << "Top(Late(Lost))";
    QTest::newRow("cycle") << "(1,2,1,'a',0,0),(2,1,1,'b',0,0),(3,3,1,'own parent',0,0)"
                           << "";
}

void TestSmallClasses::bookmarksOfADevice()
{
    QFETCH(QString, rows);
    QFETCH(QString, tree);
    ScratchSource source;
    source.putDatabase(bookmarksFile,
                       QStringLiteral("create table bookmarks(id INTEGER PRIMARY KEY, parent INTEGER, type "
                                      "INTEGER, title TEXT, hidden INTEGER, order_index INTEGER,"
                                      " url TEXT, external_uuid TEXT); insert into "
                                      "bookmarks(id,parent,type,title,hidden,order_index) values ") +
                           rows);
    QCOMPARE(outline(IOSBookmarkDb(source).readTree(Scope::Usual, heard)), tree);
}

void TestSmallClasses::withoutTheColumnsOfLaterSystems()
{
    ScratchSource source;
    source.putDatabase(bookmarksFile,
                       QStringLiteral("create table bookmarks(id INTEGER PRIMARY KEY, parent, type, title, "
                                      "order_index); insert into bookmarks values(1,0,0,'b',0)"));
    QCOMPARE(outline(IOSBookmarkDb(source).readTree(Scope::Usual, heard)), QStringLiteral("b"));
    QCOMPARE(countBookmarks(IOSBookmarkDb(source).readTree(Scope::Usual, heard)), 1);
    source.putDatabase(
        calendarFile,
        QStringLiteral(
            "create table Calendar(title); insert into Calendar values('c');"
            "create table CalendarItem(summary, start_date, end_date, all_day, calendar_id, entity_type,"
            " availability, birthday_id, creation_date);"
            "insert into CalendarItem values('s',1,2,0,1,2,0,null,null)"));
    const auto events = IOSCalendarDb(source).readAll(Scope::Usual, heard);
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first().summary, QStringLiteral("s"));
    QVERIFY(events.first().rrule.isEmpty());
}

void TestSmallClasses::deepFoldersEnd()
{
    ScratchSource source;
    source.putDatabase(
        bookmarksFile,
        QStringLiteral("create table bookmarks(id INTEGER PRIMARY KEY, parent INTEGER, type INTEGER, title "
                       "TEXT, hidden INTEGER, order_index INTEGER);"
                       "with recursive n(i) as (select 1 union all select i+1 from n where i<100000)"
                       " insert into bookmarks select i, i-1, 1, 'f', 0, 0 from n;"));
    int depth = 0;
    const BookmarkTree tree = IOSBookmarkDb(source).readTree(Scope::Usual, heard);
    for (const BookmarkTree *level = &tree; !level->empty(); level = &level->front()->children)
        ++depth;
    QVERIFY(depth >= 100 && depth < 2000);
}

void TestSmallClasses::aHundredThousandInOneFolder()
{
    constexpr int many = 100'000;
    ScratchSource source;
    source.putDatabase(
        bookmarksFile,
        QStringLiteral("create table bookmarks(id INTEGER PRIMARY KEY, parent INTEGER, type INTEGER, title "
                       "TEXT, url TEXT, hidden INTEGER, order_index INTEGER, external_uuid TEXT);"
                       "insert into bookmarks values(1, 0, 1, 'all', null, 0, 0, 'f');"
                       "with recursive n(i) as (select 2 union all select i+1 from n where i<=%1)"
                       " insert into bookmarks select i, 1, 0, 'b', 'http://x/'||i, 0, -i, i from n;")
            .arg(many));
    const BookmarkTree tree = IOSBookmarkDb(source).readTree(Scope::Usual, heard);
    QCOMPARE(tree.size(), std::size_t(1));
    QCOMPARE(tree.front()->children.size(), std::size_t(many));
    QTemporaryDir folder;
    LocalBookmarkDb db(folder.path());
    db.open();
    db.begin();
    QCOMPARE(db.save(*tree.front()).added, many);
    QCOMPARE(db.save(*tree.front()).added, 0);
    db.commit();
    QCOMPARE(db.readTree(heard).front()->children.front()->url, QStringLiteral("http://x/%1").arg(many + 1));
}

void TestSmallClasses::eventsAtTheEndsOfTime()
{
    ScratchSource source;
    source.putDatabase(
        calendarFile,
        QStringLiteral(
            "create table Calendar(title); insert into Calendar values('C');"
            "create table CalendarItem(summary, description, start_date, start_tz, end_date, all_day, "
            "calendar_id, url, creation_date, birthday_id, entity_type, availability);"
            "create table Recurrence(frequency, interval, owner_id);"
            "insert into CalendarItem values"
            "('first',null,-2147483648,'',2147483647,0,1,null,0,null,2,0),"
            "('backwards',null,2147483647,'',-2147483648,0,1,null,0,null,2,0),"
            "(null,null,'x',null,null,null,1,null,null,null,2,0);"));
    const QList<CalendarEvent> events = IOSCalendarDb(source).readAll(Scope::Usual, heard);
    QCOMPARE(events.size(), 3);
    QCOMPARE(events.at(0).start_date, utc(-2147483648LL + 978307200));
    QCOMPARE(events.at(0).end_date, utc(2147483647LL + 978307200));
    QCOMPARE(events.at(1).start_date, events.at(0).end_date);
    QTemporaryDir folder;
    LocalCalendarsDb db(folder.path());
    db.open();
    db.begin();
    for (const CalendarEvent &event : events) {
        QVERIFY(!db.save(event).wasThere);
        QVERIFY(db.save(event).wasThere);
    }
    db.commit();
    QCOMPARE(db.readAll(heard).at(1).end_date, events.at(1).end_date);
}

void TestSmallClasses::localBookmarks()
{
    QTemporaryDir folder;
    LocalBookmarkDb db(folder.path());
    db.open();
    const auto leaf = [](const char *url, BookmarkNode *parent) {
        auto node = std::make_unique<BookmarkNode>();
        node->title = node->url = QLatin1String(url);
        node->parent = parent;
        return node;
    };
    BookmarkNode top;
    top.type = BookmarkNode::folder;
    top.title = QStringLiteral("Top");
    top.children.push_back(leaf("http://a", &top));
    top.children.push_back(leaf("HTTP://A", &top));
    top.children.push_back(leaf("http://b", &top));
    db.begin();
    const auto first = db.save(top);
    QCOMPARE(first.handled, 3);
    QCOMPARE(first.added, 2);                               // the address in capitals is the same one
    QVERIFY(!db.saveRow(*leaf("http://b", &top), 1).differs);
    QVERIFY(db.saveRow(*leaf("HTTP://B", &top), 1).differs); // and so is its title
    QCOMPARE(db.save(*top.children.back()).added, 0);       // alone, its folder is found again
    QCOMPARE(db.save(*leaf("http://b", nullptr)).added, 1); // the same address in another folder
    db.commit();
    QCOMPARE(db.count(), 3);
    const BookmarkTree tree = db.readTree(heard);
    QCOMPARE(outline(tree), QStringLiteral("http://b,Top(http://a,http://b)"));
    QVERIFY(db.remove(tree.front()->id));
    QVERIFY(!db.remove(tree.front()->id));
    QVERIFY(db.remove(tree.back()->id));
    db.removeLeftovers();
    QCOMPARE(db.count(), 0); // what the folder held went with it
}

void TestSmallClasses::localCalls()
{
    QTemporaryDir folder;
    LocalCallHistoryDb db(folder.path());
    db.open();
    CallEntry call;
    call.address = QStringLiteral("+441");
    call.date = utc(1325376000);
    call.duration = 65;
    call.type = 4;
    call.face_time_data = QByteArray("\0x", 2);
    call.person = QStringLiteral("Ada");
    call.unique_id = QStringLiteral("u");
    db.begin();
    const auto first = db.add(call);
    QVERIFY(!first.wasThere);
    QCOMPARE(db.add(call).id, first.id);
    QVERIFY(!db.add(call).differs);
    CallEntry longer = call;
    longer.duration = 500;
    QVERIFY(db.add(longer).differs);
    CallEntry older = call; // as systems kept it before calls had an identity
    older.unique_id.clear();
    QVERIFY(!db.add(older).differs);
    older.unique_id = QStringLiteral("v");
    QVERIFY(db.add(older).differs);
    CallEntry missed = call;
    missed.type = 8;
    QVERIFY(!db.add(missed).wasThere);
    CallEntry later = call;
    later.date = call.date.addSecs(1);
    const auto newest = db.add(later);
    db.commit();
    QCOMPARE(db.count(), 3);
    QCOMPARE(db.readAll(heard).first().id, newest.id);
    QVERIFY(db.remove(newest.id));
    QVERIFY(db.remove(first.id + 1));
    call.id = first.id;
    QCOMPARE(db.readAll(heard), QList{call});
    // The second 1325376000, the address and the type, both numbers little-endian.
    QCOMPARE(LocalCallHistoryDb::hashOf(call),
             QString::fromLatin1(QCryptographicHash::hash(QByteArray::fromHex("00a2ff4e") + "+441" +
                                                              QByteArray::fromHex("04000000"),
                                                          QCryptographicHash::Md5)
                                     .toHex()));
}

void TestSmallClasses::olderCallStoreGainsColumns()
{
    QTemporaryDir folder;
    {
        Sqlite3DB old;
        old.openThrow(folder.filePath(QStringLiteral("calls.db")), SqliteOpen::ReadWriteCreate);
        QVERIFY(old.exec(
            QStringLiteral("create table call(_id INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date "
                           "INTEGER, duration INTEGER, flags INTEGER,"
                           " person TEXT, hash TEXT); insert into call(address,date) values('1',5)")));
    }
    LocalCallHistoryDb db(folder.path());
    db.open();
    const CallEntry call = db.readAll(heard).first();
    QCOMPARE(call.answered, 1);
    QCOMPARE(call.call_type, 1);
    LocalCallHistoryDb again(folder.path());
    again.open();
    QCOMPARE(again.count(), 1);
}

void TestSmallClasses::missingDatabases()
{
    ScratchSource source;
    const auto sentence = [](auto read) {
        try {
            read();
        } catch (const Error &error) {
            return error.sentence();
        }
        return QString();
    };
    QCOMPARE(sentence([&] { IOSNotesDb(source, {}).readAll(Scope::Usual, heard); }),
             QStringLiteral("Cannot find notes.sqlite."));
    QCOMPARE(sentence([&] { IOSCalendarDb(source).readAll(Scope::Usual, heard); }),
             QStringLiteral("Cannot find Calendar.sqlitedb"));
    QCOMPARE(sentence([&] { IOSBookmarkDb(source).readTree(Scope::Usual, heard); }),
             QStringLiteral("Cannot find Bookmarks.db."));
}

QTEST_GUILESS_MAIN(TestSmallClasses)
#include "tst_small_classes.moc"
