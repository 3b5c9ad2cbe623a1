#pragma once

#include "base/progress.h"
#include "base/save_report.h"
#include "messages/attachment_intake.h"
#include "messages/message_versions.h"
#include "messages/message_writer.h"

#include <unordered_map>
#include <unordered_set>

/// What saving messages did.
struct SavedMessages : SaveReport
{
    qint64 attachmentsCopied = 0;
};

/// Adds messages with all that belongs to them to a message store, each once, inside one transaction of the
/// caller's. The records may come from any source. Messages with the same logic hash are one row, which joins
/// every conversation that one of them is in.
class MessageImport
{
public:
    struct Options
    {
        ChangedMessages changed = ChangedMessages::Keep;
        qint64 takenAt = 0; // when the source was taken off the device, Unix seconds; 0 where nobody knows
    };

    /// `messages` are those that will be added: it has to be known which of them stand in several
    /// conversations.
    MessageImport(Sqlite3DB &store, AttachmentIntake &files, const std::vector<MessageRef> &messages,
                  Options options);

    /// Throws Error, as finish() does.
    void add(const MessageRef &ref);
    /// Call once, after the last.
    SavedMessages finish();

private:
    struct StoredChat
    {
        qint64 rowid = 0;
        int last = 0; // date of the newest message that was added
        bool isNew = false;
    };
    static constexpr qint64 nowhere = 0; // of a message that no row stands for

    qint64 rowFor(const MessageRef &ref);
    std::optional<qint64> insert(const MessageRef &ref, const QString &hash);
    void takeSame(const MessageRef &ref, qint64 stored, const QString &hash);
    qint64 takeChanged(const MessageRef &ref, const QString &hash);
    void takeVersion(const MessageRef &ref, qint64 stored, const QString &hash);
    bool standsForAnother(qint64 stored) const;
    void join(const MessageRef &ref, qint64 stored);
    MessageWriter::MessageLinks linksOf(const _MsgMessage &message, const QString &hash);
    StoredChat &chatFor(const _MsgChat *chat);
    qint64 insertedChat(const _MsgChat &chat, bool &isNew);
    qint64 handleFor(const _MsgHandle *handle, qint64 none);
    void addAttachments(const _MsgMessage &message, qint64 stored, const QString &hash);
    void completeAttachments(const _MsgMessage &message, qint64 stored);
    void tell(IssueKind kind, const char *what, qint64 count);

    Sqlite3DB &m_db;
    MessageWriter m_writer;
    MessageVersions m_versions;
    AttachmentIntake &m_files;
    ChangedMessages m_changed;
    SavedMessages m_saved;
    qint64 m_equal = 0;
    qint64 m_kept = 0;
    qint64 m_updated = 0;
    qint64 m_firstAdded = 0;
    std::unordered_set<qint64> m_merged; // rows that stand for a message of this job and were there before
    std::unordered_map<const _MsgChat *, StoredChat> m_chats;
    std::unordered_map<const _MsgHandle *, qint64> m_handles;
    std::unordered_set<const _MsgMessage *> m_shared; // in several conversations
    std::unordered_map<const _MsgMessage *, qint64> m_sharedRowids;
};
