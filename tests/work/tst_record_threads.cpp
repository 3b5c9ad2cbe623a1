#include "base/report.h"
#include "base/error.h"
#include "base/texts.h"
#include "personal/bookmark_db.h"
#include "personal/calendar_db.h"
#include "personal/store_job.h"
#include "recording_receiver.h"
#include "resources/resources.h"
#include "support/sample_backup.h"
#include "work/record_threads.h"
#include "work/save_records.h"

#include <QTest>

namespace {
Report heard; // what the readers tell, in tests that do not ask for it

/// Keeps every report.
class Reports : public NoProgress
{
public:
    void report(const QString &status, int, const QString &detail) override
    {
        statuses.insert(status);
        details.append(detail);
    }

    QSet<QString> statuses;
    QStringList details;
};

/// Asks to stop once that many records are worked on.
class StopAfter : public NoProgress
{
public:
    explicit StopAfter(int items) : m_left(items) {}
    bool isCancelled() const override { return --m_left < 0; }

private:
    mutable int m_left;
};

QString endOf(WorkerThread &worker)
{
    RecordingReceiver receiver;
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    [&receiver] { QTRY_VERIFY(receiver.ended()); }();
    worker.wait();
    return receiver.lines.constLast();
}

constexpr DataClass savedClasses[] = {DataClass::Contacts, DataClass::Calls, DataClass::Notes,
                                      DataClass::Calendar, DataClass::Bookmarks};
} // namespace

/// The workers of contacts, calls, notes, calendar and bookmarks.
class TestRecordThreads : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void savingTells_data();
    void savingTells();
    void everythingIsSavedWhenAskedFor_data() { stopLeavesTheStore_data(); }
    void everythingIsSavedWhenAskedFor();
    void exportingTells_data();
    void exportingTells();
    void stopLeavesTheStore_data();
    void stopLeavesTheStore();
    void savedEventsAndBookmarksKeepTheirOrder();
    void removingIsAllOrNothing();
    void foldersAndTheirBookmarksGoTogether();
    void remotePicturesAreTold();

private:
    std::unique_ptr<SampleBackup> m_sample;
    RecordSource source() const { return {m_sample->opened(), {}}; }
};

void TestRecordThreads::initTestCase()
{
    initResources();
    installTexts();
    m_sample = std::make_unique<SampleBackup>();
}

void TestRecordThreads::savingTells_data()
{
    QTest::addColumn<DataClass>("dataClass");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("counter"); // its beginning
    QTest::addColumn<QString>("success"); // %1: the number
    QTest::newRow("contacts") << DataClass::Contacts << "Backing up contacts now. Please wait..."
                              << "Contacts:1/"
                              << "Successfully backup %1 contacts with 1  merged.";
    QTest::newRow("calls") << DataClass::Calls << "Backing up Call History now. Please wait..."
                           << "Calls:1 / "
                           << "Successfully backup %1 Call History";
    QTest::newRow("notes") << DataClass::Notes << "Backing up Notes. Please wait..."
                           << "Notes:1 / "
                           << "Successfully backup %1 notes.\n1 of them was there already.";
    QTest::newRow("calendar") << DataClass::Calendar << "Backing up Calendar events now. Please wait..."
                              << "Calendar event:1 / "
                              << "Successfully backup %1 Calendar events.";
    QTest::newRow("bookmarks") << DataClass::Bookmarks << "Backing up Bookmarks now. Please wait..."
                               << "Bookmarks:1 / "
                               << "Successfully backup %1 Bookmarks\n1 of them was there already.";
}

void TestRecordThreads::savingTells()
{
    QFETCH(DataClass, dataClass);
    QFETCH(QString, status);
    QFETCH(QString, counter);
    QFETCH(QString, success);
    Reports reports;
    QTemporaryDir folder;
    SaveReport result;
    withRecords(source(), reports, [&](PersonalSource &records) {
        result = saveRecords(dataClass, records, Scope::Usual, folder.filePath(QStringLiteral("a")), reports);
    });
    QVERIFY(result.handled() > 1);
    QCOMPARE(result.added + result.merged, result.handled());
    QCOMPARE(reports.statuses, QSet<QString>{status});
    QVERIFY2(reports.details.first().startsWith(counter), qPrintable(reports.details.first()));
    const auto worker = makeBackupThread(dataClass, source(), folder.filePath(QStringLiteral("b")));
    QStringList told{QStringLiteral("done: ") + success.arg(result.handled())};
    told += sentencesOf(result.report);
    if (told.size() > 1)
        told.insert(1, QString());
    QCOMPARE(endOf(*worker), told.join(QLatin1Char('\n')));
}

