#include "backup/backup_fixture.h"
#include "backup/backup_list.h"
#include "base/app_folders.h"
#include "resources/resources.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestBackupList : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void addAndRemove();
    void counts();
    void twoRuns();
    void damagedList_data();
    void damagedList();
    void unusableList();

private:
    std::unique_ptr<QTemporaryDir> m_home;

    QString listFile() const { return appDataFolder().filePath(u"cache_list.db"_s); }
};

void TestBackupList::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toUtf8());
    forgetAppDataFolder();
}

void TestBackupList::addAndRemove()
{
    const ListedBackup lower{backupUid(u"/backups/anna"_s), u"/backups/anna"_s};
    const ListedBackup upper{backupUid(u"/backups/Anna"_s), u"/backups/Anna"_s};
    QVERIFY(lower.uid != upper.uid);
    BackupList list;
    QCOMPARE(list.backups(), QList<ListedBackup>());
    list.addBackup(lower.uid, lower.path);
    list.addBackup(upper.uid, upper.path);
    list.addBackup(lower.uid, lower.path);
    QCOMPARE(list.backups(), QList<ListedBackup>({lower, upper}));
    QCOMPARE(BackupList().backups(), QList<ListedBackup>({lower, upper}));
    list.removeBackup(lower.uid);
    list.removeBackup(u"unknown"_s);
    QCOMPARE(BackupList().backups(), QList<ListedBackup>({upper}));
}

void TestBackupList::counts()
{
    BackupList list;
    QVERIFY(list.counts(u"a"_s).isEmpty());
    list.addBackup(u"a"_s, u"/a"_s);
    QVERIFY(list.counts(u"a"_s).isEmpty());
    list.setCounts(u"a"_s, {{u"messages"_s, 7}, {u"notes"_s, 2}});
    list.setCounts(u"a"_s, {{u"messages"_s, 8}});
    QCOMPARE(BackupList().counts(u"a"_s), (QHash<QString, qint64>{{u"messages"_s, 8}}));
    list.removeBackup(u"a"_s);
    list.addBackup(u"a"_s, u"/a"_s);
    QVERIFY(list.counts(u"a"_s).isEmpty());
}

void TestBackupList::twoRuns()
{
    BackupList one;
    BackupList other;
    one.addBackup(u"a"_s, u"/a"_s);
    other.addBackup(u"b"_s, u"/b"_s);
    one.addBackup(u"b"_s, u"/b"_s);
    const QList<ListedBackup> both{{u"a"_s, u"/a"_s}, {u"b"_s, u"/b"_s}};
    QCOMPARE(one.backups(), both);
    QCOMPARE(other.backups(), both);
}

void TestBackupList::damagedList_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("noise") << QByteArray(5000, 'x');
    QTest::newRow("header alone") << QByteArray("SQLite format 3\0", 16) + QByteArray(84, '\0');
}

void TestBackupList::damagedList()
{
    QFETCH(QByteArray, content);
    writeFile(listFile(), content);
    BackupList list;
    QCOMPARE(list.backups(), QList<ListedBackup>());
    list.addBackup(u"a"_s, u"/a"_s);
    QCOMPARE(BackupList().backups().size(), 1);
}

void TestBackupList::unusableList()
{
    QVERIFY(QDir().mkpath(listFile()));
    BackupList list;
    list.addBackup(u"a"_s, u"/a"_s);
    QCOMPARE(list.backups(), QList<ListedBackup>());
}

QTEST_GUILESS_MAIN(TestBackupList)
#include "tst_backup_list.moc"
