#include "support/scratch_source.h"
#include "device_messages.h"
#include "messages/abs_message_db.h"
#include "resources/resources.h"

#include <QTest>

namespace {
const SourceFile messageFile{QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db")};

QString failureOf(const std::function<void()> &work)
{
    try {
        work();
    } catch (const Error &error) {
        return error.sentence();
    }
    return {};
}

/// A database of 2,000 messages of one conversation, on many pages.
void makeLongConversation(const QString &path)
{
    DeviceMessages made(path, DeviceMessages::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.run(
        QStringLiteral("begin; create temp trigger join_it after insert on message begin insert into "
                       "chat_message_join values(1, "
                       "new.ROWID); end; with recursive n(i) as (select 1 union all select i + 1 from n "
                       "where i < 2000) insert into "
                       "message(ROWID, guid, text) select i, 'g' || i, hex(randomblob(200)) from n; insert "
                       "into attachment(ROWID, "
                       "guid) values(1, 'a'); insert into message_attachment_join values(1, 1); commit"));
}

int pageSize(const QString &path)
{
    Sqlite3DB db;
    db.openThrow(path);
    Sqlite3Cursor cursor = db.queryThrow(QStringLiteral("pragma page_size"));
    cursor.moveNext();
    return cursor.getInt(0);
}

/// Overwrites a page, counted from 1, with a byte that no page of a table begins with.
void destroyPage(const QString &path, qint64 page)
{
    const int size = pageSize(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek((page - 1) * size);
    QCOMPARE(file.write(QByteArray(size, '\x7F')), size);
}

/// How many messages a statement for each still gets.
std::size_t messagesReadOneByOne(const QString &path)
{
    Sqlite3DB db;
    db.openForeign(path);
    Sqlite3Cursor row = db.queryThrow(QStringLiteral("select * from message where rowid=?"));
    std::size_t count = 0;
    for (int rowid = 1; rowid <= 2000; ++rowid) {
        row.rebind(Sqlite3Sql().addInt64Param(rowid));
        try {
            count += row.moveNext() ? 1 : 0;
        } catch (const Error &) {
        }
    }
    return count;
}

qint64 rootPageOf(const QString &path, const QString &table)
{
    Sqlite3DB db;
    db.openThrow(path);
    Sqlite3Cursor cursor = db.queryThrow(
        Sqlite3Sql(QStringLiteral("select rootpage from sqlite_master where name=?")).addTextParam(table));
    cursor.moveNext();
    return cursor.getInt64(0);
}
} // namespace

class TestOpenMessageDb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void noDatabase();
    void unreadableFiles_data();
    void unreadableFiles();
    void olderGenerations_data();
    void olderGenerations();
    void numbersAreNormalised();
    void lockedFile();
    void damageInTheMiddle();
    void fileThatWasCutOff();
    void damagedTables_data();
    void damagedTables();
    void attachmentTablesMissing();
};

void TestOpenMessageDb::noDatabase()
{
    ScratchSource source;
    QCOMPARE(failureOf([&] { openMessageDb(source); }),
             QStringLiteral("Found no message database file in this iTunes backup."));
}

void TestOpenMessageDb::unreadableFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no database") << QByteArray(5000, 'x');
    QTest::newRow("header alone") << QByteArray("SQLite format 3\0", 16);
}

void TestOpenMessageDb::unreadableFiles()
{
    QFETCH(QByteArray, content);
    ScratchSource source;
    source.put(messageFile, content);
    QVERIFY(failureOf([&] { openMessageDb(source); }).contains(QStringLiteral("sms.db")));
}

void TestOpenMessageDb::olderGenerations_data()
{
    QTest::addColumn<QString>("dropped");
    for (const char *table : {"chat", "handle", "chat_handle_join", "chat_message_join"})
        QTest::addRow("without %s", table) << QString::fromLatin1(table);
}

void TestOpenMessageDb::olderGenerations()
{
    QFETCH(QString, dropped);
    ScratchSource source;
    source.putDatabase(messageFile, QString());
    {
        DeviceMessages made(source.pathOf(messageFile), DeviceMessages::Ios9);
        made.chat(1, QStringLiteral("a"));
        made.message(1, 1, 0, QStringLiteral("not lost"));
        made.run(QStringLiteral("drop table ") + dropped);
    }
    const auto db = openMessageDb(source);
    QCOMPARE(db->kind(), 5);
    NoProgress progress;
    db->loadChats();
    db->loadMessages(0, progress);
    QCOMPARE(db->countMessages(), 1);
    QCOMPARE(db->messageCount(), 1u);
}

void TestOpenMessageDb::numbersAreNormalised()
{
    ScratchSource source;
    source.putDatabase(messageFile, QString());
    {
        DeviceMessages made(source.pathOf(messageFile), DeviceMessages::Ios9);
        made.handle(1, QStringLiteral("0171 1234567"), QStringLiteral("de"));
        made.handle(2, QStringLiteral("Ada@Example.COM"), QStringLiteral("de"));
        made.chat(1, QStringLiteral("a"), {1, 2});
    }
    const auto db = openMessageDb(source);
    QCOMPARE(db->kind(), 6);
    db->loadChats();
    QCOMPARE(db->handle(1)->id, QStringLiteral("+491711234567"));
    QCOMPARE(db->handle(2)->id, QStringLiteral("ada@example.com"));
}

void TestOpenMessageDb::lockedFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    makeLongConversation(path);
    Sqlite3DB other;
    other.openThrow(path, SqliteOpen::ReadWrite);
    QVERIFY(other.exec(QStringLiteral("begin exclusive")));
    const QString failure = failureOf([&] { openMessageDbFile(path, nullptr); });
    QVERIFY2(failure.contains(path) && failure.contains(QStringLiteral("locked")), qPrintable(failure));
}

