#include "base/error.h"
#include "base/own_file.h"
#include "base/source_guard.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

/// What lies in a folder of unknown origin, and what must not be written over.
class TestOwnFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opens_data();
    void opens();
    void ownFolders();
    void guarded_data();
    void guarded();
    void guardsEnd();
    void deletedSourceGuardsNothingElse();

private:
    QTemporaryDir m_folder;

    QString at(const QString &name) const { return m_folder.filePath(name); }
    void write(const QString &name) const
    {
        QDir().mkpath(QFileInfo(at(name)).path());
        QFile file(at(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("own") == 3);
    }
};

namespace {
bool isRefused(const QString &path)
{
    try {
        SourceGuard::requireOutside(path);
        return false;
    } catch (const Error &error) {
        return error.isWriting() && error.sentence().contains(path);
    }
}
} // namespace

void TestOwnFiles::initTestCase()
{
    write(u"source/ab/file"_s);
    write(u"source/sms.db"_s);
    write(u"source/sub/deep/file"_s);
    write(u"elsewhere/secret"_s);
    write(u"other/sms.db"_s);
    QVERIFY(QFile::link(at(u"elsewhere/secret"_s), at(u"source/ab/link"_s)));
    QVERIFY(QFile::link(at(u"elsewhere"_s), at(u"source/li"_s)));
    QVERIFY(QFile::link(at(u"nowhere"_s), at(u"source/dangling"_s)));
    QVERIFY(QFile::link(at(u"source"_s), at(u"alias"_s)));
    QVERIFY(QFile::link(at(u"source/sms.db"_s), at(u"aliasOfFile"_s)));
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(at(u"source/pipe"_s)).constData(), 0600), 0);
#endif
}

void TestOwnFiles::opens_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("whyNot");
    QTest::newRow("file") << u"source"_s << u"sms.db"_s << QString();
    QTest::newRow("file in a folder") << u"source"_s << u"ab/file"_s << QString();
    QTest::newRow("folder reached through a link") << u"alias"_s << u"ab/file"_s << QString();
    QTest::newRow("link to a file") << u"source"_s << u"ab/link"_s << u"It is a link"_s;
    QTest::newRow("link that leads nowhere") << u"source"_s << u"dangling"_s << u"It is a link"_s;
    QTest::newRow("folder that is a link") << u"source"_s << u"li/secret"_s << u"It is a link"_s;
    QTest::newRow("folder") << u"source"_s << u"ab"_s << u"It is no file"_s;
    QTest::newRow("pipe") << u"source"_s << u"pipe"_s << u"It is no file"_s;
    QTest::newRow("not there") << u"source"_s << u"zz/file"_s << u"No such file"_s;
    QTest::newRow("file in the place of a folder") << u"source"_s << u"sms.db/x"_s << u"Not a directory"_s;
}

void TestOwnFiles::opens()
{
    QFETCH(QString, folder);
    QFETCH(QString, name);
    QFETCH(QString, whyNot);
    QCOMPARE(isOwnFile(at(folder), name), whyNot.isEmpty());
    QFile file;
    try {
        openOwnFile(file, at(folder), name);
        QVERIFY(whyNot.isEmpty());
        QCOMPARE(file.readAll(), QByteArray("own"));
        QCOMPARE(file.fileName(), at(folder) + u'/' + name);
    } catch (const Error &error) {
        QVERIFY2(!whyNot.isEmpty() && error.sentence().contains(whyNot), error.what());
        QCOMPARE(error.kind() == ErrorKind::NotFound, !whyNot.startsWith(u"It is"_s));
    }
}

void TestOwnFiles::ownFolders()
{
    QCOMPARE(makeOwnFolder(at(u"target"_s), u"files/app"_s), at(u"target/files/app"_s));
    QVERIFY(QFileInfo(at(u"target/files/app"_s)).isDir());
    QVERIFY(QFile::link(at(u"elsewhere"_s), at(u"target/photos"_s)));
    QVERIFY_EXCEPTION_THROWN(makeOwnFolder(at(u"target"_s), u"photos"_s), Error);
    QVERIFY_EXCEPTION_THROWN(makeOwnFolder(at(u"target"_s), u"photos/new"_s), Error);
    QVERIFY(!QFileInfo::exists(at(u"elsewhere/new"_s)));
}

void TestOwnFiles::guarded_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("refused");
    const auto row = [](const char *name, const char *source, const char *path, bool refused) {
        QTest::newRow(name) << QString::fromLatin1(source) << QString::fromLatin1(path) << refused;
    };
    row("the folder itself", "source", "source", true);
    row("file in the folder", "source", "source/ab/file", true);
    row("new file in the folder", "source", "source/new", true);
    row("new folders far below", "source", "source/sub/x/y/z", true);
    row("through a link to the folder", "source", "alias/new", true);
    row("through a link to a file of it", "source", "aliasOfFile", true);
    row("there and back", "source", "elsewhere/../source/new", true);
    row("source named by a link", "alias", "source/new", true);
    row("what a link in the folder leads to", "source", "elsewhere/secret", false);
    row("beside the folder", "source", "sourcecode", false);
    row("the folder above", "source", "", false);
    row("the file itself", "source/sms.db", "source/sms.db", true);
    row("its log", "source/sms.db", "source/sms.db-wal", true);
    row("its index, in other letters", "source/sms.db", "source/SMS.db-SHM", true);
    row("beside the file", "source/sms.db", "source/sms.csv", false);
    row("file of that name elsewhere", "source/sms.db", "other/sms.db", false);
    row("log of that name elsewhere", "source/sms.db", "other/sms.db-wal", false);
    row("source that is not there", "gone", "gone/x", false);
}

void TestOwnFiles::guarded()
{
    QFETCH(QString, source);
    QFETCH(QString, path);
    const SourceGuard guard({at(source)});
    QTEST(isRefused(at(path)), "refused");
}

void TestOwnFiles::guardsEnd()
{
    {
        const SourceGuard mine({at(u"source"_s)}, SourceGuard::Reach::ThisThread);
        QVERIFY(isRefused(at(u"source/new"_s)));
        bool elsewhere = true;
        const std::unique_ptr<QThread> thread(
            QThread::create([&] { elsewhere = isRefused(at(u"source/new"_s)); }));
        thread->start();
        thread->wait();
        QVERIFY(!elsewhere);
        const SourceGuard all({at(u"other"_s)});
        QVERIFY(isRefused(at(u"other/new"_s)));
    }
    QVERIFY(!isRefused(at(u"source/new"_s)) && !isRefused(at(u"other/new"_s)));
}

// A file system gives the number of a deleted folder to the next one that is made.
void TestOwnFiles::deletedSourceGuardsNothingElse()
{
    QDir().mkpath(at(u"short-lived"_s));
    const SourceGuard guard({at(u"short-lived"_s)});
    QVERIFY(QDir().rmdir(at(u"short-lived"_s)));
    for (int i = 0; i < 50; ++i) {
        const QString next = at(u"next %1"_s.arg(i));
        QDir().mkpath(next);
        QVERIFY(!isRefused(next + u"/file"_s));
    }
}

QTEST_APPLESS_MAIN(TestOwnFiles)
#include "tst_own_files.moc"
