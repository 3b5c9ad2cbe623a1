#include "made_messages.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "resources/resources.h"
#include "store_folder.h"

#include <QElapsedTimer>
#include <QTest>

/// Deleting messages of a store, and taking that back.
class TestMessageRecycling : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void deletedMessagesComeBack_data();
    void deletedMessagesComeBack();
    void nothingElseGoes();
    void unknownMessageStopsTheJob();
    void savedAgainMeanwhile();
    void deletedTwice();
    void storeMadeAnewMeanwhile();
    void emptying();
    void emptyingManyMessages();
    void historyComesAlong();

private:
    QStringList described() const { return describedMessages(*openLocalMessages(m_folder->path()).database); }
    void expectSound() const
    {
        QCOMPARE(m_folder->faults(m_folder->store()), QStringLiteral("ok"));
        QCOMPARE(m_folder->faults(m_folder->recycleStore()), QStringLiteral("ok"));
    }
    qint64 remove(const std::vector<qint64> &rowids)
    {
        return removeMessages(m_folder->path(), rowids, m_nobody);
    }
    qint64 undelete(const std::vector<qint64> &rowids)
    {
        return undeleteMessages(m_folder->path(), rowids, m_nobody);
    }
    void save() { saveMessages(m_made->refs, &m_files, m_folder->path(), QString(), m_nobody); }

    NoProgress m_nobody;
    MadeFiles m_files;
    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<MadeMessages> m_made;
};

// Row ids: 1 to 3 in a conversation of two, the third in the other one, too; 4 and 5 in that one. 2 and 4
// share an attachment, 5 has one of its own.
void TestMessageRecycling::init()
{
    m_folder = std::make_unique<StoreFolder>();
    m_made = std::make_unique<MadeMessages>();
    auto *bo = m_made->handle(QStringLiteral("bo@example.org"));
    bo->_ct_name = QStringLiteral("Bo");
    auto *ann = m_made->handle(QStringLiteral("ann@example.org"));
    _MsgChat *alone = m_made->chat(QStringLiteral("iMessage;-;bo@example.org"), {bo});
    _MsgChat *group = m_made->chat(QStringLiteral("iMessage;+;chat1"), {bo, ann});
    m_made->message(alone, QStringLiteral("one"), 10);
    _MsgMessage *two = m_made->message(alone, QStringLiteral("two"), 20);
    _MsgMessage *three = m_made->message(alone, QStringLiteral("three"), 30);
    m_made->refs.push_back({group, three});
    _MsgMessage *four = m_made->message(group, QStringLiteral("four"), 40);
    four->handle = ann;
    _MsgMessage *five = m_made->message(group, QStringLiteral("five"), 50);
    five->handle = m_made->handle(QStringLiteral("gone@example.org"));
    four->attachments.push_back(m_made->attachment(two, QStringLiteral("SHARED-1"), QStringLiteral("a.jpg")));
    four->cache_has_attachments = 1;
    m_made->attachment(five, QStringLiteral("OWN-0001"), QStringLiteral("b.jpg"));
    m_files.contents = {{QStringLiteral("SHARED-1/a.jpg"), "a"}, {QStringLiteral("OWN-0001/b.jpg"), "b"}};
    save();
}

void TestMessageRecycling::deletedMessagesComeBack_data()
{
    QTest::addColumn<QList<qint64>>("rowids");
    QTest::addColumn<int>("chatsLeft");
    QTest::newRow("one of many") << QList<qint64>{1} << 2;
    QTest::newRow("in two conversations") << QList<qint64>{3} << 2;
    QTest::newRow("with a shared attachment") << QList<qint64>{4} << 2;
    QTest::newRow("the newest, of somebody who left") << QList<qint64>{5} << 2;
    QTest::newRow("a whole conversation") << QList<qint64>{4, 5, 3} << 1;
    QTest::newRow("everything") << QList<qint64>{5, 4, 3, 2, 1} << 0;
}

