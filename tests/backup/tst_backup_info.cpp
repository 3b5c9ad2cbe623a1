#include "backup/backup_info.h"

#include "backup/cf_type.h"
#include "base/error.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

class TestBackupInfo : public QObject
{
    Q_OBJECT

private slots:
    void kinds_data();
    void kinds();
    void readsFields();
    void missingKeysAreEmpty();
    void displayNames_data();
    void displayNames();
    void statusFileTimeCounts();
    void encryptedCatalogueTellsItself_data();
    void encryptedCatalogueTellsItself();
    void badManifests_data();
    void badManifests();
    void listsInOrder();
    void uidOfPath();
};

namespace {
void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

CFType manifestOf(const QString &deviceId, const QString &deviceName)
{
    CFType lockdown = CFType::newDictionary();
    lockdown.set(QStringLiteral("UniqueDeviceID"), CFType::fromString(deviceId));
    lockdown.set(QStringLiteral("DeviceName"), CFType::fromString(deviceName));
    lockdown.set(QStringLiteral("ProductType"), CFType::fromString(QStringLiteral("iPhone8,1")));
    lockdown.set(QStringLiteral("ProductVersion"), CFType::fromString(QStringLiteral("12.4")));
    lockdown.set(QStringLiteral("SerialNumber"), CFType::fromString(QStringLiteral("F2LX")));
    CFType manifest = CFType::newDictionary();
    manifest.set(QStringLiteral("Lockdown"), lockdown);
    manifest.set(QStringLiteral("Date"),
                 CFType::fromDateTime(QDateTime::fromSecsSinceEpoch(1400000000, Qt::UTC)));
    return manifest;
}

/// A folder that counts as a backup.
void writeBackup(const QString &folder, const CFType &manifest, const char *catalogue = "Manifest.db")
{
    writeFile(folder + QStringLiteral("/Manifest.plist"), manifest.serialise(CFType::Format::Binary));
    writeFile(folder + QLatin1Char('/') + QLatin1String(catalogue), "SQLite format 3");
}
} // namespace

void TestBackupInfo::kinds_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("isBackup");
    QTest::addColumn<bool>("isModern");
    const auto row = [](const char *name, const QStringList &files, bool isBackup, bool isModern) {
        QTest::newRow(name) << files << isBackup << isModern;
    };
    const QString plist = QStringLiteral("Manifest.plist");
    const QString db = QStringLiteral("Manifest.db");
    const QString mbdb = QStringLiteral("Manifest.mbdb");
    row("modern", {plist, db}, true, true);
    row("older", {plist, mbdb}, true, false);
    row("both catalogues", {plist, db, mbdb}, true, false);
    row("no catalogue", {plist}, false, false);
    row("no property list", {db}, false, true);
    row("folders of these names", {plist + QStringLiteral("/x"), db + QStringLiteral("/x")}, false, false);
}

void TestBackupInfo::kinds()
{
    QFETCH(QStringList, files);
    QTemporaryDir folder;
    for (const QString &file : files)
        writeFile(folder.filePath(file), "x");
    QTEST(isBackupFolder(folder.path()), "isBackup");
    QTEST(isModernLayout(folder.path()), "isModern");
}

void TestBackupInfo::readsFields()
{
    QTemporaryDir folder;
    CFType manifest = manifestOf(QStringLiteral("00ab"), QStringLiteral("Zoë's phone"));
    manifest.set(QStringLiteral("IsEncrypted"), CFType::fromBool(true));
    manifest.set(QStringLiteral("BackupKeyBag"), CFType::fromByteArray("bag"));
    manifest.set(QStringLiteral("ManifestKey"), CFType::fromByteArray("key"));
    writeBackup(folder.path(), manifest);
    const BackupInfo info = readBackupInfo(folder.path() + QLatin1Char('/'));
    QCOMPARE(info.deviceId, QStringLiteral("00ab"));
    QCOMPARE(info.deviceName, QStringLiteral("Zoë's phone"));
    QCOMPARE(info.productType, QStringLiteral("iPhone8,1"));
    QCOMPARE(info.productVersion, QStringLiteral("12.4"));
    QCOMPARE(info.serialNumber, QStringLiteral("F2LX"));
    QCOMPARE(info.backupDate, QDateTime::fromSecsSinceEpoch(1400000000, Qt::UTC));
    QCOMPARE(info.encrypted, true);
    QCOMPARE(info.keybag, QByteArray("bag"));
    QCOMPARE(info.manifestKey, QByteArray("key"));
    QCOMPARE(info.folder, folder.path());
    QCOMPARE(info.layout, BackupLayout::Modern);
}

