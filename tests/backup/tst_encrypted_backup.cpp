#include "backup/backup_fixture.h"

#include "base/texts.h"
#include "resources/resources.h"
#include "backup/cache_folder.h"
#include "backup/cf_type.h"
#include "backup/leftovers.h"
#include "backup/sqlite_header.h"
#include "sample/catalogue_record.h"
#include "sample/keyed_archive.h"
#include "sqlite/sqlite3_db.h"
#include "support/dying_process.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Passwords, keybags, and where the plain catalogue lies while a backup is open.
class TestEncryptedBackup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void variants_data();
    void variants();
    void indexNeedsThePassword();
    void threeFailures_data();
    void threeFailures();
    void encryptionNotDeclared();
    void encryptionDeclaredInVain();
    void descriptorsThatDoNotDecrypt();
    void plainRecordInASaltedCatalogue();
    void catalogueIsThereUntilItIsRead();
    void somebodyElsesStays_data();
    void somebodyElsesStays();
    void killedRunLeavesItsCopy();
    void placeThatCannotBeWritten();
    void twoAtOnce();
    void firstItem();
    void recordsAndKeys_data();
    void recordsAndKeys();
    void damagedManifest();
    void catalogueCutOff();
};

namespace {
SampleOptions encrypted()
{
    SampleOptions options;
    options.password = u"geheim"_s;
    options.messages = 1;
    options.files = 0;
    return options;
}

QString decryptedIn(const BackupFixture &fixture)
{
    return fixture.folder() + u"/Manifest-decrypted.db"_s;
}

void changeManifest(const BackupFixture &fixture, const QString &key, const CFType &value)
{
    const QString path = fixture.folder() + u"/Manifest.plist"_s;
    CFType manifest = CFType::parse(contentOf(path));
    manifest.set(key, value);
    writeFile(path, manifest.serialise(CFType::Format::Binary));
}

bool isPrivate(const QString &path)
{
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    return (QFileInfo(path).permissions() & others) == QFile::Permissions();
}

/// Opens, lists and reads; throws what fails.
void readWhole(const BackupFixture &fixture, BackupManifest &backup)
{
    NoProgress progress;
    backup.buildIndex(progress);
    const QString copy = fixture.path(u"copy"_s);
    const SampleFile *file = fixture.summary.file(u"HomeDomain"_s, u"Library/SMS/sms.db"_s);
    backup.fetchTo({file->domain, file->relativePath}, copy);
    if (sha1Of(copy) != file->sha1)
        throw Error(u"the message database differs"_s);
}
} // namespace

void TestEncryptedBackup::initTestCase()
{
    initResources();
    installTexts();
}

void TestEncryptedBackup::variants_data()
{
    QTest::addColumn<SampleOptions>("options");
    SampleOptions options = encrypted();
    QTest::newRow("double protection") << options;
    options.protection = SampleOptions::Protection::Single;
    QTest::newRow("single protection, plain catalogue") << options;
    options.saltedDescriptors = true;
    QTest::newRow("salted descriptors") << options;
    options = encrypted();
    options.catalogueWithoutPadding = true;
    QTest::newRow("catalogue without padding") << options;
    options = encrypted();
    options.layout = SampleOptions::Layout::Mbdb;
    options.ios = 6;
    QTest::newRow("older layout") << options;
}

void TestEncryptedBackup::variants()
{
    QFETCH(SampleOptions, options);
    const BackupFixture fixture(options);
    const QString before = fingerprint(fixture.folder());
    {
        const auto backup = fixture.opened();
        QCOMPARE(int(backup->catalogue().size()), fixture.summary.counts.catalogueRows);
        QVERIFY(backup->report().isEmpty());
        const auto index = backup->wellKnown(WellKnown::MessageDatabase);
        QCOMPARE(qint64(backup->catalogue().lastModified(index)),
                 fixture.summary.file(u"HomeDomain"_s, u"Library/SMS/sms.db"_s)->modified);
        QCOMPARE(errorOf([&] { readWhole(fixture, *backup); }), QString());
    }
    QCOMPARE(fingerprint(fixture.folder()), before);
}

