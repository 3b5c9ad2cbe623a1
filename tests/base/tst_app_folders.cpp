#include "base/app_folders.h"
#include "base/error.h"
#include "base/log.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <pwd.h>
#include <unistd.h>
#endif

class TestAppFolders : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void roamingPrefersAppData();
    void homeOfTheUsersList();
    void redirect_data();
    void redirect();
    void closedToOthers();
    void namesOfLocalDatabases_data();
    void namesOfLocalDatabases();
    void logKeepsTheNewest();
    void logLines();

private:
    QTemporaryDir m_home;
    QString identifier() const { return QLatin1String(productIdentifier); }
    void write(const QString &path, const QByteArray &bytes) const;
};

void TestAppFolders::init()
{
    for (const auto &name : QDir(m_home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
        QDir(m_home.filePath(name)).removeRecursively();
    qputenv("HOME", m_home.path().toUtf8());
    forgetAppDataFolder();
}

void TestAppFolders::write(const QString &path, const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

void TestAppFolders::roamingPrefersAppData()
{
    QCOMPARE(roamingFolder().path(), m_home.filePath(QStringLiteral("Application Data")));
    QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral("AppData/Roaming")));
    QCOMPARE(roamingFolder().path(), m_home.filePath(QStringLiteral("AppData/Roaming")));
}

void TestAppFolders::redirect_data()
{
    QTest::addColumn<QByteArray>("content"); // %h stands for the home folder
    QTest::addColumn<QString>("base");       // below the home folder
    const QString usual = QStringLiteral("Application Data/Quillbarrow");
    QTest::newRow("an existing folder") << QByteArray("%h/moved") << QStringLiteral("moved");
    QTest::newRow("a folder that is gone") << QByteArray("%h/gone") << usual;
    QTest::newRow("a line end is part of the name") << QByteArray("%h/moved\n") << usual;
    QTest::newRow("empty") << QByteArray() << usual;
}

void TestAppFolders::redirect()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, base);
    QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral("moved")));
    write(m_home.filePath(QStringLiteral("Application Data/Quillbarrow/%1.redirect").arg(identifier())),
          content.replace("%h", m_home.path().toUtf8()));
    const QString expected = m_home.filePath(base + QLatin1Char('/') + identifier());
    QCOMPARE(appDataFolder().path(), expected);
    QVERIFY(QFile::exists(expected));
    QVERIFY(QFile::exists(localDatabasesFolder().path()));
}

#ifdef Q_OS_UNIX
void TestAppFolders::homeOfTheUsersList()
{
    qunsetenv("HOME");
    const passwd *user = getpwuid(getuid());
    const QString listed = user ? QFile::decodeName(user->pw_dir) : QString();
    if (QFileInfo(listed).isDir() && !QDir(listed).isRoot()) {
        QCOMPARE(homeFolder(), QDir(listed));
        QVERIFY(roamingFolder().path().startsWith(listed));
    } else {
        QVERIFY_EXCEPTION_THROWN(appDataFolder(), Error);
    }
}
#endif

void TestAppFolders::closedToOthers()
{
    const QString folder = QStringLiteral("Application Data/Quillbarrow/") + identifier();
    write(m_home.filePath(folder + QStringLiteral("/cache_list.db")), "x");
    write(m_home.filePath(folder + QStringLiteral("/local_databases/one/contacts.db")), "x");
    write(m_home.filePath(QStringLiteral("elsewhere")), "x");
    const QFile::Permissions readable = QFile::permissions(m_home.filePath(QStringLiteral("elsewhere")));
    QVERIFY(QFile::link(m_home.filePath(QStringLiteral("elsewhere")),
                        m_home.filePath(folder + QStringLiteral("/link"))));
    appDataFolder();
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    for (const char *path : {"", "/cache_list.db", "/local_databases", "/local_databases/one",
                             "/local_databases/one/contacts.db"})
        QCOMPARE(QFile::permissions(m_home.filePath(folder + QLatin1String(path))) & others,
                 QFile::Permissions());
    QCOMPARE(QFile::permissions(m_home.filePath(QStringLiteral("elsewhere"))), readable);
}

void TestAppFolders::namesOfLocalDatabases_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isOne");
    QTest::newRow("plain") << QStringLiteral("My phone") << true;
    QTest::newRow("dots inside and at the end") << QStringLiteral("a..b.") << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("blank") << QStringLiteral("  ") << false;
    QTest::newRow("this folder") << QStringLiteral(".") << false;
    QTest::newRow("the folder above") << QStringLiteral("..") << false;
    QTest::newRow("hidden") << QStringLiteral(".phone") << false;
    QTest::newRow("path") << QStringLiteral("a/b") << false;
    QTest::newRow("path of Windows") << QStringLiteral("a\\b") << false;
    QTest::newRow("control character") << QStringLiteral("a\nb") << false;
    QTest::newRow("as long as a name can be") << QString(255, QLatin1Char('x')) << true;
    QTest::newRow("longer in bytes") << QString(128, QChar(0xE4)) << false;
}

void TestAppFolders::namesOfLocalDatabases()
{
    QFETCH(QString, name);
    QTEST(isLocalDatabaseName(name), "isOne");
}

void TestAppFolders::logKeepsTheNewest()
{
    const QString folder = m_home.filePath(QStringLiteral("qlogs"));
    for (int day = 10; day < 22; ++day)
        write(QStringLiteral("%1/log-202601%2.txt").arg(folder).arg(day), "x");
    initLog(folder, 10, DebugEcho::None);
    qInstallMessageHandler(nullptr);
    const QStringList left = QDir(folder).entryList(QDir::Files, QDir::Name);
    QCOMPARE(left.size(), 10);
    QCOMPARE(left.first(), QStringLiteral("log-20260112.txt"));
    QCOMPARE(left.last(), QStringLiteral("log-20260121.txt"));
}

void TestAppFolders::logLines()
{
    const QString folder = m_home.filePath(QStringLiteral("deep/qlogs"));
    initLog(folder, 10, DebugEcho::None);
    qDebug("first");
    qWarning("zw\xC3\xB6lf");
    qCritical("third");
    qInstallMessageHandler(nullptr);
    const QStringList files = QDir(folder).entryList(QDir::Files);
    QCOMPARE(files.size(), 1);
    QVERIFY(!(QFile::permissions(QDir(folder).filePath(files.first())) & (QFile::ReadGroup | QFile::ReadOther)));
    QVERIFY(QRegularExpression(QStringLiteral("^log-\\d{8}\\.txt$")).match(files.first()).hasMatch());
    QFile file(QDir(folder).filePath(files.first()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QRegularExpression expected(
        QStringLiteral("^\\(D \\d\\d:\\d\\d:\\d\\d\\) first\n\\(W \\d\\d:\\d\\d:\\d\\d\\) zw\u00f6lf\n\\(C "
                       "\\d\\d:\\d\\d:\\d\\d\\) third\n$"));
    QVERIFY2(expected.match(text).hasMatch(), qPrintable(text));
}

QTEST_APPLESS_MAIN(TestAppFolders)
#include "tst_app_folders.moc"
