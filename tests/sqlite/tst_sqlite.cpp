#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {
/// The failure of an action; one of kind Other without a sentence when it does not fail.
Error failureOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const Error &error) {
        return error;
    }
    return Error(QString());
}

void fillDatabase(const QString &path)
{
    Sqlite3DB db;
    db.openThrow(path, SqliteOpen::ReadWriteCreate);
    db.executeThrow(u"create table t(id integer primary key, text)"_s);
    db.executeThrow(u"insert into t(text) values('one'), ('two')"_s);
}
} // namespace

class TestSqlite : public QObject
{
    Q_OBJECT

private slots:
    void everyTypeThereAndBack();
    void missingColumnsReadAsNothing();
    void tableDescription();
    void whatIsNoDatabase_data();
    void whatIsNoDatabase();
    void lockedDatabaseFailsWhenOpened();
    void readerWaitsForALockThatIsSoonGone();
    void failureHasAKind_data();
    void failureHasAKind();
    void namedDatabaseTellsItsName();
    void onlyRegularFilesAreOpened();
    void foreignDatabaseThatWasCutOff();
    void transactionRollsBack();
    void commitLetsOthersWriteAtOnce();
    void failedStatementIsNotKept();
    void immutableLeavesNothingBeside();

private:
    QTemporaryDir m_folder;
    int m_number = 0;
    QString freshPath() { return m_folder.filePath(QStringLiteral("%1.db").arg(++m_number)); }
};

void TestSqlite::everyTypeThereAndBack()
{
    Sqlite3DB db;
    db.openThrow(freshPath(), SqliteOpen::ReadWriteCreate);
    QVERIFY(db.exec(QStringLiteral("create table t(i, r, s, b, n)")));
    Sqlite3Row row;
    row.set(QStringLiteral("i"), qint64(1) << 40);
    row.set(QStringLiteral("r"), 1.5);
    row.set(QStringLiteral("s"), QStringLiteral("it's \U0001F600"));
    row.set(QStringLiteral("b"), QByteArray("\0\xff", 2));
    row.set(QStringLiteral("n"), QVariant());
    db.executeThrow(row.insertSql(QStringLiteral("t")));
    QCOMPARE(db.lastInsertId(), 1);
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select * from t"));
    QVERIFY(cursor.moveNext());
    QCOMPARE(cursor.getRow().columns(), row.columns());
    QCOMPARE(cursor.getText(QStringLiteral("S")), QStringLiteral("it's \U0001F600"));
    QVERIFY(cursor.isNull(4));
    QVERIFY(!cursor.moveNext());
}

void TestSqlite::missingColumnsReadAsNothing()
{
    Sqlite3DB db;
    db.openThrow(freshPath(), SqliteOpen::ReadWriteCreate);
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select 7 as present"));
    QCOMPARE(cursor.getInt(0), 0); // before the first row
    QVERIFY(cursor.moveNext());
    QCOMPARE(cursor.getInt(QStringLiteral("present")), 7);
    QCOMPARE(cursor.columnIndex(QStringLiteral("absent")), -1);
    QCOMPARE(cursor.getInt64(-1), 0);
    QCOMPARE(cursor.getText(99), QString());
    QVERIFY(cursor.viewBlob(-1).isEmpty());
}

void TestSqlite::tableDescription()
{
    Sqlite3DB db;
    db.openThrow(freshPath(), SqliteOpen::ReadWriteCreate);
    QVERIFY(db.exec(QStringLiteral(
        "create table \"a\"\"b\"(ROWID INTEGER PRIMARY KEY, Name TEXT NOT NULL DEFAULT 'x')")));
    const auto columns = db.tbInfo(QStringLiteral("a\"b"));
    QCOMPARE(columns.size(), 2);
    QCOMPARE(columns.at(0).primaryKey, 1);
    QVERIFY(columns.at(1).notNull);
    QCOMPARE(columns.at(1).defaultValue, QStringLiteral("'x'"));
    QCOMPARE(db.tbCols(QStringLiteral("a\"b")),
             (QSet<QString>{QStringLiteral("rowid"), QStringLiteral("name")}));
    QVERIFY(db.tbCols(QStringLiteral("nothing")).isEmpty());
    QVERIFY(db.hasTable(QStringLiteral("A\"B")));
}

void TestSqlite::whatIsNoDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("text") << QByteArray(4096, 'x');
    QTest::newRow("a header and no more")
        << QByteArray("SQLite format 3\0", 16).append(QByteArray(984, '\xee'));
}

