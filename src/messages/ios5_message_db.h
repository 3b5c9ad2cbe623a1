#pragma once

#include "messages/ios5_conversations.h"
#include "messages/message_parts.h"

/// Reads the message database of iOS 5 and earlier into the records of the newer ones. The row ids of the
/// attachments of iMessage are moved like those of its conversations, because the parts of multimedia
/// messages are attachments, too. Messages whose conversation is not there are loaded without one; loading
/// the same conversation twice changes nothing.
class IOS5MessageDb : public IOS5Conversations
{
public:
    /// Opens the database; throws Error. `source`, which may be null, has the attachments and the address
    /// book; it must outlive this object.
    IOS5MessageDb(const DatabaseFile &file, FileSource *source);
    ~IOS5MessageDb() override;

    int kind() const override { return 5; }
    qint64 countMessages() override;
    void checkContent() override;
    std::unordered_map<qint64, qint64> countMessagesByChat() override;
    void loadMessages(qint64 chatId, Progress &progress) override;

protected:
    void clear() override;

private:
    struct Columns;

    bool hasIMessages() const;
    QString onlyChat(const QString &before, qint64 chatId) const;
    std::unordered_map<qint64, qint64> countByChat();
    void readConversation(qint64 chatId, Progress &progress);
    void readMessages(qint64 chatId, Progress &progress);
    void takeMessage(Columns &columns, qint64 chatId);
    void fillIMessage(_MsgMessage &message, Columns &columns);
    void fillTextMessage(_MsgMessage &message, Columns &columns);
    void setSender(_MsgMessage &message, Service service, const QString &address);
    void awaitAttachments(_MsgMessage &message, const QByteArray &guids);
    void readAttachments(Progress &progress);
    void takeAttachment(_MsgAttachment &&read, const std::vector<_MsgMessage *> &messages);
    void readParts(qint64 chatId, Progress &progress);
    void takePart(_MsgMessage &message, const MessagePart &part);

    MessageParts m_parts;
    QSet<qint64> m_takenParts;
    QHash<QString, std::vector<_MsgMessage *>> m_awaiting; // by the GUID of an attachment
};
