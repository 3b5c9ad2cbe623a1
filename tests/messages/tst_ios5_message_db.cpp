#include "old_case.h"
#include "resources/resources.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr int newYear2012 = 347068800;
constexpr qint64 newYear2012Unix = 1325376000;
constexpr int first = std::numeric_limits<int>::min();
constexpr int last = std::numeric_limits<int>::max();
constexpr qint64 iMessageRowid = IOS5MessageDb::firstIMessageRowid;

QStringList idsOf(const _MsgChat &chat)
{
    QStringList ids;
    for (const _MsgHandle *handle : chat.handles)
        ids.append(handle->id);
    return ids;
}

} // namespace

/// The conversations and messages of iOS 5 and earlier.
class TestIos5MessageDb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init() { m_case = std::make_unique<OldCase>(); }
    void textMessages_data();
    void textMessages();
    void groups_data();
    void groups();
    void groupsAreToldApart();
    void groupWithoutNewestMessage();
    void groupThatIsMissing();
    void sendersInAGroup();
    void iMessageChats_data();
    void iMessageChats();
    void iMessages_data();
    void iMessages();
    void lastDates();
    void textOutOfStyledBody();
    void oneChatAtATime();
    void stoppedLoadCanBeRepeated();
    void derivedGuidsStay();
    void withoutIMessage();
    void hostileRows();
    void hugeTextAndCrowd();

private:
    std::unique_ptr<OldCase> m_case;
};

void TestIos5MessageDb::textMessages_data()
{
    QTest::addColumn<qint64>("stored");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("date");
    QTest::addColumn<int>("isFromMe");
    QTest::newRow("received") << newYear2012Unix << 2 << newYear2012 << 0;
    QTest::newRow("sent") << newYear2012Unix << 3 << newYear2012 << 1;
    QTest::newRow("not sent, it failed") << newYear2012Unix << 33 << newYear2012 << 0;
    QTest::newRow("before 2001") << qint64(0) << 2 << -978307200 << 0;
    QTest::newRow("after 2038") << qint64(3000000000) << 2 << 2021692800 << 0;
    QTest::newRow("never") << std::numeric_limits<qint64>::max() << 2 << last << 0;
    QTest::newRow("before everything") << std::numeric_limits<qint64>::min() << 2 << first << 0;
}

void TestIos5MessageDb::textMessages()
{
    QFETCH(qint64, stored);
    QFETCH(int, flags);
    m_case->made->group(1, 5, {u"+1 (415) 555-0132"_s});
    m_case->made->text(5, 1, stored, flags, u"+14155550132"_s, u"Hello"_s);
    m_case->made->run(u"update message set svc_center='+1555', subject='about'"_s);
    const _MsgChat &chat = *m_case->load().chats().front();
    QCOMPARE(chat.messages.size(), 1u);
    const _MsgMessage &read = *chat.messages.front();
    QCOMPARE(read.rowid, 5);
    QCOMPARE(read.sourceRowid, 5);
    QCOMPARE(read.chat, &chat);
    QCOMPARE(read.text, u"Hello"_s);
    QCOMPARE(read.service_center, u"+1555"_s);
    QCOMPARE(read.subject, u"about"_s);
    QCOMPARE(read.service, u"SMS"_s);
    QCOMPARE(read.account, u"e:"_s);
    QCOMPARE(read.guid.size(), 36);
    QTEST(read.date, "date");
    QTEST(read.is_from_me, "isFromMe");
    QCOMPARE(m_case->db->report().count("IDS_ISSUE_MESSAGE_DATES"), read.date == first || read.date == last);
    QCOMPARE(read.handle, chat.handles.front());
    QCOMPARE((QList{read.version, read.type, read.is_delivered, read.is_finished, read.is_prepared,
                    read.is_read, read.was_data_detected, read.is_emote, read.error}),
             (QList{10, 0, 0, 1, 1, 1, 1, 0, 0}));
}