void TestEncryptedBackup::indexNeedsThePassword()
{
    const BackupFixture fixture(encrypted());
    BackupManifest backup(fixture.folder());
    backup.loadInfo();
    NoProgress progress;
    QVERIFY(errorOf([&] { backup.buildIndex(progress); }).contains(fixture.folder()));
    QVERIFY(!backup.openEncrypted(u"Geheim"_s));
    QVERIFY(!backup.openEncrypted(QString()));
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
    QVERIFY(backup.openEncrypted(u"geheim"_s));
    backup.buildIndex(progress);
    QVERIFY(backup.hasIndex());
}

void TestEncryptedBackup::threeFailures_data()
{
    QTest::addColumn<QByteArray>("keybag");
    QTest::addColumn<QByteArray>("manifestKey");
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QString>("named");
    const QByteArray same = "same";
    const QString plist = u"Manifest.plist"_s;
    const QString db = u"Manifest.db"_s;
    QTest::newRow("no keybag") << QByteArray() << same << same << plist;
    QTest::newRow("keybag of noise") << QByteArray(100, '\x7F') << same << same << plist;
    QTest::newRow("no catalogue key") << same << QByteArray() << same << plist;
    QTest::newRow("short catalogue key") << same << QByteArray("\4\0\0\0", 4) << same << plist;
    QTest::newRow("key that does not unwrap") << same << QByteArray(44, 'k') << same << plist;
    QTest::newRow("catalogue of odd length") << same << same << QByteArray(1001, 'c') << db;
    QTest::newRow("catalogue of noise") << same << same << QByteArray(1024, 'c') << db;
    QTest::newRow("empty catalogue") << same << same << QByteArray() << db;
}

void TestEncryptedBackup::threeFailures()
{
    QFETCH(QByteArray, keybag);
    QFETCH(QByteArray, manifestKey);
    QFETCH(QByteArray, catalogue);
    QFETCH(QString, named);
    const BackupFixture fixture(encrypted());
    if (keybag != "same")
        changeManifest(fixture, u"BackupKeyBag"_s, CFType::fromByteArray(keybag));
    if (manifestKey != "same")
        changeManifest(fixture, u"ManifestKey"_s, CFType::fromByteArray(manifestKey));
    if (catalogue != "same")
        writeFile(fixture.folder() + u"/Manifest.db"_s, catalogue);
    BackupManifest backup(fixture.folder());
    backup.loadInfo();
    const QString sentence = errorOf([&] { backup.openEncrypted(u"geheim"_s); });
    QVERIFY2(sentence.contains(fixture.folder() + u'/' + named), qPrintable(sentence));
    QVERIFY(!backup.isUnlocked());
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
}

void TestEncryptedBackup::encryptionNotDeclared()
{
    const BackupFixture fixture(encrypted());
    changeManifest(fixture, u"IsEncrypted"_s, CFType::fromBool(false));
    BackupManifest backup(fixture.folder());
    backup.loadInfo();
    QVERIFY(!backup.isUnlocked());
    QVERIFY(backup.openEncrypted(u"geheim"_s));
    QCOMPARE(errorOf([&] { readWhole(fixture, backup); }), QString());
}

// A plain backup that says otherwise, but for its keybag, is read with any password that its keybag takes.
void TestEncryptedBackup::encryptionDeclaredInVain()
{
    SampleOptions options = encrypted();
    const BackupFixture other(options);
    options.password.clear();
    const BackupFixture fixture(options);
    BackupManifest keys(other.folder());
    keys.loadInfo();
    changeManifest(fixture, u"IsEncrypted"_s, CFType::fromBool(true));
    changeManifest(fixture, u"BackupKeyBag"_s, CFType::fromByteArray(keys.info().keybag));
    BackupManifest backup(fixture.folder());
    backup.loadInfo();
    QVERIFY(backup.openEncrypted(u"geheim"_s));
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
    QCOMPARE(errorOf([&] { readWhole(fixture, backup); }), QString());
}

