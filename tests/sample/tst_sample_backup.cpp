#include "outside_tools.h"

#include "base/error.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using Layout = SampleOptions::Layout;

class TestSampleBackup : public QObject
{
    Q_OBJECT

private slots:
    void sameOptionsSameBytes_data();
    void sameOptionsSameBytes();
    void propertyLists();
    void catalogueRows();
    void extraRows();
    void benchInputs();
    void refusals();
};

namespace {

/// Relative path, time of last change and content of every file below a folder.
QMap<QString, QPair<qint64, QByteArray>> everything(const QString &folder)
{
    QMap<QString, QPair<qint64, QByteArray>> result;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        result[QDir(folder).relativeFilePath(path)] = {files.fileInfo().lastModified().toSecsSinceEpoch(),
                                                       readAll(path)};
    }
    return result;
}

} // namespace

void TestSampleBackup::sameOptionsSameBytes_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<int>("ios");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("wal");
    QTest::newRow("modern") << Layout::Modern << 17 << QString() << true;
    QTest::newRow("modern, encrypted") << Layout::Modern << 12 << u"secret"_s << false;
    QTest::newRow("mbdb, oldest") << Layout::Mbdb << 5 << QString() << false;
    QTest::newRow("mbdb") << Layout::Mbdb << 6 << QString() << false;
    QTest::newRow("mbdb, encrypted") << Layout::Mbdb << 9 << u"secret"_s << false;
}

void TestSampleBackup::sameOptionsSameBytes()
{
    QFETCH(Layout, layout);
    QFETCH(int, ios);
    QFETCH(QString, password);
    QFETCH(bool, wal);
    QTemporaryDir home;
    SampleOptions options;
    options.layout = layout;
    options.ios = ios;
    options.password = password;
    options.walCompanion = wal;
    QList<QMap<QString, QPair<qint64, QByteArray>>> runs;
    for (const QString &name : {u"one"_s, u"two"_s}) {
        options.folder = home.filePath(name);
        makeSample(options);
        runs << everything(options.folder);
    }
    QVERIFY(runs[0].size() >= options.files);
    QCOMPARE(runs[0].keys(), runs[1].keys());
    for (auto file = runs[0].begin(); file != runs[0].end(); ++file)
        QVERIFY2(file.value() == runs[1][file.key()], qPrintable(file.key()));

    options.folder = home.filePath(u"other seed"_s);
    options.seed = 2;
    makeSample(options);
    QVERIFY(everything(options.folder) != runs[0]);
}

void TestSampleBackup::propertyLists()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    makeSample(options);
    const QByteArray info = readAll(options.folder + u"/Info.plist"_s);
    QVERIFY(info.startsWith("<?xml"));
    const QVariantMap manifest = readPlist(readAll(options.folder + u"/Manifest.plist"_s)).toMap();
    const QVariantMap lockdown = manifest[u"Lockdown"_s].toMap();
    QCOMPARE(lockdown[u"ProductVersion"_s], QVariant(u"17.4"_s));
    QCOMPARE(lockdown[u"UniqueDeviceID"_s].toString().toUpper(),
             readPlist(info).toMap()[u"Unique Identifier"_s].toString());
    QCOMPARE(manifest[u"IsEncrypted"_s], QVariant(false));
    QVERIFY(!manifest.contains(u"BackupKeyBag"_s));
    QCOMPARE(manifest[u"Date"_s], QVariant(u"2024-03-10T09:15:30Z"_s));
    QCOMPARE(readPlist(readAll(options.folder + u"/Status.plist"_s)).toMap()[u"SnapshotState"_s],
             QVariant(u"finished"_s));
}

void TestSampleBackup::catalogueRows()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    const SampleSummary summary = makeSample(options);
    const QString catalogue = options.folder + u"/Manifest.db"_s;
    const auto count = [&](const QString &condition) {
        return column(catalogue, u"select count(*) from Files where "_s + condition).first().toInt();
    };
    QCOMPARE(count(u"flags in (0, 1)"_s), static_cast<int>(summary.files.size()));
    QCOMPARE(count(u"flags = 0"_s), 1);
    QCOMPARE(count(u"flags = 4"_s), 1);
    QVERIFY(count(u"flags = 2 and relativePath = ''"_s) > 5);
    QCOMPARE(count(u"relativePath is null or domain is null"_s), 0);
    for (const QString &path : column(catalogue, u"select relativePath from Files where flags=1"_s)) {
        const QString parent = path.section(u'/', 0, -2);
        QVERIFY2(count(u"flags=2 and relativePath='%1'"_s.arg(parent)) > 0, qPrintable(path));
    }
}

void TestSampleBackup::extraRows()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.extraRows = {{u"HomeDomain"_s, u"../../outside"_s, "forged"}};
    const SampleSummary summary = makeSample(options);
    const SampleFile *file = summary.file(u"HomeDomain"_s, u"../../outside"_s);
    QVERIFY(file);
    QCOMPARE(readAll(storedPath(options, *file)), QByteArray("forged"));
    QCOMPARE(column(options.folder + u"/Manifest.db"_s,
                    u"select fileID from Files where relativePath like '../../o%'"_s),
             QStringList{file->fileId});
}

void TestSampleBackup::benchInputs()
{
    QTemporaryDir home;
    const QString catalogue = home.filePath(u"Manifest.db"_s);
    makeCatalogueOnly(catalogue, 2000, 3);
    QCOMPARE(column(catalogue, u"pragma integrity_check"_s), QStringList{u"ok"_s});
    QCOMPARE(column(catalogue, u"select count(distinct domain || relativePath) from Files"_s),
             QStringList{u"2000"_s});
    QVERIFY_THROWS_EXCEPTION(Error, makeCatalogueOnly(catalogue, 1, 3));

    const QString messages = home.filePath(u"sms.db"_s);
    const SampleCounts counts = makeMessageDatabase(messages, 12, 3000, 50, 3);
    QCOMPARE(column(messages, u"pragma integrity_check"_s), QStringList{u"ok"_s});
    QCOMPARE(column(messages, u"select count(*) from message"_s), QStringList{u"3000"_s});
    QCOMPARE(counts.messageRows, 3000);
    QCOMPARE(column(messages,
                    u"select count(distinct chat_id) from chat_message_join as j inner join chat as c on "
                    "c.rowid=j.chat_id"_s),
             QStringList{u"50"_s});
}

void TestSampleBackup::refusals()
{
    QTemporaryDir home;
    SampleOptions options;
    options.folder = home.filePath(u"backup"_s);
    options.ios = 8;
    QVERIFY_THROWS_EXCEPTION(Error, makeSample(options));
    QVERIFY(!QFile::exists(options.folder));
    options.ios = 17;
    options.password = u"p"_s;
    options.iter = 0;
    QVERIFY_THROWS_EXCEPTION(Error, makeSample(options));
    QVERIFY(QDir().mkpath(home.filePath(u"backup/something"_s)));
    QVERIFY_THROWS_EXCEPTION(Error, makeSample(options));
}

QTEST_GUILESS_MAIN(TestSampleBackup)
#include "tst_sample_backup.moc"