void TestMessageRecycling::deletedMessagesComeBack()
{
    QFETCH(QList<qint64>, rowids);
    const QStringList before = described();
    const QStringList newest{m_folder->value(QStringLiteral("select _last from chat where rowid=1")),
                             m_folder->value(QStringLiteral("select _last from chat where rowid=2"))};
    const std::vector<qint64> chosen(rowids.begin(), rowids.end());
    QCOMPARE(remove(chosen), rowids.size());
    expectSound();
    QTEST(m_folder->value(QStringLiteral("select count(*) from chat")).toInt(), "chatsLeft");
    QCOMPARE(m_folder->value(QStringLiteral("select count(*) from message")).toInt(), 5 - rowids.size());
    QCOMPARE(
        m_folder->value(QStringLiteral("select count(*) from handle as h where not exists (select 1 from "
                                       "message where handle_id=h.rowid) and not exists (select 1 from "
                                       "chat_handle_join where handle_id=h.rowid)")),
        QStringLiteral("0"));
    QCOMPARE(m_folder->files().size(), 2);
    const MessageSource recycled = openRecycledMessages(m_folder->path());
    QCOMPARE(recycled.database->countMessages(), rowids.size() + (rowids.contains(3) ? 1 : 0));

    QCOMPARE(undelete(chosen), rowids.size());
    expectSound();
    QCOMPARE(described(), before);
    QCOMPARE(
        m_folder->value(QStringLiteral("select group_concat(text) from (select text from message order by "
                                       "rowid)")),
        QStringLiteral("one,two,three,four,five"));
    QCOMPARE(
        m_folder->value(QStringLiteral("select group_concat(_last) from (select _last from chat order by "
                                       "guid desc)")),
        newest.join(u','));
    QCOMPARE(m_folder->value(QStringLiteral("select count(*) from message"), m_folder->recycleStore()),
             QStringLiteral("0"));
    save();
    QCOMPARE(m_folder->value(QStringLiteral("select count(*) from message")), QStringLiteral("5"));
}

void TestMessageRecycling::nothingElseGoes()
{
    QVERIFY(
        !m_folder->value(QStringLiteral("select sql from sqlite_master where name='clean_orphaned_messages'"))
             .isEmpty());
    const QString schema =
        QStringLiteral("select group_concat(sql) from (select sql from sqlite_master order by name)");
    const QString before = m_folder->value(schema);
    remove({2, 5});
    QCOMPARE(m_folder->value(schema), before);
    QCOMPARE(m_folder->value(QStringLiteral("select group_concat(text) from message")),
             QStringLiteral("one,three,four"));
    QCOMPARE(m_folder->value(QStringLiteral("select _last from chat where rowid=2")), QStringLiteral("40"));
    QCOMPARE(
        m_folder->value(QStringLiteral("select group_concat(id) from (select id from handle order by id)")),
        QStringLiteral("ann@example.org,bo@example.org"));
    QCOMPARE(m_folder->value(QStringLiteral("select group_concat(guid) from attachment")),
             QStringLiteral("SHARED-1"));
}

void TestMessageRecycling::unknownMessageStopsTheJob()
{
    const QStringList before = m_folder->content();
    QVERIFY_EXCEPTION_THROWN(remove({1, 99}), Error);
    QVERIFY_EXCEPTION_THROWN(undelete({1}), Error);
    QCOMPARE(m_folder->content(), before);
    StoreFolder none;
    QVERIFY_EXCEPTION_THROWN(removeMessages(none.path(), {1}, m_nobody), Error);
    QVERIFY(!QFile::exists(none.path()));
}

void TestMessageRecycling::savedAgainMeanwhile()
{
    const QStringList before = described();
    remove({1, 2});
    save();
    QCOMPARE(described(), before);
    undelete({1, 2});
    QCOMPARE(described(), before);
    expectSound();
}

void TestMessageRecycling::deletedTwice()
{
    const QStringList before = described();
    remove({5});
    save();
    const qint64 again =
        m_folder->value(QStringLiteral("select rowid from message where text='five'")).toLongLong();
    QCOMPARE(again, 6);
    remove({again});
    QCOMPARE(m_folder->value(QStringLiteral("select count(*) from message"), m_folder->recycleStore()),
             QStringLiteral("1"));
    undelete({5});
    QCOMPARE(described(), before);
    expectSound();
}

