#include "made_messages.h"
#include "messages/logic_hash.h"
#include "messages/message_source.h"
#include "messages/save_messages.h"
#include "resources/resources.h"
#include "store_folder.h"

#include <QCryptographicHash>
#include <QTest>

namespace {
SavedMessages save(const MadeMessages &made, const StoreFolder &folder, FileSource *files = nullptr)
{
    NoProgress progress;
    return saveMessages(made.refs, files, folder.path(), QString(), progress);
}

QString md5(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}
} // namespace

Q_DECLARE_METATYPE(ChangedMessages)

class TestMessageStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void hash_data();
    void hash();
    void everyFieldComesBack();
    void savingAgainAddsNothing();
    void sameMessages_data();
    void sameMessages();
    void equalMessagesJoinEveryConversation();
    void equalMessagesKeepTheirAttachments();
    void takenGuidIsSkipped();
    void changedMessage_data();
    void changedMessage();
    void readStateIsTaken();
    void senderResolvedDifferently();
    void recordsWithoutGuid();
    void messageInTwoConversations();
    void messageWithoutConversation();
    void senderWhoLeft();
    void laterNamesAreTaken();
    void newestDateNeverFalls();
    void handlesKeepTheirOrder();
    void triggersOfADevice();
    void oldStoreIsBroughtUpToDate();
    void triggers_data();
    void triggers();
    void stoppedJobLeavesNothing();
    void brokenStoreIsReported();
};

void TestMessageStore::hash_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<int>("date");
    QTest::addColumn<int>("fromMe");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("itemType");
    QTest::addColumn<QString>("expected");
    const QByteArray date("\x00\xd4\xaf\x14", 4); // 347067392, little-endian
    QTest::newRow("incoming") << "Bo@Example.org" << 347067392 << 0 << "Hi" << QStringList() << 0
                              << md5("bo@example.org" + date + QByteArray(1, 0) + "Hi");
    QTest::newRow("outgoing to nobody")
        << "" << 347067392 << 1 << "Hi" << QStringList() << 0 << md5(date + QByteArray(1, 1) + "Hi");
    QTest::newRow("before 2001") << "" << -1 << 0 << "" << QStringList() << 0
                                 << md5(QByteArray("\xff\xff\xff\xff", 4) + QByteArray(1, 0));
    QTest::newRow("marks of attachments") << "" << 0 << 0 << u"\uFFFCa\uFFFC\u00e9"_qs << QStringList() << 0
                                          << md5(QByteArray(5, 0) + "a\xc3\xa9");
    QTest::newRow("names sorted in lower case")
        << "" << 0 << 0 << "x" << QStringLiteral("~/a/Z.JPG||/b/a.Mov|c").split(u'|') << 0
        << md5(QByteArray(5, 0) + "xa.movcz.jpg");
    QTest::newRow("system item") << "bo" << 5 << 1 << "x" << QStringList() << 2 << md5("G-1");
}

void TestMessageStore::hash()
{
    QFETCH(QString, sender);
    QFETCH(int, date);
    QFETCH(int, fromMe);
    QFETCH(QString, text);
    QFETCH(QStringList, files);
    QFETCH(int, itemType);
    _MsgHandle handle;
    handle.id = sender;
    _MsgMessage message;
    message.guid = QStringLiteral("G-1");
    message.handle = sender.isEmpty() ? nullptr : &handle;
    message.date = date;
    message.is_from_me = fromMe;
    message.text = text;
    message.item_type = itemType;
    std::deque<_MsgAttachment> attachments;
    for (const QString &file : files) {
        attachments.emplace_back().filename = file;
        message.attachments.push_back(&attachments.back());
    }
    QTEST(logicHash(message), "expected");
}

