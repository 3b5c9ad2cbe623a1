#include "backup/cache_folder.h"
#include "base/error.h"
#include "base/texts.h"
#include "messages/abs_message_db.h"
#include "personal/media_items.h"
#include "recording_receiver.h"
#include "resources/resources.h"
#include "sqlite/sqlite3_db.h"
#include "support/sample_backup.h"
#include "work/export_messages_thread.h"
#include "work/itunes_cache_sms_thread.h"
#include "work/load_bk_thread.h"
#include "work/load_messages_thread.h"

#include <QDirIterator>
#include <QTest>

namespace {
/// Asks to stop at the n-th look at the flag.
class StopAt : public NoProgress
{
public:
    explicit StopAt(int looks) : m_left(looks) {}
    bool isCancelled() const override { return --m_left <= 0; }

private:
    mutable int m_left;
};

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files << walk.next();
    return files;
}

QString contentPath(const SampleBackup &sample, const QString &relativePath)
{
    const QString id = sample.summary().file(QStringLiteral("HomeDomain"), relativePath)->fileId;
    return QStringLiteral("%1/%2/%3").arg(sample.folder(), id.left(2), id);
}
} // namespace

class TestWorkers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void loadCountsMessages();
    void loadSurvivesADamagedMessageDatabase();
    void loadTellsWhatCountingFinds();
    void loadStops_data();
    void loadStops();
    void countsByTheirNames();
    void cacheMessagesOfASample();
    void cacheMessagesOfNone();
    void loadMessagesFails();
    void exportStopsWithoutHalfAFile_data();
    void exportStopsWithoutHalfAFile();
    void exportTextNamesWhatIsMissing();
    void oneWorkerAtATimeUsesABackup();
};

void TestWorkers::initTestCase()
{
    initResources();
    installTexts();
}

void TestWorkers::loadCountsMessages()
{
    const SampleBackup sample;
    NoProgress nobody;
    const OpenBackupPtr backup = sample.described();
    const BackupCounts counts = loadBackup(*backup, nobody);
    QCOMPARE(counts.of(DataClass::Messages), qint64(sample.summary().counts.joinedMessages));
    QVERIFY(!counts.report.isFailure());
    QVERIFY(backup->manifest().hasIndex());
}

void TestWorkers::loadSurvivesADamagedMessageDatabase()
{
    const SampleBackup sample;
    QFile database(contentPath(sample, QStringLiteral("Library/SMS/sms.db")));
    QVERIFY(database.open(QIODevice::WriteOnly));
    database.write(QByteArray(10000, 'x'));
    database.close();
    NoProgress nobody;
    const BackupCounts counts = loadBackup(*sample.described(), nobody);
    QVERIFY2(!counts.of(DataClass::Messages), "no zero for what cannot be read");
    QVERIFY(counts.of(DataClass::Contacts) && counts.report.isFailure());
}

void TestWorkers::loadTellsWhatCountingFinds()
{
    const SampleBackup sample;
    {
        Sqlite3DB db;
        db.openThrow(contentPath(sample, QStringLiteral("Library/SMS/sms.db")), SqliteOpen::ReadWrite);
        db.executeThrow(QStringLiteral("update chat set rowid=999 where rowid=1"));
    }
    const OpenBackupPtr backup = sample.opened();
    const auto photo = cameraRollItems(backup->manifest(), CameraRollKind::Photo).front();
    QVERIFY(QFile::remove(backup->manifest().filePath(photo)));
    NoProgress nobody;
    const BackupCounts counts = loadBackup(*sample.described(), nobody);
    QVERIFY(counts.of(DataClass::Messages) && counts.report.count("IDS_ISSUE_MESSAGES_OF_MISSING_CHATS") > 0);
    QCOMPARE(counts.report.count("IDS_ISSUE_CONTENT_MISSING"), 1);
}

void TestWorkers::loadStops_data()
{
    QTest::addColumn<int>("looks");
    for (const int looks : {1, 3, 6, 12})
        QTest::addRow("at look %d", looks) << looks;
}

void TestWorkers::loadStops()
{
    QFETCH(int, looks);
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.described();
    StopAt progress(looks);
    QVERIFY_EXCEPTION_THROWN(loadBackup(*backup, progress), Cancelled);
    NoProgress nobody;
    QCOMPARE(loadBackup(*backup, nobody).of(DataClass::Messages),
             qint64(sample.summary().counts.joinedMessages));
}

void TestWorkers::countsByTheirNames()
{
    const SampleBackup sample;
    NoProgress nobody;
    const BackupCounts counts = loadBackup(*sample.described(), nobody);
    const QHash<QString, qint64> names = countsByName(counts);
    QCOMPARE(names.value(QStringLiteral("contacts")), qint64(sample.summary().counts.contacts));
    QCOMPARE(countsOfNames(names).known, counts.known);
    BackupCounts partly = counts;
    partly.known.remove(DataClass::Notes);
    QVERIFY2(!countsOfNames(countsByName(partly)).of(DataClass::Notes), "what was not told is no zero later");
}