void TestEncryptedBackup::descriptorsThatDoNotDecrypt()
{
    SampleOptions options = encrypted();
    options.protection = SampleOptions::Protection::Single;
    options.saltedDescriptors = true;
    const BackupFixture fixture(options);
    {
        Sqlite3DB db;
        db.openThrow(fixture.folder() + u"/Manifest.db"_s, SqliteOpen::ReadWrite);
        QVERIFY(db.exec(
            u"insert into Files(fileID,domain,relativePath,flags,file) "
            "values('a','HomeDomain','fifteen',1,zeroblob(15)),('b','HomeDomain','noise',1,zeroblob(32)),"
            "('c','HomeDomain','nothing',1,zeroblob(0))"_s));
    }
    const auto backup = fixture.opened();
    QCOMPARE(backup->catalogue().find("HomeDomain", "fifteen"), FileCatalogue::none);
    QVERIFY(backup->catalogue().find("HomeDomain", "noise") != FileCatalogue::none);
    QCOMPARE(backup->report().count("IDS_ISSUE_CATALOGUE_ROWS_DAMAGED"), 1);
    QCOMPARE(backup->report().count("IDS_ISSUE_FILE_RECORDS_DAMAGED"), 2);
}

void TestEncryptedBackup::plainRecordInASaltedCatalogue()
{
    SampleOptions options = encrypted();
    options.protection = SampleOptions::Protection::Single;
    const BackupFixture plain(options);
    options.saltedDescriptors = true;
    const BackupFixture salted(options);
    const SampleFile *file = salted.summary.file(u"HomeDomain"_s, u"Library/SMS/sms.db"_s);
    {
        Sqlite3DB catalogue;
        catalogue.openThrow(salted.folder() + u"/Manifest.db"_s, SqliteOpen::ReadWrite);
        catalogue.executeThrow(
            Sqlite3Sql(u"attach ? as plain"_s).addTextParam(plain.folder() + u"/Manifest.db"_s));
        catalogue.executeThrow(
            Sqlite3Sql(u"update Files set file=(select file from plain.Files where fileID=?1)"
                       " where fileID=?1"_s)
                .addTextParam(file->fileId));
        QCOMPARE(catalogue.changes(), 1);
    }
    const auto backup = salted.opened();
    QVERIFY(backup->report().isEmpty());
    QCOMPARE(qint64(backup->catalogue().lastModified(backup->wellKnown(WellKnown::MessageDatabase))),
             file->modified);
}

void TestEncryptedBackup::catalogueIsThereUntilItIsRead()
{
    const BackupFixture fixture(encrypted());
    auto backup = fixture.unlocked();
    QVERIFY(hasSqliteHeader(decryptedIn(fixture)));
    QVERIFY(isPrivate(decryptedIn(fixture)));
    backup->close();
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
    QVERIFY(backup->openEncrypted(u"geheim"_s));
    QVERIFY(QFile::exists(decryptedIn(fixture)));
    NoProgress progress;
    backup->buildIndex(progress);
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
    QCOMPARE(errorOf([&] { readWhole(fixture, *backup); }), QString());
    backup = fixture.unlocked();
    backup.reset();
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
}

void TestEncryptedBackup::somebodyElsesStays_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::newRow("file") << false;
    QTest::newRow("link that leads elsewhere") << true;
}

void TestEncryptedBackup::somebodyElsesStays()
{
    QFETCH(bool, isLink);
    const BackupFixture fixture(encrypted());
    const QString precious = fixture.path(u"precious"_s);
    writeFile(precious, "precious");
    if (isLink)
        QVERIFY(QFile::link(precious, decryptedIn(fixture)));
    else
        writeFile(decryptedIn(fixture), "precious");
    const QString before = fingerprint(fixture.folder());
    {
        const auto backup = fixture.unlocked();
        QCOMPARE(contentOf(decryptedIn(fixture)), QByteArray("precious"));
        QCOMPARE(errorOf([&] { readWhole(fixture, *backup); }), QString());
    }
    sweepLeftovers();
    QCOMPARE(fingerprint(fixture.folder()), before);
    QCOMPARE(contentOf(precious), QByteArray("precious"));
}

