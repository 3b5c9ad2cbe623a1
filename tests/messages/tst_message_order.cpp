#include "messages/abs_message_db.h"

#include <QTest>

#include <algorithm>
#include <deque>
#include <limits>

namespace {
struct Row
{
    qint64 rowid;
    int date;
    bool dateOnly = false;
    bool stored = true; // found in a database, not new
};

/// Owns the messages that a case sorts.
class Messages
{
public:
    explicit Messages(const QList<Row> &rows)
    {
        for (const Row &row : rows) {
            _MsgMessage &message = m_messages.emplace_back();
            message.rowid = row.rowid;
            message.sourceRowid = row.stored ? row.rowid : 0;
            message.date = row.date;
            message.dateOrderOnly = row.dateOnly;
            refs.push_back({nullptr, &message});
        }
    }

    QList<qint64> order() const
    {
        QList<qint64> rowids;
        for (const MessageRef &ref : refs)
            rowids.append(ref.message->rowid);
        return rowids;
    }

    std::vector<MessageRef> refs;

private:
    std::deque<_MsgMessage> m_messages;
};

class FixedMessageDb : public AbsMessageDb
{
public:
    int kind() const override { return 0; }
    qint64 countMessages() override { return 0; }
    std::unordered_map<qint64, qint64> countMessagesByChat() override { return {}; }
    void loadChats() override {}
    void loadMessages(qint64, Progress &) override {}

    void addChat(qint64 rowid)
    {
        _MsgChat &chat = m_chats.emplace_back();
        chat.rowid = rowid;
        m_chatList.push_back(&chat);
        m_chatById[rowid] = &chat;
    }
    void addMessage(qint64 rowid, int date, const std::vector<qint64> &chats)
    {
        _MsgMessage &message = m_messages.emplace_back();
        message.rowid = message.sourceRowid = rowid;
        message.date = date;
        if (chats.empty())
            m_noChat.messages.push_back(&message);
        for (const qint64 id : chats) {
            message.chat = message.chat ? message.chat : chat(id);
            chat(id)->messages.push_back(&message);
        }
    }
};

QList<std::pair<qint64, qint64>> placesOf(const std::vector<MessageRef> &refs)
{
    QList<std::pair<qint64, qint64>> places;
    for (const MessageRef &ref : refs)
        places.emplace_back(ref.chat ? ref.chat->rowid : 0, ref.message->rowid);
    return places;
}
} // namespace

Q_DECLARE_METATYPE(Row)

class TestMessageOrder : public QObject
{
    Q_OBJECT

private slots:
    void pairs_data();
    void pairs();
    void everyPermutationEndsAlike();
    void longListIsComplete();
    void selection_data();
    void selection();
    void names_data();
    void names();
    void titles();
};

void TestMessageOrder::pairs_data()
{
    QTest::addColumn<QList<Row>>("rows");
    QTest::addColumn<QList<qint64>>("expected");
    QTest::newRow("burst keeps row order") << QList<Row>{{1, 220}, {21, 100}} << QList<qint64>{1, 21};
    QTest::newRow("21 rows apart") << QList<Row>{{1, 220}, {22, 100}} << QList<qint64>{22, 1};
    QTest::newRow("121 seconds apart") << QList<Row>{{1, 221}, {21, 100}} << QList<qint64>{21, 1};
    QTest::newRow("one by date alone") << QList<Row>{{1, 220, true}, {2, 100}} << QList<qint64>{2, 1};
    QTest::newRow("one is new") << QList<Row>{{1, 220, false, false}, {2, 100}} << QList<qint64>{2, 1};
    QTest::newRow("far rows at one time stay by row")
        << QList<Row>{{500, 7}, {1, 7}} << QList<qint64>{1, 500};
    QTest::newRow("dates at both ends of time")
        << QList<Row>{{1, std::numeric_limits<int>::max()}, {2, std::numeric_limits<int>::min()}}
        << QList<qint64>{2, 1};
}

void TestMessageOrder::pairs()
{
    QFETCH(QList<Row>, rows);
    Messages messages(rows);
    sortForExport(messages.refs);
    QTEST(messages.order(), "expected");
}

