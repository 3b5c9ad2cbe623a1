#include "sample/message_content.h"

#include "base/apple_time.h"
#include "sample/text_maker.h"
#include "sample/typedstream_writer.h"

#include <algorithm>

namespace sample {

namespace {

constexpr qint64 threeYears = 3 * 365 * 86400;
constexpr qint64 lastHour = 3600;

} // namespace

MessageContent::MessageContent(MessageDatabase &database, SeededGenerator chance, AttachmentSink sink,
                               Keeper keeper)
    : m_database(database),
      m_generation(database.generation()),
      m_chance(chance),
      m_date(appleFromUnix(m_generation.backupDate) - threeYears),
      m_sink(std::move(sink)),
      m_keeper(keeper)
{
}

qint64 MessageContent::addHandle(const QString &id, const QString &country, const QString &service)
{
    m_handles.push_back({id, country, service});
    return m_database.addHandle(m_handles.back());
}

std::size_t MessageContent::addChat(const ChatRow &row)
{
    m_chats.push_back({m_database.addChat(row), row});
    return m_chats.size() - 1;
}

MessageRow MessageContent::message(std::size_t conversation, const QByteArray &text)
{
    const ChatRow &chat = m_chats[conversation].row;
    MessageRow row;
    row.guid = m_chance.uuid();
    row.text = text;
    row.service = chat.service == QLatin1String("SMS") ? "SMS" : "iMessage";
    row.fromMe = m_chance.oneIn(2);
    row.date = m_date;
    m_date += m_step - m_step / 2 + m_chance.below(static_cast<int>(m_step) + 1);
    row.dateRead = row.fromMe ? 0 : row.date + 1 + m_chance.below(600);
    row.dateDelivered = row.fromMe ? row.date + 1 : 0;
    // Outgoing messages of a conversation of two bear the other one's handle, those of a group bear none.
    if (!chat.handles.empty() && !(chat.group && row.fromMe))
        row.handleId = m_chance.pick(chat.handles);
    if (chat.group)
        row.roomName = chat.identifier;
    return row;
}

void MessageContent::dressText(MessageRow &row)
{
    if (row.text.isNull() || !row.attributedBody.isNull())
        return;
    const int kind = m_chance.below(3);
    if (kind == 2)
        return;
    row.attributedBody =
        typedstreamBody(row.text, {}, m_chance.oneIn(4) ? StyledText::Mutable : StyledText::Plain);
    if (kind == 0 && m_generation.ios >= 16)
        row.text = QByteArray();
}

void MessageContent::countJoin(std::size_t conversation, const MessageRow &row)
{
    ++m_chats[conversation].joined;
    const int itemType = m_generation.ios >= 9 ? row.itemType : 0;
    m_counts.joinedMessages += itemType == 0;
    m_chats[conversation].listed += itemType == 0;
}

qint64 MessageContent::say(std::size_t conversation, MessageRow row)
{
    dressText(row);
    countJoin(conversation, row);
    ++m_counts.messageRows;
    m_counts.listedMessages += m_generation.ios < 9 || row.itemType == 0;
    return m_database.addMessage(row, m_chats[conversation].rowid);
}

void MessageContent::addBulk(int messages, int chats)
{
    for (int i = 0; static_cast<int>(m_chats.size()) < chats; ++i) {
        const QString phone = strangerPhone(i);
        const QString service = i % 5 == 0 ? QStringLiteral("SMS") : QStringLiteral("iMessage");
        ChatRow row{phone, service, false, QString(), {addHandle(phone, QStringLiteral("us"), service)}};
        if (i % 11 == 10) {
            const qint64 before = row.handles.front();
            row = {QStringLiteral("chat%1").arg(831000000 + i),
                   QStringLiteral("iMessage"),
                   true,
                   QString(),
                   {before - 2, before - 1, before}};
        }
        addChat(row);
    }
    const int missing = messages - m_counts.messageRows;
    const qint64 end = appleFromUnix(m_generation.backupDate) - lastHour;
    m_step = missing > 0 ? std::max<qint64>(1, (end - m_date) / (missing + 1)) : m_step;
    for (int i = 0; i < missing; ++i)
        addBulkMessage();
}

void MessageContent::addBulkMessage()
{
    // The newest conversation comes first in a person's use, so the skew runs over the whole list.
    std::size_t conversation = 0;
    do
        conversation = static_cast<std::size_t>(m_chance.skewedBelow(static_cast<int>(m_chats.size())));
    while (m_chats[conversation].row.handles.empty());
    if (m_chance.oneIn(40)) {
        addBulkAttachment(conversation);
        return;
    }
    MessageRow row = message(conversation, makeText(m_chance));
    if (m_chance.oneIn(10))
        row.date -= std::min<qint64>(m_step, 90); // arrived later than it was sent: row id and date disagree
    say(conversation, std::move(row));
}

std::vector<SampleChat> MessageContent::chats() const
{
    std::vector<SampleChat> result;
    for (const Conversation &conversation : m_chats) {
        SampleChat chat;
        chat.rowid = conversation.rowid;
        chat.identifier = conversation.row.identifier;
        chat.displayName = m_generation.ios >= 7 ? conversation.row.displayName : QString();
        chat.joined = conversation.joined;
        chat.listed = conversation.listed;
        for (const qint64 rowid : conversation.row.handles) {
            const HandleRow &handle = m_handles[static_cast<std::size_t>(rowid - 1)];
            const CastMember *member = castMemberByPhone(handle.id);
            chat.handles.push_back({rowid, handle.id, handle.service, member ? member->name() : QString()});
        }
        std::sort(chat.handles.begin(), chat.handles.end(), [](const SampleHandle &a, const SampleHandle &b) {
            return QString::number(a.rowid) < QString::number(b.rowid);
        });
        QStringList names;
        for (const SampleHandle &handle : chat.handles)
            names << (handle.contactName.isEmpty() ? handle.address : handle.contactName);
        chat.title = !chat.displayName.isEmpty() ? chat.displayName
                     : names.isEmpty()           ? QStringLiteral("Unknown")
                                                 : names.join(QStringLiteral(", "));
        result.push_back(std::move(chat));
    }
    return result;
}

SampleCounts MessageContent::counts() const
{
    return m_counts;
}

} // namespace sample