void TestSqlite::whatIsNoDatabase()
{
    QFETCH(QByteArray, content);
    const QString path = freshPath();
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    Sqlite3DB db;
    QVERIFY(!db.open(path));
    QVERIFY(!db.isOpen());
    try {
        db.openThrow(path);
        QFAIL("opened");
    } catch (const Error &error) {
        QVERIFY(error.sentence().startsWith(QStringLiteral("can not open %1. ").arg(path)));
    }
    QVERIFY(!db.open(m_folder.filePath(QStringLiteral("absent.db")), SqliteOpen::ReadWrite));
}

void TestSqlite::lockedDatabaseFailsWhenOpened()
{
    const QString path = freshPath();
    Sqlite3DB owner;
    owner.openThrow(path, SqliteOpen::ReadWriteCreate);
    QVERIFY(owner.exec(QStringLiteral("create table t(x); begin exclusive")));
    Sqlite3DB other;
    QVERIFY(!other.open(path));
    QVERIFY(other.lastError().contains(QStringLiteral("locked")));
}

void TestSqlite::readerWaitsForALockThatIsSoonGone()
{
    const QString path = freshPath();
    Sqlite3DB owner;
    owner.openThrow(path, SqliteOpen::ReadWriteCreate);
    QVERIFY(owner.exec(QStringLiteral("create table t(x); begin exclusive")));
    bool isOpen = false;
    const std::unique_ptr<QThread> reader(QThread::create([&] { isOpen = Sqlite3DB().open(path); }));
    reader->start();
    QVERIFY2(!reader->wait(100), "it has given up");
    QVERIFY(owner.exec(QStringLiteral("commit")));
    QVERIFY(reader->wait());
    QVERIFY(isOpen);
}

void TestSqlite::failureHasAKind_data()
{
    using Action = std::function<void(const QString &)>;
    QTest::addColumn<Action>("action");
    QTest::addColumn<ErrorKind>("kind");
    QTest::addColumn<bool>("isWriting");
    const auto execute = [](const QString &path, SqliteOpen mode, const QString &statement) {
        Sqlite3DB db;
        db.openThrow(path, mode);
        db.executeThrow(statement);
    };
    const auto damage = [](const QString &path, qint64 at) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(at));
        file.write(QByteArray(4096, '\xee'));
    };
    QTest::newRow("absent") << Action([](const QString &path) { Sqlite3DB().openThrow(path + u"x"_s); })
                            << ErrorKind::NotFound << false;
    QTest::newRow("no database") << Action([=](const QString &path) {
        damage(path, 0);
        Sqlite3DB().openThrow(path);
    }) << ErrorKind::Damaged << false;
    QTest::newRow("a page damaged, found before a change") << Action([=](const QString &path) {
        damage(path, 4096);
        execute(path, SqliteOpen::ReadWrite, u"insert into t(text) values('three')"_s);
    }) << ErrorKind::Damaged << false;
    QTest::newRow("no room") << Action([=](const QString &path) {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWrite);
        db.executeThrow(u"pragma max_page_count=2"_s);
        db.executeThrow(u"insert into t(text) values(zeroblob(100000))"_s);
    }) << ErrorKind::NoSpace << true;
    QTest::newRow("writing what is open for reading")
        << Action([=](const QString &path) { execute(path, SqliteOpen::ReadOnly, u"delete from t"_s); })
        << ErrorKind::Denied << false;
    QTest::newRow("a column that our own lacks") << Action([=](const QString &path) {
        execute(path, SqliteOpen::ReadOnly, u"select absent from t"_s);
    }) << ErrorKind::Other << false;
    QTest::newRow("a column that a foreign one lacks") << Action([](const QString &path) {
        Sqlite3DB db;
        db.openForeign(path);
        db.executeThrow(u"select absent from t"_s);
    }) << ErrorKind::Damaged << false;
}

void TestSqlite::failureHasAKind()
{
    QFETCH(std::function<void(const QString &)>, action);
    const QString path = freshPath();
    fillDatabase(path);
    const Error error = failureOf([&] { action(path); });
    QVERIFY2(error.sentence().contains(path), qPrintable(error.sentence()));
    QTEST(error.kind(), "kind");
    QTEST(error.isWriting(), "isWriting");
    QCOMPARE(error.sentence().contains(u"can not write"_s),
             error.kind() == ErrorKind::NoSpace || error.kind() == ErrorKind::Denied);
    QCOMPARE(error.where(), QString());
}