void TestBackupInfo::missingKeysAreEmpty()
{
    QTemporaryDir folder;
    CFType manifest = CFType::newDictionary();
    manifest.set(QStringLiteral("Lockdown"), CFType::fromInt(1));
    manifest.set(QStringLiteral("Date"), CFType::fromString(QStringLiteral("yesterday")));
    writeBackup(folder.path(), manifest, "Manifest.mbdb");
    const BackupInfo info = readBackupInfo(folder.path());
    QVERIFY(info.deviceId.isEmpty() && info.serialNumber.isEmpty() && info.keybag.isEmpty());
    QVERIFY(!info.backupDate.isValid());
    QVERIFY(!info.encrypted);
    QCOMPARE(info.displayName, QLatin1Char('-') + QDir(folder.path()).dirName());
    QCOMPARE(info.layout, BackupLayout::Mbdb);
}

void TestBackupInfo::displayNames_data()
{
    QTest::addColumn<QString>("folderName");
    QTest::addColumn<QString>("expected");
    QTest::newRow("id alone") << "00abcd"
                              << "Anna";
    QTest::newRow("id in other letters and a time") << "00ABCD-20240101-120000"
                                                    << "Anna-20240101-120000";
    QTest::newRow("another name") << "old phone"
                                  << "Anna-old phone";
}

void TestBackupInfo::displayNames()
{
    QFETCH(QString, folderName);
    QTemporaryDir parent;
    writeBackup(parent.filePath(folderName), manifestOf(QStringLiteral("00abcd"), QStringLiteral("Anna")));
    QTEST(readBackupInfo(parent.filePath(folderName)).displayName, "expected");
}

void TestBackupInfo::statusFileTimeCounts()
{
    QTemporaryDir folder;
    writeBackup(folder.path(), manifestOf(QStringLiteral("i"), QStringLiteral("n")));
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1500000000, Qt::UTC);
    QFile status(folder.filePath(QStringLiteral("Status.plist")));
    QVERIFY(status.open(QIODevice::WriteOnly) && status.setFileTime(time, QFileDevice::FileModificationTime));
    status.close();
    QCOMPARE(readBackupInfo(folder.path()).backupDate, time);
}

void TestBackupInfo::encryptedCatalogueTellsItself_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QByteArray>("manifestKey");
    QTest::addColumn<bool>("expected");
    const QByteArray plain("SQLite format 3\0", 16);
    QTest::newRow("plain") << plain << QByteArray("key") << false;
    QTest::newRow("no database, and a key") << QByteArray(64, 'x') << QByteArray("key") << true;
    QTest::newRow("no database and no key") << QByteArray(64, 'x') << QByteArray() << false;
    QTest::newRow("empty") << QByteArray() << QByteArray("key") << false;
}

void TestBackupInfo::encryptedCatalogueTellsItself()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(QByteArray, manifestKey);
    QTemporaryDir folder;
    CFType manifest = manifestOf(QStringLiteral("i"), QStringLiteral("n"));
    manifest.set(QStringLiteral("IsEncrypted"), CFType::fromBool(false));
    manifest.set(QStringLiteral("BackupKeyBag"), CFType::fromByteArray("bag"));
    manifest.set(QStringLiteral("ManifestKey"), CFType::fromByteArray(manifestKey));
    writeBackup(folder.path(), manifest);
    writeFile(folder.filePath(QStringLiteral("Manifest.db")), catalogue);
    QTEST(readBackupInfo(folder.path()).encrypted, "expected");
}

