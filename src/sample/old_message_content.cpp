#include "sample/old_message_content.h"

#include "base/apple_time.h"
#include "sample/media_content.h"
#include "sample/showcase_texts.h"
#include "sample/text_maker.h"
#include "sample/typedstream_writer.h"

#include <algorithm>

namespace sample {

namespace {

constexpr qint64 twoYears = 2 * 365 * 86400;
constexpr qint64 lastHour = 3600;
constexpr const char *place = "\xEF\xBF\xBC"; // U+FFFC, where an attachment stands in the text

/// Positions of the showcase conversations.
enum OldShowcase { AdaText, ShortCode, TextGroup, OtherTextGroup, Ada, Mail, Room };

QString phoneOf(std::size_t member)
{
    return QString::fromLatin1(cast()[member].phone);
}

QStringList asStrings(const QByteArrayList &texts)
{
    QStringList strings;
    for (const QByteArray &text : texts)
        strings << QString::fromLatin1(text);
    return strings;
}

} // namespace

OldMessageContent::OldMessageContent(OldMessageDatabase &database, const Generation &generation,
                                     SeededGenerator chance, AttachmentSink sink)
    : m_database(database),
      m_generation(generation),
      m_chance(chance),
      m_sink(std::move(sink)),
      m_date(appleFromUnix(generation.backupDate) - twoYears)
{
}

void OldMessageContent::addTextConversation(const QStringList &addresses, const QString &country)
{
    const qint64 group = m_database.addGroup(addresses, country);
    m_chats.push_back({false, group, addresses.size() == 1 ? addresses.front() : QString(), addresses});
}

void OldMessageContent::addIMessageConversation(const QString &identifier, const QStringList &addresses,
                                                ListForm form)
{
    const qint64 chat = m_database.addChat(identifier, addresses.size() > 1, textList(addresses, form));
    m_chats.push_back({true, chat, identifier, addresses});
}

void OldMessageContent::addShowcase()
{
    const QString us = QStringLiteral("us");
    const QString mail = QStringLiteral("grace.h@example.org");
    addTextConversation({phoneOf(0)}, us);
    addTextConversation({QStringLiteral("22000")}, us);
    addTextConversation({phoneOf(1), phoneOf(4), phoneOf(5)}, us);
    addTextConversation({phoneOf(1), phoneOf(2)}, us);
    addIMessageConversation(phoneOf(0), {phoneOf(0)}, ListForm::Array);
    addIMessageConversation(mail, {mail}, ListForm::Archive);
    addIMessageConversation(QStringLiteral("chat512839004117"), {phoneOf(0), phoneOf(3), mail},
                            ListForm::Archive);

    for (const QByteArrayView text : trickyTexts())
        say(AdaText, text.toByteArray());
    for (const QByteArrayView text : scriptTexts())
        say(Ada, text.toByteArray());
    for (const QByteArrayView text : tableTexts())
        say(ShortCode, text.toByteArray());
    for (std::size_t conversation = 0; conversation < m_chats.size(); ++conversation)
        for (int i = 0; i < 5; ++i)
            say(conversation, makeText(m_chance));
    for (const std::size_t conversation : {AdaText, TextGroup})
        addMultimedia(conversation);
    for (const std::size_t conversation : {Ada, Mail, Room})
        addPicture(conversation, true);
    addPicture(Room, false);
    // Its group is gone.
    m_database.addText({999999001, phoneOf(2), us, "this one stands in no conversation", {}, m_date, false});
    ++m_counts.messageRows;
}

qint64 OldMessageContent::say(std::size_t conversation, const QByteArray &text, const QByteArrayList &guids)
{
    Conversation &chat = m_chats[conversation];
    m_fromMe = m_chance.oneIn(2);
    const qint64 rowid = chat.isIMessage ? sayIMessage(chat, text, guids) : sayText(chat, text);
    m_date += m_step - m_step / 2 + m_chance.below(static_cast<int>(m_step) + 1);
    ++chat.messages;
    ++m_counts.messageRows;
    return rowid;
}

qint64 OldMessageContent::sayText(const Conversation &chat, const QByteArray &text)
{
    OldTextRow row;
    row.group = chat.rowid;
    row.address = chat.isGroup() && m_fromMe ? QString() : m_chance.pick(chat.addresses);
    row.country = QStringLiteral("us");
    row.text = text;
    row.date = m_date;
    row.fromMe = m_fromMe;
    return m_database.addText(row);
}

qint64 OldMessageContent::sayIMessage(const Conversation &chat, const QByteArray &text,
                                      const QByteArrayList &guids)
{
    OldIMessageRow row;
    row.guid = m_chance.uuid();
    row.room = chat.isGroup() ? chat.identifier : QString();
    row.handle = chat.isGroup() && m_fromMe ? QString() : m_chance.pick(chat.addresses);
    row.text = text;
    row.attributedBody = typedstreamBody(text);
    if (!guids.isEmpty())
        row.attachmentInfo =
            textList(asStrings(guids), m_chance.oneIn(2) ? ListForm::Array : ListForm::Archive);
    row.date = m_date;
    row.dateRead = m_fromMe ? 0 : m_date + 30;
    row.dateDelivered = m_fromMe ? m_date + 1 : 0;
    return m_database.addIMessage(row);
}

void OldMessageContent::addPart(const OldPartRow &row, qint64 group, const QByteArray &fileContent)
{
    m_database.addPart(row);
    const QByteArray type(row.contentType);
    m_counts.attachments += !type.startsWith("application/") && type != "text/plain";
    if (!m_sink || fileContent.isEmpty())
        return;
    const QString path = QStringLiteral("Library/SMS/Parts/%1/%2/%3-%4.%5")
                             .arg(group % 256, 2, 16, QLatin1Char('0'))
                             .arg(row.message % 16, 2, 10, QLatin1Char('0'))
                             .arg(row.message)
                             .arg(row.part)
                             .arg(row.location.section(QLatin1Char('.'), -1));
    m_sink({QStringLiteral("MediaDomain"), path, unixFromApple(m_date), fileContent});
}

void OldMessageContent::addMultimedia(std::size_t conversation)
{
    const qint64 group = m_chats[conversation].rowid;
    const qint64 message = say(conversation, QByteArray());
    const QByteArray layout =
        "<smil><body><par><img src=\"IMG_0001.jpg\"/><text src=\"text_1.txt\"/></par></body></smil>";
    addPart({message, 0, "application/smil", QStringLiteral("smil.xml"), layout}, group);
    addPart({message, 1, "image/jpeg", QStringLiteral("IMG_0001.jpg"), {}}, group,
            picture("JPEG", 320, 200, m_chance));
    addPart({message, 2, "text/plain", QStringLiteral("text_1.txt"), "a text beside the picture – ünïcode"},
            group);
    addPart({message, 3, "image/png", QStringLiteral("IMG_0001.png"), picture("PNG", 40, 30, m_chance)},
            group);
    addPart(
        {message, 4, "text/x-vCard", QStringLiteral("card.vcf"), vcard("Ada Brückner", "+14155550132", {})},
        group);
    addPart({message, 5, "image/jpeg", QStringLiteral("lost.jpg"), {}}, group); // its file is nowhere
}

void OldMessageContent::addPicture(std::size_t conversation, bool inBackup)
{
    const QByteArray guid = m_chance.uuid();
    const qint64 date = m_date;
    say(conversation, QByteArray("look: ") + place, {guid});
    const QString path = QStringLiteral("Library/SMS/Attachments/%1/%2/%3/IMG_%4.JPG")
                             .arg(QString::fromLatin1(guid.left(2).toLower()))
                             .arg(guid.back() % 16, 2, 10, QLatin1Char('0'))
                             .arg(QString::fromLatin1(guid))
                             .arg(1000 + m_counts.attachments);
    m_database.addAttachment(
        {guid, QStringLiteral("/var/mobile/") + path, "image/jpeg", "public.jpeg", date, m_fromMe});
    ++m_counts.attachments;
    if (!m_sink || !inBackup)
        return;
    if (m_picture.isEmpty())
        m_picture = picture("JPEG", 160, 120, m_chance);
    m_sink({QStringLiteral("MediaDomain"), path, unixFromApple(date), m_picture + m_chance.bytes(8)});
}

void OldMessageContent::addBulk(int messages, int chats)
{
    for (int i = 0; static_cast<int>(m_chats.size()) < chats; ++i) {
        const QString phone = strangerPhone(i);
        if (i % 11 == 10)
            addTextConversation({phone, strangerPhone(i - 1)}, QStringLiteral("us"));
        else if (i % 3 == 0)
            addTextConversation({phone}, QStringLiteral("us"));
        else
            addIMessageConversation(phone, {phone}, ListForm::Array);
    }
    const int missing = messages - m_counts.messageRows;
    const qint64 end = appleFromUnix(m_generation.backupDate) - lastHour;
    m_step = missing > 0 ? std::max<qint64>(1, (end - m_date) / (missing + 1)) : m_step;
    for (int i = 0; i < missing; ++i) {
        const auto conversation =
            static_cast<std::size_t>(m_chance.skewedBelow(static_cast<int>(m_chats.size())));
        if (m_chats[conversation].isIMessage && m_chance.oneIn(40))
            addPicture(conversation, true);
        else
            say(conversation, makeText(m_chance));
    }
}

std::vector<SampleChat> OldMessageContent::chats() const
{
    std::vector<SampleChat> result;
    for (const Conversation &conversation : m_chats) {
        SampleChat chat;
        chat.rowid = conversation.rowid;
        chat.identifier = conversation.identifier;
        chat.joined = chat.listed = conversation.messages;
        QStringList names;
        for (const QString &address : conversation.addresses) {
            const CastMember *member = castMemberByPhone(address);
            chat.handles.push_back(
                {0, address, conversation.isIMessage ? QStringLiteral("iMessage") : QStringLiteral("SMS"),
                 member ? member->name() : QString()});
            names << (member ? member->name() : address);
        }
        chat.title = names.join(QStringLiteral(", "));
        result.push_back(std::move(chat));
    }
    return result;
}

SampleCounts OldMessageContent::counts() const
{
    SampleCounts counts = m_counts;
    counts.joinedMessages = counts.listedMessages = counts.messageRows;
    return counts;
}

} // namespace sample
