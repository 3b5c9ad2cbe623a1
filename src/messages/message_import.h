#pragma once

#include "base/progress.h"
#include "messages/attachment_intake.h"
#include "messages/message_writer.h"

#include <unordered_map>
#include <unordered_set>

/// What saving messages did, for the person who asked for it.
struct MessageSaveSummary
{
    qint64 added = 0;
    qint64 merged = 0;   // those that were there already
    QStringList refused; // "guid: reason", messages that could not be added
    qint64 attachmentsCopied = 0;
    QStringList missingAttachments; // "name: reason"

    qint64 handled() const { return added + merged; }
};

/// Adds messages with all that belongs to them to a message store, each once, inside one transaction of the
/// caller's. The records may come from any source.
class MessageImport
{
public:
    /// `messages` are those that will be added: it has to be known which of them stand in several
    /// conversations.
    MessageImport(Sqlite3DB &store, AttachmentIntake &files, const std::vector<MessageRef> &messages);

    /// Throws Error, as finish() does.
    void add(const MessageRef &ref);
    /// Call once, after the last.
    MessageSaveSummary finish();

private:
    struct StoredChat
    {
        qint64 rowid = 0;
        int last = 0; // date of the newest message that was added
        bool isNew = false;
    };

    std::optional<qint64> insert(const MessageRef &ref, const QString &hash);
    StoredChat &chatFor(const _MsgChat *chat);
    qint64 insertedChat(const _MsgChat &chat, bool &isNew);
    qint64 handleFor(const _MsgHandle *handle, qint64 none);
    void addAttachments(const _MsgMessage &message, qint64 stored, const QString &hash);
    void completeAttachments(const _MsgMessage &message, qint64 stored);

    Sqlite3DB &m_db;
    MessageWriter m_writer;
    AttachmentIntake &m_files;
    MessageSaveSummary m_summary;
    std::unordered_map<const _MsgChat *, StoredChat> m_chats;
    std::unordered_map<const _MsgHandle *, qint64> m_handles;
    std::unordered_set<const _MsgMessage *> m_shared; // in several conversations
    std::unordered_map<const _MsgMessage *, qint64> m_sharedRowids;
};