void TestRecordThreads::everythingIsSavedWhenAskedFor()
{
    QFETCH(DataClass, dataClass);
    NoProgress nobody;
    Report report;
    const auto handled = [&](Scope scope) {
        const QTemporaryDir folder;
        SaveReport result;
        withRecords(source(), nobody, [&](PersonalSource &records) {
            result = saveRecords(dataClass, records, scope, folder.path(), nobody);
        });
        report = result.report;
        return result.handled();
    };
    const qint64 usual = handled(Scope::Usual);
    const qint64 hidden = report.count(IssueKind::Hidden);
    QVERIFY2(hidden > 0 || dataClass == DataClass::Calls, "the sample has some that are left out");
    const qint64 all = handled(Scope::Everything);
    QCOMPARE(report.count(IssueKind::Hidden), 0);
    if (dataClass != DataClass::Contacts) // what is left out of them are labels and rows
        QCOMPARE(all > usual, hidden > 0);
}

void TestRecordThreads::exportingTells_data()
{
    QTest::addColumn<DataClass>("dataClass");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("counter");
    QTest::addColumn<QString>("success");
    QTest::newRow("contacts") << DataClass::Contacts << "vcard"
                              << "Extracting Contacts now. Please wait..."
                              << "Contacts:1/"
                              << "Successfully extracted %1 Contacts.";
    QTest::newRow("calls") << DataClass::Calls << "csv"
                           << ""
                           << "1 / "
                           << "Successfully extracted %1 Call history.";
    QTest::newRow("notes") << DataClass::Notes << "html"
                           << "Extracting Notes now. Please wait..."
                           << "Notes:1 / "
                           << "Successfully extracted %1 Notes.";
    QTest::newRow("calendar") << DataClass::Calendar << "ical"
                              << "Extracting Calendar events now. Please wait..."
                              << "1 / "
                              << "Successfully extracted %1 Calendar events.";
    QTest::newRow("bookmarks") << DataClass::Bookmarks << "html"
                               << "Extracting Bookmarks now. Please wait..."
                               << "1 / "
                               << "Successfully extracted %1 Bookmarks.";
}

void TestRecordThreads::exportingTells()
{
    QFETCH(DataClass, dataClass);
    QFETCH(QString, format);
    QFETCH(QString, status);
    QFETCH(QString, counter);
    QFETCH(QString, success);
    Reports reports;
    Report report;
    const RecordsPtr records = readRecords(source(), dataClass, Scope::Usual, report, reports);
    const RecordSelection all = std::visit(
        [&records](const auto &list) -> RecordSelection {
            if constexpr (std::is_same_v<std::decay_t<decltype(list)>, BookmarkTree>)
                return std::shared_ptr<const BookmarkTree>(records, &list);
            else
                return list;
        },
        *records);
    reports = {};
    QTemporaryDir folder;
    const Report told = exportRecords(all, format, folder.filePath(QStringLiteral("a")), reports);
    const qint64 written = told.done;
    QVERIFY(written > 1);
    QCOMPARE(reports.statuses, QSet<QString>{status});
    QVERIFY2(reports.details.first().startsWith(counter), qPrintable(reports.details.first()));
    const auto worker = makeExportThread(all, format, folder.filePath(QStringLiteral("b")));
    QStringList lines{QStringLiteral("done: ") + success.arg(written)};
    lines += sentencesOf(told);
    if (lines.size() > 1)
        lines.insert(1, QString());
    QCOMPARE(endOf(*worker), lines.join(QLatin1Char('\n')));
}

void TestRecordThreads::stopLeavesTheStore_data()
{
    QTest::addColumn<DataClass>("dataClass");
    for (const DataClass dataClass : savedClasses)
        QTest::newRow(qPrintable(dataClassName(dataClass))) << dataClass;
}

void TestRecordThreads::stopLeavesTheStore()
{
    QFETCH(DataClass, dataClass);
    QTemporaryDir folder;
    const OpenBackupPtr backup = m_sample->opened();
    StopAfter stop(3);
    QVERIFY_EXCEPTION_THROWN(saveRecords(dataClass, *openDeviceRecords(backup->manifest(), QString()),
                                         Scope::Usual, folder.path(), stop),
                             Cancelled);
    QCOMPARE(openLocalRecords(folder.path())->count(dataClass, heard), 0);
}