void TestWorkers::cacheMessagesOfASample()
{
    class Statuses : public NoProgress
    {
    public:
        void report(const QString &status, int, const QString &) override { lines << status; }
        QStringList lines;
    } progress;
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.described();
    backup->manifest().attachCache();
    const CachedFiles first = cacheMessages(*backup, progress);
    QVERIFY(first.copied > 1);
    QCOMPARE(progress.lines.constFirst(), QStringLiteral("Loading iTunes Backup now. Please wait..."));
    QVERIFY(progress.lines.contains(QStringLiteral("Saving sms.db...")));
    QCOMPARE(cacheMessages(*backup, progress), (CachedFiles{0, first.copied, first.leftOut}));
    clearCacheOf(backupUid(sample.folder()));
}

void TestWorkers::cacheMessagesOfNone()
{
    SampleOptions options;
    options.layout = SampleOptions::Layout::Mbdb;
    options.ios = 6;
    const SampleBackup sample(options);
    QFile catalogue(sample.folder() + QStringLiteral("/Manifest.mbdb"));
    QVERIFY(catalogue.open(QIODevice::ReadWrite));
    const QByteArray renamed = catalogue.readAll().replace("SMS/sms.db", "SMS/xxx.xx");
    QVERIFY(catalogue.seek(0) && catalogue.write(renamed) == renamed.size());
    catalogue.close();
    const OpenBackupPtr backup = sample.described();
    NoProgress nobody;
    try {
        cacheMessages(*backup, nobody);
        QFAIL("there are no messages");
    } catch (const Error &error) {
        QCOMPARE(error.sentence(), QStringLiteral("Found no message database file in this iTunes backup."));
    }
}

void TestWorkers::loadMessagesFails()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    QVERIFY(QFile::remove(contentPath(sample, QStringLiteral("Library/SMS/sms.db"))));
    RecordingReceiver receiver;
    LoadMessagesThread worker({backup});
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    QTRY_VERIFY(receiver.ended());
    QVERIFY(worker.wait());
    QVERIFY(receiver.lines.constFirst().startsWith(QStringLiteral("error: ")));
}

void TestWorkers::exportStopsWithoutHalfAFile_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("looks");
    for (const int looks : {1, 2, 50}) {
        const QByteArray at = QByteArray::number(looks);
        QTest::addRow("text, at look %d", looks) << int(MessageFormat::Text) << looks;
        QTest::addRow("csv, at look %d", looks) << int(MessageFormat::Csv) << looks;
    }
}

void TestWorkers::exportStopsWithoutHalfAFile()
{
    QFETCH(int, format);
    QFETCH(int, looks);
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    const auto messages = openMessageDb(backup->manifest());
    NoProgress nobody;
    messages->loadChats();
    messages->loadMessages(0, nobody);
    QTemporaryDir target;
    StopAt progress(looks);
    QVERIFY_EXCEPTION_THROWN(
        exportMessages(messages->select({}, INT64_MIN, INT64_MAX), static_cast<MessageFormat>(format),
                       target.filePath(QStringLiteral("out")), &backup->manifest(), progress),
        Cancelled);
    QCOMPARE(filesBelow(target.path()), QStringList());
}

void TestWorkers::exportTextNamesWhatIsMissing()
{
    ExportedMessages exported;
    exported.report.done = 7;
    QCOMPARE(messageExportText(exported), QStringLiteral("Successfully extracted 7 Messages."));
    for (int i = 1; i <= 7; ++i)
        exported.report.add({.kind = IssueKind::Absent,
                             .what = "IDS_ISSUE_ATTACHMENTS_ABSENT",
                             .where = QStringLiteral("IMG_%1.JPG").arg(i)});
    const QString text = messageExportText(exported);
    QVERIFY(text.startsWith(QStringLiteral("Successfully extracted 7 Messages.\n\n7 attachments ")));
    QVERIFY(text.contains(QStringLiteral("IMG_5.JPG")));
    QVERIFY(!text.contains(QStringLiteral("IMG_6.JPG")));
    QVERIFY(text.endsWith(QStringLiteral("and 2 more")));
}

void TestWorkers::oneWorkerAtATimeUsesABackup()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    NoProgress nobody;
    auto turn = std::make_unique<BackupUse>(*backup, nobody);
    RecordingReceiver receiver;
    LoadMessagesThread worker({backup});
    ProgressLink link;
    link.receiver = &receiver;
    worker.setLink(link);
    worker.start();
    QVERIFY2(!worker.wait(120), "it waits for its turn");
    turn.reset();
    QTRY_VERIFY(receiver.ended());
    QVERIFY(worker.wait());
    QVERIFY(worker.messages() != nullptr);
}

QTEST_GUILESS_MAIN(TestWorkers)
#include "tst_workers.moc"