void TestBackupInfo::badManifests_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no property list") << QByteArray("hello");
    QTest::newRow("no dictionary") << CFType::fromInt(5).serialise(CFType::Format::Binary);
    QTest::newRow("cut off")
        << manifestOf(QStringLiteral("i"), QStringLiteral("n")).serialise(CFType::Format::Binary).chopped(9);
}

void TestBackupInfo::badManifests()
{
    QFETCH(QByteArray, bytes);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Manifest.plist"));
    writeFile(path, manifestOf(QStringLiteral("i"), QStringLiteral("n")).serialise(CFType::Format::Binary));
    QVERIFY(readBackupInfo(folder.path()).report.isEmpty());
    writeFile(folder.filePath(QStringLiteral("Manifest.db")), QByteArray("SQLite format 3\0", 16));
    const char *const names[] = {"Manifest.plist", "Info.plist", "Status.plist"};
    for (const char *name : names) {
        writeFile(folder.filePath(QLatin1String(name)), bytes);
        const BackupInfo info = readBackupInfo(folder.path());
        QCOMPARE(info.deviceId, QString());
        QVERIFY(info.report.issues().contains(
            Issue{.what = "IDS_ISSUE_DESCRIPTION_DAMAGED", .where = QLatin1String(name)}));
    }
    writeFile(folder.filePath(QStringLiteral("Manifest.db")), "ciphertext");
    QVERIFY_EXCEPTION_THROWN(readBackupInfo(folder.path()), Error);
    QFile::remove(path);
    try {
        readBackupInfo(folder.path());
        QFAIL("no error");
    } catch (const Error &error) {
        QCOMPARE(error.sentence(), QStringLiteral("Cannot find ") + path);
    }
}

void TestBackupInfo::listsInOrder()
{
    QTemporaryDir parent;
    const auto add = [&](const QString &place, qint64 unixSeconds) {
        const QString folder = parent.filePath(place);
        writeBackup(folder, manifestOf(QStringLiteral("i"), QStringLiteral("n")));
        const timespec times[2] = {{unixSeconds, 0}, {unixSeconds, 0}};
        utimensat(AT_FDCWD, QFile::encodeName(folder).constData(), times, 0);
    };
    add(QStringLiteral("one/newer"), 1600000000);
    add(QStringLiteral("one/older"), 1500000000);
    add(QStringLiteral("two/oldest"), 1400000000);
    writeFile(parent.filePath(QStringLiteral("one/broken/Manifest.plist")), "x");
    writeFile(parent.filePath(QStringLiteral("one/broken/Manifest.db")), "x");
    writeFile(parent.filePath(QStringLiteral("one/other/file")), "x");
    QStringList names;
    Report report;
    const QList<BackupInfo> backups =
        listBackups({parent.filePath(QStringLiteral("one")), parent.filePath(QStringLiteral("missing")),
                     parent.filePath(QStringLiteral("two"))},
                    report);
    for (const BackupInfo &info : backups)
        names.append(QDir(parent.path()).relativeFilePath(info.folder));
    QCOMPARE(names, QStringList({QStringLiteral("one/older"), QStringLiteral("one/newer"),
                                 QStringLiteral("two/oldest")}));
    QCOMPARE(report.issues().size(), 1);
    QCOMPARE(report.issues().first().where, parent.filePath(QStringLiteral("one/broken")));
    QCOMPARE(report.issues().first().kind, IssueKind::Damaged);
}

void TestBackupInfo::uidOfPath()
{
    // printf /tmp/backup | md5sum
    QCOMPARE(backupUid(QStringLiteral("/tmp/backup")), QStringLiteral("2994dba70c00bd8befeef2a0c0e16040"));
    QCOMPARE(backupUid(QStringLiteral("/tmp/other/../backup/")), backupUid(QStringLiteral("/tmp/backup")));
    QVERIFY(backupUid(QStringLiteral("/tmp/Backup")) != backupUid(QStringLiteral("/tmp/backup")));
}

QTEST_APPLESS_MAIN(TestBackupInfo)
#include "tst_backup_info.moc"
