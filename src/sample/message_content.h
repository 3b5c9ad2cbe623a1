#pragma once

#include "sample/cast.h"
#include "sample/message_database.h"
#include "sample/sample_maker.h"
#include "sample/seeded_generator.h"

#include <functional>

namespace sample {

/// An attachment's file on its way into the backup.
struct AttachmentFile
{
    QString domain;
    QString relativePath;
    qint64 modified = 0; // Unix seconds
    QByteArray content;
};
using AttachmentSink = std::function<void(const AttachmentFile &)>;

/// Whose database it is: the two keep attachments in different places.
enum class Keeper { Phone, Mac };

/// Fills a message database: first the handles and the showcase conversations, then bulk messages in all of
/// them.
class MessageContent
{
public:
    /// Without a sink attachments are rows alone.
    MessageContent(MessageDatabase &database, SeededGenerator chance, AttachmentSink sink = {},
                   Keeper keeper = Keeper::Phone);

    void addShowcase();
    /// Adds conversations until there are `chats`, then messages until there are `messages`.
    void addBulk(int messages, int chats);

    /// Conversations as a reader should see them, and the counts of messages, taken from the finished rows.
    std::vector<SampleChat> chats() const;
    SampleCounts counts() const;

private:
    struct Conversation
    {
        qint64 rowid;
        ChatRow row;
        int joined = 0;
        int listed = 0;
    };

    qint64 addHandle(const QString &id, const QString &country, const QString &service);
    std::size_t addChat(const ChatRow &row);
    qint64 say(std::size_t conversation, MessageRow row);
    MessageRow message(std::size_t conversation, const QByteArray &text);
    void dressText(MessageRow &row);
    void countJoin(std::size_t conversation, const MessageRow &row);

    void addHandles();
    void addConversations();
    void addTexts();
    void addSystemItems();
    void addOddJoins();
    void addBulkMessage();

    // attachment_showcase.cpp
    void addAttachments();
    void addAttachmentCase(std::size_t index);
    void addBulkAttachment(std::size_t conversation);
    QString ownFolder(const QByteArray &guid) const;
    MessageRow messageWithFiles(std::size_t conversation, const QByteArray &text,
                                const QByteArrayList &guids);
    void attach(qint64 message, AttachmentRow row, const AttachmentFile &file);

    // modern_messages.cpp
    void addReactions();
    void addReplies();
    void addEdits();
    void addRecentlyDeleted();
    void addLongBodies();

    MessageDatabase &m_database;
    const Generation &m_generation;
    SeededGenerator m_chance;
    qint64 m_date;
    qint64 m_step = 3600;
    std::vector<HandleRow> m_handles;
    std::vector<Conversation> m_chats;
    SampleCounts m_counts;
    AttachmentSink m_sink;
    Keeper m_keeper;
    QByteArrayList
        m_pictures; // shared by the bulk attachments: encoding one for each would take longer than all else
};

} // namespace sample