void TestMessageStore::everyFieldComesBack()
{
    MadeMessages made;
    auto *bo = made.handle(QStringLiteral("+491711234567"), QStringLiteral("SMS"));
    bo->_ct_name = QStringLiteral("Bo 'B' \u00d6");
    bo->_photo = QByteArray("\x89PNG\0x", 6);
    bo->country = QStringLiteral("de");
    bo->uncanonicalized_id = QStringLiteral("0171 1234567");
    _MsgChat *chat =
        made.chat(QStringLiteral("SMS;+;chat1"), {bo, made.handle(QStringLiteral("ann@example.org"))});
    chat->account_id = QStringLiteral("account");
    chat->properties = QByteArray("bplist00\0", 9);
    chat->room_name = QStringLiteral("room");
    chat->account_login = QStringLiteral("E:");
    chat->is_archived = 1;
    chat->last_addressed_handle = QStringLiteral("+49");
    chat->display_name = QStringLiteral("Garden");
    chat->group_id = QStringLiteral("group");
    chat->state = 3;
    _MsgMessage *full = made.message(chat, QStringLiteral("line one\nline \U0001F33B two \uFFFC"), 500);
    int number = 2;
    using M = _MsgMessage;
    for (const auto field : {&M::replace,
                             &M::version,
                             &M::type,
                             &M::error,
                             &M::date_read,
                             &M::date_delivered,
                             &M::is_delivered,
                             &M::is_finished,
                             &M::is_emote,
                             &M::is_from_me,
                             &M::is_empty,
                             &M::is_delayed,
                             &M::is_auto_reply,
                             &M::is_prepared,
                             &M::is_read,
                             &M::is_system_message,
                             &M::is_sent,
                             &M::has_dd_results,
                             &M::is_service_message,
                             &M::is_forward,
                             &M::was_downgraded,
                             &M::is_archive,
                             &M::was_data_detected,
                             &M::was_deduplicated,
                             &M::is_audio_message,
                             &M::is_played,
                             &M::date_played,
                             &M::group_action_type,
                             &M::share_status,
                             &M::share_direction,
                             &M::is_expirable,
                             &M::expire_state,
                             &M::message_action_type})
        full->*field = number++;
    for (const auto field : {&M::service_center, &M::subject, &M::country, &M::account, &M::account_guid,
                             &M::cache_roomnames, &M::group_title})
        full->*field = QStringLiteral("text %1").arg(number++);
    full->attributedBody = QByteArray("\x04\x0bstreamtyped\0", 14);
    full->otherHandle = chat->handles.back();
    full->other_handle_id = 2;
    _MsgAttachment *photo = made.attachment(full, QStringLiteral("AB12-F"), QStringLiteral("Rose 'x'.JPG"));
    photo->created_date = 11;
    photo->start_date = 12;
    photo->uti = QStringLiteral("public.jpeg");
    photo->mime_type = QStringLiteral("image/jpeg");
    photo->is_outgoing = 1;
    photo->user_info = QByteArray("\0info", 5);
    photo->total_bytes = 5'000'000'000;
    made.attachment(full, QStringLiteral("CD34-F"), QStringLiteral("b.mov"));
    made.message(chat, QString(1'000'000, u'\u00e4'), std::numeric_limits<int>::max())->handle = nullptr;
    made.message(chat, QString(), std::numeric_limits<int>::min())->handle = nullptr;

    StoreFolder folder;
    const SavedMessages summary = save(made, folder);
    QCOMPARE(summary.added, 3);
    QCOMPARE(summary.handled(), 3);
    QStringList expected;
    for (const MessageRef &ref : made.refs)
        expected << described(ref);
    expected.sort();
    const MessageSource source = openLocalMessages(folder.path());
    QCOMPARE(describedMessages(*source.database), expected);
    QCOMPARE(source.database->countMessages(), 3);
    QCOMPARE(source.database->chats().front()->_last, std::numeric_limits<int>::max());
    QCOMPARE(folder.faults(folder.store()), QStringLiteral("ok"));
}

