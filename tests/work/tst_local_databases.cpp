#include "base/app_folders.h"
#include "base/error.h"
#include "work/local_databases.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

/// What may be taken away as a local database, and where it goes.
class TestLocalDatabases : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void goesToTheTrash();
    void goesForGoodWithoutATrash();
    void othersStay_data();
    void othersStay();

private:
    std::unique_ptr<QTemporaryDir> m_home;
    QString place(const QString &name) const { return localDatabasesFolder().filePath(name); }
};

namespace {
void write(const QString &path)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("x") == 1);
}
} // namespace

void TestLocalDatabases::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toUtf8());
    qunsetenv("XDG_DATA_HOME");
    forgetAppDataFolder();
    write(place(QStringLiteral("Family/messages.db")));
    write(place(QStringLiteral("notes/holiday.txt")));
    write(appDataFolder().filePath(QStringLiteral("cache_list.db")));
    write(m_home->filePath(QStringLiteral("elsewhere/contacts.db")));
    QVERIFY(QFile::link(m_home->filePath(QStringLiteral("elsewhere")), place(QStringLiteral("link"))));
}

void TestLocalDatabases::goesToTheTrash()
{
    QVERIFY(QDir().mkpath(place(QStringLiteral("empty"))));
    QVERIFY(QDir().mkpath(m_home->filePath(QStringLiteral(".local/share")))); // as every desktop has
    for (const char *name : {"Family", "empty"})
        QVERIFY(removeLocalDatabase(place(QLatin1String(name))));
    QVERIFY(QFile::exists(m_home->filePath(QStringLiteral(".local/share/Trash/files/Family/messages.db"))));
    QVERIFY(!QFile::exists(place(QStringLiteral("Family"))));
}

void TestLocalDatabases::goesForGoodWithoutATrash()
{
    write(m_home->filePath(QStringLiteral(".local")));
    QVERIFY(removeLocalDatabase(place(QStringLiteral("Family"))));
    QVERIFY(!QFile::exists(place(QStringLiteral("Family"))));
    QVERIFY2(!QFile::exists(QStringLiteral("files/Family")), "it lies in the current folder");
}

void TestLocalDatabases::othersStay_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("the application's data folder") << QStringLiteral("..");
    QTest::newRow("the folder of all of them") << QStringLiteral(".");
    QTest::newRow("nothing") << QString();
    QTest::newRow("below one") << QStringLiteral("Family/messages.db");
    QTest::newRow("on the way through one") << QStringLiteral("Family/../../cache_list.db");
    QTest::newRow("somebody's folder") << QStringLiteral("notes");
    QTest::newRow("link to a folder elsewhere") << QStringLiteral("link");
    QTest::newRow("not there") << QStringLiteral("gone");
}

void TestLocalDatabases::othersStay()
{
    QFETCH(QString, name);
    QVERIFY_EXCEPTION_THROWN(removeLocalDatabase(place(name)), Error);
    for (const QString &path : {place(QStringLiteral("Family/messages.db")), place(QStringLiteral("notes/holiday.txt")),
                                appDataFolder().filePath(QStringLiteral("cache_list.db")),
                                m_home->filePath(QStringLiteral("elsewhere/contacts.db"))})
        QVERIFY2(QFile::exists(path), qPrintable(path));
}

QTEST_GUILESS_MAIN(TestLocalDatabases)
#include "tst_local_databases.moc"