void TestIos5MessageDb::groups_data()
{
    QTest::addColumn<QStringList>("members");
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<int>("style");
    QTest::addColumn<QString>("guid");
    const QString groupGuid = u"SMS;\\+;chat[0-9]+"_s;
    QTest::newRow("one") << QStringList{u"+1 415 555"_s} << QStringList{u"+1415555"_s} << 45
                         << u"SMS;-;\\+1415555"_s;
    QTest::newRow("two") << QStringList{u"111"_s, u"A@x.org"_s} << QStringList{u"111"_s, u"a@x.org"_s} << 43
                         << groupGuid;
    QTest::newRow("one, twice") << QStringList{u"11-1"_s, u"1 11"_s} << QStringList{u"111"_s} << 45
                                << u"SMS;-;111"_s;
    QTest::newRow("nobody") << QStringList() << QStringList() << 45 << u"SMS;-;-77"_s;
    QTest::newRow("an empty address") << QStringList{u""_s} << QStringList() << 45 << u"SMS;-;-77"_s;
}

void TestIos5MessageDb::groups()
{
    QFETCH(QStringList, members);
    QFETCH(QString, guid);
    m_case->made->group(3, 5, members, -77);
    m_case->made->text(5, 3, newYear2012Unix, 2, u"111"_s, u"x"_s);
    QCOMPARE(m_case->load().chats().size(), 1u);
    const _MsgChat &chat = *m_case->db->chats().front();
    QCOMPARE(chat.rowid, 3);
    QTEST(idsOf(chat), "ids");
    QTEST(chat.style, "style");
    QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(guid)).match(chat.guid).hasMatch(),
             qPrintable(chat.guid));
    QCOMPARE(chat._last, newYear2012);
    QCOMPARE(chat.state, 3);
    QCOMPARE(chat.service_name, u"SMS"_s);
    QCOMPARE(chat.account_login, u"E:"_s);
    QCOMPARE(chat.chat_identifier, chat.handles.empty() ? u"unknown"_s : chat.guid.section(u';', 2));
    QCOMPARE(chat.room_name, chat.isGroup() ? chat.chat_identifier : QString());
    QCOMPARE(chat.group_id.isEmpty(), !chat.isGroup());
    for (const _MsgHandle *handle : chat.handles)
        QCOMPARE(handle->service, u"SMS"_s);
}

void TestIos5MessageDb::groupsAreToldApart()
{
    m_case->made->group(1, 5, {u"111"_s, u"222"_s});
    m_case->made->group(2, 5, {u"111"_s, u"333"_s});
    m_case->made->group(3, 5, {u"222"_s, u"111"_s, u"111"_s});
    m_case->made->text(5, 1, 0, 2, u"111"_s, u"x"_s);
    m_case->load();
    QVERIFY(m_case->db->chat(1)->guid != m_case->db->chat(2)->guid);
    QVERIFY(m_case->db->chat(1)->group_id != m_case->db->chat(2)->group_id);
    QCOMPARE(m_case->db->chat(3)->guid, m_case->db->chat(1)->guid); // the same people in another order
    QCOMPARE(m_case->db->chat(1)->handles.front(), m_case->db->chat(2)->handles.front());
}

void TestIos5MessageDb::groupWithoutNewestMessage()
{
    m_case->made->group(1, 4711, {u"111"_s});
    m_case->made->text(5, 1, newYear2012Unix, 2, u"111"_s, u"still here"_s);
    m_case->made->text(6, 99, newYear2012Unix, 3, u"222"_s, u"of no group"_s);
    m_case->made->group(2, 4712, {u"333"_s});
    QCOMPARE(m_case->load().chats().size(), 1u);
    QCOMPARE(m_case->db->countMessages(), 2);
    QCOMPARE(m_case->message(5)->chat, m_case->db->chat(1));
    QCOMPARE(m_case->db->chat(1)->_last, newYear2012);
    QVERIFY(!m_case->message(6)->chat && m_case->db->report().isEmpty());
    QCOMPARE(m_case->db->conversations().back()->messages.front(), m_case->message(6));
}

void TestIos5MessageDb::groupThatIsMissing()
{
    m_case->made->group(1, 5, {u"111"_s});
    m_case->made->group(2, 6, {u"222"_s});
    m_case->made->text(5, 1, newYear2012Unix, 2, u"111"_s, u"x"_s);
    m_case->made->text(6, 2, newYear2012Unix, 2, u"222"_s, u"its group is gone"_s);
    m_case->made->run(u"delete from msg_group where rowid=2"_s);
    m_case->load();
    QVERIFY(!m_case->message(6)->chat);
    QCOMPARE(m_case->db->countMessages(), 2);
    QCOMPARE(m_case->db->report().count("IDS_ISSUE_MESSAGES_OF_MISSING_CHATS"), 1);
}

