#include "base/error.h"
#include "sqlite/sqlite3_db.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestSqlite : public QObject
{
    Q_OBJECT

private slots:
    void everyTypeThereAndBack();
    void missingColumnsReadAsNothing();
    void tableDescription();
    void whatIsNoDatabase_data();
    void whatIsNoDatabase();
    void lockedDatabaseFailsAtOnce();
    void transactionRollsBack();
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

void TestSqlite::lockedDatabaseFailsAtOnce()
{
    const QString path = freshPath();
    Sqlite3DB owner;
    owner.openThrow(path, SqliteOpen::ReadWriteCreate);
    QVERIFY(owner.exec(QStringLiteral("create table t(x); begin exclusive")));
    Sqlite3DB other;
    QVERIFY(!other.open(path));
    QVERIFY(other.lastError().contains(QStringLiteral("locked")));
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
