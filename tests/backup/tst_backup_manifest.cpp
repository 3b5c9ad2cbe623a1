#include "backup/backup_fixture.h"

#include "backup/backup_list.h"
#include "backup/cache_folder.h"
#include "backup/database_log.h"
#include "backup/leftovers.h"
#include "resources/resources.h"
#include "sqlite/sqlite3_db.h"

#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestBackupManifest : public QObject
{
    Q_OBJECT

private slots:
    void opensEveryKind_data();
    void opensEveryKind();
    void databaseWithItsLog_data();
    void databaseWithItsLog();
    void databaseThatLostItsLog_data();
    void databaseThatLostItsLog();
    void logBrokenBetweenItsChanges();
    void databaseThatCannotBeFetched();
    void copiesForViewing();
    void copiesVanish();
    void leftoversVanish();
    void noRecordIsNothing();
    void oddContent_data();
    void oddContent();
    void devicePaths_data();
    void devicePaths();
    void cleanupTestCase() { m_backup.reset(); }

private:
    std::unique_ptr<BackupFixture> m_fixture; // of all rows of one test
    std::unique_ptr<BackupManifest> m_backup;
};

namespace {
FileCatalogue::Index indexOf(const BackupManifest &backup, const SampleFile &file)
{
    return backup.catalogue().find(file.domain.toUtf8(), file.relativePath.toUtf8());
}

const SourceFile messages{u"HomeDomain"_s, u"Library/SMS/sms.db"_s};
const SourceFile lockedFile{u"HomeDomain"_s, u"Library/Locked/only-on-this-device.bin"_s};
} // namespace

void TestBackupManifest::opensEveryKind_data()
{
    QTest::addColumn<SampleOptions>("options");
    const auto row = [](const char *name, SampleOptions::Layout layout, int ios, const char *password) {
        SampleOptions options;
        options.layout = layout;
        options.ios = ios;
        options.password = QString::fromUtf8(password);
        return &(QTest::newRow(name) << options);
    };
    using Layout = SampleOptions::Layout;
    row("modern, plain", Layout::Modern, 17, "");
    row("older, plain", Layout::Mbdb, 6, "");
    row("modern, encrypted", Layout::Modern, 17, "pässwörd");
    row("older, encrypted", Layout::Mbdb, 9, "x");
}

void TestBackupManifest::opensEveryKind()
{
    QFETCH(SampleOptions, options);
    const BackupFixture fixture(options);
    const QString before = fingerprint(fixture.folder());
    {
        BackupManifest backup(fixture.folder());
        backup.loadInfo();
        QCOMPARE(backup.info().encrypted, !options.password.isEmpty());
        if (!options.password.isEmpty()) {
            QVERIFY(!backup.openEncrypted(QStringLiteral("wrong")));
            QVERIFY(!backup.isUnlocked());
            QVERIFY(backup.openEncrypted(options.password));
        }
        QVERIFY(backup.isUnlocked());
        NoProgress progress;
        backup.buildIndex(progress);
        QCOMPARE(int(backup.catalogue().size()), fixture.summary.counts.catalogueRows);
        QVERIFY(backup.report().isEmpty());
        for (const SampleFile &file : fixture.summary.files) {
            const auto index = indexOf(backup, file);
            QVERIFY2(index != FileCatalogue::none, qPrintable(file.relativePath));
            QCOMPARE(backup.catalogue().fileId(index), file.fileId.toLatin1());
            QCOMPARE(backup.isLocked(index), file.locked);
            QCOMPARE(backup.hasContent({file.domain, file.relativePath}), file.stored);
            const QString copy = fixture.path(QStringLiteral("copy"));
            if (!file.stored) {
                QVERIFY_EXCEPTION_THROWN(backup.fetchFile(index, copy), Error);
                QVERIFY(!QFile::exists(copy));
                continue;
            }
            const FetchOutcome outcome = backup.fetchFile(index, copy);
            QCOMPARE(outcome == FetchOutcome::CopiedLocked, file.locked);
            if (!file.locked)
                QCOMPARE(sha1Of(copy).toHex(), file.sha1.toHex());
            QCOMPARE(QFileInfo(copy).lastModified().toSecsSinceEpoch(), file.modified);
            QFile::remove(copy);
        }
    }
    QCOMPARE(fingerprint(fixture.folder()), before);
}

void TestBackupManifest::databaseWithItsLog_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << u""_s;
    QTest::newRow("encrypted") << u"pw"_s;
}