void TestIos5MessageDb::sendersInAGroup()
{
    m_case->made->group(1, 5, {u"111"_s, u"0171 5"_s});
    m_case->made->run(u"update group_member set country='de'"_s);
    m_case->made->text(5, 1, 10, 2, u"+49 171 5"_s, u"from a member"_s);
    m_case->made->text(6, 1, 20, 3, u"111"_s, u"from me"_s);
    m_case->made->text(7, 1, 30, 2, u"333"_s, u"from one who left"_s);
    m_case->load();
    const _MsgChat &chat = *m_case->db->chat(1);
    QCOMPARE(m_case->message(5)->handle, chat.handles.back());
    QCOMPARE(m_case->message(5)->handle_id, chat.handles.back()->rowid);
    QCOMPARE(m_case->message(6)->handle, nullptr);
    QCOMPARE(m_case->message(7)->handle->id, u"333"_s);
    QCOMPARE(idsOf(chat), (QStringList{u"111"_s, u"+491715"_s}));
    QCOMPARE(conversationTitle({&chat, m_case->message(5)}), u"111, +491715 (+491715)"_s);
}

void TestIos5MessageDb::iMessageChats_data()
{
    QTest::addColumn<int>("storedStyle");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QByteArray>("participants");
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<int>("style");
    QTest::addColumn<QString>("guid");
    QTest::addColumn<int>("skipped");
    const QStringList two{u"+1 415"_s, u"Bo@x.org"_s};
    const QStringList twoIds{u"+1415"_s, u"bo@x.org"_s};
    const QStringList one{u"+1415"_s};
    const QByteArray list = OldMessages::list(two);
    const QString room = u"chat77"_s;
    QTest::newRow("one") << 45 << u"+1 (415)"_s << OldMessages::list({u"+1-415"_s}) << one << 45
                         << u"iMessage;-;+1415"_s << 0;
    QTest::newRow("group") << 43 << room << list << twoIds << 43 << u"iMessage;+;chat77"_s << 0;
    QTest::newRow("group of no style") << 0 << room << list << twoIds << 43 << u"iMessage;+;chat77"_s << 0;
    QTest::newRow("archive") << 43 << room << archivedList(two, false) << twoIds << 43
                             << u"iMessage;+;chat77"_s << 0;
    QTest::newRow("archive of objects")
        << 43 << room << archivedList(two, true) << twoIds << 43 << u"iMessage;+;chat77"_s << 0;
    QTest::newRow("XML") << 43 << room
                         << sample::xmlPlist(sample::PlistValue::Array{two[0], two[1], 5, two[0]}) << twoIds
                         << 43 << u"iMessage;+;chat77"_s << 0;
    QTest::newRow("one, no list") << 45 << u"+1415"_s << QByteArray() << one << 45 << u"iMessage;-;+1415"_s
                                  << 0;
    QTest::newRow("one, broken list")
        << 45 << u"+1415"_s << list.left(list.size() / 2) << one << 45 << u"iMessage;-;+1415"_s << 1;
    QTest::newRow("group, broken list")
        << 43 << room << QByteArray("bplist00 nothing") << QStringList() << 43 << u"iMessage;+;chat77"_s << 1;
    QTest::newRow("group, a list of another kind")
        << 43 << room << sample::binaryPlist(sample::PlistValue::Dictionary{{u"$objects"_s, 1}})
        << QStringList() << 43 << u"iMessage;+;chat77"_s << 1;
}

void TestIos5MessageDb::iMessageChats()
{
    QFETCH(int, storedStyle);
    QFETCH(QString, identifier);
    QFETCH(QByteArray, participants);
    m_case->made->group(1, 5, {u"+1415"_s});
    m_case->made->text(5, 1, 0, 2, u"+1415"_s, u"x"_s);
    m_case->made->chat(1, storedStyle, identifier, participants);
    QCOMPARE(m_case->load().chats().size(), 2u);
    const _MsgChat &chat = *m_case->db->chat(iMessageRowid);
    QTEST(idsOf(chat), "ids");
    QTEST(chat.style, "style");
    QTEST(chat.guid, "guid");
    QCOMPARE(chat.chat_identifier, chat.guid.section(u';', 2));
    QCOMPARE(chat.service_name, u"iMessage"_s);
    QCOMPARE(chat.account_id, u"ACCOUNT"_s);
    QCOMPARE(chat.account_login, u"E:me@example.org"_s);
    QCOMPARE(chat.state, 3);
    QTEST(int(m_case->db->report().count(IssueKind::Damaged)), "skipped");
    for (const _MsgHandle *handle : chat.handles) {
        QCOMPARE(handle->service, u"iMessage"_s); // not the handle of the text messages
        QCOMPARE(m_case->db->handle(handle->rowid), handle);
    }
}

