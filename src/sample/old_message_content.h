#pragma once

#include "sample/message_content.h"
#include "sample/old_message_database.h"

namespace sample {

/// Fills the message database of iOS 5: text messages, multimedia messages with their parts, iMessages with
/// their files, each one to one and in groups. Then bulk messages in all conversations.
class OldMessageContent
{
public:
    /// Without a sink attachments are rows alone.
    OldMessageContent(OldMessageDatabase &database, const Generation &generation, SeededGenerator chance,
                      AttachmentSink sink = {});

    void addShowcase();
    /// Adds conversations until there are `chats`, then messages until there are `messages`.
    void addBulk(int messages, int chats);

    /// Row ids are those of the table that a conversation stands in; of a group of text messages, which the
    /// tables do not name, the identifier is empty.
    std::vector<SampleChat> chats() const;
    SampleCounts counts() const;

private:
    struct Conversation
    {
        bool isIMessage = false;
        qint64 rowid = 0;
        QString identifier;
        QStringList addresses;
        int messages = 0;

        bool isGroup() const { return addresses.size() > 1; }
    };

    void addTextConversation(const QStringList &addresses, const QString &country);
    void addIMessageConversation(const QString &identifier, const QStringList &addresses, ListForm form);
    qint64 say(std::size_t conversation, const QByteArray &text, const QByteArrayList &guids = {});
    qint64 sayText(const Conversation &conversation, const QByteArray &text);
    qint64 sayIMessage(const Conversation &conversation, const QByteArray &text, const QByteArrayList &guids);
    void addMultimedia(std::size_t conversation);
    void addPicture(std::size_t conversation, bool inBackup);
    void addPart(const OldPartRow &row, qint64 group, const QByteArray &fileContent = {});

    OldMessageDatabase &m_database;
    const Generation &m_generation;
    SeededGenerator m_chance;
    AttachmentSink m_sink;
    qint64 m_date;
    qint64 m_step = 3600;
    bool m_fromMe = false; // of the message that was said last
    std::vector<Conversation> m_chats;
    SampleCounts m_counts;
    QByteArray m_picture;
};

} // namespace sample
