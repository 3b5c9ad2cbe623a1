#include "sample/message_content.h"

#include "sample/showcase.h"
#include "sample/showcase_texts.h"
#include "sample/text_maker.h"
#include "sample/typedstream_writer.h"

namespace sample {

namespace {

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

void MessageContent::addShowcase()
{
    addHandles();
    addConversations();
    addTexts();
    addAttachments();
    addSystemItems();
    addReactions();
    addReplies();
    addEdits();
    addRecentlyDeleted();
    addLongBodies();
    addOddJoins();
}

void MessageContent::addHandles()
{
    const auto member = [](std::size_t index) { return cast()[index]; };
    const QString iMessage = latin1("iMessage");
    const QString sms = latin1("SMS");
    const auto addMember = [&](std::size_t index, const QString &service) {
        addHandle(latin1(member(index).phone), latin1(member(index).country), service);
    };
    addMember(0, iMessage);                                           // 1
    addMember(0, sms);                                                // 2: the same number once per service
    addHandle(latin1("grace.h@example.org"), latin1("us"), iMessage); // 3
    addMember(1, iMessage);                                           // 4
    addMember(2, iMessage);                                           // 5
    addMember(3, iMessage);                                           // 6
    addHandle(latin1("+14155550150"), latin1("us"), sms);             // 7
    addHandle(latin1("22000"), QString(), sms);                       // 8
    addMember(4, iMessage);                                           // 9
    addMember(5, iMessage);                                           // 10: sorts before 9 as text
    addHandle(latin1("con"), QString(), sms);                         // 11: a sender that spells its name
}

void MessageContent::addConversations()
{
    const QString iMessage = latin1("iMessage");
    const QString sms = latin1("SMS");
    addChat({latin1("+14155550132"), iMessage, false, QString(), {1}});
    addChat({latin1("grace.h@example.org"), iMessage, false, QString(), {3}});
    addChat({latin1("chat512839004117"), iMessage, true, QString(), {4, 9, 10}});
    addChat({latin1("chat512839004118"), iMessage, true, QStringLiteral("Sunday ride 🚲"), {1, 5, 6, 9}});
    addChat({latin1("chat512839004119"), iMessage, true, QStringLiteral("Climbing"), {1, 4}});
    addChat({latin1("chat512839004120"), iMessage, true, QStringLiteral("Climbing"), {5, 10}});
    addChat({latin1("chat512839004121"), iMessage, true, QString(), {}});
    addChat({latin1("con"), sms, false, QString(), {11}});
    addChat({latin1("+14155550132"), sms, false, QString(), {2}});
    addChat({latin1("22000"), sms, false, QString(), {8}});
    addChat({latin1("+14155550147"), iMessage, false, QString(), {6}});
}

void MessageContent::addTexts()
{
    for (const QByteArrayView text : trickyTexts())
        say(Ada, message(Ada, text.toByteArray()));
    for (const QByteArrayView text : scriptTexts())
        say(Scripts, message(Scripts, text.toByteArray()));
    for (const QByteArrayView text : tableTexts())
        say(ShortCode, message(ShortCode, text.toByteArray()));
    for (const std::size_t conversation : {Mail, Unnamed, Named, Climbing, ClimbingAgain, Con, AdaSms}) {
        for (int i = 0; i < 3; ++i)
            say(conversation, message(conversation, makeText(m_chance)));
    }
    MessageRow withSubject = message(AdaSms, "the body below a subject");
    withSubject.subject = QStringLiteral("Re: <minutes> & \"notes\"");
    say(AdaSms, withSubject);
    say(Nobody, message(Nobody, "nobody is left here"));
    // Bodies whose length takes one, two and four bytes.
    for (const int length : {127, 128, 300, 32767, 32768, 70000}) {
        MessageRow row =
            message(Mail, QByteArray("long ") + QByteArray("abcdefghi ").repeated(length / 10 + 1));
        row.text.truncate(length);
        row.attributedBody = typedstreamBody(row.text);
        if (m_generation.ios >= 16)
            row.text = QByteArray();
        say(Mail, row);
    }
}

void MessageContent::addSystemItems()
{
    if (m_generation.ios < 9)
        return;
    for (int itemType = 1; itemType <= 5; ++itemType) {
        for (const bool fromMe : {false, true}) {
            MessageRow row = message(Named, QByteArray());
            row.fromMe = fromMe;
            row.handleId = fromMe ? 0 : 5;
            row.itemType = itemType;
            row.otherHandle = itemType == 1 || itemType == 4 ? 9 : 0;
            row.groupTitle = itemType == 2 ? QStringLiteral("Sunday ride 🚲") : QString();
            row.shareStatus = itemType == 4 && fromMe;
            say(Named, row);
        }
    }
}

void MessageContent::addOddJoins()
{
    MessageRow twice = message(Climbing, "this one stands in two conversations");
    const qint64 rowid = say(Climbing, twice);
    m_database.join(m_chats[ClimbingAgain].rowid, rowid, twice.date);
    countJoin(ClimbingAgain, twice);

    MessageRow alone = message(Ada, "this one stands in none");
    m_database.addMessage(alone, 0);
    MessageRow unknownSender = message(Unnamed, "from a handle that does not exist");
    unknownSender.fromMe = false;
    unknownSender.handleId = 4711;
    say(Unnamed, unknownSender);
    ++m_counts.messageRows;

    m_database.join(m_chats[Ada].rowid, 999999001, twice.date);
    m_database.join(999999002, rowid, twice.date);
    m_database.execute("insert into chat_handle_join values(999999003, 1), (1, 999999004);"
                       "insert into message_attachment_join values(999999005, 999999006)");
}

} // namespace sample