void TestIos5MessageDb::iMessages_data()
{
    QTest::addColumn<QString>("room");
    QTest::addColumn<QString>("handle");
    QTest::addColumn<int>("delivered");
    QTest::addColumn<qint64>("chat"); // 0: none
    QTest::addColumn<int>("isFromMe");
    QTest::addColumn<QString>("sender"); // empty: nobody
    QTest::newRow("received") << QString() << u"+1 415"_s << 0 << iMessageRowid << 0 << u"+1415"_s;
    QTest::newRow("sent") << QString() << u"+1415"_s << 1 << iMessageRowid << 1 << u"+1415"_s;
    QTest::newRow("in a room") << u"chat77"_s << u"+1415"_s << 0 << iMessageRowid + 1 << 0 << u"+1415"_s;
    QTest::newRow("sent to a room") << u"chat77"_s << u"+1415"_s << newYear2012 << iMessageRowid + 1 << 1
                                    << QString();
    QTest::newRow("by one who left") << u"chat77"_s << u"+1999"_s << 0 << iMessageRowid + 1 << 0
                                     << u"+1999"_s;
    QTest::newRow("in a room that is gone") << u"chat78"_s << u"+1415"_s << 0 << qint64(0) << 0 << u"+1415"_s;
    QTest::newRow("by a stranger") << QString() << u"+1999"_s << 0 << qint64(0) << 0 << u"+1999"_s;
}

void TestIos5MessageDb::iMessages()
{
    QFETCH(QString, room);
    QFETCH(QString, handle);
    QFETCH(int, delivered);
    QFETCH(QString, sender);
    m_case->made->chat(1, 45, u"+1415"_s, OldMessages::list({u"+1415"_s}));
    m_case->made->chat(2, 43, u"chat77"_s, OldMessages::list({u"+1415"_s, u"bo@x.org"_s}));
    m_case->made->iMessage(9, room, handle, newYear2012, delivered, u"Hi"_s);
    m_case->made->run(u"update message set madrid_date_read=77, madrid_error=4, madrid_account='E:me', "
                      "madrid_account_guid='AG', madrid_attributedBody=x'0102'"_s);
    m_case->load();
    const _MsgMessage &read = *m_case->message(9);
    QTEST(read.chat ? read.chat->rowid : 0, "chat");
    QTEST(read.is_from_me, "isFromMe");
    QCOMPARE(read.handle ? read.handle->id : QString(), sender);
    QCOMPARE(read.guid, u"GUID-9"_s);
    QCOMPARE(read.service, u"iMessage"_s);
    QCOMPARE((QList{read.date, read.date_read, read.date_delivered, read.error}),
             (QList{newYear2012, 77, delivered, 4}));
    QCOMPARE((QStringList{read.account, read.account_guid}), (QStringList{u"E:me"_s, u"AG"_s}));
    QCOMPARE(read.attributedBody, QByteArray("\1\2"));
    QCOMPARE(read.text, u"Hi"_s);
}

void TestIos5MessageDb::lastDates()
{
    m_case->made->chat(1, 45, u"+1415"_s, OldMessages::list({u"+1415"_s}));
    m_case->made->chat(2, 43, u"chat77"_s, OldMessages::list({u"+1415"_s, u"bo@x.org"_s}));
    m_case->made->iMessage(1, {}, u"+1 415"_s, 300, 0, u"spelt in another way"_s);
    m_case->made->iMessage(2, {}, u"+1415"_s, 200, 0, u"x"_s);
    m_case->made->iMessage(3, u"chat77"_s, u"+1415"_s, 500, 0, u"said to all"_s);
    m_case->load();
    QCOMPARE(m_case->db->chat(iMessageRowid)->_last, 300);
    QCOMPARE(m_case->db->chat(iMessageRowid + 1)->_last, 500);
}