void TestSqlite::namedDatabaseTellsItsName()
{
    const QString path = freshPath();
    fillDatabase(path);
    const QString name = u"HomeDomain Library/SMS/sms.db"_s;
    Sqlite3DB db;
    db.openForeign({path, name});
    QCOMPARE(db.path(), path);
    const Error error = failureOf([&] { db.executeThrow(u"select 1 from absent"_s); });
    QCOMPARE(error.sentence(), u"can not read %1. no such table: absent"_s.arg(name));
    QCOMPARE(error.where(), name);
    QVERIFY(QFile::remove(path));
    QCOMPARE(failureOf([&] { db.openForeign({path, name}); }).where(), name);
}

void TestSqlite::onlyRegularFilesAreOpened()
{
    const QString path = freshPath();
    QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    for (const QString &place : {path, u"/dev/null"_s, m_folder.path()}) {
        const Error error = failureOf([&] { Sqlite3DB().openThrow(place, SqliteOpen::ReadWriteCreate); });
        QCOMPARE(error.sentence(), u"can not open %1. It is no regular file."_s.arg(place));
        QCOMPARE(error.kind(), ErrorKind::Damaged);
    }
}

void TestSqlite::foreignDatabaseThatWasCutOff()
{
    const QString path = freshPath();
    fillDatabase(path);
    {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWrite);
        db.executeThrow(u"create table later as select zeroblob(50000)"_s);
    }
    QVERIFY(QFile::resize(path, 8192));
    QVERIFY(!failureOf([&] { Sqlite3DB().openThrow(path); }).sentence().isEmpty());
    Sqlite3DB db;
    db.openForeign(path);
    QVERIFY(db.damage().contains(path));
    Sqlite3Cursor cursor = db.queryThrow(u"select group_concat(text) from t"_s);
    QVERIFY(cursor.moveNext());
    QCOMPARE(cursor.getText(0), u"one,two"_s);
}

void TestSqlite::transactionRollsBack()
{
    Sqlite3DB db;
    db.openThrow(freshPath(), SqliteOpen::ReadWriteCreate);
    QVERIFY(db.exec(QStringLiteral("create table t(x)")));
    {
        Sqlite3Transaction transaction(db);
        db.executeThrow(QStringLiteral("insert into t values(1)"));
    }
    {
        Sqlite3Transaction transaction(db);
        db.executeThrow(QStringLiteral("insert into t values(2)"));
        transaction.commit();
    }
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select group_concat(x) from t"));
    QVERIFY(cursor.moveNext());
    QCOMPARE(cursor.getText(0), QStringLiteral("2"));
    QVERIFY_EXCEPTION_THROWN(db.executeThrow(QStringLiteral("insert into nothing values(1)")), Error);
}

void TestSqlite::commitLetsOthersWriteAtOnce()
{
    const QString path = freshPath();
    Sqlite3DB one;
    one.openThrow(path, SqliteOpen::ReadWriteCreate);
    Sqlite3DB other;
    other.openThrow(path, SqliteOpen::ReadWrite);
    one.executeThrow(QStringLiteral("create table t(x)"));
    Sqlite3Transaction transaction(one);
    for (int i = 0; i < 2; ++i) // the statement is kept, and must not keep what it has locked
        one.executeCachedThrow(Sqlite3Sql(QStringLiteral("insert into t values(?)")).addIntParam(i));
    QVERIFY(one.cachedThrow(QStringLiteral("select x from t")).moveNext()); // stands on the first of two
    QVERIFY(!other.exec(QStringLiteral("insert into t values(2)")));
    transaction.commit();
    QVERIFY2(other.exec(QStringLiteral("insert into t values(2)")), qPrintable(other.lastError()));
    one.executeThrow(QStringLiteral("insert into t values(3)"));
}

void TestSqlite::failedStatementIsNotKept()
{
    Sqlite3DB db;
    db.openThrow(freshPath(), SqliteOpen::ReadWriteCreate);
    const QString statement = QStringLiteral("insert into later values(1)");
    {
        const Sqlite3Transaction transaction(db);
        QVERIFY_EXCEPTION_THROWN(db.cachedThrow(statement), Error);
    } // rolls back
    db.executeThrow(QStringLiteral("create table later(x)"));
    db.executeCachedThrow(statement);
    QCOMPARE(db.changes(), 1);
}

void TestSqlite::immutableLeavesNothingBeside()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a#b?c %1.db"));
    {
        Sqlite3DB db;
        db.openThrow(path, SqliteOpen::ReadWriteCreate);
        QVERIFY(
            db.exec(QStringLiteral("pragma journal_mode=wal; create table t(x); insert into t values(5)")));
    }
    Sqlite3DB db;
    db.openThrow(path, SqliteOpen::Immutable);
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("select x from t"));
    QVERIFY(cursor.moveNext());
    QCOMPARE(cursor.getInt(0), 5);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

QTEST_APPLESS_MAIN(TestSqlite)
#include "tst_sqlite.moc"