void TestBackupManifest::databaseWithItsLog()
{
    QFETCH(QString, password);
    SampleOptions options;
    options.password = password;
    options.walCompanion = true;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    const auto messageRows = [&] {
        Sqlite3DB db;
        db.openThrow(*backup->fetchDatabase(messages), SqliteOpen::ReadOnly);
        Sqlite3Cursor cursor = db.queryThrow(u"select count(*) from message"_s);
        return cursor.moveNext() ? cursor.getInt(0) : -1;
    };
    QCOMPARE(messageRows(), fixture.summary.counts.messageRows);
    const QString copy = *backup->fetchDatabase(messages);
    QCOMPARE(QFileInfo(copy).fileName(), u"sms.db"_s);
    QCOMPARE(*backup->fetchDatabase(messages), copy);
    QVERIFY(!backup->fetchDatabase({u"HomeDomain"_s, u"Library/none.db"_s}));
    QVERIFY(!backup->fetchDatabase({u"HomeDomain"_s, u"Library/SMS"_s}));

    QVERIFY(backup->report().isEmpty());
}

void TestBackupManifest::databaseThatLostItsLog_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<qint64>("length");
    QTest::newRow("missing") << u""_s << qint64{-1};
    QTest::newRow("empty") << u""_s << qint64{0};
    QTest::newRow("cut in its header") << u""_s << qint64{20};
    QTest::newRow("cut in its first page") << u""_s << qint64{1000};
    QTest::newRow("cut behind a page") << u""_s << qint64{32 + 24 + 4096};
    QTest::newRow("missing, encrypted") << u"pw"_s << qint64{-1};
    QTest::newRow("no whole block, encrypted") << u"pw"_s << qint64{7};
}

// It opens all the same, with what it holds itself, and the loss is told once.
void TestBackupManifest::databaseThatLostItsLog()
{
    QFETCH(QString, password);
    QFETCH(qint64, length);
    SampleOptions options;
    options.password = password;
    options.walCompanion = true;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    const QString log = backup->filePath(backup->catalogue().find("HomeDomain", "Library/SMS/sms.db-wal"));
    QVERIFY(length < 0 ? QFile::remove(log) : QFile::resize(log, length));
    for (int times = 0; times < 2; ++times) {
        Sqlite3DB db;
        db.openThrow(*backup->fetchDatabase(messages), SqliteOpen::ReadOnly);
        Sqlite3Cursor rows = db.queryThrow(u"select count(*) from message"_s);
        QVERIFY(rows.moveNext() && rows.getInt(0) < fixture.summary.counts.messageRows);
        db.close();
        backup->close();
    }
    const Report report = backup->report();
    QCOMPARE(report.issues().size(), 1);
    QCOMPARE(report.issues().first().what, "IDS_ISSUE_DATABASE_LOG");
    QCOMPARE(report.issues().first().where, u"HomeDomain Library/SMS/sms.db-wal"_s);
    QCOMPARE(report.count(IssueKind::Damaged), 1);
}

// Readers of such a log stop there, at the end of a whole change.
void TestBackupManifest::logBrokenBetweenItsChanges()
{
    constexpr qsizetype frame = 24 + 4096;
    const QTemporaryDir folder;
    const QString database = folder.filePath(u"a.db"_s);
    Sqlite3DB db;
    db.openThrow(database, SqliteOpen::ReadWriteCreate);
    QVERIFY(db.exec(u"pragma page_size=4096; pragma journal_mode=wal; pragma wal_autocheckpoint=0;"
                    "create table a(b); insert into a values(1); insert into a values(2)"_s));
    QFile log(database + u"-wal"_s);
    QVERIFY(log.open(QIODevice::ReadWrite));
    const QByteArray whole = log.readAll();
    QVERIFY(whole.size() >= 32 + 3 * frame);
    QCOMPARE(faultOfLog(log.fileName()), QString());
    for (qsizetype at = 32; at + 2 * frame <= whole.size(); at += frame) {
        QVERIFY(log.seek(0) && log.write(QByteArray(whole).replace(at + 8, 8, QByteArray(8, 'x'))) > 0);
        log.flush();
        QVERIFY2(!faultOfLog(log.fileName()).isEmpty(), qPrintable(QString::number(at)));
    }
}