void TestMessageStore::savingAgainAddsNothing()
{
    MadeMessages made;
    MadeFiles files;
    for (int i = 0; i < 3; ++i) {
        _MsgChat *chat = made.chat(QStringLiteral("SMS;-;%1").arg(i), {made.handle(QString::number(i))});
        for (int j = 0; j < 10; ++j) {
            _MsgMessage *message = made.message(chat, QStringLiteral("%1").arg(j), j);
            const auto *attachment = made.attachment(message, QStringLiteral("GUIDGUID-%1-%2").arg(i).arg(j),
                                                     QStringLiteral("a.jpg"));
            files.contents[attachment->source.relativePath] = "content";
        }
    }
    StoreFolder folder;
    QCOMPARE(save(made, folder, &files).attachmentsCopied, 30);
    const QStringList first = folder.content();
    const SavedMessages again = save(made, folder, &files);
    QCOMPARE(again.added, 0);
    QCOMPARE(again.merged, 30);
    QCOMPARE(again.attachmentsCopied, 0);
    QCOMPARE(folder.content(), first);
    QCOMPARE(folder.files().size(), 30);
}

void TestMessageStore::sameMessages_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("date");
    QTest::addColumn<int>("fromMe");
    QTest::addColumn<int>("added");
    QTest::newRow("another GUID") << "Hi"
                                  << "IMG.jpg" << 7 << 0 << 1;
    QTest::newRow("a mark in the text") << u"\uFFFCHi"_qs << "IMG.jpg" << 7 << 0 << 1;
    QTest::newRow("a file name in other letters") << "Hi"
                                                  << "img.JPG" << 7 << 0 << 1;
    QTest::newRow("another file") << "Hi"
                                  << "IMG2.jpg" << 7 << 0 << 2;
    QTest::newRow("another second") << "Hi"
                                    << "IMG.jpg" << 8 << 0 << 2;
    QTest::newRow("the other direction") << "Hi"
                                         << "IMG.jpg" << 7 << 1 << 2;
    QTest::newRow("other letters in the text") << "hi"
                                               << "IMG.jpg" << 7 << 0 << 2;
}

void TestMessageStore::sameMessages()
{
    QFETCH(QString, text);
    QFETCH(QString, file);
    QFETCH(int, date);
    QFETCH(int, fromMe);
    StoreFolder folder;
    MadeMessages first;
    _MsgChat *chat = first.chat(QStringLiteral("SMS;-;1"), {first.handle(QStringLiteral("Bo@Example.org"))});
    first.attachment(first.message(chat, QStringLiteral("Hi"), 7), QStringLiteral("A-1"),
                     QStringLiteral("IMG.jpg"));
    save(first, folder);
    MadeMessages second;
    chat = second.chat(QStringLiteral("SMS;-;1"), {second.handle(QStringLiteral("bo@example.org"))});
    _MsgMessage *message = second.message(chat, text, date);
    message->guid = QStringLiteral("another");
    message->is_from_me = fromMe;
    second.attachment(message, QStringLiteral("A-2"), file);
    save(second, folder);
    QTEST(folder.value(QStringLiteral("select count(*) from message")).toInt(), "added");
}

// One text to two groups in one second, a word twice in one second, two rows without a text.
void TestMessageStore::equalMessagesJoinEveryConversation()
{
    MadeMessages made;
    auto *bo = made.handle(QStringLiteral("1"));
    auto *ann = made.handle(QStringLiteral("2"));
    _MsgChat *family = made.chat(QStringLiteral("iMessage;+;family"), {bo});
    _MsgChat *work = made.chat(QStringLiteral("iMessage;+;work"), {bo, ann});
    for (_MsgChat *chat : {family, work})
        made.message(chat, QStringLiteral("On my way"), 100)->handle = nullptr;
    made.message(family, QStringLiteral("ha"), 200);
    made.message(family, QStringLiteral("ha"), 200);
    made.message(work, QString(), 300);
    made.message(work, QString(), 300);
    StoreFolder folder;
    for (const int added : {3, 0}) {
        const SavedMessages saved = save(made, folder);
        QCOMPARE(saved.added, added);
        QCOMPARE(saved.handled(), 6);
        QCOMPARE(
            saved.report.issues(),
            (QList<Issue>{{.kind = IssueKind::LeftOut, .what = "IDS_ISSUE_EQUAL_MESSAGES", .count = 3}}));
        QCOMPARE(folder.value(QStringLiteral("select group_concat(line) from (select c.guid || ' ' || "
                                             "count(*) || ' ' || c._last as line from "
                                             "chat as c inner join chat_message_join as j on "
                                             "j.chat_id=c.rowid group by c.rowid order by 1)")),
                 QStringLiteral("iMessage;+;family 2 200,iMessage;+;work 2 300"));
        QCOMPARE(folder.value(QStringLiteral("select count(*) from chat_handle_join")), QStringLiteral("3"));
    }
}

