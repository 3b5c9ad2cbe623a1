#include "support/database_pages.h"
#include "support/sample_backup.h"

#include "base/error.h"
#include "base/report.h"
#include "personal/media_names.h"
#include "resources/resources.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Photos, videos, voicemail and recordings of a backup.
namespace {
Report heard; // what the readers tell, in tests that do not ask for it
} // namespace

class TestMediaItems : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void countsOfASample_data();
    void countsOfASample();
    void cameraRollKinds_data();
    void cameraRollKinds();
    void recordingsFoundByNameAlone();
    void soundsInNoList();
    void damagedPage_data();
    void damagedPage();
    void exportNames_data();
    void exportNames();
};

void TestMediaItems::countsOfASample_data()
{
    QTest::addColumn<int>("ios");
    for (const int ios : {6, 9, 12, 17})
        QTest::addRow("%d", ios) << ios;
}

void TestMediaItems::countsOfASample()
{
    QFETCH(int, ios);
    SampleOptions options;
    options.ios = ios;
    const SampleBackup sample(options);
    const OpenBackupPtr opened = sample.opened();
    BackupManifest &backup = opened->manifest();
    const SampleCounts &made = sample.summary().counts;
    QCOMPARE(countMedia(backup, DataClass::Photos, heard), made.photos + made.heicPhotos);
    QCOMPARE(countMedia(backup, DataClass::Videos, heard), made.videos);
    QCOMPARE(countMedia(backup, DataClass::Voicemail, heard), made.voicemails);
    QCOMPARE(countMedia(backup, DataClass::Recordings, heard), made.recordings);
    QCOMPARE(readVoicemail(backup, heard).size(), made.voicemails);
    const QList<RecordingItem> recordings = readRecordings(backup, heard);
    QVERIFY(std::is_sorted(recordings.begin(), recordings.end(),
                           [](const auto &a, const auto &b) { return a.date > b.date; }));
}

void TestMediaItems::cameraRollKinds_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<int>("photos");
    QTest::addColumn<int>("videos");
    for (const char *ending : {".HEIC", ".heif", ".JPEG", ".jpg", ".Png", ".GIF", ".DNG", ".webp", ".tiff"})
        QTest::newRow(ending) << QString::fromLatin1(ending) << 1 << 0;
    for (const char *ending : {".MOV", ".mp4", ".M4V", ".3gp"})
        QTest::newRow(ending) << QString::fromLatin1(ending) << 0 << 1;
    for (const char *ending : {".AAE", ".plist", ""})
        QTest::newRow(ending) << QString::fromLatin1(ending) << 0 << 0;
}

void TestMediaItems::cameraRollKinds()
{
    QFETCH(QString, ending);
    SampleOptions options;
    options.files = 0;
    options.messages = 0;
    options.extraRows = {{u"CameraRollDomain"_s, u"Media/DCIM/199APPLE/IMG_9999"_s + ending, "x"}};
    const SampleBackup sample(options);
    const OpenBackupPtr backup = sample.opened();
    const auto counted = [&](CameraRollKind kind) {
        int count = 0;
        for (const auto index : cameraRollItems(backup->manifest(), kind))
            count += backup->manifest().catalogue().relativePath(index).contains("199APPLE");
        return count;
    };
    QTEST(counted(CameraRollKind::Photo), "photos");
    QTEST(counted(CameraRollKind::Video), "videos");
}

void TestMediaItems::recordingsFoundByNameAlone()
{
    const SampleBackup sample;
    const OpenBackupPtr opened = sample.opened();
    BackupManifest &backup = opened->manifest();
    const QList<RecordingItem> recordings = readRecordings(backup, heard);
    const auto withoutFile = std::count_if(recordings.begin(), recordings.end(), [](const auto &recording) {
        return recording.file == FileCatalogue::none;
    });
    QCOMPARE(withoutFile, 1); // some of the others are listed below folders where they do not lie
}

