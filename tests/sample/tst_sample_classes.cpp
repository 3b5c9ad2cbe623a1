#include "outside_tools.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// The databases and files of the data classes, in every generation.
class TestSampleClasses : public QObject
{
    Q_OBJECT

private slots:
    void everyDatabaseIsWhole_data();
    void everyDatabaseIsWhole();
    void counts_data();
    void counts();
    void columnsOfTheGeneration_data();
    void columnsOfTheGeneration();
    void contactsAnswerToTheHandles();
    void deviceOnlyParts();
    void soundAndPictures();
    void emptyOldCallHistory();
};

namespace {

/// A sample in a folder of its own.
struct Made
{
    explicit Made(int ios, bool emptyOldCallHistory = false)
    {
        options.folder = home.filePath(u"backup"_s);
        options.ios = ios;
        options.emptyOldCallHistory = emptyOldCallHistory;
        summary = makeSample(options);
    }

    QString stored(const QString &domain, const QString &relativePath) const
    {
        const SampleFile *file = summary.file(domain, relativePath);
        return file ? storedPath(options, *file) : u"missing: "_s + relativePath;
    }

    int count(const QString &domain, const QString &relativePath, const QString &sql) const
    {
        return column(stored(domain, relativePath), sql).value(0).toInt();
    }

    QTemporaryDir home;
    SampleOptions options;
    SampleSummary summary;
};

void addGenerations()
{
    QTest::addColumn<int>("ios");
    for (const int ios : {5, 6, 7, 9, 10, 11, 12, 14, 15, 16, 17})
        QTest::addRow("iOS %d", ios) << ios;
}

} // namespace

void TestSampleClasses::everyDatabaseIsWhole_data()
{
    addGenerations();
}

void TestSampleClasses::everyDatabaseIsWhole()
{
    QFETCH(int, ios);
    const Made made(ios);
    int databases = 0;
    for (const SampleFile &file : made.summary.files) {
        if (!file.stored || !readAll(storedPath(made.options, file)).startsWith("SQLite format 3"))
            continue;
        ++databases;
        QCOMPARE(column(storedPath(made.options, file), u"pragma integrity_check"_s), QStringList{u"ok"_s});
    }
    QCOMPARE(databases, 10);
}

void TestSampleClasses::counts_data()
{
    addGenerations();
}

void TestSampleClasses::counts()
{
    QFETCH(int, ios);
    const Made made(ios);
    const SampleCounts &counts = made.summary.counts;
    const QString home = u"HomeDomain"_s;
    QCOMPARE(made.count(home, u"Library/AddressBook/AddressBook.sqlitedb"_s,
                        u"select count(rowid) from Abperson"_s),
             counts.contacts);
    if (ios < 9)
        QCOMPARE(made.count(u"WirelessDomain"_s, u"Library/CallHistory/call_history.db"_s,
                            u"select count(*) from call"_s),
                 counts.calls);
    else
        QCOMPARE(made.count(home, u"Library/CallHistoryDB/CallHistory.storedata"_s,
                            u"select count(*) from ZCALLRECORD"_s),
                 counts.calls);
    QCOMPARE(made.count(home, u"Library/Notes/notes.sqlite"_s,
                        u"select count(*) from ZNOTE,ZNOTEBODY where ZNOTEBODY.Z_PK=ZNOTE.ZBODY"_s),
             counts.notes);
    QCOMPARE(made.count(
                 home, u"Library/Calendar/Calendar.sqlitedb"_s,
                 u"select count(*) from calendaritem as i inner join calendar as c on i.calendar_id=c.rowid "
                 "where (birthday_id <= 0 or birthday_id is null) and entity_type=2 and availability=0"_s),
             counts.calendarEvents);
    QCOMPARE(made.count(home, u"Library/Safari/Bookmarks.db"_s,
                        u"select count(*) from bookmarks where type=0 and hidden=0"_s),
             counts.bookmarks);
    QCOMPARE(made.count(home, u"Library/Voicemail/voicemail.db"_s, u"select count(*) from voicemail"_s),
             counts.voicemails);
    QCOMPARE(made.count(u"MediaDomain"_s, u"Media/Recordings/Recordings.db"_s,
                        u"select count(*) from ZRECORDING where ZDATE > 0 and ZPATH like '%.m4a'"_s),
             counts.recordings);
    for (const int count :
         {counts.contacts, counts.calls, counts.notes, counts.calendarEvents, counts.bookmarks,
          counts.voicemails, counts.recordings, counts.photos + counts.heicPhotos + counts.videos})
        QVERIFY2(count >= 10, QByteArray::number(count).constData());
}