void TestMessageStore::equalMessagesKeepTheirAttachments()
{
    MadeMessages made;
    MadeFiles files;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {made.handle(QStringLiteral("1"))});
    for (const char *guid : {"ATTACH-01", "ATTACH-02"})
        files.contents[made.attachment(made.message(chat, QString(), 1), QLatin1String(guid),
                                       QStringLiteral("image.jpg"))
                           ->source.relativePath] = guid;
    StoreFolder folder;
    QCOMPARE(save(made, folder, &files).attachmentsCopied, 2);
    QCOMPARE(folder.files(), (QStringList{u"Attachments/at/ta/ATTACH-01/image.jpg"_qs,
                                          u"Attachments/at/ta/ATTACH-02/image.jpg"_qs}));
    QFile::remove(QDir(folder.path()).filePath(folder.files().last()));
    QCOMPARE(save(made, folder, &files).attachmentsCopied, 1);
    QFile second(QDir(folder.path()).filePath(folder.files().last()));
    QVERIFY(second.open(QIODevice::ReadOnly));
    QCOMPARE(second.readAll(), QByteArray("ATTACH-02"));
}

void TestMessageStore::changedMessage_data()
{
    QTest::addColumn<ChangedMessages>("changed");
    QTest::addColumn<qint64>("age"); // of the backup that has the message with other content
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("history");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("newer, kept out") << ChangedMessages::Keep << qint64(200) << "as sent"
                                     << "" << QByteArray("IDS_ISSUE_CHANGED_MESSAGES");
    QTest::newRow("newer") << ChangedMessages::Update << qint64(200) << "as edited"
                           << "as sent 5 100" << QByteArray("IDS_ISSUE_UPDATED_MESSAGES");
    QTest::newRow("of the same backup") << ChangedMessages::Update << qint64(100) << "as edited"
                                        << "as sent 5 100" << QByteArray("IDS_ISSUE_UPDATED_MESSAGES");
    QTest::newRow("older") << ChangedMessages::Update << qint64(50) << "as sent"
                           << "as edited 5 50" << QByteArray();
}

void TestMessageStore::changedMessage()
{
    QFETCH(ChangedMessages, changed);
    QFETCH(qint64, age);
    QFETCH(QByteArray, told);
    MadeMessages made;
    MadeFiles files;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {made.handle(QStringLiteral("1"))});
    _MsgMessage *message = made.message(chat, QStringLiteral("as sent"), 5);
    made.message(chat, QStringLiteral("other"), 6);
    StoreFolder folder;
    files.age = 100;
    save(made, folder, &files);
    message->text = QStringLiteral("as edited");
    files.age = age;
    NoProgress progress;
    const auto again = [&] {
        return saveMessages(made.refs, &files, folder.path(), QString(), progress, changed);
    };
    const SavedMessages saved = again();
    QCOMPARE(saved.added, 0);
    QCOMPARE(saved.merged, changed == ChangedMessages::Update ? 2 : 1);
    QCOMPARE(saved.report.issues().size(), told.isEmpty() ? 0 : 1);
    QCOMPARE(saved.report.count(told.constData()), told.isEmpty() ? 0 : 1);
    QVERIFY(!saved.report.isFailure());
    const auto expectContent = [&] {
        QTEST(folder.value(QStringLiteral("select text from message where guid='GUID-1'")), "text");
        QTEST(folder.value(QStringLiteral(
                  "select group_concat(text || ' ' || date || ' ' || taken_at) from message_history")),
              "history");
        QCOMPARE(folder.value(QStringLiteral("select count(*) from message")), QStringLiteral("2"));
    };
    expectContent();
    again();
    expectContent();
    // The former version is known again, whichever it is.
    message->text =
        changed == ChangedMessages::Update && age >= 100 ? QStringLiteral("as sent") : message->text;
    if (changed == ChangedMessages::Update) {
        const SavedMessages former = save(made, folder);
        QCOMPARE(former.merged, 2);
        QVERIFY(former.report.isEmpty());
    }
}