void TestMessageOrder::everyPermutationEndsAlike()
{
    // 1 before 15 and 15 before 30 as bursts, yet 30 before 1 by date: no order can please all three.
    QList<Row> rows{{1, 200}, {15, 120}, {30, 100}, {31, 90}, {70, 95}};
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.rowid < b.rowid; });
    Messages first(rows);
    sortForExport(first.refs);
    while (std::next_permutation(rows.begin(), rows.end(),
                                 [](const Row &a, const Row &b) { return a.rowid < b.rowid; })) {
        Messages messages(rows);
        sortForExport(messages.refs);
        QCOMPARE(messages.order(), first.order());
    }
}

void TestMessageOrder::longListIsComplete()
{
    QList<Row> rows;
    for (int i = 1; i <= 5000; ++i)
        rows.append({i, i * 7919 % 10007});
    Messages messages(rows);
    sortForExport(messages.refs);
    QList<qint64> order = messages.order();
    std::sort(order.begin(), order.end());
    for (int i = 0; i < order.size(); ++i)
        QCOMPARE(order.at(i), i + 1);
    sortForExport(messages.refs);
}

void TestMessageOrder::selection_data()
{
    using Places = QList<std::pair<qint64, qint64>>;
    QTest::addColumn<QList<qint64>>("chats");
    QTest::addColumn<qint64>("from");
    QTest::addColumn<qint64>("to");
    QTest::addColumn<Places>("expected");
    QTest::newRow("all, those without a chat first")
        << QList<qint64>{} << qint64(0) << qint64(10000)
        << Places{{0, 400}, {1, 200}, {1, 100}, {2, 100}, {2, 300}};
    QTest::newRow("both ends of the range count")
        << QList<qint64>{} << qint64(1000) << qint64(2000) << Places{{1, 200}, {1, 100}, {2, 100}};
    QTest::newRow("named conversations in their own order")
        << QList<qint64>{2, 1, 2} << qint64(1001) << qint64(10000) << Places{{1, 100}, {2, 100}, {2, 300}};
    QTest::newRow("unknown conversation") << QList<qint64>{9} << qint64(0) << qint64(10000) << Places{};
}

void TestMessageOrder::selection()
{
    FixedMessageDb db;
    db.addChat(1);
    db.addChat(2);
    db.addMessage(100, 2000, {1, 2});
    db.addMessage(200, 1000, {1});
    db.addMessage(300, 3000, {2});
    db.addMessage(400, 500, {});
    QFETCH(QList<qint64>, chats);
    QFETCH(qint64, from);
    QFETCH(qint64, to);
    QTEST(placesOf(db.select({chats.begin(), chats.end()}, from, to)), "expected");
}

void TestMessageOrder::names_data()
{
    QTest::addColumn<QString>("displayName");
    QTest::addColumn<int>("handles");
    QTest::addColumn<QString>("without");
    QTest::addColumn<QString>("with");
    QTest::newRow("display name wins") << "Choir" << 2 << "Choir"
                                       << "Choir";
    QTest::newRow("known and unknown") << "" << 2 << "Ada, b@x"
                                       << "Ada (+44), b@x";
    QTest::newRow("nobody") << "" << 0 << "Unknown"
                            << "Unknown";
}

void TestMessageOrder::names()
{
    QFETCH(QString, displayName);
    QFETCH(int, handles);
    _MsgHandle known;
    known.id = QStringLiteral("+44");
    known._ct_name = QStringLiteral("Ada");
    _MsgHandle unknown;
    unknown.id = QStringLiteral("b@x");
    _MsgChat chat;
    chat.display_name = displayName;
    if (handles > 0)
        chat.handles = {&known, &unknown};
    QTEST(chatName(chat, Addresses::Without), "without");
    QTEST(chatName(chat, Addresses::With), "with");
}

void TestMessageOrder::titles()
{
    _MsgHandle ada;
    ada.id = QStringLiteral("+44");
    ada._ct_name = QStringLiteral("Ada");
    _MsgHandle bob;
    bob.id = QStringLiteral("b@x");
    _MsgChat chat;
    chat.handles = {&ada, &bob};
    _MsgMessage message;
    message.handle = &bob;
    QCOMPARE(conversationTitle({&chat, &message}), QStringLiteral("Ada, b@x (b@x)"));
    message.handle = nullptr;
    QCOMPARE(conversationTitle({&chat, &message}), QStringLiteral("Ada, b@x"));
    message.handle = &ada;
    chat.handles = {&ada};
    QCOMPARE(conversationTitle({&chat, &message}), QStringLiteral("Ada"));
    QCOMPARE(conversationTitle({nullptr, &message}), QStringLiteral("unknown"));
}

QTEST_GUILESS_MAIN(TestMessageOrder)
#include "tst_message_order.moc"
