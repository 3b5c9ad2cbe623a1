#include "backup/cache_fixture.h"

#include "resources/resources.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const SourceFile messages{u"HomeDomain"_s, u"Library/SMS/sms.db"_s};
const SourceFile picture{u"MediaDomain"_s, u"Library/SMS/Attachments/aa/one.jpg"_s};

SampleOptions withPicture(const QString &password = {})
{
    SampleOptions options;
    options.files = 0;
    options.messages = 20;
    options.password = password;
    options.extraRows = {{picture.domain, picture.relativePath, "one"},
                         {u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.JPG"_s, "camera"}};
    return options;
}
} // namespace

class TestBackupFileCache : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void copiesOutliveTheBackup_data();
    void copiesOutliveTheBackup();
    void nothingStaysWithoutACache();
    void copiesThatDoNotCount_data();
    void copiesThatDoNotCount();
    void placesOfTwoFiles_data();
    void placesOfTwoFiles();
    void databaseWithItsLog();
    void lockedRegister();
    void twoRuns();
    void clearing();
    void copiesOfOpenBackupsComeBack();
};

void TestBackupFileCache::copiesOutliveTheBackup_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << u""_s;
    QTest::newRow("encrypted") << u"pw"_s;
}

void TestBackupFileCache::copiesOutliveTheBackup()
{
    QFETCH(QString, password);
    const CacheFixture fixture(withPicture(password));
    const SourceFile camera{u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.JPG"_s};
    const QString before = fingerprint(fixture.folder());
    for (const bool again : {false, true}) {
        const auto backup = fixture.openedWithCache();
        QCOMPARE(*backup->fetchDatabase(messages), fixture.copyOf(messages.relativePath));
        QCOMPARE(backup->fetchForViewing(picture), fixture.copyOf(picture.relativePath));
        QCOMPARE(backup->fetchForViewing(camera), fixture.copyOf(camera.relativePath));
        QCOMPARE(contentOf(fixture.copyOf(picture.relativePath)), again ? "kept" : "one");
        forge(fixture.copyOf(picture.relativePath), "kept");
    }
    QCOMPARE(fingerprint(fixture.folder()), before);
    QCOMPARE(fixture.rowsOf(picture), QStringList(fixture.dateOf(picture)));
    QCOMPARE(fixture.rowsOf(camera), QStringList());
    QVERIFY(QFile::exists(fixture.copyOf(u"manifest2.db"_s)));
    const auto ofOthers = QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup | QFile::ExeOther;
    QCOMPARE(int(QFileInfo(fixture.folderOfCopies()).permissions() & ofOthers), 0);
    QCOMPARE(int(QFileInfo(fixture.copyOf(messages.relativePath)).permissions() & ofOthers), 0);
    QVERIFY(QDir(fixture.folderOfCopies()).entryList({u"quillbarrow-*"_s}, QDir::Dirs).isEmpty());
}

void TestBackupFileCache::nothingStaysWithoutACache()
{
    const CacheFixture fixture(withPicture(u"pw"_s));
    fixture.openedWithCache()->fetchForViewing(picture);
    forge(fixture.copyOf(picture.relativePath), "kept");
    auto backup = fixture.opened();
    QCOMPARE(contentOf(backup->fetchForViewing(picture)), "one");
    backup.reset();
    removeFolderTree(fixture.folderOfCopies());
    backup = fixture.opened();
    QVERIFY(backup->fetchDatabase(messages));
    backup.reset();
    QVERIFY(!QFile::exists(fixture.folderOfCopies()));
}

void TestBackupFileCache::copiesThatDoNotCount_data()
{
    QTest::addColumn<QByteArray>("what");
    for (const char *what : {"row of another date", "no row", "copy gone", "copy changed by somebody",
                             "copy replaced by a folder", "register of noise", "register cut off",
                             "register without its table", "register with other columns"})
        QTest::newRow(what) << QByteArray(what);
}

void TestBackupFileCache::copiesThatDoNotCount()
{
    QFETCH(QByteArray, what);
    const CacheFixture fixture(withPicture());
    fixture.openedWithCache()->fetchForViewing(picture);
    const QString copy = fixture.copyOf(picture.relativePath);
    forge(copy, "old");
    const auto tamper = [&](const QString &script) {
        Sqlite3DB db;
        db.openThrow(fixture.registerFile(), SqliteOpen::ReadWrite);
        QVERIFY2(db.exec(script), qPrintable(db.lastError()));
    };
    if (what == "row of another date")
        tamper(u"update manifest set last_date=last_date-1"_s);
    else if (what == "no row")
        tamper(u"delete from manifest"_s);
    else if (what == "copy gone")
        QVERIFY(QFile::remove(copy));
    else if (what == "copy changed by somebody")
        writeFile(copy, "edited");
    else if (what == "copy replaced by a folder")
        QVERIFY(QFile::remove(copy) && QDir().mkpath(copy + u"/x"_s));
    else if (what == "register of noise")
        writeFile(fixture.registerFile(), QByteArray(9000, 'x'));
    else if (what == "register cut off")
        writeFile(fixture.registerFile(), contentOf(fixture.registerFile()).first(5000));
    else if (what == "register without its table")
        tamper(u"drop table manifest; create table other(x)"_s);
    else
        tamper(u"drop table manifest; create table manifest(name)"_s);

    const auto backup = fixture.openedWithCache();
    const QString fetched = backup->fetchForViewing(picture);
    QCOMPARE(contentOf(fetched), "one");
    if (what == "copy replaced by a folder")
        return;
    QCOMPARE(fetched, copy);
    QCOMPARE(fixture.rowsOf(picture), QStringList(fixture.dateOf(picture)));
}

void TestBackupFileCache::placesOfTwoFiles_data()
{
    QTest::addColumn<SourceFile>("one");
    QTest::addColumn<SourceFile>("other");
    const auto row = [](const char *name, const char16_t *domain, const char16_t *path,
                        const char16_t *otherDomain, const char16_t *otherPath) {
        QTest::newRow(name) << SourceFile{QString::fromUtf16(domain), QString::fromUtf16(path)}
                            << SourceFile{QString::fromUtf16(otherDomain), QString::fromUtf16(otherPath)};
    };
    row("two domains in one tree", u"HomeDomain", u"Library/x.dat", u"RootDomain", u"Library/x.dat");
    row("case of a file", u"HomeDomain", u"Library/x.dat", u"HomeDomain", u"Library/X.dat");
    row("case of a folder", u"HomeDomain", u"Library/a/x.dat", u"HomeDomain", u"Library/A/x.dat");
    row("forbidden character", u"HomeDomain", u"Library/a:b", u"HomeDomain", u"Library/a_b");
    row("names of the registers", u"HomeDomain", u"manifest.db", u"HomeDomain", u"Manifest2.db");
    row("names of private folders", u"HomeDomain", u"quillbarrow-scratch-1/x", u"HomeDomain", u"x/../x");
    row("a file where a folder is", u"HomeDomain", u"Library/odd", u"RootDomain", u"Library/odd/below");
}

// Whatever stands where, each file is itself, the second time too.
void TestBackupFileCache::placesOfTwoFiles()
{
    QFETCH(SourceFile, one);
    QFETCH(SourceFile, other);
    SampleOptions options;
    options.files = 0;
    options.messages = 20;
    options.extraRows = {{one.domain, one.relativePath, "one"}, {other.domain, other.relativePath, "other"}};
    const CacheFixture fixture(options);
    for (int run = 0; run < 2; ++run) {
        const auto backup = fixture.openedWithCache();
        QCOMPARE(contentOf(backup->fetchForViewing(one)), "one");
        QCOMPARE(contentOf(backup->fetchForViewing(other)), "other");
        QCOMPARE(contentOf(backup->fetchForViewing(one)), "one");
    }
}

void TestBackupFileCache::databaseWithItsLog()
{
    SampleOptions options = withPicture(u"pw"_s);
    options.walCompanion = true;
    const CacheFixture fixture(options);
    for (int run = 0; run < 2; ++run) {
        const auto backup = fixture.openedWithCache();
        const QString copy = *backup->fetchDatabase(messages);
        QCOMPARE(copy, fixture.copyOf(messages.relativePath));
        Sqlite3DB db;
        db.openThrow(copy);
        Sqlite3Cursor rows = db.queryThrow(u"select count(*) from message"_s);
        QVERIFY(rows.moveNext());
        QCOMPARE(rows.getInt(0), fixture.summary.counts.messageRows);
        QCOMPARE(listing(QFileInfo(copy).path()), QStringList(u"sms.db"_s));
        QVERIFY2(!QFileInfo(backup->fetchForViewing(messages)).filePath().startsWith(copy),
                 "a person who looks at the file sees it as it is stored");
    }
    // The log of another backup of the same database.
    Sqlite3DB db;
    db.openThrow(fixture.registerFile(), SqliteOpen::ReadWrite);
    const QString logName = QString::fromLatin1(fileId("HomeDomain", "Library/SMS/sms.db-wal"));
    QVERIFY(db.exec(u"update manifest set last_date=7 where file_name='%1'"_s.arg(logName)));
    db.close();
    forge(fixture.copyOf(messages.relativePath), "old");
    QVERIFY(contentOf(*fixture.openedWithCache()->fetchDatabase(messages)) != "old");
}

void TestBackupFileCache::lockedRegister()
{
    const CacheFixture fixture(withPicture());
    fixture.openedWithCache()->fetchForViewing(picture);
    forge(fixture.copyOf(picture.relativePath), "kept");
    Sqlite3DB other;
    other.openThrow(fixture.registerFile(), SqliteOpen::ReadWrite);
    QVERIFY(other.exec(u"begin exclusive"_s));
    QCOMPARE(contentOf(fixture.openedWithCache()->fetchForViewing(picture)), "one");
    other.close();
    QVERIFY2(!fixture.rowsOf(picture).isEmpty(), "a register that is in use is not taken for a damaged one");
}

void TestBackupFileCache::twoRuns()
{
    const CacheFixture fixture(withPicture(u"pw"_s));
    const auto first = fixture.openedWithCache();
    const auto second = fixture.openedWithCache();
    const QString copy = first->fetchForViewing(picture);
    QFile reading(copy);
    QVERIFY(reading.open(QIODevice::ReadOnly));
    QCOMPARE(second->fetchForViewing(picture), copy);
    QVERIFY(second->fetchDatabase(messages));
    clearCacheOf(backupUid(fixture.folder()));
    QVERIFY(!QFile::exists(copy));
    QCOMPARE(reading.readAll(), "one");
    QCOMPARE(contentOf(first->fetchForViewing(picture)), "one");
    QVERIFY(QFile::exists(*first->fetchDatabase(messages)));
    QCOMPARE(fixture.rowsOf(picture).size(), 1);
}

void TestBackupFileCache::clearing()
{
    const CacheFixture one(withPicture());
    const CacheFixture other(withPicture(u"pw"_s));
    one.openedWithCache()->fetchForViewing(picture);
    const auto open = other.openedWithCache();
    QVERIFY(open->fetchDatabase(messages));
    const QString uid = backupUid(one.folder());
    qint64 bytes = 0;
    for (const char16_t *name : {u"manifest.db", u"Library/SMS/Attachments/aa/one.jpg"})
        bytes += QFileInfo(one.copyOf(QString::fromUtf16(name))).size();
    QCOMPARE(cacheSizeOf(uid), bytes);
    QCOMPARE(cacheSizeOf(u"nobody"_s), 0);
    QCOMPARE(cacheSize(), bytes + cacheSizeOf(backupUid(other.folder())));
    clearCacheOf(uid);
    QVERIFY(!QFile::exists(one.folderOfCopies()));
    QVERIFY(QFile::exists(other.copyOf(messages.relativePath)));
    clearCaches();
    QCOMPARE(cacheSize(), 0);
    QVERIFY2(QFile::exists(*open->fetchDatabase(messages)), "an open backup makes its copies again");
}

// Private copies of what the cache cannot hold are none of its business.
void TestBackupFileCache::copiesOfOpenBackupsComeBack()
{
    SampleOptions options = withPicture();
    options.extraRows.push_back({u"HomeDomain"_s, u"Library/a:b"_s, "private"});
    const CacheFixture fixture(options);
    const auto backup = fixture.openedWithCache();
    const QString private_ = backup->fetchForViewing({u"HomeDomain"_s, u"Library/a:b"_s});
    const QString kept = backup->fetchForViewing(picture);
    clearCaches();
    QVERIFY(QFile::exists(private_));
    QVERIFY(!QFile::exists(kept));
    QCOMPARE(backup->fetchForViewing(picture), kept);
    QCOMPARE(fixture.rowsOf(picture), QStringList(fixture.dateOf(picture)));
    backup->retireCache();
    clearCaches();
    QCOMPARE(contentOf(backup->fetchForViewing(picture)), "one");
    QVERIFY2(!QFile::exists(kept), "somebody who is late leaves nothing in a cache that is given up");
}

QTEST_GUILESS_MAIN(TestBackupFileCache)
#include "tst_backup_file_cache.moc"