void TestMessageStore::readStateIsTaken()
{
    MadeMessages made;
    _MsgMessage *message = made.message(made.chat(QStringLiteral("SMS;-;1"), {}), QStringLiteral("x"), 5);
    StoreFolder folder;
    save(made, folder);
    message->is_read = 1;
    message->date_read = 9;
    const QString state = QStringLiteral("select is_read || ' ' || date_read from message");
    save(made, folder);
    QCOMPARE(folder.value(state), QStringLiteral("0 0"));
    NoProgress progress;
    saveMessages(made.refs, nullptr, folder.path(), QString(), progress, ChangedMessages::Update);
    QCOMPARE(folder.value(state), QStringLiteral("1 9"));
    // Another message, equal to it but for its GUID, says nothing of this one.
    message->guid = QStringLiteral("another");
    message->date_read = 99;
    saveMessages(made.refs, nullptr, folder.path(), QString(), progress, ChangedMessages::Update);
    QCOMPARE(folder.value(state), QStringLiteral("1 9"));
}

// As of somebody whose number one device normalises and the other does not: one row in both conversations.
void TestMessageStore::senderResolvedDifferently()
{
    StoreFolder folder;
    for (const char *sender : {"+491701", "01701"}) {
        MadeMessages made;
        const QString id = QLatin1String(sender);
        made.message(made.chat(QStringLiteral("iMessage;-;") + id, {made.handle(id)}),
                     QStringLiteral("hello"), 5);
        const SavedMessages saved = save(made, folder);
        QCOMPARE(saved.report.count("IDS_ISSUE_CHANGED_MESSAGES"), id.startsWith(u'+') ? 0 : 1);
    }
    QCOMPARE(folder.value(QStringLiteral("select count(*) from message")), QStringLiteral("1"));
    QCOMPARE(folder.value(QStringLiteral("select count(*) from chat_message_join")), QStringLiteral("2"));
}

void TestMessageStore::takenGuidIsSkipped()
{
    MadeMessages made;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {made.handle(QStringLiteral("1"))});
    made.message(chat, QStringLiteral("as sent"), 1);
    made.message(chat, QStringLiteral("as edited"), 1)->guid = QStringLiteral("GUID-1");
    made.message(made.chat(QStringLiteral("SMS;-;2"), {}), QStringLiteral("alone"), 1)->guid =
        QStringLiteral("GUID-1");
    made.message(chat, QStringLiteral("after"), 2);
    StoreFolder folder;
    const SavedMessages summary = save(made, folder);
    QCOMPARE(summary.added, 2);
    QCOMPARE(summary.report.count("IDS_ISSUE_CHANGED_MESSAGES"), 2);
    QCOMPARE(folder.value(QStringLiteral("select group_concat(text, ',') from message")),
             QStringLiteral("as sent,after"));
    QCOMPARE(folder.value(QStringLiteral("select count(*) from chat")), QStringLiteral("1"));
}