void TestMessageRecycling::storeMadeAnewMeanwhile()
{
    remove({4});
    QVERIFY(QFile::remove(m_folder->store()));
    MadeMessages other;
    _MsgChat *chat = other.chat(QStringLiteral("SMS;-;1"), {other.handle(QStringLiteral("1"))});
    for (int i = 0; i < 5; ++i)
        other.message(chat, QString::number(i), i)->guid = QStringLiteral("other %1").arg(i);
    saveMessages(other.refs, nullptr, m_folder->path(), QString(), m_nobody);
    undelete({4});
    QCOMPARE(
        m_folder->value(QStringLiteral("select c.guid from chat as c inner join chat_message_join as j on "
                                       "j.chat_id=c.rowid inner join message as m on m.rowid=j.message_id "
                                       "where m.text='four'")),
        QStringLiteral("iMessage;+;chat1"));
    QCOMPARE(m_folder->value(QStringLiteral("select h.id from handle as h inner join message as m on "
                                            "m.handle_id=h.rowid where m.text='four'")),
             QStringLiteral("ann@example.org"));
    QCOMPARE(m_folder->value(QStringLiteral("select count(*) from message")), QStringLiteral("6"));
    expectSound();
}

void TestMessageRecycling::emptying()
{
    remove({4, 5});
    const QStringList before = described();
    emptyRecycleStore(m_folder->path(), m_nobody);
    QCOMPARE(described(), before);
    QCOMPARE(m_folder->files(), QStringList{QStringLiteral("Attachments/sh/ar/SHARED-1/a.jpg")});
    QVERIFY_EXCEPTION_THROWN(undelete({4}), Error);
    expectSound();
}

// Thousands of messages with attachments go in no more than a few seconds, the user can stop, and every
// trigger is back.
void TestMessageRecycling::emptyingManyMessages()
{
    MadeMessages many;
    _MsgChat *chat = many.chat(QStringLiteral("SMS;-;1"), {many.handle(QStringLiteral("1"))});
    std::vector<qint64> rowids;
    for (int i = 0; i < 8'000; ++i) {
        const QString name = QStringLiteral("MANY-%1").arg(i);
        _MsgMessage *message = many.message(chat, name, i);
        message->guid = name;
        many.attachment(message, name, QStringLiteral("a.jpg"));
        rowids.push_back(i + 6);
    }
    saveMessages(many.refs, nullptr, m_folder->path(), QString(), m_nobody);
    const QString triggers = QStringLiteral(
        "select group_concat(sql) from (select sql from sqlite_master where type='trigger' order by name)");
    const QString before = m_folder->value(triggers);
    QElapsedTimer time;
    time.start();
    QCOMPARE(remove(rowids), 8'000);
    const QStringList content = m_folder->content();
    StopAt third(3);
    QVERIFY_EXCEPTION_THROWN(emptyRecycleStore(m_folder->path(), third), Cancelled);
    QCOMPARE(m_folder->content(), content);
    emptyRecycleStore(m_folder->path(), m_nobody);
    QVERIFY2(time.elapsed() < 15'000, qPrintable(QString::number(time.elapsed())));
    for (const char *table : {"message", "chat", "handle", "attachment"})
        QCOMPARE(m_folder->value(QStringLiteral("select count(*) from ") + QLatin1String(table),
                                 m_folder->recycleStore()),
                 QStringLiteral("0"));
    QCOMPARE(m_folder->value(triggers, m_folder->recycleStore()), before);
    QCOMPARE(m_folder->value(triggers), before);
    expectSound();
}

void TestMessageRecycling::historyComesAlong()
{
    m_folder->run(QStringLiteral("insert into message_history values(5, 'former', 40, 1)"));
    const QString former = QStringLiteral("select group_concat(message_id || text) from message_history");
    remove({5});
    QCOMPARE(m_folder->value(former), QString());
    QCOMPARE(m_folder->value(former, m_folder->recycleStore()), QStringLiteral("5former"));
    undelete({5});
    QCOMPARE(m_folder->value(former), QStringLiteral("5former"));
}

QTEST_GUILESS_MAIN(TestMessageRecycling)
#include "tst_message_recycling.moc"