void TestBackupManifest::databaseThatCannotBeFetched()
{
    SampleOptions options;
    options.password = u"pw"_s;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    const auto index = backup->wellKnown(WellKnown::MessageDatabase);
    QVERIFY(QFile::remove(backup->filePath(index)));
    const QString sentence = errorOf([&] { backup->fetchDatabase(messages); });
    QVERIFY2(sentence.startsWith(u"can not open "_s + backup->filePath(index)), qPrintable(sentence));
    QVERIFY(errorOf([&] { backup->fetchDatabase(lockedFile); }).contains(lockedFile.relativePath));
}

void TestBackupManifest::copiesForViewing()
{
    SampleOptions options;
    options.files = 0;
    options.password = u"pw"_s;
    options.extraRows = {{u"MediaDomain"_s, u"a/photo.jpg"_s, "one"},
                         {u"MediaDomain"_s, u"b/photo.jpg"_s, "two"},
                         {u"MediaDomain"_s, u"c/.."_s, "three"}};
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    const QString one = backup->fetchForViewing({u"MediaDomain"_s, u"a/photo.jpg"_s});
    const QString two = backup->fetchForViewing({u"MediaDomain"_s, u"b/photo.jpg"_s});
    QCOMPARE(contentOf(one), QByteArray("one"));
    QCOMPARE(contentOf(two), QByteArray("two"));
    QVERIFY(one.endsWith(u"/photo.jpg"_s) && two.endsWith(u"/photo.jpg"_s));
    QCOMPARE(backup->fetchForViewing({u"MediaDomain"_s, u"a/photo.jpg"_s}), one);
    QCOMPARE(contentOf(backup->fetchForViewing({u"MediaDomain"_s, u"c/.."_s})), QByteArray("three"));
    QVERIFY(!errorOf([&] { backup->fetchForViewing({u"MediaDomain"_s, u"none"_s}); }).isEmpty());
    QVERIFY(!errorOf([&] { backup->fetchForViewing({u"HomeDomain"_s, u"Library/SMS"_s}); }).isEmpty());
    QVERIFY(!errorOf([&] { backup->fetchForViewing(lockedFile); }).isEmpty());
}

void TestBackupManifest::copiesVanish()
{
    const BackupFixture fixture;
    auto backup = fixture.opened();
    const QString first = *backup->fetchDatabase(messages);
    backup->close();
    QVERIFY(!QFile::exists(first));
    const QString second = *backup->fetchDatabase(messages);
    QVERIFY(QFile::exists(second));
    QCOMPARE(int(QFileInfo(second).permissions() & (QFile::ReadGroup | QFile::ReadOther)), 0);
    backup.reset();
    QVERIFY(!QFile::exists(second));
}

void TestBackupManifest::leftoversVanish()
{
    initResources();
    const BackupFixture fixture;
    const QString cache = cacheFolderOf(backupUid(fixture.folder()));
    const QString killed = cache + u"/quillbarrow-scratch-killed"_s;
    writeFile(killed + u"/databases/sms.db"_s, "plain");
    QLockFile gone(killed + u"/.lock"_s);
    writeFile(gone.fileName(), "999999999\nquillbarrow\n" + QSysInfo::machineHostName().toUtf8() + '\n');
    const QString making = cache + u"/quillbarrow-scratch-making"_s;
    writeFile(making + u"/x"_s, "x");
    const auto other = fixture.opened();
    const QString living = *other->fetchDatabase(messages);
    const QString foreign = cacheFolderPath(u"unlisted"_s);
    writeFile(foreign + u"/Library/SMS/sms.db"_s, "plain");
    const QString listed = cacheFolderPath(u"listed"_s);
    writeFile(listed + u"/Library/SMS/sms.db"_s, "plain");
    BackupList().addBackup(u"listed"_s, fixture.folder());
    sweepLeftovers();
    QVERIFY(!QFile::exists(killed));
    QVERIFY(QFile::exists(making));
    QVERIFY(QFile::exists(living));
    QVERIFY(!QFile::exists(foreign));
    QVERIFY(QFile::exists(listed + u"/Library/SMS/sms.db"_s));
    BackupList().removeBackup(u"listed"_s);
    QDir(making).removeRecursively();
    clearCacheOf(u"listed"_s);
}

void TestBackupManifest::noRecordIsNothing()
{
    const BackupFixture fixture;
    const auto backup = fixture.opened();
    const QString copy = fixture.path(u"copy"_s);
    backup->fetchFile(FileCatalogue::none, copy);
    QVERIFY(!QFile::exists(copy));
    const auto folder = backup->catalogue().find("HomeDomain", "Library/SMS");
    const auto link = backup->catalogue().find("HomeDomain", "Library/Caches/current");
    QVERIFY(errorOf([&] { backup->fetchFile(folder, copy); }).contains(u"folder"_s));
    QVERIFY(errorOf([&] { backup->fetchFile(link, copy); }).contains(u"link"_s));
    QVERIFY(!QFile::exists(copy));
}