void TestEncryptedBackup::killedRunLeavesItsCopy()
{
    const BackupFixture fixture(encrypted());
    const QString before = fingerprint(fixture.folder());
    const auto leaveOne = [&fixture] {
        return diesDoing([&fixture] {
            const auto backup = fixture.unlocked();
            raise(SIGKILL);
        });
    };
    QVERIFY(leaveOne());
    QVERIFY(hasSqliteHeader(decryptedIn(fixture)));
    sweepLeftovers();
    QCOMPARE(fingerprint(fixture.folder()), before);

    QVERIFY(leaveOne());
    {
        const auto backup = fixture.unlocked();
        sweepLeftovers();
        QVERIFY2(hasSqliteHeader(decryptedIn(fixture)), "it belongs to a run that lives");
    }
    QCOMPARE(fingerprint(fixture.folder()), before);

    QVERIFY(leaveOne());
    QVERIFY(QFile::rename(decryptedIn(fixture), fixture.path(u"moved"_s)));
    writeFile(decryptedIn(fixture), "somebody else's");
    sweepLeftovers();
    QCOMPARE(contentOf(decryptedIn(fixture)), QByteArray("somebody else's"));
}

// Permissions do not stop every user: a folder of that name does.
void TestEncryptedBackup::placeThatCannotBeWritten()
{
    const BackupFixture fixture(encrypted());
    writeFile(decryptedIn(fixture) + u"/in the way"_s, "x");
    const QString before = fingerprint(fixture.folder());
    const QString cached = cacheFolderOf(backupUid(fixture.folder())) + u"/Manifest-decrypted.db"_s;
    auto backup = fixture.unlocked();
    QVERIFY(hasSqliteHeader(cached) && isPrivate(cached));
    QCOMPARE(errorOf([&] { readWhole(fixture, *backup); }), QString());
    backup.reset();
    QVERIFY(!QFile::exists(cached));
    QCOMPARE(fingerprint(fixture.folder()), before);
}

void TestEncryptedBackup::twoAtOnce()
{
    const BackupFixture fixture(encrypted());
    auto first = fixture.unlocked();
    auto second = fixture.unlocked();
    QCOMPARE(errorOf([&] { readWhole(fixture, *second); }), QString());
    second.reset();
    QVERIFY(QFile::exists(decryptedIn(fixture)));
    second = fixture.unlocked();
    QCOMPARE(errorOf([&] { readWhole(fixture, *first); }), QString());
    first.reset();
    QVERIFY(!QFile::exists(decryptedIn(fixture)));
    QCOMPARE(errorOf([&] { readWhole(fixture, *second); }), QString());
    first = fixture.unlocked();
    QVERIFY(QFile::exists(decryptedIn(fixture)));
}

void TestEncryptedBackup::firstItem()
{
    const BackupFixture fixture(encrypted());
    const auto backup = fixture.opened();
    const auto first = backup->firstEncryptedItem();
    for (FileCatalogue::Index i = 0; i <= first; ++i)
        QCOMPARE(!backup->catalogue().encryptionKey(i).isEmpty() && !backup->isLocked(i), i == first);
    SampleOptions plain = encrypted();
    plain.password.clear();
    const BackupFixture other(plain);
    const auto unencrypted = other.opened();
    QCOMPARE(errorOf([&] { unencrypted->firstEncryptedItem(); }),
             u"BackupManifest::firstEncryptedItem, no valid keys"_s);
}

void TestEncryptedBackup::recordsAndKeys_data()
{
    using Change = std::function<void(sample::CatalogueRecord &)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("locked");
    const auto row = [](const char *name, bool locked, const Change &change) {
        QTest::newRow(name) << change << locked;
    };
    row("as it is", false, [](auto &) {});
    row("no class", false, [](auto &record) { record.protectionClass = 0; });
    row("another class than that of the key", false, [](auto &record) { record.protectionClass = 11; });
    row("no key", true, [](auto &record) { record.encryptionKey.clear(); });
    row("key of another file", true, [](auto &record) { record.encryptionKey.replace(4, 40, QByteArray(40, 'k')); });
    row("key cut off", true, [](auto &record) { record.encryptionKey.chop(1); });
    row("no key, and stands for a link", false, [](auto &record) {
        record.encryptionKey.clear();
        record.mode = modeLink;
    });
}