void TestRecordThreads::savedEventsAndBookmarksKeepTheirOrder()
{
    const QTemporaryDir folder;
    LocalCalendarsDb events(folder.path());
    events.open();
    StoreJob saving(events);
    for (const char *name : {"work/c", "home/b", "work/a", "home/c", "work/b"}) {
        CalendarEvent event;
        event.calendar = QString::fromLatin1(name).section(u'/', 0, 0);
        event.summary = QString::fromLatin1(name).section(u'/', 1);
        event.start_date = event.end_date = QDateTime::fromSecsSinceEpoch(1000, Qt::UTC);
        events.save(event);
    }
    saving.commit();
    QStringList order;
    for (const CalendarEvent &event : events.readAll(heard))
        order << event.calendar + u'/' + event.summary;
    QCOMPARE(order.join(u' '), QStringLiteral("home/b home/c work/c work/a work/b"));

    LocalBookmarkDb bookmarks(folder.path());
    bookmarks.open();
    for (const char *titles : {"abc", "cab"}) { // the second time the person has moved them
        StoreJob job(bookmarks);
        for (int place = 0; titles[place]; ++place) {
            BookmarkNode node;
            node.title = node.url = QString(QLatin1Char(titles[place]));
            node.order_index = place;
            bookmarks.saveRow(node, 0);
        }
        job.commit();
        QString read;
        for (const auto &node : bookmarks.readTree(heard))
            read += node->title;
        QCOMPARE(read, QLatin1String(titles));
    }
}

void TestRecordThreads::removingIsAllOrNothing()
{
    QTemporaryDir folder;
    NoProgress nobody;
    withRecords(source(), nobody, [&](PersonalSource &records) {
        saveRecords(DataClass::Calls, records, Scope::Usual, folder.path(), nobody);
    });
    const qint64 saved = openLocalRecords(folder.path())->count(DataClass::Calls, heard).value();
    const auto remove = [&](const QStringList &ids) {
        RemoveRecordsThread worker(DataClass::Calls, folder.path(), ids, "IDS_SUC_DEL_CALLS");
        return endOf(worker);
    };
    for (const QString &wrong : {QStringLiteral("99999"), QStringLiteral("1x"), QString()}) {
        QVERIFY(remove({QStringLiteral("1"), wrong}).startsWith(QStringLiteral("error: there is no record")));
        QCOMPARE(openLocalRecords(folder.path())->count(DataClass::Calls, heard), saved);
    }
    QCOMPARE(remove({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("1")}),
             QStringLiteral("done: Successfully deleted Call History."));
    QCOMPARE(openLocalRecords(folder.path())->count(DataClass::Calls, heard), saved - 2);
}

void TestRecordThreads::foldersAndTheirBookmarksGoTogether()
{
    QTemporaryDir folder;
    NoProgress nobody;
    withRecords(source(), nobody, [&](PersonalSource &records) {
        saveRecords(DataClass::Bookmarks, records, Scope::Usual, folder.path(), nobody);
    });
    QStringList ids;
    const auto collect = [&ids](const BookmarkTree &tree, const auto &self) -> void {
        for (const auto &node : tree) {
            ids.append(QString::number(node->id));
            self(node->children, self);
        }
    };
    collect(openLocalRecords(folder.path())->bookmarks(Scope::Usual, heard), collect);
    const BookmarkTree saved = openLocalRecords(folder.path())->bookmarks(Scope::Usual, heard);
    const auto filled = std::find_if(saved.begin(), saved.end(),
                                     [](const auto &node) { return countBookmarks(node->children) > 0; });
    QVERIFY(filled != saved.end());
    removeRecords(DataClass::Bookmarks, folder.path(), {QString::number((*filled)->id)}, nobody);
    QCOMPARE(openLocalRecords(folder.path())->count(DataClass::Bookmarks, heard),
             countBookmarks(saved) - countBookmarks((*filled)->children));
    ids.clear();
    collect(openLocalRecords(folder.path())->bookmarks(Scope::Usual, heard), collect);
    removeRecords(DataClass::Bookmarks, folder.path(), ids, nobody);
    QVERIFY(openLocalRecords(folder.path())->bookmarks(Scope::Usual, heard).empty());
}

void TestRecordThreads::remotePicturesAreTold()
{
    NoteEntry note;
    note.content = QStringLiteral("<img src=\"https://example.org/a.png\">");
    QTemporaryDir folder;
    ExportNotesThread worker({note}, QStringLiteral("html"), folder.path());
    QVERIFY(endOf(worker).contains(QStringLiteral("refers to pictures on a server")));
}

QTEST_MAIN(TestRecordThreads)
#include "tst_record_threads.moc"