void TestBackupManifest::oddContent_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QString>("password");
    for (const char *password : {"", "pw"}) {
        QTest::addRow("pipe %s", password) << QByteArray("pipe") << QString::fromLatin1(password);
        QTest::addRow("folder %s", password) << QByteArray("folder") << QString::fromLatin1(password);
    }
    QTest::newRow("odd length") << QByteArray("odd length") << u"pw"_s;
    QTest::newRow("no padding") << QByteArray("noise") << u"pw"_s;
}

// Neither waits for ever nor leaves half a file behind.
void TestBackupManifest::oddContent()
{
    QFETCH(QByteArray, kind);
    QFETCH(QString, password);
    SampleOptions options;
    options.password = password;
    const BackupFixture fixture(options);
    const auto backup = fixture.opened();
    const auto index = backup->wellKnown(WellKnown::MessageDatabase);
    const QString content = backup->filePath(index);
    QByteArray bytes = contentOf(content);
    QVERIFY(QFile::remove(content));
    if (kind == "pipe")
        QCOMPARE(mkfifo(QFile::encodeName(content).constData(), 0600), 0);
    else if (kind == "folder")
        QVERIFY(QDir().mkpath(content));
    else if (kind == "odd length")
        writeFile(content, bytes.chopped(1));
    else
        writeFile(content, bytes.chopped(16)); // the padding of this one stood in its last block
    const QString copy = fixture.path(u"copy/sms.db"_s);
    const QString sentence = errorOf([&] { backup->fetchFile(index, copy); });
    QVERIFY2(sentence.contains(content) || sentence.contains(u"Library/SMS/sms.db"_s), qPrintable(sentence));
    QVERIFY(listing(fixture.path(u"copy"_s)).isEmpty());
    QCOMPARE(backup->hasContent(messages), kind != "pipe" && kind != "folder");
}

void TestBackupManifest::devicePaths_data()
{
    SampleOptions options;
    options.files = 0;
    options.extraRows = {{u"MediaDomain"_s, u"Library/SMS/Attachments/x.jpg"_s, "x"},
                         {u"HomeDomain"_s, u"Library/both"_s, "h"},
                         {u"MediaDomain"_s, u"Library/both"_s, "m"},
                         {u"HomeDomain"_s, u"Library/gone"_s, "h"},
                         {u"MediaDomain"_s, u"Library/gone"_s, "m"}};
    m_fixture = std::make_unique<BackupFixture>(options);
    m_backup = m_fixture->opened();
    QFile::remove(m_backup->filePath(m_backup->catalogue().find("HomeDomain", "Library/gone")));
    QTest::addColumn<QString>("path");
    QTest::addColumn<SourceFile>("expected");
    const SourceFile home{u"HomeDomain"_s, u"Library/both"_s};
    const SourceFile media{u"MediaDomain"_s, u"Library/SMS/Attachments/x.jpg"_s};
    QTest::newRow("home folder") << u"~/Library/SMS/Attachments/x.jpg"_s << media;
    QTest::newRow("absolute") << u"/var/mobile/Library/SMS/Attachments/x.jpg"_s << media;
    QTest::newRow("without the first slash") << u"var/mobile/Library/SMS/Attachments/x.jpg"_s << media;
    QTest::newRow("private") << u"/private/var/mobile/Library/SMS/Attachments/x.jpg"_s << media;
    QTest::newRow("in both domains") << u"~/Library/both"_s << home;
    QTest::newRow("listed in one, stored in the other")
        << u"~/Library/gone"_s << SourceFile{u"MediaDomain"_s, u"Library/gone"_s};
    QTest::newRow("not listed") << u"~/Library/none"_s << SourceFile();
    QTest::newRow("elsewhere") << u"/var/wireless/Library/both"_s << SourceFile();
    QTest::newRow("relative") << u"Library/both"_s << SourceFile();
    QTest::newRow("the home folder itself") << u"/var/mobile/"_s << SourceFile();
    QTest::newRow("empty") << QString() << SourceFile();
}

void TestBackupManifest::devicePaths()
{
    QFETCH(QString, path);
    QTEST(m_backup->fileOfDevicePath(path), "expected");
}

QTEST_GUILESS_MAIN(TestBackupManifest)
#include "tst_backup_manifest.moc"