// Whatever no key opens is never taken for content.
void TestEncryptedBackup::recordsAndKeys()
{
    QFETCH(std::function<void(sample::CatalogueRecord &)>, change);
    QFETCH(bool, locked);
    SampleOptions options = encrypted();
    options.protection = SampleOptions::Protection::Single;
    const BackupFixture fixture(options);
    const SourceFile database{u"HomeDomain"_s, u"Library/SMS/sms.db"_s};
    const FileRecord known = [&] {
        const auto backup = fixture.opened();
        return backup->catalogue().record(backup->catalogue().find("HomeDomain", "Library/SMS/sms.db"));
    }();
    sample::CatalogueRecord record;
    record.relativePath = database.relativePath;
    record.encryptionKey = known.encryptionKey;
    record.protectionClass = known.protectionClass;
    record.mode = known.mode;
    change(record);
    {
        Sqlite3DB db;
        db.openThrow(fixture.folder() + u"/Manifest.db"_s, SqliteOpen::ReadWrite);
        Sqlite3Sql sql(u"update Files set file=? where relativePath='Library/SMS/sms.db'"_s);
        sql.addBlobParam(archivedFileRecord(record, sample::RecordLayout::RootFirst));
        db.executeThrow(sql);
    }
    const auto backup = fixture.opened();
    QCOMPARE(backup->isLocked(database), locked);
    try {
        const auto copy = backup->fetchDatabase(database);
        QVERIFY(!locked && hasSqliteHeader(*copy));
    } catch (const Error &error) {
        QCOMPARE(error.kind(), locked ? ErrorKind::Locked : ErrorKind::Other);
        QCOMPARE(error.where(), u"HomeDomain Library/SMS/sms.db"_s);
    }
}

// Nothing but its Manifest.plist tells whether a backup is encrypted: what has a key may be ciphertext.
void TestEncryptedBackup::damagedManifest()
{
    SampleOptions options = encrypted();
    options.protection = SampleOptions::Protection::Single;
    const BackupFixture fixture(options);
    writeFile(fixture.folder() + u"/Manifest.plist"_s, "damaged");
    const auto backup = fixture.opened();
    QCOMPARE(backup->report().count("IDS_ISSUE_DESCRIPTION_DAMAGED"), 1);
    QVERIFY(backup->isLocked({u"HomeDomain"_s, u"Library/SMS/sms.db"_s}));
    const BackupFixture other(encrypted());
    writeFile(other.folder() + u"/Manifest.plist"_s, "damaged");
    QVERIFY(errorOf([&] { other.opened(); }).contains(u"Manifest.plist"_s));
}

void TestEncryptedBackup::catalogueCutOff()
{
    SampleOptions options = encrypted();
    options.files = 500;
    const BackupFixture fixture(options);
    const QString path = fixture.folder() + u"/Manifest.db"_s;
    const QByteArray whole = contentOf(path);
    for (const int percent : {50, 70, 90}) {
        QVERIFY(QFile::resize(path, whole.size() * percent / 100 + 5));
        const auto backup = fixture.opened();
        QVERIFY(int(backup->catalogue().size()) <= fixture.summary.counts.catalogueRows);
        const QStringList problems = problemsOf(backup->report());
        QVERIFY(!problems.isEmpty());
        QCOMPARE(backup->report().count("IDS_ISSUE_CATALOGUE_DAMAGED"), 1);
        QVERIFY2(problems.first().startsWith(u"1 list of files, Manifest.db"_s) &&
                     !problems.first().contains(u"decrypted"_s) && !problems.first().contains(fixture.folder()),
                 qPrintable(problems.first()));
    }
}

QTEST_GUILESS_MAIN(TestEncryptedBackup)
#include "tst_encrypted_backup.moc"