void TestSampleClasses::columnsOfTheGeneration_data()
{
    QTest::addColumn<int>("ios");
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("expected");
    const QString home = u"HomeDomain"_s;
    const auto row = [&](int ios, const char *path, const char *table, int expected) {
        QTest::addRow("%s of iOS %d", table, ios)
            << ios << home << QString::fromLatin1(path) << QString::fromLatin1(table) << expected;
    };
    // As counted in databases of devices.
    const char *messages = "Library/SMS/sms.db";
    row(5, messages, "message", 33);
    row(6, messages, "message", 38);
    row(9, messages, "message", 51);
    row(10, messages, "message", 60);
    row(11, messages, "message", 64);
    row(12, messages, "message", 68);
    row(14, messages, "message", 74);
    row(6, messages, "chat", 12);
    row(6, messages, "attachment", 9);
    row(12, messages, "handle", 6);
    const char *contacts = "Library/AddressBook/AddressBook.sqlitedb";
    row(6, contacts, "ABPerson", 34);
    row(15, contacts, "ABPerson", 51);
    row(9, "Library/CallHistoryDB/CallHistory.storedata", "ZCALLRECORD", 18);
    row(11, "Library/CallHistoryDB/CallHistory.storedata", "ZCALLRECORD", 21);
    row(6, "Library/Notes/notes.sqlite", "ZNOTE", 19);
    row(6, "Library/Calendar/Calendar.sqlitedb", "CalendarItem", 51);
    row(9, "Library/Calendar/Calendar.sqlitedb", "CalendarItem", 62);
    row(9, "Library/Safari/Bookmarks.db", "bookmarks", 29);
    row(9, "Library/Voicemail/voicemail.db", "voicemail", 10);
    row(16, "Library/Voicemail/voicemail.db", "voicemail", 12);
}

void TestSampleClasses::columnsOfTheGeneration()
{
    QFETCH(int, ios);
    QFETCH(QString, domain);
    QFETCH(QString, path);
    QFETCH(QString, table);
    QFETCH(int, expected);
    const Made made(ios);
    QCOMPARE(made.count(domain, path, u"select count(*) from pragma_table_info('%1')"_s.arg(table)),
             expected);
}

void TestSampleClasses::contactsAnswerToTheHandles()
{
    const Made made(17);
    const QString path = made.stored(u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s);
    const QStringList numbers = column(
        path,
        u"select p.First || ' ' || p.Last || '=' || v.value from ABMultiValue as v inner join ABPerson as p "
        "on v.record_id=p.ROWID where v.property=3"_s);
    int named = 0;
    for (const SampleChat &chat : made.summary.chats) {
        for (const SampleHandle &handle : chat.handles) {
            if (handle.contactName.isEmpty())
                continue;
            ++named;
            const auto digits = [](QString text) {
                text.removeIf([](QChar c) { return !c.isDigit(); });
                return text.right(9);
            };
            const bool known = std::any_of(numbers.begin(), numbers.end(), [&](const QString &line) {
                return line.section(u'=', 0, 0).trimmed() == handle.contactName &&
                       digits(line.section(u'=', 1)) == digits(handle.address);
            });
            QVERIFY2(known || handle.contactName == u"Marguerite", qPrintable(handle.contactName));
        }
    }
    QVERIFY(named >= 8);
    QCOMPARE(made.summary.chats[6].title, u"Unknown"_s);
    QCOMPARE(made.summary.chats[2].title, u"Marguerite, Émile Łukasiewicz-Fernández, 太郎 山田"_s);
}

void TestSampleClasses::deviceOnlyParts()
{
    const Made made(17);
    const QString path = made.stored(u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s);
    QVERIFY(!column(path, u"select name from sqlite_master where name='ABPersonFullTextSearch'"_s).isEmpty());
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, column(path, u"select * from ABPersonFullTextSearch"_s));
    QVERIFY(!column(path, u"select First from ABPerson"_s).isEmpty());
}

void TestSampleClasses::soundAndPictures()
{
    const Made made(12);
    QStringList missing;
    for (const QString &row : column(made.stored(u"HomeDomain"_s, u"Library/Voicemail/voicemail.db"_s),
                                     u"select rowid from voicemail"_s)) {
        const SampleFile *file = made.summary.file(u"HomeDomain"_s, u"Library/Voicemail/%1.amr"_s.arg(row));
        if (!file)
            missing << row;
        else
            QVERIFY(readAll(storedPath(made.options, *file)).startsWith("#!AMR\n"));
    }
    QCOMPARE(missing, QStringList{u"5"_s});

    int photos = 0;
    int videos = 0;
    for (const SampleFile &file : made.summary.files) {
        if (file.domain != u"CameraRollDomain" || !file.relativePath.startsWith(u"Media/DCIM/1"_s))
            continue;
        const QByteArray content = readAll(storedPath(made.options, file));
        if (file.relativePath.endsWith(u".MOV"_s)) {
            ++videos;
            QCOMPARE(content.mid(4, 4), QByteArray("ftyp"));
        } else if (!file.relativePath.endsWith(u".HEIC"_s)) {
            ++photos;
            QVERIFY2(!QImage::fromData(content).isNull(), qPrintable(file.relativePath));
        }
    }
    QCOMPARE(photos, made.summary.counts.photos);
    QCOMPARE(videos, made.summary.counts.videos);
}

void TestSampleClasses::emptyOldCallHistory()
{
    const Made made(9, true);
    QCOMPARE(made.count(u"WirelessDomain"_s, u"Library/CallHistory/call_history.db"_s,
                        u"select count(*) from call"_s),
             0);
    QVERIFY(made.count(u"HomeDomain"_s, u"Library/CallHistoryDB/CallHistory.storedata"_s,
                       u"select count(*) from ZCALLRECORD"_s) > 0);
}

QTEST_GUILESS_MAIN(TestSampleClasses)
#include "tst_sample_classes.moc"