void TestMediaItems::soundsInNoList()
{
    const SampleBackup sample;
    const OpenBackupPtr before = sample.opened();
    Report whole;
    readVoicemail(before->manifest(), whole);
    readRecordings(before->manifest(), whole);
    QCOMPARE(whole.count("IDS_ISSUE_SOUNDS_IN_NO_LIST"), 0);

    const SampleBackup changed;
    const OpenBackupPtr opened = changed.opened();
    BackupManifest &backup = opened->manifest();
    const auto execute = [&](const QByteArray &domain, const QByteArray &path, const QString &statement) {
        Sqlite3DB db;
        db.openThrow(backup.filePath(backup.catalogue().find(domain, path)), SqliteOpen::ReadWrite);
        db.executeThrow(statement);
    };
    execute("HomeDomain", "Library/Voicemail/voicemail.db", u"delete from voicemail where ROWID<=3"_s);
    Report voicemail;
    readVoicemail(backup, voicemail);
    QCOMPARE(voicemail.count("IDS_ISSUE_SOUNDS_IN_NO_LIST"), 3);
    QCOMPARE(voicemail.issues().last().kind, IssueKind::LeftOut);
    QVERIFY(voicemail.issues().last().where.startsWith(u"HomeDomain Library/Voicemail/"_s));

    execute("MediaDomain", "Media/Recordings/Recordings.db", u"delete from ZRECORDING where Z_PK<=2"_s);
    Report recordings;
    readRecordings(backup, recordings);
    QCOMPARE(recordings.count("IDS_ISSUE_SOUNDS_IN_NO_LIST"), 2);
}

void TestMediaItems::damagedPage_data()
{
    QTest::addColumn<SourceFile>("file");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("columns");
    QTest::newRow("voicemail") << SourceFile{u"HomeDomain"_s, u"Library/Voicemail/voicemail.db"_s}
                               << u"voicemail"_s << u"date, sender, duration"_s;
    QTest::newRow("recordings") << SourceFile{u"MediaDomain"_s, u"Media/Recordings/Recordings.db"_s}
                                << u"ZRECORDING"_s << u"ZDATE, ZPATH, ZDURATION"_s;
}

void TestMediaItems::damagedPage()
{
    QFETCH(SourceFile, file);
    QFETCH(QString, table);
    QFETCH(QString, columns);
    constexpr int made = 400;
    const SampleBackup sample;
    const OpenBackupPtr opened = sample.opened();
    BackupManifest &backup = opened->manifest();
    const QString path =
        backup.filePath(backup.catalogue().find(file.domain.toUtf8(), file.relativePath.toUtf8()));
    QVERIFY(QFile::remove(path));
    {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWriteCreate);
        QVERIFY(db.exec(u"pragma page_size=1024; create table %1(ROWID INTEGER PRIMARY KEY, %2, pad); with "
                        "recursive n(i) as (select 1 union all select i+1 from n where i<%3) insert into %1 "
                        "select i,i,'x',5,hex(zeroblob(40)) from n"_s.arg(table, columns)
                            .arg(made)));
    }
    {
        DatabasePages pages(path);
        const DatabaseTree tree(pages, rootPageOf(path, table));
        pages.destroy(tree.leaves.at(tree.leaves.size() / 2));
    }
    Report report;
    const bool isVoicemail = table == u"voicemail";
    const qsizetype read =
        isVoicemail ? readVoicemail(backup, report).size() : readRecordings(backup, report).size();
    QVERIFY(read > made * 9 / 10 && read < made);
    QCOMPARE(report.issues().first().kind, IssueKind::Damaged);
    QCOMPARE(report.issues().first().where, file.display());
}

void TestMediaItems::exportNames_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QString>("expected");
    const QString date = u"20120101-010000"_s; // local time
    QTest::newRow("number") << u"+15550100"_s << date + u"-+15550100.amr"_s;
    QTest::newRow("nobody") << QString() << date + u".amr"_s;
    QTest::newRow("address") << u"ann@example.org"_s << date + u"-ann@example_org.amr"_s;
    QTest::newRow("wants to climb") << u"../../x"_s << date + u"-____x.amr"_s;
    QTest::newRow("long") << QString(300, u'7') << date + u'-' + QString(60, u'7') + u".amr"_s;
}

void TestMediaItems::exportNames()
{
    QFETCH(QString, sender);
    FileCatalogue catalogue;
    FileRecord record;
    record.domain = "HomeDomain";
    record.relativePath = "Library/Voicemail/17.amr";
    const VoicemailItem item{QDateTime::fromSecsSinceEpoch(1325376000, Qt::UTC), sender, 3, 17,
                             catalogue.insert(record)};
    QTEST(exportName(item, catalogue), "expected");
    QCOMPARE(describe(item), u"'date:2012-01-01 01:00:00, sender:%1'"_s.arg(sender));
}

QTEST_GUILESS_MAIN(TestMediaItems)
#include "tst_media_items.moc"