void TestMessageStore::recordsWithoutGuid()
{
    MadeMessages made;
    for (const char *identifier : {"1", "2"}) {
        _MsgChat *chat = made.chat(QStringLiteral("SMS;-;") + QLatin1String(identifier), {});
        chat->guid.clear();
        _MsgMessage *message = made.message(chat, QLatin1String(identifier), 1);
        message->guid.clear();
        made.attachment(message, QString(), QStringLiteral("a.jpg"));
    }
    StoreFolder folder;
    QCOMPARE(save(made, folder).added, 2);
    QCOMPARE(save(made, folder).added, 0);
    QCOMPARE(folder.value(QStringLiteral("select count(distinct guid) from message")), QStringLiteral("2"));
    QCOMPARE(folder.value(QStringLiteral("select count(distinct guid) from chat")), QStringLiteral("2"));
    QCOMPARE(folder.value(QStringLiteral("select count(distinct guid) from attachment")),
             QStringLiteral("2"));
}

void TestMessageStore::messageInTwoConversations()
{
    MadeMessages made;
    auto *bo = made.handle(QStringLiteral("1"));
    _MsgChat *first = made.chat(QStringLiteral("SMS;-;1"), {bo});
    _MsgChat *second = made.chat(QStringLiteral("SMS;+;2"), {bo, made.handle(QStringLiteral("2"))});
    _MsgMessage *message = made.message(first, QStringLiteral("both"), 1);
    made.refs.push_back({second, message});
    StoreFolder folder;
    for (const int added : {1, 0}) {
        const SavedMessages summary = save(made, folder);
        QCOMPARE(summary.added, added);
        QCOMPARE(summary.handled(), 1);
        QCOMPARE(folder.value(QStringLiteral("select count(*) from message")), QStringLiteral("1"));
        QCOMPARE(folder.value(QStringLiteral("select count(*) from chat_message_join")), QStringLiteral("2"));
    }
}

void TestMessageStore::messageWithoutConversation()
{
    MadeMessages made;
    made.message(nullptr, QStringLiteral("lost"), 1);
    StoreFolder folder;
    QCOMPARE(save(made, folder).added, 1);
    const MessageSource source = openLocalMessages(folder.path());
    QCOMPARE(describedMessages(*source.database).size(), 1);
    QCOMPARE(chatName(*source.database->chats().front(), Addresses::With), QStringLiteral("Unknown"));
    QCOMPARE(folder.faults(folder.store()), QStringLiteral("ok"));
}

void TestMessageStore::senderWhoLeft()
{
    MadeMessages made;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;+;1"),
                               {made.handle(QStringLiteral("1")), made.handle(QStringLiteral("2"))});
    made.message(chat, QStringLiteral("bye"), 1)->handle = made.handle(QStringLiteral("gone@example.org"));
    StoreFolder folder;
    save(made, folder);
    const MessageSource source = openLocalMessages(folder.path());
    QCOMPARE(describedMessages(*source.database), QStringList{described(made.refs.front())});
}

void TestMessageStore::laterNamesAreTaken()
{
    StoreFolder folder;
    for (const QString &name : {QString(), QStringLiteral("Bo"), QStringLiteral("Robert"), QString()}) {
        MadeMessages made;
        auto *bo = made.handle(QStringLiteral("1"));
        bo->_ct_name = name;
        made.message(made.chat(QStringLiteral("SMS;-;1"), {bo}), name, 1);
        save(made, folder);
    }
    QCOMPARE(folder.value(QStringLiteral("select _ct_name from handle")), QStringLiteral("Bo"));
}

void TestMessageStore::newestDateNeverFalls()
{
    StoreFolder folder;
    for (const int date : {100, 300, 200}) {
        MadeMessages made;
        _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {});
        chat->_last = 999; // of a message that is not saved
        made.message(chat, QString(), date)->guid = QString::number(date);
        save(made, folder);
    }
    QCOMPARE(folder.value(QStringLiteral("select _last from chat")), QStringLiteral("300"));
}

