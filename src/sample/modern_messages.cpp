#include "sample/message_content.h"

#include "sample/plist_value.h"
#include "sample/showcase.h"
#include "sample/typedstream_writer.h"

namespace sample {

namespace {

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

void MessageContent::addReactions()
{
    if (m_generation.ios < 10)
        return;
    const MessageRow target = message(Named, "Ride at ten, whatever the weather?");
    say(Named, target);
    struct Reaction
    {
        int type;
        const char *text;
    };
    static constexpr Reaction reactions[] = {
        {2000, "Loved “Ride at ten, whatever the weather?”"},
        {2001, "Liked “Ride at ten, whatever the weather?”"},
        {2002, "Disliked “Ride at ten, whatever the weather?”"},
        {2003, "Laughed at “Ride at ten, whatever the weather?”"},
        {2004, "Emphasised “Ride at ten, whatever the weather?”"},
        {2005, "Questioned “Ride at ten, whatever the weather?”"},
        {3001, "Removed a like from “Ride at ten, whatever the weather?”"},
    };
    for (const Reaction &reaction : reactions) {
        MessageRow row = message(Named, reaction.text);
        row.associatedType = reaction.type;
        row.associatedGuid = (reaction.type == 2003 ? "bp:" : "p:0/") + target.guid;
        say(Named, row);
    }
}

void MessageContent::addReplies()
{
    if (m_generation.ios < 14)
        return;
    const MessageRow first = message(Named, "Who brings the pump?");
    say(Named, first);
    for (const char *text : {"I do", "and I bring the patches"}) {
        MessageRow row = message(Named, text);
        row.threadOriginator = first.guid;
        say(Named, row);
    }
}

void MessageContent::addEdits()
{
    if (m_generation.ios < 16)
        return;
    MessageRow edited = message(Mail, "See you on Friday");
    edited.dateEdited = edited.date + 50;
    const auto version = [](qint64 date, const QByteArray &text) {
        return PlistValue(PlistValue::Dictionary{{latin1("d"), static_cast<double>(date)},
                                                 {latin1("t"), typedstreamBody(text)}});
    };
    edited.summaryInfo = binaryPlist(PlistValue::Dictionary{
        {latin1("ec"),
         PlistValue::Dictionary{
             {latin1("0"), PlistValue::Array{version(edited.date, "See you on Thursday"),
                                             version(edited.dateEdited, "See you on Friday")}}}},
        {latin1("otr"), PlistValue::Dictionary{{latin1("0"), PlistValue::Dictionary{{latin1("lo"), 0},
                                                                                    {latin1("le"), 19}}}}},
        {latin1("ust"), true},
    });
    say(Mail, edited);

    MessageRow unsent = message(Mail, QByteArray());
    unsent.fromMe = true;
    unsent.dateEdited = unsent.date + 20;
    unsent.dateRetracted = unsent.dateEdited;
    unsent.summaryInfo = binaryPlist(PlistValue::Dictionary{{latin1("rp"), PlistValue::Array{0}}});
    say(Mail, unsent);
}

void MessageContent::addRecentlyDeleted()
{
    if (m_generation.ios < 16)
        return;
    const MessageRow row = message(Ada, "deleted last week, still recoverable");
    const qint64 rowid = m_database.addMessage(row, 0);
    ++m_counts.messageRows;
    m_database.execute(
        "insert into chat_recoverable_message_join(chat_id, message_id, delete_date) values(1, " +
        QByteArray::number(rowid) + ", " + QByteArray::number((row.date + 86400) * 1000000000) + ")");
}

void MessageContent::addLongBodies()
{
    if (m_generation.ios < 16)
        return;
    for (const int words : {20, 200, 2'000}) {
        MessageRow row = message(Unnamed, QByteArray());
        row.attributedBody = typedstreamBody(QByteArray("and so on ").repeated(words).trimmed());
        say(Unnamed, row);
    }
}

} // namespace sample
