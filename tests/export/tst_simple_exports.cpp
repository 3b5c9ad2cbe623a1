#include "base/error.h"
#include "base/texts.h"
#include "export/page_policy.h"
#include "export/simple_exports.h"
#include "resources/resources.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// Calendar, calls, bookmarks and notes as files. The zone of the tests is one hour ahead of UTC in winter.
class TestSimpleExports : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initResources();
        installTexts();
    }
    void calendarIsReadElsewhere();
    void calendarCsv();
    void calls();
    void bookmarks();
    void notes();
    void unwritableTargets();

private:
    QTemporaryDir m_folder;
    NoProgress m_progress;

    QByteArray content(const char *name) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not written");
    }
    static QDateTime utc(const char *iso) { return QDateTime::fromString(iso, Qt::ISODate); }
};

void TestSimpleExports::calendarIsReadElsewhere()
{
    CalendarEvent timed;
    timed.summary = "Late";
    timed.start_date = utc("2026-01-31T23:30:00Z"); // the next day here
    timed.end_date = utc("2026-02-01T00:30:00Z");
    timed.rrule = "FREQ=WEEKLY;INTERVAL=2";
    CalendarEvent wholeDay = timed;
    wholeDay.all_day = 1;
    wholeDay.rrule.clear();
    wholeDay.url = "http://a";
    CalendarEvent floating = timed;
    floating.tz = "_float";
    const Report report = exportCalendar({timed, wholeDay, floating}, CalendarFormat::ICalendar,
                                        m_folder.filePath("c.ics"), QDate(2026, 3, 4), m_progress);
    QCOMPARE(report.done, 3);
    QCOMPARE(report.count("IDS_ISSUE_TIMES_NOT_WRITTEN"), 2);
    QCOMPARE(report.count("IDS_ISSUE_ADDRESSES_NOT_WRITTEN"), 1);
    QVERIFY(content("c.ics").startsWith(
        "BEGIN:VCALENDAR\nPRODID:-//Quillbarrow Ltd//Quillbarrow//EN\nVERSION:2.0\n"
        "CALSCALE:GREGORIAN\nMETHOD:PUBLISH\nBEGIN:VEVENT\nDTSTART;VALUE=DATE:20260201\n"));
    QCOMPARE(content("c.ics").count("\nLOCATION:\n"), 3);

    QProcess reader;
    reader.start(QStringLiteral(DEBIAN_PYTHON),
                 {QStringLiteral(TEST_TOOLS "/read_icalendar.py"), m_folder.filePath("c.ics")});
    QVERIFY2(reader.waitForFinished(30000) && reader.exitCode() == 0,
             reader.readAllStandardError().constData());
    const QJsonArray events = QJsonDocument::fromJson(reader.readAllStandardOutput()).array();
    QCOMPARE(events.size(), 3);
    QCOMPARE(events.at(0).toObject().value("RRULE").toString(), QString("FREQ=WEEKLY;INTERVAL=2"));
    QCOMPARE(events.at(0).toObject().value("DTSTAMP").toString(), QString("20260304T000000Z"));
    QCOMPARE(events.at(1).toObject().value("DTSTART").toString(), QString("20260131"));
    QCOMPARE(events.at(2).toObject().value("DTSTART").toString(), QString("20260131"));
    QVERIFY(!events.at(1).toObject().contains("RRULE"));
    QVERIFY(events.at(0).toObject().value("UID") != events.at(1).toObject().value("UID"));
}

void TestSimpleExports::calendarCsv()
{
    CalendarEvent event;
    event.summary = "S,x";
    event.start_date = utc("2026-07-01T10:00:00Z");
    CalendarEvent wholeDay;
    wholeDay.summary = "D";
    wholeDay.all_day = 1;
    wholeDay.start_date = utc("2026-07-01T00:00:00Z");
    wholeDay.end_date = utc("2026-07-01T23:59:59Z");
    CalendarEvent floating = wholeDay;
    floating.all_day = 0;
    floating.tz = "_float";
    floating.start_date = utc("2026-03-29T02:30:00Z"); // no time of the local zone
    exportCalendar({event, wholeDay, floating}, CalendarFormat::Csv, m_folder.filePath("c.csv"),
                   QDate(2026, 3, 4), m_progress);
    QCOMPARE(content("c.csv"), QByteArray("Summary,Start Date,End Date,RRule,Description\n"
                                          "S,x,2026-07-01 12:00:00,,,\n"
                                          "D,2026-07-01 00:00:00,2026-07-01 23:59:59,,\n"
                                          "D,2026-03-29 02:30:00,2026-07-01 23:59:59,,\n"));
    QCOMPARE(startHere(event), utc("2026-07-01T10:00:00Z"));
    QCOMPARE(startHere(wholeDay), utc("2026-06-30T22:00:00Z"));
    QVERIFY(!startHere(CalendarEvent()).isValid());
}