void TestMessageStore::handlesKeepTheirOrder()
{
    StoreFolder folder;
    for (const qint64 offset : {qint64(0), qint64(1), std::numeric_limits<qint64>::max() - 3}) {
        MadeMessages made;
        std::vector<const _MsgHandle *> handles;
        for (const char *id : {"c", "b", "a"}) {
            auto *handle = made.handle(QLatin1String(id) + QString::number(offset));
            handle->rowid = offset + 3 - static_cast<qint64>(handles.size());
            handles.push_back(handle);
        }
        made.message(made.chat(QStringLiteral("SMS;+;%1").arg(offset), handles), QString::number(offset), 1)
            ->guid = QString::number(offset);
        QCOMPARE(save(made, folder).added, 1);
    }
    const MessageSource source = openLocalMessages(folder.path());
    source.database->loadChats();
    QCOMPARE(chatName(*source.database->chats().front(), Addresses::Without), QStringLiteral("a0, b0, c0"));
    QCOMPARE(folder.value(QStringLiteral("select count(*) from handle")), QStringLiteral("9"));
}

// They call functions that only a device has.
void TestMessageStore::triggersOfADevice()
{
    StoreFolder folder;
    MadeMessages made;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {made.handle(QStringLiteral("1"))});
    made.attachment(made.message(chat, QStringLiteral("x"), 1), QStringLiteral("A-1"),
                    QStringLiteral("a.jpg"));
    save(made, folder);
    folder.run(QStringLiteral(
        "create trigger before_t before delete on attachment begin "
        "select before_delete_attachment_path(old.rowid, old.guid); end;"
        "create trigger after_t after delete on attachment begin select "
        "delete_attachment_path(old.filename); "
        "end;"
        "create table deleted_messages(guid text); insert into deleted_messages values('x');"
        "create table sync_deleted_messages(guid text); insert into sync_deleted_messages values('x');"
        "create table sync_deleted_chats(guid text); insert into sync_deleted_chats values('x');"
        "create table sync_deleted_attachments(guid text); insert into sync_deleted_attachments "
        "values('x');"));
    NoProgress progress;
    QCOMPARE(removeMessages(folder.path(), {1}, progress), 1);
    QCOMPARE(folder.value(QStringLiteral("select count(*) from attachment")), QStringLiteral("0"));
    for (const char *table :
         {"deleted_messages", "sync_deleted_messages", "sync_deleted_chats", "sync_deleted_attachments"})
        QCOMPARE(folder.value(QStringLiteral("select count(*) from %1").arg(QLatin1String(table))),
                 QStringLiteral("0"));
}

void TestMessageStore::oldStoreIsBroughtUpToDate()
{
    MadeMessages made;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {made.handle(QStringLiteral("1"))});
    made.attachment(made.message(chat, QStringLiteral("old"), 1), QStringLiteral("A-1"),
                    QStringLiteral("a.jpg"));
    made.message(chat, QStringLiteral("to nobody"), 2)->handle = nullptr;
    StoreFolder folder;
    save(made, folder);
    const QString allHashes = QStringLiteral("select group_concat(logic_hash) from message");
    const QString hashes = folder.value(allHashes);
    QCOMPARE(hashes.count(u','), 1);
    folder.run(QStringLiteral("drop index message_idx_logic_hash;"));
    for (const char *column : {"is_audio_message", "is_played", "date_played", "item_type", "other_handle",
                               "group_title", "group_action_type", "share_status", "share_direction",
                               "is_expirable", "expire_state", "message_action_type", "logic_hash"})
        folder.run(QStringLiteral("alter table message drop column %1;").arg(QLatin1String(column)));
    folder.run(QStringLiteral("alter table chat drop column group_id;"));

    QCOMPARE(save(made, folder).added, 0);
    QCOMPARE(folder.value(allHashes), hashes);
    QCOMPARE(folder.value(QStringLiteral("select other_handle from message")), QStringLiteral("-1"));
    QCOMPARE(
        folder.value(QStringLiteral("select sql from sqlite_master where name='message_idx_logic_hash'")),
        QStringLiteral("CREATE INDEX message_idx_logic_hash ON message(logic_hash)"));
    QVERIFY(folder.value(QStringLiteral("select sql from sqlite_master where name='chat'"))
                .contains(QStringLiteral("group_id TEXT")));
}