void TestOpenMessageDb::damageInTheMiddle()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    makeLongConversation(path);
    destroyPage(path, QFileInfo(path).size() / pageSize(path) / 2);
    const auto db = openMessageDbFile(path, nullptr);
    db->loadChats();
    NoProgress progress;
    db->loadMessages(0, progress);
    const std::size_t readable = messagesReadOneByOne(path);
    QVERIFY(readable > 100 && readable < 2000);
    QVERIFY(db->messageCount() >= readable && db->messageCount() < 2000);
    QCOMPARE(openMessageDbFile(path, nullptr)->countMessages(), qint64(db->messageCount()));
    QCOMPARE(db->chat(1)->messages.size(), db->messageCount());
    QVERIFY(db->report().isFailure());
}

void TestOpenMessageDb::fileThatWasCutOff()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    makeLongConversation(path);
    QFile file(path);
    QVERIFY(file.resize(file.size() * 3 / 4));
    const auto db = openMessageDbFile(path, nullptr);
    db->loadChats();
    NoProgress progress;
    db->loadMessages(0, progress);
    const std::size_t readable = messagesReadOneByOne(path);
    QVERIFY(readable > 100 && readable < 2000);
    QVERIFY(db->messageCount() >= readable && db->messageCount() < 2000);
    QCOMPARE(openMessageDbFile(path, nullptr)->countMessages(), qint64(db->messageCount()));
    QVERIFY(db->report().isFailure());
}

void TestOpenMessageDb::damagedTables_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<bool>("readable");
    QTest::newRow("chats") << "chat" << true;
    QTest::newRow("messages") << "message" << false;
    QTest::newRow("joins of messages, all of which are in an index") << "chat_message_join" << true;
    QTest::newRow("handles") << "handle" << true;
    QTest::newRow("attachments") << "attachment" << true;
}

void TestOpenMessageDb::damagedTables()
{
    QFETCH(QString, table);
    QFETCH(bool, readable);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    makeLongConversation(path);
    Sqlite3DB db;
    db.openThrow(path, SqliteOpen::ReadWrite);
    QVERIFY(db.exec(
        QStringLiteral("insert into handle(id) values('x'); insert into chat_handle_join values(1, 1);"
                       "insert into message(ROWID, item_type) values(9000, 2); "
                       "insert into chat_message_join values(1, 9000)")));
    db.close();
    destroyPage(path, rootPageOf(path, table));

    NoProgress progress;
    std::unique_ptr<AbsMessageDb> messages;
    const QString failure = failureOf([&] {
        messages = openMessageDbFile(path, nullptr);
        messages->loadChats();
        messages->loadMessages(0, progress);
    });
    QCOMPARE(failure.isEmpty(), readable);
    if (readable) {
        QCOMPARE(messages->messageCount(), 2000u);
        QCOMPARE(messages->report().count("IDS_ISSUE_SYSTEM_ITEMS"), 1);
        QVERIFY(messages->report().isFailure());
    } else {
        QVERIFY(failure.contains(path));
    }
}

void TestOpenMessageDb::attachmentTablesMissing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sms.db"));
    makeLongConversation(path);
    Sqlite3DB db;
    db.openThrow(path, SqliteOpen::ReadWrite);
    QVERIFY(db.exec(QStringLiteral("drop table message_attachment_join")));
    db.close();
    const auto messages = openMessageDbFile(path, nullptr);
    messages->loadChats();
    NoProgress progress;
    messages->loadMessages(0, progress);
    QCOMPARE(messages->messageCount(), 2000u);
    QCOMPARE(messages->report().issues().size(), 1);
    QCOMPARE(messages->report().issues().first(),
             (Issue{.what = "IDS_ISSUE_MISSING_TABLE",
                    .where = path,
                    .reason = QStringLiteral("message_attachment_join")}));
}

QTEST_GUILESS_MAIN(TestOpenMessageDb)
#include "tst_open_message_db.moc"