void TestIos5MessageDb::textOutOfStyledBody()
{
    m_case->made->iMessage(1, {}, u"+1415"_s, 1, 0, {});
    m_case->made->run(u"update message set madrid_attributedBody=x'040b73747265616d'"_s);
    m_case->load();
    QCOMPARE(m_case->db->report().count("IDS_ISSUE_MESSAGE_BODIES"), 1);
    QCOMPARE(m_case->message(1)->text, QString());
}

void TestIos5MessageDb::oneChatAtATime()
{
    m_case->made->group(1, 2, {u"111"_s});
    m_case->made->group(2, 3, {u"222"_s});
    m_case->made->text(1, 1, 0, 2, u"111"_s, u"x"_s);
    m_case->made->text(2, 1, 1, 3, u"111"_s, u"y"_s);
    m_case->made->text(3, 2, 2, 2, u"222"_s, u"z"_s);
    m_case->made->part(2, 0, u"text/plain"_s, {}, "part");
    m_case->made->chat(1, 45, u"+1415"_s, OldMessages::list({u"+1415"_s}));
    m_case->made->chat(2, 43, u"chat77"_s, OldMessages::list({u"+1415"_s, u"+1416"_s}));
    m_case->made->attachment(1, u"A"_s, u"~/a.jpg"_s);
    m_case->made->iMessage(4, {}, u"+1-415"_s, 4, 0, u"to one"_s, OldMessages::list({u"A"_s}));
    m_case->made->iMessage(5, u"chat77"_s, u"+1415"_s, 5, 0, u"to all"_s, OldMessages::list({u"A"_s}));
    m_case->load();
    const auto counts = m_case->db->countMessagesByChat();
    QCOMPARE(counts, (std::unordered_map<qint64, qint64>{
                         {1, 2}, {2, 1}, {iMessageRowid, 1}, {iMessageRowid + 1, 1}}));
    m_case->db->loadChats();
    const auto loaded = [&] {
        QList<std::size_t> sizes;
        for (const _MsgChat *chat : m_case->db->chats())
            sizes.append(chat->messages.size());
        return sizes;
    };
    const QList<QList<std::size_t>> steps{{2, 0, 0, 0}, {2, 1, 0, 0}, {2, 1, 1, 0}, {2, 1, 1, 1}};
    for (std::size_t i = 0; i < 4; ++i)
        for (int again = 0; again < 2; ++again) {
            m_case->db->loadMessages(m_case->db->chats()[i]->rowid, m_case->progress);
            QCOMPARE(loaded(), steps[static_cast<int>(i)]);
        }
    QCOMPARE(m_case->message(2)->text, u"y\npart"_s);
    QCOMPARE(m_case->message(4)->attachments, m_case->message(5)->attachments);
    QCOMPARE(m_case->message(4)->attachments.size(), 1u);
}

void TestIos5MessageDb::stoppedLoadCanBeRepeated()
{
    class StopLater : public NoProgress
    {
    public:
        bool isCancelled() const override { return ++asked > 2; }
        mutable int asked = 0;
    } stop;
    constexpr int rows = 1000;
    m_case->made->run(u"begin"_s);
    m_case->made->group(1, 1, {u"111"_s});
    for (int i = 1; i <= rows; ++i) {
        m_case->made->text(i, 1, i, 2, u"111"_s, u"text"_s);
        m_case->made->part(i, 0, u"text/plain"_s, {}, "part");
    }
    m_case->made->run(u"commit"_s);
    m_case->load();
    m_case->db->loadChats(); // forgets what was loaded
    QVERIFY_THROWS_EXCEPTION(Cancelled, m_case->db->loadMessages(0, stop));
    QVERIFY(m_case->db->messageCount() > 100 && m_case->db->messageCount() < rows);
    m_case->db->loadMessages(0, m_case->progress);
    QCOMPARE(m_case->db->chat(1)->messages.size(), std::size_t(rows));
    QCOMPARE(m_case->message(rows)->text, u"text\npart"_s);
    QCOMPARE(m_case->message(1)->text, u"text\npart"_s);
}

void TestIos5MessageDb::derivedGuidsStay()
{
    m_case->made->group(1, 2, {u"111"_s, u"222"_s});
    m_case->made->text(1, 1, 7, 2, u"111"_s, u"the same"_s);
    m_case->made->text(2, 1, 7, 2, u"111"_s, u"the same"_s);
    m_case->made->part(1, 0, u"image/jpeg"_s, u"a.jpg"_s);
    const auto guids = [&] {
        return QStringList{m_case->db->chat(1)->guid, m_case->db->chat(1)->group_id, m_case->message(1)->guid,
                           m_case->message(2)->guid, m_case->message(1)->attachments.front()->guid};
    };
    m_case->load();
    const QStringList before = guids();
    QCOMPARE(QSet<QString>(before.begin(), before.end()).size(), 5);
    m_case->load();
    QCOMPARE(guids(), before);
}