void TestMessageStore::triggers_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("answer");
    const QString handles =
        QStringLiteral("select group_concat(id) from (select id from handle order by id)");
    QTest::newRow("the last message of a sender outside")
        << "delete from message where text='of the outsider'" << handles << "both,member";
    QTest::newRow("a message of a member")
        << "delete from message where text='of the member'" << handles << "both,member,outsider";
    QTest::newRow("a member who wrote nothing is struck off")
        << "delete from chat_handle_join where handle_id=(select rowid from handle where id='both')"
        << handles << "member,outsider";
    QTest::newRow("a member who wrote is struck off")
        << "delete from chat_handle_join where handle_id=(select rowid from handle where id='member')"
        << handles << "both,member,outsider";
    QTest::newRow("a message loses its conversation")
        << "delete from chat_message_join where message_id=(select rowid from message where text='of the "
           "outsider')"
        << "select group_concat(text) from message"
        << "of the member";
    QTest::newRow("an attachment loses its message") << "delete from message_attachment_join"
                                                     << "select count(*) from attachment"
                                                     << "0";
    QTest::newRow("a message loses its attachment") << "delete from message_attachment_join"
                                                    << "select sum(cache_has_attachments) from message"
                                                    << "0";
    QTest::newRow("a message gains an attachment") << "insert into message_attachment_join select m.rowid, 1 "
                                                      "from message as m where text='of the outsider'"
                                                   << "select sum(cache_has_attachments) from message"
                                                   << "2";
}

void TestMessageStore::triggers()
{
    QFETCH(QString, statement);
    QFETCH(QString, question);
    StoreFolder folder;
    MadeMessages made;
    auto *member = made.handle(QStringLiteral("member"));
    _MsgChat *chat = made.chat(QStringLiteral("SMS;+;1"), {member, made.handle(QStringLiteral("both"))});
    made.attachment(made.message(chat, QStringLiteral("of the member"), 1), QStringLiteral("A-1"),
                    QStringLiteral("a.jpg"));
    made.message(chat, QStringLiteral("of the outsider"), 2)->handle =
        made.handle(QStringLiteral("outsider"));
    save(made, folder);
    folder.run(statement);
    QTEST(folder.value(question), "answer");
}

void TestMessageStore::stoppedJobLeavesNothing()
{
    MadeMessages made;
    MadeFiles files;
    _MsgChat *chat = made.chat(QStringLiteral("SMS;-;1"), {made.handle(QStringLiteral("1"))});
    for (int i = 0; i < 10; ++i) {
        const auto *attachment =
            made.attachment(made.message(chat, QString::number(i), i), QStringLiteral("GUIDGUID-%1").arg(i),
                            QStringLiteral("a.jpg"));
        files.contents[attachment->source.relativePath] = "content";
    }
    StoreFolder folder;
    StopAt fifth(5);
    QVERIFY_EXCEPTION_THROWN(saveMessages(made.refs, &files, folder.path(), QString(), fifth), Cancelled);
    QVERIFY(!QFile::exists(folder.path()));

    MadeMessages before;
    before.message(before.chat(QStringLiteral("SMS;-;0"), {}), QStringLiteral("before"), 1)->guid =
        QStringLiteral("before");
    save(before, folder);
    const QStringList content = folder.content();
    StopAt again(5);
    QVERIFY_EXCEPTION_THROWN(saveMessages(made.refs, &files, folder.path(), QString(), again), Cancelled);
    QCOMPARE(folder.content(), content);
}

void TestMessageStore::brokenStoreIsReported()
{
    StoreFolder folder;
    QDir().mkpath(folder.path());
    QFile file(folder.store());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    MadeMessages made;
    made.message(made.chat(QStringLiteral("SMS;-;0"), {}), QString(), 1);
    QVERIFY_EXCEPTION_THROWN(save(made, folder), Error);
    QVERIFY_EXCEPTION_THROWN(openLocalMessages(folder.path()), Error);
    QCOMPARE(QFileInfo(folder.store()).size(), 4096);
}

QTEST_GUILESS_MAIN(TestMessageStore)
#include "tst_message_store.moc"