void TestSimpleExports::calls()
{
    CallEntry call;
    call.address = "+441234567890123456789";
    call.person = "Ada";
    call.date = utc("2026-01-01T10:00:00Z");
    call.duration = 65;
    call.type = 4;
    CallEntry missed = call;
    missed.type = 8;
    missed.address = "1";
    exportCalls({call, missed}, CallFormat::Csv, m_folder.filePath("calls.csv"), m_progress);
    QCOMPARE(
        content("calls.csv"),
        QByteArray(
            "Flag,Number,Contact,Date,Duration\nIncoming,+441234567890123456789,Ada,2026-01-01 11:00:00,65\n"
            "Blocked,1,Ada,2026-01-01 11:00:00,65\n"));
    exportCalls({call}, CallFormat::Text, m_folder.filePath("calls.txt"), m_progress);
    const QList<QByteArray> lines = content("calls.txt").split('\n');
    QCOMPARE(lines.at(0).indexOf("Number"), 15);
    QCOMPARE(lines.at(0).indexOf("Duration"), 80);
    QCOMPARE(lines.at(1).indexOf("Ada"), 15 + 22); // a long number pushes the rest to the right
}

void TestSimpleExports::bookmarks()
{
    const auto node = [](int type, const char *title, const char *url, int order) {
        auto node = std::make_unique<BookmarkNode>();
        node->type = type;
        node->title = title;
        node->url = url;
        node->order_index = order;
        return node;
    };
    BookmarkTree tree;
    tree.push_back(node(BookmarkNode::folder, "F", "", 0));
    tree.front()->children.push_back(node(BookmarkNode::bookmark, "second", "http://2", 2));
    tree.front()->children.push_back(node(BookmarkNode::bookmark, "first\r\n<b>", "http://1/?a=\"&b", 1));
    tree.push_back(node(BookmarkNode::folder, "Empty", "", 1));
    QCOMPARE(exportBookmarks(tree, m_folder.filePath("b.html"), m_progress).done, 2);
    QCOMPARE(content("b.html"),
             QByteArray("<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
                        "<TITLE>Bookmarks</TITLE>\n" +
                        QByteArray(inertPage).replace(" />", ">") +
                        "\n<DL>\n<DT><H3>F</H3>\n<DL>\n"
                        "<DT><A HREF=\"http://1/?a=&quot;&amp;b\">first &lt;b&gt;</A></DT>\n"
                        "<DT><A HREF=\"http://2\">second</A></DT>\n</DL>\n</DT>\n"
                        "<DT><H3>Empty</H3>\n<DL>\n</DL>\n</DT>\n</DL>\n"));
}

void TestSimpleExports::notes()
{
    NoteEntry note;
    note.create_date = utc("2026-01-02T03:04:05Z");
    note.title = "A/b:c <d> and a title that goes on";
    note.content = "<div>x</div><img src='http://server/p.png'>";
    NoteEntry forbidden = note;
    forbidden.title = "\\/:*?\"<>|\n\r\t";
    forbidden.content = "<div style=\"background: url( 'HTTPS://server/b.png')\">";
    NoteEntry other = note;
    other.content = "<div>y</div>";
    NoteEntry same = note;
    const Report report = exportNotes({note, other, same, forbidden}, m_folder.filePath("notes"), m_progress);
    QCOMPARE(report.done, 4);
    QCOMPARE(report.count(IssueKind::Remark), 3);
    const QStringList names = QDir(m_folder.filePath("notes")).entryList(QDir::Files, QDir::Name);
    QCOMPARE(names, (QStringList{"20260102-040405-.html", "20260102-040405-Abc d and a title th(1).html",
                                 "20260102-040405-Abc d and a title th.html"}));
    const QByteArray page = content("notes/20260102-040405-Abc d and a title th.html");
    QVERIFY(page.contains(
        "<title>A/b:c &lt;d&gt; and a title that goes on</title></head><body>\n<div>x</div><img src="));
    QVERIFY(page.endsWith("\n</body></html>\n"));
    QVERIFY(page.indexOf(inertPage) > 0 && page.indexOf(inertPage) < page.indexOf("<title>"));
    // Another note of that name and date, of another device for one, takes the place, which is told.
    NoteEntry changed = note;
    changed.content += u" changed"_qs;
    const Report again = exportNotes({changed, other}, m_folder.filePath("notes"), m_progress);
    QCOMPARE(again.count("IDS_ISSUE_FILES_REPLACED"), 1);
    QVERIFY(!again.isFailure());
}

void TestSimpleExports::unwritableTargets()
{
    QFile file(m_folder.filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY_EXCEPTION_THROWN(
        exportCalls({}, CallFormat::Csv, m_folder.filePath("file/calls.csv"), m_progress), Error);
    QVERIFY_EXCEPTION_THROWN(exportNotes({NoteEntry()}, m_folder.filePath("file"), m_progress), Error);
}

QTEST_MAIN(TestSimpleExports)
#include "tst_simple_exports.moc"