void TestIos5MessageDb::withoutIMessage()
{
    m_case->made.reset();
    const QString path = m_case->folder.filePath(u"sms.db"_s);
    QVERIFY(QFile::remove(path));
    m_case->made = std::make_unique<OldMessages>(path, OldMessages::IMessages::Without);
    m_case->made->group(1, 5, {u"111"_s});
    m_case->made->text(5, 1, newYear2012Unix, 3, u"111"_s, u"of iOS 4"_s);
    m_case->made->run(u"drop table msg_pieces"_s);
    m_case->load();
    QCOMPARE(m_case->db->kind(), 5);
    QCOMPARE(m_case->db->chat(1)->messages.size(), 1u);
    QCOMPARE(m_case->db->countMessagesByChat(), (std::unordered_map<qint64, qint64>{{1, 1}}));
    QVERIFY(m_case->db->report().isEmpty());
}

// Rows that no device writes: whatever they say, the others are read.
void TestIos5MessageDb::hostileRows()
{
    m_case->made->group(1, 5, {u"111"_s, u"222"_s});
    m_case->made->text(5, 1, newYear2012Unix, 2, u"222"_s, u"whole"_s);
    m_case->made->run(
        u"insert into msg_group(ROWID, newest_message) values(%1, 5), (-1, 5), (0, 5);"
        "insert into group_member(group_id, address) values(4711, '1'), (null, null), (1, null), (-1, '9');"
        "update msg_group set newest_message=5 where ROWID=1;"
        "insert into message(ROWID, group_id, date) values(-9, -1, 'yesterday'), (8, %1, null);"
        "insert into madrid_chat(ROWID, participants) values(9223372036854775807, x'00'), (-5, null);"
        "insert into madrid_attachment(ROWID, attachment_guid) values(-3, 'A');"
        "insert into msg_pieces(message_id, part_id, content_type) values(-9, -1, 'image/jpeg')"_s.arg(
            iMessageRowid));
    m_case->made->iMessage(6, {}, {}, 1, 0, {}, OldMessages::list({u"A"_s, u""_s}));
    m_case->load();
    QCOMPARE(m_case->db->messageCount(), 4u);
    QCOMPARE(m_case->message(5)->handle->id, u"222"_s);
    QCOMPARE(idsOf(*m_case->db->chat(1)), (QStringList{u"111"_s, u"222"_s}));
    QVERIFY(!m_case->message(8)->chat);
    QVERIFY(!m_case->message(6)->chat);
    QVERIFY(m_case->message(6)->attachments.empty());
    QCOMPARE(m_case->message(-9)->attachments.front()->transfer_name, u"-9--1.jpg"_s);
    const Report &report = m_case->db->report();
    QCOMPARE(report.count("IDS_ISSUE_MESSAGE_ROWS"),
             2); // a group and an attachment whose numbers are others'
    QCOMPARE(report.count("IDS_ISSUE_ATTACHMENT_ROWS"), 1); // the one without a GUID
    QCOMPARE(report.issues().size(), 2);
}

void TestIos5MessageDb::hugeTextAndCrowd()
{
    QStringList crowd;
    for (int i = 0; i < 500; ++i)
        crowd.append(QString::number(1000 + i));
    const QString text(10'000'000, u'x');
    m_case->made->run(u"begin"_s);
    m_case->made->group(1, 5, crowd + crowd);
    m_case->made->text(5, 1, 0, 2, u"1499"_s, text);
    m_case->made->part(5, 0, u"text/plain"_s, {}, QByteArray(10'000'000, 'y'));
    m_case->made->run(u"commit"_s);
    m_case->load();
    QCOMPARE(m_case->db->chat(1)->handles.size(), 500u);
    QCOMPARE(m_case->message(5)->handle->id, u"1499"_s);
    QCOMPARE(m_case->message(5)->text.size(), 20'000'001);
}

QTEST_GUILESS_MAIN(TestIos5MessageDb)
#include "tst_ios5_message_db.moc"
