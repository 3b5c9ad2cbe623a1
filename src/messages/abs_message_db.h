#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "messages/msg_records.h"
#include "personal/scope.h"

#include <deque>
#include <memory>
#include <unordered_map>

class FileSource;
struct DatabaseFile;

/// A source of messages. It owns every record that it loads; they live until it is reloaded or destroyed.
/// Used by one thread at a time.
class AbsMessageDb
{
public:
    AbsMessageDb();
    virtual ~AbsMessageDb();

    /// Set before anything is counted or loaded: whether system items and messages of no conversation come
    /// in. Otherwise the report of a loading says how many there are.
    void setScope(Scope scope) { m_scope = scope; }

    /// 6 for iOS 6 and later.
    virtual int kind() const = 0;
    /// The number of messages that are listed: those of a conversation once for each that they are in, those
    /// of none once.
    virtual qint64 countMessages() = 0;
    /// For a database that is counted but not loaded: notes the attachments of the listed messages whose
    /// content the source lists and has lost.
    virtual void checkContent() {}
    /// Messages of one conversation, by chat row id.
    virtual std::unordered_map<qint64, qint64> countMessagesByChat() = 0;
    /// Fills the chat and handle maps.
    virtual void loadChats() = 0;
    /// Loads the messages and attachments of one conversation, or of all when `chatId` is 0 or less. Needs
    /// loadChats().
    virtual void loadMessages(qint64 chatId, Progress &progress) = 0;

    /// By ascending row id.
    const std::vector<_MsgChat *> &chats() const { return m_chatList; }
    /// The same and, last, what stands for the loaded messages that belong to no conversation, when there are
    /// any: what a person sees.
    std::vector<const _MsgChat *> conversations() const;
    _MsgChat *chat(qint64 rowid) const;
    const _MsgHandle *handle(qint64 rowid) const;
    std::size_t messageCount() const { return m_messages.size(); }

    /// The loaded messages of the given conversations (all when empty) that lie in [from, to], as Apple
    /// absolute seconds, by ascending chat row id (those of no conversation first, under _MsgChat::none) and
    /// then in the order of the exports.
    std::vector<MessageRef> select(const std::vector<qint64> &chatIds, qint64 from, qint64 to) const;

    /// What could not be read of what was loaded so far; the rest is loaded. The text of a message whose
    /// stored form could not be read is empty.
    const Report &report() const { return m_report; }

protected:
    std::deque<_MsgChat> m_chats;
    std::deque<_MsgHandle> m_handles;
    std::deque<_MsgMessage> m_messages;
    std::deque<_MsgAttachment> m_attachments;
    std::vector<_MsgChat *> m_chatList;
    _MsgChat m_noChat; // with the messages that belong to no conversation
    std::unordered_map<qint64, _MsgChat *> m_chatById;
    std::unordered_map<qint64, _MsgHandle *> m_handleById;
    Scope m_scope = Scope::Usual;
    Report m_report;
};

/// Opens the message database of an opened backup with the reader that fits it. Throws
/// Error("Found no message database file in this iTunes backup.") when the backup has none, and Error when it
/// cannot be read. `source` must outlive the result.
std::unique_ptr<AbsMessageDb> openMessageDb(FileSource &source);

/// The number of messages that are listed of an opened backup. What is damaged goes into the report: of the
/// tables that counting looks at, else of the database, and attachments that have lost their content. Throws
/// Error as openMessageDb() does.
qint64 countMessages(FileSource &source, Report &report);

/// Opens one message database file of a device. `source`, which may be null, has its attachments and the
/// address book. Throws Error.
std::unique_ptr<AbsMessageDb> openMessageDbFile(const DatabaseFile &file, FileSource *source);
