#include "support/scratch_source.h"
#include "device_messages.h"
#include "messages/device_path.h"
#include "messages/ios6_message_db.h"

#include <QElapsedTimer>
#include <QTest>

#include <limits>

using Generation = DeviceMessages::Generation;
Q_DECLARE_METATYPE(Generation)

namespace {
constexpr int minDate = std::numeric_limits<int>::min();
constexpr int maxDate = std::numeric_limits<int>::max();
const QString databaseName = QStringLiteral("sms.db");

std::vector<qint64> rowids(const std::vector<_MsgMessage *> &messages)
{
    std::vector<qint64> ids;
    for (const _MsgMessage *message : messages)
        ids.push_back(message->rowid);
    return ids;
}

/// Knows the files of a list and must never be asked for content.
class LookUpOnlySource : public ScratchSource
{
public:
    SourceFile fileOfDevicePath(const QString &devicePath) const override
    {
        asked.append(devicePath);
        return known.contains(devicePath) ? SourceFile{QStringLiteral("MediaDomain"), devicePath.mid(11)}
                                          : SourceFile();
    }
    void fetchTo(const SourceFile &, const QString &, const CopyProgress &) override { ++fetched; }
    QString fetchForViewing(const SourceFile &) override { return QString::number(++fetched); }

    QStringList known;
    mutable QStringList asked;
    int fetched = 0;
};

Issue hidden(const char *what, qint64 count)
{
    return {.kind = IssueKind::Hidden, .what = what, .count = count};
}

Issue damaged(const char *what)
{
    return {.what = what, .where = databaseName};
}

class StopAtOnce : public NoProgress
{
public:
    bool isCancelled() const override { return true; }
};
} // namespace

class TestIos6MessageDb : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void dates_data();
    void dates();
    void lastDateOfLocalStore();
    void columnsThatAreMissing();
    void systemItems();
    void everything();
    void messageOftenInItsChat();
    void messageInTwoChats();
    void danglingRows();
    void handlesInTextOrder();
    void handleCountries();
    void namesFromAddressBook();
    void namesAsStored();
    void awkwardTexts();
    void textOutOfStyledBody();
    void devicePaths_data();
    void devicePaths();
    void attachmentsAreOnlyLookedUp();
    void oneChatAtATime();
    void stoppedLoadCanBeRepeated();

private:
    DeviceMessages &make(Generation generation);
    /// Closes the database under construction and loads it whole.
    IOS6MessageDb &load(ContactNames names = ContactNames::AsStored, FileSource *source = nullptr,
                        Scope scope = Scope::Usual);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceMessages> m_made;
    std::unique_ptr<IOS6MessageDb> m_db;
    NoProgress m_progress;
};

void TestIos6MessageDb::init()
{
    m_db.reset();
    m_made.reset();
    m_folder = std::make_unique<QTemporaryDir>();
}

DeviceMessages &TestIos6MessageDb::make(Generation generation)
{
    m_made = std::make_unique<DeviceMessages>(m_folder->filePath(QStringLiteral("sms.db")), generation);
    return *m_made;
}

IOS6MessageDb &TestIos6MessageDb::load(ContactNames names, FileSource *source, Scope scope)
{
    m_made.reset();
    m_db = std::make_unique<IOS6MessageDb>(DatabaseFile{m_folder->filePath(databaseName), databaseName},
                                           source, names);
    m_db->setScope(scope);
    m_db->loadChats();
    m_db->loadMessages(0, m_progress);
    return *m_db;
}

void TestIos6MessageDb::dates_data()
{
    QTest::addColumn<Generation>("generation");
    QTest::addColumn<qint64>("stored");
    QTest::addColumn<int>("expected");
    QTest::newRow("seconds, iOS 6") << Generation::Ios6 << qint64(347068800) << 347068800;
    QTest::newRow("seconds, iOS 9") << Generation::Ios9 << qint64(347068800) << 347068800;
    QTest::newRow("nanoseconds, iOS 12") << Generation::Ios12 << qint64(347068800'999999999) << 347068800;
    QTest::newRow("small value, iOS 17") << Generation::Ios17 << qint64(999999999) << 0;
    QTest::newRow("before 2001") << Generation::Ios17 << qint64(-86400'000000001) << -86400;
    QTest::newRow("nanoseconds where seconds belong")
        << Generation::Ios9 << qint64(347068800'000000000) << 347068800;
    QTest::newRow("never happens in seconds") << Generation::Ios9 << qint64(99999999999) << maxDate;
    QTest::newRow("last nanosecond there is")
        << Generation::Ios17 << std::numeric_limits<qint64>::max() << maxDate;
    QTest::newRow("first nanosecond there is")
        << Generation::Ios17 << std::numeric_limits<qint64>::min() << minDate;
}

void TestIos6MessageDb::dates()
{
    QFETCH(Generation, generation);
    QFETCH(qint64, stored);
    DeviceMessages &made = make(generation);
    made.chat(1, QStringLiteral("a"));
    made.message(1, 1, stored, QStringLiteral("hello"));
    IOS6MessageDb &db = load();
    QTEST(db.chat(1)->messages.at(0)->date, "expected");
    QTEST(db.chat(1)->_last, "expected");
    const int date = db.chat(1)->messages.at(0)->date;
    QCOMPARE(db.report().count("IDS_ISSUE_MESSAGE_DATES"), date == minDate || date == maxDate);
}

void TestIos6MessageDb::lastDateOfLocalStore()
{
    DeviceMessages &made = make(Generation::LocalStore);
    made.run(QStringLiteral("insert into chat(ROWID, guid, _last) values(1, 'g', 77)"));
    made.message(1, 1, 5000, QStringLiteral("later than the column says"));
    QCOMPARE(load().chat(1)->_last, 77);
}

void TestIos6MessageDb::columnsThatAreMissing()
{
    DeviceMessages &made = make(Generation::Ios6);
    made.chat(3, QStringLiteral("a"));
    made.message(5, 3, 1, QStringLiteral("hi"), QStringLiteral("version, is_from_me, service"),
                 QStringLiteral("7, 1, 'iMessage'"));
    made.run(QStringLiteral("alter table message drop column subject"));
    const _MsgMessage &message = *load().chat(3)->messages.at(0);
    QCOMPARE(message.sourceRowid, 5);
    QCOMPARE(message.guid, QStringLiteral("guid-5"));
    QCOMPARE(message.version, 7);
    QCOMPARE(message.is_from_me, 1);
    QCOMPARE(message.service, QStringLiteral("iMessage"));
    QCOMPARE(message.item_type, 0);
    QCOMPARE(message.other_handle_id, -1);
}

void TestIos6MessageDb::systemItems()
{
    DeviceMessages &made = make(Generation::Ios9);
    made.chat(1, QStringLiteral("a"));
    made.message(1, 1, 1, QStringLiteral("text"));
    made.message(2, 1, 2, {}, QStringLiteral("item_type"), QStringLiteral("4"));
    made.message(3, 1, 3, {}, QStringLiteral("item_type"), QStringLiteral("2"));
    made.message(4, 1, 4, QStringLiteral("of no type"), QStringLiteral("item_type"), QStringLiteral("'NaN'"));
    made.message(5, 1, 5, QStringLiteral("of no type"), QStringLiteral("item_type"), QStringLiteral("x'41'"));
    IOS6MessageDb &db = load();
    QCOMPARE(db.countMessages(), 3);
    QCOMPARE(db.countMessagesByChat().at(1), 3);
    QCOMPARE(rowids(db.chat(1)->messages), (std::vector<qint64>{1, 4, 5}));
    QCOMPARE(db.report().issues(), QList<Issue>{hidden("IDS_ISSUE_SYSTEM_ITEMS", 2)});
    db.loadMessages(1, m_progress);
    QCOMPARE(db.report().count(IssueKind::Hidden), 2);
}

// Every row of the table is listed, or counted as left out.
void TestIos6MessageDb::everything()
{
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.message(1, 1, 1, QStringLiteral("text"));
    made.message(2, 1, 2, {}, QStringLiteral("item_type, group_title"), QStringLiteral("2, 'ours'"));
    made.message(3, 1, 3, QStringLiteral("of no type"), QStringLiteral("item_type"), QStringLiteral("NULL"));
    made.message(4, 99, 4, QStringLiteral("of a conversation that is not there"));
    made.run(
        QStringLiteral("insert into chat_message_join values(98, 4), (1, 1);"
                       "insert into message(ROWID, text, item_type) values(5, 'alone', 0), (6, 'alone', 1);"
                       "insert into attachment(ROWID, guid) values(1, 'of no conversation');"
                       "insert into message_attachment_join values(5, 1);"));
    IOS6MessageDb &usual = load();
    QCOMPARE(usual.select({}, minDate, maxDate).size(), 3u);
    QCOMPARE(usual.countMessages(), 3);
    QCOMPARE(usual.report().issues(),
             (QList<Issue>{damaged("IDS_ISSUE_MESSAGES_OF_MISSING_CHATS"),
                           hidden("IDS_ISSUE_SYSTEM_ITEMS", 1), hidden("IDS_ISSUE_MESSAGES_OF_NO_CHAT", 2)}));
    QCOMPARE(rowids(usual.conversations().back()->messages), std::vector<qint64>{4});

    IOS6MessageDb &all = load(ContactNames::AsStored, nullptr, Scope::Everything);
    const std::vector<MessageRef> listed = all.select({}, minDate, maxDate);
    QCOMPARE(listed.size(), 6u);
    QCOMPARE(all.countMessages(), 6);
    QCOMPARE(all.countMessagesByChat().at(1), 3);
    QCOMPARE(all.report().issues(), QList<Issue>{damaged("IDS_ISSUE_MESSAGES_OF_MISSING_CHATS")});
    QCOMPARE(all.chats().size(), 1u);
    QVERIFY(all.conversations().back()->isNone());
    QCOMPARE(rowids(all.conversations().back()->messages), (std::vector<qint64>{4, 5, 6}));
    QCOMPARE(all.select({_MsgChat::none}, minDate, 4).size(), 3u);
    const auto alone = std::find_if(listed.begin(), listed.end(),
                                    [](const MessageRef &ref) { return ref.message->rowid == 5; });
    QVERIFY(!alone->chat && alone->message->attachments.size() == 1);
    all.loadMessages(1, m_progress);
    QCOMPARE(all.messageCount(), 6u);
}

// A damaged table may repeat itself: the work does not grow with the product of its rows.
void TestIos6MessageDb::messageOftenInItsChat()
{
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.message(1, 1, 1, QStringLiteral("text"));
    made.run(QStringLiteral(
        "begin; with recursive n(i) as (select 1 union all select i + 1 from n where i < 20000) "
        "insert into chat_message_join select 1, 1 from n;"
        "with recursive n(i) as (select 1 union all select i + 1 from n where i < 20000) "
        "insert into attachment(ROWID, guid) select i, 'guid ' || i from n;"
        "insert into message_attachment_join select 1, ROWID from attachment; commit;"));
    QElapsedTimer time;
    time.start();
    IOS6MessageDb &db = load();
    QCOMPARE(db.countMessages(), 1);
    QCOMPARE(db.select({}, minDate, maxDate).size(), 1u);
    QCOMPARE(db.chat(1)->messages.front()->attachments.size(), 20000u);
    db.loadMessages(1, m_progress);
    QVERIFY2(time.elapsed() < 10'000, qPrintable(QString::number(time.elapsed())));
}

void TestIos6MessageDb::messageInTwoChats()
{
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.chat(2, QStringLiteral("b"));
    made.message(9, 2, 1, QStringLiteral("both"));
    made.message(4, 1, 2, QStringLiteral("first only"));
    made.run(QStringLiteral("insert into chat_message_join values(1, 9), (1, 9)"));
    IOS6MessageDb &db = load();
    QCOMPARE(db.messageCount(), 2u);
    QCOMPARE(rowids(db.chat(1)->messages), (std::vector<qint64>{4, 9}));
    QCOMPARE(db.chat(2)->messages.at(0), db.chat(1)->messages.at(1));
    QVERIFY(db.chat(2)->messages.at(0)->chat);
    QCOMPARE(db.select({}, minDate, maxDate).size(), 3u);
}

void TestIos6MessageDb::danglingRows()
{
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"), {1, 77});
    made.handle(1, QStringLiteral("x@y.z"));
    made.message(1, 1, 1, QStringLiteral("sender unknown"), QStringLiteral("handle_id, other_handle"),
                 QStringLiteral("77, 78"));
    made.message(2, 99, 2, QStringLiteral("chat unknown"));
    made.run(QStringLiteral("insert into message(ROWID, text) values(3, 'in no chat');"
                            "insert into attachment(ROWID, guid) values(1, 'lonely');"
                            "insert into message_attachment_join values(1, 55), (3, 1), (88, 1);"
                            "with recursive n(i) as (select 1 union all select i + 1 from n where i < 300)"
                            " insert into chat_message_join select i % 5, 1000 + i from n"));
    IOS6MessageDb &db = load();
    const QList<Issue> told{damaged("IDS_ISSUE_MESSAGES_OF_MISSING_CHATS"),
                            damaged("IDS_ISSUE_ATTACHMENT_ROWS"), hidden("IDS_ISSUE_MESSAGES_OF_NO_CHAT", 1)};
    QCOMPARE(db.report().issues(), told);
    db.loadMessages(1, m_progress);
    QCOMPARE(db.countMessages(), 2);
    QCOMPARE(db.report().issues(), told);
    QCOMPARE(db.messageCount(), 2u);
    QCOMPARE(db.chat(1)->handles.size(), 1u);
    const _MsgMessage &message = *db.chat(1)->messages.at(0);
    QVERIFY(!message.handle && !message.otherHandle && message.attachments.empty());
    const std::vector<MessageRef> all = db.select({}, minDate, maxDate);
    QCOMPARE(all.size(), 2u);
    QVERIFY(!all.at(0).chat && !all.at(0).message->chat);
    QCOMPARE(conversationTitle(all.at(0)), QStringLiteral("unknown"));
    QCOMPARE(db.select({1}, minDate, maxDate).size(), 1u);
}

void TestIos6MessageDb::handlesInTextOrder()
{
    DeviceMessages &made = make(Generation::Ios9);
    for (const int rowid : {1, 2, 10})
        made.handle(rowid, QStringLiteral("h%1@x").arg(rowid));
    made.chat(1, QStringLiteral("group"), {2, 10, 1, 2});
    made.chat(2, QStringLiteral("alone"), {2});
    IOS6MessageDb &db = load();
    QCOMPARE(chatName(*db.chat(1), Addresses::Without), QStringLiteral("h1@x, h10@x, h2@x"));
    QCOMPARE(db.chat(2)->handles.at(0), db.handle(2));
}

void TestIos6MessageDb::handleCountries()
{
    DeviceMessages &made = make(Generation::Ios9);
    made.handle(1, QStringLiteral("030 1"), QStringLiteral("fr"));
    made.handle(2, QStringLiteral("030 2"));
    made.chat(1, QStringLiteral("a"), {1, 2});
    made.message(1, 1, 1, QStringLiteral("t"), QStringLiteral("handle_id"), QStringLiteral("2"));
    made.message(2, 1, 1, QStringLiteral("t"), QStringLiteral("handle_id, country"),
                 QStringLiteral("2, 'it'"));
    m_made.reset();
    m_db = std::make_unique<IOS6MessageDb>(m_folder->filePath(QStringLiteral("sms.db")), nullptr,
                                           ContactNames::AsStored);
    m_db->setNumbers([](const QString &number, const QString &iso) { return iso + u':' + number; },
                     QStringLiteral("DE"));
    m_db->loadChats();
    m_db->loadMessages(0, m_progress);
    QCOMPARE(m_db->handle(1)->id, QStringLiteral("fr:030 1"));
    QCOMPARE(m_db->handle(2)->id, QStringLiteral(":030 2"));
    QCOMPARE(m_db->handle(2)->country, QStringLiteral("de"));
    QCOMPARE(m_db->chat(1)->messages.at(0)->country, QStringLiteral("de"));
    QCOMPARE(m_db->chat(1)->messages.at(1)->country, QStringLiteral("it"));
}

void TestIos6MessageDb::namesFromAddressBook()
{
    LookUpOnlySource source;
    source.putDatabase(
        {QStringLiteral("HomeDomain"), QStringLiteral("Library/AddressBook/AddressBook.sqlitedb")},
        QStringLiteral("create table ABPerson(ROWID INTEGER PRIMARY KEY, First, Last, Middle);"
                       "create table ABMultiValue(record_id, property, value);"
                       "insert into ABPerson values(4, 'Ada', 'King', NULL);"
                       "insert into ABMultiValue values(4, 3, '+44 (20) 7946-0958')"));
    DeviceMessages &made = make(Generation::Ios12);
    made.handle(1, QStringLiteral("+442079460958"), QStringLiteral("gb"));
    made.handle(2, QStringLiteral("+15550100"));
    made.handle(3, QStringLiteral("+44 20 7946 0958"), QStringLiteral("gb")); // has left the conversation
    made.chat(1, QStringLiteral("a"), {1, 2});
    made.message(1, 1, 1, QStringLiteral("bye"), QStringLiteral("handle_id"), QStringLiteral("3"));
    IOS6MessageDb &db = load(ContactNames::FromAddressBook, &source);
    QCOMPARE(chatName(*db.chat(1), Addresses::With), QStringLiteral("Ada King (+442079460958), +15550100"));
    QCOMPARE(db.chat(1)->messages.front()->handle->_ct_name, QStringLiteral("Ada King"));
}

void TestIos6MessageDb::namesAsStored()
{
    DeviceMessages &made = make(Generation::LocalStore);
    made.handle(1, QStringLiteral("+15550100"));
    made.run(QStringLiteral("update handle set _ct_name='Grace', _photo=x'FFD8'"));
    made.chat(1, QStringLiteral("a"), {1});
    const _MsgHandle &handle = *load().handle(1);
    QCOMPARE(handle.nameWithAddress(), QStringLiteral("Grace (+15550100)"));
    QCOMPARE(handle._photo, QByteArray("\xFF\xD8"));
}

void TestIos6MessageDb::awkwardTexts()
{
    const QString huge(10 * 1024 * 1024, u'x');
    const QString withNul = QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    DeviceMessages &made = make(Generation::Ios17);
    made.chat(1, QStringLiteral("a"));
    made.message(1, 1, 1, huge);
    made.message(2, 1, 2, withNul);
    made.message(3, 1, 3, {});
    made.run(QStringLiteral("update message set text=cast(x'61FF62' as text) where ROWID=3"));
    const auto &messages = load().chat(1)->messages;
    QVERIFY(messages.at(0)->text == huge);
    QCOMPARE(messages.at(1)->text, withNul);
    QCOMPARE(messages.at(2)->text, QStringLiteral("a\uFFFDb"));
}

void TestIos6MessageDb::textOutOfStyledBody()
{
    // An archived string alone, whose stream is the shortest that says something.
    const QByteArray body =
        "\x04\x0Bstreamtyped\x81\xE8\x03\x84\x01@\x84\x84\x84\x08NSString\x01\x85\x84\x01+\x05Hello\x86";
    const QString blob = QStringLiteral("x'%1'").arg(QString::fromLatin1(body.toHex()));
    const QString cut = QStringLiteral("x'%1'").arg(QString::fromLatin1(body.chopped(4).toHex()));
    DeviceMessages &made = make(Generation::Ios17);
    made.chat(1, QStringLiteral("a"));
    const QString column = QStringLiteral("attributedBody");
    made.message(1, 1, 1, QStringLiteral("own text"), column, blob);
    made.message(2, 1, 2, {}, column, blob);
    made.message(3, 1, 3, {}, column, cut);
    made.message(4, 1, 4, {});
    IOS6MessageDb &db = load();
    const auto &messages = db.chat(1)->messages;
    QCOMPARE(messages.at(0)->text, QStringLiteral("own text"));
    QCOMPARE(messages.at(1)->text, QStringLiteral("Hello"));
    QCOMPARE(messages.at(1)->attributedBody, body);
    QVERIFY(messages.at(2)->text.isEmpty() && messages.at(3)->text.isEmpty());
    QCOMPARE(db.report().count("IDS_ISSUE_MESSAGE_BODIES"), 1);
}

void TestIos6MessageDb::devicePaths_data()
{
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QString>("expected");
    QTest::newRow("home") << "~/Library/SMS/Attachments/0a/10/x.jpg"
                          << "var/mobile/Library/SMS/Attachments/0a/10/x.jpg";
    QTest::newRow("absolute") << "/var/mobile/Library/SMS/x.jpg"
                              << "var/mobile/Library/SMS/x.jpg";
    QTest::newRow("relative") << "Library/~/x"
                              << "Library/~/x";
    QTest::newRow("forbidden characters") << "~/a\\b:c*d?e\"f<g>h|i\nj\rk\tl"
                                          << "var/mobile/abcdefghijkl";
    QTest::newRow("empty") << ""
                           << "";
}

void TestIos6MessageDb::devicePaths()
{
    QFETCH(QString, filename);
    QTEST(devicePathOf(filename), "expected");
}

void TestIos6MessageDb::attachmentsAreOnlyLookedUp()
{
    LookUpOnlySource source;
    source.known = {QStringLiteral("var/mobile/Library/SMS/Attachments/a.jpg")};
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.message(1, 1, 1, QStringLiteral("\uFFFC\uFFFC"));
    made.message(2, 1, 2, QStringLiteral("\uFFFC"));
    made.run(QStringLiteral(
        "insert into attachment(ROWID, guid, filename, mime_type, total_bytes) values"
        "(8, 'g8', '~/Library/SMS/Attachments/a.jpg', 'image/jpeg', 5000000000), (3, 'g3', '~/gone.mov', "
        "'video/quicktime', 1), (5, 'g5', NULL, NULL, NULL);"
        "insert into message_attachment_join values(1, 8), (1, 3), (2, 5), (1, 8), (2, 8)"));
    IOS6MessageDb &db = load(ContactNames::None, &source);
    const auto &attachments = db.chat(1)->messages.at(0)->attachments;
    QCOMPARE(attachments.size(), 2u);
    QCOMPARE(attachments.at(0)->rowid, 3);
    QVERIFY(attachments.at(0)->source.isNull());
    QCOMPARE(attachments.at(1)->source.relativePath, QStringLiteral("Library/SMS/Attachments/a.jpg"));
    QCOMPARE(attachments.at(1)->total_bytes, 5000000000);
    QCOMPARE(db.chat(1)->messages.at(1)->attachments.at(1), attachments.at(1));
    QCOMPARE(source.asked.size(), 2);
    QCOMPARE(source.fetched, 0);
}

void TestIos6MessageDb::oneChatAtATime()
{
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.chat(2, QStringLiteral("b"));
    made.message(1, 1, 1, QStringLiteral("one"));
    made.message(2, 2, 2, QStringLiteral("two"));
    made.run(
        QStringLiteral("insert into chat_message_join values(2, 1); insert into attachment(ROWID) values(1), "
                       "(2); insert into message_attachment_join values(1, 1), (2, 2)"));
    m_made.reset();
    IOS6MessageDb db(m_folder->filePath(QStringLiteral("sms.db")), nullptr, ContactNames::AsStored);
    db.loadChats();
    db.loadMessages(1, m_progress);
    QCOMPARE(rowids(db.chat(1)->messages), std::vector<qint64>{1});
    QVERIFY(db.chat(2)->messages.empty());
    const _MsgMessage *first = db.chat(1)->messages.at(0);
    db.loadMessages(2, m_progress);
    db.loadMessages(2, m_progress);
    db.loadMessages(0, m_progress);
    QCOMPARE(rowids(db.chat(2)->messages), (std::vector<qint64>{1, 2}));
    QCOMPARE(db.chat(2)->messages.at(0), first);
    QCOMPARE(db.messageCount(), 2u);
    QCOMPARE(first->attachments.size(), 1u);
    db.loadChats();
    QCOMPARE(db.messageCount(), 0u);
}

void TestIos6MessageDb::stoppedLoadCanBeRepeated()
{
    DeviceMessages &made = make(Generation::Ios12);
    made.chat(1, QStringLiteral("a"));
    made.run(QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n where i < 2000) "
                            "insert into message(ROWID) "
                            "select i from n; insert into chat_message_join select 1, ROWID from message"));
    m_made.reset();
    IOS6MessageDb db(m_folder->filePath(QStringLiteral("sms.db")), nullptr, ContactNames::AsStored);
    db.loadChats();
    StopAtOnce stop;
    QVERIFY_EXCEPTION_THROWN(db.loadMessages(0, stop), Cancelled);
    QVERIFY(db.messageCount() < 2000);
    db.loadMessages(0, m_progress);
    QCOMPARE(db.chat(1)->messages.size(), 2000u);
    QCOMPARE(db.messageCount(), 2000u);
}

QTEST_GUILESS_MAIN(TestIos6MessageDb)
#include "tst_ios6_message_db.moc"
